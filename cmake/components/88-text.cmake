# Text and editing widgets: labels, wrapped text, edit fields, tool tips, and the host's inline
# editor that edit fields open over themselves. The gallery example shows them for manual
# checks and GUI tests.

tv_ui_sources(
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
  DEPS tv_core
  PRIVATE_DEPS PkgConfig::SDL2)

# The gallery starts the test automation bridge, so it links the bridge's loader.
tv_executable(tv-gallery
  SOURCES examples/gallery/main.cpp examples/gallery/MainWindow.cpp examples/gallery/Gallery.cpp
          examples/gallery/Buttons.cpp examples/gallery/Scrolling.cpp examples/gallery/Images.cpp
  DEPS tv_ui tv_tab tv_files tv_controller tv_config)

# The gallery's images, icon and layouts, packed into Resources/gallery.resembed beside it and
# repacked when any file below its resource folder changes.
set(TV_GALLERY_RESOURCE_DIR ${PROJECT_SOURCE_DIR}/examples/gallery/resources)
set(TV_GALLERY_RESOURCE_FILE ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Resources/gallery.resembed)
file(GLOB_RECURSE TV_GALLERY_RESOURCE_INPUTS CONFIGURE_DEPENDS ${TV_GALLERY_RESOURCE_DIR}/*)
add_custom_command(
  OUTPUT ${TV_GALLERY_RESOURCE_FILE}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Resources
  COMMAND tvresembed pack ${TV_GALLERY_RESOURCE_DIR} ${TV_GALLERY_RESOURCE_FILE}
  DEPENDS tvresembed ${TV_GALLERY_RESOURCE_INPUTS}
  COMMENT "Packing the gallery's resources"
  VERBATIM)
add_custom_target(gallery_resources DEPENDS ${TV_GALLERY_RESOURCE_FILE})
add_dependencies(tv-gallery gallery_resources)

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
  DEPS tv_ui PkgConfig::SDL2)

# Real SDL windows: the inline editor typed into with xdotool, and the tool tip's delay.
tv_test(tv_text_gui_tests
  SOURCES
    tests/Canvas/UI/Native/SDL/InlineEditorSDLTest.cpp
    tests/Canvas/UI/Native/SDL/GuiTestSupport.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui tv_config PkgConfig::SDL2
  LABELS gui)

# The gallery program itself on a private X display, driven with xdotool.
tv_test(tv_gallery_gui_tests
  SOURCES
    tests/examples/gallery/GalleryGuiTest.cpp
    tests/Canvas/UI/Native/SDL/GuiTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui PkgConfig::SDL2
  LABELS gui)
add_dependencies(tv_gallery_gui_tests tv-gallery)
