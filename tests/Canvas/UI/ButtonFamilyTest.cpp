#include "Canvas/UI/AnimationHandler.h"
#include "Canvas/UI/BracketSet.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/OnOffButton.h"
#include "Canvas/UI/PixmapButton.h"
#include "Canvas/UI/PulseOverlayTimer.h"
#include "Canvas/UI/RadioButton.h"
#include "Canvas/UI/SimpleBannerBG.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
#include "TvBase/Controller/BoolParamMemory.h"
#include "TvBase/Controller/EnumParamMemory.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"
#include "tests/Canvas/UI/support/ButtonTestSupport.h"

#include <boost/function.hpp>
#include <gtest/gtest.h>

using ButtonTest::AltHeld;
using ButtonTest::Scene;

namespace
{

unsigned int const kBlack = 0xFF000000u;

/// Counts the emissions of a signal without arguments.
struct Tally
{
    int count = 0;
    explicit Tally(Signal<>& s)
    {
        s.Connect(nullptr, boost::function<void()>([this] { ++count; }));
    }
};

/// True when some pixel of row `y` between `x0` and `x1` differs from `background`.
bool RowHasInk(Scene const& s, int y, int x0, int x1, unsigned int background)
{
    for (int x = x0; x <= x1; ++x)
        if (s.Pixel(x, y) != background)
            return true;
    return false;
}

/// Images come from an override folder of real PNG files. The canvas sets the override folder
/// from the settings when it is made, so tests point it at their folder afterwards.
class Images : public ::testing::Test
{
protected:
    void UseFolder()
    {
        Util::ResourceManager::Get().SetOverridePath(FolderPath(String(folder.Path().c_str())));
    }
    void TearDown() override
    {
        Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());
    }

    TestSupport::TempFolder folder{"tv-buttons"};
};

} // namespace

TEST(SimplePushButtonDrawing, FillsByStateAndFramesInTheBorderColour)
{
    Scene s(60, 30);
    auto* button = new UI::SimplePushButton(s.frame.get(), nullptr, "Cancel Button", "Cancel");
    button->SetGeometry(0, 0, 60, 30);
    s.Paint();
    EXPECT_EQ(s.Pixel(0, 0), UI::SimplePushButton::kDefaultBorder);
    EXPECT_EQ(s.Pixel(59, 29), UI::SimplePushButton::kDefaultBorder);
    EXPECT_EQ(s.Pixel(2, 2), UI::SimplePushButton::kDefaultOffFill);
    // The caption is drawn across the middle rows, and nothing reaches the top rows.
    bool ink = false;
    for (int y = 8; y < 22; ++y)
        ink = ink || RowHasInk(s, y, 1, 58, UI::SimplePushButton::kDefaultOffFill);
    EXPECT_TRUE(ink);
    EXPECT_FALSE(RowHasInk(s, 2, 1, 58, UI::SimplePushButton::kDefaultOffFill));
    EXPECT_GT(button->GetCaptionWidth(), 0);
    EXPECT_LT(button->GetCaptionWidth(), 60);

    s.Press(30, 15);
    s.Paint();
    EXPECT_EQ(s.Pixel(2, 2), UI::SimplePushButton::kDefaultOnFill);
    s.Release(30, 15);
    button->SetOffFillColor(0xFF102030u);
    button->SetBorderColor(0xFF405060u);
    s.Paint();
    EXPECT_EQ(s.Pixel(2, 2), 0xFF102030u);
    EXPECT_EQ(s.Pixel(0, 15), 0xFF405060u);
}

TEST(SimplePushButtonDrawing, ColourAlphaMultipliesTheWindowAlpha)
{
    Scene s(20, 20);
    auto* button = new UI::SimplePushButton(s.frame.get(), nullptr, "B");
    button->SetGeometry(0, 0, 20, 20);
    // Half-transparent white on the black frame, on a half-faded window: a quarter.
    button->SetOffFillColor(0x80FFFFFFu);
    button->SetBaseAlpha(128);
    s.Paint();
    unsigned int const quarter = s.Pixel(5, 5) & 0xFF;
    EXPECT_NEAR(int(quarter), 64, 2);
}

TEST(PushButtonColours, ComeFromPaletteKeysAndFollowPaletteChanges)
{
    Scene s(40, 20);
    s.canvas.SetPaletteColor("TestFill", 0xFF336699u);
    s.canvas.SetPaletteColor("TestBorder", 0xFFCC0000u);
    auto* button = new UI::PushButton(s.frame.get(), nullptr, "Push", "", "Label",
                                      checked_value<unsigned int>(), checked_value<unsigned int>());
    button->SetGeometry(0, 0, 40, 20);
    EXPECT_EQ(button->GetWindowType(), String("PushButton"));
    EXPECT_EQ(button->GetMode(), UI::Button::Momentary);
    ASSERT_NE(button->GetLabelWindow(), nullptr);
    EXPECT_EQ(button->GetLabelWindow()->GetName(), String("Push Label Text"));
    EXPECT_EQ(button->GetLabelWindow()->GetDynamicLayoutMode(), UI::Window::DynamicLayoutNever);
    EXPECT_EQ(button->GetLabelWindow()->GetText(), String("Label"));
    button->GetLabelWindow()->Hide();

    s.Paint();
    EXPECT_EQ(s.Pixel(5, 5), kBlack) << "no fill key: nothing filled";
    button->SetFillColorKey("TestFill");
    button->SetBorderColorKey("TestBorder");
    s.Paint();
    EXPECT_EQ(s.Pixel(5, 5), 0xFF336699u);
    EXPECT_EQ(s.Pixel(0, 0), 0xFFCC0000u);
    s.canvas.SetPaletteColor("TestFill", 0xFF00AA00u);
    button->NotifyPaletteChanged(true);
    s.Paint();
    EXPECT_EQ(s.Pixel(5, 5), 0xFF00AA00u);
    button->SetFillColorKey("No Such Key");
    s.frame->Invalidate(UI::Rect(0, 39, 0, 19), false);
    s.Paint();
    EXPECT_EQ(s.Pixel(5, 5), kBlack);

    std::vector<std::string> undo;
    button->signalUndoEvent.Connect(
        nullptr,
        boost::function<void(String const&)>([&](String const& t) { undo.push_back(t.CStr()); }));
    button->SetCaption("Go");
    EXPECT_EQ(undo, (std::vector<std::string>{"Go"}));
    button->SetLabel("Other");
    EXPECT_EQ(button->GetLabelWindow()->GetText(), String("Other"));
}

TEST_F(Images, PixmapButtonShowsTheImageOfItsState)
{
    ButtonTest::WriteSolidPng(folder, "KnobNormal.png", 20, 10, 0xFFFF0000u);
    ButtonTest::WriteSolidPng(folder, "KnobPressed.png", 20, 10, 0xFF00FF00u);
    ButtonTest::WriteSolidPng(folder, "DotNormal.png", 4, 2, 0xFF0000FFu);
    ButtonTest::WriteSolidPng(folder, "DotPressed.png", 4, 2, 0xFFFFFFFFu);
    Scene s(30, 20);
    UseFolder();
    auto* button = new UI::PixmapButton(s.frame.get(), nullptr, "Pix");
    button->SetPixmaps("Knob");
    EXPECT_EQ(button->GetProperty<String>("NormalImage").value, String("KnobNormal.png"));
    EXPECT_EQ(button->GetProperty<String>("PressedImage").value, String("KnobPressed.png"));
    button->SetSizeFromImage();
    EXPECT_EQ(button->GetGeometry(), UI::Rect(0, 19, 0, 9));
    button->SetOverlayImage("Dot");
    button->SetOverlayPressShift(true);
    s.Paint();
    EXPECT_EQ(s.Pixel(0, 0), 0xFFFF0000u);
    // The overlay is centred: 4 by 2 in 20 by 10 starts at (8, 4).
    EXPECT_EQ(s.Pixel(8, 4), 0xFF0000FFu);
    EXPECT_EQ(s.Pixel(7, 4), 0xFFFF0000u);
    EXPECT_EQ(s.Pixel(25, 5), kBlack);

    s.Press(2, 2);
    s.Paint();
    EXPECT_EQ(s.Pixel(0, 0), 0xFF00FF00u);
    EXPECT_EQ(s.Pixel(8, 4), 0xFF00FF00u) << "pressed, the overlay moves one pixel down";
    EXPECT_EQ(s.Pixel(8, 5), 0xFFFFFFFFu);
    s.Release(2, 2);

    button->SetProperty<int>("Disabled Alpha", 60);
    button->SetEnabled(false);
    EXPECT_EQ(button->GetBaseAlpha(), 60);
}

TEST(CheckBoxToggle, AClickInvertsTheParameterAndAltRestoresItsDefault)
{
    Scene s;
    Controller::BoolParamMemory param(true);
    auto* box = new UI::SimpleCheckBox(s.frame.get(), nullptr, "Snap", &param);
    box->SetGeometry(0, 0, 100, 10);
    Tally user(box->signalUserToggled);
    EXPECT_TRUE(box->IsChecked());
    EXPECT_TRUE(box->IsPressed());
    ASSERT_NE(box->GetLabelWindow(), nullptr);
    EXPECT_EQ(box->GetLabelWindow()->GetName(), String("CheckBox Snap Label Text"));
    EXPECT_EQ(box->GetLabelWindow()->GetDynamicLayoutMode(), UI::Window::DynamicLayoutNever);

    s.Click(5, 5);
    EXPECT_FALSE(param.get());
    EXPECT_FALSE(box->IsChecked());
    EXPECT_EQ(user.count, 1);
    EXPECT_FALSE(param.IsGrabbed()) << "the gesture is closed again";
    {
        AltHeld alt;
        s.Click(5, 5);
    }
    EXPECT_TRUE(param.get()) << "back to the default";
    EXPECT_EQ(user.count, 1);

    box->SetChecked(false);
    EXPECT_FALSE(param.get());
    EXPECT_EQ(user.count, 1) << "SetChecked is not the user's";
    param.set(true);
    EXPECT_TRUE(box->IsChecked()) << "the box follows the parameter";
    box->slotLabelClicked();
    EXPECT_FALSE(param.get());
    EXPECT_EQ(user.count, 2);

    // The keyboard toggles too.
    box->onKeyPress(UI::KeyCode::Enter, 0, false);
    EXPECT_TRUE(param.get());
}

TEST(CheckBoxBinding, KeyPathsResolveThroughTheFrameAndUnresolvedOnesDoNothing)
{
    Scene s;
    Controller::BoolParamMemory param(false);
    s.canvas.SetValueForKey("Snap", boost::any(static_cast<Controller::BoolParam*>(&param)));
    auto* bound = new UI::CheckBox(s.frame.get(), nullptr, "Bound", String("Snap"));
    EXPECT_EQ(bound->GetController(), &param);
    bound->SetGeometry(0, 0, 100, 10);
    s.Click(5, 5);
    EXPECT_TRUE(param.get());

    auto* unbound = new UI::CheckBox(s.frame.get(), nullptr, "Unbound", String("Nothing.Here"));
    unbound->SetGeometry(0, 20, 100, 10);
    EXPECT_EQ(unbound->GetController(), nullptr);
    Tally user(unbound->signalUserToggled);
    s.Click(5, 25);
    EXPECT_FALSE(unbound->IsChecked());
    EXPECT_EQ(user.count, 0);

    // Without any parameter the box keeps its own.
    auto* own = new UI::CheckBox(s.frame.get(), nullptr, "Own");
    own->SetGeometry(0, 40, 100, 10);
    s.Click(5, 45);
    EXPECT_TRUE(own->IsChecked());
    own->SetProperty<String>("Controller Key Path", "Snap");
    EXPECT_EQ(own->GetController(), &param);
}

TEST(SimpleCheckBoxDrawing, OutlinesASquareAndFillsItWhenChecked)
{
    Scene s(40, 20);
    auto* box = new UI::SimpleCheckBox(s.frame.get(), nullptr, "Box");
    box->SetGeometry(0, 0, 40, 10);
    box->SetColor(0xFFFFFFFFu);
    box->GetLabelWindow()->Hide();
    s.Paint();
    EXPECT_EQ(s.Pixel(0, 0), 0xFFFFFFFFu);
    EXPECT_EQ(s.Pixel(9, 9), 0xFFFFFFFFu);
    EXPECT_EQ(s.Pixel(5, 5), kBlack);
    EXPECT_EQ(s.Pixel(10, 5), kBlack) << "the square is as wide as the window is high";
    box->SetChecked(true);
    s.Paint();
    EXPECT_EQ(s.Pixel(1, 1), 0xFFFFFFFFu);
    EXPECT_EQ(s.Pixel(8, 8), 0xFFFFFFFFu);
    box->SetFillWhenChecked(true, 0xFF00FF00u);
    s.Paint();
    EXPECT_EQ(s.Pixel(5, 5), 0xFF00FF00u);
    EXPECT_EQ(s.Pixel(0, 0), 0xFFFFFFFFu);
}

TEST(OnOffButtonToggle, ClicksWriteTheInvertedValueAndTheLookFollows)
{
    Scene s;
    Controller::BoolParamMemory param(false);
    auto* button = new UI::OnOffButton(s.frame.get(), nullptr, "Mute Button", &param);
    button->SetGeometry(0, 0, 20, 20);
    Tally user(button->signalUserToggled);
    std::vector<std::string> undo;
    button->signalUndoEvent.Connect(
        nullptr,
        boost::function<void(String const&)>([&](String const& t) { undo.push_back(t.CStr()); }));
    s.Click(5, 5);
    EXPECT_TRUE(param.get());
    EXPECT_TRUE(button->IsPressed());
    EXPECT_EQ(user.count, 1);
    s.Click(5, 5);
    EXPECT_FALSE(param.get());
    EXPECT_FALSE(button->IsPressed());
    EXPECT_EQ(undo, (std::vector<std::string>{"Param: On", "Param: Off"}));

    param.set(true);
    EXPECT_TRUE(button->IsPressed()) << "a change from elsewhere updates the look";
    EXPECT_EQ(user.count, 2);
    {
        AltHeld alt;
        s.Click(5, 5);
    }
    EXPECT_FALSE(param.get());

    auto* unbound = new UI::OnOffButton(s.frame.get(), nullptr, "Loose", String("No.Path"));
    unbound->SetGeometry(30, 0, 20, 20);
    Tally looseUser(unbound->signalUserToggled);
    s.Click(35, 5);
    EXPECT_EQ(looseUser.count, 0);
    EXPECT_FALSE(unbound->IsPressed());
}

TEST(OnOffPulse, ButtonsPulseWhileOnAndLeaveTheTimerWhenOffOrGone)
{
    using UI::PulseOverlayTimerClient;
    // The clock outlives the frame, which asks it the time as its windows go.
    unsigned int now = 0;
    Scene s;
    UI::AnimationHandler* animations = s.frame->GetAnimationHandler();
    animations->SetClock([&now] { return now; });
    auto* pulse = new UI::PulseOverlayTimer(s.frame.get(), nullptr, "Pulse");
    Controller::BoolParamMemory param(false);
    auto* button = new UI::OnOffButton(s.frame.get(), nullptr, "Light", &param);
    auto* box = new UI::SimpleCheckBox(s.frame.get(), nullptr, "Box", &param);
    button->SetPulseOverlayTimer(pulse);
    box->SetPulseOverlayTimer(pulse);
    EXPECT_EQ(pulse->GetState(), PulseOverlayTimerClient::StateIdle) << "off buttons stay out";

    param.set(true);
    EXPECT_EQ(pulse->GetState(), PulseOverlayTimerClient::StateOn);
    now = 500;
    animations->tick();
    now = 750;
    animations->tick();
    ASSERT_EQ(pulse->GetState(), PulseOverlayTimerClient::StateFalling);
    EXPECT_LT(pulse->GetPulseAlpha(), 255u);
    EXPECT_EQ(button->GetPulseAlpha(), pulse->GetPulseAlpha());
    EXPECT_EQ(box->GetPulseAlpha(), pulse->GetPulseAlpha());

    param.set(false);
    EXPECT_EQ(button->GetPulseAlpha(), 255u) << "leaving shows opaque again";
    EXPECT_EQ(box->GetPulseAlpha(), 255u);
    EXPECT_EQ(pulse->GetState(), PulseOverlayTimerClient::StateIdle)
        << "the last one out stops the cycle";

    // A new timer starts over: the old one is left, the new one joined.
    param.set(true);
    auto* other = new UI::PulseOverlayTimer(s.frame.get(), nullptr, "Other Pulse");
    box->SetPulseOverlayTimer(other);
    EXPECT_EQ(other->GetState(), PulseOverlayTimerClient::StateOn);
    EXPECT_EQ(pulse->GetState(), PulseOverlayTimerClient::StateOn) << "the button is still in";
    delete button;
    EXPECT_EQ(pulse->GetState(), PulseOverlayTimerClient::StateIdle)
        << "a button that goes leaves its timer";
    box->SetPulseOverlayTimer(nullptr);
    EXPECT_EQ(other->GetState(), PulseOverlayTimerClient::StateIdle);
    EXPECT_EQ(box->GetPulseAlpha(), 255u);
}

TEST(RadioButtonChoice, EachButtonWritesItsOwnValue)
{
    Scene s;
    Controller::EnumParamMemory param(0, {String("Low"), String("High")});
    auto* low = new UI::RadioButton(s.frame.get(), nullptr, "Low", &param, 0);
    auto* high = new UI::RadioButton(s.frame.get(), nullptr, "High", &param, 1);
    low->SetGeometry(0, 0, 40, 10);
    high->SetGeometry(0, 20, 40, 10);
    std::vector<bool> lowToggled;
    low->signalToggled.Connect(
        nullptr, boost::function<void(bool)>([&](bool on) { lowToggled.push_back(on); }));
    Tally highUser(high->signalUserToggled);
    EXPECT_TRUE(low->IsChecked());
    EXPECT_FALSE(high->IsChecked());

    s.Click(5, 25);
    EXPECT_EQ(param.get(), 1u);
    EXPECT_TRUE(high->IsChecked());
    EXPECT_FALSE(low->IsChecked());
    EXPECT_EQ(highUser.count, 1);
    EXPECT_EQ(lowToggled, (std::vector<bool>{false}));
    s.Click(5, 25);
    EXPECT_EQ(highUser.count, 1) << "a checked radio button is not unchecked by a click";
    EXPECT_TRUE(high->IsChecked());

    param.set(0);
    EXPECT_TRUE(low->IsChecked());
    EXPECT_FALSE(high->IsChecked());
}

TEST(BracketSetLayout, CaptionSitsOnTheTopEdgeAndBracketsAnimateFromTheMiddle)
{
    // The clock outlives the scene, whose frame still reads it while windows die.
    unsigned int now = 1000;
    Scene s(120, 120);
    s.frame->GetAnimationHandler()->SetClock([&now] { return now; });
    auto* set = new UI::BracketSet(s.frame.get(), nullptr, "Group", "Options");
    EXPECT_EQ(set->GetGeometry(), UI::Rect(0, 99, 0, 99));
    ASSERT_NE(set->GetBracketWindow(), nullptr);
    EXPECT_EQ(set->GetBracketWindow()->GetName(), String("Bracket Window"));
    EXPECT_EQ(set->GetCaptionWindow()->GetName(), String("BracketSet Group Caption Text"));
    UI::Text* caption = set->GetCaptionWindow();
    ASSERT_GT(caption->GetHeight(), 0);
    int const top = set->GetBracketWindow()->GetGeometry().top;
    EXPECT_EQ(top, caption->GetHeight() / 2);
    EXPECT_EQ(caption->GetGeometry().top + caption->GetHeight() / 2, top);
    EXPECT_NEAR(caption->GetGeometry().left + caption->GetWidth() / 2, 50, 1);

    set->AnimateInBrackets(checked_value<unsigned int>(), 200);
    EXPECT_EQ(set->GetBracketWindow()->GetWidth(), 0);
    now += 100;
    s.frame->GetAnimationHandler()->tick();
    EXPECT_NEAR(set->GetBracketWindow()->GetWidth(), 50, 2);
    now += 100;
    s.frame->GetAnimationHandler()->tick();
    EXPECT_EQ(set->GetBracketWindow()->GetGeometry(), set->GetBracketRect());

    set->AnimateOutCaption(checked_value<unsigned int>(), 100);
    now += 100;
    s.frame->GetAnimationHandler()->tick();
    EXPECT_EQ(caption->GetAlpha(), 0);
    set->AnimateInCaption(checked_value<unsigned int>(), 100, 200);
    now += 100;
    s.frame->GetAnimationHandler()->tick();
    EXPECT_EQ(caption->GetAlpha(), 200);
}

TEST(BracketSetDrawing, DrawsTwoBracketsInItsColour)
{
    Scene s(40, 40);
    auto* set = new UI::BracketSet(s.frame.get(), nullptr, "Brackets");
    set->SetGeometry(0, 0, 40, 40);
    set->SetColor(0xFFFFFFFFu);
    s.Paint();
    int const top = set->GetBracketRect().top;
    EXPECT_EQ(s.Pixel(0, top + 10), 0xFFFFFFFFu);
    EXPECT_EQ(s.Pixel(39, top + 10), 0xFFFFFFFFu);
    EXPECT_EQ(s.Pixel(5, 39), 0xFFFFFFFFu);
    EXPECT_EQ(s.Pixel(6, 39), kBlack) << "the stroke is six pixels long";
    EXPECT_EQ(s.Pixel(20, 39), kBlack);
    EXPECT_EQ(s.Pixel(20, 20), kBlack);
    set->SetProperty<int>("Border Style", 1);
    s.Paint();
    EXPECT_EQ(s.Pixel(20, 39), 0xFFFFFFFFu);
}

TEST_F(Images, SimpleBannerBGFillsAndDrawsItsImageTopLeft)
{
    ButtonTest::WriteSolidPng(folder, "banner.png", 10, 5, 0xFF123456u);
    Scene s(30, 20);
    UseFolder();
    auto* bg = new UI::SimpleBannerBG(s.frame.get(), nullptr, "background",
                                      UI::SimpleBannerBG::kDefaultColor, "banner.png");
    bg->SetGeometry(0, 0, 30, 20);
    EXPECT_TRUE(bg->HasImage());
    s.Paint();
    EXPECT_EQ(s.Pixel(0, 0), 0xFF123456u);
    EXPECT_EQ(s.Pixel(9, 4), 0xFF123456u);
    EXPECT_EQ(s.Pixel(10, 4), 0xFFCDCDCDu);
    EXPECT_EQ(s.Pixel(29, 19), 0xFFCDCDCDu);

    auto* plain =
        new UI::SimpleBannerBG(s.frame.get(), nullptr, "plain", 0xFF0000FFu, "missing.png");
    plain->SetGeometry(0, 10, 30, 10);
    EXPECT_FALSE(plain->HasImage());
    s.Paint();
    EXPECT_EQ(s.Pixel(0, 15), 0xFF0000FFu);
}

TEST(PushButtonPreRenderedCaption, DrawsTheSameCaptionFromItsBitmap)
{
    // The caption drawn directly and from the bitmap, on the same white fill.
    auto draw = [](bool preRender, String const& caption, std::vector<unsigned int>& pixels)
    {
        Scene s(80, 24);
        s.canvas.SetPaletteColor("White", 0xFFFFFFFFu);
        auto* button =
            new UI::PushButton(s.frame.get(), nullptr, "Push", caption, "",
                               checked_value<unsigned int>(), checked_value<unsigned int>());
        button->SetGeometry(0, 0, 80, 24);
        button->SetFillColorKey("White");
        button->SetProperty<bool>("Enable Pre-rendered Caption Text", preRender);
        s.Paint();
        for (int y = 0; y < 24; ++y)
            for (int x = 0; x < 80; ++x)
                pixels.push_back(s.Pixel(x, y));
        return button->HasPreRenderedCaption();
    };
    for (char const* caption : {"Go", "Pre-rendered"})
    {
        std::vector<unsigned int> direct, cached;
        EXPECT_FALSE(draw(false, caption, direct));
        EXPECT_TRUE(draw(true, caption, cached)) << caption;
        ASSERT_EQ(direct.size(), cached.size());
        int inked = 0;
        for (std::size_t i = 0; i < direct.size(); ++i)
        {
            inked += direct[i] != 0xFFFFFFFFu;
            for (int shift : {0, 8, 16})
                EXPECT_NEAR(int((direct[i] >> shift) & 0xFF), int((cached[i] >> shift) & 0xFF), 2)
                    << caption << " at " << i;
        }
        EXPECT_GT(inked, 10) << caption;
    }
}
