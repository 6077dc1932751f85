# Scrolling: scroll views over a larger virtual area, scroll bars and their default look,
# splitters, window stacks and border styles; tabs, whose captions are text labels, in a
# library of their own. The tests and the benchmark run on the in-memory host window.
tv_ui_sources(
  SOURCES
    Canvas/UI/Borders.cpp
    Canvas/UI/ScrollBar.cpp
    Canvas/UI/SimpleScrollBar.cpp
    Canvas/UI/ScrollView.cpp
    Canvas/UI/Splitter.cpp
    Canvas/UI/WindowStack.cpp)

tv_library(tv_tab
  SOURCES Canvas/UI/Tab.cpp
  DEPS tv_ui)

tv_test(tv_scrolling_tests
  SOURCES
    tests/Canvas/UI/ScrollBarTest.cpp
    tests/Canvas/UI/ScrollViewTest.cpp
    tests/Canvas/UI/SplitterStackTest.cpp
  DEPS tv_ui)

tv_test(tv_tab_tests
  SOURCES tests/Canvas/UI/TabTest.cpp
  DEPS tv_tab)

tv_bench(ScrollBench
  SOURCES bench/ScrollBench.cpp
  DEPS tv_ui)
