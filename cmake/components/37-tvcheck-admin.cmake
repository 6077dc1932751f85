# What administrators who script the check need from tvcheck: its own download, which tells
# failures in words and treats HTTP error statuses as failures, --explain and --list.
set(TV_TVCHECK_ADMIN_SOURCES
  tools/tvcheck/VersionsDownload.cpp
  tools/tvcheck/DecisionExplainer.cpp
  tools/tvcheck/ProductList.cpp)
target_sources(tvcheck PRIVATE ${TV_TVCHECK_ADMIN_SOURCES})
target_link_libraries(tvcheck PRIVATE tv_config PkgConfig::CURL)
# Both tools answer --version.
foreach(program tvcheck tvdefaults)
  target_compile_definitions(${program} PRIVATE TV_VERSION="${PROJECT_VERSION}")
endforeach()

# The explanation against the decision itself, in process; the program against loopback
# servers (a site and a proxy) and real settings files.
tv_test(TvCheckAdminTest
  SOURCES
    tests/tools/tvcheck/TvCheckAdminTest.cpp
    tools/tvcheck/DecisionExplainer.cpp
    tests/support/TempFolder.cpp
  DEPS tv_updater)
add_test(NAME AdminTools.Programs
  COMMAND python3 ${PROJECT_SOURCE_DIR}/tests/tools/admin_tools_test.py
          --bin ${CMAKE_BINARY_DIR}/bin)
set_tests_properties(AdminTools.Programs PROPERTIES LABELS unit TIMEOUT 120)
set_property(GLOBAL APPEND PROPERTY TV_ALL_TESTS tvcheck tvdefaults)
