# The popup menu drawn by the toolkit: its entries and the rules of keys and the mouse apart
# from any window, and the SDL windows and nested loop that show it.

pkg_check_modules(X11 REQUIRED IMPORTED_TARGET x11)

tv_ui_sources(
  SOURCES
    Canvas/UI/Native/PopupMenu.cpp
    Canvas/UI/Native/PopupMenuTracker.cpp
    Canvas/UI/Native/SDL/PopupMenuSDL.cpp
    Canvas/UI/Native/SDL/X11WakeUpGuard.cpp
  PRIVATE_DEPS PkgConfig::SDL2 PkgConfig::X11)

tv_test(tv_popup_menu_tests
  SOURCES tests/Canvas/UI/Native/PopupMenuTrackerTest.cpp
  DEPS tv_ui)

# Real SDL windows driven with xdotool.
tv_test(tv_popup_menu_gui_tests
  SOURCES
    tests/Canvas/UI/Native/SDL/PopupMenuSDLTest.cpp
    tests/Canvas/UI/Native/SDL/GuiTestSupport.cpp
  DEPS tv_ui PkgConfig::SDL2 PkgConfig::X11
  LABELS gui)
