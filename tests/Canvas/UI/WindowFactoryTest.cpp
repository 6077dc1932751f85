#include "Canvas/UI/WindowFactory.h"

#include "Canvas/UI/FocusIndicator.h"
#include "tests/Canvas/UI/LayoutScene.h"

#include <gtest/gtest.h>

#include <stdexcept>

using UI::Window;
using UI::WindowFactory;
using UI::Test::LayoutProbe;
using UI::Test::LayoutScene;
using UI::Test::UnregisteredProbe;

namespace
{

class Throwing : public Window
{
public:
    Throwing(UI::Frame* frame, Window* parent, String const& name) : Window(frame, parent, name)
    {
        throw std::runtime_error("refused");
    }
};

} // namespace

TEST(WindowFactoryRegistration, EachNameAndEachClassOnce)
{
    WindowFactory factory;
    EXPECT_TRUE(factory.Register<LayoutProbe>("Probe"));
    EXPECT_FALSE(factory.Register<LayoutProbe>("Probe"));
    EXPECT_FALSE(factory.Register<LayoutProbe>("Other Name"));
    EXPECT_FALSE(factory.Register<UnregisteredProbe>("Probe"));
    EXPECT_FALSE(factory.Register<UnregisteredProbe>(""));
    EXPECT_FALSE(factory.registerFactory("Null", WindowFactory::CreateFunction(), &typeid(int)));
    EXPECT_TRUE(factory.Register<UnregisteredProbe>("Sub"));
    EXPECT_TRUE(factory.IsRegistered("Probe"));
    EXPECT_FALSE(factory.IsRegistered("Other Name"));
    EXPECT_FALSE(factory.IsRegistered("probe"));
    EXPECT_EQ(factory.type_names(), (std::vector<String>{"Probe", "Sub"}));
}

TEST(WindowFactoryCreate, OneFactoryPerCanvasMakesWindowsAndNamesTheirTypes)
{
    LayoutScene s;
    WindowFactory* factory = UI::GetWindowFactory(&s.canvas);
    ASSERT_NE(factory, nullptr);
    LayoutProbe* parent = s.Probe(nullptr, "parent");
    Window* made = factory->Create("LayoutProbe", s.frame.get(), parent, "made");
    ASSERT_NE(made, nullptr);
    EXPECT_NE(dynamic_cast<LayoutProbe*>(made), nullptr);
    EXPECT_EQ(made->GetParent(), parent);
    EXPECT_EQ(made->GetName(), String("made"));
    EXPECT_TRUE(made->IsLayoutCreated());
    EXPECT_EQ(made->GetDynamicLayoutMode(), Window::DynamicLayoutSaved);

    Window* top = factory->Create("Window", s.frame.get(), nullptr, "top");
    ASSERT_NE(top, nullptr);
    EXPECT_EQ(s.frame->FindChildWindow("top"), top);

    EXPECT_EQ(factory->Create("Nothing", s.frame.get(), parent, "x"), nullptr);
    EXPECT_EQ(factory->Create("Window", nullptr, nullptr, "x"), nullptr);
    EXPECT_EQ(parent->child_windows().size(), 1u);

    // A constructor that throws leaves no window behind.
    ASSERT_TRUE(factory->Register<Throwing>("Throwing"));
    EXPECT_EQ(factory->Create("Throwing", s.frame.get(), parent, "t"), nullptr);
    EXPECT_EQ(parent->child_windows().size(), 1u);

    // Type names follow the dynamic class.
    LayoutProbe* probe = s.Probe(nullptr, "probe");
    Window* plain = new Window(s.frame.get(), nullptr, "plain");
    auto* sub = new UnregisteredProbe(s.frame.get(), nullptr, "sub");
    EXPECT_EQ(factory->GetTypeName(probe), checked_value<String>(String("LayoutProbe")));
    EXPECT_EQ(factory->GetTypeName(plain), checked_value<String>(String("Window")));
    EXPECT_FALSE(factory->GetTypeName(sub).IsPresent());
    EXPECT_FALSE(factory->GetTypeName(nullptr).IsPresent());

    // One factory per canvas, with the built-in types.
    EXPECT_EQ(UI::GetWindowFactory(&s.canvas), factory);
    EXPECT_EQ(s.canvas.GetWindowFactory(), factory);
    // A member, not one of the canvas's keyed values that any code could replace.
    EXPECT_TRUE(s.canvas.GetValueForKey("UI::WindowFactory").empty());
    EXPECT_TRUE(factory->IsRegistered("Window"));
    EXPECT_TRUE(factory->IsRegistered("FocusIndicator"));
    EXPECT_EQ(UI::GetWindowFactory(nullptr), nullptr);

    Window* indicator = factory->Create("FocusIndicator", s.frame.get(), nullptr, "fi");
    EXPECT_NE(dynamic_cast<UI::FocusIndicator*>(indicator), nullptr);

    UI::Canvas other("Other");
    WindowFactory* second = UI::GetWindowFactory(&other);
    EXPECT_NE(second, factory);
    EXPECT_TRUE(second->IsRegistered("Window"));
    EXPECT_FALSE(second->IsRegistered("LayoutProbe"));
}
