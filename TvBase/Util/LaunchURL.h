#pragma once

#include "TvBase/Util/String.h"

namespace Util
{

/// Opens `url` with the desktop's handler (`xdg-open`, else `gio open`, found on PATH and started
/// directly, with no shell in between, so no character of the text is interpreted). With `isFile`
/// the text is a file path, handed over as it is ("./" is put before a path that starts with "-");
/// otherwise each " " becomes "%20". Empty text, and a URL that starts with "-" (which the opener
/// would take for an option), are refused. True when an opener was started; it is reaped in the
/// background, so this never waits for it. The caller decides which URLs may be opened at all.
bool LaunchURL(String const& url, bool isFile);
/// `LaunchURL(path, true)`.
bool LaunchPath(String const& path);

} // namespace Util
