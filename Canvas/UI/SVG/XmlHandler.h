#pragma once

#include "Canvas/UI/SVG/Parser.h"
#include "TvBase/Util/XMLSAXParser.h"

namespace agg
{
namespace svg
{

/// Feeds the events of `Util::XMLSAXParser` to an icon `parser`. An `agg::svg::exception` from
/// the parser passes out of `Util::XMLSAXParser::Parse`, which stops there.
class svg_xml_handler : public Util::XMLSAXParserHandler
{
public:
    explicit svg_xml_handler(parser& target) : target(target) {}

    void HandleStartElement(char const* name,
                            Util::XMLSAXParserAttributeList const& attributes) override;
    void HandleEndElement(char const* name) override;
    void HandleCharacters(char const* text) override;

private:
    parser& target;
};

} // namespace svg
} // namespace agg
