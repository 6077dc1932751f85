// The window tree tool: the design frame's windows as a tree that shares the design's
// selection.

#include "Canvas/UI/WindowTree.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/Design.h"
#include "Canvas/UI/DesignAid.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Legend.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/TreeList.h"
#include "Canvas/UI/WindowFactory.h"
#include "TvBase/Controller/BoolParamConfigFile.h"

#include <algorithm>
#include <set>

namespace UI
{

namespace
{

int const Gap = 5;
int const RowHeight = 18;
int const CheckBoxSize = 14;

} // namespace

WindowTree::WindowTree(Frame* frame, DesignAid* designAid)
    : Window(frame, nullptr, String("WindowTree")), designAid(designAid)
{
    SetDynamicLayoutMode(DynamicLayoutNever);
    treeList = new TreeList(frame, this, String("TreeList"));
    treeList->signalSelectionChanged.Connect(&WindowTree::slotTreeSelectionChanged, this);

    legend = new Legend(frame, this, String("Legend"));
    legend->AddItem(0, String("Hidden"), COLOR_HIDDEN_WINDOW);
    legend->AddItem(1, String("Disabled"), COLOR_DISABLED_WINDOW);
    legend->AddItem(2, String("Created dynamically"), COLOR_DYNAMIC_WINDOW);
    legend->AddItem(3, String("Has Layout"), COLOR_LAYOUT_WINDOW);

    searchLabel = new Text(frame, this, String("Search Label"), String("Show items containing:"),
                           checked_value<unsigned int>(), HAlignLeft, 0xFF000000u);
    searchEdit = new SimpleEdit(frame, this, String("Search Edit"));
    searchEdit->signalTextEdited.Connect(&WindowTree::slotSearchTextEdited, this);

    Canvas* canvas = frame->GetCanvas();
    selectionOnly.reset(
        new Controller::BoolParamConfigFile(false, canvas ? canvas->GetConfigFile() : nullptr,
                                            String("WindowTreeShowSelectionOnly"), true));
    selectionOnlyCheckBox = new SimpleCheckBox(frame, this, String("Show Selection Only CheckBox"),
                                               selectionOnly.get());
    selectionOnlyCheckBox->SetLabel(String("Show lineage of selected windows only"));
    selectionOnly->valueChanged.Connect(&WindowTree::slotSelectionOnlyChanged, this);
    treeList->ShowChildrenOfSelection(selectionOnly->get());

    for (Window* w :
         std::vector<Window*>{treeList, legend, searchLabel, searchEdit, selectionOnlyCheckBox})
        w->SetDynamicLayoutMode(DynamicLayoutNever);

    designAid->signalSelectionChanged.Connect(&WindowTree::slotUpdateSelectedWindows, this);
    designAid->signalFrameChanged.Connect(&WindowTree::slotUpdateWindowTree, this);
    designAid->signalLayoutLoaded.Connect(&WindowTree::slotUpdateWindowTree, this);
    designAid->signalWindowDeleted.Connect(&WindowTree::slotUpdateWindowTree, this);
    designAid->signalTreeChanged.Connect(&WindowTree::slotUpdateWindowTree, this);
    // A window made by the window maker is a new row too.
    designAid->signalCreateFinished.Connect(&WindowTree::slotUpdateWindowTree, this);

    SetGeometry(0, 0, 380, 500);
    slotUpdateWindowTree();
}

WindowTree::~WindowTree() = default;

checked_value<unsigned int> WindowTree::RowColor(Window const* window)
{
    if (!window->IsVisible())
        return COLOR_HIDDEN_WINDOW;
    if (!window->IsEnabled())
        return COLOR_DISABLED_WINDOW;
    if (window->IsLayoutCreated())
        return COLOR_DYNAMIC_WINDOW;
    if (!window->GetLayoutName().IsEmpty())
        return COLOR_LAYOUT_WINDOW;
    return {};
}

checked_value<unsigned int> WindowTree::GetItem(Window* window) const
{
    auto const it = itemsByWindow.find(window);
    if (it == itemsByWindow.end())
        return {};
    return it->second;
}

// ============================================================================================
// building the tree
// ============================================================================================

void WindowTree::slotUpdateWindowTree()
{
    // Rows the user opened stay open across the rebuild.
    std::set<Window*> expanded;
    for (auto const& entry : windowsByItem)
        if (TreeListItem* item = treeList->GetListItem(entry.first))
            if (item->IsExpanded())
                expanded.insert(entry.second);

    treeList->ClearItems();
    itemsByWindow.clear();
    windowsByItem.clear();
    if (Frame* frame = designAid->GetDesignFrame())
        for (Window* window : frame->GetTopLevelWindows())
            addWindow(window, checked_value<unsigned int>());
    for (Window* window : expanded)
        if (checked_value<unsigned int> const item = GetItem(window))
            treeList->SetExpanded(*item, true);
    slotUpdateSelectedWindows();
}

void WindowTree::addWindow(Window* window, checked_value<unsigned int> const& parentItem)
{
    checked_value<unsigned int> const item = treeList->AddItem(parentItem, window->GetName());
    if (!item)
        return;
    itemsByWindow[window] = *item;
    windowsByItem[*item] = window;
    TreeListItem* row = treeList->GetListItem(*item);
    WindowFactory* factory = GetWindowFactory(GetCanvas());
    checked_value<String> const type =
        factory ? factory->GetTypeName(window) : checked_value<String>();
    row->SetDetail(type ? *type : window->GetWindowType());
    if (!window->GetLayoutName().IsEmpty())
        row->SetToolTip(String("Layout Key: %1").Arg(window->GetLayoutName()));
    if (checked_value<unsigned int> const color = RowColor(window))
        row->SetColor(*color);
    for (Window* child : window->child_windows())
        addWindow(child, item);
}

void WindowTree::OnWindowDestroy(Window* window)
{
    auto const it = itemsByWindow.find(window);
    if (it == itemsByWindow.end())
        return;
    windowsByItem.erase(it->second);
    itemsByWindow.erase(it);
}

// ============================================================================================
// the selection, both ways
// ============================================================================================

void WindowTree::slotUpdateSelectedWindows()
{
    std::vector<unsigned int> items;
    for (Window* window : designAid->GetSelectedWindows())
        if (checked_value<unsigned int> const item = GetItem(window))
            items.push_back(*item);
    showingSelection = true;
    treeList->SetSelection(items);
    treeList->RevealSelection();
    showingSelection = false;
}

void WindowTree::slotTreeSelectionChanged()
{
    if (showingSelection)
        return;
    Frame* frame = designAid->GetDesignFrame();
    Design* design = frame ? frame->GetDesign() : nullptr;
    if (!design)
        return;
    std::vector<Window*> windows;
    for (unsigned int id : treeList->GetSelection())
    {
        auto const it = windowsByItem.find(id);
        if (it != windowsByItem.end())
            windows.push_back(it->second);
    }
    design->SetSelectionTo(windows);
}

void WindowTree::SelectNextItem()
{
    treeList->SelectNextItem();
    slotTreeSelectionChanged();
}

void WindowTree::SelectPreviousItem()
{
    treeList->SelectPreviousItem();
    slotTreeSelectionChanged();
}

// ============================================================================================
// search and lineage
// ============================================================================================

void WindowTree::slotSearchTextEdited()
{
    treeList->ShowItemsContainingString(searchEdit->GetText());
}

void WindowTree::ShowChildrenOfSelection(bool on)
{
    if (selectionOnly->get() != on)
        selectionOnly->set(on);
    else
        treeList->ShowChildrenOfSelection(on);
}

void WindowTree::slotSelectionOnlyChanged(bool const& on)
{
    treeList->ShowChildrenOfSelection(on);
}

// ============================================================================================
// layout
// ============================================================================================

void WindowTree::onSetGeometry()
{
    int const width = GetWidth();
    int const inner = std::max(0, width - 2 * Gap);
    // From the bottom up: the legend, the check box, the search row; the tree takes the rest.
    int y = GetHeight() - Gap - RowHeight;
    legend->SetGeometry(Gap, y, inner, RowHeight);
    y -= Gap + CheckBoxSize;
    selectionOnlyCheckBox->SetGeometry(Gap, y, inner, CheckBoxSize);
    y -= Gap + RowHeight;
    int const labelWidth = searchLabel->GetWidth();
    searchLabel->Move(Gap, y + (RowHeight - searchLabel->GetHeight()) / 2);
    searchEdit->SetGeometry(Gap + labelWidth + 4, y, std::max(20, inner - labelWidth - 4),
                            RowHeight);
    treeList->SetGeometry(0, 0, width, std::max(0, y - Gap));
}

} // namespace UI
