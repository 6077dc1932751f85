# Pixel buffers, blits, box and line drawing, draw contexts.
tv_ui_sources(
  SOURCES
    Canvas/UI/Native/DIBSection.cpp
    Canvas/UI/Native/DrawDIBSectionFunction.cpp
    Canvas/UI/DIBits.cpp
    Canvas/UI/BitBlt.cpp
    Canvas/UI/BoxDrawing.cpp
    Canvas/UI/LineInfo.cpp
    Canvas/UI/DrawContext.cpp
    Canvas/UI/MemoryDrawContext.cpp
    Canvas/UI/detail/BlitRowsScalar.cpp
    Canvas/UI/detail/BlitRowsSse2.cpp
    Canvas/UI/detail/BlitRowsAvx2.cpp
  DEPS tv_core)
# Only this file is built for AVX2; it runs where the processor reports it. Contraction into
# fused multiply-adds stays off in the whole toolkit so that the float weights round exactly as
# written.
set_source_files_properties(Canvas/UI/detail/BlitRowsAvx2.cpp PROPERTIES COMPILE_OPTIONS -mavx2)
target_compile_options(tv_ui PRIVATE -ffp-contract=off)

tv_test(tv_pixels_tests
  SOURCES
    tests/Canvas/UI/Native/DIBSectionTest.cpp
    tests/Canvas/UI/DIBitsTest.cpp
    tests/Canvas/UI/BitBltTest.cpp
    tests/Canvas/UI/BitBltClipTest.cpp
    tests/Canvas/UI/BlitSimdTest.cpp
    tests/Canvas/UI/ScaleBltTest.cpp
    tests/Canvas/UI/BoxDrawingTest.cpp
    tests/Canvas/UI/LineInfoTest.cpp
    tests/Canvas/UI/MemoryDrawContextTest.cpp
  DEPS tv_ui) # the draw context's text goes to the font engine

tv_bench(tv_pixels_bench
  SOURCES bench/BlitBench.cpp
  DEPS tv_ui PkgConfig::PIXMAN)
