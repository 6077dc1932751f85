# The updater application: the update decision, the entry, and the program.
tv_library(tv_updater
  SOURCES
    Updater/app/VersionsText.cpp
    Updater/app/RunApplication.cpp
  DEPS tv_core)

tv_executable(tavorin-updater
  SOURCES Updater/app/main.cpp
  DEPS tv_updater tv_files)
# The packed resources land in <bin>/Resources/ beside the program.
add_dependencies(tavorin-updater updater_resources)

tv_test(tv_updater_tests
  SOURCES
    tests/Updater/app/VersionsTextTest.cpp
    tests/Updater/app/RunApplicationTest.cpp
  DEPS tv_updater)

tv_bench(tv_string_bench
  SOURCES bench/StringBench.cpp
  DEPS tv_updater)

tv_fuzz(VersionsFuzz
  SOURCES fuzz/VersionsFuzz.cpp
  DEPS tv_updater)

# The command-line test runs the program itself.
add_dependencies(tv_updater_tests tavorin-updater)

# The decision against the real settings store.
tv_test(tv_updater_config_tests
  SOURCES tests/Updater/app/VersionsConfigTest.cpp
  DEPS tv_updater tv_config)
