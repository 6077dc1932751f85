#pragma once

#include "Canvas/UI/Button.h"
#include "Canvas/UI/ParamView.h"
#include "Canvas/UI/PulseOverlayTimer.h"
#include "Canvas/UI/detail/BoolButtonState.h"

namespace UI
{

class MultiText;

/// A box with a label that toggles a bool parameter. Without a parameter of its own it keeps
/// its state in a parameter it owns, so `SetChecked` and clicks work alike. A click inverts the
/// value (inside a user gesture), Alt-click restores the parameter's default, and a click on
/// the label acts as a click on the box. The artwork is drawn by subclasses or images.
class CheckBox : public Button, public ParamView<bool>, public PulseOverlayTimerClient
{
public:
    /// Defaults applied by `init`.
    struct Traits
    {
        Size size = Size(100, 10);
        int lineSpacing = -3;
        checked_value<unsigned int> labelFont;
    };

    CheckBox(Frame* frame, Window* parent, String const& name);
    CheckBox(Frame* frame, Window* parent, String const& name, Controller::BoolParam* param);
    /// `keyPath` is resolved through the frame's key-value coding; unresolved, the box is bound
    /// to nothing and clicks do nothing.
    CheckBox(Frame* frame, Window* parent, String const& name, String const& keyPath);
    ~CheckBox() override;

    /// After each change made by the user.
    Signal<> signalUserToggled;

    /// Sets the value without the user signal.
    void SetChecked(bool checked);
    bool IsChecked() const;
    /// The "Label" property; the label child shows it.
    void SetLabel(String const& text);
    String GetLabel() const;
    /// Draws a filled box while checked, in `color`.
    void SetFillWhenChecked(bool on, unsigned int color);
    bool IsFillWhenChecked() const { return fillWhenChecked; }
    unsigned int GetFillColor() const { return fillColor; }
    /// The label child, "CheckBox <name> Label Text"; never saved.
    MultiText* GetLabelWindow() const { return label; }
    /// Acts as a click on the box.
    void slotLabelClicked();
    void SetPulseOverlayTimer(PulseOverlayTimer* timer);
    unsigned int GetPulseAlpha() const { return pulse.GetAlpha(); }

    void onSetGeometry() override;
    String GetWindowType() const override { return String("CheckBox"); }
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;
    void onPulseOverlayChange(State state, unsigned int alpha) override;

protected:
    void init(Traits const& traits, String const& labelText);
    void slotUserToggle();
    void slotUserReset();
    /// Fits the label to its text beside the box and the window around both.
    void slotLabelChanged();
    virtual void onPostUserToggled() {}
    void onControllerValueChanged(bool value) override;
    void onRebindController() override;
    void updatePulseOverlayRegistration();

private:
    void ensureController();

    MultiText* label = nullptr;
    bool fillWhenChecked = false;
    unsigned int fillColor = 0xFF000000u;
    detail::UserGesture userGesture;
    detail::PulseMembership pulse{this};
};

/// The default-look check box: a square of the window's height outlined in the window's
/// colour, with a filled inner square while checked.
class SimpleCheckBox : public CheckBox
{
public:
    SimpleCheckBox(Frame* frame, Window* parent, String const& name);
    SimpleCheckBox(Frame* frame, Window* parent, String const& name, Controller::BoolParam* param);
    SimpleCheckBox(Frame* frame, Window* parent, String const& name, String const& keyPath);

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("SimpleCheckBox"); }
};

} // namespace UI
