#pragma once

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "TvBase/Util/String.h"

#include <boost/function.hpp>

#include <memory>
#include <vector>

namespace Util
{
class Module;
}
namespace UI
{
class ApplicationMainWindow;
class Canvas;
class Window;
} // namespace UI

namespace TestAutomation
{

/// The logic of the test bridge: loads the module, starts its server on the first free port,
/// registers the request handlers and sends notices out. One per process, held by
/// `UI::TestAutomationInterface`; main thread only. The canvas and the main windows are kept in
/// statics so that they can be announced before the bridge starts.
class TestAutomationCore
{
public:
    /// Where the module is looked for when `TV_TEST_AUTOMATION_MODULE` is not set: this path
    /// from the folder of the program.
    static char const* const InstalledModuleName;
    /// The server listens on the first of these ports that it can take.
    enum : unsigned short
    {
        FirstPort = 54321,
        LastPort = 54325
    };
    /// Shows a message to the user: the title and the text.
    typedef boost::function<void(String const&, String const&)> MessageFunction;

    TestAutomationCore();
    /// Deletes the server (closing its connections), then unloads the module.
    virtual ~TestAutomationCore();
    TestAutomationCore(TestAutomationCore const&) = delete;
    TestAutomationCore& operator=(TestAutomationCore const&) = delete;

    /// The environment variable `TV_TEST_AUTOMATION_MODULE` when set and not empty, else
    /// `InstalledModuleName` from the program's folder.
    static String GetModulePath();

    /// False, silently, when no module file exists or it does not load. A module without
    /// `RPCServer_Version` or of version 3 or less, and a server that takes none of the five
    /// ports, show their message and give false. True once the ten handlers are registered.
    bool Start(String const& name);
    /// The port the server took; 0 before a successful start.
    unsigned short GetPort() const { return port; }

    /// Serves pending requests.
    virtual void RequestCheck();
    /// Sends a notice to every connected driver.
    virtual void SendNotice(char const* kind, std::vector<String> const& texts);

    /// Replaces how messages reach the user (the host's message box by default); an empty
    /// function restores the default.
    static void SetMessageFunction(MessageFunction const& function);

    /// The window at the end of `path` ("Main Window|Panel|Row[2]|Label"): the chain is matched
    /// from the top-level windows of each of the canvas's frames in turn, by exact name; "[n]"
    /// picks the n-th (from 0) of several siblings of that name. On success `path` becomes the
    /// path as found and the reply gets it under "hierarchy"; otherwise null and the error
    /// "Widget not found".
    static UI::Window* findCanvasWindow(String& path, UI::Canvas* canvas, RPCReplyInterface* reply);
    /// Adds "classname" and the keys particular to the window's class, then asks the window
    /// itself with the request "GetInfo".
    static void getTypeInfo(UI::Window* window, RPCReplyInterface* reply);
    /// The main plug-in window first, then the application main window. True when handled.
    static bool testAutomationRequest(String const& request, UI::Window* window,
                                      RPCReplyInterface* reply);

    static UI::Canvas* m_pCanvas;
    static UI::ApplicationMainWindow* m_pAppMainWin;
    static UI::Window* m_pMainPluginWin;

private:
    void showMessage(String const& title, String const& text) const;
    void registerHandlers();

    std::unique_ptr<Util::Module> module;
    std::unique_ptr<RPCServerInterface> server;
    unsigned short port = 0;
};

} // namespace TestAutomation
