# The pixel zoom panel of the design tools, and the image clipboard it copies to.

tv_ui_sources(
  SOURCES
    Canvas/UI/PixelZoom.cpp
    Canvas/UI/Native/ImageClipboard.cpp)

# The panel over a second in-memory frame, driven by the frame's mouse messages.
tv_test(tv_pixel_zoom_tests
  SOURCES
    tests/Canvas/UI/PixelZoomTest.cpp
    tests/Canvas/UI/support/ButtonTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

tv_bench(PixelZoomBench
  SOURCES
    bench/PixelZoomBench.cpp
    tests/Canvas/UI/support/ButtonTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)
