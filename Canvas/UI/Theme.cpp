#include "Canvas/UI/Theme.h"

#include "Canvas/UI/FocusIndicator.h"

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
    return new FocusIndicator(frame, parent, "FocusIndicator");
}

namespace
{

// The widgets behind the other creators register here as they join the toolkit.
Theme makeCanvasTheme()
{
    Theme theme;
    theme.CreateFocusIndicator(&UI::CreateFocusIndicator);
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
