#pragma once

#include <cmath>
#include <cstring>
#include <vector>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

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

/// `blendTextPixel` along a row: pixel i takes `color` at `weights[i]`. The reference for
/// `blendTextRow`.
inline void blendTextRowScalar(unsigned int* row, unsigned char const* weights, int count,
                               unsigned int color, CompositeWeights const* table)
{
    for (int i = 0; i < count; ++i)
        if (weights[i] != 0)
            blendTextPixel(row[i], color, weights[i], table);
}

/// The same pixels as `blendTextRowScalar`, four at a time where the ground is opaque: the
/// common case of text over a painted window, whose arithmetic fits 16-bit lanes exactly.
inline void blendTextRow(unsigned int* row, unsigned char const* weights, int count,
                         unsigned int color, CompositeWeights const* table)
{
    int i = 0;
#ifdef __SSE2__
    __m128i const zero = _mm_setzero_si128();
    __m128i const opaque = _mm_set1_epi32(static_cast<int>(0xFF000000u));
    __m128i const full = _mm_set1_epi16(255);
    __m128i const half = _mm_set1_epi16(128);
    __m128i const colors = _mm_set1_epi32(static_cast<int>(color));
    __m128i const source = _mm_unpacklo_epi8(colors, zero);
    for (; i + 4 <= count; i += 4)
    {
        int quad;
        std::memcpy(&quad, weights + i, sizeof quad);
        if (quad == 0)
            continue;
        __m128i const ground = _mm_loadu_si128(reinterpret_cast<__m128i const*>(row + i));
        if (_mm_movemask_epi8(_mm_cmpeq_epi32(_mm_and_si128(ground, opaque), opaque)) != 0xFFFF)
        {
            blendTextRowScalar(row + i, weights + i, 4, color, table);
            continue;
        }
        // Each weight spread over the four bytes of its pixel, then widened to 16 bits.
        __m128i spread = _mm_cvtsi32_si128(quad);
        spread = _mm_unpacklo_epi8(spread, spread);
        spread = _mm_unpacklo_epi16(spread, spread);
        __m128i const weightLow = _mm_unpacklo_epi8(spread, zero);
        __m128i const weightHigh = _mm_unpackhi_epi8(spread, zero);
        // (color * a + ground * (255 - a) + 128) >> 8 per channel, as `compositeKeepingAlpha`
        // does over an opaque pixel; the largest sum, 65153, fits an unsigned lane.
        __m128i const low = _mm_srli_epi16(
            _mm_add_epi16(_mm_add_epi16(_mm_mullo_epi16(source, weightLow),
                                        _mm_mullo_epi16(_mm_unpacklo_epi8(ground, zero),
                                                        _mm_sub_epi16(full, weightLow))),
                          half),
            8);
        __m128i const high = _mm_srli_epi16(
            _mm_add_epi16(_mm_add_epi16(_mm_mullo_epi16(source, weightHigh),
                                        _mm_mullo_epi16(_mm_unpackhi_epi8(ground, zero),
                                                        _mm_sub_epi16(full, weightHigh))),
                          half),
            8);
        __m128i const blended = _mm_or_si128(_mm_packus_epi16(low, high), opaque);
        // Weight 255 stores the color as it is, weight 0 keeps the ground.
        __m128i const stored = _mm_cmpeq_epi32(spread, _mm_set1_epi32(-1));
        __m128i const kept = _mm_cmpeq_epi32(spread, zero);
        __m128i const result =
            _mm_or_si128(_mm_or_si128(_mm_and_si128(stored, colors), _mm_and_si128(kept, ground)),
                         _mm_andnot_si128(_mm_or_si128(stored, kept), blended));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(row + i), result);
    }
#endif
    blendTextRowScalar(row + i, weights + i, count - i, color, table);
}

/// The strength 0..255 of one text pixel: grey coverage `g` and mono coverage `m` (0 or 255)
/// mixed by `mix` and bent by `gamma`.
inline double textPixelStrength(int g, int m, float mix, double gamma)
{
    float const v = (static_cast<float>(g - m) * mix + static_cast<float>(m)) * 0.003921569f;
    return std::rint(std::pow(static_cast<double>(v), gamma) * 255.0);
}

/// A strength scaled by `alpha`: the pixel's weight.
inline int scaleTextPixelStrength(double strength, unsigned char alpha)
{
    return static_cast<int>(std::rint(strength * alpha / 255.0));
}

/// The weight of one text pixel: grey coverage `g` and mono coverage `m` (0 or 255) mixed by
/// `mix`, bent by `gamma` and scaled by `alpha`.
inline int textPixelWeight(int g, int m, float mix, double gamma, unsigned char alpha)
{
    return scaleTextPixelStrength(textPixelStrength(g, m, mix, gamma), alpha);
}

} // namespace detail
} // namespace UI
