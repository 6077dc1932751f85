#pragma once

#include "Canvas/UI/Borders.h"
#include "Canvas/UI/ScrollBar.h"
#include "Canvas/UI/Window.h"

#include <unordered_set>
#include <vector>

namespace UI
{

class Splitter;

/// Shows a larger virtual area through a window. Its children sit at virtual positions, laid
/// out freely or as a vertical or horizontal list, and only those that meet the viewport are
/// shown: a list of thousands of rows costs the visible ones. The bars are children of the view
/// named "<view name> Horizontal ScrollBar" and "<view name> Vertical ScrollBar", made by the
/// canvas's primitive factory unless given; without a factory creator a view has no bar and
/// still scrolls by code, keys and wheel (not by wheel without a vertical bar).
///
/// Scrolled children are direct children of the view and are owned by it. A child that dies on
/// its own is forgotten. Keys (when the view or a child has focus): Up and Down move by one
/// wheel step (40 pixels), Page Up and Page Down by the usable height, Home and End to the
/// ends; Left and Right move sideways by a step.
class ScrollView : public Window
{
public:
    enum Layout : int
    {
        LayoutFree = 0,
        LayoutVerticalList = 1,
        LayoutHorizontalList = 2
    };

    /// One scrolled child: its place in the virtual area, its main-axis limits under splitter
    /// drags, and whether it is to be shown at all.
    struct Info
    {
        Window* window;
        Point position;
        checked_value<int> minSize;
        checked_value<int> maxSize;
        bool visible;
    };

    ScrollView(Frame* frame, Window* parent, String const& name, Layout layout = LayoutFree,
               ScrollBarMode horizontalMode = ScrollBarAutomatic,
               ScrollBarMode verticalMode = ScrollBarAutomatic, ScrollBar* horizontalBar = nullptr,
               ScrollBar* verticalBar = nullptr);
    ~ScrollView() override;

    /// The scroll position after the user scrolled (wheel, keys, bars).
    Signal<Point> signalScrolled;

    /// Adds `window` at virtual `point` before entry `index` (appends when unset). An index
    /// past the end is ignored. A window that is not yet a child is moved into the view. Each
    /// add runs the update pass, over all children: to add many, bracket them with
    /// `SetInUpdate`, and the adds cost constant time each and the one pass after them linear.
    void AddChild(checked_value<unsigned int> const& index, Window* window, Point const& point,
                  bool visible = true);
    /// Adds a list child with main-axis limits for splitter drags; a `Splitter` added this way
    /// resizes the child before it.
    void AddChild(checked_value<unsigned int> const& index, Window* window,
                  checked_value<int> const& minSize, checked_value<int> const& maxSize);
    /// Moves a child to another virtual position (free layout).
    void MoveChild(Window* window, Point const& point);
    /// Keeps the child's place in a list but hides or shows it.
    void SetChildVisible(Window* window, bool visible);
    /// Deletes the child at `index`; nothing past the end.
    void RemoveChild(unsigned int index);
    /// Deletes every scrolled child (not the bars).
    void RemoveChildren();
    std::vector<Info> const& GetChildren() const { return children; }
    /// The entry index of `window`; not present when it is not a scrolled child.
    checked_value<unsigned int> GetChildIndex(Window* window) const;

    void ScrollTo(Point const& point);
    void ScrollBy(int dx, int dy);
    void EnsureVisible(Window* window);
    /// `rect` in virtual coordinates.
    void EnsureVisible(Rect const& rect);
    Point const& GetScrollViewPos() const { return pos; }
    Size const& GetScrollViewSize() const { return size; }
    /// The virtual size; only for the free layout (lists size themselves).
    void SetScrollViewSize(Size const& newSize);
    /// The largest scroll position on each axis.
    Point GetScrollViewPosRange();
    /// The view's width, less the vertical bar when `withBar` and it is shown, less the view
    /// margin on both sides.
    int GetUsableWidth(bool withBar);
    int GetUsableHeight(bool withBar);

    void SetHorizontalScrollBarMode(ScrollBarMode mode);
    void SetVerticalScrollBarMode(ScrollBarMode mode);
    ScrollBar* GetHorizontalScrollBar() const { return horizontalBar; }
    ScrollBar* GetVerticalScrollBar() const { return verticalBar; }
    void SetBorderColor(unsigned int color);
    void SetBorderStyle(Borders::BorderStyle style);
    Borders const& GetBorders() const { return borders; }

    void SetScrollBarMargins(int x, int y);
    void SetScrollBarEdgeMargin(int margin);
    void SetMargins(int x, int y);
    void SetChildSpacing(int spacing);
    void SetViewMargin(int margin);
    void SetChildMinSize(checked_value<int> const& minSize);
    void SetScrollBarGaps(checked_value<int> const& x, checked_value<int> const& y);
    void SetResizeWithinView(bool on) { resizeWithinView = on; }
    void SetWheelPassThrough(bool on) { wheelPassThrough = on; }
    /// While set, `UpdateChildren` does nothing: set it around adding many children, clear it
    /// and call `UpdateChildren` once.
    void SetInUpdate(bool on) { inUpdate = on; }
    bool IsInUpdate() const { return inUpdate; }

    /// Sizes the list, places the bars, lays the children out and shows the visible ones.
    void UpdateChildren();
    /// How many update passes have run (the passes that `SetInUpdate` held back don't count).
    unsigned long GetUpdatePassCount() const { return updatePasses; }

    void Draw(DrawContext* context) override;
    bool onMouseWheel(Point const& p, int delta, unsigned int flags) override;
    bool onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat) override;
    void onSetGeometry() override;
    void onChildRemoved(Window* child) override;

    void slotSplitterDragged(Splitter* splitter, int position);

private:
    bool isListLayout() const { return layout != LayoutFree; }
    bool isShown(ScrollBar* bar) const { return bar && bar->IsVisible(); }
    int barWidth() const { return isShown(verticalBar) ? verticalBar->GetWidth() : 0; }
    int barHeight() const { return isShown(horizontalBar) ? horizontalBar->GetHeight() : 0; }
    void insertInfo(checked_value<unsigned int> const& index, Info const& info);
    void updateChildren();
    void computeScrollBarVisibility(bool& showHorizontal, bool& showVertical);
    /// The usable sizes as they would be with the other bar shown or not.
    int usableWidthIf(bool verticalShown) const;
    int usableHeightIf(bool horizontalShown) const;
    /// The largest scroll position with the bars as they are now.
    Point maxPos() const;
    void updateScrollBars();
    void updateScrollViewSize();
    void updateLayout();
    void trimScrollViewPos();
    /// Shows or hides each child by whether it meets the viewport.
    void placeChildren();
    void ensureVisible(Rect const& rect);
    /// Scrolls and emits `signalScrolled` when the position changed.
    void userScrollTo(Point const& point);
    void slotHorizontalScrolled(int value);
    void slotVerticalScrolled(int value);

    Layout layout;
    ScrollBarMode horizontalMode;
    ScrollBarMode verticalMode;
    ScrollBar* horizontalBar = nullptr;
    ScrollBar* verticalBar = nullptr;
    bool resizeWithinView = false;
    Borders borders{Borders::Outline, 0xFF7F7F7Fu};
    int barMarginX = 0;
    int barMarginY = 0;
    int edgeMargin = 0;
    int marginX = 0;
    int marginY = 0;
    int childSpacing = 0;
    int viewMargin = 0;
    bool wheelPassThrough = false;
    checked_value<int> childMinSize;
    checked_value<int> gapX;
    checked_value<int> gapY;
    std::vector<Info> children;
    /// The windows of `children`, so that telling whether a window is one costs no search.
    std::unordered_set<Window*> childSet;
    unsigned long updatePasses = 0;
    Size size;
    Point pos;
    bool inUpdate = false;
    /// Set while a wheel message runs through the vertical bar, which emits on its own.
    bool wheelInProgress = false;
};

} // namespace UI
