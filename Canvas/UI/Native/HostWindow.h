#pragma once

#include "Canvas/UI/Cursor.h"
#include "Canvas/UI/Native/HostWindowStyle.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/Object.h"
#include "TvBase/Util/Signal.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <vector>

struct CGColorSpace;

namespace Util
{
class ConfigFile;
}

namespace UI
{

class Canvas;
class CanvasUICodeToken;
class DrawContext;
class Frame;
class SimpleTimer;

namespace Native
{

/// The door between a frame and one native top-level window: it puts the frame's bitmap on the
/// screen, carries the window's events to the frame, remembers its geometry across runs under
/// "HostWindowGeometry/<name>.Geometry" and ".Maximized", and owns the master timer that drives
/// the frame. The logic here is the same on every platform; a platform derives and implements
/// `create` and `destroy` and the virtual operations.
///
/// A host window owns its frame when it made it (the constructor makes one named "<name> Frame"
/// when given none), and deletes it when deleted. Main thread only.
class HostWindow : public Object
{
public:
    /// A door without canvas, frame or settings: the platform answers everything.
    explicit HostWindow(String const& name);
    /// Without `frame`, makes one named "<name> Frame" and owns it. `config` (not owned) keeps
    /// the geometry; null keeps none.
    HostWindow(Canvas* canvas, String const& name, Frame* frame, Util::ConfigFile* config);
    /// Deletes the master timer and the owned frame.
    ~HostWindow() override;

    HostWindow(HostWindow const&) = delete;
    HostWindow& operator=(HostWindow const&) = delete;

    // ---- signals
    /// Entering and leaving full screen.
    Signal<> signalFullScreenChange;
    /// First thing of `preDestroy`: the window is about to go.
    Signal<HostWindow*> signalPreDestroy;
    /// The user asks to close; a slot may call `VetoClose`.
    Signal<> signalCloseRequest;
    /// The close goes through.
    Signal<HostWindow*> signalClose;
    Signal<> signalActivated;
    Signal<> signalDeactivated;
    Signal<> signalMoved;
    Signal<> signalResized;
    Signal<> signalMinimized;
    Signal<> signalRestored;
    /// Paths that the host asked the application to open.
    Signal<std::vector<String> const&> signalOpenFiles;
    /// A custom event from `SetCustomEventCallback`'s source, with its code.
    Signal<unsigned int> signalCustomEvent;
    /// The display that the window is on changed.
    Signal<> signalDisplayChanged;

    // ---- what the frame calls
    /// Asks the run loop to call `UI::Frame::HandleUpdateMessage` soon. Never paints at once.
    virtual void PostUpdateMessage() = 0;
    /// Tells the native window that `rect` (frame coordinates) is out of date.
    virtual void InvalidateRect(Rect rect) = 0;
    /// The color space handed to the draw context's `End`; may be null.
    virtual CGColorSpace* GetColorSpace() = 0;
    /// The native window's client origin on the screen.
    virtual Point GetScreenPos() = 0;

    // What the frame asks of the platform while it routes input; each answers for the
    // platform as a whole, the host window being the frame's only door to it.

    /// True when this native window holds the keyboard focus.
    virtual bool IsHoldingFocus() = 0;
    /// Gives this native window the keyboard focus.
    virtual void SetNativeFocus() = 0;
    /// Makes `cursor` the screen's current cursor.
    virtual void SetCurrentCursor(Cursor const& cursor) = 0;
    /// The mouse position in screen coordinates.
    virtual Point GetCursorScreenPos() = 0;
    /// True while Caps Lock is on.
    virtual bool IsCapsLockOn() = 0;

    // ---- the native window; each does nothing without a native window
    /// Closes the native window at once; the window ends as after a user's close that went
    /// through (without asking). Nothing without a handle.
    virtual void Close() {}
    /// Closes later, from the run loop: safe inside this window's own event. Only the first call
    /// counts.
    virtual void PostClose() {}
    virtual bool IsBeneathCursor() { return false; }
    virtual String GetCaption() { return caption; }
    virtual void SetCaption(String const& text, bool /*modified*/) { caption = text; }
    virtual void SetResizable(bool /*resizable*/, bool /*zoomable*/) {}
    virtual void SetTopMost(bool /*topMost*/, bool /*activate*/) {}
    /// Frames per second of the display; 60 when unknown.
    virtual unsigned int GetDisplayRefreshFrequency() { return 60; }
    /// Sets the window rect (screen coordinates). Sizes below 1 and unchanged rects do nothing;
    /// a size larger than the screen is cut to it at the screen's edge.
    virtual void SetGeometry(int /*x*/, int /*y*/, int /*width*/, int /*height*/) {}
    /// The window rect on the screen, borders included.
    virtual Rect GetContainingWindowGeometry() { return windowRect; }
    /// The window rect it would have if it weren't maximised.
    virtual Rect GetNonMaximizedGeometry() { return windowRect; }
    /// The screen position of the top-level window that holds this one (itself here).
    virtual Point GetTopLevelScreenPos() { return windowRect.TopLeft(); }
    virtual bool IsMaximized() { return false; }
    virtual void SetMaximized(bool /*maximized*/) {}
    virtual void Minimize() {}
    virtual void ToggleFullScreen() {}
    virtual bool IsFullScreen() { return false; }
    /// Shows the window, taking the keyboard focus with `activate`. Only when hidden.
    virtual void Show(bool /*activate*/) {}
    virtual void Hide() {}
    virtual void Raise(bool /*activate*/, bool /*force*/) {}
    virtual void Lower(bool /*deactivate*/, bool /*force*/) {}
    virtual bool IsActive() { return false; }

    // ---- making the native window
    /// Makes the native window: `rect` is its window rect on the screen. With `show` it is
    /// shown, with `activate` focused. Does nothing when a handle exists; false when the
    /// platform can't make it.
    bool Create(void* parent, void* child, String const& name, Rect const& rect, bool show,
                bool activate, HostWindowStyle const& style);
    /// As `Create`, with the rect (and the maximised state, unless `fixedSize`) read back from
    /// the settings as the last run left them; a bad saved rect is ignored. `fixedSize` takes
    /// only the position. `trimToScreen` keeps a parentless window on its monitor. Falls back to
    /// `Create` without a frame or settings.
    bool CreateSerialized(void* parent, void* child, String const& name, Rect const& rect,
                          bool show, bool activate, HostWindowStyle const& style, bool fixedSize,
                          bool trimToScreen);

    // ---- closing
    /// Called by a slot of `signalCloseRequest`: the close does not happen.
    void VetoClose() { closeVetoed = true; }
    /// The user's close request: asks the slots; true when the close may go on.
    bool handleCloseRequest();
    bool IsClosing() const { return closing; }

    // ---- master update timer
    typedef void (*MasterUpdateCallback)(void*);
    /// Starts the timer that drives the frame (needs a frame); a second call keeps the timer.
    void StartMasterUpdateTimer(unsigned int periodMillis);
    void SetMasterUpdateTimerInterval(unsigned int periodMillis);
    /// Called before the canvas's frame timers on every tick.
    void SetMasterUpdateCallback(MasterUpdateCallback callback, void* argument);
    /// One tick: the callback, then `UI::Canvas::TickFrameTimers`. Never re-entered: a tick
    /// that arrives while one runs is dropped.
    void TickMasterUpdateTimer();
    bool HasMasterUpdateTimer() const { return masterTimer != nullptr; }
    unsigned int GetMasterUpdatePeriod() const { return masterPeriod; }

    // ---- state
    Frame* GetFrame() const { return frame; }
    Canvas* GetCanvas() const { return canvas; }
    Util::ConfigFile* GetConfig() const { return config; }
    void* GetNativeHandle() const { return nativeHandle; }
    bool IsVisible() const { return visible; }
    bool IsSerialized() const { return serialized; }
    HostWindowStyle const& GetStyle() const { return style; }
    Rect const& GetWindowRect() const { return windowRect; }
    Rect const& GetClientRect() const { return clientRect; }
    /// Limits of the client size; not present means none. Applied on creation and to resizes.
    void SetMinClientSize(checked_value<int> const& width, checked_value<int> const& height);
    void SetMaxClientSize(checked_value<int> const& width, checked_value<int> const& height);
    String const& GetWindowName() const { return windowName; }
    boost::shared_ptr<CanvasUICodeToken> const& GetUICodeToken() const { return token; }
    void SetUICodeToken(boost::shared_ptr<CanvasUICodeToken> const& t) { token = t; }

protected:
    /// Makes the native window for `windowRect`, storing the handle and both rects; false when
    /// the platform can't (the base class never can).
    virtual bool create(void* /*parent*/, void* /*child*/, String const& /*caption*/)
    {
        return false;
    }
    /// `preDestroy`, then takes the native window down (closing it with `closeNative`).
    virtual void destroy(bool /*closeNative*/) { preDestroy(); }
    virtual void updateWindowRect() {}
    virtual void updateClientRect() {}
    virtual void removeDropTarget() {}
    /// Applies the minimum and maximum client sizes to the native window.
    virtual void applySizeLimits() {}

    /// Saves the geometry, stops the timer and tells the frame that its window is gone.
    void preDestroy();
    /// The client rect clamped to the size limits.
    Rect clampToLimits(Rect const& client) const;

    Canvas* canvas = nullptr;
    Util::ConfigFile* config = nullptr;
    boost::shared_ptr<CanvasUICodeToken> token;
    bool ownsTopLevel = true;
    void* nativeHandle = nullptr;
    Frame* frame = nullptr;
    bool ownsFrame = false;
    /// The frame's draw context, made with the frame.
    std::unique_ptr<DrawContext> drawContext;
    bool closeVetoed = false;
    bool closing = false;
    bool windowBeingDestroyed = false;
    bool visible = false;
    bool serialized = false;
    HostWindowStyle style;
    Rect windowRect;
    Rect clientRect;
    checked_value<int> minClientWidth;
    checked_value<int> minClientHeight;
    checked_value<int> maxClientWidth;
    checked_value<int> maxClientHeight;
    MasterUpdateCallback masterCallback = nullptr;
    void* masterArgument = nullptr;
    SimpleTimer* masterTimer = nullptr;
    unsigned int masterPeriod = 0;
    bool ticking = false;
    String windowName;
    String caption;
    bool pendingMaximized = false;
    /// The window rect given to `create` is one the settings kept, frame included.
    bool restoredFromSettings = false;
};

} // namespace Native
} // namespace UI
