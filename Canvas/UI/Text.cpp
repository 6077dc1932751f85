#include "Canvas/UI/Text.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Font.h"

#include <boost/shared_array.hpp>

#include <cstdlib>

namespace UI
{

namespace
{

// A colour whose alpha byte is 0 means "none" for the background and the shadow: the palette
// keeps such entries to switch the decoration off.
checked_value<unsigned int> visibleColor(unsigned int c)
{
    return (c >> 24) != 0 ? checked_value<unsigned int>(c) : checked_value<unsigned int>();
}

} // namespace

Text::Text(Frame* frame, Window* parent, String const& name, String const& text,
           checked_value<unsigned int> const& font, HAlignment justification,
           checked_value<unsigned int> const& color, checked_value<Point> const& position,
           checked_value<Size> const& size, bool autoSize)
    : Window(frame, parent, name), text(text.IsNull() ? String("") : text), font(font),
      autoAdjustFixedSize(autoSize), justification(justification)
{
    SetEnabled(false);
    // Shared names: lists make thousands of texts.
    static String const textName("Text");
    static String const backgroundColorName("Background Color");
    static String const dropShadowColorName("Drop Shadow Color");
    textProperty = CreateProperty<String>(textName, this->text);
    if (textProperty)
        WatchProperty(textName, &Text::onSetText);
    backgroundColorProperty = CreateProperty<unsigned int>(backgroundColorName, 0u);
    if (backgroundColorProperty)
        WatchProperty(backgroundColorName, &Text::slotBackgroundColorChanged);
    dropShadowColorProperty = CreateProperty<unsigned int>(dropShadowColorName, 0u);
    if (dropShadowColorProperty)
        WatchProperty(dropShadowColorName, &Text::slotDropShadowColorChanged);
    if (color)
        SetColor(*color);
    Point const at = position ? *position : Point(0, 0);
    Size const sz = size ? *size : Size(0, 0);
    SetGeometry(at.x, at.y, sz.width, sz.height);
    updateFixedSize();
}

Text::~Text() = default;

void Text::SetText(String const& t)
{
    textProperty.Set(t.IsNull() ? String("") : t);
}

void Text::onSetText()
{
    checked_value<String> const value = textProperty.Get();
    if (!value || *value == text)
        return;
    text = *value;
    updateFixedSize();
    dropPreRendered();
    Update();
}

void Text::SetFont(checked_value<unsigned int> const& f)
{
    font = f;
    updateFixedSize();
    dropPreRendered();
    Update();
}

Font* Text::GetFont() const
{
    Canvas* canvas = GetCanvas();
    return canvas ? canvas->GetFont(font) : nullptr;
}

int Text::GetFontHeight() const
{
    Font* f = GetFont();
    return f ? f->GetHeight() : 0;
}

void Text::SetJustification(HAlignment j)
{
    if (justification == j)
        return;
    justification = j;
    Update();
}

void Text::SetCharSpacing(checked_value<unsigned int> const& spacing)
{
    charSpacing = spacing;
    updateFixedSize();
    dropPreRendered();
    Update();
}

void Text::SetPreRenderText(bool on)
{
    preRender = on;
    if (!on)
        dropPreRendered();
    Update();
}

void Text::SetAutoAdjustFixedSize(bool on)
{
    autoAdjustFixedSize = on;
    updateFixedSize();
}

void Text::SetDropShadow(Point const& offset, checked_value<unsigned int> const& color)
{
    dropShadowOffset = offset;
    dropShadowColorProperty.Set(color ? *color : 0u);
    updateFixedSize();
    Update();
}

bool Text::HasDropShadow() const
{
    return static_cast<bool>(dropShadowColor);
}

void Text::SetBackground(checked_value<unsigned int> const& color, unsigned int feather)
{
    backgroundFeather = feather;
    backgroundColorProperty.Set(color ? *color : 0u);
    Update();
}

void Text::slotBackgroundColorChanged()
{
    checked_value<unsigned int> const c = backgroundColorProperty.Get();
    backgroundColor = c ? visibleColor(*c) : checked_value<unsigned int>();
    hasBackground = static_cast<bool>(backgroundColor);
    Update();
}

void Text::slotDropShadowColorChanged()
{
    checked_value<unsigned int> const c = dropShadowColorProperty.Get();
    dropShadowColor = c ? visibleColor(*c) : checked_value<unsigned int>();
    updateFixedSize();
    dropPreRendered();
    Update();
}

int Text::GetStringWidth(String const& s) const
{
    Font* f = GetFont();
    if (!f || s.IsEmpty())
        return 0;
    return static_cast<int>(f->GetStringWidth(s));
}

namespace
{

// One whole UTF-8 sequence: a lead byte of 0xC0 or above pulls in its continuation bytes.
unsigned int nextCharEnd(String const& s, unsigned int i)
{
    ++i;
    while (i < s.Length() && (s[i].Byte() & 0xC0) == 0x80)
        ++i;
    return i;
}

unsigned int previousCharStart(String const& s, unsigned int end)
{
    unsigned int i = end - 1;
    while (i > 0 && (s[i].Byte() & 0xC0) == 0x80)
        --i;
    return i;
}

} // namespace

String Text::Ellipsize(String const& s, int maxWidth, EllipsisMode mode) const
{
    if (GetStringWidth(s) <= maxWidth)
        return s;
    String const ellipsis("\xE2\x80\xA6");
    if (GetStringWidth(ellipsis) > maxWidth)
        return String("");
    unsigned int front = 0;
    unsigned int back = s.Length();
    bool takeFront = true;
    for (;;)
    {
        if (front >= back)
            break;
        unsigned int nextFront = front;
        unsigned int nextBack = back;
        if (takeFront || mode != EllipsisMiddle)
            nextFront = nextCharEnd(s, front);
        else
            nextBack = previousCharStart(s, back);
        String const candidate =
            s.Left(nextFront) + ellipsis + (mode == EllipsisMiddle ? s.Mid(nextBack) : String(""));
        if (GetStringWidth(candidate) > maxWidth)
            break;
        front = nextFront;
        back = nextBack;
        takeFront = !takeFront;
    }
    return s.Left(front) + ellipsis + (mode == EllipsisMiddle ? s.Mid(back) : String(""));
}

unsigned int Text::getCharacterFromPoint(Point const& p) const
{
    // The caret goes before the first character whose middle lies right of the point.
    unsigned int i = 0;
    int previous = 0;
    while (i < text.Length())
    {
        unsigned int next = i + 1;
        while (next < text.Length() && (text[next].Byte() & 0xC0) == 0x80)
            ++next;
        int const width = GetStringWidth(text.Left(next));
        if (p.x < (previous + width) / 2)
            return i;
        previous = width;
        i = next;
    }
    return text.Length();
}

void Text::updateFixedSize()
{
    if (!autoAdjustFixedSize)
        return;
    int width = GetStringWidth(text);
    int height = GetFontHeight();
    if (HasDropShadow())
    {
        width += std::abs(dropShadowOffset.x);
        height += std::abs(dropShadowOffset.y);
    }
    SetFixedSize(width, height);
}

void Text::dropPreRendered()
{
    preRenderedBits.reset();
}

void Text::preRenderText()
{
    Font* f = GetFont();
    int const width = GetStringWidth(text);
    int const height = GetFontHeight();
    if (!f || width <= 0 || height <= 0)
        return;
    boost::shared_array<unsigned int> pixels(new unsigned int[width * height]());
    boost::shared_ptr<DIBits> bits(new DIBits(pixels, width, width, height, true));
    Rect const box(0, width - 1, 0, height - 1);
    f->RenderText(Point(0, 0), text, GetColor(), 255, box, *bits, HAlignLeft, VAlignTop, Rect());
    preRenderedBits = bits;
}

void Text::drawBackground(DrawContext* context)
{
    Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
    unsigned char const alpha = GetEffectiveAlpha();
    unsigned int const color = *backgroundColor;
    unsigned int const colorAlpha = (color >> 24) * alpha / 255;
    if (backgroundFeather == 0)
    {
        context->DrawBox(all, DrawContext::Filled, color, static_cast<unsigned char>(colorAlpha));
        return;
    }
    // A soft edge: nested outlines from the outside in, each a little more opaque.
    unsigned int const feather = backgroundFeather;
    for (unsigned int i = 0; i < feather; ++i)
    {
        Rect const r(all.left + int(i), all.right - int(i), all.top + int(i), all.bottom - int(i));
        if (r.IsEmpty())
            return;
        unsigned int const a = colorAlpha * (i + 1) / (feather + 1);
        context->DrawRoundedBoxOutline(r, feather - i, 1, color, static_cast<unsigned char>(a));
    }
    Rect const inner(all.left + int(feather), all.right - int(feather), all.top + int(feather),
                     all.bottom - int(feather));
    if (!inner.IsEmpty())
        context->DrawBox(inner, DrawContext::Filled, color, static_cast<unsigned char>(colorAlpha));
}

void Text::Draw(DrawContext* context)
{
    if (preRender && !preRenderedBits)
        preRenderText();
    if (hasBackground)
        drawBackground(context);
    if (!text.IsEmpty())
    {
        int const textWidth = GetStringWidth(text);
        int x = 0;
        if (justification == HAlignCenter)
            x = (GetWidth() - textWidth) / 2;
        else if (justification == HAlignRight)
            x = GetWidth() - textWidth;
        int y = 0;
        if (HasDropShadow())
        {
            // Leave room on the left or top for a shadow thrown that way.
            if (dropShadowOffset.x < 0)
                x -= dropShadowOffset.x;
            if (dropShadowOffset.y < 0)
                y -= dropShadowOffset.y;
        }
        unsigned char const alpha = GetEffectiveAlpha();
        if (HasDropShadow())
            context->DrawText(GetFont(), Point(x + dropShadowOffset.x, y + dropShadowOffset.y),
                              text, *dropShadowColor, alpha);
        if (preRenderedBits)
            context->BitBlt(
                preRenderedBits.get(),
                Rect(0, preRenderedBits->GetWidth() - 1, 0, preRenderedBits->GetHeight() - 1),
                Point(x, y), alpha);
        else
            context->DrawText(GetFont(), Point(x, y), text, GetColor(), alpha);
    }
    Window::Draw(context);
}

bool Text::forwardToParent(Point const& p, bool (Window::*handler)(Point const&, unsigned int),
                           unsigned int flags)
{
    Window* up = GetParent();
    if (!up)
        return false;
    Rect const& r = GetGeometry();
    return (up->*handler)(Point(p.x + r.left, p.y + r.top), flags);
}

bool Text::onMousePress(Point const& p, unsigned int flags)
{
    return forwardToParent(p, &Window::onMousePress, flags);
}

bool Text::onMouseRelease(Point const& p, unsigned int flags)
{
    return forwardToParent(p, &Window::onMouseRelease, flags);
}

bool Text::onMouseDoubleClick(Point const& p, unsigned int flags)
{
    return forwardToParent(p, &Window::onMouseDoubleClick, flags);
}

bool Text::onMouseRightPress(Point const& p, unsigned int flags)
{
    return forwardToParent(p, &Window::onMouseRightPress, flags);
}

void Text::onSetColor()
{
    dropPreRendered();
}

void Text::onSetAlpha()
{
    dropPreRendered();
}

void Text::onSetColorProperty()
{
    dropPreRendered();
    Update();
}

} // namespace UI
