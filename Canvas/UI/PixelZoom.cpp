// The pixel zoom panel.
//
//   Construction and settings
//   Geometry and the source area (updateZoomRect)
//   Drawing
//   Mouse
//   Context menus

#include "Canvas/UI/PixelZoom.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/Native/FileDialog.h"
#include "Canvas/UI/Native/ImageClipboard.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "Canvas/UI/ScreenShot.h"
#include "Canvas/UI/SimpleTimer.h"
#include "Canvas/UI/SliderGroup.h"
#include "TvBase/Util/Clipboard.h"

#include <algorithm>
#include <cmath>

namespace UI
{

namespace
{

unsigned int const TextColor = 0xFF000000u;
unsigned int const OutlineColor = 0xFF000000u;
unsigned int const MeasureColor = 0xFFFF0000u;
unsigned int const UpdateIntervalMs = 50;

// Ids of the context menus' entries: the copy forms are 0 to 4.
int const CopyZoomAreaId = 10;
int const SaveZoomAreaId = 11;

int clampInt(int value, int low, int high)
{
    return std::max(low, std::min(value, high));
}

Point clampToRect(Point const& p, Rect const& r)
{
    return Point(clampInt(p.x, r.left, r.right), clampInt(p.y, r.top, r.bottom));
}

/// The rectangle of `size` as near as it can be to `left`, `top` while inside `bounds` (which
/// is at least as large).
Rect placeInside(int left, int top, Size const& size, Size const& bounds)
{
    left = clampInt(left, 0, bounds.width - size.width);
    top = clampInt(top, 0, bounds.height - size.height);
    return Rect(Point(left, top), size);
}

} // namespace

// ============================================================================================
// Construction and settings
// ============================================================================================

PixelZoom::PixelZoom(Frame* frame, Window* parent, Util::ConfigFile* config)
    : Window(frame, parent, "PixelZoom"),
      frozenCopy(new MemoryDrawContext("PixelZoom Frozen Copy")),
      zoomFactor(8.0f, value_range<float>(4.0f, 32.0f), config, "PixelZoomFactor"),
      rulerSize(10.0f, value_range<float>(4.0f, 32.0f), config, "PixelZoomRulerSize"),
      showRuler(true, config, "PixelZoomShowRuler", true),
      showGrid(false, config, "PixelZoomShowGrid", true), freeze(false)
{
    zoomSlider = createSlider("Zoom Factor Slider", "Zoom factor", "x", &zoomFactor);
    rulerSlider = createSlider("Ruler Size Slider", "Ruler size", "px", &rulerSize);
    showRulerBox = createCheckBox("Show Ruler CheckBox", "Show rulers", &showRuler);
    showGridBox = createCheckBox("Show Grid CheckBox", "Show grid", &showGrid);
    freezeBox = createCheckBox("Freeze CheckBox", "Freeze (alt+F)", &freeze);
    freezeBox->SetToolTipText("When frozen, click in the zoom view to see colors and "
                              "coordinates.\nClick and drag to measure.");

    // The float settings write only when asked, so each change is saved as it happens.
    zoomFactor.valueChanged.Connect(&PixelZoom::slotSettingChanged, this);
    rulerSize.valueChanged.Connect(&PixelZoom::slotSettingChanged, this);
    showRuler.valueChanged.Connect(&PixelZoom::slotRepaint, this);
    showGrid.valueChanged.Connect(&PixelZoom::slotRepaint, this);
    freeze.valueChanged.Connect(&PixelZoom::slotUpdateFreeze, this);

    updateTimer.reset(new SimpleTimer([this] { slotUpdateTimer(); }, UpdateIntervalMs, false));
}

PixelZoom::~PixelZoom()
{
    // The timer goes first, so that no firing reaches a half-destroyed panel.
    updateTimer.reset();
}

SliderGroup* PixelZoom::createSlider(String const& name, String const& label, String const& units,
                                     Controller::FloatParam* param)
{
    SliderGroup* slider = new SimpleSliderGroup(GetFrame(), this, name, label, Horizontal, param);
    slider->SetNumDecimalPlaces(0);
    slider->SetUnits(units);
    slider->SetUnitsOffset(19, 0);
    return slider;
}

CheckBox* PixelZoom::createCheckBox(String const& name, String const& label,
                                    Controller::BoolParam* param)
{
    CheckBox* box = new SimpleCheckBox(GetFrame(), this, name, param);
    box->SetLabel(label);
    return box;
}

void PixelZoom::SetZoomFrame(Frame* source)
{
    if (source == sourceFrame)
        return;
    sourceFrame = source;
    haveCopy = false;
    measuring = false;
    Update();
}

void PixelZoom::ToggleFreeze()
{
    freeze.grab();
    freeze.set(!freeze.get());
    freeze.release();
}

void PixelZoom::AppendFocusOrder(std::vector<Window*>& order) const
{
    for (Window* w : {static_cast<Window*>(zoomSlider), static_cast<Window*>(rulerSlider),
                      static_cast<Window*>(showRulerBox), static_cast<Window*>(showGridBox),
                      static_cast<Window*>(freezeBox)})
        order.push_back(w);
}

void PixelZoom::slotUpdateTimer()
{
    if (!freeze.get() && sourceFrame && IsVisibleTo())
        Update();
}

void PixelZoom::slotUpdateFreeze(bool const& frozen)
{
    if (!frozen)
        measuring = false;
    Update();
}

void PixelZoom::slotRepaint()
{
    Update();
}

void PixelZoom::slotSettingChanged()
{
    zoomFactor.WriteToConfigFile();
    rulerSize.WriteToConfigFile();
    Update();
}

bool PixelZoom::copySourceBitmap()
{
    auto const* source = sourceFrame
                             ? dynamic_cast<MemoryDrawContext const*>(sourceFrame->GetDrawContext())
                             : nullptr;
    auto const& section = source ? source->GetDIBSection() : nullptr;
    if (!section || !section->GetPixels() || section->GetWidth() <= 0 || section->GetHeight() <= 0)
        return false;
    frozenCopy->Begin(section->GetSize());
    frozenCopy->BitBlt(section, Rect(Point(), section->GetSize()), Point(), false, 255);
    frozenCopy->End(std::vector<Rect>(), nullptr, nullptr);
    return true;
}

checked_value<unsigned int> PixelZoom::GetCursorColor() const
{
    auto const& section = frozenCopy->GetDIBSection();
    if (!haveCopy || !section || !Rect(Point(), section->GetSize()).Contains(cursor))
        return checked_value<unsigned int>();
    return section->GetPixels()[cursor.y * section->GetStride() + cursor.x] | 0xFF000000u;
}

std::vector<String> PixelZoom::GetReadoutTexts() const
{
    checked_value<unsigned int> const color = GetCursorColor();
    if (!color)
        return std::vector<String>();
    unsigned int const r = (*color >> 16) & 0xFF, g = (*color >> 8) & 0xFF, b = *color & 0xFF;
    return {String("0x%1 0x%1 0x%1").Arg(r, 16, 2u).Arg(g, 16, 2u).Arg(b, 16, 2u),
            String("(%1 %1 %1)").Arg(r).Arg(g).Arg(b),
            String("Pos in frame: (%1, %1)").Arg(cursor.x).Arg(cursor.y)};
}

std::vector<String> PixelZoom::GetColorCopyForms(unsigned int color)
{
    unsigned int const r = (color >> 16) & 0xFF, g = (color >> 8) & 0xFF, b = color & 0xFF;
    auto fill = [&](char const* form, unsigned int radix, checked_value<unsigned int> width)
    { return String(form).Arg(r, radix, width).Arg(g, radix, width).Arg(b, radix, width); };
    return {fill("%1%2%3", 16, 2u), fill("0x%1, 0x%2, 0x%3", 16, {}), fill("%1, %2, %3", 10, {}),
            fill("MakePixel(0x%1, 0x%2, 0x%3)", 16, {}), fill("MakePixel(%1, %2, %3)", 10, {})};
}

// ============================================================================================
// Geometry and the source area
// ============================================================================================

void PixelZoom::onSetGeometry()
{
    int const width = GetWidth(), height = GetHeight();
    int const sliderWidth = std::max(0, std::min(190, width - 143));
    zoomSlider->SetGeometry(5, height - 52, sliderWidth, 18);
    rulerSlider->SetGeometry(5, height - 32, sliderWidth, 18);
    showRulerBox->Move(width - 100, height - 53);
    showGridBox->Move(width - 100, showRulerBox->GetGeometry().bottom + 1 + 5);
    freezeBox->Move(width - 100, showGridBox->GetGeometry().bottom + 1 + 5);
    Update();
}

bool PixelZoom::updateZoomRect()
{
    auto const& section = frozenCopy->GetDIBSection();
    Size const bitmap = section ? section->GetSize() : Size();
    int const factor = int(std::lround(zoomFactor.get()));
    int across = (GetWidth() - HorizontalMargin) / factor;
    int down = (GetHeight() - VerticalMargin) / factor;
    if (across < 1 || down < 1 || bitmap.width <= 0 || bitmap.height <= 0)
        return false;
    Size const size(std::min(across, bitmap.width), std::min(down, bitmap.height));
    Rect const bounds(Point(), bitmap);

    if (!freeze.get())
    {
        cursor = clampToRect(sourceFrame->GetCursorPos(), bounds);
        centre = cursor;
    }
    centre = clampToRect(centre, bounds);
    cursor = clampToRect(cursor, bounds);

    sourceRect = placeInside(centre.x - size.width / 2, centre.y - size.height / 2, size, bitmap);
    if (factor != lastFactor && !sourceRect.Contains(centre))
    {
        // A new factor never loses the point being looked at.
        int const left = centre.x < sourceRect.left ? centre.x : centre.x - size.width + 1;
        int const top = centre.y < sourceRect.top ? centre.y : centre.y - size.height + 1;
        sourceRect = placeInside(
            sourceRect.Contains(Point(centre.x, sourceRect.top)) ? sourceRect.left : left,
            sourceRect.Contains(Point(sourceRect.left, centre.y)) ? sourceRect.top : top, size,
            bitmap);
    }
    lastFactor = factor;

    int const zoomWidth = size.width * factor, zoomHeight = size.height * factor;
    zoomRect = Rect(Point(HorizontalMargin / 2 + (GetWidth() - HorizontalMargin - zoomWidth) / 2,
                          HorizontalMargin / 2),
                    Size(zoomWidth, zoomHeight));
    return true;
}

Point PixelZoom::sourcePixelAt(Point const& p) const
{
    int const factor = std::max(1, lastFactor);
    return Point((p.x - zoomRect.left) / factor + sourceRect.left,
                 (p.y - zoomRect.top) / factor + sourceRect.top);
}

Point PixelZoom::screenPointOf(Point const& p) const
{
    return GetFrame()->GetScreenPos() + GetGlobalPos() + p;
}

// ============================================================================================
// Drawing
// ============================================================================================

void PixelZoom::Draw(DrawContext* context)
{
    context->DrawBox(Rect(Point(), GetGeometry().GetSize()), DrawContext::Filled, BackgroundColor,
                     255);
    if (!freeze.get() || !haveCopy)
        haveCopy = copySourceBitmap();
    zoomShown = haveCopy && updateZoomRect();
    if (zoomShown)
    {
        drawScaledBits(context);
        drawCursorCircle(context);
        if (showGrid.get())
            drawGrid(context);
        if (showRuler.get())
            drawRulers(context);
        drawDragBox(context);
        drawColorAndPositionText(context);
    }
    else if (haveCopy)
        drawTooSmallMessage(context);
    Window::Draw(context);
}

void PixelZoom::drawScaledBits(DrawContext* context)
{
    auto const& section = frozenCopy->GetDIBSection();
    int const factor = lastFactor;
    for (int y = sourceRect.top; y <= sourceRect.bottom; ++y)
    {
        unsigned int const* row = section->GetPixels() + y * section->GetStride();
        int const top = zoomRect.top + (y - sourceRect.top) * factor;
        for (int x = sourceRect.left; x <= sourceRect.right; ++x)
        {
            int const left = zoomRect.left + (x - sourceRect.left) * factor;
            context->DrawBox(Rect(left, left + factor - 1, top, top + factor - 1),
                             DrawContext::Filled, row[x], 255);
        }
    }
}

void PixelZoom::drawCursorCircle(DrawContext* context)
{
    if (!sourceRect.Contains(cursor))
        return;
    // The toolkit's own anti-aliased circle rather than a stroked path: a thin ring's cells
    // carry negative coverage through the path rasterizer, which it shifts as signed values.
    int const factor = lastFactor;
    int const cx = zoomRect.left + (cursor.x - sourceRect.left) * factor + factor / 2;
    int const cy = zoomRect.top + (cursor.y - sourceRect.top) * factor + factor / 2;
    int const radius = factor * 3 / 4 + 2;
    // A light ring between two dark ones stays visible over any colour.
    struct Ring
    {
        int radius;
        unsigned int color;
    };
    for (Ring const ring :
         {Ring{radius + 1, OutlineColor}, Ring{radius - 1, OutlineColor}, Ring{radius, WHITE_}})
        context->DrawRoundedBoxOutline(
            Rect(cx - ring.radius, cx + ring.radius, cy - ring.radius, cy + ring.radius),
            unsigned(ring.radius), 1, ring.color, GetEffectiveAlpha());
}

void PixelZoom::drawGrid(DrawContext* context)
{
    int const factor = lastFactor;
    for (int x = zoomRect.left; x <= zoomRect.right + 1; x += factor)
        context->DrawLine(Point(x, zoomRect.top), Point(x, zoomRect.bottom), 0xFF000000u, false,
                          255);
    for (int y = zoomRect.top; y <= zoomRect.bottom + 1; y += factor)
        context->DrawLine(Point(zoomRect.left, y), Point(zoomRect.right, y), 0xFF000000u, false,
                          255);
}

void PixelZoom::drawRulers(DrawContext* context)
{
    // Ticks sit in the margin around the zoom area at every multiple of the spacing in frame
    // pixels; every fifth is longer, so positions can be counted off.
    int const factor = lastFactor;
    int const spacing = std::max(1, int(std::lround(rulerSize.get())));
    int const margin = HorizontalMargin / 2;
    for (int x = sourceRect.left; x <= sourceRect.right; ++x)
    {
        if (x % spacing)
            continue;
        int const length = (x / spacing) % 5 ? margin - 2 : margin;
        int const px = zoomRect.left + (x - sourceRect.left) * factor;
        context->DrawLine(Point(px, zoomRect.top - length), Point(px, zoomRect.top - 1), TextColor,
                          false, 255);
        context->DrawLine(Point(px, zoomRect.bottom + 1), Point(px, zoomRect.bottom + length),
                          TextColor, false, 255);
    }
    for (int y = sourceRect.top; y <= sourceRect.bottom; ++y)
    {
        if (y % spacing)
            continue;
        int const length = (y / spacing) % 5 ? margin - 2 : margin;
        int const py = zoomRect.top + (y - sourceRect.top) * factor;
        context->DrawLine(Point(zoomRect.left - length, py), Point(zoomRect.left - 1, py),
                          TextColor, false, 255);
        context->DrawLine(Point(zoomRect.right + 1, py), Point(zoomRect.right + length, py),
                          TextColor, false, 255);
    }
}

void PixelZoom::drawDragBox(DrawContext* context)
{
    if (!measuring)
        return;
    int const factor = lastFactor;
    Rect const area(std::min(measureStart.x, measureEnd.x), std::max(measureStart.x, measureEnd.x),
                    std::min(measureStart.y, measureEnd.y), std::max(measureStart.y, measureEnd.y));
    Rect const shown = area & sourceRect;
    if (!shown.IsEmpty())
    {
        Rect const box(zoomRect.left + (shown.left - sourceRect.left) * factor,
                       zoomRect.left + (shown.right + 1 - sourceRect.left) * factor - 1,
                       zoomRect.top + (shown.top - sourceRect.top) * factor,
                       zoomRect.top + (shown.bottom + 1 - sourceRect.top) * factor - 1);
        context->DrawBox(box, DrawContext::Outline, MeasureColor, 255);
    }
    Font* font = GetCanvas() ? GetCanvas()->GetFont(checked_value<unsigned int>()) : nullptr;
    // The size goes on the row under the read-out, clear of the zoom area and the controls.
    if (font)
        context->DrawText(font, Point(5, GetHeight() - 86),
                          String("%1 x %1").Arg(area.Width()).Arg(area.Height()), TextColor, 255);
}

void PixelZoom::drawColorAndPositionText(DrawContext* context)
{
    checked_value<unsigned int> const color = GetCursorColor();
    if (!color)
        return;
    int const top = GetHeight() - 105;
    Rect const swatch(5, 18, top, top + 13);
    context->DrawBox(swatch, DrawContext::Filled, *color, 255);
    context->DrawBox(swatch, DrawContext::Outline, OutlineColor, 255);
    Font* font = GetCanvas() ? GetCanvas()->GetFont(checked_value<unsigned int>()) : nullptr;
    if (!font)
        return;
    int x = swatch.right + 6;
    for (String const& text : GetReadoutTexts())
    {
        context->DrawText(font, Point(x, top), text, TextColor, 255);
        x += int(font->GetStringWidth(text)) + 8;
    }
    if (showGeometry)
        context->DrawText(font, Point(5, top - 16),
                          sourceRect.ToString() + String(" ") + zoomRect.ToString(), TextColor,
                          255);
}

void PixelZoom::drawTooSmallMessage(DrawContext* context)
{
    Font* font = GetCanvas() ? GetCanvas()->GetFont(checked_value<unsigned int>()) : nullptr;
    if (!font)
        return;
    Rect const lines(4, GetWidth() - 5, 4, std::max(4, GetHeight() - VerticalMargin));
    int const lineHeight = font->GetHeight() + 2;
    context->DrawText(font, Rect(lines.left, lines.right, lines.top, lines.top + lineHeight - 1),
                      Point(), "Make this window larger to", TextColor, 255, HAlignCenter,
                      VAlignCenter);
    context->DrawText(
        font, Rect(lines.left, lines.right, lines.top + lineHeight, lines.top + 2 * lineHeight - 1),
        Point(), "use the Pixel Zoom tool.", TextColor, 255, HAlignCenter, VAlignCenter);
}

// ============================================================================================
// Mouse
// ============================================================================================

bool PixelZoom::onMousePress(Point const& p, unsigned int)
{
    if (!zoomShown || !zoomRect.Contains(p))
        return false;
    if (!freeze.get())
        return true;
    measureStart = measureEnd = cursor = clampToRect(sourcePixelAt(p), sourceRect);
    measuring = true;
    GetFrame()->SetMouseCapture(this);
    Update();
    return true;
}

bool PixelZoom::onMouseMove(Point const& p, unsigned int)
{
    if (GetFrame()->GetMouseCapture() != this)
        return false;
    measureEnd = freeze.get() ? clampToRect(sourcePixelAt(p), sourceRect) : measureStart;
    cursor = measureEnd;
    Update();
    return true;
}

bool PixelZoom::onMouseRelease(Point const&, unsigned int)
{
    if (GetFrame()->GetMouseCapture() != this)
        return false;
    GetFrame()->ReleaseMouseCapture();
    return true;
}

bool PixelZoom::onMouseWheel(Point const& p, int delta, unsigned int)
{
    if (!zoomShown || !zoomRect.Contains(p))
        return false;
    zoomFactor.grab();
    zoomFactor.set(zoomFactor.get() + float(delta) * 0.025f);
    zoomFactor.release();
    return true;
}

bool PixelZoom::onMouseRightPress(Point const& p, unsigned int)
{
    int const width = GetWidth(), height = GetHeight();
    if (p.x >= 5 && p.x <= 220 && p.y >= height - 106 && p.y <= height - 91)
        executeColorSwatchContextMenu(p);
    else if (zoomShown && zoomRect.Contains(p))
        executeZoomAreaContextMenu(p);
    else if (p.x >= width - 4 && p.y <= 5)
    {
        showGeometry = !showGeometry;
        Update();
    }
    else
        return false;
    return true;
}

// ============================================================================================
// Context menus
// ============================================================================================

int PixelZoom::showPopupMenu(Native::PopupMenu& menu, Point const& screenPoint)
{
    return menu.Show(screenPoint);
}

void PixelZoom::executeColorSwatchContextMenu(Point const& p)
{
    checked_value<unsigned int> const color = GetCursorColor();
    if (!color)
        return;
    std::vector<String> const forms = GetColorCopyForms(*color);
    Native::PopupMenu menu;
    for (std::size_t i = 0; i < forms.size(); ++i)
        menu.AddItem(int(i), String("Copy '%1'").Arg(forms[i]));
    int const chosen = showPopupMenu(menu, screenPointOf(p));
    if (chosen >= 0 && std::size_t(chosen) < forms.size())
        Util::Clipboard::SetContent(GetFrame()->GetNativeWindowHandle(),
                                    checked_value<unsigned int>(), std::vector<unsigned char>(),
                                    forms[std::size_t(chosen)]);
}

boost::shared_ptr<DIBits> PixelZoom::copyZoomArea() const
{
    boost::shared_ptr<DIBits> all = frozenCopy->GetBits();
    if (!all || sourceRect.IsEmpty())
        return boost::shared_ptr<DIBits>();
    boost::shared_ptr<DIBits> area = all->CopyRectToPtr(sourceRect);
    if (area)
        area->SetHasAlpha(false);
    return area;
}

void PixelZoom::executeZoomAreaContextMenu(Point const& p)
{
    Native::PopupMenu menu;
    menu.AddItem(CopyZoomAreaId, "Copy zoom area to clipboard",
                 Native::ImageClipboard::IsAvailable());
    menu.AddItem(SaveZoomAreaId, "Save zoom area as a PNG");
    int const chosen = showPopupMenu(menu, screenPointOf(p));
    if (chosen != CopyZoomAreaId && chosen != SaveZoomAreaId)
        return;
    boost::shared_ptr<DIBits> area = copyZoomArea();
    if (!area || !area->IsValid())
        return;
    if (chosen == CopyZoomAreaId)
    {
        Native::ImageClipboard::SetImage(*area);
        return;
    }
    String path;
    if (Native::FileDialog::SaveFile(GetFrame(), "Save zoom area as a PNG", "Zoom.png", "png",
                                     path) &&
        !path.IsEmpty())
        ScreenShotFromDIBitsToFile(area, FilePath(path), nullptr, nullptr, false);
}

} // namespace UI
