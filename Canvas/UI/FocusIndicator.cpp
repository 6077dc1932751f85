#include "Canvas/UI/FocusIndicator.h"

namespace UI
{

FocusIndicator::FocusIndicator(Frame* frame, Window* parent, String const& name)
    : Window(frame, parent, name)
{
    SetDynamicLayoutMode(DynamicLayoutNever);
}

void FocusIndicator::Animate(Rect const& target, unsigned int m, bool)
{
    mode = m;
    MoveTo(target);
}

void FocusIndicator::MoveTo(Rect const& target)
{
    SetGlobalGeometry(target.left, target.top, target.Width(), target.Height());
}

} // namespace UI
