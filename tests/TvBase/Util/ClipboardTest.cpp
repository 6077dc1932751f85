#include "TvBase/Util/Clipboard.h"

#include <SDL.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace
{
std::vector<unsigned char> const swatch = {0xFF, 0x10, 0x20, 0x30};
unsigned int const swatchFormat = 0x54560001;
unsigned int const otherFormat = 7;
} // namespace

// Each test runs in its own process under CTest; the fixture starts SDL's video layer with the
// dummy driver, which keeps clipboard text inside SDL.
class ClipboardWithVideo : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setenv("SDL_VIDEODRIVER", "dummy", 1);
        ASSERT_EQ(0, SDL_Init(SDL_INIT_VIDEO)) << SDL_GetError();
    }
    void TearDown() override { SDL_Quit(); }
};

TEST_F(ClipboardWithVideo, TextRoundTripsThroughTheDesktop)
{
    EXPECT_TRUE(Util::Clipboard::SetContent(nullptr, {}, {}, "Palette \xE2\x80\x94 \"Dark\"\n"));
    EXPECT_EQ(String("Palette \xE2\x80\x94 \"Dark\"\n"), Util::Clipboard::GetString(nullptr, 0));
    // SDL itself sees it: another toolkit in the session would paste the same text.
    char* const direct = SDL_GetClipboardText();
    EXPECT_STREQ("Palette \xE2\x80\x94 \"Dark\"\n", direct);
    SDL_free(direct);
}

TEST_F(ClipboardWithVideo, NewContentReplacesTextAndFormatsAlike)
{
    ASSERT_TRUE(Util::Clipboard::SetContent(nullptr, checked_value<unsigned int>(swatchFormat),
                                            swatch, "0xFF102030"));
    EXPECT_TRUE(Util::Clipboard::IsFormatAvailable(swatchFormat));
    EXPECT_FALSE(Util::Clipboard::IsFormatAvailable(otherFormat));
    std::vector<unsigned char> data;
    EXPECT_TRUE(Util::Clipboard::GetContent(nullptr, swatchFormat, data));
    EXPECT_EQ(swatch, data);
    EXPECT_EQ(String("0xFF102030"), Util::Clipboard::GetString(nullptr, 0));

    // Data alone: the old text and the old format are gone.
    ASSERT_TRUE(Util::Clipboard::SetContent(nullptr, checked_value<unsigned int>(otherFormat),
                                            {1, 2}, String()));
    EXPECT_TRUE(Util::Clipboard::GetString(nullptr, 0).IsNull());
    EXPECT_FALSE(Util::Clipboard::IsFormatAvailable(swatchFormat));
    EXPECT_FALSE(Util::Clipboard::GetContent(nullptr, swatchFormat, data));
    EXPECT_TRUE(data.empty());
    EXPECT_TRUE(Util::Clipboard::GetContent(nullptr, otherFormat, data));
    EXPECT_EQ(std::vector<unsigned char>({1, 2}), data);
}

TEST_F(ClipboardWithVideo, NothingToSetLeavesTheContentAlone)
{
    ASSERT_TRUE(Util::Clipboard::SetContent(nullptr, {}, {}, "keep"));
    EXPECT_FALSE(Util::Clipboard::SetContent(nullptr, {}, swatch, ""));
    EXPECT_FALSE(Util::Clipboard::SetContent(nullptr, {}, {}, String()));
    EXPECT_EQ(String("keep"), Util::Clipboard::GetString(nullptr, 0));
}

TEST(ClipboardWithoutVideo, TextStaysInTheProcess)
{
    ASSERT_EQ(0u, SDL_WasInit(SDL_INIT_VIDEO));
    EXPECT_TRUE(Util::Clipboard::GetString(nullptr, 0).IsNull());
    EXPECT_TRUE(Util::Clipboard::SetContent(nullptr, {}, {}, "local text"));
    EXPECT_EQ(String("local text"), Util::Clipboard::GetString(nullptr, 0));
    EXPECT_TRUE(Util::Clipboard::SetContent(nullptr, checked_value<unsigned int>(otherFormat),
                                            swatch, String()));
    EXPECT_TRUE(Util::Clipboard::GetString(nullptr, 0).IsNull());
    EXPECT_TRUE(Util::Clipboard::IsFormatAvailable(otherFormat));
}

TEST(ClipboardFormats, RegistrationGivesTheNumberBack)
{
    EXPECT_EQ(swatchFormat, Util::Clipboard::RegisterFormat("Tavorin Swatch", swatchFormat));
    EXPECT_EQ(0u, Util::Clipboard::RegisterFormat(String(), 0));
}
