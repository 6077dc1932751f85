#pragma once

#include "Canvas/UI/Native/PlatformSupportFactory.h"

#include <boost/function.hpp>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

union SDL_Event;

namespace UI
{
namespace Native
{

class HostWindowSDL;

/// The platform over SDL 2: windows, input state, cursors, message boxes and the run loop, which
/// sleeps in `SDL_WaitEventTimeout` until the next event, posted message or timer of
/// `TimerQueue::Main`. SDL's video part starts on first use. Ctrl+Q and the session's quit request
/// go to `PlatformSupportFactory::RequestQuit`.
class PlatformSupportFactorySDL : public PlatformSupportFactory::Impl
{
public:
    PlatformSupportFactorySDL();
    ~PlatformSupportFactorySDL() override;

    /// The one instance, made on first use.
    static PlatformSupportFactorySDL& Get();
    /// Starts SDL's video part; false (with the reason in `GetInitError`) without a display.
    bool EnsureVideo();
    String const& GetInitError() const { return initError; }

    HostWindow* CreateHostWindow(Canvas* canvas, String const& name, Frame* frame,
                                 Util::ConfigFile* config) override;
    void ConfigurePopupWindow(HostWindow* window) override;
    Rect ConvertClientToWindowRect(Rect const& client, bool hasMenu, HostWindowStyle const& style,
                                   String const& name) override;
    Rect ConvertWindowToClientRect(Rect const& window, bool hasMenu, HostWindowStyle const& style,
                                   String const& name) override;
    Rect ScreenRectForWindowHandle(void* handle) override;
    HostWindow* GetWindowBeneathPoint(Point const& screenPoint) override;
    HostWindow* GetTopLevelActiveWindow() override;
    bool IsWindowHoldingFocus(void* handle) override;
    void SetNativeFocus(void* handle) override;
    Point CursorLocation() override;
    std::vector<Rect> GetMonitorScreenRects() override;

    void PostUIMessage(UIMessageReceiver* receiver, HostWindow* window, unsigned int message,
                       unsigned int wParam, unsigned long lParam) override;
    void SendBlockingUIMessage(UIMessageReceiver* receiver, HostWindow* window,
                               unsigned int message, unsigned int wParam,
                               unsigned long lParam) override;

    bool IsCtrlPressed() override;
    bool IsShiftPressed() override;
    bool IsShiftPressedOutsideOfEventStream() override;
    bool IsAltPressed() override;
    bool IsCommandPressed() override;
    bool IsCapsLockOn() override;
    bool IsScrollLockPressed() override;

    boost::shared_ptr<void> CreateCursor(Cursor::Picture const& picture) override;
    void SetCurrentCursor(Cursor const& cursor) override;

    void DrawDIBSection(boost::shared_ptr<DIBSection> const& section, void* nativeHandle,
                        CGColorSpace* colorSpace, Point const& nativeWindowOffset, Rect const& rect,
                        Point const& destination, Rect const& nativeClipExclude) override;

    void MessageOK(String const& title, String const& text) override;

    bool OpenDisplay(String& reason) override;
    void RunEventLoop() override;
    void QuitEventLoop() override;
    bool IsEventLoopQuitting() override { return quitting; }
    void ProcessEvents(unsigned int maxWaitMs) override;

    // ---- for the host windows
    void registerWindow(HostWindowSDL* window);
    /// Remembers `window` as the one most recently brought to the front.
    void noteRaised(HostWindowSDL* window);
    void unregisterWindow(HostWindowSDL* window);
    bool isLive(HostWindow* window) const;
    HostWindowSDL* findWindow(unsigned int windowId) const;
    /// Posts a call of `handleUpdate` (`close` false) or `handlePostedClose` on `window`.
    void postWindowRequest(HostWindowSDL* window, bool close);

    /// A modal host window (the inline editor) sees every input event first while it is set;
    /// it answers true for the events it keeps. Our own posted requests never reach it. Unlike
    /// an SDL event filter, setting it leaves the queued events alone: dropping a posted update
    /// would leave its window waiting for it, and unpainted, for good.
    typedef boost::function<bool(SDL_Event const&)> ModalEventHandler;
    void SetModalEventHandler(ModalEventHandler const& handler) { modalHandler = handler; }

private:
    struct Posted;

    void dispatch(SDL_Event const& event);
    void deliver(Posted* posted);
    bool handleQuitShortcut(SDL_Event const& event);

    bool videoStarted = false;
    bool videoTried = false;
    String initError;
    unsigned int eventType = 0;
    std::atomic<bool> quitting{false};
    std::thread::id mainThread;
    int loopDepth = 0;
    ModalEventHandler modalHandler;
    /// Live windows, the one most recently brought to the front last.
    std::vector<HostWindowSDL*> liveWindows;
    Cursor currentCursor;
    bool cursorSet = false;
    boost::shared_ptr<void> currentCursorHandle;

    std::mutex blockingMutex;
    std::condition_variable blockingDone;
};

} // namespace Native
} // namespace UI
