# The list family: the list box and its rows.

tv_ui_sources(
  SOURCES
    Canvas/UI/ListBox.cpp
    Canvas/UI/ListBoxItem.cpp)

# Lists driven through a frame on the in-memory host window.
tv_test(tv_lists_tests
  SOURCES tests/Canvas/UI/ListBoxTest.cpp
  DEPS tv_ui)
