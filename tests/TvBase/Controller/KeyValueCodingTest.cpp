#include "TvBase/Controller/KeyValueCoding.h"
#include "TvBase/Controller/BoolParamMemory.h"
#include "TvBase/Controller/EnumParamMemory.h"
#include "TvBase/Controller/FloatParamMemory.h"

#include <gtest/gtest.h>

#include <typeinfo>
#include <vector>

namespace
{

/// Publishes its parameters and sub-objects as a panel of the program would.
class Publisher : public Controller::KeyValueCoding
{
public:
    boost::any GetValueForKey(String const& key) override
    {
        asked.push_back(key);
        if (key == "Snap")
            return static_cast<Controller::BoolParam*>(&snap);
        if (key == "Zoom")
            return static_cast<Controller::FloatParam*>(&zoom);
        if (key == "Mode")
            return static_cast<Controller::EnumParam*>(&mode);
        if (key == "Child" && child)
            return static_cast<Controller::KeyValueCoding*>(child);
        if (key == "Nobody")
            return static_cast<Controller::KeyValueCoding*>(nullptr);
        if (key == "Derived" && child)
            return child; // a Publisher*, not a KeyValueCoding*
        return KeyValueCoding::GetValueForKey(key);
    }
    std::vector<String> CopyKeys() override { return {"Child", "Mode", "Snap", "Zoom"}; }

    Controller::BoolParamMemory snap{true};
    Controller::FloatParamMemory zoom{8.0f, value_range<float>(4.0f, 32.0f)};
    Controller::EnumParamMemory mode{0, {"A", "B"}};
    Publisher* child = nullptr;
    std::vector<String> asked;
};

template <typename T>
T held(boost::any const& value)
{
    T const* p = boost::any_cast<T>(&value);
    return p ? *p : nullptr;
}

} // namespace

TEST(KeyValueCoding, PublishedTypesCarryTheNamesThatPropertiesRecord)
{
    EXPECT_STREQ("PN10Controller14KeyValueCodingE", typeid(Controller::KeyValueCoding*).name());
    EXPECT_STREQ("PN10Controller9BoolParamE", typeid(Controller::BoolParam*).name());
    EXPECT_STREQ("PN10Controller10FloatParamE", typeid(Controller::FloatParam*).name());
    EXPECT_STREQ("PN10Controller9EnumParamE", typeid(Controller::EnumParam*).name());
    { // The base publishes nothing.
        Controller::KeyValueCoding nothing;
        EXPECT_TRUE(nothing.GetValueForKey("Snap").empty());
        EXPECT_TRUE(nothing.GetValueForKeyPath("a.b.c").empty());
        EXPECT_TRUE(nothing.CopyKeys().empty());
    }
}

TEST(KeyValueCoding, KeyPathsWalkThroughCodingObjectsOnly)
{
    Publisher root;
    Publisher design;
    Publisher inner;
    root.child = &design;
    design.child = &inner;

    EXPECT_EQ(&root.snap, held<Controller::BoolParam*>(root.GetValueForKeyPath("Snap")));
    EXPECT_EQ(&design.zoom, held<Controller::FloatParam*>(root.GetValueForKeyPath("Child.Zoom")));
    EXPECT_EQ(&inner.mode,
              held<Controller::EnumParam*>(root.GetValueForKeyPath("Child.Child.Mode")));
    EXPECT_EQ(std::vector<String>({"Snap", "Child", "Child"}), root.asked);
    EXPECT_EQ(std::vector<String>({"Zoom", "Child"}), design.asked);
    { // A path through anything but a coding object is empty.
        Publisher root;
        Publisher design;
        root.child = &design;

        // "Snap" gives a parameter, which has no keys of its own.
        EXPECT_TRUE(root.GetValueForKeyPath("Snap.Value").empty());
        EXPECT_TRUE(root.GetValueForKeyPath("Missing.Snap").empty());
        EXPECT_TRUE(root.GetValueForKeyPath("Nobody.Snap").empty());
        // Only a pointer of the coding type itself is followed.
        EXPECT_TRUE(root.GetValueForKeyPath("Derived.Snap").empty());
        EXPECT_TRUE(design.asked.empty());
        // The tail is taken whole after the first ".": an empty last key goes to the child.
        EXPECT_TRUE(root.GetValueForKeyPath("Child.").empty());
        EXPECT_EQ(std::vector<String>({""}), design.asked);
    }
    { // An empty path is an empty key.
        Publisher root;
        EXPECT_TRUE(root.GetValueForKeyPath("").empty());
        ASSERT_EQ(1u, root.asked.size());
        EXPECT_EQ(String(""), root.asked[0]);
    }
}
