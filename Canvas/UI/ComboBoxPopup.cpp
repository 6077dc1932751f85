#include "Canvas/UI/ComboBoxPopup.h"

#include "Canvas/UI/ComboBox.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/Native/HostWindow.h"

#include <algorithm>

namespace UI
{

ComboBoxPopup::ComboBoxPopup(Native::HostWindow* host, ComboBox* owner)
    : Window(host->GetFrame(), nullptr, "ComboBox Popup"), owner(owner)
{
    list = new ListBox(GetFrame(), this, "ComboBox Popup List");
    for (String const& item : owner->GetItems())
        list->InsertItem(item);
    if (owner->GetSelectedItem())
        list->SetCurrent(*owner->GetSelectedItem(), true);
    list->signalRowPressed.Connect(&ComboBoxPopup::rowChosen, this);
    list->SetFocus();
}

int ComboBoxPopup::GetPreferredHeight() const
{
    int const rows = std::max(1, std::min(12, static_cast<int>(owner->GetItems().size())));
    return rows * list->GetItemCellHeight() + 2;
}

void ComboBoxPopup::onSetGeometry()
{
    list->SetGeometry(0, 0, GetWidth(), GetHeight());
    if (list->GetCurrent())
        list->EnsureVisible(*list->GetCurrent());
}

void ComboBoxPopup::Draw(DrawContext* context)
{
    context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), DrawContext::Filled, 0xFFFFFFFF,
                     255);
    Window::Draw(context);
}

void ComboBoxPopup::rowChosen(unsigned int index)
{
    owner->ClosePopup(index);
}

bool ComboBoxPopup::onKeyPress(unsigned int keyCode, unsigned int, bool)
{
    switch (keyCode)
    {
    case 13:
    case 32:
        owner->ClosePopup(list->GetCurrent());
        return true;
    case 27:
        owner->ClosePopup({});
        return true;
    default:
        return false;
    }
}

ComboBoxPopup* CreateComboBoxPopup(Native::HostWindow* host, ComboBox* owner)
{
    return new ComboBoxPopup(host, owner);
}

} // namespace UI
