# Layout files and the window factory: loading and saving ".layout" files over TinyXML-2, the
# factory that makes windows by type name, and the registration of the built-in window types.
tv_ui_sources(
  SOURCES
    Canvas/UI/Layout.cpp
    Canvas/UI/WindowLayout.cpp
    Canvas/UI/FrameLayout.cpp
    Canvas/UI/WindowFactory.cpp
    Canvas/UI/WindowFactoryRegistration/BuiltInWindowTypes.cpp
  DEPS tv_files tv_signals tv_core PkgConfig::TINYXML2)

tv_test(tv_layout_tests
  SOURCES
    tests/Canvas/UI/LayoutTest.cpp
    tests/Canvas/UI/LayoutSaveTest.cpp
    tests/Canvas/UI/WindowFactoryTest.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

tv_fuzz(LayoutFuzz
  SOURCES fuzz/LayoutFuzz.cpp
  DEPS tv_ui)
