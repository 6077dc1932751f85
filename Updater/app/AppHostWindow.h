#pragma once

#include "Canvas/UI/Native/HostWindowStyle.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"

namespace UI
{
class Canvas;
namespace Native
{
class HostWindow;
}

/// The client rect of a window of `size` centred on the main monitor, in the monitor's own
/// coordinates (its origin is not added): x = (W - w) / 2, y = (H - h) / 2, rounding toward
/// zero. A screen smaller than the window gives a negative corner. Without a monitor the
/// window is placed at the origin.
Rect CenteredOnMainMonitor(Size const& size);

/// The updater's window style: titled, with a close box, minimisable and resizable.
Native::HostWindowStyle UpdaterWindowStyle();

/// Builds the native window of `host` from `clientRect`: turns it into a window rect, creates
/// it at the place the settings remember (trimmed to the screen), makes it the application's
/// main window handle and shows it unless `startHidden`. Gives the frame a caption and makes it
/// the canvas's current and active frame. False when the platform can make no window.
bool CreateApplicationHostWindow(Native::HostWindow* host, Canvas* canvas, String const& name,
                                 Rect const& clientRect, String const& caption,
                                 Native::HostWindowStyle const& style, bool startHidden);

/// Starts the host's master update timer of `host` and lets its frame draw.
void StartApplicationTimer(Native::HostWindow* host, unsigned int periodMillis);

} // namespace UI
