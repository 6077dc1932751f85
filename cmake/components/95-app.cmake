# The updater application: the start-up and shutdown order, its two windows, and the program
# tavorin-updater with its packed resources beside it.
tv_library(tv_app
  SOURCES
    Updater/app/Application.cpp
    Updater/app/AppHostWindow.cpp
    Updater/app/ConnectingPanel.cpp
    Updater/app/MainWindow.cpp
    Updater/app/ProgramItem.cpp
    Updater/app/RunApplication.cpp
    Updater/app/UpdaterLook.cpp
    Updater/app/UpdatesPanel.cpp
  DEPS tv_updater_check tv_marketing tv_ui)
find_package(PkgConfig REQUIRED)
pkg_check_modules(TV_APP_LIBXML2 REQUIRED IMPORTED_TARGET libxml-2.0)
target_link_libraries(tv_app PUBLIC PkgConfig::TV_APP_LIBXML2)

tv_executable(tavorin-updater
  SOURCES Updater/app/main.cpp
  DEPS tv_app tv_files)
# The packed resources land in <bin>/Resources/ beside the program.
add_dependencies(tavorin-updater updater_resources)

install(TARGETS tavorin-updater tvdefaults tvcheck tvresembed RUNTIME DESTINATION bin)
install(FILES ${TV_UPDATER_RESOURCE_FILE} DESTINATION bin/Resources)

# The command line, in process and as a program.
tv_test(tv_app_tests
  SOURCES tests/Updater/app/RunApplicationTest.cpp tests/support/TempFolder.cpp
  DEPS tv_app)
add_dependencies(tv_app_tests tavorin-updater)

# The program end to end under X: real runs against a loopback site, read through the test
# bridge; each state's window is compared with the frame's own bitmap, and the pictures are kept
# under artifacts/updater. It moves the pointer and takes the bridge's ports, so it runs alone.
add_test(NAME UpdaterApp.EndToEnd
  COMMAND python3 ${PROJECT_SOURCE_DIR}/tests/Updater/app/updater_app_test.py
          --bin ${CMAKE_BINARY_DIR}/bin
          --module $<TARGET_FILE:TvTestAutomation>
          --artifacts ${CMAKE_BINARY_DIR}/artifacts)
set_tests_properties(UpdaterApp.EndToEnd PROPERTIES
  LABELS gui TIMEOUT 300 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)
