# Layout files and the window factory: loading and saving ".layout" files over TinyXML-2, the
# factory that makes windows by type name, and the registration of the built-in window types.
tv_library(tv_layout
  SOURCES
    Canvas/UI/Layout.cpp
    Canvas/UI/WindowLayout.cpp
    Canvas/UI/FrameLayout.cpp
    Canvas/UI/WindowFactory.cpp
    Canvas/UI/WindowFactoryRegistration/BuiltInWindowTypes.cpp
  DEPS tv_window tv_canvas tv_files tv_signals tv_core tv_text tv_buttons tv_scrolling
       PkgConfig::TINYXML2)

# Windows and frames load and save their own layouts, so whoever links the window tree gets the
# layout code too. Both libraries are static: CMake repeats them as needed.
target_link_libraries(tv_window PUBLIC tv_layout)

tv_test(tv_layout_tests
  SOURCES
    tests/Canvas/UI/LayoutTest.cpp
    tests/Canvas/UI/LayoutSaveTest.cpp
    tests/Canvas/UI/WindowFactoryTest.cpp
    tests/support/TempFolder.cpp
  DEPS tv_layout)

tv_fuzz(LayoutFuzz
  SOURCES fuzz/LayoutFuzz.cpp
  DEPS tv_layout)
