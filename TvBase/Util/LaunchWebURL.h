#pragma once

#include "TvBase/Util/String.h"

namespace Util
{

/// True when `url` names an "http:" or "https:" address (the scheme in any case, followed by
/// "//"). Links that arrive from the network may only be opened when this holds, so that a
/// page cannot make the program open local files or other handlers.
bool IsWebURL(String const& url);
/// `LaunchURL(url, false)` for a web address; anything else is refused and gives false.
bool LaunchWebURL(String const& url);

} // namespace Util
