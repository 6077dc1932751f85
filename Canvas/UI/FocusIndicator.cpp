#include "Canvas/UI/FocusIndicator.h"

#include "Canvas/UI/AnimationHandler.h"
#include "Canvas/UI/Frame.h"

namespace UI
{

FocusIndicator::FocusIndicator(Frame* frame, Window* parent, String const& name)
    : Window(frame, parent, name)
{
    SetDynamicLayoutMode(DynamicLayoutNever);
    SetEnabled(false);
}

void FocusIndicator::Animate(Rect const& target, unsigned int m, bool animate)
{
    AnimationHandler* handler = GetFrame() ? GetFrame()->GetAnimationHandler() : nullptr;
    bool const modeChanged = m != mode;
    mode = m;
    // Every handled key asks again; a move already under way to the same place goes on.
    AnimationHandler::Info const* running = handler ? handler->GetInfo(animationId) : nullptr;
    if (!modeChanged && running && running->window == this && running->rectTo == target)
        return;
    EndAnimation();
    if (!handler || modeChanged)
    {
        MoveTo(target);
        return;
    }
    // A parentless window's own geometry is in frame coordinates.
    animationId = handler->Geometry(checked_value<unsigned int>(), this, AnimationMillis,
                                    GetGeometry(), target, checked_value<unsigned int>(),
                                    checked_value<AnimationHandler::Callback>(), animate);
}

void FocusIndicator::EndAnimation()
{
    AnimationHandler* handler = GetFrame() ? GetFrame()->GetAnimationHandler() : nullptr;
    // The id of a move that has run out may since belong to another window's animation.
    AnimationHandler::Info const* info = handler ? handler->GetInfo(animationId) : nullptr;
    if (info && info->window == this)
        handler->EndAnimation(animationId, false);
    animationId = 0;
}

void FocusIndicator::MoveTo(Rect const& target)
{
    SetGlobalGeometry(target.left, target.top, target.Width(), target.Height());
}

} // namespace UI
