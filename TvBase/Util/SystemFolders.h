#pragma once

#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/String.h"

#include <vector>

/// The well-known folders of the host. Each asks the environment and falls back to a fixed
/// folder (or an empty path) when the host cannot tell. Nothing here throws.
namespace Util
{

/// `$TMPDIR`, or "/tmp".
FolderPath GetSystemTempFolder();
/// `$XDG_DATA_HOME`, else "~/.local/share"; without a home folder, the system-wide folder.
FolderPath GetUserApplicationDataFolder();
/// "/usr/local/share".
FolderPath GetSystemApplicationDataFolder();
/// The documents folder of xdg-user-dirs when set, else "$HOME/Documents"; empty without a home.
FolderPath GetDocumentsFolder();
/// The desktop folder of xdg-user-dirs when set, else "$HOME/Desktop"; empty without a home.
FolderPath GetDesktopFolder();
/// `$HOME`, or the password database's home folder; empty when neither is known.
FolderPath GetUserFolder();
/// Always "/".
FolderPath GetSystemRootFolder();
/// The font folders, in this order: "/usr/share/fonts/", "/usr/local/share/fonts/",
/// "~/.local/share/fonts/".
std::vector<FolderPath> GetFontFolders();

/// The folder from which the running code was loaded (the executable's or the library's
/// folder), as `FolderPath::ToString` gives it. "~" when the host cannot tell. There are no
/// bundles here, so `keepBundle` has no effect; neither have `moduleName` and `moduleHandle`.
String GetModuleDirectory(String const& moduleName, void* moduleHandle, bool keepBundle);

} // namespace Util
