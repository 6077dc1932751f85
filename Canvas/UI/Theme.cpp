#include "Canvas/UI/Theme.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/ComboBox.h"
#include "Canvas/UI/ComboBoxPopup.h"

#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/SimpleScrollBar.h"
#include "Canvas/UI/SimpleToolTip.h"
#include "Canvas/UI/SliderGroup.h"
#include "Canvas/UI/Splitter.h"

#include "Canvas/UI/SimpleFocusIndicator.h"

namespace UI
{

Theme& Theme::CreateFocusIndicator(FocusIndicatorCreator f)
{
    focusIndicator = f;
    return *this;
}

Theme& Theme::CreateToolTip(ToolTipCreator f)
{
    toolTip = f;
    return *this;
}

Theme& Theme::CreatePushButton(PushButtonCreator f)
{
    pushButton = f;
    return *this;
}

Theme& Theme::CreateScrollBar(ScrollBarCreator f)
{
    scrollBar = f;
    return *this;
}

Theme& Theme::CreateComboBox(ComboBoxCreator f)
{
    comboBox = f;
    return *this;
}

Theme& Theme::CreateComboBoxPopup(ComboBoxPopupCreator f)
{
    comboBoxPopup = f;
    return *this;
}

Theme& Theme::CreateCheckBox(CheckBoxCreator f)
{
    checkBox = f;
    return *this;
}

Theme& Theme::CreateEditBox(EditBoxCreator f)
{
    editBox = f;
    return *this;
}

Theme& Theme::CreateSplitter(SplitterCreator f)
{
    splitter = f;
    return *this;
}

Theme& Theme::CreatePresetSlider(PresetSliderCreator f)
{
    presetSlider = f;
    return *this;
}

Theme& Theme::CreateSliderGroup(SliderGroupCreator f)
{
    sliderGroup = f;
    return *this;
}

FocusIndicator* CreateFocusIndicator(Frame* frame, Window* parent)
{
    return new SimpleFocusIndicator(frame, parent, "FocusIndicator");
}

namespace
{

PushButton* createSimplePushButton(Frame* frame, Window* parent, String const& name,
                                   String const& caption, String const& commandId)
{
    SimplePushButton* button = new SimplePushButton(frame, parent, name, caption);
    if (!commandId.IsEmpty())
        button->SetCommandID(commandId);
    return button;
}

CheckBox* createSimpleCheckBox(Frame* frame, Window* parent, String const& name,
                               String const& caption)
{
    SimpleCheckBox* box = new SimpleCheckBox(frame, parent, name);
    box->SetLabel(caption);
    return box;
}

// The default look of every primitive that has one.
Theme makeCanvasTheme()
{
    Theme theme;
    theme.CreateFocusIndicator(&UI::CreateFocusIndicator)
        .CreateToolTip(&UI::CreateSimpleToolTip)
        .CreatePushButton(&createSimplePushButton)
        .CreateScrollBar(&UI::CreateSimpleScrollBar)
        .CreateEditBox(&UI::CreateSimpleEdit)
        .CreateSplitter(&UI::CreateSimpleSplitter)
        .CreateComboBox(&UI::CreateComboBox)
        .CreateComboBoxPopup(&UI::CreateComboBoxPopup)
        .CreateCheckBox(&createSimpleCheckBox);
    theme.CreatePresetSlider(&UI::Simple_CreatePresetSlider)
        .CreateSliderGroup(&UI::Simple_CreateSliderGroup);
    return theme;
}

} // namespace

Theme& GetCanvasTheme()
{
    // Built on first use, so that other static initialisers may already ask for it.
    static Theme canvasTheme = makeCanvasTheme();
    return canvasTheme;
}

} // namespace UI
