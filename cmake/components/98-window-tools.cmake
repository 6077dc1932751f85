# The window maker and the window tree: the Design Aid's tools that create windows of the
# registered types and show the design frame's windows as a tree sharing the design's selection.
tv_ui_sources(
  SOURCES
    Canvas/UI/WindowMaker.cpp
    Canvas/UI/WindowTree.cpp)

tv_test(tv_window_tools_tests
  SOURCES
    tests/Canvas/UI/WindowToolsTest.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

# One session on the gallery under Xvfb (with openbox when installed), driven with xdotool and
# read back through the test bridge; skips without a display.
add_test(NAME tv_window_tools_gui
  COMMAND python3 ${PROJECT_SOURCE_DIR}/tests/Canvas/UI/window_tools_gui_test.py
          --bin ${CMAKE_BINARY_DIR}/bin
          --module $<TARGET_FILE:TvTestAutomation>)
set_tests_properties(tv_window_tools_gui PROPERTIES
  LABELS gui TIMEOUT 300 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)
