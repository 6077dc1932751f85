#pragma once

namespace UI
{
namespace Native
{

/// How a host window looks. With `noFrame` every other flag is ignored: no title bar, no
/// borders, no buttons.
struct HostWindowStyle
{
    bool noFrame = false;
    /// A small utility panel (a tool window) rather than a document window.
    bool utilityPanel = false;
    bool resizable = false;
    bool minimizable = false;
    /// Can be maximised; implies resizable.
    bool zoomable = false;
    /// Close and minimise buttons.
    bool systemButtons = false;
    /// A tool tip: no frame, above the other windows, never takes the focus and has no entry in
    /// the task bar.
    bool toolTip = false;

    bool IsResizable() const { return !noFrame && !toolTip && (resizable || zoomable); }
};

} // namespace Native
} // namespace UI
