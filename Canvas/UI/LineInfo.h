#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/checked_value.h"

namespace UI
{

/// One line for `UI::DrawLine`: its end points, how to draw it and where.
struct LineInfo
{
    enum DrawMode : int
    {
        Solid = 0,
        AntiAliased = 1,
        /// Writes grey coverage pixels (black on the line, white away from it) instead of color.
        AntiAliasedMask = 2,
        /// A solid walk whose nth pixel takes the nth entry of `colors`.
        PerPixelColors = 3,
    };

    UI::Point from;
    UI::Point to;
    DrawMode mode = Solid;
    unsigned int color = 0xFF000000;
    unsigned char alpha = 255;
    /// Per-pixel colors; pixels past the end of the list are not drawn.
    array_ref<unsigned int const> colors;
    unsigned int* bits = nullptr;
    int stride = 0;
    /// The clip in bitmap coordinates, inclusive; it must lie inside the bitmap.
    int clipLeft = 0;
    int clipTop = 0;
    int clipRight = -1;
    int clipBottom = -1;
};

/// Draws the line from `from` to `to`, both ends included. Pixels outside the clip are skipped.
void DrawLine(LineInfo const& line);
/// Solid line; purely horizontal or vertical lines are one `DrawSolidBox`.
void DrawLine(unsigned int* bits, int stride, UI::Rect const& clip, int x0, int y0, int x1, int y1,
              unsigned int color, unsigned char alpha);
/// Anti-aliased line, three pixels across at each step.
void DrawAntiAliasedLine(unsigned int* bits, int stride, UI::Rect const& clip, int x0, int y0,
                         int x1, int y1, unsigned int color, unsigned char alpha);
/// The coverage mask of an anti-aliased line as grey pixels.
void DrawAntiAliasedMask(unsigned int* bits, int stride, UI::Rect const& clip, int x0, int y0,
                         int x1, int y1, unsigned int color, unsigned char alpha);

} // namespace UI
