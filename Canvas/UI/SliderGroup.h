#pragma once

#include "Canvas/UI/Orientation.h"
#include "Canvas/UI/ParamView.h"
#include "Canvas/UI/SliderScale.h"
#include "Canvas/UI/Window.h"

namespace UI
{

class Slider;
class Text;

/// A slider with its label, its value and its units, all bound to one parameter: the children
/// "<name> Label", "<name> Slider", "<name> Value" and "<name> Units". Horizontal groups put the
/// label left, the slider in the middle and the value and units right; vertical ones stack
/// them. Without a parameter of its own it keeps one, 0 to 1. The look is the slider's; see
/// `SimpleSliderGroup` for the framed default.
///
/// Answers "GetInfo" with "value", "min", "max", "label" and "text" (value and units).
class SliderGroup : public Window, public ParamView<float>
{
public:
    /// Horizontal, unlabelled, on a parameter of its own.
    SliderGroup(Frame* frame, Window* parent, String const& name);
    /// A null `param` gives the group a parameter of its own.
    SliderGroup(Frame* frame, Window* parent, String const& name, String const& caption,
                Orientation orientation, Controller::FloatParam* param);

    Slider* GetSlider() const { return slider; }
    void SetLabel(String const& caption);
    String GetLabel() const;
    void SetNumDecimalPlaces(int places);
    /// Units shown after the value; the parameter's own unless set.
    void SetUnits(String const& units);
    /// Moves the units text by (`x`, `y`) from its place after the value.
    void SetUnitsOffset(int x, int y);
    void SetScaleType(SliderScaleType type);
    SliderScaleType GetScaleType() const;
    /// The position of the slider that shows `value`: a search of the slider's taper.
    unsigned int ValueToSliderPosition(float value) const;
    String GetValueText() const;

    String GetWindowType() const override { return String("SliderGroup"); }
    void onSetGeometry() override;
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

protected:
    void onControllerValueChanged(float value) override;
    void onRebindController() override;

private:
    void build(String const& caption, Orientation orientation);
    void updateTexts();

    Orientation orientation = Horizontal;
    Slider* slider = nullptr;
    Text* label = nullptr;
    Text* valueText = nullptr;
    Text* unitsText = nullptr;
    Point unitsOffset;
};

/// The default-look slider group: the group on a light panel with a thin frame.
class SimpleSliderGroup : public SliderGroup
{
public:
    SimpleSliderGroup(Frame* frame, Window* parent, String const& name);
    SimpleSliderGroup(Frame* frame, Window* parent, String const& name, String const& caption,
                      Orientation orientation, Controller::FloatParam* param);

    String GetWindowType() const override { return String("SimpleSliderGroup"); }
    void Draw(DrawContext* context) override;
};

/// The theme's default slider group: a `SimpleSliderGroup`.
SliderGroup* Simple_CreateSliderGroup(Frame* frame, Window* parent, String name, String caption,
                                      Orientation orientation, Controller::FloatParam* param);
/// The theme's default preset slider: a horizontal `Slider` with its readout shown, on a
/// parameter of its own.
Window* Simple_CreatePresetSlider(Frame* frame, Window* parent, String const& name);

} // namespace UI
