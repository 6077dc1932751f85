#include "Canvas/UI/Native/PopupMenu.h"

namespace UI
{
namespace Native
{

PopupMenu::PopupMenu() = default;

PopupMenu::~PopupMenu() = default;

void PopupMenu::AddItem(int id, String const& caption, bool enabled, bool checked)
{
    Entry entry;
    entry.kind = Entry::Kind::Item;
    // A negative id could not be told from `None`: such an item can never be chosen.
    entry.id = id < 0 ? None : id;
    entry.caption = caption;
    entry.enabled = enabled && id >= 0;
    entry.checked = checked;
    entries.push_back(std::move(entry));
}

void PopupMenu::AddSeparator()
{
    Entry entry;
    entry.kind = Entry::Kind::Separator;
    entry.enabled = false;
    entries.push_back(std::move(entry));
}

PopupMenu* PopupMenu::AddSubmenu(String const& caption, bool enabled)
{
    Entry entry;
    entry.kind = Entry::Kind::Submenu;
    entry.caption = caption;
    entry.enabled = enabled;
    entry.submenu.reset(new PopupMenu);
    PopupMenu* submenu = entry.submenu.get();
    submenu->font = font;
    entries.push_back(std::move(entry));
    return submenu;
}

} // namespace Native
} // namespace UI
