#pragma once

#include "TvBase/Util/String.h"

namespace UI
{

class Font;

/// Where `Ellipsize` shortens: 1 keeps both ends, any other value keeps the start.
enum EllipsisMode
{
    EllipsisEnd = 0,
    EllipsisMiddle = 1
};

/// `text` when its width is less than `width`; otherwise the longest head (and, in the middle
/// mode, tail) with "..." between that still fits, taking whole UTF-8 characters only. "..."
/// alone when even that doesn't fit. A null font returns the text unchanged.
String Ellipsize(Font* font, String const& text, int width, EllipsisMode mode);

} // namespace UI
