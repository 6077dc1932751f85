// The gallery's main window and its About box.
//
//   the About box      a small host window: a title, two lines and a Close button
//   the main window    the page, the About box's life, the test driver's requests

#include "examples/gallery/MainWindow.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
#include "examples/gallery/Controls.h"
#include "examples/gallery/Gallery.h"

#include <boost/function.hpp>

#include <cstdio>

namespace Gallery
{

// ============================================================================================
// the About box
// ============================================================================================

namespace
{

String const AboutName("About Gallery");
int const AboutWidth = 320;
int const AboutHeight = 124;
/// Where the About box opens, from the gallery's top left corner.
UI::Point const AboutOffset(240, 160);
unsigned int const AboutMessage = 1;
unsigned int const ControlsMessage = 2;

/// The About box's content, the top-level window of its frame: the page's background in a thin
/// edge, a title, two lines of text and a Close button.
class AboutPanel : public UI::Window
{
public:
    AboutPanel(UI::Frame* frame, boost::function<void()> const& close)
        : Window(frame, nullptr, AboutName), close(close)
    {
        SetGeometry(0, 0, AboutWidth, AboutHeight);
        new UI::Text(frame, this, "About Title", "Gallery", checked_value<unsigned int>(),
                     UI::HAlignLeft, 0xFF305080u, UI::Point(16, 14));
        new UI::Text(frame, this, "Line", "Every widget of the toolkit in one window.",
                     checked_value<unsigned int>(), UI::HAlignLeft, 0xFF202020u, UI::Point(16, 40));
        new UI::Text(frame, this, "Line", "Each reports its use on the standard output.",
                     checked_value<unsigned int>(), UI::HAlignLeft, 0xFF202020u, UI::Point(16, 58));
        UI::SimplePushButton* button =
            new UI::SimplePushButton(frame, this, "Close Button", "Close");
        button->SetGeometry(AboutWidth - 96, AboutHeight - 38, 80, 22);
        button->signalClicked.Connect(nullptr, close);
        // Return and Escape close the box, as its Close button does.
        frame->SetFocusOrder({button});
        frame->SetDefaultButton(button);
        frame->SetCancelButton(button);
    }

    void Draw(UI::DrawContext* context) override
    {
        UI::Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
        context->DrawBox(all, UI::DrawContext::Filled, 0xFFF2F2EE, 255);
        // An edge of its own, for desktops that draw no frame around it.
        context->DrawBox(all, UI::DrawContext::Outline, 0xFF909090, 255);
        Window::Draw(context);
    }

private:
    boost::function<void()> close;
};

} // namespace

// ============================================================================================
// the main window
// ============================================================================================

MainWindow::MainWindow(UI::Native::HostWindow* host, Util::ConfigFile* config)
    : ApplicationMainWindow(host->GetFrame(), host, config),
      page(new Page(host->GetFrame(), this, "Gallery Page"))
{
    GetFrame()->SetTopLevelWindow(this);
    page->signalAbout.Connect(nullptr, boost::function<void()>([this] { OpenAbout(); }));
    page->signalControls.Connect(nullptr, boost::function<void()>([this] { OpenControls(); }));
}

MainWindow::~MainWindow()
{
    CloseControls();
    CloseAbout();
}

bool MainWindow::OpenControls()
{
    if (controls)
        return true;
    controls = ControlsWindow::Open(GetFrame()->GetCanvas(), GetHostWindow());
    if (!controls)
        return false;
    // Its close box goes through; the window itself goes once that event is handled.
    controls->GetHost()->signalClose.Connect(
        nullptr, boost::function<void(UI::Native::HostWindow*)>(
                     [this](UI::Native::HostWindow*)
                     {
                         if (GetHostWindow())
                             UI::Native::PlatformSupportFactory::PostUIMessage(
                                 this, GetHostWindow(), ControlsMessage, 0, 0);
                     }));
    return true;
}

bool MainWindow::CloseControls()
{
    bool const open = controls != nullptr;
    controls.reset();
    return open;
}

void MainWindow::onSetGeometry()
{
    page->SetGeometry(0, 0, GetWidth(), GetHeight());
}

bool MainWindow::OpenAbout()
{
    if (about)
        return true;
    UI::Native::HostWindow* host = GetHostWindow();
    std::unique_ptr<UI::Native::HostWindow> box(
        UI::Native::PlatformSupportFactory::CreateHostWindow(GetFrame()->GetCanvas(), AboutName,
                                                             nullptr, nullptr));
    UI::Frame* frame = box->GetFrame();
    AboutPanel* panel =
        new AboutPanel(frame, boost::function<void()>([this] { closeAboutLater(); }));
    // Hidden until its window exists, so that its showing is announced with the window.
    panel->Hide();
    frame->SetTopLevelWindow(panel);
    UI::Native::HostWindowStyle style;
    style.systemButtons = true;
    UI::Point const corner = host ? host->GetScreenPos() : UI::Point(0, 0);
    UI::Rect const client(UI::Point(corner.x + AboutOffset.x, corner.y + AboutOffset.y),
                          UI::Size(AboutWidth, AboutHeight));
    UI::Rect const rect = UI::Native::PlatformSupportFactory::ConvertClientToWindowRect(
        client, false, style, AboutName);
    if (!box->Create(host ? host->GetNativeHandle() : nullptr, nullptr, AboutName, rect, true, true,
                     style))
        return false;
    box->signalClose.Connect(nullptr, boost::function<void(UI::Native::HostWindow*)>(
                                          [this](UI::Native::HostWindow*) { closeAboutLater(); }));
    frame->SetDrawingEnabled(true);
    box->StartMasterUpdateTimer(33);
    panel->Show();
    about = std::move(box);
    ++aboutCount;
    return true;
}

bool MainWindow::CloseAbout()
{
    if (!about)
        return false;
    about.reset();
    return true;
}

void MainWindow::closeAboutLater()
{
    if (!about || !GetHostWindow())
        return;
    // Carries which box asked, so that a box opened before the message arrives stays open.
    UI::Native::PlatformSupportFactory::PostUIMessage(this, GetHostWindow(), AboutMessage,
                                                      aboutCount, 0);
}

void MainWindow::onUIMessage(UI::Native::HostWindow*, unsigned int message, unsigned int wParam,
                             unsigned long)
{
    if (message == AboutMessage && wParam == aboutCount)
        CloseAbout();
    else if (message == ControlsMessage)
        CloseControls();
}

// ============================================================================================
// the test driver's requests
// ============================================================================================

bool MainWindow::handleRequest(String const& request, TestAutomation::RPCReplyInterface* reply)
{
    if (request == "OpenAbout")
    {
        bool const opened = OpenAbout();
        if (reply)
            reply->SetValue("opened", opened ? "true" : "false");
    }
    else if (request == "CloseAbout")
    {
        bool const closed = CloseAbout();
        if (reply)
            reply->SetValue("closed", closed ? "true" : "false");
    }
    else if (request == "OpenControls" || request == "CloseControls")
    {
        bool const done = request == "OpenControls" ? OpenControls() : CloseControls();
        if (reply)
            reply->SetValue(request == "OpenControls" ? "opened" : "closed",
                            done ? "true" : "false");
    }
    else if (request == "GetModifiers")
    {
        // Keys reach the program through the input method, on their own way: a driver that
        // holds a modifier for a click waits here until the program sees it.
        if (reply)
        {
            reply->SetValue("ctrl", UI::KeyCode::IsCtrlPressed() ? "true" : "false");
            reply->SetValue("alt", UI::KeyCode::IsAltPressed() ? "true" : "false");
        }
    }
    else if (request == "Quit")
        UI::Native::PlatformSupportFactory::QuitEventLoop();
    else
        return false;
    return true;
}

bool MainWindow::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                  TestAutomation::RPCReplyInterface* reply)
{
    return handleRequest(request, reply);
}

bool MainWindow::onTestAutomationRequest(String const& request, UI::Window* window,
                                         TestAutomation::RPCReplyInterface* reply)
{
    // What the gallery does not answer itself (such as "SaveScreenShot") every main window does.
    return handleRequest(request, reply) ||
           ApplicationMainWindow::onTestAutomationRequest(request, window, reply);
}

void MainWindow::ExecuteConsoleCommand(String const& command)
{
    std::printf("console %s\n", command.CStr());
    std::fflush(stdout);
    if (!handleRequest(command, nullptr))
        ApplicationMainWindow::ExecuteConsoleCommand(command);
}

} // namespace Gallery
