#include "Canvas/UI/FreeTypeFont.h"
#include "Canvas/UI/Font.h"
#include "tests/Canvas/UI/support/FontTestSupport.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/File.h"

#include <fstream>

using namespace FontTest;
using TestSupport::TempFolder;

TEST(FontLookup, ArialResolvesToTheMetricCompatibleFaceAndUnknownFacesToNothing)
{
    EXPECT_EQ(FilePath(LiberationSans), UI::Font::GetNSFontForInfo("Arial", false, false));
    EXPECT_EQ(FilePath("/usr/share/fonts/truetype/liberation2/LiberationSans-BoldItalic.ttf"),
              UI::Font::GetNSFontForInfo("Arial", true, true));
    EXPECT_EQ(FilePath(LiberationSans),
              UI::Font::GetNSFontForInfo("Liberation Sans", false, false));
    EXPECT_EQ(FilePath(LiberationSerif),
              UI::Font::GetNSFontForInfo("times new roman", false, false));

    // Unknown faces are not replaced by a default.
    EXPECT_TRUE(UI::Font::GetNSFontForInfo("No Such Face Anywhere", false, false).IsEmpty());
    EXPECT_TRUE(UI::Font::GetNSFontForInfo("", false, false).IsEmpty());

    UI::FontInfo info("No Such Face Anywhere", 12.0f);
    EXPECT_TRUE(UI::Font::GetNSFontForInfo(info).IsEmpty());
    info.fallbackFaceName = "Arial";
    EXPECT_EQ(FilePath(LiberationSans), UI::Font::GetNSFontForInfo(info));
}

TEST(FontOpening, FallbackFaceServesWhenTheFirstIsMissing)
{
    UI::FontInfo info("No Such Face Anywhere", 12.0f);
    info.fallbackFaceName = "Arial";
    UI::FreeTypeFont font(nullptr, info);
    ASSERT_TRUE(font.IsValid());
    EXPECT_EQ(FilePath(LiberationSans), font.GetFontInfo().fontFile);
    // The key stays that of the font as asked for.
    EXPECT_EQ(info.ComputeKey(), font.GetKey());
}

TEST(FontOpening, AFaceThatCannotBeOpenedMeasuresZeroAndDrawsNothing)
{
    TempFolder folder;
    std::string const notAFont = folder / "broken.ttf";
    std::ofstream(notAFont) << "this is not a font";

    std::vector<UI::FontInfo> infos = {Info("No Such Face Anywhere", 12.0f),
                                       FileInfo(notAFont.c_str(), 12.0f),
                                       FileInfo((folder / "missing.ttf").c_str(), 12.0f)};
    for (UI::FontInfo const& info : infos)
    {
        UI::Font font(nullptr, info);
        EXPECT_EQ(nullptr, font.GetFreeTypeFont());
        EXPECT_EQ(0u, font.GetStringWidth("Hello"));
        EXPECT_TRUE(font.GetNativeFont().IsEmpty());
        EXPECT_EQ(0, font.GetHeight());

        Picture picture(40, 20, 0xFFFFFFFF);
        UI::DIBits bits = picture.AsBits();
        UI::Rect const drawn =
            font.RenderText(UI::Point(0, 0), "Hello", 0xFF000000, 255, picture.Bounds(), bits,
                            UI::HAlignLeft, UI::VAlignTop, UI::Rect());
        EXPECT_TRUE(drawn.IsEmpty());
        for (unsigned int p : picture.pixels)
            ASSERT_EQ(0xFFFFFFFFu, p);

        UI::FreeTypeFont raw(nullptr, info);
        EXPECT_FALSE(raw.IsValid());
        std::vector<UI::GlyphInfo> glyphs;
        EXPECT_EQ(0u, raw.GetStringWidth("Hello", glyphs));
        EXPECT_TRUE(DrawInto(raw, picture, UI::Point(0, 0), "Hello", 0xFF000000).IsEmpty());
        for (unsigned int p : picture.pixels)
            ASSERT_EQ(0xFFFFFFFFu, p);
    }
}

TEST(FontOpening, MetricsFollowTheFaceAtTheRequestedSize)
{
    // Liberation Sans: ascender 1854, descender -434 units of 2048.
    for (float size : {11.0f, 13.0f, 24.0f})
    {
        UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, size));
        ASSERT_TRUE(font.IsValid());
        EXPECT_GE(font.GetAscent(), int(size * 1854 / 2048));
        EXPECT_LE(font.GetAscent(), int(size * 1854 / 2048) + 2);
        EXPECT_GE(font.GetDescent(), int(size * 434 / 2048));
        EXPECT_EQ(font.GetAscent() + font.GetDescent() + 1, font.GetHeight());
    }
}

TEST(FontOpening, LoadFlagsFollowHintingAndAutoHintAndMixFactorsTheSizeTable)
{
    UI::FontInfo info = FileInfo(LiberationSans, 12.0f, 0);
    EXPECT_EQ(0x21000u, UI::FreeTypeFont(nullptr, info).GetLoadFlags());
    info.forceAutoHint = true;
    EXPECT_EQ(0x21020u, UI::FreeTypeFont(nullptr, info).GetLoadFlags());
    info = FileInfo(LiberationSans, 12.0f, 2);
    EXPECT_EQ(0u, UI::FreeTypeFont(nullptr, info).GetLoadFlags());
    info.forceAutoHint = true;
    EXPECT_EQ(32u, UI::FreeTypeFont(nullptr, info).GetLoadFlags());

    // The mix factor by the size table.
    using UI::FreeTypeFont;
    EXPECT_EQ(0.0f, FreeTypeFont::ComputeMixFactor(0, 2, 10.0f));
    EXPECT_EQ(1.0f, FreeTypeFont::ComputeMixFactor(1, 1, 10.0f));
    EXPECT_EQ(0.6f, FreeTypeFont::ComputeMixFactor(1, 2, 10.5f));
    EXPECT_EQ(0.65f, FreeTypeFont::ComputeMixFactor(1, 2, 11.0f));
    EXPECT_EQ(0.7f, FreeTypeFont::ComputeMixFactor(1, 2, 12.5f));
    EXPECT_EQ(0.75f, FreeTypeFont::ComputeMixFactor(1, 0, 13.0f));
    EXPECT_EQ(0.8f, FreeTypeFont::ComputeMixFactor(1, 2, 14.9f));
    EXPECT_EQ(0.85f, FreeTypeFont::ComputeMixFactor(1, 2, 15.0f));
    EXPECT_EQ(0.9f, FreeTypeFont::ComputeMixFactor(1, 2, 16.0f));
    EXPECT_EQ(0.9f, FreeTypeFont::ComputeMixFactor(2, 2, 40.0f));

    EXPECT_EQ(0.6f,
              UI::FreeTypeFont(nullptr, FileInfo(LiberationSans, 10.5f, 2, 1)).GetMixFactor());
    EXPECT_EQ(0.9f,
              UI::FreeTypeFont(nullptr, FileInfo(LiberationSans, 16.0f, 2, 1)).GetMixFactor());
}

TEST(FontOpening, GlyphCacheIsWarmedWithReadoutCharacters)
{
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 12.0f));
    // "1234567890-+:k" holds fourteen distinct characters, all in the face.
    EXPECT_EQ(14u, font.GetGlyphCacheCount());
    font.GetStringWidth("0815-42");
    EXPECT_EQ(14u, font.GetGlyphCacheCount());
    font.GetStringWidth("xyz");
    EXPECT_EQ(17u, font.GetGlyphCacheCount());
}

TEST(FontMeasuring, WidthIsTheSumOfRoundedAdvances)
{
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 13.0f));
    std::vector<UI::GlyphInfo> glyphs;
    unsigned int const width = font.GetStringWidth("Hello", glyphs);
    ASSERT_EQ(5u, glyphs.size());
    unsigned int sum = 0;
    for (char const* c : {"H", "e", "l", "l", "o"})
        sum += font.GetStringWidth(c);
    EXPECT_EQ(sum, width); // no kerning pairs in "Hello"
    for (UI::GlyphInfo const& g : glyphs)
    {
        EXPECT_EQ(&font, g.font);
        EXPECT_NE(0u, g.glyphIndex);
    }
    EXPECT_EQ(0u, font.GetStringWidth(""));
    EXPECT_EQ(0u, font.GetStringWidth(String()));
    // Invalid UTF-8 can't be converted and measures nothing.
    EXPECT_EQ(0u, font.GetStringWidth("\xC3"));
    // Wider text, wider measure; a bigger size, bigger widths.
    EXPECT_LT(font.GetStringWidth("iii"), font.GetStringWidth("WWW"));
    EXPECT_LT(width,
              UI::FreeTypeFont(nullptr, FileInfo(LiberationSans, 26.0f)).GetStringWidth("Hello"));
}

TEST(FontMeasuring, KerningPairsTightenOnlyWhenAsked)
{
    UI::FontInfo kerned = FileInfo(LiberationSerif, 20.0f, 2);
    UI::FontInfo plain = kerned;
    plain.kerning = false;
    UI::FreeTypeFont withKerning(nullptr, kerned), without(nullptr, plain);
    EXPECT_TRUE(withKerning.IsKerning());
    EXPECT_FALSE(without.IsKerning());
    EXPECT_LT(withKerning.GetStringWidth("AV"), without.GetStringWidth("AV"));
    EXPECT_EQ(without.GetStringWidth("A") + without.GetStringWidth("V"),
              without.GetStringWidth("AV"));
    EXPECT_EQ(withKerning.GetStringWidth("HH"), without.GetStringWidth("HH"));
}

TEST(FontMeasuring, MissingCharactersComeFromExtraFontsInOrder)
{
    if (!Util::File(FilePath(DejaVuSans)).Exists())
        GTEST_SKIP() << "needs the package fonts-dejavu-core for a face with U+2603";
    Context canvas;
    // Slot 0 lacks the snowman as the main face does; slot 1 has it.
    canvas.extraFonts.emplace_back(new UI::Font(nullptr, FileInfo(LiberationSerif, 11.0f)));
    canvas.extraFonts.emplace_back(new UI::Font(nullptr, FileInfo(DejaVuSans, 11.0f)));
    canvas.extraFonts.emplace_back(new UI::Font(nullptr, FileInfo(LiberationSans, 11.0f)));
    UI::FreeTypeFont font(&canvas, FileInfo(LiberationSans, 13.0f));

    std::vector<UI::GlyphInfo> glyphs;
    unsigned int const width = font.GetStringWidth("a\xE2\x98\x83"
                                                   "b",
                                                   glyphs);
    ASSERT_EQ(3u, glyphs.size());
    EXPECT_EQ(&font, glyphs[0].font);
    EXPECT_EQ(canvas.extraFonts[1]->GetFreeTypeFont(), glyphs[1].font);
    EXPECT_EQ(&font, glyphs[2].font);
    EXPECT_EQ(font.GetStringWidth("ab") +
                  canvas.extraFonts[1]->GetFreeTypeFont()->GetStringWidth("\xE2\x98\x83"),
              width);
}

TEST(FontMeasuring, ACharacterNoFaceHasIsTheMissingGlyphBox)
{
    Context canvas;
    canvas.extraFonts.emplace_back(new UI::Font(nullptr, FileInfo(LiberationSerif, 11.0f)));
    UI::FreeTypeFont font(&canvas, FileInfo(LiberationSans, 13.0f));
    std::vector<UI::GlyphInfo> glyphs;
    // U+0378 is unassigned: no face has it.
    unsigned int const width = font.GetStringWidth("a\xCD\xB8", glyphs);
    ASSERT_EQ(2u, glyphs.size());
    EXPECT_EQ(0u, glyphs[1].glyphIndex);
    EXPECT_EQ(&font, glyphs[1].font);
    EXPECT_GT(width, font.GetStringWidth("a"));
    EXPECT_GT(canvas.extraFontRequests, 0);
}

TEST(FontOpening, ForcingTheSystemRendererLeavesTextSilent)
{
    // This host has no second renderer: the preference makes every font measure 0.
    Util::ConfigFile settings("com.tavorin");
    settings.SetBool("ForceSystemFontRenderer", true);
    {
        UI::Font forced(nullptr, Info("Arial", 12.0f));
        EXPECT_EQ(nullptr, forced.GetFreeTypeFont());
        EXPECT_EQ(0u, forced.GetStringWidth("Hello"));
    }
    settings.SetBool("ForceSystemFontRenderer", false);
    UI::Font normal(nullptr, Info("Arial", 12.0f));
    EXPECT_NE(nullptr, normal.GetFreeTypeFont());
    EXPECT_GT(normal.GetStringWidth("Hello"), 0u);
    settings.RemoveValue("ForceSystemFontRenderer");
}
