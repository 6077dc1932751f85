#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

namespace UI
{

class DrawContext;
class Font;
class Window;

namespace detail
{

/// A colour's own alpha multiplied into the window's alpha, rounded: a half-transparent
/// colour on a half-faded window draws at a quarter.
unsigned char CombineAlpha(unsigned int color, unsigned char windowAlpha);
/// `value + add`, clamped to 255.
unsigned char AddAlpha(unsigned char value, int add);
/// The palette's colour for `key`; not present for an empty key, no canvas, or a key the
/// palette does not hold.
checked_value<unsigned int> ResolvePaletteColor(Window const* window, String const& key);
/// The canvas font `id` of `window` (font 0 for an unset id); null without fonts.
Font* WindowFont(Window const* window, checked_value<unsigned int> const& id);
/// The pixel width of `text`; 0 without a font.
int TextWidth(Font* font, String const& text);
/// The font height; 0 without a font.
int FontHeight(Font* font);
/// Draws `text` centred in a `size` box plus `offset`; with `ellipsize`, text wider than the
/// box is shortened with an ellipsis first.
void DrawCentredText(DrawContext* context, Font* font, String const& text, Size const& size,
                     Point const& offset, unsigned int color, unsigned char alpha, bool ellipsize);

} // namespace detail
} // namespace UI
