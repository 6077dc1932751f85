#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_array.hpp>
#include <boost/shared_ptr.hpp>

namespace UI
{

/// An image or offscreen source: 32-bit pixels 0xAARRGGBB, not premultiplied, rows `stride`
/// pixels apart. Copying the object shares the pixels; `Copy` duplicates them. A default one has
/// no bits, stride 0, width and height -1 and no alpha.
class DIBits
{
public:
    DIBits() = default;
    /// Adopts `pixels`, which must hold at least stride times height pixels.
    DIBits(boost::shared_array<unsigned int> const& pixels, int stride, int width, int height,
           bool hasAlpha);

    unsigned int* GetPixels() const { return bits.get(); }
    boost::shared_array<unsigned int> const& GetSharedPixels() const { return bits; }
    int GetStride() const { return stride; }
    int GetWidth() const { return width; }
    int GetHeight() const { return height; }
    UI::Size GetSize() const { return UI::Size(width, height); }
    /// The whole image as a rectangle from (0, 0).
    UI::Rect GetRect() const { return UI::Rect(0, width - 1, 0, height - 1); }
    bool HasAlpha() const { return hasAlpha; }
    void SetHasAlpha(bool value) { hasAlpha = value; }
    bool IsValid() const { return bits && width > 0 && height > 0; }

    /// A deep copy: new pixels (stride times height, stride kept), same size and alpha flag.
    DIBits Copy() const;
    boost::shared_ptr<DIBits> CopyToPtr() const;
    /// The part of the image inside `rect`, which is first intersected with the image; the copy
    /// has stride equal to its width and keeps the alpha flag. Outside the image: a default
    /// (empty) `DIBits`, not an error.
    DIBits CopyRect(UI::Rect const& rect) const;
    boost::shared_ptr<DIBits> CopyRectToPtr(UI::Rect const& rect) const;
    /// A copy in which every pixel takes `color`'s red, green and blue, keeping its own alpha,
    /// scaled by `color`'s alpha when `useColorAlpha` is set.
    DIBits ColorOverlay(unsigned int color, bool useColorAlpha) const;
    /// `ColorOverlay` in place, over width times height pixels read as one run (the stride is
    /// not regarded, so padding-free images are the intended use).
    void ApplyColorOverlay(unsigned int color, bool useColorAlpha);
    /// Copies width times height pixels in from `pixels` (one run, no stride); null is a no-op.
    void SetPixels(unsigned int const* pixels);

private:
    boost::shared_array<unsigned int> bits;
    int stride = 0;
    int width = -1;
    int height = -1;
    bool hasAlpha = false;
};

/// New bits of `size`, stride equal to the width, no alpha, filled with `fill` when given and
/// otherwise left uninitialised. A negative or zero size gives a default `DIBits`.
boost::shared_ptr<DIBits>
CreateDIBits(UI::Size const& size,
             checked_value<unsigned int> fill = checked_value<unsigned int>());

} // namespace UI
