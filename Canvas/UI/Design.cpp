// UI::Design: the live design engine of one frame.
//
// Index:
//   helpers
//   construction and settings
//   activity
//   selection
//   readout
//   undo and A/B
//   deleting, creating, reparenting
//   layout files
//   finding windows
//
// The mouse lives in DesignMouse.cpp, the keyboard in DesignKeyboard.cpp, the overlay in
// DesignDraw.cpp.

#include "Canvas/UI/Design.h"

#include "Canvas/UI/Box.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CursorSentry.h"
#include "Canvas/UI/DesignAid.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/SimpleTimer.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/WindowFactory.h"
#include "TvBase/Controller/BoolParamConfigFile.h"
#include "TvBase/Util/ConfigFile.h"

#include <boost/function.hpp>

#include <algorithm>
#include <cstdio>

namespace UI
{

// ============================================================================================
// helpers
// ============================================================================================

namespace
{

String const ReadoutHostName("Runtime Design Host Window");

/// Every window of the frame, parents before their children, with its depth (frame children
/// have depth 0).
void listWindows(Window* window, int depth, std::vector<std::pair<Window*, int>>& out)
{
    out.push_back(std::make_pair(window, depth));
    for (Window* child : window->child_windows())
        if (child)
            listWindows(child, depth + 1, out);
}

String withoutBlanks(String const& text)
{
    return text.IsNull() ? String("") : text.Replace(String(" "), String(""));
}

/// The letters of `search` occur in `name` in order, ignoring case.
bool matchesInOrder(String const& name, String const& search)
{
    std::string const n = name.ToLower().CStr();
    std::string const s = search.ToLower().CStr();
    std::size_t at = 0;
    for (char c : s)
    {
        at = n.find(c, at);
        if (at == std::string::npos)
            return false;
        ++at;
    }
    return true;
}

} // namespace

Rect Design::globalRect(Window* window) const
{
    return window->GetGlobalGeometry();
}

Size Design::frameSize() const
{
    return frame->GetSize();
}

bool Design::shouldSnapToGuides() const
{
    if (designAid)
        return designAid->ShouldSnapToGuides();
    return snapToGuides;
}

void Design::setCursor(int shape)
{
    frame->SetCurrentCursor(Cursor(static_cast<Cursor::CursorShape>(shape)));
}

void Design::captureMouse()
{
    ensureMouseProxy();
    if (frame->GetMouseCapture() != mouseProxy)
        frame->SetMouseCapture(mouseProxy);
}

void Design::releaseMouse()
{
    if (mouseProxy && frame->GetMouseCapture() == mouseProxy)
        frame->ReleaseMouseCapture();
}

// ============================================================================================
// construction and settings
// ============================================================================================

Design::Design(Frame* frame) : frame(frame), config(new Util::ConfigFile(String("com.tavorin")))
{
    designAidVisible.reset(
        new Controller::BoolParamConfigFile(true, config.get(), String("DesignAidVisible"), true));
    UpdateFromConfigFile();
    UpdateActive();
}

Design::~Design()
{
    // The frame has deleted its windows by now: nothing of the tree may be touched.
    hoverTimer.reset();
    readoutBox = nullptr;
    readoutText = nullptr;
    readoutHost.reset();
}

void Design::UpdateFromConfigFile()
{
    prevented = config->GetBool(String("PreventRuntimeDesign"), false);
    notEnabled = !config->GetBool(String("RuntimeDesignEnable"), false);
}

void Design::SetDisabled(bool disable)
{
    disabled = disable;
    UpdateActive();
}

// ============================================================================================
// activity
// ============================================================================================

void Design::UpdateActive()
{
    // The dormant case costs these tests and nothing else.
    bool const blocked = prevented || notEnabled || disabled;
    if (blocked && !active)
        return;
    Native::HostWindow* host = frame->GetHostWindow();
    bool want = false;
    bool userOff = false;
    if (!blocked)
    {
        want = host && host->IsCapsLockOn();
        if (designAid && designAid->IsDesignForceEnabled())
            want = true;
        Canvas* canvas = frame->GetCanvas();
        if (canvas && !canvas->IsDesignEnabled())
            want = false;
        userOff = !want;
    }
    if (!host || !host->IsVisible())
        want = false;
    if (want == active)
        return;

    invalidateOverlay();
    active = want;
    resetRubberBand();
    dragOrigin = checked_value<Point>();
    dragType = DragMove;
    selected.clear();
    resetLayoutAction();
    if (active)
        activate();
    else
        deactivate(userOff);
    invalidateOverlay();
}

void Design::activate()
{
    ensureMouseProxy();
    Canvas* canvas = frame->GetCanvas();
    if (canvas)
        canvas->SetDesignEnabled(false);
    readoutHost.reset(Native::PlatformSupportFactory::CreateHostWindow(canvas, ReadoutHostName,
                                                                       nullptr, nullptr));
    Frame* readoutFrame = readoutHost ? readoutHost->GetFrame() : nullptr;
    if (readoutFrame)
    {
        readoutFrame->SetDrawingEnabled(true);
        readoutFrame->SetDesignDisable(true);
    }
    if (canvas)
        canvas->SetDesignEnabled(true);
    if (readoutFrame)
    {
        Point const corner = frame->GetScreenPos() + Point(0, frame->GetSize().height);
        Native::HostWindowStyle style;
        style.utilityPanel = true;
        readoutHost->SetCaption(String("Dynamic Layout"), false);
        if (readoutHost->Create(nullptr, nullptr, ReadoutHostName, Rect(corner, Size(200, 24)),
                                false, false, style))
        {
            readoutBox =
                new Box(readoutFrame, nullptr, String("Runtime Design Readout Background Box"),
                        frame->GetDefaultColor(1), Window::DynamicLayoutNever);
            readoutText = new Text(readoutFrame, nullptr, String("Runtime Design Readout Text"),
                                   String(""), checked_value<unsigned int>(), HAlignLeft,
                                   frame->GetDefaultColor(0), Point(5, 5));
            readoutText->SetDynamicLayoutMode(Window::DynamicLayoutNever);
            readoutHost->Show(false);
            // A window manager may give the new readout the keyboard: keys that nothing in its
            // frame takes go on to the canvas's current frame, which is this one unless the
            // program named another.
            if (canvas && !canvas->GetCurrentFrame())
                canvas->SetCurrentFrame(frame);
        }
    }
    updateReadoutText();
    if (!designAid && canvas)
    {
        canvas->initializeDesignAid();
        designAid = canvas->GetDesignAid();
    }
    if (designAid)
    {
        designAid->SetDesignFrame(frame);
        if (designAidVisible->get())
            designAid->ShowHostWindow();
        else
            designAid->HideHostWindow();
        designAid->UpdatePropertyEditorVisibility();
    }
    hoverTimer.reset(
        new SimpleTimer(boost::function<void()>([this] { updateHoverWindow(); }), 100, false));
}

void Design::deactivate(bool userOff)
{
    readoutBox = nullptr;
    readoutText = nullptr;
    readoutHost.reset();
    if (userOff && designAid)
        designAid->HideAll();
    hoverTimer.reset();
    hoverWindow = nullptr;
    setCursor(Cursor::Arrow);
    releaseMouse();
}

void Design::ensureMouseProxy()
{
    if (mouseProxy)
        return;
    mouseProxy = new Window(frame, nullptr, String("Runtime Design Mouse Proxy Window"));
    mouseProxy->SetDynamicLayoutMode(Window::DynamicLayoutNever);
    mouseProxy->Hide();
    // Below every real window, so that it never hides anything from a hit test.
    mouseProxy->Lower(nullptr);
}

void Design::invalidateOverlay()
{
    invalidateSelectedWindows();
    invalidateGuides();
    invalidateSingleDragGuides();
    invalidateBeams();
    invalidateRubberBand();
    if (hoverWindow)
        InvalidateWindow(hoverWindow);
}

void Design::onWindowDestroy(Window* window)
{
    // Reparenting inside the frame also reports here; only a window that dies or leaves the
    // frame is forgotten.
    if (!window->IsBeingDestroyed() && window->GetFrame() == frame)
        return;
    if (window == mouseProxy)
        mouseProxy = nullptr;
    auto drop = [window](std::vector<Window*>& list)
    { list.erase(std::remove(list.begin(), list.end(), window), list.end()); };
    drop(selected);
    drop(noSelectWindows);
    drop(reparentWindows);
    std::replace(menuWindows.begin(), menuWindows.end(), window, static_cast<Window*>(nullptr));
    originalGeometries.erase(window);
    abSelectedGeometries.erase(window);
    abAllGeometries.erase(window);
    dragStartRects.erase(window);
    for (UndoRecord& record : undoStack)
        record.erase(window);
    for (UndoRecord& record : redoStack)
        record.erase(window);
    if (hoverWindow == window)
        hoverWindow = nullptr;
    if (singleDragWindow == window)
        singleDragWindow = nullptr;
    if (rubberParent == window)
        rubberParent = nullptr;
    if (createParent == window)
    {
        createParent = nullptr;
        if (layoutActionPending && layoutAction == LayoutCreateWindow)
            resetLayoutAction();
    }
}

Rect Design::GetScreenShotTrimRect() const
{
    if (screenShotTrimRect)
        return *screenShotTrimRect;
    Size const size = frameSize();
    return Rect(0, size.width - 1, 0, size.height - 1);
}

// ============================================================================================
// selection
// ============================================================================================

bool Design::isSelected(Window* window) const
{
    return std::find(selected.begin(), selected.end(), window) != selected.end();
}

void Design::clearSelection()
{
    if (selected.empty())
        return;
    invalidateSelectedWindows();
    invalidateSingleDragGuides();
    selected.clear();
    updateSelectedWindows();
}

void Design::addSelectedWindow(Window* window)
{
    if (!window || isSelected(window))
        return;
    if (!originalGeometries.count(window))
        originalGeometries[window] = window->GetGeometry();
    selected.push_back(window);
    InvalidateWindow(window);
    updateSelectedWindows();
}

void Design::removeSelectedWindow(Window* window)
{
    auto it = std::find(selected.begin(), selected.end(), window);
    if (it == selected.end())
        return;
    InvalidateWindow(window);
    invalidateSingleDragGuides();
    selected.erase(it);
    updateSelectedWindows();
}

void Design::updateSelectedWindows()
{
    if (designAid)
        designAid->SetSelectedWindows(std::vector<Window*>(selected));
    if (layoutActionPending && layoutAction == LayoutReparent && selected.size() == 1)
        finishReparentAction();
}

void Design::invalidateSelectedWindows()
{
    for (Window* w : selected)
        InvalidateWindow(w);
}

void Design::updateSelectedWindowGeometries(bool geometryChanged)
{
    if (geometryChanged)
    {
        abSelectedGeometries.clear();
        abAllGeometries.clear();
    }
    if (designAid)
        designAid->UpdateSelectionGeometry();
    invalidateSingleDragGuides();
    invalidateSelectedWindows();
    updateReadoutText();
}

void Design::SetSelectionTo(Window* window)
{
    SetSelectionTo(std::vector<Window*>{window});
}

void Design::SetSelectionTo(std::vector<Window*> const& windows)
{
    // A selection made by a tool may finish a reparent, whose readout then stands.
    bool const reparenting = layoutActionPending && layoutAction == LayoutReparent;
    clearSelection();
    for (Window* w : windows)
        addSelectedWindow(w);
    selectionTouched();
    if (!reparenting || layoutActionPending)
        updateReadoutText();
}

void Design::Deselect()
{
    clearSelection();
    selectionTouched();
    updateReadoutText();
}

void Design::SelectParent()
{
    if (!selected.empty() && selected[0]->GetParent())
        SetSelectionTo(selected[0]->GetParent());
}

void Design::SelectNextSibling(bool forward)
{
    std::vector<Window*> const& siblings = selected.empty() || !selected[0]->GetParent()
                                               ? frame->GetTopLevelWindows()
                                               : selected[0]->GetParent()->child_windows();
    if (siblings.empty())
        return;
    if (selected.empty())
    {
        SetSelectionTo(siblings[0]);
        return;
    }
    auto it = std::find(siblings.begin(), siblings.end(), selected[0]);
    std::size_t const n = siblings.size();
    std::size_t const at = it == siblings.end() ? 0 : std::size_t(it - siblings.begin());
    SetSelectionTo(siblings[forward ? (at + 1) % n : (at + n - 1) % n]);
}

void Design::SelectChild()
{
    if (selected.empty())
    {
        SetSelectionTo(frame->GetChildWindow(0));
        return;
    }
    if (!selected[0]->child_windows().empty())
        SetSelectionTo(selected[0]->child_windows()[0]);
}

void Design::ToggleNoSelectState()
{
    for (Window* w : selected)
    {
        auto it = std::find(noSelectWindows.begin(), noSelectWindows.end(), w);
        if (it == noSelectWindows.end())
            noSelectWindows.push_back(w);
        else
            noSelectWindows.erase(it);
    }
    clearSelection();
    setReadoutText(String("Toggled no-select state for selected windows"));
}

void Design::ToggleSelectionFrames()
{
    invalidateSelectedWindows();
    showSelectionFrames = !showSelectionFrames;
    invalidateSelectedWindows();
}

void Design::ToggleCursorBeams()
{
    invalidateBeams();
    showCursorBeams = !showCursorBeams;
    invalidateBeams();
}

void Design::ToggleDesignAidVisibility()
{
    designAidVisible->set(!designAidVisible->get());
    if (designAid)
    {
        if (designAidVisible->get())
            designAid->ShowHostWindow();
        else
            designAid->HideHostWindow();
    }
}

// ============================================================================================
// readout
// ============================================================================================

void Design::updateReadoutText()
{
    if (layoutActionPending)
    {
        switch (layoutAction)
        {
        case LayoutAlignMin:
            setReadoutText(String("Align to minimum (L)eft, (R)ight, (T)op, (B)ottom, (W)idth, "
                                  "(H)eight, (V)ertical center, or horizontal (C)enter?"));
            return;
        case LayoutAlignMax:
            setReadoutText(String("Align to maximum (L)eft, (R)ight, (T)op, (B)ottom, (W)idth, "
                                  "(H)eight, (V)ertical center, or horizontal (C)enter?"));
            return;
        case LayoutSpace:
            setReadoutText(String("Space windows evenly (H)orizontally, evenly (V)ertically, by a "
                                  "specific (X) value, or by a specific (Y) value?"));
            return;
        case LayoutSpaceX:
            setReadoutText(String("Enter the desired horizontal space between windows."));
            return;
        case LayoutSpaceY:
            setReadoutText(String("Enter the desired vertical space between windows."));
            return;
        case LayoutCreateWindow:
            setReadoutText(
                String("Click to place the new %1 '%2'").Arg(createType).Arg(createName));
            return;
        case LayoutReparent:
            setReadoutText(String("Select a window to use as the new parent of %1")
                               .Arg(getFormattedWindowNames(reparentWindows)));
            return;
        }
    }
    Window* one = selected.size() == 1 ? selected[0] : (selected.empty() ? hoverWindow : nullptr);
    if (one)
    {
        Rect const r = one->GetGeometry();
        setReadoutText(String("%1 [%2,%3 %4x%5]")
                           .Arg(one->GetName())
                           .Arg(r.left)
                           .Arg(r.top)
                           .Arg(r.Width())
                           .Arg(r.Height()));
        return;
    }
    if (selected.empty())
    {
        setReadoutText(String("No windows selected"));
        return;
    }
    Rect united;
    for (Window* w : selected)
        united |= globalRect(w);
    // Relative to the nearest common ancestor, when the windows have one.
    Window* ancestor = selected[0]->GetParent();
    while (ancestor &&
           !std::all_of(selected.begin(), selected.end(),
                        [ancestor](Window* w) { return w->HasAncestor(ancestor, false); }))
        ancestor = ancestor->GetParent();
    if (ancestor)
        united = united.Offset(Point() - ancestor->GetGlobalPos());
    setReadoutText(String("%1 windows [%2,%3 %4x%5]")
                       .Arg(static_cast<unsigned int>(selected.size()))
                       .Arg(united.left)
                       .Arg(united.top)
                       .Arg(united.Width())
                       .Arg(united.Height()));
}

void Design::setReadoutText(String const& text)
{
    readout = text;
    readoutSet = true;
    Native::HostWindow* host = frame->GetHostWindow();
    if (readoutText && readoutBox && readoutHost && host && host->IsVisible())
    {
        readoutText->SetText(text);
        Size const size(readoutText->GetWidth() + 10, readoutText->GetHeight() + 10);
        Rect const client(readoutHost->GetClientRect().TopLeft(), size);
        Rect const window = Native::PlatformSupportFactory::ConvertClientToWindowRect(
            client, false, readoutHost->GetStyle(), ReadoutHostName);
        readoutHost->SetGeometry(window.left, window.top, window.Width(), window.Height());
        readoutBox->SetGeometry(0, 0, size.width, size.height);
        readoutText->Move(5, 5);
    }
    if (designAid)
        designAid->SetObjectInfoText(text);
}

String Design::getFormattedWindowNames(std::vector<Window*> const& windows)
{
    std::size_t const n = windows.size();
    if (n == 0)
        return String("");
    if (n == 1)
        return windows[0]->GetName();
    if (n == 2)
        return String("%1 and %2").Arg(windows[0]->GetName()).Arg(windows[1]->GetName());
    String text;
    for (std::size_t i = 0; i + 1 < n; ++i)
        text += windows[i]->GetName() + String(", ");
    return text + String("and ") + windows[n - 1]->GetName();
}

// ============================================================================================
// undo and A/B
// ============================================================================================

Design::UndoRecord Design::currentRecord() const
{
    UndoRecord record;
    for (auto const& entry : originalGeometries)
    {
        UndoInfo info;
        info.geometry = entry.first->GetGeometry();
        info.wasSelected = isSelected(entry.first);
        record[entry.first] = info;
    }
    return record;
}

void Design::SaveUndoGeometries()
{
    undoStack.push_back(currentRecord());
    redoStack.clear();
}

void Design::undoRedo(std::vector<UndoRecord>& from, std::vector<UndoRecord>& to)
{
    if (from.empty())
        return;
    to.push_back(currentRecord());
    UndoRecord const record = from.back();
    from.pop_back();
    clearSelection();
    for (auto const& entry : record)
    {
        Window* w = entry.first;
        InvalidateWindow(w);
        Rect const& r = entry.second.geometry;
        w->SetGeometry(r.left, r.top, r.Width(), r.Height());
        if (entry.second.wasSelected)
            addSelectedWindow(w);
    }
    updateSelectedWindowGeometries(true);
}

void Design::UndoGeometryChange()
{
    undoRedo(undoStack, redoStack);
}

void Design::RedoGeometryChange()
{
    undoRedo(redoStack, undoStack);
}

void Design::windowGeometryAB(bool all)
{
    SaveUndoGeometries();
    std::vector<Window*> windows;
    if (all)
        for (auto const& entry : originalGeometries)
            windows.push_back(entry.first);
    else
        windows = selected;
    std::map<Window*, Rect>& saved = all ? abAllGeometries : abSelectedGeometries;
    if (saved.empty())
    {
        for (Window* w : windows)
        {
            saved[w] = w->GetGeometry();
            Rect const& original = originalGeometries[w];
            InvalidateWindow(w);
            w->SetGeometry(original.left, original.top, original.Width(), original.Height());
        }
    }
    else
    {
        for (Window* w : windows)
        {
            auto it = saved.find(w);
            if (it == saved.end())
                continue;
            InvalidateWindow(w);
            w->SetGeometry(it->second.left, it->second.top, it->second.Width(),
                           it->second.Height());
        }
        saved.clear();
    }
    // Not through updateSelectedWindowGeometries(true): that would forget the other state.
    updateSelectedWindowGeometries(false);
    for (Window* w : windows)
        InvalidateWindow(w);
}

// ============================================================================================
// deleting, creating, reparenting
// ============================================================================================

void Design::DeleteSelectedWindows()
{
    std::vector<Window*> doomed;
    std::vector<Window*> kept;
    for (Window* w : selected)
        (w->IsLayoutCreated() ? doomed : kept).push_back(w);
    if (doomed.empty())
        return;
    invalidateSelectedWindows();
    selected = kept;
    // A doomed window inside another doomed one goes with it.
    std::vector<Window*> outermost;
    for (Window* w : doomed)
        if (std::none_of(doomed.begin(), doomed.end(),
                         [w](Window* other) { return other != w && other->IsAncestor(w, false); }))
            outermost.push_back(w);
    for (Window* w : outermost)
        delete w;
    undoStack.clear();
    redoStack.clear();
    updateSelectedWindows();
    if (designAid)
        designAid->signalWindowDeleted();
}

void Design::DeleteSelectedGuides()
{
    invalidateGuides();
    for (auto it = selectedVerticalGuides.rbegin(); it != selectedVerticalGuides.rend(); ++it)
        if (*it < verticalGuides.size())
            verticalGuides.erase(verticalGuides.begin() + *it);
    for (auto it = selectedHorizontalGuides.rbegin(); it != selectedHorizontalGuides.rend(); ++it)
        if (*it < horizontalGuides.size())
            horizontalGuides.erase(horizontalGuides.begin() + *it);
    clearGuideSelection();
    guideDragging[0] = guideDragging[1] = false;
    updateSelectedGuides();
}

void Design::StartCreateWindowAction(String const& type, Window* parent, String const& name)
{
    if (parent && parent->GetFrame() != frame)
        return;
    resetLayoutAction();
    createType = type;
    createName = name;
    createParent = parent;
    layoutAction = LayoutCreateWindow;
    layoutActionPending = true;
    updateReadoutText();
}

void Design::createWindowAt(Point const& point)
{
    Window* window = GetWindowFactory(frame->GetCanvas())
                         ? GetWindowFactory(frame->GetCanvas())
                               ->Create(createType, frame, createParent, createName)
                         : nullptr;
    if (window)
    {
        Point topLeft = point;
        if (createParent)
            topLeft -= createParent->GetGlobalPos();
        Size const size = window->GetGeometry().GetSize();
        SetWindowGeometryAndClip(window, topLeft, topLeft + Point(size.width - 1, size.height - 1),
                                 DragMove);
        clearSelection();
        addSelectedWindow(window);
        selectionTouched();
    }
    resetLayoutAction();
    // Placing the window showed the readout while the prompt was still pending.
    updateReadoutText();
}

void Design::resetLayoutAction()
{
    if (layoutActionPending && layoutAction == LayoutCreateWindow && designAid)
        designAid->signalCreateFinished();
    layoutActionPending = false;
}

void Design::startReparentAction()
{
    bool const allCreated =
        !selected.empty() && std::all_of(selected.begin(), selected.end(),
                                         [](Window* w) { return w->IsLayoutCreated(); });
    if (!allCreated)
    {
        setReadoutText(
            String("Select one or more dynamically created windows to allow reparenting"));
        return;
    }
    Reparent(selected);
}

void Design::Reparent(std::vector<Window*> const& windows)
{
    if (windows.empty())
        return;
    resetLayoutAction();
    reparentWindows = windows;
    layoutAction = LayoutReparent;
    layoutActionPending = true;
    updateReadoutText();
}

void Design::finishReparentAction()
{
    Window* parent = selected[0];
    std::vector<Window*> moved;
    for (Window* w : reparentWindows)
    {
        // A window can't go inside itself.
        if (!w->IsLayoutCreated() || w->IsAncestor(parent, true))
            continue;
        Rect const r = w->GetGeometry();
        w->Reparent(parent, nullptr);
        SetWindowGeometryAndClip(w, r.TopLeft(), r.BottomRight(), DragMove);
        moved.push_back(w);
    }
    reparentWindows.clear();
    resetLayoutAction();
    if (moved.empty())
    {
        updateReadoutText();
        return;
    }
    setReadoutText(String("Reparented ") + getFormattedWindowNames(moved));
    if (designAid)
        designAid->signalTreeChanged();
}

// ============================================================================================
// layout files
// ============================================================================================

void Design::SaveToLayoutFile()
{
    Window* start =
        hoverWindow ? hoverWindow : (!selected.empty() ? selected[0] : singleDragWindow);
    Window* keyed = nullptr;
    for (Window* w = start; w; w = w->GetParent())
        if (!w->GetLayoutName().IsEmpty())
            keyed = w;
    CursorSentry wait(frame, Cursor::Busy);
    if (keyed)
    {
        bool const rootGeometry =
            keyed->GetDynamicLayoutMode() == Window::DynamicLayoutSavedWithRoot ||
            frame->GetActiveDialog() != nullptr;
        if (keyed->SaveLayout(rootGeometry))
            setReadoutText(String("Saved layout to %1.layout").Arg(keyed->GetLayoutName()));
        else
            setReadoutText(String("SaveLayout failed"));
        return;
    }
    if (frame->GetLayoutName().IsEmpty())
    {
        setReadoutText(String("SaveLayout failed - frame has no layout key"));
        return;
    }
    if (frame->SaveLayout())
        setReadoutText(String("Saved layout to %1.layout").Arg(frame->GetLayoutName()));
    else
        setReadoutText(String("SaveLayout failed"));
}

void Design::ReloadLayout()
{
    invalidateSelectedWindows();
    bool loaded = false;
    Window* top = frame->GetTopLevelWindow();
    if (top)
    {
        top->DeleteAllLayoutCreatedChildren();
        loaded = top->LoadLayout();
        setReadoutText(loaded ? String("Loaded layout from %1.layout").Arg(top->GetLayoutName())
                              : String("LoadLayout failed"));
    }
    else
    {
        loaded = frame->LoadLayout();
        setReadoutText(loaded ? String("Loaded layout from %1.layout").Arg(frame->GetLayoutName())
                              : String("LoadLayout failed"));
    }
    if (!loaded)
        return;
    if (designAid)
        designAid->signalLayoutLoaded();
    invalidateSelectedWindows();
}

// ============================================================================================
// finding windows
// ============================================================================================

void Design::FindWindowByName()
{
    setReadoutText(String("Enter search text to find a window by name"));
    searchForWindow(true, true, false);
}

void Design::DumpWindowTree()
{
    searchForWindow(false, true, true);
}

void Design::searchForWindow(bool prompt, bool forward, bool dump)
{
    if (prompt && !dump)
    {
        String text = searchText.IsNull() ? String("") : searchText;
        if (!Native::PlatformSupportFactory::ExecuteInlineEdit(
                frame, Point(100, frameSize().height - 50), text, 200, std::vector<char>(), false,
                0))
            return;
        searchText = withoutBlanks(text);
    }
    std::vector<std::pair<Window*, int>> all;
    for (Window* w : frame->GetTopLevelWindows())
        if (w)
            listWindows(w, 0, all);
    if (dump)
    {
        String tree("");
        for (auto const& entry : all)
            tree += String(std::string(entry.second + 1, '\t').c_str()) + entry.first->GetName() +
                    String("\n");
        std::fputs(tree.CStr(), stderr);
        std::fflush(stderr);
        setReadoutText(String("Window tree dumped to debug console"));
        return;
    }
    std::size_t const count = all.size();
    if (count == 0)
        return;
    std::size_t start = 0;
    if (!selected.empty())
        for (std::size_t i = 0; i < count; ++i)
            if (all[i].first == selected[0])
                start = i;
    String const search = searchText.IsNull() ? String("") : searchText;
    for (std::size_t k = 0; k < count; ++k)
    {
        std::size_t const candidate =
            forward ? (start + 1 + k) % count : (start + 2 * count - 1 - k) % count;
        Window* w = all[candidate].first;
        if (matchesInOrder(withoutBlanks(w->GetName()), search))
        {
            SetSelectionTo(w);
            return;
        }
    }
}

} // namespace UI
