#include "Canvas/UI/Cursor.h"

#include <gtest/gtest.h>

using UI::Cursor;

namespace
{

bool bit(std::vector<unsigned char> const& mask, int width, int x, int y)
{
    int const rowBytes = (width + 7) / 8;
    return (mask[y * rowBytes + x / 8] >> (7 - x % 8)) & 1;
}

/// Pixels that the mono picture paints black.
int blackCount(Cursor::Picture const& p)
{
    int n = 0;
    for (int y = 0; y < p.size.height; ++y)
        for (int x = 0; x < p.size.width; ++x)
            n += !bit(p.andMask, p.size.width, x, y) && !bit(p.xorMask, p.size.width, x, y);
    return n;
}

} // namespace

TEST(CursorShapes, HostShapesMapAsTheToolkitNamesThem)
{
    using P = Cursor::Picture;
    struct
    {
        Cursor::CursorShape shape;
        P::SystemCursor system;
    } const cases[] = {{Cursor::Arrow, P::SystemArrow},
                       {Cursor::Busy, P::SystemArrow},
                       {Cursor::PointingHand, P::SystemPointingHand},
                       {Cursor::OpenHand, P::SystemOpenHand},
                       {Cursor::ClosedHand, P::SystemClosedHand},
                       {Cursor::DragHand, P::SystemClosedHand},
                       {Cursor::GrabbingHand, P::SystemClosedHand},
                       {Cursor::ResizeUpDown, P::SystemResizeUpDown},
                       {Cursor::ResizeLeftRight, P::SystemResizeLeftRight},
                       {Cursor::IBeam, P::SystemIBeam},
                       {Cursor::Crosshair, P::SystemCrosshair}};
    for (auto const& c : cases)
    {
        P const p = Cursor(c.shape).GetPicture();
        EXPECT_EQ(p.kind, P::System) << c.shape;
        EXPECT_EQ(p.system, c.system) << c.shape;
    }
}

TEST(CursorShapes, TheToolkitsOwnAreMonoMasksWithTheirDecoration)
{
    Cursor::Picture const blank = Cursor(Cursor::Blank).GetPicture();
    ASSERT_EQ(blank.kind, Cursor::Picture::Mono);
    EXPECT_EQ(blank.size, UI::Size(16, 16));
    for (unsigned char b : blank.andMask)
        EXPECT_EQ(b, 0xFF); // nothing painted
    for (Cursor::CursorShape shape :
         {Cursor::HorizontalBeam, Cursor::ZoomIn, Cursor::ZoomOut, Cursor::DecoratedIBeam,
          Cursor::DecoratedHorizontalBeam, Cursor::DecoratedCross})
    {
        Cursor::Picture const p = Cursor(shape).GetPicture();
        ASSERT_EQ(p.kind, Cursor::Picture::Mono) << shape;
        EXPECT_EQ(p.andMask.size(), 32u);
        EXPECT_GT(blackCount(p), 5) << shape;
        // The hot spot sits on the shape.
        EXPECT_TRUE(p.hotSpot.x >= 0 && p.hotSpot.x < 16 && p.hotSpot.y >= 0 && p.hotSpot.y < 16);
    }
    // Plus paints a bar more than minus, minus more than none.
    int const none = blackCount(Cursor(Cursor::DecoratedCross, Cursor::NoDecoration).GetPicture());
    int const minus = blackCount(Cursor(Cursor::DecoratedCross, Cursor::Minus).GetPicture());
    int const plus = blackCount(Cursor(Cursor::DecoratedCross, Cursor::Plus).GetPicture());
    EXPECT_EQ(minus, none + 5);
    EXPECT_EQ(plus, none + 9);
    EXPECT_EQ(blackCount(Cursor(Cursor::ZoomIn).GetPicture()),
              blackCount(Cursor(Cursor::ZoomOut).GetPicture()) + 4);
}

TEST(CursorShapes, MissingLassoPicturesFallBackToTheArrow)
{
    Cursor::Picture const p = Cursor(Cursor::Lasso, Cursor::Minus).GetPicture();
    if (p.kind == Cursor::Picture::Color)
        EXPECT_TRUE(p.bits != nullptr);
    else
        EXPECT_EQ(p.system, Cursor::Picture::SystemArrow);
}

TEST(CursorCustom, MasksArePaddedAndCopiesCompareByName)
{
    Cursor const a("Dot", UI::Size(10, 3), UI::Point(4, 1), {0x00, 0x3F}, {0x80});
    Cursor::Picture const p = a.GetPicture();
    EXPECT_EQ(p.kind, Cursor::Picture::Mono);
    ASSERT_EQ(p.andMask.size(), 6u); // two bytes a row
    EXPECT_EQ(p.andMask[2], 0xFF);   // padding keeps the screen
    EXPECT_EQ(p.xorMask[1], 0x00);
    EXPECT_EQ(p.xorMask[0], 0x80);
    Cursor const copy = a;
    EXPECT_EQ(copy, a);
    EXPECT_EQ(copy.GetShape(), Cursor::Custom);
    EXPECT_NE(a, Cursor("Other", UI::Size(10, 3), UI::Point(), {}, {}));
    EXPECT_NE(a, Cursor());
    EXPECT_EQ(Cursor(Cursor::IBeam), Cursor(Cursor::IBeam, Cursor::NoDecoration));
    EXPECT_NE(Cursor(Cursor::DecoratedIBeam, Cursor::Plus), Cursor(Cursor::DecoratedIBeam));
}
