#pragma once

#include "TvBase/Util/Exception.h"

namespace Util
{

class XMLSAXParser;

namespace Exception
{

/// A failure while reading XML. The message is "xml parse error: <message> at <line>:<column>",
/// with the line and column of the parser at the time of construction (see
/// `XMLSAXParser::GetLineNumber`). When the parser is null or has no position to give, the
/// markers stay as they are: "xml parse error: <message> at %2:%3".
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
