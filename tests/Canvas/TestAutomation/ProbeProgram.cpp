// A small program for the end-to-end tests of the test bridge: one host window whose main
// window holds a panel of three rows with a text cell each and a close button, and a second
// host window that a driver can open and close by request.
//
//   tv-testautomation-probe [--run-ms N]
//
// Prints "bridge: on" or "bridge: off" once started, and "clicked <name>" for every press on a
// button. Closing the window, the request "Quit" or the end of --run-ms ends it.

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/ApplicationMainWindow.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostCanvasPlatform.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "Canvas/UI/Text.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/ProcessInfo.h"

#include <boost/function.hpp>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace
{

using UI::Native::PlatformSupportFactory;

/// A plain colored box that reports presses on the standard output.
class Box : public UI::Window
{
public:
    Box(UI::Frame* frame, UI::Window* parent, char const* name, UI::Rect const& r,
        unsigned int color)
        : Window(frame, parent, name), fill(color)
    {
        SetGeometry(r.left, r.top, r.Width(), r.Height());
    }

    void Draw(UI::DrawContext* context) override
    {
        context->DrawBox(UI::Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                         fill, 255);
        Window::Draw(context);
    }

    bool onMousePress(UI::Point const&, unsigned int) override
    {
        std::printf("clicked %s\n", GetName().CStr());
        std::fflush(stdout);
        return true;
    }

    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                          TestAutomation::RPCReplyInterface* reply) override
    {
        if (request == "GetInfo")
        {
            reply->SetValue("color", String("%1").Arg(fill, 16u).CStr());
            return true;
        }
        return false;
    }

private:
    unsigned int fill;
};

/// The main window: answers "OpenDialog", "CloseDialog" and "Quit".
class ProbeMainWindow : public UI::ApplicationMainWindow
{
public:
    ProbeMainWindow(UI::Frame* frame, UI::Native::HostWindow* host, Util::ConfigFile* config)
        : ApplicationMainWindow(frame, host, config), config(config)
    {
    }

    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                          TestAutomation::RPCReplyInterface* reply) override
    {
        if (request == "OpenDialog")
            reply->SetValue("opened", openDialog() ? "true" : "false");
        else if (request == "CloseDialog")
            dialog.reset();
        else if (request == "Quit")
            PlatformSupportFactory::QuitEventLoop();
        else
            return false;
        return true;
    }

    void ExecuteConsoleCommand(String const& command) override
    {
        std::printf("console %s\n", command.CStr());
        std::fflush(stdout);
    }

    void CloseDialog() { dialog.reset(); }

private:
    bool openDialog()
    {
        if (dialog)
            return true;
        std::unique_ptr<UI::Native::HostWindow> host(
            PlatformSupportFactory::CreateHostWindow(GetCanvas(), "Probe Dialog", nullptr, config));
        UI::Frame* frame = host->GetFrame();
        Box* content = new Box(frame, nullptr, "Probe Dialog", UI::Rect(0, 159, 0, 79), 0xFFD0E0F0);
        content->Hide();
        frame->SetTopLevelWindow(content);
        UI::Native::HostWindowStyle style;
        if (!host->Create(nullptr, nullptr, "Probe Dialog",
                          UI::Rect(UI::Point(360, 120), UI::Size(160, 80)), true, false, style))
            return false;
        frame->SetDrawingEnabled(true);
        host->StartMasterUpdateTimer(33);
        content->Show();
        dialog = std::move(host);
        return true;
    }

    Util::ConfigFile* config;
    std::unique_ptr<UI::Native::HostWindow> dialog;
};

} // namespace

int main(int argc, char** argv)
{
    long runMs = -1;
    for (int i = 1; i < argc; ++i)
    {
        if (!std::strcmp(argv[i], "--run-ms") && i + 1 < argc)
            runMs = std::strtol(argv[++i], nullptr, 10);
        else
        {
            std::fprintf(stderr, "unknown argument: %s\n", argv[i]);
            return 2;
        }
    }

    Util::ConfigFile config(String("com.tavorin.probe"));
    UI::Canvas canvas("Probe");
    canvas.SetPlatform(
        boost::shared_ptr<UI::CanvasPlatform>(new UI::Native::HostCanvasPlatform(&canvas)));
    bool const bridge = UI::TestAutomationInterface::Start("APP:Probe");
    UI::TestAutomationInterface::SetCanvas(&canvas);
    std::printf("bridge: %s\n", bridge ? "on" : "off");
    std::fflush(stdout);

    String const name("Probe");
    std::unique_ptr<UI::Native::HostWindow> host(
        PlatformSupportFactory::CreateHostWindow(&canvas, name, nullptr, &config));
    UI::Frame* frame = host->GetFrame();
    ProbeMainWindow* main = new ProbeMainWindow(frame, host.get(), &config);
    main->SetGeometry(0, 0, 300, 200);
    frame->SetTopLevelWindow(main);
    new Box(frame, main, "Background", UI::Rect(0, 299, 0, 199), 0xFFF0F0EC);
    Box* panel = new Box(frame, main, "Panel", UI::Rect(10, 289, 10, 129), 0xFFE0E0E0);
    for (int i = 0; i < 3; ++i)
    {
        Box* row =
            new Box(frame, panel, "Row", UI::Rect(5, 274, 5 + i * 38, 38 + i * 38), 0xFFC0C8D0);
        new UI::Text(frame, row, "Cell", String("Row %1").Arg(i), checked_value<unsigned int>(),
                     UI::HAlignLeft, 0xFF202020u, UI::Point(6, 8));
    }
    new Box(frame, main, "Close Button", UI::Rect(200, 289, 150, 189), 0xFF80A0C0);

    UI::Native::HostWindowStyle style;
    style.systemButtons = true;
    if (!host->CreateSerialized(nullptr, nullptr, name,
                                UI::Rect(UI::Point(40, 40), UI::Size(300, 200)), false, false,
                                style, true, true))
    {
        std::fprintf(stderr, "no window: is there a display?\n");
        UI::TestAutomationInterface::Stop();
        return 1;
    }
    host->signalClose.Connect(nullptr, boost::function<void(UI::Native::HostWindow*)>(
                                           [](UI::Native::HostWindow*)
                                           { PlatformSupportFactory::QuitEventLoop(); }));
    frame->SetDrawingEnabled(true);
    host->StartMasterUpdateTimer(33);
    host->Show(true);

    if (runMs >= 0)
    {
        unsigned long long const deadline = Util::GetTickCountMillis() + runMs;
        while (Util::GetTickCountMillis() < deadline)
            PlatformSupportFactory::ProcessEvents(20);
    }
    else
        PlatformSupportFactory::RunEventLoop();

    main->CloseDialog();
    host.reset();
    UI::TestAutomationInterface::SetCanvas(nullptr);
    UI::TestAutomationInterface::Stop();
    config.Synchronize();
    return 0;
}

// SDL's desktop services (D-Bus) keep a buffer for the life of the process; the leak checker of
// sanitizer builds is told so instead of failing every run at exit.
extern "C" char const* __lsan_default_suppressions()
{
    return "leak:libdbus-1.so\n";
}
