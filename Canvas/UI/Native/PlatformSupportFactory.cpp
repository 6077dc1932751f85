#include "Canvas/UI/Native/PlatformSupportFactory.h"

#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/SDL/PlatformSupportFactorySDL.h"

#include <algorithm>

namespace UI
{
namespace Native
{

namespace
{
// Set at start-up or by tests, on the main thread.
PlatformSupportFactory::Impl* overridden = nullptr;
// Main thread only, like the run loop that calls it.
std::function<void()> quitRequestHandler;
} // namespace

void PlatformSupportFactory::overrideImpl(Impl* impl)
{
    overridden = impl;
}

PlatformSupportFactory::Impl& PlatformSupportFactory::GetImpl()
{
    if (overridden)
        return *overridden;
    return PlatformSupportFactorySDL::Get();
}

HostWindow* PlatformSupportFactory::CreateHostWindow(Canvas* canvas, String const& name,
                                                     Frame* frame, Util::ConfigFile* config)
{
    return GetImpl().CreateHostWindow(canvas, name, frame, config);
}

void PlatformSupportFactory::ConfigurePopupWindow(HostWindow* window)
{
    GetImpl().ConfigurePopupWindow(window);
}

Rect PlatformSupportFactory::ConvertClientToWindowRect(Rect const& client, bool hasMenu,
                                                       HostWindowStyle const& style,
                                                       String const& name)
{
    return GetImpl().ConvertClientToWindowRect(client, hasMenu, style, name);
}

Rect PlatformSupportFactory::ConvertWindowToClientRect(Rect const& window, bool hasMenu,
                                                       HostWindowStyle const& style,
                                                       String const& name)
{
    return GetImpl().ConvertWindowToClientRect(window, hasMenu, style, name);
}

Rect PlatformSupportFactory::ScreenRectForWindowHandle(void* handle)
{
    return GetImpl().ScreenRectForWindowHandle(handle);
}

HostWindow* PlatformSupportFactory::GetWindowBeneathPoint(Point const& screenPoint)
{
    return GetImpl().GetWindowBeneathPoint(screenPoint);
}

HostWindow* PlatformSupportFactory::GetTopLevelActiveWindow()
{
    return GetImpl().GetTopLevelActiveWindow();
}

bool PlatformSupportFactory::IsWindowHoldingFocus(void* handle)
{
    return GetImpl().IsWindowHoldingFocus(handle);
}

void PlatformSupportFactory::SetNativeFocus(void* handle)
{
    GetImpl().SetNativeFocus(handle);
}

Point PlatformSupportFactory::CanvasScreenLocation(Frame* frame)
{
    return frame ? frame->GetScreenPos() : Point();
}

Point PlatformSupportFactory::CursorLocation()
{
    return GetImpl().CursorLocation();
}

std::vector<Rect> PlatformSupportFactory::GetMonitorScreenRects()
{
    return GetImpl().GetMonitorScreenRects();
}

void PlatformSupportFactory::PostUIMessage(UIMessageReceiver* receiver, HostWindow* window,
                                           unsigned int message, unsigned int wParam,
                                           unsigned long lParam)
{
    GetImpl().PostUIMessage(receiver, window, message, wParam, lParam);
}

void PlatformSupportFactory::SendBlockingUIMessage(UIMessageReceiver* receiver, HostWindow* window,
                                                   unsigned int message, unsigned int wParam,
                                                   unsigned long lParam)
{
    GetImpl().SendBlockingUIMessage(receiver, window, message, wParam, lParam);
}

bool PlatformSupportFactory::IsCtrlPressed()
{
    return GetImpl().IsCtrlPressed();
}

bool PlatformSupportFactory::IsShiftPressed()
{
    return GetImpl().IsShiftPressed();
}

bool PlatformSupportFactory::IsShiftPressedOutsideOfEventStream()
{
    return GetImpl().IsShiftPressedOutsideOfEventStream();
}

bool PlatformSupportFactory::IsAltPressed()
{
    return GetImpl().IsAltPressed();
}

bool PlatformSupportFactory::IsCommandPressed()
{
    return GetImpl().IsCommandPressed();
}

bool PlatformSupportFactory::IsCapsLockOn()
{
    return GetImpl().IsCapsLockOn();
}

bool PlatformSupportFactory::IsScrollLockPressed()
{
    return GetImpl().IsScrollLockPressed();
}

boost::shared_ptr<void> PlatformSupportFactory::CreateCursor(Cursor::Picture const& picture)
{
    return GetImpl().CreateCursor(picture);
}

void PlatformSupportFactory::SetCurrentCursor(Cursor const& cursor)
{
    GetImpl().SetCurrentCursor(cursor);
}

void PlatformSupportFactory::DrawDIBSection(boost::shared_ptr<DIBSection> const& section,
                                            void* nativeHandle, CGColorSpace* colorSpace,
                                            Point const& nativeWindowOffset, Rect const& rect,
                                            Point const& destination, Rect const& nativeClipExclude)
{
    GetImpl().DrawDIBSection(section, nativeHandle, colorSpace, nativeWindowOffset, rect,
                             destination, nativeClipExclude);
}

void PlatformSupportFactory::RunEventLoop()
{
    GetImpl().RunEventLoop();
}

void PlatformSupportFactory::QuitEventLoop()
{
    GetImpl().QuitEventLoop();
}

bool PlatformSupportFactory::IsEventLoopQuitting()
{
    return GetImpl().IsEventLoopQuitting();
}

bool PlatformSupportFactory::OpenDisplay(String& reason)
{
    return GetImpl().OpenDisplay(reason);
}

void PlatformSupportFactory::RequestQuit()
{
    if (quitRequestHandler)
        quitRequestHandler();
    else
        QuitEventLoop();
}

void PlatformSupportFactory::SetQuitRequestHandler(std::function<void()> const& handler)
{
    quitRequestHandler = handler;
}

void PlatformSupportFactory::ProcessEvents(unsigned int maxWaitMs)
{
    GetImpl().ProcessEvents(maxWaitMs);
}

void MessageOK(String const& title, String const& text)
{
    PlatformSupportFactory::GetImpl().MessageOK(title, text);
}

} // namespace Native

Rect TrimToMonitorScreenRect(Rect const& rect)
{
    std::vector<Rect> monitors = Native::PlatformSupportFactory::GetMonitorScreenRects();
    if (monitors.empty() || rect.IsEmpty())
        return rect;
    // The monitor that holds most of the rect; the main one when it touches none.
    Rect screen = monitors[0];
    long long best = 0;
    for (Rect const& m : monitors)
    {
        Rect overlap = m & rect;
        long long area =
            overlap.IsEmpty() ? 0 : static_cast<long long>(overlap.Width()) * overlap.Height();
        if (area > best)
        {
            best = area;
            screen = m;
        }
    }
    int width = std::min(rect.Width(), screen.Width());
    int height = std::min(rect.Height(), screen.Height());
    int left = std::clamp(rect.left, screen.left, screen.right + 1 - width);
    int top = std::clamp(rect.top, screen.top, screen.bottom + 1 - height);
    return Rect(Point(left, top), Size(width, height));
}

} // namespace UI
