#pragma once

#include "Canvas/UI/Native/PopupMenu.h"

#include <functional>
#include <vector>

namespace UI
{
namespace Native
{

/// The state of a shown popup menu apart from any window: which menus are open (the root and
/// the chain of submenus opened from it), where each lies on the screen, which row of each is
/// highlighted, and what keys and the mouse do to that. The host draws each open level in a
/// window of its own at `GetLevels()[i].screenRect` and feeds the user's input here until
/// `IsDone`.
class PopupMenuTracker
{
public:
    /// Row heights and paddings, in pixels.
    static constexpr int Border = 1;
    static constexpr int SeparatorHeight = 7;
    static constexpr int RowPadding = 3;
    /// Room left of a caption for the check mark, and right of it for the submenu arrow.
    static constexpr int CheckColumn = 20;
    static constexpr int ArrowColumn = 20;
    static constexpr int MinimumWidth = 80;

    struct Level
    {
        PopupMenu const* menu = nullptr;
        /// The highlighted entry, or -1.
        int highlighted = -1;
        Rect screenRect;
        /// Each entry's rect inside the level (level coordinates, borders excluded).
        std::vector<Rect> rows;
    };

    /// `textWidth` measures a caption; `lineHeight` is the font's. `screen` bounds every level.
    PopupMenuTracker(PopupMenu const& root, std::function<int(String const&)> textWidth,
                     int lineHeight, Rect const& screen);

    /// Opens the root with its top-left corner at `point`, moved to stay on the screen.
    void Open(Point const& point);

    std::vector<Level> const& GetLevels() const { return levels; }
    int GetRowHeight() const { return rowHeight; }
    bool IsDone() const { return done; }
    /// The chosen id, or `PopupMenu::None`.
    int GetResult() const { return result; }

    // ---- keyboard; each acts on the innermost open level
    void Up();
    void Down();
    /// Opens the highlighted submenu.
    void Right();
    /// Closes the innermost submenu.
    void Left();
    /// Chooses the highlighted item, or opens the highlighted submenu.
    void Return();
    /// Closes the innermost submenu; at the root, dismisses the menu.
    void Escape();
    /// Highlights the next entry whose caption starts with `letter` (case-insensitive); when it
    /// is the only one, chooses it (or opens it, for a submenu). False when none starts so.
    bool Letter(char letter);

    // ---- mouse, in screen coordinates
    /// Highlights the entry beneath `point` and opens it when it is a submenu; over a separator
    /// or a disabled entry closes the submenus below; outside every level and on borders it
    /// changes nothing.
    void Move(Point const& point);
    /// A press: on an item chooses it, on a submenu opens it, outside every level dismisses.
    void Click(Point const& point);
    /// The press that dismisses from outside, or the program losing the focus.
    void Dismiss();

    /// The level and entry beneath `point`: level -1 outside every level, entry -1 on a border.
    std::pair<int, int> HitTest(Point const& point) const;
    /// True when the entry can be highlighted (not a separator, not disabled).
    static bool IsSelectable(PopupMenu::Entry const& entry);

private:
    Level makeLevel(PopupMenu const& menu, Point const& point) const;
    void openSubmenu(int row);
    void choose(int row);
    void step(int direction);

    PopupMenu const& root;
    std::function<int(String const&)> textWidth;
    int lineHeight;
    int rowHeight;
    Rect screen;
    std::vector<Level> levels;
    bool done = false;
    int result = PopupMenu::None;
};

} // namespace Native
} // namespace UI
