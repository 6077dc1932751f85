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
  DEPS tv_paths PkgConfig::PLIST)

tv_executable(tvdefaults
  SOURCES tools/tvdefaults/tvdefaults.cpp
  DEPS tv_config)

tv_test(tv_config_tests
  SOURCES tests/TvBase/Util/ConfigFileTest.cpp
  DEPS tv_config)

tv_test(tv_config_durability_tests
  SOURCES tests/TvBase/Util/ConfigFileDurabilityTest.cpp
  DEPS tv_config)

tv_test(tv_config_thread_tests
  SOURCES tests/TvBase/Util/ConfigFileThreadTest.cpp
  DEPS tv_config
  THREADS)

tv_test(tv_paths_tests
  SOURCES
    tests/TvBase/Util/FilePathTest.cpp
    tests/TvBase/Util/SystemFoldersTest.cpp
  DEPS tv_paths)
