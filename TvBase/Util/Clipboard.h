#pragma once

#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <vector>

namespace Util
{

/// The shared clipboard, in two parts: text goes to the desktop's clipboard (through SDL, when
/// its video layer runs; otherwise it stays in this process), and data of the program's own
/// numbered formats stays in this process. Setting content replaces all earlier content, text
/// included. The `window` arguments are accepted for the callers' sake and not needed here.
/// User-interface thread only.
class Clipboard
{
public:
    /// Returns `format`: formats need no registration here.
    static unsigned int RegisterFormat(String const& name, unsigned int format);
    /// True when data of `format` was set and not replaced since.
    static bool IsFormatAvailable(unsigned int format);
    /// Replaces the content with `data` under `format` (when a format is given) and with `text`
    /// (when it is not empty). False, with the content unchanged, when there is nothing to set,
    /// or when the desktop refuses the text.
    static bool SetContent(void* window, checked_value<unsigned int> const& format,
                           std::vector<unsigned char> const& data, String const& text);
    /// The clipboard's text; null when it holds none.
    static String GetString(void* window, unsigned int format);
    /// The bytes of `format` into `data`; false, with `data` emptied, when there are none.
    static bool GetContent(void* window, unsigned int format, std::vector<unsigned char>& data);
};

} // namespace Util
