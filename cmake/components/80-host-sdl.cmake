# The host layer over SDL 2: host windows, the platform factory and the run loop; the main
# thread's timers, animations, key codes and cursors. Only the files under Canvas/UI/Native/SDL/
# see the SDL headers.

# The frame owns and ticks its animation handler, so the handler lives with the window tree.
target_sources(tv_window PRIVATE Canvas/UI/AnimationHandler.cpp)

tv_library(tv_timers
  SOURCES
    Canvas/UI/Native/TimerQueue.cpp
    Canvas/UI/SimpleTimer.cpp
    Canvas/UI/PulseOverlayTimer.cpp
  DEPS tv_window tv_threads)

tv_library(tv_host
  SOURCES
    Canvas/UI/KeyCode.cpp
    Canvas/UI/Cursor.cpp
    Canvas/UI/Native/HostWindow.cpp
    Canvas/UI/Native/PlatformSupportFactory.cpp
    Canvas/UI/Native/SDL/PlatformSupportFactorySDL.cpp
    Canvas/UI/Native/SDL/HostWindowSDL.cpp
    Canvas/UI/Native/SDL/detail/KeyMapSDL.cpp
  DEPS tv_timers tv_window tv_images tv_pixels tv_config)
target_link_libraries(tv_host PRIVATE PkgConfig::SDL2)

# Logic without a display: key tables, timers, animations, the pulse, cursor pictures.
tv_test(tv_host_unit_tests
  SOURCES
    tests/Canvas/UI/KeyCodeTest.cpp
    tests/Canvas/UI/AnimationHandlerTest.cpp
    tests/Canvas/UI/PulseOverlayTimerTest.cpp
    tests/Canvas/UI/SimpleTimerTest.cpp
    tests/Canvas/UI/CursorTest.cpp
    tests/Canvas/UI/Native/SDL/KeyMapSDLTest.cpp
  DEPS tv_host PkgConfig::SDL2)

# Real SDL windows on an X display: the test starts its own Xvfb when none is set, and skips
# when no display can be opened.
tv_test(tv_host_gui_tests
  SOURCES
    tests/Canvas/UI/Native/SDL/HostWindowSDLTest.cpp
    tests/Canvas/UI/Native/SDL/GuiTestSupport.cpp
  DEPS tv_host tv_config PkgConfig::SDL2
  THREADS)
target_compile_definitions(tv_host_gui_tests
  PRIVATE TV_HOSTWINDOW_DEMO_PATH="$<TARGET_FILE:hostwindow-demo>")
add_dependencies(tv_host_gui_tests hostwindow-demo)

tv_executable(hostwindow-demo
  SOURCES examples/hostwindow-demo/main.cpp
  DEPS tv_host tv_config)

tv_bench(tv_host_bench
  SOURCES bench/HostWindowBench.cpp tests/Canvas/UI/Native/SDL/GuiTestSupport.cpp
  DEPS tv_host PkgConfig::SDL2)

# The frame's tests stand an in-memory host window on the host-window base class, whose
# platform-independent half lives in tv_host.
target_link_libraries(tv_window_tests PRIVATE tv_host)
if(TARGET tv_frame_bench)
  target_link_libraries(tv_frame_bench PRIVATE tv_host)
endif()
