// UI::Design: the mouse.
//
// Index:
//   messages
//   presses and releases
//   moves, hover and cursors
//   hit testing
//   dragging and clamping
//   guides
//   invalidation

#include "Canvas/UI/Design.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DesignAid.h"
#include "Canvas/UI/FocusIndicator.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Window.h"

#include <algorithm>
#include <cstdlib>

namespace UI
{

namespace
{

bool commandHeld(unsigned int flags)
{
    // The Command key of the design tools is Ctrl here; the Super key counts too.
    return (flags & (FlagControl | FlagCommand)) != 0;
}

bool shiftHeld(unsigned int flags)
{
    return (flags & FlagShift) != 0;
}

bool altHeld()
{
    return Native::PlatformSupportFactory::IsAltPressed();
}

int clampInt(int value, int low, int high)
{
    return std::max(low, std::min(value, high));
}

int start(Rect const& r, unsigned int axis)
{
    return axis == 0 ? r.left : r.top;
}

int last(Rect const& r, unsigned int axis)
{
    return axis == 0 ? r.right : r.bottom;
}

int extent(Rect const& r, unsigned int axis)
{
    return axis == 0 ? r.Width() : r.Height();
}

int centre(Rect const& r, unsigned int axis)
{
    return start(r, axis) + extent(r, axis) / 2;
}

/// Whether a drag of `type` moves the near (left or top) edge on `axis`.
bool movesNear(Design::DragType type, unsigned int axis)
{
    if (axis == 0)
        return type != Design::DragBottomRight && type != Design::DragRight &&
               type != Design::DragTopRight;
    return type != Design::DragBottomLeft && type != Design::DragBottom &&
           type != Design::DragBottomRight;
}

/// Whether a drag of `type` moves the far (right or bottom) edge on `axis`.
bool movesFar(Design::DragType type, unsigned int axis)
{
    if (axis == 0)
        return type != Design::DragTopLeft && type != Design::DragLeft &&
               type != Design::DragBottomLeft;
    return type != Design::DragTopLeft && type != Design::DragTopRight && type != Design::DragTop;
}

} // namespace

// ============================================================================================
// messages
// ============================================================================================

bool Design::HandleMouseMessage(MouseMessage message, Point const& point, unsigned int flags, int)
{
    if (!active)
        return false;
    readoutSet = false;
    handleMouseMessage(message, point, flags);
    if (!selected.empty())
        selectionTouched();
    return true;
}

void Design::handleMouseMessage(MouseMessage message, Point const& point, unsigned int flags)
{
    switch (message)
    {
    case MouseLeftPress:
        leftPress(point, flags);
        break;
    case MouseLeftRelease:
        leftRelease();
        break;
    case MouseLeftDoubleClick:
        leftDoubleClick(point, flags);
        break;
    case MouseRightPress:
        rightPress(point);
        break;
    case MouseMove:
        mouseMove(point, flags);
        return;
    case MouseCursorUpdate:
        return;
    default:
        break;
    }
    // A message that the press left (a reparent, say) stays up through its release.
    if (message == MouseLeftPress)
        pressMessage = readoutSet;
    else if (message == MouseLeftRelease && pressMessage)
        readoutSet = true;
    if (!readoutSet)
        updateReadoutText();
}

// ============================================================================================
// presses and releases
// ============================================================================================

void Design::leftPress(Point const& point, unsigned int flags)
{
    bool const command = commandHeld(flags);
    bool const shift = shiftHeld(flags);

    if (layoutActionPending && layoutAction != LayoutReparent)
    {
        if (layoutAction == LayoutCreateWindow)
        {
            createWindowAt(point);
            return;
        }
        resetLayoutAction();
    }

    if (altHeld())
    {
        invalidateRubberBand();
        rubberStart = point;
        rubberEnd = point;
        Window* parent = findWindow(point);
        while (parent && parent->child_windows().empty())
            parent = parent->GetParent();
        rubberParent = parent;
        captureMouse();
        return;
    }

    // Guides first: a press near a guide never reaches the windows behind it.
    bool guideHit = false;
    for (unsigned int axis = 0; axis < 2; ++axis)
    {
        std::vector<int> const& guides = axis == 0 ? verticalGuides : horizontalGuides;
        std::set<unsigned int>& chosen =
            axis == 0 ? selectedVerticalGuides : selectedHorizontalGuides;
        int const position = axis == 0 ? point.x : point.y;
        for (unsigned int i = 0; i < guides.size(); ++i)
        {
            if (std::abs(guides[i] - position) >= 5)
                continue;
            if (!guideHit && !shift && !command)
            {
                clearSelection();
                clearGuideSelection();
            }
            guideHit = true;
            if (command && chosen.count(i))
            {
                chosen.erase(i);
            }
            else
            {
                chosen.insert(i);
                guideDragIndex[axis] = i;
                guideDragging[axis] = true;
            }
            break;
        }
    }
    if (guideHit)
    {
        updateSelectedGuides();
        captureMouse();
        return;
    }
    if (!shift && !command)
        clearGuideSelection();

    Window* hit = findWindow(point);
    if (!hit)
    {
        if (!command)
            clearSelection();
        return;
    }
    if (isSelected(hit))
    {
        pressedSelected = true;
        Window* under = nullptr;
        for (Window* w : selected)
            if (globalRect(w).Contains(point))
            {
                under = w;
                break;
            }
        if (!under)
        {
            captureMouse();
            return;
        }
        dragType = getDragType(under, point);
    }
    else
    {
        if (!command && !shift)
            clearSelection();
        addSelectedWindow(hit);
        pressedSelected = false;
        dragType = DragMove;
    }

    SaveUndoGeometries();
    if (command)
    {
        singleDragWindow = hit;
        singleDragMoved = false;
    }
    dragStartRects.clear();
    for (Window* w : selected)
        dragStartRects[w] = globalRect(w);
    dragOrigin = point;
    captureMouse();
}

void Design::leftRelease()
{
    guideDragging[0] = guideDragging[1] = false;
    if (rubberStart)
    {
        invalidateRubberBand();
        resetRubberBand();
    }
    dragOrigin = checked_value<Point>();
    dragType = DragMove;
    invalidateSingleDragGuides();
    // A Command-click on a selected window that didn't drag it takes it out.
    if (singleDragWindow && !singleDragMoved && pressedSelected)
        removeSelectedWindow(singleDragWindow);
    singleDragWindow = nullptr;
    releaseMouse();
}

void Design::leftDoubleClick(Point const& point, unsigned int flags)
{
    if (!shiftHeld(flags))
    {
        clearSelection();
        clearGuideSelection();
    }
    invalidateGuides();
    if (altHeld())
    {
        horizontalGuides.push_back(point.y);
        selectedHorizontalGuides.insert(static_cast<unsigned int>(horizontalGuides.size() - 1));
    }
    else
    {
        verticalGuides.push_back(point.x);
        selectedVerticalGuides.insert(static_cast<unsigned int>(verticalGuides.size() - 1));
    }
    updateSelectedGuides();
}

// ============================================================================================
// moves, hover and cursors
// ============================================================================================

void Design::mouseMove(Point const& point, unsigned int flags)
{
    if (showCursorBeams)
    {
        invalidateBeams();
        Size const size = frameSize();
        verticalBeam = Rect(point.x, point.x, 0, size.height - 1);
        horizontalBeam = Rect(0, size.width - 1, point.y, point.y);
        invalidateBeams();
    }

    for (unsigned int axis = 0; axis < 2; ++axis)
    {
        if (!guideDragging[axis])
            continue;
        moveGuideTo(axis, axis == 0 ? point.x : point.y);
        return;
    }

    if (rubberStart)
    {
        invalidateRubberBand();
        rubberEnd = point;
        invalidateRubberBand();
        if (shiftHeld(flags))
            return;
        clearSelection();
        Rect const band = rubberBandRect();
        std::vector<Window*> const& candidates =
            rubberParent ? rubberParent->child_windows() : frame->GetTopLevelWindows();
        for (Window* w : std::vector<Window*>(candidates))
            if (w && w->IsVisible() && w->GetDynamicLayoutMode() != Window::DynamicLayoutNever &&
                globalRect(w).Intersects(band))
                addSelectedWindow(w);
        updateReadoutText();
        return;
    }

    if (dragOrigin)
    {
        // A Ctrl-click toggles unless the window really moved: a move that the press itself
        // brings is no drag.
        if (singleDragWindow && !singleDragMoved && point == *dragOrigin)
            return;
        invalidateSelectedWindows();
        dragSelectedWindows(point - *dragOrigin, shiftHeld(flags));
        invalidateSelectedWindows();
        return;
    }

    if (layoutActionPending && layoutAction == LayoutCreateWindow)
    {
        setCursor(Cursor::PointingHand);
        return;
    }

    updateHoverWindow();
    Window* under = nullptr;
    for (Window* w : selected)
        if (globalRect(w).Contains(point))
        {
            under = w;
            break;
        }
    if (!under)
    {
        setCursor(Cursor::Arrow);
        return;
    }
    dragType = getDragType(under, point);
    static int const shapes[9] = {3, 6, 7, 4, 5, 6, 7, 4, 5};
    setCursor(shapes[dragType]);
}

void Design::updateHoverWindow()
{
    Window* now = nullptr;
    if (active && KeyCode::IsCommandCtrlPressed())
    {
        Point const p = frame->GetCursorPos();
        Size const size = frameSize();
        if (p.x >= 0 && p.y >= 0 && p.x < size.width && p.y < size.height)
            now = findWindow(p);
    }
    if (now == hoverWindow)
        return;
    if (hoverWindow)
        InvalidateWindow(hoverWindow);
    invalidateSingleDragGuides();
    hoverWindow = now;
    if (hoverWindow)
        InvalidateWindow(hoverWindow);
    invalidateSingleDragGuides();
    updateReadoutText();
}

// ============================================================================================
// hit testing
// ============================================================================================

Window* Design::findWindow(Point const& point) const
{
    std::vector<Window*> const& windows = frame->GetTopLevelWindows();
    Window* onTop = frame->GetFocusIndicator();
    for (std::size_t i = windows.size(); i-- > 0;)
    {
        Window* w = windows[i];
        if (!w || w == onTop || !w->IsVisible())
            continue;
        if (Window* found = findHelper(point, w))
            return found;
    }
    return nullptr;
}

Window* Design::findHelper(Point const& point, Window* window) const
{
    if (!window || !globalRect(window).Contains(point) ||
        std::find(noSelectWindows.begin(), noSelectWindows.end(), window) != noSelectWindows.end())
        return nullptr;
    std::vector<Window*> const& children = window->child_windows();
    if (children.empty())
        return window;
    for (std::size_t i = children.size(); i-- > 0;)
    {
        Window* child = children[i];
        if (!child || !child->IsVisible())
            continue;
        if (child->child_windows().empty() &&
            child->GetDynamicLayoutMode() == Window::DynamicLayoutSaved)
        {
            // The fast path for the common leaf.
            if (globalRect(child).Contains(point) &&
                std::find(noSelectWindows.begin(), noSelectWindows.end(), child) ==
                    noSelectWindows.end())
                return child;
            continue;
        }
        if (Window* found = findHelper(point, child))
            return found;
    }
    return window;
}

Design::DragType Design::getDragType(Window* window, Point const& point) const
{
    Rect const r = globalRect(window);
    int const x = point.x;
    int const y = point.y;
    auto in = [](int v, int low, int high) { return v >= low && v <= high; };
    bool const fixedW = window->IsFixedWidth();
    bool const fixedH = window->IsFixedHeight();
    bool const nearL = in(x, r.left, r.left + 4);
    bool const nearR = in(x, r.right - 4, r.right);
    bool const nearT = in(y, r.top, r.top + 4);
    bool const nearB = in(y, r.bottom - 4, r.bottom);
    if (!(fixedW && fixedH))
    {
        if (nearL && nearT)
            return DragTopLeft;
        if (nearL && nearB)
            return DragBottomLeft;
        if (nearR && nearB)
            return DragBottomRight;
        if (nearR && nearT)
            return DragTopRight;
    }
    if (!fixedW && in(y, r.top, r.bottom + 1))
    {
        if (nearL)
            return DragLeft;
        if (nearR)
            return DragRight;
    }
    if (!fixedH && in(x, r.left, r.right + 1))
    {
        if (nearT)
            return DragTop;
        if (nearB)
            return DragBottom;
    }
    return DragMove;
}

// ============================================================================================
// dragging and clamping
// ============================================================================================

void Design::dragSelectedWindows(Point delta, bool shift)
{
    if (dragStartRects.size() != selected.size())
        return;
    if (shift && dragType == DragMove)
    {
        if (std::abs(delta.x) >= std::abs(delta.y))
            delta.y = 0;
        else
            delta.x = 0;
    }
    std::vector<Window*> windows = selected;
    if (singleDragWindow)
    {
        windows.assign(1, singleDragWindow);
        singleDragMoved = true;
        invalidateSingleDragGuides();
    }
    bool const snap = shouldSnapToGuides();
    int const k = dragType == DragMove ? 1 : 2;
    for (Window* w : windows)
    {
        auto found = dragStartRects.find(w);
        if (found == dragStartRects.end())
            continue;
        Rect const startRect = found->second;
        int d[2] = {delta.x, delta.y};
        if (snap)
        {
            for (unsigned int axis = 0; axis < 2; ++axis)
            {
                std::vector<int> nears = axis == 0 ? verticalGuides : horizontalGuides;
                std::vector<int> centres = nears;
                std::vector<int> fars = nears;
                if (singleDragWindow)
                {
                    for (Window* s : selected)
                    {
                        if (singleDragWindow->IsAncestor(s, true))
                            continue;
                        Rect const sr = globalRect(s);
                        nears.push_back(start(sr, axis));
                        centres.push_back(centre(sr, axis));
                        fars.push_back(last(sr, axis));
                    }
                }
                int const c = centre(startRect, axis);
                int const nearEdge = start(startRect, axis);
                int const farEdge = last(startRect, axis);
                // The last match wins: near edges beat far edges beat centres.
                for (int g : centres)
                    if (std::abs(d[axis] + (c - g) * k) <= 5)
                        d[axis] = (g - c) * k;
                if (movesFar(dragType, axis))
                    for (int g : fars)
                        if (std::abs(d[axis] + farEdge - g) <= 5)
                            d[axis] = g - farEdge;
                if (movesNear(dragType, axis))
                    for (int g : nears)
                        if (std::abs(d[axis] + nearEdge - g) <= 5)
                            d[axis] = g - nearEdge;
            }
        }
        if (shift && dragType != DragMove)
        {
            // After the snap, so that a Shift-drag always ends on a multiple of 10.
            for (unsigned int axis = 0; axis < 2; ++axis)
            {
                int const size = extent(startRect, axis);
                d[axis] = d[axis] + 5 - ((size + d[axis] + 5) % 10);
            }
        }
        Point const parentPos = w->GetParent() ? w->GetParent()->GetGlobalPos() : Point();
        Rect const r = startRect.Offset(Point() - parentPos);
        Point topLeft = r.TopLeft();
        Point bottomRight = r.BottomRight();
        int const dx = d[0];
        int const dy = d[1];
        switch (dragType)
        {
        case DragMove:
            topLeft += Point(dx, dy);
            bottomRight += Point(dx, dy);
            break;
        case DragTopLeft:
            topLeft += Point(dx, dy);
            break;
        case DragLeft:
            topLeft.x += dx;
            break;
        case DragBottomLeft:
            topLeft.x += dx;
            bottomRight.y += dy;
            break;
        case DragBottom:
            bottomRight.y += dy;
            break;
        case DragBottomRight:
            bottomRight += Point(dx, dy);
            break;
        case DragRight:
            bottomRight.x += dx;
            break;
        case DragTopRight:
            topLeft.y += dy;
            bottomRight.x += dx;
            break;
        case DragTop:
            topLeft.y += dy;
            break;
        }
        SetWindowGeometryAndClip(w, topLeft, bottomRight, dragType);
    }
}

void Design::SetWindowGeometryAndClip(Window* window, Point const& topLeft,
                                      Point const& bottomRight, DragType type)
{
    if (!window)
        return;
    InvalidateWindow(window);
    int left = topLeft.x;
    int top = topLeft.y;
    int right = bottomRight.x;
    int bottom = bottomRight.y;
    if (left > right)
    {
        if (type == DragTopLeft || type == DragLeft || type == DragBottomLeft)
            left = right;
        else
            right = left;
    }
    if (top > bottom)
    {
        if (type == DragTopLeft || type == DragTopRight || type == DragTop)
            top = bottom;
        else
            bottom = top;
    }

    Size const frameSz = frameSize();
    Window* parent = window->GetParent();
    Size limit = frameSz;
    Point minimum;
    if (parent)
    {
        if (altHeld())
            minimum = Point() - parent->GetGlobalPos();
        else
            limit = parent->GetGeometry().GetSize();
    }

    int x, y, width, height;
    if (type == DragMove)
    {
        width = right + 1 - left;
        width = width <= 0 ? 1 : std::min(width, limit.width);
        height = bottom + 1 - top;
        height = height <= 0 ? 1 : std::min(height, limit.height);
        x = clampInt(left, minimum.x, limit.width - width);
        y = clampInt(top, minimum.y, limit.height - height);
    }
    else
    {
        x = clampInt(left, minimum.x, limit.width - 1);
        y = clampInt(top, minimum.y, limit.height - 1);
        width = right + 1 - x;
        width = width <= 0 ? 1 : std::min(width, limit.width - x);
        height = bottom + 1 - y;
        height = height <= 0 ? 1 : std::min(height, limit.height - y);
    }
    window->SetGeometry(x, y, width, height);
    updateSelectedWindowGeometries(true);
}

// ============================================================================================
// guides
// ============================================================================================

void Design::moveGuideTo(unsigned int axis, int position)
{
    invalidateGuides();
    std::vector<int>& guides = axis == 0 ? verticalGuides : horizontalGuides;
    if (guideDragIndex[axis] >= guides.size())
        return;
    if (shouldSnapToGuides())
    {
        for (Window* w : selected)
        {
            Rect const r = globalRect(w);
            if (std::abs(start(r, axis) - position) < 5)
                position = start(r, axis);
            else if (std::abs(centre(r, axis) - position) < 5)
                position = centre(r, axis);
            else if (std::abs(last(r, axis) - position) <= 4)
                position = last(r, axis);
        }
    }
    Size const size = frameSize();
    int const high = (axis == 0 ? size.width : size.height) - 1;
    guides[guideDragIndex[axis]] = clampInt(position, 0, high);
    updateSelectedGuides();
}

void Design::clearGuideSelection()
{
    if (selectedVerticalGuides.empty() && selectedHorizontalGuides.empty())
        return;
    invalidateGuides();
    selectedVerticalGuides.clear();
    selectedHorizontalGuides.clear();
}

void Design::updateSelectedGuides()
{
    invalidateGuides();
    // The Design Aid shows the selected guides when no window is selected.
    if (designAid)
        designAid->UpdateSelectionGeometry();
}

std::vector<int> Design::GetSelectedGuides(unsigned int axis) const
{
    std::vector<int> const& guides = axis == 0 ? verticalGuides : horizontalGuides;
    std::set<unsigned int> const& chosen =
        axis == 0 ? selectedVerticalGuides : selectedHorizontalGuides;
    std::vector<int> positions;
    for (unsigned int i : chosen)
        if (i < guides.size())
            positions.push_back(guides[i]);
    std::sort(positions.begin(), positions.end());
    return positions;
}

void Design::SetSelectedGuidePos(int position, unsigned int axis)
{
    std::vector<int> const chosen = GetSelectedGuides(axis);
    if (chosen.empty())
        return;
    invalidateGuides();
    int const shift = position - chosen[0];
    std::vector<int>& guides = axis == 0 ? verticalGuides : horizontalGuides;
    Size const size = frameSize();
    int const high = axis == 0 ? size.width : size.height;
    for (unsigned int i : axis == 0 ? selectedVerticalGuides : selectedHorizontalGuides)
        if (i < guides.size())
            guides[i] = clampInt(guides[i] + shift, 0, high);
    updateSelectedGuides();
}

// ============================================================================================
// invalidation
// ============================================================================================

void Design::InvalidateWindow(Window* window)
{
    if (!window)
        return;
    Rect const r = globalRect(window);
    frame->Invalidate(r.Inflate(5), true);
    if (!showCenterGuides && !showEdgeGuides)
        return;
    Size const size = frameSize();
    Rect const box = r.Inflate(1);
    auto row = [&](int y) { frame->Invalidate(Rect(0, size.width - 1, y, y), true); };
    auto column = [&](int x) { frame->Invalidate(Rect(x, x, 0, size.height - 1), true); };
    if (showCenterGuides)
    {
        row(centre(box, 1));
        column(centre(box, 0));
    }
    if (showEdgeGuides)
    {
        row(box.top);
        row(box.bottom);
        column(box.left);
        column(box.right);
    }
}

void Design::invalidateGuides()
{
    Size const size = frameSize();
    for (int x : verticalGuides)
        frame->Invalidate(Rect(x - 2, x + 2, 0, size.height - 1), true);
    for (int y : horizontalGuides)
        frame->Invalidate(Rect(0, size.width - 1, y - 2, y + 2), true);
}

void Design::invalidateSingleDragGuides()
{
    Window* t = singleDragWindow ? singleDragWindow : hoverWindow;
    if (!t)
        return;
    Rect const tr = globalRect(t);
    // The lines lie between the two windows and the labels sit on them.
    for (Window* s : selected)
        if (s != t)
            frame->Invalidate((tr | globalRect(s)).Inflate(24), true);
}

void Design::invalidateBeams()
{
    if (!verticalBeam.IsEmpty())
        frame->Invalidate(verticalBeam, true);
    if (!horizontalBeam.IsEmpty())
        frame->Invalidate(horizontalBeam, true);
}

void Design::invalidateRubberBand()
{
    if (!rubberStart || !rubberEnd)
        return;
    Rect const band = rubberBandRect();
    frame->Invalidate(band.Inflate(1), true);
    Font* font =
        frame->GetCanvas() ? frame->GetCanvas()->GetFont(checked_value<unsigned int>()) : nullptr;
    int const textWidth = font ? static_cast<int>(font->GetStringWidth(
                                     String("%1 x %1").Arg(band.Width()).Arg(band.Height())))
                               : 0;
    frame->Invalidate(getRubberBandSizeTextRect(textWidth), true);
}

void Design::resetRubberBand()
{
    rubberStart = checked_value<Point>();
    rubberEnd = checked_value<Point>();
    rubberParent = nullptr;
}

Rect Design::rubberBandRect() const
{
    if (!rubberStart || !rubberEnd)
        return Rect();
    Point const a = *rubberStart;
    Point const b = *rubberEnd;
    return Rect(std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y));
}

Rect Design::getRubberBandSizeTextRect(int textWidth) const
{
    Rect const band = rubberBandRect();
    int const width = textWidth + 4;
    int const left = band.left + (band.Width() - width) / 2;
    return Rect(left, left + width - 1, band.bottom + 2, band.bottom + 14);
}

} // namespace UI
