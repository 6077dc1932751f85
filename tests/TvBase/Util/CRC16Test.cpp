#include "TvBase/Util/CRC16.h"

#include <gtest/gtest.h>

#include <cstring>

TEST(CRC16, MatchesTheCheckValueOfTheReflectedPolynomial)
{
    EXPECT_EQ(0xBB3D, Util::CRC16("123456789", 9));
    EXPECT_EQ(0x0000, Util::CRC16("", 0));
    EXPECT_EQ(0x0000, Util::CRC16(nullptr, 5));
    // A single byte 'A' through the table: 0x30C0.
    EXPECT_EQ(0x30C0, Util::CRC16("A", 1));
}

TEST(CRC16, ContinuingGivesTheSameAsOneRun)
{
    char const* text = "The quick brown fox jumps over the lazy dog";
    unsigned int const length = static_cast<unsigned int>(std::strlen(text));
    unsigned short const whole = Util::CRC16(text, length);

    unsigned short pieces = 0;
    Util::CRC16(pieces, text, 10);
    Util::CRC16(pieces, text + 10, length - 10);
    EXPECT_EQ(whole, pieces);

    unsigned short bytes = 0;
    for (unsigned int i = 0; i < length; ++i)
        Util::CRC16(bytes, text[i]);
    EXPECT_EQ(whole, bytes);

    unsigned short unchanged = whole;
    Util::CRC16(unchanged, nullptr, 3);
    EXPECT_EQ(whole, unchanged);
}
