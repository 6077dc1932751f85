#pragma once

#include "Canvas/UI/Window.h"
#include "TvBase/Util/Signal.h"

#include <vector>

namespace Util
{
class ConfigFile;
}

namespace UI
{

namespace Native
{
class HostWindow;
}

/// The root window of a host window in a stand-alone application, named "<canvas name> Main
/// Window". While it lives it is the application main window of the test bridge. Not copyable.
class ApplicationMainWindow : public Window
{
public:
    /// Announces itself to the test bridge. `config` (not owned, may be null) is the
    /// application's settings that test drivers read and write.
    ApplicationMainWindow(Frame* frame, Native::HostWindow* host, Util::ConfigFile* config);
    /// Withdraws the announcement when it is still the announced window.
    ~ApplicationMainWindow() override;

    /// The paths of files opened through the host.
    Signal<std::vector<String> const&> signalOpenFiles;

    Native::HostWindow* GetHostWindow() const { return host; }
    Util::ConfigFile* GetConfigFile() const { return config; }

    /// A request of the test driver, split at "|". "GetConfigFileProperty|<key>" answers the
    /// setting under "value"; "SetConfigFileProperty|<key>|<value>" stores it. Anything else
    /// goes to `onTestAutomationRequest`. True when handled.
    bool TestAutomationRequest(String const& request, Window* window,
                               TestAutomation::RPCReplyInterface* reply);
    /// Answers "SaveScreenShot|<file>[|<widget path>]" by default: writes the bitmap of a frame
    /// as it was last painted to <file> as PNG (".png" is added when the name lacks it) and
    /// answers the written file under "path". The frame is that of the window named by the
    /// widget path, else of `window`, else this window's own. The file name cannot hold "|".
    /// Errors: "SaveScreenShot needs a file name", "Widget not found", "The frame has no
    /// bitmap" and "Could not write <file>". Anything else is not handled; true when handled.
    virtual bool onTestAutomationRequest(String const& request, Window* window,
                                         TestAutomation::RPCReplyInterface* reply);
    /// The toolkit's console commands: "editpalette" opens the palette editor. Others do
    /// nothing.
    virtual void ExecuteConsoleCommand(String const& command);

private:
    Native::HostWindow* host;
    Util::ConfigFile* config;
};

} // namespace UI
