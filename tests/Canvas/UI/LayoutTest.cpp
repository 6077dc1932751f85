#include "Canvas/UI/Layout.h"

#include "TvBase/Util/FileIOException.h"
#include "tests/Canvas/UI/LayoutScene.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>

using UI::Rect;
using UI::Window;
using UI::Test::LayoutProbe;
using UI::Test::LayoutScene;
using UI::Test::LayoutXml;

namespace
{

/// Loads `xml` from the override folder as the layout "Main" of `window`.
bool LoadXml(LayoutScene& s, Window* window, std::string const& xml)
{
    s.WriteLayout("Main", xml);
    s.UseOverrideFolder();
    return window ? window->LoadLayout("Main")
                  : (s.frame->SetLayoutName("Main"), s.frame->LoadLayout());
}

/// The packed resource file that the process's resource manager serves for these tests.
std::map<std::string, std::string> const& PackedLayouts()
{
    static std::map<std::string, std::string> const layouts = {
        {"UI/Layout/Packed.layout",
         LayoutXml("X=\"7\" Y=\"8\" Width=\"70\" Height=\"80\"",
                   "<Child Name=\"inner\" X=\"1\" Y=\"2\" Width=\"3\" Height=\"4\"/>")},
        {"UI/Layout/PackedOnly.layout", LayoutXml("Metric0=\"5\"", "")},
        {"UI/Layout/PackedBroken.layout", "<TvCanvasLayout-1 X=\"1\""},
    };
    return layouts;
}

/// Writes the layouts above in the packed format and loads them once into the resource manager.
void LoadPackedResources()
{
    static bool loaded = false;
    if (loaded)
        return;
    std::string directory;
    std::string payload;
    std::size_t header = 1;
    for (auto const& entry : PackedLayouts())
        header += entry.first.size() + 1 + 8;
    auto u32 = [](std::size_t v)
    {
        std::string bytes(4, '\0');
        for (int i = 0; i < 4; ++i)
            bytes[i] = static_cast<char>((v >> (8 * i)) & 0xFF);
        return bytes;
    };
    for (auto const& entry : PackedLayouts())
    {
        directory += entry.first + std::string(1, '\0') + u32(header + payload.size()) +
                     u32(entry.second.size());
        payload += entry.second;
    }
    directory += std::string(1, '\0');
    TestSupport::TempFolder folder("tv-layout-res");
    std::filesystem::create_directories(folder.Path() + "/Resources");
    folder.Write("Resources/resources.resembed", directory + payload);
    ASSERT_TRUE(Util::ResourceManager::Get().Init(FolderPath(folder.Path().c_str())));
    loaded = true;
}

/// A layout scene with a 200 by 200 window "root".
struct OnRoot : ::testing::Test
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 200, 200);
};
using LayoutLoadOnRoot = OnRoot;
using LayoutNestedOnRoot = OnRoot;

} // namespace

// ---- the document and its root

TEST(LayoutLoad, RootSetsGeometryMetricsAndProperties)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 1, 2, 3, 4);
    ASSERT_TRUE(LoadXml(s, root,
                        LayoutXml("X=\"10\" Y=\"20\" Width=\"300\" Height=\"200\" Metric0=\"4\" "
                                  "Metric1=\"-6\"",
                                  "<Property Name=\"ToolTip\" Type=\"String\" Value=\"hi\"/>")));
    EXPECT_EQ(root->GetGeometry(), Rect(10, 309, 20, 219));
    EXPECT_EQ(root->GetLayoutGeometry(), Rect(10, 309, 20, 219));
    EXPECT_EQ(root->GetDynamicLayoutMetrics(), (std::vector<int>{4, -6}));
    EXPECT_EQ(root->metrics, (std::vector<std::pair<unsigned int, int>>{{0, 4}, {1, -6}}));
    EXPECT_EQ(root->GetToolTipText(), String("hi"));
}

TEST(LayoutLoad, RootGeometryNeedsANonEmptyX)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 1, 2, 3, 4);
    ASSERT_TRUE(LoadXml(s, root, LayoutXml("Y=\"20\" Width=\"300\"", "")));
    EXPECT_EQ(root->GetGeometry(), Rect(1, 3, 2, 5));
    ASSERT_TRUE(LoadXml(s, root, LayoutXml("X=\"\" Y=\"20\" Width=\"300\"", "")));
    EXPECT_EQ(root->GetGeometry(), Rect(1, 3, 2, 5));
    // Present but not a number: the missing values read 0.
    ASSERT_TRUE(LoadXml(s, root, LayoutXml("X=\"five\" Width=\"30\" Height=\"40\"", "")));
    EXPECT_EQ(root->GetGeometry(), Rect(0, 29, 0, 39));
}

TEST(LayoutLoad, AnotherDocumentTypeLoadsNothing)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 1, 2, 3, 4);
    LayoutProbe* child = s.Probe(root, "child", 0, 0, 5, 5);
    std::string body = "<Child Name=\"child\" X=\"9\" Y=\"9\" Width=\"9\" Height=\"9\"/>"
                       "<NewChild Name=\"made\" Type=\"Window\" X=\"1\"/>";
    for (char const* rootName :
         {"TvCanvasLayout-2", "TvCanvasLayout", "Layout", "tvcanvaslayout-1"})
    {
        std::string xml =
            std::string("<") + rootName + " X=\"50\" Metric0=\"1\">" + body + "</" + rootName + ">";
        EXPECT_FALSE(LoadXml(s, root, xml)) << rootName;
    }
    EXPECT_EQ(root->GetGeometry(), Rect(1, 3, 2, 5));
    EXPECT_EQ(child->GetGeometry(), Rect(0, 4, 0, 4));
    EXPECT_TRUE(root->GetDynamicLayoutMetrics().empty());
    EXPECT_EQ(root->child_windows().size(), 1u);
    EXPECT_EQ(root->layoutLoaded, 0);
}

TEST(LayoutLoad, MetricsStopAtTheFirstGap)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root");
    ASSERT_TRUE(LoadXml(s, root, LayoutXml("Metric0=\"3\" Metric2=\"7\"", "")));
    EXPECT_EQ(root->GetDynamicLayoutMetrics(), std::vector<int>{3});

    LayoutProbe* other = s.Probe(nullptr, "other");
    ASSERT_TRUE(LoadXml(s, other, LayoutXml("Metric0=\"1\" Metric1=\"\" Metric2=\"2\"", "")));
    EXPECT_EQ(other->GetDynamicLayoutMetrics(), std::vector<int>{1});

    LayoutProbe* third = s.Probe(nullptr, "third");
    ASSERT_TRUE(LoadXml(s, third, LayoutXml("Metric0=\"1\" Metric1=\"x2\" Metric2=\"2\"", "")));
    EXPECT_EQ(third->GetDynamicLayoutMetrics(), std::vector<int>{1});

    LayoutProbe* none = s.Probe(nullptr, "none");
    ASSERT_TRUE(LoadXml(s, none, LayoutXml("Metric1=\"1\"", "")));
    EXPECT_TRUE(none->GetDynamicLayoutMetrics().empty());
}

// ---- children

TEST_F(LayoutLoadOnRoot, UnknownChildSkipsItsSubtreeAndLoadingGoesOn)
{
    LayoutProbe* a = s.Probe(root, "a");
    LayoutProbe* b = s.Probe(root, "b");
    ASSERT_TRUE(
        LoadXml(s, root,
                LayoutXml("", "<Child Name=\"ghost\" X=\"1\" Y=\"1\" Width=\"1\" Height=\"1\">"
                              "  <NewChild Name=\"never\" Type=\"LayoutProbe\" X=\"1\"/>"
                              "  <Child Name=\"a\" X=\"90\" Y=\"90\" Width=\"9\" Height=\"9\"/>"
                              "</Child>"
                              "<Child Name=\"\" X=\"5\"/>"
                              "<Child X=\"5\"/>"
                              "<Child Name=\"a\" X=\"11\" Y=\"12\" Width=\"13\" Height=\"14\"/>"
                              "<Child Name=\"b\" X=\"21\" Y=\"22\" Width=\"23\" Height=\"24\"/>")));
    EXPECT_EQ(a->GetGeometry(), Rect(11, 23, 12, 25));
    EXPECT_EQ(b->GetGeometry(), Rect(21, 43, 22, 45));
    EXPECT_EQ(root->child_windows().size(), 2u);
    EXPECT_EQ(root->FindChildWindow("never"), nullptr);
}

TEST_F(LayoutLoadOnRoot, ChildWithoutXKeepsGeometryButGetsTheRest)
{
    LayoutProbe* a = s.Probe(root, "a", 3, 4, 5, 6);
    LayoutProbe* inner = s.Probe(a, "inner", 0, 0, 1, 1);
    ASSERT_TRUE(LoadXml(
        s, root,
        LayoutXml("", "<Child Name=\"a\" Y=\"99\" Width=\"99\" Metric0=\"8\" Layout=\"Other\">"
                      "  <Property Name=\"Label\" Type=\"String\" Value=\"labelled\"/>"
                      "  <Child Name=\"inner\" X=\"1\" Y=\"1\" Width=\"2\" Height=\"2\"/>"
                      "  <NewChild Name=\"made\" Type=\"LayoutProbe\" X=\"4\" Y=\"4\" Width=\"4\" "
                      "Height=\"4\"/>"
                      "</Child>")));
    EXPECT_EQ(a->GetGeometry(), Rect(3, 7, 4, 9));
    EXPECT_EQ(a->GetDynamicLayoutMetrics(), std::vector<int>{8});
    EXPECT_EQ(a->GetProperty<String>("Label"), checked_value<String>(String("labelled")));
    EXPECT_EQ(inner->GetGeometry(), Rect(1, 2, 1, 2));
    ASSERT_NE(a->FindChildWindow("made"), nullptr);
    // Without "X" the element's own layout file is not taken up.
    EXPECT_TRUE(a->GetLayoutName().IsEmpty());
    EXPECT_EQ(a->GetDynamicLayoutMode(), Window::DynamicLayoutCode);
}

TEST_F(LayoutLoadOnRoot, NewChildMakesRegisteredTypesOnly)
{
    ASSERT_TRUE(LoadXml(
        s, root,
        LayoutXml("", "<NewChild Name=\"p\" Type=\"LayoutProbe\" X=\"1\" Y=\"2\" Width=\"3\" "
                      "Height=\"4\" Metric0=\"9\">"
                      "  <NewChild Name=\"w\" Type=\"Window\" X=\"0\" Y=\"0\" Width=\"1\" "
                      "Height=\"1\"/>"
                      "</NewChild>"
                      "<NewChild Name=\"x\" Type=\"NoSuchType\" X=\"1\">"
                      "  <NewChild Name=\"y\" Type=\"Window\" X=\"1\"/>"
                      "</NewChild>"
                      "<NewChild Name=\"z\" X=\"1\"/>"
                      "<NewChild Name=\"e\" Type=\"\" X=\"1\"/>")));
    ASSERT_EQ(root->child_windows().size(), 1u);
    auto* p = dynamic_cast<LayoutProbe*>(root->FindChildWindow("p"));
    ASSERT_NE(p, nullptr);
    EXPECT_TRUE(p->IsLayoutCreated());
    EXPECT_EQ(p->GetDynamicLayoutMode(), Window::DynamicLayoutSaved);
    EXPECT_EQ(p->GetGeometry(), Rect(1, 3, 2, 5));
    EXPECT_EQ(p->metrics, (std::vector<std::pair<unsigned int, int>>{{0, 9}}));
    Window* w = p->FindChildWindow("w");
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(w->IsLayoutCreated());
}

TEST_F(LayoutLoadOnRoot, NameMayComeFromAFirstTextNode)
{
    LayoutProbe* a = s.Probe(root, "a", 0, 0, 1, 1);
    ASSERT_TRUE(
        LoadXml(s, root,
                LayoutXml("", "<Child X=\"5\" Y=\"6\" Width=\"7\" Height=\"8\">a</Child>"
                              "<NewChild Type=\"Window\" X=\"1\">made</NewChild>"
                              "<NewChild Type=\"Window\" X=\"1\"><!--c-->late</NewChild>")));
    EXPECT_EQ(a->GetGeometry(), Rect(5, 11, 6, 13));
    EXPECT_NE(root->FindChildWindow("made"), nullptr);
    // A text node that isn't first gives no name: the window is made nameless.
    EXPECT_EQ(root->FindChildWindow("late"), nullptr);
    EXPECT_EQ(root->child_windows().size(), 3u);
}

TEST_F(LayoutLoadOnRoot, PropertiesWaitUntilTheChildrenExist)
{
    ASSERT_TRUE(
        LoadXml(s, root,
                LayoutXml("", "<NewChild Name=\"p\" Type=\"LayoutProbe\" X=\"1\">"
                              "  <Property Name=\"Children\" Type=\"Int\" Value=\"1\"/>"
                              "  <NewChild Name=\"c1\" Type=\"Window\" X=\"1\"/>"
                              "  <Property Name=\"Label\" Type=\"String\" Value=\"first\"/>"
                              "  <NewChild Name=\"c2\" Type=\"Window\" X=\"1\"/>"
                              "  <NewChild Name=\"c3\" Type=\"Window\" X=\"1\"/>"
                              "  <Property Name=\"Label\" Type=\"String\" Value=\"second\"/>"
                              "</NewChild>")));
    auto* p = dynamic_cast<LayoutProbe*>(root->FindChildWindow("p"));
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->childrenWhenSet, 3);
    EXPECT_EQ(p->GetProperty<int>("Children"), checked_value<int>(1));
    // File order among the properties: the later value wins.
    EXPECT_EQ(p->GetProperty<String>("Label"), checked_value<String>(String("second")));
}

TEST_F(LayoutLoadOnRoot, BadPropertiesAreSkipped)
{
    ASSERT_TRUE(
        LoadXml(s, root,
                LayoutXml("", "<Property Name=\"Label\" Type=\"NoSuchType\" Value=\"x\"/>"
                              "<Property Name=\"NoSuchProperty\" Type=\"String\" Value=\"x\"/>"
                              "<Property Name=\"Children\" Type=\"String\" Value=\"x\"/>"
                              "<Property Name=\"Children\" Type=\"Int\" Value=\"not a number\"/>"
                              "<Property Type=\"String\" Value=\"x\"/>"
                              "<Property Name=\"Label\" Value=\"x\"/>"
                              "<Property Name=\"Label\" Type=\"String\"/>"
                              "<Property Name=\"Children\" Type=\"Int\" Value=\"12\"/>")));
    EXPECT_EQ(root->GetProperty<int>("Children"), checked_value<int>(12));
    EXPECT_EQ(root->GetProperty<String>("Label"), checked_value<String>(String("")));
}

TEST_F(LayoutLoadOnRoot, UnknownElementsAndOtherNodesAreSkipped)
{
    LayoutProbe* a = s.Probe(root, "a");
    ASSERT_TRUE(LoadXml(s, root,
                        LayoutXml("", "<!-- a comment -->text<Widget Name=\"a\" X=\"50\"/>"
                                      "<Child Name=\"a\" X=\"6\" Y=\"6\" Width=\"6\" Height=\"6\">"
                                      "<Widget/><Child Name=\"b\"/></Child>")));
    EXPECT_EQ(a->GetGeometry(), Rect(6, 11, 6, 11));
}

TEST_F(LayoutLoadOnRoot, LoadingTwiceDuplicatesNewChildrenUnlessDeletedFirst)
{
    LayoutProbe* kept = s.Probe(root, "kept");
    std::string xml = LayoutXml("", "<NewChild Name=\"made\" Type=\"Window\" X=\"1\" Y=\"1\" "
                                    "Width=\"5\" Height=\"5\"/>");
    ASSERT_TRUE(LoadXml(s, root, xml));
    Window* first = root->FindChildWindow("made");
    ASSERT_TRUE(LoadXml(s, root, xml));
    ASSERT_EQ(root->child_windows().size(), 3u);
    EXPECT_EQ(root->FindChildWindow("made"), first);
    EXPECT_EQ(root->child_windows()[2]->GetName(), String("made"));

    root->DeleteAllLayoutCreatedChildren();
    ASSERT_TRUE(LoadXml(s, root, xml));
    EXPECT_EQ(root->child_windows().size(), 2u);
    EXPECT_EQ(root->child_windows()[0], kept);
}

TEST(LayoutLoad, WithoutAWindowTheFrameTopLevelIsLaidOut)
{
    LayoutScene s;
    LayoutProbe* top = s.Probe(nullptr, "top", 0, 0, 10, 10);
    std::size_t topLevelBefore = s.frame->GetTopLevelWindows().size();
    ASSERT_TRUE(LoadXml(
        s, nullptr,
        LayoutXml("X=\"99\" Metric0=\"1\"",
                  "<Child Name=\"top\" X=\"3\" Y=\"3\" Width=\"30\" Height=\"30\"/>"
                  "<NewChild Name=\"added\" Type=\"LayoutProbe\" X=\"1\" Y=\"1\" Width=\"2\" "
                  "Height=\"2\"/>"
                  "<Property Name=\"Label\" Type=\"String\" Value=\"x\"/>")));
    EXPECT_EQ(top->GetGeometry(), Rect(3, 32, 3, 32));
    EXPECT_TRUE(top->GetDynamicLayoutMetrics().empty());
    Window* added = s.frame->FindChildWindow("added");
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->GetParent(), nullptr);
    EXPECT_EQ(s.frame->GetTopLevelWindows().size(), topLevelBefore + 1);
}

// ---- nested layouts named by "Layout"

TEST_F(LayoutNestedOnRoot, LayoutAttributeLoadsTheWindowsOwnFile)
{
    LayoutProbe* panel = s.Probe(root, "panel");
    LayoutProbe* inside = s.Probe(panel, "inside");
    s.WriteLayout("Panel", LayoutXml("Metric0=\"2\"", "<Child Name=\"inside\" X=\"7\" Y=\"7\" "
                                                      "Width=\"7\" Height=\"7\"/>"));
    ASSERT_TRUE(LoadXml(s, root,
                        LayoutXml("", "<Child Name=\"panel\" X=\"1\" Y=\"1\" Width=\"50\" "
                                      "Height=\"50\" Layout=\"Panel\"/>")));
    EXPECT_EQ(panel->GetGeometry(), Rect(1, 50, 1, 50));
    EXPECT_EQ(panel->GetLayoutName(), String("Panel"));
    EXPECT_EQ(panel->GetDynamicLayoutMode(), Window::DynamicLayoutOwnFile);
    EXPECT_EQ(panel->GetDynamicLayoutMetrics(), std::vector<int>{2});
    EXPECT_EQ(inside->GetGeometry(), Rect(7, 13, 7, 13));
    // The nested file is not a layout of its own load: no hook.
    EXPECT_EQ(panel->layoutLoaded, 0);

    // A missing or unreadable nested file is ignored; the name and mode are taken all the same.
    LayoutProbe* other = s.Probe(root, "other");
    std::filesystem::create_directories(s.override.Path() + "/UI/Layout/Folder.layout");
    ASSERT_TRUE(LoadXml(s, root,
                        LayoutXml("", "<Child Name=\"other\" X=\"2\" Layout=\"Missing\"/>"
                                      "<Child Name=\"panel\" X=\"3\" Layout=\"Folder\"/>"
                                      "<Child Name=\"inside\" X=\"4\"/>")));
    EXPECT_EQ(other->GetLayoutName(), String("Missing"));
    EXPECT_EQ(other->GetDynamicLayoutMode(), Window::DynamicLayoutOwnFile);
    EXPECT_EQ(panel->GetLayoutName(), String("Folder"));
}

TEST_F(LayoutNestedOnRoot, ALayoutThatNamesItselfIsNotLoadedAgain)
{
    s.WriteLayout("Loop", LayoutXml("Layout=\"Loop\"", "<NewChild Name=\"a\" Type=\"Window\" "
                                                       "X=\"1\" Layout=\"Loop\"/>"));
    s.WriteLayout("Ping", LayoutXml("", "<NewChild Name=\"ping\" Type=\"Window\" X=\"1\" "
                                        "Layout=\"Pong\"/>"));
    s.WriteLayout("Pong", LayoutXml("", "<NewChild Name=\"pong\" Type=\"Window\" X=\"1\" "
                                        "Layout=\"Ping\"/>"));
    s.UseOverrideFolder();
    ASSERT_TRUE(root->LoadLayout("Loop"));
    ASSERT_TRUE(root->LoadLayout("Ping"));
    // Loop: the root's attribute loads Loop once inside the outer load, refused below that.
    EXPECT_LE(root->child_windows().size(), 8u);
    Window* ping = root->FindChildWindow("ping");
    ASSERT_NE(ping, nullptr);
    ASSERT_NE(ping->FindChildWindow("pong"), nullptr);
}

TEST(LayoutNested, AChainOfLayoutsCannotNestWindowsWithoutEnd)
{
    // Each file nests windows as deep as the XML reader allows and hands the innermost window
    // to the next file; without a bound on the whole, the window tree would be tens of
    // thousands deep and exhaust the stack of whatever walks it.
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 200, 200);
    int const files = 256;
    int const depth = 95;
    for (int f = 0; f < files; ++f)
    {
        std::string open;
        std::string close;
        for (int d = 0; d < depth; ++d)
        {
            open += "<NewChild Name=\"n\" Type=\"Window\" X=\"0\"" +
                    (d + 1 == depth ? " Layout=\"L" + std::to_string(f + 1) + "\"/>" : ">");
            close += d + 1 == depth ? "" : "</NewChild>";
        }
        s.WriteLayout("L" + std::to_string(f), LayoutXml("", open + close));
    }
    s.UseOverrideFolder();
    ASSERT_TRUE(root->LoadLayout("L0"));
    int levels = 0;
    for (Window* w = root; !w->child_windows().empty(); w = w->child_windows().front())
        ++levels;
    EXPECT_GE(levels, 200) << "nested layouts load as written within the bound";
    EXPECT_LE(levels, 256);
}

// ---- where a layout comes from

TEST(LayoutRoads, OverrideFolderFilesDoNotCallTheHook)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 5, 5);
    s.WriteLayout("Main", LayoutXml("X=\"1\" Y=\"1\" Width=\"9\" Height=\"9\"", ""));
    s.UseOverrideFolder();
    EXPECT_TRUE(root->LoadLayout("Main"));
    EXPECT_EQ(root->GetGeometry(), Rect(1, 9, 1, 9));
    EXPECT_EQ(root->layoutLoaded, 0);

    root->SetLayoutName("Main");
    EXPECT_TRUE(root->LoadLayout());
    EXPECT_EQ(root->layoutLoaded, 0);

    // The free form with the folder behaves alike; without a folder the resource road is
    // taken, and the resource manager serves the override file there: the hook runs.
    EXPECT_TRUE(UI::LoadLayout(s.OverrideFolder(), "UI/Layout/Main.layout", s.frame.get(), root));
    EXPECT_EQ(root->layoutLoaded, 0);
    EXPECT_TRUE(UI::LoadLayout(FolderPath(), "UI/Layout/Main.layout", s.frame.get(), root));
    EXPECT_EQ(root->layoutLoaded, 1);
}

TEST(LayoutRoads, ResourceLayoutsCallTheHook)
{
    LoadPackedResources();
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 5, 5);
    LayoutProbe* inner = s.Probe(root, "inner");
    EXPECT_TRUE(root->LoadLayout("Packed"));
    EXPECT_EQ(root->GetGeometry(), Rect(7, 76, 8, 87));
    EXPECT_EQ(inner->GetGeometry(), Rect(1, 3, 2, 5));
    EXPECT_EQ(root->layoutLoaded, 1);

    // With an override folder that lacks the file, the resources still serve it.
    s.UseOverrideFolder();
    EXPECT_TRUE(root->LoadLayout("PackedOnly"));
    EXPECT_EQ(root->GetDynamicLayoutMetrics()[0], 5);
    EXPECT_EQ(root->layoutLoaded, 2);

    // An override file of the same name wins, and takes the disk road.
    s.WriteLayout("Packed", LayoutXml("X=\"0\" Y=\"0\" Width=\"1\" Height=\"1\"", ""));
    EXPECT_TRUE(root->LoadLayout("Packed"));
    EXPECT_EQ(root->GetGeometry(), Rect(0, 0, 0, 0));
    EXPECT_EQ(root->layoutLoaded, 2);

    EXPECT_FALSE(root->LoadLayout("PackedBroken"));
    EXPECT_FALSE(root->LoadLayout("NotThere"));
    EXPECT_EQ(root->layoutLoaded, 2);
}

TEST(LayoutRoads, ExplicitPathCallsTheHookAndNamesTheLayout)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 5, 5);
    std::string path = s.override.Write("Somewhere.layout",
                                        LayoutXml("X=\"2\" Y=\"2\" Width=\"2\" Height=\"2\"", ""));
    EXPECT_TRUE(root->LoadLayoutExplicit(path.c_str()));
    EXPECT_EQ(root->GetGeometry(), Rect(2, 3, 2, 3));
    EXPECT_EQ(root->layoutLoaded, 1);
    EXPECT_EQ(root->GetLayoutName(), String("Somewhere"));

    root->SetLayoutName("Kept");
    EXPECT_FALSE(root->LoadLayoutExplicit((s.override.Path() + "/none.layout").c_str()));
    std::string empty = s.override.Write("Empty.layout", "");
    EXPECT_FALSE(root->LoadLayoutExplicit(empty.c_str()));
    EXPECT_EQ(root->GetLayoutName(), String("Kept"));
    EXPECT_EQ(root->layoutLoaded, 1);

    // Reading errors reach the caller.
    EXPECT_THROW(root->LoadLayoutExplicit(s.override.Path().c_str()), Util::Exception::FileIO);
}

TEST(LayoutRoads, NamesAndFramesWithoutAFileAnswerFalse)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 5, 5);
    EXPECT_FALSE(root->LoadLayout());
    EXPECT_FALSE(root->LoadLayout(""));
    EXPECT_FALSE(s.frame->LoadLayout());
    s.UseOverrideFolder();
    EXPECT_FALSE(root->LoadLayout("Absent"));
    s.frame->SetLayoutName("FrameLayout");
    EXPECT_FALSE(s.frame->LoadLayout());
    s.WriteLayout("FrameLayout", LayoutXml("", "<Child Name=\"root\" X=\"4\" Y=\"4\" "
                                               "Width=\"4\" Height=\"4\"/>"));
    EXPECT_TRUE(s.frame->LoadLayout());
    EXPECT_EQ(root->GetGeometry(), Rect(4, 7, 4, 7));
}

// ---- hostile files

TEST(LayoutHostile, MalformedFilesLoadNothing)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 1, 1, 1, 1);
    std::vector<std::string> files = {
        "",
        "not xml at all",
        "<TvCanvasLayout-1 X=\"5\"",
        "<TvCanvasLayout-1 X=\"5\"><Child Name=\"a\"></TvCanvasLayout-1>",
        "<TvCanvasLayout-1 X=\"5\" X=\"6\"/>",
        "<?xml version=\"1.0\"?>",
        "<!-- only a comment -->",
        "\x89PNG\r\n\x1a\n\0\0\0\rIHDR",
    };
    for (std::string const& file : files)
    {
        EXPECT_FALSE(LoadXml(s, root, file)) << file;
        EXPECT_EQ(root->GetGeometry(), Rect(1, 1, 1, 1)) << file;
    }
    // Entities of a DTD are not expanded: the value reads as no number, so 0.
    EXPECT_TRUE(LoadXml(s, root, "<!DOCTYPE x [<!ENTITY e \"5\">]><TvCanvasLayout-1 X=\"&e;\"/>"));
    EXPECT_EQ(root->GetGeometry(), Rect(0, -1, 0, -1));
}

TEST(LayoutHostile, HugeValuesAreKeptWithinBounds)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 10, 10);
    LayoutProbe* a = s.Probe(root, "a");
    LayoutProbe* b = s.Probe(a, "b");
    std::string big(1 << 20, 'n');
    ASSERT_TRUE(LoadXml(
        s, root,
        LayoutXml("X=\"2147483647\" Y=\"-2147483648\" Width=\"2147483647\" Height=\"-5\"",
                  "<Child Name=\"a\" X=\"2147483647\" Y=\"2147483647\" Width=\"2147483647\" "
                  "Height=\"2147483647\" Metric0=\"2147483647\" Metric1=\"99999999999999\">"
                  "<Child Name=\"b\" X=\"2000000\" Y=\"-2000000\" Width=\"1\" Height=\"1\"/>"
                  "</Child>"
                  "<NewChild Name=\"" +
                      big + "\" Type=\"Window\" X=\"1\" Layout=\"" + big +
                      "\"/>"
                      "<Property Name=\"Label\" Type=\"String\" Value=\"" +
                      big + "\"/>")));
    EXPECT_EQ(root->GetGeometry(), Rect(1000000, 1999999, -1000000, -1000001));
    EXPECT_EQ(a->GetGeometry(), Rect(1000000, 1999999, 1000000, 1999999));
    EXPECT_EQ(a->GetDynamicLayoutMetrics(), std::vector<int>{2147483647});
    EXPECT_EQ(b->GetGeometry(), Rect(1000000, 1000000, -1000000, -1000000));
    EXPECT_EQ(b->GetGlobalPos(), UI::Point(3000000, -1000000));
    EXPECT_NE(root->FindChildWindow(String(big.c_str())), nullptr);
    EXPECT_EQ(root->GetProperty<String>("Label").Get().Length(), big.size());
}

TEST(LayoutHostile, DeepNestingIsRefusedOrLoaded)
{
    LayoutScene s;
    LayoutProbe* root = s.Probe(nullptr, "root", 0, 0, 10, 10);
    auto nested = [](int depth)
    {
        std::string open, close;
        for (int i = 0; i < depth; ++i)
        {
            open += "<NewChild Name=\"n" + std::to_string(i) + "\" Type=\"Window\" X=\"1\">";
            close += "</NewChild>";
        }
        return LayoutXml("", open + close);
    };
    // Deeper than the parser allows: nothing at all.
    EXPECT_FALSE(LoadXml(s, root, nested(100000)));
    EXPECT_TRUE(root->child_windows().empty());
    // A depth the parser accepts makes every level.
    ASSERT_TRUE(LoadXml(s, root, nested(90)));
    Window* w = root;
    int depth = 0;
    while (!w->child_windows().empty())
    {
        w = w->child_windows()[0];
        ++depth;
    }
    EXPECT_EQ(depth, 90);
    EXPECT_EQ(w->GetGlobalPos(), UI::Point(90, 0));
}
