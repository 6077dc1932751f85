#include "Canvas/UI/Native/DIBSection.h"

#include "Canvas/UI/DIBits.h"

#include <gtest/gtest.h>

#include <cstdint>

TEST(DIBSection, RoundsStrideToSixteenPixels)
{
    EXPECT_EQ(UI::Native::DIBSection(UI::Size(17, 2)).GetStride(), 32);
    EXPECT_EQ(UI::Native::DIBSection(UI::Size(16, 2)).GetStride(), 16);
    EXPECT_EQ(UI::Native::DIBSection(UI::Size(1, 1)).GetStride(), 16);
    UI::Native::DIBSection section(UI::Size(17, 3));
    ASSERT_NE(section.GetPixels(), nullptr);
    // Rows start 16-pixel aligned, and every pixel, padding included, starts at zero.
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(section.GetPixels()) % 16, 0u);
    for (int i = 0; i < 32 * 3; ++i)
        EXPECT_EQ(section.GetPixels()[i], 0u);
}

TEST(DIBSection, NegativeSizeHasNoBits)
{
    UI::Native::DIBSection wide(UI::Size(-1, 5));
    EXPECT_EQ(wide.GetPixels(), nullptr);
    EXPECT_EQ(wide.GetStride(), 0);
    UI::Native::DIBSection tall(UI::Size(5, -3));
    EXPECT_EQ(tall.GetPixels(), nullptr);
    EXPECT_EQ(tall.GetStride(), 0);
    EXPECT_FALSE(tall.GetBits());
    UI::Native::DIBSection none;
    EXPECT_EQ(none.GetPixels(), nullptr);
}

TEST(DIBSection, CopiesKeepPaddedStride)
{
    UI::Native::DIBSection section(UI::Size(3, 2));
    section.GetPixels()[0] = 0xFF010203;
    section.GetPixels()[16 + 2] = 0x80FFFFFF;
    boost::shared_ptr<UI::DIBits> bits = section.GetBits();
    ASSERT_TRUE(bits);
    EXPECT_EQ(bits->GetStride(), 16);
    EXPECT_EQ(bits->GetWidth(), 3);
    EXPECT_EQ(bits->GetHeight(), 2);
    EXPECT_EQ(bits->GetPixels()[18], 0x80FFFFFFu);
    // A copy, not a view.
    section.GetPixels()[0] = 0;
    EXPECT_EQ(bits->GetPixels()[0], 0xFF010203u);

    boost::shared_ptr<UI::Native::DIBSection> copy = section.CopyContext();
    EXPECT_EQ(copy->GetSize(), section.GetSize());
    EXPECT_EQ(copy->GetPixels()[18], 0x80FFFFFFu);
    EXPECT_NE(copy->GetPixels(), section.GetPixels());
}
