# The palette editor: the designer's window over the running program's palette, opened by the
# canvas (console command "editpalette"), and the desktop's colour under the cursor that its
# eyedropper reads where the program's own windows don't lie.

if(NOT TARGET PkgConfig::X11)
  pkg_check_modules(X11 REQUIRED IMPORTED_TARGET x11)
endif()

tv_ui_sources(
  SOURCES
    Canvas/UI/PaletteEditor.cpp
    Canvas/UI/CanvasPaletteEditor.cpp
    Canvas/UI/Native/SDL/DesktopColorX11.cpp
  PRIVATE_DEPS PkgConfig::SDL2 PkgConfig::X11)

tv_test(tv_palette_editor_tests
  SOURCES tests/Canvas/UI/PaletteEditorTest.cpp
  DEPS tv_ui)
# The GUI session below runs these; building the tests builds them.
add_dependencies(tv_palette_editor_tests tavorin-updater tvdefaults TvTestAutomation)

# The updater recoloured through the editor on a real display, driven through the bridge and
# xdotool. It moves the pointer and takes the bridge's ports, so it runs alone.
add_test(NAME UpdaterApp.PaletteEditor
  COMMAND python3 ${PROJECT_SOURCE_DIR}/tests/Updater/app/palette_editor_gui_test.py
          --bin ${CMAKE_BINARY_DIR}/bin
          --module $<TARGET_FILE:TvTestAutomation>)
set_tests_properties(UpdaterApp.PaletteEditor PROPERTIES
  LABELS gui TIMEOUT 300 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)
