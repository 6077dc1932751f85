#pragma once

#include "Canvas/UI/Cursor.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/Object.h"
#include "TvBase/Util/PropertyHolder.h"
#include "TvBase/Util/Signal.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <map>
#include <memory>
#include <vector>

namespace Command
{
class CommandInvocation;
}
namespace TestAutomation
{
class RPCRequestInterface;
class RPCReplyInterface;
} // namespace TestAutomation

namespace UI
{

class Canvas;
class DrawContext;
class Frame;

/// The base of every on-canvas view: a rectangle inside one frame, with children in stacking
/// order, visibility, an enabled state, two stacked alpha values, a name unique among its
/// siblings and the "ToolTip" and "Color" properties. Everything a window shows is drawn by its
/// own code into the frame's memory bitmap. Single-threaded: touch windows on the UI thread only.
///
/// A window registers with its parent (or its frame, for a null parent) in the constructor, so
/// a subclass constructor already runs inside the tree. A parent deletes its children when it
/// dies, except those whose owned-by-parent flag is false: those are only detached.
class Window : public Object, public Util::PropertyHolder
{
public:
    /// How a window appears in a saved layout and how the design tools treat it.
    enum DynamicLayout
    {
        /// Geometry and properties come from and go to layout files.
        DynamicLayoutSaved = 0,
        /// As DynamicLayoutSaved; the window's own layout file also carries its geometry.
        DynamicLayoutSavedWithRoot = 1,
        /// Content from its own layout file; only its geometry is saved in the parent's file.
        DynamicLayoutOwnFile = 2,
        /// Built by code: no geometry in the file except as a direct child of the root.
        DynamicLayoutCode = 3,
        /// Never saved, nor anything inside it.
        DynamicLayoutNever = 4
    };

    /// Which corner or point `Move` places at (x, y).
    enum MoveJustification
    {
        MoveTopLeft = 0,
        MoveRight = 1,
        MoveBottom = 2,
        MoveBottomRight = 3,
        MoveCentre = 4
    };

    /// Joins `parent`'s children on top, or the frame's top-level windows when `parent` is null.
    /// `frame` must not be null.
    Window(Frame* frame, Window* parent, String const& name);
    /// Invalidates its area if visible, deletes owned children (detaching the others), leaves
    /// its parent and tells the frame, which forgets every reference it holds to it.
    ~Window() override;

    Window(Window const&) = delete;
    Window& operator=(Window const&) = delete;

    // ---- signals
    /// Never emitted by the base class; subclasses may use it.
    Signal<> signalGeneric;
    /// Emitted with true by `Show` and false by `Hide`.
    Signal<bool> signalVisibility;
    /// Emitted by the canvas just before this window's tip appears; a slot may veto it.
    Signal<Window*> signalToolTipAboutToAppear;

    // ---- tree
    /// Moves the window under `parent` in `frame` (`frame` defaults to the parent's, or with a
    /// null parent to the present frame). Ignored when nothing changes, when `parent` is this
    /// window, or when a parent and a frame that disagree are given.
    void Reparent(Window* parent, Frame* frame = nullptr);
    /// Called on the parent when a child dies: removes it, then `onChildRemoved`.
    void onChildDestroy(Window* child);
    /// Children in stacking order: index 0 is at the bottom.
    std::vector<Window*> const& child_windows() const { return children; }
    std::map<String, Window*> const& child_windows_by_name() const { return childrenByName; }
    /// By stacking index; null past the end.
    Window* GetChildWindow(unsigned int index) const;
    /// A direct child by exact name; null when absent. With duplicates, the first one added.
    Window* FindChildWindow(String const& name) const;
    /// True when `w` is a direct child.
    bool IsChildWindow(Window const* w) const;
    /// True when this window is an ancestor of `w` (or `w` itself with `includeSelf`).
    bool IsAncestor(Window const* w, bool includeSelf = false) const;
    /// True when `w` is an ancestor of this window (or this window itself with `includeSelf`).
    bool HasAncestor(Window const* w, bool includeSelf = false) const;
    /// Deletes owned children and detaches the others, from the top down.
    void DeleteAllChildren();
    /// Deletes every descendant that a layout file created, searching below the others.
    void DeleteAllLayoutCreatedChildren();

    Window* GetParent() const { return parent; }
    Frame* GetFrame() const { return frame; }
    /// The canvas of the frame.
    Canvas* GetCanvas() const;

    // ---- stacking
    /// Puts the window just above `above` (a sibling), or on top when `above` is null or not a
    /// sibling; then invalidates it and `above`.
    void Raise(Window* above = nullptr);
    /// Puts the window just below `below` (a sibling), or at the bottom when `below` is null or
    /// not a sibling; then invalidates it and `below`.
    void Lower(Window* below = nullptr);
    /// Index among the siblings; not present when not found.
    checked_value<unsigned int> GetZOrderIndex() const;
    /// Index of `w` among this window's children; not present when `w` isn't one.
    checked_value<unsigned int> GetZOrderIndexForWindow(Window* w) const;
    /// The child at `index`; null out of range.
    Window* GetWindowForZOrderIndex(unsigned int index) const;

    // ---- geometry
    /// Sets the rectangle in the parent's coordinates. A fixed width or height keeps its
    /// present value. Invalidates the old and new areas (once, as their union, when they
    /// overlap) unless nothing changed.
    void SetGeometry(int x, int y, int width, int height);
    /// As `SetGeometry` with x and y in frame coordinates.
    void SetGlobalGeometry(int x, int y, int width, int height);
    /// Sets the width and then keeps it against later `SetGeometry` calls.
    void SetFixedWidth(int width);
    void SetFixedHeight(int height);
    void SetFixedSize(int width, int height);
    bool IsFixedWidth() const { return fixedWidth; }
    bool IsFixedHeight() const { return fixedHeight; }
    /// Keeps the size and places the window by `justification`.
    void Move(int x, int y, MoveJustification justification = MoveTopLeft);
    /// The rectangle in the parent's coordinates.
    Rect const& GetGeometry() const { return rect; }
    int GetWidth() const { return rect.Width(); }
    int GetHeight() const { return rect.Height(); }
    /// The rectangle in frame coordinates.
    Rect GetGlobalGeometry() const { return Rect(globalPos, rect.GetSize()); }
    Point const& GetGlobalPos() const { return globalPos; }
    int GetGlobalX() const { return globalPos.x; }
    int GetGlobalY() const { return globalPos.y; }
    /// The global rectangle cut by every ancestor's global rectangle.
    Rect GetClippedGlobalGeometry() const;
    Rect const& GetLayoutGeometry() const { return layoutRect; }
    void SetLayoutGeometry(Rect const& r) { layoutRect = r; }

    // ---- state
    void Show();
    void Hide();
    bool IsVisible() const { return visible; }
    /// True when this window and each ancestor below `stopAt` are visible; `stopAt`'s own flag
    /// is not consulted. A null `stopAt` checks the whole chain.
    bool IsVisibleTo(Window const* stopAt = nullptr) const;
    void SetEnabled(bool enabled);
    bool IsEnabled() const { return enabled; }
    /// As `IsVisibleTo`, for the enabled flag.
    bool IsEnabledTo(Window const* stopAt = nullptr) const;
    /// Own alpha: affects only this window's effective alpha.
    void SetAlpha(unsigned char a);
    /// Base alpha: spreads to the whole subtree through the total base alpha.
    void SetBaseAlpha(unsigned char a);
    unsigned char GetAlpha() const { return alpha; }
    unsigned char GetBaseAlpha() const { return baseAlpha; }
    unsigned char GetTotalBaseAlpha() const { return totalBaseAlpha; }
    /// What the window's draw code hands to its draw calls; 0 skips drawing altogether.
    unsigned char GetEffectiveAlpha() const { return effectiveAlpha; }
    bool IsFocused() const { return focused; }
    bool IsFocusWithin() const { return focusWithin; }
    void SetMouseTracking(bool on) { mouseTracking = on; }
    bool IsMouseTracking() const { return mouseTracking; }
    void SetOwnedByParent(bool owned) { ownedByParent = owned; }
    bool IsOwnedByParent() const { return ownedByParent; }
    void SetLayoutCreated(bool created) { layoutCreated = created; }
    bool IsLayoutCreated() const { return layoutCreated; }
    bool IsBeingDestroyed() const { return beingDestroyed; }

    // ---- cursor
    /// Gives the window its own cursor; with `setNow` it becomes the current cursor at once.
    void SetCursor(Cursor const& c, bool setNow = false);
    /// Drops the own cursor: the window shows the default one again.
    void ClearCursor();
    /// The own cursor, or the default arrow.
    Cursor GetCursor() const;
    bool HasOwnCursor() const { return hasOwnCursor; }

    // ---- properties
    void SetColor(unsigned int color);
    unsigned int GetColor() const;
    void SetToolTipText(String const& text);
    /// The tip of the tool-tip proxy window when there is one, otherwise the "ToolTip" text.
    String GetToolTipText() const;
    /// True when `GetToolTipText` is not empty.
    bool HasToolTip() const;
    bool IsToolTipExplicit() const { return toolTipExplicit; }
    void SetToolTipProxyWindow(Window* w) { toolTipProxy = w; }
    Window* GetToolTipProxyWindow() const { return toolTipProxy; }
    void SetToolTipBlocker(bool block) { toolTipBlocker = block; }
    bool IsToolTipBlocker() const { return toolTipBlocker; }

    // ---- painting
    /// Invalidates `rect` (the whole window when unset) for a later paint. A local `rect` is
    /// clipped to the window; a global one is used as it stands. Does nothing while the window
    /// or an ancestor is hidden, unless `evenIfHidden`.
    void Update(checked_value<Rect> const& r, bool rectIsGlobal = false, bool evenIfHidden = false);
    void Update();
    /// Invalidates and paints at once: `rect` in window coordinates, not clipped, or the whole
    /// window. Does not test visibility.
    void Repaint(checked_value<Rect> const& r = checked_value<Rect>());
    /// Draws the children; a subclass paints itself first (or after, for an overlay).
    virtual void Draw(DrawContext* context);

    // ---- dynamic layout
    void SetDynamicLayoutMode(DynamicLayout mode) { dynamicLayout = mode; }
    DynamicLayout GetDynamicLayoutMode() const { return dynamicLayout; }
    /// Stores metric `index` (growing the table with zeros) and, with `notify`, applies it.
    void SetDynamicLayoutMetric(unsigned int index, int value, bool notify = true);
    /// Names metric `index`; stores `value` without applying it when present.
    void SetDynamicLayoutMetricName(unsigned int index, String const& name,
                                    checked_value<int> const& value = checked_value<int>());
    std::vector<int> const& GetDynamicLayoutMetrics() const { return metricValues; }
    std::vector<String> const& GetDynamicLayoutMetricNames() const { return metricNames; }
    String const& GetLayoutName() const { return layoutName; }
    void SetLayoutName(String const& name) { layoutName = name; }
    /// Loads the layout named by the layout name; false without one.
    bool LoadLayout();
    /// Loads "<layout folder>/<name>.layout", from the resource override folder when one is set
    /// and the file is there, otherwise from the resources. False for an empty name or when no
    /// valid layout is found. `Util::Exception::FileIO` from reading a file passes through.
    bool LoadLayout(String const& name);
    /// Loads the layout file at `path`; on success its base name becomes the layout name.
    bool LoadLayoutExplicit(String const& path);
    /// Writes this window's layout file into the resource override folder. False without a
    /// layout name or an override folder, or when the file cannot be written.
    bool SaveLayout(bool saveRootGeometry);

    // ---- palette
    /// Runs `onPaletteChange` on this window and, with `recursive`, on every descendant, parents
    /// before children.
    void NotifyPaletteChanged(bool recursive);
    /// The canvas's palette entries; unset when the canvas has none.
    checked_value<unsigned int> GetPaletteColor(String const& key) const;
    checked_value<unsigned char> GetPaletteAlpha(String const& key) const;
    checked_value<bool> GetPaletteBool(String const& key) const;
    checked_value<int> GetPaletteInt(String const& key) const;
    /// `text` in the current language, through the frame and the canvas's translator.
    String tr(String const& text, String const& context = String()) const;

    // ---- virtual operations
    virtual void OnLayoutLoaded() {}
    /// Focuses this window when it is visible and enabled.
    virtual void SetFocus();
    /// The window's rectangle in frame coordinates.
    virtual Rect GetFocusRect() const;
    virtual unsigned int GetFocusIndicatorMode() const { return 0; }
    /// The window that takes focus in this one's place; null for none.
    virtual Window* GetFocusProxyWindow() const { return nullptr; }
    virtual bool NeedsAlphabeticKeys() const { return false; }
    virtual bool NeedsNumericKeys() const { return false; }
    virtual bool NeedsArrowKeys() const { return false; }
    virtual bool NeedsEnterKey() const { return false; }
    virtual bool NeedsEscapeKey() const { return false; }
    virtual String GetWindowType() const { return String(""); }
    virtual String GetAccParamName() const { return String(""); }
    virtual bool ShouldAccessibilityIgnore() const { return true; }
    virtual void UpdateGenericAnimation(float) {}
    /// Both forms go to the frame, and through it to the canvas's commands.
    virtual bool ExecuteCommand(Command::CommandInvocation const& invocation);
    virtual bool ExecuteCommand(String const& id, Window* window);
    virtual bool ProcessTARequest(String const&, TestAutomation::RPCRequestInterface*,
                                  TestAutomation::RPCReplyInterface*)
    {
        return false;
    }

    // ---- handlers; mouse points are in window coordinates, `flags` the modifier bits
    virtual void onChildAdded(Window*) {}
    virtual void onChildRemoved(Window*) {}
    virtual void onShow() {}
    virtual void onHide() {}
    virtual void onEnableChange() {}
    virtual void onSetGeometry() {}
    /// Runs after the "Color" property changed (the cached color is already new).
    virtual void onSetColorProperty() {}
    virtual void onSetColor() {}
    virtual void onSetAlpha() {}
    virtual void onPaletteChange() {}
    virtual void onReceiveFocus() {}
    virtual void onLoseFocus() {}
    virtual void onFocusTimerChange() {}
    virtual void onTimer(unsigned int) {}
    /// Applies a metric; the base class only composes a debug report.
    virtual void onSetDynamicLayoutMetric(unsigned int index, int value);
    virtual bool onMousePress(Point const&, unsigned int) { return false; }
    virtual bool onMouseRelease(Point const&, unsigned int) { return false; }
    /// Forwards to `onMousePress`.
    virtual bool onMouseDoubleClick(Point const& p, unsigned int flags)
    {
        return onMousePress(p, flags);
    }
    virtual bool onMouseRightPress(Point const&, unsigned int) { return false; }
    virtual bool onMouseRightRelease(Point const&, unsigned int) { return false; }
    /// Forwards to `onMouseRightPress`.
    virtual bool onMouseRightDoubleClick(Point const& p, unsigned int flags)
    {
        return onMouseRightPress(p, flags);
    }
    virtual bool onMouseMove(Point const&, unsigned int) { return false; }
    virtual void onMouseEnter() {}
    virtual void onMouseExit() {}
    virtual bool onMouseWheel(Point const&, int, unsigned int) { return false; }
    virtual bool onKeyPress(unsigned int, unsigned int, bool) { return false; }
    virtual bool onKeyRelease(unsigned int, unsigned int) { return false; }
    virtual bool onKeyChar(char, unsigned int, bool) { return false; }

protected:
    /// Appends `child` on top; a name already taken stays unfindable by name. Null is ignored.
    void addChildWindow(Window* child);
    /// Takes `child` out of the children and erases its name from the map.
    void removeChildWindow(Window* child);
    /// Draws `window` with the clip and translation it needs, restoring both afterwards.
    void drawWindow(DrawContext* context, Window* window);
    /// True when `child` is visible, not fully transparent and meets `clip` (frame coordinates
    /// plus the draw offset).
    bool isDrawChild(Window* child, Rect const& clip) const;
    /// The context's clip cut to this window's global rectangle plus the draw offset.
    Rect getDrawClipRect(DrawContext* context) const;

private:
    friend class Frame;

    /// The frame's call: stores the flag, marks the ancestors, runs the focus hooks.
    void setFocus(bool focus);
    void setFrame(Frame* f);
    void updateGlobalPos();
    void updateTotalBaseAlpha(unsigned char parentTotal);
    void deleteOrDetachChildren();
    void invalidateGlobal(Rect const& r);
    void colorPropertyChanged();
    void toolTipPropertyChanged();
    /// The hit test: the deepest visible, enabled window under `point` (frame coordinates)
    /// that takes the message, searching children from the top down.
    static bool findDeliverMouseMessageHelper(Window* window, unsigned int message,
                                              Point const& point, unsigned int flags, int delta,
                                              Window*& hit, bool queryOnly);

    Frame* frame;
    Window* parent;
    checked_value<unsigned int> userValue;
    bool ownedByParent = true;
    DynamicLayout dynamicLayout = DynamicLayoutCode;
    std::vector<int> metricValues;
    std::vector<String> metricNames;
    String layoutName;
    std::vector<Window*> children;
    std::map<String, Window*> childrenByName;
    bool beingDestroyed = false;
    bool fixedWidth = false;
    bool fixedHeight = false;
    Rect rect;
    Rect layoutRect;
    Point globalPos;
    bool visible = true;
    bool enabled = true;
    bool focused = false;
    bool focusWithin = false;
    bool mouseTracking = false;
    bool toolTipExplicit = false;
    unsigned int color = 0;
    unsigned char alpha = 255;
    unsigned char baseAlpha = 255;
    unsigned char totalBaseAlpha = 255;
    unsigned char effectiveAlpha = 255;
    std::unique_ptr<Cursor> cursor;
    bool hasOwnCursor = false;
    Window* toolTipProxy = nullptr;
    String toolTipCache;
    checked_value<unsigned int> toolTipCacheId;
    bool toolTipBlocker = false;
    bool layoutCreated = false;
    void (*animationHook)(void*, float) = nullptr;
    void* animationHookData = nullptr;
    float animationHookValue = 0.0f;
};

} // namespace UI
