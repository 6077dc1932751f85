// The parameter controls in a frame on the in-memory host: a layout that makes each by type
// name, exact fine drags, snapping and limits, Shift nudges and Alt resets, the wheel and keys,
// typed values, and the colour picker's accept and reject.

#include "Canvas/UI/ColorPicker.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Knob.h"
#include "Canvas/UI/Layout.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "Canvas/UI/RGBASliderGroup.h"
#include "Canvas/UI/ScrubText.h"
#include "Canvas/UI/Slider.h"
#include "Canvas/UI/SliderGroup.h"
#include "Canvas/UI/WindowFactory.h"
#include "TvBase/Controller/FloatParamMemory.h"
#include "TvBase/Util/Clipboard.h"
#include "tests/Canvas/UI/support/ButtonTestSupport.h"

#include <gtest/gtest.h>

#include <fstream>
#include <vector>

namespace
{

using ButtonTest::Scene;

TEST(ParamControls, ALayoutMakesEachControlByTypeName)
{
    Scene s(400, 300);
    UI::Window root(s.frame.get(), nullptr, "Root");
    TestSupport::TempFolder folder("tv-param-layout");
    std::string const path = folder.Path() + "/Controls.layout";
    char const* const types[] = {"Knob",      "Slider",     "SliderGroup",    "SimpleSliderGroup",
                                 "ScrubText", "RGBASlider", "RGBASliderGroup"};
    {
        std::ofstream file(path);
        file << "<?xml version=\"1.0\" standalone=\"yes\"?>\n<TvCanvasLayout-1>\n";
        int y = 0;
        for (char const* type : types)
        {
            file << "<NewChild Name=\"My " << type << "\" Type=\"" << type << "\" X=\"4\" Y=\"" << y
                 << "\" Width=\"200\" Height=\"30\">"
                 << "<Property Name=\"Label\" Type=\"String\" Value=\"" << type << "\"/>"
                 << "</NewChild>\n";
            y += 32;
        }
        file << "</TvCanvasLayout-1>\n";
    }
    ASSERT_TRUE(UI::LoadLayout(String(path.c_str()), s.frame.get(), &root));
    UI::WindowFactory* factory = UI::GetWindowFactory(&s.canvas);
    int y = 0;
    for (char const* type : types)
    {
        UI::Window* w = root.FindChildWindow(String("My %1").Arg(type));
        ASSERT_NE(nullptr, w) << type;
        EXPECT_EQ(String(type), *factory->GetTypeName(w));
        EXPECT_EQ(UI::Rect(UI::Point(4, y), UI::Size(200, 30)), w->GetGeometry()) << type;
        y += 32;
    }
    // Made by name, a control keeps a parameter of its own and works on it.
    auto* knob = dynamic_cast<UI::Knob*>(root.FindChildWindow("My Knob"));
    ASSERT_NE(nullptr, knob);
    EXPECT_EQ(String("Knob"), knob->GetLabel());
    EXPECT_TRUE(knob->IsControllerOwned());
    EXPECT_TRUE(knob->handleUserEdit("0.25"));
    EXPECT_EQ(0.25f, knob->GetValue());
}

/// A frame with one control of each kind on parameters of the test's.
struct Controls
{
    Scene s{400, 300};
    Controller::FloatParamMemory gain{50.0f, value_range<float>(0.0f, 100.0f), "%"};
    Controller::FloatParamMemory level{5.0f, value_range<float>(0.0f, 10.0f)};
    Controller::FloatParamMemory freq{100.0f, value_range<float>(0.0f, 1000.0f)};
    UI::Knob* knob = new UI::Knob(s.frame.get(), nullptr, "Knob", &gain);
    UI::Slider* slider = new UI::Slider(s.frame.get(), nullptr, "Slider", &level);
    UI::ScrubText* scrub = new UI::ScrubText(s.frame.get(), nullptr, "Scrub", &freq);

    Controls()
    {
        knob->SetGeometry(0, 0, 64, 84);
        slider->SetGeometry(0, 100, 110, 20);
        scrub->SetGeometry(0, 140, 80, 18);
    }
    bool Wheel(int x, int y, int delta, unsigned int flags = 0)
    {
        return s.frame->HandleMouseMessage(UI::MouseWheel, UI::Point(x, y), flags, delta);
    }
};

TEST(ParamControls, KnobDragsCoverTheRangeInAHundredPixelsOrATenthWithCtrl)
{
    Controls c;
    struct Drag
    {
        int dy;
        unsigned int flags;
        float expected;
    };
    Drag const drags[] = {
        {-20, 0, 70.0f},
        {-50, UI::FlagControl, 75.0f},
        {-50, UI::FlagCommand, 80.0f},
        {-14, UI::FlagControl, 81.0f}, // 1.4 positions round to 1
        {-15, UI::FlagControl, 83.0f}, // 1.5 rounds away from zero
        {300, 0, 0.0f},                // clamped
        {-40, UI::FlagRightButton, 0.0f},
    };
    for (Drag const& d : drags)
    {
        c.s.Press(32, 42, d.flags);
        c.s.Move(32, 42 + d.dy / 2, d.flags | UI::FlagLeftButton);
        c.s.Move(32, 42 + d.dy, d.flags | UI::FlagLeftButton);
        c.s.Release(32, 42 + d.dy);
        EXPECT_EQ(d.expected, c.gain.get()) << d.dy << " " << d.flags;
        EXPECT_FALSE(c.gain.IsGrabbed());
    }
    // Ctrl pressed mid-drag goes on at the fine rate from there, without a jump.
    c.s.Press(32, 42);
    c.s.Move(32, 32, UI::FlagLeftButton);
    c.s.Move(32, 31, UI::FlagLeftButton | UI::FlagControl);
    c.s.Move(32, 11, UI::FlagLeftButton | UI::FlagControl);
    c.s.Release(32, 11);
    EXPECT_EQ(12.0f, c.gain.get());
}

TEST(ParamControls, ShiftNudgesAltResetsAndEachChangeNamesItself)
{
    Controls c;
    std::vector<String> undo;
    int resets = 0;
    c.knob->signalUndoEvent.Connect(nullptr, [&](String const& t) { undo.push_back(t); });
    c.knob->signalReset.Connect(nullptr, [&]() { ++resets; });
    c.knob->SetLabel("Gain");
    c.knob->SetNumDecimalPlaces(0);
    c.s.Press(32, 20, UI::FlagShift);
    c.s.Release(32, 20);
    EXPECT_EQ(51.0f, c.gain.get());
    c.s.Press(32, 70, UI::FlagShift);
    c.s.Release(32, 70);
    EXPECT_EQ(50.0f, c.gain.get());
    c.gain.set(7.0f);
    {
        ButtonTest::AltHeld alt;
        c.s.Press(32, 42);
        c.s.Release(32, 42);
    }
    EXPECT_EQ(50.0f, c.gain.get());
    EXPECT_EQ(1, resets);
    EXPECT_EQ((std::vector<String>{"Gain: 51%", "Gain: 50%", "Gain: 50%"}), undo);
}

TEST(ParamControls, KeysAndWheelStepThePositions)
{
    Controls c;
    c.s.Press(32, 42);
    c.s.Release(32, 42);
    ASSERT_TRUE(c.knob->IsFocused());
    struct Step
    {
        unsigned int key;
        float expected;
    };
    Step const steps[] = {{UI::KeyCode::UpArrow, 51.0f},   {UI::KeyCode::RightArrow, 52.0f},
                          {UI::KeyCode::DownArrow, 51.0f}, {UI::KeyCode::PageUp, 61.0f},
                          {UI::KeyCode::PageDown, 51.0f},  {UI::KeyCode::End, 100.0f},
                          {UI::KeyCode::Home, 0.0f},       {UI::KeyCode::LeftArrow, 0.0f}};
    for (Step const& step : steps)
    {
        EXPECT_TRUE(c.s.Key(step.key));
        EXPECT_EQ(step.expected, c.gain.get()) << step.key;
    }
    // One position a notch, each notch counted; parts of notches add up.
    for (int i = 1; i <= 3; ++i)
    {
        c.Wheel(32, 42, 120);
        EXPECT_EQ(float(i), c.gain.get());
    }
    c.Wheel(32, 42, -60);
    EXPECT_EQ(3.0f, c.gain.get());
    c.Wheel(32, 42, -60);
    EXPECT_EQ(2.0f, c.gain.get());
    // The scrub text's notch is four pixels of drag: ten positions of a thousand.
    c.Wheel(10, 148, 120);
    EXPECT_EQ(110.0f, c.freq.get());
}

TEST(ParamControls, TypedValuesParseClampOrLeaveTheValueAlone)
{
    Controls c;
    struct Typed
    {
        char const* text;
        bool parsed;
        float expected;
    };
    Typed const cases[] = {{"7.5", true, 7.5f},  {" 2 ", true, 2.0f}, {"abc", false, 2.0f},
                           {"1-2", false, 2.0f}, {"", false, 2.0f},   {"nan", false, 2.0f},
                           {"25", true, 10.0f},  {"-3", true, 0.0f},  {"1e30", true, 10.0f}};
    for (Typed const& t : cases)
    {
        EXPECT_EQ(t.parsed, c.slider->handleUserEdit(t.text)) << t.text;
        EXPECT_EQ(t.expected, c.level.get()) << t.text;
    }
}

void setClipboardText(char const* text)
{
    Util::Clipboard::SetContent(nullptr, {}, {}, text);
}

TEST(ParamControls, CopyPasteAndTheContextMenuItems)
{
    Controls c;
    c.s.Press(32, 42);
    c.s.Release(32, 42);
    ASSERT_TRUE(c.knob->IsFocused());
    EXPECT_TRUE(c.s.Key('C', UI::FlagControl));
    EXPECT_EQ(String("50"), Util::Clipboard::GetString(nullptr, 0));
    c.gain.set(20.0f);
    EXPECT_TRUE(c.s.Key('V', UI::FlagCommand));
    EXPECT_EQ(50.0f, c.gain.get());
    EXPECT_FALSE(c.gain.IsGrabbed());

    using UI::ParamControl;
    struct Step
    {
        char const* clipboard;
        int item;
        float expected;
        char const* copied;
    };
    // The scrub text's parameter runs 0 to 1000 from 100.
    Step const steps[] = {
        {"250", ParamControl::MenuPaste, 250.0f, "250"},
        {"abc", ParamControl::MenuPaste, 250.0f, "abc"},
        {" 1e4 ", ParamControl::MenuPaste, 1000.0f, " 1e4 "},
        {"7", ParamControl::MenuCopy, 1000.0f, "1000"},
        {"123.456", ParamControl::MenuPaste, 123.456f, "123.456"},
        {"7", ParamControl::MenuCopy, 123.456f, "123.456"},
        {"7", ParamControl::MenuReset, 100.0f, "7"},
        {"7", 99, 100.0f, "7"},
    };
    for (Step const& step : steps)
    {
        setClipboardText(step.clipboard);
        c.scrub->slotMenuItemSelected(step.item);
        EXPECT_EQ(step.expected, c.freq.get()) << step.clipboard << " " << step.item;
        EXPECT_EQ(String(step.copied), Util::Clipboard::GetString(nullptr, 0)) << step.item;
    }
}

TEST(ParamControls, SliderSnapsTiesToTheEarlierAndKeepsItsLimits)
{
    Controls c;
    // Track 110 wide, thumb 10: position p of 100 has its centre at x = 5 + p.
    std::vector<unsigned int> moved;
    c.slider->signalUserMoved.Connect(nullptr, [&](unsigned int p) { moved.push_back(p); });
    c.slider->SetSnapPositions({20, 40, 80});
    c.s.Press(5 + 30, 110); // 30: between 20 and 40, a tie
    c.s.Release(5 + 30, 110);
    EXPECT_EQ(20u, c.slider->GetSliderPosition());
    c.s.Press(5 + 65, 110);
    c.s.Release(5 + 65, 110);
    EXPECT_EQ(80u, c.slider->GetSliderPosition());
    c.slider->SetSnapPositions({});
    c.slider->SetPositionLimits(value_range<unsigned int>(10u, 60u));
    c.s.Press(5 + 90, 110);
    c.s.Release(5 + 90, 110);
    EXPECT_EQ(60u, c.slider->GetSliderPosition());
    EXPECT_EQ(6.0f, c.level.get());
    // Pressed again where it is limited: the mouse still pointed elsewhere.
    c.s.Press(5 + 95, 110);
    c.s.Release(5 + 95, 110);
    EXPECT_EQ((std::vector<unsigned int>{20u, 80u, 60u, 60u}), moved);
    // Ctrl drags a tenth as far as the mouse.
    c.slider->SetPositionLimits({});
    c.s.Press(5 + 60, 110, UI::FlagControl);
    c.s.Move(5 + 20, 110, UI::FlagLeftButton | UI::FlagControl);
    c.s.Release(5 + 20, 110);
    EXPECT_EQ(56u, c.slider->GetSliderPosition());
}

TEST(ParamControls, SliderGroupsFollowTheirParameterThroughTheTheme)
{
    Scene s(400, 200);
    Controller::FloatParamMemory ratio(1.0f, value_range<float>(0.25f, 4.0f), "x");
    UI::SliderGroup* group = s.canvas.GetPrimitiveFactory()->CreateSliderGroup(
        s.frame.get(), nullptr, "Ratio", "Ratio", UI::Horizontal, &ratio);
    ASSERT_NE(nullptr, group);
    EXPECT_EQ(String("SimpleSliderGroup"), group->GetWindowType());
    group->SetScaleType(UI::ScaleRatioLog);
    EXPECT_EQ(50u, group->GetSlider()->GetSliderPosition());
    EXPECT_EQ(String("1.00x"), group->GetValueText());
    ratio.set(4.0f);
    EXPECT_EQ(100u, group->GetSlider()->GetSliderPosition());
    EXPECT_EQ(75u, group->ValueToSliderPosition(2.0f));
    EXPECT_EQ(25u, group->ValueToSliderPosition(0.5f));
    EXPECT_NE(nullptr,
              s.canvas.GetPrimitiveFactory()->CreatePresetSlider(s.frame.get(), nullptr, "Preset"));
}

TEST(ParamControls, TheColorPickerReportsLiveAndRejectRestores)
{
    Scene s(400, 300);
    std::vector<unsigned int> seen;
    UI::ColorPicker* picker = new UI::ColorPicker(s.frame.get(), 0xFF102030u);
    picker->signalColorChanged.Connect(nullptr, [&](unsigned int c) { seen.push_back(c); });
    auto* sliders = dynamic_cast<UI::RGBASliderGroup*>(picker->FindChildWindow("RGBA Sliders"));
    ASSERT_NE(nullptr, sliders);
    sliders->GetChannelSlider(UI::RGBASlider::Green)->handleUserEdit("255");
    sliders->GetChannelSlider(UI::RGBASlider::Alpha)->handleUserEdit("128");
    EXPECT_EQ(0x8010FF30u, picker->GetRGBA()) << std::hex << picker->GetRGBA();
    picker->Reject();
    EXPECT_TRUE(picker->IsDone());
    EXPECT_FALSE(picker->IsAccepted());
    EXPECT_EQ((std::vector<unsigned int>{0xFF10FF30u, 0x8010FF30u, 0xFF102030u}), seen);

    UI::ColorPicker* second = new UI::ColorPicker(s.frame.get(), 0xFF000000u);
    second->SetRGBA(0xFF00FF00u);
    second->Accept();
    second->Reject();
    EXPECT_TRUE(second->IsAccepted());
    EXPECT_EQ(0xFF00FF00u, second->GetRGBA());
}

} // namespace
