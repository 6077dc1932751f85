# The window maker and the window tree: the Design Aid's tools that create windows of the
# registered types and show the design frame's windows as a tree sharing the design's selection.
tv_ui_sources(
  SOURCES
    Canvas/UI/WindowMaker.cpp
    Canvas/UI/WindowTree.cpp)

tv_test(tv_window_tools_tests
  SOURCES
    tests/Canvas/UI/WindowToolsTest.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)
