#pragma once

// The list family in a window of its own beside the gallery ("Gallery Lists"): a 10,000-row
// list box with icons and swatches, a combo box, a tree of 1,000 rows with a search field and
// a legend, a popup menu with a submenu on a right click, and the file and folder dialogs.
// Each widget reports what the user did on the standard output, one line each.

#include <memory>

namespace UI
{
class Canvas;
namespace Native
{
class HostWindow;
}
} // namespace UI

namespace Gallery
{

class ListsWindow
{
public:
    explicit ListsWindow(UI::Canvas* canvas);
    ~ListsWindow();
    /// Makes and shows the window at the right of the gallery's; false without a display.
    bool Open();

private:
    std::unique_ptr<UI::Native::HostWindow> host;
};

} // namespace Gallery
