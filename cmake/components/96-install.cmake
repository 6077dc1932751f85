# The installation end to end: `cmake --install` of this build into a temp folder, and the
# installed programs run from there (tvcheck against a loopback site, the updater silent and
# windowed, laid out by its installed resources and read through the test bridge).
add_test(NAME Install.InstalledProgramsRun
  COMMAND python3 ${PROJECT_SOURCE_DIR}/tests/install/install_test.py
          --build ${CMAKE_BINARY_DIR}
          --module $<TARGET_FILE:TvTestAutomation>
          --cmake ${CMAKE_COMMAND})
# The test bridge listens on a small fixed range of ports that another updater under test
# could hold, so this test runs alone.
set_tests_properties(Install.InstalledProgramsRun PROPERTIES
  LABELS gui TIMEOUT 300 RUN_SERIAL TRUE)
# The test installs these, so building the tests builds them.
set_property(GLOBAL APPEND PROPERTY TV_ALL_TESTS
  tavorin-updater tvdefaults tvcheck tvresembed TvTestAutomation)
