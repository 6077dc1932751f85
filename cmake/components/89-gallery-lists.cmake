# The gallery's window of the list family, and the session that drives it like a user.

target_sources(tv-gallery PRIVATE examples/gallery/Lists.cpp)

find_package(Python3 COMPONENTS Interpreter)
if(Python3_Interpreter_FOUND)
  add_test(NAME tv_gallery_lists_gui
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tests/examples/gallery/lists_gui_test.py
      --program $<TARGET_FILE:tv-gallery>
      --module $<TARGET_FILE:TvTestAutomation>
      --driver ${PROJECT_SOURCE_DIR}/tools/tvdriver.py)
  set_tests_properties(tv_gallery_lists_gui PROPERTIES
    LABELS gui TIMEOUT 300 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)
endif()
