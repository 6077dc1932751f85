// The list box's rules through its interface and a frame on the in-memory host window: presses
// with and without Command and Shift, every key of the table with the clamping at both ends,
// the dimmed rows below the current one, the row readouts, and the windows of the rows in view.

#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/ScrubText.h"

#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/ScrollView.h"
#include "TvBase/Controller/BoolParamMemory.h"
#include "TvBase/Controller/FloatParamMemory.h"
#include "tests/Canvas/UI/ScrollScene.h"

#include <gtest/gtest.h>

#include <string>

using UI::ListBox;
using UI::ListBoxItem;
using UI::ListBoxRow;

namespace
{

int const Cell = 18;

/// A standard-sized list of `rows` rows "Row 0", "Row 1"... at the frame's origin.
struct ListScene
{
    UI::Test::ScrollScene scene{400, 300};
    ListBox* list;
    std::vector<unsigned int> announced;

    explicit ListScene(int rows = 40)
    {
        list = new ListBox(scene.frame.get(), nullptr, "List");
        for (int i = 0; i < rows; ++i)
            list->InsertItem(String("Row %1").Arg(i));
        list->signalSelectionChanged.Connect(
            nullptr, boost::function<void(unsigned int)>([this](unsigned int i)
                                                         { announced.push_back(i); }));
    }

    /// A press on row `row` as it lies in view now.
    void Press(int row, unsigned int flags = 0)
    {
        int const y = row * Cell - list->GetScrollView()->GetScrollViewPos().y + Cell / 2;
        scene.Mouse(UI::MouseLeftPress, 20, y, flags | UI::FlagLeftButton);
        scene.Mouse(UI::MouseLeftRelease, 20, y, flags);
    }

    /// "current/anchor: selected rows", e.g. "3/1: 1 2 3".
    std::string State() const
    {
        std::string s = list->GetCurrent() ? std::to_string(*list->GetCurrent()) : "-";
        s += "/" + std::to_string(list->GetAnchor()) + ":";
        for (unsigned int i : list->GetSelectedItems())
            s += " " + std::to_string(i);
        return s;
    }
};

unsigned int const Cmd = UI::FlagCommand;
unsigned int const Shift = UI::FlagShift;

} // namespace

TEST(ListBox, StartsWithAScrollViewAtTheStandardSize)
{
    ListScene s;
    EXPECT_EQ(ListBox::StandardWidth, s.list->GetWidth());
    EXPECT_EQ(ListBox::StandardHeight, s.list->GetHeight());
    ASSERT_EQ(1u, s.list->child_windows().size());
    EXPECT_EQ(String("Scroll View"), s.list->child_windows()[0]->GetName());
    EXPECT_EQ(18, s.list->GetItemCellHeight());
    EXPECT_FALSE(s.list->GetCurrent());
}

TEST(ListBox, PressRules)
{
    // Presses on rows, "c" with Command and "s" with Shift: "2 4c" presses row 2, then row 4
    // with Command.
    struct Case
    {
        char const* what;
        bool multiple, none;
        char const* presses;
        char const* state;
        std::vector<unsigned int> announced;
    } const cases[] = {
        {"a plain press", false, false, "2", "2/2: 2", {2}},
        {"another row", false, false, "2 5", "5/5: 5", {2, 5}},
        {"the current row again fires nothing", false, false, "2 2", "2/2: 2", {2}},
        {"Command without multiple selection", false, false, "2 4c", "4/4: 4", {2, 4}},
        {"Shift without multiple selection", false, false, "2 4s", "4/4: 4", {2, 4}},
        {"Command toggles rows in", true, false, "2 4c 6c", "6/6: 2 4 6", {2, 4, 6}},
        {"Command toggles a row out", true, false, "2 4c 2c", "2/2: 4", {2, 4, 2}},
        {"Shift selects from the anchor", true, false, "5 2s", "2/5: 2 3 4 5", {5, 2}},
        {"Shift after Command: from it", true, false, "1 4c 6s", "6/4: 4 5 6", {1, 4, 6}},
        {"a plain press ends a multiple selection", true, false, "1 3s 7", "7/7: 7", {1, 3, 7}},
        {"no selection", false, true, "2 3s", "-/0:", {}},
        {"a press below the last row", false, false, "2 9", "2/2: 2", {2}},
    };
    for (Case const& c : cases)
    {
        // Eight rows: row 9 lies below the last one.
        ListScene s(8);
        s.list->SetMultipleSelection(c.multiple);
        s.list->SetNoSelection(c.none);
        for (char const* p = c.presses; *p; ++p)
            if (*p >= '0' && *p <= '9')
                s.Press(*p - '0', p[1] == 'c' ? Cmd : p[1] == 's' ? Shift : 0);
        EXPECT_EQ(c.state, s.State()) << c.what;
        EXPECT_EQ(c.announced, s.announced) << c.what;
    }

    // A list set to announce every press fires again on the current row.
    ListScene s(8);
    s.list->SetAnnounceEveryPress(true);
    s.Press(3);
    s.Press(3);
    EXPECT_EQ((std::vector<unsigned int>{3, 3}), s.announced);

    // An empty list takes no press.
    ListScene empty(0);
    EXPECT_FALSE(empty.list->onMousePress(UI::Point(20, 9), 0));
}

TEST(ListBox, KeyTable)
{
    // 40 rows in a list 182 pixels high: a page is ten rows.
    struct Case
    {
        unsigned int key;
        unsigned int flags;
        bool multiple;
        int start;
        char const* state;
    } const cases[] = {
        {33, 0, false, 25, "15/15: 15"},
        {33, 0, false, 4, "0/0: 0"},
        {33, 0, false, 0, "0/0: 0"},
        {34, 0, false, 5, "15/15: 15"},
        {34, 0, false, 35, "39/39: 39"},
        {35, 0, false, 3, "39/39: 39"},
        {36, 0, false, 30, "0/0: 0"},
        {37, 0, false, 5, "4/4: 4"},
        {38, 0, false, 5, "4/4: 4"},
        {38, 0, false, 0, "0/0: 0"},
        {39, 0, false, 5, "6/6: 6"},
        {40, 0, false, 5, "6/6: 6"},
        {40, 0, false, 39, "39/39: 39"},
        // Shift extends from the anchor only with multiple selection.
        {40, Shift, true, 5, "6/5: 5 6"},
        {34, Shift, true, 5, "15/5: 5 6 7 8 9 10 11 12 13 14 15"},
        {33, Shift, true, 5, "0/5: 0 1 2 3 4 5"},
        {40, Shift, false, 5, "6/6: 6"},
    };
    for (Case const& c : cases)
    {
        ListScene s;
        s.list->SetMultipleSelection(c.multiple);
        s.list->SetSelected(c.start, true, true, true);
        EXPECT_TRUE(s.list->onKeyPress(c.key, c.flags, false));
        EXPECT_EQ(c.state, s.State()) << "key " << c.key << " from " << c.start;
        // The new current row is in view, with a window of its own.
        unsigned int const now = *s.list->GetCurrent();
        ASSERT_NE(nullptr, s.list->GetListBoxItem(now)) << "key " << c.key;
        EXPECT_EQ(String("ListBoxItem %1").Arg(now), s.list->GetListBoxItem(now)->GetName());
    }

    ListScene s;
    // Keys outside 33 to 40 go on to others; without a current row the arrows do nothing.
    EXPECT_FALSE(s.list->onKeyPress(32, 0, false));
    EXPECT_FALSE(s.list->onKeyPress(41, 0, false));
    EXPECT_TRUE(s.list->onKeyPress(40, 0, false));
    EXPECT_FALSE(s.list->GetCurrent());
    // Without selection the keys scroll: End by whole rows towards the bottom, Home back, Down
    // by one row.
    s.list->SetNoSelection(true);
    UI::ScrollView* view = s.list->GetScrollView();
    s.list->onKeyPress(35, 0, false);
    EXPECT_EQ(view->GetScrollViewPosRange().y / Cell * Cell, view->GetScrollViewPos().y);
    s.list->onKeyPress(36, 0, false);
    EXPECT_EQ(0, view->GetScrollViewPos().y);
    s.list->onKeyPress(40, 0, false);
    EXPECT_EQ(Cell, view->GetScrollViewPos().y);
    EXPECT_FALSE(s.list->GetCurrent());
    ListScene empty(0);
    EXPECT_FALSE(empty.list->onKeyPress(40, 0, false));
}

TEST(ListBox, DisableBelowCurrentDimsTheLaterRows)
{
    ListScene s(5);
    s.list->SetDisableBelowCurrent(true);
    s.list->SetCurrent(2, false);
    std::vector<int> alphas;
    for (ListBoxRow const& row : s.list->GetItems())
        alphas.push_back(row.baseAlpha);
    EXPECT_EQ((std::vector<int>{255, 255, 255, 125, 125}), alphas);
    EXPECT_EQ(125, s.list->GetListBoxItem(4)->GetBaseAlpha());
    EXPECT_EQ(255, s.list->GetListBoxItem(1)->GetBaseAlpha());
    // A row inserted below the current one comes dimmed; one above does not.
    s.list->InsertItem("Late");
    s.list->InsertItem("Early", checked_value<unsigned int>(0u));
    EXPECT_EQ(125, s.list->GetItems().back().baseAlpha);
    EXPECT_EQ(255, s.list->GetItems().front().baseAlpha);
    EXPECT_EQ(3u, *s.list->GetCurrent());
    s.list->SetDisableBelowCurrent(false);
    EXPECT_EQ(255, s.list->GetItems().back().baseAlpha);
}

TEST(ListBox, RowReadouts)
{
    struct Case
    {
        checked_value<int> value;
        checked_value<unsigned int> swatch;
        char const* text;
    } const cases[] = {
        {{}, {}, "Name"},
        {42, {}, "Name: 42"},
        {-7, {}, "Name: -7"},
        {{}, 0xFF102A0Fu, "Name: 0x102A0F"},
        {{}, 0x80FFFFFFu, "Name: 0xFFFFFF (alpha: 0x80)"},
        {{}, 0x00000000u, "Name: 0x000000 (alpha: 0x00)"},
    };
    for (Case const& c : cases)
    {
        ListBoxRow row;
        row.text = "Name";
        row.intValue = c.value;
        row.swatchColor = c.swatch;
        EXPECT_EQ(String(c.text), ListBoxItem::DescribeRow(row));
    }
}

TEST(ListBox, OnlyTheRowsInViewHaveWindows)
{
    ListScene s(100000);
    auto windows = [&s]
    {
        std::vector<UI::Window*> rows;
        for (UI::Window* w : s.list->GetScrollView()->child_windows())
            if (dynamic_cast<ListBoxItem*>(w))
                rows.push_back(w);
        return rows;
    };
    EXPECT_LE(windows().size(), 11u);
    EXPECT_NE(nullptr, s.list->GetListBoxItem(0));
    s.list->SetCurrent(99999, true);
    EXPECT_LE(windows().size(), 11u);
    EXPECT_EQ(nullptr, s.list->GetListBoxItem(0));
    ASSERT_NE(nullptr, s.list->GetListBoxItem(99999));
    EXPECT_EQ(String("ListBoxItem 99999"), s.list->GetListBoxItem(99999)->GetName());
    // The last row's bottom is the view's bottom.
    EXPECT_EQ(s.list->GetScrollView()->GetUsableHeight(true),
              s.list->GetListBoxItem(99999)->GetGeometry().bottom + 1);

    // Rows follow inserts and removals; text lookups find the first match.
    s.list->RemoveItem(0);
    EXPECT_EQ(String("Row 1"), s.list->GetItemText(0));
    EXPECT_EQ(99998u, *s.list->GetCurrent());
    EXPECT_EQ(5u, *s.list->GetIndex("Row 6"));
    EXPECT_FALSE(s.list->GetIndex("Row 0"));
    s.list->Clear();
    EXPECT_TRUE(windows().empty());
    EXPECT_FALSE(s.list->GetCurrent());
}

TEST(ListBox, RowControlsComeWithTheirRows)
{
    ListScene s(40);
    Controller::BoolParamMemory flag(true);
    s.list->CreateCheckBox(1, &flag);
    UI::Window* box = s.list->GetListBoxItem(1)->GetControl();
    ASSERT_NE(nullptr, box);
    EXPECT_EQ(String("Checkbox"), box->GetName());
    EXPECT_GT(s.list->GetItems()[1].edgeMargin, 0);

    // A scrub text on the row's parameter, showing its value.
    Controller::FloatParamMemory amount(0.5f, value_range<float>(0.0f, 1.0f));
    s.list->CreateScrubText(2, &amount);
    auto* scrub = dynamic_cast<UI::ScrubText*>(s.list->GetListBoxItem(2)->GetControl());
    ASSERT_NE(nullptr, scrub);
    EXPECT_EQ(String("Scrub Text"), scrub->GetName());

    // The control leaves with its row and comes back with it.
    s.list->SetCurrent(39, true);
    EXPECT_EQ(nullptr, s.list->GetListBoxItem(1));
    s.list->SetCurrent(0, true);
    ASSERT_NE(nullptr, s.list->GetListBoxItem(1)->GetControl());
    EXPECT_EQ(String("Checkbox"), s.list->GetListBoxItem(1)->GetControl()->GetName());
}

TEST(ListBox, PlainWheelOverARowScrubTextScrollsTheList)
{
    ListScene s(40);
    Controller::FloatParamMemory amount(500.0f, value_range<float>(0.0f, 1000.0f));
    s.list->CreateScrubText(2, &amount);
    struct Case
    {
        bool adjustments;
        unsigned int flags;
        bool scrolls;
        bool adjusts;
    };
    Case const cases[] = {{true, 0, true, false},
                          {true, UI::FlagControl, false, true},
                          {true, Cmd, false, true},
                          {true, Shift, false, true},
                          {false, UI::FlagControl, true, false},
                          {false, Shift, true, false}};
    for (Case const& c : cases)
    {
        s.list->SetCurrent(0, true);
        amount.set(500.0f);
        s.list->SetSupportsCtrlShiftWheelAdjustments(c.adjustments);
        UI::Window* scrub = s.list->GetListBoxItem(2)->GetControl();
        ASSERT_NE(nullptr, scrub);
        UI::Rect const r = scrub->GetGlobalGeometry();
        UI::Point const at((r.left + r.right) / 2, (r.top + r.bottom) / 2);
        s.scene.Mouse(UI::MouseWheel, at.x, at.y, c.flags, -120);
        EXPECT_EQ(c.scrolls, s.list->GetScrollView()->GetScrollViewPos().y > 0) << c.flags;
        EXPECT_EQ(c.adjusts, amount.get() < 500.0f) << c.flags;
    }
}
