#pragma once

#include "Canvas/UI/Window.h"

namespace UI
{

class ComboBox;
class ListBox;

namespace Native
{
class HostWindow;
}

/// The open list of a `UI::ComboBox`: the top window of the popup host window's frame, holding
/// a list box ("ComboBox Popup List") of the combo's items with the chosen one current. A
/// press on a row or Return chooses; Escape closes with no choice.
class ComboBoxPopup : public Window
{
public:
    ComboBoxPopup(Native::HostWindow* host, ComboBox* owner);

    ListBox* GetList() const { return list; }
    /// The height that shows every item, up to twelve.
    int GetPreferredHeight() const;

    void Draw(DrawContext* context) override;
    bool onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat) override;
    void onSetGeometry() override;
    String GetWindowType() const override { return String("ComboBoxPopup"); }

private:
    void rowChosen(unsigned int index);

    ComboBox* owner;
    ListBox* list;
};

/// The theme's default combo box popup creator.
ComboBoxPopup* CreateComboBoxPopup(Native::HostWindow* host, ComboBox* owner);

} // namespace UI
