#include "Canvas/UI/Rect.h"

#include <gtest/gtest.h>

using UI::Point;
using UI::Rect;
using UI::Size;

TEST(RectShape, EdgesAreInclusive)
{
    Rect unset;
    EXPECT_EQ(unset, Rect(0, -1, 0, -1));
    EXPECT_TRUE(unset.IsEmpty());
    EXPECT_EQ(unset.Width(), 0);

    Rect r(Point(2, 3), Size(4, 5));
    EXPECT_EQ(r, Rect(2, 5, 3, 7));
    EXPECT_EQ(r.Width(), 4);
    EXPECT_EQ(r.Height(), 5);
    EXPECT_EQ(r.GetSize(), Size(4, 5));
    EXPECT_EQ(r.BottomRight(), Point(5, 7));
    EXPECT_EQ(Rect::FromXYWH(2, 3, 4, 5), r);
    EXPECT_FALSE(Rect(5, 5, 5, 5).IsEmpty());
    EXPECT_TRUE(Rect(5, 4, 5, 9).IsEmpty());

    EXPECT_TRUE(r.Contains(Point(2, 3)));
    EXPECT_TRUE(r.Contains(Point(5, 7)));
    EXPECT_FALSE(r.Contains(Point(6, 7)));
    EXPECT_FALSE(r.Contains(Point(5, 8)));
    EXPECT_TRUE(r.Contains(Rect(2, 5, 3, 3)));
    EXPECT_FALSE(r.Contains(Rect(2, 6, 3, 3)));
    EXPECT_FALSE(r.Contains(Rect()));

    EXPECT_EQ(r.Offset(1, -1), Rect(3, 6, 2, 6));
    EXPECT_EQ(r.Offset(Point(-2, 0)), Rect(0, 3, 3, 7));
    EXPECT_EQ(r.Inflate(1), Rect(1, 6, 2, 8));
}

TEST(RectSetOps, IntersectionStaysWellFormed)
{
    Rect a(0, 9, 0, 9);
    EXPECT_EQ(a & Rect(5, 14, 5, 14), Rect(5, 9, 5, 9));
    Rect apart = a & Rect(20, 29, 30, 39);
    EXPECT_TRUE(apart.IsEmpty());
    EXPECT_EQ(apart.right, apart.left - 1);
    EXPECT_EQ(apart.bottom, apart.top - 1);
    EXPECT_EQ(apart.Width(), 0);
    EXPECT_EQ(apart.Height(), 0);

    EXPECT_TRUE(a.Intersects(Rect(9, 20, 9, 20)));
    EXPECT_FALSE(a.Intersects(Rect(10, 20, 0, 9)));
    Rect b = a;
    b &= Rect(3, 4, 3, 4);
    EXPECT_EQ(b, Rect(3, 4, 3, 4));
}

TEST(RectSetOps, UnionSkipsEmptySides)
{
    Rect a(0, 9, 0, 9);
    Rect emptyFar(100, 99, 100, 99);
    EXPECT_EQ(a | emptyFar, a);
    EXPECT_EQ(emptyFar | a, a);
    EXPECT_EQ(a | Rect(20, 29, -5, 0), Rect(0, 29, -5, 9));
    Rect c = Rect();
    c |= Rect(1, 2, 3, 4);
    EXPECT_EQ(c, Rect(1, 2, 3, 4));
}

TEST(RectText, WritesCornersAndSize)
{
    EXPECT_EQ(Rect(1, 3, 2, 4).ToString(), "[(1,2)-(3,4) 3x3]");
    EXPECT_EQ(Rect(-5, -1, -6, -2).ToString(), "[(-5,-6)-(-1,-2) 5x5]");
    EXPECT_EQ(Rect().ToString(), "[(0,0)-(-1,-1) 0x0]");
}

TEST(RectText, ParsesOnlyConsistentText)
{
    for (Rect r : {Rect(1, 3, 2, 4), Rect(-5, -1, -6, -2), Rect(), Rect(200, 439, 200, 329)})
    {
        checked_value<Rect> back = Rect::FromString(r.ToString());
        ASSERT_TRUE(back.present) << r.ToString();
        EXPECT_EQ(back.value, r);
    }
    for (char const* bad : {"[(1,2)-(3,4) 4x3]", "[(1,2)-(3,4) 3x4]", "[(1,2)-(3,4) 3x3] ",
                            "[(1,2)-(3,4) 3x3]x", "[(1,2)-(3,4)]", "(1,2)-(3,4) 3x3", ""})
        EXPECT_FALSE(Rect::FromString(bad).present) << bad;
    EXPECT_FALSE(Rect::FromString(String()).present);
}
