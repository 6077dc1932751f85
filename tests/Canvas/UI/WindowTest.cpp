#include "Canvas/UI/Window.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "Canvas/UI/Theme.h"
#include "tests/Canvas/UI/TestHostWindow.h"
#include "tests/Canvas/UI/TestWindows.h"

#include <gtest/gtest.h>

#include <memory>

using UI::Rect;
using UI::Window;
using UI::Test::RecordingWindow;

namespace
{

/// A 200 by 150 frame on an in-memory host, with drawing enabled and nothing left to paint.
struct Scene
{
    UI::Canvas canvas{"Test"};
    UI::Test::TestHostWindow host;
    UI::MemoryDrawContext context{"Test Context"};
    std::unique_ptr<UI::Frame> frame;

    Scene()
    {
        // No focus indicator: these tests count the frame's top-level windows exactly.
        canvas.GetPrimitiveFactory()->RegisterFocusIndicator(UI::Theme());
        frame.reset(new UI::Frame(&canvas, host.Handle(), &context, UI::Point(), "unused",
                                  Rect(0, 199, 0, 149)));
        frame->SetHostWindow(&host);
        frame->SetDrawingEnabled(true);
        Settle();
    }

    /// Paints whatever is pending and forgets what the host was told.
    void Settle()
    {
        frame->RenderInvalidRegions(true);
        host.invalidated.clear();
        host.posts = 0;
    }

    RecordingWindow* Make(Window* parent, char const* name, int x, int y, int w, int h)
    {
        RecordingWindow* win = new RecordingWindow(frame.get(), parent, name);
        win->SetGeometry(x, y, w, h);
        return win;
    }
};

std::vector<std::string> Names(std::vector<Window*> const& windows)
{
    std::vector<std::string> out;
    for (Window* w : windows)
        out.push_back(w ? w->GetName().CStr() : "null");
    return out;
}

} // namespace

// ---- tree

TEST(WindowTree, ChildrenJoinOnTopAreFoundByNameAndLeave)
{
    Scene s;
    RecordingWindow* root = s.Make(nullptr, "Root", 0, 0, 100, 100);
    Window* a = s.Make(root, "A", 0, 0, 10, 10);
    Window* b = s.Make(root, "B", 0, 0, 10, 10);

    EXPECT_EQ(Names(root->child_windows()), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(root->added, (std::vector<Window*>{a, b}));
    EXPECT_EQ(root->FindChildWindow("B"), b);
    EXPECT_EQ(root->FindChildWindow("b"), nullptr);
    EXPECT_EQ(root->GetChildWindow(0), a);
    EXPECT_EQ(root->GetChildWindow(2), nullptr);
    EXPECT_TRUE(root->IsChildWindow(a));
    EXPECT_FALSE(a->IsChildWindow(root));
    EXPECT_EQ(a->GetParent(), root);
    EXPECT_EQ(s.frame->GetTopLevelWindows(), (std::vector<Window*>{root}));

    // Ancestry walks the parent chain.
    Window* leaf = s.Make(a, "Leaf", 0, 0, 5, 5);
    EXPECT_TRUE(root->IsAncestor(leaf));
    EXPECT_FALSE(leaf->IsAncestor(root));
    EXPECT_FALSE(leaf->IsAncestor(leaf));
    EXPECT_TRUE(leaf->IsAncestor(leaf, true));
    EXPECT_TRUE(leaf->HasAncestor(root));
    EXPECT_TRUE(leaf->HasAncestor(leaf, true));
    EXPECT_FALSE(root->HasAncestor(leaf));

    // A child that dies alone leaves its parent; onChildDestroy is the parent's half of the
    // same step.
    delete a;
    EXPECT_EQ(root->removed, (std::vector<Window*>{a}));
    EXPECT_EQ(root->child_windows(), (std::vector<Window*>{b}));
    EXPECT_EQ(root->FindChildWindow("A"), nullptr);
    root->onChildDestroy(b);
    EXPECT_TRUE(root->child_windows().empty());
    EXPECT_EQ(root->removed.back(), b);
    delete b;

    // Duplicate names keep the first findable until the second leaves: removal is by name
    // alone, so the first twin can no longer be found by name.
    Window* first = s.Make(root, "Twin", 0, 0, 10, 10);
    Window* second = s.Make(root, "Twin", 20, 0, 10, 10);
    EXPECT_EQ(root->child_windows().size(), 2u);
    EXPECT_EQ(root->FindChildWindow("Twin"), first);
    delete second;
    EXPECT_EQ(root->FindChildWindow("Twin"), nullptr);
    EXPECT_EQ(root->child_windows(), (std::vector<Window*>{first}));
}

TEST(WindowTree, DeletingChildrenKeepsTheOnesNotOwned)
{
    Scene s;
    Window* root = s.Make(nullptr, "Root", 0, 0, 100, 100);
    Window* code = s.Make(root, "Code", 0, 0, 50, 50);
    Window* made = s.Make(code, "Made", 0, 0, 10, 10);
    made->SetLayoutCreated(true);
    s.Make(made, "Inside Made", 0, 0, 5, 5);
    Window* keep = s.Make(code, "Keep", 0, 0, 10, 10);
    Window* top = s.Make(root, "Top Made", 0, 0, 10, 10);
    top->SetLayoutCreated(true);

    root->DeleteAllLayoutCreatedChildren();
    EXPECT_EQ(root->child_windows(), (std::vector<Window*>{code}));
    EXPECT_EQ(code->child_windows(), (std::vector<Window*>{keep}));

    RecordingWindow* member = s.Make(root, "Member", 0, 0, 10, 10);
    member->SetOwnedByParent(false);
    root->DeleteAllChildren();
    EXPECT_TRUE(root->child_windows().empty());
    EXPECT_TRUE(root->child_windows_by_name().empty());
    EXPECT_EQ(member->GetParent(), nullptr);
    delete member;
    delete root;

    // Destroying a window deletes its owned children and detaches the others.
    root = s.Make(nullptr, "Root", 0, 0, 100, 100);
    Window* owned = s.Make(root, "Owned", 0, 0, 10, 10);
    member = s.Make(root, "Member", 10, 10, 10, 10);
    member->SetOwnedByParent(false);
    s.Make(owned, "Grandchild", 0, 0, 5, 5);

    delete root;
    // The member survives as a top-level window of the frame, at its own position.
    EXPECT_EQ(s.frame->GetTopLevelWindows(), (std::vector<Window*>{member}));
    EXPECT_EQ(member->GetParent(), nullptr);
    EXPECT_EQ(member->GetGlobalPos(), UI::Point(10, 10));
    delete member;
    EXPECT_TRUE(s.frame->GetTopLevelWindows().empty());
}

TEST(WindowTree, ReparentMovesPositionsAlphaAndRefusesLoops)
{
    Scene s;
    RecordingWindow* left = s.Make(nullptr, "Left", 10, 10, 50, 50);
    RecordingWindow* right = s.Make(nullptr, "Right", 100, 20, 50, 50);
    right->SetBaseAlpha(155);
    Window* child = s.Make(left, "Child", 5, 5, 10, 10);
    Window* grandchild = s.Make(child, "Grandchild", 1, 1, 2, 2);

    child->Reparent(right);
    EXPECT_EQ(child->GetParent(), right);
    EXPECT_EQ(left->removed, (std::vector<Window*>{child}));
    EXPECT_EQ(right->FindChildWindow("Child"), child);
    EXPECT_EQ(child->GetGlobalPos(), UI::Point(105, 25));
    EXPECT_EQ(grandchild->GetGlobalPos(), UI::Point(106, 26));
    EXPECT_EQ(child->GetTotalBaseAlpha(), 155);
    EXPECT_EQ(grandchild->GetEffectiveAlpha(), 155);

    // Into itself or its own subtree: refused.
    child->Reparent(child);
    child->Reparent(grandchild);
    EXPECT_EQ(child->GetParent(), right);

    // To the top level of the same frame.
    child->Reparent(nullptr);
    EXPECT_EQ(child->GetParent(), nullptr);
    EXPECT_EQ(s.frame->GetTopLevelWindows().back(), child);
    EXPECT_EQ(child->GetGlobalPos(), UI::Point(5, 5));
    EXPECT_EQ(child->GetTotalBaseAlpha(), 255);
}

TEST(WindowTree, ReparentToAnotherFrameTakesTheSubtreeAlong)
{
    Scene s;
    UI::Test::TestHostWindow otherHost;
    UI::MemoryDrawContext otherContext("Other");
    UI::Frame other(&s.canvas, otherHost.Handle(), &otherContext, UI::Point(), "",
                    Rect(0, 99, 0, 99));
    Window* root = s.Make(nullptr, "Root", 0, 0, 100, 100);
    Window* moving = s.Make(root, "Moving", 0, 0, 50, 50);
    Window* inner = s.Make(moving, "Inner", 0, 0, 10, 10);
    Window* stay = s.Make(root, "Stay", 60, 0, 10, 10);
    s.frame->SetFocusOrder({stay, inner, moving});
    s.frame->SetTimer(moving, 10);
    s.frame->SetTimer(inner, 0);
    s.frame->SetMouseCapture(inner);
    inner->SetFocus();

    // A parent in another frame with a frame that disagrees: refused.
    moving->Reparent(root, &other);
    EXPECT_EQ(moving->GetFrame(), s.frame.get());

    moving->Reparent(nullptr, &other);
    EXPECT_EQ(moving->GetFrame(), &other);
    EXPECT_EQ(inner->GetFrame(), &other);
    EXPECT_EQ(other.GetTopLevelWindows(), (std::vector<Window*>{moving}));
    EXPECT_EQ(s.frame->GetFocusOrder(), (std::vector<Window*>{stay}));
    // The old frame keeps nothing that points into the moved subtree.
    EXPECT_TRUE(s.frame->GetTimers().empty());
    EXPECT_EQ(s.frame->GetMouseCapture(), nullptr);
    EXPECT_EQ(s.frame->GetFocus(), nullptr);
    delete moving;
    s.frame->tickTimers();
}

// ---- stacking

TEST(WindowStacking, RaiseAndLowerAmongSiblings)
{
    Scene s;
    Window* root = s.Make(nullptr, "Root", 0, 0, 100, 100);
    Window* a = s.Make(root, "A", 0, 0, 10, 10);
    Window* b = s.Make(root, "B", 0, 0, 10, 10);
    Window* c = s.Make(root, "C", 0, 0, 10, 10);
    Window* stranger = s.Make(nullptr, "Stranger", 0, 0, 10, 10);

    a->Raise();
    EXPECT_EQ(Names(root->child_windows()), (std::vector<std::string>{"B", "C", "A"}));
    a->Lower(c);
    EXPECT_EQ(Names(root->child_windows()), (std::vector<std::string>{"B", "A", "C"}));
    b->Raise(a);
    EXPECT_EQ(Names(root->child_windows()), (std::vector<std::string>{"A", "B", "C"}));
    c->Lower();
    EXPECT_EQ(Names(root->child_windows()), (std::vector<std::string>{"C", "A", "B"}));
    // Not a sibling: to the top, or to the bottom.
    c->Raise(stranger);
    EXPECT_EQ(Names(root->child_windows()), (std::vector<std::string>{"A", "B", "C"}));
    c->Lower(stranger);
    EXPECT_EQ(Names(root->child_windows()), (std::vector<std::string>{"C", "A", "B"}));

    EXPECT_EQ(a->GetZOrderIndex(), checked_value<unsigned int>(1u));
    EXPECT_EQ(root->GetZOrderIndexForWindow(stranger), checked_value<unsigned int>());
    EXPECT_EQ(root->GetWindowForZOrderIndex(2), b);
    EXPECT_EQ(root->GetWindowForZOrderIndex(3), nullptr);

    // Lowering the only child still invalidates.
    Window* only = s.Make(stranger, "Only", 10, 20, 30, 40);
    s.Settle();
    only->Lower();
    EXPECT_EQ(stranger->child_windows(), (std::vector<Window*>{only}));
    EXPECT_EQ(s.host.invalidated, (std::vector<Rect>{Rect(10, 39, 20, 59)}));
    EXPECT_EQ(s.host.posts, 1);
}

TEST(WindowStacking, TopLevelWindowsStackInTheFrame)
{
    Scene s;
    Window* a = s.Make(nullptr, "A", 0, 0, 10, 10);
    Window* b = s.Make(nullptr, "B", 0, 0, 10, 10);
    a->Raise();
    EXPECT_EQ(Names(s.frame->GetTopLevelWindows()), (std::vector<std::string>{"B", "A"}));
    EXPECT_EQ(a->GetZOrderIndex(), checked_value<unsigned int>(1u));
    a->Lower(b);
    EXPECT_EQ(Names(s.frame->GetTopLevelWindows()), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(s.frame->FindChildWindow("B"), b);
}

// ---- geometry

TEST(WindowGeometry, MovesInvalidateOldAndNewPlaceAndSameValuesNothing)
{
    Scene s;
    RecordingWindow* w = s.Make(nullptr, "W", 10, 10, 20, 20);
    s.Settle();
    w->SetGeometry(10, 10, 20, 20);
    EXPECT_EQ(w->geometryChanges, 1);
    EXPECT_TRUE(s.host.invalidated.empty());
    EXPECT_EQ(s.host.posts, 0);

    // An overlapping move invalidates the union once, a disjoint move both rects.
    w->SetGeometry(15, 12, 20, 20);
    EXPECT_EQ(s.host.invalidated, (std::vector<Rect>{Rect(10, 34, 10, 31)}));
    s.Settle();
    w->SetGeometry(100, 100, 20, 20);
    EXPECT_EQ(s.host.invalidated,
              (std::vector<Rect>{Rect(15, 34, 12, 31), Rect(100, 119, 100, 119)}));
    EXPECT_EQ(s.host.posts, 2);
    EXPECT_EQ(w->geometryChanges, 3);
}

TEST(WindowGeometry, HiddenWindowsChangeGeometryWithoutInvalidating)
{
    Scene s;
    Window* parent = s.Make(nullptr, "Parent", 0, 0, 100, 100);
    RecordingWindow* child = s.Make(parent, "Child", 10, 10, 20, 20);
    parent->Hide();
    s.Settle();
    child->SetGeometry(50, 50, 10, 10);
    EXPECT_EQ(child->geometryChanges, 2);
    EXPECT_TRUE(s.host.invalidated.empty());
}

TEST(WindowGeometry, FixedSizesHoldAndMovesKeepTheSize)
{
    Scene s;
    Window* w = s.Make(nullptr, "W", 0, 0, 10, 10);
    w->SetFixedWidth(100);
    w->SetGeometry(0, 0, 50, 50);
    EXPECT_EQ(w->GetGeometry(), Rect(0, 99, 0, 49));
    w->SetFixedHeight(30);
    w->SetGeometry(5, 5, 1, 1);
    EXPECT_EQ(w->GetGeometry(), Rect(5, 104, 5, 34));
    w->SetFixedSize(7, 8);
    EXPECT_EQ(w->GetGeometry(), Rect(5, 11, 5, 12));
    EXPECT_TRUE(w->IsFixedWidth());
    EXPECT_TRUE(w->IsFixedHeight());

    // Move keeps the size and places by justification.
    Window* m = s.Make(nullptr, "M", 0, 0, 11, 7);
    m->Move(50, 40);
    EXPECT_EQ(m->GetGeometry(), Rect(50, 60, 40, 46));
    m->Move(50, 40, Window::MoveRight);
    EXPECT_EQ(m->GetGeometry().TopLeft(), UI::Point(39, 40));
    m->Move(50, 40, Window::MoveBottom);
    EXPECT_EQ(m->GetGeometry().TopLeft(), UI::Point(50, 33));
    m->Move(50, 40, Window::MoveBottomRight);
    EXPECT_EQ(m->GetGeometry().TopLeft(), UI::Point(39, 33));
    m->Move(50, 40, Window::MoveCentre);
    EXPECT_EQ(m->GetGeometry(), Rect(45, 55, 37, 43));
}

TEST(WindowGeometry, GlobalPositionsFollowEveryAncestor)
{
    Scene s;
    Window* root = s.Make(nullptr, "Root", 10, 20, 100, 100);
    Window* mid = s.Make(root, "Mid", 5, 5, 50, 50);
    Window* leaf = s.Make(mid, "Leaf", 40, 40, 30, 30);
    EXPECT_EQ(leaf->GetGlobalPos(), UI::Point(55, 65));

    root->SetGeometry(0, 0, 100, 100);
    EXPECT_EQ(leaf->GetGlobalX(), 45);
    EXPECT_EQ(leaf->GetGlobalY(), 45);
    // The leaf sticks out of Mid (5..54) by 20 pixels each way.
    EXPECT_EQ(leaf->GetClippedGlobalGeometry(), Rect(45, 54, 45, 54));

    leaf->SetGlobalGeometry(20, 30, 5, 5);
    EXPECT_EQ(leaf->GetGeometry(), Rect(15, 19, 25, 29));
}

// ---- visibility and enabled state

TEST(WindowVisibility, ShowAndHideSignalAndInvalidate)
{
    Scene s;
    RecordingWindow* w = s.Make(nullptr, "W", 10, 10, 20, 20);
    std::vector<bool> seen;
    w->signalVisibility.Connect(nullptr,
                                boost::function<void(bool)>([&](bool v) { seen.push_back(v); }));
    s.Settle();

    w->Hide();
    w->Hide();
    EXPECT_EQ(s.host.invalidated, (std::vector<Rect>{Rect(10, 29, 10, 29)}));
    w->Show();
    EXPECT_EQ(seen, (std::vector<bool>{false, true}));
    EXPECT_EQ(w->hides, 1);
    EXPECT_EQ(w->shows, 1);
    EXPECT_EQ(s.host.invalidated.size(), 2u);

    // Hiding inside a hidden parent invalidates nothing, and still signals.
    RecordingWindow* child = s.Make(w, "Child", 1, 1, 5, 5);
    int signals = 0;
    child->signalVisibility.Connect(nullptr, boost::function<void(bool)>([&](bool) { ++signals; }));
    w->Hide();
    s.Settle();
    child->Hide();
    EXPECT_TRUE(s.host.invalidated.empty());
    EXPECT_EQ(child->hides, 1);
    EXPECT_EQ(signals, 1);
}

TEST(WindowVisibility, VisibleAndEnabledToStopBelowTheGivenWindow)
{
    Scene s;
    Window* root = s.Make(nullptr, "Root", 0, 0, 100, 100);
    Window* mid = s.Make(root, "Mid", 0, 0, 50, 50);
    Window* leaf = s.Make(mid, "Leaf", 0, 0, 10, 10);
    mid->Hide();
    EXPECT_FALSE(leaf->IsVisibleTo());
    EXPECT_TRUE(leaf->IsVisibleTo(mid));
    EXPECT_FALSE(leaf->IsVisibleTo(root));
    mid->Show();
    root->SetEnabled(false);
    EXPECT_TRUE(leaf->IsEnabled());
    EXPECT_FALSE(leaf->IsEnabledTo());
    EXPECT_TRUE(leaf->IsEnabledTo(root));
}

TEST(WindowVisibility, DisablingOrHidingTheFocusedWindowClearsFocus)
{
    Scene s;
    UI::Test::Log log;
    Window* root = s.Make(nullptr, "Root", 0, 0, 100, 100);
    RecordingWindow* field = new RecordingWindow(s.frame.get(), root, "Field", &log);
    field->SetFocus();
    EXPECT_EQ(s.frame->GetFocus(), field);
    EXPECT_TRUE(field->IsFocused());
    EXPECT_TRUE(root->IsFocusWithin());

    field->SetEnabled(false);
    EXPECT_EQ(s.frame->GetFocus(), nullptr);
    EXPECT_FALSE(root->IsFocusWithin());
    // A disabled window does not take focus.
    field->SetFocus();
    EXPECT_EQ(s.frame->GetFocus(), nullptr);

    field->SetEnabled(true);
    field->SetFocus();
    field->Hide();
    EXPECT_EQ(s.frame->GetFocus(), nullptr);
    EXPECT_EQ(log,
              (std::vector<std::string>{"Field:focus", "Field:blur", "Field:focus", "Field:blur"}));
}

// ---- alpha

TEST(WindowAlpha, BaseAlphaSpreadsAndOwnAlphaStaysPut)
{
    Scene s;
    Window* root = s.Make(nullptr, "Root", 0, 0, 100, 100);
    Window* child = s.Make(root, "Child", 0, 0, 50, 50);
    Window* leaf = s.Make(child, "Leaf", 0, 0, 10, 10);

    root->SetBaseAlpha(200);
    EXPECT_EQ(root->GetTotalBaseAlpha(), 200);
    EXPECT_EQ(leaf->GetTotalBaseAlpha(), 200);
    child->SetBaseAlpha(100);
    // 100 - (255 - 200) = 45, and the leaf inherits it.
    EXPECT_EQ(child->GetTotalBaseAlpha(), 45);
    EXPECT_EQ(leaf->GetEffectiveAlpha(), 45);

    child->SetAlpha(250);
    EXPECT_EQ(child->GetEffectiveAlpha(), 40);
    EXPECT_EQ(leaf->GetEffectiveAlpha(), 45);
    child->SetAlpha(10);
    EXPECT_EQ(child->GetEffectiveAlpha(), 0);

    // A window made later inherits its parent's total.
    Window* late = s.Make(child, "Late", 0, 0, 5, 5);
    EXPECT_EQ(late->GetTotalBaseAlpha(), 45);

    // Base alpha recovers the parent total in eight bits: 50 - 155 clamps to 0, and the
    // recovered parent total is 0 + 255 - 50 = 205, not the real 100.
    Window* other = s.Make(nullptr, "Other", 0, 0, 100, 100);
    Window* inner = s.Make(other, "Inner", 0, 0, 50, 50);
    other->SetBaseAlpha(100);
    inner->SetBaseAlpha(50);
    EXPECT_EQ(inner->GetTotalBaseAlpha(), 0);
    inner->SetBaseAlpha(255);
    EXPECT_EQ(inner->GetTotalBaseAlpha(), 205);
}

// ---- properties, cursor, metrics

TEST(WindowProperties, ColorToolTipCursorAndMetrics)
{
    Scene s;
    RecordingWindow* w = s.Make(nullptr, "W", 0, 0, 10, 10);
    RecordingWindow* proxy = s.Make(nullptr, "Proxy", 0, 0, 10, 10);
    EXPECT_EQ(w->GetColor(), 0u);
    EXPECT_EQ(w->GetProperty<unsigned int>("Color"), checked_value<unsigned int>(0u));

    w->SetColor(0xFF112233);
    EXPECT_EQ(w->GetColor(), 0xFF112233u);
    EXPECT_EQ(w->colorChanges, 1);
    EXPECT_TRUE(w->SetProperty<unsigned int>("Color", 0xFF445566u));
    EXPECT_EQ(w->GetColor(), 0xFF445566u);
    EXPECT_EQ(w->colorChanges, 2);

    EXPECT_FALSE(w->HasToolTip());
    EXPECT_FALSE(w->IsToolTipExplicit());
    w->SetToolTipText("Opens the pod bay doors");
    EXPECT_TRUE(w->IsToolTipExplicit());
    EXPECT_EQ(w->GetToolTipText(), String("Opens the pod bay doors"));
    proxy->SetToolTipText("From the proxy");
    w->SetToolTipProxyWindow(proxy);
    EXPECT_EQ(w->GetToolTipText(), String("From the proxy"));

    EXPECT_FALSE(w->HasOwnCursor());
    EXPECT_EQ(w->GetCursor(), UI::Cursor());
    w->SetCursor(UI::Cursor(UI::Cursor::IBeam), true);
    EXPECT_TRUE(w->HasOwnCursor());
    EXPECT_EQ(s.host.cursors.back(), UI::Cursor(UI::Cursor::IBeam));
    w->ClearCursor();
    EXPECT_EQ(w->GetCursor(), UI::Cursor());

    w->SetDynamicLayoutMetric(2, 7, false);
    EXPECT_EQ(w->GetDynamicLayoutMetrics(), (std::vector<int>{0, 0, 7}));
    w->SetDynamicLayoutMetricName(4, "Spacing", 9);
    w->SetDynamicLayoutMetricName(5, "Margin");
    EXPECT_EQ(w->GetDynamicLayoutMetrics(), (std::vector<int>{0, 0, 7, 0, 9, 0}));
    EXPECT_EQ(w->GetDynamicLayoutMetricNames()[4], String("Spacing"));
    EXPECT_EQ(w->GetDynamicLayoutMode(), Window::DynamicLayoutCode);
}

TEST(WindowProperties, PaletteChangesReachTheSubtreeOnRequest)
{
    Scene s;
    UI::Test::Log log;
    RecordingWindow* root = new RecordingWindow(s.frame.get(), nullptr, "Root", &log);
    RecordingWindow* child = new RecordingWindow(s.frame.get(), root, "Child", &log);
    new RecordingWindow(s.frame.get(), child, "Leaf", &log);
    root->NotifyPaletteChanged(false);
    EXPECT_EQ(log, (std::vector<std::string>{"Root:palette"}));
    log.clear();
    root->NotifyPaletteChanged(true);
    EXPECT_EQ(log, (std::vector<std::string>{"Root:palette", "Child:palette", "Leaf:palette"}));
}

namespace
{

/// Notes its own end in a log that the test keeps alive longer than the window.
class DyingWindow : public RecordingWindow
{
public:
    DyingWindow(UI::Frame* frame, Window* parent, char const* name, UI::Test::Log* log)
        : RecordingWindow(frame, parent, name, log)
    {
    }
    ~DyingWindow() override
    {
        record(std::string("gone, children left ") + std::to_string(child_windows().size()));
    }
};

} // namespace

TEST(WindowTree, DestructionInvalidatesFirstThenDeletesChildrenFromTheTop)
{
    Scene s;
    UI::Test::Log log;
    {
        DyingWindow* root = new DyingWindow(s.frame.get(), nullptr, "Root", &log);
        root->SetGeometry(10, 10, 50, 50);
        DyingWindow* a = new DyingWindow(s.frame.get(), root, "A", &log);
        new DyingWindow(s.frame.get(), root, "B", &log);
        new DyingWindow(s.frame.get(), a, "A1", &log);
        s.Settle();

        delete root;
        // The subclass destructor runs first; the base then invalidates once and deletes the
        // children from the top of the stack down, each emptying its own list first.
        EXPECT_EQ(
            log, (std::vector<std::string>{"Root:gone, children left 2", "B:gone, children left 0",
                                           "A:gone, children left 1", "A1:gone, children left 0"}));
        EXPECT_EQ(s.host.invalidated, (std::vector<Rect>{Rect(10, 59, 10, 59)}));
        EXPECT_TRUE(s.frame->GetTopLevelWindows().empty());
    }
}
