#include "Canvas/UI/MemoryDrawContext.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/HotDraw.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "tests/Canvas/UI/CanvasTestSupport.h"

#include <gtest/gtest.h>

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

using UI::Point;
using UI::Rect;

namespace
{

unsigned int const kWhite = 0xFFFFFFFFu;
unsigned int const kInk = 0xFF202060u;

/// A white 120 by 40 paint under way, and a font from the default face.
struct Paint
{
    UI::Canvas canvas{"DrawText"};
    UI::Font font{&canvas, UI::FontInfo("Arial", 14.0f)};
    UI::MemoryDrawContext context{"Text Context"};

    Paint()
    {
        context.Begin(UI::Size(120, 40));
        context.DrawBox(Rect(0, 119, 0, 39), UI::DrawContext::Filled, kWhite, 255);
    }

    unsigned int Pixel(int x, int y) const
    {
        auto const& section = context.GetDIBSection();
        return section->GetPixels()[y * section->GetStride() + x];
    }

    /// Pixels that are not white, and whether all of them lie inside `inside`.
    int Inked(Rect const& inside, bool& allInside) const
    {
        int count = 0;
        allInside = true;
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 120; ++x)
                if (Pixel(x, y) != kWhite)
                {
                    ++count;
                    if (!inside.Contains(Point(x, y)))
                        allInside = false;
                }
        return count;
    }
};

} // namespace

TEST(MemoryDrawContextText, TextLandsInsideTheReturnedRectangle)
{
    Paint p;
    Rect drawn = p.context.DrawText(&p.font, Point(5, 8), "Hello", kInk, 255);
    ASSERT_FALSE(drawn.IsEmpty());
    EXPECT_EQ(5, drawn.left);
    EXPECT_EQ(8, drawn.top);
    EXPECT_EQ(static_cast<int>(p.font.GetStringWidth("Hello")), drawn.Width());
    EXPECT_EQ(p.font.GetHeight(), drawn.Height());
    bool allInside = false;
    EXPECT_GT(p.Inked(drawn, allInside), 20);
    EXPECT_TRUE(allInside);
}

TEST(MemoryDrawContextText, MatchesTheFontDrawingIntoTheSameBitmap)
{
    Paint p;
    p.context.SetTranslation(Point(10, 3));
    Rect drawn = p.context.DrawText(&p.font, Point(2, 4), "Text 42", kInk, 200);

    // The reference: the font's own drawing into a white bitmap at the translated point.
    UI::Native::DIBSection reference(UI::Size(120, 40));
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < reference.GetStride(); ++x)
            reference.GetPixels()[y * reference.GetStride() + x] = kWhite;
    Rect expected = p.font.RenderText(Point(12, 7), "Text 42", kInk, 200, Rect(0, 119, 0, 39),
                                      &reference, UI::HAlignLeft, UI::VAlignTop, Rect());
    EXPECT_EQ(expected, drawn);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 120; ++x)
            ASSERT_EQ(reference.GetPixels()[y * reference.GetStride() + x], p.Pixel(x, y))
                << "at " << x << "," << y;
}

TEST(MemoryDrawContextText, ColorAlphaByteIsIgnoredAndAlphaArgumentScales)
{
    Paint opaque;
    opaque.context.DrawText(&opaque.font, Point(5, 5), "Ink", kInk & 0x00FFFFFFu, 255);
    Paint reference;
    reference.context.DrawText(&reference.font, Point(5, 5), "Ink", kInk, 255);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 120; ++x)
            ASSERT_EQ(reference.Pixel(x, y), opaque.Pixel(x, y));

    Paint none;
    EXPECT_TRUE(none.context.DrawText(&none.font, Point(5, 5), "Ink", kInk, 0).IsEmpty());
    bool allInside = false;
    EXPECT_EQ(0, none.Inked(Rect(), allInside));
}

TEST(MemoryDrawContextText, BoxCentresAndClipCuts)
{
    Paint p;
    Rect box(0, 119, 0, 39);
    Rect drawn = p.context.DrawText(&p.font, box, Point(), "Mid", kInk, 255, UI::HAlignCenter,
                                    UI::VAlignCenter);
    int w = static_cast<int>(p.font.GetStringWidth("Mid"));
    int h = p.font.GetHeight();
    EXPECT_EQ((0 + 119 + 1 - w) / 2, drawn.left);
    EXPECT_EQ((0 + 39 + 2 - h) / 2, drawn.top);

    // The clip holds: nothing lands outside it.
    Paint clipped;
    clipped.context.SetClipRect(Rect(0, 9, 0, 39));
    Rect cut = clipped.context.DrawText(&clipped.font, Point(5, 5), "Wide text", kInk, 255);
    EXPECT_EQ(9, cut.right);
    bool allInside = false;
    EXPECT_GT(clipped.Inked(Rect(0, 9, 0, 39), allInside), 0);
    EXPECT_TRUE(allInside);
}

TEST(MemoryDrawContextText, NothingToDrawWithoutFontTextOrBitmap)
{
    Paint p;
    EXPECT_TRUE(p.context.DrawText(nullptr, Point(5, 5), "Text", kInk, 255).IsEmpty());
    EXPECT_TRUE(p.context.DrawText(&p.font, Point(5, 5), "", kInk, 255).IsEmpty());
    bool allInside = false;
    EXPECT_EQ(0, p.Inked(Rect(), allInside));

    UI::MemoryDrawContext unpainted("No Bitmap");
    EXPECT_TRUE(unpainted.DrawText(&p.font, Point(5, 5), "Text", kInk, 255).IsEmpty());
}

TEST(MemoryDrawContextText, ACentredAxisIgnoresTheTranslationOfThePoint)
{
    // (alignment, point): a translated paint lands where the untranslated box moved by hand does.
    struct Case
    {
        UI::HAlignment h;
        UI::VAlignment v;
    } const cases[] = {{UI::HAlignCenter, UI::VAlignTop},
                       {UI::HAlignLeft, UI::VAlignCenter},
                       {UI::HAlignCenter, UI::VAlignCenter},
                       {UI::HAlignLeft, UI::VAlignTop}};
    for (Case const& c : cases)
    {
        Paint moved, reference;
        moved.context.SetTranslation(Point(10, 4));
        Rect const got = moved.context.DrawText(&moved.font, Rect(0, 59, 0, 19), Point(3, 2), "Mid",
                                                kInk, 255, c.h, c.v);
        Rect const want = reference.context.DrawText(
            &reference.font, Rect(10, 69, 4, 23),
            Point(c.h == UI::HAlignCenter ? 3 : 13, c.v == UI::VAlignCenter ? 2 : 6), "Mid", kInk,
            255, c.h, c.v);
        EXPECT_EQ(want, got) << c.h << "," << c.v;
    }
}

namespace
{
std::vector<std::string> profiled;
void profile(void* instance, int kind, unsigned int length, char const* characters)
{
    EXPECT_EQ(&profiled, instance);
    EXPECT_EQ(0, kind);
    profiled.emplace_back(characters, length);
}
} // namespace

TEST(MemoryDrawContextText, DrawnTextIsProfiledAndMarkedByHotDrawOnText)
{
    Paint p;
    UI::g_fnTextProfilingCallback = &profile;
    UI::g_pTextProfilingCallbackInstance = &profiled;
    p.context.DrawText(&p.font, Point(5, 5), "Seen", kInk, 255);
    p.context.DrawText(&p.font, Point(5, 5), "", kInk, 255);
    UI::g_fnTextProfilingCallback = nullptr;
    EXPECT_EQ(profiled, (std::vector<std::string>{"Seen"}));

    // Hot-draw on text covers the drawn rectangle in one red.
    UI::g_hotDrawApplies = UI::g_bHotDrawTextOnly = true;
    Rect const drawn = p.context.DrawText(&p.font, Point(40, 10), "Hot", kInk, 255);
    UI::g_hotDrawApplies = UI::g_bHotDrawTextOnly = false;
    unsigned int const mark = p.Pixel(drawn.left, drawn.top);
    EXPECT_EQ(0xFF000000u, mark & 0xFF00FFFFu);
    EXPECT_GE((mark >> 16) & 0xFF, 0x32u);
    for (int y = drawn.top; y <= drawn.bottom; ++y)
        for (int x = drawn.left; x <= drawn.right; ++x)
            EXPECT_EQ(mark, p.Pixel(x, y)) << x << "," << y;
}
