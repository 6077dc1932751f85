#pragma once

#include "Canvas/UI/Window.h"

namespace UI
{

/// The window that marks the focused window while the frame's focus timer runs. It is a
/// top-level window of its frame, which keeps it above every other top-level window, and it is
/// never saved in a layout. It is disabled, so that the mouse reaches the windows beneath it.
/// The look is the theme's: subclasses draw it and may widen the rectangle in
/// `AdjustFocusRect`.
class FocusIndicator : public Window
{
public:
    /// How long a move from one focused window to the next takes.
    static constexpr unsigned int AnimationMillis = 125;

    FocusIndicator(Frame* frame, Window* parent, String const& name);

    /// The rectangle (frame coordinates) to cover for a focused window's focus rectangle.
    virtual Rect AdjustFocusRect(Rect const& focusRect) const { return focusRect; }
    /// Moves the indicator to `target` (frame coordinates) over `AnimationMillis` by the
    /// frame's animation handler; at once when `mode` differs from the present one, or when
    /// the handler is off and `animate` is false.
    virtual void Animate(Rect const& target, unsigned int mode, bool animate);
    /// Stops a running move; the indicator stays where it is.
    virtual void EndAnimation();

    unsigned int GetMode() const { return mode; }
    void SetMode(unsigned int m) { mode = m; }
    /// Places the indicator on `target` (frame coordinates) at once.
    void MoveTo(Rect const& target);

private:
    unsigned int mode = 0;
    unsigned int animationId = 0;
};

} // namespace UI
