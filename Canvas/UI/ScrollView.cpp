// The scroll view: construction and children, scrolling, the update pass (virtual size, bars,
// list layout, placement), splitters, and input.
#include "Canvas/UI/ScrollView.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "Canvas/UI/Splitter.h"

#include <algorithm>

namespace UI
{

namespace
{

int const keyStep = 40;

/// True when `bar` is among the two topmost children of its parent.
bool isOnTop(Window* parent, Window* bar)
{
    std::vector<Window*> const& all = parent->child_windows();
    std::size_t const n = all.size();
    return (n >= 1 && all[n - 1] == bar) || (n >= 2 && all[n - 2] == bar);
}

} // namespace

// ============================================================================================
// construction and children
// ============================================================================================

ScrollView::ScrollView(Frame* frame, Window* parent, String const& name, Layout viewLayout,
                       ScrollBarMode hMode, ScrollBarMode vMode, ScrollBar* hBar, ScrollBar* vBar)
    : Window(frame, parent, name), layout(viewLayout), horizontalMode(hMode), verticalMode(vMode),
      horizontalBar(hBar), verticalBar(vBar)
{
    PrimitiveFactory* factory = GetCanvas() ? GetCanvas()->GetPrimitiveFactory() : nullptr;
    if (!horizontalBar && factory)
        horizontalBar = factory->CreateScrollBar(
            frame, this, String("%1 Horizontal ScrollBar").Arg(name), Horizontal);
    if (!verticalBar && factory)
        verticalBar = factory->CreateScrollBar(frame, this,
                                               String("%1 Vertical ScrollBar").Arg(name), Vertical);
    for (ScrollBar* bar : {horizontalBar, verticalBar})
    {
        if (!bar)
            continue;
        if (bar->GetParent() != this)
            bar->Reparent(this);
        bar->Hide();
    }
    if (horizontalBar)
        horizontalBar->signalScrolled.Connect(&ScrollView::slotHorizontalScrolled, this);
    if (verticalBar)
        verticalBar->signalScrolled.Connect(&ScrollView::slotVerticalScrolled, this);
}

ScrollView::~ScrollView() = default;

void ScrollView::insertInfo(checked_value<unsigned int> const& index, Info const& info)
{
    if (index.present && index.value > children.size())
        return;
    if (info.window->GetParent() != this)
        info.window->Reparent(this);
    auto at = index.present ? children.begin() + index.value : children.end();
    children.insert(at, info);
    childSet.insert(info.window);
    updateChildren();
}

void ScrollView::AddChild(checked_value<unsigned int> const& index, Window* window,
                          Point const& point, bool visible)
{
    if (!window || childSet.count(window))
        return;
    insertInfo(index, Info{window, point, {}, {}, visible});
}

void ScrollView::AddChild(checked_value<unsigned int> const& index, Window* window,
                          checked_value<int> const& minSize, checked_value<int> const& maxSize)
{
    if (!window || childSet.count(window))
        return;
    if (index.present && index.value > children.size())
        return;
    if (Splitter* splitter = dynamic_cast<Splitter*>(window))
        splitter->signalDragged.Connect(&ScrollView::slotSplitterDragged, this);
    insertInfo(index, Info{window, Point(), minSize, maxSize, true});
}

checked_value<unsigned int> ScrollView::GetChildIndex(Window* window) const
{
    if (!childSet.count(window))
        return {};
    for (std::size_t i = 0; i < children.size(); ++i)
        if (children[i].window == window)
            return static_cast<unsigned int>(i);
    return {};
}

void ScrollView::MoveChild(Window* window, Point const& point)
{
    checked_value<unsigned int> const index = GetChildIndex(window);
    if (!index.present)
        return;
    children[index.value].position = point;
    updateChildren();
}

void ScrollView::SetChildVisible(Window* window, bool visible)
{
    checked_value<unsigned int> const index = GetChildIndex(window);
    if (!index.present || children[index.value].visible == visible)
        return;
    children[index.value].visible = visible;
    updateChildren();
}

void ScrollView::RemoveChild(unsigned int index)
{
    if (index >= children.size())
        return;
    Window* window = children[index].window;
    children.erase(children.begin() + index);
    childSet.erase(window);
    delete window;
    updateChildren();
}

void ScrollView::RemoveChildren()
{
    std::vector<Info> gone;
    gone.swap(children);
    childSet.clear();
    for (Info const& info : gone)
        delete info.window;
    updateChildren();
}

void ScrollView::onChildRemoved(Window* child)
{
    if (child == horizontalBar)
        horizontalBar = nullptr;
    if (child == verticalBar)
        verticalBar = nullptr;
    checked_value<unsigned int> const index = GetChildIndex(child);
    if (!index.present)
        return;
    children.erase(children.begin() + index.value);
    childSet.erase(child);
    if (!IsBeingDestroyed())
        updateChildren();
}

// ============================================================================================
// settings
// ============================================================================================

void ScrollView::SetHorizontalScrollBarMode(ScrollBarMode mode)
{
    horizontalMode = mode;
    updateChildren();
}

void ScrollView::SetVerticalScrollBarMode(ScrollBarMode mode)
{
    verticalMode = mode;
    updateChildren();
}

void ScrollView::SetBorderColor(unsigned int color)
{
    borders.SetColor(color);
    Update();
}

void ScrollView::SetBorderStyle(Borders::BorderStyle style)
{
    borders.SetStyle(style);
    Update();
}

void ScrollView::SetScrollBarMargins(int x, int y)
{
    barMarginX = x;
    barMarginY = y;
    updateChildren();
}

void ScrollView::SetScrollBarEdgeMargin(int margin)
{
    edgeMargin = margin;
    updateChildren();
}

void ScrollView::SetMargins(int x, int y)
{
    marginX = x;
    marginY = y;
    updateChildren();
}

void ScrollView::SetChildSpacing(int spacing)
{
    childSpacing = spacing;
    updateChildren();
}

void ScrollView::SetViewMargin(int margin)
{
    viewMargin = margin;
    updateChildren();
}

void ScrollView::SetChildMinSize(checked_value<int> const& minSize)
{
    childMinSize = minSize;
    updateChildren();
}

void ScrollView::SetScrollBarGaps(checked_value<int> const& x, checked_value<int> const& y)
{
    gapX = x;
    gapY = y;
    updateChildren();
}

// ============================================================================================
// sizes and scrolling
// ============================================================================================

int ScrollView::usableWidthIf(bool verticalShown) const
{
    int const bar = verticalShown && verticalBar ? verticalBar->GetWidth() : 0;
    return GetWidth() - bar - 2 * viewMargin;
}

int ScrollView::usableHeightIf(bool horizontalShown) const
{
    int const bar = horizontalShown && horizontalBar ? horizontalBar->GetHeight() : 0;
    return GetHeight() - bar - 2 * viewMargin;
}

int ScrollView::GetUsableWidth(bool withBar)
{
    return usableWidthIf(withBar && isShown(verticalBar));
}

int ScrollView::GetUsableHeight(bool withBar)
{
    return usableHeightIf(withBar && isShown(horizontalBar));
}

Point ScrollView::maxPos() const
{
    // A view bigger than its content stays at 0.
    return Point(std::max(0, size.width - GetWidth() + barWidth() + 2 * viewMargin),
                 std::max(0, size.height - GetHeight() + barHeight() + 2 * viewMargin));
}

Point ScrollView::GetScrollViewPosRange()
{
    return maxPos();
}

void ScrollView::trimScrollViewPos()
{
    Point const limit = maxPos();
    pos.x = std::max(0, std::min(pos.x, limit.x));
    pos.y = std::max(0, std::min(pos.y, limit.y));
}

void ScrollView::ScrollTo(Point const& point)
{
    Point const old = pos;
    pos = point;
    trimScrollViewPos();
    if (pos.x != old.x || pos.y != old.y)
        updateChildren();
}

void ScrollView::ScrollBy(int dx, int dy)
{
    ScrollTo(Point(pos.x + dx, pos.y + dy));
}

void ScrollView::userScrollTo(Point const& point)
{
    Point const old = pos;
    ScrollTo(point);
    if ((pos.x != old.x || pos.y != old.y) && !wheelInProgress)
        signalScrolled(pos);
}

void ScrollView::SetScrollViewSize(Size const& newSize)
{
    if (layout != LayoutFree)
        return;
    size = newSize;
    trimScrollViewPos();
    updateChildren();
}

void ScrollView::EnsureVisible(Window* window)
{
    checked_value<unsigned int> const index = GetChildIndex(window);
    if (!index.present)
        return;
    ensureVisible(Rect(children[index.value].position, window->GetGeometry().GetSize()));
}

void ScrollView::EnsureVisible(Rect const& rect)
{
    ensureVisible(rect);
}

void ScrollView::ensureVisible(Rect const& rect)
{
    // Per axis: a rectangle inside the viewport, or covering it, needs nothing.
    auto axis = [](int start, int end, int viewStart, int viewLength)
    {
        int const viewEnd = viewStart + viewLength - 1;
        int const length = end + 1 - start;
        if ((start >= viewStart && end <= viewEnd) || (start <= viewStart && end >= viewEnd))
            return viewStart;
        if (start < viewStart)
            return length < viewLength ? start : end + 1 - viewLength;
        return length < viewLength ? end + 1 - viewLength : start;
    };
    if (rect.IsEmpty())
        return;
    ScrollTo(Point(axis(rect.left, rect.right, pos.x, GetUsableWidth(true)),
                   axis(rect.top, rect.bottom, pos.y, GetUsableHeight(true))));
}

// ============================================================================================
// the update pass
// ============================================================================================

void ScrollView::UpdateChildren()
{
    updateChildren();
}

void ScrollView::onSetGeometry()
{
    updateChildren();
}

void ScrollView::updateChildren()
{
    if (inUpdate || IsBeingDestroyed())
        return;
    ++updatePasses;
    updateScrollViewSize();
    updateScrollBars();
    updateLayout();
    placeChildren();
}

void ScrollView::updateScrollViewSize()
{
    if (!isListLayout())
        return;
    bool const vertical = layout == LayoutVerticalList;
    int total = 0;
    for (std::size_t i = 0; i < children.size(); ++i)
    {
        Window* w = children[i].window;
        total += vertical ? w->GetHeight() : w->GetWidth();
        if (vertical && i + 1 < children.size())
            total += childSpacing;
    }
    if (vertical)
    {
        int const height = total + marginY;
        bool const needsBar =
            verticalBar && (verticalMode == ScrollBarAlwaysOn ||
                            (verticalMode == ScrollBarAutomatic && height > GetHeight()));
        int width = GetWidth() - (needsBar ? verticalBar->GetWidth() : 0) - 2 * viewMargin -
                    (gapX.present ? gapX.value : 0);
        if (childMinSize.present)
            width = std::max(width, childMinSize.value);
        size = Size(width, height);
    }
    else
    {
        int const width = total + marginX;
        bool const needsBar =
            horizontalBar && (horizontalMode == ScrollBarAlwaysOn ||
                              (horizontalMode == ScrollBarAutomatic && width > GetWidth()));
        int height = GetHeight() - (needsBar ? horizontalBar->GetHeight() : 0) - 2 * viewMargin -
                     (gapY.present ? gapY.value : 0);
        if (childMinSize.present)
            height = std::max(height, childMinSize.value);
        size = Size(width, height);
    }
}

void ScrollView::computeScrollBarVisibility(bool& showHorizontal, bool& showVertical)
{
    bool const hAuto = horizontalMode == ScrollBarAutomatic;
    bool const vAuto = verticalMode == ScrollBarAutomatic;
    showHorizontal = horizontalMode == ScrollBarAlwaysOn;
    showVertical = verticalMode == ScrollBarAlwaysOn;
    if (hAuto && vAuto)
    {
        // Each alone first; then once more with the other's result, so that a bar that needs
        // room for the other shows too.
        bool const h0 = size.width > usableWidthIf(false);
        bool const v0 = size.height > usableHeightIf(false);
        showHorizontal = size.width > usableWidthIf(v0);
        showVertical = size.height > usableHeightIf(h0);
    }
    else if (hAuto)
        showHorizontal = size.width > usableWidthIf(showVertical);
    else if (vAuto)
        showVertical = size.height > usableHeightIf(showHorizontal);
    showHorizontal = showHorizontal && horizontalBar;
    showVertical = showVertical && verticalBar;
}

void ScrollView::updateScrollBars()
{
    bool showHorizontal = false;
    bool showVertical = false;
    computeScrollBarVisibility(showHorizontal, showVertical);
    if (horizontalBar)
        showHorizontal ? horizontalBar->Show() : horizontalBar->Hide();
    if (verticalBar)
        showVertical ? verticalBar->Show() : verticalBar->Hide();
    trimScrollViewPos();

    if (horizontalBar)
    {
        int const usable = usableWidthIf(showVertical);
        if (showHorizontal)
        {
            if (!isOnTop(this, horizontalBar))
                horizontalBar->Raise();
            int const inset = edgeMargin + barMarginX;
            int const h = horizontalBar->GetHeight();
            horizontalBar->SetGeometry(inset, GetHeight() - edgeMargin - h,
                                       GetWidth() - 2 * inset - barWidth(), h);
        }
        horizontalBar->SetParameters(value_range<int>(0, size.width - usable), pos.x,
                                     usable - (gapX.present ? gapX.value : 0) - viewMargin);
    }
    if (verticalBar)
    {
        int const usable = usableHeightIf(showHorizontal);
        if (showVertical)
        {
            if (!isOnTop(this, verticalBar))
                verticalBar->Raise();
            int const inset = edgeMargin + barMarginY;
            int const w = verticalBar->GetWidth();
            verticalBar->SetGeometry(GetWidth() - edgeMargin - w, inset, w,
                                     GetHeight() - 2 * inset - barHeight());
        }
        verticalBar->SetParameters(value_range<int>(0, size.height - usable), pos.y,
                                   usable - (gapY.present ? gapY.value : 0) - viewMargin);
    }
}

void ScrollView::updateLayout()
{
    if (!isListLayout())
        return;
    if (layout == LayoutVerticalList)
    {
        int y = viewMargin;
        for (Info& info : children)
        {
            Window* w = info.window;
            info.position = Point(viewMargin, y);
            if (w->GetWidth() != size.width)
                w->SetGeometry(w->GetGeometry().left, w->GetGeometry().top, size.width,
                               w->GetHeight());
            y += w->GetHeight() + childSpacing;
        }
    }
    else
    {
        int x = 0;
        for (Info& info : children)
        {
            Window* w = info.window;
            info.position = Point(x, viewMargin);
            if (w->GetHeight() != size.height)
                w->SetGeometry(w->GetGeometry().left, w->GetGeometry().top, w->GetWidth(),
                               size.height);
            x += w->GetWidth();
        }
    }
}

void ScrollView::placeChildren()
{
    Rect const viewport(pos, Size(GetUsableWidth(true), GetUsableHeight(true)));
    for (Info const& info : children)
    {
        Window* w = info.window;
        Rect const virtualRect(info.position, w->GetGeometry().GetSize());
        if (info.visible && virtualRect.Intersects(viewport))
        {
            w->SetGeometry(info.position.x - pos.x, info.position.y - pos.y, w->GetWidth(),
                           w->GetHeight());
            w->Show();
        }
        else if (w->IsVisible())
            w->Hide();
    }
}

// ============================================================================================
// splitters
// ============================================================================================

void ScrollView::slotSplitterDragged(Splitter* splitter, int position)
{
    checked_value<unsigned int> const index = GetChildIndex(splitter);
    if (!isListLayout() || !index.present || index.value == 0 || index.value + 1 >= children.size())
        return;
    bool const vertical = layout == LayoutVerticalList;
    Info const& before = children[index.value - 1];
    Window* w = before.window;
    int const start = vertical ? before.position.y : before.position.x;
    int const oldSize = vertical ? w->GetHeight() : w->GetWidth();
    // The position is in the view's coordinates; the list lives in virtual ones.
    int newSize = position + (vertical ? pos.y : pos.x) - start;
    if (resizeWithinView)
    {
        int const total = vertical ? size.height : size.width;
        int const room = vertical ? GetHeight() : GetWidth();
        newSize = std::min(newSize, room - (total - oldSize));
    }
    newSize = std::max(newSize, before.minSize.present ? before.minSize.value : 1);
    if (before.maxSize.present)
        newSize = std::min(newSize, before.maxSize.value);
    if (newSize == oldSize)
        return;
    if (vertical)
        w->SetGeometry(w->GetGeometry().left, w->GetGeometry().top, w->GetWidth(), newSize);
    else
        w->SetGeometry(w->GetGeometry().left, w->GetGeometry().top, newSize, w->GetHeight());
    updateChildren();
}

// ============================================================================================
// drawing and input
// ============================================================================================

void ScrollView::Draw(DrawContext* context)
{
    Window::Draw(context);
    borders.Draw(context, Rect(0, GetWidth() - 1, 0, GetHeight() - 1), GetEffectiveAlpha());
}

void ScrollView::slotHorizontalScrolled(int value)
{
    userScrollTo(Point(value, pos.y));
}

void ScrollView::slotVerticalScrolled(int value)
{
    userScrollTo(Point(pos.x, value));
}

bool ScrollView::onMouseWheel(Point const& p, int delta, unsigned int flags)
{
    if (wheelPassThrough && (flags & FlagControl) && (flags & FlagShift))
        return false;
    if (!verticalBar || verticalMode == ScrollBarAlwaysOff)
        return false;
    wheelInProgress = true;
    verticalBar->onMouseWheel(p, delta, flags);
    wheelInProgress = false;
    signalScrolled(pos);
    return true;
}

bool ScrollView::onKeyPress(unsigned int keyCode, unsigned int, bool)
{
    switch (keyCode)
    {
    case KeyCode::UpArrow:
        userScrollTo(Point(pos.x, pos.y - keyStep));
        return true;
    case KeyCode::DownArrow:
        userScrollTo(Point(pos.x, pos.y + keyStep));
        return true;
    case KeyCode::LeftArrow:
        userScrollTo(Point(pos.x - keyStep, pos.y));
        return true;
    case KeyCode::RightArrow:
        userScrollTo(Point(pos.x + keyStep, pos.y));
        return true;
    case KeyCode::PageUp:
        userScrollTo(Point(pos.x, pos.y - GetUsableHeight(true)));
        return true;
    case KeyCode::PageDown:
        userScrollTo(Point(pos.x, pos.y + GetUsableHeight(true)));
        return true;
    case KeyCode::Home:
        userScrollTo(Point(pos.x, 0));
        return true;
    case KeyCode::End:
        userScrollTo(Point(pos.x, maxPos().y));
        return true;
    default:
        return false;
    }
}

} // namespace UI
