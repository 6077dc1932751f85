#include "Canvas/UI/ScrollView.h"

#include "Canvas/UI/KeyCode.h"

#include "tests/Canvas/UI/ScrollScene.h"

#include <gtest/gtest.h>

using UI::Point;
using UI::Rect;
using UI::ScrollView;
using UI::Size;
using UI::Test::RecordingWindow;
using UI::Test::ScrollScene;
using UI::Test::ShownRows;

namespace
{

std::vector<int> Range(int first, int last)
{
    std::vector<int> out;
    for (int i = first; i <= last; ++i)
        out.push_back(i);
    return out;
}

/// Counts the view's `signalScrolled` and keeps the last position.
struct ScrollCounter
{
    explicit ScrollCounter(ScrollView* view)
    {
        view->signalScrolled.Connect(nullptr,
                                     [this](Point p)
                                     {
                                         ++count;
                                         last = p;
                                     });
    }
    int count = 0;
    Point last;
};

} // namespace

// A list of 100 rows of 20 pixels in a 200 x 100 view at (10, 10): only the vertical bar
// (15 wide) shows, rows are 185 wide, and the furthest scroll is 2000 - 100 = 1900.

TEST(ScrollViewList, ShowsOnlyTheRowsInTheViewport)
{
    ScrollScene s;
    ScrollView* view = s.MakeList(10, 10, 200, 100, 100, 20);
    EXPECT_EQ(Size(185, 2000), view->GetScrollViewSize());
    EXPECT_EQ(Range(0, 4), ShownRows(*view));
    EXPECT_FALSE(view->GetHorizontalScrollBar()->IsVisible());
    ASSERT_TRUE(view->GetVerticalScrollBar()->IsVisible());
    EXPECT_EQ(Rect(185, 199, 0, 99), view->GetVerticalScrollBar()->GetGeometry());
    EXPECT_EQ(String("List Vertical ScrollBar"), view->GetVerticalScrollBar()->GetName());
    EXPECT_EQ(String("List Horizontal ScrollBar"), view->GetHorizontalScrollBar()->GetName());
    EXPECT_EQ(Point(0, 1900), view->GetScrollViewPosRange());
    EXPECT_EQ(1900, view->GetVerticalScrollBar()->GetRange().maximum);
    EXPECT_EQ(100, view->GetVerticalScrollBar()->GetPageSize());
    EXPECT_EQ(Rect(0, 184, 60, 79), view->GetChildren()[3].window->GetGeometry());

    // The bitmap shows row 0 at the top and row 4 at the bottom of the view.
    s.Paint();
    EXPECT_EQ(ScrollScene::RowColor(0), s.Pixel(50, 10));
    EXPECT_EQ(ScrollScene::RowColor(4), s.Pixel(50, 109));

    view->ScrollTo(Point(0, 1890));
    EXPECT_EQ(Range(94, 99), ShownRows(*view));
    view->ScrollTo(Point(-5, 99999));
    EXPECT_EQ(Point(0, 1900), view->GetScrollViewPos()) << "clamped on both axes";
    EXPECT_EQ(Range(95, 99), ShownRows(*view));
    s.Paint();
    EXPECT_EQ(ScrollScene::RowColor(95), s.Pixel(50, 10));
    EXPECT_EQ(ScrollScene::RowColor(99), s.Pixel(50, 109));
}

TEST(ScrollViewList, WheelScrollsThroughTheVerticalBar)
{
    ScrollScene s;
    ScrollView* view = s.MakeList(10, 10, 200, 100, 100, 20);
    ScrollCounter scrolled(view);

    EXPECT_TRUE(s.Mouse(UI::MouseWheel, 50, 20, 0, -120));
    EXPECT_EQ(Point(0, 40), view->GetScrollViewPos()) << "one notch is 40 pixels";
    EXPECT_EQ(Range(2, 6), ShownRows(*view));
    EXPECT_EQ(1, scrolled.count);
    EXPECT_EQ(Point(0, 40), scrolled.last);
    s.Paint();
    EXPECT_EQ(ScrollScene::RowColor(2), s.Pixel(50, 10));
    EXPECT_EQ(ScrollScene::RowColor(3), s.Pixel(50, 30));

    s.Mouse(UI::MouseWheel, 50, 20, UI::FlagShift, -120);
    EXPECT_EQ(440, view->GetScrollViewPos().y) << "Shift moves ten times as far";
    s.Mouse(UI::MouseWheel, 50, 20, UI::FlagCommand, -120);
    EXPECT_EQ(453, view->GetScrollViewPos().y) << "Command moves a third, rounded";
    s.Mouse(UI::MouseWheel, 50, 20, 0, 240);
    EXPECT_EQ(373, view->GetScrollViewPos().y) << "a positive value scrolls up";
    EXPECT_EQ(373, view->GetVerticalScrollBar()->GetValue());

    // Control plus Shift passes through when the view is told so.
    view->SetWheelPassThrough(true);
    EXPECT_FALSE(view->onMouseWheel(Point(5, 5), -120, UI::FlagControl | UI::FlagShift));
    EXPECT_EQ(373, view->GetScrollViewPos().y);
    view->SetVerticalScrollBarMode(UI::ScrollBarAlwaysOff);
    EXPECT_FALSE(view->onMouseWheel(Point(5, 5), -120, 0)) << "no vertical bar, no wheel";
}

TEST(ScrollViewList, KeysScrollWhenTheViewHasFocus)
{
    ScrollScene s;
    ScrollView* view = s.MakeList(10, 10, 200, 100, 100, 20);
    ScrollCounter scrolled(view);
    s.frame->SetFocus(view);
    ASSERT_EQ(view, s.frame->GetFocus());

    EXPECT_TRUE(s.Key(UI::KeyCode::DownArrow));
    EXPECT_EQ(40, view->GetScrollViewPos().y);
    EXPECT_TRUE(s.Key(UI::KeyCode::PageDown));
    EXPECT_EQ(140, view->GetScrollViewPos().y);
    EXPECT_EQ(Range(7, 11), ShownRows(*view));
    EXPECT_TRUE(s.Key(UI::KeyCode::UpArrow));
    EXPECT_EQ(100, view->GetScrollViewPos().y);
    EXPECT_TRUE(s.Key(UI::KeyCode::End));
    EXPECT_EQ(1900, view->GetScrollViewPos().y);
    EXPECT_EQ(1900, view->GetVerticalScrollBar()->GetValue());
    EXPECT_TRUE(s.Key(UI::KeyCode::PageDown));
    EXPECT_TRUE(s.Key(UI::KeyCode::Home));
    EXPECT_EQ(0, view->GetScrollViewPos().y);
    EXPECT_EQ(5, scrolled.count) << "a key that cannot move says nothing";

    // A focused row passes the keys up to its view.
    s.frame->SetFocus(view->GetChildren()[1].window);
    EXPECT_TRUE(s.Key(UI::KeyCode::DownArrow));
    EXPECT_EQ(40, view->GetScrollViewPos().y);
}

TEST(ScrollViewList, BarArrowsTrackAndThumbScrollTheView)
{
    // The vertical bar lies at frame x 195..209, y 10..109; without artwork its arrows are
    // 15 long and its track runs from 17 to 82 (66 pixels), with a thumb of 3.
    ScrollScene s;
    ScrollView* view = s.MakeList(10, 10, 200, 100, 100, 20);
    UI::ScrollBar* bar = view->GetVerticalScrollBar();
    ScrollCounter scrolled(view);

    s.Mouse(UI::MouseLeftPress, 200, 100, UI::FlagLeftButton);
    s.Mouse(UI::MouseLeftRelease, 200, 100);
    EXPECT_EQ(10, view->GetScrollViewPos().y) << "an arrow steps a tenth of the page";

    s.Mouse(UI::MouseLeftPress, 200, 70, UI::FlagLeftButton);
    s.Mouse(UI::MouseLeftRelease, 200, 70);
    EXPECT_EQ(110, view->GetScrollViewPos().y) << "the track below the thumb pages down";
    EXPECT_EQ(3, bar->GetThumbSize());
    EXPECT_EQ(4, bar->GetThumbPos());

    // The thumb lies at local 21..23; grab it at 22 and pull it down by 30.
    s.Mouse(UI::MouseLeftPress, 200, 32, UI::FlagLeftButton);
    EXPECT_EQ(1, bar->GetDragMode());
    s.Mouse(UI::MouseMove, 200, 62, UI::FlagLeftButton);
    EXPECT_EQ(1025, view->GetScrollViewPos().y) << "1900 * (52 - 17 - 1) / 63";
    EXPECT_EQ(Range(51, 56), ShownRows(*view));
    s.Mouse(UI::MouseLeftRelease, 200, 62);
    EXPECT_EQ(0, bar->GetDragMode());
    EXPECT_EQ(3, scrolled.count);
    EXPECT_EQ(Point(0, 1025), scrolled.last);
}

TEST(ScrollViewList, HiddenChildKeepsItsPlace)
{
    ScrollScene s;
    ScrollView* view = s.MakeList(10, 10, 200, 100, 10, 20);
    UI::Window* row1 = view->GetChildren()[1].window;
    view->SetChildVisible(row1, false);
    EXPECT_FALSE(row1->IsVisible());
    EXPECT_EQ(Point(0, 40), view->GetChildren()[2].position);
    EXPECT_EQ(std::vector<int>({0, 2, 3, 4}), ShownRows(*view));
    view->SetChildVisible(row1, true);
    EXPECT_EQ(Range(0, 4), ShownRows(*view));

    // Spacing and margins.
    view->SetChildSpacing(5);
    EXPECT_EQ(Point(0, 50), view->GetChildren()[2].position);
    EXPECT_EQ(245, view->GetScrollViewSize().height) << "ten rows and nine gaps";
    view->SetViewMargin(4);
    EXPECT_EQ(Point(4, 54), view->GetChildren()[2].position);
    EXPECT_EQ(200 - 15 - 8, view->GetScrollViewSize().width);
}

TEST(ScrollViewList, ChildrenComeAndGo)
{
    ScrollScene s;
    ScrollView* view = s.MakeList(10, 10, 200, 100, 10, 20);
    RecordingWindow* extra = s.Make(view, "Extra", 0, 0, 10, 20);
    view->AddChild(checked_value<unsigned int>(99u), extra, Point(), true);
    EXPECT_FALSE(view->GetChildIndex(extra).present) << "an index past the end is ignored";
    view->AddChild(checked_value<unsigned int>(0u), extra, Point(), true);
    EXPECT_EQ(0u, view->GetChildIndex(extra).value);
    EXPECT_EQ(Range(0, 4), ShownRows(*view));
    EXPECT_EQ(220, view->GetScrollViewSize().height);

    view->RemoveChild(0);
    EXPECT_EQ(10u, view->GetChildren().size());
    view->RemoveChild(50);
    EXPECT_EQ(10u, view->GetChildren().size());

    // A child deleted by someone else is forgotten.
    delete view->GetChildren()[0].window;
    EXPECT_EQ(9u, view->GetChildren().size());
    EXPECT_EQ(Point(0, 0), view->GetChildren()[0].position);

    view->ScrollTo(Point(0, 80));
    view->RemoveChildren();
    EXPECT_TRUE(view->GetChildren().empty());
    EXPECT_EQ(Point(0, 0), view->GetScrollViewPos()) << "the position is clamped again";
    EXPECT_FALSE(view->GetVerticalScrollBar()->IsVisible());
}

// ---- free layout and the bars

TEST(ScrollViewBars, BothAutomaticBarsDecideTogether)
{
    ScrollScene s;
    ScrollView* view = new ScrollView(s.frame.get(), nullptr, "Free");
    view->SetGeometry(0, 0, 100, 80);
    UI::ScrollBar* h = view->GetHorizontalScrollBar();
    UI::ScrollBar* v = view->GetVerticalScrollBar();

    view->SetScrollViewSize(Size(100, 80));
    EXPECT_FALSE(h->IsVisible());
    EXPECT_FALSE(v->IsVisible()) << "content that fits without bars gets none";

    view->SetScrollViewSize(Size(105, 70));
    EXPECT_TRUE(h->IsVisible());
    EXPECT_TRUE(v->IsVisible()) << "the horizontal bar takes the room the height needed";
    EXPECT_EQ(Point(20, 5), view->GetScrollViewPosRange());
    EXPECT_EQ(Rect(0, 84, 65, 79), h->GetGeometry());
    EXPECT_EQ(Rect(85, 99, 0, 64), v->GetGeometry());

    view->SetScrollViewSize(Size(90, 90));
    EXPECT_TRUE(h->IsVisible());
    EXPECT_TRUE(v->IsVisible());

    view->SetScrollViewSize(Size(60, 90));
    EXPECT_FALSE(h->IsVisible());
    EXPECT_TRUE(v->IsVisible());

    view->SetHorizontalScrollBarMode(UI::ScrollBarAlwaysOn);
    EXPECT_TRUE(h->IsVisible());
    view->SetVerticalScrollBarMode(UI::ScrollBarAlwaysOff);
    EXPECT_FALSE(v->IsVisible());
    EXPECT_EQ(Rect(0, 99, 65, 79), h->GetGeometry());

    // Margins move the bars in from the edges.
    view->SetScrollBarEdgeMargin(2);
    view->SetScrollBarMargins(3, 0);
    EXPECT_EQ(Rect(5, 94, 63, 77), h->GetGeometry());
}

TEST(ScrollViewFree, ChildrenAppearWhenScrolledIntoView)
{
    ScrollScene s;
    ScrollView* view = new ScrollView(s.frame.get(), nullptr, "Free");
    view->SetGeometry(0, 0, 100, 80);
    view->SetScrollViewSize(Size(300, 200));
    RecordingWindow* far = s.Make(view, "Far", 0, 0, 20, 20, 0xFF00FF00u);
    view->AddChild(checked_value<unsigned int>(), far, Point(150, 10), true);
    EXPECT_FALSE(far->IsVisible());

    view->ScrollTo(Point(100, 0));
    EXPECT_TRUE(far->IsVisible());
    EXPECT_EQ(Rect(50, 69, 10, 29), far->GetGeometry());
    s.Paint();
    EXPECT_EQ(0xFF00FF00u, s.Pixel(60, 20));

    view->ScrollTo(Point(0, 0));
    view->EnsureVisible(far);
    EXPECT_EQ(Point(85, 0), view->GetScrollViewPos()) << "its right edge comes to the view's";
    view->EnsureVisible(Rect(0, 9, 150, 159));
    EXPECT_EQ(Point(0, 95), view->GetScrollViewPos());
    view->EnsureVisible(Rect(0, 9, 100, 109));
    EXPECT_EQ(Point(0, 95), view->GetScrollViewPos()) << "already inside";
    view->EnsureVisible(Rect(10, 19, 0, 500));
    EXPECT_EQ(Point(0, 95), view->GetScrollViewPos()) << "covers the viewport";

    view->MoveChild(far, Point(0, 100));
    EXPECT_TRUE(far->IsVisible());
    EXPECT_EQ(Rect(0, 19, 5, 24), far->GetGeometry());

    // The size cannot be set on a list.
    ScrollView* list = s.MakeList(0, 0, 50, 50, 3, 10);
    list->SetScrollViewSize(Size(500, 500));
    EXPECT_EQ(30, list->GetScrollViewSize().height);
}

TEST(ScrollViewFree, BorderStylesDrawAroundTheView)
{
    ScrollScene s;
    ScrollView* view = new ScrollView(s.frame.get(), nullptr, "Framed");
    view->SetGeometry(10, 10, 40, 30);
    view->SetBorderColor(0xFFFF0000u);
    s.frame->SetBackgroundColor(0xFF000000u);
    s.Paint();
    EXPECT_EQ(0xFFFF0000u, s.Pixel(10, 10));
    EXPECT_EQ(0xFFFF0000u, s.Pixel(49, 39));
    EXPECT_EQ(0xFFFF0000u, s.Pixel(30, 39));
    EXPECT_EQ(0xFF000000u, s.Pixel(30, 25)) << "an outline only";

    view->SetBorderStyle(UI::Borders::None);
    s.Paint();
    EXPECT_EQ(0xFF000000u, s.Pixel(10, 10));
}
