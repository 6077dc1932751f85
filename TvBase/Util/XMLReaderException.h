#pragma once

#include "TvBase/Util/Exception.h"

namespace Util
{

class XMLSAXParser;

namespace Exception
{

/// A failure while reading XML. The message is "xml parse error: <message> at %2:%3": only the
/// first marker is filled, and the position markers stay as they are. Callers that want the
/// position ask the parser (`XMLSAXParser::GetLineNumber`, `GetColumnNumber`).
class XMLReader : public ::Exception::Base
{
public:
    XMLReader(String const& message, XMLSAXParser const* parser, String const& file = String(),
              int line = -1);

    char const* GetTypeName() const override { return "XMLReader"; }

private:
    static String compose(String const& message, XMLSAXParser const* parser);
};

} // namespace Exception
} // namespace Util
