#pragma once

#include "Canvas/UI/Window.h"

#include <map>
#include <vector>

namespace Controller
{
class KeyValueCoding;
}

namespace UI
{

class ComboBox;
class DesignAid;
class SimpleEdit;
class SimplePushButton;
class Text;
namespace Native
{
class PopupMenu;
}

/// The property editor of live design, the window of the host "Property Editor Host Window":
/// one row per editable property common to the windows being edited, written back through the
/// canvas's property serializer, and above the rows the layout key, save mode and parent of the
/// selection with the buttons that load, save and reparent.
///
/// Made and connected by `UI::DesignAid` on first need, on a design-disabled frame. Keeps the
/// selection it was last told of (the Design Aid drops dead windows from it before telling), and
/// no other window pointers. Main thread only.
class PropertyEditor : public Window
{
public:
    /// Rows made once; a selection with more properties shows the first ones in name order.
    static constexpr unsigned int MaxRows = 32;
    static constexpr int MinimumLabelWidth = 50;

    /// What the rows show of one property.
    struct PropertyInfo
    {
        /// The registered type name ("Int", "Color", an enumeration's name...), or the
        /// semantic type of a `String` property that has one ("KeyPath").
        String typeName;
        /// The serialized value, or "--" when the edit windows differ.
        String value;
        /// The value names of an enumeration; empty otherwise.
        std::vector<String> enumValues;
        /// True when every edit window holds the property.
        bool common = true;
    };
    typedef std::map<String, PropertyInfo> PropertyMap;

    /// `aid` (may be null in tests) gives the selection and hears of loaded layouts.
    PropertyEditor(Frame* frame, DesignAid* aid);
    ~PropertyEditor() override;

    // ---- the windows being edited
    /// Reads the Design Aid's selection again and rebuilds everything.
    void slotUpdateSelectedWindows();
    /// The same with the given windows, for callers without a Design Aid.
    void SetSelectedWindows(std::vector<Window*> const& windows);
    /// The combo box's entry, or all selected windows when its first entry is chosen.
    std::vector<Window*> getEditWindows() const;
    /// The editable properties of the edit windows: those in all of them, "--" where they differ.
    PropertyMap getInfoForEditableProperties() const;

    // ---- rows
    void updateVisibleProperties();
    /// Writes `newValue` to the row's property of every edit window, then refreshes the rows.
    void slotPropertyEdited(unsigned int row, String const& newValue);
    /// The number of rows in use.
    unsigned int GetVisibleRowCount() const { return visibleRows; }
    /// The property that row `row` shows (empty past the rows in use).
    String GetRowPropertyName(unsigned int row) const;
    Text* GetRowLabel(unsigned int row) const { return rows.at(row).label; }
    SimpleEdit* GetRowEdit(unsigned int row) const { return rows.at(row).edit; }
    ComboBox* GetRowComboBox(unsigned int row) const { return rows.at(row).comboBox; }
    SimplePushButton* GetRowSwatch(unsigned int row) const { return rows.at(row).swatch; }
    SimplePushButton* GetRowKVCButton(unsigned int row) const { return rows.at(row).kvcButton; }
    SimplePushButton* GetRowBrowseButton(unsigned int row) const { return rows.at(row).browse; }

    // ---- the layout section
    void updateParentTextAndButton();
    void slotResourceOverrideChanged();
    void onLayoutKeyEdited();
    void reloadLayout();
    void saveLayout();
    void reparentButtonClicked();

    /// Fills `menu` with the keys of `coding` for row `row`: a coding object as a submenu, a value
    /// of the wrong kind disabled. Chosen ids index `kvcPaths`.
    void constructKVCMenu(Native::PopupMenu& menu, Controller::KeyValueCoding* coding,
                          unsigned int row, String const& prefix);
    std::vector<String> const& GetKVCMenuPaths() const { return kvcPaths; }

    void onSetGeometry() override;
    String GetWindowType() const override { return String("PropertyEditor"); }
    /// "GetInfo" adds "rows", the number of rows in use.
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

protected:
    /// Shows `menu` at `screenPoint` and answers the chosen id; tests answer here instead.
    virtual int showPopupMenu(Native::PopupMenu& menu, Point const& screenPoint);
    /// Asks for a file to open; false when cancelled.
    virtual bool askForFile(String const& title, String const& filterName, String const& pattern,
                            String const& extension, String& path);
    /// Runs the colour picker on `color` with `live` hearing each change; true when accepted.
    virtual bool runColorPicker(unsigned int& color, boost::function<void(unsigned int)> live);

private:
    struct Row
    {
        Text* label = nullptr;
        SimpleEdit* edit = nullptr;
        ComboBox* comboBox = nullptr;
        SimplePushButton* swatch = nullptr;
        SimplePushButton* kvcButton = nullptr;
        SimplePushButton* browse = nullptr;
        String property;
        PropertyInfo info;
    };

    Text* makeText(String const& name, String const& caption);
    SimplePushButton* makeButton(String const& name, String const& caption, String const& toolTip);
    void hideRow(Row& row);
    void updatePropertyEditGeometry();
    void setFocusOrder();
    void setSaveLayoutButtonState();
    bool editWindowsChanged(std::vector<Window*> const& before) const;
    /// Loads `text` into the property of every window in `windows`, with the design's
    /// invalidation around each.
    void applyValue(std::vector<Window*> const& windows, String const& property,
                    String const& text);

    void slotRowEdited(unsigned int row);
    void slotRowItemSelected(unsigned int row, unsigned int item);
    void slotSelectedWindowChosen(unsigned int item);
    void showColorPicker(unsigned int row);
    void showKVCMenu(unsigned int row);
    void browseImageResourcePath(unsigned int row);
    void browseLayoutFilePath();

    DesignAid* aid;
    std::vector<Window*> selectedWindows;
    /// The selection last shown; only compared with the next one, never followed.
    std::vector<Window*> shownSelection;
    Text* selectedWindowText = nullptr;
    ComboBox* selectedWindowsComboBox = nullptr;
    Text* dynamicLayoutText = nullptr;
    Text* layoutEditText = nullptr;
    SimpleEdit* layoutKeyEdit = nullptr;
    SimplePushButton* layoutBrowseButton = nullptr;
    SimplePushButton* loadLayoutButton = nullptr;
    SimplePushButton* saveLayoutButton = nullptr;
    Text* parentText = nullptr;
    SimplePushButton* reparentButton = nullptr;
    Text* noEditablePropertiesText = nullptr;
    std::vector<Row> rows;
    unsigned int visibleRows = 0;
    std::vector<String> kvcPaths;
    /// Set while the fields are being filled, so that their change signals are not edits.
    bool updating = false;
};

} // namespace UI
