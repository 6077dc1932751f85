// The Design Aid panel.
//
//   Construction
//   Layout
//   Selection display
//   Edits: pointer, geometry, resource override folder
//   Buttons and "More options..."
//   Visibility and the other tools

#include "Canvas/UI/DesignAid.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/Design.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/FileDialog.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "Canvas/UI/PixelZoom.h"
#include "Canvas/UI/PropertyEditor.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/WindowMaker.h"
#include "Canvas/UI/WindowTree.h"
#include "TvBase/Controller/BoolParamConfigFile.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>

namespace UI
{

char const* const DesignAid::GEOMETRY_EDIT_NAMES[4] = {
    "Geometry Edit X", "Geometry Edit Y", "Geometry Edit Width", "Geometry Edit Height"};
char const* const DesignAid::BUTTON_NAMES[4] = {"Edit Properties Button", "Save Layout Button",
                                                "Toggle Visibility Button", "More Options Button"};

namespace
{

char const* const GeometryLabels[4] = {"x", "y", "w", "h"};
char const* const ButtonCaptions[4] = {"Show/hide property editor (E)",
                                       "Save All layout files (shift+S)",
                                       "Show/hide design aid (H)", "More options..."};

char const* const SnapToolTip =
    "Double click in your UI to add a vertical guide.\nAlt+double click to add a horizontal "
    "guide. Click and drag to move guides.\nPress delete or backspace to delete the highlighted "
    "guide.\nTurn this option on to snap to guides when moving and resizing windows,\nand to "
    "snap guides to selected windows when moving guides.\nThis will also enable snapping to the "
    "edges and centers of selected windows\nwhen dragging a single selected window "
    "(cmd/ctrl+drag).";
char const* const ForceToolTip = "Forces live design mode to remain on while the checkbox is "
                                 "checked, so that caps lock can be turned off.";
char const* const SaveEnabledToolTip = "Save all the layout files to Override Folder";
char const* const SaveDisabledToolTip =
    "Set Resource Override Folder to specify where to save layout files";
String const MultipleValues("[...]");

// Rows under the pixel zoom.
int const Gap = 5;
int const RowHeight = 18;
int const CheckBoxSize = 14;
int const ButtonHeight = 20;
int const ButtonGap = 3;
int const ButtonWidth = 190;
int const GeometryEditWidth = 48;
int const PathEditWidth = 200;
int const PtrEditWidth = 120;

/// The Command key of the menu captions: Ctrl on this platform.
String commandCaption(char const* caption)
{
    // Arg appends to a text without a marker, so only captions that name the key take it.
    return std::strstr(caption, "%1") ? String(caption).Arg(String("Ctrl+")) : String(caption);
}

// The "More options..." entries, in menu order; an entry's id is its index here.
enum MoreOption
{
    OptDeselect,
    OptSelectParent,
    OptNextSibling,
    OptPreviousSibling,
    OptSelectChild,
    OptSelectionFrames,
    OptCenterGuides,
    OptEdgeGuides,
    OptCursorBeams,
    OptNoSelect,
    OptDelete,
    OptSeparator1,
    OptMakeWindow,
    OptSeparator2,
    OptReparent,
    OptSeparator3,
    OptFind,
    OptDump,
    OptWindowTree,
    OptSeparator4,
    OptAlignMin,
    OptAlignMax,
    OptSpace,
    OptSeparator5,
    OptUndo,
    OptRedo,
    OptABSelected,
    OptABAll,
    OptReload,
    OptSeparator6,
    OptTreeShowChildren,
    OptTreeHideChildren,
    OptTreePrevious,
    OptTreeNext,
    OptSeparator7,
    OptPaletteEditor,
    OptCount
};

char const* const MoreOptionCaptions[OptCount] = {
    "Deselect (%1D)",
    "Select parent (P)",
    "Select next sibling (N, tab)",
    "Select previous sibling (shift+N, shift+tab)",
    "Select child (C)",
    "Show selection frames (\\)",
    "Show guides at the centers of selected windows ([)",
    "Show guides at the edges of selected windows (])",
    "Show guides projecting from cursor (I)",
    "Toggle no-select state for selected windows (1)",
    "Delete selected windows and guides (delete)",
    nullptr,
    "Make new window (M)",
    nullptr,
    "Reparent selected windows (R)",
    nullptr,
    "Find window by name (F)",
    "Dump window tree to debug console (J)",
    "Show window tree tool (T)",
    nullptr,
    "Align objects to min X or Y (A)",
    "Align objects to max X or Y (shift+A)",
    "Space objects evenly (S)",
    nullptr,
    "Undo most recent geometry change (%1Z)",
    "Redo most recent geometry change (shift+%1Z)",
    "A/B selected windows between original and current geometries (B)",
    "A/B all windows between original and current geometries (%1B)",
    "Reload layout from layout file (%1L)",
    nullptr,
    "Show children of selected windows in Window Tree (+)",
    "Hide children of selected windows in Window Tree (-)",
    "Select previous window in Window Tree (9)",
    "Select next window in Window Tree (0)",
    nullptr,
    "Show palette editor (console: 'editpalette')",
};

} // namespace

// ============================================================================================
// Construction
// ============================================================================================

DesignAid::DesignAid(Frame* frame, Native::HostWindow* host)
    : Window(frame, nullptr, String("DesignAid")), host(host)
{
    Canvas* canvas = frame->GetCanvas();
    Util::ConfigFile* config = canvas ? canvas->GetConfigFile() : nullptr;
    snapToGuides.reset(
        new Controller::BoolParamConfigFile(true, config, String("DesignSnapToGuides"), true));
    propertyEditorVisible.reset(new Controller::BoolParamConfigFile(
        false, config, String("DesignAidPropertyEditorVisible"), true));
    SetDynamicLayoutMode(DynamicLayoutNever);

    readoutText = makeLabel(String("ObjectInfoText"), String(""));
    objectInfoText = makeLabel(String("Window Name Text"), String(""));
    windowPtrLabel = makeLabel(String("Window Ptr label"), String("&"));
    windowPtrEdit = makeEdit(String("Window ptr Edit"), 150);
    windowPtrEdit->signalTextEdited.Connect(&DesignAid::onWindowPtrEdited, this);

    pixelZoom = new PixelZoom(frame, this, config);
    pixelZoom->SetDynamicLayoutMode(DynamicLayoutNever);

    for (unsigned int i = 0; i < 4; ++i)
    {
        SimpleEdit* edit = makeEdit(String(GEOMETRY_EDIT_NAMES[i]), GeometryEditWidth);
        edit->SetFixedWidth(GeometryEditWidth);
        edit->signalTextEdited.Connect(&DesignAid::slotGeometryEdited, this);
        geometryEdits.push_back(edit);
        geometryLabels.push_back(
            makeLabel(String(GEOMETRY_EDIT_NAMES[i]) + String("Text"), String(GeometryLabels[i])));
    }

    snapCheckBox =
        new SimpleCheckBox(frame, this, String("Snap To Guides CheckBox"), snapToGuides.get());
    snapCheckBox->SetLabel(String("Snap to guides (G) [?]"));
    snapCheckBox->SetToolTipText(String(SnapToolTip));
    forceCheckBox = new SimpleCheckBox(frame, this, String("Force Design Enabled CheckBox"));
    forceCheckBox->SetLabel(String("Force design mode on (D) [?]"));
    forceCheckBox->SetToolTipText(String(ForceToolTip));
    for (CheckBox* box : {snapCheckBox, forceCheckBox})
    {
        box->SetDynamicLayoutMode(DynamicLayoutNever);
        // The box itself is 14 by 14; the width beyond it carries the caption beside it.
        box->SetFixedHeight(CheckBoxSize);
    }

    resourcePathLabel = makeLabel(String("Resource Path Label"), String("Resource Override Path"));
    resourcePathEdit = makeEdit(String("Resource Path Edit"), PathEditWidth);
    resourcePathEdit->SetToolTipText(String("Resource Folder"));
    if (canvas && config)
        resourcePathEdit->SetText(config->GetString(canvas->GetOverridePathKey(), String("")));
    resourcePathEdit->signalTextEdited.Connect(&DesignAid::onResourcePathEditedOrSet, this);
    resourceBrowseButton = makeButton(String("Resource Path Browse Button"), String("..."),
                                      String("Browse for Resource Override folder"));
    resourceBrowseButton->signalClicked.Connect(&DesignAid::onBrowseResourcePath, this);
    resourceClearButton = makeButton(String("Resource Path Clear Button"), String("Clear"),
                                     String("Clear Resource Override folder"));
    resourceClearButton->signalClicked.Connect(&DesignAid::onClearResourcePath, this);

    for (unsigned int i = 0; i < 4; ++i)
    {
        SimplePushButton* button =
            makeButton(String(BUTTON_NAMES[i]), String(ButtonCaptions[i]), String(""));
        button->SetFixedWidth(ButtonWidth);
        button->signalClicked.Connect(&DesignAid::slotButtonClicked, this, i);
        buttons.push_back(button);
    }

    frame->SetBackgroundColor(BackgroundColor);
    frame->SetDesignDisable(true);
    frame->SetDrawingEnabled(true);
    frame->SetTopLevelWindow(this);
    SetGeometry(0, 0, DefaultWidth, DefaultHeight);

    UpdateSelectionGeometry();
    signalSelectionChanged();
    setFocusOrder();
}

DesignAid::~DesignAid()
{
    // The tools' windows go while the panel they listen to is whole, and are no longer reported.
    windowMaker = nullptr;
    windowTree = nullptr;
    windowMakerHost.reset();
    windowTreeHost.reset();
}

Text* DesignAid::makeLabel(String const& name, String const& caption)
{
    Text* text = new Text(GetFrame(), this, name, caption, checked_value<unsigned int>(),
                          HAlignLeft, LabelColor);
    text->SetDynamicLayoutMode(DynamicLayoutNever);
    return text;
}

SimpleEdit* DesignAid::makeEdit(String const& name, int width)
{
    SimpleEdit* edit = new SimpleEdit(GetFrame(), this, name, String(""));
    edit->SetDynamicLayoutMode(DynamicLayoutNever);
    edit->SetGeometry(0, 0, width, RowHeight);
    return edit;
}

SimplePushButton* DesignAid::makeButton(String const& name, String const& caption,
                                        String const& toolTip)
{
    SimplePushButton* button = new SimplePushButton(GetFrame(), this, name, caption);
    button->SetDynamicLayoutMode(DynamicLayoutNever);
    button->SetGeometry(0, 0, 40, ButtonHeight);
    if (!toolTip.IsEmpty())
        button->SetToolTipText(toolTip);
    return button;
}

void DesignAid::setFocusOrder()
{
    std::vector<Window*> order;
    pixelZoom->AppendFocusOrder(order);
    order.insert(order.end(), geometryEdits.begin(), geometryEdits.end());
    order.push_back(snapCheckBox);
    order.push_back(forceCheckBox);
    order.insert(order.end(), buttons.begin(), buttons.end());
    GetFrame()->SetFocusOrder(order);
}

// ============================================================================================
// Layout
// ============================================================================================

void DesignAid::onSetGeometry()
{
    if (!pixelZoom)
        return;
    int const width = GetWidth();
    int const textHeight = std::max(objectInfoText->GetHeight(), 14);
    int const below = 4 + RowHeight + (Gap + RowHeight) + 2 * (Gap + CheckBoxSize) +
                      (Gap + RowHeight) + Gap + 4 * ButtonHeight + 3 * ButtonGap + Gap +
                      textHeight + Gap;
    int const zoomHeight = std::max(0, GetHeight() - below);
    pixelZoom->SetGeometry(0, 0, width, zoomHeight);

    // The name, "&" and the pointer field share a row.
    int y = zoomHeight + 4;
    int const nameWidth = std::max(0, width - Gap - 51 - 10 - 3 - PtrEditWidth - Gap);
    objectInfoText->SetGeometry(Gap, y + (RowHeight - objectInfoText->GetHeight()) / 2, nameWidth,
                                objectInfoText->GetHeight());
    int x = Gap + nameWidth + 51;
    windowPtrLabel->SetGeometry(x, y + (RowHeight - windowPtrLabel->GetHeight()) / 2, 10,
                                windowPtrLabel->GetHeight());
    windowPtrEdit->SetGeometry(x + 10 + 3, y, PtrEditWidth, RowHeight);

    // The geometry edits, each after its label.
    y += RowHeight + Gap;
    x = Gap;
    for (unsigned int i = 0; i < 4; ++i)
    {
        Text* label = geometryLabels[i];
        label->Move(x, y + (RowHeight - label->GetHeight()) / 2);
        x += label->GetWidth() + 2;
        geometryEdits[i]->SetGeometry(x, y, GeometryEditWidth, RowHeight);
        x += GeometryEditWidth + Gap;
    }

    y += RowHeight + Gap;
    snapCheckBox->SetGeometry(Gap, y, width - 2 * Gap, CheckBoxSize);
    y += CheckBoxSize + Gap;
    forceCheckBox->SetGeometry(Gap, y, width - 2 * Gap, CheckBoxSize);
    y += CheckBoxSize + Gap;

    // The override folder: label, field, "..." and "Clear" on one row, centred on the field.
    int const labelTop = y + (RowHeight - resourcePathLabel->GetHeight()) / 2;
    resourcePathLabel->Move(Gap, labelTop);
    x = Gap + resourcePathLabel->GetWidth() + 4;
    int const buttonsWidth = 24 + 4 + 40;
    int const pathWidth = std::max(20, std::min(PathEditWidth, width - x - 4 - buttonsWidth - 4));
    resourcePathEdit->SetGeometry(x, y, pathWidth, RowHeight);
    x += pathWidth + 4;
    resourceBrowseButton->SetGeometry(x, y, 24, RowHeight);
    x += 24 + 4;
    resourceClearButton->SetGeometry(x, y, 40, RowHeight);
    y += RowHeight + Gap;

    for (SimplePushButton* button : buttons)
    {
        button->SetGeometry(Gap, y, ButtonWidth, ButtonHeight);
        y += ButtonHeight + ButtonGap;
    }
    y += Gap - ButtonGap;
    readoutText->SetGeometry(Gap, y, std::max(0, width - 2 * Gap), readoutText->GetHeight());
}

// ============================================================================================
// Selection display
// ============================================================================================

Design* DesignAid::activeDesign() const
{
    Design* design = designFrame ? designFrame->GetDesign() : nullptr;
    return design && design->IsActive() ? design : nullptr;
}

void DesignAid::SetDesignFrame(Frame* frame)
{
    if (frame == designFrame)
        return;
    designFrame = frame;
    selectedWindows.clear();
    signalFrameChanged();
    UpdateSelectionGeometry();
}

void DesignAid::SetSelectedWindows(std::vector<Window*> windows)
{
    if (!windows.empty() && windows.front()->GetFrame() != designFrame)
    {
        designFrame = windows.front()->GetFrame();
        selectedWindows.clear();
        signalFrameChanged();
    }
    selectedWindows.swap(windows);
    UpdateSelectionGeometry();
    signalSelectionChanged();
}

void DesignAid::enableControls(bool enable)
{
    snapCheckBox->SetEnabled(enable);
    forceCheckBox->SetEnabled(enable);
    for (SimplePushButton* button : buttons)
        button->SetEnabled(enable);
    setSaveLayoutButtonState();
}

void DesignAid::clearEdits(bool enable)
{
    windowPtrEdit->SetText(String(""));
    windowPtrEdit->SetEnabled(enable);
    for (Edit* edit : geometryEdits)
    {
        edit->SetText(String(""));
        edit->SetEnabled(enable);
    }
}

void DesignAid::UpdateSelectionGeometry()
{
    updating = true;
    Design* design = activeDesign();
    if (selectedWindows.empty())
        showNoSelection(design);
    else
        showWindows();
    updating = false;
}

void DesignAid::showNoSelection(Design* design)
{
    bool const active = design != nullptr;
    enableControls(active);
    if (!active)
        readoutText->SetText(String(""));
    objectInfoText->SetText(active ? String("No selection")
                                   : String("No live design frame is active"));
    clearEdits(false);
    if (active)
        showGuides(design);
}

void DesignAid::showGuides(Design* design)
{
    std::vector<int> const vertical = design->GetSelectedGuides(0);
    std::vector<int> const horizontal = design->GetSelectedGuides(1);
    std::size_t const count = vertical.size() + horizontal.size();
    if (count == 0)
        return;
    String const axis = horizontal.empty() ? String("vertical ")
                        : vertical.empty() ? String("horizontal ")
                                           : String("");
    objectInfoText->SetText(
        count == 1
            ? String("One %1guide selected").Arg(axis)
            : String("%1 %2guides selected").Arg(static_cast<unsigned int>(count)).Arg(axis));
    geometryEdits[0]->SetEnabled(true);
    geometryEdits[1]->SetEnabled(true);
    if (!vertical.empty())
        geometryEdits[0]->SetText(String::Number(vertical.front()));
    if (!horizontal.empty())
        geometryEdits[1]->SetText(String::Number(horizontal.front()));
}

void DesignAid::showWindows()
{
    enableControls(true);
    for (Edit* edit : geometryEdits)
        edit->SetEnabled(true);
    windowPtrEdit->SetEnabled(true);

    if (selectedWindows.size() == 1)
    {
        Window* window = selectedWindows.front();
        Rect const& r = window->GetGeometry();
        objectInfoText->SetText(window->GetName());
        windowPtrEdit->SetText(String("0x%1").Arg(
            static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(window)), 16));
        int const values[4] = {r.left, r.top, r.Width(), r.Height()};
        for (unsigned int i = 0; i < 4; ++i)
            geometryEdits[i]->SetText(String::Number(values[i]));
        return;
    }

    objectInfoText->SetText(
        String("%1 windows selected").Arg(static_cast<unsigned int>(selectedWindows.size())));
    windowPtrEdit->SetText(String(""));
    int left = INT_MAX, top = INT_MAX;
    bool sameWidth = true, sameHeight = true;
    Rect const& first = selectedWindows.front()->GetGeometry();
    for (Window* window : selectedWindows)
    {
        Rect const& r = window->GetGeometry();
        left = std::min(left, r.left);
        top = std::min(top, r.top);
        sameWidth = sameWidth && r.Width() == first.Width();
        sameHeight = sameHeight && r.Height() == first.Height();
    }
    geometryEdits[0]->SetText(String::Number(left));
    geometryEdits[1]->SetText(String::Number(top));
    geometryEdits[2]->SetText(sameWidth ? String::Number(first.Width()) : MultipleValues);
    geometryEdits[2]->SetEnabled(sameWidth);
    geometryEdits[3]->SetText(sameHeight ? String::Number(first.Height()) : MultipleValues);
    geometryEdits[3]->SetEnabled(sameHeight);
}

void DesignAid::SetObjectInfoText(String const& text)
{
    readoutText->SetText(text);
}

void DesignAid::TellLayoutLoaded()
{
    signalLayoutLoaded();
}

// ============================================================================================
// Edits: pointer, geometry, resource override folder
// ============================================================================================

void DesignAid::onWindowPtrEdited()
{
    // The field can only be copied from: whatever was typed, it shows the pointer again.
    if (selectedWindows.size() == 1)
        windowPtrEdit->SetText(String("0x%1").Arg(
            static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(selectedWindows[0])),
            16));
    else
        windowPtrEdit->SetText(String(""));
}

void DesignAid::slotGeometryEdited()
{
    if (updating)
        return;
    checked_value<int> values[4];
    for (unsigned int i = 0; i < 4; ++i)
        values[i] = geometryEdits[i]->GetText().ToInt(10);

    Design* design = designFrame ? designFrame->GetDesign() : nullptr;
    if (design && !selectedWindows.empty())
    {
        int left = INT_MAX, top = INT_MAX;
        for (Window* window : selectedWindows)
        {
            left = std::min(left, window->GetGeometry().left);
            top = std::min(top, window->GetGeometry().top);
        }
        int const dx = values[0] ? *values[0] - left : 0;
        int const dy = values[1] ? *values[1] - top : 0;
        design->SaveUndoGeometries();
        for (Window* window : std::vector<Window*>(selectedWindows))
        {
            Rect const& r = window->GetGeometry();
            int const width = values[2] ? *values[2] : r.Width();
            int const height = values[3] ? *values[3] : r.Height();
            Point const topLeft(r.left + dx, r.top + dy);
            design->SetWindowGeometryAndClip(window, topLeft,
                                             Point(topLeft.x + width - 1, topLeft.y + height - 1),
                                             Design::DragMove);
        }
    }
    else if (design)
    {
        if (values[0])
            design->SetSelectedGuidePos(*values[0], 0);
        if (values[1])
            design->SetSelectedGuidePos(*values[1], 1);
    }
    UpdateSelectionGeometry();
}

void DesignAid::onResourcePathEditedOrSet()
{
    String const text = resourcePathEdit->GetText();
    if (text.IsEmpty())
        Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());
    else
        Util::ResourceManager::Get().SetOverridePath(FolderPath(text));
    Canvas* canvas = GetFrame()->GetCanvas();
    if (canvas && canvas->GetConfigFile())
        canvas->GetConfigFile()->SetString(canvas->GetOverridePathKey(), text);
    setSaveLayoutButtonState();
    signalResourcePathChanged();
}

bool DesignAid::askForFolder(String& path)
{
    return Native::FileDialog::OpenFolder(GetFrame(), String("Select Resource Directory"), path);
}

void DesignAid::onBrowseResourcePath()
{
    String path;
    if (!askForFolder(path) || path.IsEmpty())
        return;
    resourcePathEdit->SetText(path);
    onResourcePathEditedOrSet();
}

void DesignAid::onClearResourcePath()
{
    resourcePathEdit->SetText(String(""));
    Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());
    Canvas* canvas = GetFrame()->GetCanvas();
    if (canvas && canvas->GetConfigFile())
        canvas->GetConfigFile()->RemoveValue(canvas->GetOverridePathKey());
    setSaveLayoutButtonState();
    signalResourcePathChanged();
}

void DesignAid::setSaveLayoutButtonState()
{
    SimplePushButton* save = buttons[SaveLayoutButton];
    bool const enable = !resourcePathEdit->GetText().IsEmpty();
    save->SetEnabled(enable);
    save->SetToolTipText(String(enable ? SaveEnabledToolTip : SaveDisabledToolTip));
}

// ============================================================================================
// Buttons and "More options..."
// ============================================================================================

void DesignAid::slotButtonClicked(unsigned int index)
{
    switch (index)
    {
    case EditPropertiesButton:
        TogglePropertyEditorVisibility();
        break;
    case SaveLayoutButton:
        if (Design* design = designFrame ? designFrame->GetDesign() : nullptr)
            design->SaveToLayoutFile();
        break;
    case ToggleVisibilityButton:
        if (Design* design = designFrame ? designFrame->GetDesign() : nullptr)
            design->ToggleDesignAidVisibility();
        break;
    case MoreOptionsButton:
        showMoreOptionsMenu();
        break;
    default:
        break;
    }
}

int DesignAid::showPopupMenu(Native::PopupMenu& menu, Point const& screenPoint)
{
    return menu.Show(screenPoint);
}

void DesignAid::showMoreOptionsMenu()
{
    if (!designFrame)
        return;
    Native::PopupMenu menu;
    BuildMoreOptionsMenu(menu);
    int const id = showPopupMenu(menu, Native::PlatformSupportFactory::CursorLocation());
    // The menu ran a nested loop: the design frame may have gone meanwhile.
    if (id != Native::PopupMenu::None && designFrame)
        ExecuteMoreOption(id);
}

void DesignAid::BuildMoreOptionsMenu(Native::PopupMenu& menu)
{
    Design* design = designFrame ? designFrame->GetDesign() : nullptr;
    if (!design)
        return;
    std::vector<Window*> const& selected = design->GetSelectedWindows();
    bool const anySelection = !selected.empty() || !design->GetSelectedGuides(0).empty() ||
                              !design->GetSelectedGuides(1).empty();
    Window* first = selected.empty() ? nullptr : selected.front();
    bool const hasParent = first && first->GetParent();
    std::size_t const siblings = !first      ? 0
                                 : hasParent ? first->GetParent()->child_windows().size()
                                             : designFrame->GetTopLevelWindows().size();
    bool const allCreated =
        !selected.empty() && std::all_of(selected.begin(), selected.end(),
                                         [](Window* w) { return w->IsLayoutCreated(); });
    bool const several = selected.size() >= 2;
    bool const treeExists = windowTree != nullptr;

    for (int id = 0; id < OptCount; ++id)
    {
        if (!MoreOptionCaptions[id])
        {
            menu.AddSeparator();
            continue;
        }
        bool enabled = true;
        bool checked = false;
        switch (id)
        {
        case OptDeselect:
        case OptDelete:
            enabled = anySelection;
            break;
        case OptSelectParent:
            enabled = hasParent;
            break;
        case OptNextSibling:
        case OptPreviousSibling:
            enabled = siblings > 1;
            break;
        case OptSelectChild:
            enabled = first && !first->child_windows().empty();
            break;
        case OptSelectionFrames:
            checked = design->IsShowingSelectionFrames();
            break;
        case OptCenterGuides:
            checked = design->IsShowingCenterGuides();
            break;
        case OptEdgeGuides:
            checked = design->IsShowingEdgeGuides();
            break;
        case OptCursorBeams:
            checked = design->IsShowingCursorBeams();
            break;
        case OptReparent:
            enabled = allCreated;
            break;
        case OptAlignMin:
        case OptAlignMax:
        case OptSpace:
            enabled = several;
            break;
        case OptUndo:
            enabled = design->GetUndoDepth() > 0;
            break;
        case OptRedo:
            enabled = design->GetRedoDepth() > 0;
            break;
        case OptTreeShowChildren:
        case OptTreeHideChildren:
        case OptTreePrevious:
        case OptTreeNext:
            enabled = treeExists;
            break;
        default:
            break;
        }
        menu.AddItem(id, commandCaption(MoreOptionCaptions[id]), enabled, checked);
    }
}

void DesignAid::ExecuteMoreOption(int id)
{
    Design* design = designFrame ? designFrame->GetDesign() : nullptr;
    if (!design)
        return;
    switch (id)
    {
    case OptDeselect:
        design->Deselect();
        break;
    case OptSelectParent:
        design->SelectParent();
        break;
    case OptNextSibling:
        design->SelectNextSibling(true);
        break;
    case OptPreviousSibling:
        design->SelectNextSibling(false);
        break;
    case OptSelectChild:
        design->SelectChild();
        break;
    case OptSelectionFrames:
        design->ToggleSelectionFrames();
        break;
    case OptCenterGuides:
        design->ToggleCenterGuides();
        break;
    case OptEdgeGuides:
        design->ToggleEdgeGuides();
        break;
    case OptCursorBeams:
        design->ToggleCursorBeams();
        break;
    case OptNoSelect:
        design->ToggleNoSelectState();
        break;
    case OptDelete:
        design->DeleteSelectedWindows();
        design->DeleteSelectedGuides();
        break;
    case OptMakeWindow:
        ShowWindowMaker();
        break;
    case OptReparent:
        design->Reparent(std::vector<Window*>(design->GetSelectedWindows()));
        break;
    case OptFind:
        design->FindWindowByName();
        break;
    case OptDump:
        design->DumpWindowTree();
        break;
    case OptWindowTree:
        ShowWindowTree();
        break;
    case OptAlignMin:
        design->AlignObjects(false);
        break;
    case OptAlignMax:
        design->AlignObjects(true);
        break;
    case OptSpace:
        design->SpaceObjects();
        break;
    case OptUndo:
        design->UndoGeometryChange();
        break;
    case OptRedo:
        design->RedoGeometryChange();
        break;
    case OptABSelected:
        design->ABSelectedWindowGeometries();
        break;
    case OptABAll:
        design->ABAllWindowGeometries();
        break;
    case OptReload:
        design->ReloadLayout();
        break;
    case OptPaletteEditor:
        if (Canvas* canvas = designFrame->GetCanvas())
            canvas->ShowPaletteEditor(designFrame);
        break;
    case OptTreeShowChildren:
    case OptTreeHideChildren:
        if (windowTree)
            windowTree->ShowChildrenOfSelection(id == OptTreeShowChildren);
        break;
    case OptTreePrevious:
        if (windowTree)
            windowTree->SelectPreviousItem();
        break;
    case OptTreeNext:
        if (windowTree)
            windowTree->SelectNextItem();
        break;
    default:
        break;
    }
}

// ============================================================================================
// Visibility and the other tools
// ============================================================================================

void DesignAid::ShowHostWindow()
{
    if (!host)
        return;
    if (!hostCreated)
    {
        Native::HostWindowStyle style;
        style.utilityPanel = true;
        Rect const client = Rect::FromXYWH(DefaultX, DefaultY, DefaultWidth, DefaultHeight);
        Rect const window = Native::PlatformSupportFactory::ConvertClientToWindowRect(
            client, false, style, String("Design Aid"));
        host->SetMinClientSize(MinimumWidth, checked_value<int>());
        host->SetCaption(String("Design Aid"), false);
        Canvas* canvas = GetFrame()->GetCanvas();
        // Made with the canvas's design flag down, so that the panel never designs itself.
        bool const designEnabled = canvas && canvas->IsDesignEnabled();
        if (canvas)
            canvas->SetDesignEnabled(false);
        hostCreated = host->CreateSerialized(nullptr, nullptr, String("Design Aid"), window, false,
                                             false, style, false, true);
        if (canvas)
            canvas->SetDesignEnabled(designEnabled);
        if (!hostCreated)
            return;
        host->signalCloseRequest.Connect(&DesignAid::slotHostCloseRequest, this);
    }
    host->Show(false);

    // The zoom follows the first frame that is being designed.
    Frame* zoomFrame = nullptr;
    if (Canvas* canvas = GetFrame()->GetCanvas())
        for (Frame* frame : canvas->GetFrames())
            if (!frame->IsDesignDisable() && frame->GetDesign() && frame->GetDesign()->IsActive())
            {
                zoomFrame = frame;
                break;
            }
    pixelZoom->SetZoomFrame(zoomFrame);
    UpdateSelectionGeometry();
}

void DesignAid::slotHostCloseRequest()
{
    // The close box only hides the panel; it is made once per canvas.
    host->VetoClose();
    HideHostWindow();
}

void DesignAid::HideHostWindow()
{
    if (host && hostCreated)
        host->Hide();
    forceCheckBox->SetChecked(false);
}

void DesignAid::HideAll()
{
    HideHostWindow();
    hidePropertyEditor();
    for (Native::HostWindow* tool : {windowMakerHost.get(), windowTreeHost.get()})
        if (tool)
            tool->Hide();
}

bool DesignAid::IsHostWindowVisible() const
{
    return host && hostCreated && host->IsVisible();
}

void DesignAid::ToggleSnapToGuides()
{
    snapToGuides->set(!snapToGuides->get());
}

bool DesignAid::ShouldSnapToGuides() const
{
    return snapToGuides->get();
}

bool DesignAid::IsDesignForceEnabled() const
{
    return forceCheckBox->IsChecked();
}

void DesignAid::ToggleForceDesignEnable()
{
    forceCheckBox->SetChecked(!forceCheckBox->IsChecked());
}

void DesignAid::TogglePropertyEditorVisibility()
{
    propertyEditorVisible->set(!propertyEditorVisible->get());
    UpdatePropertyEditorVisibility();
}

void DesignAid::UpdatePropertyEditorVisibility()
{
    if (propertyEditorVisible->get())
        showPropertyEditor();
    else
        hidePropertyEditor();
}

void DesignAid::showPropertyEditor()
{
    if (!activeDesign())
        return;
    if (!propertyEditorHost)
    {
        // An ordinary window, so that the colour picker and the file dialogs it opens come up
        // above it; beside the panel until the user moves it.
        propertyEditorHost = makeToolHost(
            String("Property Editor Host Window"), String("Property Editor"),
            Rect::FromXYWH(DefaultX + DefaultWidth + 20, DefaultY, 360, 500),
            [](Frame* frame, DesignAid* aid) -> Window* { return new PropertyEditor(frame, aid); },
            false);
        if (!propertyEditorHost)
            return;
        propertyEditor =
            static_cast<PropertyEditor*>(propertyEditorHost->GetFrame()->GetTopLevelWindow());
        propertyEditorHost->SetMinClientSize(250, 200);
        propertyEditorHost->StartMasterUpdateTimer(33);
        propertyEditorHost->signalCloseRequest.Connect(&DesignAid::slotPropertyEditorCloseRequest,
                                                       this);
        signalSelectionChanged.Connect(&PropertyEditor::slotUpdateSelectedWindows, propertyEditor);
        signalFrameChanged.Connect(&PropertyEditor::slotUpdateSelectedWindows, propertyEditor);
        signalLayoutLoaded.Connect(&PropertyEditor::slotUpdateSelectedWindows, propertyEditor);
        signalTreeChanged.Connect(&PropertyEditor::updateParentTextAndButton, propertyEditor);
        signalResourcePathChanged.Connect(&PropertyEditor::slotResourceOverrideChanged,
                                          propertyEditor);
    }
    signalResourcePathChanged();
    propertyEditor->slotUpdateSelectedWindows();
    propertyEditorHost->Show(false);
    propertyEditorVisible->set(true);
}

void DesignAid::hidePropertyEditor()
{
    if (propertyEditorHost)
        propertyEditorHost->Hide();
}

void DesignAid::slotPropertyEditorCloseRequest()
{
    // The close box hides the editor (as it does every tool); remember that it is hidden.
    propertyEditorVisible->set(false);
}

bool DesignAid::IsPropertyEditorVisible() const
{
    return propertyEditorHost && propertyEditorHost->IsVisible();
}

std::unique_ptr<Native::HostWindow>
DesignAid::makeToolHost(String const& name, String const& caption, Rect const& client,
                        Window* (*make)(Frame*, DesignAid*), bool utilityPanel)
{
    Canvas* canvas = GetFrame()->GetCanvas();
    // Made with the canvas's design flag down, so that the tool never designs itself.
    bool const designEnabled = canvas && canvas->IsDesignEnabled();
    if (canvas)
        canvas->SetDesignEnabled(false);
    std::unique_ptr<Native::HostWindow> tool(Native::PlatformSupportFactory::CreateHostWindow(
        canvas, name, nullptr, canvas ? canvas->GetConfigFile() : nullptr));
    Frame* frame = tool ? tool->GetFrame() : nullptr;
    bool created = false;
    if (frame)
    {
        frame->SetBackgroundColor(BackgroundColor);
        frame->SetDesignDisable(true);
        frame->SetTopLevelWindow(make(frame, this));
        Native::HostWindowStyle style;
        style.utilityPanel = utilityPanel;
        style.resizable = true;
        style.systemButtons = true;
        Rect const window =
            Native::PlatformSupportFactory::ConvertClientToWindowRect(client, false, style, name);
        created = tool->CreateSerialized(nullptr, nullptr, name, window, false, false, style, false,
                                         true);
    }
    if (canvas)
        canvas->SetDesignEnabled(designEnabled);
    if (!created)
        return nullptr;
    tool->SetCaption(caption, false);
    Rect const made = tool->GetClientRect();
    if (!made.IsEmpty())
        frame->GetTopLevelWindow()->SetGeometry(0, 0, made.Width(), made.Height());
    frame->SetDrawingEnabled(true);
    // The close box only hides the tool; it is made once per canvas.
    Native::HostWindow* host = tool.get();
    host->signalCloseRequest.Connect(this, boost::function<void()>(
                                               [host]
                                               {
                                                   host->VetoClose();
                                                   host->Hide();
                                               }));
    return tool;
}

void DesignAid::ShowWindowMaker()
{
    if (!activeDesign())
        return;
    if (!windowMakerHost)
    {
        windowMakerHost = makeToolHost(
            String("Window Maker Host Window"), String("Window Maker"),
            Rect::FromXYWH(DefaultX + DefaultWidth + 20, DefaultY, 300, 400),
            [](Frame* frame, DesignAid* aid) -> Window* { return new WindowMaker(frame, aid); });
        if (!windowMakerHost)
            return;
        windowMaker = static_cast<WindowMaker*>(windowMakerHost->GetFrame()->GetTopLevelWindow());
    }
    windowMakerHost->Show(true);
}

void DesignAid::ShowWindowTree()
{
    if (!activeDesign())
        return;
    if (!windowTreeHost)
    {
        windowTreeHost = makeToolHost(
            String("Window Tree Host Window"), String("Window Tree"),
            Rect::FromXYWH(DefaultX + DefaultWidth + 340, DefaultY, 380, 500),
            [](Frame* frame, DesignAid* aid) -> Window* { return new WindowTree(frame, aid); });
        if (!windowTreeHost)
            return;
        windowTree = static_cast<WindowTree*>(windowTreeHost->GetFrame()->GetTopLevelWindow());
    }
    windowTreeHost->Show(true);
}

bool DesignAid::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                 TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    reply->SetValue("snap", ShouldSnapToGuides() ? "true" : "false");
    reply->SetValue("force", IsDesignForceEnabled() ? "true" : "false");
    reply->SetValue("saveToolTip", buttons[SaveLayoutButton]->GetToolTipText().CStr());
    reply->SetValue("shown", IsHostWindowVisible() ? "true" : "false");
    return true;
}

bool DesignAid::HandleKeyboardMessage(KeyboardMessage message, unsigned int key, char, unsigned int,
                                      bool)
{
    if (!IsHostWindowVisible())
        return false;
    if (message != KeyPress || key != 'F' || !Native::PlatformSupportFactory::IsAltPressed())
        return false;
    pixelZoom->ToggleFreeze();
    return true;
}

void DesignAid::OnFrameDestroy(Frame* frame)
{
    if (pixelZoom && pixelZoom->GetZoomFrame() == frame)
        pixelZoom->SetZoomFrame(nullptr);
    if (frame == designFrame)
    {
        designFrame = nullptr;
        selectedWindows.clear();
        signalFrameChanged();
        UpdateSelectionGeometry();
    }
}

void DesignAid::OnWindowDestroy(Window* window)
{
    // The tree's own windows die with it: only windows it may show are its business.
    if (windowTree && window->GetFrame() != windowTree->GetFrame() &&
        (window->IsBeingDestroyed() || window->GetFrame() != designFrame))
        windowTree->OnWindowDestroy(window);
    // Reparenting inside the designed frame reports here too; only a window that dies or
    // leaves the frame is dropped.
    if (window->GetFrame() == GetFrame() ||
        (!window->IsBeingDestroyed() && window->GetFrame() == designFrame))
        return;
    auto const end = std::remove(selectedWindows.begin(), selectedWindows.end(), window);
    if (end != selectedWindows.end())
        selectedWindows.erase(end, selectedWindows.end());
}

} // namespace UI
