// Solid, outline and rounded boxes.
//
// Sections:
//   - solid boxes, plain fills and outlines
//   - rounded boxes (filled corners, eight-way symmetric)
//   - rounded outlines (one-pixel anti-aliased corners)

#include "Canvas/UI/BoxDrawing.h"

#include "Canvas/UI/detail/BlitRows.h"
#include "Canvas/UI/detail/KeepAlphaPixel.h"
#include "Canvas/UI/detail/PixelMath.h"

#include <algorithm>
#include <cmath>

namespace UI
{

// ---------------------------------------------------------------------------------------------
// Solid boxes, plain fills and outlines
// ---------------------------------------------------------------------------------------------

void DrawSolidBox(unsigned int* bits, int stride, UI::Rect const& clip, UI::Rect const& box,
                  unsigned int color, unsigned char alpha)
{
    UI::Rect const r = box & clip;
    if (!bits || r.IsEmpty())
        return;
    unsigned int* row = bits + static_cast<long>(r.top) * stride + r.left;
    int const width = r.Width();
    detail::BlitRowKernels const& kernels = detail::GetBlitRowKernels();
    if (alpha == 255)
    {
        for (int y = r.top; y <= r.bottom; ++y, row += stride)
        {
            if (width == 1)
                *row = color; // a one-column box is a stepping store down the rows
            else
                kernels.fill(row, width, color);
        }
        return;
    }
    unsigned int const keep = alpha <= 1 ? 255 : 256 - alpha;
    unsigned int const red = (color >> 16) & 255;
    unsigned int const green = (color >> 8) & 255;
    unsigned int const blue = color & 255;
    unsigned int const add =
        ((red * alpha / 255) << 16) | ((green * alpha / 255) << 8) | (blue * alpha / 255);
    for (int y = r.top; y <= r.bottom; ++y, row += stride)
        kernels.solidBox(row, width, keep, add);
}

void FillBox(unsigned int* bits, int stride, UI::Rect const& clip, UI::Rect const& box,
             unsigned int color)
{
    UI::Rect const r = box & clip;
    if (!bits || r.IsEmpty())
        return;
    detail::BlitRowKernels const& kernels = detail::GetBlitRowKernels();
    unsigned int* row = bits + static_cast<long>(r.top) * stride + r.left;
    for (int y = r.top; y <= r.bottom; ++y, row += stride)
        kernels.fill(row, r.Width(), color);
}

namespace
{

/// One pixel, if inside the clip: a store above alpha 254, otherwise the blend kernel.
void plotBlended(unsigned int* bits, int stride, UI::Rect const& clip, int x, int y,
                 unsigned int color, unsigned char alpha)
{
    if (!clip.Contains(UI::Point(x, y)))
        return;
    unsigned int& p = bits[static_cast<long>(y) * stride + x];
    p = detail::ComposePixel(color, p, alpha);
}

} // namespace

void DrawOutlineBox(unsigned int* bits, int stride, UI::Rect const& clip, UI::Rect const& box,
                    unsigned int color, unsigned char alpha)
{
    if (!bits || box.IsEmpty() || (box & clip).IsEmpty())
        return;
    UI::Rect const r = box & clip;
    // Top and bottom rows own the corners; the side columns run between them.
    for (int x = r.left; x <= r.right; ++x)
    {
        plotBlended(bits, stride, clip, x, box.top, color, alpha);
        if (box.bottom != box.top)
            plotBlended(bits, stride, clip, x, box.bottom, color, alpha);
    }
    for (int y = std::max(r.top, box.top + 1); y <= std::min(r.bottom, box.bottom - 1); ++y)
    {
        plotBlended(bits, stride, clip, box.left, y, color, alpha);
        if (box.right != box.left)
            plotBlended(bits, stride, clip, box.right, y, color, alpha);
    }
}

// ---------------------------------------------------------------------------------------------
// Rounded boxes
// ---------------------------------------------------------------------------------------------

namespace
{

/// A coverage pixel at the edge of a curve: the color at `coverage` through the alpha-keeping
/// composite, 255 or more being a plain store.
void plotCoverage(unsigned int* bits, int stride, UI::Rect const& clip, int x, int y,
                  unsigned int color, int coverage)
{
    if (coverage <= 0 || !clip.Contains(UI::Point(x, y)))
        return;
    unsigned int& p = bits[static_cast<long>(y) * stride + x];
    if (coverage >= 255)
        p = color;
    else
        p = detail::KeepAlphaPixel((static_cast<unsigned int>(coverage) << 24) | (color & 0xFFFFFF),
                                   p);
}

/// The four corners of a box, as centres between pixels: a corner pixel at offsets (k, j)
/// from its centre, counted outward from 0, lies at `pixel(corner, k, j)`.
struct Corners
{
    int left;   // first column right of the left centre line
    int right;  // first column of the right corner square
    int top;    // first row below the top centre line
    int bottom; // first row of the bottom corner square

    UI::Point pixel(int corner, int k, int j) const
    {
        int const x = (corner & 1) ? right + k : left - 1 - k;
        int const y = (corner & 2) ? bottom + j : top - 1 - j;
        return UI::Point(x, y);
    }
};

} // namespace

void DrawRoundedBox(unsigned int* bits, int stride, UI::Rect const& clip, UI::Rect const& box,
                    unsigned int radius, bool filled, unsigned int color, unsigned char alpha)
{
    UI::Rect const visible = box & clip;
    if (!bits || visible.IsEmpty())
        return;
    int const r = static_cast<int>(std::min(radius, 1u << 20));

    // 1. Strip widths: the radius less what the clip cuts off that side.
    int const stripLeft = std::max(r - (visible.left - box.left), 0);
    int const stripRight = std::max(r - (box.right - visible.right), 0);
    int const stripTop = std::max(r - (visible.top - box.top), 0);
    int const stripBottom = std::max(r - (box.bottom - visible.bottom), 0);

    // 2. The bands along the sides, between the corners.
    if (visible.Height() > stripTop + stripBottom)
    {
        int const top = visible.top + stripTop;
        int const bottom = visible.bottom - stripBottom;
        DrawSolidBox(bits, stride, clip,
                     UI::Rect(visible.left, visible.left + stripLeft - 1, top, bottom), color,
                     alpha);
        DrawSolidBox(bits, stride, clip,
                     UI::Rect(visible.right - stripRight + 1, visible.right, top, bottom), color,
                     alpha);
    }
    if (visible.Width() > stripLeft + stripRight)
    {
        int const left = visible.left + stripLeft;
        int const right = visible.right - stripRight;
        DrawSolidBox(bits, stride, clip,
                     UI::Rect(left, right, visible.top, visible.top + stripTop - 1), color, alpha);
        DrawSolidBox(bits, stride, clip,
                     UI::Rect(left, right, visible.bottom - stripBottom + 1, visible.bottom), color,
                     alpha);
    }

    // 3. The corners, one octant span per step: row j runs from the diagonal out to the arc,
    // column j from below the diagonal out to the arc, each ending in one coverage pixel.
    Corners const corners{box.left + r, box.right + 1 - r, box.top + r, box.bottom + 1 - r};
    int const n = static_cast<int>(std::ceil(r * 0.75));
    for (int i = 0; i < n; ++i)
    {
        double const y = i + 0.5;
        double const x = std::sqrt(static_cast<double>(r) * r - y * y);
        int const xi = static_cast<int>(x);
        int const coverage = static_cast<int>(std::lround((x - xi) * alpha));
        for (int corner = 0; corner < 4; ++corner)
        {
            // The row span: offsets i .. xi-1 along row i.
            UI::Point const a = corners.pixel(corner, i, i);
            UI::Point const b = corners.pixel(corner, xi - 1, i);
            if (xi - 1 >= i)
                DrawSolidBox(bits, stride, clip,
                             UI::Rect(std::min(a.x, b.x), std::max(a.x, b.x), a.y, a.y), color,
                             alpha);
            UI::Point const edge = corners.pixel(corner, xi, i);
            plotCoverage(bits, stride, clip, edge.x, edge.y, color, coverage);

            // The column span: offsets i+1 .. xi-1 down column i.
            UI::Point const c = corners.pixel(corner, i, i + 1);
            UI::Point const d = corners.pixel(corner, i, xi - 1);
            if (xi - 1 >= i + 1)
                DrawSolidBox(bits, stride, clip,
                             UI::Rect(c.x, c.x, std::min(c.y, d.y), std::max(c.y, d.y)), color,
                             alpha);
            UI::Point const edge2 = corners.pixel(corner, i, xi);
            plotCoverage(bits, stride, clip, edge2.x, edge2.y, color, coverage);
        }
    }

    // 4. The middle.
    if (filled)
        DrawSolidBox(bits, stride, clip,
                     UI::Rect(visible.left + stripLeft, visible.right - stripRight,
                              visible.top + stripTop, visible.bottom - stripBottom),
                     color, alpha);
}

// ---------------------------------------------------------------------------------------------
// Rounded outlines
// ---------------------------------------------------------------------------------------------

void DrawRoundedBoxOutline(unsigned int* bits, int stride, UI::Rect const& clip,
                           UI::Rect const& box, unsigned int radius, unsigned int thickness,
                           unsigned int color, unsigned char alpha)
{
    if (!bits || box.IsEmpty() || (box & clip).IsEmpty())
        return;
    int const r = static_cast<int>(std::min(radius, 1u << 20));
    int const t = static_cast<int>(std::min(thickness, 1u << 20));

    // The straight sides, `thickness` thick, between the corners.
    DrawSolidBox(bits, stride, clip,
                 UI::Rect(box.left + r, box.right - r, box.top, box.top + t - 1), color, alpha);
    DrawSolidBox(bits, stride, clip,
                 UI::Rect(box.left + r, box.right - r, box.bottom - t + 1, box.bottom), color,
                 alpha);
    DrawSolidBox(bits, stride, clip,
                 UI::Rect(box.left, box.left + t - 1, box.top + r, box.bottom - r), color, alpha);
    DrawSolidBox(bits, stride, clip,
                 UI::Rect(box.right - t + 1, box.right, box.top + r, box.bottom - r), color, alpha);

    // The corners by Wu's circle around the pixel `r` in from each corner: along each step the
    // pixel on the arc and the one inside it share the coverage. The corners stay one pixel thick.
    int const cx[2] = {box.left + r, box.right - r};
    int const cy[2] = {box.top + r, box.bottom - r};
    int const sx[2] = {-1, 1};
    int const sy[2] = {-1, 1};
    auto plot = [&](int i, int j, int coverage)
    {
        for (int corner = 0; corner < 4; ++corner)
        {
            int const h = corner & 1;
            int const v = corner >> 1;
            plotCoverage(bits, stride, clip, cx[h] + sx[h] * i, cy[v] + sy[v] * j, color, coverage);
            if (i != j)
                plotCoverage(bits, stride, clip, cx[h] + sx[h] * j, cy[v] + sy[v] * i, color,
                             coverage);
        }
    };
    int x = r;
    int previous = 0;
    for (int y = 0; x > y; ++y)
    {
        double const exact = std::sqrt(static_cast<double>(r) * r - static_cast<double>(y) * y);
        int const d = static_cast<int>(std::floor((std::ceil(exact) - exact) * 255 + 0.5));
        if (d < previous)
            --x;
        previous = d;
        plot(x, y, (alpha * (255 - d) + 127) / 255);
        plot(x - 1, y, (alpha * d + 127) / 255);
    }
}

} // namespace UI
