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

} // namespace

namespace
{

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

template <class Target>
void expectClipped(Case const& c, Target read, int caseIndex)
{
    UI::Rect const clip = c.clip.IsPresent() ? c.clip.Get() : UI::Rect(0, 7, 0, 5);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 8; ++x)
            ASSERT_EQ(read(x, y), expectedAt(x, y, c.srcRect, c.dstPos, clip))
                << "case " << caseIndex << " at " << x << "," << y;
}

} // namespace

TEST(BitBltWrappers, ClipBitsOntoSection)
{
    std::vector<Case> const cases = edgeCases();
    for (std::size_t i = 0; i < cases.size(); ++i)
    {
        boost::shared_ptr<UI::DIBits> src = labelled();
        boost::shared_ptr<UI::Native::DIBSection> raw(new UI::Native::DIBSection(UI::Size(8, 6)));
        UI::BitBlt(src.get(), cases[i].srcRect, raw.get(), cases[i].dstPos, 255, cases[i].clip);
        auto read = [&](int x, int y) { return raw->GetPixels()[y * raw->GetStride() + x]; };
        expectClipped(cases[i], read, static_cast<int>(i));

        boost::shared_ptr<UI::Native::DIBSection> shared(
            new UI::Native::DIBSection(UI::Size(8, 6)));
        UI::BitBlt(src, cases[i].srcRect, shared, cases[i].dstPos, 255, cases[i].clip);
        auto readShared = [&](int x, int y)
        { return shared->GetPixels()[y * shared->GetStride() + x]; };
        expectClipped(cases[i], readShared, static_cast<int>(i));

        boost::shared_ptr<UI::Native::DIBSection> dithered(
            new UI::Native::DIBSection(UI::Size(8, 6)));
        UI::BitBltDithered(src.get(), cases[i].srcRect, dithered.get(), cases[i].dstPos, 0,
                           cases[i].clip);
        auto readDithered = [&](int x, int y)
        { return dithered->GetPixels()[y * dithered->GetStride() + x]; };
        expectClipped(cases[i], readDithered, static_cast<int>(i));
    }
}

TEST(BitBltWrappers, ClipBitsOntoBits)
{
    std::vector<Case> const cases = edgeCases();
    for (std::size_t i = 0; i < cases.size(); ++i)
    {
        boost::shared_ptr<UI::DIBits> src = labelled();
        boost::shared_ptr<UI::DIBits> dst = UI::CreateDIBits(UI::Size(8, 6), 0u);
        UI::BitBlt(src, cases[i].srcRect, dst, cases[i].dstPos, 255, cases[i].clip);
        auto read = [&](int x, int y) { return dst->GetPixels()[y * 8 + x]; };
        expectClipped(cases[i], read, static_cast<int>(i));
    }
}

TEST(BitBltWrappers, ClipSectionOntoBitsAndSections)
{
    boost::shared_ptr<UI::Native::DIBSection> src(new UI::Native::DIBSection(UI::Size(4, 4)));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            src->GetPixels()[y * src->GetStride() + x] = label(x, y);
    std::vector<Case> const cases = edgeCases();
    for (std::size_t i = 0; i < cases.size(); ++i)
    {
        boost::shared_ptr<UI::DIBits> bits = UI::CreateDIBits(UI::Size(8, 6), 0u);
        UI::BitBlt(src, cases[i].srcRect, bits, cases[i].dstPos, false, 255, cases[i].clip);
        auto readBits = [&](int x, int y) { return bits->GetPixels()[y * 8 + x]; };
        expectClipped(cases[i], readBits, static_cast<int>(i));

        UI::Rect const r = cases[i].srcRect;
        boost::shared_ptr<UI::Native::DIBSection> dst(new UI::Native::DIBSection(UI::Size(8, 6)));
        UI::BitBlt(src.get(), r.TopLeft(), r.GetSize(), dst, cases[i].dstPos, false, 255,
                   cases[i].clip);
        auto read = [&](int x, int y) { return dst->GetPixels()[y * dst->GetStride() + x]; };
        expectClipped(cases[i], read, static_cast<int>(i));

        boost::shared_ptr<UI::Native::DIBSection> curve(new UI::Native::DIBSection(UI::Size(8, 6)));
        UI::BitBltCurve(src.get(), r.TopLeft(), r.GetSize(), curve, cases[i].dstPos, false, 255,
                        cases[i].clip);
        auto readCurve = [&](int x, int y)
        { return curve->GetPixels()[y * curve->GetStride() + x]; };
        expectClipped(cases[i], readCurve, static_cast<int>(i));
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
