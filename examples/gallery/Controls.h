#pragma once

// The gallery's "Controls" page: every parameter control bound to a parameter of the page, each
// with a live readout, and a button that opens the colour picker. It lives in a host window of
// its own, "Gallery Controls", beside the gallery.

#include "TvBase/Util/String.h"

#include <memory>

namespace UI
{
class Canvas;
namespace Native
{
class HostWindow;
}
} // namespace UI

namespace Gallery
{

class ControlsPanel;

/// The page's host window and the parameters its controls show. Not copyable.
class ControlsWindow
{
public:
    ControlsWindow(ControlsWindow const&) = delete;
    ControlsWindow& operator=(ControlsWindow const&) = delete;
    ~ControlsWindow();

    /// Opens the page beside `owner` (may be null); null when the host can't make its window.
    static std::unique_ptr<ControlsWindow> Open(UI::Canvas* canvas, UI::Native::HostWindow* owner);
    UI::Native::HostWindow* GetHost() const { return host.get(); }

private:
    ControlsWindow() = default;

    std::unique_ptr<UI::Native::HostWindow> host;
};

} // namespace Gallery
