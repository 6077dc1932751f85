# Text and editing widgets: labels, wrapped text, edit fields, tool tips, and the host's inline
# editor that edit fields open over themselves. The gallery example shows them for manual
# checks and GUI tests.

tv_library(tv_text
  SOURCES
    Canvas/UI/Text.cpp
    Canvas/UI/MultiText.cpp
    Canvas/UI/Edit.cpp
    Canvas/UI/SimpleEdit.cpp
    Canvas/UI/ToolTip.cpp
    Canvas/UI/SimpleToolTip.cpp
    Canvas/UI/Native/LineEditor.cpp
    Canvas/UI/Native/HostCanvasPlatform.cpp
    Canvas/UI/Native/SDL/InlineEditorSDL.cpp
  DEPS tv_host tv_canvas tv_window tv_fonts tv_core)
target_link_libraries(tv_text PRIVATE PkgConfig::SDL2)

tv_executable(tv-gallery
  SOURCES examples/gallery/main.cpp examples/gallery/Gallery.cpp examples/gallery/Buttons.cpp
          examples/gallery/Scrolling.cpp
  DEPS tv_text tv_buttons tv_scrolling tv_tab tv_controller tv_host tv_config)

# Text rules, wrapping, ellipsis and edit fields driven through the frame, without a display.
tv_test(tv_text_tests
  SOURCES
    tests/Canvas/UI/TextTest.cpp
    tests/Canvas/UI/MultiTextTest.cpp
    tests/Canvas/UI/EditTest.cpp
    tests/Canvas/UI/ToolTipTest.cpp
    tests/Canvas/UI/Native/LineEditorTest.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_text PkgConfig::SDL2)

# Real SDL windows: the inline editor typed into with xdotool, and the tool tip's delay.
tv_test(tv_text_gui_tests
  SOURCES
    tests/Canvas/UI/Native/SDL/InlineEditorSDLTest.cpp
    tests/Canvas/UI/Native/SDL/GuiTestSupport.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_text tv_config PkgConfig::SDL2
  LABELS gui)

# The built-in window types that layout files can name include the text widgets.
target_link_libraries(tv_layout PUBLIC tv_text)

# The gallery program itself on a private X display, driven with xdotool.
tv_test(tv_gallery_gui_tests
  SOURCES
    tests/examples/gallery/GalleryGuiTest.cpp
    tests/Canvas/UI/Native/SDL/GuiTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_text PkgConfig::SDL2
  LABELS gui)
add_dependencies(tv_gallery_gui_tests tv-gallery)
