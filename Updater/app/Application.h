#pragma once

#include "Canvas/UI/CanvasUICodeToken.h"
#include "TvBase/Util/Object.h"
#include "TvBase/Util/Signal.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <thread>

namespace Util
{
class ConfigFile;
}

/// The token with which code enters the UI. A stand-alone application has no host that needs
/// telling, so entering and leaving do nothing.
class ApplicationUICodeToken : public UI::CanvasUICodeToken
{
protected:
    void enterUICode() override {}
    void exitUICode() override {}
};

/// The one application object of the process: its settings, the XML parser's life, the test
/// server and the run loop. Made and used on the main thread only.
class Application : public Object
{
public:
    /// Initialises libxml2, opens the settings domain (`configRoot`, or "com.<company>.<product>"
    /// lowered when not present), becomes `g_pInstance` and starts the test server as
    /// "APP:<product>".
    Application(String const& company, String const& product,
                checked_value<String> const& configRoot);
    /// Stops the test server, writes the settings to disk and cleans up libxml2.
    ~Application() override;

    /// "com.%1.%2" with company and product, each lowered.
    static String GetDefaultConfigRoot(String const& company, String const& product);

    /// Runs the host's run loop until `slotQuit`; returns 0.
    int RunEventLoop();
    /// Asks the host's run loop to stop.
    void slotQuit();
    /// Clears the veto, raises `quitRequested` and answers true unless a slot vetoed.
    bool ShouldQuit();
    /// Called by a slot of `quitRequested` to keep the program running.
    void VetoQuit() { quitVetoed = true; }

    /// The native handle of the window whose end ends the program; the latest caller wins.
    void SetMainWindowHandle(void* handle) { mainWindowHandle = handle; }
    void* GetMainWindowHandle() const { return mainWindowHandle; }

    boost::shared_ptr<ApplicationUICodeToken> GetUICodeToken() const { return uiCodeToken; }
    Util::ConfigFile* GetConfig() const { return config.get(); }

    /// Raised by `ShouldQuit`; a slot may call `VetoQuit`.
    Signal<> quitRequested;

    static Application* g_pInstance;

private:
    std::thread::id mainThreadId;
    std::unique_ptr<Util::ConfigFile> config;
    bool quitVetoed = false;
    void* mainWindowHandle = nullptr;
    boost::shared_ptr<ApplicationUICodeToken> uiCodeToken;
};
