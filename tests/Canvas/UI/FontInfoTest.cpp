#include "Canvas/UI/FontInfo.h"

#include "TvBase/Util/CRC16.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace
{

// The key built by hand from the documented byte sequence.
unsigned int referenceKey(UI::FontInfo const& info)
{
    std::vector<char> bytes;
    auto add = [&](void const* data, size_t size)
    {
        char const* p = static_cast<char const*>(data);
        bytes.insert(bytes.end(), p, p + size);
    };
    String const path = info.fontFile.GetInternal();
    add(path.CStr(), path.Length());
    unsigned int const index = info.faceIndex.present ? info.faceIndex.value : 0xFFFFFFFFu;
    add(&index, 4);
    add(info.faceName.CStr(), info.faceName.Length());
    add(&info.size, 4);
    add(&info.spacing, 4);
    add(&info.sharpen, 4);
    add(&info.antiAliasMode, 4);
    for (bool flag : {info.forceAutoHint, info.bold, info.italic, info.underline})
        bytes.push_back(flag ? 1 : 0);
    return static_cast<unsigned int>(
               Util::CRC16(bytes.data(), static_cast<unsigned int>(bytes.size())))
           << 16;
}

} // namespace

TEST(FontInfoKey, IsTheChecksumOfTheLookShiftedUp)
{
    UI::FontInfo info("Arial", 11.0f);
    EXPECT_EQ(referenceKey(info), info.ComputeKey());
    EXPECT_EQ(0u, info.ComputeKey() & 0xFFFF);

    info.fontFile = FilePath("/usr/share/fonts/x.ttf");
    info.faceIndex = 2u;
    info.sharpen = 1;
    info.antiAliasMode = 2;
    info.bold = true;
    info.underline = true;
    EXPECT_EQ(referenceKey(info), info.ComputeKey());
}

TEST(FontInfoKey, ChangesWithTheLookButNotWithFallbackOrKerning)
{
    UI::FontInfo const base("Arial", 11.0f);
    unsigned int const key = base.ComputeKey();

    UI::FontInfo other = base;
    other.fallbackFaceName = "Verdana";
    other.kerning = false;
    other.extraFlag = true;
    EXPECT_EQ(key, other.ComputeKey());

    other = base;
    other.size = 12.0f;
    EXPECT_NE(key, other.ComputeKey());
    other = base;
    other.italic = true;
    EXPECT_NE(key, other.ComputeKey());
    other = base;
    other.faceName = "Arial Black";
    EXPECT_NE(key, other.ComputeKey());
}

TEST(FontInfo, DefaultsAndComparison)
{
    UI::FontInfo const info;
    EXPECT_TRUE(info.fontFile.IsEmpty());
    EXPECT_FALSE(info.faceIndex.present);
    EXPECT_EQ(12.0f, info.size);
    EXPECT_TRUE(info.kerning);
    EXPECT_FALSE(info.bold || info.italic || info.underline || info.forceAutoHint);

    UI::FontInfo a("Arial", 11.0f), b("Arial", 11.0f);
    EXPECT_TRUE(a == b);
    b.kerning = false;
    EXPECT_FALSE(a == b);
    EXPECT_TRUE((a < b) != (b < a));
}
