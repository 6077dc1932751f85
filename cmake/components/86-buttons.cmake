# The button family: the press state machine, push, pixmap, on/off, check and radio buttons,
# hyperlinks, button groups, bracket sets and the banner background of the updater's panels.

tv_ui_sources(
  SOURCES
    Canvas/UI/Button.cpp
    Canvas/UI/PushButton.cpp
    Canvas/UI/SimplePushButton.cpp
    Canvas/UI/PixmapButton.cpp
    Canvas/UI/OnOffButton.cpp
    Canvas/UI/CheckBox.cpp
    Canvas/UI/RadioButton.cpp
    Canvas/UI/Hyperlink.cpp
    Canvas/UI/ButtonGroup.cpp
    Canvas/UI/BracketSet.cpp
    Canvas/UI/SimpleBannerBG.cpp
    Canvas/UI/detail/ButtonDrawing.cpp
    TvBase/Util/LaunchWebURL.cpp
  DEPS tv_controller tv_utilities tv_core)

# Buttons driven through a frame on the in-memory host window, drawn into a memory bitmap.
tv_test(tv_buttons_tests
  SOURCES
    tests/Canvas/UI/ButtonTest.cpp
    tests/Canvas/UI/ButtonFamilyTest.cpp
    tests/Canvas/UI/HyperlinkTest.cpp
    tests/Canvas/UI/ButtonGroupTest.cpp
    tests/Canvas/UI/support/ButtonTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)
