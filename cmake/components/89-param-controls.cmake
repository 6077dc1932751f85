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

# The tapers in tables, and the controls in a frame on the in-memory host.
tv_test(tv_param_controls_tests
  SOURCES
    tests/Canvas/UI/SliderScaleTest.cpp
    tests/Canvas/UI/ParamControlsTest.cpp
    tests/Canvas/UI/support/ButtonTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

# The gallery's "Controls" page.
target_sources(tv-gallery PRIVATE examples/gallery/Controls.cpp)

# The controls driven for real in the gallery under Xvfb (and openbox when installed), read back
# through the test automation bridge.
find_package(Python3 COMPONENTS Interpreter)
if(Python3_Interpreter_FOUND)
  add_test(NAME tv_param_controls_gui
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tests/examples/gallery/controls_gui_test.py
      --program $<TARGET_FILE:tv-gallery>
      --module $<TARGET_FILE:TvTestAutomation>
      --driver ${PROJECT_SOURCE_DIR}/tools/tvdriver.py)
  set_tests_properties(tv_param_controls_gui PROPERTIES
    LABELS gui TIMEOUT 300 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)
endif()

# The parameter controls draw through AGG's scanline rasterizer, which shifts
# negative coverage values left (defined by every compiler we use, reported under C++17); the
# files that instantiate it are spared that one check, as the images' files are.
if(TV_SANITIZE MATCHES "undefined")
  set_source_files_properties(Canvas/UI/Knob.cpp Canvas/UI/ParamControl.cpp
                              Canvas/UI/RGBASlider.cpp Canvas/UI/Slider.cpp
                              PROPERTIES COMPILE_OPTIONS -fno-sanitize=shift-base)
endif()
