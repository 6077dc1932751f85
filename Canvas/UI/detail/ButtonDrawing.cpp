#include "Canvas/UI/detail/ButtonDrawing.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Ellipsize.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Window.h"

#include <algorithm>
#include <cmath>

namespace UI
{
namespace detail
{

unsigned char CombineAlpha(unsigned int color, unsigned char windowAlpha)
{
    float const colorAlpha = float(color >> 24);
    return (unsigned char)std::lround(colorAlpha * float(windowAlpha) / 255.0f);
}

unsigned char AddAlpha(unsigned char value, int add)
{
    return (unsigned char)std::min(255, std::max(0, int(value) + add));
}

checked_value<unsigned int> ResolvePaletteColor(Window const* window, String const& key)
{
    if (key.IsNull() || key.IsEmpty())
        return checked_value<unsigned int>();
    return window->GetPaletteColor(key);
}

Font* WindowFont(Window const* window, checked_value<unsigned int> const& id)
{
    Canvas* canvas = window->GetCanvas();
    return canvas ? canvas->GetFont(id) : nullptr;
}

int TextWidth(Font* font, String const& text)
{
    return font ? int(font->GetStringWidth(text)) : 0;
}

int FontHeight(Font* font)
{
    return font ? font->GetHeight() : 0;
}

void DrawCentredText(DrawContext* context, Font* font, String const& text, Size const& size,
                     Point const& offset, unsigned int color, unsigned char alpha, bool ellipsize)
{
    if (!font || text.IsNull() || text.IsEmpty() || alpha == 0)
        return;
    String shown = text;
    int width = TextWidth(font, shown);
    if (ellipsize && width > size.width)
    {
        shown = Ellipsize(font, text, size.width, EllipsisEnd);
        width = TextWidth(font, shown);
    }
    Point const at((size.width - width) / 2 + offset.x,
                   (size.height - FontHeight(font)) / 2 + offset.y);
    context->DrawText(font, at, shown, color, alpha);
}

} // namespace detail
} // namespace UI
