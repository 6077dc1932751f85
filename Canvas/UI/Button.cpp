#include "Canvas/UI/Button.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/KeyCode.h"

namespace UI
{

namespace
{
unsigned int const kShiftBit = 16;
String const kCommandProperty("CommandID");
} // namespace

Button::Button(Frame* frame, Window* parent, String const& name, Mode mode)
    : Window(frame, parent, name), mode(mode)
{
    CreateProperty<String>(kCommandProperty, String("CommandID"), String(""));
    signalClicked.Connect(&Button::slotExecuteCommandProperty, this);
}

Button::~Button() = default;

void Button::SetPressed(bool on)
{
    if (pressed == on)
        return;
    pressed = on;
    onPressedChange();
    Update();
}

void Button::SetKeyPressed(bool on)
{
    if (keyPressed == on)
        return;
    keyPressed = on;
    Update();
}

String Button::GetCommandID() const
{
    checked_value<String> id = GetProperty<String>(kCommandProperty);
    return id ? *id : String("");
}

void Button::SetCommandID(String const& id)
{
    SetProperty<String>(kCommandProperty, id);
}

bool Button::takeClick()
{
    switch (mode)
    {
    case Momentary:
    case Immediate:
        break;
    case Latching:
        if (pressed)
            return false;
        SetPressed(true);
        break;
    case Toggle:
        SetPressed(!pressed);
        break;
    }
    return true;
}

void Button::UIAutomationClick()
{
    if (takeClick())
        signalClicked();
    Update();
}

Rect Button::getClickableRect() const
{
    if (clickableRect.IsEmpty())
        return Rect(0, GetWidth() - 1, 0, GetHeight() - 1);
    return clickableRect;
}

bool Button::isPixelClickable(Point const& p) const
{
    return getClickableRect().Contains(p);
}

bool Button::holdsCapture() const
{
    return GetFrame() && GetFrame()->GetMouseCapture() == this;
}

bool Button::isActivationKey(unsigned int key) const
{
    return key == KeyCode::Enter || (acceptReturn && key == KeyCode::Return);
}

void Button::enterPressedState()
{
    GetFrame()->SetMouseCapture(this);
    SetPressed(true);
    if (pressSignalsEnabled)
    {
        signalPressStarted();
        signalPressEvent(true);
    }
    Update();
}

bool Button::onMousePress(Point const& p, unsigned int)
{
    if (holdsCapture())
        return true;
    if (!isPixelClickable(p))
        return false;
    if (focusOnPress)
        SetFocus();
    if (KeyCode::IsAltPressed())
    {
        signalAltClicked();
        return true;
    }
    switch (mode)
    {
    case Momentary:
        enterPressedState();
        break;
    case Latching:
        if (!pressed)
            enterPressedState();
        break;
    case Immediate:
        signalClicked();
        break;
    case Toggle:
        SetPressed(!pressed);
        signalClicked();
        break;
    }
    return true;
}

bool Button::onMouseDoubleClick(Point const& p, unsigned int flags)
{
    // Without double clicks the message is an ordinary press: two fast clicks make two clicks.
    if (!doubleClickEnabled)
        return onMousePress(p, flags);
    if (holdsCapture())
        return true;
    if (!isPixelClickable(p))
        return false;
    GetFrame()->SetMouseCapture(this);
    SetPressed(true);
    signalDoubleClicked();
    Update();
    return true;
}

bool Button::onMouseRelease(Point const& p, unsigned int)
{
    if (!holdsCapture() || rightPressed)
        return false;
    GetFrame()->ReleaseMouseCapture();
    rightPressed = false;
    if (pressSignalsEnabled)
    {
        signalPressEnded();
        signalPressEvent(false);
    }
    if (mode >= Toggle)
        return false;
    if (mode == Momentary)
        SetPressed(false);
    Update();
    // A release outside the button cancels the click.
    if (isPixelClickable(p))
        signalClicked();
    return true;
}

bool Button::onMouseMove(Point const& p, unsigned int)
{
    if (!holdsCapture())
        return false;
    if (mode == Immediate || rightPressed)
        return true;
    // Dragging off the button pops it up, and back on pushes it down again.
    if (mode == Momentary || mode == Latching)
        SetPressed(isPixelClickable(p));
    return true;
}

bool Button::onMouseRightPress(Point const& p, unsigned int)
{
    if (!rightClickEnabled)
        return false;
    if (holdsCapture())
        return true;
    if (!isPixelClickable(p))
        return false;
    GetFrame()->SetMouseCapture(this);
    rightPressed = true;
    if (focusOnPress)
        SetFocus();
    return true;
}

bool Button::onMouseRightRelease(Point const& p, unsigned int)
{
    if (!rightClickEnabled || !holdsCapture() || !rightPressed)
        return false;
    GetFrame()->ReleaseMouseCapture();
    rightPressed = false;
    if (pressed)
        SetPressed(false);
    if (isPixelClickable(p))
        signalRightClicked();
    return true;
}

bool Button::onKeyPress(unsigned int key, unsigned int flags, bool)
{
    if (!isActivationKey(key))
        return false;
    if (takeClick())
    {
        // A toggle's key shows the state it left; the others show the key down.
        SetKeyPressed(mode == Toggle ? pressed : true);
        // Shift makes the key a right click on the buttons that keep no state.
        if ((flags & kShiftBit) && (mode == Momentary || mode == Immediate))
            signalRightClicked();
        else
            signalClicked();
    }
    Update();
    return true;
}

bool Button::onKeyRelease(unsigned int, unsigned int)
{
    SetKeyPressed(false);
    Update();
    return true;
}

void Button::onEnableChange()
{
    if (IsEnabled())
    {
        SetBaseAlpha(255);
        return;
    }
    keyPressed = false;
    SetBaseAlpha(getDisabledAlpha());
}

void Button::slotExecuteCommandProperty()
{
    String const id = GetCommandID();
    if (!id.IsEmpty())
        ExecuteCommand(id, this);
}

bool Button::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                              TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    reply->SetValue("isPressed", pressed ? "true" : "false");
    return true;
}

} // namespace UI
