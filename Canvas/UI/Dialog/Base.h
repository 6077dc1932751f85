#pragma once

#include "Canvas/UI/Window.h"

namespace UI
{
namespace Dialog
{

/// The base of dialogs that a frame can hold as its active dialog. While it opens or closes
/// (animates), the frame answers mouse and keys with "not handled"; while a modal one is
/// visible, only its subtree receives the mouse.
class Base : public Window
{
public:
    /// Where the dialog stands in its show and hide animation.
    enum AnimationState
    {
        Closed = 0,
        Opening = 1,
        Open = 2,
        Closing = 3
    };

    Base(Frame* frame, Window* parent, String const& name, bool modal)
        : Window(frame, parent, name), modal(modal)
    {
    }

    bool IsModal() const { return modal; }
    void SetModal(bool m) { modal = m; }
    AnimationState GetAnimationState() const { return state; }
    void SetAnimationState(AnimationState s) { state = s; }
    /// True while opening or closing.
    bool IsAnimating() const { return state == Opening || state == Closing; }

private:
    bool modal;
    AnimationState state = Closed;
};

} // namespace Dialog
} // namespace UI
