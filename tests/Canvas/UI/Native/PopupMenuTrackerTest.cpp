// The popup menu's keyboard and mouse rules on a menu measured with a fixed-width font, without
// any window.

#include "Canvas/UI/Native/PopupMenuTracker.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

using UI::Point;
using UI::Rect;
using UI::Native::PopupMenu;
using UI::Native::PopupMenuTracker;

namespace
{

int const LineHeight = 14;
int const RowHeight = LineHeight + 2 * PopupMenuTracker::RowPadding;

/// Open, (separator), Disabled, Recent >, Save, Close [checked]; Recent holds Alpha, Beta,
/// Bravo.
struct Menu
{
    PopupMenu menu;
    Menu()
    {
        menu.AddItem(1, "Open");
        menu.AddSeparator();
        menu.AddItem(2, "Disabled", false);
        PopupMenu* recent = menu.AddSubmenu("Recent");
        recent->AddItem(11, "Alpha");
        recent->AddItem(12, "Beta");
        recent->AddItem(13, "Bravo");
        menu.AddItem(3, "Save");
        menu.AddItem(4, "Close", true, true);
    }
};

PopupMenuTracker makeTracker(PopupMenu const& menu, Rect const& screen = Rect(0, 799, 0, 599))
{
    return PopupMenuTracker(
        menu, [](String const& text) { return static_cast<int>(text.Length()) * 7; }, LineHeight,
        screen);
}

/// Plays `keys` ('^' up, 'v' down, '<' left, '>' right, '=' return, '!' escape, other
/// characters as letters) and describes the outcome: "chose <id>", "dismissed", or
/// "open <level count> at <highlighted row>".
std::string play(std::string const& keys)
{
    Menu m;
    PopupMenuTracker t = makeTracker(m.menu);
    t.Open(Point(100, 100));
    std::map<char, void (PopupMenuTracker::*)()> const moves = {
        {'^', &PopupMenuTracker::Up},     {'v', &PopupMenuTracker::Down},
        {'<', &PopupMenuTracker::Left},   {'>', &PopupMenuTracker::Right},
        {'=', &PopupMenuTracker::Return}, {'!', &PopupMenuTracker::Escape}};
    for (char key : keys)
    {
        auto const move = moves.find(key);
        if (move == moves.end())
            t.Letter(key);
        else
            (t.*move->second)();
    }
    if (t.IsDone())
        return t.GetResult() == PopupMenu::None ? "dismissed"
                                                : "chose " + std::to_string(t.GetResult());
    return "open " + std::to_string(t.GetLevels().size()) + " at " +
           std::to_string(t.GetLevels().back().highlighted);
}

} // namespace

TEST(PopupMenuTracker, Keys)
{
    struct Case
    {
        char const* keys;
        char const* outcome;
    } const cases[] = {
        {"", "open 1 at -1"},
        {"=", "open 1 at -1"}, // Return without a highlight does nothing
        {"v", "open 1 at 0"},  // Down from nothing starts at the top
        {"^", "open 1 at 5"},  // Up from nothing starts at the bottom
        {"vv", "open 1 at 3"}, // the separator and the disabled item are skipped
        {"vv^", "open 1 at 0"},
        {"v^", "open 1 at 5"}, // wraps at the top
        {"^v", "open 1 at 0"}, // and at the bottom
        {"v=", "chose 1"},
        {"vv>", "open 2 at 0"}, // Right opens the submenu on its first item
        {"vv=", "open 2 at 0"}, // so does Return
        {"vv>v=", "chose 12"},
        {"vv><", "open 1 at 3"}, // Left closes it again
        {"vv>!", "open 1 at 3"}, // Escape closes one level
        {"vv>!!", "dismissed"},  // and the root last
        {"!", "dismissed"},
        {"v>", "open 1 at 0"}, // Right on an item does nothing
        {"s", "chose 3"},      // a letter with one match chooses it
        {"S", "chose 3"},      // in either case
        {"D", "open 1 at -1"}, // disabled items don't count
        {"x", "open 1 at -1"},
        {"r", "open 2 at 0"},   // a submenu's only letter opens it
        {"rb", "open 2 at 1"},  // two matches: the first is highlighted
        {"rbb", "open 2 at 2"}, // and the next one next
        {"rbbb", "open 2 at 1"},
        {"rbb=", "chose 13"},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.outcome, play(c.keys)) << "keys \"" << c.keys << "\"";
}

TEST(PopupMenuTracker, GeometryAndMouse)
{
    Menu m;
    PopupMenuTracker t = makeTracker(m.menu);
    t.Open(Point(100, 100));
    ASSERT_EQ(1u, t.GetLevels().size());
    Rect const root = t.GetLevels()[0].screenRect;
    // "Disabled" is the widest caption: 8 characters of 7 pixels between the two columns.
    int const width = PopupMenuTracker::CheckColumn + 56 + PopupMenuTracker::ArrowColumn;
    EXPECT_EQ(Rect::FromXYWH(100, 100, width + 2, 5 * RowHeight + 7 + 2), root);

    auto rowCentre = [&t](int level, int row)
    {
        auto const& l = t.GetLevels()[level];
        Rect const r = l.rows[row].Offset(l.screenRect.TopLeft());
        return Point((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    };
    EXPECT_EQ(std::make_pair(0, 1), t.HitTest(rowCentre(0, 1)));
    EXPECT_EQ(std::make_pair(0, -1), t.HitTest(Point(100, 100)));
    EXPECT_EQ(std::make_pair(-1, -1), t.HitTest(Point(99, 100)));

    // Hovering a submenu opens it beside its row; hovering the disabled item highlights
    // nothing and closes it.
    t.Move(rowCentre(0, 3));
    ASSERT_EQ(2u, t.GetLevels().size());
    EXPECT_EQ(root.right + 1, t.GetLevels()[1].screenRect.left);
    EXPECT_EQ(root.top + 1 + RowHeight + 7 + RowHeight - 1, t.GetLevels()[1].screenRect.top);
    t.Move(rowCentre(0, 2));
    EXPECT_EQ(1u, t.GetLevels().size());
    EXPECT_EQ(-1, t.GetLevels()[0].highlighted);

    // A click on the disabled item or the separator does nothing; on a submenu item chooses.
    t.Click(rowCentre(0, 2));
    t.Click(rowCentre(0, 1));
    EXPECT_FALSE(t.IsDone());
    t.Click(rowCentre(0, 3));
    t.Click(rowCentre(1, 2));
    EXPECT_TRUE(t.IsDone());
    EXPECT_EQ(13, t.GetResult());

    // A click outside dismisses.
    t.Open(Point(100, 100));
    t.Click(Point(10, 10));
    EXPECT_TRUE(t.IsDone());
    EXPECT_EQ(PopupMenu::None, t.GetResult());
}

TEST(PopupMenuTracker, StaysOnTheScreen)
{
    Menu m;
    Rect const screen(0, 399, 0, 299);
    PopupMenuTracker t = makeTracker(m.menu, screen);
    // Opened in the bottom-right corner: pushed back so that it fits.
    t.Open(Point(390, 290));
    Rect const root = t.GetLevels()[0].screenRect;
    EXPECT_EQ(399, root.right);
    EXPECT_EQ(299, root.bottom);
    // No room on the right for the submenu: it opens on the left.
    t.Letter('r');
    ASSERT_EQ(2u, t.GetLevels().size());
    Rect const sub = t.GetLevels()[1].screenRect;
    EXPECT_EQ(root.left - 1, sub.right);
    EXPECT_TRUE(screen.Contains(sub));

    // An empty menu is done at once; an empty submenu does not open.
    PopupMenu empty;
    PopupMenuTracker e = makeTracker(empty);
    e.Open(Point(0, 0));
    EXPECT_TRUE(e.IsDone());
    PopupMenu withEmpty;
    withEmpty.AddSubmenu("Nothing");
    PopupMenuTracker w = makeTracker(withEmpty);
    w.Open(Point(0, 0));
    w.Down();
    w.Right();
    EXPECT_EQ(1u, w.GetLevels().size());
}
