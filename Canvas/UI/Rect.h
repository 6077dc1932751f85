#pragma once

#include "TvBase/Util/String.h"

#include <algorithm>

namespace UI {

struct Point
{
    int x = 0;
    int y = 0;

    Point() = default;
    Point(int px, int py) : x(px), y(py) {}

    Point operator+(Point const& o) const { return Point(x + o.x, y + o.y); }
    Point operator-(Point const& o) const { return Point(x - o.x, y - o.y); }
    Point& operator+=(Point const& o) { x += o.x; y += o.y; return *this; }
    Point& operator-=(Point const& o) { x -= o.x; y -= o.y; return *this; }
    bool operator==(Point const& o) const { return x == o.x && y == o.y; }
    bool operator!=(Point const& o) const { return !(*this == o); }
};

struct Size
{
    int width = 0;
    int height = 0;

    Size() = default;
    Size(int w, int h) : width(w), height(h) {}

    bool operator==(Size const& o) const { return width == o.width && height == o.height; }
    bool operator!=(Size const& o) const { return !(*this == o); }
};

/// A rectangle whose four edges are all inclusive: its width is right + 1 - left. It is empty when
/// right < left or bottom < top; the unset form is (0, -1, 0, -1).
struct Rect
{
    int left = 0;
    int right = -1;
    int top = 0;
    int bottom = -1;

    Rect() = default;
    /// Edges in the stored order: left, right, top, bottom.
    Rect(int l, int r, int t, int b) : left(l), right(r), top(t), bottom(b) {}
    Rect(Point const& origin, Size const& size)
        : left(origin.x), right(origin.x + size.width - 1), top(origin.y),
          bottom(origin.y + size.height - 1)
    {
    }
    static Rect FromXYWH(int x, int y, int w, int h) { return Rect(x, x + w - 1, y, y + h - 1); }

    int Width() const { return right + 1 - left; }
    int Height() const { return bottom + 1 - top; }
    Size GetSize() const { return Size(Width(), Height()); }
    Point TopLeft() const { return Point(left, top); }
    Point BottomRight() const { return Point(right, bottom); }
    bool IsEmpty() const { return right < left || bottom < top; }

    bool Contains(Point const& p) const
    {
        return p.x >= left && p.x <= right && p.y >= top && p.y <= bottom;
    }
    /// True when `r` lies wholly inside; an empty `r` is inside nothing.
    bool Contains(Rect const& r) const
    {
        return !r.IsEmpty() && r.left >= left && r.right <= right && r.top >= top &&
               r.bottom <= bottom;
    }
    bool Intersects(Rect const& r) const { return !(*this & r).IsEmpty(); }

    Rect Offset(int dx, int dy) const { return Rect(left + dx, right + dx, top + dy, bottom + dy); }
    Rect Offset(Point const& d) const { return Offset(d.x, d.y); }
    /// Grows each edge outward by `d` (shrinks for a negative `d`).
    Rect Inflate(int d) const { return Rect(left - d, right + d, top - d, bottom + d); }

    /// The overlap; the right and bottom edges are floored at left - 1 and top - 1 so that an
    /// empty result stays well formed.
    Rect operator&(Rect const& o) const
    {
        Rect r(std::max(left, o.left), std::min(right, o.right), std::max(top, o.top),
               std::min(bottom, o.bottom));
        r.right = std::max(r.right, r.left - 1);
        r.bottom = std::max(r.bottom, r.top - 1);
        return r;
    }
    /// The bounding box; when one side is empty, the other side unchanged.
    Rect operator|(Rect const& o) const
    {
        if (IsEmpty())
            return o;
        if (o.IsEmpty())
            return *this;
        return Rect(std::min(left, o.left), std::max(right, o.right), std::min(top, o.top),
                    std::max(bottom, o.bottom));
    }
    Rect& operator&=(Rect const& o) { return *this = *this & o; }
    Rect& operator|=(Rect const& o) { return *this = *this | o; }

    bool operator==(Rect const& o) const
    {
        return left == o.left && right == o.right && top == o.top && bottom == o.bottom;
    }
    bool operator!=(Rect const& o) const { return !(*this == o); }

    /// "[(left,top)-(right,bottom) WxH]".
    String ToString() const;
    /// Parses the text form; not present when the text is malformed or its size disagrees with
    /// its corners.
    static checked_value<Rect> FromString(String const& text);
};

} // namespace UI
