// The vector blit rows against the scalar reference: random images with fixed seeds, odd widths
// and destinations at every misalignment. Results must be bit-identical.

#include "Canvas/UI/detail/BlitRows.h"

#include "tests/Canvas/UI/PixelTestImage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

using UI::detail::BlitRowKernels;
using UI::detail::SimdLevel;

namespace
{

std::vector<SimdLevel> vectorLevels()
{
    std::vector<SimdLevel> levels;
    for (SimdLevel level : {SimdLevel::Sse2, SimdLevel::Avx2})
        if (UI::detail::IsSimdLevelAvailable(level))
            levels.push_back(level);
    return levels;
}

char const* nameOf(SimdLevel level)
{
    return level == SimdLevel::Avx2 ? "AVX2" : "SSE2";
}

using RowFunction =
    std::function<void(BlitRowKernels const&, unsigned int const*, unsigned int*, int)>;

/// Source pixels in runs of 1 to 40 alike: fully clear, opaque, or random alpha, so that whole
/// vectors of clear or opaque pixels occur at every offset and some straddle a vector's edge.
void fillRuns(PixelTestImage& image, std::mt19937& random)
{
    int x = 0;
    while (x < image.stride)
    {
        int const run = 1 + static_cast<int>(random() % 40);
        unsigned int const kind = random() % 3;
        for (int k = 0; k < run && x < image.stride; ++k, ++x)
        {
            unsigned int const alpha = kind == 0 ? 0 : kind == 1 ? 255 : random() & 255;
            image.at(x, 0) = (alpha << 24) | (random() & 0xFFFFFF);
        }
    }
}

/// Runs `row` with the scalar kernels and with each vector level over the same source and
/// random destination rows, for widths 0 to 70 and destination offsets 0 to 8 pixels, and
/// expects identical destinations. Sources are random pixel by pixel, or in runs with `runs`.
void expectSameAsScalar(unsigned int seed, RowFunction const& row, bool runs = false)
{
    std::mt19937 random(seed);
    BlitRowKernels const& scalar = UI::detail::GetScalarBlitRowKernels();
    for (SimdLevel level : vectorLevels())
    {
        BlitRowKernels const& vector = UI::detail::GetBlitRowKernels(level);
        for (int width = 0; width <= 70; ++width)
            for (int offset = 0; offset <= 8; ++offset)
            {
                PixelTestImage src(width + 3, 1, width + 3, 0);
                PixelTestImage dst(width + offset, 1, width + offset, 0);
                if (runs)
                    fillRuns(src, random);
                else
                    src.Randomize(random);
                dst.Randomize(random);
                PixelTestImage reference = dst;
                int const srcOffset = static_cast<int>(random() % 4);
                row(scalar, src.bits() + srcOffset, reference.bits() + offset, width);
                row(vector, src.bits() + srcOffset, dst.bits() + offset, width);
                ASSERT_EQ(dst.storage, reference.storage)
                    << nameOf(level) << " width " << width << " offset " << offset;
            }
    }
}

} // namespace

TEST(BlitSimd, PixelAlphaAndCurveMatchScalarOverRandomPixelsAndRunsOfClearAndOpaque)
{
    RowFunction const pixelAlpha = [](BlitRowKernels const& k, unsigned int const* s,
                                      unsigned int* d, int n) { k.blendPixelAlpha(s, d, n); };
    RowFunction const curve = [](BlitRowKernels const& k, unsigned int const* s, unsigned int* d,
                                 int n) { k.curve(s, d, n); };
    expectSameAsScalar(1, pixelAlpha);
    expectSameAsScalar(6, pixelAlpha, true);
    expectSameAsScalar(2, curve);
    expectSameAsScalar(8, curve, true);
}

TEST(BlitSimd, PixelAlphaSkipsClearVectorsAndCopiesOpaqueOnes)
{
    // 64 pixels: whole vectors of clear, then of opaque source pixels, whatever the width. A
    // clear source leaves the destination as it was, its alpha byte included; an opaque one is
    // copied whole. One pixel of alpha 1 or 254 among clear or opaque ones must still blend.
    std::mt19937 random(7);
    for (SimdLevel level : vectorLevels())
    {
        BlitRowKernels const& vector = UI::detail::GetBlitRowKernels(level);
        for (unsigned int alpha : {0u, 255u})
            for (int odd = -1; odd < 64; ++odd)
            {
                PixelTestImage src(64, 1, 64, 0);
                PixelTestImage dst(64, 1, 64, 0);
                dst.Randomize(random);
                for (int x = 0; x < 64; ++x)
                    src.at(x, 0) = (alpha << 24) | (random() & 0xFFFFFF);
                if (odd >= 0)
                    src.at(odd, 0) = ((alpha == 0 ? 1u : 254u) << 24) | (src.at(odd, 0) & 0xFFFFFF);
                PixelTestImage const before = dst;
                vector.blendPixelAlpha(src.bits(), dst.bits(), 64);
                for (int x = 0; x < 64; ++x)
                {
                    unsigned int const s = src.at(x, 0);
                    unsigned int const d = before.storage[PixelTestImage::kGuard + x];
                    unsigned int expected = alpha == 0 ? d : s;
                    if (x == odd)
                    {
                        unsigned int const a = s >> 24;
                        unsigned int const i = a ^ 255;
                        unsigned int const rb =
                            (((s & 0xFF00FF) * a + (d & 0xFF00FF) * i + 0x800080) >> 8) & 0xFF00FF;
                        unsigned int const g =
                            (((s & 0xFF00) * a + (d & 0xFF00) * i + 0x8000) >> 8) & 0xFF00;
                        expected = 0xFF000000 | g | rb;
                    }
                    ASSERT_EQ(dst.at(x, 0), expected)
                        << nameOf(level) << " alpha " << alpha << " odd " << odd << " x " << x;
                }
                ASSERT_TRUE(dst.GuardsIntact());
            }
    }
}

TEST(BlitSimd, BlendMatchesScalarForEveryWeightAndChannelPair)
{
    // Every source alpha against every pair of source and destination values, in each channel:
    // the row for alpha `a` and source value `sv` meets destination values 0 to 255 (mirrored or
    // mixed in the other channels), with varied destination alpha bytes. One pixel in eight, at one
    // of two places in turn, has alpha 128: no vector is then all clear or all opaque, and
    // alphas 0 and 255 go through the blending lanes rather than the whole-vector skips.
    BlitRowKernels const& scalar = UI::detail::GetScalarBlitRowKernels();
    std::vector<unsigned int> src(256);
    std::vector<unsigned int> base(256);
    std::vector<unsigned int> expected(256);
    std::vector<unsigned int> actual(256);
    for (unsigned int dv = 0; dv < 256; ++dv)
        base[dv] = ((dv * 7 & 255) << 24) | (dv << 16) | ((255 - dv) << 8) | (dv ^ 0x5A);
    for (SimdLevel level : vectorLevels())
    {
        BlitRowKernels const& vector = UI::detail::GetBlitRowKernels(level);
        for (unsigned int a = 0; a < 256; ++a)
            for (unsigned int sv = 0; sv < 512; ++sv)
            {
                unsigned int const color =
                    ((sv & 255) << 16) | ((255 - (sv & 255)) << 8) | ((sv & 255) ^ 0x5A);
                std::fill(src.begin(), src.end(), (a << 24) | color);
                for (std::size_t k = sv < 256 ? 0 : 7; k < src.size(); k += 8)
                    src[k] = 0x80000000 | color;
                expected = base;
                actual = base;
                scalar.blendPixelAlpha(src.data(), expected.data(), 256);
                vector.blendPixelAlpha(src.data(), actual.data(), 256);
                ASSERT_EQ(actual, expected) << nameOf(level) << " alpha " << a << " source " << sv;
            }
    }
}

TEST(BlitSimd, ScaledAlphaMatchesScalarAtEveryAlphaAndOverRunsOfClearAndOpaque)
{
    auto scaled = [](unsigned int alpha) -> RowFunction
    {
        return [alpha](BlitRowKernels const& k, unsigned int const* s, unsigned int* d, int n)
        { k.blendScaled(s, d, n, alpha); };
    };
    for (unsigned int alpha = 0; alpha < 255; ++alpha)
        expectSameAsScalar(100 + alpha, scaled(alpha));
    // Alphas 1 and 2 round most source alphas to weight 0, so whole vectors are skipped.
    for (unsigned int alpha : {0u, 1u, 2u, 77u, 128u, 254u})
        expectSameAsScalar(400 + alpha, scaled(alpha), true);
}

TEST(BlitSimd, SolidBoxAndFillMatchScalar)
{
    for (unsigned int alpha = 0; alpha < 255; alpha += 3)
    {
        unsigned int const keep = alpha <= 1 ? 255 : 256 - alpha;
        unsigned int const add =
            ((0xE7 * alpha / 255) << 16) | ((0x3C * alpha / 255) << 8) | (0xFF * alpha / 255);
        expectSameAsScalar(300 + alpha,
                           [keep, add](BlitRowKernels const& k, unsigned int const*,
                                       unsigned int* d, int n) { k.solidBox(d, n, keep, add); });
    }
    expectSameAsScalar(3, [](BlitRowKernels const& k, unsigned int const*, unsigned int* d, int n)
                       { k.fill(d, n, 0x80C0FFEE); });
}

TEST(BlitSimd, ScaleRowMatchesScalarForEverySpan)
{
    std::mt19937 random(4);
    PixelTestImage src(64, 20, 67, 0);
    src.Randomize(random);
    BlitRowKernels const& scalar = UI::detail::GetScalarBlitRowKernels();
    // Spans up to 9 by 9, and spans of 17 rows by up to 20 columns, past the point where the
    // vector path widens its sums from 16 to 32 bits.
    std::vector<int> rowCounts = {1, 2, 3, 4, 5, 6, 7, 8, 9, 17, 20};
    for (SimdLevel level : vectorLevels())
    {
        BlitRowKernels const& vector = UI::detail::GetBlitRowKernels(level);
        for (int rows : rowCounts)
        {
            std::vector<int> starts;
            std::vector<int> counts;
            int const maxCols = rows > 9 ? 20 : 9;
            for (int cols = 1; cols <= maxCols; ++cols)
                for (int start = 0; start + cols <= 64; start += 7)
                {
                    starts.push_back(start);
                    counts.push_back(cols);
                }
            int const n = static_cast<int>(starts.size());
            std::vector<unsigned int> expected(n);
            std::vector<unsigned int> actual(n);
            UI::detail::ScaleSpans const spans{starts.data(), counts.data()};
            scalar.scaleRow(src.bits(), 67, rows, spans, n, expected.data());
            vector.scaleRow(src.bits(), 67, rows, spans, n, actual.data());
            ASSERT_EQ(actual, expected) << nameOf(level) << " rows " << rows;
        }
    }
}

TEST(BlitSimd, ScaleRowMatchesScalarWhenHalving)
{
    // Runs of side-by-side two-column spans take a four-pixels-at-once path; break the runs in
    // places and go past the 128 rows that path takes.
    std::mt19937 random(5);
    PixelTestImage src(80, 130, 80, 0);
    src.Randomize(random);
    std::vector<int> starts;
    std::vector<int> counts;
    for (int k = 0; k < 13; ++k)
    {
        starts.push_back(2 * k);
        counts.push_back(2);
    }
    starts.push_back(26); // a one-column span breaks the run
    counts.push_back(1);
    for (int k = 0; k < 9; ++k)
    {
        starts.push_back(27 + 2 * k);
        counts.push_back(k == 6 ? 3 : 2);
    }
    int const n = static_cast<int>(starts.size());
    UI::detail::ScaleSpans const spans{starts.data(), counts.data()};
    BlitRowKernels const& scalar = UI::detail::GetScalarBlitRowKernels();
    for (SimdLevel level : vectorLevels())
        for (int rows : {1, 2, 3, 127, 128, 129, 130})
        {
            std::vector<unsigned int> expected(n);
            std::vector<unsigned int> actual(n);
            scalar.scaleRow(src.bits(), 80, rows, spans, n, expected.data());
            UI::detail::GetBlitRowKernels(level).scaleRow(src.bits(), 80, rows, spans, n,
                                                          actual.data());
            ASSERT_EQ(actual, expected) << nameOf(level) << " rows " << rows;
        }
}

TEST(BlitSimd, BestLevelIsOneOfTheTested)
{
    BlitRowKernels const* best = &UI::detail::GetBlitRowKernels();
    bool found = false;
    for (SimdLevel level : vectorLevels())
        found = found || best == &UI::detail::GetBlitRowKernels(level);
    EXPECT_TRUE(found);
}
