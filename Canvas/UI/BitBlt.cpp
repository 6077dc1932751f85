// Blits between raw pixel buffers and their wrappers over DIBits and DIBSection.
//
// Sections:
//   - column clamping shared by the raw blits
//   - BitBlt, BitBltCurve, BitBltDithered
//   - the alpha-keeping composite
//   - ScaleBlt
//   - the clip step and the wrappers

#include "Canvas/UI/BitBlt.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/detail/BlitRows.h"
#include "Canvas/UI/detail/DitherRandom.h"
#include "Canvas/UI/detail/KeepAlphaPixel.h"
#include "Canvas/UI/detail/PixelMath.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace UI
{

// ---------------------------------------------------------------------------------------------
// Column clamping
// ---------------------------------------------------------------------------------------------

namespace
{

/// Moves a negative start `edge` up to 0 and `other`, its partner on the other bitmap, along
/// with it.
void clampToZero(int& edge, int& other)
{
    if (edge >= 0)
        return;
    other -= edge;
    edge = 0;
}

/// The rows and columns a raw blit may touch: the source columns inside 0..srcStride-1, the
/// destination columns inside 0..dstStride-1, no negative rows. False when nothing is left.
bool clampToStrides(UI::Rect& srcRect, UI::Point& dstPos, int srcStride, int dstStride)
{
    clampToZero(srcRect.left, dstPos.x);
    clampToZero(srcRect.top, dstPos.y);
    srcRect.right = std::min(srcRect.right, srcStride - 1);
    clampToZero(dstPos.x, srcRect.left);
    clampToZero(dstPos.y, srcRect.top);
    srcRect.right = std::min(srcRect.right, srcRect.left + (dstStride - dstPos.x) - 1);
    return !srcRect.IsEmpty();
}

/// Copies rows as they stand. The source and destination may be the same bitmap, as when a
/// view scrolls: overlapping rows are then walked from the far end.
void copyRows(unsigned int const* src, int srcStride, unsigned int* dst, int dstStride, int width,
              int height)
{
    std::size_t const bytes = static_cast<std::size_t>(width) * sizeof(unsigned int);
    auto const from = reinterpret_cast<std::uintptr_t>(src);
    auto const to = reinterpret_cast<std::uintptr_t>(dst);
    if (to > from &&
        to < reinterpret_cast<std::uintptr_t>(src + static_cast<long>(height) * srcStride))
    {
        for (int y = height - 1; y >= 0; --y)
            std::memmove(dst + static_cast<long>(y) * dstStride,
                         src + static_cast<long>(y) * srcStride, bytes);
        return;
    }
    for (int y = 0; y < height; ++y)
        std::memmove(dst + static_cast<long>(y) * dstStride, src + static_cast<long>(y) * srcStride,
                     bytes);
}

enum class BlitKind
{
    Copy,
    PixelAlpha,
    Scaled,
    Curve,
    /// The scalar alpha-keeping composite, for targets with their own alpha.
    KeepAlpha,
};

void runRows(BlitKind kind, unsigned int const* src, int srcStride, UI::Rect const& srcRect,
             unsigned int* dst, int dstStride, UI::Point const& dstPos, unsigned char alpha)
{
    UI::Rect s = srcRect;
    UI::Point d = dstPos;
    if (!src || !dst || !clampToStrides(s, d, srcStride, dstStride))
        return;
    unsigned int const* from = src + static_cast<long>(s.top) * srcStride + s.left;
    unsigned int* to = dst + static_cast<long>(d.y) * dstStride + d.x;
    int const width = s.Width();
    int const height = s.Height();
    if (kind == BlitKind::Copy)
    {
        copyRows(from, srcStride, to, dstStride, width, height);
        return;
    }
    detail::BlitRowKernels const& kernels = detail::GetBlitRowKernels();
    for (int y = 0; y < height; ++y, from += srcStride, to += dstStride)
    {
        switch (kind)
        {
        case BlitKind::PixelAlpha:
            kernels.blendPixelAlpha(from, to, width);
            break;
        case BlitKind::Scaled:
            kernels.blendScaled(from, to, width, alpha);
            break;
        case BlitKind::Curve:
            kernels.curve(from, to, width);
            break;
        case BlitKind::KeepAlpha:
            for (int x = 0; x < width; ++x)
                to[x] = detail::KeepAlphaPixel(from[x], to[x]);
            break;
        case BlitKind::Copy:
            break;
        }
    }
}

} // namespace

// ---------------------------------------------------------------------------------------------
// BitBlt, BitBltCurve, BitBltDithered
// ---------------------------------------------------------------------------------------------

void BitBlt(bool hasAlpha, unsigned int const* src, int srcStride, UI::Rect const& srcRect,
            unsigned int* dst, int dstStride, UI::Point const& dstPos, unsigned char alpha)
{
    BlitKind kind =
        alpha < 255 ? BlitKind::Scaled : (hasAlpha ? BlitKind::PixelAlpha : BlitKind::Copy);
    runRows(kind, src, srcStride, srcRect, dst, dstStride, dstPos, alpha);
}

void BitBltCurve(bool hasAlpha, unsigned int const* src, int srcStride, UI::Rect const& srcRect,
                 unsigned int* dst, int dstStride, UI::Point const& dstPos, unsigned char alpha)
{
    BlitKind kind = alpha < 255 ? BlitKind::Scaled : (hasAlpha ? BlitKind::Curve : BlitKind::Copy);
    runRows(kind, src, srcStride, srcRect, dst, dstStride, dstPos, alpha);
}

namespace
{

/// 1 / 32767 as the generator's float scale holds it.
float const kNoiseScale = 1.0f / 32767.0f;

/// The blend kernel with noise `t` (-128 to 127) added below the 8-bit result of every channel.
unsigned int ditherPixel(unsigned int s, unsigned int d, unsigned int a, int t)
{
    unsigned int const i = a ^ 255;
    // Unsigned arithmetic wraps exactly as the signed sum would; the rounding constant of each
    // channel (128) outweighs the most negative noise, so no channel borrows from its neighbour.
    unsigned int const noise = static_cast<unsigned int>(t);
    unsigned int rb =
        (((s & 0xFF00FF) * a + (d & 0xFF00FF) * i + (noise << 16) + noise + 0x800080) >> 8) &
        0xFF00FF;
    unsigned int g = (((s & 0xFF00) * a + (d & 0xFF00) * i + (noise << 8) + 0x8000) >> 8) & 0xFF00;
    return 0xFF000000 | g | rb;
}

void ditherRows(unsigned int const* src, int srcStride, int width, int height, unsigned int* dst,
                int dstStride)
{
    // Seeded afresh with 1 on every call: the noise must not shimmer from paint to paint.
    detail::DitherRandom random(1);
    for (int y = 0; y < height; ++y, src += srcStride, dst += dstStride)
    {
        for (int x = 0; x < width; ++x)
        {
            unsigned int const s = src[x];
            unsigned int const a = s >> 24;
            if (a == 255)
                dst[x] = s;
            else if (a != 0)
            {
                int const p = static_cast<int>(random.GetNext());
                int const q = static_cast<int>(random.GetNext());
                long const t = std::lrintf(static_cast<float>(p - q) * 128.0f * kNoiseScale);
                dst[x] = ditherPixel(s, dst[x], a, static_cast<signed char>(t));
            }
        }
    }
}

} // namespace

void BitBltDithered(bool hasAlpha, unsigned int const* src, int srcStride, UI::Rect const& srcRect,
                    unsigned int* dst, int dstStride, UI::Point const& dstPos, unsigned char alpha)
{
    // Here 0, not 255, selects the plain source.
    if (alpha != 0)
    {
        runRows(BlitKind::Scaled, src, srcStride, srcRect, dst, dstStride, dstPos, alpha);
        return;
    }
    if (!hasAlpha)
    {
        runRows(BlitKind::Copy, src, srcStride, srcRect, dst, dstStride, dstPos, 255);
        return;
    }
    UI::Rect s = srcRect;
    UI::Point d = dstPos;
    if (!src || !dst || !clampToStrides(s, d, srcStride, dstStride))
        return;
    ditherRows(src + static_cast<long>(s.top) * srcStride + s.left, srcStride, s.Width(),
               s.Height(), dst + static_cast<long>(d.y) * dstStride + d.x, dstStride);
}

// ---------------------------------------------------------------------------------------------
// The alpha-keeping composite
// ---------------------------------------------------------------------------------------------

namespace detail
{

// Scalar only: it serves the edge pixels of rounded boxes and targets with their own alpha.
unsigned int KeepAlphaPixel(unsigned int s, unsigned int d)
{
    unsigned int const a = s >> 24;
    if (a == 255)
        return s;
    if (a == 0)
        return d;
    unsigned int const da = d >> 24;
    float const k1 = 0.0039215684f;
    // The destination's share: its coverage where the source leaves it visible.
    unsigned int const t =
        static_cast<unsigned int>(std::lrintf(static_cast<float>(da * (255 - a)) * k1)) & 255;
    double const q = 255.0 / static_cast<double>(t + a);
    unsigned int const wd = static_cast<unsigned int>(std::lrint(t * q)) & 255;
    unsigned int const ws = static_cast<unsigned int>(std::lrint(a * q)) & 255;
    unsigned int const rb =
        (((s & 0xFF00FF) * ws + (d & 0xFF00FF) * wd + 0x800080) >> 8) & 0xFF00FF;
    unsigned int const g = (((s & 0xFF00) * ws + (d & 0xFF00) * wd + 0x8000) >> 8) & 0xFF00;
    unsigned int const outAlpha = static_cast<unsigned int>(std::lrint(
                                      255.0 - static_cast<float>((255 - da) * (255 - a)) * k1)) &
                                  255;
    return (outAlpha << 24) | g | rb;
}

} // namespace detail

void BitBlt(unsigned int const* src, int srcStride, UI::Rect const& srcRect, unsigned int* dst,
            int dstStride, UI::Point const& dstPos)
{
    runRows(BlitKind::KeepAlpha, src, srcStride, srcRect, dst, dstStride, dstPos, 255);
}

// ---------------------------------------------------------------------------------------------
// ScaleBlt
// ---------------------------------------------------------------------------------------------

namespace
{

/// The source span of destination row (or column) `r`: `start` and `count`, within 0..last.
void scaleSpan(int r, float step, int last, int& start, int& count)
{
    float const y0 = (static_cast<float>(r) - 0.5f) * step;
    float const y1 = y0 + step;
    int a = std::clamp(static_cast<int>(std::trunc(y0)), 0, last);
    int b = std::clamp(static_cast<int>(std::trunc(y1)), 0, last);
    if (a != b)
    {
        if ((y1 - static_cast<float>(b)) >= (static_cast<float>(b) - y0))
            ++a;
        else
            --b;
    }
    start = a;
    count = b - a + 1;
}

bool clampToStride(UI::Rect& rect, int stride)
{
    rect.left = std::max(rect.left, 0);
    rect.top = std::max(rect.top, 0);
    rect.right = std::min(rect.right, stride - 1);
    return !rect.IsEmpty();
}

/// Destination columns are resampled in chunks so that their spans fit on the stack: no blit
/// allocates.
int const kScaleChunk = 256;

} // namespace

void ScaleBlt(unsigned int const* src, int srcStride, UI::Rect const& srcRect, unsigned int* dst,
              int dstStride, UI::Rect const& dstRect)
{
    if (!src || !dst)
        return;
    if (srcRect.Width() == dstRect.Width() && srcRect.Height() == dstRect.Height())
    {
        BitBlt(false, src, srcStride, srcRect, dst, dstStride, dstRect.TopLeft(), 255);
        return;
    }
    UI::Rect s = srcRect;
    UI::Rect d = dstRect;
    if (!clampToStride(s, srcStride) || !clampToStride(d, dstStride))
        return;
    float const sx = static_cast<float>(s.Width()) / static_cast<float>(d.Width());
    float const sy = static_cast<float>(s.Height()) / static_cast<float>(d.Height());
    detail::BlitRowKernels const& kernels = detail::GetBlitRowKernels();
    int starts[kScaleChunk];
    int counts[kScaleChunk];
    for (int chunk = 0; chunk < d.Width(); chunk += kScaleChunk)
    {
        int const n = std::min(kScaleChunk, d.Width() - chunk);
        for (int c = 0; c < n; ++c)
            scaleSpan(chunk + c, sx, s.Width() - 1, starts[c], counts[c]);
        int previousStart = -1;
        int previousRows = 0;
        for (int r = 0; r < d.Height(); ++r)
        {
            int rowStart = 0;
            int rows = 0;
            scaleSpan(r, sy, s.Height() - 1, rowStart, rows);
            unsigned int* out = dst + static_cast<long>(d.top + r) * dstStride + d.left + chunk;
            // Enlarging repeats source rows: a row with the same span as the one above is the
            // same row.
            if (rowStart == previousStart && rows == previousRows)
                std::memcpy(out, out - dstStride,
                            static_cast<std::size_t>(n) * sizeof(unsigned int));
            else
                kernels.scaleRow(src + static_cast<long>(s.top + rowStart) * srcStride + s.left,
                                 srcStride, rows, detail::ScaleSpans{starts, counts}, n, out);
            previousStart = rowStart;
            previousRows = rows;
        }
    }
}

// ---------------------------------------------------------------------------------------------
// The clip step and the wrappers
// ---------------------------------------------------------------------------------------------

bool ClipBlit(UI::Rect& srcRect, UI::Rect& dstRect, UI::Point const& dstPos,
              UI::Size const& srcSize, UI::Size const& dstSize, checked_value<UI::Rect> const& clip)
{
    // 1. The source is cut to its bitmap; the destination follows.
    UI::Rect const source = srcRect & UI::Rect(UI::Point(0, 0), srcSize);
    dstRect = UI::Rect(
        UI::Point(dstPos.x + source.left - srcRect.left, dstPos.y + source.top - srcRect.top),
        source.GetSize());
    // 2. The destination is cut to its bitmap and to the clip.
    UI::Rect const before = dstRect;
    dstRect &= UI::Rect(UI::Point(0, 0), dstSize);
    if (clip.IsPresent())
        dstRect &= clip.Get();
    // 3. The source takes the destination's size and moves as far as it did.
    srcRect = UI::Rect(
        UI::Point(source.left + dstRect.left - before.left, source.top + dstRect.top - before.top),
        dstRect.GetSize());
    return !source.IsEmpty() && !dstRect.IsEmpty();
}

namespace
{

/// A bitmap as the wrappers see it.
struct Surface
{
    unsigned int* bits = nullptr;
    int stride = 0;
    UI::Size size;
};

Surface surfaceOf(UI::DIBits const* image)
{
    Surface s;
    if (image && image->GetPixels())
        s = Surface{image->GetPixels(), image->GetStride(), image->GetSize()};
    return s;
}

Surface surfaceOf(UI::Native::DIBSection const* section)
{
    Surface s;
    if (section && section->GetPixels())
        s = Surface{const_cast<unsigned int*>(section->GetPixels()), section->GetStride(),
                    section->GetSize()};
    return s;
}

using RawBlit = void (*)(bool, unsigned int const*, int, UI::Rect const&, unsigned int*, int,
                         UI::Point const&, unsigned char);

void clippedBlit(RawBlit blit, Surface const& src, UI::Rect const& srcRect, Surface const& dst,
                 UI::Point const& dstPos, bool hasAlpha, unsigned char alpha,
                 checked_value<UI::Rect> const& clip)
{
    if (!src.bits || !dst.bits)
        return;
    UI::Rect s = srcRect;
    UI::Rect d;
    if (!ClipBlit(s, d, dstPos, src.size, dst.size, clip))
        return;
    blit(hasAlpha, src.bits, src.stride, s, dst.bits, dst.stride, d.TopLeft(), alpha);
}

} // namespace

void BitBlt(UI::DIBits* src, UI::Rect const& srcRect, UI::Native::DIBSection* dst,
            UI::Point const& dstPos, unsigned char alpha, checked_value<UI::Rect> const& clip)
{
    if (src)
        clippedBlit(BitBlt, surfaceOf(src), srcRect, surfaceOf(dst), dstPos, src->HasAlpha(), alpha,
                    clip);
}

void BitBlt(boost::shared_ptr<UI::DIBits> const& src, UI::Rect const& srcRect,
            boost::shared_ptr<UI::Native::DIBSection> const& dst, UI::Point const& dstPos,
            unsigned char alpha, checked_value<UI::Rect> const& clip)
{
    BitBlt(src.get(), srcRect, dst.get(), dstPos, alpha, clip);
}

void BitBlt(boost::shared_ptr<UI::DIBits> const& src, UI::Rect const& srcRect,
            boost::shared_ptr<UI::DIBits> const& dst, UI::Point const& dstPos, unsigned char alpha,
            checked_value<UI::Rect> const& clip)
{
    if (src)
        clippedBlit(BitBlt, surfaceOf(src.get()), srcRect, surfaceOf(dst.get()), dstPos,
                    src->HasAlpha(), alpha, clip);
}

void BitBlt(boost::shared_ptr<UI::Native::DIBSection> const& src, UI::Rect const& srcRect,
            boost::shared_ptr<UI::DIBits> const& dst, UI::Point const& dstPos, bool hasAlpha,
            unsigned char alpha, checked_value<UI::Rect> const& clip)
{
    clippedBlit(BitBlt, surfaceOf(src.get()), srcRect, surfaceOf(dst.get()), dstPos, hasAlpha,
                alpha, clip);
}

void BitBlt(UI::Native::DIBSection const* src, UI::Point const& srcPos, UI::Size const& srcSize,
            boost::shared_ptr<UI::Native::DIBSection> const& dst, UI::Point const& dstPos,
            bool hasAlpha, unsigned char alpha, checked_value<UI::Rect> const& clip)
{
    clippedBlit(BitBlt, surfaceOf(src), UI::Rect(srcPos, srcSize), surfaceOf(dst.get()), dstPos,
                hasAlpha, alpha, clip);
}

void BitBltCurve(UI::Native::DIBSection const* src, UI::Point const& srcPos,
                 UI::Size const& srcSize, boost::shared_ptr<UI::Native::DIBSection> const& dst,
                 UI::Point const& dstPos, bool hasAlpha, unsigned char alpha,
                 checked_value<UI::Rect> const& clip)
{
    clippedBlit(BitBltCurve, surfaceOf(src), UI::Rect(srcPos, srcSize), surfaceOf(dst.get()),
                dstPos, hasAlpha, alpha, clip);
}

void BitBltDithered(UI::DIBits* src, UI::Rect const& srcRect, UI::Native::DIBSection* dst,
                    UI::Point const& dstPos, unsigned char alpha,
                    checked_value<UI::Rect> const& clip)
{
    if (src)
        clippedBlit(BitBltDithered, surfaceOf(src), srcRect, surfaceOf(dst), dstPos,
                    src->HasAlpha(), alpha, clip);
}

void ScaleBlt(UI::DIBits const* src, UI::Rect const& srcRect, UI::DIBits* dst,
              UI::Rect const& dstRect)
{
    if (!src || !dst)
        return;
    dst->SetHasAlpha(src->HasAlpha());
    UI::Rect const s = srcRect & src->GetRect();
    UI::Rect const d = dstRect & dst->GetRect();
    if (s.IsEmpty() || d.IsEmpty() || !src->GetPixels() || !dst->GetPixels())
        return;
    ScaleBlt(src->GetPixels(), src->GetStride(), s, dst->GetPixels(), dst->GetStride(), d);
}

} // namespace UI
