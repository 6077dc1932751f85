#include "Canvas/UI/LineInfo.h"

#include "tests/Canvas/UI/PixelTestImage.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

namespace
{

unsigned int const kBack = 0xFF000000;
unsigned int const kInk = 0xFFFFFFFF;

std::set<std::pair<int, int>> inked(PixelTestImage& img)
{
    std::set<std::pair<int, int>> points;
    for (int y = 0; y < img.height; ++y)
        for (int x = 0; x < img.width; ++x)
            if (img.at(x, y) != kBack)
                points.insert({x, y});
    return points;
}

} // namespace

TEST(DrawLineSolid, WalksBothEndsIncluded)
{
    PixelTestImage img(8, 8, 8, kBack);
    UI::DrawLine(img.bits(), 8, UI::Rect(0, 7, 0, 7), 0, 0, 4, 2, kInk, 255);
    // The error starts at half the longer side: steps after the second and fourth pixel.
    std::set<std::pair<int, int>> const expected = {{0, 0}, {1, 0}, {2, 1}, {3, 1}, {4, 2}};
    EXPECT_EQ(inked(img), expected);

    PixelTestImage back(8, 8, 8, kBack);
    UI::DrawLine(back.bits(), 8, UI::Rect(0, 7, 0, 7), 2, 6, 0, 1, kInk, 255);
    std::set<std::pair<int, int>> const steep = {{2, 6}, {2, 5}, {1, 4}, {1, 3}, {0, 2}, {0, 1}};
    EXPECT_EQ(inked(back), steep);
}

TEST(DrawLineSolid, SkipsPixelsOutsideClip)
{
    PixelTestImage img(8, 8, 8, kBack);
    UI::DrawLine(img.bits(), 8, UI::Rect(2, 7, 0, 7), -3, -3, 5, 5, kInk, 255);
    std::set<std::pair<int, int>> const expected = {{2, 2}, {3, 3}, {4, 4}, {5, 5}};
    EXPECT_EQ(inked(img), expected);
    EXPECT_TRUE(img.GuardsIntact());
}

TEST(DrawLineSolid, StraightLinesAreSolidBoxes)
{
    PixelTestImage img(8, 4, 8, 0xFF204060);
    UI::DrawLine(img.bits(), 8, UI::Rect(0, 7, 0, 3), 6, 2, 1, 2, 0xFFFF8040, 128);
    // The solid box's keep-and-add arithmetic, not the blend kernel.
    for (int x = 1; x <= 6; ++x)
        EXPECT_EQ(img.at(x, 2), 0xFF906050u);
    EXPECT_EQ(img.at(0, 2), 0xFF204060u);
    EXPECT_EQ(img.at(7, 2), 0xFF204060u);
    UI::DrawLine(img.bits(), 8, UI::Rect(0, 7, 0, 3), 0, 0, 0, 3, kInk, 255);
    for (int y = 0; y < 4; ++y)
        EXPECT_EQ(img.at(0, y), kInk);
}

TEST(DrawLinePerPixel, TakesNthColorForNthPixel)
{
    PixelTestImage img(8, 8, 8, kBack);
    unsigned int const colors[4] = {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004};
    UI::LineInfo line;
    line.from = UI::Point(5, 1);
    line.to = UI::Point(0, 6);
    line.mode = UI::LineInfo::PerPixelColors;
    line.colors = array_ref<unsigned int const>(colors, 4);
    line.bits = img.bits();
    line.stride = 8;
    line.clipLeft = 0;
    line.clipTop = 0;
    line.clipRight = 7;
    line.clipBottom = 7;
    UI::DrawLine(line);
    EXPECT_EQ(img.at(5, 1), colors[0]);
    EXPECT_EQ(img.at(4, 2), colors[1]);
    EXPECT_EQ(img.at(3, 3), colors[2]);
    EXPECT_EQ(img.at(2, 4), colors[3]);
    // Past the end of the list nothing is drawn.
    EXPECT_EQ(img.at(1, 5), kBack);
    EXPECT_EQ(img.at(0, 6), kBack);
}

TEST(DrawLineAntiAliased, ThreePixelsAcrossEachStep)
{
    // From (0,0) to (2,1): the middle step lies half way between rows 0 and 1, at a distance of
    // 0.447 from both centres: d = 0.671, v = trunc(255 * 0.45) = 114, weight 141.
    PixelTestImage img(4, 4, 4, kBack);
    UI::DrawAntiAliasedLine(img.bits(), 4, UI::Rect(0, 3, 0, 3), 0, 0, 2, 1, kInk, 255);
    unsigned int const blended = 0xFF8C8C8C; // (255 * 141 + 128) >> 8 = 140
    EXPECT_EQ(img.at(0, 0), kInk);
    EXPECT_EQ(img.at(1, 0), blended);
    EXPECT_EQ(img.at(1, 1), blended);
    EXPECT_EQ(img.at(2, 1), kInk);
    std::set<std::pair<int, int>> const touched = {{0, 0}, {1, 0}, {1, 1}, {2, 1}};
    EXPECT_EQ(inked(img), touched);
}

TEST(DrawLineAntiAliased, StraightLinesStayCrisp)
{
    // The neighbours of a horizontal line lie 1.5 scaled units away: no weight.
    PixelTestImage img(6, 3, 6, kBack);
    UI::DrawAntiAliasedLine(img.bits(), 6, UI::Rect(0, 5, 0, 2), 1, 1, 4, 1, kInk, 255);
    std::set<std::pair<int, int>> const expected = {{1, 1}, {2, 1}, {3, 1}, {4, 1}};
    EXPECT_EQ(inked(img), expected);
    // At half strength the line pixels get v = 127: weight 128.
    PixelTestImage half(6, 3, 6, kBack);
    UI::DrawAntiAliasedLine(half.bits(), 6, UI::Rect(0, 5, 0, 2), 1, 1, 4, 1, kInk, 128);
    EXPECT_EQ(half.at(2, 1), 0xFF808080u);
}

TEST(DrawLineAntiAliased, MaskWritesGreyDistance)
{
    PixelTestImage img(4, 4, 4, 0x12345678);
    UI::DrawAntiAliasedMask(img.bits(), 4, UI::Rect(0, 3, 0, 3), 0, 0, 2, 1, kInk, 255);
    EXPECT_EQ(img.at(0, 0), 0xFF000000u);
    EXPECT_EQ(img.at(1, 0), 0xFF727272u); // 255 * 0.45 = 114.75 -> 114
    EXPECT_EQ(img.at(0, 1), 0xFFFFFFFFu); // far side: clamped to 255
    EXPECT_EQ(img.at(3, 3), 0x12345678u);
}

TEST(DrawLineAntiAliased, ZeroLengthLineDrawsCentreAndSides)
{
    // With no length the side pixels are at distance 0 too: a three-pixel dash across.
    PixelTestImage img(3, 3, 3, kBack);
    UI::DrawAntiAliasedLine(img.bits(), 3, UI::Rect(0, 2, 0, 2), 1, 1, 1, 1, kInk, 255);
    std::set<std::pair<int, int>> const expected = {{1, 0}, {1, 1}, {1, 2}};
    EXPECT_EQ(inked(img), expected);
}
