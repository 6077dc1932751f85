#include "Canvas/UI/ColorConversion.h"

#include <gtest/gtest.h>

#include <cstdint>

TEST(ColorText, WritesUpperCaseHexWithAlphaOnlyWhenNotOpaque)
{
    EXPECT_EQ(UI::ConvertColorToString(0xFFFF0000u, false), "FF0000");
    EXPECT_EQ(UI::ConvertColorToString(0xFFFF0000u, true), "#FF0000");
    EXPECT_EQ(UI::ConvertColorToString(0x80FF0000u, false), "FF0000.80");
    EXPECT_EQ(UI::ConvertColorToString(0x80FF0000u, true), "#FF0000.80");
    EXPECT_EQ(UI::ConvertColorToString(0x00000000u, false), "000000.00");
    EXPECT_EQ(UI::ConvertColorToString(0x0A0B0C0Du, false), "0B0C0D.0A");
    EXPECT_EQ(UI::ConvertColorToString(0xFFabcdefu, false), "ABCDEF");
}

TEST(ColorText, ReadsSixOrNineDigits)
{
    EXPECT_EQ(UI::ConvertStringToColor("FF0000"), checked_value<unsigned int>(0xFFFF0000u));
    EXPECT_EQ(UI::ConvertStringToColor("#FF0000"), checked_value<unsigned int>(0xFFFF0000u));
    EXPECT_EQ(UI::ConvertStringToColor("FF0000.80"), checked_value<unsigned int>(0x80FF0000u));
    EXPECT_EQ(UI::ConvertStringToColor("  #00ff7f \n"), checked_value<unsigned int>(0xFF00FF7Fu));
    // The separator byte is not looked at.
    EXPECT_EQ(UI::ConvertStringToColor("123456x9a"), checked_value<unsigned int>(0x9A123456u));
}

TEST(ColorText, RejectsMalformedText)
{
    EXPECT_FALSE(UI::ConvertStringToColor("#80FF0000").IsPresent()); // eight digits
    EXPECT_FALSE(UI::ConvertStringToColor("").IsPresent());
    EXPECT_FALSE(UI::ConvertStringToColor(String()).IsPresent());
    EXPECT_FALSE(UI::ConvertStringToColor("#").IsPresent());
    EXPECT_FALSE(UI::ConvertStringToColor("FFF").IsPresent());
    EXPECT_FALSE(UI::ConvertStringToColor("##FF0000").IsPresent());
    EXPECT_FALSE(UI::ConvertStringToColor("GG0000").IsPresent());
    EXPECT_FALSE(UI::ConvertStringToColor("FF00-1").IsPresent());
    EXPECT_FALSE(UI::ConvertStringToColor("FF0000.8Z").IsPresent());
    EXPECT_FALSE(UI::ConvertStringToColor("FF0000.8").IsPresent());
}

TEST(ColorText, EveryColorSurvivesTheRoundTrip)
{
    // A fixed-seed walk over the 32-bit colors, plus the corners.
    std::uint32_t state = 12345;
    for (int i = 0; i < 20000; ++i)
    {
        state = state * 1664525u + 1013904223u;
        unsigned int color = i == 0 ? 0u : i == 1 ? 0xFFFFFFFFu : state;
        for (bool hash : {false, true})
        {
            String text = UI::ConvertColorToString(color, hash);
            ASSERT_EQ(UI::ConvertStringToColor(text), checked_value<unsigned int>(color)) << text;
        }
    }
}
