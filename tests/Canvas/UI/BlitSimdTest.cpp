// The vector blit rows against the scalar reference: random images with fixed seeds, odd widths
// and destinations at every misalignment. Results must be bit-identical.

#include "Canvas/UI/detail/BlitRows.h"

#include "tests/Canvas/UI/PixelTestImage.h"

#include <gtest/gtest.h>

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

/// Runs `row` with the scalar kernels and with each vector level over the same random source
/// and destination rows, for widths 0 to 70 and destination offsets 0 to 8 pixels, and expects
/// identical destinations.
void expectSameAsScalar(
    unsigned int seed,
    std::function<void(BlitRowKernels const&, unsigned int const*, unsigned int*, int)> const& row)
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

TEST(BlitSimd, PixelAlphaMatchesScalar)
{
    expectSameAsScalar(1, [](BlitRowKernels const& k, unsigned int const* s, unsigned int* d, int n)
                       { k.blendPixelAlpha(s, d, n); });
}

TEST(BlitSimd, ScaledAlphaMatchesScalarAtEveryAlpha)
{
    for (unsigned int alpha = 0; alpha < 255; ++alpha)
        expectSameAsScalar(100 + alpha,
                           [alpha](BlitRowKernels const& k, unsigned int const* s, unsigned int* d,
                                   int n) { k.blendScaled(s, d, n, alpha); });
}

TEST(BlitSimd, CurveMatchesScalar)
{
    expectSameAsScalar(2, [](BlitRowKernels const& k, unsigned int const* s, unsigned int* d, int n)
                       { k.curve(s, d, n); });
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
