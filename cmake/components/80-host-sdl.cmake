# The host layer over SDL 2: host windows, the platform factory and the run loop; the main
# thread's timers, animations, key codes and cursors. Only the files under Canvas/UI/Native/SDL/
# see the SDL headers.

tv_ui_sources(
  SOURCES
    Canvas/UI/AnimationHandler.cpp
    Canvas/UI/Native/TimerQueue.cpp
    Canvas/UI/SimpleTimer.cpp
    Canvas/UI/PulseOverlayTimer.cpp
  DEPS tv_threads)

# Where SDL runs on X11, the server itself tells where a framed window's inside is.
find_package(PkgConfig REQUIRED)
pkg_check_modules(TV_X11 REQUIRED IMPORTED_TARGET x11)

tv_ui_sources(
  SOURCES
    Canvas/UI/KeyCode.cpp
    Canvas/UI/Cursor.cpp
    Canvas/UI/Native/HostWindow.cpp
    Canvas/UI/Native/PlatformSupportFactory.cpp
    Canvas/UI/Native/SDL/PlatformSupportFactorySDL.cpp
    Canvas/UI/Native/SDL/HostWindowSDL.cpp
    Canvas/UI/Native/SDL/detail/KeyMapSDL.cpp
    Canvas/UI/Native/SDL/detail/WindowPositionX11.cpp
  DEPS tv_config
  PRIVATE_DEPS PkgConfig::SDL2 PkgConfig::TV_X11)

# Logic without a display: key tables, timers, animations, the pulse, cursor pictures.
tv_test(tv_host_unit_tests
  SOURCES
    tests/Canvas/UI/KeyCodeTest.cpp
    tests/Canvas/UI/AnimationHandlerTest.cpp
    tests/Canvas/UI/PulseOverlayTimerTest.cpp
    tests/Canvas/UI/SimpleTimerTest.cpp
    tests/Canvas/UI/CursorTest.cpp
    tests/Canvas/UI/Native/SDL/KeyMapSDLTest.cpp
  DEPS tv_ui PkgConfig::SDL2)

# Real SDL windows on an X display: the test starts its own Xvfb when none is set, and skips
# when no display can be opened.
tv_test(tv_host_gui_tests
  SOURCES
    tests/Canvas/UI/Native/SDL/HostWindowSDLTest.cpp
    tests/Canvas/UI/Native/SDL/GuiTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui tv_config PkgConfig::SDL2
  THREADS)
target_compile_definitions(tv_host_gui_tests
  PRIVATE TV_HOSTWINDOW_DEMO_PATH="$<TARGET_FILE:hostwindow-demo>")
add_dependencies(tv_host_gui_tests hostwindow-demo)

tv_executable(hostwindow-demo
  SOURCES examples/hostwindow-demo/main.cpp
  DEPS tv_ui tv_config)

tv_bench(tv_host_bench
  SOURCES bench/HostWindowBench.cpp tests/Canvas/UI/Native/SDL/GuiTestSupport.cpp
  DEPS tv_ui PkgConfig::SDL2)
