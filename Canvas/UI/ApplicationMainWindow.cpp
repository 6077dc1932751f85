#include "Canvas/UI/ApplicationMainWindow.h"

#include "Canvas/TestAutomation/TestAutomationCore.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "TvBase/Util/ConfigFile.h"

namespace UI
{

namespace
{

String mainWindowName(Frame* frame)
{
    Canvas* canvas = frame ? frame->GetCanvas() : nullptr;
    return String("%1 Main Window").Arg(canvas ? canvas->GetName() : String(""));
}

} // namespace

ApplicationMainWindow::ApplicationMainWindow(Frame* frame, Native::HostWindow* host,
                                             Util::ConfigFile* config)
    : Window(frame, nullptr, mainWindowName(frame)), host(host), config(config)
{
    TestAutomationInterface::SetAppMainWindow(this);
}

ApplicationMainWindow::~ApplicationMainWindow()
{
    if (TestAutomation::TestAutomationCore::m_pAppMainWin == this)
        TestAutomationInterface::SetAppMainWindow(nullptr);
}

bool ApplicationMainWindow::TestAutomationRequest(String const& request, Window* window,
                                                  TestAutomation::RPCReplyInterface* reply)
{
    std::vector<String> parts;
    request.Split('|', parts);
    String const verb = parts.empty() ? String("") : parts[0];
    if (verb == "GetConfigFileProperty" || verb == "SetConfigFileProperty")
    {
        if (!config || parts.size() < 2 || (verb == "SetConfigFileProperty" && parts.size() < 3))
            return false;
        if (verb == "SetConfigFileProperty")
            config->SetString(parts[1], parts[2]);
        if (reply)
            reply->SetValue("value", config->GetString(parts[1], String("")).CStr());
        return true;
    }
    return onTestAutomationRequest(request, window, reply);
}

bool ApplicationMainWindow::onTestAutomationRequest(String const&, Window*,
                                                    TestAutomation::RPCReplyInterface*)
{
    return false;
}

void ApplicationMainWindow::ExecuteConsoleCommand(String const&) {}

} // namespace UI
