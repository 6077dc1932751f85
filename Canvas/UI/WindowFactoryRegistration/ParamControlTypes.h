#pragma once

namespace UI
{

class WindowFactory;

/// Registers the parameter controls with `factory`, each under its class name: "Knob",
/// "Slider", "SliderGroup", "SimpleSliderGroup", "ScrubText", "RGBASlider", "RGBASliderGroup".
/// Each made by type name keeps its value in a parameter of its own until its "Controller Key
/// Path" names another.
void RegisterParamControlTypes(WindowFactory& factory);

} // namespace UI
