// The window maker and the window tree in process: a live design on an in-memory frame, the
// tools on host windows that keep their frames in memory, the settings in a private folder.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/ComboBox.h"
#include "Canvas/UI/Design.h"
#include "Canvas/UI/DesignAid.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Legend.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/Native/SDL/PlatformSupportFactorySDL.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/TreeList.h"
#include "Canvas/UI/WindowFactory.h"
#include "Canvas/UI/WindowMaker.h"
#include "Canvas/UI/WindowTree.h"
#include "TvBase/Util/ConfigFile.h"
#include "tests/Canvas/UI/CanvasTestSupport.h"
#include "tests/Canvas/UI/TestHostWindow.h"
#include "tests/Canvas/UI/TestWindows.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

using UI::Point;
using UI::Rect;

/// A tool's host window whose native window "exists" and shows in memory.
class ToolHost : public UI::Native::HostWindow
{
public:
    ToolHost(UI::Canvas* canvas, String const& name, Util::ConfigFile* config)
        : HostWindow(canvas, name, nullptr, config)
    {
    }
    void PostUpdateMessage() override {}
    void InvalidateRect(Rect) override {}
    CGColorSpace* GetColorSpace() override { return nullptr; }
    Point GetScreenPos() override { return Point(); }
    bool IsHoldingFocus() override { return false; }
    void SetNativeFocus() override {}
    void SetCurrentCursor(UI::Cursor const&) override {}
    Point GetCursorScreenPos() override { return Point(); }
    bool IsCapsLockOn() override { return false; }
    void Show(bool) override { visible = true; }
    void Hide() override { visible = false; }

protected:
    bool create(void*, void*, String const&) override
    {
        nativeHandle = this;
        return true;
    }
};

class ToolPlatform : public UI::Native::PlatformSupportFactorySDL
{
public:
    UI::Native::HostWindow* CreateHostWindow(UI::Canvas* canvas, String const& name, UI::Frame*,
                                             Util::ConfigFile* config) override
    {
        return new ToolHost(canvas, name, config);
    }
    Rect ConvertClientToWindowRect(Rect const& client, bool, UI::Native::HostWindowStyle const&,
                                   String const&) override
    {
        return client;
    }
};

/// A 400 by 300 designed frame with both tools shown: "root" holds "a" and "b".
struct Scene
{
    UI::Canvas canvas{"WindowToolsTest", 0, 0, String(""), String("UI/Layout")};
    UI::Test::TestHostWindow host;
    UI::MemoryDrawContext context{"Window Tools Test Context"};
    std::unique_ptr<UI::Frame> frame;
    UI::Window* root = nullptr;
    UI::Window* a = nullptr;
    UI::Window* b = nullptr;
    UI::DesignAid* aid = nullptr;
    UI::WindowTree* tree = nullptr;
    UI::WindowMaker* maker = nullptr;

    Scene()
    {
        static ToolPlatform* platform = []
        {
            auto* p = new ToolPlatform;
            UI::Native::PlatformSupportFactory::overrideImpl(p);
            return p;
        }();
        (void)platform;
        Util::ConfigFile config(String("com.tavorin"));
        config.SetBool(String("RuntimeDesignEnable"), true);
        config.RemoveValue(String("WindowTreeShowSelectionOnly"));
        host.SetShown(true);
        host.capsLock = true;
        frame.reset(new UI::Frame(&canvas, host.Handle(), &context, Point(), "unused",
                                  Rect(0, 399, 0, 299)));
        frame->SetHostWindow(&host);
        frame->SetDrawingEnabled(true);
        root = make(nullptr, "root", Rect::FromXYWH(0, 0, 400, 300));
        a = make(root, "a", Rect::FromXYWH(20, 20, 50, 40));
        b = make(root, "b", Rect::FromXYWH(100, 25, 60, 30));
        frame->SetTopLevelWindow(root);
        design()->UpdateActive();
        aid = canvas.GetDesignAid();
        aid->ShowWindowTree();
        aid->ShowWindowMaker();
        tree = aid->GetWindowTree();
        maker = aid->GetWindowMaker();
    }
    ~Scene() { frame.reset(); }

    UI::Window* make(UI::Window* parent, char const* name, Rect const& r)
    {
        auto* w = new UI::Test::RecordingWindow(frame.get(), parent, name);
        w->SetGeometry(r.left, r.top, r.Width(), r.Height());
        return w;
    }
    UI::Design* design() const { return frame->GetDesign(); }
    UI::TreeListItem* row(UI::Window* w) const
    {
        checked_value<unsigned int> const id = tree->GetItem(w);
        return id ? tree->GetTreeList()->GetListItem(*id) : nullptr;
    }
    std::vector<UI::Window*> treeWindows() const
    {
        std::vector<UI::Window*> windows;
        for (unsigned int id : tree->GetTreeList()->GetSelection())
            for (UI::Window* w : {root, a, b})
                if (tree->GetItem(w) && *tree->GetItem(w) == id)
                    windows.push_back(w);
        return windows;
    }
    void key(unsigned int code)
    {
        design()->HandleKeyboardMessage(UI::KeyPress, code, 0, 0, false);
    }
    std::string parentText() const { return maker->GetParentText()->GetText().CStr(); }
};

TEST(WindowTree, RowsColouredByTheFirstStateThatHoldsWithTheLegendInThatOrder)
{
    Scene s;
    ASSERT_NE(nullptr, s.tree);
    EXPECT_TRUE(s.aid->GetWindowTreeHost()->IsVisible());
    EXPECT_TRUE(s.tree->GetFrame()->IsDesignDisable());
    struct Case
    {
        char const* name;
        bool hidden, disabled, dynamic;
        char const* layoutKey;
        checked_value<unsigned int> color;
    } const cases[] = {
        {"hidden dynamic", true, false, true, "", UI::WindowTree::COLOR_HIDDEN_WINDOW},
        {"disabled keyed", false, true, false, "K", UI::WindowTree::COLOR_DISABLED_WINDOW},
        {"dynamic keyed", false, false, true, "K", UI::WindowTree::COLOR_DYNAMIC_WINDOW},
        {"keyed", false, false, false, "Keyed", UI::WindowTree::COLOR_LAYOUT_WINDOW},
        {"plain", false, false, false, "", {}},
    };
    std::vector<UI::Window*> windows;
    for (Case const& c : cases)
    {
        UI::Window* w = s.make(s.a, c.name, Rect::FromXYWH(0, 0, 10, 10));
        if (c.hidden)
            w->Hide();
        w->SetEnabled(!c.disabled);
        w->SetLayoutCreated(c.dynamic);
        w->SetLayoutName(c.layoutKey);
        windows.push_back(w);
    }
    s.tree->slotUpdateWindowTree();
    for (std::size_t i = 0; i < windows.size(); ++i)
    {
        EXPECT_EQ(cases[i].color, UI::WindowTree::RowColor(windows[i])) << cases[i].name;
        UI::TreeListItem* row = s.row(windows[i]);
        ASSERT_NE(nullptr, row) << cases[i].name;
        EXPECT_EQ(cases[i].color ? *cases[i].color : 0xFF000000u, row->GetColor());
        EXPECT_EQ(*s.tree->GetItem(s.a), *row->GetParentId());
    }
    EXPECT_EQ("Layout Key: Keyed", std::string(s.row(windows[3])->GetToolTip().CStr()));
    EXPECT_TRUE(s.row(windows[4])->GetToolTip().IsEmpty());

    std::vector<UI::Legend::Entry> const& legend = s.tree->GetLegend()->GetEntries();
    ASSERT_EQ(4u, legend.size());
    char const* const texts[] = {"Hidden", "Disabled", "Created dynamically", "Has Layout"};
    unsigned int const colours[] = {0xFF777777u, 0xFFBB0000u, 0xFF0000BBu, 0xFF00BB00u};
    for (unsigned int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(texts[i], std::string(legend[i].text.CStr()));
        EXPECT_EQ(colours[i], legend[i].color);
    }
}

TEST(WindowTree, SelectionKeptEqualBothWaysAndRebuiltOnDelete)
{
    Scene s;
    // Design to tree.
    s.design()->SetSelectionTo(std::vector<UI::Window*>{s.a});
    EXPECT_EQ(std::vector<UI::Window*>{s.a}, s.treeWindows());
    s.design()->SetSelectionTo(std::vector<UI::Window*>{s.a, s.b});
    EXPECT_EQ((std::vector<UI::Window*>{s.a, s.b}), s.treeWindows());
    // Tree to design, as a click in the tree does.
    s.tree->GetTreeList()->SetSelection({*s.tree->GetItem(s.b)});
    s.tree->GetTreeList()->signalSelectionChanged();
    EXPECT_EQ(std::vector<UI::Window*>{s.b}, s.design()->GetSelectedWindows());
    std::size_t const rows = s.tree->GetTreeList()->GetVisibleRows().size();
    std::size_t const items = s.tree->GetTreeList()->GetItemCount();
    // "9" and "0" walk the visible rows (root, a, b), and the design follows.
    s.key('9');
    EXPECT_EQ(std::vector<UI::Window*>{s.a}, s.design()->GetSelectedWindows());
    EXPECT_EQ(std::vector<UI::Window*>{s.a}, s.treeWindows());
    s.key('0');
    EXPECT_EQ(std::vector<UI::Window*>{s.b}, s.design()->GetSelectedWindows());
    // "=" shows the selection's lineage only, and the check box says so; "-" shows all again.
    s.key(187);
    EXPECT_TRUE(s.tree->GetSelectionOnlyCheckBox()->IsChecked());
    EXPECT_EQ(2u, s.tree->GetTreeList()->GetVisibleRows().size());
    s.key(189);
    EXPECT_FALSE(s.tree->GetSelectionOnlyCheckBox()->IsChecked());
    EXPECT_EQ(rows, s.tree->GetTreeList()->GetVisibleRows().size());

    // A deleted window's row goes at once; a reparented one moves under its new parent.
    s.b->SetLayoutCreated(true);
    s.key(46);
    EXPECT_FALSE(s.tree->GetItem(s.b));
    EXPECT_EQ(items - 1, s.tree->GetTreeList()->GetItemCount());
    UI::Window* c = s.make(s.root, "cee", Rect::FromXYWH(200, 200, 20, 20));
    c->SetLayoutCreated(true);
    s.tree->slotUpdateWindowTree();
    s.design()->SetSelectionTo(c);
    s.key('R');
    s.design()->SetSelectionTo(s.a);
    ASSERT_EQ(s.a, c->GetParent());
    EXPECT_EQ("Reparented cee", std::string(s.design()->GetReadoutText().CStr()));
    EXPECT_EQ(*s.tree->GetItem(s.a), *s.row(c)->GetParentId());
    // The search keeps the rows that hold the text, with their ancestors.
    s.tree->GetSearchEdit()->SetText(String("EE"));
    s.tree->GetSearchEdit()->signalTextEdited();
    EXPECT_EQ(3u, s.tree->GetTreeList()->GetVisibleRows().size());
}

TEST(WindowMaker, EveryRegisteredTypeIsShownAndCreatedWhereTheClickFalls)
{
    Scene s;
    ASSERT_NE(nullptr, s.maker);
    UI::WindowFactory* factory = s.canvas.GetWindowFactory();
    std::vector<String> const types = factory->type_names();
    ASSERT_EQ(types, s.maker->GetComboBox()->GetItems());
    ASSERT_EQ(types.size(), s.maker->GetExampleItems().size());
    for (UI::ExampleWindowItem* item : s.maker->GetExampleItems())
    {
        UI::Window* example = item->GetExample();
        ASSERT_NE(nullptr, example) << item->GetType().CStr();
        EXPECT_EQ(item->GetType(), *factory->GetTypeName(example));
        EXPECT_FALSE(example->IsEnabled());
        EXPECT_LE(example->GetWidth(), 100);
        EXPECT_LE(example->GetHeight(), 25);
        EXPECT_EQ(std::max(20, example->GetHeight()), item->GetHeight());
    }

    // The parent text follows the design's selection.
    EXPECT_EQ("No parent (select a window to use it as a parent)", s.parentText());
    s.design()->SetSelectionTo(std::vector<UI::Window*>{s.a, s.b});
    EXPECT_EQ("No parent (select one window to use it as a parent)", s.parentText());

    UI::SimplePushButton* create = s.maker->GetCreateButton();
    for (unsigned int i = 0; i < types.size(); ++i)
    {
        s.design()->SetSelectionTo(s.root);
        EXPECT_EQ("Parent: root", s.parentText());
        s.maker->comboBoxItemSelected(i);
        EXPECT_TRUE(s.maker->GetExampleItems()[i]->IsChosen());
        EXPECT_FALSE(create->IsEnabled()) << "no name yet";
        String const name = String("made %1").Arg(i);
        s.maker->GetNameEdit()->SetText(name);
        s.maker->GetNameEdit()->signalTextEdited();
        ASSERT_TRUE(create->IsEnabled());
        create->signalClicked();
        EXPECT_EQ(std::string("Click to place the new ") + types[i].CStr() + " '" + name.CStr() +
                      "'",
                  s.parentText());
        EXPECT_FALSE(s.maker->GetComboBox()->IsEnabled());
        EXPECT_FALSE(create->IsEnabled());

        s.frame->HandleMouseMessage(UI::MouseLeftPress, Point(25, 24), 0, 0);
        s.frame->HandleMouseMessage(UI::MouseLeftRelease, Point(25, 24), 0, 0);
        UI::Window* made = s.root->FindChildWindow(name);
        ASSERT_NE(nullptr, made) << types[i].CStr();
        EXPECT_EQ(types[i], *factory->GetTypeName(made));
        // Placed at the click, as far as the parent (400 by 300) lets it.
        EXPECT_EQ(
            Point(std::min(25, 400 - made->GetWidth()), std::min(24, 300 - made->GetHeight())),
            made->GetGeometry().TopLeft())
            << types[i].CStr();
        EXPECT_TRUE(made->IsLayoutCreated());
        EXPECT_EQ(std::vector<UI::Window*>{made}, s.design()->GetSelectedWindows());
        EXPECT_EQ(
            0u,
            std::string(s.design()->GetReadoutText().CStr()).find(name.CStr() + std::string(" [")))
            << types[i].CStr();
        // Ready for the next one; the tree has a row for it.
        EXPECT_TRUE(s.maker->GetComboBox()->IsEnabled());
        EXPECT_TRUE(s.maker->GetNameEdit()->GetText().IsEmpty());
        ASSERT_TRUE(s.tree->GetItem(made));
        EXPECT_EQ(types[i], s.row(made)->GetDetail());
        // Labels are disabled from birth, and that shows first.
        EXPECT_EQ(made->IsEnabled() ? UI::WindowTree::COLOR_DYNAMIC_WINDOW
                                    : UI::WindowTree::COLOR_DISABLED_WINDOW,
                  s.row(made)->GetColor());
    }
}

TEST(WindowMaker, WithoutRegisteredTypesSaysSoAndCreatesNothing)
{
    Scene s;
    UI::WindowFactory empty;
    UI::WindowMaker* maker = new UI::WindowMaker(s.maker->GetFrame(), s.aid, &empty);
    EXPECT_EQ("No window factory classes have been registered.",
              std::string(maker->GetParentText()->GetText().CStr()));
    ASSERT_NE(nullptr, maker->GetNoTypesText());
    EXPECT_EQ("To create windows dynamically, you must register their classes with the window "
              "factory.\nSee Canvas/UI/WindowFactoryRegistration for an example of how to do this.",
              std::string(maker->GetNoTypesText()->GetText().CStr()));
    maker->GetNameEdit()->SetText(String("name"));
    maker->windowNameEdited();
    EXPECT_FALSE(maker->GetCreateButton()->IsEnabled());
    s.design()->SetSelectionTo(s.a);
    EXPECT_EQ("No window factory classes have been registered.",
              std::string(maker->GetParentText()->GetText().CStr()));
}

} // namespace
