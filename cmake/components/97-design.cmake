# The live design engine: every frame's UI::Design, which turns the running program into a layout
# editor (selection, drags, guides, snapping, undo, saving layouts), and the little windows it uses.
tv_ui_sources(
  SOURCES
    Canvas/UI/Box.cpp
    Canvas/UI/Design.cpp
    Canvas/UI/DesignDraw.cpp
    Canvas/UI/DesignKeyboard.cpp
    Canvas/UI/DesignMenu.cpp
    Canvas/UI/DesignMouse.cpp)

tv_test(tv_design_tests
  SOURCES
    tests/Canvas/UI/DesignTest.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)
