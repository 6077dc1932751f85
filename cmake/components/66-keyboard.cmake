# Keyboard use of every window: the default theme's drawn focus indicator, the Tab order of a
# window tree, and their tests.
tv_ui_sources(
  SOURCES
    Canvas/UI/SimpleFocusIndicator.cpp
    Canvas/UI/FocusOrder.cpp
  DEPS tv_core)

tv_test(tv_keyboard_tests
  SOURCES tests/Canvas/UI/KeyboardTest.cpp
  DEPS tv_ui)

# Tab, Return, Space and Escape in the updater and the gallery under openbox, keys from xdotool.
find_package(Python3 COMPONENTS Interpreter)
if(Python3_Interpreter_FOUND)
  add_test(NAME tv_keyboard_gui
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tests/Canvas/UI/keyboard_gui_test.py
      --bin ${CMAKE_BINARY_DIR}/bin
      --gallery $<TARGET_FILE:tv-gallery>
      --module $<TARGET_FILE:TvTestAutomation>)
  set_tests_properties(tv_keyboard_gui PROPERTIES
    LABELS gui TIMEOUT 240 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)
endif()
