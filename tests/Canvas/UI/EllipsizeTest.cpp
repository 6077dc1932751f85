#include "Canvas/UI/Ellipsize.h"
#include "Canvas/UI/Font.h"
#include "tests/Canvas/UI/support/FontTestSupport.h"

#include <gtest/gtest.h>

using namespace FontTest;

namespace
{

// True when every multi-byte sequence in the text is whole.
bool isWholeUtf8(String const& text)
{
    unsigned int i = 0;
    while (i < text.Length())
    {
        unsigned char const lead = text[i].Byte();
        unsigned int const length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (lead >= 0x80 && lead < 0xC0)
            return false;
        for (unsigned int k = 1; k < length; ++k)
            if (i + k >= text.Length() || (text[i + k].Byte() & 0xC0) != 0x80)
                return false;
        i += length;
    }
    return true;
}

} // namespace

TEST(Ellipsize, TextThatFitsStaysAsItIsAndTooLittleRoomLeavesTheEllipsis)
{
    UI::Font font(nullptr, FileInfo(LiberationSans, 12.0f));
    int const width = static_cast<int>(font.GetStringWidth("Short"));
    EXPECT_EQ(String("Short"), UI::Ellipsize(&font, "Short", width + 1, UI::EllipsisEnd));
    // Fitting means strictly less than the limit.
    EXPECT_NE(String("Short"), UI::Ellipsize(&font, "Short", width, UI::EllipsisEnd));
    EXPECT_EQ(String("Short"), UI::Ellipsize(nullptr, "Short", 1, UI::EllipsisEnd));

    // A limit below the ellipsis gives the ellipsis; at exactly its width no character fits
    // beside it.
    int const dots = static_cast<int>(font.GetStringWidth("..."));
    EXPECT_EQ(String("..."), UI::Ellipsize(&font, "Something long", dots - 1, UI::EllipsisEnd));
    EXPECT_EQ(String("..."), UI::Ellipsize(&font, "Something long", 0, UI::EllipsisMiddle));
    EXPECT_EQ(String("..."), UI::Ellipsize(&font, "Something long", dots, UI::EllipsisEnd));
}

TEST(Ellipsize, EndModeKeepsTheLongestHeadThatFitsAndMiddleModeBothEnds)
{
    UI::Font font(nullptr, FileInfo(LiberationSans, 12.0f));
    String const text("Checking for Tavorin updates");
    for (int limit = 20; limit < 150; limit += 7)
    {
        String const result = UI::Ellipsize(&font, text, limit, UI::EllipsisEnd);
        ASSERT_TRUE(result.EndsWith("...")) << limit;
        String const head = result.Left(result.Length() - 3);
        EXPECT_TRUE(text.BeginsWith(head));
        EXPECT_LT(static_cast<int>(font.GetStringWidth(result)), limit);
        // One more character would not have fitted.
        String const longer = text.Left(head.Length() + 1) + "...";
        EXPECT_GE(static_cast<int>(font.GetStringWidth(longer)), limit);
    }

    // The middle mode keeps both ends, the tail one shorter.
    String const letters("abcdefghijklmnopqrstuvwxyz");
    String const result = UI::Ellipsize(&font, letters, 70, UI::EllipsisMiddle);
    checked_value<unsigned int> const dots = result.Find("...");
    ASSERT_TRUE(dots);
    String const head = result.Left(*dots);
    String const tail = result.Mid(*dots + 3);
    EXPECT_TRUE(letters.BeginsWith(head));
    EXPECT_TRUE(letters.EndsWith(tail));
    EXPECT_TRUE(head.Length() == tail.Length() || head.Length() == tail.Length() + 1);
    EXPECT_GT(head.Length(), 1u);
    EXPECT_LT(static_cast<int>(font.GetStringWidth(result)), 70);
}

TEST(Ellipsize, NeverCutsInsideACharacter)
{
    UI::Font font(nullptr, FileInfo(LiberationSans, 12.0f));
    // Two-, three- and four-byte characters.
    String const text("\xC3\x84pfel \xE2\x82\xAC \xE2\x98\x83\xE2\x98\x83 \xF0\x9F\x98\x80 "
                      "\xC3\xBC\xC3\xBC\xC3\xBC Stra\xC3\x9F"
                      "e");
    ASSERT_TRUE(isWholeUtf8(text));
    for (int limit = 0; limit < 200; ++limit)
        for (UI::EllipsisMode mode : {UI::EllipsisEnd, UI::EllipsisMiddle})
        {
            String const result = UI::Ellipsize(&font, text, limit, mode);
            ASSERT_TRUE(isWholeUtf8(result)) << limit << " " << mode << " " << result;
        }
}
