#include "TvBase/Util/LaunchWebURL.h"

#include "TvBase/Util/LaunchURL.h"

namespace Util
{

bool IsWebURL(String const& url)
{
    if (url.IsNull())
        return false;
    String const lower = url.Left(8).ToLower();
    return lower.Left(7) == String("http://") || lower == String("https://");
}

bool LaunchWebURL(String const& url)
{
    return IsWebURL(url) && LaunchURL(url, false);
}

} // namespace Util
