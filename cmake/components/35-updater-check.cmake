# The update check worker, the update host setting, and the tvcheck tool.
tv_library(tv_updater_check
  SOURCES
    Updater/app/UpdaterThread.cpp
    Updater/app/UpdateHost.cpp
  DEPS tv_updater tv_network tv_config)
target_compile_definitions(tv_updater_check PRIVATE TV_UPDATE_HOST="${TV_UPDATE_HOST}")

tv_executable(tvcheck
  SOURCES
    tools/tvcheck/main.cpp
    tools/tvcheck/CheckReport.cpp
  DEPS tv_updater_check)

tv_test(UpdaterThreadTest THREADS
  SOURCES
    tests/Updater/app/UpdaterThreadTest.cpp
    tests/support/HttpFixture.cpp
    tests/support/TempFolder.cpp
  DEPS tv_updater_check)

tv_test(TvCheckTest THREADS
  SOURCES
    tests/tools/tvcheck/TvCheckTest.cpp
    tools/tvcheck/CheckReport.cpp
    tests/support/HttpFixture.cpp
    tests/support/TempFolder.cpp
  DEPS tv_updater_check)
# The end-to-end cases run the program itself.
add_dependencies(TvCheckTest tvcheck)

tv_bench(UpdateCheckBench
  SOURCES bench/UpdateCheckBench.cpp tests/support/HttpFixture.cpp tests/support/TempFolder.cpp
  DEPS tv_updater_check)
if(TARGET UpdateCheckBench)
  target_compile_definitions(UpdateCheckBench PRIVATE TV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
endif()
