#include "Canvas/UI/Canvas.h"

#include "Canvas/UI/CanvasPlatform.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Window.h"
#include "tests/Canvas/UI/CanvasTestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using UI::Point;
using UI::Rect;

namespace
{

/// The desktop as the canvas sees it, with a clock the test turns by hand. The tool-tip host's
/// frame is a real frame; the monitor is 1024 by 768.
class FakeDesktop : public UI::CanvasPlatform
{
public:
    explicit FakeDesktop(UI::Canvas* canvas) : canvas(canvas) {}

    unsigned int GetTickCount() override { return tick; }
    Point GetCursorScreenPos() override { return cursor; }
    void* GetWindowBeneathPoint(Point const&) override { return beneath; }
    void* GetTopLevelActiveWindow() override { return active; }
    Rect TrimToMonitorScreenRect(Rect const& r) override
    {
        Rect out = r;
        if (out.right > 1023)
            out = out.Offset(1023 - out.right, 0);
        if (out.bottom > 767)
            out = out.Offset(0, 767 - out.bottom);
        return out;
    }
    UI::Frame* GetToolTipFrame() override
    {
        if (!tipFrame)
        {
            tipFrame.reset(
                new UI::Frame(canvas, &tipNative, nullptr, Point(), "unused", Rect(0, 199, 0, 49)));
            tipFrame->SetDesignDisable(true);
        }
        return tipFrame.get();
    }
    void ShowToolTipHost(Rect const& r) override
    {
        shown.push_back(r);
        hostVisible = true;
    }
    void HideToolTipHost() override { hostVisible = false; }

    UI::Canvas* canvas;
    unsigned int tick = 0;
    Point cursor;
    void* beneath = nullptr;
    void* active = nullptr;
    int tipNative = 0;
    std::unique_ptr<UI::Frame> tipFrame;
    std::vector<Rect> shown;
    bool hostVisible = false;
};

/// A canvas with one frame whose native window sits at screen (100, 100), holding, side by side,
/// A ("Alpha"), B ("Beta") and C (no tip), each 50 by 50, and a tool tip whose text the test
/// records.
struct Scene
{
    UI::Canvas canvas{"Tips"};
    boost::shared_ptr<FakeDesktop> desktop{new FakeDesktop(&canvas)};
    int native = 0;
    std::unique_ptr<UI::Frame> frame;
    UI::Window* root;
    UI::Window* a;
    UI::Window* b;
    UI::Window* c;
    UI::Window* tip;
    std::vector<String> texts;

    Scene()
    {
        canvas.SetPlatform(desktop);
        // Without a host window the frame's screen origin is its native offset.
        frame.reset(new UI::Frame(&canvas, &native, nullptr, Point(100, 100), "unused",
                                  Rect(0, 299, 0, 99)));
        desktop->beneath = &native;
        root = new UI::Window(frame.get(), nullptr, "Root");
        root->SetGeometry(0, 0, 300, 100);
        a = make("A", 0, "Alpha");
        b = make("B", 60, "Beta");
        c = make("C", 120, "");

        tip = new UI::Window(canvas.GetToolTipFrame(), nullptr, "ToolTip");
        tip->Hide();
        canvas.SetToolTip(tip,
                          [this](String const& text)
                          {
                              texts.push_back(text);
                              tip->SetGeometry(0, 0, 8 * static_cast<int>(text.Length()) + 8, 16);
                          });
    }

    UI::Window* make(char const* name, int x, char const* text)
    {
        UI::Window* w = new UI::Window(frame.get(), root, name);
        w->SetGeometry(x, 0, 50, 50);
        w->SetToolTipText(text);
        return w;
    }

    /// The mouse moves to `p` in frame coordinates at time `t`.
    void MoveTo(unsigned int t, Point const& p)
    {
        desktop->tick = t;
        desktop->cursor = Point(p.x + 100, p.y + 100);
        frame->HandleMouseMessage(UI::MouseMove, p + Point(100, 100), 0, 0);
    }

    void Click(unsigned int t)
    {
        desktop->tick = t;
        Point p = desktop->cursor;
        frame->HandleMouseMessage(UI::MouseLeftPress, p, UI::FlagLeftButton, 0);
        frame->HandleMouseMessage(UI::MouseLeftRelease, p, 0, 0);
    }

    void Tick(unsigned int t)
    {
        desktop->tick = t;
        canvas.TickFrameTimers();
    }

    UI::Window* Showing() const { return canvas.GetToolTipWindow(); }

    /// Rests on A from time 0 until its tip shows after the default delay.
    bool ShowA()
    {
        MoveTo(0, Point(10, 10));
        Tick(750);
        return Showing() == a;
    }
};

} // namespace

TEST(ToolTipTiming, ShowsAfterTheIdleDelayAtTheCursor)
{
    Scene s;
    EXPECT_EQ(s.tip, s.canvas.GetToolTipFrame()->GetTopLevelWindow());
    s.MoveTo(1000, Point(10, 10));
    s.Tick(1100);
    s.Tick(1749);
    EXPECT_EQ(nullptr, s.Showing());
    EXPECT_TRUE(s.desktop->shown.empty());

    s.Tick(1750);
    EXPECT_EQ(s.a, s.Showing());
    ASSERT_EQ(1u, s.texts.size());
    EXPECT_EQ(String("Alpha"), s.texts[0]);
    EXPECT_TRUE(s.tip->IsVisible());
    ASSERT_EQ(1u, s.desktop->shown.size());
    EXPECT_EQ(Rect(110, 110 + 47, 110, 125), s.desktop->shown[0]);
    EXPECT_TRUE(s.desktop->hostVisible);

    // Resting on the same window doesn't show the tip again.
    s.Tick(2600);
    EXPECT_EQ(1u, s.desktop->shown.size());
}

TEST(ToolTipTiming, TipIsKeptOnTheMonitor)
{
    Scene s;
    // The frame near the bottom right corner of the screen; the cursor at its (290, 90).
    s.frame->SetNativeWindowOffset(Point(730, 670));
    s.a->SetGeometry(0, 0, 300, 100);
    s.a->Raise();
    s.desktop->cursor = Point(1020, 760);
    s.frame->HandleMouseMessage(UI::MouseMove, Point(1020, 760), 0, 0);
    s.Tick(750);
    ASSERT_EQ(s.a, s.Showing());
    ASSERT_EQ(1u, s.desktop->shown.size());
    EXPECT_EQ(Rect(1023 - 47, 1023, 767 - 15, 767), s.desktop->shown[0]);
}

TEST(ToolTipTiming, NextTipWithinTheReshowIntervalShowsAtOnce)
{
    Scene s;
    ASSERT_TRUE(s.ShowA());

    // Onto B: A's tip closes, and B's follows on the next tick without a new delay.
    s.MoveTo(900, Point(70, 10));
    EXPECT_EQ(nullptr, s.Showing());
    EXPECT_FALSE(s.desktop->hostVisible);
    s.Tick(900);
    EXPECT_EQ(s.b, s.Showing());
    EXPECT_EQ(String("Beta"), s.texts.back());
}

TEST(ToolTipTiming, LeavingAndComingBackWaitsAgainUnlessWithinASecond)
{
    Scene s;
    ASSERT_TRUE(s.ShowA());

    // Off to C (no tip): closed at 800.
    s.MoveTo(800, Point(130, 10));
    EXPECT_EQ(nullptr, s.Showing());
    s.Tick(900);
    EXPECT_EQ(nullptr, s.Showing());

    // Back on A more than a second later: the full delay again.
    s.MoveTo(1900, Point(10, 10));
    s.Tick(1900);
    s.Tick(2649);
    EXPECT_EQ(nullptr, s.Showing());
    s.Tick(2650);
    EXPECT_EQ(s.a, s.Showing());

    // Off and back within a second: at once.
    s.MoveTo(2700, Point(130, 10));
    s.MoveTo(3200, Point(10, 20));
    s.Tick(3200);
    EXPECT_EQ(s.a, s.Showing());
}

TEST(ToolTipTiming, HoverIsCheckedOnceASecond)
{
    Scene s;
    ASSERT_TRUE(s.ShowA());

    // The cursor leaves without a mouse message reaching the frame (another window took it).
    s.desktop->cursor = Point(100 + 200, 100 + 90);
    s.Tick(800);
    s.Tick(1749);
    EXPECT_EQ(s.a, s.Showing());
    s.Tick(1750);
    EXPECT_EQ(nullptr, s.Showing());
    EXPECT_FALSE(s.tip->IsVisible());
    EXPECT_FALSE(s.desktop->hostVisible);
}

TEST(ToolTipSuppression, ClosedTipStaysClosedUntilTheMouseLeaves)
{
    Scene s;
    ASSERT_TRUE(s.ShowA());

    // A click closes the tip; resting on A afterwards shows nothing.
    s.Click(1000);
    EXPECT_EQ(nullptr, s.Showing());
    EXPECT_EQ(s.a, s.canvas.GetSuppressedToolTipWindow());
    s.MoveTo(1100, Point(12, 10));
    s.Tick(5000);
    EXPECT_EQ(nullptr, s.Showing());

    // Leaving A lifts the suppression; the click also dropped the quick re-show.
    s.MoveTo(5100, Point(130, 10));
    EXPECT_EQ(nullptr, s.canvas.GetSuppressedToolTipWindow());
    s.MoveTo(5200, Point(10, 10));
    s.Tick(5200);
    EXPECT_EQ(nullptr, s.Showing());
    s.Tick(5950);
    EXPECT_EQ(s.a, s.Showing());
}

TEST(ToolTipSearch, ObscuredBlockedAndHiddenWindowsShowNoTip)
{
    Scene s;
    // D lies above A (a later sibling) and covers its left half; D has no tip.
    UI::Window* d = new UI::Window(s.frame.get(), s.root, "D");
    d->SetGeometry(0, 0, 25, 50);
    s.MoveTo(0, Point(10, 10));
    s.Tick(750);
    EXPECT_EQ(nullptr, s.Showing());

    // On A's uncovered half the tip shows.
    s.MoveTo(800, Point(40, 10));
    s.Tick(1550);
    EXPECT_EQ(s.a, s.Showing());
    s.MoveTo(1600, Point(130, 10));

    // A hidden cover doesn't count.
    d->Hide();
    s.MoveTo(3000, Point(10, 10));
    s.Tick(3750);
    EXPECT_EQ(s.a, s.Showing());
    s.MoveTo(3800, Point(130, 10));

    // A blocker inside the found window ends the search with no tip.
    UI::Window* blocker = new UI::Window(s.frame.get(), s.b, "Blocker");
    blocker->SetGeometry(0, 0, 50, 50);
    blocker->SetToolTipBlocker(true);
    s.MoveTo(6000, Point(70, 10));
    s.Tick(6750);
    EXPECT_EQ(nullptr, s.Showing());

    // No frame under the cursor: no tip.
    s.desktop->beneath = nullptr;
    s.MoveTo(8000, Point(10, 10));
    s.Tick(8750);
    EXPECT_EQ(nullptr, s.Showing());
}

TEST(ToolTipVeto, AboutToAppearSlotCanVetoTheTip)
{
    Scene s;
    int emitted = 0;
    Connection c =
        s.a->signalToolTipAboutToAppear.Connect(nullptr, boost::function<void(UI::Window*)>(
                                                             [&](UI::Window* w)
                                                             {
                                                                 ++emitted;
                                                                 EXPECT_EQ(s.a, w);
                                                                 s.canvas.ClearToolTip();
                                                             }));
    s.MoveTo(0, Point(10, 10));
    s.Tick(750);
    EXPECT_EQ(1, emitted);
    EXPECT_EQ(nullptr, s.Showing());
    EXPECT_TRUE(s.desktop->shown.empty());
    EXPECT_TRUE(s.texts.empty());

    c.Disconnect();
    s.MoveTo(1000, Point(12, 10));
    s.Tick(1750);
    EXPECT_EQ(1, emitted);
    EXPECT_EQ(s.a, s.Showing());
}

TEST(ToolTipLifetime, DyingWindowsTakeTheirTipAlong)
{
    Scene s;
    ASSERT_TRUE(s.ShowA());
    delete s.a;
    EXPECT_EQ(nullptr, s.Showing());
    EXPECT_EQ(nullptr, s.canvas.GetSuppressedToolTipWindow());
    EXPECT_FALSE(s.desktop->hostVisible);

    // The tip window itself dying leaves the canvas without a tip, and ticks do nothing.
    UI::Frame* tipFrame = s.canvas.GetToolTipFrame();
    delete s.tip;
    EXPECT_EQ(nullptr, s.canvas.GetToolTip());
    EXPECT_EQ(nullptr, tipFrame->GetTopLevelWindow());
    s.MoveTo(1000, Point(70, 10));
    s.Tick(5000);
    EXPECT_EQ(nullptr, s.Showing());
}

TEST(ToolTipIntervals, DelaysAreSettable)
{
    Scene s;
    s.canvas.SetToolTipIntervals(100, 200);
    EXPECT_EQ(100u, s.canvas.GetToolTipIntervals().first);
    s.MoveTo(0, Point(10, 10));
    s.Tick(99);
    EXPECT_EQ(nullptr, s.Showing());
    s.Tick(100);
    EXPECT_EQ(s.a, s.Showing());
}
