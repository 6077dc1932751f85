// The gallery program on a private X display, driven from outside with xdotool the way a user
// would: its standard output says what the widgets saw.

#include "tests/Canvas/UI/Native/SDL/GuiTestSupport.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>

namespace
{

/// Starts the gallery with its settings in `home`, waits (bounded) for its window, runs the
/// xdotool `actions` with WINDOW set to the window id, then waits (bounded) until the output
/// holds a line starting with `until`, and ends the gallery. Returns the gallery's output.
std::string RunGallery(TestSupport::TempFolder const& home, std::string const& actions,
                       std::string const& until)
{
    std::string const out = home.Path() + "/out.txt";
    std::ostringstream script;
    script << "HOME='" << home.Path() << "' XDG_CONFIG_HOME='" << home.Path()
           << "' '" TV_BINARY_DIR "/bin/tv-gallery' >'" << out << "' 2>&1 & P=$!; "
           << "WINDOW=$(timeout 15 xdotool search --sync --onlyvisible --name '^Gallery$' "
              "| head -n 1); "
           << "if [ -n \"$WINDOW\" ]; then " << actions << "; "
           << "timeout 5 sh -c 'until grep -q \"^" << until << "\" \"$0\"; do sleep 0.05; done' '"
           << out << "'; fi; kill $P 2>/dev/null; wait $P 2>/dev/null; true";
    UI::Test::Run(script.str());
    return TestSupport::ReadFile(out);
}

/// The last "scrolled <x> <y>" line's y; -1 when there is none.
int LastScrolledY(std::string const& output)
{
    std::istringstream lines(output);
    std::string line;
    int y = -1;
    while (std::getline(lines, line))
    {
        int x = 0, value = 0;
        if (std::sscanf(line.c_str(), "scrolled %d %d", &x, &value) == 2)
            y = value;
    }
    return y;
}

TEST(GalleryGui, TheWheelScrollsTheListDown)
{
    REQUIRE_DISPLAY_AND_XDOTOOL();
    TestSupport::TempFolder home("tv-gallery-gui");
    // The list sits in the right column, below its title.
    std::string const output = RunGallery(
        home,
        "xdotool mousemove --window $WINDOW 600 120 sleep 0.2 click 5 click 5 click 5 >/dev/null",
        "scrolled 0 [1-9]");
    ASSERT_NE(std::string::npos, output.find("scrolled ")) << output;
    EXPECT_GT(LastScrolledY(output), 0) << output;
}

TEST(GalleryGui, ATabClickRaisesItsPage)
{
    REQUIRE_DISPLAY_AND_XDOTOOL();
    TestSupport::TempFolder home("tv-gallery-gui");
    std::string const output =
        RunGallery(home, "xdotool mousemove --window $WINDOW 650 368 click 1 >/dev/null", "tab ");
    EXPECT_NE(std::string::npos, output.find("tab About\n")) << output;
}

TEST(GalleryGui, TheLayoutPlacesThePixmapButtonFromTheResources)
{
    REQUIRE_DISPLAY_AND_XDOTOOL();
    TestSupport::TempFolder home("tv-gallery-gui");
    // The layout puts the button at (176, 16) in the images panel, which starts at (420, 486).
    std::string const output = RunGallery(
        home, "xdotool mousemove --window $WINDOW 646 514 click 1 >/dev/null", "clicked ");
    EXPECT_NE(std::string::npos, output.find("clicked Pixmap Button\n")) << output;
    EXPECT_EQ(std::string::npos, output.find("gallery: ")) << output;
}

} // namespace
