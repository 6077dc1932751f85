# What every widget kind tells the test driver, how number fields take typed text, and one
# session with the gallery under a window manager that looks at the showcase as a user does.

tv_test(tv_widget_info_tests
  SOURCES
    tests/Canvas/TestAutomation/WidgetInfoTest.cpp
    tests/Canvas/UI/support/ButtonTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui tv_tab)

find_package(Python3 COMPONENTS Interpreter)
if(Python3_Interpreter_FOUND)
  add_test(NAME tv_gallery_showcase
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tests/examples/gallery/showcase_gui_test.py
      --program $<TARGET_FILE:tv-gallery>
      --module $<TARGET_FILE:TvTestAutomation>
      --driver ${PROJECT_SOURCE_DIR}/tools/tvdriver.py)
  set_tests_properties(tv_gallery_showcase PROPERTIES
    LABELS gui TIMEOUT 180 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)
endif()
