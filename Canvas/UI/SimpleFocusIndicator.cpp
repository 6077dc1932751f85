#include "Canvas/UI/SimpleFocusIndicator.h"

#include "Canvas/UI/DrawContext.h"

namespace UI
{

SimpleFocusIndicator::SimpleFocusIndicator(Frame* frame, Window* parent, String const& name)
    : FocusIndicator(frame, parent, name)
{
}

Rect SimpleFocusIndicator::AdjustFocusRect(Rect const& focusRect) const
{
    if (focusRect.IsEmpty())
        return focusRect;
    return Rect(focusRect.left - Margin, focusRect.right + Margin, focusRect.top - Margin,
                focusRect.bottom + Margin);
}

void SimpleFocusIndicator::Draw(DrawContext* context)
{
    checked_value<unsigned int> const color = GetPaletteColor(String("FocusIndicatorColor"));
    context->DrawRoundedBoxOutline(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), 3, Thickness,
                                   color ? *color : DefaultColor, GetEffectiveAlpha());
}

} // namespace UI
