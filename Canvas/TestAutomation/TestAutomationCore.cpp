// The test bridge's core.
//
//   loading and starting    module path, version check, the port walk
//   notices                 texts handed to the server
//   finding windows         widget paths with "|" and "[n]"
//   type information        the keys particular to each window class
//   handlers                the ten requests

#include "Canvas/TestAutomation/TestAutomationCore.h"

#include "Canvas/UI/ApplicationMainWindow.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Edit.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/ToolTip.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Util/Module.h"
#include "TvBase/Util/SystemFolders.h"

#include <cstdlib>
#include <cxxabi.h>
#include <string>
#include <sys/stat.h>
#include <typeinfo>

namespace TestAutomation
{

char const* const TestAutomationCore::InstalledModuleName =
    "../lib/tavorin/TestAutomation/libTvTestAutomation.so";

namespace
{

unsigned int const RequiredVersion = 4;

TestAutomationCore::MessageFunction& messageFunction()
{
    static TestAutomationCore::MessageFunction function;
    return function;
}

bool fileExists(String const& path)
{
    struct stat info;
    return ::stat(path.CStr(), &info) == 0 && S_ISREG(info.st_mode);
}

} // namespace

// ============================================================================================
// loading and starting
// ============================================================================================

TestAutomationCore::TestAutomationCore() = default;

TestAutomationCore::~TestAutomationCore()
{
    // The server's code lives in the module: it must go before the module does.
    server.reset();
    module.reset();
}

String TestAutomationCore::GetModulePath()
{
    char const* fromEnvironment = std::getenv("TV_TEST_AUTOMATION_MODULE");
    if (fromEnvironment && *fromEnvironment)
        return String(fromEnvironment);
    // The module is a separate install component under the program's own prefix, so that a
    // program in /usr/bin never loads one left in /usr/local by another installation.
    String folder = Util::GetModuleDirectory(String(""), nullptr, true);
    if (folder.IsEmpty() || folder[folder.Length() - 1] != '/')
        folder += "/";
    return folder + InstalledModuleName;
}

void TestAutomationCore::SetMessageFunction(MessageFunction const& function)
{
    messageFunction() = function;
}

void TestAutomationCore::showMessage(String const& title, String const& text) const
{
    if (messageFunction())
        messageFunction()(title, text);
    else
        UI::Native::MessageOK(title, text);
}

bool TestAutomationCore::Start(String const& name)
{
    if (server)
        return true;
    String const path = GetModulePath();
    if (!fileExists(path))
        return false;
    module.reset(new Util::Module(path));
    if (!module->Load())
    {
        module.reset();
        return false;
    }

    auto version =
        reinterpret_cast<RPCServerVersionFunction>(module->GetFunction("RPCServer_Version"));
    unsigned int const found = version ? version() : 0;
    if (found < RequiredVersion)
    {
        showMessage("TvTestAutomation Error",
                    String("Unsupported TvTestAutomation DLL version: %1.  Requires %2 or higher\n")
                        .Arg(found)
                        .Arg(RequiredVersion));
        module.reset();
        return false;
    }

    auto create =
        reinterpret_cast<RPCServerCreateFunction>(module->GetFunction("RPCServer_Create"));
    if (create)
        server.reset(create());
    if (!server)
    {
        module.reset();
        return false;
    }

    for (unsigned int p = FirstPort; p <= LastPort; ++p)
    {
        if (server->Start(name.CStr(), static_cast<unsigned short>(p)) == 0)
        {
            port = static_cast<unsigned short>(p);
            break;
        }
    }
    if (!port)
    {
        showMessage("TvTestAutomation Message", "Failed to start server!");
        server.reset();
        module.reset();
        return false;
    }
    registerHandlers();
    return true;
}

void TestAutomationCore::RequestCheck()
{
    if (server)
        server->Poll();
}

// ============================================================================================
// notices
// ============================================================================================

void TestAutomationCore::SendNotice(char const* kind, std::vector<String> const& texts)
{
    if (!server || !kind)
        return;
    std::vector<char const*> pointers;
    pointers.reserve(texts.size());
    for (String const& text : texts)
        pointers.push_back(text.CStr() ? text.CStr() : "");
    server->SendNotice(kind, pointers.data(), static_cast<unsigned int>(pointers.size()));
}

// ============================================================================================
// finding windows
// ============================================================================================

namespace
{

/// One step of a widget path: a name and which of the equally named siblings.
struct PathStep
{
    String name;
    unsigned int index = 0;
    bool indexed = false;
};

PathStep parseStep(String const& text)
{
    PathStep step;
    step.name = text;
    unsigned int const length = text.Length();
    checked_value<unsigned int> open = text.FindRev('[');
    if (length < 3 || text.CStr()[length - 1] != ']' || !open || *open + 2 >= length)
        return step;
    String const digits = text.Mid(*open + 1, length - *open - 2);
    for (unsigned int i = 0; i < digits.Length(); ++i)
    {
        if (digits.CStr()[i] < '0' || digits.CStr()[i] > '9')
            return step;
    }
    checked_value<int> n = digits.ToInt();
    if (!n || *n < 0)
        return step;
    step.name = text.Left(*open);
    step.index = static_cast<unsigned int>(*n);
    step.indexed = true;
    return step;
}

String stepText(PathStep const& step)
{
    return step.indexed ? String("%1[%2]").Arg(step.name).Arg(step.index) : step.name;
}

/// The `step.index`-th window named `step.name` among `windows`, in their order; `skipped`
/// carries the count of matches already passed over across several lists.
UI::Window* pickNamed(std::vector<UI::Window*> const& windows, PathStep const& step,
                      unsigned int& skipped)
{
    for (UI::Window* w : windows)
    {
        if (w->GetName() != step.name)
            continue;
        if (skipped == step.index)
            return w;
        ++skipped;
    }
    return nullptr;
}

/// Descends from `window` along `steps` from `first` on.
UI::Window* findChildWindow(UI::Window* window, std::vector<PathStep> const& steps,
                            std::size_t first)
{
    for (std::size_t i = first; window && i < steps.size(); ++i)
    {
        unsigned int skipped = 0;
        window = pickNamed(window->child_windows(), steps[i], skipped);
    }
    return window;
}

} // namespace

UI::Window* TestAutomationCore::findCanvasWindow(String& path, UI::Canvas* canvas,
                                                 RPCReplyInterface* reply)
{
    std::vector<String> parts;
    if (!path.IsEmpty())
        path.Split('|', parts);
    std::vector<PathStep> steps;
    for (String const& part : parts)
        steps.push_back(parseStep(part));

    UI::Window* found = nullptr;
    if (canvas && !steps.empty())
    {
        unsigned int skipped = 0;
        for (UI::Frame* frame : canvas->GetFrames())
        {
            UI::Window* top = pickNamed(frame->GetTopLevelWindows(), steps[0], skipped);
            if (top)
            {
                found = findChildWindow(top, steps, 1);
                break;
            }
        }
    }
    if (!found)
    {
        if (reply)
            reply->SetError("Widget not found");
        return nullptr;
    }
    std::vector<String> texts;
    for (PathStep const& step : steps)
        texts.push_back(stepText(step));
    path = String::Join(String("|"), texts);
    if (reply)
        reply->SetValue("hierarchy", path.CStr());
    return found;
}

// ============================================================================================
// type information
// ============================================================================================

namespace
{

/// The window's own C++ class name, without namespaces or template arguments: a driver tells
/// a check box from a plain button by it, whatever type name the class shares with its base.
String className(UI::Window* window)
{
    int status = 0;
    char* demangled = abi::__cxa_demangle(typeid(*window).name(), nullptr, nullptr, &status);
    std::string name(status == 0 && demangled ? demangled : typeid(*window).name());
    std::free(demangled);
    name = name.substr(0, name.find('<'));
    std::string::size_type const colon = name.rfind(':');
    return String(colon == std::string::npos ? name.c_str() : name.c_str() + colon + 1);
}

} // namespace

void TestAutomationCore::getTypeInfo(UI::Window* window, RPCReplyInterface* reply)
{
    reply->SetValue("classname", className(window).CStr());
    if (auto* text = dynamic_cast<UI::Text*>(window))
        reply->SetValue("text", text->GetText().CStr());
    else if (auto* multi = dynamic_cast<UI::MultiText*>(window))
        reply->SetValue("text", multi->GetText().CStr());
    else if (auto* edit = dynamic_cast<UI::Edit*>(window))
        reply->SetValue("text", edit->GetText().CStr());
    else if (auto* tip = dynamic_cast<UI::ToolTip*>(window))
        reply->SetValue("text", tip->GetText().CStr());
    // Widgets add their own keys ("value", "isOn", "selectedItem"...) when asked.
    window->ProcessTARequest(String("GetInfo"), nullptr, reply);
}

bool TestAutomationCore::testAutomationRequest(String const& request, UI::Window* window,
                                               RPCReplyInterface* reply)
{
    if (m_pMainPluginWin && m_pMainPluginWin->ProcessTARequest(request, nullptr, reply))
        return true;
    return m_pAppMainWin && m_pAppMainWin->TestAutomationRequest(request, window, reply);
}

// ============================================================================================
// handlers
// ============================================================================================

namespace
{

char const* boolText(bool value)
{
    return value ? "true" : "false";
}

/// Every handler's requirements: a canvas and one of the main windows.
bool checkRequirements(RPCReplyInterface* reply)
{
    if (!TestAutomationCore::m_pCanvas)
        reply->SetError("m_pCanvas is NULL");
    else if (!TestAutomationCore::m_pAppMainWin && !TestAutomationCore::m_pMainPluginWin)
        reply->SetError("m_pAppMainWin is NULL");
    return !reply->HasError();
}

/// The argument's text; a missing one is reported and gives null.
char const* requireArgument(RPCRequestInterface* request, RPCReplyInterface* reply, char const* key)
{
    char const* value = request->GetArgument(key);
    if (!value && !reply->HasError())
        reply->SetError(String("Missing argument \"%1\"").Arg(key).CStr());
    return value;
}

UI::Window* requireWidget(RPCRequestInterface* request, RPCReplyInterface* reply)
{
    char const* widget = requireArgument(request, reply, "widget");
    if (!widget)
        return nullptr;
    String path(widget);
    return TestAutomationCore::findCanvasWindow(path, TestAutomationCore::m_pCanvas, reply);
}

void appAutomationRequest(void*, RPCRequestInterface* request, RPCReplyInterface* reply)
{
    if (!checkRequirements(reply))
        return;
    char const* req = requireArgument(request, reply, "req");
    if (!req)
        return;
    if (!TestAutomationCore::m_pAppMainWin)
    {
        reply->SetError("No ApplicationMainWindow has been registered");
        return;
    }
    bool const handled =
        TestAutomationCore::m_pAppMainWin->TestAutomationRequest(String(req), nullptr, reply);
    if (!reply->HasError())
        reply->SetValue("Handled", boolText(handled));
}

void windowAutomationRequest(void*, RPCRequestInterface* request, RPCReplyInterface* reply)
{
    if (!checkRequirements(reply))
        return;
    UI::Window* window = requireWidget(request, reply);
    char const* text = requireArgument(request, reply, "request");
    if (reply->HasError())
        return;
    if (!window->ProcessTARequest(String(text), request, reply) && !reply->HasError())
        reply->SetValue("Handled", "false");
}

void pluginAutomationRequest(void*, RPCRequestInterface* request, RPCReplyInterface* reply)
{
    if (!checkRequirements(reply))
        return;
    char const* req = requireArgument(request, reply, "req");
    if (!req)
        return;
    if (!TestAutomationCore::m_pMainPluginWin)
    {
        reply->SetError("No MainPluginWindow has been registered");
        return;
    }
    bool const handled =
        TestAutomationCore::m_pMainPluginWin->ProcessTARequest(String(req), request, reply);
    if (!reply->HasError())
        reply->SetValue("Handled", boolText(handled));
}

void dualListBoxEnsureVis(void*, RPCRequestInterface* request, RPCReplyInterface* reply)
{
    if (!checkRequirements(reply))
        return;
    UI::Window* window = requireWidget(request, reply);
    char const* item = requireArgument(request, reply, "item");
    char const* leftSide = requireArgument(request, reply, "leftSide");
    if (reply->HasError())
        return;
    String const side(leftSide);
    bool const left = side == "1" || side == "true" || side == "L";
    window->ProcessTARequest(String("EnsureVisible:%1:%2").Arg(item).Arg(left ? "L" : "R"), request,
                             reply);
}

void executeConsoleCommand(void*, RPCRequestInterface* request, RPCReplyInterface* reply)
{
    if (!checkRequirements(reply))
        return;
    char const* command = requireArgument(request, reply, "command");
    if (!command)
        return;
    if (!TestAutomationCore::m_pAppMainWin)
    {
        reply->SetError("No ApplicationMainWindow has been registered");
        return;
    }
    TestAutomationCore::m_pAppMainWin->ExecuteConsoleCommand(String(command));
}

void fileExplorerViewEnsureVis(void*, RPCRequestInterface* request, RPCReplyInterface* reply)
{
    if (!checkRequirements(reply))
        return;
    UI::Window* window = requireWidget(request, reply);
    char const* item = requireArgument(request, reply, "item");
    if (reply->HasError())
        return;
    // The explorer view answers "x" and "y", or one of its own errors about the item.
    if (!window->ProcessTARequest(String("EnsureVisible:%1").Arg(item), request, reply) &&
        !reply->HasError())
        reply->SetError("fileExplorerViewEnsureVis could not find the right control");
}

void getWidgetInfo(void*, RPCRequestInterface* request, RPCReplyInterface* reply)
{
    if (!checkRequirements(reply))
        return;
    UI::Window* window = requireWidget(request, reply);
    if (!window)
        return;
    UI::Rect const r = window->GetGlobalGeometry();
    reply->SetValue("x", String::Number(r.left).CStr());
    reply->SetValue("y", String::Number(r.top).CStr());
    reply->SetValue("width", String::Number(r.Width()).CStr());
    reply->SetValue("height", String::Number(r.Height()).CStr());
    reply->SetValue("visible", boolText(window->IsVisibleTo()));
    reply->SetValue("enabled", boolText(window->IsEnabledTo()));
    reply->SetValue("focus", boolText(window->IsFocused()));
    // Where a driver clicks with a real pointer: the frame's place on the screen.
    if (UI::Frame* frame = window->GetFrame())
    {
        if (frame->GetHostWindow())
        {
            UI::Point const screen = frame->GetScreenPos();
            reply->SetValue("screenX", String::Number(screen.x + r.left).CStr());
            reply->SetValue("screenY", String::Number(screen.y + r.top).CStr());
        }
    }
    TestAutomationCore::getTypeInfo(window, reply);
}

void getMenuBarInfo(void*, RPCRequestInterface*, RPCReplyInterface* reply)
{
    if (!checkRequirements(reply))
        return;
    // There is no native menu bar here; an application that draws one describes it.
    TestAutomationCore::testAutomationRequest(String("GetMenuBarInfo"), nullptr, reply);
}

void getPluginInfo(void*, RPCRequestInterface*, RPCReplyInterface* reply)
{
    if (!checkRequirements(reply))
        return;
    TestAutomationCore::testAutomationRequest(String("GetPluginInfo"), nullptr, reply);
}

void getMetaDataTags(void*, RPCRequestInterface*, RPCReplyInterface* reply)
{
    if (!checkRequirements(reply))
        return;
    TestAutomationCore::testAutomationRequest(String("GetMetaDataTags"), nullptr, reply);
}

} // namespace

void TestAutomationCore::registerHandlers()
{
    server->RegisterHandler("appAutomationRequest", &appAutomationRequest, this);
    server->RegisterHandler("windowAutomationRequest", &windowAutomationRequest, this);
    server->RegisterHandler("pluginAutomationRequest", &pluginAutomationRequest, this);
    server->RegisterHandler("dualListBoxEnsureVis", &dualListBoxEnsureVis, this);
    server->RegisterHandler("executeConsoleCommand", &executeConsoleCommand, this);
    server->RegisterHandler("fileExplorerViewEnsureVis", &fileExplorerViewEnsureVis, this);
    server->RegisterHandler("getWidgetInfo", &getWidgetInfo, this);
    server->RegisterHandler("getMenuBarInfo", &getMenuBarInfo, this);
    server->RegisterHandler("getPluginInfo", &getPluginInfo, this);
    server->RegisterHandler("getMetaDataTags", &getMetaDataTags, this);
}

} // namespace TestAutomation
