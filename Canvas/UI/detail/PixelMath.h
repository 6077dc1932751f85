#pragma once

#include <cmath>

// Per-pixel arithmetic shared by the scalar reference and by the scalar heads and tails of the
// vector paths. Everything here has internal linkage on purpose: this header is compiled with
// different instruction sets in different files, and one shared inline copy picked by the linker
// could carry AVX2 code into callers that run on the baseline.

namespace UI
{
namespace detail
{
namespace
{

/// The blend kernel: `s` over `d` at weight `a` (1 to 254); the result is opaque.
inline unsigned int BlendPixel(unsigned int s, unsigned int d, unsigned int a)
{
    unsigned int i = a ^ 255;
    unsigned int rb = (((s & 0xFF00FF) * a + (d & 0xFF00FF) * i + 0x800080) >> 8) & 0xFF00FF;
    unsigned int g = (((s & 0xFF00) * a + (d & 0xFF00) * i + 0x8000) >> 8) & 0xFF00;
    return 0xFF000000 | g | rb;
}

/// `s` over `d` at weight `a` (0 to 255): 255 takes `s` whole, 0 keeps `d`.
inline unsigned int ComposePixel(unsigned int s, unsigned int d, unsigned int a)
{
    if (a == 255)
        return s;
    if (a == 0)
        return d;
    return BlendPixel(s, d, a);
}

/// The source alpha scaled by a constant alpha, rounded to nearest even.
inline unsigned int ScaledWeight(unsigned int s, unsigned int alpha)
{
    return static_cast<unsigned int>(
        std::lrintf(static_cast<float>(s >> 24) * 0.00392157f * static_cast<float>(alpha)));
}

/// One pixel of the coverage-keeping curve blit at alpha 255.
inline unsigned int CurvePixel(unsigned int s, unsigned int d)
{
    unsigned int a = s >> 24;
    if (a == 0)
        return d;
    unsigned int color = a >= 128 ? s : BlendPixel(s, d, a * 2);
    unsigned int da = d >> 24;
    unsigned int outAlpha = da > a ? da : a;
    return (outAlpha << 24) | (color & 0xFFFFFF);
}

/// One pixel of a translucent solid box: each color channel kept at keep / 255 (integer
/// division), then the premixed color added with saturation; opaque.
inline unsigned int SolidBoxPixel(unsigned int p, unsigned int keep, unsigned int add)
{
    unsigned int r = ((p >> 16) & 255) * keep / 255 + ((add >> 16) & 255);
    unsigned int g = ((p >> 8) & 255) * keep / 255 + ((add >> 8) & 255);
    unsigned int b = (p & 255) * keep / 255 + (add & 255);
    r = r > 255 ? 255 : r;
    g = g > 255 ? 255 : g;
    b = b > 255 ? 255 : b;
    return 0xFF000000 | (r << 16) | (g << 8) | b;
}

/// The average of `rows` source rows (from `src`, `srcStride` apart) by `cols` columns, each
/// channel summed, multiplied by 1/count and rounded to nearest even. One pixel is taken as is.
inline unsigned int AveragePixels(unsigned int const* src, int srcStride, int rows, int cols)
{
    if (rows == 1 && cols == 1)
        return *src;
    unsigned long long sum[4] = {0, 0, 0, 0};
    for (int y = 0; y < rows; ++y)
    {
        unsigned int const* p = src + static_cast<long>(y) * srcStride;
        for (int x = 0; x < cols; ++x)
        {
            sum[0] += p[x] & 255;
            sum[1] += (p[x] >> 8) & 255;
            sum[2] += (p[x] >> 16) & 255;
            sum[3] += p[x] >> 24;
        }
    }
    float scale = 1.0f / static_cast<float>(rows * cols);
    unsigned int out = 0;
    for (int c = 0; c < 4; ++c)
    {
        float v = static_cast<float>(sum[c]) * scale;
        out |= (static_cast<unsigned int>(std::lrintf(v)) & 255) << (8 * c);
    }
    return out;
}

} // namespace
} // namespace detail
} // namespace UI
