// UI::Design: the right-click window menu.

#include "Canvas/UI/Design.h"

#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Window.h"

namespace UI
{

void Design::rightPress(Point const&)
{
    menuWindows.clear();
    clearSelection();
    if (layoutActionPending && layoutAction == LayoutCreateWindow)
        resetLayoutAction();
}

} // namespace UI
