// UI::Native::PlatformSupportFactorySDL: the platform over SDL 2.
//
// Index:
//   start-up
//   windows
//   messages
//   keyboard state
//   cursors and pixels
//   the run loop

#include "Canvas/UI/Native/SDL/PlatformSupportFactorySDL.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/Native/DrawDIBSectionFunction.h"
#include "Canvas/UI/Native/SDL/HostWindowSDL.h"
#include "Canvas/UI/Native/SDL/X11WakeUpGuard.h"
#include "Canvas/UI/Native/TimerQueue.h"
#include "TvBase/Util/ProcessInfo.h"

#include <SDL.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace UI
{
namespace Native
{

/// A message on its way to the main thread, owned by the event that carries it.
struct PlatformSupportFactorySDL::Posted
{
    UIMessageReceiver* receiver;
    HostWindow* window;
    unsigned int message;
    unsigned int wParam;
    unsigned long lParam;
    /// Set for `SendBlockingUIMessage`: the sender waits for `done` and frees the message.
    bool blocking;
    bool done;
};

namespace
{

// The codes of our own SDL event.
enum PostedCode
{
    PostedUpdate = 1,
    PostedClose = 2,
    PostedMessage = 3,
    PostedWake = 4
};

SDL_SystemCursor systemCursorFor(Cursor::Picture::SystemCursor system)
{
    switch (system)
    {
    case Cursor::Picture::SystemPointingHand:
    case Cursor::Picture::SystemOpenHand:
        return SDL_SYSTEM_CURSOR_HAND;
    case Cursor::Picture::SystemClosedHand:
        // SDL has no grabbing hand; the move cursor says "dragging" best.
        return SDL_SYSTEM_CURSOR_SIZEALL;
    case Cursor::Picture::SystemResizeUpDown:
        return SDL_SYSTEM_CURSOR_SIZENS;
    case Cursor::Picture::SystemResizeLeftRight:
        return SDL_SYSTEM_CURSOR_SIZEWE;
    case Cursor::Picture::SystemIBeam:
        return SDL_SYSTEM_CURSOR_IBEAM;
    case Cursor::Picture::SystemCrosshair:
        return SDL_SYSTEM_CURSOR_CROSSHAIR;
    case Cursor::Picture::SystemBusy:
        return SDL_SYSTEM_CURSOR_WAIT;
    case Cursor::Picture::SystemArrow:
        break;
    }
    return SDL_SYSTEM_CURSOR_ARROW;
}

boost::shared_ptr<void> wrapCursor(SDL_Cursor* cursor)
{
    if (!cursor)
        return boost::shared_ptr<void>();
    return boost::shared_ptr<void>(cursor,
                                   [](void* c)
                                   {
                                       // The cursors may outlive SDL's video part at exit.
                                       if (SDL_WasInit(SDL_INIT_VIDEO))
                                           SDL_FreeCursor(static_cast<SDL_Cursor*>(c));
                                   });
}

} // namespace

// ============================================================================================
// start-up
// ============================================================================================

PlatformSupportFactorySDL::PlatformSupportFactorySDL() : mainThread(std::this_thread::get_id()) {}

PlatformSupportFactorySDL::~PlatformSupportFactorySDL()
{
    if (GetDrawDIBSectionFunction() == &PlatformSupportFactory::DrawDIBSection)
        SetDrawDIBSectionFunction(nullptr);
}

PlatformSupportFactorySDL& PlatformSupportFactorySDL::Get()
{
    static PlatformSupportFactorySDL instance;
    return instance;
}

bool PlatformSupportFactorySDL::EnsureVideo()
{
    if (videoTried)
        return videoStarted;
    videoTried = true;
    // Signals stay the application's; closing the last window does not quit by itself, so a
    // close can be vetoed; a window shown without activation really stays inactive; a click
    // on an inactive window reaches it.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_QUIT_ON_LAST_WINDOW_CLOSE, "0");
    SDL_SetHint(SDL_HINT_WINDOW_NO_ACTIVATION_WHEN_SHOWN, "1");
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    // The window surface is the display's own shared-memory image, not a texture behind an
    // OpenGL context: a software-rendered context costs start-up time and threads for nothing.
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    if (SDL_InitSubSystem(SDL_INIT_EVENTS) != 0)
    {
        initError = String(SDL_GetError());
        return false;
    }
    eventType = SDL_RegisterEvents(1);
    // Without a display to name, SDL would try the Wayland default and fill the error output
    // with the compositor library's complaints before failing anyway.
    if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY") &&
        !std::getenv("SDL_VIDEODRIVER"))
    {
        initError = String("neither DISPLAY nor WAYLAND_DISPLAY is set");
        return false;
    }
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0)
    {
        initError = String(SDL_GetError());
        return false;
    }
    videoStarted = true;
    // Any host window may close while a nested loop waits (the colour picker, the menus).
    GuardX11WakeUps();
    mainThread = std::this_thread::get_id();
    // Any window can close while another thread's wake-up is on its way to it: the inline
    // editor, a popup menu, a dialog, a host window.
    GuardX11WakeUps();
    SetDrawDIBSectionFunction(&PlatformSupportFactory::DrawDIBSection);
    return true;
}

// ============================================================================================
// windows
// ============================================================================================

HostWindow* PlatformSupportFactorySDL::CreateHostWindow(Canvas* canvas, String const& name,
                                                        Frame* frame, Util::ConfigFile* config)
{
    EnsureVideo();
    return new HostWindowSDL(canvas, name, frame, config);
}

void PlatformSupportFactorySDL::ConfigurePopupWindow(HostWindow* window)
{
    // Through the window, so that showing it again keeps it on top.
    if (window)
        window->SetTopMost(true, false);
}

Rect PlatformSupportFactorySDL::ConvertClientToWindowRect(Rect const& client, bool,
                                                          HostWindowStyle const& style,
                                                          String const& name)
{
    if (style.noFrame)
        return client;
    // The window manager tells the border sizes only of a window it decorates; take those of
    // the window of this name, else of any framed window; none known means no borders.
    int top = 0, left = 0, bottom = 0, right = 0;
    HostWindowSDL* sample = nullptr;
    for (HostWindowSDL* w : liveWindows)
        if (w->GetSDLWindow() && !w->GetStyle().noFrame && (!sample || w->GetWindowName() == name))
            sample = w;
    if (sample)
        SDL_GetWindowBordersSize(sample->GetSDLWindow(), &top, &left, &bottom, &right);
    return Rect(client.left - left, client.right + right, client.top - top, client.bottom + bottom);
}

Rect PlatformSupportFactorySDL::ConvertWindowToClientRect(Rect const& window, bool hasMenu,
                                                          HostWindowStyle const& style,
                                                          String const& name)
{
    Rect grown = ConvertClientToWindowRect(window, hasMenu, style, name);
    int left = window.left - grown.left;
    int top = window.top - grown.top;
    int right = grown.right - window.right;
    int bottom = grown.bottom - window.bottom;
    return Rect(window.left + left, window.right - right, window.top + top, window.bottom - bottom);
}

Rect PlatformSupportFactorySDL::ScreenRectForWindowHandle(void* handle)
{
    for (HostWindowSDL* w : liveWindows)
        if (w->GetSDLWindow() == handle)
            return w->GetContainingWindowGeometry();
    return Rect();
}

HostWindow* PlatformSupportFactorySDL::GetWindowBeneathPoint(Point const& screenPoint)
{
    // Newest raised first: SDL does not tell the stacking order.
    for (auto it = liveWindows.rbegin(); it != liveWindows.rend(); ++it)
        if ((*it)->IsVisible() && (*it)->GetContainingWindowGeometry().Contains(screenPoint))
            return *it;
    return nullptr;
}

HostWindow* PlatformSupportFactorySDL::GetTopLevelActiveWindow()
{
    if (!videoStarted)
        return nullptr;
    SDL_Window* focused = SDL_GetKeyboardFocus();
    for (HostWindowSDL* w : liveWindows)
        if (focused && w->GetSDLWindow() == focused)
            return w;
    return nullptr;
}

bool PlatformSupportFactorySDL::IsWindowHoldingFocus(void* handle)
{
    return videoStarted && handle && SDL_GetKeyboardFocus() == handle;
}

void PlatformSupportFactorySDL::SetNativeFocus(void* handle)
{
    if (!videoStarted || !handle)
        return;
    SDL_Window* window = static_cast<SDL_Window*>(handle);
    SDL_RaiseWindow(window);
    SDL_SetWindowInputFocus(window);
}

Point PlatformSupportFactorySDL::CursorLocation()
{
    if (!videoStarted)
        return Point();
    int x = 0, y = 0;
    SDL_GetGlobalMouseState(&x, &y);
    return Point(x, y);
}

std::vector<Rect> PlatformSupportFactorySDL::GetMonitorScreenRects()
{
    std::vector<Rect> rects;
    if (!videoStarted)
        return rects;
    int const n = SDL_GetNumVideoDisplays();
    for (int i = 0; i < n; ++i)
    {
        SDL_Rect r;
        if (SDL_GetDisplayUsableBounds(i, &r) == 0 && r.w > 0 && r.h > 0)
            rects.push_back(Rect(Point(r.x, r.y), Size(r.w, r.h)));
    }
    return rects;
}

void PlatformSupportFactorySDL::registerWindow(HostWindowSDL* window)
{
    if (std::find(liveWindows.begin(), liveWindows.end(), window) == liveWindows.end())
        liveWindows.push_back(window);
}

void PlatformSupportFactorySDL::unregisterWindow(HostWindowSDL* window)
{
    // From the end: the window closing is most often the newest.
    auto it = std::find(liveWindows.rbegin(), liveWindows.rend(), window);
    if (it != liveWindows.rend())
        liveWindows.erase(std::next(it).base());
}

void PlatformSupportFactorySDL::noteRaised(HostWindowSDL* window)
{
    unregisterWindow(window);
    liveWindows.push_back(window);
}

bool PlatformSupportFactorySDL::isLive(HostWindow* window) const
{
    return std::find(liveWindows.begin(), liveWindows.end(), window) != liveWindows.end();
}

HostWindowSDL* PlatformSupportFactorySDL::findWindow(unsigned int windowId) const
{
    for (HostWindowSDL* w : liveWindows)
        if (w->GetSDLWindowID() == windowId)
            return w;
    return nullptr;
}

// ============================================================================================
// messages
// ============================================================================================

void PlatformSupportFactorySDL::postWindowRequest(HostWindowSDL* window, bool close)
{
    if (!eventType)
        return;
    SDL_Event event;
    SDL_zero(event);
    event.type = eventType;
    event.user.code = close ? PostedClose : PostedUpdate;
    event.user.windowID = window->GetSDLWindowID();
    event.user.data1 = window;
    SDL_PushEvent(&event);
}

void PlatformSupportFactorySDL::PostUIMessage(UIMessageReceiver* receiver, HostWindow* window,
                                              unsigned int message, unsigned int wParam,
                                              unsigned long lParam)
{
    if (!eventType || !receiver)
        return;
    Posted* posted = new Posted{receiver, window, message, wParam, lParam, false, false};
    SDL_Event event;
    SDL_zero(event);
    event.type = eventType;
    event.user.code = PostedMessage;
    event.user.data1 = posted;
    if (SDL_PushEvent(&event) != 1)
        delete posted;
}

void PlatformSupportFactorySDL::SendBlockingUIMessage(UIMessageReceiver* receiver,
                                                      HostWindow* window, unsigned int message,
                                                      unsigned int wParam, unsigned long lParam)
{
    if (!receiver)
        return;
    Posted posted{receiver, window, message, wParam, lParam, true, false};
    if (std::this_thread::get_id() == mainThread || !eventType)
    {
        deliver(&posted);
        return;
    }
    SDL_Event event;
    SDL_zero(event);
    event.type = eventType;
    event.user.code = PostedMessage;
    event.user.data1 = &posted;
    if (SDL_PushEvent(&event) != 1)
        return;
    std::unique_lock<std::mutex> lock(blockingMutex);
    blockingDone.wait(lock, [&posted] { return posted.done; });
}

void PlatformSupportFactorySDL::deliver(Posted* posted)
{
    // A message for a host window that died meanwhile is dropped.
    bool const alive = !posted->window || isLive(posted->window);
    if (alive)
        posted->receiver->onUIMessage(posted->window, posted->message, posted->wParam,
                                      posted->lParam);
    if (!posted->blocking)
    {
        delete posted;
        return;
    }
    {
        std::lock_guard<std::mutex> lock(blockingMutex);
        posted->done = true;
    }
    blockingDone.notify_all();
}

// ============================================================================================
// keyboard state
// ============================================================================================

bool PlatformSupportFactorySDL::IsCtrlPressed()
{
    return (SDL_GetModState() & KMOD_CTRL) != 0;
}

bool PlatformSupportFactorySDL::IsShiftPressed()
{
    return (SDL_GetModState() & KMOD_SHIFT) != 0;
}

bool PlatformSupportFactorySDL::IsShiftPressedOutsideOfEventStream()
{
    SDL_PumpEvents();
    Uint8 const* keys = SDL_GetKeyboardState(nullptr);
    return keys && (keys[SDL_SCANCODE_LSHIFT] || keys[SDL_SCANCODE_RSHIFT]);
}

bool PlatformSupportFactorySDL::IsAltPressed()
{
    return (SDL_GetModState() & KMOD_ALT) != 0;
}

bool PlatformSupportFactorySDL::IsCommandPressed()
{
    return (SDL_GetModState() & KMOD_GUI) != 0;
}

bool PlatformSupportFactorySDL::IsCapsLockOn()
{
    return (SDL_GetModState() & KMOD_CAPS) != 0;
}

bool PlatformSupportFactorySDL::IsScrollLockPressed()
{
    return (SDL_GetModState() & KMOD_SCROLL) != 0;
}

// ============================================================================================
// cursors and pixels
// ============================================================================================

boost::shared_ptr<void> PlatformSupportFactorySDL::CreateCursor(Cursor::Picture const& picture)
{
    if (!videoStarted)
        return boost::shared_ptr<void>();
    switch (picture.kind)
    {
    case Cursor::Picture::System:
        return wrapCursor(SDL_CreateSystemCursor(systemCursorFor(picture.system)));
    case Cursor::Picture::Mono:
    {
        // SDL wants whole bytes per row: the width is padded to 8 with "keep the screen".
        int const width = (picture.size.width + 7) / 8 * 8;
        int const height = picture.size.height;
        int const rowBytes = width / 8;
        if (width <= 0 || height <= 0)
            return boost::shared_ptr<void>();
        std::vector<Uint8> data(static_cast<std::size_t>(rowBytes * height), 0);
        std::vector<Uint8> mask(data.size(), 0);
        for (std::size_t i = 0; i < data.size() && i < picture.andMask.size(); ++i)
        {
            Uint8 const a = picture.andMask[i];
            Uint8 const x = i < picture.xorMask.size() ? picture.xorMask[i] : 0;
            // AND 0: painted, black (XOR 0) or white (XOR 1); AND 1: transparent or inverted.
            mask[i] = static_cast<Uint8>(~a);
            data[i] = static_cast<Uint8>((~a & ~x) | (a & x));
        }
        return wrapCursor(SDL_CreateCursor(data.data(), mask.data(), width, height,
                                           picture.hotSpot.x, picture.hotSpot.y));
    }
    case Cursor::Picture::Color:
    {
        if (!picture.bits || !picture.bits->GetPixels())
            return boost::shared_ptr<void>();
        DIBits const& bits = *picture.bits;
        SDL_Surface* surface =
            SDL_CreateRGBSurfaceWithFormatFrom(bits.GetPixels(), bits.GetWidth(), bits.GetHeight(),
                                               32, bits.GetStride() * 4, SDL_PIXELFORMAT_ARGB8888);
        if (!surface)
            return boost::shared_ptr<void>();
        SDL_Cursor* cursor = SDL_CreateColorCursor(surface, picture.hotSpot.x, picture.hotSpot.y);
        SDL_FreeSurface(surface);
        return wrapCursor(cursor);
    }
    }
    return boost::shared_ptr<void>();
}

void PlatformSupportFactorySDL::SetCurrentCursor(Cursor const& cursor)
{
    if (!videoStarted || (cursorSet && cursor == currentCursor))
        return;
    boost::shared_ptr<void> handle = cursor.GetHandle();
    SDL_SetCursor(handle ? static_cast<SDL_Cursor*>(handle.get()) : SDL_GetDefaultCursor());
    currentCursor = cursor;
    currentCursorHandle = handle;
    cursorSet = true;
}

void PlatformSupportFactorySDL::DrawDIBSection(boost::shared_ptr<DIBSection> const& section,
                                               void* nativeHandle, CGColorSpace*,
                                               Point const& nativeWindowOffset, Rect const& rect,
                                               Point const& destination,
                                               Rect const& nativeClipExclude)
{
    if (!section || !section->GetPixels() || !nativeHandle)
        return;
    HostWindowSDL* host = nullptr;
    for (HostWindowSDL* w : liveWindows)
        if (w->GetSDLWindow() == nativeHandle)
            host = w;
    if (!host)
        return;
    Rect const source = rect & Rect(0, section->GetWidth() - 1, 0, section->GetHeight() - 1);
    if (source.IsEmpty())
        return;
    // Window point = bitmap point + shift.
    Point const shift = destination + nativeWindowOffset - rect.TopLeft();
    // The parts of the rect outside the excluded one (given in window coordinates): at most
    // four bands.
    std::vector<Rect> parts;
    Rect const excluded = nativeClipExclude.IsEmpty()
                              ? Rect()
                              : (nativeClipExclude.Offset(-shift.x, -shift.y) & source);
    if (excluded.IsEmpty())
    {
        parts.push_back(source);
    }
    else
    {
        parts.push_back(Rect(source.left, source.right, source.top, excluded.top - 1));
        parts.push_back(Rect(source.left, source.right, excluded.bottom + 1, source.bottom));
        parts.push_back(Rect(source.left, excluded.left - 1, excluded.top, excluded.bottom));
        parts.push_back(Rect(excluded.right + 1, source.right, excluded.top, excluded.bottom));
    }
    for (Rect const& part : parts)
        if (!part.IsEmpty())
            host->present(section->GetPixels(), section->GetStride(), section->GetSize(), part,
                          part.TopLeft() + shift);
}

void PlatformSupportFactorySDL::MessageOK(String const& title, String const& text)
{
    // A display-less driver has no box of its own, and SDL's fallbacks would spawn a dialog
    // program that cannot open a display either and still count as shown.
    char const* driver = EnsureVideo() ? SDL_GetCurrentVideoDriver() : nullptr;
    bool const onScreen =
        driver && std::strcmp(driver, "offscreen") != 0 && std::strcmp(driver, "dummy") != 0;
    if (onScreen && SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_INFORMATION, title.CStr(), text.CStr(),
                                             nullptr) == 0)
        return;
    std::fprintf(stderr, "%s: %s\n", title.CStr(), text.CStr());
}

// ============================================================================================
// the run loop
// ============================================================================================

bool PlatformSupportFactorySDL::OpenDisplay(String& reason)
{
    if (EnsureVideo())
        return true;
    reason = initError;
    return false;
}

void PlatformSupportFactorySDL::RunEventLoop()
{
    EnsureVideo();
    quitting = false;
    ++loopDepth;
    while (!quitting)
        ProcessEvents(std::numeric_limits<unsigned int>::max());
    --loopDepth;
}

void PlatformSupportFactorySDL::QuitEventLoop()
{
    quitting = true;
    if (!eventType)
        return;
    SDL_Event event;
    SDL_zero(event);
    event.type = eventType;
    event.user.code = PostedWake;
    SDL_PushEvent(&event);
}

void PlatformSupportFactorySDL::ProcessEvents(unsigned int maxWaitMs)
{
    if (!eventType)
        EnsureVideo();
    TimerQueue& timers = TimerQueue::Main();
    unsigned long long now = Util::GetTickCountMillis();
    timers.FireDue(now);

    // Sleep until the next event or the next timer, whichever comes first.
    unsigned long long wait = maxWaitMs;
    checked_value<unsigned long long> deadline = timers.NextDeadline();
    now = Util::GetTickCountMillis();
    if (deadline)
        wait = std::min(wait, *deadline > now ? *deadline - now : 0ull);
    int const timeout = static_cast<int>(std::min<unsigned long long>(wait, 1u << 30));

    SDL_Event event;
    if (eventType && SDL_WaitEventTimeout(&event, timeout))
    {
        dispatch(event);
        while (!quitting && SDL_PollEvent(&event))
            dispatch(event);
    }
    timers.FireDue(Util::GetTickCountMillis());
}

bool PlatformSupportFactorySDL::handleQuitShortcut(SDL_Event const& event)
{
    // The Quit menu entry of other hosts.
    if (event.type == SDL_KEYDOWN && event.key.keysym.sym == SDLK_q &&
        (event.key.keysym.mod & KMOD_CTRL) && !(event.key.keysym.mod & (KMOD_ALT | KMOD_SHIFT)))
    {
        PlatformSupportFactory::RequestQuit();
        return true;
    }
    return false;
}

void PlatformSupportFactorySDL::dispatch(SDL_Event const& event)
{
    if (eventType && event.type == eventType)
    {
        switch (event.user.code)
        {
        case PostedUpdate:
        case PostedClose:
        {
            HostWindowSDL* window = findWindow(event.user.windowID);
            if (window && window == event.user.data1)
            {
                if (event.user.code == PostedUpdate)
                    window->handleUpdate();
                else
                    window->handlePostedClose();
            }
            return;
        }
        case PostedMessage:
            deliver(static_cast<Posted*>(event.user.data1));
            return;
        default:
            return;
        }
    }
    if (modalHandler)
    {
        // A copy: the handler may end the modal state, and with it itself.
        ModalEventHandler const handler = modalHandler;
        if (handler(event))
            return;
    }
    if (event.type == SDL_QUIT)
    {
        PlatformSupportFactory::RequestQuit();
        return;
    }
    if (handleQuitShortcut(event))
        return;

    Uint32 windowId = 0;
    switch (event.type)
    {
    case SDL_WINDOWEVENT:
        windowId = event.window.windowID;
        break;
    case SDL_KEYDOWN:
    case SDL_KEYUP:
        windowId = event.key.windowID;
        break;
    case SDL_TEXTINPUT:
        windowId = event.text.windowID;
        break;
    case SDL_MOUSEMOTION:
        windowId = event.motion.windowID;
        break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
        windowId = event.button.windowID;
        break;
    case SDL_MOUSEWHEEL:
        windowId = event.wheel.windowID;
        break;
    default:
        return;
    }
    if (HostWindowSDL* window = findWindow(windowId))
        window->handleEvent(event);
}

} // namespace Native
} // namespace UI
