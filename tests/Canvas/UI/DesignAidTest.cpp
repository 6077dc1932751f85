// The Design Aid panel in process: a live design on an in-memory frame, the panel on a host
// window that keeps its frame in memory, the settings in a private folder.

#include "Canvas/UI/DesignAid.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/Design.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "Canvas/UI/Native/SDL/PlatformSupportFactorySDL.h"
#include "Canvas/UI/PixelZoom.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
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

/// A host window with a frame of its own whose native window "exists" and shows in memory.
class FramedHost : public UI::Native::HostWindow
{
public:
    FramedHost(UI::Canvas* canvas, String const& name, Util::ConfigFile* config)
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

class AidPlatform : public UI::Native::PlatformSupportFactorySDL
{
public:
    bool IsAltPressed() override { return alt; }
    UI::Native::HostWindow* CreateHostWindow(UI::Canvas* canvas, String const& name, UI::Frame*,
                                             Util::ConfigFile* config) override
    {
        return new FramedHost(canvas, name, config);
    }
    Rect ConvertClientToWindowRect(Rect const& client, bool, UI::Native::HostWindowStyle const&,
                                   String const&) override
    {
        return client;
    }
    bool alt = false;
};

AidPlatform& Platform()
{
    static AidPlatform* platform = []
    {
        auto* p = new AidPlatform;
        UI::Native::PlatformSupportFactory::overrideImpl(p);
        return p;
    }();
    return *platform;
}

/// A 400 by 300 designed frame: "a" (20,20 50x40) and "b" (100,25 60x30) on "root".
struct Scene
{
    UI::Canvas canvas{"DesignAidTest", 0, 0, String(""), String("UI/Layout")};
    UI::Test::TestHostWindow host;
    UI::MemoryDrawContext context{"Design Aid Test Context"};
    std::unique_ptr<UI::Frame> frame;
    UI::Test::RecordingWindow* root = nullptr;
    UI::Test::RecordingWindow* a = nullptr;
    UI::Test::RecordingWindow* b = nullptr;
    UI::DesignAid* aid = nullptr;

    Scene()
    {
        Platform();
        Util::ConfigFile config(String("com.tavorin"));
        config.SetBool(String("RuntimeDesignEnable"), true);
        config.RemoveValue(canvas.GetOverridePathKey());
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
        frame->GetDesign()->UpdateActive();
        aid = canvas.GetDesignAid();
    }
    ~Scene() { frame.reset(); }

    UI::Test::RecordingWindow* make(UI::Window* parent, char const* name, Rect const& r)
    {
        auto* w = new UI::Test::RecordingWindow(frame.get(), parent, name);
        w->SetGeometry(r.left, r.top, r.Width(), r.Height());
        return w;
    }
    UI::Design* design() const { return frame->GetDesign(); }
    std::string name() const { return aid->GetObjectInfoText()->GetText().CStr(); }
    std::string edit(unsigned int i) const { return aid->GetGeometryEdit(i)->GetText().CStr(); }
};

TEST(DesignAid, MadeOnceOnActivationWithItsWindowsAndShown)
{
    Scene s;
    ASSERT_TRUE(s.design()->IsActive());
    ASSERT_NE(nullptr, s.aid);
    s.canvas.initializeDesignAid();
    EXPECT_EQ(s.aid, s.canvas.GetDesignAid());
    EXPECT_TRUE(s.aid->IsHostWindowVisible());
    EXPECT_EQ(s.frame.get(), s.aid->GetDesignFrame());
    EXPECT_TRUE(s.aid->GetFrame()->IsDesignDisable());
    EXPECT_EQ("No selection", s.name());
    for (char const* name : UI::DesignAid::BUTTON_NAMES)
        EXPECT_NE(s.aid->child_windows_by_name().end(), s.aid->child_windows_by_name().find(name));
    // The save button waits for the override folder, and says so.
    UI::SimplePushButton* save = s.aid->GetButton(UI::DesignAid::SaveLayoutButton);
    EXPECT_FALSE(save->IsEnabled());
    EXPECT_EQ("Set Resource Override Folder to specify where to save layout files",
              std::string(save->GetToolTipText().CStr()));
    s.aid->GetResourcePathEdit()->SetText(String("/tmp/override"));
    s.aid->GetResourcePathEdit()->signalTextEdited();
    EXPECT_TRUE(save->IsEnabled());
    EXPECT_EQ(
        "/tmp/override",
        std::string(
            s.canvas.GetConfigFile()->GetString(s.canvas.GetOverridePathKey(), String("")).CStr()));
    // The close box hides; hiding drops force.
    s.aid->ToggleForceDesignEnable();
    EXPECT_TRUE(s.aid->IsDesignForceEnabled());
    EXPECT_FALSE(s.aid->GetHostWindow()->handleCloseRequest());
    EXPECT_FALSE(s.aid->IsHostWindowVisible());
    EXPECT_FALSE(s.aid->IsDesignForceEnabled());
}

TEST(DesignAid, SelectionDisplayAndGeometryEdits)
{
    Scene s;
    s.design()->SetSelectionTo(std::vector<UI::Window*>{s.a});
    EXPECT_EQ("a", s.name());
    EXPECT_EQ((std::vector<std::string>{"20", "20", "50", "40"}),
              (std::vector<std::string>{s.edit(0), s.edit(1), s.edit(2), s.edit(3)}));

    s.design()->SetSelectionTo(std::vector<UI::Window*>{s.a, s.b});
    EXPECT_EQ("2 windows selected", s.name());
    EXPECT_EQ("[...]", s.edit(2));
    EXPECT_FALSE(s.aid->GetGeometryEdit(2)->IsEnabled());
    // X moves the group: the smallest left lands on it; a bad Y is ignored.
    s.aid->GetGeometryEdit(0)->SetText(String("30"));
    s.aid->GetGeometryEdit(1)->SetText(String("zz"));
    s.aid->GetGeometryEdit(0)->signalTextEdited();
    EXPECT_EQ(Rect::FromXYWH(30, 20, 50, 40), s.a->GetGeometry());
    EXPECT_EQ(Rect::FromXYWH(110, 25, 60, 30), s.b->GetGeometry());
    EXPECT_EQ(1u, s.design()->GetUndoDepth());

    // Guides of both axes.
    s.design()->Deselect();
    s.frame->HandleMouseMessage(UI::MouseLeftDoubleClick, Point(300, 200), 0, 0);
    EXPECT_EQ("One vertical guide selected", s.name());
    Platform().alt = true;
    s.frame->HandleMouseMessage(UI::MouseLeftDoubleClick, Point(300, 250), UI::FlagShift, 0);
    Platform().alt = false;
    EXPECT_EQ("2 guides selected", s.name());
    EXPECT_EQ("300", s.edit(0));
    EXPECT_EQ("250", s.edit(1));
}

TEST(DesignAid, MoreOptionsFollowTheState)
{
    Scene s;
    s.design()->SetSelectionTo(std::vector<UI::Window*>{s.a, s.b});
    UI::Native::PopupMenu menu;
    s.aid->BuildMoreOptionsMenu(menu);
    auto const& entries = menu.GetEntries();
    ASSERT_EQ(36u, entries.size());
    struct Case
    {
        unsigned int index;
        char const* caption;
        bool enabled, checked;
    } const cases[] = {
        {0, "Deselect (Ctrl+D)", true, false},
        {1, "Select parent (P)", true, false},
        {4, "Select child (C)", false, false},
        {5, "Show selection frames (\\)", true, true},
        {6, "Show guides at the centers of selected windows ([)", true, false},
        {12, "Make new window (M)", true, false},
        {14, "Reparent selected windows (R)", false, false},
        {20, "Align objects to min X or Y (A)", true, false},
        {24, "Undo most recent geometry change (Ctrl+Z)", false, false},
        {25, "Redo most recent geometry change (shift+Ctrl+Z)", false, false},
        {28, "Reload layout from layout file (Ctrl+L)", true, false},
        {30, "Show children of selected windows in Window Tree (+)", false, false},
        {35, "Show palette editor (console: 'editpalette')", true, false},
    };
    for (Case const& k : cases)
    {
        EXPECT_EQ(k.caption, std::string(entries[k.index].caption.CStr()));
        EXPECT_EQ(k.enabled, entries[k.index].enabled) << k.caption;
        EXPECT_EQ(k.checked, entries[k.index].checked) << k.caption;
    }
    EXPECT_EQ(UI::Native::PopupMenu::Entry::Kind::Separator, entries[11].kind);
    // The centre guides entry toggles; Alt+F freezes the zoom.
    s.aid->ExecuteMoreOption(6);
    EXPECT_TRUE(s.design()->IsShowingCenterGuides());
    Platform().alt = true;
    EXPECT_TRUE(s.aid->HandleKeyboardMessage(UI::KeyPress, 'F', 'f', 0, false));
    Platform().alt = false;
    EXPECT_TRUE(s.aid->GetPixelZoom()->IsFrozen());
}

} // namespace
