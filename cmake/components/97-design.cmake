# The live design engine: every frame's UI::Design, which turns the running program into a layout
# editor (selection, drags, guides, snapping, undo, saving layouts), and the little windows it uses.
tv_ui_sources(
  SOURCES
    Canvas/UI/Box.cpp
    Canvas/UI/Design.cpp
    Canvas/UI/DesignDraw.cpp
    Canvas/UI/DesignKeyboard.cpp
    Canvas/UI/DesignMenu.cpp
    Canvas/UI/DesignMouse.cpp)

tv_test(tv_design_tests
  SOURCES
    tests/Canvas/UI/DesignTest.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

# Live design for real on the gallery and the updater under Xvfb (with openbox when installed),
# driven with xdotool and read back through the test bridge; skips without a display.
add_test(NAME tv_design_gui
  COMMAND python3 ${PROJECT_SOURCE_DIR}/tests/Canvas/UI/design_gui_test.py
          --bin ${CMAKE_BINARY_DIR}/bin
          --module $<TARGET_FILE:TvTestAutomation>)
set_tests_properties(tv_design_gui PROPERTIES
  LABELS gui TIMEOUT 300 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)

tv_bench(tv_design_bench
  SOURCES bench/DesignBench.cpp
  DEPS tv_ui)
