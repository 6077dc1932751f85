# The window tree and the frame: windows, frames, the canvas they share and the host window door.
# The design engine behind the frame's design seam is in 97-design.cmake.
tv_ui_sources(
  SOURCES
    Canvas/UI/Window.cpp
    Canvas/UI/Frame.cpp
    Canvas/UI/FocusIndicator.cpp
    Canvas/UI/HotDraw.cpp
    Canvas/UI/detail/DebugReport.cpp
  DEPS tv_signals tv_threads tv_core)

tv_test(tv_window_tests
  SOURCES
    tests/Canvas/UI/WindowTest.cpp
    tests/Canvas/UI/FrameTest.cpp
  DEPS tv_ui)

tv_bench(tv_frame_bench
  SOURCES bench/FrameBench.cpp
  DEPS tv_ui)
