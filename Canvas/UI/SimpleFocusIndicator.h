#pragma once

#include "Canvas/UI/FocusIndicator.h"

namespace UI
{

/// The default look of the focus indicator: a ring two pixels wide with rounded corners, in
/// the palette's "FocusIndicatorColor" (a clear blue without one), drawn around the focused
/// window with a pixel of room.
class SimpleFocusIndicator : public FocusIndicator
{
public:
    /// The ring's colour when the palette has none.
    static constexpr unsigned int DefaultColor = 0xFF2A7BDEu;
    /// How far the ring stands out around the focused window's rectangle.
    static constexpr int Margin = 3;
    static constexpr unsigned int Thickness = 2;

    SimpleFocusIndicator(Frame* frame, Window* parent, String const& name);

    Rect AdjustFocusRect(Rect const& focusRect) const override;
    void Draw(DrawContext* context) override;
};

} // namespace UI
