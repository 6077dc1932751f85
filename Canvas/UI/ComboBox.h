#pragma once

#include "Canvas/UI/Window.h"
#include "TvBase/Util/Signal.h"

#include <memory>
#include <vector>

namespace Controller
{
class EnumParam;
}

namespace UI
{

class ComboBoxPopup;

namespace Native
{
class HostWindow;
}

/// A closed list showing one chosen item, with an optional label on its left. A press, Space,
/// Return or Alt+Down opens the list below it in a popup host window named "ComboBox Popup
/// Host Window"; Up and Down choose the previous or next item without opening it. Bound to an
/// `Controller::EnumParam`, its items are the parameter's captions and a choice sets it.
class ComboBox : public Window
{
public:
    ComboBox(Frame* frame, Window* parent, String const& name);
    ComboBox(Frame* frame, Window* parent, String const& name, String const& label,
             Controller::EnumParam* param);
    ~ComboBox() override;

    /// The user chose an item (in the list or with a key), with its index.
    Signal<unsigned int> signalItemSelected;

    void SetItems(std::vector<String> const& newItems);
    std::vector<String> const& GetItems() const { return items; }
    /// Shows item `index` (nothing past the end) without the signal; clears a custom caption.
    void SetSelectedItem(unsigned int index);
    /// The first item with `text`; false when there is none.
    bool SetSelectedItem(String const& text);
    checked_value<unsigned int> GetSelectedItem() const { return selected; }
    /// Shows `caption` in place of the chosen item (for mixed values, "--"), until an item is
    /// set or chosen. An empty caption shows the item again.
    void SetCustomCaption(String const& caption);
    /// The text shown: the custom caption, or the chosen item's text.
    String GetCaption() const;
    void SetLabel(String const& text);
    String const& GetLabel() const { return label; }
    /// The width the label takes, its gap included.
    int GetLabelWidth() const;

    /// Opens the list and runs until an item is chosen or the list is dismissed (Escape, a
    /// press elsewhere, the list losing the focus). True when an item was chosen.
    bool OpenPopup();
    bool IsPopupOpen() const { return popup != nullptr; }
    /// Called by the popup: the user chose `index` (or nothing when not present).
    void ClosePopup(checked_value<unsigned int> const& index);

    void Draw(DrawContext* context) override;
    bool onMousePress(Point const& point, unsigned int flags) override;
    bool onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat) override;
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* in,
                          TestAutomation::RPCReplyInterface* reply) override;
    String GetWindowType() const override { return String("ComboBox"); }

private:
    void choose(unsigned int index);
    void paramChanged(unsigned int const& value);

    std::vector<String> items;
    checked_value<unsigned int> selected;
    String customCaption;
    String label;
    Controller::EnumParam* param = nullptr;
    ComboBoxPopup* popup = nullptr;
    bool popupDone = false;
    checked_value<unsigned int> popupChoice;
};

/// The theme's default combo box creator.
ComboBox* CreateComboBox(Frame* frame, Window* parent, String const& name, String const& caption,
                         Controller::EnumParam* param);

} // namespace UI
