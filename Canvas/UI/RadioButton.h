#pragma once

#include "Canvas/UI/Button.h"
#include "Canvas/UI/ParamView.h"

#include <memory>

namespace Controller
{
class EnumToBool;
}

namespace UI
{

/// One value of an enum parameter: checked while the parameter holds `value`, and a click
/// writes `value` (inside a user gesture). A radio button cannot be unchecked by a click.
/// Made from a lone name it is bound to nothing until `SetController` or `SetEnumController`;
/// then it keeps its own checked state.
class RadioButton : public Button, public ParamView<bool>
{
public:
    RadioButton(Frame* frame, Window* parent, String const& name);
    RadioButton(Frame* frame, Window* parent, String const& name, String const& keyPath,
                unsigned int value);
    RadioButton(Frame* frame, Window* parent, String const& name, Controller::EnumParam* param,
                unsigned int value);
    ~RadioButton() override;

    /// After a click changed the parameter.
    Signal<> signalUserToggled;
    /// With the new checked state, whenever it changes.
    Signal<bool> signalToggled;

    /// Binds to `value` of `param` (null unbinds).
    void SetEnumController(Controller::EnumParam* param, unsigned int value);
    Controller::EnumParam* GetEnumController() const { return enumParam; }
    unsigned int GetValue() const { return value; }
    void SetLabel(String const& text);
    String GetLabel() const;
    bool IsChecked() const { return checked; }
    /// Writes the value when checking a bound button; unbound, only the look changes.
    void SetChecked(bool on);

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("RadioButton"); }
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

protected:
    void slotToggle();
    void slotUpdateFromController();
    /// The enum parameter at `path` through the frame; null when nothing answers.
    Controller::EnumParam* lookupEnumController(String const& path, unsigned int value);
    void onControllerValueChanged(bool on) override;
    void onRebindController() override;

private:
    void init();
    void setCheckedLook(bool on);

    Controller::EnumParam* enumParam = nullptr;
    std::unique_ptr<Controller::EnumToBool> view;
    unsigned int value = 0;
    bool checked = false;
    bool settingFromUser = false;
};

} // namespace UI
