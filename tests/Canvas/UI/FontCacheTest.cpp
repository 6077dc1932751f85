#include "Canvas/UI/FontCache.h"
#include "Canvas/UI/BitBlt.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/FreeTypeFont.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "tests/Canvas/UI/support/FontTestSupport.h"

#include <gtest/gtest.h>

using namespace FontTest;

namespace
{

boost::shared_ptr<UI::DIBits> someBits()
{
    return UI::CreateDIBits(UI::Size(2, 2), 0u);
}

void fill(UI::Native::DIBSection& section, unsigned int color)
{
    for (int i = 0; i < section.GetStride() * section.GetHeight(); ++i)
        section.GetPixels()[i] = color;
}

} // namespace

TEST(FontCacheStore, KeepsStringsPerEnabledWindow)
{
    UI::FontCache cache;
    boost::shared_ptr<UI::DIBits> const bits = someBits();
    cache.AddString(7, 0x10000, "OK", 0xFF000000, bits); // not enabled: ignored
    EXPECT_FALSE(cache.LookupString(7, 0x10000, "OK", 0xFF000000));

    cache.SetCacheEnabled(7, true);
    cache.AddString(7, 0x10000, "OK", 0xFF000000, bits);
    EXPECT_EQ(bits, cache.LookupString(7, 0x10000, "OK", 0xFF000000));
    EXPECT_FALSE(cache.LookupString(7, 0x20000, "OK", 0xFF000000)); // other font
    EXPECT_FALSE(cache.LookupString(7, 0x10000, "OK", 0xFFFFFFFF)); // other colour
    EXPECT_FALSE(cache.LookupString(8, 0x10000, "OK", 0xFF000000)); // other window

    // Enabling again starts afresh; disabling drops the strings at once.
    cache.SetCacheEnabled(7, true);
    EXPECT_EQ(0u, cache.GetStringCount(7));
    cache.AddString(7, 0x10000, "OK", 0xFF000000, bits);
    cache.SetCacheEnabled(7, false);
    EXPECT_FALSE(cache.IsCacheEnabled(7));
    EXPECT_EQ(0u, cache.GetStringCount(7));
}

TEST(FontCacheStore, OrdersByTextThenFontKeyThenColour)
{
    using ID = UI::FontCache::StringID;
    EXPECT_TRUE(ID("Apple", 9, 9) < ID("Banana", 0, 0));
    EXPECT_TRUE(ID("B", 0, 9) < ID("a", 0, 0)); // strcmp order: upper case first
    EXPECT_TRUE(ID("x", 9, 1) < ID("x", 0, 2));
    EXPECT_TRUE(ID("x", 1, 2) < ID("x", 2, 2));
    EXPECT_FALSE(ID("x", 2, 2) < ID("x", 2, 2));
}

TEST(FontCacheDrawing, AWindowWithTheCacheRendersEachStringOnce)
{
    Context canvas;
    canvas.drawingWindow = 42;
    canvas.fontCache.SetCacheEnabled(42, true);
    UI::Font font(&canvas, FileInfo(LiberationSans, 13.0f, 2, 1));
    UI::FreeTypeFont* const freeType = font.GetFreeTypeFont();
    ASSERT_NE(nullptr, freeType);

    UI::Native::DIBSection section(UI::Size(120, 30));
    fill(section, 0xFFFFFFFF);
    UI::Rect const clip(0, 119, 0, 29);
    UI::Rect const first =
        font.RenderText(UI::Point(60, 15), "Cached", 0xFF102030, 200, clip, &section,
                        UI::HAlignCenter, UI::VAlignCenter, UI::Rect());
    ASSERT_EQ(1u, canvas.fontCache.GetStringCount(42));
    boost::shared_ptr<UI::DIBits> const bits =
        canvas.fontCache.LookupString(42, freeType->GetKey(), "Cached", 0xFF102030);
    ASSERT_TRUE(bits);
    EXPECT_TRUE(bits->HasAlpha());
    EXPECT_EQ(static_cast<int>(font.GetStringWidth("Cached")), bits->GetWidth());
    EXPECT_EQ(font.GetHeight(), bits->GetHeight());
    int const w = bits->GetWidth(), h = bits->GetHeight();
    EXPECT_EQ(UI::Rect(60 - (w + 1) / 2, 60 - (w + 1) / 2 + w - 1, 15 - (h + 1) / 2,
                       15 - (h + 1) / 2 + h - 1),
              first);

    // What reaches the section is the cached image blended at the draw's alpha.
    UI::Native::DIBSection expected(UI::Size(120, 30));
    fill(expected, 0xFFFFFFFF);
    UI::BitBlt(bits.get(), bits->GetRect(), &expected, first.TopLeft(), 200,
               checked_value<UI::Rect>(clip));
    for (int i = 0; i < section.GetStride() * section.GetHeight(); ++i)
        ASSERT_EQ(expected.GetPixels()[i], section.GetPixels()[i]);

    // The second draw uses the same image.
    fill(section, 0xFFFFFFFF);
    font.RenderText(UI::Point(60, 15), "Cached", 0xFF102030, 200, clip, &section, UI::HAlignCenter,
                    UI::VAlignCenter, UI::Rect());
    EXPECT_EQ(bits, canvas.fontCache.LookupString(42, freeType->GetKey(), "Cached", 0xFF102030));
    for (int i = 0; i < section.GetStride() * section.GetHeight(); ++i)
        ASSERT_EQ(expected.GetPixels()[i], section.GetPixels()[i]);
}

TEST(FontCacheDrawing, OtherWindowsDrawStraightIntoTheSection)
{
    Context canvas;
    canvas.fontCache.SetCacheEnabled(42, true);
    canvas.drawingWindow = 43; // its cache is off
    UI::Font font(&canvas, FileInfo(LiberationSans, 13.0f, 2, 1));
    UI::Native::DIBSection section(UI::Size(100, 24));
    fill(section, 0xFFFFFFFF);
    Picture picture(100, 24, 0xFFFFFFFF);
    font.RenderText(UI::Point(2, 2), "Direct", 0xFF000000, 255, UI::Rect(0, 99, 0, 23), &section,
                    UI::HAlignLeft, UI::VAlignTop, UI::Rect());
    DrawInto(*font.GetFreeTypeFont(), picture, UI::Point(2, 2), "Direct", 0xFF000000);
    EXPECT_EQ(0u, canvas.fontCache.GetStringCount(42));
    for (int y = 0; y < 24; ++y)
        for (int x = 0; x < 100; ++x)
            ASSERT_EQ(picture.At(x, y), section.GetPixels()[y * section.GetStride() + x]);
}

TEST(FontMapping, TheMappingFunctionAppliesToDrawingAndMeasuring)
{
    Context canvas;
    canvas.upperCaseMapping = true;
    UI::Font font(&canvas, FileInfo(LiberationSans, 13.0f));
    UI::Font plain(nullptr, FileInfo(LiberationSans, 13.0f));
    EXPECT_EQ(plain.GetStringWidth("HELLO"), font.GetStringWidth("hello"));
    EXPECT_NE(plain.GetStringWidth("hello"), font.GetStringWidth("hello"));

    Picture mapped(100, 24, 0xFFFFFFFF), upper(100, 24, 0xFFFFFFFF);
    UI::DIBits a = mapped.AsBits(), b = upper.AsBits();
    font.RenderText(UI::Point(2, 2), "hello", 0xFF000000, 255, mapped.Bounds(), a, UI::HAlignLeft,
                    UI::VAlignTop, UI::Rect());
    plain.RenderText(UI::Point(2, 2), "HELLO", 0xFF000000, 255, upper.Bounds(), b, UI::HAlignLeft,
                     UI::VAlignTop, UI::Rect());
    EXPECT_EQ(upper.pixels, mapped.pixels);
}
