// UI::Window
//
// Index:
//   construction and destruction
//   tree
//   stacking
//   geometry
//   state: visibility, enabled, alpha, focus
//   cursor and properties
//   dynamic layout metrics
//   painting
//   hit test

#include "Canvas/UI/Window.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/detail/DebugReport.h"
#include "Canvas/UI/detail/Stacking.h"

#include <algorithm>

namespace UI
{

namespace
{

// Names of the properties every window has, made once: windows are made by the thousand.
String const& colorName()
{
    static String const name("Color");
    return name;
}

String const& toolTipName()
{
    static String const name("ToolTip");
    return name;
}

unsigned char clampAlpha(int v)
{
    return static_cast<unsigned char>(std::min(255, std::max(0, v)));
}

/// Pops the currently-drawing window and restores the context on every exit of `drawWindow`.
class DrawScope
{
public:
    DrawScope(Canvas* canvas, DrawContext* context, Window* window)
        : canvas(canvas), context(context), window(window), clip(context->GetClipRect()),
          translation(context->GetTranslation())
    {
        if (canvas)
            canvas->PushCurrentlyDrawingWindow(window);
    }
    ~DrawScope()
    {
        context->SetClipRect(clip);
        context->SetTranslation(translation);
        if (canvas)
            canvas->PopCurrentlyDrawingWindow(window);
    }
    DrawScope(DrawScope const&) = delete;
    DrawScope& operator=(DrawScope const&) = delete;

    Rect const& SavedClip() const { return clip; }

private:
    Canvas* canvas;
    DrawContext* context;
    Window* window;
    Rect clip;
    Point translation;
};

} // namespace

// ============================================================================================
// construction and destruction
// ============================================================================================

Window::Window(Frame* frame, Window* parent, String const& name)
    : Object(name), frame(frame), parent(parent)
{
    color = frame->GetDefaultColor(2);
    if (parent)
        parent->addChildWindow(this);
    else
        frame->addTopLevelWindow(this);
    frame->onWindowCreate(this);
    if (parent)
        updateTotalBaseAlpha(parent->totalBaseAlpha);
    updateGlobalPos();

    static String const noToolTip("");
    Util::Property<String> toolTip = CreateProperty<String>(toolTipName(), noToolTip);
    if (toolTip)
        WatchProperty(toolTipName(), &Window::toolTipPropertyChanged);
    Util::Property<unsigned int> colorProperty = CreateProperty<unsigned int>(colorName(), color);
    if (colorProperty)
        WatchProperty(colorName(), &Window::colorPropertyChanged);
}

Window::~Window()
{
    if (!beingDestroyed)
        Update();
    beingDestroyed = true;
    deleteOrDetachChildren();
    if (parent)
    {
        Window* p = parent;
        p->removeChildWindow(this);
        p->onChildRemoved(this);
    }
    frame->onWindowDestroy(this, true);
}

/// Deletes owned children and detaches the rest, from the top of the stack down. Each step
/// takes the child out of the list (its destructor or `Reparent` removes it); the loop makes
/// sure of that, so a child that misbehaves cannot stall it.
void Window::deleteOrDetachChildren()
{
    while (!children.empty())
    {
        Window* child = children.back();
        if (!child)
        {
            children.pop_back();
            continue;
        }
        if (child->ownedByParent)
            delete child;
        else
            child->Reparent(nullptr, nullptr);
        if (!children.empty() && children.back() == child)
            children.pop_back();
    }
    childrenByName.clear();
}

// ============================================================================================
// tree
// ============================================================================================

void Window::addChildWindow(Window* child)
{
    if (!child)
        return;
    children.push_back(child);
    if (!childrenByName.emplace(child->GetName(), child).second && detail::DebugReportsEnabled())
        detail::DebugReport(String("There is already a child window of %1 named %2")
                                .Arg(GetName())
                                .Arg(child->GetName()));
    onChildAdded(child);
}

void Window::removeChildWindow(Window* child)
{
    // From the top down: children are taken away last first as their parent dies, and a search
    // from the front would make that quadratic in the number of children.
    auto it = std::find(children.rbegin(), children.rend(), child);
    if (it == children.rend())
        return;
    children.erase(std::next(it).base());
    // By name alone: removing a second child of a taken name forgets the first one's entry.
    childrenByName.erase(child->GetName());
}

void Window::onChildDestroy(Window* child)
{
    removeChildWindow(child);
    onChildRemoved(child);
}

void Window::Reparent(Window* newParent, Frame* newFrame)
{
    if (!newFrame)
        newFrame = newParent ? newParent->frame : frame;
    if (newParent == parent && newFrame == frame)
        return;
    if (newParent == this)
        return;
    if (newParent && newParent->frame != newFrame)
        return;
    // A window cannot move inside its own subtree.
    if (newParent && IsAncestor(newParent))
        return;

    Update(checked_value<Rect>(), false, false);
    bool frameChanged = newFrame != frame;
    if (frameChanged)
        frame->removeSubtreeFromFocusOrder(this);
    if (parent)
    {
        Window* p = parent;
        p->removeChildWindow(this);
        p->onChildRemoved(this);
    }
    frame->onWindowDestroy(this, frameChanged);
    setFrame(newFrame);
    parent = newParent;
    if (parent)
        parent->addChildWindow(this);
    else
        frame->addTopLevelWindow(this);
    updateTotalBaseAlpha(parent ? parent->totalBaseAlpha : 255);
    updateGlobalPos();
}

void Window::setFrame(Frame* f)
{
    frame = f;
    for (Window* child : children)
        if (child)
            child->setFrame(f);
}

Window* Window::GetChildWindow(unsigned int index) const
{
    return index < children.size() ? children[index] : nullptr;
}

Window* Window::FindChildWindow(String const& name) const
{
    auto it = childrenByName.find(name);
    return it == childrenByName.end() ? nullptr : it->second;
}

bool Window::IsChildWindow(Window const* w) const
{
    return w && std::find(children.begin(), children.end(), w) != children.end();
}

bool Window::IsAncestor(Window const* w, bool includeSelf) const
{
    if (!w)
        return false;
    return w->HasAncestor(this, includeSelf);
}

bool Window::HasAncestor(Window const* w, bool includeSelf) const
{
    if (!w)
        return false;
    for (Window const* p = includeSelf ? this : parent; p; p = p->parent)
        if (p == w)
            return true;
    return false;
}

void Window::DeleteAllChildren()
{
    deleteOrDetachChildren();
}

void Window::DeleteAllLayoutCreatedChildren()
{
    std::size_t i = children.size();
    while (i > 0)
    {
        --i;
        Window* child = children.at(i);
        if (child && child->layoutCreated)
        {
            delete child;
            // A delete can take more than one entry with it.
            i = std::min(i, children.size());
        }
        else if (child)
        {
            child->DeleteAllLayoutCreatedChildren();
            i = std::min(i, children.size());
        }
    }
}

Canvas* Window::GetCanvas() const
{
    return frame->GetCanvas();
}

// ============================================================================================
// stacking
// ============================================================================================

void Window::Raise(Window* above)
{
    if (!parent)
    {
        frame->raiseTopLevelWindow(this, above);
        return;
    }
    if (!detail::RaiseInStack(parent->children, this, above))
        return;
    Update();
    if (above)
        above->Update();
}

void Window::Lower(Window* below)
{
    if (!parent)
    {
        frame->lowerTopLevelWindow(this, below);
        return;
    }
    if (!detail::LowerInStack(parent->children, this, below))
        return;
    Update();
    if (below)
        below->Update();
}

checked_value<unsigned int> Window::GetZOrderIndex() const
{
    if (!parent)
        return frame->GetZOrderIndexForWindow(const_cast<Window*>(this));
    return parent->GetZOrderIndexForWindow(const_cast<Window*>(this));
}

checked_value<unsigned int> Window::GetZOrderIndexForWindow(Window* w) const
{
    return detail::IndexInStack(children, w);
}

Window* Window::GetWindowForZOrderIndex(unsigned int index) const
{
    return GetChildWindow(index);
}

// ============================================================================================
// geometry
// ============================================================================================

void Window::SetGeometry(int x, int y, int width, int height)
{
    if (fixedWidth)
        width = rect.Width();
    if (fixedHeight)
        height = rect.Height();
    bool moved = x != rect.left || y != rect.top;
    if (!moved && width == rect.Width() && height == rect.Height())
        return;

    Rect oldGlobal = GetGlobalGeometry();
    rect = Rect(x, x + width - 1, y, y + height - 1);
    if (moved)
        updateGlobalPos();
    if (focused || focusWithin)
        frame->UpdateFocusIndicator(false);
    onSetGeometry();

    if (!visible)
        return;
    Rect newGlobal = GetGlobalGeometry();
    if (oldGlobal.Intersects(newGlobal))
    {
        invalidateGlobal(oldGlobal | newGlobal);
    }
    else
    {
        invalidateGlobal(oldGlobal);
        invalidateGlobal(newGlobal);
    }
}

void Window::invalidateGlobal(Rect const& r)
{
    Update(checked_value<Rect>(r), true, false);
}

void Window::SetGlobalGeometry(int x, int y, int width, int height)
{
    Point origin = parent ? parent->globalPos : Point();
    SetGeometry(x - origin.x, y - origin.y, width, height);
}

void Window::SetFixedWidth(int width)
{
    if (width != rect.Width())
    {
        fixedWidth = false;
        SetGeometry(rect.left, rect.top, width, rect.Height());
    }
    fixedWidth = true;
}

void Window::SetFixedHeight(int height)
{
    if (height != rect.Height())
    {
        fixedHeight = false;
        SetGeometry(rect.left, rect.top, rect.Width(), height);
    }
    fixedHeight = true;
}

void Window::SetFixedSize(int width, int height)
{
    if (width != rect.Width() || height != rect.Height())
    {
        fixedWidth = false;
        fixedHeight = false;
        SetGeometry(rect.left, rect.top, width, height);
    }
    fixedWidth = true;
    fixedHeight = true;
}

void Window::Move(int x, int y, MoveJustification justification)
{
    int w = rect.Width();
    int h = rect.Height();
    switch (justification)
    {
    case MoveRight:
        x -= w;
        break;
    case MoveBottom:
        y -= h;
        break;
    case MoveBottomRight:
        x -= w;
        y -= h;
        break;
    case MoveCentre:
        x -= w / 2;
        y -= h / 2;
        break;
    case MoveTopLeft:
        break;
    }
    SetGeometry(x, y, w, h);
}

Rect Window::GetClippedGlobalGeometry() const
{
    Rect r = GetGlobalGeometry();
    for (Window const* p = parent; p; p = p->parent)
        r &= p->GetGlobalGeometry();
    return r;
}

void Window::updateGlobalPos()
{
    globalPos = (parent ? parent->globalPos : Point()) + rect.TopLeft();
    for (Window* child : children)
        if (child)
            child->updateGlobalPos();
}

// ============================================================================================
// state: visibility, enabled, alpha, focus
// ============================================================================================

void Window::Show()
{
    if (visible)
        return;
    visible = true;
    onShow();
    if (focused || focusWithin)
        frame->UpdateFocusIndicator(false);
    Update();
    signalVisibility(true);
}

void Window::Hide()
{
    if (!visible)
        return;
    bool wasWhollyVisible = IsVisibleTo(nullptr);
    visible = false;
    onHide();
    if (focused || focusWithin)
        frame->SetFocus(nullptr);
    if (wasWhollyVisible)
        Update(checked_value<Rect>(), false, true);
    signalVisibility(false);
}

bool Window::IsVisibleTo(Window const* stopAt) const
{
    for (Window const* w = this; w; w = w->parent)
    {
        if (w == stopAt)
            return true;
        if (!w->visible)
            return false;
    }
    return true;
}

bool Window::IsEnabledTo(Window const* stopAt) const
{
    for (Window const* w = this; w; w = w->parent)
    {
        if (w == stopAt)
            return true;
        if (!w->enabled)
            return false;
    }
    return true;
}

void Window::SetEnabled(bool e)
{
    if (enabled == e)
        return;
    enabled = e;
    onEnableChange();
    if (!enabled && frame->GetFocus() == this)
        frame->SetFocus(nullptr);
    Update();
}

void Window::SetAlpha(unsigned char a)
{
    if (alpha == a)
        return;
    alpha = a;
    effectiveAlpha = clampAlpha(int(totalBaseAlpha) - (255 - int(alpha)));
    onSetAlpha();
    if (visible)
        Update();
}

void Window::SetBaseAlpha(unsigned char a)
{
    if (baseAlpha == a)
        return;
    // Wraps in eight bits on purpose: after a clamp the recovered value can be off, and the
    // tree has always behaved so.
    unsigned char parentTotal = static_cast<unsigned char>(totalBaseAlpha + 255 - baseAlpha);
    baseAlpha = a;
    updateTotalBaseAlpha(parentTotal);
    Update();
}

void Window::updateTotalBaseAlpha(unsigned char parentTotal)
{
    totalBaseAlpha = clampAlpha(int(baseAlpha) - (255 - int(parentTotal)));
    effectiveAlpha = clampAlpha(int(totalBaseAlpha) - (255 - int(alpha)));
    for (Window* child : children)
        if (child)
            child->updateTotalBaseAlpha(totalBaseAlpha);
}

void Window::SetFocus()
{
    if (visible && enabled)
        frame->SetFocus(this);
}

void Window::setFocus(bool f)
{
    if (focused == f)
        return;
    focused = f;
    for (Window* p = parent; p; p = p->parent)
        p->focusWithin = f;
    if (f)
        onReceiveFocus();
    else
        onLoseFocus();
    Update();
}

Rect Window::GetFocusRect() const
{
    return GetGlobalGeometry();
}

// ============================================================================================
// cursor and properties
// ============================================================================================

void Window::SetCursor(Cursor const& c, bool setNow)
{
    cursor.reset(new Cursor(c));
    hasOwnCursor = true;
    if (setNow)
        frame->SetCurrentCursor(c);
}

void Window::ClearCursor()
{
    cursor.reset();
    hasOwnCursor = false;
}

Cursor Window::GetCursor() const
{
    return cursor ? *cursor : Cursor();
}

void Window::SetColor(unsigned int c)
{
    SetProperty<unsigned int>(colorName(), c);
}

unsigned int Window::GetColor() const
{
    return GetProperty<unsigned int>(colorName()).GetOr(color);
}

void Window::SetToolTipText(String const& text)
{
    SetProperty<String>(toolTipName(), text);
}

String Window::GetToolTipText() const
{
    if (toolTipProxy)
        return toolTipProxy->GetToolTipText();
    return GetProperty<String>("ToolTip").GetOr(String(""));
}

bool Window::HasToolTip() const
{
    return !GetToolTipText().IsEmpty();
}

void Window::colorPropertyChanged()
{
    color = GetProperty<unsigned int>(colorName()).GetOr(color);
    onSetColorProperty();
}

void Window::toolTipPropertyChanged()
{
    toolTipExplicit = true;
}

void Window::NotifyPaletteChanged(bool recursive)
{
    onPaletteChange();
    if (!recursive)
        return;
    for (std::size_t i = 0; i < children.size(); ++i)
        if (children[i])
            children[i]->NotifyPaletteChanged(true);
}

// ============================================================================================
// dynamic layout metrics
// ============================================================================================

void Window::SetDynamicLayoutMetric(unsigned int index, int value, bool notify)
{
    if (metricValues.size() < index + 1)
        metricValues.resize(index + 1, 0);
    metricValues[index] = value;
    if (notify)
        onSetDynamicLayoutMetric(index, value);
}

void Window::SetDynamicLayoutMetricName(unsigned int index, String const& name,
                                        checked_value<int> const& value)
{
    if (metricNames.size() < index + 1)
        metricNames.resize(index + 1);
    metricNames[index] = name;
    if (metricValues.size() < index + 1)
        metricValues.resize(index + 1, 0);
    if (value)
        metricValues[index] = *value;
}

void Window::onSetDynamicLayoutMetric(unsigned int index, int)
{
    detail::DebugReport(String("Unimplemented Metric%1 on '%2'").Arg(index).Arg(GetName()));
}

// ============================================================================================
// painting
// ============================================================================================

void Window::Update()
{
    Update(checked_value<Rect>(), false, false);
}

void Window::Update(checked_value<Rect> const& r, bool rectIsGlobal, bool evenIfHidden)
{
    if (!evenIfHidden && !IsVisibleTo(nullptr))
        return;
    Rect area;
    if (!r)
        area = GetGlobalGeometry();
    else if (!rectIsGlobal)
        area = r.Get().Offset(globalPos) & GetGlobalGeometry();
    else
        area = *r;
    frame->Invalidate(area, true);
}

void Window::Repaint(checked_value<Rect> const& r)
{
    Rect area = r ? r.Get().Offset(globalPos) : GetGlobalGeometry();
    frame->Invalidate(area, false);
    frame->RenderInvalidRegions(true);
}

void Window::drawWindow(DrawContext* context, Window* window)
{
    DrawScope scope(frame->GetCanvas(), context, window);
    Point offset = frame->GetDrawOffset();
    Rect working = scope.SavedClip();
    if (window->parent)
        working &= window->parent->GetGlobalGeometry().Offset(offset);
    context->SetTranslation(window->globalPos + offset);
    context->SetClipRect(working & window->GetGlobalGeometry().Offset(offset));
    window->Draw(context);
}

void Window::Draw(DrawContext* context)
{
    Rect clip = getDrawClipRect(context);
    // By index: a child's draw code may not change this list, but a bad one must not crash us.
    for (std::size_t i = 0; i < children.size(); ++i)
    {
        Window* child = children[i];
        if (child && isDrawChild(child, clip))
            drawWindow(context, child);
    }
}

bool Window::isDrawChild(Window* child, Rect const& clip) const
{
    if (!child->visible || child->effectiveAlpha == 0)
        return false;
    return child->GetGlobalGeometry().Offset(frame->GetDrawOffset()).Intersects(clip);
}

Rect Window::getDrawClipRect(DrawContext* context) const
{
    return context->GetClipRect() & GetGlobalGeometry().Offset(frame->GetDrawOffset());
}

// ============================================================================================
// hit test
// ============================================================================================

bool Window::findDeliverMouseMessageHelper(Window* window, unsigned int message, Point const& point,
                                           unsigned int flags, int delta, Window*& hit,
                                           bool queryOnly)
{
    if (!window)
        return false;
    Frame* f = window->frame;
    Size const& size = f->GetSize();
    if (!window->GetGlobalGeometry().Contains(point))
        return false;
    if (point.x < 0 || point.y < 0 || point.x >= size.width || point.y >= size.height)
        return false;
    if (window->hasOwnCursor && (!hit || hit->IsAncestor(window)))
        hit = window;
    for (std::size_t i = window->children.size(); i-- > 0;)
    {
        // A handler below may have changed the list.
        if (i >= window->children.size())
            continue;
        Window* child = window->children[i];
        if (child && child->visible && child->enabled &&
            findDeliverMouseMessageHelper(child, message, point, flags, delta, hit, queryOnly))
            return true;
    }
    if (queryOnly)
        return hit != nullptr;
    return f->DeliverMouseMessage(static_cast<MouseMessage>(message), window,
                                  point - window->globalPos, flags, delta);
}

} // namespace UI
