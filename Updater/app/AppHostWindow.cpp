#include "Updater/app/AppHostWindow.h"

#include "Updater/app/Application.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"

#include <vector>

namespace UI
{

Rect CenteredOnMainMonitor(Size const& size)
{
    std::vector<Rect> const monitors = Native::PlatformSupportFactory::GetMonitorScreenRects();
    int x = 0;
    int y = 0;
    if (!monitors.empty())
    {
        x = (monitors.front().Width() - size.width) / 2;
        y = (monitors.front().Height() - size.height) / 2;
    }
    return Rect(x, x + size.width - 1, y, y + size.height - 1);
}

Native::HostWindowStyle UpdaterWindowStyle()
{
    Native::HostWindowStyle style;
    style.systemButtons = true;
    style.minimizable = true;
    style.resizable = true;
    return style;
}

bool CreateApplicationHostWindow(Native::HostWindow* host, Canvas* canvas, String const& name,
                                 Rect const& clientRect, String const& caption,
                                 Native::HostWindowStyle const& style, bool startHidden)
{
    Rect const windowRect =
        Native::PlatformSupportFactory::ConvertClientToWindowRect(clientRect, false, style, name);
    if (!host->CreateSerialized(nullptr, nullptr, name, windowRect, false, false, style, false,
                                true))
        return false;
    host->SetCaption(caption, false);
    if (Application::g_pInstance)
        Application::g_pInstance->SetMainWindowHandle(host->GetNativeHandle());
    if (!startHidden)
        host->Show(true);
    canvas->SetCurrentFrame(host->GetFrame());
    canvas->SetActiveFrame(host->GetFrame());
    return true;
}

void StartApplicationTimer(Native::HostWindow* host, unsigned int periodMillis)
{
    host->StartMasterUpdateTimer(periodMillis);
    host->GetFrame()->SetDrawingEnabled(true);
}

} // namespace UI
