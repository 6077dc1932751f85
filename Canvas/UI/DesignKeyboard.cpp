// UI::Design: the keyboard.
//
// Index:
//   messages
//   the command keys
//   arrow keys
//   two-step commands: align and space

#include "Canvas/UI/Design.h"

#include "Canvas/UI/DesignAid.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/PixelZoom.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/WindowTree.h"

#include <algorithm>

namespace UI
{

namespace
{

unsigned int const KeyBackspace = 8;
unsigned int const KeyTab = 9;
unsigned int const KeySpace = 32;
unsigned int const KeyLeft = 37;
unsigned int const KeyUp = 38;
unsigned int const KeyRight = 39;
unsigned int const KeyDown = 40;
unsigned int const KeyDelete = 46;
unsigned int const KeyF4 = 115;
unsigned int const KeyEquals = 187;
unsigned int const KeyMinus = 189;
unsigned int const KeyOpenBracket = 219;
unsigned int const KeyBackslash = 220;
unsigned int const KeyCloseBracket = 221;

bool commandHeld(unsigned int modifiers)
{
    // The Command key of the design tools is Ctrl here; the Super key counts too.
    return (modifiers & (FlagControl | FlagCommand)) != 0;
}

bool shiftHeld(unsigned int modifiers)
{
    return (modifiers & FlagShift) != 0;
}

} // namespace

// ============================================================================================
// messages
// ============================================================================================

bool Design::HandleKeyboardMessage(KeyboardMessage message, unsigned int key, char,
                                   unsigned int modifiers, bool repeat)
{
    if (!active)
        return false;
    // Alt+Space and Alt+F4 belong to the system.
    if ((key == KeySpace || key == KeyF4) && Native::PlatformSupportFactory::IsAltPressed())
        return false;
    readoutSet = false;
    handleKeyboardMessage(message, key, modifiers, repeat);
    if (!selected.empty())
        selectionTouched();
    return true;
}

void Design::handleKeyboardMessage(KeyboardMessage message, unsigned int key,
                                   unsigned int modifiers, bool repeat)
{
    if (message != KeyPress || key == 16 || key == 17 || key == 18)
        return;
    if (key >= KeyLeft && key <= KeyDown)
    {
        arrowKey(key, modifiers);
        return;
    }
    if (repeat && key != '0' && key != '9' && key != 'F' && key != 'Z' && key != KeyTab)
        return;
    if (layoutActionPending)
        handlePendingKey(key);
    else
        handleCommandKey(key, modifiers);
    if (!readoutSet)
        updateReadoutText();
}

// ============================================================================================
// the command keys
// ============================================================================================

bool Design::handleCommandKey(unsigned int key, unsigned int modifiers)
{
    bool const command = commandHeld(modifiers);
    bool const shift = shiftHeld(modifiers);
    switch (key)
    {
    case KeyDelete:
    case KeyBackspace:
        DeleteSelectedWindows();
        DeleteSelectedGuides();
        return true;
    case KeyTab:
    case 'N':
        SelectNextSibling(!shift);
        return true;
    case '1':
        ToggleNoSelectState();
        return true;
    case 'A':
        AlignObjects(shift);
        return true;
    case 'B':
        windowGeometryAB(command);
        return true;
    case 'C':
        SelectChild();
        return true;
    case 'D':
        if (command)
            Deselect();
        else if (designAid && designAid->IsHostWindowVisible())
            designAid->ToggleForceDesignEnable();
        return true;
    case 'E':
        if (designAid)
            designAid->TogglePropertyEditorVisibility();
        return true;
    case 'M':
        if (designAid)
            designAid->ShowWindowMaker();
        return true;
    case 'T':
        if (designAid)
            designAid->ShowWindowTree();
        return true;
    case 'F':
        if (!Native::PlatformSupportFactory::IsAltPressed())
            FindWindowByName();
        // Alt+F freezes the Design Aid's pixel zoom.
        else if (designAid && designAid->GetPixelZoom())
            designAid->GetPixelZoom()->ToggleFreeze();
        return true;
    case 'G':
        if (designAid)
            designAid->ToggleSnapToGuides();
        else
            snapToGuides = !snapToGuides;
        setReadoutText(shouldSnapToGuides() ? String("Snap to guides turned on")
                                            : String("Snap to guides turned off"));
        return true;
    case 'H':
        ToggleDesignAidVisibility();
        return true;
    case 'I':
        ToggleCursorBeams();
        return true;
    case 'J':
        DumpWindowTree();
        return true;
    case 'L':
        if (command)
            ReloadLayout();
        return true;
    case 'P':
        SelectParent();
        return true;
    case 'R':
        startReparentAction();
        return true;
    case 'S':
        if (shift)
            SaveToLayoutFile();
        else
            SpaceObjects();
        return true;
    case 'Z':
        if (command && shift)
            RedoGeometryChange();
        else if (command)
            UndoGeometryChange();
        return true;
    case KeyOpenBracket:
        ToggleCenterGuides();
        return true;
    case KeyCloseBracket:
        ToggleEdgeGuides();
        return true;
    case KeyBackslash:
        ToggleSelectionFrames();
        return true;
    case '0':
    case '9':
    case KeyEquals:
    case KeyMinus:
        // These drive the window tree tool, and do nothing until it exists.
        if (WindowTree* tree = designAid ? designAid->GetWindowTree() : nullptr)
        {
            if (key == '0')
                tree->SelectNextItem();
            else if (key == '9')
                tree->SelectPreviousItem();
            else
                tree->ShowChildrenOfSelection(key == KeyEquals);
        }
        return true;
    default:
        return false;
    }
}

void Design::ToggleCenterGuides()
{
    invalidateSelectedWindows();
    showCenterGuides = !showCenterGuides;
    invalidateSelectedWindows();
}

void Design::ToggleEdgeGuides()
{
    invalidateSelectedWindows();
    showEdgeGuides = !showEdgeGuides;
    invalidateSelectedWindows();
}

void Design::handlePendingKey(unsigned int key)
{
    // The create and reparent actions wait for a click, not a key.
    if (layoutAction == LayoutCreateWindow || layoutAction == LayoutReparent)
        return;
    if (selected.size() < 2)
        return;
    LayoutAction const action = layoutAction;
    switch (action)
    {
    case LayoutAlignMin:
    case LayoutAlignMax:
        alignAnswer(key);
        break;
    case LayoutSpace:
        spaceAnswer(key);
        break;
    default:
        setReadoutText(String("Unknown key"));
        break;
    }
    // Any answer, good or bad, ends the action.
    resetLayoutAction();
}

// ============================================================================================
// arrow keys
// ============================================================================================

void Design::arrowKey(unsigned int key, unsigned int modifiers)
{
    int const step = shiftHeld(modifiers) ? 10 : 1;
    Point delta;
    if (key == KeyLeft)
        delta.x = -step;
    else if (key == KeyRight)
        delta.x = step;
    else if (key == KeyUp)
        delta.y = -step;
    else
        delta.y = step;

    Size const size = frameSize();
    if (!selectedVerticalGuides.empty() || !selectedHorizontalGuides.empty())
    {
        invalidateGuides();
        for (unsigned int i : selectedVerticalGuides)
            if (i < verticalGuides.size())
                verticalGuides[i] =
                    std::max(0, std::min(verticalGuides[i] + delta.x, size.width - 1));
        for (unsigned int i : selectedHorizontalGuides)
            if (i < horizontalGuides.size())
                horizontalGuides[i] =
                    std::max(0, std::min(horizontalGuides[i] + delta.y, size.height - 1));
        updateSelectedGuides();
    }
    // With Ctrl only the bottom right corner moves: the window is resized.
    bool const resize = (modifiers & FlagControl) != 0;
    for (Window* w : std::vector<Window*>(selected))
    {
        Rect const r = w->GetGeometry();
        if (resize)
            SetWindowGeometryAndClip(w, r.TopLeft(), r.BottomRight() + delta, DragBottomRight);
        else
            SetWindowGeometryAndClip(w, r.TopLeft() + delta, r.BottomRight() + delta, DragMove);
    }
    if (!readoutSet)
        updateReadoutText();
}

// ============================================================================================
// two-step commands: align and space
// ============================================================================================

void Design::AlignObjects(bool maximum)
{
    if (selected.size() < 2)
    {
        setReadoutText(String("Select two or more windows to align them"));
        return;
    }
    resetLayoutAction();
    layoutAction = maximum ? LayoutAlignMax : LayoutAlignMin;
    layoutActionPending = true;
    updateReadoutText();
}

void Design::SpaceObjects()
{
    if (selected.size() < 2)
    {
        setReadoutText(String("Select two or more windows to space them evenly"));
        return;
    }
    resetLayoutAction();
    layoutAction = LayoutSpace;
    layoutActionPending = true;
    updateReadoutText();
}

void Design::alignAnswer(unsigned int key)
{
    bool const maximum = layoutAction == LayoutAlignMax;
    // The measure of one window in global coordinates.
    auto measure = [key](Rect const& r) -> int
    {
        switch (key)
        {
        case 'L':
            return r.left;
        case 'T':
            return r.top;
        case 'R':
            return r.right;
        case 'B':
            return r.bottom;
        case 'C':
            return r.left + r.Width() / 2;
        case 'V':
            return r.top + r.Height() / 2;
        case 'W':
            return r.Width();
        default:
            return r.Height();
        }
    };
    char const* readoutText = nullptr;
    switch (key)
    {
    case 'L':
        readoutText = "Aligned left";
        break;
    case 'T':
        readoutText = "Aligned top";
        break;
    case 'R':
        readoutText = "Aligned right";
        break;
    case 'B':
        readoutText = "Aligned bottom";
        break;
    case 'C':
        readoutText = "Aligned horizontal centers";
        break;
    case 'V':
        readoutText = "Aligned vertical centers";
        break;
    case 'W':
        readoutText = "Matched widths";
        break;
    case 'H':
        readoutText = "Matched heights";
        break;
    default:
        setReadoutText(String("Unknown key"));
        return;
    }
    int extreme = measure(globalRect(selected[0]));
    for (Window* w : selected)
        extreme = maximum ? std::max(extreme, measure(globalRect(w)))
                          : std::min(extreme, measure(globalRect(w)));
    for (Window* w : selected)
    {
        Rect const r = globalRect(w);
        int x = r.left;
        int y = r.top;
        int width = r.Width();
        int height = r.Height();
        switch (key)
        {
        case 'L':
            x = extreme;
            break;
        case 'T':
            y = extreme;
            break;
        case 'R':
            x = extreme - width + 1;
            break;
        case 'B':
            y = extreme - height + 1;
            break;
        case 'C':
            x = extreme - width / 2;
            break;
        case 'V':
            y = extreme - height / 2;
            break;
        case 'W':
            width = extreme;
            break;
        default:
            height = extreme;
            break;
        }
        InvalidateWindow(w);
        w->SetGlobalGeometry(x, y, width, height);
    }
    updateSelectedWindowGeometries(true);
    setReadoutText(String(readoutText));
}

void Design::spaceAnswer(unsigned int key)
{
    if (key == 'X' || key == 'Y')
    {
        spaceBy(key == 'X');
        return;
    }
    if (key != 'H' && key != 'V')
    {
        setReadoutText(String("Unknown key"));
        return;
    }
    unsigned int const axis = key == 'H' ? 0 : 1;
    auto startOf = [axis](Rect const& r) { return axis == 0 ? r.left : r.top; };
    auto lastOf = [axis](Rect const& r) { return axis == 0 ? r.right : r.bottom; };
    auto sizeOf = [axis](Rect const& r) { return axis == 0 ? r.Width() : r.Height(); };
    int first = startOf(globalRect(selected[0]));
    int end = lastOf(globalRect(selected[0]));
    int sum = 0;
    for (Window* w : selected)
    {
        Rect const r = globalRect(w);
        first = std::min(first, startOf(r));
        end = std::max(end, lastOf(r));
        sum += sizeOf(r);
    }
    // Integer division: the gaps come out up to a pixel narrower than the span allows.
    int const gap = (end - first - sum) / static_cast<int>(selected.size() - 1);
    std::vector<Window*> order = selected;
    std::sort(order.begin(), order.end(),
              [&](Window* a, Window* b)
              { return startOf(globalRect(a)) < startOf(globalRect(b)); });
    int position = first;
    for (Window* w : order)
    {
        Rect const r = globalRect(w);
        InvalidateWindow(w);
        if (axis == 0)
            w->SetGlobalGeometry(position, r.top, r.Width(), r.Height());
        else
            w->SetGlobalGeometry(r.left, position, r.Width(), r.Height());
        position += sizeOf(r) + gap;
    }
    updateSelectedWindowGeometries(true);
    setReadoutText(axis == 0 ? String("Spaced windows evenly horizontally")
                             : String("Spaced windows evenly vertically"));
}

void Design::spaceBy(bool horizontal)
{
    layoutAction = horizontal ? LayoutSpaceX : LayoutSpaceY;
    updateReadoutText();
    String text("");
    if (!Native::PlatformSupportFactory::ExecuteInlineEdit(
            frame, Point(100, frameSize().height - 50), text, 200, std::vector<char>(), false, 0))
    {
        readoutSet = false;
        return;
    }
    checked_value<int> value = text.ToInt(10);
    // A bad number changes nothing.
    if (!value || selected.size() < 2)
    {
        readoutSet = false;
        return;
    }
    unsigned int const axis = horizontal ? 0 : 1;
    auto startOf = [axis](Rect const& r) { return axis == 0 ? r.left : r.top; };
    auto sizeOf = [axis](Rect const& r) { return axis == 0 ? r.Width() : r.Height(); };
    std::vector<Window*> order = selected;
    std::sort(order.begin(), order.end(),
              [&](Window* a, Window* b)
              { return startOf(globalRect(a)) < startOf(globalRect(b)); });
    Size const size = frameSize();
    int position = startOf(globalRect(order[0]));
    for (Window* w : order)
    {
        Rect const r = globalRect(w);
        int const windowSize = sizeOf(r);
        if (Window* parent = w->GetParent())
        {
            Rect const p = globalRect(parent);
            int const limit = (axis == 0 ? p.right : p.bottom) - windowSize;
            position = std::max(position, startOf(p));
            position = std::min(position, limit);
        }
        else
        {
            int const limit = (axis == 0 ? size.width : size.height) - windowSize;
            position = std::max(0, std::min(position, limit));
        }
        InvalidateWindow(w);
        if (axis == 0)
            w->SetGlobalGeometry(position, r.top, r.Width(), r.Height());
        else
            w->SetGlobalGeometry(r.left, position, r.Width(), r.Height());
        position += windowSize + *value;
    }
    updateSelectedWindowGeometries(true);
    setReadoutText(String("Spaced windows %1 by %2 pixels")
                       .Arg(horizontal ? "horizontally" : "vertically")
                       .Arg(*value));
}

} // namespace UI
