// UI::Native::HostWindowSDL: one host window as one SDL window.
//
// Index:
//   construction and creation
//   what the frame calls
//   geometry
//   showing, ordering, full screen
//   closing and destroying
//   pixels
//   events

#include "Canvas/UI/Native/SDL/HostWindowSDL.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CanvasUICodeToken.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Native/SDL/PlatformSupportFactorySDL.h"
#include "Canvas/UI/Native/SDL/detail/KeyMapSDL.h"
#include "Canvas/UI/Native/SDL/detail/WindowPositionX11.h"
#include "Canvas/UI/TestAutomationInterface.h"

#include <SDL.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace UI
{
namespace Native
{

namespace
{

PlatformSupportFactorySDL& factory()
{
    return PlatformSupportFactorySDL::Get();
}

Uint32 sdlFlagsFor(HostWindowStyle const& style)
{
    Uint32 flags = SDL_WINDOW_HIDDEN;
    // SDL makes a tool tip a window that the window manager leaves alone: it takes no focus.
    if (style.toolTip)
        return flags | SDL_WINDOW_TOOLTIP | SDL_WINDOW_BORDERLESS | SDL_WINDOW_SKIP_TASKBAR |
               SDL_WINDOW_ALWAYS_ON_TOP;
    if (style.noFrame)
        return flags | SDL_WINDOW_BORDERLESS;
    if (style.utilityPanel)
        flags |= SDL_WINDOW_UTILITY;
    if (style.IsResizable())
        flags |= SDL_WINDOW_RESIZABLE;
    return flags;
}

/// Whether TV_TRACE_PRESENT is set to something other than "" or "0"; read once per process.
bool tracePresent()
{
    static bool const on = []
    {
        char const* value = std::getenv("TV_TRACE_PRESENT");
        return value && *value && std::strcmp(value, "0") != 0;
    }();
    return on;
}

} // namespace

// ============================================================================================
// construction and creation
// ============================================================================================

HostWindowSDL::HostWindowSDL(Canvas* canvas, String const& name, Frame* frame,
                             Util::ConfigFile* config)
    : HostWindow(canvas, name, frame, config)
{
}

HostWindowSDL::~HostWindowSDL()
{
    if (window)
        destroy(true);
}

bool HostWindowSDL::create(void* parent, void*, String const& text)
{
    if (!factory().EnsureVideo())
        return false;
    caption = text;
    Rect client =
        PlatformSupportFactory::ConvertWindowToClientRect(windowRect, false, style, windowName);
    client = clampToLimits(client);
    if (client.Width() < 1 || client.Height() < 1)
        client =
            Rect(client.TopLeft(), Size(std::max(client.Width(), 1), std::max(client.Height(), 1)));
    // A window manager puts a new window's frame, not its inside, where the window asks to be;
    // without one the two are the same.
    window = SDL_CreateWindow(text.CStr(), windowRect.left, windowRect.top, client.Width(),
                              client.Height(), sdlFlagsFor(style));
    if (!window)
        return false;
    windowId = SDL_GetWindowID(window);
    nativeHandle = window;
    // A window with a parent (a box of the program's main window) stays tied to it: the window
    // manager keeps it above its parent and out of the task bar.
    if (parent)
        SDL_SetWindowModalFor(window, static_cast<SDL_Window*>(parent));
    if (style.toolTip)
        topMost = true;
    ownsTopLevel = true;
    factory().registerWindow(this);
    wantedWindowSize = windowRect.GetSize();
    fitFrameOnShow = restoredFromSettings && !style.noFrame;
    updateClientRect();
    updateWindowRect();
    restoredRect = windowRect;
    if (frame)
        frame->SetDrawRect(Rect(0, clientRect.Width() - 1, 0, clientRect.Height() - 1));
    return true;
}

void HostWindowSDL::applySizeLimits()
{
    if (!window)
        return;
    SDL_SetWindowMinimumSize(window, minClientWidth ? std::max(*minClientWidth, 1) : 1,
                             minClientHeight ? std::max(*minClientHeight, 1) : 1);
    // 0 would be refused by SDL: "no maximum" is a very large one.
    int const none = 16384;
    SDL_SetWindowMaximumSize(window, maxClientWidth ? std::max(*maxClientWidth, 1) : none,
                             maxClientHeight ? std::max(*maxClientHeight, 1) : none);
}

// ============================================================================================
// what the frame calls
// ============================================================================================

void HostWindowSDL::PostUpdateMessage()
{
    // Coalesced: one update in the queue at a time.
    if (!window || updatePosted)
        return;
    updatePosted = true;
    factory().postWindowRequest(this, false);
}

void HostWindowSDL::InvalidateRect(Rect)
{
    // The surface has no dirty state of its own: the frame's update brings the pixels.
}

Point HostWindowSDL::GetScreenPos()
{
    // The window manager may have moved the inside into its frame since the last event.
    updateClientRect();
    updateWindowRect();
    return clientRect.TopLeft();
}

bool HostWindowSDL::IsHoldingFocus()
{
    return factory().IsWindowHoldingFocus(window);
}

void HostWindowSDL::SetNativeFocus()
{
    factory().SetNativeFocus(window);
}

void HostWindowSDL::SetCurrentCursor(Cursor const& cursor)
{
    factory().SetCurrentCursor(cursor);
}

Point HostWindowSDL::GetCursorScreenPos()
{
    return factory().CursorLocation();
}

bool HostWindowSDL::IsCapsLockOn()
{
    return factory().IsCapsLockOn();
}

bool HostWindowSDL::IsBeneathCursor()
{
    return window && visible && GetContainingWindowGeometry().Contains(GetCursorScreenPos());
}

void HostWindowSDL::SetCaption(String const& text, bool)
{
    caption = text;
    if (window)
        SDL_SetWindowTitle(window, text.CStr());
}

void HostWindowSDL::SetResizable(bool resizable, bool zoomable)
{
    style.resizable = resizable;
    style.zoomable = zoomable;
    if (window)
        SDL_SetWindowResizable(window, style.IsResizable() ? SDL_TRUE : SDL_FALSE);
}

void HostWindowSDL::SetTopMost(bool on, bool activate)
{
    topMost = on;
    if (!window)
        return;
    SDL_SetWindowAlwaysOnTop(window, on ? SDL_TRUE : SDL_FALSE);
    if (activate)
        Raise(true, true);
}

unsigned int HostWindowSDL::GetDisplayRefreshFrequency()
{
    SDL_DisplayMode mode;
    if (window && SDL_GetWindowDisplayMode(window, &mode) == 0 && mode.refresh_rate > 0)
        return static_cast<unsigned int>(mode.refresh_rate);
    return 60;
}

// ============================================================================================
// geometry
// ============================================================================================

Rect HostWindowSDL::borders() const
{
    int top = 0, left = 0, bottom = 0, right = 0;
    if (window && !style.noFrame)
        SDL_GetWindowBordersSize(window, &top, &left, &bottom, &right);
    return Rect(left, right, top, bottom);
}

Rect HostWindowSDL::readClientRect() const
{
    int x = 0, y = 0, w = 0, h = 0;
    if (!detail::ReadX11ClientPosition(window, x, y))
        SDL_GetWindowPosition(window, &x, &y);
    SDL_GetWindowSize(window, &w, &h);
    return Rect(Point(x, y), Size(w, h));
}

void HostWindowSDL::updateClientRect()
{
    if (window)
        clientRect = readClientRect();
}

void HostWindowSDL::updateWindowRect()
{
    if (!window)
        return;
    Rect b = borders();
    windowRect = Rect(clientRect.left - b.left, clientRect.right + b.right, clientRect.top - b.top,
                      clientRect.bottom + b.bottom);
    if (!IsMaximized() && !fullScreen)
        restoredRect = windowRect;
}

void HostWindowSDL::SetGeometry(int x, int y, int width, int height)
{
    if (!window || width < 1 || height < 1 || !ownsTopLevel)
        return;
    Rect wanted(Point(x, y), Size(width, height));
    if (wanted == windowRect)
        return;
    // Larger than the main screen: cut to it, at its edge.
    std::vector<Rect> screens = factory().GetMonitorScreenRects();
    if (!screens.empty())
    {
        Rect const& screen = screens[0];
        if (wanted.Width() > screen.Width())
            wanted = Rect(Point(screen.left, wanted.top), Size(screen.Width(), wanted.Height()));
        if (wanted.Height() > screen.Height())
            wanted = Rect(Point(wanted.left, screen.top), Size(wanted.Width(), screen.Height()));
    }
    if (fitFrameOnShow)
        wantedWindowSize = wanted.GetSize();
    Rect b = borders();
    Rect client(wanted.left + b.left, wanted.right - b.right, wanted.top + b.top,
                wanted.bottom - b.bottom);
    client = clampToLimits(client);
    SDL_SetWindowPosition(window, client.left, client.top);
    SDL_SetWindowSize(window, std::max(client.Width(), 1), std::max(client.Height(), 1));
    updateClientRect();
    updateWindowRect();
    if (frame)
        frame->SetDrawRect(Rect(0, clientRect.Width() - 1, 0, clientRect.Height() - 1));
}

Rect HostWindowSDL::GetContainingWindowGeometry()
{
    return windowRect;
}

Rect HostWindowSDL::GetNonMaximizedGeometry()
{
    return (IsMaximized() || fullScreen) ? restoredRect : windowRect;
}

Point HostWindowSDL::GetTopLevelScreenPos()
{
    return windowRect.TopLeft();
}

bool HostWindowSDL::IsMaximized()
{
    return window && (SDL_GetWindowFlags(window) & SDL_WINDOW_MAXIMIZED);
}

void HostWindowSDL::SetMaximized(bool maximized)
{
    if (!window)
        return;
    if (maximized)
        SDL_MaximizeWindow(window);
    else
        SDL_RestoreWindow(window);
}

void HostWindowSDL::Minimize()
{
    if (window)
        SDL_MinimizeWindow(window);
}

// ============================================================================================
// showing, ordering, full screen
// ============================================================================================

void HostWindowSDL::Show(bool activate)
{
    if (!window || !ownsTopLevel || visible)
        return;
    SDL_SetWindowAlwaysOnTop(window, topMost ? SDL_TRUE : SDL_FALSE);
    SDL_ShowWindow(window);
    if (activate && !style.toolTip)
    {
        SDL_RaiseWindow(window);
        SDL_SetWindowInputFocus(window);
    }
    factory().noteRaised(this);
    visible = true;
    // The window may have been placed by the window manager meanwhile.
    updateClientRect();
    updateWindowRect();
    fitFrame();
    TestAutomationInterface::SendHostWindow("Show", windowName, window);
}

void HostWindowSDL::fitFrame()
{
    // Restored from the settings before the window manager told its frame, the window took the
    // whole saved rect as its inside. Now that the frame is known, the inside shrinks so that
    // the window, frame included, is the saved rect: what is saved at the end is then what was
    // restored, run after run.
    if (!fitFrameOnShow || fullScreen || IsMaximized())
        return;
    Rect const b = borders();
    if (b.left == 0 && b.right == 0 && b.top == 0 && b.bottom == 0)
        return;
    fitFrameOnShow = false;
    Rect client =
        clampToLimits(Rect(clientRect.TopLeft(), Size(wantedWindowSize.width - b.left - b.right,
                                                      wantedWindowSize.height - b.top - b.bottom)));
    if (client.GetSize() == clientRect.GetSize() || client.Width() < 1 || client.Height() < 1)
        return;
    SDL_SetWindowSize(window, client.Width(), client.Height());
    updateClientRect();
    updateWindowRect();
    if (frame)
        frame->SetDrawRect(Rect(0, clientRect.Width() - 1, 0, clientRect.Height() - 1));
}

void HostWindowSDL::Hide()
{
    if (!window || !visible)
        return;
    SDL_HideWindow(window);
    visible = false;
    TestAutomationInterface::SendHostWindow("Hide", windowName, window);
}

void HostWindowSDL::Raise(bool activate, bool)
{
    // A tool tip is above the others already, and raising would hand it the focus.
    if (!window || (style.toolTip && !activate))
        return;
    // SDL brings a window to the front only together with the focus.
    SDL_RaiseWindow(window);
    if (activate)
        SDL_SetWindowInputFocus(window);
    factory().noteRaised(this);
}

void HostWindowSDL::Lower(bool, bool)
{
    // SDL cannot send a window behind the others; lowering is left to the window manager.
}

bool HostWindowSDL::IsActive()
{
    return IsHoldingFocus();
}

void HostWindowSDL::ToggleFullScreen()
{
    if (!window)
        return;
    bool const entering = !fullScreen;
    if (SDL_SetWindowFullscreen(window, entering ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0) != 0)
        return;
    fullScreen = entering;
    updateClientRect();
    if (frame)
        frame->SetDrawRect(Rect(0, clientRect.Width() - 1, 0, clientRect.Height() - 1));
    if (entering && frame)
        frame->HandleMouseEnter();
    signalFullScreenChange();
}

bool HostWindowSDL::IsFullScreen()
{
    return fullScreen;
}

// ============================================================================================
// closing and destroying
// ============================================================================================

void HostWindowSDL::Close()
{
    if (!window)
        return;
    closing = true;
    signalClose(this);
    if (window)
        destroy(true);
}

void HostWindowSDL::PostClose()
{
    if (!window || closePosted)
        return;
    closePosted = true;
    closing = true;
    factory().postWindowRequest(this, true);
}

void HostWindowSDL::handlePostedClose()
{
    closePosted = false;
    Close();
}

void HostWindowSDL::userClose()
{
    if (handleCloseRequest())
        destroy(true);
}

void HostWindowSDL::destroy(bool closeNative)
{
    if (!window || windowBeingDestroyed)
        return;
    windowBeingDestroyed = true;
    preDestroy();
    factory().unregisterWindow(this);
    SDL_HideWindow(window);
    if (closeNative)
        SDL_DestroyWindow(window);
    TestAutomationInterface::SendHostWindow("Destroy", windowName, window);
    window = nullptr;
    windowId = 0;
    nativeHandle = nullptr;
    updatePosted = false;
    windowBeingDestroyed = false;
}

// ============================================================================================
// pixels
// ============================================================================================

void HostWindowSDL::present(unsigned int const* pixels, int stride, Size const& bitmapSize,
                            Rect const& rect, Point const& destination)
{
    if (!window)
        return;
    SDL_Surface* surface = SDL_GetWindowSurface(window);
    if (!surface)
        return;
    // Both the source and the destination must lie inside their bitmaps.
    Rect src = rect & Rect(0, bitmapSize.width - 1, 0, bitmapSize.height - 1);
    Point const shift = destination - rect.TopLeft();
    Rect dst = src.Offset(shift) & Rect(0, surface->w - 1, 0, surface->h - 1);
    if (dst.IsEmpty())
        return;
    src = dst.Offset(-shift.x, -shift.y);
    if (SDL_MUSTLOCK(surface) && SDL_LockSurface(surface) != 0)
        return;
    unsigned char* target = static_cast<unsigned char*>(surface->pixels) +
                            static_cast<long>(dst.top) * surface->pitch +
                            static_cast<long>(dst.left) * surface->format->BytesPerPixel;
    unsigned int const* from = pixels + static_cast<long>(src.top) * stride + src.left;
    SDL_ConvertPixels(dst.Width(), dst.Height(), SDL_PIXELFORMAT_ARGB8888, from, stride * 4,
                      surface->format->format, target, surface->pitch);
    if (SDL_MUSTLOCK(surface))
        SDL_UnlockSurface(surface);
    SDL_Rect r = {dst.left, dst.top, dst.Width(), dst.Height()};
    SDL_UpdateWindowSurfaceRects(window, &r, 1);
    // Start-up is timed from outside against the same clock; pixels of a hidden window are not
    // on the screen yet and don't count.
    if (tracePresent() && !presentTraced && (SDL_GetWindowFlags(window) & SDL_WINDOW_SHOWN))
    {
        presentTraced = true;
        timespec now;
        clock_gettime(CLOCK_MONOTONIC, &now);
        // Whole numbers, so that the decimal point doesn't follow the user's locale.
        std::fprintf(stderr, "present %s %lld.%03ld\n", windowName.CStr(),
                     static_cast<long long>(now.tv_sec) * 1000 + now.tv_nsec / 1000000,
                     (now.tv_nsec / 1000) % 1000);
    }
}

// ============================================================================================
// events
// ============================================================================================

void HostWindowSDL::handleUpdate()
{
    updatePosted = false;
    if (!frame || !window)
        return;
    CanvasUICodeTokenSentry sentry(token.get());
    frame->HandleUpdateMessage();
}

void HostWindowSDL::handleResize(int width, int height)
{
    updateClientRect();
    updateWindowRect();
    if (frame)
        frame->SetDrawRect(Rect(0, width - 1, 0, height - 1));
    signalResized();
}

void HostWindowSDL::handleWindowEvent(SDL_Event const& event)
{
    switch (event.window.event)
    {
    case SDL_WINDOWEVENT_CLOSE:
        userClose();
        break;
    case SDL_WINDOWEVENT_ENTER:
        if (frame)
            frame->HandleMouseEnter();
        break;
    case SDL_WINDOWEVENT_LEAVE:
        if (frame)
            frame->HandleMouseExit();
        break;
    case SDL_WINDOWEVENT_FOCUS_GAINED:
        if (canvas && frame)
            canvas->SetActiveFrame(frame);
        if (frame)
            frame->HandleReceiveFocus();
        signalActivated();
        break;
    case SDL_WINDOWEVENT_FOCUS_LOST:
        if (frame)
            frame->HandleLoseFocus();
        signalDeactivated();
        break;
    case SDL_WINDOWEVENT_SIZE_CHANGED:
        handleResize(event.window.data1, event.window.data2);
        break;
    case SDL_WINDOWEVENT_MOVED:
        updateClientRect();
        updateWindowRect();
        fitFrame();
        signalMoved();
        break;
    case SDL_WINDOWEVENT_EXPOSED:
        // The surface may have lost its pixels: the whole bitmap again, at once. The frame keeps
        // the exposed region listed, and the update posted here draws it once more.
        if (frame && frame->IsDrawingEnabled())
        {
            frame->NativeDraw(frame->GetDrawRect(), nullptr);
            PostUpdateMessage();
        }
        break;
    case SDL_WINDOWEVENT_MINIMIZED:
        signalMinimized();
        break;
    case SDL_WINDOWEVENT_MAXIMIZED:
        updateClientRect();
        updateWindowRect();
        break;
    case SDL_WINDOWEVENT_RESTORED:
        updateClientRect();
        updateWindowRect();
        signalRestored();
        break;
    case SDL_WINDOWEVENT_SHOWN:
        visible = true;
        break;
    case SDL_WINDOWEVENT_HIDDEN:
        visible = false;
        break;
    case SDL_WINDOWEVENT_DISPLAY_CHANGED:
        signalDisplayChanged();
        break;
    default:
        break;
    }
}

void HostWindowSDL::handleEvent(SDL_Event const& event)
{
    CanvasUICodeTokenSentry sentry(token.get());
    if (event.type == SDL_WINDOWEVENT)
    {
        handleWindowEvent(event);
        return;
    }
    if (!frame)
        return;
    unsigned int const mods = detail::ModifierFlags(static_cast<Uint16>(SDL_GetModState()));
    switch (event.type)
    {
    case SDL_MOUSEMOTION:
    {
        unsigned int const flags = mods | detail::ButtonFlags(event.motion.state);
        frame->HandleMouseMessage(MouseMove, Point(event.motion.x, event.motion.y), flags, 0);
        break;
    }
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
    {
        bool const down = event.type == SDL_MOUSEBUTTONDOWN;
        bool const left = event.button.button == SDL_BUTTON_LEFT;
        if (!left && event.button.button != SDL_BUTTON_RIGHT)
            break;
        MouseMessage message;
        if (left)
            message = !down ? MouseLeftRelease
                            : (event.button.clicks == 2 ? MouseLeftDoubleClick : MouseLeftPress);
        else
            message = !down ? MouseRightRelease
                            : (event.button.clicks == 2 ? MouseRightDoubleClick : MouseRightPress);
        unsigned int const flags = mods | detail::ButtonFlags(SDL_GetMouseState(nullptr, nullptr));
        frame->HandleMouseMessage(message, Point(event.button.x, event.button.y), flags, 0);
        break;
    }
    case SDL_MOUSEWHEEL:
    {
        int x = 0, y = 0;
        Uint32 const buttons = SDL_GetMouseState(&x, &y);
        // The toolkit counts 120 units a notch, positive away from the user, as SDL's y is.
        int delta = event.wheel.y * 120;
        if (event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED)
            delta = -delta;
        if (delta != 0)
            frame->HandleMouseMessage(MouseWheel, Point(x, y), mods | detail::ButtonFlags(buttons),
                                      delta);
        break;
    }
    case SDL_KEYDOWN:
    case SDL_KEYUP:
    {
        unsigned int const code = detail::KeyCodeForKeySym(event.key.keysym.sym);
        if (code == 0)
            break;
        unsigned short const c = detail::HostCharacterForKeySym(event.key.keysym.sym);
        char const character = c < 128 ? static_cast<char>(c) : 0;
        unsigned int const flags = detail::ModifierFlags(event.key.keysym.mod);
        if (event.type == SDL_KEYDOWN)
            frame->HandleKeyboardMessage(KeyPress, code, character, flags, event.key.repeat != 0);
        else
            frame->HandleKeyboardMessage(KeyRelease, code, character, flags, false);
        break;
    }
    case SDL_TEXTINPUT:
    {
        // The typed text, byte by byte as UTF-8; the key code is that of the first character.
        char const* text = event.text.text;
        unsigned int const code =
            KeyCode::GetKeycodeForUnicodeChar(static_cast<unsigned char>(text[0]));
        for (char const* p = text; *p; ++p)
            frame->HandleKeyboardMessage(KeyCharacter, code, *p, mods, false);
        break;
    }
    default:
        break;
    }
}

} // namespace Native
} // namespace UI
