// Lines: solid and per-pixel-color Bresenham walks, and Gupta-Sproull anti-aliasing.

#include "Canvas/UI/LineInfo.h"

#include "Canvas/UI/BoxDrawing.h"
#include "Canvas/UI/detail/PixelMath.h"

#include <cmath>
#include <cstdlib>

namespace UI
{

namespace
{

UI::Rect clipOf(LineInfo const& line)
{
    return UI::Rect(line.clipLeft, line.clipRight, line.clipTop, line.clipBottom);
}

/// One step along the x axis when `alongX`, else along the y axis.
void stepAlong(bool alongX, int& x, int& y, int stepX, int stepY)
{
    if (alongX)
        x += stepX;
    else
        y += stepY;
}

/// The walk of a solid line, both ends included; `plot(x, y, n)` gets the nth pixel.
template <class Plot>
void walkLine(int x0, int y0, int x1, int y1, Plot plot)
{
    int const dx = std::abs(x1 - x0);
    int const dy = std::abs(y1 - y0);
    int const stepX = x1 >= x0 ? 1 : -1;
    int const stepY = y1 >= y0 ? 1 : -1;
    bool const xMajor = dx >= dy;
    int const longer = xMajor ? dx : dy;
    int const shorter = xMajor ? dy : dx;
    int error = longer / 2;
    int x = x0;
    int y = y0;
    for (int n = 0; n <= longer; ++n)
    {
        plot(x, y, n);
        error -= shorter;
        if (error < 0)
        {
            error += longer;
            stepAlong(!xMajor, x, y, stepX, stepY);
        }
        stepAlong(xMajor, x, y, stepX, stepY);
    }
}

void drawSolid(LineInfo const& line)
{
    UI::Rect const clip = clipOf(line);
    if (line.from.x == line.to.x || line.from.y == line.to.y)
    {
        DrawSolidBox(line.bits, line.stride, clip,
                     UI::Rect(std::min(line.from.x, line.to.x), std::max(line.from.x, line.to.x),
                              std::min(line.from.y, line.to.y), std::max(line.from.y, line.to.y)),
                     line.color, line.alpha);
        return;
    }
    walkLine(line.from.x, line.from.y, line.to.x, line.to.y,
             [&](int x, int y, int)
             {
                 if (clip.Contains(UI::Point(x, y)))
                 {
                     unsigned int& p = line.bits[static_cast<long>(y) * line.stride + x];
                     p = detail::ComposePixel(line.color, p, line.alpha);
                 }
             });
}

void drawPerPixel(LineInfo const& line)
{
    UI::Rect const clip = clipOf(line);
    walkLine(line.from.x, line.from.y, line.to.x, line.to.y,
             [&](int x, int y, int n)
             {
                 if (static_cast<std::size_t>(n) < line.colors.size() &&
                     clip.Contains(UI::Point(x, y)))
                     line.bits[static_cast<long>(y) * line.stride + x] = line.colors[n];
             });
}

/// One Gupta-Sproull pixel at scaled distance `d` (1 at two thirds of a pixel from the line).
void plotAntiAliased(LineInfo const& line, UI::Rect const& clip, int x, int y, float d)
{
    if (!clip.Contains(UI::Point(x, y)))
        return;
    unsigned int& p = line.bits[static_cast<long>(y) * line.stride + x];
    if (line.mode == LineInfo::AntiAliasedMask)
    {
        float const level = 255.0f * d * d;
        unsigned int const v =
            level <= 0.0f ? 0u : (level >= 255.0f ? 255u : static_cast<unsigned int>(level));
        p = 0xFF000000 | (v << 16) | (v << 8) | v;
        return;
    }
    float const falloff = static_cast<float>(line.alpha) * d * d;
    // Far from the line the falloff only grows; cap it before it could overflow an int.
    int const v = (falloff > 1.0e6f ? 1000000 : static_cast<int>(falloff)) + 255 - line.alpha;
    if (v < 0)
    {
        p = line.color;
        return;
    }
    unsigned int const w = v >= 256 ? 0u : 255u - static_cast<unsigned int>(v);
    p = detail::ComposePixel(line.color, p, w);
}

void drawAntiAliased(LineInfo const& line)
{
    UI::Rect const clip = clipOf(line);
    int const dx = std::abs(line.to.x - line.from.x);
    int const dy = std::abs(line.to.y - line.from.y);
    int const stepX = line.to.x >= line.from.x ? 1 : -1;
    int const stepY = line.to.y >= line.from.y ? 1 : -1;
    bool const xMajor = dx >= dy;
    int const major = xMajor ? dx : dy;
    int const minor = xMajor ? dy : dx;

    float const length = std::sqrt(static_cast<float>(dx) * dx + static_cast<float>(dy) * dy);
    float const invDenominator = length < 0.001f ? 499.99997f : 1.0f / (2.0f * length);
    float const twoMajorInvDenominator = 2.0f * static_cast<float>(major) * invDenominator;
    float const twoThirds = 0.6666667f;

    // Side pixels are one step across the minor axis.
    int const sideX = xMajor ? 0 : 1;
    int const sideY = xMajor ? 1 : 0;
    auto plotThree = [&](int x, int y, float twoVMajor)
    {
        float const centre = twoVMajor * invDenominator;
        plotAntiAliased(line, clip, x, y, std::fabs(centre) / twoThirds);
        plotAntiAliased(line, clip, x + sideX, y + sideY,
                        std::fabs(twoMajorInvDenominator - centre) / twoThirds);
        plotAntiAliased(line, clip, x - sideX, y - sideY,
                        std::fabs(twoMajorInvDenominator + centre) / twoThirds);
    };

    // The midpoint walk along the major axis; 2 * v * major tracks the signed distance of the
    // pixel centre from the line, the side toward which the minor axis steps being positive.
    int decision = 2 * minor - major;
    int const incrementStraight = 2 * minor;
    int const incrementDiagonal = 2 * (minor - major);
    int x = line.from.x;
    int y = line.from.y;
    // The side pixels are taken in the direction of travel along the minor axis.
    int const minorSign = xMajor ? stepY : stepX;
    auto plotOriented = [&](int px, int py, float twoVMajor)
    { plotThree(px, py, twoVMajor * static_cast<float>(minorSign)); };
    plotOriented(x, y, 0.0f);
    for (int n = 0; n < major; ++n)
    {
        int twoVMajor;
        if (decision < 0)
        {
            twoVMajor = decision + major;
            decision += incrementStraight;
        }
        else
        {
            twoVMajor = decision - major;
            decision += incrementDiagonal;
            stepAlong(!xMajor, x, y, stepX, stepY);
        }
        stepAlong(xMajor, x, y, stepX, stepY);
        plotOriented(x, y, static_cast<float>(twoVMajor));
    }
}

} // namespace

void DrawLine(LineInfo const& line)
{
    if (!line.bits)
        return;
    switch (line.mode)
    {
    case LineInfo::Solid:
        drawSolid(line);
        break;
    case LineInfo::PerPixelColors:
        drawPerPixel(line);
        break;
    case LineInfo::AntiAliased:
    case LineInfo::AntiAliasedMask:
        drawAntiAliased(line);
        break;
    }
}

namespace
{

LineInfo makeLine(LineInfo::DrawMode mode, unsigned int* bits, int stride, UI::Rect const& clip,
                  int x0, int y0, int x1, int y1, unsigned int color, unsigned char alpha)
{
    LineInfo line;
    line.from = UI::Point(x0, y0);
    line.to = UI::Point(x1, y1);
    line.mode = mode;
    line.color = color;
    line.alpha = alpha;
    line.bits = bits;
    line.stride = stride;
    line.clipLeft = clip.left;
    line.clipTop = clip.top;
    line.clipRight = clip.right;
    line.clipBottom = clip.bottom;
    return line;
}

} // namespace

void DrawLine(unsigned int* bits, int stride, UI::Rect const& clip, int x0, int y0, int x1, int y1,
              unsigned int color, unsigned char alpha)
{
    DrawLine(makeLine(LineInfo::Solid, bits, stride, clip, x0, y0, x1, y1, color, alpha));
}

void DrawAntiAliasedLine(unsigned int* bits, int stride, UI::Rect const& clip, int x0, int y0,
                         int x1, int y1, unsigned int color, unsigned char alpha)
{
    DrawLine(makeLine(LineInfo::AntiAliased, bits, stride, clip, x0, y0, x1, y1, color, alpha));
}

void DrawAntiAliasedMask(unsigned int* bits, int stride, UI::Rect const& clip, int x0, int y0,
                         int x1, int y1, unsigned int color, unsigned char alpha)
{
    DrawLine(makeLine(LineInfo::AntiAliasedMask, bits, stride, clip, x0, y0, x1, y1, color, alpha));
}

} // namespace UI
