#include "Canvas/UI/MemoryDrawContext.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Native/DIBSection.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

unsigned int pixel(UI::MemoryDrawContext const& context, int x, int y)
{
    boost::shared_ptr<UI::Native::DIBSection> const& section = context.GetDIBSection();
    return section->GetPixels()[y * section->GetStride() + x];
}

struct Presented
{
    void* handle;
    UI::Point offset;
    UI::Rect rect;
    UI::Point destination;
    UI::Rect exclude;
    UI::Native::DIBSection const* section;
};

std::vector<Presented> presented;

void recordPresent(boost::shared_ptr<UI::Native::DIBSection> const& section, void* handle,
                   CGColorSpace*, UI::Point const& offset, UI::Rect const& rect,
                   UI::Point const& destination, UI::Rect const& exclude)
{
    presented.push_back({handle, offset, rect, destination, exclude, section.get()});
}

} // namespace

TEST(MemoryDrawContext, BeginMakesOpaqueBlackBitmapOnlyWhenSizeChanges)
{
    UI::MemoryDrawContext context("frame");
    EXPECT_EQ(context.GetName(), String("frame"));
    EXPECT_FALSE(context.GetDIBSection());
    EXPECT_EQ(context.GetSize(), UI::Size(-1, -1));
    EXPECT_TRUE(context.GetClipRect().IsEmpty());

    context.Begin(UI::Size(17, 5));
    ASSERT_TRUE(context.GetDIBSection());
    EXPECT_EQ(context.GetDIBSection()->GetStride(), 32);
    EXPECT_EQ(context.GetSize(), UI::Size(17, 5));
    EXPECT_EQ(context.GetClipRect(), UI::Rect(0, 16, 0, 4));
    EXPECT_EQ(pixel(context, 16, 4), 0xFF000000u);

    // The same size keeps the picture: the bitmap is the back buffer.
    context.DrawBox(UI::Rect(0, 3, 0, 3), UI::DrawContext::Filled, 0x00FF0000, 255);
    UI::Native::DIBSection const* before = context.GetDIBSection().get();
    context.Begin(UI::Size(17, 5));
    EXPECT_EQ(context.GetDIBSection().get(), before);
    EXPECT_EQ(pixel(context, 1, 1), 0xFFFF0000u);

    // A new size loses it.
    context.Begin(UI::Size(20, 5));
    EXPECT_EQ(pixel(context, 1, 1), 0xFF000000u);
}

TEST(MemoryDrawContext, EndPresentsEachRegionInOrder)
{
    UI::MemoryDrawContext context("frame");
    presented.clear();
    UI::Native::SetDrawDIBSectionFunction(recordPresent);
    // Without a section nothing is presented.
    context.NativeDraw(UI::Rect(0, 1, 0, 1), nullptr, nullptr);
    EXPECT_TRUE(presented.empty());

    context.Begin(UI::Size(10, 10));
    context.SetNativeWindowOffset(UI::Point(3, 4));
    context.SetNativeClipExcludeRect(UI::Rect(5, 6, 5, 6));
    int handle = 0;
    context.End({UI::Rect(1, 2, 3, 4), UI::Rect(5, 9, 0, 0)}, &handle, nullptr);
    ASSERT_EQ(presented.size(), 2u);
    EXPECT_EQ(presented[0].rect, UI::Rect(1, 2, 3, 4));
    EXPECT_EQ(presented[0].destination, UI::Point(1, 3));
    EXPECT_EQ(presented[0].offset, UI::Point(3, 4));
    EXPECT_EQ(presented[0].exclude, UI::Rect(5, 6, 5, 6));
    EXPECT_EQ(presented[0].handle, &handle);
    EXPECT_EQ(presented[0].section, context.GetDIBSection().get());
    EXPECT_EQ(presented[1].rect, UI::Rect(5, 9, 0, 0));
    EXPECT_EQ(context.GetSize(), UI::Size(-1, -1));
    UI::Native::SetDrawDIBSectionFunction(nullptr);
}

TEST(MemoryDrawContext, ClipIsInBitmapCoordinatesAndTranslationMovesDrawing)
{
    UI::MemoryDrawContext context("frame");
    context.Begin(UI::Size(10, 8));
    context.SetClipRect(UI::Rect(-5, 6, 2, 20));
    EXPECT_EQ(context.GetClipRect(), UI::Rect(0, 6, 2, 7));
    context.SetTranslation(UI::Point(3, 1));
    EXPECT_EQ(context.GetTranslation(), UI::Point(3, 1));
    context.DrawBox(UI::Rect(0, 9, 0, 9), UI::DrawContext::Filled, 0x123456, 255);
    // From (3,1) on, cut by the clip, which did not move.
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 10; ++x)
        {
            bool const inside = x >= 3 && x <= 6 && y >= 2;
            EXPECT_EQ(pixel(context, x, y), inside ? 0xFF123456u : 0xFF000000u) << x << "," << y;
        }
}

TEST(MemoryDrawContext, DrawModesAndPoints)
{
    UI::MemoryDrawContext context("frame");
    context.Begin(UI::Size(8, 8));
    context.DrawBox(UI::Rect(0, 7, 0, 7), static_cast<UI::DrawContext::DrawMode>(2), 0xFFFFFF, 255);
    context.DrawRoundedBox(UI::Rect(0, 7, 0, 7), 2, static_cast<UI::DrawContext::DrawMode>(2),
                           0xFFFFFF, 255);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            EXPECT_EQ(pixel(context, x, y), 0xFF000000u);

    context.DrawBox(UI::Rect(1, 6, 1, 6), UI::DrawContext::Outline, 0x00FFFFFF, 255);
    EXPECT_EQ(pixel(context, 1, 1), 0xFFFFFFFFu);
    EXPECT_EQ(pixel(context, 3, 3), 0xFF000000u);

    // Points: forced opaque at 255, untouched at 0, the blend kernel between.
    context.DrawPoint(UI::Point(3, 3), 0x00FF8040, 255);
    EXPECT_EQ(pixel(context, 3, 3), 0xFFFF8040u);
    context.DrawPoint(UI::Point(3, 3), 0x00000000, 0);
    EXPECT_EQ(pixel(context, 3, 3), 0xFFFF8040u);
    context.DrawPoint(UI::Point(4, 4), 0xFFFFFF, 128);
    EXPECT_EQ(pixel(context, 4, 4), 0xFF808080u);
    context.SetClipRect(UI::Rect(0, 2, 0, 2));
    context.DrawPoint(UI::Point(5, 5), 0xFFFFFF, 255);
    EXPECT_EQ(pixel(context, 5, 5), 0xFF000000u);

    // Text draws nothing until fonts can render.
    EXPECT_TRUE(context.DrawText(nullptr, UI::Point(0, 0), "text", 0xFFFFFF, 255).IsEmpty());
}

TEST(MemoryDrawContext, DottedLineKeepsPatternUnderScrolling)
{
    UI::MemoryDrawContext context("frame");
    context.Begin(UI::Size(12, 4));
    context.SetClipRect(UI::Rect(3, 11, 0, 3));
    // Start 0: dots on even columns, the first visible one at 4 although the clip starts at 3.
    context.DrawDottedLine(UI::Horizontal, 1, 0, 9, 0xFFFFFF, 255);
    for (int x = 0; x < 12; ++x)
        EXPECT_EQ(pixel(context, x, 1), x >= 4 && x <= 9 && x % 2 == 0 ? 0xFFFFFFFFu : 0xFF000000u)
            << x;
    // Scrolled by one: the whole pattern moves by one, odd columns from the clip edge at 3.
    context.SetTranslation(UI::Point(1, 0));
    context.DrawDottedLine(UI::Horizontal, 2, 0, 9, 0xFFFFFF, 255);
    for (int x = 0; x < 12; ++x)
        EXPECT_EQ(pixel(context, x, 3 - 1),
                  x >= 3 && x <= 10 && x % 2 == 1 ? 0xFFFFFFFFu : 0xFF000000u)
            << x;
    // Vertical, with alpha 0 drawing nothing.
    context.SetTranslation(UI::Point(0, 0));
    context.DrawDottedLine(UI::Vertical, 11, 3, 0, 0xFFFFFF, 255);
    EXPECT_EQ(pixel(context, 11, 0), 0xFFFFFFFFu);
    EXPECT_EQ(pixel(context, 11, 1), 0xFF000000u);
    EXPECT_EQ(pixel(context, 11, 2), 0xFFFFFFFFu);
    EXPECT_EQ(pixel(context, 11, 3), 0xFF000000u);
    context.DrawDottedLine(UI::Vertical, 10, 0, 3, 0xFFFFFF, 0);
    EXPECT_EQ(pixel(context, 10, 0), 0xFF000000u);
}

TEST(MemoryDrawContext, BlitsFromBitsAndContexts)
{
    UI::MemoryDrawContext source("source");
    source.Begin(UI::Size(4, 4));
    source.DrawBox(UI::Rect(0, 3, 0, 3), UI::DrawContext::Filled, 0x00FF00, 255);
    UI::MemoryDrawContext target("target");
    target.Begin(UI::Size(8, 8));
    target.SetTranslation(UI::Point(2, 2));
    target.SetClipRect(UI::Rect(0, 4, 0, 7));
    target.BitBlt(&source, UI::Rect(0, 3, 0, 3), UI::Point(0, 0), false, 255);
    EXPECT_EQ(pixel(target, 2, 2), 0xFF00FF00u);
    EXPECT_EQ(pixel(target, 4, 5), 0xFF00FF00u);
    EXPECT_EQ(pixel(target, 5, 2), 0xFF000000u); // clipped
    EXPECT_EQ(pixel(target, 1, 1), 0xFF000000u);

    boost::shared_ptr<UI::DIBits> bits = UI::CreateDIBits(UI::Size(2, 2), 0x80FFFFFFu);
    bits->SetHasAlpha(true);
    target.SetTranslation(UI::Point(0, 0));
    target.BitBlt(bits.get(), UI::Rect(0, 1, 0, 1), UI::Point(0, 0), 255);
    EXPECT_EQ(pixel(target, 0, 0), 0xFF808080u);
    target.BitBltDithered(bits.get(), UI::Rect(0, 1, 0, 1), UI::Point(0, 6), 0);
    unsigned int const dithered = pixel(target, 0, 6);
    EXPECT_NE(dithered, 0xFF000000u);
    target.BitBltCurve(&source, UI::Rect(0, 0, 0, 0), UI::Point(4, 7), false, 255);
    EXPECT_EQ(pixel(target, 4, 7), 0xFF00FF00u);

    boost::shared_ptr<UI::DIBits> copy = target.GetBits();
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->GetPixels()[6 * copy->GetStride()], dithered);

    // Clear: transparent black over the width of each row, padding left alone.
    target.Clear();
    EXPECT_EQ(pixel(target, 7, 7), 0u);
    EXPECT_EQ(pixel(target, 8, 7), 0xFF000000u);
}

TEST(MemoryDrawContext, WithoutSectionEverythingIsANoOp)
{
    UI::MemoryDrawContext context("idle");
    context.SetClipRect(UI::Rect(0, 9, 0, 9));
    EXPECT_TRUE(context.GetClipRect().IsEmpty());
    context.DrawBox(UI::Rect(0, 3, 0, 3), UI::DrawContext::Filled, 0, 255);
    context.DrawLine(UI::Point(0, 0), UI::Point(3, 3), 0, true, 255);
    context.DrawDottedLine(UI::Horizontal, 0, 0, 5, 0, 255);
    context.DrawPoint(UI::Point(0, 0), 0, 255);
    context.Clear();
    context.BitBlt(&context, UI::Rect(0, 1, 0, 1), UI::Point(0, 0), false, 255);
    EXPECT_FALSE(context.GetBits());
}
