// Host windows on a real X display (a private Xvfb): pixels on the screen, input sent with
// xdotool, geometry kept across runs, close veto, the master timer, posted messages.

#include "Canvas/UI/Native/SDL/HostWindowSDL.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/SimpleTimer.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Util/ConfigFile.h"
#include "tests/Canvas/UI/Native/SDL/GuiTestSupport.h"
#include "tests/TvBase/Util/detail/TempConfigHome.h"

#include <gtest/gtest.h>

#include <SDL.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <time.h>
#include <unistd.h>
#include <vector>

using UI::Point;
using UI::Rect;
using UI::Size;
using UI::Native::HostWindow;
using UI::Native::PlatformSupportFactory;

namespace
{

#define REQUIRE_DISPLAY()                                                                          \
    do                                                                                             \
    {                                                                                              \
        std::string reason;                                                                        \
        if (!UI::Test::EnsureDisplay(reason))                                                      \
            GTEST_SKIP() << "no display: " << reason;                                              \
    } while (false)

/// A window that fills itself with one colour and records what reaches it.
class Probe : public UI::Window
{
public:
    Probe(UI::Frame* frame, UI::Window* parent, char const* name, unsigned int color)
        : Window(frame, parent, name), color(color)
    {
    }
    void Draw(UI::DrawContext* context) override
    {
        context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                         color, 255);
        Window::Draw(context);
    }
    bool onMousePress(Point const& p, unsigned int flags) override
    {
        presses.push_back(p);
        pressFlags = flags;
        return true;
    }
    bool onMouseRightPress(Point const& p, unsigned int) override
    {
        rightPresses.push_back(p);
        return true;
    }
    bool onKeyPress(unsigned int code, unsigned int flags, bool) override
    {
        keys.push_back(code);
        keyFlags.push_back(flags);
        return true;
    }
    bool onKeyChar(char c, unsigned int, bool) override
    {
        text += c;
        return true;
    }

    unsigned int color;
    std::vector<Point> presses;
    std::vector<Point> rightPresses;
    unsigned int pressFlags = 0;
    std::vector<unsigned int> keys;
    std::vector<unsigned int> keyFlags;
    std::string text;
};

/// A canvas and one host window with a coloured top-level window.
struct Scene
{
    UI::Canvas canvas{"GUI Test"};
    std::unique_ptr<HostWindow> host;
    Probe* root = nullptr;

    explicit Scene(char const* name, Util::ConfigFile* config = nullptr)
    {
        host.reset(PlatformSupportFactory::CreateHostWindow(&canvas, name, nullptr, config));
    }

    bool Open(Rect const& rect, unsigned int color, bool serialized = false)
    {
        UI::Native::HostWindowStyle style;
        style.noFrame = true;
        bool const made =
            serialized
                ? host->CreateSerialized(nullptr, nullptr, host->GetWindowName(), rect, false,
                                         false, style, false, false)
                : host->Create(nullptr, nullptr, host->GetWindowName(), rect, false, false, style);
        if (!made)
            return false;
        UI::Frame* frame = host->GetFrame();
        root = new Probe(frame, nullptr, "Root", color);
        frame->SetTopLevelWindow(root);
        frame->SetDrawingEnabled(true);
        host->Show(true);
        return true;
    }

    /// Until the frame has drawn everything it had to.
    bool Settle()
    {
        UI::Frame* frame = host->GetFrame();
        return UI::Test::PumpUntil([frame] { return frame->GetInvalidRegions().empty(); });
    }
};

std::string xdotool(std::string const& args)
{
    return "xdotool " + args + " >/dev/null 2>&1";
}

} // namespace

// ---- pixels

TEST(HostWindowSDLScreen, ShowsTheFramesBitmapPixelForPixel)
{
    REQUIRE_DISPLAY();
    Scene scene("Pixels");
    Rect const where(Point(40, 30), Size(160, 120));
    ASSERT_TRUE(scene.Open(where, 0xFF102030));
    UI::Frame* frame = scene.host->GetFrame();
    Probe* a = new Probe(frame, scene.root, "A", 0xFFE04020);
    a->SetGeometry(10, 10, 50, 40);
    Probe* b = new Probe(frame, scene.root, "B", 0xFF20C0F0);
    b->SetGeometry(70, 60, 80, 50);
    ASSERT_TRUE(scene.Settle());
    EXPECT_EQ(scene.host->GetClientRect(), where);

    std::vector<unsigned int> screen = UI::Test::GrabScreen(where);
    ASSERT_EQ(screen.size(), 160u * 120u) << "import could not read the screen";
    auto const* context = static_cast<UI::MemoryDrawContext*>(frame->GetDrawContext());
    auto const& section = context->GetDIBSection();
    int mismatches = 0;
    for (int y = 0; y < 120; ++y)
        for (int x = 0; x < 160; ++x)
            mismatches += screen[y * 160 + x] !=
                          (section->GetPixels()[y * section->GetStride() + x] | 0xFF000000u);
    EXPECT_EQ(mismatches, 0);
    EXPECT_EQ(screen[15 * 160 + 15], 0xFFE04020u);
    EXPECT_EQ(screen[100 * 160 + 100], 0xFF20C0F0u);
    EXPECT_EQ(screen[5 * 160 + 5], 0xFF102030u);

    // A change reaches the screen through the next update, not before.
    b->color = 0xFF00FF00u;
    b->Update();
    ASSERT_TRUE(scene.Settle());
    screen = UI::Test::GrabScreen(where);
    ASSERT_EQ(screen.size(), 160u * 120u);
    EXPECT_EQ(screen[100 * 160 + 100], 0xFF00FF00u);
    EXPECT_EQ(screen[15 * 160 + 15], 0xFFE04020u);
}

TEST(HostWindowSDLScreen, NothingIsDrawnUntilTheFrameEnablesDrawing)
{
    REQUIRE_DISPLAY();
    Scene scene("Not Yet");
    UI::Native::HostWindowStyle style;
    style.noFrame = true;
    ASSERT_TRUE(scene.host->Create(nullptr, nullptr, "Not Yet", Rect(Point(300, 300), Size(40, 30)),
                                   true, true, style));
    UI::Frame* frame = scene.host->GetFrame();
    frame->SetTopLevelWindow(new Probe(frame, nullptr, "Root", 0xFFFF00FF));
    UI::Test::PumpUntil([] { return false; }, 100);
    EXPECT_FALSE(frame->GetInvalidRegions().empty());
    frame->SetDrawingEnabled(true);
    frame->postUpdateMessage();
    ASSERT_TRUE(scene.Settle());
    std::vector<unsigned int> screen = UI::Test::GrabScreen(Rect(Point(300, 300), Size(40, 30)));
    ASSERT_FALSE(screen.empty());
    EXPECT_EQ(screen[0], 0xFFFF00FFu);
}

// ---- input

TEST(HostWindowSDLInput, ClicksAndKeysReachTheWindowUnderThePointer)
{
    REQUIRE_DISPLAY_AND_XDOTOOL();
    Scene left("Left");
    Scene right("Right");
    ASSERT_TRUE(left.Open(Rect(Point(50, 50), Size(200, 150)), 0xFF400000));
    ASSERT_TRUE(right.Open(Rect(Point(400, 50), Size(200, 150)), 0xFF004000));
    ASSERT_TRUE(left.Settle());
    ASSERT_TRUE(right.Settle());

    ASSERT_EQ(UI::Test::Run(xdotool("mousemove 470 90 click 1")), 0);
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return !right.root->presses.empty(); }));
    EXPECT_EQ(right.root->presses[0], Point(70, 40));
    EXPECT_TRUE(left.root->presses.empty());

    ASSERT_EQ(UI::Test::Run(xdotool("mousemove 60 180 click 3")), 0);
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return !left.root->rightPresses.empty(); }));
    EXPECT_EQ(left.root->rightPresses[0], Point(10, 130));

    // Keys go to the focused window: the left one, clicked last.
    left.host->SetNativeFocus();
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return left.host->IsHoldingFocus(); }));
    ASSERT_EQ(UI::Test::Run(xdotool("key a shift+semicolon F2 Return KP_Enter Up BackSpace")), 0);
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return left.root->keys.size() >= 8; }));
    std::vector<unsigned int> const expected = {65, 16, 186, 113, 13, 4096, 38, 8};
    EXPECT_EQ(left.root->keys, expected);
    EXPECT_EQ(left.root->keyFlags[2] & UI::FlagShift, unsigned(UI::FlagShift));
    EXPECT_EQ(left.root->keyFlags[0], 0u);
    EXPECT_EQ(left.root->text, "a:");
    EXPECT_TRUE(right.root->keys.empty());
}

// ---- geometry

TEST(HostWindowSDLGeometry, IsKeptAcrossTwoRunsOfAProgram)
{
    REQUIRE_DISPLAY();
    TestSupport::TempConfigHome home;
    // SDL's D-Bus buffer outlives the program; a sanitizer build's leak check would fail it.
    std::string const demo = "ASAN_OPTIONS=detect_leaks=0 " + std::string(TV_HOSTWINDOW_DEMO_PATH) +
                             " --domain com.tavorin.hostwindowtest --name Kept";
    ASSERT_EQ(UI::Test::Run(demo + " --place 210,130,333,222 --exit-after-paint"), 0);
    std::string const second = UI::Test::RunAndRead(demo + " --exit-after-paint --print-geometry");
    EXPECT_EQ(second, "210 130 333 222\n");

    Util::ConfigFile config("com.tavorin.hostwindowtest");
    EXPECT_EQ(String(config.GetString("HostWindowGeometry/Kept.Geometry")),
              Rect(Point(210, 130), Size(333, 222)).ToString());
    EXPECT_FALSE(config.GetBool("HostWindowGeometry/Kept.Maximized", true));
}

TEST(HostWindowSDLGeometry, SavedRectsAreCheckedClampedAndKeptOverFullScreen)
{
    REQUIRE_DISPLAY();
    TestSupport::TempConfigHome home;
    Util::ConfigFile config("com.tavorin.hostwindowtest2");
    config.SetString("HostWindowGeometry/Bad.Geometry", "[(300,40)-(100,80) -199x41]");
    config.SetString("HostWindowGeometry/Text.Geometry", "not a rect");
    Rect const given(Point(60, 70), Size(150, 100));
    {
        Scene bad("Bad", &config);
        ASSERT_TRUE(bad.Open(given, 0xFF000080, true));
        EXPECT_EQ(bad.host->GetWindowRect(), given);
        Scene text("Text", &config);
        ASSERT_TRUE(text.Open(given, 0xFF000080, true));
        EXPECT_EQ(text.host->GetWindowRect(), given);
    }
    // Both were serialized: closing them saved the rect they really had.
    EXPECT_EQ(String(config.GetString("HostWindowGeometry/Bad.Geometry")), given.ToString());
    {
        Scene none("Unsaved");
        ASSERT_TRUE(none.Open(given, 0xFF000080, true));
    }
    std::vector<String> names;
    config.GetValueNames(names, "HostWindowGeometry");
    for (String const& n : names)
        EXPECT_EQ(std::string(n.CStr()).find("Unsaved"), std::string::npos);

    // The minimum client size clamps a small saved rect.
    config.SetString("HostWindowGeometry/Small.Geometry",
                     Rect(Point(20, 20), Size(50, 40)).ToString());
    {
        Scene small("Small", &config);
        small.host->SetMinClientSize(120, 90);
        ASSERT_TRUE(small.Open(Rect(Point(0, 0), Size(300, 200)), 0xFF000000, true));
        EXPECT_EQ(small.host->GetClientRect(), Rect(Point(20, 20), Size(120, 90)));
        EXPECT_EQ(small.host->GetFrame()->GetSize(), Size(120, 90));
    }

    // A window closed in full screen leaves the saved rect.
    String const saved = Rect(Point(30, 40), Size(200, 100)).ToString();
    config.SetString("HostWindowGeometry/Full.Geometry", saved);
    {
        Scene full("Full", &config);
        ASSERT_TRUE(full.Open(Rect(Point(0, 0), Size(10, 10)), 0xFF000000, true));
        EXPECT_EQ(full.host->GetWindowRect(), Rect(Point(30, 40), Size(200, 100)));
        int changes = 0;
        full.host->signalFullScreenChange.Connect(nullptr,
                                                  boost::function<void()>([&] { ++changes; }));
        full.host->SetGeometry(50, 60, 220, 110);
        full.host->ToggleFullScreen();
        if (!full.host->IsFullScreen())
            GTEST_SKIP() << "the display offers no full screen";
        EXPECT_EQ(changes, 1);
    }
    EXPECT_EQ(String(config.GetString("HostWindowGeometry/Full.Geometry")), saved);
}

// ---- start-up trace

namespace
{

double monotonicMillis()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000.0 + now.tv_nsec / 1e6;
}

/// The "present ..." lines of a program's stderr.
std::vector<std::string> presentLines(std::string const& output)
{
    std::vector<std::string> found;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("present ", 0) == 0)
            found.push_back(line);
    return found;
}

} // namespace

TEST(HostWindowSDLTrace, StampsAShownWindowsFirstPixelsOnceAndOnlyWhenAsked)
{
    REQUIRE_DISPLAY();
    TestSupport::TempConfigHome home;
    std::string const demo = "ASAN_OPTIONS=detect_leaks=0 " + std::string(TV_HOSTWINDOW_DEMO_PATH) +
                             " --domain com.tavorin.tracetest --name 'Traced Window'" +
                             " --exit-after-paint 2>&1 >/dev/null";

    double const before = monotonicMillis();
    std::vector<std::string> const traced =
        presentLines(UI::Test::RunAndRead("TV_TRACE_PRESENT=1 " + demo));
    double const after = monotonicMillis();
    ASSERT_EQ(traced.size(), 1u);
    std::string const prefix = "present Traced Window ";
    ASSERT_EQ(traced[0].rfind(prefix, 0), 0u) << traced[0];
    // Milliseconds of the same clock, with a point whatever the locale says.
    std::string const stamp = traced[0].substr(prefix.size());
    ASSERT_EQ(stamp.find_first_not_of("0123456789."), std::string::npos) << stamp;
    double const at = std::strtod(stamp.c_str(), nullptr);
    EXPECT_GE(at, before);
    EXPECT_LE(at, after);

    EXPECT_TRUE(presentLines(UI::Test::RunAndRead(demo)).empty());
    EXPECT_TRUE(presentLines(UI::Test::RunAndRead("TV_TRACE_PRESENT=0 " + demo)).empty());
}

// ---- closing

namespace
{

/// Pushes the close request that the window manager's close button sends.
void requestClose(HostWindow* host)
{
    auto* sdl = static_cast<UI::Native::HostWindowSDL*>(host);
    SDL_Event event;
    SDL_zero(event);
    event.type = SDL_WINDOWEVENT;
    event.window.event = SDL_WINDOWEVENT_CLOSE;
    event.window.windowID = sdl->GetSDLWindowID();
    SDL_PushEvent(&event);
}

struct CloseWatcher : Trackable
{
    HostWindow* host = nullptr;
    bool veto = true;
    int requests = 0;
    int closes = 0;
    void slotRequest()
    {
        ++requests;
        if (veto)
            host->VetoClose();
    }
    void slotClose(HostWindow*) { ++closes; }
};

} // namespace

TEST(HostWindowSDLClose, AVetoKeepsTheWindowAndItsTimerAPostedCloseComesOnce)
{
    REQUIRE_DISPLAY();
    Scene scene("Veto");
    ASSERT_TRUE(scene.Open(Rect(Point(100, 400), Size(100, 80)), 0xFF808000));
    CloseWatcher watcher;
    watcher.host = scene.host.get();
    scene.host->signalCloseRequest.Connect(&CloseWatcher::slotRequest, &watcher);
    scene.host->signalClose.Connect(&CloseWatcher::slotClose, &watcher);
    int ticks = 0;
    scene.host->SetMasterUpdateCallback([](void* n) { ++*static_cast<int*>(n); }, &ticks);
    scene.host->StartMasterUpdateTimer(10);

    requestClose(scene.host.get());
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return watcher.requests == 1; }));
    EXPECT_EQ(watcher.closes, 0);
    EXPECT_NE(scene.host->GetNativeHandle(), nullptr);
    EXPECT_TRUE(scene.host->HasMasterUpdateTimer());
    int const before = ticks;
    EXPECT_TRUE(UI::Test::PumpUntil([&] { return ticks > before + 2; }));

    watcher.veto = false;
    requestClose(scene.host.get());
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return watcher.closes == 1; }));
    EXPECT_EQ(scene.host->GetNativeHandle(), nullptr);
    EXPECT_FALSE(scene.host->HasMasterUpdateTimer());
    EXPECT_EQ(scene.host->GetFrame()->GetNativeWindowHandle(), nullptr);
    // Closing a window that has none does nothing.
    scene.host->Close();
    EXPECT_EQ(watcher.closes, 1);

    // A posted close closes later, and once.
    Scene posted("Posted");
    ASSERT_TRUE(posted.Open(Rect(Point(100, 600), Size(60, 40)), 0xFF008080));
    posted.host->signalClose.Connect(&CloseWatcher::slotClose, &watcher);
    posted.host->PostClose();
    posted.host->PostClose();
    EXPECT_NE(posted.host->GetNativeHandle(), nullptr);
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return posted.host->GetNativeHandle() == nullptr; }));
    UI::Test::PumpUntil([] { return false; }, 50);
    EXPECT_EQ(watcher.closes, 2);
}

// ---- master timer and messages

TEST(HostWindowSDLTimer, ATickIsNeverReentered)
{
    REQUIRE_DISPLAY();
    Scene scene("Ticks");
    ASSERT_TRUE(scene.Open(Rect(Point(700, 400), Size(40, 40)), 0xFF000000));
    struct State
    {
        int depth = 0;
        int maxDepth = 0;
        int calls = 0;
    } state;
    scene.host->SetMasterUpdateCallback(
        [](void* p)
        {
            State& s = *static_cast<State*>(p);
            ++s.calls;
            s.maxDepth = std::max(s.maxDepth, ++s.depth);
            // A slow tick that runs the loop itself, long past the period.
            if (s.calls == 1)
                UI::Test::PumpUntil([] { return false; }, 60);
            --s.depth;
        },
        &state);
    scene.host->StartMasterUpdateTimer(5);
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return state.calls >= 3; }));
    EXPECT_EQ(state.maxDepth, 1);
}

namespace
{

struct Receiver : UI::Native::UIMessageReceiver
{
    std::thread::id thread;
    std::vector<unsigned long> values;
    void onUIMessage(HostWindow*, unsigned int message, unsigned int wParam,
                     unsigned long lParam) override
    {
        thread = std::this_thread::get_id();
        values.push_back(message * 10000ul + wParam * 100ul + lParam);
    }
};

} // namespace

TEST(HostWindowSDLMessages, PostedFromAnotherThreadArriveOnTheMainThreadInOrder)
{
    REQUIRE_DISPLAY();
    Scene scene("Messages");
    ASSERT_TRUE(scene.Open(Rect(Point(800, 400), Size(40, 40)), 0xFF000000));
    Receiver receiver;
    std::thread worker(
        [&]
        {
            for (unsigned int i = 1; i <= 5; ++i)
                PlatformSupportFactory::PostUIMessage(&receiver, scene.host.get(), 7, i, 3);
        });
    worker.join();
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return receiver.values.size() == 5; }));
    EXPECT_EQ(receiver.thread, std::this_thread::get_id());
    EXPECT_EQ(receiver.values, (std::vector<unsigned long>{70103, 70203, 70303, 70403, 70503}));

    // A blocking send returns only once delivered.
    std::atomic<bool> returned{false};
    std::thread sender(
        [&]
        {
            PlatformSupportFactory::SendBlockingUIMessage(&receiver, nullptr, 1, 2, 3);
            returned = true;
        });
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return returned.load(); }));
    sender.join();
    EXPECT_EQ(receiver.values.back(), 10203ul);

    // A message for a window that died is dropped.
    PlatformSupportFactory::PostUIMessage(&receiver, scene.host.get(), 9, 9, 9);
    scene.host->Close();
    UI::Test::PumpUntil([] { return false; }, 50);
    EXPECT_EQ(receiver.values.size(), 6u);
}

TEST(HostWindowSDLMessages, WindowBeneathAPointAndFocus)
{
    REQUIRE_DISPLAY();
    Scene a("Beneath A");
    Scene b("Beneath B");
    ASSERT_TRUE(a.Open(Rect(Point(900, 600), Size(100, 100)), 0xFF000000));
    ASSERT_TRUE(b.Open(Rect(Point(950, 650), Size(100, 100)), 0xFF000000));
    EXPECT_EQ(PlatformSupportFactory::GetWindowBeneathPoint(Point(910, 610)), a.host.get());
    EXPECT_EQ(PlatformSupportFactory::GetWindowBeneathPoint(Point(960, 660)), b.host.get());
    EXPECT_EQ(PlatformSupportFactory::GetWindowBeneathPoint(Point(5, 1000)), nullptr);
    a.host->Raise(true, false);
    EXPECT_EQ(PlatformSupportFactory::GetWindowBeneathPoint(Point(960, 660)), a.host.get());
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return a.host->IsHoldingFocus(); }));
    EXPECT_EQ(PlatformSupportFactory::GetTopLevelActiveWindow(), a.host.get());
    b.host->Hide();
    EXPECT_FALSE(b.host->IsVisible());
}

// ---- run loop and full screen

TEST(HostWindowSDLRunLoop, CtrlQEndsTheRunLoop)
{
    REQUIRE_DISPLAY_AND_XDOTOOL();
    Scene scene("Quit");
    ASSERT_TRUE(scene.Open(Rect(Point(600, 700), Size(80, 60)), 0xFF000000));
    scene.host->SetNativeFocus();
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return scene.host->IsHoldingFocus(); }));
    bool gaveUp = false;
    UI::SimpleTimer press([] { UI::Test::Run(xdotool("key ctrl+q")); }, 50, true);
    UI::SimpleTimer safety(
        [&gaveUp]
        {
            gaveUp = true;
            PlatformSupportFactory::QuitEventLoop();
        },
        10000, true);
    PlatformSupportFactory::RunEventLoop();
    EXPECT_FALSE(gaveUp);
    EXPECT_TRUE(PlatformSupportFactory::IsEventLoopQuitting());
    // The key went to the loop, not to the window.
    EXPECT_TRUE(scene.root->keys.empty() || scene.root->keys.back() != 'Q');
}

// ---- cursors and keyboard state

TEST(HostWindowSDLCursor, EveryShapeMakesAHostCursorSharedByItsCopies)
{
    REQUIRE_DISPLAY();
    for (int shape : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 18, 19, 20})
    {
        for (int decoration : {0, 1, 2})
        {
            UI::Cursor const cursor(static_cast<UI::Cursor::CursorShape>(shape),
                                    static_cast<UI::Cursor::CursorDecoration>(decoration));
            boost::shared_ptr<void> const handle = cursor.GetHandle();
            EXPECT_TRUE(handle != nullptr) << shape << "/" << decoration;
            EXPECT_EQ(UI::Cursor(cursor).GetHandle(), handle);
            UI::Cursor::SetCursor(cursor);
        }
    }
    UI::Cursor const custom("Square", Size(8, 8), Point(3, 3), std::vector<unsigned char>(8, 0x00),
                            std::vector<unsigned char>(8, 0x81));
    EXPECT_TRUE(custom.GetHandle() != nullptr);
    EXPECT_EQ(UI::Cursor(custom).GetHandle(), custom.GetHandle());
    UI::Cursor::SetCursor(custom);
    UI::Cursor::SetStandardCursor();
}

TEST(HostWindowSDLKeyboard, ModifierStateFollowsTheKeyboard)
{
    REQUIRE_DISPLAY_AND_XDOTOOL();
    Scene scene("Modifiers");
    ASSERT_TRUE(scene.Open(Rect(Point(700, 800), Size(60, 40)), 0xFF000000));
    scene.host->SetNativeFocus();
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return scene.host->IsHoldingFocus(); }));
    ASSERT_EQ(UI::Test::Run(xdotool("keydown ctrl keydown shift")), 0);
    EXPECT_TRUE(UI::Test::PumpUntil(
        [] {
            return PlatformSupportFactory::IsCtrlPressed() &&
                   PlatformSupportFactory::IsShiftPressed();
        }));
    EXPECT_TRUE(UI::KeyCode::IsCommandCtrlPressed());
    EXPECT_FALSE(UI::KeyCode::IsAltPressed());
    ASSERT_EQ(UI::Test::Run(xdotool("keyup shift keyup ctrl")), 0);
    EXPECT_TRUE(UI::Test::PumpUntil(
        [] {
            return !PlatformSupportFactory::IsCtrlPressed() &&
                   !PlatformSupportFactory::IsShiftPressed();
        }));

    // Caps Lock reaches the window as its key; whether it locks is the X server's keymap's say.
    bool const before = PlatformSupportFactory::IsCapsLockOn();
    scene.root->keys.clear();
    ASSERT_EQ(UI::Test::Run(xdotool("key Caps_Lock")), 0);
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return !scene.root->keys.empty(); }));
    EXPECT_EQ(scene.root->keys[0], 20u);
    if (!UI::Test::PumpUntil([&] { return PlatformSupportFactory::IsCapsLockOn() != before; }, 500))
        GTEST_SKIP() << "this display's keymap does not lock Caps Lock";
    EXPECT_EQ(scene.host->IsCapsLockOn(), !before);
    ASSERT_EQ(UI::Test::Run(xdotool("key Caps_Lock")), 0);
    EXPECT_TRUE(
        UI::Test::PumpUntil([&] { return PlatformSupportFactory::IsCapsLockOn() == before; }));
}
