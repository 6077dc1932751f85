#include "Canvas/UI/StretchableBits.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Media.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"
#include "tests/Canvas/UI/support/PngTestSupport.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace
{

// A 6 by 5 skin of nine flat patches: columns 0-1 | 2-3 | 4-5, rows 0 | 1-2 | 3-4, so that
// with edges left 2, right 2, top 1, bottom 2 every patch has its own color.
unsigned int const Patch[3][3] = {
    {0xFF100000u, 0xFF200000u, 0xFF300000u},
    {0xFF001000u, 0xFF002000u, 0xFF003000u},
    {0xFF000010u, 0xFF000020u, 0xFF000030u},
};
int const Left = 2, Right = 2, Top = 1, Bottom = 2;
int const Width = 6, Height = 5;

int patchColumn(int x, int width)
{
    return x < Left ? 0 : x >= width - Right ? 2 : 1;
}

int patchRow(int y, int height)
{
    return y < Top ? 0 : y >= height - Bottom ? 2 : 1;
}

std::string skinFile()
{
    TestSupport::PngSample sample;
    sample.width = Width;
    sample.height = Height;
    sample.colorType = PNG_COLOR_TYPE_RGB;
    for (int y = 0; y < Height; ++y)
        for (int x = 0; x < Width; ++x)
        {
            unsigned int const c = Patch[patchRow(y, Height)][patchColumn(x, Width)];
            sample.samples.push_back(c >> 16 & 0xFF);
            sample.samples.push_back(c >> 8 & 0xFF);
            sample.samples.push_back(c & 0xFF);
        }
    return TestSupport::MakePng(sample);
}

unsigned int pixel(UI::DIBits const& bits, int x, int y)
{
    return bits.GetPixels()[y * bits.GetStride() + x];
}

class Stretch : public ::testing::Test
{
protected:
    void SetUp() override
    {
        folder.Write("skin.png", skinFile());
        Util::ResourceManager::Get().SetOverridePath(FolderPath(String(folder.Path().c_str())));
    }
    void TearDown() override
    {
        Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());
    }

    // Every pixel of a stretch at least as large as the edges lies in the patch its position
    // says: corners fixed, edges and middle stretched.
    void expectNinePatches(UI::DIBits const& bits, int w, int h)
    {
        ASSERT_EQ(bits.GetWidth(), w);
        ASSERT_EQ(bits.GetHeight(), h);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                ASSERT_EQ(pixel(bits, x, y), Patch[patchRow(y, h)][patchColumn(x, w)])
                    << "at " << x << "," << y << " of " << w << "x" << h;
    }

    TestSupport::TempFolder folder{"tv-stretch"};
};

} // namespace

TEST_F(Stretch, StartsAtTheImageSizeAsACopyOfIt)
{
    UI::StretchableBits stretch("skin.png", Left, Right, Top, Bottom);
    ASSERT_TRUE(stretch.GetSize().IsPresent());
    EXPECT_EQ(stretch.GetSize().Get(), UI::Size(Width, Height));
    EXPECT_EQ(stretch.GetOriginalSize(), UI::Size(Width, Height));
    EXPECT_EQ(stretch.GetRect(), UI::Rect(0, Width - 1, 0, Height - 1));
    ASSERT_TRUE(stretch.GetBits());
    expectNinePatches(*stretch.GetBits(), Width, Height);
    // The stretched bits are the object's own, not the shared cache entry.
    EXPECT_NE(stretch.GetSharedBits(), UI::Media::GetPNGBits("skin.png", true, 0.0f));
}

TEST_F(Stretch, GrowsEdgesAndMiddleAndKeepsCorners)
{
    UI::StretchableBits stretch("skin.png", Left, Right, Top, Bottom);
    for (UI::Size size : {UI::Size(20, 9), UI::Size(7, 30), UI::Size(4, 3), UI::Size(64, 64)})
    {
        stretch.Resize(size.width, size.height);
        EXPECT_EQ(stretch.GetWidth(), size.width);
        EXPECT_EQ(stretch.GetHeight(), size.height);
        expectNinePatches(*stretch.GetBits(), size.width, size.height);
    }
    stretch.SetWidth(11);
    EXPECT_EQ(stretch.GetSize().Get(), UI::Size(11, 64));
    expectNinePatches(*stretch.GetBits(), 11, 64);

    // An unchanged size does no work: the same bits stay.
    UI::DIBits* before = stretch.GetBits();
    stretch.Resize(11, 64);
    EXPECT_EQ(stretch.GetBits(), before);
}

TEST_F(Stretch, SmallerThanTheEdgesOverlapsCornersLaterOverEarlier)
{
    UI::StretchableBits stretch("skin.png", Left, Right, Top, Bottom);
    stretch.Resize(3, 2);
    UI::DIBits const& bits = *stretch.GetBits();
    // Columns: top-left corner covers 0-1, top-right 1-2 and is drawn later. Rows: the top
    // edge row 0, the bottom corners rows 0-1 drawn later, so they cover row 0 too.
    unsigned int const expected[2][3] = {
        {Patch[2][0], Patch[2][2], Patch[2][2]},
        {Patch[2][0], Patch[2][2], Patch[2][2]},
    };
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(pixel(bits, x, y), expected[y][x]) << x << "," << y;

    // Wider than the edges but lower: the bottom corners and edge cover the top row.
    stretch.Resize(8, 2);
    for (int x = 0; x < 8; ++x)
        EXPECT_EQ(pixel(*stretch.GetBits(), x, 0), Patch[2][patchColumn(x, 8)]) << x;
}

TEST_F(Stretch, EdgesWiderThanTheImageLeaveItUnsized)
{
    UI::StretchableBits stretch("skin.png", 4, 3, 0, 0);
    EXPECT_FALSE(stretch.GetSize().IsPresent());
    EXPECT_EQ(stretch.GetRect(), UI::Rect(0, -1, 0, -1));
    EXPECT_EQ(stretch.GetWidth(), 0);
    // The bits are the plain image, shared with the cache.
    EXPECT_EQ(stretch.GetSharedBits(), UI::Media::GetPNGBits("skin.png", true, 0.0f));

    UI::StretchableBits tall("skin.png", 0, 0, 3, 3);
    EXPECT_FALSE(tall.GetSize().IsPresent());
}

TEST_F(Stretch, AMissingImageHasNothingToStretch)
{
    UI::StretchableBits stretch("missing.png", 1, 1, 1, 1);
    EXPECT_FALSE(stretch.GetBits());
    EXPECT_FALSE(stretch.GetSize().IsPresent());
    EXPECT_EQ(stretch.GetOriginalSize(), UI::Size(0, 0));
    stretch.Resize(10, 10);
    stretch.ApplyGammaCorrection(0.2f);
    stretch.ApplyColorOverlay(0xFFFF0000u, false);
    EXPECT_FALSE(stretch.GetBits());
}

TEST_F(Stretch, GammaRestretchesFromTheCorrectedSource)
{
    UI::StretchableBits stretch("skin.png", Left, Right, Top, Bottom);
    stretch.Resize(9, 7);
    stretch.ApplyGammaCorrection(UI::Media::GAMMA_CORRECTION_RANGE.maximum);
    std::array<unsigned char, 256> const table =
        UI::Media::MakeGammaTable(UI::Media::GAMMA_CORRECTION_RANGE.maximum);
    ASSERT_EQ(stretch.GetSize().Get(), UI::Size(9, 7));
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 9; ++x)
        {
            unsigned int const c = Patch[patchRow(y, 7)][patchColumn(x, 9)];
            unsigned int const corrected = 0xFF000000u | unsigned(table[c >> 16 & 0xFF]) << 16 |
                                           unsigned(table[c >> 8 & 0xFF]) << 8 | table[c & 0xFF];
            ASSERT_EQ(pixel(*stretch.GetBits(), x, y), corrected) << x << "," << y;
        }
}

TEST_F(Stretch, ColorOverlayTintsOnlyThisObjectsBits)
{
    UI::StretchableBits stretch("skin.png", Left, Right, Top, Bottom);
    UI::StretchableBits unsized("skin.png", 9, 9, 0, 0);
    stretch.ApplyColorOverlay(0xFF00FF00u, false);
    unsized.ApplyColorOverlay(0xFF0000FFu, false);
    for (int y = 0; y < Height; ++y)
        for (int x = 0; x < Width; ++x)
        {
            EXPECT_EQ(pixel(*stretch.GetBits(), x, y), 0xFF00FF00u);
            EXPECT_EQ(pixel(*unsized.GetBits(), x, y), 0xFF0000FFu);
        }
    // The shared source is untouched.
    boost::shared_ptr<UI::DIBits> cached = UI::Media::GetPNGBits("skin.png", true, 0.0f);
    EXPECT_EQ(pixel(*cached, 0, 0), Patch[0][0]);
    EXPECT_EQ(pixel(*cached, 5, 4), Patch[2][2]);
}
