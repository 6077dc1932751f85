#pragma once

#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/Signal.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <memory>
#include <set>
#include <vector>

namespace Controller
{
class BoolParamConfigFile;
}
namespace Util
{
class ConfigFile;
}

namespace UI
{

class Box;
class DesignAid;
class DrawContext;
class Frame;
class SimpleTimer;
class Text;
class Window;
namespace Native
{
class HostWindow;
class PopupMenu;
} // namespace Native

/// The live design engine of one frame: it turns the running frame into a layout editor. The
/// frame offers it every mouse and keyboard message before any window sees them, ticks it, and
/// lets it draw last. While it is active it swallows all input of the frame: the user selects,
/// moves and resizes the live windows, places guides and saves the result to `.layout` files in
/// the resource override folder. It is switched on by caps lock (or the Design Aid's force
/// flag) once the "com.tavorin" setting "RuntimeDesignEnable" is true and
/// "PreventRuntimeDesign" isn't. While inactive every hook answers "not handled" at its first
/// test and draws nothing.
///
/// Owned by its frame. Holds bare pointers to windows of the frame; the frame tells it of every
/// window that dies (`onWindowDestroy`), so none dangles. Main thread only.
class Design
{
public:
    /// Values index the drag tables; do not reorder.
    enum DragType
    {
        DragMove = 0,
        DragTopLeft = 1,
        DragLeft = 2,
        DragBottomLeft = 3,
        DragBottom = 4,
        DragBottomRight = 5,
        DragRight = 6,
        DragTopRight = 7,
        DragTop = 8
    };

    enum LayoutAction
    {
        LayoutAlignMin = 0,
        LayoutAlignMax = 1,
        LayoutSpace = 2,
        LayoutSpaceX = 3,
        LayoutSpaceY = 4,
        LayoutCreateWindow = 5,
        LayoutReparent = 6
    };

    /// One window's state in an undo record: its rectangle in its parent and whether it was
    /// selected.
    struct UndoInfo
    {
        Rect geometry;
        bool wasSelected = false;
    };
    typedef std::map<Window*, UndoInfo> UndoRecord;

    static constexpr unsigned int BEAM_COLOR = 0xFFFFFFFF;
    static constexpr unsigned int GUIDE_COLOR = 0xFFFFFFFF;
    static constexpr unsigned int SELECTED_GUIDE_COLOR = 0xFF00FFFF;
    static constexpr unsigned int SELECTION_BOX_COLOR = 0xFFFFFF00;
    static constexpr unsigned int SELECTION_BOX_COLOR_NO_SAVE = 0xFFFF0000;
    static constexpr unsigned int SELECTION_BOX_COLOR_CREATE = 0xFF00FFFF;
    static constexpr unsigned int SINGLE_DRAG_GUIDE_COLOR = 0xFF00FF00;
    static constexpr unsigned int HOVER_FRAME_COLOR = 0xFFFFFFFF;
    static constexpr unsigned int RUBBER_BAND_COLOR = 0xFFC8C8C8;

    /// Made and owned by `frame` (never null). Reads the settings and decides activity once.
    explicit Design(Frame* frame);
    virtual ~Design();

    Design(Design const&) = delete;
    Design& operator=(Design const&) = delete;

    /// Fired after any handled message while the selection is not empty, and by every
    /// selection setter.
    Signal<> selectionTouched;

    // ---- activity
    /// Reads "PreventRuntimeDesign" and "RuntimeDesignEnable" (both default false).
    void UpdateFromConfigFile();
    /// Decides whether the engine is active: from the settings, the disable flag, caps lock,
    /// the Design Aid's force flag, the canvas-wide design flag and whether the frame's host is
    /// shown. Called on every tick; costs a modifier read while design is off.
    void UpdateActive();
    /// The frame's disable flag (tool frames set it so they don't design themselves).
    void SetDisabled(bool disable);
    bool IsActive() const { return active; }
    Frame* GetFrame() const { return frame; }

    // ---- input and drawing, from the frame
    /// False while inactive; otherwise handles the message (point in frame coordinates) and
    /// claims it.
    bool HandleMouseMessage(MouseMessage message, Point const& point, unsigned int flags,
                            int delta);
    /// False while inactive, and for Alt+Space and Alt+F4, which belong to the system.
    bool HandleKeyboardMessage(KeyboardMessage message, unsigned int key, char character,
                               unsigned int modifiers, bool repeat);
    /// Draws the overlay over everything; nothing while inactive.
    void Draw(DrawContext* context);
    /// Told by the frame when a window dies or leaves it: every reference to it is dropped.
    void onWindowDestroy(Window* window);

    // ---- screenshots
    /// The trim rectangle when one is set, else the frame's whole rectangle.
    Rect GetScreenShotTrimRect() const;
    void SetScreenShotTrimRect(Rect const& rect) { screenShotTrimRect = rect; }

    // ---- commands
    /// Saves the layout file of the outermost window with a layout name above the hovered,
    /// selected or dragged window, or the frame's own; the readout tells the result.
    void SaveToLayoutFile();
    void ToggleDesignAidVisibility();
    /// Starts the two-step align command (needs two selected windows).
    void AlignObjects(bool maximum);
    /// Starts the two-step space command (needs two selected windows).
    void SpaceObjects();
    void SelectParent();
    void SetSelectionTo(Window* window);
    void SetSelectionTo(std::vector<Window*> const& windows);
    void SelectNextSibling(bool forward);
    void SelectChild();
    /// Reloads the layout of the frame's top-level window (or the frame's own), deleting the
    /// windows that the layout created first.
    void ReloadLayout();
    void Deselect();
    void ToggleSelectionFrames();
    void ToggleNoSelectState();
    /// Asks for a text and selects the next window whose name holds its letters in order.
    void FindWindowByName();
    /// Writes the window tree, indented by depth, to the standard error.
    void DumpWindowTree();
    void ToggleCursorBeams();
    /// Guides at the centres (edges) of the selected windows, on or off.
    void ToggleCenterGuides();
    void ToggleEdgeGuides();
    void ABSelectedWindowGeometries() { windowGeometryAB(false); }
    void ABAllWindowGeometries() { windowGeometryAB(true); }
    /// Deletes the selected windows that a layout or the window maker created; empties both
    /// undo stacks when anything went.
    void DeleteSelectedWindows();
    void DeleteSelectedGuides();
    /// The next click creates a window of `type` named `name` under `parent` (null: a top-level
    /// window). Ignored when `parent` belongs to another frame.
    void StartCreateWindowAction(String const& type, Window* parent, String const& name);
    /// The next single selected window becomes the parent of `windows`; empty does nothing.
    void Reparent(std::vector<Window*> const& windows);
    void UndoGeometryChange();
    void RedoGeometryChange();
    /// Pushes the present rectangles of every window ever selected; empties the redo stack.
    void SaveUndoGeometries();
    /// Places `window` (parent coordinates) with the clamping of a drag of `type`.
    void SetWindowGeometryAndClip(Window* window, Point const& topLeft, Point const& bottomRight,
                                  DragType type);
    /// Invalidates the window grown by 5 pixels, and its centre and edge guide lines when shown.
    void InvalidateWindow(Window* window);
    /// The selected guides' positions of `axis` (0 vertical, 1 horizontal), ascending.
    std::vector<int> GetSelectedGuides(unsigned int axis) const;
    /// Moves the smallest selected guide of `axis` to `position` and the others by as much.
    void SetSelectedGuidePos(int position, unsigned int axis);

    // ---- state, for the tools and tests
    std::vector<Window*> const& GetSelectedWindows() const { return selected; }
    std::vector<int> const& GetGuides(unsigned int axis) const
    {
        return axis == 0 ? verticalGuides : horizontalGuides;
    }
    String GetReadoutText() const { return readout; }
    Native::HostWindow* GetReadoutHost() const { return readoutHost.get(); }
    Window* GetHoverWindow() const { return hoverWindow; }
    Window* GetMouseProxy() const { return mouseProxy; }
    bool IsLayoutActionPending() const { return layoutActionPending; }
    LayoutAction GetLayoutAction() const { return layoutAction; }
    std::vector<Window*> const& GetNoSelectWindows() const { return noSelectWindows; }
    std::size_t GetUndoDepth() const { return undoStack.size(); }
    std::size_t GetRedoDepth() const { return redoStack.size(); }
    bool IsShowingSelectionFrames() const { return showSelectionFrames; }
    bool IsShowingCenterGuides() const { return showCenterGuides; }
    bool IsShowingEdgeGuides() const { return showEdgeGuides; }
    bool IsShowingCursorBeams() const { return showCursorBeams; }
    /// The drag handle that `point` (frame coordinates) is on.
    DragType getDragType(Window* window, Point const& point) const;
    /// The deepest visible, selectable window under `point` (frame coordinates).
    Window* findWindow(Point const& point) const;
    /// "A", "A and B", "A, B, and C".
    static String getFormattedWindowNames(std::vector<Window*> const& windows);
    /// Where the rubber band's size label goes for a text `textWidth` wide.
    Rect getRubberBandSizeTextRect(int textWidth) const;

private:
    // Design.cpp
    void activate();
    void deactivate(bool userOff);
    void ensureMouseProxy();
    void invalidateOverlay();
    void clearSelection();
    void addSelectedWindow(Window* window);
    void removeSelectedWindow(Window* window);
    bool isSelected(Window* window) const;
    void updateSelectedWindows();
    void updateSelectedWindowGeometries(bool geometryChanged);
    void invalidateSelectedWindows();
    void updateReadoutText();
    void setReadoutText(String const& text);
    void resetLayoutAction();
    void finishReparentAction();
    void createWindowAt(Point const& point);
    void windowGeometryAB(bool all);
    void undoRedo(std::vector<UndoRecord>& from, std::vector<UndoRecord>& to);
    UndoRecord currentRecord() const;
    void searchForWindow(bool prompt, bool forward, bool dump);
    void captureMouse();
    void releaseMouse();
    Rect globalRect(Window* window) const;
    Size frameSize() const;
    bool shouldSnapToGuides() const;
    void setCursor(int shape);

    // DesignMouse.cpp
    void handleMouseMessage(MouseMessage message, Point const& point, unsigned int flags);
    void leftPress(Point const& point, unsigned int flags);
    void leftRelease();
    void leftDoubleClick(Point const& point, unsigned int flags);
    void rightPress(Point const& point);
    void mouseMove(Point const& point, unsigned int flags);
    void updateHoverWindow();
    Window* findHelper(Point const& point, Window* window) const;
    void dragSelectedWindows(Point delta, bool shift);
    void moveGuideTo(unsigned int axis, int position);
    void childWindowsMenu(Native::PopupMenu* menu, Window* window, Point const& point);
    void clearGuideSelection();
    void updateSelectedGuides();
    void invalidateGuides();
    void invalidateSingleDragGuides();
    void invalidateBeams();
    void invalidateRubberBand();
    void resetRubberBand();

    // DesignKeyboard.cpp
    void handleKeyboardMessage(KeyboardMessage message, unsigned int key, unsigned int modifiers,
                               bool repeat);
    bool handleCommandKey(unsigned int key, unsigned int modifiers);
    void handlePendingKey(unsigned int key);
    void arrowKey(unsigned int key, unsigned int modifiers);
    void alignAnswer(unsigned int key);
    void spaceAnswer(unsigned int key);
    void spaceBy(bool horizontal);
    void startReparentAction();

    // DesignDraw.cpp
    void drawGuides(DrawContext* context);
    void drawSelectionBoxes(DrawContext* context);
    void drawSingleDragGuides(DrawContext* context);
    void drawRubberBand(DrawContext* context);
    Rect rubberBandRect() const;

    Frame* frame;
    bool active = false;
    bool disabled = false;
    bool prevented = false;
    bool notEnabled = true;
    Window* mouseProxy = nullptr;
    boost::shared_ptr<Util::ConfigFile> config;
    std::unique_ptr<Native::HostWindow> readoutHost;
    DesignAid* designAid = nullptr;
    std::unique_ptr<Controller::BoolParamConfigFile> designAidVisible;
    Box* readoutBox = nullptr;
    Text* readoutText = nullptr;
    String readout;
    std::vector<Window*> noSelectWindows;
    checked_value<Point> rubberStart;
    checked_value<Point> rubberEnd;
    Window* rubberParent = nullptr;
    std::vector<Window*> selected;
    checked_value<Point> dragOrigin;
    DragType dragType = DragMove;
    std::map<Window*, Rect> dragStartRects;
    Window* singleDragWindow = nullptr;
    bool singleDragMoved = false;
    bool pressedSelected = false;
    Window* hoverWindow = nullptr;
    std::unique_ptr<SimpleTimer> hoverTimer;
    LayoutAction layoutAction = LayoutAlignMin;
    bool layoutActionPending = false;
    String createType;
    String createName;
    Window* createParent = nullptr;
    std::vector<Window*> reparentWindows;
    std::vector<Window*> menuWindows;
    bool showSelectionFrames = true;
    bool showCenterGuides = false;
    bool showEdgeGuides = false;
    bool showCursorBeams = false;
    Rect verticalBeam;
    Rect horizontalBeam;
    std::vector<int> verticalGuides;
    std::vector<int> horizontalGuides;
    unsigned int guideDragIndex[2] = {0, 0};
    bool guideDragging[2] = {false, false};
    std::set<unsigned int> selectedVerticalGuides;
    std::set<unsigned int> selectedHorizontalGuides;
    checked_value<Rect> screenShotTrimRect;
    std::map<Window*, Rect> originalGeometries;
    std::map<Window*, Rect> abSelectedGeometries;
    std::map<Window*, Rect> abAllGeometries;
    std::vector<UndoRecord> undoStack;
    std::vector<UndoRecord> redoStack;
    String searchText;
    /// Snapping when there is no Design Aid to ask (key "G" toggles it).
    bool snapToGuides = true;
    /// Set while a message of the engine's own is being handled, so that a readout set by a
    /// command is not replaced by the plain one.
    bool readoutSet = false;
    /// The last left press set a message of its own.
    bool pressMessage = false;
};

} // namespace UI
