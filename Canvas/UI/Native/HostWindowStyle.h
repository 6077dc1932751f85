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

    bool IsResizable() const { return !noFrame && (resizable || zoomable); }
};

} // namespace Native
} // namespace UI
