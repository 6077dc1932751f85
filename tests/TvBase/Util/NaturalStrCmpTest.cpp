#include "TvBase/Util/NaturalStrCmp.h"
#include "TvBase/Util/SimpleRandGenerator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace
{
bool before(char const* a, char const* b)
{
    return Util::NaturalStrCmp()(String(a), String(b));
}
} // namespace

TEST(NaturalStrCmp, NumbersByValueOtherRunsByByte)
{
    EXPECT_TRUE(before("a2", "a10"));
    EXPECT_FALSE(before("a10", "a2"));
    EXPECT_TRUE(before("file9.png", "file10.png"));
    EXPECT_TRUE(before("v1.9", "v1.10"));
    EXPECT_TRUE(before("99", "100"));
    // Long runs are compared digit by digit, never through a machine number.
    EXPECT_TRUE(before("123456789012345678901", "123456789012345678902"));
    EXPECT_TRUE(before("99999999999999999999", "100000000000000000000"));
    // Leading zeros count only between equal values.
    EXPECT_TRUE(before("a2", "a02"));
    EXPECT_FALSE(before("a02", "a2"));
    EXPECT_TRUE(before("a02", "a3"));
    EXPECT_TRUE(before("0", "00"));
    // The zeros decide before what follows them.
    EXPECT_TRUE(before("a7c", "a07b"));
    EXPECT_FALSE(before("a007b", "a7c"));
    // Digits come before other bytes.
    EXPECT_TRUE(before("1", "a"));
    EXPECT_FALSE(before("a", "1"));
    EXPECT_TRUE(before("x1", "xa"));
    EXPECT_TRUE(before("9", "!"));
    // Other runs compare byte by byte with case.
    EXPECT_TRUE(before("a", "a1"));
    EXPECT_TRUE(before("a", "b"));
    EXPECT_TRUE(before("B", "a"));
    EXPECT_TRUE(before("ab", "abc"));
    EXPECT_TRUE(before("abc1", "abd0"));
    // Bytes above 127 sort after ASCII.
    EXPECT_TRUE(before("z", "\xC3\xA9"));
    // Equal texts are not less.
    EXPECT_FALSE(before("a10", "a10"));
    EXPECT_FALSE(before("", ""));
    EXPECT_FALSE(Util::NaturalStrCmp()(String(), String("")));
    EXPECT_TRUE(Util::NaturalStrCmp()(String(), String("a")));
    EXPECT_FALSE(before("a", ""));
}

TEST(NaturalStrCmp, SortsAFolderListingByChunksOfOneClass)
{
    std::vector<String> names = {"img12.png", "img10.png", "IMG3.png", "img2.png",
                                 "img1.png",  "img02.png", "img.png",  "img1a.png"};
    std::sort(names.begin(), names.end(), Util::NaturalStrCmp());
    // "img" is a prefix of "img.png", so the numbered names come first.
    EXPECT_EQ(std::vector<String>({"IMG3.png", "img1.png", "img1a.png", "img2.png", "img02.png",
                                   "img10.png", "img12.png", "img.png"}),
              names);
    // Chunks are runs of one class.
    bool digits = false;
    EXPECT_EQ(3u, Util::detail::classifyChunk("007abc", 6, 0, digits));
    EXPECT_TRUE(digits);
    EXPECT_EQ(6u, Util::detail::classifyChunk("007abc", 6, 3, digits));
    EXPECT_FALSE(digits);
    EXPECT_EQ(2u, Util::detail::classifyChunk("a.9", 3, 0, digits));
    EXPECT_FALSE(digits);
}

TEST(NaturalStrCmp, IsAStrictOrderOverMixedTexts)
{
    // Short texts of digits, zeros and letters, from a fixed series.
    Util::SimpleRandGenerator random(checked_value<unsigned int>(7));
    char const alphabet[] = "0019aAb.";
    std::vector<String> texts;
    for (int i = 0; i < 120; ++i)
    {
        String text("");
        unsigned int const length = random.GetNext() % 5;
        for (unsigned int j = 0; j < length; ++j)
            text += Char(alphabet[random.GetNext() % 8]);
        texts.push_back(text);
    }
    Util::NaturalStrCmp const less;
    for (String const& a : texts)
    {
        EXPECT_FALSE(less(a, a));
        for (String const& b : texts)
        {
            bool const ab = less(a, b);
            bool const ba = less(b, a);
            EXPECT_FALSE(ab && ba) << a << " / " << b;
            // Only identical texts are unordered.
            EXPECT_EQ(a == b, !ab && !ba) << a << " / " << b;
            if (!ab)
                continue;
            for (String const& c : texts)
            {
                if (!less(b, c))
                    continue;
                EXPECT_TRUE(less(a, c)) << a << " < " << b << " < " << c;
            }
        }
    }
}
