#pragma once

#include "Canvas/UI/Cursor.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Controller/KeyValueCoding.h"
#include "TvBase/Util/Object.h"
#include "TvBase/Util/Signal.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

#include <set>
#include <vector>

struct CGColorSpace;

namespace Command
{
class CommandInvocation;
}

namespace UI
{

class AnimationHandler;
class Canvas;
class DIBits;
class Design;
class DrawContext;
class FocusIndicator;
class Window;
namespace Dialog
{
class Base;
}
namespace Native
{
class HostWindow;
}

/// The owner of one tree of windows inside one native host window. It turns dirty rectangles
/// into paints of its draw context, routes mouse and keyboard messages to windows, and keeps
/// focus, mouse capture, window timers, the mouse-over set and the active dialog. Its design
/// engine gets the first refusal of input and draws last.
///
/// Owns its top-level windows (those with owned-by-parent set) and its design; does not own the
/// draw context or the host window. Nothing paints until `SetDrawingEnabled(true)`.
class Frame : public Object, public Controller::KeyValueCoding
{
public:
    /// One timer of a window; `SetTimer` hands out ids from 1, lowest free first.
    struct TimerInfo
    {
        unsigned int id;
        unsigned int intervalMs;
        unsigned int lastFire;
        Window* window;
        bool armed;
        bool oneShot;
    };

    /// Joins `canvas`'s frame list; the whole draw rectangle starts invalid. `name` is not used:
    /// every frame is named "Frame".
    Frame(Canvas* canvas, void* nativeHandle, DrawContext* context, Point const& nativeOffset,
          String const& name, Rect const& drawRect);
    /// Deletes the owned top-level windows and the design, and leaves the canvas.
    ~Frame() override;

    Frame(Frame const&) = delete;
    Frame& operator=(Frame const&) = delete;

    /// Emitted by `OnCloseDialog`.
    Signal<> signalDialogClosed;
    /// Emitted by Tab before focus moves (true for shift-Tab) and by `SendFocusSignal`.
    Signal<bool> signalFocusTraversal;

    /// Both forms and `GetValueForKey` go to the canvas; false or empty without one.
    virtual bool ExecuteCommand(Command::CommandInvocation const& invocation);
    virtual bool ExecuteCommand(String const& id, Window* window);
    boost::any GetValueForKey(String const& key) override;
    /// `text` in the current language through the canvas's translator; unchanged without one.
    String tr(String const& text, String const& context = String()) const;
    /// A hook for subclasses: true consumes the mouse message before the design and windows.
    virtual bool filterMouseMessage(MouseMessage, Point const&, unsigned int, int) { return false; }

    // ---- painting
    /// Adds `rect` (frame coordinates) to the invalid regions, merging it with every region
    /// it nearly touches when the union stays small; tells the host and, with `postUpdate`,
    /// asks it for an update. A rectangle outside the draw rectangle does nothing.
    void Invalidate(Rect const& rect, bool postUpdate);
    /// Redraws every invalid region into the draw context and hands them to the host. With
    /// `consumeRegions` false the regions stay listed and are drawn again later.
    void RenderInvalidRegions(bool consumeRegions);
    std::vector<Rect> const& GetInvalidRegions() const { return invalidRegions; }
    void postUpdateMessage();
    /// The host's update arrived: renders and consumes the invalid regions.
    void HandleUpdateMessage() { RenderInvalidRegions(true); }
    /// The host asks for `rect` by itself (exposure): drawn at once, and kept for later.
    void NativeDraw(Rect const& rect, CGColorSpace* colorSpace);
    void SetDrawingEnabled(bool enabled) { drawingEnabled = enabled; }
    bool IsDrawingEnabled() const { return drawingEnabled; }
    void SetInputEnabled(bool enabled) { inputEnabled = enabled; }
    bool IsInputEnabled() const { return inputEnabled; }
    /// An empty rectangle counts as all zeros. Resizes the top-level window to the new size.
    void SetDrawRect(Rect const& rect);
    Rect const& GetDrawRect() const { return drawRect; }
    Size const& GetSize() const { return size; }
    /// Replaces the native window and its draw context; the whole frame becomes invalid.
    void SetNativeWindowHandle(void* handle, DrawContext* context);
    void* GetNativeWindowHandle() const { return nativeHandle; }
    DrawContext* GetDrawContext() const { return drawContext; }
    void SetNativeWindowOffset(Point const& offset);
    Point const& GetNativeWindowOffset() const { return nativeOffset; }
    Point const& GetDrawOffset() const { return drawOffset; }
    void SetDrawOffset(Point const& offset) { drawOffset = offset; }
    /// Unset: nothing is cleared under the windows.
    void SetBackgroundColor(checked_value<unsigned int> const& color) { backgroundColor = color; }
    checked_value<unsigned int> const& GetBackgroundColor() const { return backgroundColor; }
    void SetBackgroundBits(boost::shared_ptr<DIBits> const& bits) { backgroundBits = bits; }
    bool IsRendering() const { return rendering; }
    /// Entry `index` of the default-color table (0 past the end).
    unsigned int GetDefaultColor(unsigned int index) const;

    // ---- host
    /// The host window that owns this frame; it receives invalidations and update requests.
    void SetHostWindow(Native::HostWindow* host) { this->host = host; }
    Native::HostWindow* GetHostWindow() const { return host; }
    Canvas* GetCanvas() const { return canvas; }

    // ---- tree
    void addTopLevelWindow(Window* w);
    void raiseTopLevelWindow(Window* w, Window* above);
    void lowerTopLevelWindow(Window* w, Window* below);
    void onWindowCreate(Window* w);
    /// Forgets every reference to `w`; with `frameChanging`, also its timers.
    void onWindowDestroy(Window* w, bool frameChanging);
    /// The window that tracks the frame's size. Refused while another is set, unless null.
    void SetTopLevelWindow(Window* w);
    Window* GetTopLevelWindow() const { return topLevelWindow; }
    std::vector<Window*> const& GetTopLevelWindows() const { return topLevelWindows; }
    Window* GetChildWindow(unsigned int index) const;
    Window* FindChildWindow(String const& name) const;
    checked_value<unsigned int> GetZOrderIndexForWindow(Window* w) const;
    Window* GetWindowForZOrderIndex(unsigned int index) const;
    /// Takes `w` and every window inside it out of the focus order, keeping the order.
    void removeSubtreeFromFocusOrder(Window* w);
    String const& GetLayoutName() const { return layoutName; }
    void SetLayoutName(String const& name) { layoutName = name; }
    /// Loads the frame's layout (by its layout name) into the top-level windows, from the
    /// resource override folder or the resources; false without a name or a valid file.
    bool LoadLayout();
    /// Writes the frame's layout file into the resource override folder; false without a layout
    /// name or an override folder, or when the file cannot be written.
    bool SaveLayout();

    // ---- input, called by the host; points are in native view coordinates
    bool HandleMouseMessage(MouseMessage message, Point const& point, unsigned int flags,
                            int delta);
    void HandleMouseEnter();
    void HandleMouseExit();
    bool HandleKeyboardMessage(KeyboardMessage message, unsigned int keyCode, char character,
                               unsigned int flags, bool repeat);
    void HandleReceiveFocus();
    void HandleLoseFocus();
    /// Sends `message` to `window` with a point in the window's coordinates.
    bool DeliverMouseMessage(MouseMessage message, Window* window, Point const& localPoint,
                             unsigned int flags, int delta);
    /// 0 mouse, 1 keyboard, 3 none: what the message being handled came from.
    int GetInputSource() const { return inputSource; }
    std::set<Window*> const& GetMouseOverWindows() const { return mouseOver; }
    bool IsMouseInside() const { return mouseInside; }

    // ---- focus and capture
    /// Focuses `w` (or its focus proxy); null clears focus.
    void SetFocus(Window* w);
    Window* GetFocus() const { return focus; }
    Window* GetRememberedFocus() const { return rememberedFocus; }
    void SetNativeFocus();
    /// Unset: the indicator never times out.
    void SetFocusTimerInterval(checked_value<unsigned int> const& interval);
    checked_value<unsigned int> const& GetFocusTimerInterval() const { return focusTimerInterval; }
    /// Present while the focus indicator is to be visible: the tick it was started.
    checked_value<unsigned int> const& GetFocusIndicatorStarted() const
    {
        return focusIndicatorStarted;
    }
    void resetFocusTimer();
    /// The Tab order; each entry is replaced by its focus proxy when it has one.
    void SetFocusOrder(std::vector<Window*> const& order);
    std::vector<Window*> const& GetFocusOrder() const { return focusOrder; }
    void FocusFirst();
    void FocusNext() { moveFocus(true); }
    void FocusPrev() { moveFocus(false); }
    void SendFocusSignal(bool backward) { signalFocusTraversal(backward); }
    /// Moves the indicator to the focused window, or hides it without focus or timer.
    void UpdateFocusIndicator(bool animate);
    /// Installs the indicator window (a top-level window of this frame, kept on top); hidden.
    void SetFocusIndicator(FocusIndicator* indicator);
    FocusIndicator* GetFocusIndicator() const { return focusIndicator; }
    /// The window that Return (and Enter) activates when the focused window has no use for
    /// it, as if it had been clicked; null for none. Usually the window's main button.
    void SetDefaultButton(Window* w) { defaultButton = w; }
    Window* GetDefaultButton() const { return defaultButton; }
    /// The window that Escape activates when the focused window has no use for it; null for
    /// none. Usually the button that closes the window or stops its work.
    void SetCancelButton(Window* w) { cancelButton = w; }
    Window* GetCancelButton() const { return cancelButton; }
    /// A previous holder first gets `onMouseRelease` at (0, 0).
    void SetMouseCapture(Window* w);
    void ReleaseMouseCapture() { mouseCapture = nullptr; }
    Window* GetMouseCapture() const { return mouseCapture; }
    /// The mouse in frame coordinates.
    Point GetCursorPos() const;
    /// The frame's origin on the screen.
    Point GetScreenPos() const;
    /// Makes `cursor` current through the host (only when it changes).
    void SetCurrentCursor(Cursor const& cursor);

    // ---- timers
    /// A timer for `window`, firing every `intervalMs` (once with `oneShot`); returns its id.
    unsigned int SetTimer(Window* window, unsigned int intervalMs, bool oneShot = false);
    /// Unknown ids only compose a debug report.
    void EndTimer(unsigned int id);
    std::vector<TimerInfo> const& GetTimers() const { return timers; }
    /// The frame's share of the master tick: design, focus indicator time-out, window timers.
    void tickTimers();

    // ---- dialogs, design, wheel
    void SetActiveDialog(Dialog::Base* dialog) { activeDialog = dialog; }
    Dialog::Base* GetActiveDialog() const { return activeDialog; }
    /// Forgets the active dialog and emits `signalDialogClosed`.
    void OnCloseDialog();
    void SetDesignDisable(bool disable);
    bool IsDesignDisable() const { return designDisable; }
    Design* GetDesign() const { return design; }
    /// The frame's animations, ticked first in `tickTimers`; owned.
    AnimationHandler* GetAnimationHandler() const { return animationHandler; }
    /// Adds `delta` to the remainder kept for `id` (another id restarts it) and returns the
    /// whole steps once the remainder exceeds 1 in size; the fraction stays.
    int AccumulateWheelDelta(float delta, unsigned long long id);
    static unsigned long long CreateWheelDeltaID(Window* window, unsigned int n);

private:
    bool handleMouseMessage(MouseMessage message, Point const& point, unsigned int flags,
                            int delta);
    bool findDeliverMouseMessage(MouseMessage message, Point const& p, unsigned int flags,
                                 int delta, Window*& hit, bool queryOnly);
    void updateMouseOverWindows(checked_value<Point> const& point);
    bool handleKeyboardMessage(KeyboardMessage message, unsigned int keyCode, char character,
                               unsigned int flags, bool repeat);
    bool handleKeyboardMessageInner(KeyboardMessage message, unsigned int keyCode, char character,
                                    unsigned int flags, bool repeat, bool& consumedByDesign);
    void moveFocus(bool forward);
    void startFocusIndicator();
    bool activateByKey(unsigned int keyCode, unsigned int flags, bool repeat);
    bool hotDrawApplies();
    void eraseTimerAt(std::size_t index);
    unsigned int now() const;

    Canvas* canvas;
    Native::HostWindow* host = nullptr;
    void* nativeHandle;
    DrawContext* drawContext;
    Size size;
    bool drawingEnabled = false;
    bool inputEnabled = true;
    Point drawOffset;
    Point nativeOffset;
    Rect drawRect;
    bool rendering = false;
    Window* topLevelWindow = nullptr;
    std::vector<Window*> topLevelWindows;
    bool destroying = false;
    int inputSource = 3;
    Window* focus = nullptr;
    Window* rememberedFocus = nullptr;
    checked_value<unsigned int> focusTimerInterval = 3000u;
    checked_value<unsigned int> focusIndicatorStarted;
    std::vector<Window*> focusOrder;
    FocusIndicator* focusIndicator = nullptr;
    Window* defaultButton = nullptr;
    Window* cancelButton = nullptr;
    Window* mouseCapture = nullptr;
    String layoutName;
    Dialog::Base* activeDialog = nullptr;
    checked_value<unsigned int> backgroundColor = 0xFF000000u;
    boost::shared_ptr<DIBits> backgroundBits;
    std::vector<Rect> invalidRegions;
    bool regionsArrived = false;
    bool lastHotDraw = false;
    bool lastHotTextOnly = false;
    int lastHotDrawMode = 0;
    unsigned long long wheelDeltaId = 0;
    float wheelDeltaRemainder = 0.0f;
    std::vector<unsigned int> defaultColors;
    std::vector<TimerInfo> timers;
    checked_value<unsigned int> currentTimerIndex;
    checked_value<unsigned int> nextTimerIndex;
    bool tickingTimers = false;
    Design* design = nullptr;
    AnimationHandler* animationHandler = nullptr;
    bool designDisable = false;
    std::set<Window*> mouseOver;
    bool mouseInside = false;
    bool mouseOverDirty = false;
    checked_value<Cursor> currentCursor;
};

} // namespace UI
