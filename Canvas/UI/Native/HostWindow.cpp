// UI::Native::HostWindow: the platform-independent half of a host window.
//
// Index:
//   construction
//   creating the native window
//   size limits
//   closing and destroying
//   master update timer

#include "Canvas/UI/Native/HostWindow.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CanvasUICodeToken.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/SimpleTimer.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "TvBase/Util/ConfigFile.h"

#include <algorithm>

namespace UI
{
namespace Native
{

namespace
{

String geometryKey(String const& windowName, char const* value)
{
    return String("%1/%2.%3").Arg("HostWindowGeometry").Arg(windowName).Arg(value);
}

} // namespace

// ============================================================================================
// construction
// ============================================================================================

HostWindow::HostWindow(String const& name) : Object(name), windowName(name) {}

HostWindow::HostWindow(Canvas* canvas, String const& name, Frame* givenFrame,
                       Util::ConfigFile* config)
    : Object(name), canvas(canvas), config(config), frame(givenFrame), windowName(name)
{
    if (canvas && canvas->GetUICodeToken())
    {
        // The canvas keeps its token in a shared pointer; the host window shares it without
        // owning a second count.
        token = boost::shared_ptr<CanvasUICodeToken>(canvas->GetUICodeToken(),
                                                     [](CanvasUICodeToken*) {});
    }
    if (!frame)
    {
        drawContext.reset(new MemoryDrawContext(String("%1 Context").Arg(name)));
        frame = new Frame(canvas, nullptr, drawContext.get(), Point(), String("%1 Frame").Arg(name),
                          Rect());
        ownsFrame = true;
    }
    frame->SetHostWindow(this);
}

HostWindow::~HostWindow()
{
    delete masterTimer;
    masterTimer = nullptr;
    if (ownsFrame)
        delete frame;
    else if (frame && frame->GetHostWindow() == this)
        frame->SetHostWindow(nullptr);
    frame = nullptr;
}

// ============================================================================================
// creating the native window
// ============================================================================================

bool HostWindow::Create(void* parent, void* child, String const& name, Rect const& rect, bool show,
                        bool activate, HostWindowStyle const& newStyle)
{
    if (nativeHandle)
        return false;
    style = newStyle;
    windowRect = rect;
    if (!create(parent, child, caption.IsEmpty() ? name : caption))
        return false;
    windowName = name;
    if (frame)
        frame->SetNativeWindowHandle(nativeHandle, frame->GetDrawContext());
    if (pendingMaximized)
        SetMaximized(true);
    pendingMaximized = false;
    if (show)
        Show(activate);
    applySizeLimits();
    return true;
}

bool HostWindow::CreateSerialized(void* parent, void* child, String const& name, Rect const& rect,
                                  bool show, bool activate, HostWindowStyle const& newStyle,
                                  bool fixedSize, bool trimToScreen)
{
    if (!frame || !config || nativeHandle)
        return Create(parent, child, name, rect, show, activate, newStyle);

    Rect r = rect;
    String text = config->GetString(geometryKey(name, "Geometry"), String(""));
    if (!text.IsEmpty())
    {
        checked_value<Rect> parsed = Rect::FromString(text);
        Rect const saved = parsed ? *parsed : Rect();
        if (parsed && saved.right >= saved.left && saved.bottom >= saved.top)
        {
            r = fixedSize ? Rect(saved.TopLeft(), rect.GetSize()) : saved;
            restoredFromSettings = true;
        }
    }
    if (!parent && trimToScreen)
    {
        Rect trimmed = TrimToMonitorScreenRect(r);
        r = fixedSize ? Rect(trimmed.TopLeft(), rect.GetSize()) : trimmed;
    }
    if (minClientWidth || minClientHeight || maxClientWidth || maxClientHeight)
    {
        Rect client = PlatformSupportFactory::ConvertWindowToClientRect(r, false, newStyle, name);
        Rect clamped = clampToLimits(client);
        if (clamped != client)
            r = PlatformSupportFactory::ConvertClientToWindowRect(clamped, false, newStyle, name);
    }
    pendingMaximized = !fixedSize && config->GetBool(geometryKey(name, "Maximized"), false);
    serialized = true;
    return Create(parent, child, name, r, show, activate, newStyle);
}

// ============================================================================================
// size limits
// ============================================================================================

void HostWindow::SetMinClientSize(checked_value<int> const& width, checked_value<int> const& height)
{
    minClientWidth = width;
    minClientHeight = height;
    if (nativeHandle)
        applySizeLimits();
}

void HostWindow::SetMaxClientSize(checked_value<int> const& width, checked_value<int> const& height)
{
    maxClientWidth = width;
    maxClientHeight = height;
    if (nativeHandle)
        applySizeLimits();
}

Rect HostWindow::clampToLimits(Rect const& client) const
{
    // Each limit moves the right or bottom edge; the top-left corner stays.
    Rect r = client;
    if (minClientWidth && r.Width() < *minClientWidth)
        r.right = r.left + *minClientWidth - 1;
    if (maxClientWidth && r.Width() > *maxClientWidth)
        r.right = r.left + *maxClientWidth - 1;
    if (minClientHeight && r.Height() < *minClientHeight)
        r.bottom = r.top + *minClientHeight - 1;
    if (maxClientHeight && r.Height() > *maxClientHeight)
        r.bottom = r.top + *maxClientHeight - 1;
    return r;
}

// ============================================================================================
// closing and destroying
// ============================================================================================

bool HostWindow::handleCloseRequest()
{
    CanvasUICodeTokenSentry sentry(token.get());
    closeVetoed = false;
    signalCloseRequest();
    if (closeVetoed)
        return false;
    closing = true;
    signalClose(this);
    return nativeHandle != nullptr && !windowBeingDestroyed;
}

void HostWindow::preDestroy()
{
    signalPreDestroy(this);
    // A full-screen window leaves the saved geometry as it was.
    if (serialized && config && nativeHandle && !IsFullScreen())
    {
        config->SetString(geometryKey(windowName, "Geometry"),
                          GetNonMaximizedGeometry().ToString());
        config->SetBool(geometryKey(windowName, "Maximized"), IsMaximized());
    }
    delete masterTimer;
    masterTimer = nullptr;
    removeDropTarget();
    visible = false;
    closing = false;
    if (frame)
        frame->SetNativeWindowHandle(nullptr, frame->GetDrawContext());
}

// ============================================================================================
// master update timer
// ============================================================================================

void HostWindow::StartMasterUpdateTimer(unsigned int periodMillis)
{
    if (!frame)
        return;
    masterPeriod = periodMillis;
    if (!masterTimer)
        masterTimer =
            new SimpleTimer([this] { TickMasterUpdateTimer(); }, periodMillis, false, token);
}

void HostWindow::SetMasterUpdateTimerInterval(unsigned int periodMillis)
{
    masterPeriod = periodMillis;
    if (masterTimer)
        masterTimer->SetInterval(periodMillis);
}

void HostWindow::SetMasterUpdateCallback(MasterUpdateCallback callback, void* argument)
{
    masterCallback = callback;
    masterArgument = argument;
}

void HostWindow::TickMasterUpdateTimer()
{
    if (ticking)
        return;
    {
        struct Guard
        {
            bool& flag;
            explicit Guard(bool& f) : flag(f) { flag = true; }
            ~Guard() { flag = false; }
        } guard(ticking);
        if (masterCallback && masterArgument)
            masterCallback(masterArgument);
        if (canvas)
            canvas->TickFrameTimers();
        else if (frame)
            frame->tickTimers();
    }
    // Last, and touching nothing of this host afterwards: a test driver's request may close
    // this very window.
    TestAutomationInterface::RequestCheck();
}

} // namespace Native
} // namespace UI
