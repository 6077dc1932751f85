#include "Canvas/UI/Frame.h"

#include "Canvas/UI/AnimationHandler.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Dialog/Base.h"
#include "Canvas/UI/FocusIndicator.h"
#include "Canvas/UI/HotDraw.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/Native/DrawDIBSectionFunction.h"
#include "tests/Canvas/UI/TestHostWindow.h"
#include "tests/Canvas/UI/TestWindows.h"

#include <gtest/gtest.h>

#include <memory>

using UI::Point;
using UI::Rect;
using UI::Window;
using UI::Test::Log;
using UI::Test::RecordingWindow;

namespace
{

unsigned int const kBlack = 0xFF000000u;
unsigned int const kRed = 0xFFFF0000u;
unsigned int const kGreen = 0xFF00FF00u;
unsigned int const kBlue = 0xFF0000FFu;
unsigned int const kGrey = 0xFF808080u;

/// A frame on an in-memory host with a real memory draw context, in a background color if given.
struct Scene
{
    UI::Canvas canvas{"Test"};
    UI::Test::TestHostWindow host;
    UI::MemoryDrawContext context{"Test Context"};
    std::unique_ptr<UI::Frame> frame;
    Log log;

    explicit Scene(int width = 64, int height = 48,
                   checked_value<unsigned int> background = checked_value<unsigned int>())
    {
        frame.reset(new UI::Frame(&canvas, host.Handle(), &context, Point(), "unused",
                                  Rect(0, width - 1, 0, height - 1)));
        frame->SetHostWindow(&host);
        if (background)
            frame->SetBackgroundColor(background);
    }

    /// Paints and forgets what the host was told.
    void Settle()
    {
        frame->SetDrawingEnabled(true);
        frame->RenderInvalidRegions(true);
        host.invalidated.clear();
        host.posts = 0;
    }

    RecordingWindow* Make(Window* parent, char const* name, int x, int y, int w, int h,
                          checked_value<unsigned int> fill = checked_value<unsigned int>())
    {
        RecordingWindow* win = new RecordingWindow(frame.get(), parent, name, &log);
        win->SetGeometry(x, y, w, h);
        win->fill = fill;
        return win;
    }

    unsigned int Pixel(int x, int y) const
    {
        auto const& section = context.GetDIBSection();
        return section->GetPixels()[y * section->GetStride() + x];
    }

    /// The bitmap against a reference picture, pixel by pixel.
    void ExpectPicture(std::vector<unsigned int> const& expected) const
    {
        auto const& section = context.GetDIBSection();
        ASSERT_TRUE(section);
        int w = section->GetWidth();
        int h = section->GetHeight();
        ASSERT_EQ(expected.size(), std::size_t(w * h));
        int wrong = 0;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                if (Pixel(x, y) != expected[y * w + x] && ++wrong <= 5)
                    ADD_FAILURE() << "pixel (" << x << "," << y << ") is " << std::hex
                                  << Pixel(x, y) << ", expected " << expected[y * w + x];
        EXPECT_EQ(wrong, 0);
    }

    /// The log so far, emptied.
    Log Take()
    {
        Log taken;
        taken.swap(log);
        return taken;
    }

    bool Mouse(UI::MouseMessage m, int x, int y, unsigned int flags = 0, int delta = 0)
    {
        return frame->HandleMouseMessage(m, Point(x, y), flags, delta);
    }
    bool Key(unsigned int key, unsigned int flags = 0)
    {
        return frame->HandleKeyboardMessage(UI::KeyPress, key, 0, flags, false);
    }
};

/// A picture of `w` by `h` in `background`, with boxes painted in order.
struct Picture
{
    int w, h;
    std::vector<unsigned int> pixels;
    Picture(int w, int h, unsigned int background) : w(w), h(h), pixels(w * h, background) {}
    Picture& Box(Rect const& r, unsigned int color)
    {
        for (int y = std::max(0, r.top); y <= std::min(h - 1, r.bottom); ++y)
            for (int x = std::max(0, r.left); x <= std::min(w - 1, r.right); ++x)
                pixels[y * w + x] = color;
        return *this;
    }
};

std::vector<Rect> presented;
void recordPresent(boost::shared_ptr<UI::Native::DIBSection> const&, void*, CGColorSpace*,
                   Point const&, Rect const& rect, Point const&, Rect const&)
{
    presented.push_back(rect);
}

} // namespace

// ---- invalid regions

TEST(FrameInvalidate, RegionsMergeOnlyWhileTheUnionStaysSmallAndABridgeFoldsThemIntoTheFirst)
{
    Scene s(200, 200);
    s.Settle();

    // Touching squares of like size merge: union 200 < 2 * (100 + 100).
    s.frame->Invalidate(Rect(0, 9, 0, 9), true);
    s.frame->Invalidate(Rect(10, 19, 0, 9), true);
    EXPECT_EQ(s.frame->GetInvalidRegions(), (std::vector<Rect>{Rect(0, 19, 0, 9)}));

    // A gap of one pixel keeps them apart; filling the gap folds all three into the first.
    s.frame->Invalidate(Rect(21, 30, 0, 9), true);
    EXPECT_EQ(s.frame->GetInvalidRegions(),
              (std::vector<Rect>{Rect(0, 19, 0, 9), Rect(21, 30, 0, 9)}));
    s.frame->Invalidate(Rect(20, 20, 0, 9), true);
    EXPECT_EQ(s.frame->GetInvalidRegions(), (std::vector<Rect>{Rect(0, 30, 0, 9)}));
    s.Settle();

    // Overlapping thin bars crossing: union 100x100 > 2 * (100 * 10 * 2 - overlap).
    s.frame->Invalidate(Rect(0, 99, 50, 59), true);
    s.frame->Invalidate(Rect(50, 59, 0, 99), true);
    EXPECT_EQ(s.frame->GetInvalidRegions(),
              (std::vector<Rect>{Rect(0, 99, 50, 59), Rect(50, 59, 0, 99)}));
    EXPECT_EQ(s.host.invalidated.size(), 2u);
    EXPECT_EQ(s.host.posts, 2);

    // A bridge folds several regions into the first.
    s.Settle();
    s.frame->Invalidate(Rect(100, 109, 0, 9), true);
    s.frame->Invalidate(Rect(0, 9, 0, 9), true);
    s.frame->Invalidate(Rect(50, 59, 50, 59), true);
    ASSERT_EQ(s.frame->GetInvalidRegions().size(), 3u);
    // Meets the first two; each union is small enough on its own.
    s.frame->Invalidate(Rect(10, 99, 0, 9), false);
    EXPECT_EQ(s.frame->GetInvalidRegions(),
              (std::vector<Rect>{Rect(0, 109, 0, 9), Rect(50, 59, 50, 59)}));
    EXPECT_EQ(s.host.posts, 3);
}

TEST(FrameInvalidate, RectanglesAreClippedAndOutsideOnesIgnored)
{
    Scene s(100, 100);
    s.Settle();
    s.frame->Invalidate(Rect(100, 120, 0, 10), true);
    s.frame->Invalidate(Rect(-20, -1, -20, -1), true);
    EXPECT_TRUE(s.frame->GetInvalidRegions().empty());
    EXPECT_TRUE(s.host.invalidated.empty());
    EXPECT_EQ(s.host.posts, 0);

    s.frame->Invalidate(Rect(90, 120, -5, 5), false);
    EXPECT_EQ(s.frame->GetInvalidRegions(), (std::vector<Rect>{Rect(90, 99, 0, 5)}));
    EXPECT_EQ(s.host.invalidated, (std::vector<Rect>{Rect(90, 99, 0, 5)}));
    EXPECT_EQ(s.host.posts, 0);
}

TEST(FrameInvalidate, NothingPaintsUntilDrawingIsEnabled)
{
    Scene s(10, 10);
    s.frame->RenderInvalidRegions(true);
    EXPECT_EQ(s.frame->GetInvalidRegions(), (std::vector<Rect>{Rect(0, 9, 0, 9)}));
    EXPECT_FALSE(s.context.GetDIBSection());
    s.Settle();
    EXPECT_TRUE(s.frame->GetInvalidRegions().empty());
    EXPECT_TRUE(s.context.GetDIBSection());
}

// ---- rendering

TEST(FrameRender, FullPaintMatchesTheReferencePicture)
{
    Scene s(40, 30, kGrey);
    RecordingWindow* back = s.Make(nullptr, "Back", 2, 2, 20, 20, kRed);
    // The child reaches past its parent and is cut at the parent's edge.
    s.Make(back, "Child", 15, 15, 10, 10, kGreen);
    RecordingWindow* front = s.Make(nullptr, "Front", 10, 5, 8, 4, kBlue);
    RecordingWindow* ghost = s.Make(nullptr, "Ghost", 30, 20, 5, 5, kGreen);
    ghost->SetAlpha(0);
    RecordingWindow* hidden = s.Make(nullptr, "Hidden", 25, 0, 5, 5, kRed);
    hidden->Hide();
    (void)front;

    s.Settle();
    Picture expected(40, 30, kGrey);
    expected.Box(Rect(2, 21, 2, 21), kRed).Box(Rect(17, 21, 17, 21), kGreen);
    expected.Box(Rect(10, 17, 5, 8), kBlue);
    s.ExpectPicture(expected.pixels);
}

TEST(FrameRender, OnlyInvalidRegionsAreRepainted)
{
    Scene s(40, 30, kGrey);
    RecordingWindow* box = s.Make(nullptr, "Box", 0, 0, 10, 10, kRed);
    s.Settle();

    // Change the color without invalidating: nothing on screen changes.
    box->fill = kBlue;
    s.frame->Invalidate(Rect(0, 4, 0, 4), true);
    s.frame->RenderInvalidRegions(true);
    Picture expected(40, 30, kGrey);
    expected.Box(Rect(0, 9, 0, 9), kRed).Box(Rect(0, 4, 0, 4), kBlue);
    s.ExpectPicture(expected.pixels);
}

TEST(FrameRender, WithoutBackgroundAHiddenWindowLeavesItsPixels)
{
    Scene s(20, 20);
    s.frame->SetBackgroundColor(checked_value<unsigned int>());
    RecordingWindow* box = s.Make(nullptr, "Box", 5, 5, 5, 5, kRed);
    s.Settle();
    box->Hide();
    EXPECT_EQ(s.frame->GetInvalidRegions(), (std::vector<Rect>{Rect(5, 9, 5, 9)}));
    s.frame->RenderInvalidRegions(true);
    Picture expected(20, 20, kBlack);
    expected.Box(Rect(5, 9, 5, 9), kRed);
    s.ExpectPicture(expected.pixels);

    // With a background color the area is cleared.
    s.frame->SetBackgroundColor(kGrey);
    s.frame->Invalidate(Rect(5, 9, 5, 9), true);
    s.frame->RenderInvalidRegions(true);
    EXPECT_EQ(s.Pixel(7, 7), kGrey);
}

TEST(FrameRender, BackgroundBitsOfTheFrameSizeSuppressTheColor)
{
    Scene s(4, 2, kGrey);
    auto bits = UI::CreateDIBits(UI::Size(4, 2), kBlue);
    bits->GetPixels()[0] = kRed;
    s.frame->SetBackgroundBits(bits);
    s.Settle();
    s.ExpectPicture({kRed, kBlue, kBlue, kBlue, kBlue, kBlue, kBlue, kBlue});

    // Smaller bits: the color fills around them.
    s.frame->SetBackgroundBits(UI::CreateDIBits(UI::Size(2, 1), kGreen));
    s.frame->Invalidate(Rect(0, 3, 0, 1), true);
    s.frame->RenderInvalidRegions(true);
    s.ExpectPicture({kGreen, kGreen, kGrey, kGrey, kGrey, kGrey, kGrey, kGrey});
}

TEST(FrameRender, RegionsReachTheHostInOrderAndRepaintPaintsAtOnce)
{
    Scene s(50, 50, kGrey);
    UI::Native::SetDrawDIBSectionFunction(&recordPresent);
    presented.clear();
    RecordingWindow* box = s.Make(nullptr, "Box", 0, 0, 10, 10, kRed);
    s.Settle();
    EXPECT_EQ(presented, (std::vector<Rect>{Rect(0, 49, 0, 49)}));

    presented.clear();
    box->Hide();
    box->fill = kGreen;
    // A hidden window still paints its area through Repaint.
    box->Repaint(Rect(0, 1, 0, 1));
    EXPECT_EQ(presented, (std::vector<Rect>{Rect(0, 9, 0, 9)}));
    EXPECT_EQ(s.Pixel(0, 0), kGrey);
    EXPECT_TRUE(s.frame->GetInvalidRegions().empty());

    // An exposure paints now and keeps the region for the posted update.
    presented.clear();
    s.frame->NativeDraw(Rect(40, 60, 40, 60), nullptr);
    EXPECT_EQ(presented, (std::vector<Rect>{Rect(40, 49, 40, 49)}));
    EXPECT_EQ(s.frame->GetInvalidRegions(), (std::vector<Rect>{Rect(40, 49, 40, 49)}));
    UI::Native::SetDrawDIBSectionFunction(nullptr);
}

TEST(FrameRender, HotDrawMarksRegionsRedAndRepaintsAllWhenItTurnsOn)
{
    Scene s(30, 30, kGrey);
    s.Settle();
    UI::g_hotDrawMode = 1;
    s.host.capsLock = true;
    s.frame->Invalidate(Rect(0, 4, 0, 4), true);
    s.frame->RenderInvalidRegions(true);
    UI::g_hotDrawMode = 0;
    // The whole frame was marked with one random red: 0xFF, red from 0x32 to 0xFE, no green or
    // blue.
    unsigned int mark = s.Pixel(0, 0);
    EXPECT_EQ(mark & 0xFF00FFFFu, 0xFF000000u);
    EXPECT_GE((mark >> 16) & 0xFF, 0x32u);
    EXPECT_EQ(s.Pixel(29, 29), mark);
    // The paint itself posts nothing more: no region arrived during it.
    EXPECT_EQ(s.host.posts, 1);

    // Turning it off repaints everything without marks.
    s.frame->Invalidate(Rect(0, 0, 0, 0), true);
    s.frame->RenderInvalidRegions(true);
    EXPECT_EQ(s.Pixel(29, 29), kGrey);
}

TEST(FrameRender, AFailingDrawLeavesTheFrameUsable)
{
    Scene s(20, 20);
    RecordingWindow* box = s.Make(nullptr, "Box", 0, 0, 5, 5, kRed);
    box->throwInDraw = true;
    s.frame->SetDrawingEnabled(true);
    EXPECT_THROW(s.frame->RenderInvalidRegions(true), std::runtime_error);
    EXPECT_FALSE(s.frame->IsRendering());
    EXPECT_EQ(s.canvas.GetCurrentlyDrawingWindow(), nullptr);
    box->throwInDraw = false;
    box->Update();
    s.frame->RenderInvalidRegions(true);
    EXPECT_EQ(s.Pixel(0, 0), kRed);
}

// ---- mouse

TEST(FrameMouse, ATransparentWindowIsNotPaintedButTakesInput)
{
    Scene s(20, 20, kGrey);
    RecordingWindow* ghost = s.Make(nullptr, "Ghost", 0, 0, 10, 10, kRed);
    ghost->SetAlpha(0);
    ghost->takesMouse = true;
    s.Settle();
    EXPECT_EQ(s.Pixel(5, 5), kGrey);
    EXPECT_TRUE(s.Mouse(UI::MouseLeftPress, 5, 5));
    EXPECT_EQ(s.log, (Log{"Ghost:press(5,5)"}));
}

TEST(FrameMouse, TheTopmostWindowTakesTheMessageFirstAndRefusalsFallThrough)
{
    Scene s(100, 100);
    s.host.screenPos = Point(0, 0);
    RecordingWindow* back = s.Make(nullptr, "Back", 0, 0, 100, 100);
    RecordingWindow* left = s.Make(back, "Left", 10, 10, 40, 40);
    RecordingWindow* over = s.Make(back, "Over", 30, 30, 40, 40);
    back->takesMouse = true;
    left->takesMouse = true;

    EXPECT_TRUE(s.Mouse(UI::MouseLeftPress, 35, 35));
    // Over refused; Left, below it, took the press in its own coordinates.
    EXPECT_EQ(s.Take(), (Log{"Over:press(5,5)", "Left:press(25,25)"}));

    over->SetEnabled(false);
    EXPECT_TRUE(s.Mouse(UI::MouseRightPress, 60, 60));
    EXPECT_EQ(s.Take(), (Log{"Back:rpress(60,60)"}));

    left->Hide();
    over->SetEnabled(true);
    over->takesMouse = true;
    EXPECT_TRUE(s.Mouse(UI::MouseLeftPress, 20, 20));
    EXPECT_EQ(s.Take(), (Log{"Back:press(20,20)"}));

    // Outside every window, and outside the frame.
    back->takesMouse = false;
    EXPECT_FALSE(s.Mouse(UI::MouseLeftPress, 150, 20));
    EXPECT_TRUE(s.log.empty());
}

TEST(FrameMouse, MovesWithoutButtonsReachOnlyTrackingWindows)
{
    Scene s(100, 100);
    RecordingWindow* below = s.Make(nullptr, "Below", 0, 0, 100, 100);
    RecordingWindow* above = s.Make(nullptr, "Above", 0, 0, 50, 50);
    below->takesMouse = true;
    above->takesMouse = true;

    // Above doesn't track: the move is answered false there and goes on below.
    below->SetMouseTracking(true);
    EXPECT_TRUE(s.Mouse(UI::MouseMove, 10, 10));
    EXPECT_EQ(s.Take(), (Log{"Below:move(10,10)"}));

    below->SetMouseTracking(false);
    EXPECT_FALSE(s.Mouse(UI::MouseMove, 10, 10));
    EXPECT_TRUE(s.log.empty());

    // With a button held every window sees moves.
    EXPECT_TRUE(s.Mouse(UI::MouseMove, 10, 10, UI::FlagLeftButton));
    EXPECT_EQ(s.log, (Log{"Above:move(10,10)"}));
}

TEST(FrameMouse, CaptureTakesEverythingAndHandsOverWithARelease)
{
    Scene s(100, 100);
    s.frame->SetNativeWindowOffset(Point(5, 5));
    RecordingWindow* a = s.Make(nullptr, "A", 10, 10, 20, 20);
    RecordingWindow* b = s.Make(nullptr, "B", 50, 50, 20, 20);
    a->takesMouse = true;
    b->takesMouse = true;

    s.frame->SetMouseCapture(a);
    // The native offset comes off first, then A's position.
    EXPECT_TRUE(s.Mouse(UI::MouseLeftPress, 65, 65));
    EXPECT_TRUE(s.Mouse(UI::MouseMove, 0, 0));
    EXPECT_TRUE(s.Mouse(UI::MouseWheel, 20, 20, 0, -3));
    EXPECT_EQ(s.Take(), (Log{"A:press(50,50)", "A:move(-15,-15)", "A:wheel-3(5,5)"}));

    s.frame->SetMouseCapture(b);
    EXPECT_EQ(s.log, (Log{"A:release(0,0)"}));
    s.frame->ReleaseMouseCapture();
    EXPECT_EQ(s.frame->GetMouseCapture(), nullptr);

    s.frame->SetMouseCapture(a);
    delete a;
    EXPECT_EQ(s.frame->GetMouseCapture(), nullptr);
}

TEST(FrameMouse, EnterAndExitFollowTheTrackingWindowsUnderThePointer)
{
    Scene s(100, 100);
    RecordingWindow* outer = s.Make(nullptr, "Outer", 0, 0, 60, 60);
    RecordingWindow* inner = s.Make(outer, "Inner", 10, 10, 20, 20);
    RecordingWindow* other = s.Make(nullptr, "Other", 70, 0, 30, 30);
    s.Make(nullptr, "Silent", 0, 70, 30, 30);
    for (RecordingWindow* w : {outer, inner, other})
        w->SetMouseTracking(true);
    outer->takesMouse = true;
    other->takesMouse = true;

    // Without the mouse inside the frame nothing is tracked.
    s.Mouse(UI::MouseMove, 15, 15);
    EXPECT_EQ(s.Take(), (Log{"Inner:move(5,5)", "Outer:move(15,15)"}));

    s.frame->HandleMouseEnter();
    s.Mouse(UI::MouseMove, 15, 15);
    EXPECT_EQ(s.frame->GetMouseOverWindows(), (std::set<Window*>{outer, inner}));
    std::vector<std::string> enters(s.log.begin(), s.log.begin() + 2);
    std::sort(enters.begin(), enters.end());
    EXPECT_EQ(enters, (Log{"Inner:enter", "Outer:enter"}));
    s.log.clear();

    s.Mouse(UI::MouseMove, 80, 10);
    EXPECT_EQ(s.frame->GetMouseOverWindows(), (std::set<Window*>{other}));
    std::vector<std::string> changes(s.log.begin(), s.log.begin() + 3);
    // Exits come first, then the enter.
    EXPECT_EQ(changes[2], "Other:enter");
    std::sort(changes.begin(), changes.begin() + 2);
    EXPECT_EQ(changes[0], "Inner:exit");
    EXPECT_EQ(changes[1], "Outer:exit");
    s.log.clear();

    s.frame->HandleMouseExit();
    EXPECT_EQ(s.log, (Log{"Other:exit"}));
    EXPECT_TRUE(s.frame->GetMouseOverWindows().empty());
}

TEST(FrameMouse, DialogsRestrictOrRefuseInput)
{
    Scene s(100, 100);
    RecordingWindow* back = s.Make(nullptr, "Back", 0, 0, 100, 100);
    back->takesMouse = true;
    back->takesKeys = true;
    s.frame->SetTopLevelWindow(back);
    UI::Dialog::Base* dialog = new UI::Dialog::Base(s.frame.get(), nullptr, "Dialog", true);
    dialog->SetGeometry(20, 20, 30, 30);
    s.frame->SetActiveDialog(dialog);

    // Modal: the press outside the dialog reaches nobody.
    EXPECT_FALSE(s.Mouse(UI::MouseLeftPress, 5, 5));
    EXPECT_TRUE(s.log.empty());

    dialog->SetModal(false);
    EXPECT_TRUE(s.Mouse(UI::MouseLeftPress, 5, 5));
    s.log.clear();

    dialog->SetAnimationState(UI::Dialog::Base::Opening);
    EXPECT_FALSE(s.Mouse(UI::MouseLeftPress, 5, 5));
    // Keys: the top-level window is asked before the animation check.
    back->takesKeys = false;
    EXPECT_FALSE(s.Key('A'));
    EXPECT_EQ(s.log, (Log{"Back:key65"}));

    int closed = 0;
    s.frame->signalDialogClosed.Connect(nullptr, boost::function<void()>([&] { ++closed; }));
    s.frame->OnCloseDialog();
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(s.frame->GetActiveDialog(), nullptr);
}

TEST(FrameMouse, CursorComesFromTheDeepestWindowWithItsOwnAndAPressFocusesTheNativeWindow)
{
    Scene s(100, 100);
    RecordingWindow* back = s.Make(nullptr, "Back", 0, 0, 100, 100);
    RecordingWindow* edit = s.Make(back, "Edit", 10, 10, 30, 30);
    s.Make(edit, "Inside", 0, 0, 10, 10);
    back->SetCursor(UI::Cursor(UI::Cursor::PointingHand));
    edit->SetCursor(UI::Cursor(UI::Cursor::IBeam));

    EXPECT_TRUE(s.Mouse(UI::MouseMove, 12, 12));
    EXPECT_EQ(s.host.cursors.back(), UI::Cursor(UI::Cursor::IBeam));
    s.Mouse(UI::MouseMove, 50, 50);
    EXPECT_EQ(s.host.cursors.back(), UI::Cursor(UI::Cursor::PointingHand));
    std::size_t count = s.host.cursors.size();
    s.Mouse(UI::MouseCursorUpdate, 60, 60);
    // Unchanged: the host is not asked again.
    EXPECT_EQ(s.host.cursors.size(), count);
    s.Mouse(UI::MouseMove, 200, 200);
    EXPECT_EQ(s.host.cursors.back(), UI::Cursor());

    // A press gives the native window focus when it lacks it; no windows here take input.
    s.host.holdingFocus = false;
    s.Mouse(UI::MouseMove, 5, 5);
    EXPECT_EQ(s.host.nativeFocusRequests, 0);
    s.Mouse(UI::MouseLeftPress, 5, 5);
    EXPECT_EQ(s.host.nativeFocusRequests, 1);
    EXPECT_EQ(s.canvas.GetLastMousePoint(), checked_value<Point>(Point(5, 5)));

    s.frame->SetInputEnabled(false);
    EXPECT_FALSE(s.Mouse(UI::MouseLeftPress, 5, 5));
    EXPECT_FALSE(s.Key('A'));
}

// ---- keyboard and focus

struct FocusScene : Scene
{
    RecordingWindow* root;
    RecordingWindow* a;
    RecordingWindow* b;
    RecordingWindow* c;

    FocusScene() : Scene(200, 100)
    {
        root = Make(nullptr, "Root", 0, 0, 200, 100);
        frame->SetTopLevelWindow(root);
        a = Make(root, "A", 0, 0, 10, 10);
        b = Make(root, "B", 20, 0, 10, 10);
        c = Make(root, "C", 40, 0, 10, 10);
        frame->SetFocusOrder({a, b, c});
        log.clear();
    }
    Window* Focus() const { return frame->GetFocus(); }
};

TEST(FrameFocus, FirstTabOnlyShowsThenTabWalksWithWrapAround)
{
    FocusScene s;
    std::vector<bool> traversals;
    s.frame->signalFocusTraversal.Connect(
        nullptr, boost::function<void(bool)>([&](bool b) { traversals.push_back(b); }));
    s.a->SetFocus();
    EXPECT_FALSE(s.frame->GetFocusIndicatorStarted());

    EXPECT_TRUE(s.Key(9));
    EXPECT_EQ(s.Focus(), s.a);
    EXPECT_TRUE(s.frame->GetFocusIndicatorStarted());

    s.Key(9);
    EXPECT_EQ(s.Focus(), s.b);
    s.Key(9);
    EXPECT_EQ(s.Focus(), s.c);
    s.Key(9);
    EXPECT_EQ(s.Focus(), s.a);
    s.Key(9, UI::FlagShift);
    EXPECT_EQ(s.Focus(), s.c);
    EXPECT_EQ(traversals, (std::vector<bool>{false, false, false, false, true}));
}

TEST(FrameFocus, TabSkipsHiddenAndDisabledWindowsAndStartsAtTheEnds)
{
    FocusScene s;
    // No focus: Tab starts from the first entry, shift-Tab from the last.
    s.Key(9);
    EXPECT_EQ(s.Focus(), s.a);
    s.frame->SetFocus(nullptr);
    s.Key(9, UI::FlagShift);
    EXPECT_EQ(s.Focus(), s.c);

    s.a->Hide();
    s.b->SetEnabled(false);
    s.Key(9);
    EXPECT_EQ(s.Focus(), s.c);
    s.c->Hide();
    EXPECT_EQ(s.Focus(), nullptr);
    s.Key(9);
    EXPECT_EQ(s.Focus(), nullptr);

    s.b->SetEnabled(true);
    s.frame->FocusFirst();
    EXPECT_EQ(s.Focus(), nullptr);
    s.a->Show();
    s.frame->FocusFirst();
    EXPECT_EQ(s.Focus(), s.a);
}

TEST(FrameFocus, KeysGoToTheTopLevelWindowThenUpFromTheFocus)
{
    FocusScene s;
    RecordingWindow* field = s.Make(s.b, "Field", 0, 0, 5, 5);
    field->SetFocus();
    s.log.clear();

    EXPECT_FALSE(s.Key('Q'));
    EXPECT_EQ(s.Take(), (Log{"Root:key81", "Field:key81", "B:key81"}));

    s.b->takesKeys = true;
    EXPECT_TRUE(s.frame->HandleKeyboardMessage(UI::KeyCharacter, 0, 'q', 0, false));
    EXPECT_TRUE(s.frame->HandleKeyboardMessage(UI::KeyRelease, 81, 0, 0, false));
    EXPECT_EQ(s.log,
              (Log{"Root:charq", "Field:charq", "B:charq", "Root:up81", "Field:up81", "B:up81"}));
    // A handled key starts the focus indicator's timer.
    EXPECT_TRUE(s.frame->GetFocusIndicatorStarted());
}

TEST(FrameFocus, UnhandledKeysGoToTheCurrentFrame)
{
    FocusScene s;
    UI::Test::TestHostWindow otherHost;
    UI::MemoryDrawContext otherContext("Other");
    UI::Frame other(&s.canvas, otherHost.Handle(), &otherContext, Point(), "", Rect(0, 9, 0, 9));
    RecordingWindow* otherRoot = new RecordingWindow(&other, nullptr, "Other Root", &s.log);
    other.SetTopLevelWindow(otherRoot);
    otherRoot->takesKeys = true;

    EXPECT_FALSE(s.Key('Z'));
    s.canvas.SetCurrentFrame(&other);
    s.log.clear();
    EXPECT_TRUE(s.Key('Z'));
    EXPECT_EQ(s.log, (Log{"Root:key90", "Other Root:key90"}));
}

TEST(FrameFocus, NativeFocusLossRemembersTheWindow)
{
    FocusScene s;
    s.b->SetFocus();
    s.frame->HandleLoseFocus();
    EXPECT_EQ(s.Focus(), nullptr);
    EXPECT_EQ(s.frame->GetRememberedFocus(), s.b);
    s.frame->HandleReceiveFocus();
    EXPECT_EQ(s.Focus(), s.b);

    // While the native window lacks focus, SetFocus only remembers.
    s.host.holdingFocus = false;
    s.c->SetFocus();
    EXPECT_EQ(s.Focus(), nullptr);
    EXPECT_EQ(s.frame->GetRememberedFocus(), s.c);
    EXPECT_FALSE(s.b->IsFocused());
    s.host.holdingFocus = true;
    s.frame->HandleReceiveFocus();
    EXPECT_EQ(s.Focus(), s.c);
    EXPECT_TRUE(s.c->IsFocused());
}

TEST(FrameFocus, TheIndicatorCoversTheFocusedWindowWhileTheTimerRuns)
{
    FocusScene s;
    // Moves without the animation handler are immediate.
    s.frame->GetAnimationHandler()->SetEnabled(false);
    UI::FocusIndicator* indicator = new UI::FocusIndicator(s.frame.get(), nullptr, "Indicator");
    s.frame->SetFocusIndicator(indicator);
    RecordingWindow* late = s.Make(nullptr, "Late", 0, 0, 5, 5);
    // The indicator stays on top of later top-level windows.
    EXPECT_EQ(s.frame->GetTopLevelWindows().back(), indicator);
    EXPECT_FALSE(indicator->IsVisible());

    s.b->SetFocus();
    EXPECT_FALSE(indicator->IsVisible());
    s.Key(9);
    EXPECT_TRUE(indicator->IsVisible());
    EXPECT_EQ(indicator->GetGlobalGeometry(), Rect(20, 29, 0, 9));
    s.Key(9);
    EXPECT_EQ(indicator->GetGlobalGeometry(), Rect(40, 49, 0, 9));
    s.c->SetGeometry(40, 50, 20, 20);
    EXPECT_EQ(indicator->GetGlobalGeometry(), Rect(40, 59, 50, 69));
    s.frame->SetFocus(nullptr);
    EXPECT_FALSE(indicator->IsVisible());
    (void)late;
}

// ---- timers

struct TimerScene : Scene
{
    RecordingWindow* w;
    TimerScene() { w = Make(nullptr, "W", 0, 0, 10, 10); }
};

TEST(FrameTimers, IdsTakeTheLowestFreeNumberDueTimersFireOneShotsEndAndLongOnesWait)
{
    TimerScene s;
    EXPECT_EQ(s.frame->SetTimer(s.w, 1000), 1u);
    EXPECT_EQ(s.frame->SetTimer(s.w, 1000), 2u);
    EXPECT_EQ(s.frame->SetTimer(s.w, 1000), 3u);
    s.frame->EndTimer(2);
    s.frame->EndTimer(42);
    EXPECT_EQ(s.frame->SetTimer(s.w, 1000), 2u);
    EXPECT_EQ(s.frame->GetTimers().size(), 3u);
    EXPECT_EQ(s.frame->GetTimers()[1].id, 2u);

    // Due timers fire, one-shots end and long ones wait.
    for (unsigned int id : {1u, 2u, 3u})
        s.frame->EndTimer(id);
    s.frame->SetTimer(s.w, 0);
    s.frame->SetTimer(s.w, 0, true);
    s.frame->SetTimer(s.w, 3600000);
    s.frame->tickTimers();
    EXPECT_EQ(s.Take(), (Log{"W:timer1", "W:timer2"}));
    s.frame->tickTimers();
    EXPECT_EQ(s.log, (Log{"W:timer1"}));
    EXPECT_EQ(s.frame->GetTimers().size(), 2u);
}

TEST(FrameTimers, ATimerThatEndsItselfLetsTheNextOneFireAndNewOnesWaitForTheNextPass)
{
    TimerScene s;
    unsigned int first = s.frame->SetTimer(s.w, 0);
    s.frame->SetTimer(s.w, 0);
    s.w->timerAction = [&](unsigned int id)
    {
        if (id == first)
            s.frame->EndTimer(id);
    };
    s.frame->tickTimers();
    EXPECT_EQ(s.log, (Log{"W:timer1", "W:timer2"}));
    ASSERT_EQ(s.frame->GetTimers().size(), 1u);
    EXPECT_EQ(s.frame->GetTimers()[0].id, 2u);

    // Timers made inside OnTimer wait for the next pass: with 2 running, they take id 1, ahead
    // of the running timer, and id 3, behind it.
    s.log.clear();
    bool made = false;
    s.w->timerAction = [&](unsigned int)
    {
        if (!made)
        {
            made = true;
            EXPECT_EQ(s.frame->SetTimer(s.w, 0), 1u);
            EXPECT_EQ(s.frame->SetTimer(s.w, 0), 3u);
        }
    };
    s.frame->tickTimers();
    EXPECT_EQ(s.Take(), (Log{"W:timer2"}));
    s.frame->tickTimers();
    EXPECT_EQ(s.log, (Log{"W:timer1", "W:timer2", "W:timer3"}));
}

TEST(FrameTimers, AWindowThatDiesTakesItsTimersAlong)
{
    TimerScene s;
    RecordingWindow* other = s.Make(nullptr, "Other", 0, 0, 5, 5);
    s.frame->SetTimer(s.w, 0);
    s.frame->SetTimer(other, 0);
    s.frame->SetTimer(s.w, 0);
    // The first timer deletes the other window in the middle of the pass.
    s.w->timerAction = [&](unsigned int id)
    {
        if (id == 1 && other)
        {
            delete other;
            other = nullptr;
        }
    };
    s.canvas.TickFrameTimers();
    EXPECT_EQ(s.log, (Log{"W:timer1", "W:timer3"}));
    EXPECT_EQ(s.frame->GetTimers().size(), 2u);
}

TEST(FrameTimers, TheFocusIndicatorTimesOut)
{
    FocusScene s;
    s.b->SetFocus();
    s.Key(9);
    EXPECT_TRUE(s.frame->GetFocusIndicatorStarted());
    s.frame->tickTimers();
    EXPECT_TRUE(s.frame->GetFocusIndicatorStarted());
    s.frame->SetFocusTimerInterval(0u);
    s.frame->tickTimers();
    EXPECT_FALSE(s.frame->GetFocusIndicatorStarted());
    // Unset: the indicator starts at once and never times out.
    s.frame->SetFocusTimerInterval(checked_value<unsigned int>());
    EXPECT_TRUE(s.frame->GetFocusIndicatorStarted());
    s.frame->tickTimers();
    EXPECT_TRUE(s.frame->GetFocusIndicatorStarted());
}

// ---- wheel and frame geometry

TEST(FrameGeometry, TheTopLevelWindowTracksTheDrawRectangleAndWheelFractionsAccumulatePerSource)
{
    Scene s(50, 40);
    s.Settle();
    RecordingWindow* root = s.Make(nullptr, "Root", 5, 5, 10, 10);
    RecordingWindow* second = s.Make(nullptr, "Second", 5, 5, 10, 10);
    s.frame->SetTopLevelWindow(root);
    EXPECT_EQ(root->GetGeometry(), Rect(0, 49, 0, 39));
    s.frame->SetTopLevelWindow(second);
    EXPECT_EQ(s.frame->GetTopLevelWindow(), root);

    s.frame->SetDrawRect(Rect(0, 79, 0, 59));
    EXPECT_EQ(root->GetGeometry(), Rect(0, 79, 0, 59));
    EXPECT_EQ(s.frame->GetSize(), UI::Size(80, 60));
    EXPECT_EQ(s.frame->GetInvalidRegions(), (std::vector<Rect>{Rect(0, 79, 0, 59)}));
    // Empty either way: all zeros.
    for (Rect const& empty : {Rect(5, 4, 0, 9), Rect(0, 9, 3, 2), Rect()})
    {
        s.frame->SetDrawRect(empty);
        EXPECT_EQ(s.frame->GetDrawRect(), Rect(0, 0, 0, 0)) << empty.ToString().CStr();
    }

    delete root;
    EXPECT_EQ(s.frame->GetTopLevelWindow(), nullptr);
    s.frame->SetTopLevelWindow(second);
    EXPECT_EQ(s.frame->GetTopLevelWindow(), second);

    // Wheel fractions accumulate per source.
    unsigned long long id = UI::Frame::CreateWheelDeltaID(nullptr, 1);
    EXPECT_EQ(s.frame->AccumulateWheelDelta(0.6f, id), 0);
    EXPECT_EQ(s.frame->AccumulateWheelDelta(0.6f, id), 1);
    EXPECT_EQ(s.frame->AccumulateWheelDelta(2.5f, id), 2);
    // Another source starts again from nothing.
    EXPECT_EQ(s.frame->AccumulateWheelDelta(0.9f, id + 1), 0);
    EXPECT_EQ(s.frame->AccumulateWheelDelta(-2.0f, id + 1), -1);
    EXPECT_EQ(s.frame->AccumulateWheelDelta(1.0f, id + 2), 0);
}

TEST(FrameLifetime, TheFrameDeletesOwnedTopLevelWindowsAndLeavesTheCanvas)
{
    UI::Canvas canvas("Test");
    UI::MemoryDrawContext context("Context");
    UI::Frame* frame = new UI::Frame(&canvas, nullptr, &context, Point(), "", Rect(0, 9, 0, 9));
    canvas.SetCurrentFrame(frame);
    EXPECT_EQ(canvas.GetFrames(), (std::vector<UI::Frame*>{frame}));
    Log log;
    RecordingWindow* owned = new RecordingWindow(frame, nullptr, "Owned", &log);
    new RecordingWindow(frame, owned, "Child", &log);
    RecordingWindow* member = new RecordingWindow(frame, nullptr, "Member", &log);
    member->SetOwnedByParent(false);
    new RecordingWindow(frame, nullptr, "Also Owned", &log);
    EXPECT_EQ(frame->GetName(), String("Frame"));

    // A frame without a native handle takes no input.
    EXPECT_FALSE(frame->HandleMouseMessage(UI::MouseLeftPress, Point(1, 1), 0, 0));
    delete member;
    delete frame;
    EXPECT_TRUE(canvas.GetFrames().empty());
    EXPECT_EQ(canvas.GetCurrentFrame(), nullptr);
}
