#pragma once

#include "Canvas/UI/SVG/Exception.h"
#include "Canvas/UI/SVG/Parser.h"
#include "TvBase/Util/XMLSAXParser.h"

namespace agg
{
namespace svg
{

/// Feeds the events of `Util::XMLSAXParser` to an icon `parser`. The first error is kept and
/// every later event ignored, so that the reader finishes cleanly and what was read stays.
class svg_xml_handler : public Util::XMLSAXParserHandler
{
public:
    explicit svg_xml_handler(parser& target) : target(target) {}

    void HandleStartElement(char const* name,
                            Util::XMLSAXParserAttributeList const& attributes) override;
    void HandleEndElement(char const* name) override;
    void HandleCharacters(char const* text) override;

    bool failed() const { return error_flag; }
    exception const& error() const { return first_error; }

private:
    parser& target;
    bool error_flag = false;
    exception first_error;
};

} // namespace svg
} // namespace agg
