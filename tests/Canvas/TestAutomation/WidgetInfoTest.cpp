// What each widget kind tells a test driver about itself, and how a number field takes what the
// user typed into its inline editor.

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/TestAutomation/TestAutomationCore.h"
#include "Canvas/UI/BracketSet.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/Hyperlink.h"
#include "Canvas/UI/Knob.h"
#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/ListBoxItem.h"
#include "Canvas/UI/OnOffButton.h"
#include "Canvas/UI/PixmapButton.h"
#include "Canvas/UI/RadioButton.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/SimpleScrollBar.h"
#include "Canvas/UI/Tab.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/WindowStack.h"
#include "TvBase/Controller/BoolParamMemory.h"
#include "TvBase/Controller/EnumParamMemory.h"
#include "TvBase/Controller/FloatParamMemory.h"
#include "tests/Canvas/UI/support/ButtonTestSupport.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

namespace
{

typedef std::map<std::string, std::string> Keys;

struct Reply : TestAutomation::RPCReplyInterface
{
    void SetValue(char const* key, char const* value) override { keys[key] = value; }
    void SetError(char const* text) override { error = text; }
    bool HasError() const override { return !error.empty(); }
    Keys keys;
    std::string error;
};

Keys infoOf(UI::Window* window)
{
    Reply reply;
    TestAutomation::TestAutomationCore::getTypeInfo(window, &reply);
    EXPECT_EQ("", reply.error);
    return reply.keys;
}

} // namespace

TEST(WidgetInfo, EveryKindAnswersItsKeysUnderItsOwnClassName)
{
    ButtonTest::Scene s(200, 200);
    UI::Frame* f = s.frame.get();
    Controller::BoolParamMemory on(true);
    Controller::EnumParamMemory size(1, {String("Small"), String("Medium")});
    Controller::FloatParamMemory gain(25.0f, value_range<float>(0.0f, 100.0f), "%");

    struct Case
    {
        std::function<UI::Window*()> make;
        char const* classname;
        Keys keys;
    };
    Case const cases[] = {
        {[&] { return new UI::SimplePushButton(f, nullptr, "P", "Go", "Below"); },
         "SimplePushButton",
         {{"isPressed", "false"}, {"caption", "Go"}, {"label", "Below"}}},
        {[&] { return new UI::PixmapButton(f, nullptr, "X"); },
         "PixmapButton",
         {{"isPressed", "false"}}},
        {[&] { return new UI::OnOffButton(f, nullptr, "O", &on); },
         "OnOffButton",
         {{"isPressed", "true"}, {"isOn", "true"}, {"caption", ""}}},
        {[&]
         {
             auto* box = new UI::SimpleCheckBox(f, nullptr, "C");
             box->SetLabel("Tick");
             box->SetChecked(true);
             return box;
         },
         "SimpleCheckBox",
         {{"isOn", "true"}, {"label", "Tick"}}},
        {[&]
         {
             auto* radio = new UI::RadioButton(f, nullptr, "R", &size, 1);
             radio->SetLabel("Medium");
             return radio;
         },
         "RadioButton",
         {{"isOn", "true"}, {"label", "Medium"}, {"value", "1"}}},
        {[&] { return new UI::Hyperlink(f, nullptr, "H", "Site", "https://example.com/"); },
         "Hyperlink",
         {{"text", "Site"}, {"url", "https://example.com/"}}},
        {[&] { return new UI::BracketSet(f, nullptr, "B", "Group"); },
         "BracketSet",
         {{"caption", "Group"}}},
        {[&]
         {
             auto* tab = new UI::Tab(f, nullptr, "T", "First");
             tab->SetActive(true);
             return tab;
         },
         "Tab",
         {{"caption", "First"}, {"isOn", "true"}}},
        {[&]
         {
             auto* bar = new UI::SimpleScrollBar(f, nullptr, "S", UI::Vertical,
                                                 UI::SimpleScrollBar::Simple);
             bar->SetParameters(value_range<int>(0, 80), 30, 20);
             return bar;
         },
         "SimpleScrollBar",
         {{"value", "30"}, {"min", "0"}, {"max", "80"}}},
        {[&]
         {
             auto* stack = new UI::WindowStack(f, nullptr, "W");
             stack->Insert(new UI::Window(f, stack, "Page 0"));
             stack->Insert(new UI::Window(f, stack, "Page 1"));
             stack->RaiseWindow(1);
             return stack;
         },
         "WindowStack",
         {{"value", "1"}}},
        {[&]
         {
             auto* edit = UI::CreateSimpleEdit(f, nullptr, "E", "");
             edit->SetRange(0.0f, 10.0f);
             edit->SetFloatValue(2.5f);
             return edit;
         },
         "SimpleEdit",
         {{"text", "2.500000"}, {"value", "2.500000"}, {"min", "0.000000"}, {"max", "10.000000"}}},
        {[&]
         {
             auto* list = new UI::ListBox(f, nullptr, "L");
             list->InsertItem("One", checked_value<unsigned int>());
             return list;
         },
         "ListBox",
         {{"selectedItem", "<no item selected>"}}},
        {[&]
         {
             auto* list = new UI::ListBox(f, nullptr, "Rows");
             list->InsertItem("Row A");
             list->SetCurrent(0u, false);
             return new UI::ListBoxItem(f, nullptr, list, 0);
         },
         "ListBoxItem",
         {{"item", "0"}, {"text", "Row A"}, {"isOn", "true"}}},
        {[&] { return new UI::Knob(f, nullptr, "K", &gain); },
         "Knob",
         {{"value", "25.000000"}, {"min", "0.000000"}, {"max", "100.000000"}}},
        {[&] { return new UI::Text(f, nullptr, "Tx", "Label"); }, "Text", {{"text", "Label"}}},
    };
    for (Case const& c : cases)
    {
        UI::Window* window = c.make();
        Keys const keys = infoOf(window);
        SCOPED_TRACE(c.classname);
        EXPECT_EQ(c.classname, keys.at("classname"));
        for (auto const& expected : c.keys)
        {
            auto const found = keys.find(expected.first);
            ASSERT_NE(keys.end(), found) << "no key " << expected.first;
            EXPECT_EQ(expected.second, found->second) << expected.first;
        }
    }
}

TEST(NumberField, TypedTextIsParsedOrRefused)
{
    ButtonTest::Scene s(200, 40);
    struct Case
    {
        char const* typed;
        bool accepted;
        char const* text;
        float value;
    };
    // From 42: the value after each edit on its own, with two decimals, 0 to 100.
    Case const cases[] = {
        {"7,25", true, "7.25", 7.25f},   {"7.25", true, "7.25", 7.25f},
        {" 3,5 ", true, "3.50", 3.5f},   {"150", true, "100.00", 100.0f},
        {"-3", true, "0.00", 0.0f},      {"0x1F", true, "31.00", 31.0f},
        {"abc", false, "abc", 0.0f},     {"12abc", false, "12abc", 0.0f},
        {"7,2,5", false, "7,2,5", 0.0f},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(c.typed);
        UI::Edit* edit = UI::CreateSimpleEdit(s.frame.get(), nullptr, "Number", "");
        edit->SetRange(0.0f, 100.0f);
        edit->SetHexAllowed(true);
        edit->SetNumDecimalPlaces(2u);
        edit->SetFloatValue(42.0f);
        int edited = 0;
        edit->signalTextEdited.Connect(nullptr, boost::function<void()>([&] { ++edited; }));
        EXPECT_EQ(c.accepted, edit->AcceptEditedText(c.typed));
        // Every edit is reported; a text that is no number stays as typed, with no value.
        EXPECT_EQ(1, edited);
        EXPECT_EQ(String(c.text), edit->GetText());
        ASSERT_EQ(c.accepted, static_cast<bool>(edit->GetFloatValue()));
        if (c.accepted)
        {
            EXPECT_FLOAT_EQ(c.value, *edit->GetFloatValue());
        }
        EXPECT_EQ(String(c.text), edit->GetTextWindow()->GetText());
        delete edit;
    }
}
