#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/ScrubText.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/ScrollView.h"

#include <algorithm>

namespace UI
{

namespace
{

unsigned char const DimmedAlpha = 125;

bool isCommand(unsigned int flags)
{
    return (flags & (FlagCommand | FlagControl)) != 0;
}

/// A row's scrub text. A plain wheel over it scrolls the list, as over any other part of a row,
/// so that a list full of numbers can still be scrolled; Ctrl (fine) or Shift with the wheel
/// adjusts the number, when the list allows it at all.
class RowScrubText : public ScrubText
{
public:
    RowScrubText(Frame* frame, Window* parent, ListBox* list, Controller::FloatParam* param)
        : ScrubText(frame, parent, "Scrub Text", param), list(list)
    {
    }

    bool onMouseWheel(Point const& p, int delta, unsigned int flags) override
    {
        if (!list->SupportsCtrlShiftWheelAdjustments() ||
            !(isCommand(flags) || (flags & FlagShift)))
            return false;
        return ScrubText::onMouseWheel(p, delta, flags);
    }

private:
    ListBox* list;
};

} // namespace

ListBox::ListBox(Frame* frame, Window* parent, String const& name) : Window(frame, parent, name)
{
    init();
}

ListBox::ListBox(Frame* frame, Window* parent, String const& name, Colors const& colors)
    : Window(frame, parent, name), colors(colors)
{
    init();
}

ListBox::~ListBox()
{
    // The row windows die with the scroll view; forget them first.
    rowWindows.clear();
}

void ListBox::init()
{
    scrollView = new ScrollView(GetFrame(), this, "Scroll View", ScrollView::LayoutFree,
                                ScrollBarAlwaysOff, scrollBarMode);
    scrollView->SetBorderColor(colors.border);
    scrollView->signalScrolled.Connect(&ListBox::LayoutRows, this);
    SetGeometry(0, 0, StandardWidth, StandardHeight);
}

// ============================================================================================
// layout
// ============================================================================================

void ListBox::onSetGeometry()
{
    if (!scrollView)
        return;
    scrollView->SetGeometry(0, 0, GetWidth(), GetHeight());
    updateVirtualSize();
}

void ListBox::updateVirtualSize()
{
    // Two passes: the width left for the rows depends on whether the bar shows, and that on
    // the height of the rows.
    int const height = static_cast<int>(items.size()) * itemCellHeight;
    scrollView->SetScrollViewSize(Size(scrollView->GetUsableWidth(false), height));
    scrollView->SetScrollViewSize(Size(scrollView->GetUsableWidth(true), height));
    LayoutRows();
}

void ListBox::LayoutRows()
{
    if (!scrollView || IsBeingDestroyed())
        return;
    int const top = std::max(scrollView->GetScrollViewPos().y, 0);
    int const viewHeight = scrollView->GetUsableHeight(true);
    int const width = scrollView->GetUsableWidth(true);
    unsigned int const first = static_cast<unsigned int>(top / itemCellHeight);
    unsigned int const end = std::min<unsigned int>(
        static_cast<unsigned int>(items.size()),
        static_cast<unsigned int>((top + std::max(viewHeight, 0) + itemCellHeight - 1) /
                                  itemCellHeight));
    for (auto it = rowWindows.begin(); it != rowWindows.end();)
    {
        if (it->first < first || it->first >= end)
        {
            delete it->second;
            it = rowWindows.erase(it);
        }
        else
            ++it;
    }
    for (unsigned int index = first; index < end; ++index)
    {
        ListBoxItem*& row = rowWindows[index];
        bool const made = !row;
        if (made)
        {
            row = new ListBoxItem(GetFrame(), scrollView, this, index);
            // Below the scroll bars.
            row->Lower();
        }
        row->SetGeometry(0, static_cast<int>(index) * itemCellHeight - top, width, itemCellHeight);
        if (made)
            row->Refresh();
    }
}

void ListBox::dropRowWindows()
{
    for (auto const& entry : rowWindows)
        delete entry.second;
    rowWindows.clear();
}

void ListBox::refreshRow(unsigned int index)
{
    if (ListBoxItem* row = itemWindow(index))
        row->Refresh();
}

void ListBox::repaintRows()
{
    for (auto const& entry : rowWindows)
        entry.second->Refresh();
    Update();
}

ListBoxItem* ListBox::itemWindow(unsigned int index) const
{
    auto const it = rowWindows.find(index);
    return it == rowWindows.end() ? nullptr : it->second;
}

ListBoxItem* ListBox::GetListBoxItem(unsigned int index) const
{
    return itemWindow(index);
}

void ListBox::Draw(DrawContext* context)
{
    context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), DrawContext::Filled,
                     colors.background, GetTotalBaseAlpha());
    Window::Draw(context);
}

// ============================================================================================
// contents
// ============================================================================================

void ListBox::InsertItem(String const& text, checked_value<unsigned int> const& index)
{
    InsertItem(text, boost::shared_ptr<DIBits>(), index);
}

void ListBox::InsertItem(String const& text, boost::shared_ptr<DIBits> const& icon,
                         checked_value<unsigned int> const& index)
{
    ListBoxRow row;
    row.text = text;
    row.icon = icon;
    row.leftMargin = leftMargin;
    unsigned int const at =
        index && *index < items.size() ? *index : static_cast<unsigned int>(items.size());
    if (disableBelowCurrent)
        row.baseAlpha = current && at > *current ? DimmedAlpha : 255;
    items.insert(items.begin() + at, row);
    // Rows below the new one move down by one, and the current row and the anchor with them.
    if (current && *current >= at && at < items.size() - 1)
        current = *current + 1;
    if (anchor >= at && at < items.size() - 1)
        ++anchor;
    // Appending leaves the rows in view as they are; an insert above moves them all.
    if (at + 1 < items.size())
        dropRowWindows();
    updateVirtualSize();
    Update();
}

void ListBox::RemoveItem(unsigned int index)
{
    if (index >= items.size())
        return;
    items.erase(items.begin() + index);
    if (current && *current == index)
        current = checked_value<unsigned int>();
    else if (current && *current > index)
        current = *current - 1;
    if (anchor > index)
        --anchor;
    anchor = std::min<unsigned int>(anchor, items.empty() ? 0 : items.size() - 1);
    dropRowWindows();
    updateVirtualSize();
    Update();
}

void ListBox::Clear()
{
    items.clear();
    dropRowWindows();
    current = checked_value<unsigned int>();
    anchor = 0;
    scrollView->ScrollTo(Point());
    updateVirtualSize();
    Update();
}

String ListBox::GetItemText(unsigned int index) const
{
    return index < items.size() ? items[index].text : String("");
}

checked_value<unsigned int> ListBox::GetIndex(String const& text) const
{
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i].text == text)
            return static_cast<unsigned int>(i);
    return {};
}

// ---- rows

#define TV_LISTBOX_SET_ROW(field, value)                                                           \
    if (index >= items.size())                                                                     \
        return;                                                                                    \
    items[index].field = value;                                                                    \
    refreshRow(index);

void ListBox::SetItemText(unsigned int index, String const& text)
{
    TV_LISTBOX_SET_ROW(text, text)
}

void ListBox::SetItemIcon(unsigned int index, boost::shared_ptr<DIBits> const& icon)
{
    TV_LISTBOX_SET_ROW(icon, icon)
}

void ListBox::SetItemToolTip(unsigned int index, String const& text)
{
    TV_LISTBOX_SET_ROW(toolTip, text)
}

void ListBox::SetItemFont(unsigned int index, Font* font)
{
    TV_LISTBOX_SET_ROW(font, font)
}

void ListBox::SetItemSelected(unsigned int index, bool selected)
{
    TV_LISTBOX_SET_ROW(selected, selected)
}

void ListBox::SetItemHighlight(unsigned int index, bool highlight)
{
    TV_LISTBOX_SET_ROW(highlight, highlight)
}

void ListBox::SetItemLeftMargin(unsigned int index, int margin)
{
    TV_LISTBOX_SET_ROW(leftMargin, margin)
}

void ListBox::SetItemSwatchColor(unsigned int index, checked_value<unsigned int> const& color)
{
    TV_LISTBOX_SET_ROW(swatchColor, color)
}

void ListBox::SetItemIntValue(unsigned int index, checked_value<int> const& value)
{
    TV_LISTBOX_SET_ROW(intValue, value)
}

void ListBox::SetItemEdgeMargin(unsigned int index, int margin)
{
    TV_LISTBOX_SET_ROW(edgeMargin, margin)
}

#undef TV_LISTBOX_SET_ROW

void ListBox::SetLeftMargin(int margin)
{
    leftMargin = margin;
    for (ListBoxRow& row : items)
        row.leftMargin = margin;
    repaintRows();
}

void ListBox::SetItemControl(unsigned int index, ListBoxRow::ControlMaker const& maker, int width)
{
    if (index >= items.size())
        return;
    items[index].control = maker;
    items[index].controlWidth = maker ? width : 0;
    items[index].edgeMargin = maker ? width + 4 : 0;
    // A new maker makes a new control.
    if (itemWindow(index))
    {
        delete rowWindows[index];
        rowWindows.erase(index);
        LayoutRows();
    }
}

void ListBox::CreateCheckBox(unsigned int index, Controller::BoolParam* param)
{
    SetItemControl(
        index,
        [param](Frame* frame, Window* parent) -> Window*
        { return new SimpleCheckBox(frame, parent, "Checkbox", param); },
        16);
}

void ListBox::CreateScrubText(unsigned int index, Controller::FloatParam* param)
{
    SetItemControl(
        index,
        [this, param](Frame* frame, Window* parent) -> Window*
        { return new RowScrubText(frame, parent, this, param); },
        60);
}

// ============================================================================================
// selection
// ============================================================================================

void ListBox::updateAlphas()
{
    if (!disableBelowCurrent)
        return;
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].baseAlpha = current && i > *current ? DimmedAlpha : 255;
}

void ListBox::SetCurrent(unsigned int index, bool ensureVisible)
{
    if (index >= items.size())
        return;
    current = index;
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].selected = i == index;
    updateAlphas();
    if (ensureVisible)
        EnsureVisible(index);
    repaintRows();
}

void ListBox::SetCurrent(String const& text, bool ensureVisible)
{
    if (checked_value<unsigned int> const index = GetIndex(text))
        SetCurrent(*index, ensureVisible);
}

bool ListBox::IsSelected(unsigned int index) const
{
    return index < items.size() && items[index].selected;
}

void ListBox::SetSelected(unsigned int index, bool selected, bool makeCurrent, bool ensureVisible)
{
    if (index >= items.size())
        return;
    items[index].selected = selected;
    if (makeCurrent)
    {
        current = index;
        anchor = index;
        updateAlphas();
    }
    if (ensureVisible)
        EnsureVisible(index);
    repaintRows();
}

void ListBox::ClearSelection()
{
    for (ListBoxRow& row : items)
        row.selected = false;
    repaintRows();
}

std::vector<unsigned int> ListBox::GetSelectedItems() const
{
    std::vector<unsigned int> selected;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i].selected)
            selected.push_back(static_cast<unsigned int>(i));
    return selected;
}

checked_value<unsigned int> ListBox::GetSelectedIndex() const
{
    if (current && IsSelected(*current))
        return current;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i].selected)
            return static_cast<unsigned int>(i);
    return {};
}

void ListBox::EnsureVisible(unsigned int index)
{
    if (index >= items.size())
        return;
    scrollView->EnsureVisible(
        Rect::FromXYWH(0, static_cast<int>(index) * itemCellHeight, 1, itemCellHeight));
    LayoutRows();
}

void ListBox::selectRange(unsigned int from, unsigned int to)
{
    unsigned int const low = std::min(from, to);
    unsigned int const high = std::max(from, to);
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].selected = i >= low && i <= high;
}

// ============================================================================================
// other settings
// ============================================================================================

void ListBox::SetColors(Colors const& newColors)
{
    colors = newColors;
    scrollView->SetBorderColor(colors.border);
    repaintRows();
}

void ListBox::SetBorderColor(unsigned int color)
{
    colors.border = color;
    scrollView->SetBorderColor(color);
}

void ListBox::SetScrollBarMode(ScrollBarMode mode)
{
    scrollBarMode = mode;
    scrollView->SetVerticalScrollBarMode(mode);
    updateVirtualSize();
}

bool ListBox::IsScrollBarVisible() const
{
    ScrollBar* bar = scrollView->GetVerticalScrollBar();
    return bar && bar->IsVisible();
}

void ListBox::SetDisableBelowCurrent(bool on)
{
    disableBelowCurrent = on;
    if (on)
        updateAlphas();
    else
        for (ListBoxRow& row : items)
            row.baseAlpha = 255;
    repaintRows();
}

void ListBox::SetPressSignals(bool shift, bool alt)
{
    shiftSignal = shift;
    altSignal = alt;
}

void ListBox::SetItemCellHeight(int height)
{
    itemCellHeight = std::max(height, 1);
    dropRowWindows();
    updateVirtualSize();
    Update();
}

void ListBox::SetIllegalCharacters(std::vector<char> const& characters)
{
    illegalCharacters = characters;
}

void ListBox::onEnableChange()
{
    repaintRows();
}

// ============================================================================================
// input
// ============================================================================================

checked_value<unsigned int> ListBox::RowAt(Point const& point) const
{
    Rect const view = scrollView->GetGeometry();
    Point const inView = point - view.TopLeft();
    if (!Rect(0, scrollView->GetUsableWidth(true) - 1, 0, scrollView->GetUsableHeight(true) - 1)
             .Contains(inView))
        return {};
    int const y = inView.y + scrollView->GetScrollViewPos().y;
    if (y < 0)
        return {};
    unsigned int const index = static_cast<unsigned int>(y / itemCellHeight);
    if (index >= items.size())
        return {};
    return index;
}

bool ListBox::onMousePress(Point const& point, unsigned int flags)
{
    if (items.empty())
        return false;
    SetFocus();
    if (shiftSignal && (flags & FlagShift))
    {
        signalShiftPress();
        return true;
    }
    if (altSignal && Native::PlatformSupportFactory::IsAltPressed())
    {
        signalAltPress();
        return true;
    }
    if (noSelection)
        return true;
    checked_value<unsigned int> const hit = RowAt(point);
    if (hit)
        signalRowPressed(*hit);
    if (multipleSelection && isCommand(flags))
    {
        if (hit)
        {
            items[*hit].selected = !items[*hit].selected;
            current = *hit;
            anchor = *hit;
            updateAlphas();
            EnsureVisible(*hit);
            repaintRows();
            signalSelectionChanged(*hit);
            return true;
        }
        repaintRows();
        return true;
    }
    if (multipleSelection && (flags & FlagShift))
    {
        if (hit)
        {
            selectRange(anchor, *hit);
            current = *hit;
            updateAlphas();
            EnsureVisible(*hit);
            repaintRows();
            signalSelectionChanged(*hit);
        }
        return true;
    }
    if (!hit)
    {
        Update();
        return true;
    }
    if (current && *current == *hit && IsSelected(*hit) && !announceEveryPress)
    {
        repaintRows();
        return true;
    }
    SetCurrent(*hit, false);
    anchor = *hit;
    EnsureVisible(*hit);
    signalSelectionChanged(*hit);
    return true;
}

bool ListBox::onMouseMove(Point const& point, unsigned int flags)
{
    if (!currentOnItemDrag || noSelection || !(flags & FlagLeftButton))
        return false;
    checked_value<unsigned int> const hit = RowAt(point);
    if (hit && (!current || *current != *hit))
    {
        SetCurrent(*hit, true);
        anchor = *hit;
        signalSelectionChanged(*hit);
    }
    return true;
}

bool ListBox::onMouseWheel(Point const& point, int delta, unsigned int flags)
{
    return scrollView->onMouseWheel(point - scrollView->GetGeometry().TopLeft(), delta, flags);
}

bool ListBox::onKeyPress(unsigned int keyCode, unsigned int flags, bool)
{
    if (items.empty() || keyCode < 33 || keyCode > 40)
        return false;
    int const pageRows = GetHeight() / itemCellHeight;
    int const last = static_cast<int>(items.size()) - 1;
    int const scrollY = scrollView->GetScrollViewPos().y;
    int step = 0;
    switch (keyCode)
    {
    case 33:
        step = -pageRows;
        break;
    case 34:
        step = pageRows;
        break;
    case 35:
        step = current ? last - static_cast<int>(*current)
                       : (scrollView->GetScrollViewPosRange().y - scrollY) / itemCellHeight;
        break;
    case 36:
        step = current ? -static_cast<int>(*current) : -scrollY / itemCellHeight;
        break;
    case 37:
    case 38:
        step = -1;
        break;
    default:
        step = 1;
        break;
    }
    if (noSelection)
    {
        scrollView->ScrollBy(0, step * itemCellHeight);
        LayoutRows();
        return true;
    }
    if (!current)
        return true;
    unsigned int const next =
        static_cast<unsigned int>(std::max(0, std::min(last, static_cast<int>(*current) + step)));
    if (!multipleSelection || !(flags & FlagShift))
    {
        SetCurrent(next, true);
        anchor = next;
    }
    else
    {
        selectRange(anchor, next);
        current = next;
        updateAlphas();
        EnsureVisible(next);
        repaintRows();
    }
    signalSelectionChanged(next);
    return true;
}

bool ListBox::EditItem(checked_value<unsigned int> const& index)
{
    checked_value<unsigned int> const row = index ? index : current;
    if (!row || *row >= items.size())
        return false;
    EnsureVisible(*row);
    Update();
    ListBoxItem* window = itemWindow(*row);
    if (!window)
        return false;
    // The editor takes a list of allowed bytes: every printable one but the illegal ones.
    std::vector<char> allowed;
    if (!illegalCharacters.empty())
        for (int c = 32; c < 256; ++c)
            if (c != 127 && std::find(illegalCharacters.begin(), illegalCharacters.end(),
                                      static_cast<char>(c)) == illegalCharacters.end())
                allowed.push_back(static_cast<char>(c));
    Point const centre =
        window->GetGlobalPos() + Point(window->GetWidth() / 2, window->GetHeight() / 2);
    String text = items[*row].text;
    if (!Native::PlatformSupportFactory::ExecuteInlineEdit(
            GetFrame(), centre, text, window->GetWidth(), allowed, false, UI::HAlignLeft))
        return false;
    SetItemText(*row, text);
    signalItemEdited(*row);
    return true;
}

bool ListBox::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                               TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    checked_value<unsigned int> const selected = GetSelectedIndex();
    reply->SetValue("selectedItem", selected ? items[*selected].text.CStr() : "<no item selected>");
    reply->SetValue("item", selected ? String::Number(static_cast<int>(*selected)).CStr() : "");
    reply->SetValue("itemCount", String::Number(static_cast<int>(items.size())).CStr());
    String list;
    for (unsigned int index : GetSelectedItems())
        list += (list.IsEmpty() ? String() : String(",")) + String::Number(static_cast<int>(index));
    reply->SetValue("selectedItems", list.CStr());
    return true;
}

} // namespace UI
