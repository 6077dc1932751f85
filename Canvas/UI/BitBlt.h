#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

namespace UI
{
class DIBits;
namespace Native
{
class DIBSection;
}

// Raw blits over 32-bit pixels 0xAARRGGBB with row strides in pixels. The caller clips: the
// rectangles must lie inside both bitmaps (the wrappers below do this). Blits never allocate.
// All of them compose into an opaque frame bitmap unless said otherwise.

/// Copies or blends `srcRect` of `src` to `dstPos` in `dst`.
/// - alpha 255, no alpha channel: rows copied as they stand.
/// - alpha 255 with alpha channel: each source pixel weighs by its own alpha; alpha 255 copies
///   the pixel (alpha byte included), alpha 0 keeps the destination.
/// - alpha below 255: the weight is the source alpha scaled by `alpha` whatever `hasAlpha`
///   says, so opaque sources must carry 0xFF in their top byte.
/// The source columns are clamped to 0..srcStride-1 and the destination to its stride, so a bad
/// rectangle cannot run off a row.
void BitBlt(bool hasAlpha, unsigned int const* src, int srcStride, UI::Rect const& srcRect,
            unsigned int* dst, int dstStride, UI::Point const& dstPos, unsigned char alpha);

/// As `BitBlt`, for a backing that keeps stroke coverage in its alpha byte: with alpha 255 and
/// an alpha channel, coverage of 128 or more takes the source color, lower coverage blends at
/// twice its weight, and the result's alpha byte is the larger of both coverages.
void BitBltCurve(bool hasAlpha, unsigned int const* src, int srcStride, UI::Rect const& srcRect,
                 unsigned int* dst, int dstStride, UI::Point const& dstPos, unsigned char alpha);

/// Note the reversed test: alpha 0 selects the plain source. With alpha 0 and an alpha channel
/// the blend adds triangular noise from a generator seeded afresh with 1 on every call, so the
/// pattern repeats exactly from paint to paint. Any other alpha blends as `BitBlt` does below
/// 255, without noise.
void BitBltDithered(bool hasAlpha, unsigned int const* src, int srcStride, UI::Rect const& srcRect,
                    unsigned int* dst, int dstStride, UI::Point const& dstPos, unsigned char alpha);

/// The alpha-keeping composite, for targets with their own transparency: source over
/// destination, both not premultiplied, the result's alpha being the union of both coverages.
void BitBlt(unsigned int const* src, int srcStride, UI::Rect const& srcRect, unsigned int* dst,
            int dstStride, UI::Point const& dstPos);

/// Box-filter resampling of `srcRect` into `dstRect` (shrinking or enlarging). Equal sizes copy.
/// The rectangles are clamped to their strides; an empty result does nothing.
void ScaleBlt(unsigned int const* src, int srcStride, UI::Rect const& srcRect, unsigned int* dst,
              int dstStride, UI::Rect const& dstRect);

// Wrappers over the buffer types. Each clips (source to its bitmap, destination to its bitmap
// and to `clip` when present, the source following the destination) and then runs the raw blit.
// Null buffers and empty results draw nothing.

/// Bits onto a section; the alpha channel is taken from the bits.
void BitBlt(UI::DIBits* src, UI::Rect const& srcRect, UI::Native::DIBSection* dst,
            UI::Point const& dstPos, unsigned char alpha,
            checked_value<UI::Rect> const& clip = checked_value<UI::Rect>());
void BitBlt(boost::shared_ptr<UI::DIBits> const& src, UI::Rect const& srcRect,
            boost::shared_ptr<UI::Native::DIBSection> const& dst, UI::Point const& dstPos,
            unsigned char alpha, checked_value<UI::Rect> const& clip = checked_value<UI::Rect>());
/// Bits onto bits; the alpha channel is taken from the source.
void BitBlt(boost::shared_ptr<UI::DIBits> const& src, UI::Rect const& srcRect,
            boost::shared_ptr<UI::DIBits> const& dst, UI::Point const& dstPos, unsigned char alpha,
            checked_value<UI::Rect> const& clip = checked_value<UI::Rect>());
/// A section onto bits; `hasAlpha` says whether the section's alpha bytes count.
void BitBlt(boost::shared_ptr<UI::Native::DIBSection> const& src, UI::Rect const& srcRect,
            boost::shared_ptr<UI::DIBits> const& dst, UI::Point const& dstPos, bool hasAlpha,
            unsigned char alpha, checked_value<UI::Rect> const& clip = checked_value<UI::Rect>());
/// `srcSize` pixels from `srcPos` of one section onto another (which may be the same one).
void BitBlt(UI::Native::DIBSection const* src, UI::Point const& srcPos, UI::Size const& srcSize,
            boost::shared_ptr<UI::Native::DIBSection> const& dst, UI::Point const& dstPos,
            bool hasAlpha, unsigned char alpha,
            checked_value<UI::Rect> const& clip = checked_value<UI::Rect>());
void BitBltCurve(UI::Native::DIBSection const* src, UI::Point const& srcPos,
                 UI::Size const& srcSize, boost::shared_ptr<UI::Native::DIBSection> const& dst,
                 UI::Point const& dstPos, bool hasAlpha, unsigned char alpha,
                 checked_value<UI::Rect> const& clip = checked_value<UI::Rect>());
/// Bits onto a section with the dithered blend; the alpha channel is taken from the bits.
void BitBltDithered(UI::DIBits* src, UI::Rect const& srcRect, UI::Native::DIBSection* dst,
                    UI::Point const& dstPos, unsigned char alpha,
                    checked_value<UI::Rect> const& clip = checked_value<UI::Rect>());

/// Resamples `srcRect` of `src` into `dstRect` of `dst`, each first intersected with its image;
/// the destination takes the source's alpha flag. Null pointers or an empty rectangle: no-op.
void ScaleBlt(UI::DIBits const* src, UI::Rect const& srcRect, UI::DIBits* dst,
              UI::Rect const& dstRect);

/// The clip step of the wrappers, exposed for the draw contexts: `srcRect` is cut to
/// `srcSize`, the destination (a source-sized rectangle at `dstPos`) to `dstSize` and `clip`,
/// and the source follows the destination. False when nothing is left to draw.
bool ClipBlit(UI::Rect& srcRect, UI::Rect& dstRect, UI::Point const& dstPos,
              UI::Size const& srcSize, UI::Size const& dstSize,
              checked_value<UI::Rect> const& clip);

} // namespace UI
