#include "Updater/app/RunApplication.h"

#include "Updater/app/AppHostWindow.h"
#include "Updater/app/Application.h"
#include "Updater/app/ConnectingPanel.h"
#include "Updater/app/MainWindow.h"
#include "Updater/app/MarketingMessageThread.h"
#include "Updater/app/MarketingURL.h"
#include "Updater/app/UpdateHost.h"
#include "Updater/app/UpdaterThread.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Native/HostCanvasPlatform.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "Canvas/UI/Theme.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace Updater
{

bool IsSilentRun(std::vector<String> const& args)
{
    for (String const& arg : args)
    {
        if (arg == "-silent")
            return true;
    }
    return false;
}

} // namespace Updater

namespace
{

UI::Size const CONNECTING_WINDOW_SIZE(240, 130);
UI::Size const MAIN_WINDOW_SIZE(446, 358);
char const* const windowCaption = "Tavorin Updater";

/// The end of the host window that is the application's main window ends the run loop.
void watchForMainWindowEnd(UI::Native::HostWindow* host, Application* application)
{
    host->signalPreDestroy.Connect(application, boost::function<void(UI::Native::HostWindow*)>(
                                                    [application](UI::Native::HostWindow* h)
                                                    {
                                                        if (h->GetNativeHandle() &&
                                                            h->GetNativeHandle() ==
                                                                application->GetMainWindowHandle())
                                                            application->slotQuit();
                                                    }));
}

/// The user's close of the connecting window ends the program: with no menu bar, nothing could
/// end it afterwards. It is a quit like any other, so a veto keeps the window.
void quitWithConnectingWindow(UI::Native::HostWindow* host, Application* application)
{
    host->signalCloseRequest.Connect(application, boost::function<void()>(
                                                      [host, application]
                                                      {
                                                          if (application->ShouldQuit())
                                                              application->slotQuit();
                                                          else
                                                              host->VetoClose();
                                                      }));
}

} // namespace

int runApplication(std::vector<String> const& args)
{
    // Numbers are read and written in the user's locale from here on.
    std::setlocale(LC_NUMERIC, "");
    String::InitDecimalPoint();

    bool const silent = Updater::IsSilentRun(args);
    String const product("Updater");

    // Without a display no window can show and no check can hand over to a visible copy: say so
    // and fail, rather than run on unseen.
    String reason;
    if (!UI::Native::PlatformSupportFactory::OpenDisplay(reason))
    {
        std::fprintf(stderr, "%s needs a display: %s\n", windowCaption, reason.CStr());
        return 1;
    }

    boost::shared_ptr<Application> application(
        new Application(String("Tavorin"), product, checked_value<String>()));
    String const versionsURL = Updater::GetVersionsURL();
    boost::shared_ptr<Updater::UpdaterThread> updaterThread(new Updater::UpdaterThread(
        String("Updater Thread"), versionsURL.IsNull() ? nullptr : versionsURL.CStr(), false,
        static_cast<Util::Thread::Priority>(2), false));
    String const marketingURL = Updater::GetMarketingURL();
    boost::shared_ptr<Updater::MarketingMessageThread> marketingThread(
        new Updater::MarketingMessageThread(String("Marketing message Thread"),
                                            marketingURL.IsNull() ? nullptr : marketingURL.CStr(),
                                            static_cast<Util::Thread::Priority>(2), false));
    // Both requests wait a minute for their server. TV_REQUEST_TIMEOUT_MS shortens that for
    // administrators and tests that expect an unreachable server.
    if (char const* timeout = std::getenv("TV_REQUEST_TIMEOUT_MS"))
    {
        checked_value<int> const millis = String(timeout).ToInt();
        if (millis.present && millis.value > 0)
        {
            updaterThread->SetRequestTimeout(millis.value);
            marketingThread->SetRequestTimeout(millis.value);
        }
    }

    int result = 0;
    {
        UI::Canvas canvas(product, 1030, 5, String("Updater/app/resources"), String("UI/Layout"),
                          UI::Canvas::FontCacheOptions::NoCache());
        canvas.SetPlatform(
            boost::shared_ptr<UI::CanvasPlatform>(new UI::Native::HostCanvasPlatform(&canvas)));
        UI::TestAutomationInterface::SetCanvas(&canvas);
        UI::PrimitiveFactory* primitives = canvas.GetPrimitiveFactory();
        primitives->RegisterFocusIndicator(UI::GetCanvasTheme());
        primitives->RegisterScrollBar(UI::GetCanvasTheme());
        primitives->RegisterComboBox(UI::GetCanvasTheme());
        primitives->RegisterComboBoxPopup(UI::GetCanvasTheme());
        primitives->RegisterPushButton(UI::GetCanvasTheme());

        // The settings keep each window's place between runs.
        Util::ConfigFile* config = application->GetConfig();
        UI::Native::HostWindowStyle const style = UI::UpdaterWindowStyle();
        std::unique_ptr<UI::Native::HostWindow> connectingHost(
            UI::Native::PlatformSupportFactory::CreateHostWindow(
                &canvas, String("Contacting Host Window"), nullptr, config));
        UI::CreateApplicationHostWindow(connectingHost.get(), &canvas,
                                        String("Contacting Host Window"),
                                        UI::CenteredOnMainMonitor(CONNECTING_WINDOW_SIZE),
                                        String(windowCaption), style, silent);
        watchForMainWindowEnd(connectingHost.get(), application.get());
        quitWithConnectingWindow(connectingHost.get(), application.get());
        UI::ConnectingPanel* connectingPanel =
            new UI::ConnectingPanel(args, &canvas, connectingHost.get(), updaterThread.get());

        String const mainName = String("%1 Host Window").Arg(product);
        std::unique_ptr<UI::Native::HostWindow> mainHost(
            UI::Native::PlatformSupportFactory::CreateHostWindow(&canvas, mainName, nullptr,
                                                                 config));
        UI::CreateApplicationHostWindow(mainHost.get(), &canvas, mainName,
                                        UI::CenteredOnMainMonitor(MAIN_WINDOW_SIZE),
                                        String(windowCaption), style, true);
        watchForMainWindowEnd(mainHost.get(), application.get());
        UI::MainWindow* mainWindow =
            new UI::MainWindow(args, &canvas, mainHost.get(), updaterThread.get(),
                               marketingThread.get(), application, silent);

        connectingPanel->SetMainWindow(mainWindow);
        mainWindow->SetConnectingHost(connectingHost.get(),
                                      [&connectingHost]() { connectingHost.reset(); });

        updaterThread->StartThread();
        marketingThread->StartThread();

        result = application->RunEventLoop();

        mainHost.reset();
        connectingHost.reset();
        UI::TestAutomationInterface::SetCanvas(nullptr);
    }
    marketingThread.reset();
    updaterThread.reset();
    application.reset();
    return result;
}
