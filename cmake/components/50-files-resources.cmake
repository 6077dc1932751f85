# Files, folders, data streams, resources, translation, and the resource packer.
tv_library(tv_files
  SOURCES
    TvBase/Util/FileIOException.cpp
    TvBase/Util/File.cpp
    TvBase/Util/Dir.cpp
    TvBase/Util/DataStream.cpp
    TvBase/Util/ByteStream.cpp
    TvBase/Util/FileStream.cpp
    TvBase/Util/ResourceManager.cpp
    TvBase/Util/detail/ResourceDirectory.cpp
    TvBase/Language/Translator.cpp
  DEPS tv_paths tv_core)

tv_executable(tvresembed SOURCES tools/tvresembed/main.cpp DEPS tv_files)

# The updater's packed resources, rebuilt when any file below its resource folder changes.
set(TV_UPDATER_RESOURCE_DIR ${PROJECT_SOURCE_DIR}/Updater/app/resources)
set(TV_UPDATER_RESOURCE_FILE ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Resources/resources.resembed)
file(GLOB_RECURSE TV_UPDATER_RESOURCE_INPUTS CONFIGURE_DEPENDS ${TV_UPDATER_RESOURCE_DIR}/*)
# The list of inputs is a dependency too, so that removing a file repacks as well; it is
# rewritten only when the list changes.
string(REPLACE ";" "\n" TV_UPDATER_RESOURCE_LIST "${TV_UPDATER_RESOURCE_INPUTS}")
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/updater_resources.list
     CONTENT "${TV_UPDATER_RESOURCE_LIST}\n")
add_custom_command(
  OUTPUT ${TV_UPDATER_RESOURCE_FILE}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Resources
  COMMAND tvresembed pack ${TV_UPDATER_RESOURCE_DIR} ${TV_UPDATER_RESOURCE_FILE}
  DEPENDS tvresembed ${TV_UPDATER_RESOURCE_INPUTS} ${CMAKE_BINARY_DIR}/updater_resources.list
  COMMENT "Packing the updater's resources"
  VERBATIM)
add_custom_target(updater_resources DEPENDS ${TV_UPDATER_RESOURCE_FILE})

tv_test(tv_files_tests
  SOURCES
    tests/TvBase/Util/FileTest.cpp
    tests/TvBase/Util/DirTest.cpp
    tests/TvBase/Util/ByteStreamTest.cpp
    tests/TvBase/Util/FileStreamTest.cpp
    tests/TvBase/Util/ResourceManagerTest.cpp
    tests/support/PeakMemory.cpp
    tests/TvBase/Language/TranslatorTest.cpp
    tests/tools/TvResembedTest.cpp
    tests/support/TempFolder.cpp
  DEPS tv_files)
add_dependencies(tv_files_tests tvresembed)

tv_bench(tv_resource_bench SOURCES bench/ResourceBench.cpp DEPS tv_files)

tv_fuzz(ResourceDirectoryFuzz SOURCES fuzz/ResourceDirectoryFuzz.cpp DEPS tv_files)
tv_fuzz(ByteStreamFuzz SOURCES fuzz/ByteStreamFuzz.cpp DEPS tv_files)
tv_fuzz(StringTableFuzz SOURCES fuzz/StringTableFuzz.cpp DEPS tv_files)
