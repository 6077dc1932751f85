#include "Canvas/UI/Borders.h"

#include "Canvas/UI/DrawContext.h"

namespace UI
{

void Borders::Draw(DrawContext* context, Rect const& r, unsigned char alpha) const
{
    if (r.IsEmpty() || alpha == 0)
        return;
    // Shadows are the border colour at a third of its strength.
    unsigned char const shadowAlpha = static_cast<unsigned char>(alpha / 3);
    switch (style)
    {
    case Outline:
        context->DrawBox(r, DrawContext::Outline, color, alpha);
        break;
    case ShadowFromTop:
        context->DrawBox(Rect(r.left, r.right, r.top, r.top), DrawContext::Filled, color, alpha);
        if (r.Height() > 1)
            context->DrawBox(Rect(r.left, r.right, r.top + 1, r.top + 1), DrawContext::Filled,
                             color, shadowAlpha);
        break;
    case ShadowFromTopLeft:
        context->DrawBox(Rect(r.left, r.right, r.top, r.top), DrawContext::Filled, color, alpha);
        context->DrawBox(Rect(r.left, r.left, r.top, r.bottom), DrawContext::Filled, color, alpha);
        break;
    case RoundedRect:
        context->DrawRoundedBoxOutline(r, 3, 1, color, alpha);
        break;
    case RoundedRectShadowBottomRight:
        if (r.Width() > 1 && r.Height() > 1)
        {
            context->DrawRoundedBoxOutline(Rect(r.left + 1, r.right, r.top + 1, r.bottom), 3, 1,
                                           color, shadowAlpha);
            context->DrawRoundedBoxOutline(Rect(r.left, r.right - 1, r.top, r.bottom - 1), 3, 1,
                                           color, alpha);
        }
        break;
    default:
        break;
    }
}

} // namespace UI
