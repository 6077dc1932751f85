#pragma once

#include "Canvas/UI/Window.h"

#include <map>
#include <memory>
#include <vector>

namespace Controller
{
class BoolParamConfigFile;
}

namespace UI
{

class CheckBox;
class DesignAid;
class Legend;
class SimpleEdit;
class Text;
class TreeList;

/// The window tree tool ("WindowTree", in "Window Tree Host Window"): the windows of the Design
/// Aid's design frame as a tree of names, coloured by state, with a search field and a lineage
/// filter. Its selection and the design's are kept equal both ways: a selection made in the
/// tree goes to the design, and the design's selection is shown in the tree.
///
/// Made by the Design Aid on first need, on a design-disabled frame that owns it. Holds bare
/// pointers to windows of the design frame; the Design Aid tells it of every window that dies
/// (`OnWindowDestroy`), so none dangles. Main thread only.
class WindowTree : public Window
{
public:
    // Row colours; the first test that holds picks the colour, in this order.
    static constexpr unsigned int COLOR_HIDDEN_WINDOW = 0xFF777777u;
    static constexpr unsigned int COLOR_DISABLED_WINDOW = 0xFFBB0000u;
    static constexpr unsigned int COLOR_DYNAMIC_WINDOW = 0xFF0000BBu;
    static constexpr unsigned int COLOR_LAYOUT_WINDOW = 0xFF00BB00u;

    WindowTree(Frame* frame, DesignAid* designAid);
    ~WindowTree() override;

    /// The colour of `window`'s row; not present for the default colour.
    static checked_value<unsigned int> RowColor(Window const* window);

    /// Shows only the lineage of the selection (on) or the whole tree; the check box follows.
    void ShowChildrenOfSelection(bool on);
    /// Move the tree's selection one visible row on, and the design's with it.
    void SelectNextItem();
    void SelectPreviousItem();

    void slotSearchTextEdited();
    /// Shows the design's selection in the tree; windows that aren't in it are skipped.
    void slotUpdateSelectedWindows();
    /// Rebuilds the tree from the design frame, then shows the selection.
    void slotUpdateWindowTree();

    /// Told by the Design Aid when a window of the design frame dies.
    void OnWindowDestroy(Window* window);

    TreeList* GetTreeList() const { return treeList; }
    Legend* GetLegend() const { return legend; }
    CheckBox* GetSelectionOnlyCheckBox() const { return selectionOnlyCheckBox; }
    SimpleEdit* GetSearchEdit() const { return searchEdit; }
    /// The row of `window`; not present when it has none.
    checked_value<unsigned int> GetItem(Window* window) const;

    void onSetGeometry() override;
    String GetWindowType() const override { return String("WindowTree"); }

private:
    void addWindow(Window* window, checked_value<unsigned int> const& parentItem);
    /// The tree's selection goes to the design.
    void slotTreeSelectionChanged();
    void slotSelectionOnlyChanged(bool const& on);

    DesignAid* designAid;
    TreeList* treeList;
    Legend* legend;
    Text* searchLabel;
    SimpleEdit* searchEdit;
    CheckBox* selectionOnlyCheckBox;
    std::unique_ptr<Controller::BoolParamConfigFile> selectionOnly;
    std::map<Window*, unsigned int> itemsByWindow;
    std::map<unsigned int, Window*> windowsByItem;
    /// Set while the design's selection is shown, so that it isn't sent back.
    bool showingSelection = false;
};

} // namespace UI
