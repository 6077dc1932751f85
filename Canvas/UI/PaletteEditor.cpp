// The palette editor window.
//
//   - items: reading the palette, sorting, dropping duplicates
//   - the list: filtering and rows
//   - selection and colours: the picker, reset, save and load
//   - sampling the screen: find and grab
//   - the palette as source text
//   - layout and drawing

#include "Canvas/UI/PaletteEditor.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/ColorPicker.h"
#include "Canvas/UI/Cursor.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Edit.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/ScreenShot.h"
#include "Canvas/UI/ScrubText.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/detail/BusyCursor.h"
#include "TvBase/Controller/BoolParamMemory.h"
#include "TvBase/Controller/FloatParamMemory.h"
#include "TvBase/Util/Clipboard.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace UI
{

namespace
{

unsigned int const Background = 0xFFE8E8E8u;
int const ButtonWidth = 70;
int const ButtonHeight = 20;
int const Gap = 6;

/// The eyedropper's sample: a filled box with a border, which tells a test driver its colour.
class EyedropperSwatch : public Window
{
public:
    EyedropperSwatch(Frame* frame, Window* parent) : Window(frame, parent, "Eyedropper Swatch") {}

    void SetSwatchColor(unsigned int c)
    {
        color = c;
        Update();
    }

    void Draw(DrawContext* context) override
    {
        Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
        context->DrawBox(all, DrawContext::Filled, color | 0xFF000000u, GetEffectiveAlpha());
        context->DrawBox(all, DrawContext::Outline, 0xFF404040u, GetEffectiveAlpha());
    }

    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                          TestAutomation::RPCReplyInterface* reply) override
    {
        if (request != "GetInfo" || !reply)
            return false;
        reply->SetValue("color", String("%1").Arg(color, 16u, 8u).CStr());
        return true;
    }

private:
    unsigned int color = 0;
};

PushButton* makeButton(Frame* frame, Window* parent, char const* name, char const* caption,
                       char const* toolTip)
{
    PushButton* button = new SimplePushButton(frame, parent, name, caption);
    button->SetToolTipText(toolTip);
    return button;
}

String hex2(unsigned int byte)
{
    return String("%1").Arg(byte & 255u, 16u, 2u);
}

} // namespace

// ============================================================================================
// items
// ============================================================================================

PaletteEditor::PaletteItemInfo::PaletteItemInfo(String const& key, unsigned int color)
    : kind(Color), key(key), color(color), startColor(color)
{
}

PaletteEditor::PaletteItemInfo::PaletteItemInfo(String const& key, unsigned char alpha)
    : kind(Alpha), key(key), value(alpha), startValue(alpha)
{
}

PaletteEditor::PaletteItemInfo::PaletteItemInfo(String const& key, bool flag)
    : kind(Bool), key(key), value(flag ? 1 : 0), startValue(flag ? 1 : 0)
{
}

PaletteEditor::PaletteItemInfo::PaletteItemInfo(String const& key, int number)
    : kind(Int), key(key), value(number), startValue(number)
{
}

void PaletteEditor::PaletteItemInfo::initController()
{
    switch (kind)
    {
    case Color:
        break;
    case Alpha:
        floatController.reset(
            new Controller::FloatParamMemory(float(value), value_range<float>(0.0f, 255.0f)));
        break;
    case Bool:
        boolController.reset(new Controller::BoolParamMemory(value != 0));
        break;
    case Int:
        // Palette ints are small counts and offsets; the range grows to hold any start value.
        floatController.reset(new Controller::FloatParamMemory(
            float(value),
            value_range<float>(float(std::min(value, -1000)), float(std::max(value, 1000)))));
        break;
    }
}

PaletteEditor::PaletteEditor(Frame* frame, Window* parent, Util::ConfigFile* config,
                             checked_value<String> enableKey, checked_value<String> section)
    : Window(frame, parent, "PaletteEditor"), config(config),
      enableKey(enableKey ? *enableKey : DefaultEnableKey),
      section(section ? *section : DefaultSection)
{
    list = new ListBox(frame, this, "Color ListBox");
    list->SetMultipleSelection(true);
    searchEdit = CreateSimpleEdit(frame, this, "Search Edit", "");
    searchLabel = new Text(frame, this, "Search Label", "Show palette entries containing:");
    setButton = makeButton(frame, this, "Color Set PushButton", "Set color",
                           "Shows a dialog for setting selected palette entries");
    resetItemButton = makeButton(frame, this, "Color Reset PushButton", "Reset item",
                                 "Resets selected palette entries to their default colors");
    findButton = makeButton(frame, this, "Color Find PushButton", "Find color",
                            "Click on this button and drag over the screen, to select palette "
                            "entries matching the color under the cursor");
    grabButton = makeButton(frame, this, "Color Grab PushButton", "Grab color",
                            "Click on this button and drag over the screen, to set selected "
                            "palette entries to the color under the cursor");
    swatch = new EyedropperSwatch(frame, this);
    colorText = new Text(frame, this, "Eyedropper Color Text");
    numColorsLabel = new Text(frame, this, "Num Colors Label");
    resetButton = makeButton(frame, this, "Reset PushButton", "Reset all",
                             "Resets all colors to their default values and clears any saved "
                             "palette entries");
    saveButton = makeButton(frame, this, "Save PushButton", "Save",
                            "Saves all palette entries, they will be automatically loaded at "
                            "startup time in the future");
    loadButton = makeButton(frame, this, "Load PushButton", "Load",
                            "Reverts to currently saved palette entries");
    autoSelect = new SimpleCheckBox(frame, this, "Auto-Select Similar CheckBox");
    autoSelect->SetLabel("Automatically select identical colors");
    autoSelect->SetToolTipText("When checked, automatically selects palette entries with the "
                               "colors matching the current selection");

    // Find and grab start on the press, so that the same press drags over the screen.
    findButton->SetMode(Button::Immediate);
    grabButton->SetMode(Button::Immediate);

    list->signalSelectionChanged.Connect(nullptr, [this](unsigned int) { slotUpdateSelection(); });
    searchEdit->signalTextEdited.Connect(nullptr, [this]() { slotSearchTextEdited(); });
    setButton->signalClicked.Connect(nullptr, [this]() { slotSetColor(); });
    resetItemButton->signalClicked.Connect(nullptr, [this]() { slotResetItem(); });
    findButton->signalClicked.Connect(nullptr, [this]() { slotFindColor(); });
    grabButton->signalClicked.Connect(nullptr, [this]() { slotGrabColor(); });
    resetButton->signalClicked.Connect(nullptr, [this]() { slotReset(); });
    saveButton->signalClicked.Connect(nullptr, [this]() { slotSave(); });
    saveButton->signalRightClicked.Connect(nullptr, [this]() { slotSaveRightClicked(); });
    loadButton->signalClicked.Connect(nullptr, [this]() { slotLoad(); });
    autoSelect->signalUserToggled.Connect(nullptr, [this]() { slotUpdateSelection(); });

    initializePaletteItems();
    populateListBox();
    hideEyedropper();
    slotUpdateSelection();
}

PaletteEditor::~PaletteEditor() = default;

void PaletteEditor::initializePaletteItems()
{
    items.clear();
    Canvas* canvas = GetCanvas();
    if (canvas)
    {
        std::vector<String> keys;
        canvas->GetPaletteColorKeys(keys);
        for (String const& key : keys)
            items.emplace_back(key, *canvas->GetPaletteColor(key));
        canvas->GetPaletteAlphaKeys(keys);
        for (String const& key : keys)
            items.emplace_back(key, *canvas->GetPaletteAlpha(key));
        canvas->GetPaletteBoolKeys(keys);
        for (String const& key : keys)
            items.emplace_back(key, *canvas->GetPaletteBool(key));
        canvas->GetPaletteIntKeys(keys);
        for (String const& key : keys)
            items.emplace_back(key, *canvas->GetPaletteInt(key));
    }
    // Stable, so that of a key in two kinds the one read first stays.
    std::stable_sort(items.begin(), items.end(),
                     [](PaletteItemInfo const& a, PaletteItemInfo const& b)
                     { return a.key < b.key; });
    checkForDuplicatePaletteEntries();
    for (unsigned int i = 0; i < items.size(); ++i)
    {
        PaletteItemInfo& item = items[i];
        item.initController();
        if (item.floatController)
            item.floatController->valueChanged.Connect(nullptr, [this, i](float const&)
                                                       { slotItemControllerChanged(i); });
        if (item.boolController)
            item.boolController->valueChanged.Connect(nullptr, [this, i](bool const&)
                                                      { slotItemControllerChanged(i); });
    }
}

void PaletteEditor::checkForDuplicatePaletteEntries()
{
    std::set<String> seen;
    for (auto it = items.begin(); it != items.end();)
    {
        if (seen.insert(it->key).second)
        {
            ++it;
            continue;
        }
        // Only a diagnostic: nothing shows it to the user.
        String const message = String("Duplicate palette entry ") + it->key;
        (void)message;
        it = items.erase(it);
    }
}

// ============================================================================================
// the list
// ============================================================================================

void PaletteEditor::populateListBox()
{
    list->Clear();
    shown.clear();
    String const search = searchEdit->GetText().ToLower();
    for (unsigned int i = 0; i < items.size(); ++i)
    {
        PaletteItemInfo const& item = items[i];
        if (!search.IsEmpty() && !item.key.ToLower().Find(search))
            continue;
        unsigned int const row = list->GetItemCount();
        list->InsertItem(item.key);
        shown.push_back(i);
        switch (item.kind)
        {
        case PaletteItemInfo::Color:
            list->SetItemSwatchColor(row, item.color);
            break;
        case PaletteItemInfo::Alpha:
        case PaletteItemInfo::Int:
        {
            Controller::FloatParam* param = item.floatController.get();
            list->SetItemControl(
                row,
                [param](Frame* frame, Window* parent) -> Window*
                {
                    ScrubText* scrub = new ScrubText(frame, parent, "Scrub Text", param);
                    scrub->SetNumDecimalPlaces(0);
                    return scrub;
                },
                60);
            break;
        }
        case PaletteItemInfo::Bool:
            list->CreateCheckBox(row, item.boolController.get());
            break;
        }
    }
}

void PaletteEditor::slotSearchTextEdited()
{
    populateListBox();
    slotUpdateSelection();
}

checked_value<unsigned int> PaletteEditor::rowOfItem(unsigned int index) const
{
    // The rows keep the items' order.
    auto const at = std::lower_bound(shown.begin(), shown.end(), index);
    if (at == shown.end() || *at != index)
        return checked_value<unsigned int>();
    return static_cast<unsigned int>(at - shown.begin());
}

bool PaletteEditor::isItemSelected(unsigned int index) const
{
    checked_value<unsigned int> const row = rowOfItem(index);
    return row && list->IsSelected(*row);
}

// ============================================================================================
// selection and colours
// ============================================================================================

void PaletteEditor::slotUpdateSelection()
{
    if (autoSelect->IsChecked())
    {
        std::set<unsigned int> colors;
        for (unsigned int row : list->GetSelectedItems())
            if (items[shown[row]].kind == PaletteItemInfo::Color)
                colors.insert(items[shown[row]].color);
        for (unsigned int row = 0; row < shown.size(); ++row)
        {
            PaletteItemInfo const& item = items[shown[row]];
            if (item.kind == PaletteItemInfo::Color && colors.count(item.color))
                list->SetSelected(row, true, false, false);
        }
    }
    std::vector<unsigned int> const selected = list->GetSelectedItems();
    bool colorSelected = false;
    for (unsigned int row : selected)
        colorSelected = colorSelected || items[shown[row]].kind == PaletteItemInfo::Color;
    setButton->SetEnabled(colorSelected);
    grabButton->SetEnabled(colorSelected);
    resetItemButton->SetEnabled(!selected.empty());
    numColorsLabel->SetText(String("%1 colors selected").Arg(unsigned(selected.size())));
}

void PaletteEditor::writeItemToCanvas(PaletteItemInfo const& item)
{
    Canvas* canvas = GetCanvas();
    if (!canvas)
        return;
    switch (item.kind)
    {
    case PaletteItemInfo::Color:
        canvas->SetPaletteColor(item.key, item.color);
        break;
    case PaletteItemInfo::Alpha:
        canvas->SetPaletteAlpha(item.key, static_cast<unsigned char>(item.value));
        break;
    case PaletteItemInfo::Bool:
        canvas->SetPaletteBool(item.key, checked_value<bool>(item.value != 0));
        break;
    case PaletteItemInfo::Int:
        canvas->SetPaletteInt(item.key, checked_value<int>(item.value));
        break;
    }
}

void PaletteEditor::notifyPaletteChange()
{
    Canvas* canvas = GetCanvas();
    if (!canvas)
        return;
    for (Frame* frame : canvas->GetFrames())
        for (Window* window : frame->GetTopLevelWindows())
            if (window)
                window->NotifyPaletteChanged(true);
}

void PaletteEditor::slotColorUserChanged(unsigned int color)
{
    for (unsigned int i = 0; i < items.size(); ++i)
    {
        if (items[i].kind != PaletteItemInfo::Color || !isItemSelected(i))
            continue;
        items[i].color = color;
        list->SetItemSwatchColor(*rowOfItem(i), color);
        writeItemToCanvas(items[i]);
    }
    notifyPaletteChange();
}

void PaletteEditor::slotItemControllerChanged(unsigned int index)
{
    if (index >= items.size())
        return;
    PaletteItemInfo& item = items[index];
    if (item.floatController)
        item.value = static_cast<int>(std::lround(item.floatController->get()));
    else if (item.boolController)
        item.value = item.boolController->get() ? 1 : 0;
    else
        return;
    writeItemToCanvas(item);
    notifyPaletteChange();
}

void PaletteEditor::slotSetColor()
{
    if (pickerOpen)
        return;
    pickerStart.clear();
    for (unsigned int i = 0; i < items.size(); ++i)
        if (items[i].kind == PaletteItemInfo::Color && isItemSelected(i))
            pickerStart.emplace_back(i, items[i].color);
    if (pickerStart.empty())
        return;
    unsigned int color = pickerStart.front().second;
    pickerOpen = true;
    bool const accepted = ColorPicker::Run(GetCanvas(), GetFrame()->GetHostWindow(), color,
                                           [this](unsigned int c) { slotColorUserChanged(c); });
    pickerOpen = false;
    if (accepted)
        slotColorPickerAccepted();
    else
        slotColorPickerRejected();
}

void PaletteEditor::slotColorPickerAccepted()
{
    pickerStart.clear();
}

void PaletteEditor::slotColorPickerRejected()
{
    // Each entry gets its own colour back: they needn't all have had the same one.
    for (auto const& start : pickerStart)
    {
        PaletteItemInfo& item = items[start.first];
        item.color = start.second;
        if (checked_value<unsigned int> const row = rowOfItem(start.first))
            list->SetItemSwatchColor(*row, item.color);
        writeItemToCanvas(item);
    }
    pickerStart.clear();
    notifyPaletteChange();
}

void PaletteEditor::resetItems(bool selectedOnly)
{
    for (unsigned int i = 0; i < items.size(); ++i)
    {
        if (selectedOnly && !isItemSelected(i))
            continue;
        PaletteItemInfo& item = items[i];
        item.color = item.startColor;
        item.value = item.startValue;
        writeItemToCanvas(item);
        // The parameters tell their rows; a colour row is told here.
        if (item.floatController)
            item.floatController->set(float(item.value));
        else if (item.boolController)
            item.boolController->set(item.value != 0);
        else if (checked_value<unsigned int> const row = rowOfItem(i))
            list->SetItemSwatchColor(*row, item.color);
    }
    notifyPaletteChange();
}

void PaletteEditor::slotResetItem()
{
    resetItems(true);
}

void PaletteEditor::slotReset()
{
    detail::BusyCursor busy;
    resetItems(false);
    ClearCustomPalette(config, enableKey, section);
}

void PaletteEditor::slotSave()
{
    SaveCustomPalette(GetCanvas(), config, enableKey, section);
}

void PaletteEditor::slotLoad()
{
    LoadCustomPalette(GetCanvas(), config, enableKey, section);
    // The items take the loaded values; what they started with stays the reset point.
    Canvas* canvas = GetCanvas();
    for (PaletteItemInfo& item : items)
    {
        if (!canvas)
            break;
        switch (item.kind)
        {
        case PaletteItemInfo::Color:
            item.color = canvas->GetPaletteColor(item.key).GetOr(item.color);
            break;
        case PaletteItemInfo::Alpha:
            item.value = canvas->GetPaletteAlpha(item.key).GetOr(item.value);
            break;
        case PaletteItemInfo::Bool:
            item.value = canvas->GetPaletteBool(item.key).GetOr(item.value != 0) ? 1 : 0;
            break;
        case PaletteItemInfo::Int:
            item.value = canvas->GetPaletteInt(item.key).GetOr(item.value);
            break;
        }
        if (item.floatController)
            item.floatController->set(float(item.value));
        if (item.boolController)
            item.boolController->set(item.value != 0);
    }
    populateListBox();
    slotUpdateSelection();
    notifyPaletteChange();
}

// ============================================================================================
// sampling the screen
// ============================================================================================

void PaletteEditor::slotFindColor()
{
    startSampling(SamplingFind, findButton);
}

void PaletteEditor::slotGrabColor()
{
    startSampling(SamplingGrab, grabButton);
}

void PaletteEditor::startSampling(int mode, PushButton* button)
{
    if (sampling != SamplingNone || !GetFrame() || GetFrame()->GetMouseCapture())
        return;
    sampling = mode;
    button->SetPressed(true);
    GetFrame()->SetMouseCapture(this);
    SetCursor(Cursor(Cursor::Crosshair), true);
}

bool PaletteEditor::onMouseMove(Point const&, unsigned int)
{
    if (sampling == SamplingNone)
    {
        hideEyedropper();
        return false;
    }
    Point const at = Cursor::GetScreenPos();
    checked_value<unsigned int> const color = ScreenShotColorAtScreenPos(at);
    if (!color)
    {
        hideEyedropper();
        return true;
    }
    if (sampling == SamplingGrab)
        slotColorUserChanged(*color);
    else
        findColor(at);
    showEyedropper(*color);
    return true;
}

void PaletteEditor::findColor(Point const& screenPos)
{
    checked_value<unsigned int> firstMatch;
    // Column by column over the 3 by 3 block; each sample decides the selection anew, so the
    // last one, at the lower right, is what stays.
    for (int dx = -1; dx <= 1; ++dx)
        for (int dy = -1; dy <= 1; ++dy)
        {
            checked_value<unsigned int> const sample =
                ScreenShotColorAtScreenPos(Point(screenPos.x + dx, screenPos.y + dy));
            if (!sample)
                continue;
            for (unsigned int i = 0; i < items.size(); ++i)
            {
                checked_value<unsigned int> const row = rowOfItem(i);
                if (!row)
                    continue;
                bool const match = items[i].kind == PaletteItemInfo::Color &&
                                   (items[i].color | 0xFF000000u) == (*sample | 0xFF000000u);
                list->SetSelected(*row, match, false, false);
                if (match && !firstMatch)
                    firstMatch = *row;
            }
        }
    if (firstMatch)
        list->EnsureVisible(*firstMatch);
    slotUpdateSelection();
}

void PaletteEditor::showEyedropper(unsigned int color)
{
    static_cast<EyedropperSwatch*>(swatch)->SetSwatchColor(color);
    swatch->Show();
    colorText->SetText(
        String("0x%1%2%3").Arg(hex2(color >> 16)).Arg(hex2(color >> 8)).Arg(hex2(color)));
}

void PaletteEditor::hideEyedropper()
{
    swatch->Hide();
    colorText->SetText("");
}

bool PaletteEditor::onMouseRelease(Point const&, unsigned int)
{
    if (sampling == SamplingNone)
        return false;
    sampling = SamplingNone;
    findButton->SetPressed(false);
    grabButton->SetPressed(false);
    hideEyedropper();
    if (GetFrame() && GetFrame()->GetMouseCapture() == this)
        GetFrame()->ReleaseMouseCapture();
    ClearCursor();
    Cursor::SetStandardCursor();
    return true;
}

// ============================================================================================
// the palette as source text
// ============================================================================================

void PaletteEditor::slotSaveRightClicked()
{
    if (!KeyCode::IsCtrlPressed() || !KeyCode::IsShiftPressed() || !KeyCode::IsAltPressed())
        return;
    Util::Clipboard::SetContent(GetFrame() ? GetFrame()->GetNativeWindowHandle() : nullptr,
                                checked_value<unsigned int>(), std::vector<unsigned char>(),
                                PaletteSourceText(GetCanvas()));
}

String PaletteEditor::PaletteSourceText(Canvas* canvas)
{
    String const rule = String("\t//- ") + String(std::string(73, '-').c_str()) + ";\n";
    String text = rule + "\t//\tBegin pasted code from palette editor\n" + rule;
    if (canvas)
    {
        std::vector<String> keys;
        text += "\t// Colors\n";
        canvas->GetPaletteColorKeys(keys);
        for (String const& key : keys)
        {
            unsigned int const c = *canvas->GetPaletteColor(key);
            text += String("\tSetColor( \"%1\", MakePixel(0x%2,0x%3,0x%4,%5) );\n")
                        .Arg(key)
                        .Arg(hex2(c >> 16))
                        .Arg(hex2(c >> 8))
                        .Arg(hex2(c))
                        .Arg(c >> 24);
        }
        text += "\t\n\t// Alphas\n";
        canvas->GetPaletteAlphaKeys(keys);
        for (String const& key : keys)
            text += String("\tSetAlpha( \"%1\", %2 );\n")
                        .Arg(key)
                        .Arg(unsigned(*canvas->GetPaletteAlpha(key)));
        text += "\t\n\t// Bools\n";
        canvas->GetPaletteBoolKeys(keys);
        for (String const& key : keys)
            text += String("\tSetBool( \"%1\", %2 );\n")
                        .Arg(key)
                        .Arg(*canvas->GetPaletteBool(key) ? "true" : "false");
        text += "\t\n\t// Ints\n";
        canvas->GetPaletteIntKeys(keys);
        for (String const& key : keys)
            text += String("\tSetInt( \"%1\", %2 );\n").Arg(key).Arg(*canvas->GetPaletteInt(key));
        text += "\t\n";
    }
    return text + rule + "\t//\tEnd pasted code from palette editor\n" + rule;
}

// ============================================================================================
// layout and drawing
// ============================================================================================

void PaletteEditor::onSetGeometry()
{
    int const w = GetWidth();
    int const h = GetHeight();
    list->SetGeometry(10, 10, std::max(w - 19, 1), std::max(h - 119, 1));
    int const listBottom = 10 + list->GetHeight();
    int const labelTop = listBottom + 8;
    Rect const label = searchLabel->GetGeometry();
    searchLabel->SetGeometry(10, labelTop, label.Width(), label.Height());
    searchEdit->SetGeometry(10 + label.Width() + 5, labelTop - 3, 108, 20);
    int const rowTop = labelTop - 3 + 20 + Gap;
    int x = 10;
    for (PushButton* button : {setButton, resetItemButton, findButton, grabButton})
    {
        button->SetGeometry(x, rowTop, ButtonWidth, ButtonHeight);
        x += ButtonWidth + Gap;
    }
    int const swatchSize = 16;
    swatch->SetGeometry(x, rowTop + (ButtonHeight - swatchSize) / 2, swatchSize, swatchSize);
    Rect const text = colorText->GetGeometry();
    colorText->SetGeometry(x + swatchSize + Gap, rowTop + (ButtonHeight - text.Height()) / 2,
                           text.Width(), text.Height());
    int const lowerTop = rowTop + ButtonHeight + Gap;
    x = 10;
    for (PushButton* button : {resetButton, saveButton, loadButton})
    {
        button->SetGeometry(x, lowerTop, ButtonWidth, ButtonHeight);
        x += ButtonWidth + Gap;
    }
    Rect const count = numColorsLabel->GetGeometry();
    numColorsLabel->SetGeometry(x + Gap, lowerTop + (ButtonHeight - count.Height()) / 2,
                                count.Width(), count.Height());
    autoSelect->SetGeometry(10, lowerTop + ButtonHeight + Gap, std::max(w - 20, 1), 16);
}

void PaletteEditor::Draw(DrawContext* context)
{
    context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), DrawContext::Filled, Background,
                     GetEffectiveAlpha());
    Window::Draw(context);
}

} // namespace UI
