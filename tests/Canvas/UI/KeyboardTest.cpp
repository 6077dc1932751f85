// Keyboard use of a window: the Tab order collected from a tree, Return, Space and Escape on the
// focused window and the default and cancel buttons, a Tab into a scrolled list, and the focus
// indicator's look and its timed move.

#include "Canvas/UI/AnimationHandler.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/FocusOrder.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Hyperlink.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/ScrollView.h"
#include "Canvas/UI/SimpleFocusIndicator.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
#include "tests/Canvas/UI/TestHostWindow.h"
#include "tests/Canvas/UI/TestWindows.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using UI::KeyCode;
using UI::Rect;
using UI::Window;

namespace
{

struct Scene
{
    UI::Canvas canvas{"Test"};
    UI::Test::TestHostWindow host;
    UI::MemoryDrawContext context{"Test Context"};
    std::unique_ptr<UI::Frame> frame;
    UI::Test::RecordingWindow* root;
    std::string clicks;

    Scene()
    {
        frame.reset(new UI::Frame(&canvas, host.Handle(), &context, UI::Point(), "unused",
                                  Rect(0, 199, 0, 99)));
        frame->SetHostWindow(&host);
        root = new UI::Test::RecordingWindow(frame.get(), nullptr, "Root");
        root->SetGeometry(0, 0, 200, 100);
        frame->SetTopLevelWindow(root);
    }

    /// A button that writes `mark` into `clicks` when clicked.
    UI::SimplePushButton* Button(Window* parent, char const* name, char mark, int x)
    {
        auto* b = new UI::SimplePushButton(frame.get(), parent, name, name);
        b->SetGeometry(x, 10, 40, 20);
        b->signalClicked.Connect(nullptr,
                                 boost::function<void()>([this, mark] { clicks += mark; }));
        return b;
    }

    bool Key(unsigned int key, unsigned int flags = 0, bool repeat = false)
    {
        bool const taken = frame->HandleKeyboardMessage(UI::KeyPress, key, 0, flags, repeat);
        frame->HandleKeyboardMessage(UI::KeyRelease, key, 0, flags, false);
        return taken;
    }
};

TEST(Keyboard, TheTabOrderIsTheTreeOrderOfTheWidgetsAndSkipsHiddenAndDisabledOnes)
{
    Scene s;
    UI::SimplePushButton* first = s.Button(s.root, "First", 'f', 0);
    new UI::Text(s.frame.get(), s.root, "Label", "not reached");
    auto* group = new UI::Test::RecordingWindow(s.frame.get(), s.root, "Group");
    auto* box = new UI::SimpleCheckBox(s.frame.get(), group, "Box");
    auto* link = new UI::Hyperlink(s.frame.get(), group, "Link", "link");
    UI::SimplePushButton* last = s.Button(s.root, "Last", 'l', 100);
    std::vector<Window*> const order = UI::CollectFocusOrder(s.root);
    // The check box's own label is a part of it, not a stop of its own.
    ASSERT_EQ(order, (std::vector<Window*>{first, box, link, last}));
    s.frame->SetFocusOrder(order);

    link->Hide();
    box->SetEnabled(false);
    struct Step
    {
        unsigned int flags;
        Window* focus;
    } const steps[] = {
        {0, first}, {0, last}, {0, first}, {UI::FlagShift, last}, {UI::FlagShift, first}};
    for (Step const& step : steps)
    {
        EXPECT_TRUE(s.Key(KeyCode::Tab, step.flags));
        EXPECT_EQ(s.frame->GetFocus(), step.focus) << step.focus->GetName().CStr();
    }
    link->Show();
    box->SetEnabled(true);
    for (Window* w : std::vector<Window*>{box, link, last})
    {
        s.Key(KeyCode::Tab);
        EXPECT_EQ(s.frame->GetFocus(), w);
    }
}

TEST(Keyboard, ReturnSpaceAndEscapeReachTheFocusedWindowThenTheDefaultAndCancelButtons)
{
    Scene s;
    UI::SimplePushButton* ok = s.Button(s.root, "OK", 'o', 0);
    UI::SimplePushButton* cancel = s.Button(s.root, "Cancel", 'c', 50);
    UI::SimplePushButton* other = s.Button(s.root, "Other", 'x', 100);
    auto* field = new UI::Test::RecordingWindow(s.frame.get(), s.root, "Field");
    field->SetGeometry(150, 10, 40, 20);
    s.frame->SetFocusOrder({ok, cancel, other, field});
    s.frame->SetDefaultButton(ok);
    s.frame->SetCancelButton(cancel);

    struct Case
    {
        Window* focus;
        unsigned int key;
        bool repeat;
        char const* clicks;
        bool taken;
    } const cases[] = {
        {nullptr, KeyCode::Return, false, "o", true},
        {nullptr, KeyCode::Enter, false, "o", true},
        {nullptr, KeyCode::Escape, false, "c", true},
        {nullptr, KeyCode::Space, false, "", false},
        {nullptr, KeyCode::Return, true, "", false},
        {other, KeyCode::Return, false, "x", true},
        {other, KeyCode::Space, false, "x", true},
        {other, KeyCode::Escape, false, "c", true},
        // A window that takes the key keeps it from the default button.
        {field, KeyCode::Return, false, "", true},
        {field, KeyCode::Escape, false, "", true},
    };
    for (Case const& c : cases)
    {
        s.clicks.clear();
        s.frame->SetFocus(c.focus);
        field->takesKeys = c.focus == field;
        EXPECT_EQ(s.Key(c.key, 0, c.repeat), c.taken) << c.key;
        EXPECT_EQ(s.clicks, c.clicks) << c.key;
    }

    // Hidden or disabled buttons aren't pressed; a destroyed one is forgotten.
    s.frame->SetFocus(nullptr);
    field->takesKeys = false;
    s.clicks.clear();
    ok->Hide();
    cancel->SetEnabled(false);
    EXPECT_FALSE(s.Key(KeyCode::Return));
    EXPECT_FALSE(s.Key(KeyCode::Escape));
    EXPECT_EQ(s.clicks, "");
    delete ok;
    delete cancel;
    EXPECT_EQ(s.frame->GetDefaultButton(), nullptr);
    EXPECT_EQ(s.frame->GetCancelButton(), nullptr);
    EXPECT_FALSE(s.Key(KeyCode::Return));
}

TEST(Keyboard, ALinkReachedByTabInAScrolledListComesIntoViewAndReturnActivatesIt)
{
    Scene s;
    auto* view =
        new UI::ScrollView(s.frame.get(), s.root, "List", UI::ScrollView::LayoutVerticalList,
                           UI::ScrollBarAlwaysOff, UI::ScrollBarAlwaysOff, nullptr, nullptr);
    view->SetGeometry(0, 0, 100, 60);
    std::vector<Window*> links;
    for (int i = 0; i < 6; ++i)
    {
        auto* row = new UI::Test::RecordingWindow(s.frame.get(), view, "Row");
        row->SetGeometry(0, 0, 100, 30);
        auto* link = new UI::Hyperlink(s.frame.get(), row, "Link", "Update");
        link->signalClicked.Connect(
            nullptr, boost::function<void()>([&s, i] { s.clicks += char('0' + i); }));
        view->AddChild(checked_value<unsigned int>(), row, UI::Point());
        links.push_back(link);
    }
    s.frame->SetFocusOrder(links);
    for (int i = 0; i < 6; ++i)
        s.Key(KeyCode::Tab);
    ASSERT_EQ(s.frame->GetFocus(), links[5]);
    EXPECT_EQ(view->GetScrollViewPos().y, 120);
    EXPECT_EQ(links[5]->GetGlobalGeometry().top, 30);
    s.Key(KeyCode::Return);
    s.Key(KeyCode::Space);
    EXPECT_EQ(s.clicks, "55");
}

TEST(Keyboard, TheIndicatorRingsTheFocusAndMovesToTheNextOneIn125Milliseconds)
{
    unsigned int now = 1000; // outlives the scene, whose handler reads it to the end
    Scene s;
    UI::AnimationHandler* handler = s.frame->GetAnimationHandler();
    handler->SetClock([&now] { return now; });
    auto* indicator = dynamic_cast<UI::SimpleFocusIndicator*>(s.frame->GetFocusIndicator());
    ASSERT_NE(indicator, nullptr);
    auto* a = new UI::Test::RecordingWindow(s.frame.get(), s.root, "A");
    a->SetGeometry(10, 10, 20, 10);
    auto* b = new UI::Test::RecordingWindow(s.frame.get(), s.root, "B");
    b->SetGeometry(110, 50, 40, 30);
    s.frame->SetFocusOrder({a, b});

    s.Key(KeyCode::Tab);
    EXPECT_TRUE(indicator->IsVisible());
    EXPECT_EQ(indicator->GetGeometry(), Rect(7, 32, 7, 22));
    // Drawn above everything, a ring of the theme's colour with the window left clear inside.
    s.frame->SetDrawingEnabled(true);
    s.frame->RenderInvalidRegions(true);
    auto const& bits = s.context.GetDIBSection();
    auto pixel = [&](int x, int y) { return bits->GetPixels()[y * bits->GetStride() + x]; };
    EXPECT_EQ(pixel(20, 7), UI::SimpleFocusIndicator::DefaultColor);
    EXPECT_EQ(pixel(20, 8), UI::SimpleFocusIndicator::DefaultColor);
    EXPECT_NE(pixel(20, 9), UI::SimpleFocusIndicator::DefaultColor);
    EXPECT_EQ(pixel(7, 15), UI::SimpleFocusIndicator::DefaultColor);

    s.Key(KeyCode::Tab);
    ASSERT_EQ(s.frame->GetFocus(), b);
    struct Step
    {
        unsigned int at;
        Rect rect;
    } const steps[] = {{0, Rect(7, 32, 7, 22)},
                       {25, Rect(27, 56, 15, 34)},
                       {100, Rect(87, 128, 39, 70)},
                       {125, Rect(107, 152, 47, 82)}};
    for (Step const& step : steps)
    {
        now = 1000 + step.at;
        handler->tick();
        EXPECT_EQ(indicator->GetGeometry(), step.rect) << step.at;
    }
    EXPECT_FALSE(handler->IsCategoryActive(checked_value<unsigned int>()));

    // With the handler off the move is immediate.
    handler->SetEnabled(false);
    s.Key(KeyCode::Tab, UI::FlagShift);
    EXPECT_EQ(indicator->GetGeometry(), Rect(7, 32, 7, 22));
    // The indicator never takes the mouse from the window beneath it.
    EXPECT_FALSE(indicator->IsEnabled());
}

} // namespace
