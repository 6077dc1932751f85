#pragma once

#include "Canvas/UI/Window.h"
#include "TvBase/Util/Signal.h"

#include <map>
#include <memory>
#include <vector>

namespace UI
{

class ScrollView;
class TreeList;

/// One row of a `UI::TreeList`: its text, colour and tool tip, under a stable id.
class TreeListItem
{
public:
    unsigned int GetId() const { return id; }
    String const& GetText() const { return text; }
    void SetText(String const& newText);
    /// The colour of the row's text; 0xFF000000 at first.
    unsigned int GetColor() const { return color; }
    void SetColor(unsigned int newColor);
    String const& GetToolTip() const { return toolTip; }
    void SetToolTip(String const& text) { toolTip = text; }
    /// A second text shown dimmed after the first (the type of a window, say).
    String const& GetDetail() const { return detail; }
    void SetDetail(String const& text);
    checked_value<unsigned int> GetParentId() const { return parent; }
    std::vector<unsigned int> const& GetChildIds() const { return children; }
    bool IsExpanded() const { return expanded; }

private:
    friend class TreeList;
    TreeList* tree = nullptr;
    unsigned int id = 0;
    checked_value<unsigned int> parent;
    std::vector<unsigned int> children;
    String text;
    String detail;
    String toolTip;
    unsigned int color = 0xFF000000;
    bool expanded = false;
    bool selected = false;
    int depth = 0;
};

/// A tree of text rows in a scroll view ("Scroll View"), each with a stable id. Rows expand and
/// collapse with the triangle, a double click or Left and Right; a press selects (Ctrl adds or
/// removes a row), Up and Down move the selection. A search shows only the rows whose text
/// holds a string, with their ancestors; "children of the selection" shows only the selected
/// rows' ancestors and descendants. Only the rows in view are painted, so a tree of a hundred
/// thousand rows paints and scrolls as fast as a small one.
class TreeList : public Window
{
public:
    static constexpr int RowHeight = 18;
    static constexpr int Indent = 14;

    TreeList(Frame* frame, Window* parent, String const& name);
    ~TreeList() override;

    /// The user changed the selection.
    Signal<> signalSelectionChanged;

    /// A new row at the end of `parentId`'s children (a top row when not present); its id, or
    /// not present when the parent is unknown.
    checked_value<unsigned int> AddItem(checked_value<unsigned int> const& parentId,
                                        String const& text, bool expanded = false);
    void ClearItems();
    /// The row with `id`; null when there is none.
    TreeListItem* GetListItem(unsigned int id);
    std::size_t GetItemCount() const { return items.size(); }
    std::vector<unsigned int> const& GetTopIds() const { return topIds; }

    void SetExpanded(unsigned int id, bool expanded);
    void ExpandAll(bool expanded);

    /// Selects exactly `ids` (unknown ones are skipped), without the signal.
    void SetSelection(std::vector<unsigned int> const& ids);
    std::vector<unsigned int> GetSelection() const;
    /// Expands the ancestors of the selected rows and scrolls the first into view.
    void RevealSelection();
    /// Moves the selection to the row below (or above) the first selected row in view.
    void SelectNextItem();
    void SelectPreviousItem();
    /// With `on`, only the selected rows, their ancestors and their descendants show.
    void ShowChildrenOfSelection(bool on);
    /// Only rows whose text holds `text` (any case) show, with their ancestors, expanded; an
    /// empty text shows every row again.
    void ShowItemsContainingString(String const& text);

    /// The ids of the rows as they show now, top to bottom.
    std::vector<unsigned int> const& GetVisibleRows();
    /// The row at `point` (tree coordinates); not present on none.
    checked_value<unsigned int> RowAt(Point const& point);
    ScrollView* GetScrollView() const { return scrollView; }
    /// How many rows the last paint drew.
    unsigned int GetRowsPainted() const { return rowsPainted; }

    void onSetGeometry() override;
    bool onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat) override;
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* in,
                          TestAutomation::RPCReplyInterface* reply) override;
    String GetWindowType() const override { return String("TreeList"); }

private:
    friend class TreeListItem;
    friend class TreeListRows;
    void changed();
    void repaint();
    void rebuild();
    void ensureVisible(unsigned int row);
    void selectOnly(unsigned int id, bool notify);
    void press(Point const& point, unsigned int flags, bool twice);
    void paintRows(DrawContext* context, Rect const& clip);
    bool passesFilter(TreeListItem const& item) const;
    /// True when the row or one of its ancestors is selected.
    bool descendsFromSelection(TreeListItem const& item);

    ScrollView* scrollView;
    Window* rows;
    std::map<unsigned int, std::unique_ptr<TreeListItem>> items;
    std::vector<unsigned int> topIds;
    std::vector<unsigned int> visibleRows;
    /// Rows that the search or the lineage view keeps, when one is on.
    std::vector<bool> kept;
    bool dirty = false;
    unsigned int nextId = 1;
    String search;
    bool lineageOnly = false;
    unsigned int rowsPainted = 0;
};

} // namespace UI
