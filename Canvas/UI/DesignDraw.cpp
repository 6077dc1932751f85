// UI::Design: the overlay, drawn over every window of the frame in the frame's own bitmap.
//
// Index:
//   the overlay
//   guides
//   selection boxes
//   single-drag guides
//   rubber band

#include "Canvas/UI/Design.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Orientation.h"
#include "Canvas/UI/Window.h"

#include <algorithm>

namespace UI
{

namespace
{

unsigned char const GuideLineAlpha = 136;
unsigned char const LabelAlpha = 187;
unsigned char const SizeLabelAlpha = 136;

void fill(DrawContext* context, Rect const& r, unsigned int color, unsigned char alpha = 255)
{
    if (!r.IsEmpty())
        context->DrawBox(r, DrawContext::Filled, color, alpha);
}

Font* defaultFont(Frame* frame)
{
    return frame->GetCanvas() ? frame->GetCanvas()->GetFont(checked_value<unsigned int>())
                              : nullptr;
}

/// White text on a black box centred on `centre`.
void drawLabel(DrawContext* context, Font* font, String const& text, Point const& centre,
               unsigned char alpha)
{
    if (!font)
        return;
    int const width = static_cast<int>(font->GetStringWidth(text)) + 4;
    int const height = 14;
    Rect const box(Point(centre.x - width / 2, centre.y - height / 2), Size(width, height));
    fill(context, box, 0xFF000000, alpha);
    context->DrawText(font, box, Point(), text, 0xFFFFFFFF, 255, HAlignCenter, VAlignCenter);
}

} // namespace

// ============================================================================================
// the overlay
// ============================================================================================

void Design::Draw(DrawContext* context)
{
    UpdateActive();
    if (!active)
        return;
    if (showCursorBeams)
    {
        fill(context, verticalBeam, BEAM_COLOR);
        fill(context, horizontalBeam, BEAM_COLOR);
    }
    drawGuides(context);
    drawSelectionBoxes(context);
    if (hoverWindow && !dragOrigin)
    {
        Rect const r = globalRect(hoverWindow);
        context->DrawBox(Rect(r.left - 1, r.right, r.top - 1, r.bottom), DrawContext::Outline,
                         HOVER_FRAME_COLOR, 255);
    }
    if (singleDragWindow || hoverWindow)
        drawSingleDragGuides(context);
    drawRubberBand(context);
}

// ============================================================================================
// guides
// ============================================================================================

void Design::drawGuides(DrawContext* context)
{
    Size const size = frameSize();
    for (unsigned int i = 0; i < verticalGuides.size(); ++i)
    {
        int const x = verticalGuides[i];
        fill(context, Rect(x, x, 0, size.height - 1), GUIDE_COLOR);
        if (selectedVerticalGuides.count(i))
        {
            fill(context, Rect(x - 2, x + 2, 0, 4), SELECTED_GUIDE_COLOR);
            fill(context, Rect(x - 2, x + 2, size.height - 5, size.height - 1),
                 SELECTED_GUIDE_COLOR);
        }
    }
    for (unsigned int i = 0; i < horizontalGuides.size(); ++i)
    {
        int const y = horizontalGuides[i];
        fill(context, Rect(0, size.width - 1, y, y), GUIDE_COLOR);
        if (selectedHorizontalGuides.count(i))
        {
            fill(context, Rect(0, 4, y - 2, y + 2), SELECTED_GUIDE_COLOR);
            fill(context, Rect(size.width - 5, size.width - 1, y - 2, y + 2), SELECTED_GUIDE_COLOR);
        }
    }
}

// ============================================================================================
// selection boxes
// ============================================================================================

void Design::drawSelectionBoxes(DrawContext* context)
{
    Size const size = frameSize();
    for (Window* w : selected)
    {
        Rect const box = globalRect(w).Inflate(1);
        int const cx = box.left + box.Width() / 2;
        int const cy = box.top + box.Height() / 2;
        if (showCenterGuides)
        {
            fill(context, Rect(0, box.left - 1, cy, cy), BEAM_COLOR, GuideLineAlpha);
            fill(context, Rect(box.right + 1, size.width - 1, cy, cy), BEAM_COLOR, GuideLineAlpha);
            fill(context, Rect(cx, cx, 0, box.top - 1), BEAM_COLOR, GuideLineAlpha);
            fill(context, Rect(cx, cx, box.bottom + 1, size.height - 1), BEAM_COLOR,
                 GuideLineAlpha);
        }
        if (showEdgeGuides)
        {
            for (int y : {box.top, box.bottom})
            {
                fill(context, Rect(0, box.left - 1, y, y), BEAM_COLOR, GuideLineAlpha);
                fill(context, Rect(box.right + 1, size.width - 1, y, y), BEAM_COLOR,
                     GuideLineAlpha);
            }
            for (int x : {box.left, box.right})
            {
                fill(context, Rect(x, x, 0, box.top - 1), BEAM_COLOR, GuideLineAlpha);
                fill(context, Rect(x, x, box.bottom + 1, size.height - 1), BEAM_COLOR,
                     GuideLineAlpha);
            }
        }
        if (!showSelectionFrames)
            continue;
        unsigned int const color =
            w->GetDynamicLayoutMode() == Window::DynamicLayoutNever
                ? SELECTION_BOX_COLOR_NO_SAVE
                : (w->IsLayoutCreated() ? SELECTION_BOX_COLOR_CREATE : SELECTION_BOX_COLOR);
        context->DrawBox(box, DrawContext::Outline, color, 255);
        fill(context, Rect(box.left, box.left + 4, box.top, box.top + 4), color);
        fill(context, Rect(box.right - 4, box.right, box.top, box.top + 4), color);
        fill(context, Rect(box.left, box.left + 4, box.bottom - 4, box.bottom), color);
        fill(context, Rect(box.right - 4, box.right, box.bottom - 4, box.bottom), color);
        if (!w->IsFixedWidth())
        {
            fill(context, Rect(box.left, box.left + 4, cy - 2, cy + 2), color);
            fill(context, Rect(box.right - 4, box.right, cy - 2, cy + 2), color);
        }
        if (!w->IsFixedHeight())
        {
            fill(context, Rect(cx - 2, cx + 2, box.top, box.top + 4), color);
            fill(context, Rect(cx - 2, cx + 2, box.bottom - 4, box.bottom), color);
        }
    }
}

// ============================================================================================
// single-drag guides
// ============================================================================================

void Design::drawSingleDragGuides(DrawContext* context)
{
    Window* t = singleDragWindow ? singleDragWindow : hoverWindow;
    Rect const tr = globalRect(t);
    Font* font = defaultFont(frame);
    for (Window* s : selected)
    {
        if (s == t)
            continue;
        Rect const sr = globalRect(s);
        for (unsigned int axis = 0; axis < 2; ++axis)
        {
            auto startOf = [](Rect const& r, unsigned int a) { return a == 0 ? r.left : r.top; };
            auto lastOf = [](Rect const& r, unsigned int a) { return a == 0 ? r.right : r.bottom; };
            auto sizeOf = [](Rect const& r, unsigned int a)
            { return a == 0 ? r.Width() : r.Height(); };
            unsigned int const other = 1 - axis;
            // The gap between the two on the other axis; the span of both when they overlap.
            int from = std::min(lastOf(tr, other), lastOf(sr, other)) + 1;
            int to = std::max(startOf(tr, other), startOf(sr, other)) - 1;
            if (from > to)
            {
                from = std::min(startOf(tr, other), startOf(sr, other));
                to = std::max(lastOf(tr, other), lastOf(sr, other));
            }
            std::vector<int> lines;
            if (startOf(tr, axis) == startOf(sr, axis))
                lines.push_back(startOf(tr, axis));
            if (startOf(tr, axis) + sizeOf(tr, axis) / 2 ==
                startOf(sr, axis) + sizeOf(sr, axis) / 2)
                lines.push_back(startOf(tr, axis) + sizeOf(tr, axis) / 2);
            if (lastOf(tr, axis) == lastOf(sr, axis))
                lines.push_back(lastOf(tr, axis));
            if (!lines.empty())
            {
                for (int at : lines)
                    fill(context, axis == 0 ? Rect(at, at, from, to) : Rect(from, to, at, at),
                         SINGLE_DRAG_GUIDE_COLOR);
                continue;
            }
            bool const overlap =
                startOf(tr, axis) <= lastOf(sr, axis) && startOf(sr, axis) <= lastOf(tr, axis);
            if (!overlap || tr.Intersects(sr))
                continue;
            int at = startOf(tr, axis) + sizeOf(tr, axis) / 2;
            if (at < startOf(sr, axis))
                at = startOf(sr, axis);
            else if (at > lastOf(sr, axis))
                at = lastOf(sr, axis);
            context->DrawDottedLine(axis == 0 ? Vertical : Horizontal, at, from, to,
                                    HOVER_FRAME_COLOR, 255);
            Point const middle =
                axis == 0 ? Point(at, (from + to) / 2) : Point((from + to) / 2, at);
            drawLabel(context, font, String("%1").Arg(to - from + 1), middle, LabelAlpha);
        }
    }
}

// ============================================================================================
// rubber band
// ============================================================================================

void Design::drawRubberBand(DrawContext* context)
{
    if (!rubberStart || !rubberEnd)
        return;
    Rect const band = rubberBandRect();
    context->DrawBox(band, DrawContext::Outline, RUBBER_BAND_COLOR, 255);
    if (band.Width() < 2 && band.Height() < 2)
        return;
    Font* font = defaultFont(frame);
    if (!font)
        return;
    String const text = String("%1 x %1").Arg(band.Width()).Arg(band.Height());
    Rect const r = getRubberBandSizeTextRect(static_cast<int>(font->GetStringWidth(text)));
    fill(context, r, 0xFF000000, SizeLabelAlpha);
    context->DrawText(font, r, Point(), text, 0xFFFFFFFF, 255, HAlignCenter, VAlignCenter);
}

} // namespace UI
