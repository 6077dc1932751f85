#include "Canvas/UI/TreeList.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/ScrollView.h"

#include <algorithm>

namespace UI
{

namespace
{

unsigned int const Background = 0xFFFFFFFF;
unsigned int const SelectionBackground = 0xFFCFE0F8;
unsigned int const DetailColor = 0xFF808080;
unsigned int const ExpanderColor = 0xFF606060;

} // namespace

/// The tall window in the scroll view on which the tree paints the rows that the clip meets.
class TreeListRows : public Window
{
public:
    TreeListRows(Frame* frame, Window* parent, TreeList* tree)
        : Window(frame, parent, "TreeList Rows"), tree(tree)
    {
        SetMouseTracking(true);
    }

    void Draw(DrawContext* context) override
    {
        Rect const clip = context->GetClipRect().Offset(Point() - context->GetTranslation());
        tree->paintRows(context, clip);
        Window::Draw(context);
    }

    bool onMousePress(Point const& p, unsigned int flags) override
    {
        tree->press(p, flags, false);
        return true;
    }

    bool onMouseDoubleClick(Point const& p, unsigned int flags) override
    {
        tree->press(p, flags, true);
        return true;
    }

    /// The row under the mouse lends its tool tip to the rows.
    bool onMouseMove(Point const& p, unsigned int) override
    {
        checked_value<unsigned int> const id =
            tree->RowAt(p + GetGlobalPos() - tree->GetGlobalPos());
        TreeListItem* item = id ? tree->GetListItem(*id) : nullptr;
        String const tip = item ? item->GetToolTip() : String("");
        if (tip != GetToolTipText())
            SetToolTipText(tip);
        return false;
    }

private:
    TreeList* tree;
};

// ============================================================================================
// items
// ============================================================================================

void TreeListItem::SetText(String const& newText)
{
    text = newText;
    if (tree)
        tree->changed();
}

void TreeListItem::SetColor(unsigned int newColor)
{
    color = newColor;
    if (tree)
        tree->repaint();
}

void TreeListItem::SetDetail(String const& newDetail)
{
    detail = newDetail;
    if (tree)
        tree->repaint();
}

// ============================================================================================
// the tree
// ============================================================================================

TreeList::TreeList(Frame* frame, Window* parent, String const& name) : Window(frame, parent, name)
{
    scrollView = new ScrollView(frame, this, "Scroll View", ScrollView::LayoutFree);
    rows = new TreeListRows(frame, scrollView, this);
    scrollView->AddChild(checked_value<unsigned int>(), rows, Point(0, 0));
    SetGeometry(0, 0, 240, 300);
}

TreeList::~TreeList() = default;

checked_value<unsigned int> TreeList::AddItem(checked_value<unsigned int> const& parentId,
                                              String const& text, bool expanded)
{
    TreeListItem* parentItem = nullptr;
    if (parentId)
    {
        parentItem = GetListItem(*parentId);
        if (!parentItem)
            return {};
    }
    std::unique_ptr<TreeListItem> item(new TreeListItem);
    item->tree = this;
    item->id = nextId++;
    item->text = text;
    item->expanded = expanded;
    if (parentItem)
    {
        item->parent = parentItem->id;
        item->depth = parentItem->depth + 1;
        parentItem->children.push_back(item->id);
    }
    else
        topIds.push_back(item->id);
    unsigned int const id = item->id;
    items[id] = std::move(item);
    changed();
    return id;
}

void TreeList::ClearItems()
{
    items.clear();
    topIds.clear();
    changed();
}

TreeListItem* TreeList::GetListItem(unsigned int id)
{
    auto const it = items.find(id);
    return it == items.end() ? nullptr : it->second.get();
}

void TreeList::changed()
{
    // Filling a tree adds rows one by one: the rows are laid out once, when next asked for.
    dirty = true;
    Update();
}

void TreeList::repaint()
{
    rows->Update();
}

bool TreeList::passesFilter(TreeListItem const& item) const
{
    return kept.empty() || (item.id < kept.size() && kept[item.id]);
}

void TreeList::rebuild()
{
    dirty = false;
    kept.clear();
    bool const searching = !search.IsEmpty();
    if (searching || lineageOnly)
    {
        kept.assign(nextId, false);
        std::string const wanted = search.ToLower().CStr();
        // Children come after their parents in id order, so one pass from the highest id
        // down sees every child before its parent.
        for (auto it = items.rbegin(); it != items.rend(); ++it)
        {
            TreeListItem const& item = *it->second;
            bool keep = kept[item.id];
            if (searching)
                keep = keep ||
                       std::string(item.text.ToLower().CStr()).find(wanted) != std::string::npos;
            if (lineageOnly && item.selected)
                keep = true;
            if (keep)
            {
                kept[item.id] = true;
                if (item.parent)
                    kept[*item.parent] = true;
            }
        }
        if (lineageOnly)
        {
            // And the descendants of the selected rows.
            for (auto const& entry : items)
                if (descendsFromSelection(*entry.second))
                    kept[entry.first] = true;
        }
    }
    visibleRows.clear();
    std::vector<unsigned int> stack(topIds.rbegin(), topIds.rend());
    while (!stack.empty())
    {
        unsigned int const id = stack.back();
        stack.pop_back();
        TreeListItem const& item = *items[id];
        if (!passesFilter(item))
            continue;
        visibleRows.push_back(id);
        // A search shows its finds however the tree was folded.
        if (item.expanded || searching)
            stack.insert(stack.end(), item.children.rbegin(), item.children.rend());
    }
    int const height = std::max(1, static_cast<int>(visibleRows.size()) * RowHeight);
    int const width = scrollView->GetUsableWidth(true);
    rows->SetGeometry(rows->GetGeometry().left, rows->GetGeometry().top, width, height);
    scrollView->SetScrollViewSize(Size(width, height));
    scrollView->UpdateChildren();
    repaint();
}

bool TreeList::descendsFromSelection(TreeListItem const& item)
{
    for (checked_value<unsigned int> p = item.id; p; p = items[*p]->parent)
        if (items[*p]->selected)
            return true;
    return false;
}

std::vector<unsigned int> const& TreeList::GetVisibleRows()
{
    if (dirty)
        rebuild();
    return visibleRows;
}

void TreeList::onSetGeometry()
{
    scrollView->SetGeometry(0, 0, GetWidth(), GetHeight());
    rebuild();
}

void TreeList::SetExpanded(unsigned int id, bool expanded)
{
    if (TreeListItem* item = GetListItem(id))
    {
        item->expanded = expanded;
        rebuild();
    }
}

void TreeList::ExpandAll(bool expanded)
{
    for (auto& entry : items)
        entry.second->expanded = expanded;
    rebuild();
}

// ---- selection

void TreeList::SetSelection(std::vector<unsigned int> const& ids)
{
    for (auto& entry : items)
        entry.second->selected = false;
    for (unsigned int id : ids)
        if (TreeListItem* item = GetListItem(id))
            item->selected = true;
    if (lineageOnly)
        rebuild();
    repaint();
}

std::vector<unsigned int> TreeList::GetSelection() const
{
    std::vector<unsigned int> ids;
    for (auto const& entry : items)
        if (entry.second->selected)
            ids.push_back(entry.first);
    return ids;
}

void TreeList::RevealSelection()
{
    std::vector<unsigned int> const selection = GetSelection();
    for (unsigned int id : selection)
        for (checked_value<unsigned int> p = items[id]->parent; p; p = items[*p]->parent)
            items[*p]->expanded = true;
    rebuild();
    if (selection.empty())
        return;
    auto const it = std::find(visibleRows.begin(), visibleRows.end(), selection.front());
    if (it != visibleRows.end())
        ensureVisible(static_cast<unsigned int>(it - visibleRows.begin()));
}

void TreeList::ensureVisible(unsigned int row)
{
    scrollView->EnsureVisible(Rect::FromXYWH(0, static_cast<int>(row) * RowHeight, 1, RowHeight));
}

void TreeList::selectOnly(unsigned int id, bool notify)
{
    SetSelection({id});
    GetVisibleRows();
    auto const it = std::find(visibleRows.begin(), visibleRows.end(), id);
    if (it != visibleRows.end())
        ensureVisible(static_cast<unsigned int>(it - visibleRows.begin()));
    if (notify)
        signalSelectionChanged();
}

void TreeList::SelectNextItem()
{
    std::vector<unsigned int> const& shown = GetVisibleRows();
    if (shown.empty())
        return;
    auto it = std::find_if(shown.begin(), shown.end(),
                           [this](unsigned int id) { return items[id]->selected; });
    selectOnly(it == shown.end() ? shown.front() : *std::min(it + 1, shown.end() - 1), false);
}

void TreeList::SelectPreviousItem()
{
    std::vector<unsigned int> const& shown = GetVisibleRows();
    if (shown.empty())
        return;
    auto it = std::find_if(shown.begin(), shown.end(),
                           [this](unsigned int id) { return items[id]->selected; });
    selectOnly(it == shown.end() ? shown.back() : *(it == shown.begin() ? it : it - 1), false);
}

void TreeList::ShowChildrenOfSelection(bool on)
{
    lineageOnly = on;
    rebuild();
}

void TreeList::ShowItemsContainingString(String const& text)
{
    search = text;
    rebuild();
}

// ============================================================================================
// painting and input
// ============================================================================================

checked_value<unsigned int> TreeList::RowAt(Point const& point)
{
    std::vector<unsigned int> const& shown = GetVisibleRows();
    Point const inRows = point - rows->GetGlobalPos() + GetGlobalPos();
    if (inRows.y < 0)
        return {};
    unsigned int const row = static_cast<unsigned int>(inRows.y / RowHeight);
    if (row >= shown.size())
        return {};
    return shown[row];
}

void TreeList::paintRows(DrawContext* context, Rect const& clip)
{
    if (dirty)
        rebuild();
    unsigned char const alpha = GetTotalBaseAlpha();
    context->DrawBox(clip, DrawContext::Filled, Background, alpha);
    Font* font = GetCanvas()->GetFont(checked_value<unsigned int>());
    int const first = std::max(clip.top, 0) / RowHeight;
    int const last =
        std::min(static_cast<int>(visibleRows.size()) - 1, std::max(clip.bottom, 0) / RowHeight);
    rowsPainted = 0;
    for (int row = first; row <= last; ++row)
    {
        TreeListItem const& item = *items[visibleRows[row]];
        int const top = row * RowHeight;
        int const middle = top + RowHeight / 2;
        if (item.selected)
            context->DrawBox(Rect(0, rows->GetWidth() - 1, top, top + RowHeight - 1),
                             DrawContext::Filled, SelectionBackground, alpha);
        int const x = 4 + item.depth * Indent;
        if (!item.children.empty())
        {
            // A triangle pointing right when folded, down when open.
            for (int i = 0; i < 4; ++i)
            {
                if (item.expanded || !search.IsEmpty())
                    context->DrawLine(Point(x + i, middle - 2 + i),
                                      Point(x + 6 - i, middle - 2 + i), ExpanderColor, false,
                                      alpha);
                else
                    context->DrawLine(Point(x + i, middle - 3 + i), Point(x + i, middle + 3 - i),
                                      ExpanderColor, false, alpha);
            }
        }
        if (font)
        {
            Rect const drawn = context->DrawText(font, Rect(), Point(x + 12, middle), item.text,
                                                 item.color, alpha, HAlignLeft, VAlignCenter);
            if (!item.detail.IsEmpty())
                context->DrawText(font, Rect(), Point(x + 12 + drawn.Width() + 6, middle),
                                  item.detail, DetailColor, alpha, HAlignLeft, VAlignCenter);
        }
        ++rowsPainted;
    }
}

void TreeList::press(Point const& point, unsigned int flags, bool twice)
{
    SetFocus();
    std::vector<unsigned int> const& shown = GetVisibleRows();
    if (point.y < 0 || point.y / RowHeight >= static_cast<int>(shown.size()))
        return;
    TreeListItem& item = *items[shown[point.y / RowHeight]];
    int const x = 4 + item.depth * Indent;
    bool const onExpander = point.x >= x - 2 && point.x < x + 10;
    if (!item.children.empty() && (twice || onExpander))
    {
        SetExpanded(item.id, !item.expanded);
        return;
    }
    if (flags & (FlagCommand | FlagControl))
    {
        item.selected = !item.selected;
        if (lineageOnly)
            rebuild();
        repaint();
        signalSelectionChanged();
        return;
    }
    selectOnly(item.id, true);
}

bool TreeList::onKeyPress(unsigned int keyCode, unsigned int, bool)
{
    std::vector<unsigned int> const selection = GetSelection();
    switch (keyCode)
    {
    case 38:
        SelectPreviousItem();
        signalSelectionChanged();
        return true;
    case 40:
        SelectNextItem();
        signalSelectionChanged();
        return true;
    case 37:
    case 39:
    {
        if (selection.empty())
            return true;
        TreeListItem& item = *items[selection.front()];
        if (keyCode == 39 && !item.children.empty())
            SetExpanded(item.id, true);
        else if (keyCode == 37 && item.expanded && !item.children.empty())
            SetExpanded(item.id, false);
        else if (keyCode == 37 && item.parent)
        {
            selectOnly(*item.parent, true);
        }
        return true;
    }
    default:
        return false;
    }
}

bool TreeList::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    std::vector<unsigned int> const selection = GetSelection();
    reply->SetValue("selectedItem", selection.empty() ? "<no item selected>"
                                                      : items[selection.front()]->text.CStr());
    reply->SetValue("item", selection.empty() ? "" : String::Number(selection.front()).CStr());
    reply->SetValue("visibleRows",
                    String::Number(static_cast<unsigned int>(GetVisibleRows().size())).CStr());
    return true;
}

} // namespace UI
