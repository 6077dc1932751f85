#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"

#include <memory>
#include <vector>

namespace UI
{
class Font;

namespace Native
{

/// A menu of items, separators and submenus, drawn by the toolkit in a borderless popup host
/// window. `Show` runs a nested event loop and answers the chosen item's id, or `None` when the
/// menu was dismissed (Escape, a click outside, or the program's windows losing focus).
class PopupMenu
{
public:
    static constexpr int None = -1;

    PopupMenu();
    ~PopupMenu();

    PopupMenu(PopupMenu const&) = delete;
    PopupMenu& operator=(PopupMenu const&) = delete;

    /// Appends an item; `id` is the caller's own and must not be negative.
    void AddItem(int id, String const& caption, bool enabled = true, bool checked = false);
    /// Appends a separator line.
    void AddSeparator();
    /// Appends a submenu entry and answers the submenu to fill; this menu owns it.
    PopupMenu* AddSubmenu(String const& caption, bool enabled = true);
    bool IsEmpty() const { return entries.empty(); }
    /// The font of the captions (not owned; submenus added later take it too). Without one,
    /// the menu uses the default font of the focused window's canvas.
    void SetFont(Font* captionFont) { font = captionFont; }

    /// Shows the menu with its top-left corner at `screenPoint` (moved to stay on the screen),
    /// runs until an item is chosen or the menu is dismissed, and answers the id or `None`.
    int Show(Point const& screenPoint);

    struct Entry
    {
        enum class Kind
        {
            Item,
            Separator,
            Submenu
        };
        Kind kind = Kind::Item;
        int id = None;
        String caption;
        bool enabled = true;
        bool checked = false;
        std::unique_ptr<PopupMenu> submenu;
    };
    std::vector<Entry> const& GetEntries() const { return entries; }

private:
    std::vector<Entry> entries;
    Font* font = nullptr;
};

} // namespace Native
} // namespace UI
