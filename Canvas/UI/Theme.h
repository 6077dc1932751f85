#pragma once

#include "Canvas/UI/Orientation.h"
#include "TvBase/Util/String.h"

#include <boost/function.hpp>

namespace Controller
{
class EnumParam;
class FloatParam;
} // namespace Controller

namespace UI
{

class CheckBox;
class ComboBox;
class ComboBoxPopup;
class Edit;
class FocusIndicator;
class Frame;
class PushButton;
class ScrollBar;
class SliderGroup;
class Splitter;
class ToolTip;
class Window;
namespace Native
{
class HostWindow;
}

/// The table of factory functions for the default-look widgets: a product swaps the look of all
/// its buttons, bars and boxes at once by registering other functions. A value type; an empty
/// member means "no such widget", and the factory then gives null. Each setter returns the
/// theme so that they chain.
class Theme
{
public:
    typedef boost::function<FocusIndicator*(Frame*, Window*)> FocusIndicatorCreator;
    typedef boost::function<ToolTip*(Frame*, Window*)> ToolTipCreator;
    /// Frame, parent, name, caption, command id.
    typedef boost::function<PushButton*(Frame*, Window*, String const&, String const&,
                                        String const&)>
        PushButtonCreator;
    typedef boost::function<ScrollBar*(Frame*, Window*, String const&, Orientation)>
        ScrollBarCreator;
    typedef boost::function<ComboBox*(Frame*, Window*, String const&, String const&,
                                      Controller::EnumParam*)>
        ComboBoxCreator;
    typedef boost::function<ComboBoxPopup*(Native::HostWindow*, ComboBox*)> ComboBoxPopupCreator;
    typedef boost::function<CheckBox*(Frame*, Window*, String const&, String const&)>
        CheckBoxCreator;
    typedef boost::function<Edit*(Frame*, Window*, String const&, String const&)> EditBoxCreator;
    typedef boost::function<Splitter*(Frame*, Window*, String const&, Orientation, bool)>
        SplitterCreator;
    typedef boost::function<Window*(Frame*, Window*, String const&)> PresetSliderCreator;
    typedef boost::function<SliderGroup*(Frame*, Window*, String, String, Orientation,
                                         Controller::FloatParam*)>
        SliderGroupCreator;

    Theme& CreateFocusIndicator(FocusIndicatorCreator f);
    Theme& CreateToolTip(ToolTipCreator f);
    Theme& CreatePushButton(PushButtonCreator f);
    Theme& CreateScrollBar(ScrollBarCreator f);
    Theme& CreateComboBox(ComboBoxCreator f);
    Theme& CreateComboBoxPopup(ComboBoxPopupCreator f);
    Theme& CreateCheckBox(CheckBoxCreator f);
    Theme& CreateEditBox(EditBoxCreator f);
    Theme& CreateSplitter(SplitterCreator f);
    Theme& CreatePresetSlider(PresetSliderCreator f);
    Theme& CreateSliderGroup(SliderGroupCreator f);

    FocusIndicatorCreator focusIndicator;
    ToolTipCreator toolTip;
    PushButtonCreator pushButton;
    ScrollBarCreator scrollBar;
    ComboBoxCreator comboBox;
    ComboBoxPopupCreator comboBoxPopup;
    CheckBoxCreator checkBox;
    EditBoxCreator editBox;
    SplitterCreator splitter;
    PresetSliderCreator presetSlider;
    SliderGroupCreator sliderGroup;
};

/// The process-wide default theme, built at static initialisation. Its members are the
/// default-look creators that exist in this build; a creator whose widget is not part of the
/// toolkit yet is left empty.
Theme& GetCanvasTheme();

/// The default focus indicator: a hidden `SimpleFocusIndicator` named "FocusIndicator", a ring
/// around the focused window.
FocusIndicator* CreateFocusIndicator(Frame* frame, Window* parent);

} // namespace UI
