// Characters that the first face lacks come from a face that fontconfig offers for them, with
// that face's glyphs and advances on the first face's line; with no such face installed they
// stay missing-glyph boxes. The second case runs under a fontconfig that sees the Liberation
// faces alone (see the cmake fragment).
#include "Canvas/UI/FreeTypeFont.h"

#include "tests/Canvas/UI/support/FontTestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace FontTest;

namespace
{

// U+4E00 U+4E8C U+4E09, which no Liberation face has.
char const* const cjk = "\xE4\xB8\x80\xE4\xBA\x8C\xE4\xB8\x89";
// U+0378 three times: unassigned, so no face has it and each is drawn as the box.
char const* const boxes = "\xCD\xB8\xCD\xB8\xCD\xB8";

bool withoutFallbackFaces()
{
    return std::getenv("TV_NO_FALLBACK_FACES") != nullptr;
}

struct Drawn
{
    Picture picture{120, 32, 0xFFFFFFFF};
    UI::Rect rect;
};

Drawn draw(UI::FreeTypeFont& font, char const* text, bool cached = true)
{
    Drawn drawn;
    Picture& p = drawn.picture;
    std::vector<UI::GlyphInfo> glyphs;
    auto const render =
        cached ? &UI::FreeTypeFont::renderTextToBits : &UI::FreeTypeFont::renderTextToBitsUncached;
    drawn.rect =
        (font.*render)(UI::Point(2, 2), String(text), 0xFF000000, 255, p.Bounds(), p.Bits(),
                       p.width, p.Size(), UI::HAlignLeft, UI::VAlignTop, UI::Rect(), glyphs);
    return drawn;
}

int differences(Picture const& a, Picture const& b)
{
    int count = 0;
    for (size_t i = 0; i < a.pixels.size(); ++i)
        count += a.pixels[i] != b.pixels[i];
    return count;
}

} // namespace

TEST(FontFallback, CharactersTheFaceLacksComeFromAFaceThatHasThem)
{
    if (withoutFallbackFaces())
        GTEST_SKIP() << "fontconfig sees no face for the characters here";
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 16.0f, 1));
    ASSERT_TRUE(font.IsValid());
    std::vector<UI::GlyphInfo> glyphs;
    unsigned int const width = font.GetStringWidth(String(cjk), glyphs);
    ASSERT_EQ(3u, glyphs.size());
    UI::FreeTypeFont* const fallback = glyphs[0].font;
    ASSERT_NE(nullptr, fallback);
    ASSERT_NE(&font, fallback);
    for (UI::GlyphInfo const& glyph : glyphs)
    {
        EXPECT_EQ(fallback, glyph.font) << "one face for the line";
        EXPECT_NE(0u, glyph.glyphIndex);
    }
    // The fallback face's own advances, at the same size, not the boxes' ones.
    EXPECT_EQ(fallback->GetStringWidth(String(cjk)), width);
    EXPECT_NE(font.GetStringWidth(String(boxes)), width);
    EXPECT_FLOAT_EQ(font.GetFontInfo().size, fallback->GetFontInfo().size);

    // Latin letters around it stay with the first face.
    std::vector<UI::GlyphInfo> mixed;
    font.GetStringWidth(String("a\xE4\xB8\x80z"), mixed);
    ASSERT_EQ(3u, mixed.size());
    EXPECT_EQ(&font, mixed[0].font);
    EXPECT_EQ(fallback, mixed[1].font);
    EXPECT_EQ(&font, mixed[2].font);

    // Drawn with the fallback's glyphs on the first face's line, the same by both renderers.
    Drawn const text = draw(font, cjk);
    Drawn const box = draw(font, boxes);
    EXPECT_EQ(font.GetHeight(), text.rect.Height());
    EXPECT_EQ(static_cast<int>(width), text.rect.Width());
    EXPECT_GT(differences(text.picture, box.picture), 40);
    EXPECT_EQ(0, differences(text.picture, draw(font, cjk, false).picture));
}

TEST(FontFallback, WithoutAFaceThatHasThemTheyAreBoxes)
{
    if (!withoutFallbackFaces())
        GTEST_SKIP() << "runs where fontconfig sees the Liberation faces alone";
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 16.0f, 1));
    ASSERT_TRUE(font.IsValid());
    std::vector<UI::GlyphInfo> glyphs;
    unsigned int const width = font.GetStringWidth(String(cjk), glyphs);
    ASSERT_EQ(3u, glyphs.size());
    for (UI::GlyphInfo const& glyph : glyphs)
    {
        EXPECT_EQ(&font, glyph.font);
        EXPECT_EQ(0u, glyph.glyphIndex);
    }
    EXPECT_EQ(font.GetStringWidth(String(boxes)), width);
    EXPECT_EQ(0, differences(draw(font, cjk).picture, draw(font, boxes).picture));
}
