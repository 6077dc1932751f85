#include "Canvas/UI/Native/HostCanvasPlatform.h"

#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "TvBase/Util/ProcessInfo.h"

namespace UI
{
namespace Native
{

HostCanvasPlatform::HostCanvasPlatform(Canvas* canvas) : canvas(canvas) {}

HostCanvasPlatform::~HostCanvasPlatform() = default;

unsigned int HostCanvasPlatform::GetTickCount()
{
    return static_cast<unsigned int>(Util::GetTickCountMillis());
}

Point HostCanvasPlatform::GetCursorScreenPos()
{
    return PlatformSupportFactory::CursorLocation();
}

void* HostCanvasPlatform::GetWindowBeneathPoint(Point const& screenPoint)
{
    HostWindow* window = PlatformSupportFactory::GetWindowBeneathPoint(screenPoint);
    return window ? window->GetNativeHandle() : nullptr;
}

void* HostCanvasPlatform::GetTopLevelActiveWindow()
{
    HostWindow* window = PlatformSupportFactory::GetTopLevelActiveWindow();
    return window ? window->GetNativeHandle() : nullptr;
}

Rect HostCanvasPlatform::TrimToMonitorScreenRect(Rect const& screenRect)
{
    return UI::TrimToMonitorScreenRect(screenRect);
}

Frame* HostCanvasPlatform::GetToolTipFrame()
{
    if (toolTipHost)
        return toolTipHost->GetFrame();
    if (toolTipHostFailed)
        return nullptr;
    String const name("ToolTip HostWindow");
    std::unique_ptr<HostWindow> host(
        PlatformSupportFactory::CreateHostWindow(canvas, name, nullptr, nullptr));
    HostWindowStyle style;
    style.noFrame = true;
    style.toolTip = true;
    if (!host ||
        !host->Create(nullptr, nullptr, name, Rect(Point(0, 0), Size(16, 16)), false, false, style))
    {
        // No display: the canvas then shows no tips at all, and asks no more.
        toolTipHostFailed = true;
        return nullptr;
    }
    PlatformSupportFactory::ConfigurePopupWindow(host.get());
    Frame* frame = host->GetFrame();
    frame->SetDrawingEnabled(true);
    frame->SetDesignDisable(true);
    toolTipHost = std::move(host);
    return frame;
}

void HostCanvasPlatform::ShowToolTipHost(Rect const& screenRect)
{
    if (!toolTipHost)
        return;
    toolTipHost->SetGeometry(screenRect.left, screenRect.top, screenRect.Width(),
                             screenRect.Height());
    toolTipHost->Show(false);
    toolTipHost->Raise(false, true);
}

void HostCanvasPlatform::HideToolTipHost()
{
    if (toolTipHost)
        toolTipHost->Hide();
}

} // namespace Native
} // namespace UI
