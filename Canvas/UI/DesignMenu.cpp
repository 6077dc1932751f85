// UI::Design: the right-click window menu, which lists the windows under the mouse, nested as
// they are in the tree, so that a window hidden under others can still be chosen.

#include "Canvas/UI/Design.h"

#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "Canvas/UI/Window.h"

namespace UI
{

void Design::rightPress(Point const& point)
{
    menuWindows.clear();
    clearSelection();
    if (layoutActionPending && layoutAction == LayoutCreateWindow)
        resetLayoutAction();

    Native::PopupMenu menu;
    for (Window* w : frame->GetTopLevelWindows())
    {
        if (!w || !w->IsVisible() || !globalRect(w).Contains(point))
            continue;
        bool childUnder = false;
        for (Window* child : w->child_windows())
            if (child && child->IsVisible() && globalRect(child).Contains(point))
                childUnder = true;
        if (childUnder)
        {
            childWindowsMenu(menu.AddSubmenu(w->GetName()), w, point);
        }
        else
        {
            menu.AddItem(static_cast<int>(menuWindows.size()), w->GetName());
            menuWindows.push_back(w);
        }
    }
    if (menu.IsEmpty())
        return;
    Point const screen = frame->GetScreenPos() + point;
    int const chosen = menu.Show(screen);
    // The nested loop may have ended windows; those entries are null by now.
    if (chosen >= 0 && static_cast<std::size_t>(chosen) < menuWindows.size() && menuWindows[chosen])
        SetSelectionTo(menuWindows[chosen]);
    menuWindows.clear();
}

void Design::childWindowsMenu(Native::PopupMenu* menu, Window* window, Point const& point)
{
    for (Window* child : window->child_windows())
    {
        if (!child || !child->IsVisible() || !globalRect(child).Contains(point))
            continue;
        if (!child->child_windows().empty())
        {
            childWindowsMenu(menu->AddSubmenu(child->GetName()), child, point);
        }
        else
        {
            menu->AddItem(static_cast<int>(menuWindows.size()), child->GetName());
            menuWindows.push_back(child);
        }
    }
}

} // namespace UI
