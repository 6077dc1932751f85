#include "Canvas/UI/ApplicationMainWindow.h"

#include "Canvas/TestAutomation/TestAutomationCore.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/ScreenShot.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/FilePath.h"

namespace UI
{

namespace
{

String mainWindowName(Frame* frame)
{
    Canvas* canvas = frame ? frame->GetCanvas() : nullptr;
    return String("%1 Main Window").Arg(canvas ? canvas->GetName() : String(""));
}

/// Writes what `frame` last painted to `file` as PNG and answers the file written.
bool saveFrameBitmap(Frame* frame, String const& file, TestAutomation::RPCReplyInterface* reply)
{
    Size const size = frame ? frame->GetSize() : Size(0, 0);
    boost::shared_ptr<DIBits> const bits =
        ScreenShotFromRect(frame, Rect(0, size.width - 1, 0, size.height - 1));
    if (!bits)
    {
        if (reply)
            reply->SetError("The frame has no bitmap");
        return true;
    }
    // The writer adds the extension in the same way.
    FilePath path(file);
    if (path.GetExtension().ToLower() != "png")
        path = FilePath(file + ".png");
    if (!ScreenShotFromDIBitsToFile(bits, path, nullptr, nullptr, false))
    {
        if (reply)
            reply->SetError(String("Could not write %1").Arg(path.ToString()).CStr());
        return true;
    }
    if (reply)
        reply->SetValue("path", path.ToString().CStr());
    return true;
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

bool ApplicationMainWindow::onTestAutomationRequest(String const& request, Window* window,
                                                    TestAutomation::RPCReplyInterface* reply)
{
    std::vector<String> parts;
    request.Split('|', parts);
    if (parts.empty() || parts[0] != "SaveScreenShot")
        return false;
    if (parts.size() < 2 || parts[1].IsEmpty())
    {
        if (reply)
            reply->SetError("SaveScreenShot needs a file name");
        return true;
    }
    if (parts.size() > 2)
    {
        // The widget path keeps its own "|" separators.
        String path =
            String::Join(String("|"), std::vector<String>(parts.begin() + 2, parts.end()));
        Canvas* canvas = GetFrame() ? GetFrame()->GetCanvas() : nullptr;
        window = TestAutomation::TestAutomationCore::findCanvasWindow(path, canvas, reply);
        if (!window)
            return true;
    }
    return saveFrameBitmap(window ? window->GetFrame() : GetFrame(), parts[1], reply);
}

void ApplicationMainWindow::ExecuteConsoleCommand(String const& command)
{
    if (command == "editpalette" && GetCanvas())
        GetCanvas()->ShowPaletteEditor(GetFrame());
}

} // namespace UI
