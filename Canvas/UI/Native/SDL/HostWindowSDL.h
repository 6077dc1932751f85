#pragma once

#include "Canvas/UI/Native/HostWindow.h"

struct SDL_Window;
union SDL_Event;

namespace UI
{
namespace Native
{

/// A host window as one SDL window. The frame's bitmap reaches the window surface region by
/// region; SDL events arrive through `handleEvent`, called by the run loop of
/// `PlatformSupportFactorySDL`. The native handle is the `SDL_Window*`.
///
/// With the environment variable TV_TRACE_PRESENT set (to anything but "" or "0"), `present`
/// prints one line to stderr the first time the window's pixels go to the screen while it is
/// shown: "present <window name> <ms>", the time being CLOCK_MONOTONIC in milliseconds, so that
/// a script can time start-up against its own clock. Unset, it costs one cached flag test.
class HostWindowSDL : public HostWindow
{
public:
    HostWindowSDL(Canvas* canvas, String const& name, Frame* frame, Util::ConfigFile* config);
    /// Takes the native window down (saving its geometry) if it still exists.
    ~HostWindowSDL() override;

    void PostUpdateMessage() override;
    void InvalidateRect(Rect rect) override;
    CGColorSpace* GetColorSpace() override { return nullptr; }
    Point GetScreenPos() override;
    bool IsHoldingFocus() override;
    void SetNativeFocus() override;
    void SetCurrentCursor(Cursor const& cursor) override;
    Point GetCursorScreenPos() override;
    bool IsCapsLockOn() override;

    void Close() override;
    void PostClose() override;
    bool IsBeneathCursor() override;
    void SetCaption(String const& text, bool modified) override;
    void SetResizable(bool resizable, bool zoomable) override;
    void SetTopMost(bool topMost, bool activate) override;
    unsigned int GetDisplayRefreshFrequency() override;
    void SetGeometry(int x, int y, int width, int height) override;
    Rect GetContainingWindowGeometry() override;
    Rect GetNonMaximizedGeometry() override;
    Point GetTopLevelScreenPos() override;
    bool IsMaximized() override;
    void SetMaximized(bool maximized) override;
    void Minimize() override;
    void ToggleFullScreen() override;
    bool IsFullScreen() override;
    void Show(bool activate) override;
    void Hide() override;
    void Raise(bool activate, bool force) override;
    void Lower(bool deactivate, bool force) override;
    bool IsActive() override;

    SDL_Window* GetSDLWindow() const { return window; }
    unsigned int GetSDLWindowID() const { return windowId; }
    /// One event of this window, from the run loop.
    void handleEvent(SDL_Event const& event);
    /// The posted update arrived.
    void handleUpdate();
    /// The posted close arrived.
    void handlePostedClose();
    /// Copies `rect` (client coordinates) of the frame's pixels to the screen.
    void present(unsigned int const* pixels, int stride, Size const& bitmapSize, Rect const& rect,
                 Point const& destination);

protected:
    bool create(void* parent, void* child, String const& caption) override;
    void destroy(bool closeNative) override;
    void updateWindowRect() override;
    void updateClientRect() override;
    void applySizeLimits() override;

private:
    void handleWindowEvent(SDL_Event const& event);
    void handleResize(int width, int height);
    void userClose();
    Rect readClientRect() const;
    Rect borders() const;
    void fitFrame();

    SDL_Window* window = nullptr;
    unsigned int windowId = 0;
    bool updatePosted = false;
    bool closePosted = false;
    bool fullScreen = false;
    bool topMost = false;
    bool presentTraced = false;
    Rect restoredRect;

    /// Set for a window restored from the settings until its frame is known: the window rect
    /// asked for, whose size the first show fits once the frame is there.
    bool fitFrameOnShow = false;
    Size wantedWindowSize;
};

} // namespace Native
} // namespace UI
