#pragma once

#include "Canvas/UI/Rect.h"

namespace UI
{

// Box fillers over 32-bit pixels with row strides in pixels. Each works on `box` intersected
// with `clip` (bitmap coordinates); the caller makes sure `clip` lies inside the bitmap.

/// Fills with `color` as given at alpha 255. Below 255 each of red, green and blue is kept at
/// (256 - alpha) / 255 (255/255 for alpha 0 and 1) and the color at alpha / 255 is added,
/// channels saturating; the alpha byte becomes 255.
void DrawSolidBox(unsigned int* bits, int stride, UI::Rect const& clip, UI::Rect const& box,
                  unsigned int color, unsigned char alpha);
/// Stores `color` without any blending.
void FillBox(unsigned int* bits, int stride, UI::Rect const& clip, UI::Rect const& box,
             unsigned int color);
/// The one-pixel border of `box`, clipped: plain stores above alpha 254, otherwise the blend
/// kernel, each corner written once.
void DrawOutlineBox(unsigned int* bits, int stride, UI::Rect const& clip, UI::Rect const& box,
                    unsigned int color, unsigned char alpha);
/// A box with anti-aliased corners of `radius`. Not `filled`: only the corners and a band as
/// wide as the radius along each side are drawn; the middle stays untouched.
void DrawRoundedBox(unsigned int* bits, int stride, UI::Rect const& clip, UI::Rect const& box,
                    unsigned int radius, bool filled, unsigned int color, unsigned char alpha);
/// Straight sides `thickness` thick, corners rounded by a one-pixel anti-aliased circle.
void DrawRoundedBoxOutline(unsigned int* bits, int stride, UI::Rect const& clip,
                           UI::Rect const& box, unsigned int radius, unsigned int thickness,
                           unsigned int color, unsigned char alpha);

} // namespace UI
