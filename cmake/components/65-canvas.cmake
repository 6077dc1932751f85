# The canvas that all windows share: fonts and extra fonts, palette and theme, the widget
# factory, commands, translation, key-value coding and the tool-tip machinery.
tv_library(tv_canvas
  SOURCES
    Canvas/UI/Canvas.cpp
    Canvas/UI/WindowCanvas.cpp
    Canvas/UI/Palette.cpp
    Canvas/UI/Theme.cpp
    Canvas/UI/PrimitiveFactory.cpp
    Canvas/UI/PaletteEditorCustomPalette.cpp
  DEPS tv_window tv_fonts tv_controller tv_utilities tv_files tv_config tv_signals tv_core)

# Frames join the canvas and windows reach its palette and commands; the memory draw context
# draws text through the fonts. Both libraries are static, so CMake repeats them as needed.
target_link_libraries(tv_window PUBLIC tv_canvas)
target_link_libraries(tv_pixels PUBLIC tv_fonts)
# The default theme makes the simple widgets.
target_link_libraries(tv_canvas PUBLIC tv_text tv_buttons tv_scrolling)

tv_test(tv_canvas_tests
  SOURCES
    tests/Canvas/UI/CanvasTest.cpp
    tests/Canvas/UI/CanvasToolTipTest.cpp
    tests/Canvas/UI/PaletteTest.cpp
    tests/Canvas/UI/DrawTextTest.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_canvas)

tv_bench(tv_canvas_bench
  SOURCES bench/CanvasBench.cpp
  DEPS tv_canvas)
