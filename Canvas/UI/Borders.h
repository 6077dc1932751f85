#pragma once

#include "Canvas/UI/Rect.h"

namespace UI
{

class DrawContext;

/// The frame drawn around a widget's rectangle, in one of a few styles.
class Borders
{
public:
    enum BorderStyle : int
    {
        None = 0,
        Outline = 1,
        ShadowFromTop = 2,
        ShadowFromTopLeft = 3,
        RoundedRect = 4,
        RoundedRectShadowBottomRight = 5
    };

    explicit Borders(BorderStyle style = None, unsigned int color = 0xFF000000u)
        : style(style), color(color)
    {
    }

    void SetStyle(BorderStyle s) { style = s; }
    BorderStyle GetStyle() const { return style; }
    void SetColor(unsigned int c) { color = c; }
    unsigned int GetColor() const { return color; }
    /// The width of the border on each side: 0 for `None`, otherwise 1.
    int GetThickness() const { return style == None ? 0 : 1; }

    /// Draws the border inside `rect` (local coordinates). Unknown styles draw nothing.
    void Draw(DrawContext* context, Rect const& rect, unsigned char alpha) const;

private:
    BorderStyle style;
    unsigned int color;
};

} // namespace UI
