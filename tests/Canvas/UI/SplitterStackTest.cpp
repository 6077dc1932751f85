#include "Canvas/UI/Splitter.h"
#include "Canvas/UI/WindowStack.h"

#include "tests/Canvas/UI/ScrollScene.h"

#include <gtest/gtest.h>

using UI::Point;
using UI::Rect;
using UI::ScrollView;
using UI::Splitter;
using UI::Test::RecordingWindow;
using UI::Test::ScrollScene;

namespace
{

/// A 200 x 200 vertical list at the frame's origin: panel A (50 high, limits 10..120), a
/// splitter, panel B (50 high).
struct SplitScene : ScrollScene
{
    explicit SplitScene(bool live, checked_value<int> maxA = 120)
    {
        view = new ScrollView(frame.get(), nullptr, "Split", ScrollView::LayoutVerticalList);
        view->SetGeometry(0, 0, 200, 200);
        a = Make(view, "A", 0, 0, 10, 50);
        splitter = new UI::SimpleSplitter(frame.get(), view, "Splitter", UI::Vertical, live);
        b = Make(view, "B", 0, 0, 10, 50);
        view->AddChild(checked_value<unsigned int>(), a, 10, maxA);
        view->AddChild(checked_value<unsigned int>(), splitter, checked_value<int>(),
                       checked_value<int>());
        view->AddChild(checked_value<unsigned int>(), b, checked_value<int>(),
                       checked_value<int>());
    }
    ScrollView* view;
    RecordingWindow* a;
    Splitter* splitter;
    RecordingWindow* b;
};

} // namespace

TEST(SplitterDrag, LiveSplitterResizesThePanelAboveAsItMoves)
{
    SplitScene s(true);
    EXPECT_EQ(3, s.splitter->GetHeight());
    EXPECT_EQ(UI::Cursor::ResizeUpDown, s.splitter->GetCursor().GetShape());
    EXPECT_EQ(Rect(0, 199, 50, 52), s.splitter->GetGeometry());
    EXPECT_EQ(Rect(0, 199, 53, 102), s.b->GetGeometry());

    int changes = 0;
    s.splitter->signalChanged.Connect(nullptr, [&changes]() { ++changes; });
    s.Mouse(UI::MouseLeftPress, 100, 51, UI::FlagLeftButton);
    s.Mouse(UI::MouseMove, 100, 81, UI::FlagLeftButton);
    EXPECT_EQ(80, s.a->GetHeight());
    EXPECT_EQ(Rect(0, 199, 80, 82), s.splitter->GetGeometry());
    EXPECT_EQ(Rect(0, 199, 83, 132), s.b->GetGeometry());
    s.Mouse(UI::MouseMove, 100, 71, UI::FlagLeftButton);
    EXPECT_EQ(70, s.a->GetHeight()) << "the travel counts from the press, not the last move";
    s.Mouse(UI::MouseMove, 100, 400, UI::FlagLeftButton);
    EXPECT_EQ(120, s.a->GetHeight()) << "the panel's largest size";
    s.Mouse(UI::MouseMove, 100, -100, UI::FlagLeftButton);
    EXPECT_EQ(10, s.a->GetHeight()) << "the panel's smallest size";
    s.Mouse(UI::MouseLeftRelease, 100, -100);
    EXPECT_EQ(4, changes);
    EXPECT_FALSE(s.splitter->IsDragging());
}

TEST(SplitterDrag, NonLiveSplitterMovesItsNeighboursOnRelease)
{
    SplitScene s(false);
    std::vector<int> positions;
    s.splitter->signalDragged.Connect(nullptr,
                                      [&positions](Splitter*, int p) { positions.push_back(p); });
    s.Mouse(UI::MouseLeftPress, 100, 51, UI::FlagLeftButton);
    s.Mouse(UI::MouseMove, 100, 91, UI::FlagLeftButton);
    EXPECT_EQ(50, s.a->GetHeight()) << "nothing moves before the release";
    EXPECT_TRUE(positions.empty());
    s.Mouse(UI::MouseLeftRelease, 100, 71);
    EXPECT_EQ(std::vector<int>({70}), positions);
    EXPECT_EQ(70, s.a->GetHeight());
    EXPECT_EQ(Rect(0, 199, 73, 122), s.b->GetGeometry());
}

TEST(SplitterDrag, ResizeWithinViewStopsAtTheViewsEdge)
{
    SplitScene s(true, checked_value<int>());
    s.view->SetResizeWithinView(true);
    s.Mouse(UI::MouseLeftPress, 100, 51, UI::FlagLeftButton);
    s.Mouse(UI::MouseMove, 100, 500, UI::FlagLeftButton);
    s.Mouse(UI::MouseLeftRelease, 100, 500);
    EXPECT_EQ(147, s.a->GetHeight()) << "200 less the splitter and B";
    EXPECT_FALSE(s.view->GetVerticalScrollBar()->IsVisible());

    // Without the limit the list grows past the view and scrolls.
    s.view->SetResizeWithinView(false);
    s.Mouse(UI::MouseLeftPress, 100, 148, UI::FlagLeftButton);
    s.Mouse(UI::MouseMove, 100, 400, UI::FlagLeftButton);
    s.Mouse(UI::MouseLeftRelease, 100, 400);
    EXPECT_EQ(399, s.a->GetHeight());
    EXPECT_TRUE(s.view->GetVerticalScrollBar()->IsVisible());
}

TEST(SplitterDrag, SplitterAtTheEndOfTheListResizesNothing)
{
    ScrollScene s;
    ScrollView* view =
        new ScrollView(s.frame.get(), nullptr, "Split", ScrollView::LayoutVerticalList);
    view->SetGeometry(0, 0, 200, 200);
    RecordingWindow* a = s.Make(view, "A", 0, 0, 10, 50);
    Splitter* last = new Splitter(s.frame.get(), view, "Last", UI::Vertical, true);
    view->AddChild(checked_value<unsigned int>(), a, checked_value<int>(), checked_value<int>());
    view->AddChild(checked_value<unsigned int>(), last, checked_value<int>(), checked_value<int>());
    s.Mouse(UI::MouseLeftPress, 100, 51, UI::FlagLeftButton);
    s.Mouse(UI::MouseMove, 100, 90, UI::FlagLeftButton);
    s.Mouse(UI::MouseLeftRelease, 100, 90);
    EXPECT_EQ(50, a->GetHeight());

    Splitter across(s.frame.get(), nullptr, "Across", UI::Horizontal, false);
    EXPECT_EQ(3, across.GetWidth());
    EXPECT_EQ(UI::Cursor::ResizeLeftRight, across.GetCursor().GetShape());
}

// ---- window stacks

TEST(WindowStackPages, ShowOneWindowAtATime)
{
    ScrollScene s;
    UI::WindowStack* stack = new UI::WindowStack(s.frame.get(), nullptr, "Stack");
    stack->SetGeometry(10, 10, 100, 60);
    RecordingWindow* first = s.Make(stack, "First", 0, 0, 5, 5);
    RecordingWindow* second = s.Make(stack, "Second", 0, 0, 5, 5);
    EXPECT_EQ(0u, stack->GetID(first).value);
    EXPECT_EQ(1u, stack->GetID(second).value);
    EXPECT_TRUE(first->IsVisible());
    EXPECT_FALSE(second->IsVisible());
    EXPECT_EQ(first, stack->GetVisibleWindow());

    RecordingWindow* loose = s.Make(nullptr, "Loose", 0, 0, 5, 5);
    stack->Insert(loose, 7u);
    EXPECT_EQ(stack, loose->GetParent());
    EXPECT_EQ(loose, stack->GetWindow(7));
    EXPECT_FALSE(loose->IsVisible());
    RecordingWindow* other = s.Make(nullptr, "Other", 0, 0, 5, 5);
    stack->Insert(other);
    EXPECT_EQ(8u, stack->GetID(other).value) << "highest plus one";

    RecordingWindow* clash = s.Make(nullptr, "Clash", 0, 0, 5, 5);
    stack->Insert(clash, 1u);
    EXPECT_FALSE(stack->GetID(clash).present) << "a duplicate id inserts nothing";
    EXPECT_EQ(second, stack->GetWindow(1));
    EXPECT_EQ(4u, stack->GetWindows().size());

    stack->Insert(second, 3u);
    EXPECT_FALSE(stack->GetWindow(1));
    EXPECT_EQ(second, stack->GetWindow(3)) << "a window moves to its new id";

    stack->RaiseWindow(7u);
    EXPECT_EQ(7u, stack->GetVisibleID().value);
    EXPECT_FALSE(first->IsVisible());
    stack->RaiseWindow(second);
    EXPECT_EQ(second, stack->GetVisibleWindow());
    EXPECT_FALSE(loose->IsVisible());
    stack->RaiseWindow(99u);
    EXPECT_EQ(second, stack->GetVisibleWindow());

    stack->SetGeometry(10, 10, 150, 80);
    EXPECT_EQ(Rect(0, 149, 0, 79), first->GetGeometry());
    EXPECT_EQ(Rect(0, 149, 0, 79), loose->GetGeometry());

    delete second;
    EXPECT_FALSE(stack->GetWindow(3));
    EXPECT_FALSE(stack->GetVisibleID().present);
    delete clash;
}
