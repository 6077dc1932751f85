#pragma once

#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <vector>

namespace UI
{

class Frame;
class Window;

/// The per-process UI context that windows and frames share: the list of frames, the active
/// and current frame, the stack of windows being drawn and the tool-tip input hook. Lists its
/// frames but does not own them; each frame joins in its constructor and leaves in its
/// destructor. Made once, before any frame, and deleted after the last one. Not copyable.
class Canvas
{
public:
    explicit Canvas(String const& name);
    virtual ~Canvas();

    Canvas(Canvas const&) = delete;
    Canvas& operator=(Canvas const&) = delete;

    String const& GetName() const { return name; }

    // ---- frames
    std::vector<Frame*> const& GetFrames() const { return frames; }
    /// Called by the frame's constructor.
    void addFrame(Frame* frame);
    /// Called by the frame's destructor: forgets every reference to it.
    void removeFrame(Frame* frame);
    Frame* GetActiveFrame() const { return activeFrame; }
    void SetActiveFrame(Frame* frame) { activeFrame = frame; }
    /// The frame that receives keyboard messages no window of another frame took.
    Frame* GetCurrentFrame() const { return currentFrame; }
    void SetCurrentFrame(Frame* frame) { currentFrame = frame; }
    /// When true, a frame whose native window lacks the keyboard focus only remembers the window
    /// to focus, and may give its native window the focus on a click.
    bool IsNativeFocusTracking() const { return nativeFocusTracking; }
    void SetNativeFocusTracking(bool on) { nativeFocusTracking = on; }

    /// The master update: ticks every frame's timers, in list order.
    void TickFrameTimers();

    // ---- drawing
    void PushCurrentlyDrawingWindow(Window* window);
    /// Pops only when `window` is on top.
    void PopCurrentlyDrawingWindow(Window* window);
    /// The innermost window being drawn, or null outside a paint.
    Window* GetCurrentlyDrawingWindow() const;

    // ---- tool tips
    /// Sees every mouse message of every frame before the design engine and the windows do;
    /// remembers where the mouse is.
    void HandleToolTipMouseMessage(Frame* frame, MouseMessage message, Point const& point,
                                   unsigned int flags, int delta);
    checked_value<Point> const& GetLastMousePoint() const { return lastMousePoint; }
    /// Told by a frame whenever a window dies or leaves it.
    void OnWindowDestroy(Window* window);

private:
    String name;
    std::vector<Frame*> frames;
    Frame* activeFrame = nullptr;
    Frame* currentFrame = nullptr;
    std::vector<Window*> currentlyDrawing;
    bool nativeFocusTracking = true;
    checked_value<Point> lastMousePoint;
};

} // namespace UI
