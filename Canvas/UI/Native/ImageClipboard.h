#pragma once

#include "TvBase/Util/String.h"

#include <vector>

namespace UI
{
class DIBits;

namespace Native
{

/// Images on the desktop's clipboard, as PNG. The desktop's own tool takes them: `wl-copy` under
/// Wayland, `xclip` under X11, each found on PATH and started without a shell. Where neither
/// applies the clipboard takes no images, and callers disable what would offer it.
/// Main thread only.
class ImageClipboard
{
public:
    /// The command that takes PNG bytes on its standard input, or empty when there is none.
    static std::vector<String> CommandLine();
    static bool IsAvailable() { return !CommandLine().empty(); }
    /// Puts `bits` on the clipboard (opaque unless they have alpha); false when there is no
    /// tool, the image is empty, or the tool fails.
    static bool SetImage(DIBits const& bits);
};

} // namespace Native
} // namespace UI
