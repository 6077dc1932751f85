#pragma once

#include <cmath>
#include <vector>

namespace UI
{
namespace detail
{

/// The weights of the alpha-keeping composite for a source alpha `a` over a destination alpha
/// `da`: source weight, destination weight and resulting alpha.
struct CompositeWeights
{
    unsigned char source;
    unsigned char destination;
    unsigned char alpha;
};

inline CompositeWeights computeCompositeWeights(unsigned int a, unsigned int da)
{
    float const k1 = 0.0039215684f;
    unsigned int const t =
        static_cast<unsigned int>(std::rint(static_cast<float>(da * (255 - a)) * k1)) & 255;
    double const q = 255.0 / static_cast<double>(t + a);
    CompositeWeights w;
    w.destination = static_cast<unsigned char>(static_cast<unsigned int>(std::rint(t * q)) & 255);
    w.source = static_cast<unsigned char>(static_cast<unsigned int>(std::rint(a * q)) & 255);
    w.alpha =
        static_cast<unsigned char>(static_cast<unsigned int>(std::rint(
                                       255.0f - static_cast<float>((255 - da) * (255 - a)) * k1)) &
                                   255);
    return w;
}

/// The weights for every pair of alphas, worked out once: the per-pixel arithmetic of the
/// composite then stays in integers.
inline CompositeWeights const* compositeWeightTable()
{
    static std::vector<CompositeWeights> const table = []
    {
        std::vector<CompositeWeights> weights(256 * 256);
        for (unsigned int a = 1; a < 255; ++a)
            for (unsigned int da = 0; da < 256; ++da)
                weights[a * 256 + da] = computeCompositeWeights(a, da);
        return weights;
    }();
    return table.data();
}

/// The alpha-keeping composite of one pixel: `s` over `d`, neither premultiplied, for targets
/// that keep their own transparency (a text bitmap starts fully transparent). The result's alpha
/// is the union of both coverages.
/// `table` is `compositeWeightTable()`, fetched once by the caller.
inline unsigned int compositeKeepingAlpha(unsigned int s, unsigned int d,
                                          CompositeWeights const* table)
{
    unsigned int const a = s >> 24;
    if (a == 255)
        return s;
    if (a == 0)
        return d;
    unsigned int const da = d >> 24;
    if (da == 255)
    {
        // Over an opaque pixel the weights are exactly a and 255 - a and the result is opaque
        // (the table says so for every a); the frame's bitmap is always opaque.
        unsigned int const rb =
            (((s & 0xFF00FF) * a + (d & 0xFF00FF) * (255 - a) + 0x800080) >> 8) & 0xFF00FF;
        unsigned int const g =
            (((s & 0xFF00) * a + (d & 0xFF00) * (255 - a) + 0x8000) >> 8) & 0xFF00;
        return 0xFF000000u | g | rb;
    }
    CompositeWeights const w = table[a * 256 + da];
    unsigned int const rb =
        (((s & 0xFF00FF) * w.source + (d & 0xFF00FF) * w.destination + 0x800080) >> 8) & 0xFF00FF;
    unsigned int const g =
        (((s & 0xFF00) * w.source + (d & 0xFF00) * w.destination + 0x8000) >> 8) & 0xFF00;
    return (static_cast<unsigned int>(w.alpha) << 24) | g | rb;
}

/// Writes `color` at weight `a`: a plain store from 255 up, nothing at 0 or below, otherwise
/// the alpha-keeping composite. `table` is `compositeWeightTable()`, fetched once by the caller.
inline void blendTextPixel(unsigned int& pixel, unsigned int color, int a,
                           CompositeWeights const* table)
{
    if (a >= 255)
        pixel = color;
    else if (a > 0)
        pixel = compositeKeepingAlpha((static_cast<unsigned int>(a) << 24) | (color & 0xFFFFFF),
                                      pixel, table);
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
