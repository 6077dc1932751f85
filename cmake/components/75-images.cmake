# Images: PNG skins with their cache and gamma, nine-patch stretching, the PNG codec of
# screenshots, SVG icons over Anti-Grain Geometry, and screenshots of a frame.
tv_ui_sources(
  SOURCES
    Canvas/UI/detail/PngReader.cpp
    Canvas/UI/Media.cpp
    Canvas/UI/StretchableBits.cpp
    Canvas/UI/PNG.cpp
    Canvas/UI/SVG/Exception.cpp
    Canvas/UI/SVG/Colors.cpp
    Canvas/UI/SVG/PathTokenizer.cpp
    Canvas/UI/SVG/PathRenderer.cpp
    Canvas/UI/SVG/Parser.cpp
    Canvas/UI/SVG/XmlHandler.cpp
    Canvas/UI/SVG/SVG.cpp
    Canvas/UI/AGGInlineRenderer.cpp
    Canvas/UI/Native/ScreenShotHost.cpp
    Canvas/UI/ScreenShot.cpp
  DEPS tv_files tv_config tv_utilities PkgConfig::PNG PkgConfig::ZLIB PkgConfig::AGG)
# AGG's scanline rasterizer shifts negative coverage values left: defined on every compiler we
# build with (and by C++20), but reported under C++17. Only the files that instantiate it are
# spared that one check.
if(TV_SANITIZE MATCHES "undefined")
  set_source_files_properties(Canvas/UI/SVG/SVG.cpp Canvas/UI/AGGInlineRenderer.cpp
                              PROPERTIES COMPILE_OPTIONS -fno-sanitize=shift-base)
endif()

tv_test(tv_images_tests
  SOURCES
    tests/Canvas/UI/MediaTest.cpp
    tests/Canvas/UI/StretchableBitsTest.cpp
    tests/Canvas/UI/PNGTest.cpp
    tests/Canvas/UI/SVG/SVGTest.cpp
    tests/Canvas/UI/ScreenShotTest.cpp
    tests/Canvas/UI/support/PngTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

tv_bench(tv_images_bench SOURCES bench/ImageBench.cpp DEPS tv_ui)

tv_fuzz(PngDecodeFuzz SOURCES fuzz/PngDecodeFuzz.cpp DEPS tv_ui)
tv_fuzz(SvgParseFuzz SOURCES fuzz/SvgParseFuzz.cpp DEPS tv_ui)
