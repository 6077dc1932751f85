#include "Canvas/UI/BoxDrawing.h"

#include "tests/Canvas/UI/PixelTestImage.h"

#include <gtest/gtest.h>

namespace
{

unsigned int const kDest = 0xFF204060;
unsigned int const kColor = 0xFFFF8040;

unsigned int solidPixel(unsigned int dest, unsigned int color, unsigned char alpha)
{
    PixelTestImage img(19, 2, 19, dest);
    UI::DrawSolidBox(img.bits(), 19, UI::Rect(0, 18, 0, 1), UI::Rect(0, 18, 0, 1), color, alpha);
    for (int x = 0; x < 19; ++x)
        EXPECT_EQ(img.at(x, 1), img.at(0, 0));
    return img.at(0, 0);
}

} // namespace

TEST(DrawSolidBox, KeepsAndAddsPerChannel)
{
    EXPECT_EQ(solidPixel(kDest, kColor, 255), kColor);
    // The color is stored as given at full strength, alpha byte too.
    EXPECT_EQ(solidPixel(kDest, 0x12345678, 255), 0x12345678u);
    // keep 128: 32*128/255 + 255*128/255 = 16 + 128 and so on.
    EXPECT_EQ(solidPixel(kDest, kColor, 128), 0xFF906050u);
    // alpha 1 keeps 255/255 and adds 255/255 = 1 to red only.
    EXPECT_EQ(solidPixel(kDest, kColor, 1), 0xFF214060u);
    // alpha 0 changes nothing but the alpha byte.
    EXPECT_EQ(solidPixel(0x00204060, kColor, 0), 0xFF204060u);
    // keep 2 at alpha 254, and channels saturate.
    EXPECT_EQ(solidPixel(kDest, kColor, 254), 0xFFFE7F3Fu);
    EXPECT_EQ(solidPixel(0xFFFFFFFF, 0xFFFFFFFF, 128), 0xFFFFFFFFu);
}

TEST(DrawSolidBox, WorksOnBoxInsideClip)
{
    PixelTestImage img(10, 8, 16, 0);
    UI::Rect const clip(2, 8, 1, 6);
    UI::DrawSolidBox(img.bits(), 16, clip, UI::Rect(-5, 4, 3, 20), 0xFF00FF00, 255);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 16; ++x)
        {
            bool const inside = x >= 2 && x <= 4 && y >= 3 && y <= 6;
            EXPECT_EQ(img.at(x, y), inside ? 0xFF00FF00u : 0u) << x << "," << y;
        }
    // A one-column box is a stepping store.
    UI::DrawSolidBox(img.bits(), 16, clip, UI::Rect(7, 7, 0, 9), 0xFF0000FF, 255);
    for (int y = 0; y < 8; ++y)
        EXPECT_EQ(img.at(7, y), y >= 1 && y <= 6 ? 0xFF0000FFu : 0u);
    // Empty boxes draw nothing.
    UI::DrawSolidBox(img.bits(), 16, clip, UI::Rect(5, 4, 0, 7), 0xFFFFFFFF, 255);
    UI::DrawSolidBox(img.bits(), 16, UI::Rect(), UI::Rect(0, 9, 0, 7), 0xFFFFFFFF, 255);
    EXPECT_EQ(img.at(5, 5), 0u);
    EXPECT_TRUE(img.GuardsIntact());
}

TEST(FillBox, StoresWithoutBlending)
{
    PixelTestImage img(6, 4, 6, kDest);
    UI::FillBox(img.bits(), 6, UI::Rect(0, 5, 0, 3), UI::Rect(1, 3, 1, 9), 0x40FF8040);
    EXPECT_EQ(img.at(1, 1), 0x40FF8040u);
    EXPECT_EQ(img.at(3, 3), 0x40FF8040u);
    EXPECT_EQ(img.at(0, 1), kDest);
    EXPECT_EQ(img.at(4, 3), kDest);
    EXPECT_EQ(img.at(2, 0), kDest);
}

TEST(DrawOutlineBox, DrawsBorderOnceEach)
{
    PixelTestImage img(8, 6, 8, kDest);
    UI::DrawOutlineBox(img.bits(), 8, UI::Rect(0, 7, 0, 5), UI::Rect(1, 6, 1, 4), kColor, 128);
    unsigned int const once = 0xFF8F6050; // the blend kernel at 128, applied once
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 8; ++x)
        {
            bool const border = (x >= 1 && x <= 6 && (y == 1 || y == 4)) ||
                                (y >= 1 && y <= 4 && (x == 1 || x == 6));
            EXPECT_EQ(img.at(x, y), border ? once : kDest) << x << "," << y;
        }
    // Clipped, full strength: plain stores on the visible part only.
    PixelTestImage cut(8, 6, 8, 0);
    UI::DrawOutlineBox(cut.bits(), 8, UI::Rect(0, 3, 0, 5), UI::Rect(1, 6, 1, 4), kColor, 255);
    EXPECT_EQ(cut.at(1, 1), kColor);
    EXPECT_EQ(cut.at(3, 4), kColor);
    EXPECT_EQ(cut.at(1, 3), kColor);
    EXPECT_EQ(cut.at(4, 1), 0u);
    EXPECT_EQ(cut.at(2, 2), 0u);
    // A one-pixel box is one pixel.
    PixelTestImage dot(3, 3, 3, kDest);
    UI::DrawOutlineBox(dot.bits(), 3, UI::Rect(0, 2, 0, 2), UI::Rect(1, 1, 1, 1), kColor, 128);
    EXPECT_EQ(dot.at(1, 1), once);
}

namespace
{

// Hand-computed corner of radius 4 in white over opaque black: solid pixels, then coverage
// 247, 181 and 31 through the alpha-keeping composite (0xF6, 0xB4, 0x1F).
unsigned int const O = 0xFF000000; // untouched
unsigned int const W = 0xFFFFFFFF;
unsigned int const c247 = 0xFFF6F6F6;
unsigned int const c181 = 0xFFB4B4B4;
unsigned int const c31 = 0xFF1F1F1F;
unsigned int const kCorner[4][4] = {
    {O, c31, c181, c247},
    {c31, W, W, W},
    {c181, W, W, W},
    {c247, W, W, W},
};

} // namespace

TEST(DrawRoundedBox, CornersFromEightOctantsAndClipsWithoutMovingThem)
{
    PixelTestImage img(12, 10, 16, O);
    UI::DrawRoundedBox(img.bits(), 16, UI::Rect(0, 11, 0, 9), UI::Rect(0, 11, 0, 9), 4, true, W,
                       255);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
        {
            EXPECT_EQ(img.at(x, y), kCorner[y][x]) << x << "," << y;
            // The other three corners mirror it.
            EXPECT_EQ(img.at(11 - x, y), kCorner[y][x]) << x << "," << y;
            EXPECT_EQ(img.at(x, 9 - y), kCorner[y][x]) << x << "," << y;
            EXPECT_EQ(img.at(11 - x, 9 - y), kCorner[y][x]) << x << "," << y;
        }
    for (int y = 4; y <= 5; ++y)
        for (int x = 0; x < 12; ++x)
            EXPECT_EQ(img.at(x, y), W);
    EXPECT_EQ(img.at(12, 5), O); // the padding is untouched

    // Any clip gives the same pixels inside it as the unclipped box, and nothing outside.
    for (UI::Rect clip : {UI::Rect(2, 11, 0, 9), UI::Rect(0, 8, 0, 9), UI::Rect(0, 11, 3, 9),
                          UI::Rect(0, 11, 0, 6), UI::Rect(1, 10, 1, 8), UI::Rect(5, 6, 0, 9)})
    {
        PixelTestImage cut(12, 10, 16, O);
        UI::DrawRoundedBox(cut.bits(), 16, clip, UI::Rect(0, 11, 0, 9), 4, true, W, 255);
        for (int y = 0; y < 10; ++y)
            for (int x = 0; x < 12; ++x)
                EXPECT_EQ(cut.at(x, y), clip.Contains(UI::Point(x, y)) ? img.at(x, y) : O)
                    << clip.left << ":" << clip.right << ":" << clip.top << ":" << clip.bottom
                    << " " << x << "," << y;
    }
}

TEST(DrawRoundedBox, UnfilledLeavesMiddle)
{
    PixelTestImage img(20, 20, 32, O);
    UI::DrawRoundedBox(img.bits(), 32, UI::Rect(0, 19, 0, 19), UI::Rect(0, 19, 0, 19), 4, false, W,
                       255);
    EXPECT_EQ(img.at(0, 0), O);
    EXPECT_EQ(img.at(3, 3), W);
    // Bands as wide as the radius along each side.
    EXPECT_EQ(img.at(0, 10), W);
    EXPECT_EQ(img.at(3, 10), W);
    EXPECT_EQ(img.at(10, 0), W);
    EXPECT_EQ(img.at(10, 19), W);
    EXPECT_EQ(img.at(19, 10), W);
    // The middle is untouched.
    EXPECT_EQ(img.at(4, 10), O);
    EXPECT_EQ(img.at(10, 10), O);
    EXPECT_EQ(img.at(15, 15), O);
}

TEST(DrawRoundedBox, RadiusZeroIsSolidBox)
{
    PixelTestImage a(7, 5, 7, kDest);
    PixelTestImage b(7, 5, 7, kDest);
    UI::DrawRoundedBox(a.bits(), 7, UI::Rect(0, 6, 0, 4), UI::Rect(1, 5, 1, 3), 0, true, kColor,
                       77);
    UI::DrawSolidBox(b.bits(), 7, UI::Rect(0, 6, 0, 4), UI::Rect(1, 5, 1, 3), kColor, 77);
    EXPECT_EQ(a.storage, b.storage);
}

TEST(DrawRoundedBoxOutline, ThickSidesThinCorners)
{
    PixelTestImage img(16, 16, 16, O);
    UI::DrawRoundedBoxOutline(img.bits(), 16, UI::Rect(0, 15, 0, 15), UI::Rect(0, 15, 0, 15), 4, 2,
                              W, 255);
    // Straight sides two pixels thick between the corners.
    for (int x = 4; x <= 11; ++x)
    {
        EXPECT_EQ(img.at(x, 0), W);
        EXPECT_EQ(img.at(x, 1), W);
        EXPECT_EQ(img.at(x, 2), O);
        EXPECT_EQ(img.at(x, 15), W);
        EXPECT_EQ(img.at(x, 14), W);
    }
    for (int y = 4; y <= 11; ++y)
    {
        EXPECT_EQ(img.at(0, y), W);
        EXPECT_EQ(img.at(1, y), W);
        EXPECT_EQ(img.at(15, y), W);
    }
    // Wu's circle around (4,4): y 0 puts the full pixel at x 4 (column 0, row 4); the arc
    // passes (4,0) at full coverage the other way round; the corner pixel stays clear.
    EXPECT_EQ(img.at(0, 4), W);
    EXPECT_EQ(img.at(4, 0), W);
    EXPECT_EQ(img.at(0, 0), O);
    // y 1: x = sqrt(15) = 3.873, d = floor(0.127 * 255 + 0.5) = 32: x stays 4, so column 0
    // row 3 takes coverage 223 and column 1 row 3 coverage 32 (over black: 0xDE and 0x20).
    EXPECT_EQ(img.at(0, 3), 0xFFDEDEDEu);
    EXPECT_EQ(img.at(1, 3), 0xFF202020u);
    // Mirrored at the other corners.
    EXPECT_EQ(img.at(15, 3), 0xFFDEDEDEu);
    EXPECT_EQ(img.at(0, 12), 0xFFDEDEDEu);
    EXPECT_EQ(img.at(14, 12), 0xFF202020u);
    // The inside stays clear.
    EXPECT_EQ(img.at(7, 7), O);
}
