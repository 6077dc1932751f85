#pragma once

#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

namespace UI
{

/// The text form of a 0xAARRGGBB color: "#" when `withHash`, then red, green and blue as two
/// upper-case hexadecimal digits each, then "." and the alpha in two digits unless it is 255.
/// Opaque red is "FF0000" ("#FF0000"); with alpha 128 it is "FF0000.80".
String ConvertColorToString(unsigned int color, bool withHash);

/// Reads the text form back, after stripping white space and one leading "#". Six digits are an
/// opaque color; nine are "RRGGBB", any separator byte, then two alpha digits. Any other length
/// or a bad digit pair gives not present.
checked_value<unsigned int> ConvertStringToColor(String const& text);

} // namespace UI
