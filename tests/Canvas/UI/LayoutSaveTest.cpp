#include "Canvas/UI/Dialog/Base.h"
#include "Canvas/UI/Layout.h"

#include "tests/Canvas/UI/LayoutScene.h"

#include <gtest/gtest.h>

#include <filesystem>

using UI::Rect;
using UI::Window;
using UI::Test::LayoutProbe;
using UI::Test::LayoutScene;
using UI::Test::LayoutXml;
using UI::Test::UnregisteredProbe;

namespace
{

bool Contains(std::string const& text, std::string const& part)
{
    return text.find(part) != std::string::npos;
}

/// Expects each of `present` in `text` and none of `absent`.
void ExpectParts(std::string const& text, std::vector<std::string> const& present,
                 std::vector<std::string> const& absent = {})
{
    for (std::string const& part : present)
        EXPECT_TRUE(Contains(text, part)) << part << " in\n" << text;
    for (std::string const& part : absent)
        EXPECT_FALSE(Contains(text, part)) << part << " in\n" << text;
}

/// A tree with a code-built panel, a layout-made child inside it and properties on both.
struct SavedTree
{
    LayoutProbe* root;
    LayoutProbe* panel;

    explicit SavedTree(LayoutScene& s)
    {
        root = s.Probe(nullptr, "root", 0, 0, 300, 200);
        root->SetLayoutName("Main");
        panel = s.Probe(root, "panel", 10, 20, 100, 50);
        panel->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
        s.WriteLayout("Main", LayoutXml("X=\"0\" Y=\"0\" Width=\"300\" Height=\"200\"",
                                        "<Child Name=\"panel\" X=\"10\" Y=\"20\" Width=\"100\" "
                                        "Height=\"50\" Metric0=\"3\" Metric1=\"4\">"
                                        "  <Property Name=\"Label\" Type=\"String\" Value=\"p\"/>"
                                        "  <NewChild Name=\"made\" Type=\"LayoutProbe\" X=\"5\" "
                                        "Y=\"6\" Width=\"7\" Height=\"8\">"
                                        "    <Property Name=\"Children\" Type=\"Int\" Value=\"2\"/>"
                                        "    <Property Name=\"Color\" Type=\"Color\" "
                                        "Value=\"FF102030\"/>"
                                        "  </NewChild>"
                                        "</Child>"));
        s.UseOverrideFolder();
        EXPECT_TRUE(root->LoadLayout());
    }
};

} // namespace

TEST(LayoutSave, RoundTripRebuildsGeometryAndPropertiesWithoutMetrics)
{
    std::string saved;
    UI::Rect madeRect;
    checked_value<unsigned int> madeColor;
    {
        LayoutScene s;
        SavedTree tree(s);
        auto* made = dynamic_cast<LayoutProbe*>(tree.panel->FindChildWindow("made"));
        ASSERT_NE(made, nullptr);
        // Edits after loading, as the design tools make them.
        tree.panel->SetGeometry(11, 21, 101, 51);
        made->SetGeometry(1, 2, 3, 4);
        madeRect = made->GetGeometry();
        madeColor = made->GetColor();
        ASSERT_TRUE(tree.root->SaveLayout(false));
        saved = s.ReadLayout("Main");
    }
    ASSERT_FALSE(saved.empty());
    EXPECT_EQ(saved.rfind("<?xml version=\"1.0\" standalone=\"yes\"?>", 0), 0u) << saved;
    // Metrics belong to the code and the hand-written layouts, not beside a saved geometry.
    ExpectParts(saved, {}, {"<TvCanvasLayout-1 X=", "Metric"});

    // Fresh windows, as a program's constructors build them, take the saved file.
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 300, 200);
    LayoutProbe* panel = s.Probe(root, "panel", 0, 0, 1, 1);
    s.WriteLayout("Main", saved);
    s.UseOverrideFolder();
    root->SetLayoutName("Main");
    ASSERT_TRUE(root->LoadLayout());
    EXPECT_EQ(panel->GetGeometry(), Rect(11, 111, 21, 71));
    EXPECT_TRUE(panel->GetDynamicLayoutMetrics().empty());
    EXPECT_EQ(panel->GetProperty<String>("Label"), checked_value<String>(String("p")));
    auto* made = dynamic_cast<LayoutProbe*>(panel->FindChildWindow("made"));
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(made->IsLayoutCreated());
    EXPECT_EQ(made->GetGeometry(), madeRect);
    EXPECT_EQ(made->GetProperty<int>("Children"), checked_value<int>(2));
    EXPECT_EQ(checked_value<unsigned int>(made->GetColor()), madeColor);

    // Saving the reloaded tree gives the same file again.
    ASSERT_TRUE(root->SaveLayout(false));
    EXPECT_EQ(s.ReadLayout("Main"), saved);
}

TEST(LayoutSave, RootGeometryOnlyWhenAskedAndNotForOwnFileMode)
{
    LayoutScene s;
    SavedTree tree(s);
    tree.root->SetGeometry(1, 2, 30, 40);
    ASSERT_TRUE(tree.root->SaveLayout(true));
    ExpectParts(s.ReadLayout("Main"),
                {"<TvCanvasLayout-1 X=\"1\" Y=\"2\" Width=\"30\" Height=\"40\">"});

    tree.root->SetDynamicLayoutMode(Window::DynamicLayoutOwnFile);
    ASSERT_TRUE(tree.root->SaveLayout(true));
    ExpectParts(s.ReadLayout("Main"), {"<TvCanvasLayout-1>", "Name=\"panel\""});
}

TEST(LayoutSave, NeedsALayoutNameAndAnOverrideFolder)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root");
    s.Probe(root, "child")->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    std::string before = s.override.Snapshot();
    EXPECT_FALSE(root->SaveLayout(false));
    root->SetLayoutName("Main");
    EXPECT_FALSE(root->SaveLayout(false));
    EXPECT_FALSE(s.frame->SaveLayout());
    s.frame->SetLayoutName("FrameLayout");
    EXPECT_FALSE(s.frame->SaveLayout());
    EXPECT_EQ(s.override.Snapshot(), before);

    s.UseOverrideFolder();
    root->SetLayoutName("");
    EXPECT_FALSE(root->SaveLayout(false));
    EXPECT_EQ(s.override.Snapshot(), before);

    // A folder that cannot take the file.
    root->SetLayoutName("Missing/Deeper");
    EXPECT_FALSE(root->SaveLayout(false));
    EXPECT_EQ(s.override.Snapshot(), before);
}

TEST(LayoutSave, ModesDecideWhatAppears)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 300, 200);
    root->SetLayoutName("Main");
    // Mode 4: never, nor anything inside.
    LayoutProbe* never = s.Probe(root, "never");
    never->SetDynamicLayoutMode(Window::DynamicLayoutNever);
    s.Probe(never, "insideNever")->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    // Mode 3 directly below the root: saved with its geometry.
    LayoutProbe* code = s.Probe(root, "code", 1, 1, 5, 5);
    // Mode 3 below that: a bare name, only when something inside is saved.
    LayoutProbe* holder = s.Probe(code, "holder");
    s.Probe(holder, "saved", 2, 3, 4, 5)->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    s.Probe(code, "empty");
    LayoutProbe* emptyHolder = s.Probe(code, "emptyHolder");
    s.Probe(emptyHolder, "alsoCode");
    // Mode 4 below a saved window.
    LayoutProbe* neverBelow = s.Probe(holder, "neverBelow");
    neverBelow->SetDynamicLayoutMode(Window::DynamicLayoutNever);
    // Mode 2 without a layout name: geometry, no children.
    LayoutProbe* own = s.Probe(root, "own", 7, 7, 7, 7);
    own->SetDynamicLayoutMode(Window::DynamicLayoutOwnFile);
    s.Probe(own, "hidden")->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    // Dialogs are never saved.
    new UI::Dialog::Base(s.frame.get(), root, "dialog", false);

    s.UseOverrideFolder();
    ASSERT_TRUE(root->SaveLayout(false));
    ExpectParts(s.ReadLayout("Main"),
                {"<Child Name=\"code\" X=\"1\" Y=\"1\" Width=\"5\" Height=\"5\">",
                 "<Child Name=\"holder\">",
                 "<Child Name=\"saved\" X=\"2\" Y=\"3\" Width=\"4\" Height=\"5\"/>",
                 "<Child Name=\"own\" X=\"7\""},
                {"never", "insideNever", "\"empty", "alsoCode", "hidden", "dialog"});
}

TEST(LayoutSave, UnregisteredLayoutMadeWindowsLoseTheirElement)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 300, 200);
    root->SetLayoutName("Main");
    auto* loner = new UnregisteredProbe(s.frame.get(), root, "loner");
    loner->SetLayoutCreated(true);
    loner->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    auto* parent = new UnregisteredProbe(s.frame.get(), root, "parent");
    parent->SetLayoutCreated(true);
    parent->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    s.Probe(parent, "kid", 3, 3, 3, 3)->SetDynamicLayoutMode(Window::DynamicLayoutSaved);

    s.UseOverrideFolder();
    ASSERT_TRUE(root->SaveLayout(false));
    // The walk stops at the unregistered window: nothing of it remains, children included.
    ExpectParts(s.ReadLayout("Main"), {"<TvCanvasLayout-1/>"}, {"loner", "parent", "kid"});
}

TEST(LayoutSave, WindowsWithTheirOwnLayoutGetTheirOwnFile)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 300, 200);
    root->SetLayoutName("Main");
    LayoutProbe* panel = s.Probe(root, "panel", 4, 4, 40, 40);
    panel->SetDynamicLayoutMode(Window::DynamicLayoutOwnFile);
    panel->SetLayoutName("Panel");
    s.Probe(panel, "inPanel", 1, 2, 3, 4)->SetDynamicLayoutMode(Window::DynamicLayoutSaved);

    s.UseOverrideFolder();
    ASSERT_TRUE(root->SaveLayout(false));
    ExpectParts(
        s.ReadLayout("Main"),
        {"<Child Name=\"panel\" X=\"4\" Y=\"4\" Width=\"40\" Height=\"40\" Layout=\"Panel\"/>"},
        {"inPanel"});
    ExpectParts(s.ReadLayout("Panel"),
                {"<TvCanvasLayout-1>",
                 "<Child Name=\"inPanel\" X=\"1\" Y=\"2\" Width=\"3\" Height=\"4\"/>"});

    // Both files together rebuild the tree.
    LayoutScene fresh;
    std::filesystem::copy(s.override.Path() + "/UI", fresh.override.Path() + "/UI",
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::overwrite_existing);
    LayoutProbe* root2 = fresh.Probe(nullptr, "root");
    LayoutProbe* panel2 = fresh.Probe(root2, "panel");
    LayoutProbe* inPanel2 = fresh.Probe(panel2, "inPanel");
    fresh.UseOverrideFolder();
    ASSERT_TRUE(root2->LoadLayout("Main"));
    EXPECT_EQ(panel2->GetGeometry(), Rect(4, 43, 4, 43));
    EXPECT_EQ(panel2->GetLayoutName(), String("Panel"));
    EXPECT_EQ(inPanel2->GetGeometry(), Rect(1, 3, 2, 5));
}

TEST(LayoutSave, FrameSavesItsTopLevelWindows)
{
    LayoutScene s;
    LayoutProbe* a = s.Probe(nullptr, "a", 1, 2, 3, 4);
    LayoutProbe* b = s.Probe(nullptr, "b", 5, 6, 7, 8);
    b->SetDynamicLayoutMode(Window::DynamicLayoutNever);
    s.frame->SetLayoutName("Top");
    s.UseOverrideFolder();
    ASSERT_TRUE(s.frame->SaveLayout());
    ExpectParts(s.ReadLayout("Top"),
                {"<Child Name=\"a\" X=\"1\" Y=\"2\" Width=\"3\" Height=\"4\"/>"}, {"\"b\""});

    a->SetGeometry(0, 0, 1, 1);
    ASSERT_TRUE(s.frame->LoadLayout());
    EXPECT_EQ(a->GetGeometry(), Rect(1, 3, 2, 5));
}
