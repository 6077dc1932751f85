#pragma once

#include <cmath>

namespace UI
{
namespace detail
{

/// The alpha-keeping composite of one pixel: `s` over `d`, neither premultiplied, for targets
/// that keep their own transparency (a text bitmap starts fully transparent). The result's alpha
/// is the union of both coverages.
inline unsigned int compositeKeepingAlpha(unsigned int s, unsigned int d)
{
    unsigned int const a = s >> 24;
    if (a == 255)
        return s;
    if (a == 0)
        return d;
    unsigned int const da = d >> 24;
    float const k1 = 0.0039215684f;
    unsigned int const t =
        static_cast<unsigned int>(std::rint(static_cast<float>(da * (255 - a)) * k1)) & 255;
    double const q = 255.0 / static_cast<double>(t + a);
    unsigned int const wd = static_cast<unsigned int>(std::rint(t * q)) & 255;
    unsigned int const ws = static_cast<unsigned int>(std::rint(a * q)) & 255;
    unsigned int const rb =
        (((s & 0xFF00FF) * ws + (d & 0xFF00FF) * wd + 0x800080) >> 8) & 0xFF00FF;
    unsigned int const g = (((s & 0xFF00) * ws + (d & 0xFF00) * wd + 0x8000) >> 8) & 0xFF00;
    unsigned int const outAlpha = static_cast<unsigned int>(std::rint(
                                      255.0f - static_cast<float>((255 - da) * (255 - a)) * k1)) &
                                  255;
    return (outAlpha << 24) | g | rb;
}

/// Writes `color` at weight `a`: a plain store from 255 up, nothing at 0 or below, otherwise
/// the alpha-keeping composite.
inline void blendTextPixel(unsigned int& pixel, unsigned int color, int a)
{
    if (a >= 255)
        pixel = color;
    else if (a > 0)
        pixel =
            compositeKeepingAlpha((static_cast<unsigned int>(a) << 24) | (color & 0xFFFFFF), pixel);
}

/// The weight of one text pixel: grey coverage `g` and mono coverage `m` (0 or 255) mixed by
/// `mix`, bent by `gamma` and scaled by `alpha`.
inline int textPixelWeight(int g, int m, float mix, double gamma, unsigned char alpha)
{
    float const v = (static_cast<float>(g - m) * mix + static_cast<float>(m)) * 0.003921569f;
    double const c = std::rint(std::pow(static_cast<double>(v), gamma) * 255.0);
    return static_cast<int>(std::rint(c * alpha / 255.0));
}

} // namespace detail
} // namespace UI
