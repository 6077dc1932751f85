# Parameters and key-value coding; the XML reader, natural order, commands, the random
# generator, the clipboard, the block-operation shim, timing, platform facts and launching.
tv_library(tv_controller
  SOURCES
    TvBase/Controller/BoolParamMemory.cpp
    TvBase/Controller/FloatParamMemory.cpp
    TvBase/Controller/EnumParamMemory.cpp
    TvBase/Controller/BoolParamConfigFile.cpp
    TvBase/Controller/FloatParamConfigFile.cpp
    TvBase/Controller/EnumToBool.cpp
    TvBase/Controller/KeyValueCoding.cpp
  DEPS tv_signals tv_config tv_core Boost::headers)

# Only the files under SDL/ see the SDL headers.
tv_library(tv_utilities
  SOURCES
    TvBase/Util/XMLSAXParser.cpp
    TvBase/Util/XMLSAXParserHandler.cpp
    TvBase/Util/XMLReaderException.cpp
    TvBase/Util/NaturalStrCmp.cpp
    TvBase/Util/SimpleRandGenerator.cpp
    TvBase/Util/IPP.cpp
    TvBase/Util/TimeMeasure.cpp
    TvBase/Util/PlatformInfo.cpp
    TvBase/Util/LaunchURL.cpp
    TvBase/Util/detail/Spawn.cpp
    TvBase/Util/SDL/ClipboardSDL.cpp
    TvBase/Util/SDL/HostAlertSDL.cpp
    TvBase/Command/CommandManager.cpp
  DEPS tv_controller tv_paths tv_core Threads::Threads)
target_link_libraries(tv_utilities PRIVATE PkgConfig::XML2 PkgConfig::SDL2)

tv_test(tv_controller_tests
  SOURCES
    tests/TvBase/Controller/ParamMemoryTest.cpp
    tests/TvBase/Controller/ParamConfigFileTest.cpp
    tests/TvBase/Controller/EnumToBoolTest.cpp
    tests/TvBase/Controller/KeyValueCodingTest.cpp
    tests/support/TempFolder.cpp
  DEPS tv_controller)

tv_test(tv_utilities_tests
  SOURCES
    tests/TvBase/Util/XMLSAXParserTest.cpp
    tests/TvBase/Util/NaturalStrCmpTest.cpp
    tests/TvBase/Util/SimpleRandGeneratorTest.cpp
    tests/TvBase/Util/IPPTest.cpp
    tests/TvBase/Util/TimeMeasureTest.cpp
    tests/TvBase/Util/PlatformInfoTest.cpp
    tests/TvBase/Util/LaunchURLTest.cpp
    tests/TvBase/Command/CommandManagerTest.cpp
    tests/support/TempFolder.cpp
  DEPS tv_utilities)

# The clipboard's tests start SDL's video layer (dummy driver) in their own process.
tv_test(tv_clipboard_tests
  SOURCES tests/TvBase/Util/ClipboardTest.cpp
  DEPS tv_utilities PkgConfig::SDL2)

tv_test(tv_xml_thread_tests THREADS
  SOURCES tests/TvBase/Util/XMLSAXParserThreadTest.cpp
  DEPS tv_utilities)

tv_fuzz(XMLSAXFuzz
  SOURCES fuzz/XMLSAXFuzz.cpp
  DEPS tv_utilities)

tv_bench(tv_utilities_bench
  SOURCES bench/XMLSAXParserBench.cpp
  DEPS tv_utilities PkgConfig::XML2)
