#pragma once

#include "Canvas/UI/Window.h"
#include "TvBase/Controller/BoolParamConfigFile.h"
#include "TvBase/Controller/FloatParamConfigFile.h"

#include <memory>
#include <vector>

namespace Util
{
class ConfigFile;
}

namespace UI
{

class CheckBox;
class MemoryDrawContext;
class SimpleTimer;
class SliderGroup;
namespace Native
{
class PopupMenu;
}

/// A magnified live copy of another frame's finished bitmap around the mouse, with rulers, a
/// grid, the colour of the pixel under the cursor and, while frozen, a measuring box. It reads
/// the bitmap the frame last painted, so it shows exactly what the user sees; every 50 ms it
/// repaints itself from a fresh copy unless frozen. The zoom factor, ruler spacing and the two
/// switches live in the shared settings (not owned; it must outlive the panel, and may be null).
///
/// Below the zoom area lie the "Zoom Factor Slider" and "Ruler Size Slider" groups and the
/// "Show Ruler CheckBox", "Show Grid CheckBox" and "Freeze CheckBox".
class PixelZoom : public Window
{
public:
    static constexpr unsigned int WHITE_ = 0xFFFFFFFFu;
    static constexpr unsigned int BackgroundColor = 0xFFEEEEEEu;
    /// Room around the zoom area: 4 pixels each side, and the controls' rows below.
    static constexpr int HorizontalMargin = 8;
    static constexpr int VerticalMargin = 119;

    PixelZoom(Frame* frame, Window* parent, Util::ConfigFile* config);
    ~PixelZoom() override;

    /// The frame whose bitmap is shown; null shows nothing. Frozen content is dropped. The frame
    /// is not owned: whoever destroys it first points the panel elsewhere (or at null).
    void SetZoomFrame(Frame* source);
    Frame* GetZoomFrame() const { return sourceFrame; }
    /// Inverts the freeze switch; thawing drops the measuring box.
    void ToggleFreeze();
    bool IsFrozen() const { return freeze.get(); }
    /// Appends the panel's controls in Tab order.
    void AppendFocusOrder(std::vector<Window*>& order) const;

    // ---- what the last draw showed (panel coordinates for rectangles, frame pixels for points)
    Rect const& GetSourceRect() const { return sourceRect; }
    Rect const& GetZoomRect() const { return zoomRect; }
    Point const& GetCentre() const { return centre; }
    Point const& GetCursor() const { return cursor; }
    /// False when the panel is too small for a single pixel (it then shows a message instead).
    bool IsZoomShown() const { return zoomShown; }
    bool IsMeasuring() const { return measuring; }
    Point const& GetMeasureStart() const { return measureStart; }
    Point const& GetMeasureEnd() const { return measureEnd; }
    /// The factor used by the last draw.
    int GetFactor() const { return lastFactor; }
    /// The colour of the pixel under the cursor; not present without a picture.
    checked_value<unsigned int> GetCursorColor() const;
    /// The three read-out texts beside the swatch; empty without a picture.
    std::vector<String> GetReadoutTexts() const;
    /// The five forms of `color` offered by the swatch's menu, bare (without "Copy '...'").
    static std::vector<String> GetColorCopyForms(unsigned int color);

    Controller::FloatParam* GetZoomFactorParam() { return &zoomFactor; }
    Controller::FloatParam* GetRulerSizeParam() { return &rulerSize; }
    Controller::BoolParam* GetShowRulerParam() { return &showRuler; }
    Controller::BoolParam* GetShowGridParam() { return &showGrid; }
    Controller::BoolParam* GetFreezeParam() { return &freeze; }

    void Draw(DrawContext* context) override;
    void onSetGeometry() override;
    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onMouseMove(Point const& p, unsigned int flags) override;
    bool onMouseRelease(Point const& p, unsigned int flags) override;
    bool onMouseWheel(Point const& p, int delta, unsigned int flags) override;
    bool onMouseRightPress(Point const& p, unsigned int flags) override;
    String GetWindowType() const override { return String("PixelZoom"); }

protected:
    /// Shows `menu` at `screenPoint` and answers the chosen id (or `PopupMenu::None`). The host's
    /// menu runs a nested loop; tests answer here instead.
    virtual int showPopupMenu(Native::PopupMenu& menu, Point const& screenPoint);

private:
    SliderGroup* createSlider(String const& name, String const& label, String const& units,
                              Controller::FloatParam* param);
    CheckBox* createCheckBox(String const& name, String const& label, Controller::BoolParam* param);
    void slotUpdateTimer();
    void slotUpdateFreeze(bool const& frozen);
    void slotSettingChanged();
    void slotRepaint();
    /// Copies the source frame's bitmap into `frozenCopy`; false when it has none.
    bool copySourceBitmap();
    bool updateZoomRect();
    void drawScaledBits(DrawContext* context);
    void drawCursorCircle(DrawContext* context);
    void drawGrid(DrawContext* context);
    void drawRulers(DrawContext* context);
    void drawDragBox(DrawContext* context);
    void drawColorAndPositionText(DrawContext* context);
    void drawTooSmallMessage(DrawContext* context);
    /// The source pixel drawn at panel point `p`.
    Point sourcePixelAt(Point const& p) const;
    Point screenPointOf(Point const& p) const;
    void executeColorSwatchContextMenu(Point const& p);
    void executeZoomAreaContextMenu(Point const& p);
    boost::shared_ptr<DIBits> copyZoomArea() const;

    Frame* sourceFrame = nullptr;
    std::unique_ptr<MemoryDrawContext> frozenCopy;
    bool haveCopy = false;
    Controller::FloatParamConfigFile zoomFactor;
    Controller::FloatParamConfigFile rulerSize;
    Controller::BoolParamConfigFile showRuler;
    Controller::BoolParamConfigFile showGrid;
    Controller::BoolParamMemory freeze;
    Rect sourceRect;
    Rect zoomRect;
    Point centre;
    Point cursor;
    Point measureStart;
    Point measureEnd;
    bool measuring = false;
    bool zoomShown = false;
    /// Right-click in the top-right corner: shows the two rectangles as text.
    bool showGeometry = false;
    int lastFactor = 0;
    std::unique_ptr<SimpleTimer> updateTimer;
    SliderGroup* zoomSlider = nullptr;
    SliderGroup* rulerSlider = nullptr;
    CheckBox* showRulerBox = nullptr;
    CheckBox* showGridBox = nullptr;
    CheckBox* freezeBox = nullptr;
};

} // namespace UI
