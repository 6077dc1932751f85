#include "TvBase/Util/PropertyHolder.h"

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/Object.h"

#include <gtest/gtest.h>

namespace Controller
{
class BoolParam;
} // namespace Controller

namespace
{

/// Counts the change signals of one property.
class ChangeCounter : public Object
{
public:
    void slotChanged() { ++count; }
    int count = 0;
};

} // namespace

TEST(PropertyCreate, StoresTheDefaultAsBothValuesOnceAName)
{
    Util::PropertyHolder holder;
    Util::Property<int> width = holder.CreateProperty("Width", 12);
    ASSERT_TRUE(width);
    EXPECT_EQ(width.Get(), checked_value<int>(12));
    EXPECT_EQ(width.GetSerialized(), checked_value<int>(12));
    EXPECT_EQ(holder.GetProperty<int>("Width"), checked_value<int>(12));

    Util::PropertyHolder::PropertyValue const* record = holder.FindProperty("Width");
    ASSERT_NE(record, nullptr);
    EXPECT_TRUE(record->followsSerialized);
    EXPECT_FALSE(record->serialize);
    EXPECT_FALSE(record->semanticType.IsPresent());
    EXPECT_FALSE(record->requiredValueType.IsPresent());
    EXPECT_EQ(&record->Changed(), holder.GetPropertyChangedSignal("Width"));
    { // Taken name gives a null handle and keeps the first.
        Util::PropertyHolder holder;
        holder.CreateProperty("Color", 0xFF000000u);
        Util::Property<float> again = holder.CreateProperty("Color", 1.0f);
        EXPECT_FALSE(again);
        EXPECT_TRUE(again.IsNull());
        EXPECT_FALSE(again.Get().IsPresent());
        EXPECT_FALSE(again.Set(2.0f));
        EXPECT_EQ(holder.GetProperty<unsigned int>("Color"),
                  checked_value<unsigned int>(0xFF000000u));
        EXPECT_EQ(holder.GetProperties().size(), 1u);
    }
    { // Text properties are strings.
        Util::PropertyHolder holder;
        // A literal is stored as `String`, the system's text type.
        Util::Property<String> tip = holder.CreateProperty("ToolTip", "");
        ASSERT_TRUE(tip);
        EXPECT_TRUE(holder.SetProperty("ToolTip", "hello"));
        EXPECT_EQ(holder.GetProperty<String>("ToolTip").GetOr("?"), "hello");

        Util::Property<String> key = holder.CreateProperty("Key", "KeyPath", String("a.b"));
        ASSERT_TRUE(key);
        EXPECT_EQ(key.GetPropertyValue()->semanticType, checked_value<String>("KeyPath"));
        EXPECT_EQ(key.Get().GetOr(""), "a.b");
        EXPECT_FALSE(holder.CreateProperty<String>("Key", "CommandID", "other"));
    }
    { // Required value type is the mangled name.
        Util::PropertyHolder holder;
        holder.CreateProperty("KeyPath", String());
        EXPECT_TRUE(holder.SetPropertyRequiredValueType<Controller::BoolParam*>("KeyPath"));
        EXPECT_EQ(holder.FindProperty("KeyPath")->requiredValueType,
                  checked_value<String>("PN10Controller9BoolParamE"));
        EXPECT_FALSE(holder.SetPropertyRequiredValueType<int>("Missing"));
    }
}

TEST(PropertySet, WritesOnlyItsOwnTypeAndSignalsByName)
{
    Util::PropertyHolder holder;
    Util::Property<int> margin = holder.CreateProperty("Margin", 3);
    ChangeCounter counter;
    margin.GetChangedSignal().Connect(&ChangeCounter::slotChanged, &counter);

    EXPECT_TRUE(holder.SetProperty("Margin", 5));
    EXPECT_EQ(counter.count, 1);
    // The same value again still counts as a change.
    EXPECT_TRUE(holder.SetProperty("Margin", 5));
    EXPECT_EQ(counter.count, 2);
    EXPECT_TRUE(margin.Set(6));
    EXPECT_EQ(counter.count, 3);
    EXPECT_EQ(holder.GetProperty<int>("Margin"), checked_value<int>(6));

    // Wrong type or unknown name: false, no signal, no change.
    EXPECT_FALSE(holder.SetProperty("Margin", 7.0f));
    EXPECT_FALSE(holder.SetProperty("Margin", 7u));
    EXPECT_FALSE(holder.SetProperty("Padding", 7));
    EXPECT_EQ(counter.count, 3);
    EXPECT_EQ(holder.GetProperty<int>("Margin"), checked_value<int>(6));
    EXPECT_FALSE(holder.GetProperty<unsigned int>("Margin").IsPresent());
    EXPECT_FALSE(holder.GetProperty<int>("Padding").IsPresent());

    // The layout value is untouched by code.
    EXPECT_EQ(margin.GetSerialized(), checked_value<int>(3));
    { // Change signal is reachable by name.
        Util::PropertyHolder holder;
        holder.CreateProperty("Origin", UI::Point(1, 2));
        ChangeCounter counter;
        Signal<>* changed = holder.GetPropertyChangedSignal("Origin");
        ASSERT_NE(changed, nullptr);
        changed->Connect(&ChangeCounter::slotChanged, &counter);
        EXPECT_TRUE(holder.SetProperty("Origin", UI::Point(3, 4)));
        EXPECT_EQ(counter.count, 1);
        EXPECT_EQ(holder.GetProperty<UI::Point>("Origin").GetOr(UI::Point()), UI::Point(3, 4));
        EXPECT_EQ(holder.GetPropertyChangedSignal("Nothing"), nullptr);
    }
}

TEST(PropertySerialized, LayoutValueFollowsUntilCodeTakesOver)
{
    Util::PropertyHolder holder;
    Util::Property<unsigned int> color = holder.CreateProperty("Color", 0u);
    ChangeCounter counter;
    color.GetChangedSignal().Connect(&ChangeCounter::slotChanged, &counter);

    // While following, a layout value goes into force and signals.
    EXPECT_TRUE(holder.SetSerializedValue("Color", 0xFF112233u));
    EXPECT_EQ(color.Get(), checked_value<unsigned int>(0xFF112233u));
    EXPECT_EQ(counter.count, 1);

    // Code takes over: later layout values are only recorded.
    EXPECT_TRUE(color.Set(0xFF00FF00u));
    EXPECT_EQ(counter.count, 2);
    EXPECT_TRUE(color.SetSerialized(0xFFABCDEFu));
    EXPECT_EQ(color.Get(), checked_value<unsigned int>(0xFF00FF00u));
    EXPECT_EQ(color.GetSerialized(), checked_value<unsigned int>(0xFFABCDEFu));
    EXPECT_EQ(counter.count, 2);
    EXPECT_FALSE(holder.FindProperty("Color")->followsSerialized);
    { // Failed write of the wrong type still takes over.
        Util::PropertyHolder holder;
        holder.CreateProperty("Alpha", 255u);
        EXPECT_FALSE(holder.SetProperty("Alpha", 1.0f));
        EXPECT_TRUE(holder.SetSerializedValue("Alpha", 128u));
        EXPECT_EQ(holder.GetProperty<unsigned int>("Alpha"), checked_value<unsigned int>(255u));
        EXPECT_EQ(holder.GetSerializedProperty<unsigned int>("Alpha"),
                  checked_value<unsigned int>(128u));
    }
    { // Wrong type or unknown name is refused.
        Util::PropertyHolder holder;
        holder.CreateProperty("Text", String("a"));
        EXPECT_FALSE(holder.SetSerializedValue("Text", 5));
        EXPECT_FALSE(holder.SetSerializedValue("Missing", String("b")));
        EXPECT_EQ(holder.GetSerializedProperty<String>("Text").GetOr(""), "a");
        EXPECT_TRUE(holder.SetSerializedValue("Text", "b"));
        EXPECT_EQ(holder.GetProperty<String>("Text").GetOr(""), "b");
    }
}
