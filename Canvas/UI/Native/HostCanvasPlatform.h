#pragma once

#include "Canvas/UI/CanvasPlatform.h"

#include <memory>

namespace UI
{

class Canvas;

namespace Native
{

class HostWindow;

/// What the canvas asks of the desktop, answered through the platform factory: ticks, the mouse,
/// the windows under it, monitors, and the borderless pop-up host window "ToolTip HostWindow"
/// in which tool tips show. Install one per canvas with `UI::Canvas::SetPlatform`.
class HostCanvasPlatform : public CanvasPlatform
{
public:
    explicit HostCanvasPlatform(Canvas* canvas);
    /// Takes the tool-tip host window down.
    ~HostCanvasPlatform() override;

    HostCanvasPlatform(HostCanvasPlatform const&) = delete;
    HostCanvasPlatform& operator=(HostCanvasPlatform const&) = delete;

    unsigned int GetTickCount() override;
    Point GetCursorScreenPos() override;
    void* GetWindowBeneathPoint(Point const& screenPoint) override;
    void* GetTopLevelActiveWindow() override;
    Rect TrimToMonitorScreenRect(Rect const& screenRect) override;
    Frame* GetToolTipFrame() override;
    void ShowToolTipHost(Rect const& screenRect) override;
    void HideToolTipHost() override;

    /// The tool-tip host window once made; null before.
    HostWindow* GetToolTipHost() const { return toolTipHost.get(); }

private:
    Canvas* canvas;
    std::unique_ptr<HostWindow> toolTipHost;
    bool toolTipHostFailed = false;
};

} // namespace Native
} // namespace UI
