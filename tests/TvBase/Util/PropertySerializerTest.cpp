#include "TvBase/Util/PropertySerializer.h"

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/Object.h"

#include <gtest/gtest.h>

namespace
{

enum class BorderStyle
{
    None,
    Outline,
    ShadowFromTop,
    ShadowFromTopLeft,
    RoundedRect,
    RoundedRectShadowBottomRight
};

enum Orientation
{
    Horizontal,
    Vertical
};

char const* borderStyleNames[] = {"None",
                                  "Outline",
                                  "Shadow From Top",
                                  "Shadow From Top Left",
                                  "Rounded Rect",
                                  "Rounded Rect Shadow Bottom Right"};
char const* orientationNames[] = {"Horizontal", "Vertical"};

class ChangeCounter : public Object
{
public:
    void slotChanged() { ++count; }
    int count = 0;
};

/// A serializer with the standard types, as the canvas holds it.
class Serializer : public ::testing::Test
{
protected:
    Serializer() { serializer.RegisterStandardTypes(); }

    /// Loads `text` as `type` into a fresh property of default `initial`, then writes it back.
    template <typename T>
    String roundTrip(String const& type, String const& text, T initial)
    {
        Util::PropertyHolder holder;
        holder.CreateProperty("P", initial);
        if (!serializer.Load(holder, "P", type, text))
            return String("<load failed>");
        String name, savedType, saved;
        if (!serializer.Save(*holder.GetProperties().find("P"), name, savedType, saved))
            return String("<save failed>");
        EXPECT_EQ(savedType, type);
        return saved;
    }

    /// What SaveAll writes, as "name (type) = value; ...", and "<failed>" when it answers false.
    std::string savedAll()
    {
        std::vector<Util::PropertySerializer::PropertySerialization> saved;
        std::string out = serializer.SaveAll(holder, saved) ? "" : "<failed>";
        for (auto const& s : saved)
            out +=
                std::string(s.name.CStr()) + " (" + s.type.CStr() + ") = " + s.value.CStr() + "; ";
        return out;
    }

    Util::PropertySerializer serializer;
    Util::PropertyHolder holder;
};

/// Sets the decimal separator for one scope.
class DecimalPoint
{
public:
    explicit DecimalPoint(char c) : saved(g_chDecimalPoint) { g_chDecimalPoint = c; }
    ~DecimalPoint() { g_chDecimalPoint = saved; }

private:
    char saved;
};

} // namespace

TEST(PropertySerializerRegister, SecondRegistrationOfATypeOrNameFails)
{
    Util::PropertySerializer serializer;
    auto writeInt = [](int const& v) { return String("%1").Arg(v); };
    auto readInt = [](String const& t) { return t.ToInt(10); };
    EXPECT_TRUE(serializer.RegisterType<int>("Int", writeInt, readInt));
    EXPECT_FALSE(serializer.RegisterType<int>("Integer", writeInt, readInt));
    EXPECT_FALSE(serializer.RegisterType<short>(
        "Int", [](short const&) { return String("s"); },
        [](String const&) { return checked_value<short>(); }));
    EXPECT_EQ(serializer.GetTypeName(typeid(int)), checked_value<String>("Int"));
    EXPECT_FALSE(serializer.GetTypeName(typeid(short)).IsPresent());
    EXPECT_FALSE(serializer.GetTypeName(typeid(long)).IsPresent());
}

TEST_F(Serializer, StandardTypesAreRegisteredUnderTheirNames)
{
    // A second call registers nothing new and disturbs nothing.
    serializer.RegisterStandardTypes();
    std::string names;
    for (std::type_info const* type :
         {&typeid(int), &typeid(UI::Point), &typeid(UI::Rect), &typeid(String), &typeid(float),
          &typeid(bool), &typeid(value_range<float>), &typeid(unsigned int)})
        names += std::string(serializer.GetTypeName(*type).GetOr("?").CStr()) + ";";
    EXPECT_EQ(names, "Int;Point;Rect;String;Float;Bool;Float Range;Color;");
}

TEST_F(Serializer, EachTypeRoundTripsItsTextForm)
{
    EXPECT_EQ(roundTrip("Int", "-42", 0), "-42");
    EXPECT_EQ(roundTrip("Int", " 7 ", 0), "7");
    EXPECT_EQ(roundTrip("Point", "3, -4", UI::Point()), "3, -4");
    EXPECT_EQ(roundTrip("Point", "3,4", UI::Point()), "3, 4");
    EXPECT_EQ(roundTrip("Rect", "10, 20, 30, 40", UI::Rect()), "10, 20, 30, 40");
    EXPECT_EQ(roundTrip("Rect", "-5, 0, 0, 1", UI::Rect()), "-5, 0, 0, 1");
    EXPECT_EQ(roundTrip("Rect", "2147483646, -2147483648, 2, 1", UI::Rect()),
              "2147483646, -2147483648, 2, 1");
    EXPECT_EQ(roundTrip("String", "any text, even \"quoted\"", String()),
              "any text, even \"quoted\"");
    EXPECT_EQ(roundTrip("String", "", String("x")), "");
    EXPECT_EQ(roundTrip("Float", "1.5", 0.0f), "1.500000");
    EXPECT_EQ(roundTrip("Float", "-0.25", 0.0f), "-0.250000");
    EXPECT_EQ(roundTrip("Bool", "TRUE", false), "true");
    EXPECT_EQ(roundTrip("Bool", "False", true), "false");
    EXPECT_EQ(roundTrip("Float Range", "0.5, 1", value_range<float>()), "0.500000, 1.000000");
    EXPECT_EQ(roundTrip("Color", "#FF0000", 0u), "FF0000");
    EXPECT_EQ(roundTrip("Color", "FF0000.80", 0u), "FF0000.80");
}

TEST_F(Serializer, ReadersGiveTheRightValues)
{
    holder.CreateProperty("Rect", UI::Rect());
    holder.CreateProperty("Bool", false);
    holder.CreateProperty("Color", 0u);
    holder.CreateProperty("Range", value_range<float>());

    ASSERT_TRUE(serializer.Load(holder, "Rect", "Rect", "10, 20, 30, 40"));
    UI::Rect r = holder.GetProperty<UI::Rect>("Rect").GetOr(UI::Rect());
    EXPECT_EQ(r, UI::Rect(10, 39, 20, 59));

    ASSERT_TRUE(serializer.Load(holder, "Bool", "Bool", "TRUE"));
    EXPECT_EQ(holder.GetProperty<bool>("Bool"), checked_value<bool>(true));

    ASSERT_TRUE(serializer.Load(holder, "Color", "Color", "FF0000.80"));
    EXPECT_EQ(holder.GetProperty<unsigned int>("Color"), checked_value<unsigned int>(0x80FF0000u));

    ASSERT_TRUE(serializer.Load(holder, "Range", "Float Range", "-1.5,2.25"));
    value_range<float> range = holder.GetProperty<value_range<float>>("Range").GetOr({});
    EXPECT_EQ(range.minimum, -1.5f);
    EXPECT_EQ(range.maximum, 2.25f);
}

TEST_F(Serializer, MalformedTextFailsAndLeavesThePropertyAlone)
{
    struct Case
    {
        char const* type;
        char const* text;
    };
    Case const cases[] = {
        {"Int", "abc"},
        {"Int", "4 2"},
        {"Int", "2147483648"},
        {"Point", "1"},
        {"Point", "1, 2, 3"},
        {"Point", "a, 2"},
        {"Rect", "1, 2, 3"},
        {"Rect", "1, 2, 3, 4, 5"},
        {"Rect", "1, 2, x, 4"},
        {"Rect", "2147483647, 0, 2, 1"},
        {"Rect", "0, -2147483648, 1, -1"},
        {"Float", "x"},
        {"Float", "1.5f"},
        {"Float", ""},
        {"Bool", "yes"},
        {"Bool", "1"},
        {"Bool", ""},
        {"Float Range", "1"},
        {"Float Range", "1, b"},
        {"Float Range", "1, 2, 3"},
        {"Color", "#80FF0000"},
        {"Color", "red"},
        {"Color", ""},
    };
    holder.CreateProperty("Int", 9);
    holder.CreateProperty("Point", UI::Point(9, 9));
    holder.CreateProperty("Rect", UI::Rect(1, 2, 3, 4));
    holder.CreateProperty("Float", 9.0f);
    holder.CreateProperty("Bool", true);
    holder.CreateProperty("Float Range", value_range<float>(9, 9));
    holder.CreateProperty("Color", 0xFF999999u);
    ChangeCounter counter;
    for (auto const& p : holder.GetProperties())
        p.second.Changed().Connect(&ChangeCounter::slotChanged, &counter);

    for (Case const& c : cases)
    {
        EXPECT_FALSE(serializer.Load(holder, c.type, c.type, c.text)) << c.type << " " << c.text;
        EXPECT_FALSE(holder.FindProperty(c.type)->serialize) << c.type;
    }
    EXPECT_EQ(counter.count, 0);
    EXPECT_EQ(holder.GetProperty<int>("Int"), checked_value<int>(9));
    EXPECT_EQ(holder.GetSerializedProperty<UI::Rect>("Rect").GetOr(UI::Rect()),
              UI::Rect(1, 2, 3, 4));
    EXPECT_EQ(holder.GetProperty<unsigned int>("Color"), checked_value<unsigned int>(0xFF999999u));
}

TEST_F(Serializer, LoadRefusesUnknownTypesPropertiesAndMismatches)
{
    holder.CreateProperty("Scale", 1.0f);
    EXPECT_FALSE(serializer.Load(holder, "Scale", "Double", "2"));
    EXPECT_FALSE(serializer.Load(holder, "Missing", "Float", "2"));
    // The "Int" reader gives an int, which a float property does not take.
    EXPECT_FALSE(serializer.Load(holder, "Scale", "Int", "12"));
    EXPECT_EQ(holder.GetProperty<float>("Scale"), checked_value<float>(1.0f));
    EXPECT_FALSE(holder.FindProperty("Scale")->serialize);
}

TEST_F(Serializer, LoadAfterCodeSetOnlyRecordsTheLayoutValueAndOtherwiseSetsIt)
{
    holder.CreateProperty("Margin", 3);
    ChangeCounter counter;
    holder.GetPropertyChangedSignal("Margin")->Connect(&ChangeCounter::slotChanged, &counter);
    EXPECT_TRUE(holder.SetProperty("Margin", 5));
    EXPECT_TRUE(serializer.Load(holder, "Margin", "Int", "8"));
    EXPECT_EQ(holder.GetProperty<int>("Margin"), checked_value<int>(5));
    EXPECT_EQ(counter.count, 1);
    EXPECT_EQ(savedAll(), "Margin (Int) = 8; ");

    // Without a code set the value is put in force.
    holder.CreateProperty("Origin", UI::Point());
    holder.GetPropertyChangedSignal("Origin")->Connect(&ChangeCounter::slotChanged, &counter);
    EXPECT_TRUE(serializer.Load(holder, "Origin", "Point", "4, 5"));
    EXPECT_EQ(holder.GetProperty<UI::Point>("Origin").GetOr(UI::Point()), UI::Point(4, 5));
    EXPECT_EQ(counter.count, 2);
    EXPECT_TRUE(holder.FindProperty("Origin")->serialize);
}

TEST_F(Serializer, LoadByThePropertysOwnType)
{
    holder.CreateProperty("Fill Color", 0xFF000000u);
    holder.CreateProperty("Opaque", std::make_pair(1, 2)); // a type nobody registered
    EXPECT_TRUE(serializer.Load(holder, "Fill Color", "#00FF00"));
    EXPECT_EQ(holder.GetProperty<unsigned int>("Fill Color"),
              checked_value<unsigned int>(0xFF00FF00u));
    EXPECT_FALSE(serializer.Load(holder, "Fill Color", "green"));
    EXPECT_FALSE(serializer.Load(holder, "Opaque", "1, 2"));
    EXPECT_FALSE(serializer.Load(holder, "Nothing", "1"));
}

TEST_F(Serializer, SaveAllWritesMarkedPropertiesInNameOrder)
{
    holder.CreateProperty("b", 2);
    holder.CreateProperty("a", String("x"));
    holder.CreateProperty("c", true);
    holder.CreateProperty("unregistered", 1.0); // double has no writer
    ASSERT_TRUE(serializer.Load(holder, "c", "Bool", "false"));
    ASSERT_TRUE(serializer.Load(holder, "a", "String", "hello"));
    holder.SetPropertySerialize("unregistered", true);

    EXPECT_EQ(savedAll(), "a (String) = hello; c (Bool) = false; ");

    // Save of an unmarked property still writes, but answers false.
    String name, type, text;
    EXPECT_FALSE(serializer.Save(*holder.GetProperties().find("b"), name, type, text));
    EXPECT_EQ(name, "b");
    EXPECT_EQ(type, "Int");
    EXPECT_EQ(text, "2");
    // A type without a writer leaves the outputs alone.
    String n2("keep");
    EXPECT_FALSE(serializer.Save(*holder.GetProperties().find("unregistered"), n2, type, text));
    EXPECT_EQ(n2, "keep");
}

TEST_F(Serializer, FloatRangeWithADecimalCommaDoesNotReadBack)
{
    DecimalPoint comma(',');
    holder.CreateProperty("Range", value_range<float>(0.5f, 1.0f));
    holder.SetPropertySerialize("Range", true);
    EXPECT_EQ(savedAll(), "Range (Float Range) = 0,500000, 1,000000; ");
    EXPECT_FALSE(serializer.Load(holder, "Range", "Float Range", "0,500000, 1,000000"));
}

TEST_F(Serializer, NamedEnumerationsRegisterOnceAndWriteAndReadTheirNames)
{
    EXPECT_TRUE(serializer.RegisterNamedEnumType<BorderStyle>(
        "Border Style", array_ref<char const*>(borderStyleNames, 6)));
    EXPECT_TRUE(serializer.RegisterNamedEnumType<Orientation>(
        "Orientation", array_ref<char const*>(orientationNames, 2)));

    std::vector<String> const* names = serializer.GetEnumNames("Border Style");
    ASSERT_NE(names, nullptr);
    ASSERT_EQ(names->size(), 6u);
    EXPECT_EQ((*names)[2], "Shadow From Top");
    EXPECT_EQ(serializer.GetAllEnumNames().size(), 2u);

    holder.CreateProperty("Border", BorderStyle::None);
    holder.CreateProperty("Orientation", Horizontal);
    EXPECT_TRUE(serializer.Load(holder, "Border", "Border Style", "Rounded Rect"));
    EXPECT_TRUE(holder.GetProperty<BorderStyle>("Border").GetOr(BorderStyle::None) ==
                BorderStyle::RoundedRect);
    EXPECT_TRUE(serializer.Load(holder, "Orientation", "Orientation", "Vertical"));
    EXPECT_EQ(holder.GetProperty<Orientation>("Orientation").GetOr(Horizontal), Vertical);

    // Names match exactly: case and spacing count.
    EXPECT_FALSE(serializer.Load(holder, "Border", "Border Style", "outline"));
    EXPECT_FALSE(serializer.Load(holder, "Border", "Border Style", " Outline"));
    EXPECT_FALSE(serializer.Load(holder, "Border", "Border Style", ""));

    EXPECT_EQ(savedAll(),
              "Border (Border Style) = Rounded Rect; Orientation (Orientation) = Vertical; ");

    // Registration is once.
    array_ref<char const*> orientations(orientationNames, 2);
    EXPECT_FALSE(serializer.RegisterNamedEnumType<Orientation>("Orientation", orientations));
    EXPECT_FALSE(serializer.RegisterNamedEnumType<Orientation>("Direction", orientations));
    EXPECT_EQ(serializer.GetEnumNames("Direction"), nullptr);
    // A name that a plain type already has is refused too.
    EXPECT_FALSE(serializer.RegisterNamedEnumType<BorderStyle>("Int", orientations));
    EXPECT_EQ(serializer.GetEnumNames("Int"), nullptr);

    // A value beyond the names writes nothing (a scoped enumeration holds any int, so the value
    // itself is well defined).
    holder.CreateProperty("Beyond", static_cast<BorderStyle>(6));
    holder.SetPropertySerialize("Beyond", true);
    EXPECT_EQ(savedAll(),
              "Border (Border Style) = Rounded Rect; Orientation (Orientation) = Vertical; ");
}
