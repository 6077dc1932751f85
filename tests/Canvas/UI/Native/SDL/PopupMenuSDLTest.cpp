// The popup menu on a real display: shown over a focused host window and driven with xdotool
// through the keyboard, the mouse, Escape and a click outside; and a wake-up that reaches a
// window after it closed.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostCanvasPlatform.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "Canvas/UI/Native/PopupMenuTracker.h"
#include "Canvas/UI/SimpleTimer.h"
#include "Canvas/UI/Window.h"
#include "tests/Canvas/UI/Native/SDL/GuiTestSupport.h"

#include <SDL.h>
#include <gtest/gtest.h>

// Xlib after the test framework, which its macros (`Bool`, `None`) would break; and without the
// one that would stand for `PopupMenu::None` below.
#include <SDL_syswm.h>
#include <X11/Xlib.h>
#undef None
#undef Bool

#include <cstring>
#include <memory>

using UI::Point;
using UI::Rect;
using UI::Native::PlatformSupportFactory;
using UI::Native::PopupMenu;

namespace
{

/// A focused 320 by 200 host window at (100, 100).
struct Scene
{
    UI::Canvas canvas{"Popup Menu GUI Test"};
    std::unique_ptr<UI::Native::HostWindow> host;

    Scene()
    {
        canvas.SetPlatform(
            boost::shared_ptr<UI::CanvasPlatform>(new UI::Native::HostCanvasPlatform(&canvas)));
        host.reset(
            PlatformSupportFactory::CreateHostWindow(&canvas, "Menu Test", nullptr, nullptr));
    }

    bool Open()
    {
        UI::Native::HostWindowStyle style;
        style.noFrame = true;
        if (!host->Create(nullptr, nullptr, "Menu Test", Rect(Point(100, 100), UI::Size(320, 200)),
                          false, false, style))
            return false;
        UI::Frame* frame = host->GetFrame();
        frame->SetTopLevelWindow(new UI::Window(frame, nullptr, "Root"));
        host->StartMasterUpdateTimer(20);
        host->Show(true);
        return UI::Test::PumpUntil([this] { return host->IsHoldingFocus(); });
    }
};

/// File, Edit >, (separator), Quit; Edit holds Cut, Copy [checked], Paste [disabled].
void fill(PopupMenu& menu)
{
    menu.AddItem(1, "File");
    PopupMenu* edit = menu.AddSubmenu("Edit");
    edit->AddItem(21, "Cut");
    edit->AddItem(22, "Copy", true, true);
    edit->AddItem(23, "Paste", false);
    menu.AddSeparator();
    menu.AddItem(3, "Quit");
}

/// Starts xdotool in the background: once the menu's window is on the screen it runs `actions`.
void drive(std::string const& actions)
{
    UI::Test::Run("(timeout 15 xdotool search --sync --onlyvisible --name '^Popup Menu$' "
                  ">/dev/null && xdotool " +
                  actions + ") >/dev/null 2>&1 &");
}

/// Shows the menu at (150, 150) with a deadline: a menu still open after it is dismissed by a
/// press outside, so that a broken menu fails the test instead of hanging it.
int show(PopupMenu& menu)
{
    bool fired = false;
    UI::SimpleTimer watchdog(
        [&fired]
        {
            fired = true;
            SDL_Event press;
            SDL_zero(press);
            press.type = SDL_MOUSEBUTTONDOWN;
            press.button.x = -1000;
            SDL_PushEvent(&press);
        },
        20000, true);
    int const answer = menu.Show(Point(150, 150));
    EXPECT_FALSE(fired) << "the menu never finished";
    return answer;
}

} // namespace

TEST(PopupMenuGui, KeysChooseMouseChoosesEscapeAndOutsideClickDismiss)
{
    REQUIRE_DISPLAY_AND_XDOTOOL();
    Scene s;
    ASSERT_TRUE(s.Open());
    PopupMenu menu;
    fill(menu);

    // Into the submenu with the keyboard, past the checked item, onto the disabled one (skipped,
    // so the selection wraps to Cut), and back to Copy.
    drive("key --delay 60 Down Down Right Down Down Up Return");
    EXPECT_EQ(22, show(menu));

    // Left closes the submenu, and the keys still reach the menu.
    drive("key --delay 60 Down Down Right Left Up Return");
    EXPECT_EQ(1, show(menu));

    drive("key --delay 60 q");
    EXPECT_EQ(3, show(menu));

    drive("key --delay 60 Down Escape");
    EXPECT_EQ(PopupMenu::None, show(menu));

    // A press outside, on the window below; the keyboard goes back to that window.
    drive("mousemove --sync 400 280 click 1");
    EXPECT_EQ(PopupMenu::None, show(menu));
    EXPECT_TRUE(UI::Test::PumpUntil([&s] { return s.host->IsHoldingFocus(); }));

    // The mouse: the second row opens the submenu on hovering; its first row is clicked.
    int const row = s.canvas.GetFont(checked_value<unsigned int>())->GetHeight() +
                    2 * UI::Native::PopupMenuTracker::RowPadding;
    int const secondRowY = 150 + 1 + row + row / 2;
    drive("mousemove --sync 170 " + std::to_string(secondRowY) + " sleep 0.3 mousemove --sync " +
          "300 " + std::to_string(secondRowY) + " sleep 0.3 click 1");
    int const answer = show(menu);
    // The submenu lies right of the root, its first row level with Edit.
    EXPECT_EQ(21, answer);

    // Without a display or with nothing in it the menu answers none at once.
    PopupMenu empty;
    EXPECT_EQ(PopupMenu::None, empty.Show(Point(0, 0)));
}

// SDL wakes a waiting loop by an X event sent to its newest window from a second connection; a
// window closed just before the event arrives makes the server refuse it. Xlib's default
// handler would end the program; from the start of video on that refusal must pass unnoticed.
TEST(X11WakeUps, ARefusedWakeUpToAClosedWindowLeavesTheProgramRunning)
{
    Scene s;
    char const* driver = SDL_GetCurrentVideoDriver();
    if (!driver || std::strcmp(driver, "x11") != 0)
        GTEST_SKIP() << "not on X11";
    SDL_Window* window = SDL_CreateWindow("Closing", 0, 0, 10, 10, SDL_WINDOW_HIDDEN);
    ASSERT_NE(nullptr, window);
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    ASSERT_TRUE(SDL_GetWindowWMInfo(window, &info));
    ::Window const closed = info.info.x11.window;
    SDL_DestroyWindow(window);
    XSync(info.info.x11.display, False);

    Display* other = XOpenDisplay(nullptr);
    ASSERT_NE(nullptr, other);
    XEvent wake;
    std::memset(&wake, 0, sizeof wake);
    wake.xclient.type = ClientMessage;
    wake.xclient.window = closed;
    wake.xclient.format = 32;
    XSendEvent(other, closed, False, NoEventMask, &wake);
    // The refusal comes back here, to the error handler.
    XSync(other, False);
    XCloseDisplay(other);
    EXPECT_TRUE(s.host != nullptr);
}
