#include "Canvas/UI/DIBits.h"

#include <gtest/gtest.h>

TEST(DIBits, DefaultIsEmpty)
{
    UI::DIBits bits;
    EXPECT_EQ(bits.GetPixels(), nullptr);
    EXPECT_EQ(bits.GetStride(), 0);
    EXPECT_EQ(bits.GetWidth(), -1);
    EXPECT_EQ(bits.GetHeight(), -1);
    EXPECT_FALSE(bits.HasAlpha());
    EXPECT_FALSE(bits.IsValid());
    EXPECT_EQ(bits.Copy().GetPixels(), nullptr);
}

TEST(DIBits, CopyingSharesAndCopyDuplicates)
{
    boost::shared_ptr<UI::DIBits> image = UI::CreateDIBits(UI::Size(3, 2), 0xFF112233u);
    ASSERT_TRUE(image->IsValid());
    EXPECT_EQ(image->GetStride(), 3);
    EXPECT_FALSE(image->HasAlpha());
    EXPECT_EQ(image->GetPixels()[5], 0xFF112233u);
    UI::DIBits shared = *image;
    UI::DIBits copy = image->Copy();
    image->GetPixels()[0] = 7;
    EXPECT_EQ(shared.GetPixels()[0], 7u);
    EXPECT_EQ(copy.GetPixels()[0], 0xFF112233u);
    EXPECT_EQ(image->CopyToPtr()->GetPixels()[0], 7u);
    EXPECT_FALSE(UI::CreateDIBits(UI::Size(0, 4))->IsValid());
}

TEST(DIBits, CopyRectClipsToImage)
{
    boost::shared_array<unsigned int> pixels(new unsigned int[8 * 3]);
    for (int i = 0; i < 24; ++i)
        pixels[i] = static_cast<unsigned int>(i);
    UI::DIBits image(pixels, 8, 6, 3, true); // two padding pixels a row
    UI::DIBits part = image.CopyRect(UI::Rect(4, 9, 1, 5));
    EXPECT_EQ(part.GetWidth(), 2);
    EXPECT_EQ(part.GetHeight(), 2);
    EXPECT_EQ(part.GetStride(), 2);
    EXPECT_TRUE(part.HasAlpha());
    EXPECT_EQ(part.GetPixels()[0], 12u);
    EXPECT_EQ(part.GetPixels()[1], 13u);
    EXPECT_EQ(part.GetPixels()[2], 20u);
    EXPECT_EQ(part.GetPixels()[3], 21u);
    // Outside the image: empty, not an error.
    UI::DIBits outside = image.CopyRect(UI::Rect(6, 9, 0, 2));
    EXPECT_EQ(outside.GetPixels(), nullptr);
    EXPECT_EQ(outside.GetWidth(), -1);
    EXPECT_EQ(image.CopyRectToPtr(UI::Rect(-5, -1, 0, 2))->GetPixels(), nullptr);
}

TEST(DIBits, ColorOverlayKeepsCoverage)
{
    boost::shared_ptr<UI::DIBits> image = UI::CreateDIBits(UI::Size(2, 1), 0u);
    image->GetPixels()[0] = 0xC8123456;
    image->GetPixels()[1] = 0x00ABCDEF;
    UI::DIBits plain = image->ColorOverlay(0x80FF0000, false);
    EXPECT_EQ(plain.GetPixels()[0], 0xC8FF0000u);
    EXPECT_EQ(plain.GetPixels()[1], 0x00FF0000u);
    // With the color's alpha: trunc(200 * 128 * 0.003921569) = 100.
    image->ApplyColorOverlay(0x8000FF00, true);
    EXPECT_EQ(image->GetPixels()[0], 0x6400FF00u);
    EXPECT_EQ(image->GetPixels()[1], 0x0000FF00u);
}

TEST(DIBits, SetPixelsCopiesOneRun)
{
    boost::shared_ptr<UI::DIBits> image = UI::CreateDIBits(UI::Size(2, 2), 0u);
    unsigned int const source[4] = {1, 2, 3, 4};
    image->SetPixels(source);
    EXPECT_EQ(image->GetPixels()[3], 4u);
    image->SetPixels(nullptr);
    EXPECT_EQ(image->GetPixels()[0], 1u);
}
