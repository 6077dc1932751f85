#include "Canvas/UI/Tab.h"

#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/WindowStack.h"

#include "tests/Canvas/UI/ScrollScene.h"

#include <gtest/gtest.h>

using UI::Test::RecordingWindow;
using UI::Test::ScrollScene;

TEST(TabSwitching, ClicksKeysAndDriverClicksSelectPages)
{
    ScrollScene s;
    UI::WindowStack* stack = new UI::WindowStack(s.frame.get(), nullptr, "Pages");
    stack->SetGeometry(0, 30, 200, 100);
    RecordingWindow* general = s.Make(stack, "General", 0, 0, 5, 5);
    RecordingWindow* advanced = s.Make(stack, "Advanced", 0, 0, 5, 5);
    UI::Tab* tabs[2] = {new UI::Tab(s.frame.get(), nullptr, "General Tab", "General"),
                        new UI::Tab(s.frame.get(), nullptr, "Advanced Tab", "Advanced")};
    tabs[0]->SetGeometry(0, 0, 80, 25);
    tabs[1]->SetGeometry(90, 0, 80, 25);
    std::vector<int> clicks;
    for (unsigned int i = 0; i < 2; ++i)
        tabs[i]->signalClicked.Connect(nullptr,
                                       [&, i]()
                                       {
                                           clicks.push_back(static_cast<int>(i));
                                           stack->RaiseWindow(i);
                                           tabs[i]->SetActive(true);
                                           tabs[1 - i]->SetActive(false);
                                       });
    tabs[0]->SetActive(true);
    ASSERT_TRUE(tabs[0]->GetTextWindow());
    EXPECT_EQ(String("Tab Text"), tabs[0]->GetTextWindow()->GetName());
    EXPECT_EQ(String("Advanced"), tabs[1]->GetCaption());

    s.Mouse(UI::MouseLeftPress, 120, 10, UI::FlagLeftButton);
    s.Mouse(UI::MouseLeftRelease, 120, 10);
    EXPECT_EQ(advanced, stack->GetVisibleWindow());
    EXPECT_EQ(0xFFFFFFFFu, tabs[1]->GetTextColor());
    EXPECT_EQ(0xFFAFAFAFu, tabs[0]->GetTextColor());
    EXPECT_EQ(0xFFAFAFAFu, tabs[0]->GetTextWindow()->GetColor());

    s.frame->SetFocus(tabs[0]);
    EXPECT_TRUE(s.Key(UI::KeyCode::Enter));
    EXPECT_EQ(general, stack->GetVisibleWindow());
    EXPECT_FALSE(s.Key('A')) << "only the activation key clicks";

    tabs[1]->AXClick();
    EXPECT_EQ(advanced, stack->GetVisibleWindow());
    EXPECT_EQ(std::vector<int>({1, 0, 1}), clicks);

    // An active tab drawn as disabled, or disabled, shows the inactive colour.
    tabs[1]->SetDrawDisabled(true);
    EXPECT_EQ(0xFFAFAFAFu, tabs[1]->GetTextColor());
    tabs[1]->SetDrawDisabled(false);
    EXPECT_EQ(0xFFFFFFFFu, tabs[1]->GetTextWindow()->GetColor());
    tabs[1]->SetEnabled(false);
    EXPECT_EQ(0xFFAFAFAFu, tabs[1]->GetTextWindow()->GetColor());

    tabs[0]->SetCaption("Basics");
    EXPECT_EQ(String("Basics"), tabs[0]->GetCaption());
}
