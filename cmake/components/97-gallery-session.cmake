# One gallery session under a window manager (openbox when installed): repaints after in-place
# edits, tool tips, keyboard and the widgets' bridge answers, driven by tools/tvdriver.py.
find_package(Python3 COMPONENTS Interpreter)
if(Python3_Interpreter_FOUND)
  add_test(NAME tv_gallery_session
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tests/examples/gallery/gallery_session_test.py
      --program $<TARGET_FILE:tv-gallery>
      --module $<TARGET_FILE:TvTestAutomation>
      --driver ${PROJECT_SOURCE_DIR}/tools/tvdriver.py)
  set_tests_properties(tv_gallery_session PROPERTIES
    LABELS gui TIMEOUT 180 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)
  set_property(GLOBAL APPEND PROPERTY TV_ALL_TESTS tv-gallery TvTestAutomation)
endif()
