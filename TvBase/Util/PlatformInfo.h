#pragma once

#include "TvBase/Util/String.h"

namespace Util
{

/// The release of the older desktop host this code also ran on: 1 for 10.3 up to 7 for 10.9.
/// On this host it is always 0, "unknown"; ask `GetDetailedOSXVersion` for the kernel release.
unsigned int GetOSXVersion();
/// The running kernel's release, as "6.1.55-1-amd64" reads: 6, 1 and 55. A part that is missing
/// reads 0. False, with all three left unchanged, when the release can't be read.
bool GetDetailedOSXVersion(unsigned int& major, unsigned int& minor, unsigned int& bugfix);
/// "Linux %1.%2.%3" from `GetDetailedOSXVersion`, or null on failure.
String GetPlatformVersionString();

/// The file name of the running program ("tavorin-updater").
String GetCurrentProcessName();
/// The name to show for the program. There are no bundles here: the process name.
String GetCurrentProcessDisplayName();
/// The version text of the program's bundle. There are no bundles here: always null.
String GetCurrentProcessDisplayVersion();

} // namespace Util
