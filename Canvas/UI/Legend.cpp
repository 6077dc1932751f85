#include "Canvas/UI/Legend.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Font.h"

namespace UI
{

namespace
{

int const Swatch = 10;
int const SwatchGap = 4;
int const EntryGap = 12;

} // namespace

Legend::Legend(Frame* frame, Window* parent, String const& name) : Window(frame, parent, name)
{
    SetGeometry(0, 0, 300, 18);
}

void Legend::AddItem(unsigned int index, String const& text, unsigned int color)
{
    Entry const entry{text, color};
    entries.insert(entries.begin() + std::min<std::size_t>(index, entries.size()), entry);
    Update();
}

void Legend::Clear()
{
    entries.clear();
    Update();
}

std::vector<Rect> Legend::GetEntryRects() const
{
    Font* font = GetCanvas()->GetFont(checked_value<unsigned int>());
    std::vector<Rect> rects;
    int x = 0;
    for (Entry const& entry : entries)
    {
        int const textWidth = font ? static_cast<int>(font->GetStringWidth(entry.text)) : 0;
        int const width = Swatch + SwatchGap + textWidth;
        rects.push_back(Rect::FromXYWH(x, 0, width, GetHeight()));
        x += width + EntryGap;
    }
    return rects;
}

void Legend::Draw(DrawContext* context)
{
    unsigned char const alpha = GetTotalBaseAlpha();
    Font* font = GetCanvas()->GetFont(checked_value<unsigned int>());
    std::vector<Rect> const rects = GetEntryRects();
    int const middle = GetHeight() / 2;
    for (std::size_t i = 0; i < entries.size(); ++i)
    {
        Rect const swatch = Rect::FromXYWH(rects[i].left, middle - Swatch / 2, Swatch, Swatch);
        context->DrawBox(swatch, DrawContext::Filled, entries[i].color, alpha);
        context->DrawBox(swatch, DrawContext::Outline, 0xFF404040, alpha);
        if (font)
            context->DrawText(font, Rect(), Point(swatch.right + 1 + SwatchGap, middle),
                              entries[i].text, entries[i].color, alpha, HAlignLeft, VAlignCenter);
    }
    Window::Draw(context);
}

} // namespace UI
