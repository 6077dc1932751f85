# The Design Aid panel: the tool window of live design, with the pixel zoom at its top.
tv_ui_sources(
  SOURCES
    Canvas/UI/DesignAid.cpp
    Canvas/UI/PropertyEditor.cpp)

tv_test(tv_design_aid_tests
  SOURCES
    tests/Canvas/UI/DesignAidTest.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

# The panel on the gallery and the updater under Xvfb (with openbox when installed), driven with
# xdotool and read back through the test bridge; skips without a display.
add_test(NAME tv_design_aid_gui
  COMMAND python3 ${PROJECT_SOURCE_DIR}/tests/Canvas/UI/design_aid_gui_test.py
          --bin ${CMAKE_BINARY_DIR}/bin
          --module $<TARGET_FILE:TvTestAutomation>)
set_tests_properties(tv_design_aid_gui PROPERTIES
  LABELS gui TIMEOUT 300 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)

tv_test(tv_property_editor_tests
  SOURCES
    tests/Canvas/UI/PropertyEditorTest.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

# The property editor on the gallery under Xvfb, driven with xdotool and the test bridge.
add_test(NAME tv_property_editor_gui
  COMMAND python3 ${PROJECT_SOURCE_DIR}/tests/Canvas/UI/property_editor_gui_test.py
          --bin ${CMAKE_BINARY_DIR}/bin
          --module $<TARGET_FILE:TvTestAutomation>)
set_tests_properties(tv_property_editor_gui PROPERTIES
  LABELS gui TIMEOUT 300 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)
