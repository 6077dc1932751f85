# The list family: the list box and its rows, the combo box and its popup list,
# the tree list and the legend; the host's file and folder choosers.

tv_ui_sources(
  SOURCES
    Canvas/UI/ListBox.cpp
    Canvas/UI/ListBoxItem.cpp
    Canvas/UI/ComboBox.cpp
    Canvas/UI/ComboBoxPopup.cpp
    Canvas/UI/TreeList.cpp
    Canvas/UI/Legend.cpp
    Canvas/UI/Native/FileDialog.cpp)

# Lists driven through a frame on the in-memory host window.
tv_test(tv_lists_tests
  SOURCES
    tests/Canvas/UI/ListBoxTest.cpp
    tests/Canvas/UI/TreeListTest.cpp
    tests/Canvas/UI/Native/FileDialogTest.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

tv_bench(ListsBench
  SOURCES bench/ListsBench.cpp
  DEPS tv_ui)
