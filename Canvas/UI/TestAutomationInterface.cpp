#include "Canvas/UI/TestAutomationInterface.h"

#include "Canvas/TestAutomation/TestAutomationCore.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/Window.h"

#include <vector>

// This file lives in the window library, which every program links: it reaches the core only
// through its virtual operations and its static members, so a program that never starts the
// bridge carries no module code.

namespace TestAutomation
{

UI::Canvas* TestAutomationCore::m_pCanvas = nullptr;
UI::ApplicationMainWindow* TestAutomationCore::m_pAppMainWin = nullptr;
UI::Window* TestAutomationCore::m_pMainPluginWin = nullptr;

} // namespace TestAutomation

namespace UI
{

boost::shared_ptr<TestAutomation::TestAutomationCore> TestAutomationInterface::core;

namespace
{

void send(TestAutomation::TestAutomationCore* core, char const* kind,
          std::vector<String> const& texts)
{
    if (core)
        core->SendNotice(kind, texts);
}

char const* mouseMessageName(int message)
{
    switch (message)
    {
    case MouseLeftPress:
        return "LeftDown";
    case MouseLeftRelease:
        return "LeftUp";
    case MouseLeftDoubleClick:
        return "LeftDblClk";
    case MouseRightPress:
        return "RightDown";
    case MouseRightRelease:
        return "RightUp";
    case MouseRightDoubleClick:
        return "RightDblClk";
    case MouseMove:
        return "Move";
    case MouseWheel:
        return "Wheel";
    default:
        return nullptr;
    }
}

String handleText(void const* handle)
{
    return String("0x%1").Arg(static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(handle)),
                              16u);
}

} // namespace

void TestAutomationInterface::Stop()
{
    core.reset();
}

void TestAutomationInterface::RequestCheck()
{
    // A handler may stop the bridge; the server must outlive the poll that runs it.
    boost::shared_ptr<TestAutomation::TestAutomationCore> const keep = core;
    if (keep)
        keep->RequestCheck();
}

void TestAutomationInterface::SetCanvas(Canvas* canvas)
{
    TestAutomation::TestAutomationCore::m_pCanvas = canvas;
}

void TestAutomationInterface::ClearCanvas(Canvas* canvas)
{
    if (TestAutomation::TestAutomationCore::m_pCanvas == canvas)
        TestAutomation::TestAutomationCore::m_pCanvas = nullptr;
}

void TestAutomationInterface::SetAppMainWindow(ApplicationMainWindow* window)
{
    TestAutomation::TestAutomationCore::m_pAppMainWin = window;
}

void TestAutomationInterface::SetMainPluginWindow(Window* window)
{
    TestAutomation::TestAutomationCore::m_pMainPluginWin = window;
}

void TestAutomationInterface::SendDialog(String const& title, String const& buttons)
{
    send(core.get(), "DLOG", {title, String("Buttons"), buttons});
}

void TestAutomationInterface::SendEvent(String const& kind, char const* text)
{
    if (core)
        send(core.get(), kind.CStr(), {String(text ? text : "")});
}

void TestAutomationInterface::SendEvent(char const* kind, char const* text, int value)
{
    if (core && kind)
        send(core.get(), kind, {String(text ? text : ""), String::Number(value)});
}

void TestAutomationInterface::SendKeyboardEvent(int action, unsigned int keyCode, char character,
                                                unsigned int flags, bool fromUser)
{
    if (!core || !fromUser || (action != KeyPress && action != KeyRelease))
        return;
    char const chars[2] = {character, 0};
    send(core.get(), "KeyboardEvent",
         {String(action == KeyPress ? "KeyPress" : "KeyRelease"), String::Number(keyCode),
          String(chars), String::Number(flags)});
}

void TestAutomationInterface::SendMouseEvent(int message, Point const& point, unsigned int flags,
                                             bool fromUser, Frame* frame)
{
    char const* name = mouseMessageName(message);
    if (!core || !fromUser || !name)
        return;
    std::vector<String> texts = {String("%1(%2,%3)").Arg(name).Arg(point.x).Arg(point.y),
                                 String::Number(flags)};
    if (frame && frame->GetTopLevelWindow())
        texts.push_back(frame->GetTopLevelWindow()->GetName());
    send(core.get(), "MouseEvent", texts);
}

void TestAutomationInterface::SendStat(String const& name, unsigned int value)
{
    send(core.get(), "Stat", {name, String::Number(value)});
}

void TestAutomationInterface::SendWindow(char const* kind, Window const* window)
{
    if (!core || !kind || !window)
        return;
    Frame const* frame = window->GetFrame();
    SendWindow(kind, window->GetName(),
               handleText(frame ? frame->GetNativeWindowHandle() : nullptr));
}

void TestAutomationInterface::SendWindow(char const* kind, String const& name, String const& handle)
{
    if (core && kind)
        send(core.get(), kind, {name, handle});
}

void TestAutomationInterface::SendHostWindow(char const* kind, String const& name,
                                             void const* handle)
{
    if (core && kind)
        send(core.get(), kind, {name, handleText(handle)});
}

// ============================================================================================
// sentries
// ============================================================================================

TestAutomationDLOGSentry::TestAutomationDLOGSentry(String const& title, String const& buttons)
    : title(title)
{
    TestAutomationInterface::SendDialog(title, buttons);
}

TestAutomationDLOGSentry::~TestAutomationDLOGSentry()
{
    TestAutomationInterface::SendEvent(String("DLOG Dismissed"), title.CStr());
}

TestAutomationEVNTSentry::TestAutomationEVNTSentry(String const& category, String const& name,
                                                   String const& detail, int value)
    : category(category), name(name), detail(detail), value(value), endMessage("EVNT Done")
{
    send(TestAutomationInterface::GetCore(), "EVNT",
         {category, name, detail, String::Number(value)});
}

TestAutomationEVNTSentry::~TestAutomationEVNTSentry()
{
    send(TestAutomationInterface::GetCore(), endMessage.CStr(),
         {category, name, detail, String::Number(value)});
}

} // namespace UI
