#pragma once

#include "TvBase/Util/String.h"

namespace Network
{

/// The URL of `path` on a deployment host. `hostSetting` is a host name or address with an
/// optional ":port" and an optional "http://" or "https://" in front (plain http when there is
/// none); one trailing "/" is ignored. `path` begins with "/". Null when the setting is empty
/// or not of that form: another scheme, a path of its own, blanks, a port outside 1 to 65535.
String ComposeHostURL(String const& hostSetting, String const& path);

/// The URL of `path` on the host named by the environment variable `environmentName` when it
/// is set and not empty, otherwise on `builtInHost`, composed as `ComposeHostURL` does. Null
/// when the host that applies is unusable; a bad override never falls back silently.
String GetDeploymentURL(char const* environmentName, String const& builtInHost, String const& path);

} // namespace Network
