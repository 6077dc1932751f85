#pragma once

#include "Canvas/UI/ParamView.h"
#include "Canvas/UI/SliderScale.h"
#include "Canvas/UI/Window.h"

#include <agg_path_storage.h>

namespace UI
{

class AGGInlineRenderer;

/// What the knob, the slider and the scrub text share: a window bound to a float parameter
/// through a run of positions and a taper, with the keyboard, wheel and typing that users of
/// audio software expect. Without a parameter of its own (made by type name, or before its key
/// path resolves) it keeps its value in one it owns, 0 to 1.
///
/// Keys (while focused): arrows step one position, Page Up and Page Down a tenth of the range,
/// Home and End go to the ends, Enter or F2 opens the value for typing. The wheel steps one
/// position a notch. A double click opens the value for typing; a text that does not parse
/// leaves the value alone, and a number outside the range is clamped by the parameter. Alt with
/// a press restores the parameter's default and emits `signalReset`. Ctrl+C copies the value
/// and Ctrl+V pastes one; a right click opens a menu with the same and with typing and reset.
///
/// Answers the test driver's "GetInfo" with "value", "min", "max", "default", "position",
/// "label", "text" (the readout), "unit" and "role".
class ParamControl : public Window, public ParamView<float>
{
public:
    /// A control of positions 0 to `positionCount` on a parameter of its own.
    ParamControl(Frame* frame, Window* parent, String const& name, int positionCount);
    ParamControl(Frame* frame, Window* parent, String const& name, Controller::FloatParam* param);
    /// `keyPath` is resolved through the frame's key-value coding; unresolved, the control is
    /// bound to nothing and ignores the user.
    ParamControl(Frame* frame, Window* parent, String const& name, String const& keyPath);
    ~ParamControl() override;

    /// After Alt with a press wrote the default.
    Signal<> signalReset;
    /// At the end of each user change, with the text that names it for an undo list.
    Signal<String const&> signalUndoEvent;

    /// Also moves the position to the parameter's present value.
    void SetPositionRange(value_range<int> const& range);
    value_range<int> const& GetPositionRange() const { return positionRange; }
    int GetPosition() const { return position; }
    void SetScaleType(SliderScaleType type);
    SliderScaleType GetScaleType() const { return scaleType; }
    /// Where the ratio tapers put 1.0, in percent of the positions.
    void SetMidpointPercent(float percent);
    /// Replaces the parameter's range for the taper (unset: the parameter's own).
    void SetOverrideValueRange(checked_value<value_range<float>> const& range);
    /// The range the taper runs over; 0 to 1 without a parameter.
    value_range<float> GetValueRange() const;
    /// The parameter's value; 0 without one.
    float GetValue() const;
    /// Writes the value as the program's own change (no gesture, no user signal).
    void SetValue(float value);
    float PositionToValue(int pos) const;
    int ValueToPosition(float value) const;

    /// The "Label" property.
    void SetLabel(String const& label);
    String GetLabel() const;
    void SetNumDecimalPlaces(int places);
    int GetNumDecimalPlaces() const { return decimalPlaces; }
    /// Shows "+" before positive values in the readout.
    void SetShowPlusSign(bool on);
    /// The unit beside the value: the parameter's own unless set here.
    void SetUnits(String const& units);
    String GetUnits() const;
    /// The readout's text for `value`: "%1" with the decimal places, "-inf" at a minimum that
    /// stands for minus infinity.
    virtual String formatValue(float value) const;
    String GetReadoutText() const { return formatValue(GetValue()); }
    /// The role that accessibility and the test driver see.
    virtual String GetAccessibilityRole() const { return String(""); }

    /// Opens the value for typing over the control (a nested loop until Enter, Escape or a click
    /// elsewhere).
    void slotEditDialog();
    /// The value as copied to the clipboard, and a pasted or typed text back (unset when it does
    /// not parse).
    String valueToCopyString() const;
    checked_value<float> stringToValue(String const& text) const;
    /// The value's text onto the clipboard; false when there is no parameter or the desktop
    /// refuses it.
    bool CopyValue() const;
    /// The clipboard's text as a typed value; false, with the value alone, when it does not
    /// parse.
    bool PasteValue();

    /// The context menu's items.
    enum MenuItem
    {
        MenuCopy = 1,
        MenuPaste,
        MenuEdit,
        MenuReset
    };
    /// Carries out a context menu item; unknown ids do nothing.
    void slotMenuItemSelected(int id);
    /// A typed value: written in one gesture when it parses. False when it does not.
    bool handleUserEdit(String const& text);
    /// Writes the parameter's default in one gesture and emits `signalReset`.
    void handleUserReset();
    /// Emits `signalUndoEvent` with "%1: %2%3": the label (or name), the value and the units.
    void postUndoEvent();

    bool NeedsArrowKeys() const override { return true; }
    bool NeedsEnterKey() const override { return true; }
    bool onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat) override;
    bool onMouseWheel(Point const& p, int delta, unsigned int flags) override;
    bool onMouseDoubleClick(Point const& p, unsigned int flags) override;
    /// Opens the context menu at the press.
    bool onMouseRightPress(Point const& p, unsigned int flags) override;
    void onReceiveFocus() override { Update(); }
    void onLoseFocus() override { Update(); }
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

protected:
    /// Moves to `pos` (clamped) as the user's change: inside the open gesture when one is open,
    /// in a gesture of its own otherwise. True when the value changed.
    bool setUserPosition(int pos);
    /// Writes `value` as the user's change, in a gesture as `setUserPosition` does.
    bool setUserValue(float value);
    /// `pos` held inside the positions (and whatever else a subclass limits it to).
    virtual int clampPosition(int pos) const;
    /// Starts and ends a drag gesture: capture, focus, `grabController`; then the release.
    void beginDrag();
    void endDrag();
    bool isDragging() const;
    /// Called after the position or the value changed, and after a rebind: readouts follow.
    virtual void onValueShown() {}
    /// The text for the inline editor's width and place: the control's own rectangle.
    virtual Rect editRect() const;
    /// Draws a focus ring around `r` (window coordinates) while focused.
    void drawFocusRing(DrawContext* context, Rect const& r) const;

    void onControllerValueChanged(float value) override;
    void onRebindController() override;

    /// Fills `path` in `color` (0xAARRGGBB) at `alpha` through `renderer`.
    static void fillPath(AGGInlineRenderer& renderer, agg::path_storage& path, unsigned int color,
                         unsigned char alpha);

    int position = 0;
    value_range<int> positionRange;
    SliderScaleType scaleType = ScaleLinear;
    float midpointPercent = 50.0f;
    checked_value<value_range<float>> overrideValueRange;
    int decimalPlaces = 2;
    bool showPlusSign = false;
    checked_value<String> units;

private:
    void init(int positionCount);
    void syncPosition();

    bool dragging = false;
    float wheelRemainder = 0.0f;
};

} // namespace UI
