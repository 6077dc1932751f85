#include "Canvas/UI/ButtonGroup.h"

#include "Canvas/UI/OnOffButton.h"
#include "Canvas/UI/RadioButton.h"
#include "Canvas/UI/SimplePushButton.h"
#include "TvBase/Controller/BoolParamMemory.h"
#include "tests/Canvas/UI/support/ButtonTestSupport.h"

#include <boost/function.hpp>
#include <gtest/gtest.h>

using ButtonTest::Scene;

namespace
{

/// Three push buttons side by side, 20 by 20 at x = 0, 30 and 60, inserted in a group unless
/// told not to.
struct GroupScene : Scene
{
    UI::ButtonGroup group;
    std::vector<UI::SimplePushButton*> buttons;
    std::vector<unsigned int> clicked;

    GroupScene(bool exclusive, bool insert = true) : Scene(100, 40), group(exclusive)
    {
        for (int i = 0; i < 3; ++i)
        {
            buttons.push_back(new UI::SimplePushButton(frame.get(), nullptr, String("B%1").Arg(i),
                                                       String("%1").Arg(i)));
            buttons.back()->SetGeometry(i * 30, 0, 20, 20);
            if (insert)
                group.Insert(buttons.back());
        }
        group.signalClicked.Connect(nullptr,
                                    boost::function<void(unsigned int)>(
                                        [this](unsigned int id) { clicked.push_back(id); }));
    }
};

} // namespace

TEST(ButtonGroupIds, NextIdFollowsTheHighestAndDuplicatesAreRefused)
{
    GroupScene s(true, false);
    EXPECT_EQ(s.group.Insert(s.buttons[0]), 0u);
    EXPECT_EQ(s.group.Insert(s.buttons[1], 7u), 7u);
    try
    {
        s.group.Insert(s.buttons[2], 7u);
        ADD_FAILURE() << "a duplicate id must be refused";
    }
    catch (UI::ButtonGroup::DuplicateID const& e)
    {
        EXPECT_EQ(e.GetMessage(), String("ID 7 is not unique"));
    }
    EXPECT_EQ(s.group.GetButtons().size(), 2u);
    EXPECT_EQ(s.group.GetButton(7), s.buttons[1]);
    EXPECT_FALSE(s.group.GetID(s.buttons[2]));
    EXPECT_EQ(s.group.Insert(s.buttons[2]), 8u);
    EXPECT_EQ(*s.group.GetID(s.buttons[2]), 8u);
    EXPECT_EQ(s.buttons[2]->GetMode(), UI::Button::Latching);
}

TEST(ButtonGroupExclusive, AClickTurnsTheOthersOffAndASecondPressIsIgnored)
{
    GroupScene s(true);
    s.Click(5, 5);
    EXPECT_TRUE(s.buttons[0]->IsPressed());
    s.Click(35, 5);
    EXPECT_FALSE(s.buttons[0]->IsPressed());
    EXPECT_TRUE(s.buttons[1]->IsPressed());
    EXPECT_EQ(s.clicked, (std::vector<unsigned int>{0, 1}));
    EXPECT_EQ(*s.group.GetSelectedID(), 1u);
    EXPECT_EQ(s.group.GetSelectedButton(), s.buttons[1]);

    s.Click(35, 5);
    EXPECT_EQ(s.clicked.size(), 2u) << "a latched button ignores a second press";

    s.group.SetSelected(2u);
    EXPECT_TRUE(s.buttons[2]->IsPressed());
    EXPECT_FALSE(s.buttons[1]->IsPressed());
    EXPECT_EQ(s.clicked.size(), 2u) << "selection by code sends no signal";
}

TEST(ButtonGroupShared, NonExclusiveGroupsOnlyTurnButtonsOn)
{
    GroupScene s(false);
    s.Click(5, 5);
    s.Click(35, 5);
    EXPECT_TRUE(s.buttons[0]->IsPressed());
    EXPECT_TRUE(s.buttons[1]->IsPressed());
    s.group.SetSelected(s.buttons[2]);
    EXPECT_TRUE(s.buttons[0]->IsPressed());
    EXPECT_TRUE(s.buttons[2]->IsPressed());
    EXPECT_EQ(s.clicked, (std::vector<unsigned int>{0, 1}));
}

TEST(ButtonGroupMembers, RemovedButtonsNoLongerReport)
{
    GroupScene s(true);
    s.group.Remove(s.buttons[1]);
    EXPECT_EQ(s.group.GetButtons().size(), 2u);
    s.buttons[1]->SetMode(UI::Button::Momentary);
    s.Click(35, 5);
    EXPECT_TRUE(s.clicked.empty());

    s.group.SetButtonsEnabled(false);
    EXPECT_FALSE(s.buttons[0]->IsEnabled());
    EXPECT_TRUE(s.buttons[1]->IsEnabled());
    s.group.SetButtonTooltips({String("first"), String("third"), String("extra")});
    EXPECT_EQ(s.buttons[2]->GetToolTipText(), String("third"));
    std::vector<UI::Window*> order;
    s.group.AppendButtons(order);
    EXPECT_EQ(order, (std::vector<UI::Window*>{s.buttons[0], s.buttons[2]}));
    s.group.Clear();
    EXPECT_TRUE(s.group.GetButtons().empty());
}

TEST(ButtonGroupKinds, RadioAndOnOffButtonsJoinByTheirOwnSignals)
{
    Scene s(100, 40);
    UI::ButtonGroup group(true);
    std::vector<unsigned int> clicked;
    group.signalClicked.Connect(nullptr, boost::function<void(unsigned int)>(
                                             [&](unsigned int id) { clicked.push_back(id); }));
    auto* a = new UI::RadioButton(s.frame.get(), nullptr, "A");
    auto* b = new UI::RadioButton(s.frame.get(), nullptr, "B");
    a->SetGeometry(0, 0, 20, 20);
    b->SetGeometry(30, 0, 20, 20);
    group.Insert(a);
    group.Insert(b);
    s.Click(5, 5);
    EXPECT_TRUE(a->IsChecked());
    s.Click(35, 5);
    EXPECT_TRUE(b->IsChecked());
    EXPECT_FALSE(a->IsChecked());
    EXPECT_EQ(clicked, (std::vector<unsigned int>{0, 1}));

    Controller::BoolParamMemory p1(false), p2(false);
    auto* on1 = new UI::OnOffButton(s.frame.get(), nullptr, "On1", &p1);
    auto* on2 = new UI::OnOffButton(s.frame.get(), nullptr, "On2", &p2);
    on1->SetGeometry(0, 20, 20, 20);
    on2->SetGeometry(30, 20, 20, 20);
    UI::ButtonGroup pair(true);
    pair.Insert(on1);
    pair.Insert(on2);
    EXPECT_EQ(on1->GetMode(), UI::Button::Momentary);
    s.Click(5, 25);
    EXPECT_TRUE(p1.get());
    s.Click(35, 25);
    EXPECT_TRUE(p2.get());
    EXPECT_FALSE(p1.get()) << "the group turned the other one off";
    EXPECT_EQ(*pair.GetSelectedID(), 1u);
}
