// A host window with a frame and a few coloured windows, one of them pulsing: for looking at
// the host layer by hand and for the GUI tests, which run it twice to see the geometry kept.
//
//   hostwindow-demo [--domain D] [--name N] [--place X,Y,W,H] [--exit-after-paint]
//                   [--print-geometry]
//
// --place moves the window after it opened; --exit-after-paint ends once the first picture is
// on the screen; --print-geometry prints the window rect then as "x y w h". Ctrl+Q quits.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/PulseOverlayTimer.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/ProcessInfo.h"

#include <cstdio>
#include <cstring>
#include <memory>

namespace
{

/// A window filled with one colour; it shows the key last pressed on it in its title bar.
class ColorWindow : public UI::Window, public UI::PulseOverlayTimerClient
{
public:
    ColorWindow(UI::Frame* frame, UI::Window* parent, char const* name, unsigned int color)
        : Window(frame, parent, name), color(color)
    {
    }

    void Draw(UI::DrawContext* context) override
    {
        context->DrawBox(UI::Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                         color, 255);
        Window::Draw(context);
    }

    bool onMousePress(UI::Point const& p, unsigned int) override
    {
        std::printf("%s: press at %d,%d\n", GetName().CStr(), p.x, p.y);
        std::fflush(stdout);
        return true;
    }

    bool onKeyPress(unsigned int code, unsigned int flags, bool) override
    {
        std::printf("%s: key %u (%s) flags %u\n", GetName().CStr(), code,
                    UI::KeyCode::GetKeycodeDescription(code).CStr(), flags);
        std::fflush(stdout);
        return false;
    }

    void onPulseOverlayChange(State, unsigned int alpha) override
    {
        SetAlpha(static_cast<unsigned char>(64 + alpha * 191 / 255));
    }

private:
    unsigned int color;
};

bool parsePlace(char const* text, int v[4])
{
    return std::sscanf(text, "%d,%d,%d,%d", &v[0], &v[1], &v[2], &v[3]) == 4;
}

} // namespace

int main(int argc, char** argv)
{
    String domain("com.tavorin.hostwindowdemo");
    String name("HostWindow Demo");
    int place[4] = {0, 0, 0, 0};
    bool hasPlace = false;
    bool exitAfterPaint = false;
    bool printGeometry = false;
    for (int i = 1; i < argc; ++i)
    {
        if (!std::strcmp(argv[i], "--domain") && i + 1 < argc)
            domain = String(argv[++i]);
        else if (!std::strcmp(argv[i], "--name") && i + 1 < argc)
            name = String(argv[++i]);
        else if (!std::strcmp(argv[i], "--place") && i + 1 < argc)
            hasPlace = parsePlace(argv[++i], place);
        else if (!std::strcmp(argv[i], "--exit-after-paint"))
            exitAfterPaint = true;
        else if (!std::strcmp(argv[i], "--print-geometry"))
            printGeometry = true;
        else
        {
            std::fprintf(stderr, "unknown argument: %s\n", argv[i]);
            return 2;
        }
    }

    Util::ConfigFile config(domain);
    UI::Canvas canvas("Demo");
    std::unique_ptr<UI::Native::HostWindow> host(
        UI::Native::PlatformSupportFactory::CreateHostWindow(&canvas, name, nullptr, &config));
    UI::Frame* frame = host->GetFrame();

    UI::Native::HostWindowStyle style;
    style.resizable = true;
    style.minimizable = true;
    style.systemButtons = true;
    host->SetMinClientSize(200, 150);
    if (!host->CreateSerialized(nullptr, nullptr, name,
                                UI::Rect(UI::Point(100, 100), UI::Size(480, 320)), false, false,
                                style, false, true))
    {
        std::fprintf(stderr, "no window: is there a display?\n");
        return 1;
    }

    ColorWindow* root = new ColorWindow(frame, nullptr, "Root", 0xFF202830);
    frame->SetTopLevelWindow(root);
    ColorWindow* red = new ColorWindow(frame, root, "Red", 0xFFD03030);
    red->SetGeometry(20, 20, 120, 80);
    ColorWindow* green = new ColorWindow(frame, root, "Green", 0xFF30B040);
    green->SetGeometry(160, 20, 120, 80);
    ColorWindow* blue = new ColorWindow(frame, root, "Blue", 0xFF3050D0);
    blue->SetGeometry(20, 120, 260, 60);
    UI::PulseOverlayTimer* pulse = new UI::PulseOverlayTimer(frame, root, "Pulse");
    pulse->Register(green, false);

    // Closing the window ends the program.
    host->signalClose.Connect(nullptr, boost::function<void(UI::Native::HostWindow*)>(
                                           [](UI::Native::HostWindow*) {
                                               UI::Native::PlatformSupportFactory::QuitEventLoop();
                                           }));
    frame->SetDrawingEnabled(true);
    host->StartMasterUpdateTimer(33);
    host->Show(true);
    if (hasPlace)
        host->SetGeometry(place[0], place[1], place[2], place[3]);

    if (exitAfterPaint)
    {
        unsigned long long const deadline = Util::GetTickCountMillis() + 5000;
        do
            UI::Native::PlatformSupportFactory::ProcessEvents(20);
        while (!frame->GetInvalidRegions().empty() && Util::GetTickCountMillis() < deadline);
    }
    else
    {
        UI::Native::PlatformSupportFactory::RunEventLoop();
    }

    if (printGeometry)
    {
        UI::Rect const r = host->GetContainingWindowGeometry();
        std::printf("%d %d %d %d\n", r.left, r.top, r.Width(), r.Height());
    }
    pulse->Unregister(green);
    host.reset();
    config.Synchronize();
    return 0;
}
