#pragma once

#include "Canvas/UI/Rect.h"

namespace UI
{

class Frame;

/// What the canvas asks of the desktop for its tool tips and the active window: the clock, the
/// cursor, the native window under a point, the monitor, and the host window that shows tips.
/// A narrow door that the host layer implements; without one the canvas shows no tips and knows
/// no native windows. Every call is made on the UI thread.
class CanvasPlatform
{
public:
    virtual ~CanvasPlatform() = default;

    /// A millisecond tick; it may wrap, differences are taken in unsigned arithmetic.
    virtual unsigned int GetTickCount() = 0;
    /// The mouse in screen coordinates.
    virtual Point GetCursorScreenPos() = 0;
    /// The native window under `screenPoint`, or null.
    virtual void* GetWindowBeneathPoint(Point const& screenPoint) = 0;
    /// The native window that the desktop calls active, or null.
    virtual void* GetTopLevelActiveWindow() = 0;
    /// `screenRect` moved (and cut, when larger) so that it lies on the monitor it is on most.
    virtual Rect TrimToMonitorScreenRect(Rect const& screenRect) = 0;

    /// The frame of the host window "ToolTip HostWindow" (no owner, drawing enabled, design
    /// disabled, never activated), made on first call and owned here; null when it can't be made.
    virtual Frame* GetToolTipFrame() = 0;
    /// Moves the tool-tip host window to `screenRect` and shows it without activating it.
    virtual void ShowToolTipHost(Rect const& screenRect) = 0;
    virtual void HideToolTipHost() = 0;
};

} // namespace UI
