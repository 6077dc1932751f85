#include "Canvas/UI/BitBlt.h"
#include "Canvas/UI/DIBits.h"

#include "tests/Canvas/UI/PixelTestImage.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

boost::shared_ptr<UI::DIBits> numbered(int w, int h, bool hasAlpha)
{
    boost::shared_ptr<UI::DIBits> image = UI::CreateDIBits(UI::Size(w, h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            image->GetPixels()[y * w + x] = 0xFF000000u | static_cast<unsigned int>(y * w + x);
    image->SetHasAlpha(hasAlpha);
    return image;
}

} // namespace

TEST(ScaleBlt, HalvesWithBoxSpans)
{
    // 4x4 to 2x2: destination row 0 spans source row 0 alone, row 1 spans rows 1 and 2; the
    // last source row is not reached. Columns go the same way.
    unsigned int src[16];
    for (int i = 0; i < 16; ++i)
        src[i] = static_cast<unsigned int>((i * 16) << 8) | 0x80000000u | static_cast<unsigned>(i);
    PixelTestImage dst(2, 2, 2, 0);
    UI::ScaleBlt(src, 4, UI::Rect(0, 3, 0, 3), dst.bits(), 2, UI::Rect(0, 1, 0, 1));
    EXPECT_EQ(dst.at(0, 0), src[0]);
    // (1,1): source pixels 5, 6, 9, 10: blue (5+6+9+10)/4 = 7.5 -> 8 (nearest even),
    // green 16 * 7.5 = 120.
    EXPECT_EQ(dst.at(1, 1), 0x80007808u);
    // (1,0): row 0, columns 1 and 2: blue 1.5 -> 2, green 24.
    EXPECT_EQ(dst.at(1, 0), 0x80001802u);
    // (0,1): rows 1 and 2, column 0: blue (4 + 8) / 2 = 6, green 96.
    EXPECT_EQ(dst.at(0, 1), 0x80006006u);
    EXPECT_TRUE(dst.GuardsIntact());
}

TEST(ScaleBlt, EnlargesByRepeatingPixels)
{
    unsigned int src[4] = {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004};
    PixelTestImage dst(4, 4, 5, 0);
    UI::ScaleBlt(src, 2, UI::Rect(0, 1, 0, 1), dst.bits(), 5, UI::Rect(0, 3, 0, 3));
    unsigned int const expected[4][4] = {{1, 1, 2, 2}, {1, 1, 2, 2}, {3, 3, 4, 4}, {3, 3, 4, 4}};
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(dst.at(x, y), 0xFF000000u | expected[y][x]) << x << "," << y;
    EXPECT_EQ(dst.at(4, 0), 0u); // the padding column is not touched
}

TEST(ScaleBlt, OnePixelSourceFillsDestination)
{
    unsigned int src = 0x7F123456;
    PixelTestImage dst(7, 5, 7, 0);
    UI::ScaleBlt(&src, 1, UI::Rect(0, 0, 0, 0), dst.bits(), 7, UI::Rect(1, 5, 1, 3));
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 7; ++x)
        {
            bool const inside = x >= 1 && x <= 5 && y >= 1 && y <= 3;
            EXPECT_EQ(dst.at(x, y), inside ? src : 0u);
        }
}

TEST(ScaleBlt, EqualSizesCopy)
{
    boost::shared_ptr<UI::DIBits> src = numbered(5, 3, true);
    boost::shared_ptr<UI::DIBits> dst = UI::CreateDIBits(UI::Size(5, 3), 0u);
    UI::ScaleBlt(src.get(), src->GetRect(), dst.get(), dst->GetRect());
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(dst->GetPixels()[i], src->GetPixels()[i]);
    EXPECT_TRUE(dst->HasAlpha());
}

TEST(ScaleBlt, WrapperClipsAndIgnoresNull)
{
    boost::shared_ptr<UI::DIBits> src = numbered(4, 4, false);
    boost::shared_ptr<UI::DIBits> dst = UI::CreateDIBits(UI::Size(3, 3), 0u);
    dst->SetHasAlpha(true);
    // Null pointers do nothing.
    UI::ScaleBlt(nullptr, UI::Rect(0, 3, 0, 3), dst.get(), UI::Rect(0, 2, 0, 2));
    UI::ScaleBlt(src.get(), UI::Rect(0, 3, 0, 3), nullptr, UI::Rect(0, 2, 0, 2));
    EXPECT_TRUE(dst->HasAlpha());
    // A source rectangle reaching outside is cut to the image (4x4), the destination likewise
    // (to 2x2 from (1,1)): a 2x shrink.
    UI::ScaleBlt(src.get(), UI::Rect(-5, 10, -5, 10), dst.get(), UI::Rect(1, 8, 1, 8));
    EXPECT_FALSE(dst->HasAlpha());
    EXPECT_EQ(dst->GetPixels()[0], 0u);
    EXPECT_EQ(dst->GetPixels()[4], 0xFF000000u);
    // An empty destination: nothing.
    boost::shared_ptr<UI::DIBits> untouched = UI::CreateDIBits(UI::Size(2, 2), 7u);
    UI::ScaleBlt(src.get(), src->GetRect(), untouched.get(), UI::Rect(5, 6, 5, 6));
    EXPECT_EQ(untouched->GetPixels()[3], 7u);
}

TEST(ScaleBlt, LargeImagesAgreeAcrossChunks)
{
    // Wider than one stack chunk of column spans, against the same scaling done in two halves
    // of the destination.
    std::mt19937 random(9);
    PixelTestImage src(700, 6, 704, 0);
    src.Randomize(random);
    PixelTestImage whole(300, 3, 300, 0);
    UI::ScaleBlt(src.bits(), 704, UI::Rect(0, 699, 0, 5), whole.bits(), 300,
                 UI::Rect(0, 299, 0, 2));
    // Every destination pixel is the average of its spans: check one away from the first chunk
    // by hand: column 280 spans source columns trunc(279.5 * 7/3) .. see below.
    float const sx = 700.0f / 300.0f;
    float const x0 = (280.0f - 0.5f) * sx;
    float const x1 = x0 + sx;
    int a = static_cast<int>(x0);
    int b = static_cast<int>(x1);
    if ((x1 - static_cast<float>(b)) >= (static_cast<float>(b) - x0))
        ++a;
    else
        --b;
    // Row 1 spans source rows 1 and 2 (2x shrink).
    unsigned long sum[4] = {0, 0, 0, 0};
    for (int y = 1; y <= 2; ++y)
        for (int x = a; x <= b; ++x)
            for (int c = 0; c < 4; ++c)
                sum[c] += (src.at(x, y) >> (8 * c)) & 255;
    float const scale = 1.0f / static_cast<float>(2 * (b - a + 1));
    unsigned int expected = 0;
    for (int c = 0; c < 4; ++c)
        expected |= static_cast<unsigned int>(std::lrintf(static_cast<float>(sum[c]) * scale))
                    << (8 * c);
    EXPECT_EQ(whole.at(280, 1), expected);
    EXPECT_TRUE(whole.GuardsIntact());
}
