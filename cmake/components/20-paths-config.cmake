# Paths, well-known folders, the settings store and the tvdefaults tool.
tv_library(tv_paths
  SOURCES
    TvBase/Util/FilePath.cpp
    TvBase/Util/FolderPath.cpp
    TvBase/Util/SystemFolders.cpp
    TvBase/Util/detail/PathText.cpp
  DEPS tv_core ${CMAKE_DL_LIBS})

tv_library(tv_config
  SOURCES
    TvBase/Util/ConfigFile.cpp
    TvBase/Util/detail/ConfigStore.cpp
    TvBase/Util/detail/PlistDepth.cpp
  DEPS tv_paths PkgConfig::PLIST)

tv_executable(tvdefaults
  SOURCES tools/tvdefaults/tvdefaults.cpp
  DEPS tv_config)

tv_test(tv_config_tests
  SOURCES tests/TvBase/Util/ConfigFileTest.cpp tests/support/TempFolder.cpp
  DEPS tv_config)

tv_test(tv_config_durability_tests
  SOURCES tests/TvBase/Util/ConfigFileDurabilityTest.cpp tests/support/TempFolder.cpp
  DEPS tv_config)

tv_test(tv_config_thread_tests
  SOURCES tests/TvBase/Util/ConfigFileThreadTest.cpp tests/support/TempFolder.cpp
  DEPS tv_config
  THREADS)

tv_test(tv_paths_tests
  SOURCES
    tests/TvBase/Util/FilePathTest.cpp
    tests/TvBase/Util/SystemFoldersTest.cpp
    tests/support/TempFolder.cpp
  DEPS tv_paths)

# The tool's tests run the built program.
# Also: products registered with the tool, as the update decision sees them.
tv_test(tv_tvdefaults_tests
  SOURCES tests/tools/tvdefaults/TvdefaultsTest.cpp tests/support/TempFolder.cpp
  DEPS tv_updater tv_config)
target_compile_definitions(tv_tvdefaults_tests PRIVATE TVDEFAULTS_PATH="$<TARGET_FILE:tvdefaults>")
add_dependencies(tv_tvdefaults_tests tvdefaults)

tv_bench(tv_config_bench
  SOURCES bench/ConfigFileBench.cpp
  DEPS tv_config)

tv_fuzz(tv_config_fuzz
  SOURCES fuzz/ConfigFileFuzz.cpp
  DEPS tv_config)

tv_fuzz(tv_path_fuzz
  SOURCES fuzz/PathTextFuzz.cpp
  DEPS tv_paths)
