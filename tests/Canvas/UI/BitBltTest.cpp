#include "Canvas/UI/BitBlt.h"

#include "Canvas/UI/detail/KeepAlphaPixel.h"

#include "tests/Canvas/UI/PixelTestImage.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{

unsigned int const kDest = 0xFF204060;
unsigned int const kColor = 0x00FF8040;

using RowBlit = void (*)(bool, unsigned int const*, int, UI::Rect const&, unsigned int*, int,
                         UI::Point const&, unsigned char);

/// Blits a row of 21 copies of `source` (wide enough for the vector body and a tail) onto a row
/// of `dest` and returns the pixel the row holds, after checking all agree.
unsigned int blitRow(RowBlit blit, bool hasAlpha, unsigned int source, unsigned char alpha,
                     unsigned int dest = kDest)
{
    PixelTestImage src(21, 1, 21, source);
    PixelTestImage dst(21, 1, 21, dest);
    blit(hasAlpha, src.bits(), 21, UI::Rect(0, 20, 0, 0), dst.bits(), 21, UI::Point(0, 0), alpha);
    for (int x = 1; x < 21; ++x)
        EXPECT_EQ(dst.at(x, 0), dst.at(0, 0)) << "pixel " << x;
    EXPECT_TRUE(dst.GuardsIntact());
    return dst.at(0, 0);
}

} // namespace

TEST(BitBltPixel, BlendCopyAndCurveKernels)
{
    RowBlit const plain = UI::BitBlt;
    RowBlit const curve = UI::BitBltCurve;
    unsigned int const curveDest = 0x10204060;
    struct Case
    {
        RowBlit blit;
        bool hasAlpha;
        unsigned int source;
        unsigned char alpha;
        unsigned int dest, expected;
    } const cases[] = {
        // Source alpha at full strength; the destination becomes opaque even where it was not.
        {plain, true, 0x00000000 | kColor, 255, kDest, kDest},
        {plain, true, 0x01000000 | kColor, 255, kDest, 0xFF214060u},
        {plain, true, 0x80000000 | kColor, 255, kDest, 0xFF8F6050u},
        {plain, true, 0xFE000000 | kColor, 255, kDest, 0xFFFD7F40u},
        {plain, true, 0xFF000000 | kColor, 255, kDest, 0xFFFF8040u},
        {plain, true, 0x80000000 | kColor, 255, 0x00204060, 0xFF8F6050u},
        // Without an alpha channel at full strength the alpha byte travels as it stands, even 0.
        {plain, false, 0x00123456, 255, kDest, 0x00123456u},
        {plain, false, 0x80FF8040, 255, kDest, 0x80FF8040u},
        // A constant alpha scales the source alpha.
        {plain, false, 0xFF000000 | kColor, 0, kDest, kDest},
        {plain, false, 0xFF000000 | kColor, 1, kDest, 0xFF214060u},
        {plain, false, 0xFF000000 | kColor, 128, kDest, 0xFF8F6050u},
        {plain, false, 0xFF000000 | kColor, 254, kDest, 0xFFFD7F40u},
        // Half-transparent source at half strength: weight rint(128 * 0.00392157 * 128) = 64.
        {plain, true, 0x80000000 | kColor, 128, kDest, 0xFF585058u},
        // Below full strength the has-alpha flag is ignored: a top byte of 0 draws nothing.
        {plain, false, 0x80000000 | kColor, 128, kDest, 0xFF585058u},
        {plain, false, 0x00000000 | kColor, 128, kDest, kDest},
        // The curve keeps the larger coverage in the alpha byte: 128 or more, the source color.
        {curve, true, 0x00000000 | kColor, 255, curveDest, curveDest},
        {curve, true, 0xC8000000 | kColor, 255, curveDest, 0xC8FF8040u},
        {curve, true, 0xC8000000 | kColor, 255, 0xF0204060, 0xF0FF8040u},
        {curve, true, 0x80000000 | kColor, 255, curveDest, 0x80FF8040u},
        // Below 128: the blend kernel at twice the weight (64 -> 128), alpha kept apart.
        {curve, true, 0x40000000 | kColor, 255, curveDest, 0x408F6050u},
        {curve, true, 0x01000000 | kColor, 255, 0x00204060, 0x0122405Fu},
        // Otherwise it copies or blends opaque.
        {curve, false, 0x12345678, 255, kDest, 0x12345678u},
        {curve, false, 0xFF000000 | kColor, 128, curveDest, 0xFF8F6050u},
        {curve, true, 0x80000000 | kColor, 128, kDest, 0xFF585058u},
    };
    for (Case const& c : cases)
        EXPECT_EQ(blitRow(c.blit, c.hasAlpha, c.source, c.alpha, c.dest), c.expected)
            << (c.blit == curve ? "curve " : "plain ") << c.hasAlpha << std::hex << " " << c.source
            << " alpha " << int(c.alpha) << " over " << c.dest;

    // A transparent source leaves the destination at every alpha but the plain copy.
    for (int alpha : {0, 1, 128, 254, 255})
        for (bool hasAlpha : {true, false})
        {
            if (!hasAlpha && alpha == 255)
                continue; // a plain copy
            EXPECT_EQ(blitRow(plain, hasAlpha, kColor, static_cast<unsigned char>(alpha)), kDest)
                << "alpha " << alpha;
        }
}

TEST(BitBltClamping, KeepsRowsInsideStrides)
{
    PixelTestImage src(8, 4, 8, 0xFF112233);
    PixelTestImage dst(8, 4, 8, 0xFF000000);
    // Columns left of 0 and right of the strides are cut, shifting the destination with them.
    UI::BitBlt(false, src.bits(), 8, UI::Rect(-3, 12, 1, 2), dst.bits(), 8, UI::Point(-1, 0), 255);
    EXPECT_TRUE(dst.GuardsIntact());
    for (int x = 0; x < 8; ++x)
    {
        EXPECT_EQ(dst.at(x, 0), x >= 2 ? 0xFF112233u : 0xFF000000u) << x;
        EXPECT_EQ(dst.at(x, 1), x >= 2 ? 0xFF112233u : 0xFF000000u) << x;
        EXPECT_EQ(dst.at(x, 2), 0xFF000000u);
    }
}

TEST(BitBltCopy, ScrollsWithinOneBitmap)
{
    PixelTestImage img(8, 8, 8, 0);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            img.at(x, y) = static_cast<unsigned int>(y * 8 + x);
    // Down by two rows: overlapping rows must be read before they are overwritten.
    UI::BitBlt(false, img.bits(), 8, UI::Rect(0, 7, 0, 5), img.bits(), 8, UI::Point(0, 2), 255);
    for (int y = 2; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            EXPECT_EQ(img.at(x, y), static_cast<unsigned int>((y - 2) * 8 + x));
    // And back up.
    UI::BitBlt(false, img.bits(), 8, UI::Rect(0, 7, 2, 7), img.bits(), 8, UI::Point(0, 0), 255);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 8; ++x)
            EXPECT_EQ(img.at(x, y), static_cast<unsigned int>(y * 8 + x));
}

namespace
{

void dither(bool hasAlpha, PixelTestImage& src, PixelTestImage& dst, unsigned char alpha)
{
    UI::BitBltDithered(hasAlpha, src.bits(), src.stride,
                       UI::Rect(0, src.width - 1, 0, src.height - 1), dst.bits(), dst.stride,
                       UI::Point(0, 0), alpha);
}

} // namespace

TEST(BitBltDithered, AddsSeededNoiseOnlyToPartlyTransparentPixels)
{
    // Noise from the generator seeded with 1: two draws per partly transparent pixel, none for
    // others, so the fourth pixel takes the second pair.
    PixelTestImage src(5, 1, 5, 0);
    unsigned int const sources[5] = {0x80FF8040, 0xFFFF8040, 0x00FF8040, 0x80FF8040, 0x40102030};
    for (int x = 0; x < 5; ++x)
        src.at(x, 0) = sources[x];
    PixelTestImage dst(5, 1, 5, kDest);
    dither(true, src, dst, 0);
    EXPECT_EQ(dst.at(0, 0), 0xFF8F5F4Fu); // noise -72: one below the plain 0xFF8F6050
    EXPECT_EQ(dst.at(1, 0), 0xFFFF8040u);
    EXPECT_EQ(dst.at(2, 0), kDest);
    EXPECT_EQ(dst.at(3, 0), 0xFF8F5F4Fu); // noise -79
    EXPECT_EQ(dst.at(4, 0), 0xFF1C3854u); // noise 13: no visible change here
    EXPECT_TRUE(dst.GuardsIntact());
}

TEST(BitBltDithered, RepeatsTheSamePatternOnEveryCall)
{
    std::mt19937 random(7);
    PixelTestImage src(37, 9, 40, 0);
    src.Randomize(random);
    PixelTestImage first(37, 9, 37, kDest);
    PixelTestImage second(37, 9, 37, kDest);
    dither(true, src, first, 0);
    dither(true, src, second, 0);
    EXPECT_EQ(first.storage, second.storage);

    // Each channel stays within one step of the undithered kernel.
    PixelTestImage plain(37, 9, 37, kDest);
    UI::BitBlt(true, src.bits(), 40, UI::Rect(0, 36, 0, 8), plain.bits(), 37, UI::Point(0, 0), 255);
    int differing = 0;
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 37; ++x)
        {
            unsigned int const a = first.at(x, y);
            unsigned int const b = plain.at(x, y);
            for (int shift : {0, 8, 16})
            {
                int const delta =
                    static_cast<int>((a >> shift) & 255) - static_cast<int>((b >> shift) & 255);
                EXPECT_LE(std::abs(delta), 1);
            }
            differing += a != b;
        }
    EXPECT_GT(differing, 0);
}

TEST(BitBltDithered, ReversedAlphaTest)
{
    PixelTestImage src(6, 2, 6, 0x80FF8040);
    // alpha 0 without an alpha channel: a plain copy.
    PixelTestImage copy(6, 2, 6, kDest);
    dither(false, src, copy, 0);
    EXPECT_EQ(copy.at(5, 1), 0x80FF8040u);
    // alpha 255: the scaled path, no noise: the plain kernel's result.
    PixelTestImage full(6, 2, 6, kDest);
    dither(true, src, full, 255);
    EXPECT_EQ(full.at(0, 0), 0xFF8F6050u);
    EXPECT_EQ(full.at(5, 1), 0xFF8F6050u);
    // Other alphas: scaled, no noise.
    PixelTestImage half(6, 2, 6, kDest);
    dither(true, src, half, 128);
    EXPECT_EQ(half.at(3, 1), 0xFF585058u);
}

namespace
{

unsigned int keepAlpha(unsigned int s, unsigned int d)
{
    PixelTestImage src(1, 1, 1, s);
    PixelTestImage dst(1, 1, 1, d);
    UI::BitBlt(src.bits(), 1, UI::Rect(0, 0, 0, 0), dst.bits(), 1, UI::Point(0, 0));
    return dst.at(0, 0);
}

} // namespace

TEST(BitBltKeepingAlpha, UnitesCoverages)
{
    EXPECT_EQ(keepAlpha(0xFFFF8040, 0x12345678), 0xFFFF8040u);
    EXPECT_EQ(keepAlpha(0x00FF8040, 0x12345678), 0x12345678u);
    // Half red over half blue: t 64, weights 170 and 85, alpha 192.
    EXPECT_EQ(keepAlpha(0x80FF0000, 0x800000FF), 0xC0A90055u);
    // Over nothing: the source's color (rounded by the kernel) at its own alpha.
    EXPECT_EQ(keepAlpha(0x80FF0000, 0x00000000), 0x80FE0000u);
    // Over opaque: opaque, weighted by the coverage.
    EXPECT_EQ(keepAlpha(0xF7FFFFFF, 0xFF000000), 0xFFF6F6F6u);
    EXPECT_EQ(keepAlpha(0x1FFFFFFF, 0xFF000000), 0xFF1F1F1Fu);
}

TEST(BitBltKeepingAlpha, ClipsRectsAndWalksStrides)
{
    std::mt19937 random(7);
    PixelTestImage src(5, 4, 7, 0);
    src.Randomize(random);
    PixelTestImage dst(6, 5, 8, 0);
    dst.Randomize(random);
    PixelTestImage expected = dst;
    // A source rect hanging off the left edge and a destination above the top both clamp, and
    // the last source column would run past the destination's stride.
    UI::Rect const srcRect(-1, 4, 0, 3);
    UI::Point const dstPos(3, -1);
    for (int y = 0; y <= 3; ++y)
        for (int x = 0; x <= 4; ++x)
        {
            int const dx = dstPos.x + 1 + x;
            int const dy = dstPos.y + y;
            if (dx < dst.stride && dy >= 0 && dy < dst.height)
                expected.at(dx, dy) = UI::detail::KeepAlphaPixel(src.at(x, y), dst.at(dx, dy));
        }
    UI::BitBlt(src.bits(), src.stride, srcRect, dst.bits(), dst.stride, dstPos);
    EXPECT_TRUE(dst.GuardsIntact());
    for (int y = 0; y < dst.height; ++y)
        for (int x = 0; x < dst.stride; ++x)
            EXPECT_EQ(expected.at(x, y), dst.at(x, y)) << x << "," << y;
}
