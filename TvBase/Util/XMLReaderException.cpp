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

String XMLReader::compose(String const& message, XMLSAXParser const*)
{
    // Only the message is filled in: the position markers stay in the text as they are. The
    // parser's line and column remain available from the parser itself.
    return String("xml parse error: %1 at %2:%3").Arg(message);
}

} // namespace Exception
} // namespace Util
