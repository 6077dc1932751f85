#include "Canvas/UI/CheckBox.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/detail/ButtonDrawing.h"
#include "TvBase/Controller/BoolParamMemory.h"

namespace UI
{

namespace
{
int const kLabelGap = 4;
}

CheckBox::CheckBox(Frame* frame, Window* parent, String const& name)
    : Button(frame, parent, name, Immediate), ParamView<bool>(this, true)
{
    init(Traits(), String(""));
    ensureController();
}

CheckBox::CheckBox(Frame* frame, Window* parent, String const& name, Controller::BoolParam* param)
    : Button(frame, parent, name, Immediate), ParamView<bool>(this, false)
{
    init(Traits(), String(""));
    if (param)
        SetController(param);
    else
        ensureController();
}

CheckBox::CheckBox(Frame* frame, Window* parent, String const& name, String const& keyPath)
    : Button(frame, parent, name, Immediate), ParamView<bool>(this, false)
{
    init(Traits(), String(""));
    SetControllerFromID(keyPath);
}

CheckBox::~CheckBox() = default;

void CheckBox::init(Traits const& traits, String const& labelText)
{
    CreateProperty("Label", labelText);
    label = new MultiText(GetFrame(), this, String("CheckBox %1 Label Text").Arg(GetName()),
                          labelText, traits.labelFont, false, HAlignLeft, traits.lineSpacing);
    label->SetDynamicLayoutMode(DynamicLayoutNever);
    SetGeometry(GetGeometry().left, GetGeometry().top, traits.size.width, traits.size.height);
    signalClicked.Connect(&CheckBox::slotUserToggle, this);
    signalAltClicked.Connect(&CheckBox::slotUserReset, this);
    GetPropertyChangedSignal("Label")->Connect(&CheckBox::slotLabelChanged, this);
    slotLabelChanged();
}

void CheckBox::ensureController()
{
    if (!controller)
        SetOwnedController(
            std::unique_ptr<Controller::BoolParam>(new Controller::BoolParamMemory(false)));
}

void CheckBox::slotUserToggle()
{
    if (!userGesture.Toggle(controller))
        return;
    signalUserToggled();
    Update();
    onPostUserToggled();
}

void CheckBox::slotUserReset()
{
    if (userGesture.Reset(controller))
        Update();
}

void CheckBox::slotLabelClicked()
{
    if (IsEnabled())
        signalClicked();
}

void CheckBox::SetChecked(bool checked)
{
    if (controller)
        controller->set(checked);
}

bool CheckBox::IsChecked() const
{
    return controller && controller->get();
}

void CheckBox::SetLabel(String const& text)
{
    SetProperty<String>("Label", text);
}

String CheckBox::GetLabel() const
{
    checked_value<String> text = GetProperty<String>("Label");
    return text ? *text : String("");
}

void CheckBox::SetFillWhenChecked(bool on, unsigned int color)
{
    fillWhenChecked = on;
    fillColor = color;
    Update();
}

void CheckBox::slotLabelChanged()
{
    label->SetText(GetLabel());
    onSetGeometry();
}

void CheckBox::onSetGeometry()
{
    if (!label)
        return;
    int const x = GetHeight() + kLabelGap;
    label->SetGeometry(x, 0, std::max(0, GetWidth() - x), GetHeight());
    label->SetHeightToFit();
}

void CheckBox::onControllerValueChanged(bool value)
{
    SetPressed(value);
    updatePulseOverlayRegistration();
    Update();
}

void CheckBox::onRebindController()
{
    SetPressed(controller && controller->get());
    updatePulseOverlayRegistration();
}

void CheckBox::SetPulseOverlayTimer(PulseOverlayTimer* timer)
{
    pulse.SetTimer(timer);
    updatePulseOverlayRegistration();
}

void CheckBox::updatePulseOverlayRegistration()
{
    pulse.Update(IsChecked());
}

void CheckBox::onPulseOverlayChange(State, unsigned int alpha)
{
    pulse.SetAlpha(alpha);
    Update();
}

// ---- SimpleCheckBox

SimpleCheckBox::SimpleCheckBox(Frame* frame, Window* parent, String const& name)
    : CheckBox(frame, parent, name)
{
}

SimpleCheckBox::SimpleCheckBox(Frame* frame, Window* parent, String const& name,
                               Controller::BoolParam* param)
    : CheckBox(frame, parent, name, param)
{
}

SimpleCheckBox::SimpleCheckBox(Frame* frame, Window* parent, String const& name,
                               String const& keyPath)
    : CheckBox(frame, parent, name, keyPath)
{
}

void SimpleCheckBox::Draw(DrawContext* context)
{
    int const side = GetHeight();
    unsigned char const alpha = detail::AddAlpha(GetEffectiveAlpha(), IsEnabledTo() ? 0 : 80);
    unsigned int const color = GetColor();
    context->DrawBox(Rect(0, side - 1, 0, side - 1), DrawContext::Outline, color, alpha);
    if (IsChecked())
    {
        unsigned int const inner = IsFillWhenChecked() ? GetFillColor() : color;
        context->DrawBox(Rect(1, side - 2, 1, side - 2), DrawContext::Filled, inner,
                         detail::AddAlpha(alpha, 100));
    }
    Window::Draw(context);
}

bool CheckBox::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                                TestAutomation::RPCReplyInterface* reply)
{
    if (!Button::ProcessTARequest(request, args, reply))
        return false;
    reply->SetValue("isOn", IsChecked() ? "true" : "false");
    reply->SetValue("label", GetLabel().CStr());
    return true;
}

} // namespace UI
