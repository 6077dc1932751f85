// The property editor of live design.
//
//   Construction
//   The windows being edited
//   Rows
//   Colours, key paths and images
//   The layout section
//   Layout and focus

#include "Canvas/UI/PropertyEditor.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/ColorConversion.h"
#include "Canvas/UI/ColorPicker.h"
#include "Canvas/UI/ComboBox.h"
#include "Canvas/UI/Design.h"
#include "Canvas/UI/DesignAid.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/FileDialog.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
#include "TvBase/Controller/KeyValueCoding.h"
#include "TvBase/Util/Exception.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/PropertySerializer.h"
#include "TvBase/Util/ResourceManager.h"

#include <algorithm>
#include <iterator>

namespace UI
{

namespace
{

String const Differs("--");
unsigned int const LabelColor = 0xFF000000u;
int const Gap = 5;
int const GroupGap = 10;
int const RowHeight = 18;
int const RowGap = 4;
int const SmallButtonWidth = 24;
int const LayoutButtonWidth = 90;

char const* const SaveModeTexts[5] = {"Save", "Save with root geometry", "Save children separately",
                                      "Save children only", "No save"};
char const* const SaveModeToolTips[5] = {
    "This window serializes the geometry of all its children to a layout file.",
    ("This window serializes its own geometry and the geometry of all its children to a layout "
     "file."),
    "This window serializes its children's geometries to a different layout file than its own.",
    "This window serializes its children's geometries, but not its own.",
    "This window never serializes its geometry."};

char const* const NoOverrideFolderToolTip =
    "Set Resource Override Folder to specify where to save layout files";
char const* const MultipleWindowsToolTip = "Cannot Save layout with multiple windows selected";

String rowName(char const* format, unsigned int row)
{
    return String(format).Arg(row);
}

/// The override folder as text without a trailing separator; empty when none is set.
String overrideFolder()
{
    checked_value<FolderPath> const& path = Util::ResourceManager::Get().GetOverridePath();
    if (!path || (*path).IsEmpty())
        return String("");
    String text = (*path).ToString();
    while (text.Length() > 1 && text.EndsWith(String("/")))
        text.Truncate(text.Length() - 1);
    return text;
}

/// `path` without the folder `root` and its separator in front; as it stands when it lies
/// elsewhere.
String relativeTo(String const& path, String const& root)
{
    if (root.IsEmpty() || !path.BeginsWith(root + "/"))
        return path;
    return path.Mid(root.Length() + 1);
}

} // namespace

// ============================================================================================
// Construction
// ============================================================================================

PropertyEditor::PropertyEditor(Frame* frame, DesignAid* aid)
    : Window(frame, nullptr, String("PropertyEditor")), aid(aid)
{
    SetDynamicLayoutMode(DynamicLayoutNever);
    selectedWindowText = makeText(String("Selected Window Text"), String(""));
    selectedWindowsComboBox = new ComboBox(frame, this, String("Selected Windows ComboBox"));
    selectedWindowsComboBox->SetDynamicLayoutMode(DynamicLayoutNever);
    selectedWindowsComboBox->signalItemSelected.Connect(&PropertyEditor::slotSelectedWindowChosen,
                                                        this);
    dynamicLayoutText = makeText(String("Dynamic Layout Text"), String(""));
    layoutEditText = makeText(String("Layout Edit Text"), String("Layout Key"));
    layoutKeyEdit = new SimpleEdit(frame, this, String("Layout Key Edit"), String(""));
    layoutKeyEdit->SetDynamicLayoutMode(DynamicLayoutNever);
    layoutKeyEdit->SetToolTipText(String("Layout File name"));
    layoutKeyEdit->signalTextEdited.Connect(&PropertyEditor::onLayoutKeyEdited, this);
    layoutBrowseButton =
        makeButton(String("Layout Browse Button"), String("..."), String("Browse for Layout File"));
    layoutBrowseButton->signalClicked.Connect(&PropertyEditor::browseLayoutFilePath, this);
    loadLayoutButton = makeButton(String("Load Layout Button"), String("Load Layout"),
                                  String("Reload this and child layouts"));
    loadLayoutButton->signalClicked.Connect(&PropertyEditor::reloadLayout, this);
    saveLayoutButton =
        makeButton(String("Save Layout Button"), String("Save Layout"), String("Save all layouts"));
    saveLayoutButton->signalClicked.Connect(&PropertyEditor::saveLayout, this);
    parentText = makeText(String("Parent Text"), String(""));
    reparentButton = makeButton(String("Reparent Button"), String("Reparent"), String(""));
    reparentButton->signalClicked.Connect(&PropertyEditor::reparentButtonClicked, this);
    noEditablePropertiesText =
        makeText(String("No Editable Properties Text"), String("(No editable properties)"));

    rows.resize(MaxRows);
    for (unsigned int i = 0; i < MaxRows; ++i)
    {
        Row& row = rows[i];
        row.label = makeText(rowName("Property Edit Label %1", i), String(""));
        row.edit = new SimpleEdit(frame, this, rowName("Property Edit %1", i), String(""));
        row.edit->SetDynamicLayoutMode(DynamicLayoutNever);
        row.edit->signalTextEdited.Connect(&PropertyEditor::slotRowEdited, this, i);
        row.comboBox = new ComboBox(frame, this, rowName("Property ComboBox %1", i));
        row.comboBox->SetDynamicLayoutMode(DynamicLayoutNever);
        row.comboBox->signalItemSelected.Connect(this, [this, i](unsigned int item)
                                                 { slotRowItemSelected(i, item); });
        row.swatch = makeButton(rowName("Color Swatch %1", i), String(""), String(""));
        row.swatch->signalClicked.Connect(&PropertyEditor::showColorPicker, this, i);
        row.kvcButton = makeButton(rowName("KVC Menu Button %1", i), String(">"), String(""));
        row.kvcButton->signalClicked.Connect(&PropertyEditor::showKVCMenu, this, i);
        row.browse = makeButton(rowName("Resource Browse Button %1", i), String("..."), String(""));
        row.browse->signalClicked.Connect(&PropertyEditor::browseImageResourcePath, this, i);
        row.comboBox->Hide();
        row.swatch->Hide();
        row.kvcButton->Hide();
        row.browse->Hide();
    }

    frame->SetDesignDisable(true);
    frame->SetBackgroundColor(DesignAid::BackgroundColor);
    frame->SetDrawingEnabled(true);
    frame->SetTopLevelWindow(this);
    SetGeometry(0, 0, 360, 500);
    slotUpdateSelectedWindows();
}

PropertyEditor::~PropertyEditor() = default;

Text* PropertyEditor::makeText(String const& name, String const& caption)
{
    Text* text = new Text(GetFrame(), this, name, caption, checked_value<unsigned int>(),
                          HAlignLeft, LabelColor);
    text->SetDynamicLayoutMode(DynamicLayoutNever);
    return text;
}

SimplePushButton* PropertyEditor::makeButton(String const& name, String const& caption,
                                             String const& toolTip)
{
    SimplePushButton* button = new SimplePushButton(GetFrame(), this, name, caption);
    button->SetDynamicLayoutMode(DynamicLayoutNever);
    button->SetGeometry(0, 0, SmallButtonWidth, RowHeight);
    if (!toolTip.IsEmpty())
        button->SetToolTipText(toolTip);
    return button;
}

// ============================================================================================
// The windows being edited
// ============================================================================================

void PropertyEditor::slotUpdateSelectedWindows()
{
    SetSelectedWindows(aid ? aid->GetSelectedWindows() : selectedWindows);
}

void PropertyEditor::SetSelectedWindows(std::vector<Window*> const& windows)
{
    // Only a Design Aid-less editor keeps its own copy; otherwise the Design Aid's list, which
    // loses dying windows, is read each time.
    if (!aid)
        selectedWindows = windows;
    // The same selection told again keeps the window chosen in the combo box.
    checked_value<unsigned int> const chosen = windows == shownSelection
                                                   ? selectedWindowsComboBox->GetSelectedItem()
                                                   : checked_value<unsigned int>();
    shownSelection = windows;
    updating = true;
    if (windows.size() > 1)
    {
        std::vector<String> items;
        items.push_back(
            String("All selected windows (%1)").Arg(static_cast<unsigned int>(windows.size())));
        for (Window* window : windows)
            items.push_back(window->GetName());
        selectedWindowsComboBox->SetItems(items);
        selectedWindowsComboBox->SetSelectedItem(chosen ? *chosen : 0u);
        selectedWindowsComboBox->Show();
        selectedWindowText->Hide();
    }
    else
    {
        selectedWindowsComboBox->SetItems(std::vector<String>());
        selectedWindowsComboBox->Hide();
        selectedWindowText->SetText(windows.empty() ? String("No windows selected")
                                                    : windows.front()->GetName());
        selectedWindowText->Show();
    }
    updating = false;
    updateParentTextAndButton();
    updateVisibleProperties();
}

std::vector<Window*> PropertyEditor::getEditWindows() const
{
    std::vector<Window*> const& all = aid ? aid->GetSelectedWindows() : selectedWindows;
    checked_value<unsigned int> const chosen = selectedWindowsComboBox->GetSelectedItem();
    // The combo's first entry stands for all of them; entry i + 1 for window i.
    if (all.size() > 1 && chosen && *chosen > 0 && *chosen <= all.size() &&
        selectedWindowsComboBox->GetItems().size() == all.size() + 1)
        return std::vector<Window*>(1, all[*chosen - 1]);
    return all;
}

void PropertyEditor::slotSelectedWindowChosen(unsigned int)
{
    if (updating)
        return;
    updateParentTextAndButton();
    updateVisibleProperties();
}

bool PropertyEditor::editWindowsChanged(std::vector<Window*> const& before) const
{
    return getEditWindows() != before;
}

PropertyEditor::PropertyMap PropertyEditor::getInfoForEditableProperties() const
{
    PropertyMap result;
    Canvas* canvas = GetCanvas();
    Util::PropertySerializer const* serializer = canvas ? canvas->GetPropertySerializer() : nullptr;
    std::vector<Window*> const windows = getEditWindows();
    if (!serializer || windows.empty())
        return result;

    bool first = true;
    for (Window* window : windows)
    {
        PropertyMap mine;
        for (auto const& property : window->GetProperties())
        {
            // Editable: its type has a writer that gives text.
            String name, type, text;
            serializer->Save(property, name, type, text);
            if (name.IsEmpty())
                continue;
            PropertyInfo& info = mine[name];
            info.typeName = property.second.semanticType ? *property.second.semanticType : type;
            info.value = text;
            if (std::vector<String> const* values = serializer->GetEnumNames(type))
                info.enumValues = *values;
        }
        if (first)
        {
            result.swap(mine);
            first = false;
            continue;
        }
        // Only what every window has stays; a differing text becomes "--".
        for (auto it = result.begin(); it != result.end();)
        {
            auto other = mine.find(it->first);
            if (other == mine.end() || other->second.typeName != it->second.typeName)
            {
                it = result.erase(it);
                continue;
            }
            if (other->second.value != it->second.value)
                it->second.value = Differs;
            ++it;
        }
    }
    return result;
}

// ============================================================================================
// Rows
// ============================================================================================

void PropertyEditor::hideRow(Row& row)
{
    row.property = String("");
    row.info = PropertyInfo();
    row.label->Hide();
    row.edit->Hide();
    row.comboBox->Hide();
    row.swatch->Hide();
    row.kvcButton->Hide();
    row.browse->Hide();
}

void PropertyEditor::updateVisibleProperties()
{
    PropertyMap const properties = getInfoForEditableProperties();
    updating = true;
    visibleRows = 0;
    for (auto const& entry : properties)
    {
        if (visibleRows == MaxRows)
            break;
        Row& row = rows[visibleRows++];
        PropertyInfo const& info = entry.second;
        row.property = entry.first;
        row.info = info;
        row.label->SetText(String("%1 (%2)").Arg(entry.first).Arg(info.typeName));
        row.label->Show();
        if (!info.enumValues.empty())
        {
            row.edit->Hide();
            row.comboBox->SetItems(info.enumValues);
            if (info.value == Differs || !row.comboBox->SetSelectedItem(info.value))
                row.comboBox->SetCustomCaption(Differs);
            row.comboBox->Show();
        }
        else
        {
            row.comboBox->Hide();
            row.edit->SetText(info.value);
            row.edit->Show();
        }
        checked_value<unsigned int> const color = info.typeName == "Color"
                                                      ? ConvertStringToColor(info.value)
                                                      : checked_value<unsigned int>();
        if (info.typeName == "Color")
        {
            // A mixed value shows a neutral grey until one colour is chosen.
            unsigned int const fill = color ? *color : 0xFF808080u;
            row.swatch->SetOnFillColor(fill);
            row.swatch->SetOffFillColor(fill);
            row.swatch->Show();
        }
        else
            row.swatch->Hide();
        if (info.typeName == "KeyPath")
            row.kvcButton->Show();
        else
            row.kvcButton->Hide();
        if (info.typeName == "Image")
            row.browse->Show();
        else
            row.browse->Hide();
    }
    for (unsigned int i = visibleRows; i < MaxRows; ++i)
        hideRow(rows[i]);
    if (visibleRows == 0)
        noEditablePropertiesText->Show();
    else
        noEditablePropertiesText->Hide();
    updating = false;
    updatePropertyEditGeometry();
    setFocusOrder();
}

String PropertyEditor::GetRowPropertyName(unsigned int row) const
{
    return row < visibleRows ? rows[row].property : String("");
}

void PropertyEditor::slotRowEdited(unsigned int row)
{
    if (!updating)
        slotPropertyEdited(row, rows.at(row).edit->GetText());
}

void PropertyEditor::slotRowItemSelected(unsigned int row, unsigned int item)
{
    if (updating)
        return;
    std::vector<String> const& items = rows.at(row).comboBox->GetItems();
    if (item < items.size())
        slotPropertyEdited(row, items[item]);
}

void PropertyEditor::applyValue(std::vector<Window*> const& windows, String const& property,
                                String const& text)
{
    Canvas* canvas = GetCanvas();
    Util::PropertySerializer const* serializer = canvas ? canvas->GetPropertySerializer() : nullptr;
    if (!serializer)
        return;
    for (Window* window : windows)
    {
        Design* design = window->GetFrame() ? window->GetFrame()->GetDesign() : nullptr;
        if (design)
            design->InvalidateWindow(window);
        // A text that the property's type does not read leaves the property as it was.
        serializer->Load(*window, property, text);
        if (design)
            design->InvalidateWindow(window);
    }
}

void PropertyEditor::slotPropertyEdited(unsigned int row, String const& newValue)
{
    if (row >= visibleRows)
        return;
    Row const& edited = rows[row];
    // Leaving "--" as it stood is no edit: it would write the marker into every window.
    if (newValue == Differs && edited.info.value == Differs)
        return;
    applyValue(getEditWindows(), edited.property, newValue);
    // One property can change others, and a refused text shows the value again.
    updateVisibleProperties();
}

// ============================================================================================
// Colours, key paths and images
// ============================================================================================

bool PropertyEditor::runColorPicker(unsigned int& color, boost::function<void(unsigned int)> live)
{
    return ColorPicker::Run(GetCanvas(), GetFrame()->GetHostWindow(), color, live);
}

void PropertyEditor::showColorPicker(unsigned int row)
{
    if (row >= visibleRows)
        return;
    String const property = rows[row].property;
    std::vector<Window*> const windows = getEditWindows();
    // Each window's own value, so that rejecting restores mixed values too.
    Canvas* canvas = GetCanvas();
    Util::PropertySerializer const* serializer = canvas ? canvas->GetPropertySerializer() : nullptr;
    if (!serializer)
        return;
    std::vector<String> originals;
    for (Window* window : windows)
    {
        String name, type, text;
        auto const found = window->GetProperties().find(property);
        if (found != window->GetProperties().end())
            serializer->Save(*found, name, type, text);
        originals.push_back(text);
    }
    checked_value<unsigned int> const start = ConvertStringToColor(rows[row].info.value);
    unsigned int color = start ? *start : 0xFF808080u;
    SimplePushButton* swatch = rows[row].swatch;

    // The picker runs a nested loop: what it reports goes only to the windows it opened for.
    auto const live = [this, windows, property, swatch](unsigned int picked)
    {
        if (editWindowsChanged(windows))
            return;
        applyValue(windows, property, ConvertColorToString(picked, false));
        swatch->SetOnFillColor(picked);
        swatch->SetOffFillColor(picked);
    };
    bool const accepted = runColorPicker(color, live);
    if (editWindowsChanged(windows))
        return;
    if (accepted)
        applyValue(windows, property, ConvertColorToString(color, false));
    else
        for (std::size_t i = 0; i < windows.size(); ++i)
            if (!originals[i].IsEmpty())
                applyValue(std::vector<Window*>(1, windows[i]), property, originals[i]);
    updateVisibleProperties();
}

int PropertyEditor::showPopupMenu(Native::PopupMenu& menu, Point const& screenPoint)
{
    return menu.Show(screenPoint);
}

void PropertyEditor::constructKVCMenu(Native::PopupMenu& menu, Controller::KeyValueCoding* coding,
                                      unsigned int row, String const& prefix)
{
    if (!coding)
        return;
    checked_value<String> required;
    std::vector<Window*> const windows = getEditWindows();
    if (row < visibleRows && !windows.empty())
        if (Util::PropertyHolder::PropertyValue const* p =
                windows.front()->FindProperty(rows[row].property))
            required = p->requiredValueType;

    std::vector<String> keys = coding->CopyKeys();
    std::sort(keys.begin(), keys.end());
    for (String const& key : keys)
    {
        boost::any value = coding->GetValueForKey(key);
        if (Controller::KeyValueCoding** child =
                boost::any_cast<Controller::KeyValueCoding*>(&value))
        {
            if (*child)
                constructKVCMenu(*menu.AddSubmenu(key), *child, row, prefix + key + ".");
            continue;
        }
        // A property that names the kind of value it binds to offers only values of that kind.
        bool const fits = !required || value.empty() || *required == value.type().name();
        menu.AddItem(static_cast<int>(kvcPaths.size()), key, fits);
        kvcPaths.push_back(prefix + key);
    }
}

void PropertyEditor::showKVCMenu(unsigned int row)
{
    std::vector<Window*> const windows = getEditWindows();
    if (row >= visibleRows || windows.empty())
        return;
    // The key paths resolve from the window's frame, which asks the canvas.
    Canvas* canvas = windows.front()->GetCanvas();
    Native::PopupMenu menu;
    kvcPaths.clear();
    constructKVCMenu(menu, canvas, row, String(""));
    if (kvcPaths.empty())
        menu.AddItem(0, String("(No keys)"), false);
    int const id = showPopupMenu(menu, Native::PlatformSupportFactory::CursorLocation());
    if (id < 0 || static_cast<std::size_t>(id) >= kvcPaths.size() || editWindowsChanged(windows))
        return;
    slotPropertyEdited(row, kvcPaths[id]);
}

bool PropertyEditor::askForFile(String const& title, String const& filterName,
                                String const& pattern, String const& extension, String& path)
{
    return Native::FileDialog::OpenFile(GetFrame(), title, filterName, pattern, extension, path);
}

void PropertyEditor::browseImageResourcePath(unsigned int row)
{
    std::vector<Window*> const windows = getEditWindows();
    String path;
    if (!askForFile(String("Select Image file"), String("Images"), String("*.png"),
                    String(".png\n"), path) ||
        path.IsEmpty() || editWindowsChanged(windows))
        return;
    slotPropertyEdited(row, relativeTo(path, overrideFolder()));
}

// ============================================================================================
// The layout section
// ============================================================================================

void PropertyEditor::updateParentTextAndButton()
{
    std::vector<Window*> const windows = getEditWindows();
    bool const one = windows.size() == 1;
    updating = true;
    if (windows.empty())
        parentText->SetText(String("No Window selected"));
    else
    {
        Window* parent = windows.front()->GetParent();
        bool const sameParent =
            std::all_of(windows.begin(), windows.end(),
                        [parent](Window* w) { return w->GetParent() == parent; });
        parentText->SetText(!sameParent ? String("Multiple parents")
                                        : String("Parent: ") +
                                              (parent ? parent->GetName() : String("none")));
    }
    layoutKeyEdit->SetText(one ? windows.front()->GetLayoutName() : String(""));
    updating = false;
    layoutKeyEdit->SetEnabled(one);
    layoutBrowseButton->SetEnabled(one);
    loadLayoutButton->SetEnabled(one);
    reparentButton->SetEnabled(!windows.empty() &&
                               std::all_of(windows.begin(), windows.end(),
                                           [](Window* w) { return w->IsLayoutCreated(); }));

    // The save mode, shared or not, of the dynamically created windows: only they are saved
    // as new children.
    std::vector<Window*> dynamic;
    std::copy_if(windows.begin(), windows.end(), std::back_inserter(dynamic),
                 [](Window* w) { return w->IsLayoutCreated(); });
    String modeText;
    String modeTip;
    if (!dynamic.empty())
    {
        Window::DynamicLayout const mode = dynamic.front()->GetDynamicLayoutMode();
        bool const sameMode =
            std::all_of(dynamic.begin(), dynamic.end(),
                        [mode](Window* w) { return w->GetDynamicLayoutMode() == mode; });
        unsigned int const index = static_cast<unsigned int>(mode);
        if (!sameMode)
            modeText = String("Multiple dynamic layouts");
        else if (index < 5)
        {
            modeText = String("Dynamic layout: ") + SaveModeTexts[index];
            if (one)
                modeText += " : Created From Layout";
            modeTip = String(SaveModeToolTips[index]);
        }
    }
    dynamicLayoutText->SetText(modeText);
    dynamicLayoutText->SetToolTipText(modeTip);
    setSaveLayoutButtonState();
    onSetGeometry();
}

void PropertyEditor::setSaveLayoutButtonState()
{
    std::vector<Window*> const windows = getEditWindows();
    char const* tip = nullptr;
    if (windows.size() > 1)
        tip = MultipleWindowsToolTip;
    else if (overrideFolder().IsEmpty())
        tip = NoOverrideFolderToolTip;
    else if (windows.empty() || layoutKeyEdit->GetText().IsEmpty())
        tip = "Set Layout Key to save layout file";
    saveLayoutButton->SetEnabled(tip == nullptr);
    saveLayoutButton->SetToolTipText(String(tip ? tip : "Save Layout File"));
}

void PropertyEditor::slotResourceOverrideChanged()
{
    setSaveLayoutButtonState();
}

void PropertyEditor::onLayoutKeyEdited()
{
    if (updating)
        return;
    std::vector<Window*> const windows = getEditWindows();
    if (windows.size() == 1)
        windows.front()->SetLayoutName(layoutKeyEdit->GetText().StripWhiteSpace());
    setSaveLayoutButtonState();
}

void PropertyEditor::browseLayoutFilePath()
{
    std::vector<Window*> const windows = getEditWindows();
    String path;
    if (windows.size() != 1 ||
        !askForFile(String("Select Layout file"), String("Layout Files"), String("*.layout"),
                    String(".layout\n"), path) ||
        path.IsEmpty() || editWindowsChanged(windows))
        return;
    if (path.EndsWith(String(".layout")))
        path.Truncate(path.Length() - 7);
    // Layout keys name files below the override folder's layout folder.
    String root = overrideFolder();
    if (Canvas* canvas = GetCanvas())
        if (!root.IsEmpty() && !canvas->GetLayoutFolder().IsEmpty())
            root += "/" + canvas->GetLayoutFolder();
    layoutKeyEdit->SetText(relativeTo(path, root));
    onLayoutKeyEdited();
}

void PropertyEditor::reloadLayout()
{
    std::vector<Window*> const windows = getEditWindows();
    if (windows.size() != 1)
        return;
    Window* window = windows.front();
    window->DeleteAllLayoutCreatedChildren();
    if (!window->GetLayoutName().IsEmpty())
    {
        try
        {
            window->LoadLayout();
        }
        catch (Exception::Base const&)
        {
            // An unreadable file leaves the window as the deletion left it; the layout loaded
            // signal below still tells the tools to look again.
        }
    }
    if (aid)
        aid->TellLayoutLoaded();
    slotUpdateSelectedWindows();
}

void PropertyEditor::saveLayout()
{
    std::vector<Window*> const windows = getEditWindows();
    if (windows.size() != 1)
        return;
    // The outermost window with a layout key holds this one's geometry in its file.
    Window* keyed = windows.front();
    for (Window* w = keyed; w; w = w->GetParent())
        if (!w->GetLayoutName().IsEmpty())
            keyed = w;
    keyed->SaveLayout(false);
    if (aid)
        aid->TellLayoutLoaded();
}

void PropertyEditor::reparentButtonClicked()
{
    std::vector<Window*> const windows = getEditWindows();
    Design* design = windows.empty() || !windows.front()->GetFrame()
                         ? nullptr
                         : windows.front()->GetFrame()->GetDesign();
    if (design)
        design->Reparent(windows);
}

// ============================================================================================
// Layout and focus
// ============================================================================================

void PropertyEditor::onSetGeometry()
{
    if (!noEditablePropertiesText)
        return;
    int const width = GetWidth();
    int const inner = std::max(0, width - 2 * Gap);
    int y = Gap;
    selectedWindowText->SetGeometry(Gap, y, inner, selectedWindowText->GetHeight());
    selectedWindowsComboBox->SetGeometry(Gap, y, inner, RowHeight + 2);
    y += RowHeight + 2 + RowGap;
    dynamicLayoutText->SetGeometry(Gap, y, inner, dynamicLayoutText->GetHeight());
    y += RowHeight + RowGap;

    // "Layout Key", its field and "...".
    layoutEditText->Move(Gap, y + (RowHeight - layoutEditText->GetHeight()) / 2);
    int x = Gap + layoutEditText->GetWidth() + Gap;
    int const keyWidth = std::max(20, width - x - Gap - SmallButtonWidth - Gap);
    layoutKeyEdit->SetGeometry(x, y, keyWidth, RowHeight);
    layoutBrowseButton->SetGeometry(x + keyWidth + Gap, y, SmallButtonWidth, RowHeight);
    y += RowHeight + RowGap;
    loadLayoutButton->SetGeometry(Gap, y, LayoutButtonWidth, RowHeight + 2);
    saveLayoutButton->SetGeometry(Gap + LayoutButtonWidth + Gap, y, LayoutButtonWidth,
                                  RowHeight + 2);
    y += RowHeight + 2 + RowGap;
    parentText->SetGeometry(Gap, y + (RowHeight - parentText->GetHeight()) / 2,
                            std::max(0, inner - LayoutButtonWidth - Gap), parentText->GetHeight());
    reparentButton->SetGeometry(width - Gap - LayoutButtonWidth, y, LayoutButtonWidth,
                                RowHeight + 2);
    updatePropertyEditGeometry();
}

void PropertyEditor::updatePropertyEditGeometry()
{
    if (!noEditablePropertiesText)
        return;
    int const width = GetWidth();
    int const top = reparentButton->GetGeometry().bottom + 1 + GroupGap;
    noEditablePropertiesText->Move(Gap, top);

    int labelWidth = MinimumLabelWidth;
    for (unsigned int i = 0; i < visibleRows; ++i)
        labelWidth = std::max(labelWidth, rows[i].label->GetWidth());
    int const fieldLeft = Gap + labelWidth + Gap;
    int y = top;
    for (unsigned int i = 0; i < visibleRows; ++i)
    {
        Row& row = rows[i];
        row.label->Move(Gap, y + (RowHeight - row.label->GetHeight()) / 2);
        int right = width - Gap;
        for (SimplePushButton* button : {row.swatch, row.kvcButton, row.browse})
            if (button->IsVisible())
            {
                button->SetGeometry(right - SmallButtonWidth, y, SmallButtonWidth, RowHeight);
                right -= SmallButtonWidth + Gap;
            }
        int const fieldWidth = std::max(20, right - fieldLeft);
        row.edit->SetGeometry(fieldLeft, y, fieldWidth, RowHeight);
        row.comboBox->SetGeometry(fieldLeft, y, fieldWidth, RowHeight + 2);
        y += RowHeight + 2 + RowGap;
    }
}

void PropertyEditor::setFocusOrder()
{
    std::vector<Window*> order;
    order.push_back(layoutKeyEdit);
    for (unsigned int i = 0; i < visibleRows; ++i)
        order.push_back(rows[i].edit->IsVisible() ? static_cast<Window*>(rows[i].edit)
                                                  : rows[i].comboBox);
    for (Window* button :
         {static_cast<Window*>(layoutBrowseButton), static_cast<Window*>(loadLayoutButton),
          static_cast<Window*>(saveLayoutButton), static_cast<Window*>(reparentButton)})
        order.push_back(button);
    GetFrame()->SetFocusOrder(order);
}

bool PropertyEditor::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                      TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    reply->SetValue("rows", String::Number(visibleRows).CStr());
    return true;
}

} // namespace UI
