#pragma once

#include "Canvas/UI/Window.h"
#include "TvBase/Util/Signal.h"

namespace UI
{

/// The press state machine that every clickable control shares. A member of the family only
/// adds how it looks and what a click means. Main thread only.
///
/// A press captures the mouse (in the modes that have a pressed state), and the capture is
/// released by the release message only. Alt with a press is the universal "reset to default":
/// it fires `signalAltClicked` and enters no press state. The activation key is 4096 (Enter),
/// and with `acceptReturn` also 13 (Return). The property "CommandID" (a string) is sent to the
/// window's command handler on each click when it is not empty.
class Button : public Window
{
public:
    /// What a press and a release do; the values are the ones serialised files use.
    enum Mode
    {
        /// Pressed while held; clicks on a release inside.
        Momentary = 0,
        /// Stays pressed after the release; a press while pressed does nothing.
        Latching = 1,
        /// Clicks at once on the press; no pressed state.
        Immediate = 2,
        /// Each press flips the pressed state and clicks at once.
        Toggle = 3
    };

    Button(Frame* frame, Window* parent, String const& name, Mode mode = Momentary);
    ~Button() override;

    /// A click, in the sense of the mode.
    Signal<> signalClicked;
    /// Only with double clicks enabled.
    Signal<> signalDoubleClicked;
    /// A right click, or the activation key with Shift in the momentary and immediate modes.
    Signal<> signalRightClicked;
    /// A left press with Alt held.
    Signal<> signalAltClicked;
    /// Around a press, when press signals are enabled.
    Signal<> signalPressStarted;
    Signal<> signalPressEnded;
    /// True when a press starts and false when it ends, with the two signals above.
    Signal<bool> signalPressEvent;

    /// Stores the visual state; on a change runs `onPressedChange` and repaints.
    void SetPressed(bool on);
    bool IsPressed() const { return pressed; }
    /// As `SetPressed` for the keyboard's pressed state, without the virtual call.
    void SetKeyPressed(bool on);
    bool IsKeyPressed() const { return keyPressed; }
    bool IsRightPressed() const { return rightPressed; }

    void SetMode(Mode m) { mode = m; }
    Mode GetMode() const { return mode; }
    /// The part of the window that takes clicks, in window coordinates; an empty rectangle
    /// means the whole window.
    void SetClickableRect(Rect const& r) { clickableRect = r; }
    void SetRightClickEnabled(bool on) { rightClickEnabled = on; }
    bool IsRightClickEnabled() const { return rightClickEnabled; }
    void SetFocusOnPress(bool on) { focusOnPress = on; }
    bool IsFocusOnPress() const { return focusOnPress; }
    void SetPressSignalsEnabled(bool on) { pressSignalsEnabled = on; }
    bool IsPressSignalsEnabled() const { return pressSignalsEnabled; }
    /// Return (13) activates as well as Enter (4096).
    void SetAcceptReturn(bool on) { acceptReturn = on; }
    bool IsAcceptReturn() const { return acceptReturn; }
    void SetDoubleClickEnabled(bool on) { doubleClickEnabled = on; }
    bool IsDoubleClickEnabled() const { return doubleClickEnabled; }
    void SetCaptionOverride(unsigned int value) { captionOverride = value; }
    unsigned int GetCaptionOverride() const { return captionOverride; }

    /// The "CommandID" property; empty when none is set.
    String GetCommandID() const;
    void SetCommandID(String const& id);

    String GetWindowType() const override { return String("Button"); }
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

    /// A click as a test driver makes it: what the activation key does, without Shift and
    /// without leaving the keyboard's pressed state behind.
    virtual void UIAutomationClick();

    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onMouseDoubleClick(Point const& p, unsigned int flags) override;
    bool onMouseRelease(Point const& p, unsigned int flags) override;
    bool onMouseMove(Point const& p, unsigned int flags) override;
    bool onMouseRightPress(Point const& p, unsigned int flags) override;
    bool onMouseRightRelease(Point const& p, unsigned int flags) override;
    bool onKeyPress(unsigned int key, unsigned int flags, bool repeat) override;
    bool onKeyRelease(unsigned int key, unsigned int flags) override;
    void onEnableChange() override;

    /// `clickableRect`, or the window's own size when it is empty.
    Rect getClickableRect() const;
    /// Whether `p` (window coordinates) takes a click; edges are inclusive. Shaped buttons
    /// override it.
    virtual bool isPixelClickable(Point const& p) const;

protected:
    /// The base alpha while disabled.
    virtual unsigned char getDisabledAlpha() const { return 128; }
    virtual void onPressedChange() {}
    /// Sends a non-empty "CommandID" to the window's command handler.
    virtual void slotExecuteCommandProperty();

    bool isActivationKey(unsigned int key) const;
    bool holdsCapture() const;

private:
    void enterPressedState();
    /// Moves the press state as a click without the mouse does in this mode: a latching button
    /// goes down and a toggle flips. False when a latching button is already down and the click
    /// does nothing.
    bool takeClick();

    unsigned int captionOverride = 0;
    bool pressed = false;
    bool keyPressed = false;
    bool rightPressed = false;
    Mode mode;
    Rect clickableRect;
    bool rightClickEnabled = true;
    bool focusOnPress = false;
    bool pressSignalsEnabled = false;
    bool acceptReturn = false;
    bool doubleClickEnabled = false;
};

} // namespace UI
