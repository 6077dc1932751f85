#pragma once

#include "Canvas/UI/ListBoxItem.h"
#include "Canvas/UI/ScrollBar.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Util/Signal.h"

#include <map>
#include <vector>

namespace Controller
{
class BoolParam;
class FloatParam;
} // namespace Controller

namespace UI
{

class ScrollView;

/// The toolkit's list: rows of equal height in a scroll view named "Scroll View", with single,
/// multiple or no selection, and per row an optional icon, tool tip, swatch, integer value or
/// control. Only the rows in view have windows (`UI::ListBoxItem`), so painting and scrolling
/// cost the same for a hundred rows as for a hundred thousand.
///
/// Presses: with `multipleSelection`, Command (Ctrl) toggles a row and Shift selects the range
/// from the anchor; otherwise a press makes the row current. Keys 33 to 40 (Page Up, Page Down,
/// End, Home, the arrows) move the current row; with Shift and `multipleSelection` they extend
/// the selection from the anchor. With `noSelection` presses select nothing and keys scroll.
class ListBox : public Window
{
public:
    struct Colors
    {
        unsigned int background = 0xFFFFFFFF;
        unsigned int text = 0xFF000000;
        unsigned int selectionBackground = 0xFF3A78D0;
        unsigned int selectionText = 0xFFFFFFFF;
        unsigned int highlight = 0xFFFFF2B0;
        unsigned int border = 0xFF8A8A8A;
    };

    /// The size a list is made with: ten rows of the first cell height.
    static constexpr int StandardWidth = 200;
    static constexpr int StandardHeight = 182;

    ListBox(Frame* frame, Window* parent, String const& name);
    ListBox(Frame* frame, Window* parent, String const& name, Colors const& colors);
    ~ListBox() override;

    // ---- signals
    /// The user made a row current (a press, a Command toggle or a key), with its index.
    Signal<unsigned int> signalSelectionChanged;
    /// A press with Shift or with Alt, when enabled by `SetPressSignals`; the press does
    /// nothing else.
    Signal<> signalShiftPress;
    Signal<> signalAltPress;
    /// A press on a row, with its index, whatever it did to the selection.
    Signal<unsigned int> signalRowPressed;
    /// The row's text was edited through `EditItem`, with its index.
    Signal<unsigned int> signalItemEdited;

    // ---- contents
    /// Inserts a row before `index` (appends when unset or past the end).
    void InsertItem(String const& text, checked_value<unsigned int> const& index = {});
    void InsertItem(String const& text, boost::shared_ptr<DIBits> const& icon,
                    checked_value<unsigned int> const& index = {});
    void RemoveItem(unsigned int index);
    void Clear();
    std::vector<ListBoxRow> const& GetItems() const { return items; }
    unsigned int GetItemCount() const { return static_cast<unsigned int>(items.size()); }
    /// The row's text; empty past the end.
    String GetItemText(unsigned int index) const;
    /// The window that shows row `index`, while the row is in view; null otherwise.
    ListBoxItem* GetListBoxItem(unsigned int index) const;
    /// The first row with exactly `text`.
    checked_value<unsigned int> GetIndex(String const& text) const;

    // ---- rows; each ignores an index past the end
    void SetItemText(unsigned int index, String const& text);
    void SetItemIcon(unsigned int index, boost::shared_ptr<DIBits> const& icon);
    void SetItemToolTip(unsigned int index, String const& text);
    void SetItemFont(unsigned int index, Font* font);
    void SetItemSelected(unsigned int index, bool selected);
    void SetItemHighlight(unsigned int index, bool highlight);
    void SetItemLeftMargin(unsigned int index, int margin);
    void SetItemSwatchColor(unsigned int index, checked_value<unsigned int> const& color);
    void SetItemIntValue(unsigned int index, checked_value<int> const& value);
    void SetItemEdgeMargin(unsigned int index, int margin);
    /// The left margin of every row.
    void SetLeftMargin(int margin);
    /// Puts a control made by `maker` at the right end of the row, `width` pixels wide.
    void SetItemControl(unsigned int index, ListBoxRow::ControlMaker const& maker, int width);
    /// A `UI::CheckBox` named "Checkbox" on `param` at the right end of the row.
    void CreateCheckBox(unsigned int index, Controller::BoolParam* param);
    /// A `UI::ScrubText` named "Scrub Text" on `param` at the right end of the row. A plain wheel
    /// over it scrolls the list; see `SetSupportsCtrlShiftWheelAdjustments`.
    void CreateScrubText(unsigned int index, Controller::FloatParam* param);

    // ---- selection
    /// Makes `index` current and alone selected; nothing past the end.
    void SetCurrent(unsigned int index, bool ensureVisible);
    /// The first row with `text`; nothing when there is none.
    void SetCurrent(String const& text, bool ensureVisible);
    checked_value<unsigned int> GetCurrent() const { return current; }
    unsigned int GetAnchor() const { return anchor; }
    bool IsSelected(unsigned int index) const;
    /// Selects or deselects one row; with `makeCurrent` it becomes current and the anchor,
    /// with `ensureVisible` it is scrolled into view.
    void SetSelected(unsigned int index, bool selected, bool makeCurrent, bool ensureVisible);
    void ClearSelection();
    std::vector<unsigned int> GetSelectedItems() const;
    /// The current row when it is selected, else the first selected row.
    checked_value<unsigned int> GetSelectedIndex() const;
    void EnsureVisible(unsigned int index);

    // ---- other
    void SetColors(Colors const& colors);
    Colors const& GetColors() const { return colors; }
    void SetBorderColor(unsigned int color);
    void SetScrollBarMode(ScrollBarMode mode);
    ScrollBarMode GetScrollBarMode() const { return scrollBarMode; }
    bool IsScrollBarVisible() const;
    void SetMultipleSelection(bool on) { multipleSelection = on; }
    void SetNoSelection(bool on) { noSelection = on; }
    void SetDisableBelowCurrent(bool on);
    /// A drag over the rows moves the current row with the mouse.
    void SetCurrentOnItemDrag(bool on) { currentOnItemDrag = on; }
    /// A press on the current row fires the selection signal again.
    void SetAnnounceEveryPress(bool on) { announceEveryPress = on; }
    void SetPressSignals(bool shift, bool alt);
    void SetItemCellHeight(int height);
    int GetItemCellHeight() const { return itemCellHeight; }
    /// Ctrl (finely) or Shift with the wheel over a row's scrub text adjusts it; without them the
    /// wheel scrolls the list. Off, the wheel always scrolls the list. On at first.
    void SetSupportsCtrlShiftWheelAdjustments(bool on) { ctrlShiftWheel = on; }
    bool SupportsCtrlShiftWheelAdjustments() const { return ctrlShiftWheel; }
    /// Edits the row's text in place (the current row when unset); false when cancelled.
    bool EditItem(checked_value<unsigned int> const& index = {});
    void SetIllegalCharacters(std::vector<char> const& characters);
    ScrollView* GetScrollView() const { return scrollView; }
    /// The row at `point` (list coordinates); not present on no row.
    checked_value<unsigned int> RowAt(Point const& point) const;

    // ---- Window
    void Draw(DrawContext* context) override;
    bool onMousePress(Point const& point, unsigned int flags) override;
    bool onMouseMove(Point const& point, unsigned int flags) override;
    bool onMouseWheel(Point const& point, int delta, unsigned int flags) override;
    bool onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat) override;
    void onSetGeometry() override;
    void onEnableChange() override;
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* in,
                          TestAutomation::RPCReplyInterface* reply) override;
    String GetWindowType() const override { return String("ListBox"); }

    /// Lays the row windows over the rows now in view; called after every scroll.
    void LayoutRows();

private:
    friend class ListBoxItem;
    void init();
    void updateVirtualSize();
    void updateAlphas();
    void repaintRows();
    void selectRange(unsigned int from, unsigned int to);
    ListBoxItem* itemWindow(unsigned int index) const;
    /// Deletes every row window: rows moved, so their names are out of date.
    void dropRowWindows();
    void refreshRow(unsigned int index);

    ScrollView* scrollView = nullptr;
    std::vector<ListBoxRow> items;
    /// The windows of the rows in view, by row.
    std::map<unsigned int, ListBoxItem*> rowWindows;
    checked_value<unsigned int> current;
    unsigned int anchor = 0;
    int itemCellHeight = 18;
    int leftMargin = 4;
    bool multipleSelection = false;
    bool noSelection = false;
    bool disableBelowCurrent = false;
    bool currentOnItemDrag = false;
    bool announceEveryPress = false;
    bool shiftSignal = false;
    bool altSignal = false;
    bool ctrlShiftWheel = true;
    std::vector<char> illegalCharacters;
    ScrollBarMode scrollBarMode = ScrollBarAutomatic;
    Colors colors;
};

} // namespace UI
