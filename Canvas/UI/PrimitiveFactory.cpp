#include "Canvas/UI/PrimitiveFactory.h"

namespace UI
{

FocusIndicator* PrimitiveFactory::CreateFocusIndicator(Frame* frame, Window* parent) const
{
    return theme.focusIndicator ? theme.focusIndicator(frame, parent) : nullptr;
}

ToolTip* PrimitiveFactory::CreateToolTip(Frame* frame, Window* parent) const
{
    return theme.toolTip ? theme.toolTip(frame, parent) : nullptr;
}

PushButton* PrimitiveFactory::CreatePushButton(Frame* frame, Window* parent, String const& name,
                                               String const& caption, String const& commandID) const
{
    return theme.pushButton ? theme.pushButton(frame, parent, name, caption, commandID) : nullptr;
}

ScrollBar* PrimitiveFactory::CreateScrollBar(Frame* frame, Window* parent, String const& name,
                                             Orientation orientation) const
{
    return theme.scrollBar ? theme.scrollBar(frame, parent, name, orientation) : nullptr;
}

ComboBox* PrimitiveFactory::CreateComboBox(Frame* frame, Window* parent, String const& name,
                                           String const& caption,
                                           Controller::EnumParam* param) const
{
    return theme.comboBox ? theme.comboBox(frame, parent, name, caption, param) : nullptr;
}

ComboBoxPopup* PrimitiveFactory::CreateComboBoxPopup(Native::HostWindow* host,
                                                     ComboBox* owner) const
{
    return theme.comboBoxPopup ? theme.comboBoxPopup(host, owner) : nullptr;
}

CheckBox* PrimitiveFactory::CreateCheckBox(Frame* frame, Window* parent, String const& name,
                                           String const& caption) const
{
    return theme.checkBox ? theme.checkBox(frame, parent, name, caption) : nullptr;
}

Edit* PrimitiveFactory::CreateEditBox(Frame* frame, Window* parent, String const& name,
                                      String const& text) const
{
    return theme.editBox ? theme.editBox(frame, parent, name, text) : nullptr;
}

Splitter* PrimitiveFactory::CreateSplitter(Frame* frame, Window* parent, String const& name,
                                           Orientation orientation, bool flag) const
{
    return theme.splitter ? theme.splitter(frame, parent, name, orientation, flag) : nullptr;
}

Window* PrimitiveFactory::CreatePresetSlider(Frame* frame, Window* parent, String const& name) const
{
    return theme.presetSlider ? theme.presetSlider(frame, parent, name) : nullptr;
}

SliderGroup* PrimitiveFactory::CreateSliderGroup(Frame* frame, Window* parent, String name,
                                                 String caption, Orientation orientation,
                                                 Controller::FloatParam* param) const
{
    return theme.sliderGroup ? theme.sliderGroup(frame, parent, name, caption, orientation, param)
                             : nullptr;
}

} // namespace UI
