#include "Canvas/UI/SimpleScrollBar.h"

#include "tests/Canvas/UI/ScrollScene.h"

#include <gtest/gtest.h>

using UI::Point;
using UI::SimpleScrollBar;
using UI::Test::ScrollScene;

namespace
{

/// Records what a bar emits.
struct BarSignals
{
    explicit BarSignals(UI::ScrollBar* bar)
    {
        bar->signalScrolled.Connect(nullptr, [this](int v) { values.push_back(v); });
        bar->signalEndReached.Connect(nullptr, [this](bool end) { ends.push_back(end); });
    }
    std::vector<int> values;
    std::vector<bool> ends;
};

/// The ids of the frame timers that belong to `window`.
std::vector<unsigned int> TimersOf(UI::Frame& frame, UI::Window* window)
{
    std::vector<unsigned int> ids;
    for (auto const& t : frame.GetTimers())
        if (t.window == window)
            ids.push_back(t.id);
    return ids;
}

} // namespace

// A simple-style vertical bar has no arrows and a track over its whole length.

TEST(ScrollBarThumb, SizeAndPlaceFollowRangeValueAndPage)
{
    ScrollScene s;
    SimpleScrollBar bar(s.frame.get(), nullptr, "Bar", UI::Vertical, SimpleScrollBar::Simple);
    bar.SetGeometry(0, 0, 30, 110);
    EXPECT_EQ(8, bar.GetWidth()) << "the style fixes the cross size";

    bar.SetParameters(value_range<int>(0, 100), 50, 10);
    EXPECT_EQ(9, bar.GetThumbSize()) << "10 * 110 / 111, truncated";
    EXPECT_EQ(51, bar.GetThumbPos()) << "0.5 * 101 rounds away from zero";

    bar.SetParameters(value_range<int>(0, 100), 150, 10);
    EXPECT_EQ(100, bar.GetValue());
    EXPECT_EQ(101, bar.GetThumbPos());
    bar.SetParameters(value_range<int>(0, 100), -7, 10);
    EXPECT_EQ(0, bar.GetValue());

    bar.SetParameters(value_range<int>(5, 5), 5, 10);
    EXPECT_EQ(0, bar.GetThumbPos()) << "one value: the thumb rests at the start";
    EXPECT_EQ(5, bar.GetValue());

    bar.SetParameters(value_range<int>(0, -1), 40, 10);
    EXPECT_EQ(0, bar.GetValue()) << "an empty range holds 0";
    EXPECT_EQ(0, bar.GetThumbSize());
    EXPECT_EQ(0, bar.GetThumbPos());

    bar.SetParameters(value_range<int>(0, 100), 50, 0);
    EXPECT_EQ(110, bar.GetThumbSize()) << "no page: the thumb fills the track";

    SimpleScrollBar slim(s.frame.get(), nullptr, "Slim", UI::Horizontal, SimpleScrollBar::Slim);
    slim.SetGeometry(0, 0, 200, 30);
    EXPECT_EQ(11, slim.GetHeight());
    slim.SetParameters(value_range<int>(0, 100000), 0, 10);
    EXPECT_EQ(12, slim.GetThumbSize()) << "never below the style's minimum";

    bar.Clear();
    EXPECT_EQ(0, bar.GetThumbSize());
}

TEST(ScrollBarWheel, StepsByValueOrByThumbPixels)
{
    ScrollScene s;
    SimpleScrollBar bar(s.frame.get(), nullptr, "Bar", UI::Vertical, SimpleScrollBar::Simple);
    bar.SetGeometry(0, 0, 8, 110);
    BarSignals signals(&bar);
    bar.SetParameters(value_range<int>(0, 1000), 0, 100);

    EXPECT_TRUE(bar.onMouseWheel(Point(), -120, 0));
    EXPECT_EQ(40, bar.GetValue());
    bar.onMouseWheel(Point(), -120, UI::FlagShift);
    EXPECT_EQ(440, bar.GetValue());
    bar.onMouseWheel(Point(), -120, UI::FlagCommand);
    EXPECT_EQ(453, bar.GetValue());
    bar.onMouseWheel(Point(), -60, 0);
    EXPECT_EQ(473, bar.GetValue()) << "half a notch";
    bar.onMouseWheel(Point(), 120 * 100, 0);
    EXPECT_EQ(0, bar.GetValue()) << "clamped at the start";
    EXPECT_EQ(std::vector<int>({40, 440, 453, 473, 0}), signals.values);
    bar.onMouseWheel(Point(), 120, 0);
    EXPECT_EQ(5u, signals.values.size()) << "no move, no signal";

    // In thumb pixels: 3 per notch over a free track of 110 - 9 = 101.
    bar.SetWheelStep(3.0f, false);
    bar.onMouseWheel(Point(), -120, 0);
    EXPECT_EQ(30, bar.GetValue()) << "1000 * 3 / 101, rounded";

    bar.SetParameters(value_range<int>(7, 7), 7, 100);
    EXPECT_TRUE(bar.onMouseWheel(Point(), -120, 0));
    bar.SetParameters(value_range<int>(0, -1), 0, 100);
    EXPECT_TRUE(bar.onMouseWheel(Point(), -120, 0)) << "taken, though nothing moves";
    EXPECT_EQ(6u, signals.values.size());
}

// A track-and-buttons vertical bar without artwork: 15 wide, arrows 15 long at both ends, the
// track 2 pixels from each arrow.

TEST(ScrollBarArrows, StepRepeatAndReportTheEnds)
{
    ScrollScene s;
    SimpleScrollBar* bar = new SimpleScrollBar(s.frame.get(), nullptr, "Bar", UI::Vertical);
    bar->SetGeometry(0, 0, 15, 100);
    EXPECT_EQ(15, bar->GetWidth());
    BarSignals signals(bar);
    bar->SetParameters(value_range<int>(0, 100), 100, 50);

    // At the end: the increase arrow reports it, and its repeat stays silent.
    s.Mouse(UI::MouseLeftPress, 7, 95, UI::FlagLeftButton);
    EXPECT_EQ(std::vector<bool>({true}), signals.ends);
    EXPECT_EQ(100, bar->GetValue());
    std::vector<unsigned int> timers = TimersOf(*s.frame, bar);
    ASSERT_EQ(1u, timers.size()) << "the initial delay";
    bar->onTimer(timers[0]);
    timers = TimersOf(*s.frame, bar);
    ASSERT_EQ(1u, timers.size()) << "the delay gave way to the repeat";
    bar->onTimer(timers[0]);
    EXPECT_TRUE(signals.values.empty());
    EXPECT_EQ(1u, signals.ends.size());
    s.Mouse(UI::MouseLeftRelease, 7, 95);
    EXPECT_TRUE(TimersOf(*s.frame, bar).empty());
    EXPECT_EQ(nullptr, s.frame->GetMouseCapture());

    // The decrease arrow steps a tenth of the page, then repeats from the timers.
    s.Mouse(UI::MouseLeftPress, 7, 3, UI::FlagLeftButton);
    EXPECT_EQ(95, bar->GetValue());
    EXPECT_EQ(bar, s.frame->GetMouseCapture());
    bar->onTimer(TimersOf(*s.frame, bar)[0]);
    EXPECT_EQ(90, bar->GetValue());
    bar->onTimer(TimersOf(*s.frame, bar)[0]);
    EXPECT_EQ(85, bar->GetValue());
    s.Mouse(UI::MouseLeftRelease, 7, 3);
    EXPECT_EQ(std::vector<int>({95, 90, 85}), signals.values);

    // An empty range: the arrows only report.
    bar->SetParameters(value_range<int>(0, -1), 0, 50);
    s.Mouse(UI::MouseLeftPress, 7, 3, UI::FlagLeftButton);
    s.Mouse(UI::MouseLeftRelease, 7, 3);
    s.Mouse(UI::MouseLeftPress, 7, 95, UI::FlagLeftButton);
    s.Mouse(UI::MouseLeftRelease, 7, 95);
    EXPECT_EQ(std::vector<bool>({true, false, true}), signals.ends);
    EXPECT_EQ(3u, signals.values.size());
    delete bar;
}

TEST(ScrollBarTrack, PagingStopsUnderTheMouse)
{
    // Range 0..1000, page 100, track 17..82: the thumb is 5 long.
    ScrollScene s;
    SimpleScrollBar* bar = new SimpleScrollBar(s.frame.get(), nullptr, "Bar", UI::Vertical);
    bar->SetGeometry(0, 0, 15, 100);
    BarSignals signals(bar);
    bar->SetParameters(value_range<int>(0, 1000), 0, 100);
    EXPECT_EQ(5, bar->GetThumbSize());

    s.Mouse(UI::MouseLeftPress, 7, 40, UI::FlagLeftButton);
    EXPECT_EQ(2, bar->GetDragMode());
    EXPECT_EQ(100, bar->GetValue());
    for (int tick = 0; tick < 6; ++tick)
        bar->onTimer(TimersOf(*s.frame, bar)[0]);
    EXPECT_EQ(std::vector<int>({100, 200, 300, 400}), signals.values)
        << "the thumb reached the mouse at 400";
    s.Mouse(UI::MouseLeftRelease, 7, 40);

    // Above the thumb pages back.
    s.Mouse(UI::MouseLeftPress, 7, 18, UI::FlagLeftButton);
    s.Mouse(UI::MouseLeftRelease, 7, 18);
    EXPECT_EQ(300, bar->GetValue());

    // Grab the thumb (at 18 + 17 = 35..39) and drag it to the end and beyond.
    ASSERT_EQ(18, bar->GetThumbPos());
    s.Mouse(UI::MouseLeftPress, 7, 36, UI::FlagLeftButton);
    EXPECT_EQ(1, bar->GetDragMode());
    s.Mouse(UI::MouseMove, 7, 46, UI::FlagLeftButton);
    EXPECT_EQ(459, bar->GetValue()) << "1000 * (46 - 17 - 1) / 61";
    s.Mouse(UI::MouseMove, 7, 400, UI::FlagLeftButton);
    EXPECT_EQ(1000, bar->GetValue());
    s.Mouse(UI::MouseLeftRelease, 7, 400);
    EXPECT_EQ(0, bar->GetDragMode());
    delete bar;
}

TEST(SimpleScrollBarLook, SlimStyleDrawsTrackAndThumbInPaletteColours)
{
    ScrollScene s;
    s.frame->SetBackgroundColor(0xFF000000u);
    SimpleScrollBar* bar =
        new SimpleScrollBar(s.frame.get(), nullptr, "Bar", UI::Vertical, SimpleScrollBar::Slim);
    bar->SetGeometry(0, 0, 11, 100);
    bar->SetParameters(value_range<int>(0, 100), 0, 100);
    EXPECT_EQ(49, bar->GetThumbSize());
    s.Paint();
    // The track is the bar less 3 on the left and 4 on the right (x 3..6); the thumb is inset
    // 3 from the bar's sides and runs from 2 to 50 along it.
    EXPECT_EQ(0xFF7F7F7Fu, s.Pixel(5, 20));
    EXPECT_EQ(0xFF000000u, s.Pixel(5, 70)) << "inside the track, past the thumb";
    EXPECT_EQ(0xFFD5D5D5u, s.Pixel(3, 70)) << "the track's outline";
    EXPECT_EQ(0xFF000000u, s.Pixel(1, 70)) << "outside the track";
    delete bar;
}

TEST(SimpleScrollBarLook, TrackAndButtonsWithoutArtworkDrawThemselves)
{
    // No resources hold the skin here: the bar still shows where it takes clicks.
    ScrollScene s;
    s.frame->SetBackgroundColor(0xFF000000u);
    SimpleScrollBar* bar = new SimpleScrollBar(s.frame.get(), nullptr, "Bar", UI::Vertical);
    bar->SetGeometry(0, 0, 15, 100);
    bar->SetParameters(value_range<int>(0, 100), 0, 100);
    s.Paint();
    // The arrows are boxes 15 long with a triangle pointing out; the track lies from 17 to 82,
    // and the thumb, inset 3 across, at its start.
    EXPECT_EQ(0xFF7F7F7Fu, s.Pixel(0, 0)) << "the up arrow's box";
    EXPECT_EQ(0xFF7F7F7Fu, s.Pixel(7, 5)) << "the up arrow's tip";
    EXPECT_EQ(0xFFD5D5D5u, s.Pixel(7, 2)) << "inside the up arrow's box, above its tip";
    EXPECT_EQ(0xFF7F7F7Fu, s.Pixel(7, 93)) << "the down arrow's tip";
    EXPECT_EQ(0xFF7F7F7Fu, s.Pixel(14, 99)) << "the down arrow's box";
    EXPECT_EQ(0xFF7F7F7Fu, s.Pixel(7, 30)) << "the thumb";
    EXPECT_EQ(0xFFD5D5D5u, s.Pixel(1, 30)) << "the track beside the thumb";
    EXPECT_EQ(0xFFD5D5D5u, s.Pixel(7, 80)) << "the track past the thumb";
    delete bar;
}
