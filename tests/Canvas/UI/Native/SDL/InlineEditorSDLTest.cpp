// Edit fields and tool tips on real SDL windows: the inline editor typed into with xdotool,
// Escape cancelling it, and the tool tip showing once the mouse has rested long enough.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostCanvasPlatform.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimpleTimer.h"
#include "Canvas/UI/SimpleToolTip.h"
#include "TvBase/Util/ProcessInfo.h"
#include "tests/Canvas/UI/Native/SDL/GuiTestSupport.h"

#include <SDL.h>
#include <boost/function.hpp>
#include <gtest/gtest.h>

#include <memory>

using UI::Point;
using UI::Rect;
using UI::Native::PlatformSupportFactory;

namespace
{

class Backdrop : public UI::Window
{
public:
    Backdrop(UI::Frame* frame) : Window(frame, nullptr, "Root") {}
    void Draw(UI::DrawContext* context) override
    {
        context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                         0xFFE0E0E0, 255);
        Window::Draw(context);
    }
};

/// A canvas with the host's desktop behind it and one 320 by 160 host window at (100, 100)
/// holding an edit field at (20, 20).
struct Scene
{
    UI::Canvas canvas{"Text GUI Test"};
    std::unique_ptr<UI::Native::HostWindow> host;
    UI::SimpleEdit* edit = nullptr;
    int edited = 0;
    int started = 0;

    Scene()
    {
        canvas.SetPlatform(
            boost::shared_ptr<UI::CanvasPlatform>(new UI::Native::HostCanvasPlatform(&canvas)));
        host.reset(
            PlatformSupportFactory::CreateHostWindow(&canvas, "Text Test", nullptr, nullptr));
    }

    ~Scene()
    {
        canvas.SetToolTip(nullptr, UI::Canvas::ToolTipTextSetter());
        host.reset();
    }

    bool Open()
    {
        UI::Native::HostWindowStyle style;
        style.noFrame = true;
        if (!host->Create(nullptr, nullptr, "Text Test", Rect(Point(100, 100), UI::Size(320, 160)),
                          false, false, style))
            return false;
        UI::Frame* frame = host->GetFrame();
        Backdrop* root = new Backdrop(frame);
        frame->SetTopLevelWindow(root);
        edit = new UI::SimpleEdit(frame, root, "Field", "old text");
        edit->SetBackground(0xFFFFFFFF);
        edit->SetGeometry(20, 20, 200, 24);
        edit->signalTextEdited.Connect(nullptr, boost::function<void()>([this] { ++edited; }));
        edit->signalEditStarted.Connect(nullptr, boost::function<void()>([this] { ++started; }));
        frame->SetDrawingEnabled(true);
        host->StartMasterUpdateTimer(20);
        host->Show(true);
        return UI::Test::PumpUntil([frame] { return frame->GetInvalidRegions().empty(); });
    }
};

/// Ends an editor that outlives its deadline with a click outside it, from a timer of the
/// host's loop, so that a broken editor fails the test instead of hanging it.
struct Watchdog
{
    explicit Watchdog(unsigned int ms)
        : timer(
              [this]
              {
                  fired = true;
                  SDL_Event click;
                  SDL_zero(click);
                  click.type = SDL_MOUSEBUTTONDOWN;
                  click.button.windowID = 0;
                  SDL_PushEvent(&click);
              },
              ms, true)
    {
    }

    bool fired = false;
    UI::SimpleTimer timer;
};

/// Starts xdotool in the background: it waits (bounded) for the editor window to be visible and
/// focuses it, then types `text` and presses `finalKey`.
void DriveEditor(std::string const& text, std::string const& finalKey)
{
    UI::Test::Run("(timeout 15 xdotool search --sync --onlyvisible --name '^Inline Editor$' "
                  "windowfocus --sync && xdotool type --delay 30 '" +
                  text + "' && xdotool key " + finalKey + ") >/dev/null 2>&1 &");
}

} // namespace

TEST(InlineEditorGui, TypingReturnEscapeTheFilterAndTheToolTipInOneWindow)
{
    REQUIRE_DISPLAY_AND_XDOTOOL();
    Scene s;
    ASSERT_TRUE(s.Open());
    // The editor opens with everything selected, so typing replaces the old text; Escape
    // cancels; the character filter holds in the editor.
    struct Edit
    {
        char const* typed;
        char const* finalKey;
        bool numbersOnly;
        String expected;
        int started, edited;
    } const edits[] = {
        {"Hello 42", "Return", false, "Hello 42", 1, 1},
        {"discarded", "Escape", false, "Hello 42", 2, 1},
        {"1a2b5", "Return", true, String("%1").Arg(125.0f), 3, 2},
    };
    for (Edit const& e : edits)
    {
        SCOPED_TRACE(e.typed);
        if (e.numbersOnly)
        {
            s.edit->SetRange(0.0f, 1000.0f);
            s.edit->SetInlineCharFilter({'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', '.'});
        }
        DriveEditor(e.typed, e.finalKey);
        {
            Watchdog watchdog(20000);
            s.edit->ExecuteInlineEdit();
            ASSERT_FALSE(watchdog.fired) << "the editor never finished";
        }
        EXPECT_EQ(e.expected, s.edit->GetText());
        EXPECT_EQ(e.started, s.started);
        EXPECT_EQ(e.edited, s.edited);
        EXPECT_FALSE(s.edit->IsInlineEditing());
    }
    ASSERT_TRUE(s.edit->GetFloatValue());
    EXPECT_FLOAT_EQ(125.0f, *s.edit->GetFloatValue());

    // The tool tip appears once the mouse has rested long enough.
    unsigned int const delay = 300;
    s.canvas.SetToolTipIntervals(delay, 1000);
    UI::ToolTip* tip = UI::InstallCanvasToolTip(&s.canvas);
    ASSERT_NE(nullptr, tip);
    s.edit->SetToolTipText("Explains the field");
    // A press on the field must not open its editor here.
    s.edit->SetEditable(false);

    unsigned long long const start = Util::GetTickCountMillis();
    ASSERT_EQ(0, UI::Test::Run("xdotool mousemove 160 130 >/dev/null 2>&1"));
    ASSERT_TRUE(UI::Test::PumpUntil([&] { return s.canvas.GetToolTipWindow() == s.edit; }, 5000));
    // Never before its delay.
    EXPECT_GE(Util::GetTickCountMillis() - start, delay);
    EXPECT_EQ(String("Explains the field"), tip->GetText());
    EXPECT_TRUE(tip->IsVisible());
    EXPECT_GT(tip->GetWidth(), 8);

    // The host window of the tip is on the screen near the mouse.
    auto* platform = static_cast<UI::Native::HostCanvasPlatform*>(s.canvas.GetPlatform());
    ASSERT_NE(nullptr, platform->GetToolTipHost());
    Rect const placed = platform->GetToolTipHost()->GetContainingWindowGeometry();
    EXPECT_NEAR(160, placed.left, 40);
    EXPECT_NEAR(130, placed.top, 40);
}
