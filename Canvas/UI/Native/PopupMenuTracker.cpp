#include "Canvas/UI/Native/PopupMenuTracker.h"

#include <algorithm>
#include <cctype>

namespace UI
{
namespace Native
{

PopupMenuTracker::PopupMenuTracker(PopupMenu const& root,
                                   std::function<int(String const&)> textWidth, int lineHeight,
                                   Rect const& screen)
    : root(root), textWidth(std::move(textWidth)), lineHeight(std::max(lineHeight, 8)),
      rowHeight(this->lineHeight + 2 * RowPadding), screen(screen)
{
}

bool PopupMenuTracker::IsSelectable(PopupMenu::Entry const& entry)
{
    return entry.kind != PopupMenu::Entry::Kind::Separator && entry.enabled;
}

PopupMenuTracker::Level PopupMenuTracker::makeLevel(PopupMenu const& menu, Point const& point) const
{
    Level level;
    level.menu = &menu;
    int width = MinimumWidth;
    int y = 0;
    for (PopupMenu::Entry const& entry : menu.GetEntries())
    {
        int const height =
            entry.kind == PopupMenu::Entry::Kind::Separator ? SeparatorHeight : rowHeight;
        if (entry.kind != PopupMenu::Entry::Kind::Separator)
            width = std::max(width, CheckColumn + textWidth(entry.caption) + ArrowColumn);
        level.rows.push_back(Rect::FromXYWH(0, y, 0, height));
        y += height;
    }
    width = std::min(width, std::max(screen.Width() - 2 * Border, MinimumWidth));
    for (Rect& row : level.rows)
        row = Rect::FromXYWH(Border, row.top + Border, width, row.Height());
    Size const size(width + 2 * Border, std::max(y, rowHeight) + 2 * Border);
    // Kept on the screen: pushed back from the right and bottom edges, never past the top-left.
    int const x = std::max(screen.left, std::min(point.x, screen.right + 1 - size.width));
    int const top = std::max(screen.top, std::min(point.y, screen.bottom + 1 - size.height));
    level.screenRect = Rect(Point(x, top), size);
    return level;
}

void PopupMenuTracker::Open(Point const& point)
{
    levels.clear();
    done = root.IsEmpty();
    result = PopupMenu::None;
    if (!done)
        levels.push_back(makeLevel(root, point));
}

void PopupMenuTracker::openSubmenu(int row)
{
    Level const& parent = levels.back();
    PopupMenu::Entry const& entry = parent.menu->GetEntries()[row];
    if (entry.kind != PopupMenu::Entry::Kind::Submenu || !entry.enabled || !entry.submenu ||
        entry.submenu->IsEmpty())
        return;
    Rect const rowRect = parent.rows[row].Offset(parent.screenRect.TopLeft());
    Level level =
        makeLevel(*entry.submenu, Point(parent.screenRect.right + 1, rowRect.top - Border));
    // No room on the right: the submenu opens on the left of its parent instead.
    if (level.screenRect.left <= parent.screenRect.right)
    {
        int const left = std::max(screen.left, parent.screenRect.left - level.screenRect.Width());
        level.screenRect = level.screenRect.Offset(left - level.screenRect.left, 0);
    }
    levels.push_back(std::move(level));
}

void PopupMenuTracker::choose(int row)
{
    PopupMenu::Entry const& entry = levels.back().menu->GetEntries()[row];
    if (!IsSelectable(entry))
        return;
    if (entry.kind == PopupMenu::Entry::Kind::Submenu)
    {
        levels.back().highlighted = row;
        openSubmenu(row);
        if (levels.back().menu == entry.submenu.get())
            step(1);
        return;
    }
    result = entry.id;
    done = true;
}

void PopupMenuTracker::step(int direction)
{
    if (done || levels.empty())
        return;
    Level& level = levels.back();
    int const count = static_cast<int>(level.rows.size());
    int row = level.highlighted;
    for (int i = 0; i < count; ++i)
    {
        // From no highlight, Down starts at the top and Up at the bottom; both wrap.
        row = row < 0 ? (direction > 0 ? 0 : count - 1) : (row + direction + count) % count;
        if (IsSelectable(level.menu->GetEntries()[row]))
        {
            level.highlighted = row;
            return;
        }
    }
}

void PopupMenuTracker::Up()
{
    step(-1);
}

void PopupMenuTracker::Down()
{
    step(1);
}

void PopupMenuTracker::Right()
{
    if (done || levels.empty() || levels.back().highlighted < 0)
        return;
    int const row = levels.back().highlighted;
    if (levels.back().menu->GetEntries()[row].kind == PopupMenu::Entry::Kind::Submenu)
        choose(row);
}

void PopupMenuTracker::Left()
{
    if (!done && levels.size() > 1)
        levels.pop_back();
}

void PopupMenuTracker::Return()
{
    if (!done && !levels.empty() && levels.back().highlighted >= 0)
        choose(levels.back().highlighted);
}

void PopupMenuTracker::Escape()
{
    if (done)
        return;
    if (levels.size() > 1)
        levels.pop_back();
    else
        Dismiss();
}

bool PopupMenuTracker::Letter(char letter)
{
    if (done || levels.empty())
        return false;
    Level& level = levels.back();
    auto const& entries = level.menu->GetEntries();
    int const count = static_cast<int>(entries.size());
    char const wanted = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    std::vector<int> matches;
    for (int i = 1; i <= count; ++i)
    {
        int const row = (level.highlighted + i + count) % count;
        PopupMenu::Entry const& entry = entries[row];
        if (IsSelectable(entry) && !entry.caption.IsEmpty() &&
            std::tolower(entry.caption[0].Byte()) == wanted)
            matches.push_back(row);
    }
    if (matches.empty())
        return false;
    level.highlighted = matches.front();
    if (matches.size() == 1)
        choose(matches.front());
    return true;
}

std::pair<int, int> PopupMenuTracker::HitTest(Point const& point) const
{
    // The innermost level lies above its parents where they overlap.
    for (int i = static_cast<int>(levels.size()) - 1; i >= 0; --i)
    {
        Level const& level = levels[i];
        if (!level.screenRect.Contains(point))
            continue;
        Point const local = point - level.screenRect.TopLeft();
        for (std::size_t row = 0; row < level.rows.size(); ++row)
            if (level.rows[row].Contains(local))
                return {i, static_cast<int>(row)};
        return {i, -1};
    }
    return {-1, -1};
}

void PopupMenuTracker::Move(Point const& point)
{
    if (done)
        return;
    std::pair<int, int> const hit = HitTest(point);
    // Outside, or on a border (which the pointer crosses on its way into a submenu): nothing.
    if (hit.first < 0 || hit.second < 0)
        return;
    Level& level = levels[hit.first];
    // Already showing this row's submenu: keep it open.
    if (hit.second >= 0 && level.highlighted == hit.second &&
        static_cast<int>(levels.size()) > hit.first + 1)
        return;
    levels.resize(hit.first + 1);
    if (!IsSelectable(level.menu->GetEntries()[hit.second]))
    {
        levels.back().highlighted = -1;
        return;
    }
    levels.back().highlighted = hit.second;
    if (level.menu->GetEntries()[hit.second].kind == PopupMenu::Entry::Kind::Submenu)
        openSubmenu(hit.second);
}

void PopupMenuTracker::Click(Point const& point)
{
    if (done)
        return;
    std::pair<int, int> const hit = HitTest(point);
    if (hit.first < 0)
    {
        Dismiss();
        return;
    }
    if (hit.second < 0)
        return;
    levels.resize(hit.first + 1);
    PopupMenu::Entry const& entry = levels.back().menu->GetEntries()[hit.second];
    if (!IsSelectable(entry))
        return;
    levels.back().highlighted = hit.second;
    if (entry.kind == PopupMenu::Entry::Kind::Submenu)
        openSubmenu(hit.second);
    else
        choose(hit.second);
}

void PopupMenuTracker::Dismiss()
{
    done = true;
    result = PopupMenu::None;
}

} // namespace Native
} // namespace UI
