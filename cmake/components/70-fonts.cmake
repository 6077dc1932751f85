# Fonts and text measuring: FreeType faces found through fontconfig, the width cache and the
# rendered-string cache.
tv_ui_sources(
  SOURCES
    TvBase/Util/CRC16.cpp
    Canvas/UI/FontInfo.cpp
    Canvas/UI/Font.cpp
    Canvas/UI/FreeTypeFont.cpp
    Canvas/UI/FontCache.cpp
    Canvas/UI/StringWidthCache.cpp
    Canvas/UI/Ellipsize.cpp
    Canvas/UI/detail/FTLibraryWrapper.cpp
  DEPS tv_files tv_paths tv_config tv_threads tv_core PkgConfig::FREETYPE PkgConfig::FONTCONFIG)

tv_test(FontTest
  SOURCES
    tests/TvBase/Util/CRC16Test.cpp
    tests/Canvas/UI/FontInfoTest.cpp
    tests/Canvas/UI/FreeTypeFontTest.cpp
    tests/Canvas/UI/FontRenderTest.cpp
    tests/Canvas/UI/FontCacheTest.cpp
    tests/Canvas/UI/StringWidthCacheTest.cpp
    tests/Canvas/UI/EllipsizeTest.cpp
    tests/Canvas/UI/support/FontTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

tv_test(FontThreadTest THREADS
  SOURCES
    tests/Canvas/UI/FontThreadTest.cpp
    tests/Canvas/UI/support/FontTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

tv_bench(FontBench
  SOURCES
    bench/FontBench.cpp
    tests/Canvas/UI/support/FontTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)
if(TARGET FontBench)
  target_compile_definitions(FontBench PRIVATE TV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
endif()

tv_fuzz(StringCacheFuzz
  SOURCES fuzz/StringCacheFuzz.cpp
  DEPS tv_ui)
# The text drawing loops are the hot path of every paint.
set_source_files_properties(Canvas/UI/FreeTypeFont.cpp PROPERTIES COMPILE_OPTIONS -O3)
