// The live design engine driven through its frame, as the host drives it: a frame on the
// in-memory host window with a real memory draw context, caps lock and Alt under the test's
// control, the settings in a private folder.

#include "Canvas/UI/Design.h"
#include "Canvas/UI/Box.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/Native/SDL/PlatformSupportFactorySDL.h"
#include "Canvas/UI/WindowFactory.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"
#include "tests/Canvas/UI/CanvasTestSupport.h"
#include "tests/Canvas/UI/TestHostWindow.h"
#include "tests/Canvas/UI/TestWindows.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

namespace
{

using UI::Design;
using UI::Point;
using UI::Rect;
using UI::Test::RecordingWindow;

/// The SDL platform with Alt and Ctrl under the test's control, and host windows that never
/// reach a display (the readout host stays without a native window).
class DesignPlatform : public UI::Native::PlatformSupportFactorySDL
{
public:
    bool IsAltPressed() override { return alt; }
    bool IsCtrlPressed() override { return false; }
    bool IsCommandPressed() override { return false; }
    UI::Native::HostWindow* CreateHostWindow(UI::Canvas*, String const&, UI::Frame*,
                                             Util::ConfigFile*) override
    {
        return new UI::Test::TestHostWindow();
    }
    bool alt = false;
};

DesignPlatform& Platform()
{
    static DesignPlatform* platform = []
    {
        auto* p = new DesignPlatform;
        UI::Native::PlatformSupportFactory::overrideImpl(p);
        return p;
    }();
    return *platform;
}

void SetDesignSettings(bool enable, bool prevent)
{
    Util::ConfigFile config(String("com.tavorin"));
    config.SetBool(String("RuntimeDesignEnable"), enable);
    config.SetBool(String("PreventRuntimeDesign"), prevent);
}

unsigned int const Ctrl = UI::FlagControl;
unsigned int const Shift = UI::FlagShift;

/// A 400 by 300 frame: "root" fills it; "a" (20,20 50x40), "b" (100,25 60x30) and
/// "c" (200,30 40x20) lie on it, and "panel" (200,100 150x150) holds "inner" (10,10 40x40).
struct Scene
{
    UI::Canvas canvas{"DesignTest", 0, 0, String(""), String("UI/Layout")};
    UI::Test::TestHostWindow host;
    UI::MemoryDrawContext context{"Design Context"};
    std::unique_ptr<UI::Frame> frame;
    UI::Test::Log log;
    RecordingWindow* root = nullptr;
    RecordingWindow* a = nullptr;
    RecordingWindow* b = nullptr;
    RecordingWindow* c = nullptr;
    RecordingWindow* panel = nullptr;
    RecordingWindow* inner = nullptr;

    explicit Scene(bool on = true)
    {
        Platform().alt = false;
        SetDesignSettings(on, false);
        host.SetShown(true);
        host.capsLock = on;
        frame.reset(new UI::Frame(&canvas, host.Handle(), &context, Point(), "unused",
                                  Rect(0, 399, 0, 299)));
        frame->SetHostWindow(&host);
        frame->SetDrawingEnabled(true);
        root = make(nullptr, "root", Rect::FromXYWH(0, 0, 400, 300), 0xFF404040);
        a = make(root, "a", Rect::FromXYWH(20, 20, 50, 40), 0xFF808080);
        b = make(root, "b", Rect::FromXYWH(100, 25, 60, 30), 0xFF808080);
        c = make(root, "c", Rect::FromXYWH(200, 30, 40, 20), 0xFF808080);
        panel = make(root, "panel", Rect::FromXYWH(200, 100, 150, 150), 0xFF606060);
        inner = make(panel, "inner", Rect::FromXYWH(10, 10, 40, 40), 0xFF808080);
        frame->SetTopLevelWindow(root);
        design()->UpdateActive();
    }
    ~Scene() { frame.reset(); }

    RecordingWindow* make(UI::Window* parent, char const* name, Rect const& r, unsigned int fill)
    {
        auto* w = new RecordingWindow(frame.get(), parent, name, &log);
        w->SetGeometry(r.left, r.top, r.Width(), r.Height());
        w->SetDynamicLayoutMode(UI::Window::DynamicLayoutSaved);
        w->fill = fill;
        w->takesMouse = true;
        w->takesKeys = true;
        return w;
    }

    Design* design() const { return frame->GetDesign(); }
    bool mouse(UI::MouseMessage m, int x, int y, unsigned int flags = 0)
    {
        return frame->HandleMouseMessage(m, Point(x, y), flags, 0);
    }
    void click(int x, int y, unsigned int flags = 0)
    {
        mouse(UI::MouseLeftPress, x, y, flags | UI::FlagLeftButton);
        mouse(UI::MouseLeftRelease, x, y, flags);
    }
    void drag(Point from, Point to, unsigned int flags = 0)
    {
        mouse(UI::MouseLeftPress, from.x, from.y, flags | UI::FlagLeftButton);
        mouse(UI::MouseMove, to.x, to.y, flags | UI::FlagLeftButton);
        mouse(UI::MouseLeftRelease, to.x, to.y, flags);
    }
    bool key(unsigned int code, unsigned int flags = 0)
    {
        return frame->HandleKeyboardMessage(UI::KeyPress, code, 0, flags, false);
    }
    std::string readout() const { return design()->GetReadoutText().CStr(); }
    std::vector<UI::Window*> selected() const { return design()->GetSelectedWindows(); }
    void select(std::vector<UI::Window*> const& windows) { design()->SetSelectionTo(windows); }
    unsigned int pixel(int x, int y) const
    {
        auto const& section = context.GetDIBSection();
        return section->GetPixels()[y * section->GetStride() + x];
    }
};

Rect geometry(UI::Window* w)
{
    return w->GetGeometry();
}

// ============================================================================================

TEST(DesignActivity, SettingsCapsLockVisibilityAndTheCanvasFlagDecide)
{
    struct Case
    {
        bool enable, prevent, disabled, caps, shown, canvasFlag, active;
    } const cases[] = {
        {false, false, false, true, true, true, false}, // no setting: caps lock does nothing
        {true, false, false, true, true, true, true},   //
        {true, true, false, true, true, true, false},   // prevented whatever the other says
        {true, false, true, true, true, true, false},   // a tool frame
        {true, false, false, false, true, true, false}, // caps lock off
        {true, false, false, true, false, true, false}, // host hidden
        {true, false, false, true, true, false, false}, // design windows being made
    };
    for (Case const& k : cases)
    {
        Scene s(false);
        SetDesignSettings(k.enable, k.prevent);
        s.canvas.UpdateDesignEnableFromConfigFile();
        s.canvas.SetDesignEnabled(k.canvasFlag);
        s.host.capsLock = k.caps;
        s.host.SetShown(k.shown);
        s.frame->SetDesignDisable(k.disabled);
        s.frame->tickTimers();
        EXPECT_EQ(k.active, s.design()->IsActive())
            << k.enable << k.prevent << k.disabled << k.caps << k.shown << k.canvasFlag;
        // Claimed input never reaches the widgets; unclaimed input does.
        s.click(40, 40);
        EXPECT_EQ(k.active, s.log.empty());
    }
    SetDesignSettings(false, false);
}

TEST(DesignActivity, SwitchingOffDropsSelectionAndKeepsGuides)
{
    Scene s;
    s.click(40, 40);
    s.mouse(UI::MouseLeftDoubleClick, 300, 200);
    ASSERT_EQ(1u, s.design()->GetGuides(0).size());
    s.host.capsLock = false;
    s.frame->tickTimers();
    EXPECT_FALSE(s.design()->IsActive());
    EXPECT_TRUE(s.selected().empty());
    s.host.capsLock = true;
    s.frame->tickTimers();
    EXPECT_EQ(std::vector<int>{300}, s.design()->GetGuides(0));
    ASSERT_NE(nullptr, s.design()->GetMouseProxy());
    EXPECT_EQ(UI::Window::DynamicLayoutNever, s.design()->GetMouseProxy()->GetDynamicLayoutMode());
    EXPECT_TRUE(s.log.empty());
}

TEST(DesignHandles, DragTypeFollowsTheFivePixelHandleRanges)
{
    Scene s;
    // "a" covers 20..69 by 20..59.
    struct Case
    {
        int x, y;
        bool fixedW, fixedH;
        Design::DragType type;
    } const cases[] = {
        {20, 20, false, false, Design::DragTopLeft},
        {24, 24, false, false, Design::DragTopLeft},
        {25, 24, false, false, Design::DragTop},
        {24, 25, false, false, Design::DragLeft},
        {20, 59, false, false, Design::DragBottomLeft},
        {24, 55, false, false, Design::DragBottomLeft},
        {69, 59, false, false, Design::DragBottomRight},
        {65, 55, false, false, Design::DragBottomRight},
        {69, 20, false, false, Design::DragTopRight},
        {40, 40, false, false, Design::DragMove},
        {40, 59, false, false, Design::DragBottom},
        {40, 54, false, false, Design::DragMove},
        {69, 40, false, false, Design::DragRight},
        {64, 40, false, false, Design::DragMove},
        {20, 40, true, false, Design::DragMove},
        {20, 20, true, false, Design::DragTopLeft},
        {40, 20, true, false, Design::DragTop},
        {40, 20, false, true, Design::DragMove},
        {20, 20, true, true, Design::DragMove},
        {69, 40, false, true, Design::DragRight},
    };
    for (Case const& k : cases)
    {
        RecordingWindow* w = s.make(s.root, "h", Rect::FromXYWH(20, 20, 50, 40), 0xFF808080);
        if (k.fixedW)
            w->SetFixedWidth(50);
        if (k.fixedH)
            w->SetFixedHeight(40);
        EXPECT_EQ(k.type, s.design()->getDragType(w, Point(k.x, k.y)))
            << k.x << "," << k.y << " fixed " << k.fixedW << k.fixedH;
        delete w;
    }
}

TEST(DesignSelection, ClickCommandClickShiftClickBandAndNoSelect)
{
    Scene s;
    s.click(40, 40);
    EXPECT_EQ(std::vector<UI::Window*>({s.a}), s.selected());
    EXPECT_EQ("a [20,20 50x40]", s.readout());
    s.click(130, 40, Ctrl);
    EXPECT_EQ(std::vector<UI::Window*>({s.a, s.b}), s.selected());
    EXPECT_EQ("2 windows [20,20 140x40]", s.readout());
    s.click(40, 40, Ctrl); // a Command-click that doesn't drag takes a selected window out
    EXPECT_EQ(std::vector<UI::Window*>({s.b}), s.selected());
    s.drag(Point(130, 40), Point(133, 40), Ctrl); // ...but not when it dragged it
    EXPECT_EQ(std::vector<UI::Window*>({s.b}), s.selected());
    EXPECT_EQ(103, geometry(s.b).left);
    s.click(40, 40, Shift);
    EXPECT_EQ(std::vector<UI::Window*>({s.b, s.a}), s.selected());
    s.click(10, 290); // the root under the point
    EXPECT_EQ(std::vector<UI::Window*>({s.root}), s.selected());

    // The Alt rubber band selects the children of the window it starts on.
    Platform().alt = true;
    s.mouse(UI::MouseLeftPress, 10, 10, UI::FlagLeftButton);
    Platform().alt = false;
    s.mouse(UI::MouseMove, 180, 70, UI::FlagLeftButton);
    EXPECT_EQ(std::vector<UI::Window*>({s.a, s.b}), s.selected());
    s.mouse(UI::MouseMove, 300, 70, UI::FlagLeftButton | Shift); // Shift freezes it
    EXPECT_EQ(2u, s.selected().size());
    s.mouse(UI::MouseLeftRelease, 300, 70);

    // A no-select window can't be hit; its parent is hit instead.
    s.click(230, 130);
    EXPECT_EQ(std::vector<UI::Window*>({s.inner}), s.selected());
    s.key('1');
    EXPECT_EQ("Toggled no-select state for selected windows", s.readout());
    s.click(230, 130);
    EXPECT_EQ(std::vector<UI::Window*>({s.panel}), s.selected());

    s.design()->Deselect();
    EXPECT_EQ("No windows selected", s.readout());
    EXPECT_TRUE(s.log.empty()) << s.log.front();
}

TEST(DesignDrag, MovesResizesClampsAndRoundsWithShift)
{
    struct Case
    {
        Point from, to;
        unsigned int flags;
        bool alt;
        bool inner;
        Rect expected; // x, y, width, height
    } const cases[] = {
        {{40, 40}, {50, 45}, 0, false, false, Rect::FromXYWH(30, 25, 50, 40)},
        {{40, 40}, {-60, 40}, 0, false, false, Rect::FromXYWH(0, 20, 50, 40)},
        {{40, 40}, {900, 900}, 0, false, false, Rect::FromXYWH(350, 260, 50, 40)},
        {{40, 40}, {50, 43}, Shift, false, false, Rect::FromXYWH(30, 20, 50, 40)},
        {{40, 40}, {45, 35}, Shift, false, false, Rect::FromXYWH(25, 20, 50, 40)},
        {{69, 40}, {80, 40}, 0, false, false, Rect::FromXYWH(20, 20, 61, 40)},
        {{69, 40}, {80, 40}, Shift, false, false, Rect::FromXYWH(20, 20, 60, 40)},
        {{69, 40}, {71, 40}, Shift, false, false, Rect::FromXYWH(20, 20, 50, 40)},
        // The same formula on the near handle: -3 rounds to 0, -8 to -10.
        {{20, 40}, {17, 40}, Shift, false, false, Rect::FromXYWH(20, 20, 50, 40)},
        {{20, 40}, {12, 40}, Shift, false, false, Rect::FromXYWH(10, 20, 60, 40)},
        {{69, 59}, {75, 66}, Shift, false, false, Rect::FromXYWH(20, 20, 60, 50)},
        {{20, 40}, {100, 40}, 0, false, false, Rect::FromXYWH(69, 20, 1, 40)},
        {{40, 59}, {40, 0}, 0, false, false, Rect::FromXYWH(20, 20, 50, 1)},
        // A child stays in its parent unless Alt is held.
        {{230, 130}, {900, 130}, 0, false, true, Rect::FromXYWH(110, 10, 40, 40)},
        {{230, 130}, {900, 130}, 0, true, true, Rect::FromXYWH(360, 10, 40, 40)},
        {{230, 130}, {-900, 130}, 0, true, true, Rect::FromXYWH(-200, 10, 40, 40)},
    };
    for (Case const& k : cases)
    {
        Scene s;
        s.click(k.inner ? 230 : 40, k.inner ? 130 : 40);
        // Alt at the press would start a rubber band: it counts during the drag.
        s.mouse(UI::MouseLeftPress, k.from.x, k.from.y, k.flags | UI::FlagLeftButton);
        Platform().alt = k.alt;
        s.mouse(UI::MouseMove, k.to.x, k.to.y, k.flags | UI::FlagLeftButton);
        Platform().alt = false;
        s.mouse(UI::MouseLeftRelease, k.to.x, k.to.y, k.flags);
        EXPECT_EQ(k.expected, geometry(k.inner ? s.inner : s.a))
            << k.from.x << "," << k.from.y << " -> " << k.to.x << "," << k.to.y;
        EXPECT_TRUE(s.log.empty());
    }
}

TEST(DesignSnap, NearEdgesBeatFarEdgesBeatCentresAndShiftRoundsAfter)
{
    struct Case
    {
        std::vector<int> guides;
        Point from, to;
        unsigned int flags;
        Rect expected;
    } const cases[] = {
        {{100}, {40, 40}, {118, 40}, 0, Rect::FromXYWH(100, 20, 50, 40)},      // near edge
        {{100}, {40, 40}, {68, 40}, 0, Rect::FromXYWH(51, 20, 50, 40)},        // far edge
        {{100}, {40, 40}, {93, 40}, 0, Rect::FromXYWH(75, 20, 50, 40)},        // centre
        {{100, 148}, {40, 40}, {119, 40}, 0, Rect::FromXYWH(100, 20, 50, 40)}, // near wins
        {{100}, {40, 40}, {46, 40}, 0, Rect::FromXYWH(26, 20, 50, 40)},        // too far: no snap
        // A resize moves the centre half as fast: k = 2.
        {{60}, {69, 40}, {97, 40}, 0, Rect::FromXYWH(20, 20, 80, 40)},
        // The far edge snaps to 100, then Shift rounds the width to 80.
        {{100}, {69, 40}, {98, 40}, Shift, Rect::FromXYWH(20, 20, 80, 40)},
        // A left-handle resize never snaps its right edge.
        {{75}, {20, 40}, {22, 40}, 0, Rect::FromXYWH(22, 20, 48, 40)},
    };
    for (Case const& k : cases)
    {
        Scene s;
        for (int g : k.guides)
            s.mouse(UI::MouseLeftDoubleClick, g, 280);
        s.click(40, 40);
        s.drag(k.from, k.to, k.flags);
        EXPECT_EQ(k.expected, geometry(s.a)) << k.to.x;
    }
}

TEST(DesignGuides, DoubleClickDragSnapArrowsAndDelete)
{
    Scene s;
    s.mouse(UI::MouseLeftDoubleClick, 300, 200);
    Platform().alt = true;
    s.mouse(UI::MouseLeftDoubleClick, 300, 200, Shift);
    Platform().alt = false;
    EXPECT_EQ(std::vector<int>{300}, s.design()->GetGuides(0));
    EXPECT_EQ(std::vector<int>{200}, s.design()->GetGuides(1));
    EXPECT_EQ(std::vector<int>{300}, s.design()->GetSelectedGuides(0));
    EXPECT_EQ(std::vector<int>{200}, s.design()->GetSelectedGuides(1));

    // A press near a guide takes the guide, not the window handle behind it.
    s.click(40, 40);
    s.mouse(UI::MouseLeftDoubleClick, 22, 280, Shift);
    s.click(40, 40, Shift);
    EXPECT_EQ(std::vector<UI::Window*>({s.a}), s.selected());
    s.mouse(UI::MouseLeftPress, 24, 40, UI::FlagLeftButton | Shift);
    EXPECT_EQ(std::vector<UI::Window*>({s.a}), s.selected());
    // Dragging it snaps to the selected window: near edge, centre, far edge.
    struct Step
    {
        int to, guide;
    } const steps[] = {{24, 20}, {47, 45}, {66, 69}, {80, 80}, {-5, 0}};
    for (Step const& step : steps)
    {
        s.mouse(UI::MouseMove, step.to, 40, UI::FlagLeftButton | Shift);
        EXPECT_EQ(step.guide, s.design()->GetGuides(0)[1]) << step.to;
    }
    s.mouse(UI::MouseLeftRelease, -5, 40);
    EXPECT_EQ(Rect::FromXYWH(20, 20, 50, 40), geometry(s.a));

    // Arrow keys move the selected guides (and windows), clamped to the frame.
    s.design()->SetSelectionTo(std::vector<UI::Window*>());
    s.key(39, Shift);
    s.key(39);
    EXPECT_EQ(11, s.design()->GetGuides(0)[1]);
    s.design()->SetSelectedGuidePos(50, 0);
    EXPECT_EQ(std::vector<int>({50}), s.design()->GetSelectedGuides(0));
    s.key(46); // deletes the selected guides only
    EXPECT_EQ(std::vector<int>({300}), s.design()->GetGuides(0));
    EXPECT_EQ(std::vector<int>({200}), s.design()->GetGuides(1));
    EXPECT_TRUE(s.log.empty());
}

TEST(DesignKeys, ArrowsMoveAndCtrlResizes)
{
    Scene s;
    s.click(40, 40);
    s.key(39);
    s.key(40, Shift);
    EXPECT_EQ(Rect::FromXYWH(21, 30, 50, 40), geometry(s.a));
    s.key(39, Ctrl);
    s.key(38, Ctrl | Shift);
    EXPECT_EQ(Rect::FromXYWH(21, 30, 51, 30), geometry(s.a));
    EXPECT_EQ("a [21,30 51x30]", s.readout());
    // Repeats of other keys are dropped; arrows repeat.
    EXPECT_TRUE(s.frame->HandleKeyboardMessage(UI::KeyPress, 39, 0, 0, true));
    EXPECT_EQ(22, geometry(s.a).left);
    EXPECT_TRUE(s.log.empty());
}

TEST(DesignKeys, AlignAnswers)
{
    struct Case
    {
        unsigned int key;
        bool maximum;
        Rect a, b, c;
        char const* readout;
    } const cases[] = {
        {'L', false, Rect::FromXYWH(20, 20, 50, 40), Rect::FromXYWH(20, 25, 60, 30),
         Rect::FromXYWH(20, 30, 40, 20), "Aligned left"},
        {'L', true, Rect::FromXYWH(200, 20, 50, 40), Rect::FromXYWH(200, 25, 60, 30),
         Rect::FromXYWH(200, 30, 40, 20), "Aligned left"},
        {'R', false, Rect::FromXYWH(20, 20, 50, 40), Rect::FromXYWH(10, 25, 60, 30),
         Rect::FromXYWH(30, 30, 40, 20), "Aligned right"},
        {'B', true, Rect::FromXYWH(20, 20, 50, 40), Rect::FromXYWH(100, 30, 60, 30),
         Rect::FromXYWH(200, 40, 40, 20), "Aligned bottom"},
        {'T', true, Rect::FromXYWH(20, 30, 50, 40), Rect::FromXYWH(100, 30, 60, 30),
         Rect::FromXYWH(200, 30, 40, 20), "Aligned top"},
        {'C', false, Rect::FromXYWH(20, 20, 50, 40), Rect::FromXYWH(15, 25, 60, 30),
         Rect::FromXYWH(25, 30, 40, 20), "Aligned horizontal centers"},
        {'V', true, Rect::FromXYWH(20, 20, 50, 40), Rect::FromXYWH(100, 25, 60, 30),
         Rect::FromXYWH(200, 30, 40, 20), "Aligned vertical centers"},
        {'W', true, Rect::FromXYWH(20, 20, 60, 40), Rect::FromXYWH(100, 25, 60, 30),
         Rect::FromXYWH(200, 30, 60, 20), "Matched widths"},
        {'H', false, Rect::FromXYWH(20, 20, 50, 20), Rect::FromXYWH(100, 25, 60, 20),
         Rect::FromXYWH(200, 30, 40, 20), "Matched heights"},
    };
    for (Case const& k : cases)
    {
        Scene s;
        s.select({s.a, s.b, s.c});
        s.key('A', k.maximum ? Shift : 0);
        ASSERT_TRUE(s.design()->IsLayoutActionPending());
        EXPECT_EQ(k.maximum ? Design::LayoutAlignMax : Design::LayoutAlignMin,
                  s.design()->GetLayoutAction());
        s.key(k.key);
        EXPECT_EQ(k.a, geometry(s.a)) << char(k.key);
        EXPECT_EQ(k.b, geometry(s.b)) << char(k.key);
        EXPECT_EQ(k.c, geometry(s.c)) << char(k.key);
        EXPECT_EQ(k.readout, s.readout());
        EXPECT_FALSE(s.design()->IsLayoutActionPending());
    }
}

TEST(DesignKeys, SpaceEvenlyAndTheTwoStepReadouts)
{
    Scene s;
    s.select({s.a, s.b, s.c});
    s.key('S');
    EXPECT_EQ("Space windows evenly (H)orizontally, evenly (V)ertically, by a specific (X) "
              "value, or by a specific (Y) value?",
              s.readout());
    s.key('H');
    // Span 20..239, sizes 150: (219 - 150) / 2 = 34.
    EXPECT_EQ(20, geometry(s.a).left);
    EXPECT_EQ(104, geometry(s.b).left);
    EXPECT_EQ(198, geometry(s.c).left);
    EXPECT_EQ("Spaced windows evenly horizontally", s.readout());
    s.key('S');
    s.key('V');
    // Span 20..59, sizes 90: (39 - 90) / 2 = -25, truncated toward zero.
    EXPECT_EQ(20, geometry(s.a).top);
    EXPECT_EQ(35, geometry(s.b).top);
    EXPECT_EQ(40, geometry(s.c).top);
    EXPECT_EQ("Spaced windows evenly vertically", s.readout());

    s.key('A');
    EXPECT_EQ("Align to minimum (L)eft, (R)ight, (T)op, (B)ottom, (W)idth, (H)eight, (V)ertical "
              "center, or horizontal (C)enter?",
              s.readout());
    s.key('X');
    EXPECT_EQ("Unknown key", s.readout());
    EXPECT_FALSE(s.design()->IsLayoutActionPending());

    // With the selection below two windows, an answer does nothing and the action waits.
    s.key('A', Shift);
    s.design()->SetSelectionTo(s.a);
    s.key('L');
    EXPECT_TRUE(s.design()->IsLayoutActionPending());
    EXPECT_EQ(20, geometry(s.a).left);
    // A press drops the action and goes on.
    s.click(130, 40);
    EXPECT_FALSE(s.design()->IsLayoutActionPending());

    // A cancelled inline edit (no display here) leaves the geometry alone.
    s.select({s.a, s.b});
    Rect const before = geometry(s.b);
    s.key('S');
    s.key('Y');
    EXPECT_EQ(before, geometry(s.b));
    EXPECT_FALSE(s.design()->IsLayoutActionPending());

    s.design()->SetSelectionTo(s.a);
    s.key('A');
    EXPECT_EQ("Select two or more windows to align them", s.readout());
    s.key('S');
    EXPECT_EQ("Select two or more windows to space them evenly", s.readout());
    EXPECT_FALSE(s.design()->IsLayoutActionPending());
    s.key('G');
    EXPECT_EQ("Snap to guides turned off", s.readout());
    s.key('G');
    EXPECT_EQ("Snap to guides turned on", s.readout());
    EXPECT_TRUE(s.log.empty());
}

TEST(DesignUndo, UndoRedoWithoutLimitAndTheABToggles)
{
    Scene s;
    s.click(40, 40);
    for (int i = 1; i <= 3; ++i)
        s.drag(Point(40 + 10 * (i - 1), 40), Point(40 + 10 * i, 40));
    EXPECT_EQ(50, geometry(s.a).left);
    // The first click's press pushed a record too.
    EXPECT_EQ(4u, s.design()->GetUndoDepth());
    struct Step
    {
        unsigned int flags;
        int left;
    } const steps[] = {{Ctrl, 40}, {Ctrl, 30}, {Ctrl | Shift, 40}, {Ctrl, 30},        {Ctrl, 20},
                       {Ctrl, 20}, {Ctrl, 20}, {Ctrl | Shift, 20}, {Ctrl | Shift, 30}};
    for (Step const& step : steps)
    {
        s.key('Z', step.flags);
        EXPECT_EQ(step.left, geometry(s.a).left);
    }
    EXPECT_EQ(std::vector<UI::Window*>({s.a}), s.selected());

    // A/B: the first "B" shows the original rectangle, the second the edited one again.
    s.drag(Point(50, 40), Point(90, 40));
    EXPECT_EQ(70, geometry(s.a).left);
    s.key('B');
    EXPECT_EQ(20, geometry(s.a).left);
    s.key('B');
    EXPECT_EQ(70, geometry(s.a).left);
    s.click(130, 40);
    s.drag(Point(130, 40), Point(140, 40));
    s.key('B', Ctrl); // every window ever selected
    EXPECT_EQ(20, geometry(s.a).left);
    EXPECT_EQ(100, geometry(s.b).left);
    s.key('B', Ctrl);
    EXPECT_EQ(70, geometry(s.a).left);
    EXPECT_EQ(110, geometry(s.b).left);
    s.key('Z', Ctrl);
    EXPECT_EQ(20, geometry(s.a).left);
}

TEST(DesignCreate, CreateDeleteAndReparentDynamicWindows)
{
    Scene s;
    UI::GetWindowFactory(&s.canvas)->Register<UI::Box>(String("Design Test Box"));
    s.design()->StartCreateWindowAction(String("Design Test Box"), s.panel, String("made"));
    EXPECT_EQ("Click to place the new Design Test Box 'made'", s.readout());
    s.click(300, 200);
    ASSERT_EQ(1u, s.selected().size());
    UI::Window* made = s.selected()[0];
    EXPECT_EQ(s.panel, made->GetParent());
    EXPECT_TRUE(made->IsLayoutCreated());
    EXPECT_EQ(Point(100, 100), made->GetGeometry().TopLeft());

    // Only dynamically created windows may be reparented.
    s.design()->SetSelectionTo(s.a);
    s.key('R');
    EXPECT_EQ("Select one or more dynamically created windows to allow reparenting", s.readout());
    s.design()->SetSelectionTo(made);
    s.key('R');
    EXPECT_EQ("Select a window to use as the new parent of made", s.readout());
    s.click(40, 40);
    EXPECT_EQ(s.a, made->GetParent());
    EXPECT_EQ("Reparented made", s.readout());

    s.design()->SetSelectionTo(std::vector<UI::Window*>({made, s.b}));
    s.drag(Point(130, 40), Point(131, 40));
    ASSERT_GT(s.design()->GetUndoDepth(), 0u);
    s.key(46);
    EXPECT_EQ(std::vector<UI::Window*>({s.b}), s.selected());
    EXPECT_EQ(nullptr, s.a->FindChildWindow(String("made")));
    EXPECT_EQ(0u, s.design()->GetUndoDepth());
    s.key('Z', Ctrl); // nothing left to undo
    EXPECT_EQ(101, geometry(s.b).left);
    EXPECT_TRUE(s.log.empty());
}

TEST(DesignReadout, FormattedNamesAndTheTreeDump)
{
    Scene s;
    struct Case
    {
        std::vector<UI::Window*> windows;
        char const* text;
    } const cases[] = {
        {{}, ""}, {{s.a}, "a"}, {{s.a, s.b}, "a and b"}, {{s.a, s.b, s.c}, "a, b, and c"}};
    for (Case const& k : cases)
        EXPECT_EQ(k.text, std::string(Design::getFormattedWindowNames(k.windows).CStr()));
    s.select({s.inner, s.a});
    EXPECT_EQ("2 windows [20,20 230x130]", s.readout());

    testing::internal::CaptureStderr();
    s.key('J');
    std::string const dump = testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos, dump.find("\troot\n\t\ta\n\t\tb\n\t\tc\n\t\tpanel\n\t\t\tinner\n"))
        << dump;
    EXPECT_EQ("Window tree dumped to debug console", s.readout());
}

TEST(DesignLayout, SaveWritesTheOverrideFolderAndReloadRestores)
{
    TestSupport::TempFolder folder("tv-design-layout");
    Scene s;
    s.root->SetLayoutName(String("DesignTest"));
    s.click(40, 40);
    s.key('S', Shift);
    EXPECT_EQ("SaveLayout failed", s.readout()); // no override folder
    Util::ResourceManager::Get().SetOverridePath(FolderPath(String(folder.Path().c_str())));
    std::string const dir = folder.Path() + "/UI/Layout";
    ASSERT_EQ(0, std::system(("mkdir -p '" + dir + "'").c_str()));
    s.drag(Point(40, 40), Point(80, 90));
    s.key('S', Shift);
    EXPECT_EQ("Saved layout to DesignTest.layout", s.readout());
    std::ifstream file(dir + "/DesignTest.layout");
    std::stringstream text;
    text << file.rdbuf();
    EXPECT_NE(std::string::npos,
              text.str().find("Name=\"a\" X=\"60\" Y=\"70\" Width=\"50\" Height=\"40\""))
        << text.str();

    s.key(37, Shift);
    EXPECT_EQ(50, geometry(s.a).left);
    s.key('L', Ctrl);
    EXPECT_EQ("Loaded layout from DesignTest.layout", s.readout());
    EXPECT_EQ(Rect::FromXYWH(60, 70, 50, 40), geometry(s.a));
    s.key('L'); // without Ctrl nothing
    EXPECT_EQ("a [60,70 50x40]", s.readout());

    s.root->SetLayoutName(String(""));
    s.key('S', Shift);
    EXPECT_EQ("SaveLayout failed - frame has no layout key", s.readout());
    s.key('L', Ctrl);
    EXPECT_EQ("LoadLayout failed", s.readout());
    Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());
}

TEST(DesignOverlay, ColoursOfBoxesHandlesGuidesAndBand)
{
    Scene s;
    s.click(40, 40);
    s.mouse(UI::MouseLeftDoubleClick, 300, 280, Shift);
    s.frame->RenderInvalidRegions(true);
    unsigned int const yellow = Design::SELECTION_BOX_COLOR;
    struct Case
    {
        int x, y;
        unsigned int color;
    } const cases[] = {
        {19, 19, yellow},
        {45, 19, yellow},
        {70, 60, yellow}, // the outline, grown by 1
        {23, 23, yellow},
        {24, 24, 0xFF808080}, // a corner handle, 5x5
        {21, 40, yellow},
        {21, 43, 0xFF808080},            // a side handle
        {300, 150, Design::GUIDE_COLOR}, // a guide
        {298, 2, Design::SELECTED_GUIDE_COLOR},
        {302, 297, Design::SELECTED_GUIDE_COLOR},
        {303, 2, 0xFF404040},
    };
    for (Case const& k : cases)
        EXPECT_EQ(k.color, s.pixel(k.x, k.y)) << k.x << "," << k.y;

    // A window that is never saved is boxed in red; centre guides are white at alpha 136.
    s.a->SetDynamicLayoutMode(UI::Window::DynamicLayoutNever);
    s.key(219);
    s.frame->RenderInvalidRegions(true);
    EXPECT_EQ(Design::SELECTION_BOX_COLOR_NO_SAVE, s.pixel(19, 19));
    unsigned int const blended = s.pixel(5, 40);
    EXPECT_NEAR(0x40 + (0xFF - 0x40) * 136 / 255, int(blended & 0xFF), 1);
    EXPECT_EQ(0xFF404040u, s.pixel(5, 45));
    s.key(219);

    Platform().alt = true;
    s.mouse(UI::MouseLeftPress, 100, 150, UI::FlagLeftButton);
    Platform().alt = false;
    s.mouse(UI::MouseMove, 150, 200, UI::FlagLeftButton);
    s.frame->RenderInvalidRegions(true);
    EXPECT_EQ(Design::RUBBER_BAND_COLOR, s.pixel(100, 170));
    EXPECT_EQ(Design::RUBBER_BAND_COLOR, s.pixel(150, 200));
    EXPECT_EQ(Rect(103, 146, 202, 214), s.design()->getRubberBandSizeTextRect(40));
    s.mouse(UI::MouseLeftRelease, 150, 200);
    s.frame->RenderInvalidRegions(true);
    EXPECT_EQ(0xFF404040u, s.pixel(100, 170));
}

TEST(DesignOverlay, ADragRepaintsOnlyAroundTheWindow)
{
    Scene s;
    s.click(40, 40);
    s.frame->RenderInvalidRegions(true);
    s.host.invalidated.clear();
    s.mouse(UI::MouseLeftPress, 40, 40, UI::FlagLeftButton);
    s.mouse(UI::MouseMove, 50, 45, UI::FlagLeftButton);
    ASSERT_FALSE(s.frame->GetInvalidRegions().empty());
    Rect united;
    for (Rect const& r : s.frame->GetInvalidRegions())
        united |= r;
    EXPECT_EQ(Rect(15, 84, 15, 69), united);
    s.mouse(UI::MouseLeftRelease, 50, 45);
}

} // namespace
