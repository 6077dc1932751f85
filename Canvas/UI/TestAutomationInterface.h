#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"

#include <boost/shared_ptr.hpp>

namespace TestAutomation
{
class TestAutomationCore;
}

namespace UI
{

class ApplicationMainWindow;
class Canvas;
class Frame;
class Window;

/// The static front of the test automation bridge that the rest of the toolkit calls. Without a
/// started bridge (no module, or a refused one) every operation does nothing and costs one test
/// of a pointer. Main thread only.
class TestAutomationInterface
{
public:
    /// Loads the module and starts its server under `name` ("APP:Updater"). True when the bridge
    /// is up; otherwise the front forgets the core and the program runs without a bridge. A
    /// second call while running does nothing and returns true.
    static bool Start(String const& name);
    /// Ends the server and unloads the module.
    static void Stop();
    /// Lets the server serve pending requests; called on every master tick.
    static void RequestCheck();
    static bool IsRunning() { return core.get() != nullptr; }
    /// The core while the bridge runs, else null.
    static TestAutomation::TestAutomationCore* GetCore() { return core.get(); }

    /// Told by the canvas and the main windows as they come and go, with null at their end.
    static void SetCanvas(Canvas* canvas);
    /// Forgets `canvas` if it is the one set; a canvas calls it as it dies.
    static void ClearCanvas(Canvas* canvas);
    static void SetAppMainWindow(ApplicationMainWindow* window);
    static void SetMainPluginWindow(Window* window);

    /// Kind "DLOG": the title, "Buttons" and the buttons.
    static void SendDialog(String const& title, String const& buttons);
    /// Kind `kind` with one text.
    static void SendEvent(String const& kind, char const* text);
    /// Kind `kind` with a text and a number.
    static void SendEvent(char const* kind, char const* text, int value);
    /// Kind "KeyboardEvent" with "KeyPress" (action 0) or "KeyRelease" (action 1), the key code,
    /// the character and the flags. Nothing for other actions or when `fromUser` is false.
    static void SendKeyboardEvent(int action, unsigned int keyCode, char character,
                                  unsigned int flags, bool fromUser);
    /// Kind "MouseEvent" with "LeftDown(x,y)" and so on (point in native view coordinates) and
    /// the flags. Nothing for cursor updates or when `fromUser` is false.
    static void SendMouseEvent(int message, Point const& point, unsigned int flags, bool fromUser,
                               Frame* frame);
    /// Kind "Stat" with the name and the value.
    static void SendStat(String const& name, unsigned int value);
    /// Kind `kind` ("Show", "Destroy") with the window's name and its frame's native handle.
    static void SendWindow(char const* kind, Window const* window);
    static void SendWindow(char const* kind, String const& name, String const& handle);
    /// The same for a host window: its name and its native handle.
    static void SendHostWindow(char const* kind, String const& name, void const* handle);

private:
    static boost::shared_ptr<TestAutomation::TestAutomationCore> core;
};

/// Announces a modal dialog for as long as it lives: the constructor sends the dialog notice,
/// the destructor "DLOG Dismissed" with the title.
class TestAutomationDLOGSentry
{
public:
    TestAutomationDLOGSentry(String const& title, String const& buttons);
    ~TestAutomationDLOGSentry();
    TestAutomationDLOGSentry(TestAutomationDLOGSentry const&) = delete;
    TestAutomationDLOGSentry& operator=(TestAutomationDLOGSentry const&) = delete;

private:
    String title;
};

/// Brackets an event: the constructor sends kind "EVNT" with the three texts and the number;
/// the destructor sends the end message (by default "EVNT Done") with the same texts and the
/// number as it then stands.
class TestAutomationEVNTSentry
{
public:
    TestAutomationEVNTSentry(String const& category, String const& name, String const& detail,
                             int value);
    ~TestAutomationEVNTSentry();
    TestAutomationEVNTSentry(TestAutomationEVNTSentry const&) = delete;
    TestAutomationEVNTSentry& operator=(TestAutomationEVNTSentry const&) = delete;

    void SetEndMessage(String const& message) { endMessage = message; }
    void SetIntVal(int v) { value = v; }

private:
    String category;
    String name;
    String detail;
    int value;
    String endMessage;
};

} // namespace UI
