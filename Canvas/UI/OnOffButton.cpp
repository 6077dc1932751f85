#include "Canvas/UI/OnOffButton.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/StretchableBits.h"
#include "Canvas/UI/detail/ButtonDrawing.h"

namespace UI
{

OnOffButton::OnOffButton(Frame* frame, Window* parent, String const& name)
    : PixmapButton(frame, parent, name, Immediate), ParamView<bool>(this, true)
{
    init();
}

OnOffButton::OnOffButton(Frame* frame, Window* parent, String const& name,
                         Controller::BoolParam* param)
    : PixmapButton(frame, parent, name, Immediate), ParamView<bool>(this, false)
{
    init();
    SetController(param);
}

OnOffButton::OnOffButton(Frame* frame, Window* parent, String const& name, String const& keyPath)
    : PixmapButton(frame, parent, name, Immediate), ParamView<bool>(this, false)
{
    init();
    SetControllerFromID(keyPath);
}

OnOffButton::~OnOffButton() = default;

void OnOffButton::init()
{
    signalClicked.Connect(&OnOffButton::slotClicked, this);
    signalAltClicked.Connect(&OnOffButton::slotResetDefault, this);
    CreateProperty("Caption", String(""));
    GetPropertyChangedSignal("Caption")->Connect(static_cast<void (Window::*)()>(&Window::Update),
                                                 this);
}

void OnOffButton::slotClicked()
{
    if (!userGesture.Toggle(controller))
        return;
    signalUserToggled();
    postUndoEvent();
    Update();
    onPostUserToggled();
}

void OnOffButton::slotResetDefault()
{
    if (userGesture.Reset(controller))
        Update();
}

void OnOffButton::SetOn(bool on)
{
    if (controller)
        controller->set(on);
    else
        SetPressed(on);
}

bool OnOffButton::IsOn() const
{
    return controller ? controller->get() : IsPressed();
}

void OnOffButton::onControllerValueChanged(bool value)
{
    SetPressed(value);
    updatePulseOverlayRegistration();
}

void OnOffButton::onRebindController()
{
    if (controller)
        onControllerValueChanged(controller->get());
}

void OnOffButton::SetCaption(String const& caption)
{
    SetProperty<String>("Caption", caption);
}

String OnOffButton::GetCaption() const
{
    checked_value<String> caption = GetProperty<String>("Caption");
    return caption ? *caption : String("");
}

void OnOffButton::SetCaptionColors(unsigned int off, unsigned int on, unsigned int disabledOff,
                                   unsigned int disabledOn)
{
    captionColors[0] = off;
    captionColors[1] = on;
    captionColors[2] = disabledOff;
    captionColors[3] = disabledOn;
    Update();
}

void OnOffButton::SetCaption(String const& caption, unsigned int off, unsigned int on,
                             unsigned int disabledOff, unsigned int disabledOn)
{
    SetCaptionColors(off, on, disabledOff, disabledOn);
    SetCaption(caption);
}

void OnOffButton::SetStretchableOnOffPixmaps(String const& prefix, int left, int right, int top,
                                             int bottom)
{
    stretchOff.reset(new StretchableBits(prefix + "Normal.png", left, right, top, bottom));
    stretchOn.reset(new StretchableBits(prefix + "Pressed.png", left, right, top, bottom));
    onSetGeometry();
    Update();
}

void OnOffButton::onSetGeometry()
{
    if (stretchOff)
        stretchOff->Resize(GetWidth(), GetHeight());
    if (stretchOn)
        stretchOn->Resize(GetWidth(), GetHeight());
}

void OnOffButton::SetPulseOverlayTimer(PulseOverlayTimer* timer)
{
    pulse.SetTimer(timer);
    updatePulseOverlayRegistration();
}

void OnOffButton::updatePulseOverlayRegistration()
{
    // Leaving shows the overlay opaque again.
    if (pulse.Update(IsOn()))
        Update();
}

void OnOffButton::onPulseOverlayChange(State, unsigned int alpha)
{
    pulse.SetAlpha(alpha);
    Update();
}

unsigned char OnOffButton::getOverlayAlpha() const
{
    if (!pulse.IsRegistered())
        return GetEffectiveAlpha();
    return (unsigned char)(GetEffectiveAlpha() * pulse.GetAlpha() / 255);
}

void OnOffButton::postUndoEvent()
{
    if (!controller)
        return;
    signalUndoEvent(
        String("%1: %2").Arg(controller->GetName()).Arg(String(controller->get() ? "On" : "Off")));
}

void OnOffButton::Draw(DrawContext* context)
{
    StretchableBits* stretched = IsPressed() ? stretchOn.get() : stretchOff.get();
    if (stretched && stretched->GetBits())
    {
        DIBits* bits = stretched->GetBits();
        context->BitBlt(bits, Rect(Point(), bits->GetSize()), Point(), getBitsAlpha());
        Point at;
        if (DIBits* overlay = getOverlayBits(at))
            context->BitBlt(overlay, Rect(Point(), overlay->GetSize()), at, getOverlayAlpha());
        Window::Draw(context);
    }
    else
    {
        PixmapButton::Draw(context);
    }
    unsigned int const color = captionColors[(IsEnabled() ? 0 : 2) + (IsPressed() ? 1 : 0)];
    detail::DrawCentredText(context, detail::WindowFont(this, checked_value<unsigned int>()),
                            GetCaption(), GetGeometry().GetSize(), Point(), color,
                            detail::CombineAlpha(color, GetEffectiveAlpha()), true);
}

bool OnOffButton::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                                   TestAutomation::RPCReplyInterface* reply)
{
    if (!PixmapButton::ProcessTARequest(request, args, reply))
        return false;
    reply->SetValue("isOn", IsOn() ? "true" : "false");
    reply->SetValue("caption", GetCaption().CStr());
    return true;
}

} // namespace UI
