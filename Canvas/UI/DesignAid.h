#pragma once

#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Util/Signal.h"

#include <memory>
#include <vector>

namespace Controller
{
class BoolParamConfigFile;
}

namespace UI
{

class CheckBox;
class Design;
class Edit;
class PixelZoom;
class PropertyEditor;
class SimpleEdit;
class SimplePushButton;
class Text;
class WindowMaker;
class WindowTree;
namespace Native
{
class HostWindow;
class PopupMenu;
} // namespace Native

/// The one tool panel of a canvas, in a host window of its own ("Design Aid Host Window") shared
/// by all frames: it shows the selection of the active live design, lets the designer type
/// positions and sizes, holds the snap and force switches and the resource override folder, and
/// opens the other design tools. The pixel zoom sits at its top.
///
/// Made once by `UI::Canvas::initializeDesignAid` as the top-level window of its host's frame;
/// the frame owns it, the canvas owns the host. The native window is made on the first
/// `ShowHostWindow` and only hidden afterwards. Holds bare pointers to the designed frame and to
/// selected windows; the canvas tells it of every frame and window that dies. Main thread only.
class DesignAid : public Window
{
public:
    static constexpr unsigned int BackgroundColor = 0xFFBBBBBBu;
    static constexpr unsigned int LabelColor = 0xFF000000u;
    static char const* const GEOMETRY_EDIT_NAMES[4];
    static char const* const BUTTON_NAMES[4];
    enum ButtonIndex
    {
        EditPropertiesButton = 0,
        SaveLayoutButton = 1,
        ToggleVisibilityButton = 2,
        MoreOptionsButton = 3
    };
    /// The default native window: client rectangle 200, 200, 250 by 550; minimum width 220.
    static constexpr int DefaultX = 200;
    static constexpr int DefaultY = 200;
    static constexpr int DefaultWidth = 250;
    static constexpr int DefaultHeight = 550;
    static constexpr int MinimumWidth = 220;

    /// `host` (not owned, may be null) is the native window door whose frame holds the panel.
    DesignAid(Frame* frame, Native::HostWindow* host);
    ~DesignAid() override;

    Signal<> signalSelectionChanged;
    Signal<> signalCreateFinished;
    Signal<> signalTreeChanged;
    Signal<> signalLayoutLoaded;
    Signal<> signalWindowDeleted;
    Signal<> signalFrameChanged;
    Signal<> signalResourcePathChanged;

    // ---- the design being served
    void SetDesignFrame(Frame* frame);
    Frame* GetDesignFrame() const { return designFrame; }
    /// A copy of the design's selection; a window of another frame switches the design frame.
    void SetSelectedWindows(std::vector<Window*> windows);
    std::vector<Window*> const& GetSelectedWindows() const { return selectedWindows; }
    /// Shows the selection (or the selected guides) in the fields and sets what is enabled.
    void UpdateSelectionGeometry();
    /// The design's readout text, mirrored at the bottom of the panel.
    void SetObjectInfoText(String const& text);
    void TellLayoutLoaded();

    // ---- visibility
    void ShowHostWindow();
    /// Hides the panel and switches force off, so live design follows caps lock again.
    void HideHostWindow();
    /// Hides the panel and every other design tool.
    void HideAll();
    bool IsHostWindowVisible() const;
    Native::HostWindow* GetHostWindow() const { return host; }

    // ---- switches
    void ToggleSnapToGuides();
    bool ShouldSnapToGuides() const;
    bool IsDesignForceEnabled() const;
    void ToggleForceDesignEnable();
    void TogglePropertyEditorVisibility();
    void UpdatePropertyEditorVisibility();
    /// The property editor, once it has been shown; null before.
    PropertyEditor* GetPropertyEditor() const { return propertyEditor; }
    bool IsPropertyEditorVisible() const;
    /// Make the window maker ("Window Maker Host Window") or the window tree ("Window Tree Host
    /// Window") on first need and show it; nothing without an active design. Their close boxes
    /// only hide them.
    void ShowWindowMaker();
    void ShowWindowTree();
    /// The tools, once made; null before.
    WindowMaker* GetWindowMaker() const { return windowMaker; }
    WindowTree* GetWindowTree() const { return windowTree; }
    Native::HostWindow* GetWindowMakerHost() const { return windowMakerHost.get(); }
    Native::HostWindow* GetWindowTreeHost() const { return windowTreeHost.get(); }

    /// Alt+F freezes or thaws the pixel zoom while the panel is shown.
    bool HandleKeyboardMessage(KeyboardMessage message, unsigned int key, char character,
                               unsigned int modifiers, bool repeat);

    /// Told by the canvas when a frame or a window dies, so no pointer dangles.
    void OnFrameDestroy(Frame* frame);
    void OnWindowDestroy(Window* window);

    // ---- parts, for tests and tools
    PixelZoom* GetPixelZoom() const { return pixelZoom; }
    Text* GetObjectInfoText() const { return objectInfoText; }
    SimpleEdit* GetWindowPtrEdit() const { return windowPtrEdit; }
    Edit* GetGeometryEdit(unsigned int index) const { return geometryEdits.at(index); }
    SimplePushButton* GetButton(unsigned int index) const { return buttons.at(index); }
    SimpleEdit* GetResourcePathEdit() const { return resourcePathEdit; }
    CheckBox* GetSnapCheckBox() const { return snapCheckBox; }
    CheckBox* GetForceCheckBox() const { return forceCheckBox; }
    /// Fills `menu` with the "More options..." entries for the present state; an item's id is
    /// its index among the entries (separators included).
    void BuildMoreOptionsMenu(Native::PopupMenu& menu);
    /// Runs the action of the "More options..." entry `id`.
    void ExecuteMoreOption(int id);

    void onSetGeometry() override;
    String GetWindowType() const override { return String("DesignAid"); }
    /// "GetInfo" adds the switches and the save button's tool tip: "snap", "force",
    /// "saveToolTip" and "shown".
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

protected:
    /// Shows `menu` at `screenPoint` and answers the chosen id; tests answer here instead.
    virtual int showPopupMenu(Native::PopupMenu& menu, Point const& screenPoint);
    /// Asks for the override folder; false when cancelled.
    virtual bool askForFolder(String& path);

private:
    Text* makeLabel(String const& name, String const& caption);
    SimpleEdit* makeEdit(String const& name, int width);
    SimplePushButton* makeButton(String const& name, String const& caption, String const& toolTip);
    Design* activeDesign() const;
    void showNoSelection(Design* design);
    void showGuides(Design* design);
    void showWindows();
    /// The switches and buttons; the save button also needs the override folder.
    void enableControls(bool enable);
    void clearEdits(bool enable);

    void onWindowPtrEdited();
    void slotGeometryEdited();
    void onResourcePathEditedOrSet();
    void onBrowseResourcePath();
    void onClearResourcePath();
    void slotButtonClicked(unsigned int index);
    void setFocusOrder();
    void setSaveLayoutButtonState();
    void showMoreOptionsMenu();
    void showPropertyEditor();
    void hidePropertyEditor();
    void slotHostCloseRequest();
    /// A design-disabled host window named `name`, a utility panel or an ordinary window, with
    /// the tool that `make` puts on its frame, at `client` until the user moves it; its close
    /// box only hides it. Null when the native window can't be made.
    std::unique_ptr<Native::HostWindow> makeToolHost(String const& name, String const& caption,
                                                     Rect const& client,
                                                     Window* (*make)(Frame*, DesignAid*),
                                                     bool utilityPanel = true);
    void slotPropertyEditorCloseRequest();

    Native::HostWindow* host;
    Frame* designFrame = nullptr;
    PixelZoom* pixelZoom = nullptr;
    Text* objectInfoText = nullptr;
    Text* windowPtrLabel = nullptr;
    SimpleEdit* windowPtrEdit = nullptr;
    std::vector<Edit*> geometryEdits;
    std::vector<Text*> geometryLabels;
    CheckBox* snapCheckBox = nullptr;
    CheckBox* forceCheckBox = nullptr;
    std::vector<SimplePushButton*> buttons;
    Text* readoutText = nullptr;
    Text* resourcePathLabel = nullptr;
    SimpleEdit* resourcePathEdit = nullptr;
    SimplePushButton* resourceBrowseButton = nullptr;
    SimplePushButton* resourceClearButton = nullptr;
    std::unique_ptr<Controller::BoolParamConfigFile> snapToGuides;
    std::unique_ptr<Controller::BoolParamConfigFile> propertyEditorVisible;
    std::unique_ptr<Native::HostWindow> propertyEditorHost;
    /// Owned by the frame of `propertyEditorHost`.
    PropertyEditor* propertyEditor = nullptr;
    std::vector<Window*> selectedWindows;
    bool hostCreated = false;
    std::unique_ptr<Native::HostWindow> windowMakerHost;
    WindowMaker* windowMaker = nullptr;
    std::unique_ptr<Native::HostWindow> windowTreeHost;
    WindowTree* windowTree = nullptr;
    /// Set while the fields are being filled, so that their change signals are not edits.
    bool updating = false;
};

} // namespace UI
