// UI::Frame
//
// Index:
//   helpers
//   construction and destruction
//   invalid regions
//   rendering
//   native window and draw rectangle
//   top-level windows
//   mouse routing
//   keyboard routing
//   focus and the focus indicator
//   capture and cursor
//   timers
//   dialogs, design, wheel

#include "Canvas/UI/Frame.h"

#include "Canvas/UI/AnimationHandler.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Design.h"
#include "Canvas/UI/DesignAid.h"
#include "Canvas/UI/Dialog/Base.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/FocusIndicator.h"
#include "Canvas/UI/HotDraw.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/ScrollView.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/detail/DebugReport.h"
#include "Canvas/UI/detail/Stacking.h"
#include "TvBase/Util/ProcessInfo.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace UI
{

// ============================================================================================
// helpers
// ============================================================================================

namespace
{

/// Sets a value for a scope and puts the earlier one back on every exit.
template <typename T>
class ScopedValue
{
public:
    ScopedValue(T& target, T value) : target(target), saved(target) { target = value; }
    ~ScopedValue() { target = saved; }
    ScopedValue(ScopedValue const&) = delete;
    ScopedValue& operator=(ScopedValue const&) = delete;

private:
    T& target;
    T saved;
};

long long area(Rect const& r)
{
    return r.IsEmpty() ? 0 : static_cast<long long>(r.Width()) * r.Height();
}

/// The generator behind the hot-draw marks: state * 214013 + 2531011, output bits 16 to 30.
class MarkColorGenerator
{
public:
    MarkColorGenerator() : state(static_cast<unsigned long long>(std::time(nullptr))) {}
    unsigned int Next()
    {
        state = state * 214013ull + 2531011ull;
        return static_cast<unsigned int>((state >> 16) & 0x7FFF);
    }

private:
    unsigned long long state;
};

bool isUsableForFocus(Window* w)
{
    return w && w->IsVisibleTo(nullptr) && w->IsEnabledTo(nullptr);
}

// The scroll view that scrolls `w` as one of its children; null for none.
ScrollView* scrollViewOf(Window* w)
{
    for (Window* a = w->GetParent(); a; a = a->GetParent())
    {
        ScrollView* view = dynamic_cast<ScrollView*>(a);
        if (view && view->GetChildIndex(w).present)
            return view;
    }
    return nullptr;
}

// Tab reaches a window that is hidden only because a scroll view has scrolled it out of sight.
bool isReachableByTab(Window* w)
{
    if (!w || !w->IsEnabledTo(nullptr))
        return false;
    for (Window* c = w; c; c = c->GetParent())
    {
        if (c->IsVisible())
            continue;
        ScrollView* view = scrollViewOf(c);
        if (!view || !view->GetChildren()[*view->GetChildIndex(c)].visible)
            return false;
    }
    return true;
}

// A window reached by the keyboard comes into view in every scrolled area around it.
void scrollIntoView(Window* w)
{
    for (Window* c = w; c; c = c->GetParent())
    {
        if (ScrollView* view = scrollViewOf(c))
            view->EnsureVisible(c);
    }
}

bool deliverKey(Window* w, KeyboardMessage message, unsigned int keyCode, char character,
                unsigned int flags, bool repeat)
{
    switch (message)
    {
    case KeyPress:
        return w->onKeyPress(keyCode, flags, repeat);
    case KeyRelease:
        return w->onKeyRelease(keyCode, flags);
    case KeyCharacter:
        return w->onKeyChar(character, flags, repeat);
    }
    return false;
}

void collectMouseOver(Window* w, Point const& p, std::set<Window*>& out)
{
    if (!w || !w->IsVisible() || !w->IsEnabled() || !w->GetGlobalGeometry().Contains(p))
        return;
    if (w->IsMouseTracking())
        out.insert(w);
    for (Window* child : w->child_windows())
        collectMouseOver(child, p, out);
}

} // namespace

unsigned int Frame::now() const
{
    return static_cast<unsigned int>(Util::GetTickCountMillis());
}

// ============================================================================================
// construction and destruction
// ============================================================================================

Frame::Frame(Canvas* canvas, void* nativeHandle, DrawContext* context, Point const& nativeOffset,
             String const&, Rect const& drawRect)
    : Object("Frame"), canvas(canvas), nativeHandle(nativeHandle), drawContext(context),
      nativeOffset(nativeOffset), drawRect(drawRect)
{
    size = drawRect.IsEmpty() ? Size() : drawRect.GetSize();
    defaultColors = {0xFF000000u, 0xFFFFFFFFu, 0, 0, 0, 0, 0xFFFFFFFFu, 0};
    if (canvas)
        canvas->addFrame(this);
    if (drawContext)
        drawContext->SetNativeWindowOffset(nativeOffset);
    design = new Design(this);
    animationHandler = new AnimationHandler(this);
    if (canvas)
        canvas->initializeFrame(this);
    if (!drawRect.IsEmpty())
        invalidRegions.push_back(drawRect);
    postUpdateMessage();
}

Frame::~Frame()
{
    destroying = true;
    mouseCapture = nullptr;
    // While destroying, a dying top-level window only nulls its entry, so the walk stays valid.
    for (std::size_t i = 0; i < topLevelWindows.size(); ++i)
    {
        Window* w = topLevelWindows[i];
        if (w && w->IsOwnedByParent())
            delete w;
    }
    delete design;
    design = nullptr;
    delete animationHandler;
    animationHandler = nullptr;
    if (canvas)
        canvas->removeFrame(this);
}

// ============================================================================================
// invalid regions
// ============================================================================================

void Frame::Invalidate(Rect const& rect, bool postUpdate)
{
    // Windows dying with the frame have nothing left to repaint.
    if (destroying)
        return;
    Rect r = rect & drawRect;
    if (r.IsEmpty())
        return;

    // A region that nearly touches r takes it in when their union stays under twice their
    // summed areas; further such regions fold into the first one.
    checked_value<std::size_t> first;
    std::vector<std::size_t> absorbed;
    for (std::size_t i = 0; i < invalidRegions.size(); ++i)
    {
        Rect const& e = invalidRegions[i];
        if (!e.Inflate(1).Intersects(r))
            continue;
        if (area(e | r) >= 2 * (area(e) + area(r)))
            continue;
        if (!first)
            first = i;
        else
            absorbed.push_back(i);
    }
    if (!first)
    {
        invalidRegions.push_back(r);
    }
    else
    {
        Rect& target = invalidRegions[*first];
        target |= r;
        for (std::size_t i : absorbed)
            target |= invalidRegions[i];
        for (auto it = absorbed.rbegin(); it != absorbed.rend(); ++it)
            invalidRegions.erase(invalidRegions.begin() + *it);
    }
    regionsArrived = true;

    if (nativeHandle && host)
    {
        host->InvalidateRect(r);
        if (postUpdate)
            host->PostUpdateMessage();
    }
}

void Frame::postUpdateMessage()
{
    if (nativeHandle && host)
        host->PostUpdateMessage();
}

void Frame::NativeDraw(Rect const& rect, CGColorSpace*)
{
    Rect r = rect & drawRect;
    if (!r.IsEmpty())
        invalidRegions.push_back(r);
    RenderInvalidRegions(false);
}

// ============================================================================================
// rendering
// ============================================================================================

bool Frame::hotDrawApplies()
{
    switch (g_hotDrawMode)
    {
    case 1:
        return host && host->IsCapsLockOn();
    case 2:
    {
        if (!host)
            return false;
        Point p = host->GetCursorScreenPos();
        return p.x >= 0 && p.x <= 19 && p.y >= 0 && p.y <= 19;
    }
    case 3:
        return true;
    default:
        return false;
    }
}

void Frame::RenderInvalidRegions(bool consume)
{
    if (invalidRegions.empty() || !drawContext || !drawingEnabled)
        return;
    ScopedValue<bool> renderingScope(rendering, true);

    bool hot = false;
    bool textOnly = g_bHotDrawTextOnly;
    if (consume)
    {
        hot = hotDrawApplies();
        if (hot != lastHotDraw || g_hotDrawMode != lastHotDrawMode || textOnly != lastHotTextOnly)
        {
            lastHotDraw = hot;
            lastHotDrawMode = g_hotDrawMode;
            lastHotTextOnly = textOnly;
            // The marks must appear or vanish everywhere at once.
            invalidRegions.assign(1, drawRect);
        }
    }
    // An exposure pass draws no marks, not even on text.
    ScopedValue<bool> textOnlyScope(g_bHotDrawTextOnly, consume ? textOnly : false);
    ScopedValue<bool> hotScope(g_hotDrawApplies, hot);

    std::vector<Rect> regions = invalidRegions;
    if (consume)
        invalidRegions.clear();
    regionsArrived = false;

    Rect whole(0, size.width - 1, 0, size.height - 1);
    drawContext->Begin(size);
    for (Rect const& region : regions)
    {
        Rect clip = region & whole;
        drawContext->SetClipRect(clip);
        drawContext->SetTranslation(Point());

        if (backgroundBits)
        {
            if (backgroundBits->GetSize() != size && backgroundColor)
                drawContext->DrawBox(clip, DrawContext::Filled, *backgroundColor, 255);
            drawContext->BitBlt(backgroundBits.get(), clip, clip.TopLeft(), 255);
        }
        else if (backgroundColor)
        {
            drawContext->DrawBox(clip, DrawContext::Filled, *backgroundColor, 255);
        }

        for (std::size_t i = 0; i < topLevelWindows.size(); ++i)
        {
            Window* w = topLevelWindows[i];
            if (w && w->IsVisible() && w->GetEffectiveAlpha() != 0 &&
                w->GetGlobalGeometry().Intersects(clip))
                w->drawWindow(drawContext, w);
        }

        if (hot && !textOnly)
        {
            static MarkColorGenerator generator;
            drawContext->SetClipRect(clip);
            drawContext->SetTranslation(Point());
            unsigned int red = (((generator.Next() % 205) << 16) + 0x320000) | 0xFF000000u;
            drawContext->DrawBox(clip, DrawContext::Filled, red, 255);
        }
    }

    if (design && design->IsActive())
    {
        // Over everything, region by region: the overlay's translucent parts must not pile up
        // on pixels that this pass didn't repaint.
        for (Rect const& region : regions)
        {
            drawContext->SetClipRect(region & whole);
            drawContext->SetTranslation(Point());
            design->Draw(drawContext);
        }
    }

    drawContext->End(regions, nativeHandle, host ? host->GetColorSpace() : nullptr);

    if (regionsArrived)
        postUpdateMessage();
}

// ============================================================================================
// native window and draw rectangle
// ============================================================================================

void Frame::SetNativeWindowHandle(void* handle, DrawContext* context)
{
    if (handle == nativeHandle && context == drawContext)
        return;
    nativeHandle = handle;
    drawContext = context;
    if (drawContext)
        drawContext->SetNativeWindowOffset(nativeOffset);
    invalidRegions.assign(1, Rect(0, size.width - 1, 0, size.height - 1));
    mouseOver.clear();
    mouseInside = false;
    mouseOverDirty = false;
    if (nativeHandle)
        postUpdateMessage();
}

void Frame::SetNativeWindowOffset(Point const& offset)
{
    nativeOffset = offset;
    if (drawContext)
        drawContext->SetNativeWindowOffset(offset);
}

void Frame::SetDrawRect(Rect const& rect)
{
    // An empty rectangle (a window with no room yet) is stored in one well-formed form.
    Rect const r = rect.IsEmpty() ? Rect(0, 0, 0, 0) : rect;
    if (r == drawRect)
        return;
    drawRect = r;
    size = r.GetSize();
    if (topLevelWindow)
        topLevelWindow->SetGeometry(0, 0, size.width, size.height);
    Invalidate(Rect(0, size.width - 1, 0, size.height - 1), true);
}

unsigned int Frame::GetDefaultColor(unsigned int index) const
{
    return index < defaultColors.size() ? defaultColors[index] : 0;
}

// ============================================================================================
// top-level windows
// ============================================================================================

void Frame::addTopLevelWindow(Window* w)
{
    if (destroying || !w)
        return;
    topLevelWindows.push_back(w);
    // The focus indicator stays above every other window.
    if (focusIndicator && focusIndicator != w)
        detail::RaiseInStack(topLevelWindows, focusIndicator, nullptr);
}

void Frame::raiseTopLevelWindow(Window* w, Window* above)
{
    if (destroying || !detail::RaiseInStack(topLevelWindows, w, above))
        return;
    w->Update();
    if (above)
        above->Update();
}

void Frame::lowerTopLevelWindow(Window* w, Window* below)
{
    if (destroying || !detail::LowerInStack(topLevelWindows, w, below))
        return;
    w->Update();
    if (below)
        below->Update();
}

void Frame::onWindowCreate(Window*)
{
    // The accessibility server learns of windows from here once a host provides one.
}

void Frame::onWindowDestroy(Window* w, bool frameChanging)
{
    if (design)
        design->onWindowDestroy(w);
    if (canvas)
        canvas->OnWindowDestroy(w);
    if (animationHandler)
        animationHandler->onWindowDestroy(w);
    mouseOver.erase(w);
    if (focus == w)
        focus = nullptr;
    if (rememberedFocus == w)
        rememberedFocus = nullptr;
    if (frameChanging)
    {
        // The window and everything inside it leave this frame (a dying window has no children
        // left by now): the frame keeps no bare pointer into that subtree, timers included.
        auto inside = [w](Window* x) { return x && w->IsAncestor(x, true); };
        if (inside(focus))
            focus = nullptr;
        if (inside(rememberedFocus))
            rememberedFocus = nullptr;
        if (inside(mouseCapture))
            mouseCapture = nullptr;
        if (inside(activeDialog))
            activeDialog = nullptr;
        if (inside(focusIndicator))
            focusIndicator = nullptr;
        if (inside(defaultButton))
            defaultButton = nullptr;
        if (inside(cancelButton))
            cancelButton = nullptr;
        if (inside(topLevelWindow))
            topLevelWindow = nullptr;
        for (auto m = mouseOver.begin(); m != mouseOver.end();)
            m = inside(*m) ? mouseOver.erase(m) : std::next(m);
        removeSubtreeFromFocusOrder(w);
        for (std::size_t i = timers.size(); i-- > 0;)
            if (inside(timers[i].window))
                eraseTimerAt(i);
    }
    auto it = std::find(topLevelWindows.begin(), topLevelWindows.end(), w);
    if (it != topLevelWindows.end())
    {
        if (destroying)
            *it = nullptr;
        else
            topLevelWindows.erase(it);
    }
}

void Frame::SetTopLevelWindow(Window* w)
{
    if (topLevelWindow && w && w != topLevelWindow)
        return;
    topLevelWindow = w;
    if (w)
        w->SetGeometry(0, 0, size.width, size.height);
}

Window* Frame::GetChildWindow(unsigned int index) const
{
    return index < topLevelWindows.size() ? topLevelWindows[index] : nullptr;
}

Window* Frame::FindChildWindow(String const& name) const
{
    for (Window* w : topLevelWindows)
        if (w && w->GetName() == name)
            return w;
    return nullptr;
}

checked_value<unsigned int> Frame::GetZOrderIndexForWindow(Window* w) const
{
    return detail::IndexInStack(topLevelWindows, w);
}

Window* Frame::GetWindowForZOrderIndex(unsigned int index) const
{
    return GetChildWindow(index);
}

void Frame::removeSubtreeFromFocusOrder(Window* w)
{
    focusOrder.erase(std::remove_if(focusOrder.begin(), focusOrder.end(),
                                    [w](Window* e) { return w->IsAncestor(e, true); }),
                     focusOrder.end());
}

// ============================================================================================
// mouse routing
// ============================================================================================

bool Frame::HandleMouseMessage(MouseMessage message, Point const& point, unsigned int flags,
                               int delta)
{
    TestAutomationInterface::SendMouseEvent(message, point, flags, true, this);
    return handleMouseMessage(message, point, flags, delta);
}

bool Frame::handleMouseMessage(MouseMessage message, Point const& point, unsigned int flags,
                               int delta)
{
    if (!nativeHandle)
        return false;
    ScopedValue<int> source(inputSource, 0);
    Point p = point - nativeOffset;
    if (!inputEnabled)
        return false;

    if (canvas)
        canvas->HandleToolTipMouseMessage(this, message, p, flags, delta);
    if ((message == MouseLeftPress || message == MouseRightPress) && host &&
        !host->IsHoldingFocus() && canvas && canvas->IsNativeFocusTracking())
        host->SetNativeFocus();
    if (filterMouseMessage(message, p, flags, delta))
        return true;
    if (activeDialog && activeDialog->IsAnimating() && !mouseCapture)
        return false;
    if (design->HandleMouseMessage(message, p, flags, delta))
        return true;

    mouseOverDirty = mouseInside;
    Window* hit = nullptr;
    bool result;
    if (mouseCapture)
    {
        Window* capture = mouseCapture;
        result = DeliverMouseMessage(message, capture, p - capture->GetGlobalPos(), flags, delta);
        // The handler may have released the capture or ended the window.
        hit = mouseCapture == capture ? capture : nullptr;
    }
    else
    {
        result = findDeliverMouseMessage(message, p, flags, delta, hit, false);
    }

    if (message == MouseMove || message == MouseCursorUpdate)
    {
        if (!hit)
        {
            SetCurrentCursor(Cursor());
        }
        else if (activeDialog && activeDialog->IsVisible() &&
                 activeDialog->GetGlobalGeometry().Contains(p) &&
                 !hit->HasAncestor(activeDialog, true))
        {
            SetCurrentCursor(Cursor());
        }
        else
        {
            SetCurrentCursor(hit->GetCursor());
            result = true;
        }
    }
    return result;
}
bool Frame::findDeliverMouseMessage(MouseMessage message, Point const& p, unsigned int flags,
                                    int delta, Window*& hit, bool queryOnly)
{
    // A cursor refresh is delivered to nobody and answers false; the search only finds whose
    // cursor shows.
    bool refresh = message == MouseCursorUpdate;
    if (refresh)
        queryOnly = true;
    bool found = false;
    if (activeDialog && activeDialog->IsVisible() && activeDialog->IsModal())
    {
        found = Window::findDeliverMouseMessageHelper(activeDialog, message, p, flags, delta, hit,
                                                      queryOnly);
    }
    else
    {
        for (std::size_t i = topLevelWindows.size(); i-- > 0 && !found;)
        {
            // A handler may have changed the list.
            if (i >= topLevelWindows.size())
                continue;
            Window* w = topLevelWindows[i];
            found =
                w && w->IsVisible() && w->IsEnabled() &&
                Window::findDeliverMouseMessageHelper(w, message, p, flags, delta, hit, queryOnly);
        }
    }
    return found && !refresh;
}

bool Frame::DeliverMouseMessage(MouseMessage message, Window* window, Point const& localPoint,
                                unsigned int flags, int delta)
{
    ScopedValue<int> source(inputSource, 0);
    switch (message)
    {
    case MouseLeftPress:
        return window->onMousePress(localPoint, flags);
    case MouseLeftRelease:
        return window->onMouseRelease(localPoint, flags);
    case MouseLeftDoubleClick:
        return window->onMouseDoubleClick(localPoint, flags);
    case MouseRightPress:
        return window->onMouseRightPress(localPoint, flags);
    case MouseRightRelease:
        return window->onMouseRightRelease(localPoint, flags);
    case MouseRightDoubleClick:
        return window->onMouseRightDoubleClick(localPoint, flags);
    case MouseMove:
        updateMouseOverWindows(localPoint + window->GetGlobalPos());
        if (!(flags & (FlagLeftButton | FlagRightButton)) && window != mouseCapture &&
            !window->IsMouseTracking())
            return false;
        return window->onMouseMove(localPoint, flags);
    case MouseWheel:
        return window->onMouseWheel(localPoint, delta, flags);
    default:
        return false;
    }
}

void Frame::updateMouseOverWindows(checked_value<Point> const& point)
{
    if (!mouseOverDirty)
        return;
    std::set<Window*> fresh;
    if (point)
        for (Window* w : topLevelWindows)
            collectMouseOver(w, *point, fresh);

    std::vector<Window*> left;
    std::vector<Window*> entered;
    std::set_difference(mouseOver.begin(), mouseOver.end(), fresh.begin(), fresh.end(),
                        std::back_inserter(left));
    std::set_difference(fresh.begin(), fresh.end(), mouseOver.begin(), mouseOver.end(),
                        std::back_inserter(entered));
    // Both sets stay listed while the hooks run, so a window that a hook ends drops out of
    // the set (through onWindowDestroy) before it would be called.
    mouseOver.insert(fresh.begin(), fresh.end());
    for (Window* w : left)
        if (mouseOver.erase(w))
            w->onMouseExit();
    for (Window* w : entered)
        if (mouseOver.count(w))
            w->onMouseEnter();
    mouseOverDirty = false;
}

void Frame::HandleMouseEnter()
{
    mouseInside = true;
}

void Frame::HandleMouseExit()
{
    mouseOverDirty = true;
    updateMouseOverWindows(checked_value<Point>());
    mouseInside = false;
}

// ============================================================================================
// keyboard routing
// ============================================================================================

bool Frame::HandleKeyboardMessage(KeyboardMessage message, unsigned int keyCode, char character,
                                  unsigned int flags, bool repeat)
{
    TestAutomationInterface::SendKeyboardEvent(message, keyCode, character, flags, true);
    return handleKeyboardMessage(message, keyCode, character, flags, repeat);
}

bool Frame::handleKeyboardMessage(KeyboardMessage message, unsigned int keyCode, char character,
                                  unsigned int flags, bool repeat)
{
    if (!inputEnabled)
        return false;
    bool result;
    {
        ScopedValue<int> source(inputSource, 1);
        bool consumedByDesign = false;
        result = handleKeyboardMessageInner(message, keyCode, character, flags, repeat,
                                            consumedByDesign);
        if (result && !consumedByDesign)
        {
            startFocusIndicator();
            UpdateFocusIndicator(false);
        }
    }
    if (!result && canvas)
    {
        Frame* other = canvas->GetCurrentFrame();
        // Through the public door, so that the bridge hears of the key handed on as well.
        if (other && other != this)
            result = other->HandleKeyboardMessage(message, keyCode, character, flags, repeat);
    }
    return result;
}

bool Frame::handleKeyboardMessageInner(KeyboardMessage message, unsigned int keyCode,
                                       char character, unsigned int flags, bool repeat,
                                       bool& consumedByDesign)
{
    if (!nativeHandle)
        return false;
    if (design->HandleKeyboardMessage(message, keyCode, character, flags, repeat))
    {
        consumedByDesign = true;
        return true;
    }
    DesignAid* aid = canvas ? canvas->GetDesignAid() : nullptr;
    if (aid && aid->HandleKeyboardMessage(message, keyCode, character, flags, repeat))
    {
        consumedByDesign = true;
        return true;
    }
    if (topLevelWindow && deliverKey(topLevelWindow, message, keyCode, character, flags, repeat))
        return true;
    if (activeDialog && activeDialog->IsAnimating())
        return false;
    if (message == KeyPress && keyCode == 9)
    {
        bool backward = (flags & FlagShift) != 0;
        signalFocusTraversal(backward);
        moveFocus(!backward);
        return true;
    }
    if (activeDialog && activeDialog->IsVisible() && message != KeyCharacter &&
        deliverKey(activeDialog, message, keyCode, character, flags, repeat))
        return true;
    for (Window* w = focus; w && w != topLevelWindow;)
    {
        Window* parent = w->GetParent();
        if (deliverKey(w, message, keyCode, character, flags, repeat))
            return true;
        w = parent;
    }
    return message == KeyPress && activateByKey(keyCode, flags, repeat);
}

// Keys that nothing on the focus path took. Return, and Space where the window takes no
// typing, work as the focused window's own activation key (Enter), which is the key a user
// here presses on a button or a link; then Return and Enter go to the default button and
// Escape to the cancel button, each pressed and let go at once.
bool Frame::activateByKey(unsigned int keyCode, unsigned int flags, bool repeat)
{
    bool const activates = keyCode == KeyCode::Return ||
                           (keyCode == KeyCode::Space && focus && !focus->NeedsEnterKey());
    if (activates && isUsableForFocus(focus) && focus->onKeyPress(KeyCode::Enter, flags, repeat))
        return true;
    if (repeat)
        return false;
    Window* target = nullptr;
    if (keyCode == KeyCode::Return || keyCode == KeyCode::Enter)
        target = defaultButton;
    else if (keyCode == KeyCode::Escape)
        target = cancelButton;
    if (!isUsableForFocus(target) || !target->onKeyPress(KeyCode::Enter, flags, false))
        return false;
    // The click may have destroyed the button; the frame has forgotten it then.
    if (target == defaultButton || target == cancelButton)
        target->onKeyRelease(KeyCode::Enter, flags);
    return true;
}

// ============================================================================================
// focus and the focus indicator
// ============================================================================================

void Frame::SetFocus(Window* w)
{
    Window* target = w && w->GetFocusProxyWindow() ? w->GetFocusProxyWindow() : w;
    if (target == focus)
        return;
    if (canvas && canvas->IsNativeFocusTracking() && host && !host->IsHoldingFocus())
    {
        // The window gets focus when the native window next becomes active.
        Window* old = focus;
        focus = nullptr;
        rememberedFocus = target;
        if (old)
            old->setFocus(false);
        if (focusIndicator)
            focusIndicator->Hide();
        UpdateFocusIndicator(false);
        return;
    }
    rememberedFocus = nullptr;
    Window* old = focus;
    focus = target;
    // The hooks below may move the focus again; then that move has the last word.
    if (old)
    {
        old->setFocus(false);
        if (focus != target)
            return;
    }
    if (target)
    {
        target->setFocus(true);
        if (focus != target)
            return;
    }
    UpdateFocusIndicator(false);
}

void Frame::SetNativeFocus()
{
    if (host)
        host->SetNativeFocus();
}

void Frame::HandleLoseFocus()
{
    Window* old = focus;
    rememberedFocus = old;
    focus = nullptr;
    if (old)
        old->setFocus(false);
    UpdateFocusIndicator(false);
}

void Frame::HandleReceiveFocus()
{
    SetFocus(rememberedFocus);
}

void Frame::SetFocusTimerInterval(checked_value<unsigned int> const& interval)
{
    if (interval == focusTimerInterval)
        return;
    focusTimerInterval = interval;
    // Without a time-out the indicator shows from now on.
    if (!focusTimerInterval)
    {
        startFocusIndicator();
        UpdateFocusIndicator(false);
    }
}

void Frame::resetFocusTimer()
{
    if (focusIndicatorStarted)
        focusIndicatorStarted = now();
}

void Frame::startFocusIndicator()
{
    bool wasRunning = focusIndicatorStarted.IsPresent();
    focusIndicatorStarted = now();
    if (!wasRunning && focus)
        focus->onFocusTimerChange();
}

void Frame::SetFocusOrder(std::vector<Window*> const& order)
{
    focusOrder.clear();
    for (Window* w : order)
        focusOrder.push_back(w && w->GetFocusProxyWindow() ? w->GetFocusProxyWindow() : w);
    if (focus && !focus->IsVisibleTo(nullptr))
        SetFocus(nullptr);
}

void Frame::FocusFirst()
{
    if (!focusOrder.empty() && isUsableForFocus(focusOrder[0]))
        SetFocus(focusOrder[0]);
    else
        SetFocus(nullptr);
    resetFocusTimer();
}

void Frame::moveFocus(bool forward)
{
    if (focusOrder.empty())
        return;
    // The first Tab only shows where the focus is.
    if (!focusIndicatorStarted && focus)
    {
        startFocusIndicator();
        UpdateFocusIndicator(false);
        return;
    }
    std::size_t n = focusOrder.size();
    auto it = std::find(focusOrder.begin(), focusOrder.end(), focus);
    std::size_t start =
        it != focusOrder.end() ? std::size_t(it - focusOrder.begin()) : (forward ? n - 1 : 0);
    std::size_t i = start;
    do
    {
        i = forward ? (i + 1) % n : (i + n - 1) % n;
    } while (i != start && !isReachableByTab(focusOrder[i]));
    if (isReachableByTab(focusOrder[i]))
    {
        scrollIntoView(focusOrder[i]);
        SetFocus(focusOrder[i]);
    }
    startFocusIndicator();
    UpdateFocusIndicator(false);
}

void Frame::SetFocusIndicator(FocusIndicator* indicator)
{
    focusIndicator = indicator;
    if (!indicator)
        return;
    indicator->Hide();
    detail::RaiseInStack(topLevelWindows, indicator, nullptr);
}

void Frame::UpdateFocusIndicator(bool animate)
{
    if (!focusIndicator)
        return;
    if (focusIndicatorStarted && focus)
    {
        Rect r = focusIndicator->AdjustFocusRect(focus->GetFocusRect());
        unsigned int mode = focus->GetFocusIndicatorMode();
        if (!focusIndicator->IsVisible())
        {
            focusIndicator->SetMode(mode);
            focusIndicator->EndAnimation();
            focusIndicator->MoveTo(r);
            focusIndicator->Show();
        }
        else
        {
            focusIndicator->Animate(r, mode, animate);
        }
    }
    else
    {
        focusIndicator->Hide();
    }
}

// ============================================================================================
// capture and cursor
// ============================================================================================

void Frame::SetMouseCapture(Window* w)
{
    if (mouseCapture && mouseCapture != w)
    {
        Window* old = mouseCapture;
        old->onMouseRelease(Point(0, 0), 0);
    }
    mouseCapture = w;
}

Point Frame::GetScreenPos() const
{
    return host ? host->GetScreenPos() + nativeOffset : nativeOffset;
}

Point Frame::GetCursorPos() const
{
    return host ? host->GetCursorScreenPos() - GetScreenPos() : Point();
}

void Frame::SetCurrentCursor(Cursor const& cursor)
{
    if (currentCursor && *currentCursor == cursor)
        return;
    currentCursor = cursor;
    if (host)
        host->SetCurrentCursor(cursor);
}

// ============================================================================================
// timers
// ============================================================================================

unsigned int Frame::SetTimer(Window* window, unsigned int intervalMs, bool oneShot)
{
    unsigned int id = 1;
    std::size_t k = 0;
    while (k < timers.size() && timers[k].id == id)
    {
        ++id;
        ++k;
    }
    // A timer made during a pass waits for the next one.
    TimerInfo info{id, intervalMs, now(), window, !tickingTimers, oneShot};
    timers.insert(timers.begin() + k, info);
    if (currentTimerIndex && k <= *currentTimerIndex)
        currentTimerIndex = *currentTimerIndex + 1;
    if (nextTimerIndex && k < *nextTimerIndex)
        nextTimerIndex = *nextTimerIndex + 1;
    return id;
}

void Frame::EndTimer(unsigned int id)
{
    for (std::size_t i = 0; i < timers.size(); ++i)
    {
        if (timers[i].id == id)
        {
            eraseTimerAt(i);
            return;
        }
    }
    detail::DebugReport(String("Unknown timer ID %1").Arg(id));
}

void Frame::eraseTimerAt(std::size_t index)
{
    timers.erase(timers.begin() + index);
    if (currentTimerIndex)
    {
        if (*currentTimerIndex == index)
            currentTimerIndex = checked_value<unsigned int>();
        else if (index < *currentTimerIndex)
            currentTimerIndex = *currentTimerIndex - 1;
    }
    if (nextTimerIndex && index < *nextTimerIndex)
        nextTimerIndex = *nextTimerIndex - 1;
}

void Frame::tickTimers()
{
    animationHandler->tick();
    unsigned int t = now();
    design->UpdateActive();

    if (focusIndicatorStarted && focusTimerInterval &&
        t - *focusIndicatorStarted >= *focusTimerInterval)
    {
        focusIndicatorStarted = checked_value<unsigned int>();
        if (focus)
            focus->onFocusTimerChange();
        UpdateFocusIndicator(false);
    }

    {
        ScopedValue<bool> ticking(tickingTimers, true);
        nextTimerIndex = 0u;
        while (*nextTimerIndex < timers.size())
        {
            unsigned int index = *nextTimerIndex;
            TimerInfo& timer = timers[index];
            nextTimerIndex = index + 1;
            // Fire times don't accumulate: a late timer does not catch up.
            if (!timer.armed || t - timer.lastFire < timer.intervalMs)
                continue;
            currentTimerIndex = index;
            timer.window->onTimer(timer.id);
            if (currentTimerIndex)
            {
                TimerInfo& still = timers[*currentTimerIndex];
                still.lastFire = t;
                if (still.oneShot)
                    eraseTimerAt(*currentTimerIndex);
            }
            currentTimerIndex = checked_value<unsigned int>();
        }
        nextTimerIndex = checked_value<unsigned int>();
    }
    for (TimerInfo& timer : timers)
        timer.armed = true;
}

// ============================================================================================
// dialogs, design, wheel
// ============================================================================================

void Frame::OnCloseDialog()
{
    activeDialog = nullptr;
    signalDialogClosed();
}

void Frame::SetDesignDisable(bool disable)
{
    designDisable = disable;
    design->SetDisabled(disable);
}

int Frame::AccumulateWheelDelta(float delta, unsigned long long id)
{
    if (id != wheelDeltaId)
    {
        wheelDeltaId = id;
        wheelDeltaRemainder = 0.0f;
    }
    wheelDeltaRemainder += delta;
    if (std::fabs(wheelDeltaRemainder) <= 1.0f)
        return 0;
    int steps = static_cast<int>(wheelDeltaRemainder);
    wheelDeltaRemainder -= static_cast<float>(steps);
    return steps;
}

unsigned long long Frame::CreateWheelDeltaID(Window* window, unsigned int n)
{
    return reinterpret_cast<unsigned long long>(window) + n;
}

} // namespace UI
