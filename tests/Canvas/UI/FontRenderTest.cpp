#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/FreeTypeFont.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/detail/TextPixels.h"
#include "tests/Canvas/UI/support/FontTestSupport.h"

#include <gtest/gtest.h>

#include <random>

using namespace FontTest;

namespace
{

struct ReferenceCase
{
    char const* name;
    char const* fontFile;
    float size;
    int antiAliasMode;
    int sharpen;
    bool kerning;
    bool underline;
    char const* text;
    unsigned int color;
    unsigned int background;
    unsigned char alpha;
    UI::HAlignment hAlign;
    UI::VAlignment vAlign;
    UI::Point point;
    UI::Rect box;
};

char const* const boldItalic =
    "/usr/share/fonts/truetype/liberation2/LiberationSans-BoldItalic.ttf";

// Sizes, colours, grounds, hinting modes and alignments that the toolkit's windows use, with
// kerning pairs and a character that no face has.
std::vector<ReferenceCase> const referenceCases = {
    {"mono13_black_on_white", LiberationSans, 13, 0, 0, true, false, "Hello, World 0815",
     0xFF000000, 0xFFFFFFFF, 255, UI::HAlignLeft, UI::VAlignTop, UI::Point(2, 2), UI::Rect()},
    {"mix11_white_on_navy_centred_in_box", LiberationSans, 11, 2, 1, true, false,
     "Check for updates", 0xFFFFFFFF, 0xFF1A2A4A, 255, UI::HAlignCenter, UI::VAlignCenter,
     UI::Point(0, 0), UI::Rect(0, 139, 0, 27)},
    {"grey16_red_on_grey_right_underlined", LiberationSans, 16, 1, 1, true, true,
     "Tavorin Mixer 3.0", 0xFFC01010, 0xFFD8D8D8, 255, UI::HAlignRight, UI::VAlignBottom,
     UI::Point(178, 30), UI::Rect()},
    {"serif20_kerning_on", LiberationSerif, 20, 2, 0, true, false, "AVATAR To Ty", 0xFF202020,
     0xFFF0F0E0, 255, UI::HAlignLeft, UI::VAlignTop, UI::Point(3, 4), UI::Rect()},
    {"serif20_kerning_off", LiberationSerif, 20, 2, 0, false, false, "AVATAR To Ty", 0xFF202020,
     0xFFF0F0E0, 255, UI::HAlignLeft, UI::VAlignTop, UI::Point(3, 4), UI::Rect()},
    {"missing_glyph_box", LiberationSans, 14, 2, 1, true, false, "a\xCD\xB8z", 0xFF003366,
     0xFFFFFFFF, 255, UI::HAlignLeft, UI::VAlignTop, UI::Point(4, 4), UI::Rect()},
    {"bold_italic14_half_alpha_centred_point", boldItalic, 14, 2, 1, true, false, "fjord -+: 12k",
     0xFF10A040, 0xFF303030, 128, UI::HAlignCenter, UI::VAlignCenter, UI::Point(90, 16),
     UI::Rect()},
};

Picture drawReference(ReferenceCase const& c, bool cached)
{
    Picture picture(180, 32, c.background);
    UI::FontInfo info = FileInfo(c.fontFile, c.size, c.antiAliasMode, c.sharpen);
    info.kerning = c.kerning;
    info.underline = c.underline;
    UI::FreeTypeFont font(nullptr, info);
    EXPECT_TRUE(font.IsValid()) << c.name;
    EXPECT_FALSE(DrawInto(font, picture, c.point, c.text, c.color, c.alpha, cached, c.hAlign,
                          c.vAlign, c.box)
                     .IsEmpty())
        << c.name;
    return picture;
}

int countDifferences(Picture const& a, Picture const& b)
{
    int differences = 0;
    for (size_t i = 0; i < a.pixels.size(); ++i)
        differences += a.pixels[i] != b.pixels[i];
    return differences;
}

/// Draws through the coverage cache and the two-pass renderer onto copies of `ground` and
/// expects the same rectangle and pixels; returns the rectangle.
UI::Rect expectSameAsTwoPass(UI::FreeTypeFont& font, Picture const& ground, UI::Point point,
                             char const* text, unsigned int color, unsigned char alpha,
                             std::string const& where, UI::HAlignment hAlign = UI::HAlignLeft,
                             UI::VAlignment vAlign = UI::VAlignTop, UI::Rect box = UI::Rect(),
                             checked_value<UI::Rect> clip = {})
{
    Picture reference = ground, cached = ground;
    UI::Rect const a =
        DrawInto(font, reference, point, text, color, alpha, false, hAlign, vAlign, box, clip);
    UI::Rect const b =
        DrawInto(font, cached, point, text, color, alpha, true, hAlign, vAlign, box, clip);
    EXPECT_EQ(a, b) << where;
    EXPECT_EQ(0, countDifferences(reference, cached)) << where;
    return a;
}

} // namespace

// To write the references again (after a deliberate change of the renderer, or a new FreeType
// or fonts-liberation2): TV_WRITE_FONT_REFERENCES=1 FontTest --gtest_filter='FontReference.*'
TEST(FontReference, TextMatchesTheReferencePicturesExactly)
{
    for (ReferenceCase const& c : referenceCases)
    {
        Picture const drawn = drawReference(c, true);
        std::string const path = ReferenceFolder() + "/" + c.name + ".ppm";
        if (WritingReferences())
        {
            ASSERT_TRUE(WritePPM(path, drawn)) << path;
            continue;
        }
        Picture expected(1, 1, 0);
        ASSERT_TRUE(ReadPPM(path, expected)) << path;
        ASSERT_EQ(expected.width, drawn.width);
        ASSERT_EQ(expected.height, drawn.height);
        EXPECT_EQ(0, countDifferences(expected, drawn)) << c.name;
    }
}

TEST(FontReference, PicturesDifferWhereTheLookDiffers)
{
    Picture const kerned = drawReference(referenceCases[3], true);
    Picture const unkerned = drawReference(referenceCases[4], true);
    EXPECT_GT(countDifferences(kerned, unkerned), 20);
    for (ReferenceCase const& c : referenceCases)
    {
        Picture const drawn = drawReference(c, true);
        EXPECT_GT(countDifferences(drawn, Picture(180, 32, c.background)), 30) << c.name;
        for (unsigned int p : drawn.pixels)
            ASSERT_EQ(0xFF000000u, p & 0xFF000000u) << c.name; // opaque grounds stay opaque
    }
}

TEST(FontCoverageCache, DrawsExactlyWhatTheTwoPassRendererDraws)
{
    std::mt19937 random(20240611);
    char const* const texts[] = {"Hello, World",
                                 "AVATAR To Ty",
                                 "fjord -+: 12k",
                                 ("\xC3\x84pfel \xC3\xBC"
                                  "ber \xE2\x82\xAC 5"),
                                 "a\xE4\xB8\x80z",
                                 "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWW",
                                 "i",
                                 "ff fi ffl Wf/j"};
    char const* const files[] = {LiberationSans, LiberationSerif, LiberationSansBold, boldItalic};
    for (int round = 0; round < 60; ++round)
    {
        UI::FontInfo info =
            FileInfo(files[round % 4], 8.0f + (round % 13) * 1.5f, round % 3, (round / 3) % 2);
        info.kerning = round % 5 != 0;
        info.underline = round % 7 == 0;
        info.forceAutoHint = round % 11 == 0;
        UI::FreeTypeFont font(nullptr, info);
        ASSERT_TRUE(font.IsValid());

        Picture ground(150, 40, 0);
        for (unsigned int& p : ground.pixels)
            p = random() | (round % 4 == 0 ? 0u : 0xFF000000u); // some grounds transparent
        unsigned int const color = random() | 0xFF000000u;
        unsigned char const alpha = round % 3 == 0 ? 255 : random() & 0xFF;
        UI::Rect const clip(static_cast<int>(random() % 30), 100 + static_cast<int>(random() % 60),
                            static_cast<int>(random() % 10), 25 + static_cast<int>(random() % 20));
        UI::Point const point(static_cast<int>(random() % 120) - 20,
                              static_cast<int>(random() % 40) - 10);
        UI::HAlignment const hAlign = static_cast<UI::HAlignment>(random() % 3);
        UI::VAlignment const vAlign = static_cast<UI::VAlignment>(random() % 3);
        UI::Rect const box = round % 2 ? UI::Rect(5, 140, 3, 36) : UI::Rect();
        char const* text = texts[round % 8];

        // Twice through the cached path: a cold and a warm coverage cache.
        for (int pass = 0; pass < 2; ++pass)
            expectSameAsTwoPass(font, ground, point, text, color, alpha,
                                "round " + std::to_string(round), hAlign, vAlign, box, clip);
    }
}

TEST(FontCoverageCache, LongTextsAndOverlappingGlyphsDrawWhatTheTwoPassRendererDraws)
{
    // A text too large to draw in one sweep is drawn glyph by glyph; italic glyphs reach into
    // their neighbours, so some pixels are blended twice.
    std::string longText;
    for (int i = 0; i < 40; ++i)
        longText += "WAVE fjord ";
    struct Case
    {
        char const* file;
        float size;
        std::string text;
    } const cases[] = {{LiberationSans, 24.0f, longText},
                       {boldItalic, 22.0f, "fjffjf /j/f Wf Tj"},
                       {boldItalic, 9.0f, "fjffjf /j/f Wf Tj"}};
    for (Case const& c : cases)
        for (int antiAliasMode = 0; antiAliasMode < 3; ++antiAliasMode)
        {
            UI::FreeTypeFont font(nullptr, FileInfo(c.file, c.size, antiAliasMode, 1));
            ASSERT_TRUE(font.IsValid());
            for (unsigned int const ground : {0xFFF4F0E8u, 0x00000000u})
                EXPECT_FALSE(expectSameAsTwoPass(font, Picture(300, 40, ground), UI::Point(-30, 3),
                                                 c.text.c_str(), 0xFF2040A0, 200,
                                                 std::to_string(c.size) + " " +
                                                     std::to_string(antiAliasMode))
                                 .IsEmpty());
        }
}

TEST(FontCoverageCache, AFadeDrawsWhatTheTwoPassRendererDrawsAtEveryStep)
{
    // The same text again and again with the alpha stepping and the ground changing between
    // two: the weights kept from the draw before must follow.
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 12.0f, 2, 1));
    ASSERT_TRUE(font.IsValid());
    for (int step = 0; step < 24; ++step)
    {
        unsigned char const alpha = static_cast<unsigned char>(255 - step * 11);
        unsigned int const ground = step % 6 < 3 ? 0xFFFFFFFFu : 0xFF203040u;
        expectSameAsTwoPass(font, Picture(120, 20, ground), UI::Point(2, 2), "Fading out",
                            0xFFE0C020, alpha, "step " + std::to_string(step));
    }
}

TEST(FontComposite, RowBlendMatchesThePixelByPixelBlend)
{
    // Weights with runs of 0 and 255 as glyph edges have, over opaque, transparent and mixed
    // grounds, at every row length and start around the four-pixel steps.
    std::mt19937 random(7741);
    UI::detail::CompositeWeights const* const table = UI::detail::compositeWeightTable();
    for (int round = 0; round < 400; ++round)
    {
        int const count = static_cast<int>(random() % 40);
        int const start = static_cast<int>(random() % 4);
        std::vector<unsigned char> weights(count + start);
        for (unsigned char& w : weights)
        {
            unsigned int const kind = random() % 4;
            w = kind == 0 ? 0 : kind == 1 ? 255 : static_cast<unsigned char>(random());
        }
        std::vector<unsigned int> ground(count + start);
        for (unsigned int& p : ground)
        {
            p = random();
            if (round % 3 == 0 || (round % 3 == 1 && random() % 8 != 0))
                p |= 0xFF000000u;
        }
        unsigned int const color = random() | (round % 5 == 0 ? 0u : 0xFF000000u);
        std::vector<unsigned int> scalar = ground, vector = ground;
        UI::detail::blendTextRowScalar(scalar.data() + start, weights.data() + start, count, color,
                                       table);
        UI::detail::blendTextRow(vector.data() + start, weights.data() + start, count, color,
                                 table);
        ASSERT_EQ(scalar, vector) << "round " << round;
        for (int i = 0; i < count; ++i)
        {
            if (weights[start + i] == 0)
            {
                ASSERT_EQ(ground[start + i], vector[start + i]);
            }
            if (weights[start + i] == 255)
            {
                ASSERT_EQ(color, vector[start + i]);
            }
        }
    }
}

TEST(FontPlacement, AlignmentsPlaceTheTextRectangle)
{
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 13.0f));
    int const w = static_cast<int>(font.GetStringWidth("Hello"));
    int const h = font.GetHeight();
    Picture picture(200, 60, 0xFFFFFFFF);
    auto place = [&](UI::Point p, UI::HAlignment ha, UI::VAlignment va, UI::Rect box)
    { return DrawInto(font, picture, p, "Hello", 0xFF000000, 255, true, ha, va, box); };
    EXPECT_EQ(UI::Rect(10, 10 + w - 1, 5, 5 + h - 1),
              place(UI::Point(10, 5), UI::HAlignLeft, UI::VAlignTop, UI::Rect()));
    EXPECT_EQ(UI::Rect(100 - (w + 1) / 2, 100 - (w + 1) / 2 + w - 1, 30 - (h + 1) / 2,
                       30 - (h + 1) / 2 + h - 1),
              place(UI::Point(100, 30), UI::HAlignCenter, UI::VAlignCenter, UI::Rect()));
    EXPECT_EQ(UI::Rect(150 - w, 149, 50 - h, 49),
              place(UI::Point(150, 50), UI::HAlignRight, UI::VAlignBottom, UI::Rect()));
    UI::Rect const box(20, 119, 10, 49);
    EXPECT_EQ(UI::Rect((20 + 119 + 1 - w) / 2, (20 + 119 + 1 - w) / 2 + w - 1,
                       (10 + 49 + 2 - h) / 2, (10 + 49 + 2 - h) / 2 + h - 1),
              place(UI::Point(0, 0), UI::HAlignCenter, UI::VAlignCenter, box));
    // Outside the bitmap, or an empty text: an empty rectangle and no pixel touched.
    Picture const before = picture;
    EXPECT_TRUE(place(UI::Point(300, 5), UI::HAlignLeft, UI::VAlignTop, UI::Rect()).IsEmpty());
    EXPECT_EQ(UI::Rect(), DrawInto(font, picture, UI::Point(3, 3), "", 0xFF000000));
    EXPECT_EQ(0, countDifferences(before, picture));
}

TEST(FontPlacement, ClipBoundsEveryPixelAndTheResult)
{
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 20.0f, 2, 1));
    Picture picture(120, 40, 0xFFFFFFFF);
    UI::Rect const clip(15, 40, 8, 20);
    EXPECT_EQ(clip, DrawInto(font, picture, UI::Point(2, 2), "Wombat", 0xFF000000, 255, true,
                             UI::HAlignLeft, UI::VAlignTop, UI::Rect(), clip));
    int inside = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            if (picture.At(x, y) != 0xFFFFFFFFu)
            {
                ASSERT_TRUE(clip.Contains(UI::Point(x, y))) << x << "," << y;
                ++inside;
            }
    EXPECT_GT(inside, 20);
}

TEST(FontPlacement, LightTextOnDarkGroundIsDrawnHeavier)
{
    // The adaptive gamma: the same coverage gives more weight to light text on a dark ground
    // than to dark text on a light one.
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 12.0f, 1, 1));
    Picture dark(80, 20, 0xFF000000), light(80, 20, 0xFFFFFFFF);
    DrawInto(font, dark, UI::Point(1, 1), "ellipse", 0xFFFFFFFF);
    DrawInto(font, light, UI::Point(1, 1), "ellipse", 0xFF000000);
    long inkOnDark = 0, inkOnLight = 0;
    for (size_t i = 0; i < dark.pixels.size(); ++i)
    {
        inkOnDark += dark.pixels[i] & 0xFF;
        inkOnLight += 255 - (light.pixels[i] & 0xFF);
    }
    EXPECT_GT(inkOnDark, inkOnLight);
}

TEST(FontSectionDrawing, SectionsAndImagesReceiveTheSamePixels)
{
    UI::Font font(nullptr, FileInfo(LiberationSans, 13.0f, 2, 1));
    UI::Native::DIBSection section(UI::Size(100, 24));
    for (int y = 0; y < 24; ++y)
        for (int x = 0; x < section.GetStride(); ++x)
            section.GetPixels()[y * section.GetStride() + x] = 0xFFEEEEEE;
    Picture picture(100, 24, 0xFFEEEEEE);
    UI::DIBits bits = picture.AsBits();
    UI::Rect const clip(0, 99, 0, 23);
    UI::Rect const a = font.RenderText(UI::Point(3, 3), "Section", 0xFF202080, 255, clip, &section,
                                       UI::HAlignLeft, UI::VAlignTop, UI::Rect());
    UI::Rect const b = font.RenderText(UI::Point(3, 3), "Section", 0xFF202080, 255, clip, bits,
                                       UI::HAlignLeft, UI::VAlignTop, UI::Rect());
    EXPECT_EQ(a, b);
    for (int y = 0; y < 24; ++y)
        for (int x = 0; x < 100; ++x)
            ASSERT_EQ(picture.At(x, y), section.GetPixels()[y * section.GetStride() + x]);
    EXPECT_TRUE(font.RenderText(UI::Point(3, 3), "Section", 0xFF202080, 255, clip, nullptr,
                                UI::HAlignLeft, UI::VAlignTop, UI::Rect())
                    .IsEmpty());
}

TEST(FontComposite, OpaqueGroundsTakeTheShortWayWithTheSameResult)
{
    UI::detail::CompositeWeights const* const table = UI::detail::compositeWeightTable();
    for (unsigned int a = 1; a < 255; ++a)
    {
        UI::detail::CompositeWeights const w = UI::detail::computeCompositeWeights(a, 255);
        ASSERT_EQ(a, w.source);
        ASSERT_EQ(255 - a, w.destination);
        ASSERT_EQ(255, w.alpha);
        EXPECT_EQ(table[a * 256 + 255].source, w.source);
    }
    // Over a transparent pixel the source shows as it is.
    EXPECT_EQ(0x80123456u, UI::detail::compositeKeepingAlpha(0x80123456u, 0x00000000u, table));
    // Over a half transparent one both coverages unite.
    unsigned int const mixed = UI::detail::compositeKeepingAlpha(0x80FF0000u, 0x800000FFu, table);
    EXPECT_EQ(0xC0u, mixed >> 24);
    EXPECT_GT((mixed >> 16) & 0xFF, mixed & 0xFF);
    EXPECT_EQ(0xFF00FF00u, UI::detail::compositeKeepingAlpha(0xFF00FF00u, 0x12345678u, table));
    EXPECT_EQ(0x12345678u, UI::detail::compositeKeepingAlpha(0x0000FF00u, 0x12345678u, table));
}
