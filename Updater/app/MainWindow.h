#pragma once

#include "Canvas/UI/ApplicationMainWindow.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <vector>

class Application;

namespace Updater
{
class MarketingMessageThread;
class UpdaterThread;
} // namespace Updater

namespace UI
{

class Canvas;
class MultiText;
class PixmapButton;
class SimpleBannerBG;
class SimplePushButton;
class ToolTip;
class Text;
class UpdatesPanel;

/// The result window, hidden until the check is over. It shows the offered updates, a line
/// that there are none, or one fixed error text, with a Close button; a marketing banner grows
/// the window at the bottom whenever it arrives. Its 33-millisecond tick takes the results
/// from the workers. With `silent` it never shows: updates start the visible copy of the
/// program, and the run ends either way.
class MainWindow : public ApplicationMainWindow
{
public:
    /// Builds the children in `host`'s frame, places them from the "MainWindow" layout and
    /// starts the tick. The workers are not owned; `args` is ignored.
    MainWindow(std::vector<String> const& args, Canvas* canvas, Native::HostWindow* host,
               Updater::UpdaterThread* updaterThread,
               Updater::MarketingMessageThread* marketingThread,
               boost::shared_ptr<Application> application, bool silent);
    ~MainWindow() override;

    /// Tells the window that the check has ended; its next tick shows the result.
    void SetDoneContacting() { doneContacting = true; }
    /// The connecting window, closed once the result is shown; `dispose` (may be empty) then
    /// frees it, so that its frame no longer stands among the canvas's frames.
    void SetConnectingHost(Native::HostWindow* host,
                           boost::function<void()> const& dispose = boost::function<void()>())
    {
        connectingHost = host;
        disposeConnectingHost = dispose;
    }
    /// The host's master update callback; `window` is the `MainWindow`.
    static void masterUpdateTimer(void* window);
    /// Starts this program's own executable again without "-silent", detached. Always true.
    static bool shellVisibleVersion();
    /// The error text: the fixed sentence naming the maker's web site host.
    static String GetErrorMessage();

    void onSetGeometry() override;
    /// Until the result shows, the connecting window is what the user sees: the driver's
    /// requests go to its panel then, so that "SaveScreenShot" writes the frame on the screen.
    bool onTestAutomationRequest(String const& request, Window* window,
                                 TestAutomation::RPCReplyInterface* reply) override;
    /// The arrow keys, Page Up, Page Down, Home and End scroll the list wherever the focus is:
    /// it is the window's only scrolled part.
    bool onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat) override;

private:
    void setCustomPalette();
    void onPaletteChange() override;
    void onMasterUpdateTimer();
    void handleUpdate();
    void handleMarketing();
    void slotCloseClicked();
    void slotMarketingImageClicked();
    void slotHostPreDestroy();
    /// Tab goes through the "Update" links, top to bottom, then Close and the banner.
    void setFocusOrder();

    SimpleBannerBG* background = nullptr;
    Updater::UpdaterThread* updaterThread;
    Updater::MarketingMessageThread* marketingThread;
    Native::HostWindow* connectingHost = nullptr;
    boost::function<void()> disposeConnectingHost;
    ToolTip* toolTip = nullptr;
    bool doneContacting = false;
    bool updateHandled = false;
    bool marketingHandled = false;
    bool silent;
    boost::shared_ptr<Application> application;
    Text* productHeader = nullptr;
    Text* installedHeader = nullptr;
    Text* availableHeader = nullptr;
    MultiText* informationText = nullptr;
    SimplePushButton* closeButton = nullptr;
    UpdatesPanel* updatesPanel = nullptr;
    PixmapButton* messageButton = nullptr;
    String marketingUrl;
    /// The height the banner added to the window; taken off again before the window's place
    /// is saved, as the banner is no choice of the user's.
    int bannerGrowth = 0;
};

} // namespace UI
