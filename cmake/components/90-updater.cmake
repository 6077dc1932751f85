# The updater application: the update decision, the entry, and the program.
tv_library(tv_updater
  SOURCES
    Updater/app/VersionsText.cpp
  DEPS tv_core)

# The program itself, tavorin-updater, is built in 95-app.cmake.

tv_test(tv_updater_tests
  SOURCES
    tests/Updater/app/VersionsTextTest.cpp
    tests/support/PeakMemory.cpp
  DEPS tv_updater)

tv_bench(tv_string_bench
  SOURCES bench/StringBench.cpp
  DEPS tv_updater)

tv_fuzz(VersionsFuzz
  SOURCES fuzz/VersionsFuzz.cpp
  DEPS tv_updater)


# The decision against the real settings store.
tv_test(tv_updater_config_tests
  SOURCES tests/Updater/app/VersionsConfigTest.cpp
  DEPS tv_updater tv_config)
