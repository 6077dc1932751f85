#pragma once

#include "Canvas/UI/Cursor.h"
#include "Canvas/UI/Native/HostWindowStyle.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <vector>

struct CGColorSpace;

namespace Util
{
class ConfigFile;
}

namespace UI
{

class Canvas;
class Frame;

namespace Native
{

class DIBSection;
class HostWindow;

/// The receiver of a posted UI message. It must outlive the delivery; a message posted for a
/// host window that dies first is dropped.
class UIMessageReceiver
{
public:
    virtual ~UIMessageReceiver() = default;
    virtual void onUIMessage(HostWindow* window, unsigned int message, unsigned int wParam,
                             unsigned long lParam) = 0;
};

/// The one door through which the toolkit asks the platform for windows, input state, cursors,
/// messages and the run loop. Every operation is static and goes to the implementation object:
/// the host's own (made on first use) unless `overrideImpl` installed another. Main thread only,
/// except `PostUIMessage` and `SendBlockingUIMessage`.
class PlatformSupportFactory
{
public:
    /// What a platform implements.
    class Impl
    {
    public:
        virtual ~Impl() = default;

        virtual HostWindow* CreateHostWindow(Canvas* canvas, String const& name, Frame* frame,
                                             Util::ConfigFile* config) = 0;
        virtual void ConfigurePopupWindow(HostWindow* window) = 0;
        virtual Rect ConvertClientToWindowRect(Rect const& client, bool hasMenu,
                                               HostWindowStyle const& style,
                                               String const& name) = 0;
        virtual Rect ConvertWindowToClientRect(Rect const& window, bool hasMenu,
                                               HostWindowStyle const& style,
                                               String const& name) = 0;
        virtual Rect ScreenRectForWindowHandle(void* handle) = 0;
        virtual HostWindow* GetWindowBeneathPoint(Point const& screenPoint) = 0;
        virtual HostWindow* GetTopLevelActiveWindow() = 0;
        virtual bool IsWindowHoldingFocus(void* handle) = 0;
        virtual void SetNativeFocus(void* handle) = 0;
        virtual Point CursorLocation() = 0;
        virtual std::vector<Rect> GetMonitorScreenRects() = 0;

        virtual void PostUIMessage(UIMessageReceiver* receiver, HostWindow* window,
                                   unsigned int message, unsigned int wParam,
                                   unsigned long lParam) = 0;
        virtual void SendBlockingUIMessage(UIMessageReceiver* receiver, HostWindow* window,
                                           unsigned int message, unsigned int wParam,
                                           unsigned long lParam) = 0;

        virtual bool IsCtrlPressed() = 0;
        virtual bool IsShiftPressed() = 0;
        virtual bool IsShiftPressedOutsideOfEventStream() = 0;
        virtual bool IsAltPressed() = 0;
        virtual bool IsCommandPressed() = 0;
        virtual bool IsCapsLockOn() = 0;
        virtual bool IsScrollLockPressed() = 0;

        virtual boost::shared_ptr<void> CreateCursor(Cursor::Picture const& picture) = 0;
        virtual void SetCurrentCursor(Cursor const& cursor) = 0;

        virtual void DrawDIBSection(boost::shared_ptr<DIBSection> const& section,
                                    void* nativeHandle, CGColorSpace* colorSpace,
                                    Point const& nativeWindowOffset, Rect const& rect,
                                    Point const& destination, Rect const& nativeClipExclude) = 0;

        virtual void MessageOK(String const& title, String const& text) = 0;

        virtual bool OpenDisplay(String& reason) = 0;
        virtual void RunEventLoop() = 0;
        virtual void QuitEventLoop() = 0;
        virtual bool IsEventLoopQuitting() = 0;
        virtual void ProcessEvents(unsigned int maxWaitMs) = 0;
    };

    PlatformSupportFactory() = delete;

    /// Installs `impl` (not owned) in place of the host's own; null goes back to the host's.
    static void overrideImpl(Impl* impl);
    static Impl& GetImpl();

    // ---- windows
    /// A new host window (owned by the caller); it makes its frame when `frame` is null.
    static HostWindow* CreateHostWindow(Canvas* canvas, String const& name, Frame* frame,
                                        Util::ConfigFile* config);
    /// Makes `window` a pop-up: above other windows, and never taking the focus.
    static void ConfigurePopupWindow(HostWindow* window);
    /// The window rect (borders included) around a client rect, both on the screen.
    static Rect ConvertClientToWindowRect(Rect const& client, bool hasMenu,
                                          HostWindowStyle const& style, String const& name);
    static Rect ConvertWindowToClientRect(Rect const& window, bool hasMenu,
                                          HostWindowStyle const& style, String const& name);
    /// The window rect of a native handle; empty for unknown handles.
    static Rect ScreenRectForWindowHandle(void* handle);
    /// The topmost visible host window whose window rect holds `screenPoint`; null for none.
    static HostWindow* GetWindowBeneathPoint(Point const& screenPoint);
    /// The host window that holds the keyboard focus; null for none.
    static HostWindow* GetTopLevelActiveWindow();
    static bool IsWindowHoldingFocus(void* handle);
    static void SetNativeFocus(void* handle);
    /// The screen position of `frame`'s origin.
    static Point CanvasScreenLocation(Frame* frame);
    /// The mouse on the screen.
    static Point CursorLocation();
    /// The usable rects of the monitors, the first being the main one.
    static std::vector<Rect> GetMonitorScreenRects();

    // ---- messages
    /// Queues `message` for `receiver` on the main thread and returns at once; any thread.
    static void PostUIMessage(UIMessageReceiver* receiver, HostWindow* window, unsigned int message,
                              unsigned int wParam, unsigned long lParam);
    /// As `PostUIMessage`, and waits until it was delivered (or dropped). On the main thread it
    /// is delivered at once.
    static void SendBlockingUIMessage(UIMessageReceiver* receiver, HostWindow* window,
                                      unsigned int message, unsigned int wParam,
                                      unsigned long lParam);

    // ---- keyboard state
    static bool IsCtrlPressed();
    static bool IsShiftPressed();
    /// The shift key as the keyboard has it now, not as the event being handled had it.
    static bool IsShiftPressedOutsideOfEventStream();
    static bool IsAltPressed();
    static bool IsCommandPressed();
    static bool IsCapsLockOn();
    static bool IsScrollLockPressed();

    // ---- cursors and pixels
    /// A host cursor for `picture`; null when the host has none to give.
    static boost::shared_ptr<void> CreateCursor(Cursor::Picture const& picture);
    static void SetCurrentCursor(Cursor const& cursor);
    /// Copies `rect` of `section` into the native window at `destination` shifted by the
    /// offset; the presenter of every draw context.
    static void DrawDIBSection(boost::shared_ptr<DIBSection> const& section, void* nativeHandle,
                               CGColorSpace* colorSpace, Point const& nativeWindowOffset,
                               Rect const& rect, Point const& destination,
                               Rect const& nativeClipExclude);

    // ---- the run loop, behind `Application::RunEventLoop` and `Application::slotQuit`
    /// Connects to the display; false, with the reason, when there is none to show windows on.
    static bool OpenDisplay(String& reason);
    /// Delivers events, posted messages and timers until `QuitEventLoop`.
    static void RunEventLoop();
    /// Makes `RunEventLoop` return once the present event is handled; any thread.
    static void QuitEventLoop();
    static bool IsEventLoopQuitting();
    /// What the user's Quit (Ctrl+Q) and the session's quit request call: the handler the
    /// application installed, which asks its own quit request first so that a veto holds, or,
    /// without one, `QuitEventLoop`.
    static void RequestQuit();
    /// Installs the handler of `RequestQuit`; an empty function removes it.
    static void SetQuitRequestHandler(std::function<void()> const& handler);
    /// Handles what is pending and what arrives within `maxWaitMs`, timers included, then
    /// returns (for tests and modal waits).
    static void ProcessEvents(unsigned int maxWaitMs);

    // ---- the inline editor of text fields
    /// Shows a borderless single-line editor holding `text`, `width` pixels wide, whose first
    /// line is centred on `point` (frame coordinates), and runs a nested loop until the user
    /// leaves it. Enter accepts: true, with the edited text in `text`. Escape, a click outside
    /// or the loss of focus cancels: false, `text` unchanged. A non-empty `charFilter` lists the
    /// only characters that may be typed. False at once when no editor can be shown. With a
    /// `height` above one line's, the editor is that tall, centred on `point` as well, so that it
    /// covers a field of that size exactly.
    static bool ExecuteInlineEdit(Frame* frame, Point const& point, String& text, int width,
                                  std::vector<char> const& charFilter, bool multiLine,
                                  int justification, int height = 0);
};

/// A modal message with an OK button; without a display the text goes to the standard error.
void MessageOK(String const& title, String const& text);

} // namespace Native

/// `rect` (screen coordinates) moved and cut so that it lies on the monitor that holds most of
/// it (or the main one): a side longer than the monitor is cut to it at its edge.
Rect TrimToMonitorScreenRect(Rect const& rect);

} // namespace UI
