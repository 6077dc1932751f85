#pragma once

#include "Canvas/UI/Theme.h"

namespace UI
{

/// The canvas's source of default-look widgets: widgets get their child buttons and bars here,
/// so that a product that registers another theme changes the look of all of them. Each
/// `Create...` gives null when its creator is empty. The caller owns what it gets, as the
/// widget's parent does once the widget joins the tree.
class PrimitiveFactory
{
public:
    PrimitiveFactory() = default;
    explicit PrimitiveFactory(Theme const& theme) : theme(theme) {}

    Theme const& GetTheme() const { return theme; }

    /// Copies all eleven creators.
    void RegisterAll(Theme const& from) { theme = from; }
    /// Each copies one creator of `from`.
    void RegisterFocusIndicator(Theme const& from) { theme.focusIndicator = from.focusIndicator; }
    void RegisterToolTip(Theme const& from) { theme.toolTip = from.toolTip; }
    void RegisterPushButton(Theme const& from) { theme.pushButton = from.pushButton; }
    void RegisterScrollBar(Theme const& from) { theme.scrollBar = from.scrollBar; }
    void RegisterComboBox(Theme const& from) { theme.comboBox = from.comboBox; }
    void RegisterComboBoxPopup(Theme const& from) { theme.comboBoxPopup = from.comboBoxPopup; }
    void RegisterCheckBox(Theme const& from) { theme.checkBox = from.checkBox; }
    void RegisterEditBox(Theme const& from) { theme.editBox = from.editBox; }
    void RegisterSplitter(Theme const& from) { theme.splitter = from.splitter; }
    void RegisterPresetSlider(Theme const& from) { theme.presetSlider = from.presetSlider; }
    void RegisterSliderGroup(Theme const& from) { theme.sliderGroup = from.sliderGroup; }

    FocusIndicator* CreateFocusIndicator(Frame* frame, Window* parent) const;
    ToolTip* CreateToolTip(Frame* frame, Window* parent) const;
    PushButton* CreatePushButton(Frame* frame, Window* parent, String const& name,
                                 String const& caption, String const& commandID) const;
    ScrollBar* CreateScrollBar(Frame* frame, Window* parent, String const& name,
                               Orientation orientation) const;
    ComboBox* CreateComboBox(Frame* frame, Window* parent, String const& name,
                             String const& caption, Controller::EnumParam* param) const;
    ComboBoxPopup* CreateComboBoxPopup(Native::HostWindow* host, ComboBox* owner) const;
    CheckBox* CreateCheckBox(Frame* frame, Window* parent, String const& name,
                             String const& caption) const;
    Edit* CreateEditBox(Frame* frame, Window* parent, String const& name, String const& text) const;
    Splitter* CreateSplitter(Frame* frame, Window* parent, String const& name,
                             Orientation orientation, bool flag) const;
    Window* CreatePresetSlider(Frame* frame, Window* parent, String const& name) const;
    SliderGroup* CreateSliderGroup(Frame* frame, Window* parent, String name, String caption,
                                   Orientation orientation, Controller::FloatParam* param) const;

private:
    Theme theme;
};

} // namespace UI
