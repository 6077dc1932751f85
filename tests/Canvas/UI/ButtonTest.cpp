#include "Canvas/UI/Button.h"

#include "Canvas/UI/KeyCode.h"
#include "TvBase/Command/CommandInvocation.h"
#include "TvBase/Command/CommandManager.h"
#include "tests/Canvas/UI/TestWindows.h"
#include "tests/Canvas/UI/support/ButtonTestSupport.h"

#include <boost/function.hpp>
#include <gtest/gtest.h>

using ButtonTest::AltHeld;
using ButtonTest::Scene;
using UI::Button;

namespace
{

/// Counts every signal of one button.
struct Counts
{
    int clicked = 0;
    int doubleClicked = 0;
    int rightClicked = 0;
    int altClicked = 0;
    int started = 0;
    int ended = 0;
    std::vector<bool> events;

    explicit Counts(Button* b)
    {
        b->signalClicked.Connect(nullptr, boost::function<void()>([this] { ++clicked; }));
        b->signalDoubleClicked.Connect(nullptr,
                                       boost::function<void()>([this] { ++doubleClicked; }));
        b->signalRightClicked.Connect(nullptr, boost::function<void()>([this] { ++rightClicked; }));
        b->signalAltClicked.Connect(nullptr, boost::function<void()>([this] { ++altClicked; }));
        b->signalPressStarted.Connect(nullptr, boost::function<void()>([this] { ++started; }));
        b->signalPressEnded.Connect(nullptr, boost::function<void()>([this] { ++ended; }));
        b->signalPressEvent.Connect(
            nullptr, boost::function<void(bool)>([this](bool on) { events.push_back(on); }));
    }
};

/// A 100 by 60 scene with a 40 by 20 button at (10, 10), whose signals it counts, on a parent
/// that records what reaches it.
struct ButtonScene : Scene
{
    UI::Test::Log log;
    UI::Test::RecordingWindow* parent;
    Button* button;
    Counts c;

    explicit ButtonScene(Button::Mode mode = Button::Momentary)
        : Scene(100, 60), parent(makeParent()),
          button(new Button(frame.get(), parent, "Button", mode)), c(button)
    {
        button->SetGeometry(10, 10, 40, 20);
    }

    UI::Test::RecordingWindow* makeParent()
    {
        auto* w = new UI::Test::RecordingWindow(frame.get(), nullptr, "Parent", &log);
        w->SetGeometry(0, 0, 100, 60);
        w->takesMouse = true;
        return w;
    }
};

} // namespace

TEST(ButtonMomentary, PressCapturesAReleaseInsideClicksAndOutsideCancels)
{
    ButtonScene s;
    EXPECT_EQ(s.button->GetWindowType(), String("Button"));
    EXPECT_TRUE(s.Press(20, 15));
    EXPECT_TRUE(s.button->IsPressed());
    EXPECT_EQ(s.frame->GetMouseCapture(), s.button);
    EXPECT_EQ(s.c.clicked, 0);
    EXPECT_TRUE(s.Release(21, 16));
    EXPECT_FALSE(s.button->IsPressed());
    EXPECT_EQ(s.frame->GetMouseCapture(), nullptr);
    EXPECT_EQ(s.c.clicked, 1);
    EXPECT_TRUE(s.log.empty());

    // A release outside cancels, and dragging back in restores the click.
    s.Press(20, 15);
    s.Move(70, 40);
    EXPECT_FALSE(s.button->IsPressed()) << "dragging off pops the button up";
    s.Release(70, 40);
    EXPECT_EQ(s.c.clicked, 1);
    EXPECT_FALSE(s.button->IsPressed());
    EXPECT_EQ(s.frame->GetMouseCapture(), nullptr);

    s.Press(20, 15);
    s.Move(70, 40);
    s.Move(49, 29); // the bottom-right corner pixel is inside
    EXPECT_TRUE(s.button->IsPressed());
    s.Release(49, 29);
    EXPECT_EQ(s.c.clicked, 2);
}

TEST(ButtonLatching, StaysDownAndIgnoresAPressWhileDown)
{
    ButtonScene s(Button::Latching);
    s.Click(20, 15);
    EXPECT_TRUE(s.button->IsPressed());
    EXPECT_EQ(s.c.clicked, 1);
    EXPECT_TRUE(s.Press(20, 15)) << "the press is still taken";
    EXPECT_EQ(s.frame->GetMouseCapture(), nullptr);
    s.Release(20, 15);
    EXPECT_EQ(s.c.clicked, 1);
    EXPECT_TRUE(s.button->IsPressed());

    s.button->SetPressed(false);
    s.Press(20, 15);
    s.Move(80, 50);
    EXPECT_FALSE(s.button->IsPressed());
    s.Release(80, 50);
    EXPECT_FALSE(s.button->IsPressed()) << "released outside: stays up and does not click";
    EXPECT_EQ(s.c.clicked, 1);
}

TEST(ButtonImmediate, ClicksOnThePressWithoutCapture)
{
    ButtonScene s(Button::Immediate);
    EXPECT_TRUE(s.Press(20, 15));
    EXPECT_EQ(s.c.clicked, 1);
    EXPECT_FALSE(s.button->IsPressed());
    EXPECT_EQ(s.frame->GetMouseCapture(), nullptr);
    s.Release(20, 15);
    EXPECT_EQ(s.c.clicked, 1);
}

TEST(ButtonToggle, EachPressFlipsAndClicksAtOnce)
{
    ButtonScene s(Button::Toggle);
    s.Press(20, 15);
    EXPECT_TRUE(s.button->IsPressed());
    EXPECT_EQ(s.c.clicked, 1);
    EXPECT_EQ(s.frame->GetMouseCapture(), nullptr);
    s.Release(20, 15);
    EXPECT_TRUE(s.button->IsPressed());
    s.Click(20, 15);
    EXPECT_FALSE(s.button->IsPressed());
    EXPECT_EQ(s.c.clicked, 2);
}

TEST(ButtonAlt, AltClickFiresOnlyTheAltSignalInEveryMode)
{
    for (Button::Mode mode :
         {Button::Momentary, Button::Latching, Button::Immediate, Button::Toggle})
    {
        ButtonScene s(mode);
        {
            AltHeld alt;
            EXPECT_TRUE(s.Press(20, 15));
            s.Release(20, 15);
        }
        EXPECT_EQ(s.c.altClicked, 1) << mode;
        EXPECT_EQ(s.c.clicked, 0) << mode;
        EXPECT_FALSE(s.button->IsPressed()) << mode;
        EXPECT_EQ(s.frame->GetMouseCapture(), nullptr) << mode;
        s.Click(20, 15);
        EXPECT_EQ(s.c.clicked, 1) << mode << ": without Alt it clicks again";
    }
}

TEST(ButtonDoubleClick, TwoFastClicksAreTwoClicksUnlessTheOptionMakesADoubleClick)
{
    ButtonScene s;
    s.Press(20, 15);
    s.Release(20, 15);
    s.DoubleClick(20, 15);
    s.Release(20, 15);
    EXPECT_EQ(s.c.clicked, 2);
    EXPECT_EQ(s.c.doubleClicked, 0);

    // With the option the second press is a double click.
    s.button->SetDoubleClickEnabled(true);
    s.Press(20, 15);
    s.Release(20, 15);
    EXPECT_TRUE(s.DoubleClick(20, 15));
    EXPECT_EQ(s.c.doubleClicked, 1);
    EXPECT_TRUE(s.button->IsPressed());
    EXPECT_EQ(s.frame->GetMouseCapture(), s.button);
    s.Release(20, 15);
    EXPECT_EQ(s.c.clicked, 4);
    EXPECT_FALSE(s.button->IsPressed());
    // Outside the button the double click goes on to the parent.
    EXPECT_TRUE(s.DoubleClick(80, 50));
    EXPECT_EQ(s.c.doubleClicked, 1);
}

TEST(ButtonRightClick, ReleaseInsideFiresAndOutsideCancels)
{
    ButtonScene s(Button::Latching);
    s.button->SetPressed(true);
    EXPECT_TRUE(s.RightPress(20, 15));
    EXPECT_TRUE(s.button->IsRightPressed());
    EXPECT_EQ(s.frame->GetMouseCapture(), s.button);
    EXPECT_TRUE(s.RightRelease(20, 15));
    EXPECT_EQ(s.c.rightClicked, 1);
    EXPECT_FALSE(s.button->IsRightPressed());
    EXPECT_FALSE(s.button->IsPressed()) << "a right release pops the pressed state";
    EXPECT_EQ(s.c.clicked, 0);

    s.RightPress(20, 15);
    s.RightRelease(90, 55);
    EXPECT_EQ(s.c.rightClicked, 1);
    EXPECT_EQ(s.frame->GetMouseCapture(), nullptr);

    s.button->SetRightClickEnabled(false);
    s.RightPress(20, 15);
    ASSERT_EQ(s.log.size(), 1u);
    EXPECT_EQ(s.log[0], "Parent:rpress(20,15)") << "a disabled right click reaches the parent";
}

TEST(ButtonPressSignals, BracketAPressOnlyWhenEnabled)
{
    ButtonScene s;
    s.Click(20, 15);
    EXPECT_EQ(s.c.started + s.c.ended, 0);
    s.button->SetPressSignalsEnabled(true);
    s.Press(20, 15);
    EXPECT_EQ(s.c.started, 1);
    EXPECT_EQ(s.c.ended, 0);
    s.Release(90, 55);
    EXPECT_EQ(s.c.ended, 1) << "a cancelled press still ends";
    EXPECT_EQ(s.c.events, (std::vector<bool>{true, false}));
}

TEST(ButtonClickableRect, PressesOutsideItGoOnToTheParent)
{
    ButtonScene s;
    s.button->SetClickableRect(UI::Rect(5, 14, 5, 9)); // window coordinates
    EXPECT_EQ(s.button->getClickableRect(), UI::Rect(5, 14, 5, 9));
    s.Press(12, 12);
    s.Release(12, 12);
    EXPECT_EQ(s.c.clicked, 0);
    ASSERT_FALSE(s.log.empty());
    EXPECT_EQ(s.log[0], "Parent:press(12,12)");
    // Both corners are inclusive.
    EXPECT_TRUE(s.button->isPixelClickable(UI::Point(5, 5)));
    EXPECT_TRUE(s.button->isPixelClickable(UI::Point(14, 9)));
    EXPECT_FALSE(s.button->isPixelClickable(UI::Point(15, 9)));
    s.Click(24, 19);
    EXPECT_EQ(s.c.clicked, 1);
    // Empty again: the whole window.
    s.button->SetClickableRect(UI::Rect());
    EXPECT_EQ(s.button->getClickableRect(), UI::Rect(0, 39, 0, 19));
}

TEST(ButtonKeyboard, EnterActivatesAndReturnOnlyWhenAccepted)
{
    ButtonScene s;
    s.frame->SetFocus(s.button);
    ASSERT_EQ(s.frame->GetFocus(), s.button);
    EXPECT_TRUE(s.Key(UI::KeyCode::Enter));
    EXPECT_EQ(s.c.clicked, 1);
    EXPECT_TRUE(s.button->IsKeyPressed());
    EXPECT_TRUE(s.KeyUp(UI::KeyCode::Enter));
    EXPECT_FALSE(s.button->IsKeyPressed());
    EXPECT_FALSE(s.button->onKeyPress(UI::KeyCode::Return, 0, false));
    EXPECT_FALSE(s.button->onKeyPress('A', 0, false));
    EXPECT_EQ(s.c.clicked, 1);
    s.button->SetAcceptReturn(true);
    EXPECT_TRUE(s.button->onKeyPress(UI::KeyCode::Return, 0, false));
    EXPECT_EQ(s.c.clicked, 2);
}

TEST(ButtonKeyboard, ShiftActivationIsARightClickOnlyInMomentaryAndImmediate)
{
    struct Case
    {
        Button::Mode mode;
        int clicked;
        int rightClicked;
    };
    for (Case const& k : {Case{Button::Momentary, 0, 1}, Case{Button::Immediate, 0, 1},
                          Case{Button::Latching, 1, 0}, Case{Button::Toggle, 1, 0}})
    {
        ButtonScene s(k.mode);
        EXPECT_TRUE(s.button->onKeyPress(UI::KeyCode::Enter, UI::FlagShift, false));
        EXPECT_EQ(s.c.clicked, k.clicked) << k.mode;
        EXPECT_EQ(s.c.rightClicked, k.rightClicked) << k.mode;
    }
}

TEST(ButtonKeyboard, LatchingAndToggleKeepTheirState)
{
    ButtonScene latching(Button::Latching);
    latching.button->onKeyPress(UI::KeyCode::Enter, 0, false);
    EXPECT_TRUE(latching.button->IsPressed());
    EXPECT_TRUE(latching.button->IsKeyPressed());
    latching.button->onKeyRelease(UI::KeyCode::Enter, 0);
    EXPECT_TRUE(latching.button->onKeyPress(UI::KeyCode::Enter, 0, false));
    EXPECT_EQ(latching.c.clicked, 1) << "already down: only a repaint";
    EXPECT_FALSE(latching.button->IsKeyPressed());

    ButtonScene toggle(Button::Toggle);
    toggle.button->onKeyPress(UI::KeyCode::Enter, 0, false);
    EXPECT_TRUE(toggle.button->IsPressed());
    EXPECT_TRUE(toggle.button->IsKeyPressed());
    toggle.button->onKeyPress(UI::KeyCode::Enter, 0, false);
    EXPECT_FALSE(toggle.button->IsPressed());
    EXPECT_FALSE(toggle.button->IsKeyPressed());
    EXPECT_EQ(toggle.c.clicked, 2);
}

TEST(ButtonDisabled, GetsNoMouseAndFadesToItsDisabledAlpha)
{
    ButtonScene s;
    s.button->onKeyPress(UI::KeyCode::Enter, 0, false);
    ASSERT_TRUE(s.button->IsKeyPressed());
    s.button->SetEnabled(false);
    EXPECT_FALSE(s.button->IsKeyPressed());
    EXPECT_EQ(s.button->GetBaseAlpha(), 128);
    s.Press(20, 15);
    s.Release(20, 15);
    EXPECT_FALSE(s.button->IsPressed());
    EXPECT_EQ(s.c.clicked, 1) << "only the key press before disabling";
    s.button->SetEnabled(true);
    EXPECT_EQ(s.button->GetBaseAlpha(), 255);
    s.Click(20, 15);
    EXPECT_EQ(s.c.clicked, 2);
}

TEST(ButtonAutomation, ClicksAsTheModeSays)
{
    ButtonScene s(Button::Toggle);
    s.button->UIAutomationClick();
    EXPECT_TRUE(s.button->IsPressed());
    s.button->UIAutomationClick();
    EXPECT_FALSE(s.button->IsPressed());
    EXPECT_EQ(s.c.clicked, 2);
    EXPECT_FALSE(s.button->IsKeyPressed());

    s.button->SetMode(Button::Latching);
    s.button->UIAutomationClick();
    s.button->UIAutomationClick();
    EXPECT_TRUE(s.button->IsPressed());
    EXPECT_EQ(s.c.clicked, 3);
}

TEST(ButtonCommand, AClickRunsTheCommandNamedByTheProperty)
{
    ButtonScene s;
    int runs = 0;
    s.canvas.GetCommandManager()
        ->registerCommand("Test.Run")
        .Connect(nullptr, boost::function<void(Command::CommandInvocation const&, bool&)>(
                              [&](Command::CommandInvocation const&, bool& handled)
                              {
                                  ++runs;
                                  handled = true;
                              }));
    s.Click(20, 15);
    EXPECT_EQ(runs, 0) << "no command id, nothing runs";
    s.button->SetCommandID("Test.Run");
    EXPECT_EQ(s.button->GetCommandID(), String("Test.Run"));
    s.Click(20, 15);
    EXPECT_EQ(runs, 1);
}
