#include "TvBase/Util/XMLReaderException.h"

#include "TvBase/Util/XMLSAXParser.h"

namespace Util
{
namespace Exception
{

XMLReader::XMLReader(String const& message, XMLSAXParser const* parser, String const& file,
                     int line)
    : Base(compose(message, parser), file, line)
{
}

String XMLReader::compose(String const& message, XMLSAXParser const* parser)
{
    String text = String("xml parse error: %1 at %2:%3").Arg(message);
    if (!parser)
        return text;
    checked_value<unsigned int> const line = parser->GetLineNumber();
    checked_value<unsigned int> const column = parser->GetColumnNumber();
    if (!line.IsPresent() || !column.IsPresent())
        return text;
    return text.Arg(line.Get()).Arg(column.Get());
}

} // namespace Exception
} // namespace Util
