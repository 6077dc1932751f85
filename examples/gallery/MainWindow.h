#pragma once

// The gallery's main window: the root of the gallery's host window, holding the page, and the
// owner of the About box, a small host window of its own.

#include "Canvas/UI/ApplicationMainWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"

#include <memory>

namespace Gallery
{

class ControlsWindow;
class Page;

/// Named "Gallery Main Window" after the canvas. Besides the settings requests of every main
/// window it answers the test driver's requests "OpenAbout" (reply "opened": "true" or
/// "false"), "CloseAbout" (reply "closed": "true", or "false" when none was open) and "Quit",
/// both as window requests and as application requests; console commands with the same texts
/// do the same, after the line "console <command>" on the standard output. Not copyable.
class MainWindow : public UI::ApplicationMainWindow, private UI::Native::UIMessageReceiver
{
public:
    /// Takes the frame of `host` (not owned) and becomes its top-level window; `config` (not
    /// owned, may be null) is the gallery's settings.
    MainWindow(UI::Native::HostWindow* host, Util::ConfigFile* config);
    /// Closes the About box.
    ~MainWindow() override;
    MainWindow(MainWindow const&) = delete;
    MainWindow& operator=(MainWindow const&) = delete;

    Page* GetPage() const { return page; }

    /// Opens the About box beside the gallery, or leaves the open one as it is. False when the
    /// host can't make its window.
    bool OpenAbout();
    /// Closes the About box at once; false when none was open.
    bool CloseAbout();
    bool IsAboutOpen() const { return about != nullptr; }
    /// The request "GetModifiers" answers "ctrl" and "alt" with "true" or "false".
    /// Opens the "Controls" page in its window beside the gallery (requests "OpenControls" and
    /// "CloseControls", replies "opened" and "closed" as for the About box).
    bool OpenControls();
    bool CloseControls();

    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;
    bool onTestAutomationRequest(String const& request, UI::Window* window,
                                 TestAutomation::RPCReplyInterface* reply) override;
    void ExecuteConsoleCommand(String const& command) override;
    void onSetGeometry() override;

private:
    bool handleRequest(String const& request, TestAutomation::RPCReplyInterface* reply);
    /// The About box's own Close button or close box asks: the box goes once that event is
    /// handled, since its window can't be deleted from inside its own event.
    void closeAboutLater();
    void onUIMessage(UI::Native::HostWindow* window, unsigned int message, unsigned int wParam,
                     unsigned long lParam) override;

    Page* page;
    std::unique_ptr<UI::Native::HostWindow> about;
    /// How many About boxes were opened: tells the present one from those before it.
    unsigned int aboutCount = 0;
    std::unique_ptr<ControlsWindow> controls;
};

} // namespace Gallery
