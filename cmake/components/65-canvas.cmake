# The canvas that all windows share: fonts and extra fonts, palette and theme, the widget
# factory, commands, translation, key-value coding and the tool-tip machinery.
tv_ui_sources(
  SOURCES
    Canvas/UI/Canvas.cpp
    Canvas/UI/WindowCanvas.cpp
    Canvas/UI/Palette.cpp
    Canvas/UI/Theme.cpp
    Canvas/UI/PrimitiveFactory.cpp
    Canvas/UI/PaletteEditorCustomPalette.cpp
  DEPS tv_controller tv_utilities tv_files tv_config tv_signals tv_core)

tv_test(tv_canvas_tests
  SOURCES
    tests/Canvas/UI/CanvasTest.cpp
    tests/Canvas/UI/CanvasToolTipTest.cpp
    tests/Canvas/UI/PaletteTest.cpp
    tests/Canvas/UI/DrawTextTest.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

tv_bench(tv_canvas_bench
  SOURCES bench/CanvasBench.cpp
  DEPS tv_ui)
