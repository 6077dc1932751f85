#include "Canvas/UI/SliderGroup.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Slider.h"
#include "Canvas/UI/Text.h"
#include "TvBase/Controller/FloatParamMemory.h"

#include <algorithm>

namespace UI
{

namespace
{
int const TextHeight = 14;
int const LabelWidth = 72;
int const ValueWidth = 44;
int const UnitsWidth = 28;
unsigned int const Ink = 0xFF202020u;
} // namespace

SliderGroup::SliderGroup(Frame* frame, Window* parent, String const& name)
    : Window(frame, parent, name), ParamView<float>(this, true)
{
    build(String(""), Horizontal);
    SetOwnedController(std::unique_ptr<Controller::FloatParam>(
        new Controller::FloatParamMemory(0.0f, value_range<float>(0.0f, 1.0f))));
}

SliderGroup::SliderGroup(Frame* frame, Window* parent, String const& name, String const& caption,
                         Orientation o, Controller::FloatParam* param)
    : Window(frame, parent, name), ParamView<float>(this, false)
{
    build(caption, o);
    if (param)
        SetController(param);
    else
        SetOwnedController(std::unique_ptr<Controller::FloatParam>(
            new Controller::FloatParamMemory(0.0f, value_range<float>(0.0f, 1.0f))));
}

void SliderGroup::build(String const& caption, Orientation o)
{
    orientation = o;
    Frame* frame = GetFrame();
    label = new Text(frame, this, String("%1 Label").Arg(GetName()), caption,
                     checked_value<unsigned int>(), o == Horizontal ? HAlignLeft : HAlignCenter,
                     Ink, Point(0, 0), Size(0, TextHeight), false);
    slider = new Slider(frame, this, String("%1 Slider").Arg(GetName()), nullptr, o);
    valueText = new Text(frame, this, String("%1 Value").Arg(GetName()), String(""),
                         checked_value<unsigned int>(), HAlignRight, Ink, Point(0, 0),
                         Size(0, TextHeight), false);
    unitsText = new Text(frame, this, String("%1 Units").Arg(GetName()), String(""),
                         checked_value<unsigned int>(), HAlignLeft, Ink, Point(0, 0),
                         Size(0, TextHeight), false);
    for (Window* child : std::initializer_list<Window*>{label, slider, valueText, unitsText})
        child->SetDynamicLayoutMode(DynamicLayoutNever);
    slider->signalPositionChanged.Connect(nullptr, [this](unsigned int) { updateTexts(); });
    if (o == Horizontal)
        SetGeometry(GetGeometry().left, GetGeometry().top, 300, 22);
    else
        SetGeometry(GetGeometry().left, GetGeometry().top, 60, 160);
}

void SliderGroup::onSetGeometry()
{
    if (!unitsText)
        return;
    int const w = GetWidth();
    int const h = GetHeight();
    if (orientation == Horizontal)
    {
        int const textTop = (h - TextHeight) / 2;
        label->SetGeometry(4, textTop, LabelWidth - 4, TextHeight);
        int const right = w - ValueWidth - UnitsWidth - 6;
        slider->SetGeometry(LabelWidth, 2, std::max(0, right - LabelWidth), std::max(0, h - 4));
        valueText->SetGeometry(right + 2, textTop, ValueWidth, TextHeight);
        unitsText->SetGeometry(right + 4 + ValueWidth + unitsOffset.x, textTop + unitsOffset.y,
                               UnitsWidth, TextHeight);
    }
    else
    {
        label->SetGeometry(0, 2, w, TextHeight);
        int const bottom = h - 2 * TextHeight - 4;
        slider->SetGeometry((w - 18) / 2, TextHeight + 4, 18, std::max(0, bottom - TextHeight - 4));
        valueText->SetGeometry(0, bottom + 2, w / 2 + 8, TextHeight);
        unitsText->SetGeometry(w / 2 + 10 + unitsOffset.x, bottom + 2 + unitsOffset.y,
                               std::max(0, w / 2 - 10), TextHeight);
    }
}

void SliderGroup::SetLabel(String const& caption)
{
    label->SetText(caption);
}

String SliderGroup::GetLabel() const
{
    return label->GetText();
}

void SliderGroup::SetNumDecimalPlaces(int places)
{
    slider->SetNumDecimalPlaces(places);
    updateTexts();
}

void SliderGroup::SetUnits(String const& units)
{
    slider->SetUnits(units);
    updateTexts();
}

void SliderGroup::SetUnitsOffset(int x, int y)
{
    unitsOffset = Point(x, y);
    onSetGeometry();
}

void SliderGroup::SetScaleType(SliderScaleType type)
{
    slider->SetScaleType(type);
}

SliderScaleType SliderGroup::GetScaleType() const
{
    return slider->GetScaleType();
}

unsigned int SliderGroup::ValueToSliderPosition(float value) const
{
    return static_cast<unsigned int>(std::max(0, slider->ValueToPosition(value)));
}

String SliderGroup::GetValueText() const
{
    return slider->GetReadoutText() + slider->GetUnits();
}

void SliderGroup::updateTexts()
{
    valueText->SetText(slider->GetReadoutText());
    unitsText->SetText(slider->GetUnits());
}

void SliderGroup::onControllerValueChanged(float)
{
    updateTexts();
}

void SliderGroup::onRebindController()
{
    if (slider)
    {
        slider->SetController(controller);
        updateTexts();
    }
}

bool SliderGroup::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                   TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    value_range<float> const range = slider->GetValueRange();
    reply->SetValue("value", String("%1").Arg(slider->GetValue()).CStr());
    reply->SetValue("min", String("%1").Arg(range.minimum).CStr());
    reply->SetValue("max", String("%1").Arg(range.maximum).CStr());
    reply->SetValue("label", GetLabel().CStr());
    reply->SetValue("text", GetValueText().CStr());
    return true;
}

// ---- SimpleSliderGroup

SimpleSliderGroup::SimpleSliderGroup(Frame* frame, Window* parent, String const& name)
    : SliderGroup(frame, parent, name)
{
}

SimpleSliderGroup::SimpleSliderGroup(Frame* frame, Window* parent, String const& name,
                                     String const& caption, Orientation orientation,
                                     Controller::FloatParam* param)
    : SliderGroup(frame, parent, name, caption, orientation, param)
{
}

void SimpleSliderGroup::Draw(DrawContext* context)
{
    Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
    context->DrawRoundedBox(all, 3, DrawContext::Filled, 0xFFFAFAF8u, GetEffectiveAlpha());
    context->DrawRoundedBoxOutline(all, 3, 1, 0xFFB8B8B8u, GetEffectiveAlpha());
    Window::Draw(context);
}

SliderGroup* Simple_CreateSliderGroup(Frame* frame, Window* parent, String name, String caption,
                                      Orientation orientation, Controller::FloatParam* param)
{
    return new SimpleSliderGroup(frame, parent, name, caption, orientation, param);
}

Window* Simple_CreatePresetSlider(Frame* frame, Window* parent, String const& name)
{
    Slider* slider = new Slider(frame, parent, name);
    slider->SetReadoutVisible(true);
    return slider;
}

} // namespace UI
