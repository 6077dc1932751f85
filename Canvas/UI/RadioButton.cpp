#include "Canvas/UI/RadioButton.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/detail/ButtonDrawing.h"
#include "TvBase/Controller/EnumToBool.h"

#include <boost/any.hpp>

namespace UI
{

RadioButton::RadioButton(Frame* frame, Window* parent, String const& name)
    : Button(frame, parent, name, Immediate), ParamView<bool>(this, false)
{
    init();
}

RadioButton::RadioButton(Frame* frame, Window* parent, String const& name, String const& keyPath,
                         unsigned int value)
    : Button(frame, parent, name, Immediate), ParamView<bool>(this, false)
{
    init();
    SetEnumController(lookupEnumController(keyPath, value), value);
}

RadioButton::RadioButton(Frame* frame, Window* parent, String const& name,
                         Controller::EnumParam* param, unsigned int value)
    : Button(frame, parent, name, Immediate), ParamView<bool>(this, false)
{
    init();
    SetEnumController(param, value);
}

RadioButton::~RadioButton()
{
    // The view must stop talking to this window before its parameter goes.
    SetController(nullptr);
}

void RadioButton::init()
{
    CreateProperty("Label", String(""));
    GetPropertyChangedSignal("Label")->Connect(static_cast<void (Window::*)()>(&Window::Update),
                                               this);
    signalClicked.Connect(&RadioButton::slotToggle, this);
}

Controller::EnumParam* RadioButton::lookupEnumController(String const& path, unsigned int)
{
    if (!GetFrame() || path.IsNull() || path.IsEmpty())
        return nullptr;
    boost::any found = GetFrame()->GetValueForKeyPath(path);
    Controller::EnumParam** param = boost::any_cast<Controller::EnumParam*>(&found);
    return param ? *param : nullptr;
}

void RadioButton::SetEnumController(Controller::EnumParam* param, unsigned int newValue)
{
    SetController(nullptr);
    enumParam = param;
    value = newValue;
    view.reset(param ? new Controller::EnumToBool(param, newValue) : nullptr);
    if (view)
        SetController(view.get());
}

void RadioButton::slotToggle()
{
    if (settingFromUser)
        return;
    if (!controller)
    {
        if (!checked)
        {
            setCheckedLook(true);
            signalUserToggled();
        }
        return;
    }
    if (controller->get())
        return;
    settingFromUser = true;
    controller->SetWithGesture(true);
    settingFromUser = false;
    signalUserToggled();
}

void RadioButton::slotUpdateFromController()
{
    setCheckedLook(controller && controller->get());
}

void RadioButton::onControllerValueChanged(bool)
{
    slotUpdateFromController();
}

void RadioButton::onRebindController()
{
    if (controller)
        slotUpdateFromController();
}

void RadioButton::SetChecked(bool on)
{
    if (controller && on)
        controller->set(true);
    else if (!controller)
        setCheckedLook(on);
    else if (!on)
        setCheckedLook(false);
}

void RadioButton::setCheckedLook(bool on)
{
    SetPressed(on);
    if (checked == on)
        return;
    checked = on;
    signalToggled(on);
}

void RadioButton::SetLabel(String const& text)
{
    SetProperty<String>("Label", text);
}

String RadioButton::GetLabel() const
{
    checked_value<String> text = GetProperty<String>("Label");
    return text ? *text : String("");
}

void RadioButton::Draw(DrawContext* context)
{
    // The default look: a round ring of the window's height on white, a dot inside while
    // checked, and the label beside it; the discs' edges are coverage-blended. Layouts give
    // other artwork through image-drawing subclasses.
    int const side = GetHeight();
    unsigned char const alpha = GetEffectiveAlpha();
    unsigned int const color = GetColor();
    auto disc = [context, alpha](int inset, int side, unsigned int fill)
    {
        int const diameter = side - 2 * inset;
        if (diameter > 0)
            context->DrawRoundedBox(Rect(inset, inset + diameter - 1, inset, inset + diameter - 1),
                                    static_cast<unsigned int>(diameter / 2), DrawContext::Filled,
                                    fill, alpha);
    };
    disc(0, side, color);
    disc(1, side, 0xFFFFFFFFu);
    if (checked)
        disc(side / 4 + 1, side, color);
    Font* font = detail::WindowFont(this, checked_value<unsigned int>());
    String const label = GetLabel();
    if (font && !label.IsEmpty())
        context->DrawText(font, Point(side + 4, (side - detail::FontHeight(font)) / 2), label,
                          color, alpha);
    Window::Draw(context);
}

bool RadioButton::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                                   TestAutomation::RPCReplyInterface* reply)
{
    if (!Button::ProcessTARequest(request, args, reply))
        return false;
    reply->SetValue("isOn", checked ? "true" : "false");
    reply->SetValue("label", GetLabel().CStr());
    reply->SetValue("value", String::Number(static_cast<int>(value)).CStr());
    return true;
}

} // namespace UI
