// The clip step of the blit wrappers, at each edge of source, destination and clip, through
// every wrapper.

#include "Canvas/UI/BitBlt.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Native/DIBSection.h"

#include <gtest/gtest.h>

namespace
{

unsigned int label(int x, int y)
{
    return 0xFF000000u | (static_cast<unsigned int>((y << 8) | x) + 1);
}

/// A 4x4 source whose pixels name their own coordinates (0xFF00yyxx plus one).
boost::shared_ptr<UI::DIBits> labelled()
{
    boost::shared_ptr<UI::DIBits> image = UI::CreateDIBits(UI::Size(4, 4));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            image->GetPixels()[y * 4 + x] = label(x, y);
    return image;
}

/// What a clipped blit of the labelled source should leave at (x, y) of an 8x6 target cleared
/// to 0: the source pixel that lands there, if it lands inside the target and clip.
unsigned int expectedAt(int x, int y, UI::Rect const& srcRect, UI::Point const& dstPos,
                        UI::Rect const& clip)
{
    int const sx = x - dstPos.x + srcRect.left;
    int const sy = y - dstPos.y + srcRect.top;
    bool const inSource = sx >= srcRect.left && sx <= srcRect.right && sy >= srcRect.top &&
                          sy <= srcRect.bottom && sx >= 0 && sx < 4 && sy >= 0 && sy < 4;
    return inSource && clip.Contains(UI::Point(x, y)) ? label(sx, sy) : 0u;
}

struct Case
{
    UI::Rect srcRect;
    UI::Point dstPos;
    checked_value<UI::Rect> clip;
};

std::vector<Case> edgeCases()
{
    UI::Rect const all(0, 3, 0, 3);
    return {
        {all, UI::Point(2, 1), {}},                   // wholly inside
        {UI::Rect(-2, 3, 0, 3), UI::Point(1, 1), {}}, // source past its left edge
        {UI::Rect(0, 3, -1, 3), UI::Point(1, 1), {}}, // past its top
        {UI::Rect(1, 6, 0, 3), UI::Point(1, 1), {}},  // past its right
        {UI::Rect(0, 3, 2, 9), UI::Point(1, 1), {}},  // past its bottom
        {all, UI::Point(-2, 1), {}},                  // target's left edge
        {all, UI::Point(1, -3), {}},                  // target's top
        {all, UI::Point(6, 0), {}},                   // target's right
        {all, UI::Point(0, 4), {}},                   // target's bottom
        {all, UI::Point(2, 1), UI::Rect(3, 7, 0, 5)}, // clip's left
        {all, UI::Point(2, 1), UI::Rect(0, 7, 3, 5)}, // clip's top
        {all, UI::Point(2, 1), UI::Rect(0, 3, 0, 5)}, // clip's right
        {all, UI::Point(2, 1), UI::Rect(0, 7, 0, 2)}, // clip's bottom
        {UI::Rect(-1, 5, -1, 5), UI::Point(-1, -2), UI::Rect(1, 6, 0, 4)}, // all at once
        {all, UI::Point(9, 0), {}},                                        // wholly outside
        {all, UI::Point(0, 0), UI::Rect()},                                // empty clip
    };
}

/// Checks an 8x6 target, read through `pixels` with `stride`, against the clipped blit of `c`.
void expectClipped(Case const& c, unsigned int const* pixels, int stride, int caseIndex)
{
    UI::Rect const clip = c.clip.IsPresent() ? c.clip.Get() : UI::Rect(0, 7, 0, 5);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 8; ++x)
            ASSERT_EQ(pixels[y * stride + x], expectedAt(x, y, c.srcRect, c.dstPos, clip))
                << "case " << caseIndex << " at " << x << "," << y;
}

boost::shared_ptr<UI::Native::DIBSection> section(UI::Size size = UI::Size(8, 6))
{
    return boost::shared_ptr<UI::Native::DIBSection>(new UI::Native::DIBSection(size));
}

} // namespace

TEST(BitBltWrappers, ClipThroughEveryWrapper)
{
    boost::shared_ptr<UI::Native::DIBSection> srcSection = section(UI::Size(4, 4));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            srcSection->GetPixels()[y * srcSection->GetStride() + x] = label(x, y);
    std::vector<Case> const cases = edgeCases();
    for (std::size_t n = 0; n < cases.size(); ++n)
    {
        Case const& c = cases[n];
        int const i = static_cast<int>(n);
        boost::shared_ptr<UI::DIBits> src = labelled();
        // Bits onto sections, raw and shared, plain and dithered.
        auto raw = section(), shared = section(), dithered = section();
        UI::BitBlt(src.get(), c.srcRect, raw.get(), c.dstPos, 255, c.clip);
        UI::BitBlt(src, c.srcRect, shared, c.dstPos, 255, c.clip);
        UI::BitBltDithered(src.get(), c.srcRect, dithered.get(), c.dstPos, 0, c.clip);
        for (auto const& dst : {raw, shared, dithered})
            expectClipped(c, dst->GetPixels(), dst->GetStride(), i);

        // Bits onto bits, and a section onto bits.
        boost::shared_ptr<UI::DIBits> bits = UI::CreateDIBits(UI::Size(8, 6), 0u);
        UI::BitBlt(src, c.srcRect, bits, c.dstPos, 255, c.clip);
        expectClipped(c, bits->GetPixels(), 8, i);
        boost::shared_ptr<UI::DIBits> fromSection = UI::CreateDIBits(UI::Size(8, 6), 0u);
        UI::BitBlt(srcSection, c.srcRect, fromSection, c.dstPos, false, 255, c.clip);
        expectClipped(c, fromSection->GetPixels(), 8, i);

        // A section onto sections, plain and curve.
        UI::Rect const r = c.srcRect;
        auto plain = section(), curve = section();
        UI::BitBlt(srcSection.get(), r.TopLeft(), r.GetSize(), plain, c.dstPos, false, 255, c.clip);
        UI::BitBltCurve(srcSection.get(), r.TopLeft(), r.GetSize(), curve, c.dstPos, false, 255,
                        c.clip);
        for (auto const& dst : {plain, curve})
            expectClipped(c, dst->GetPixels(), dst->GetStride(), i);
    }
}

TEST(BitBltWrappers, NullBuffersDrawNothing)
{
    boost::shared_ptr<UI::DIBits> src = labelled();
    boost::shared_ptr<UI::Native::DIBSection> dst(new UI::Native::DIBSection(UI::Size(8, 6)));
    UI::BitBlt(static_cast<UI::DIBits*>(nullptr), UI::Rect(0, 3, 0, 3), dst.get(), UI::Point(0, 0),
               255);
    UI::BitBlt(src, UI::Rect(0, 3, 0, 3), boost::shared_ptr<UI::Native::DIBSection>(),
               UI::Point(0, 0), 255);
    UI::BitBlt(boost::shared_ptr<UI::DIBits>(new UI::DIBits()), UI::Rect(0, 3, 0, 3), dst,
               UI::Point(0, 0), 255);
    UI::Native::DIBSection broken(UI::Size(-1, -1));
    UI::BitBlt(&broken, UI::Point(0, 0), UI::Size(4, 4), dst, UI::Point(0, 0), false, 255);
    EXPECT_EQ(dst->GetPixels()[0], 0u);
}

TEST(ClipBlit, SourceFollowsDestination)
{
    UI::Rect src(1, 4, 2, 5);
    UI::Rect dst;
    ASSERT_TRUE(UI::ClipBlit(src, dst, UI::Point(-1, 3), UI::Size(4, 10), UI::Size(10, 6),
                             UI::Rect(0, 9, 0, 4)));
    // Source cut to columns 1..3; destination from x -1, cut to 0..1 and rows 3..4.
    EXPECT_EQ(dst, UI::Rect(0, 1, 3, 4));
    EXPECT_EQ(src, UI::Rect(2, 3, 2, 3));
    UI::Rect outside(0, 3, 0, 3);
    EXPECT_FALSE(UI::ClipBlit(outside, dst, UI::Point(20, 0), UI::Size(4, 4), UI::Size(8, 8),
                              checked_value<UI::Rect>()));
}
