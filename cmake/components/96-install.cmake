# The installation end to end: `cmake --install` of this build into a temp folder, and the
# installed programs run from there (tvcheck against a loopback site, the updater silent and
# windowed, laid out by its installed resources and read through the test bridge).
add_test(NAME Install.InstalledProgramsRun
  COMMAND python3 ${PROJECT_SOURCE_DIR}/tests/install/install_test.py
          --build ${CMAKE_BINARY_DIR}
          --cmake ${CMAKE_COMMAND})
# The test bridge listens on a small fixed range of ports that another updater under test
# could hold, so this test runs alone.
set_tests_properties(Install.InstalledProgramsRun PROPERTIES
  LABELS gui TIMEOUT 300 RUN_SERIAL TRUE)
# The test installs these, so building the tests builds them.
set_property(GLOBAL APPEND PROPERTY TV_ALL_TESTS
  tavorin-updater tvdefaults tvcheck tvresembed TvTestAutomation tv_packaging_docs)

# The Debian package, built by CPack from this build, checked and run from its extracted files.
# Packaging a sanitizer build would test nothing more, so only plain builds run it.
if(NOT TV_SANITIZE)
  add_test(NAME Install.DebianPackage
    COMMAND python3 ${PROJECT_SOURCE_DIR}/tests/install/package_test.py
            --build ${CMAKE_BINARY_DIR}
            --cpack ${CMAKE_CPACK_COMMAND}
            --version ${PROJECT_VERSION})
  set_tests_properties(Install.DebianPackage PROPERTIES LABELS install TIMEOUT 600)
endif()
