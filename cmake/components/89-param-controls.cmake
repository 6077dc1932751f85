# Parameter controls: the tapers, the knob, sliders and slider groups, the scrub text, the RGBA
# sliders and the colour picker built from them.

tv_ui_sources(
  SOURCES
    Canvas/UI/SliderScale.cpp
    Canvas/UI/ParamControl.cpp
    Canvas/UI/Knob.cpp
    Canvas/UI/Slider.cpp
    Canvas/UI/ScrubText.cpp
    Canvas/UI/SliderGroup.cpp
    Canvas/UI/RGBASlider.cpp
    Canvas/UI/RGBASliderGroup.cpp
    Canvas/UI/ColorPicker.cpp
    Canvas/UI/WindowFactoryRegistration/ParamControlTypes.cpp
  DEPS tv_controller tv_core)

# The tapers, in tables.
tv_test(tv_param_controls_tests
  SOURCES
    tests/Canvas/UI/SliderScaleTest.cpp
  DEPS tv_ui)

# The gallery's "Controls" page.
target_sources(tv-gallery PRIVATE examples/gallery/Controls.cpp)
