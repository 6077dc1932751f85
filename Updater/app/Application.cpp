#include "Updater/app/Application.h"

#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "TvBase/Util/ConfigFile.h"

#include <libxml/parser.h>

Application* Application::g_pInstance = nullptr;

Application::Application(String const& company, String const& product,
                         checked_value<String> const& configRoot)
    : Object(String("Application"))
{
    // There is no menu bar, bundle or autorelease pool to set up on this host: the host's
    // Quit entry is Ctrl+Q, which the host layer hands here together with the session's quit
    // request, so that both ask `ShouldQuit` as the menu's Quit does.
    UI::Native::PlatformSupportFactory::SetQuitRequestHandler(
        [this]
        {
            if (ShouldQuit())
                slotQuit();
        });
    mainThreadId = std::this_thread::get_id();
    uiCodeToken.reset(new ApplicationUICodeToken);
    xmlInitParser();
    config.reset(new Util::ConfigFile(configRoot.present ? configRoot.value
                                                         : GetDefaultConfigRoot(company, product)));
    g_pInstance = this;
    UI::TestAutomationInterface::Start(String("APP:%1").Arg(product));
}

Application::~Application()
{
    UI::TestAutomationInterface::Stop();
    UI::Native::PlatformSupportFactory::SetQuitRequestHandler(nullptr);
    if (g_pInstance == this)
        g_pInstance = nullptr;
    config->Synchronize();
    config.reset();
    xmlCleanupParser();
}

String Application::GetDefaultConfigRoot(String const& company, String const& product)
{
    return String("com.%1.%2").Arg(company.ToLower()).Arg(product.ToLower());
}

int Application::RunEventLoop()
{
    mainThreadId = std::this_thread::get_id();
    UI::Native::PlatformSupportFactory::RunEventLoop();
    return 0;
}

void Application::slotQuit()
{
    UI::Native::PlatformSupportFactory::QuitEventLoop();
}

bool Application::ShouldQuit()
{
    quitVetoed = false;
    quitRequested();
    return !quitVetoed;
}
