#pragma once

namespace UI
{

/// A mouse cursor as the toolkit names it: a shape and a decoration. Copies compare equal when
/// they name the same cursor. Turning it into a host cursor is the host window's business.
class Cursor
{
public:
    /// Shapes of the toolkit; the host cursor that each makes is chosen behind the host door.
    enum CursorShape
    {
        Arrow = 0,
        Busy = 1,
        PointingHand = 2,
        OpenHand = 3,
        ClosedHand = 4,
        ResizeUpDown = 5,
        DragHand = 6,
        ResizeLeftRight = 7,
        Blank = 8,
        IBeam = 9,
        HorizontalBeam = 10,
        Crosshair = 11,
        ZoomIn = 12,
        ZoomOut = 13,
        DecoratedIBeam = 14,
        DecoratedHorizontalBeam = 15,
        DecoratedCross = 16,
        GrabbingHand = 18,
        Lasso = 19,
        MagicWand = 20
    };
    /// The mark drawn at a shape's plus-minus point.
    enum CursorDecoration
    {
        NoDecoration = 0,
        Plus = 1,
        Minus = 2
    };

    /// The arrow.
    Cursor() = default;
    Cursor(CursorShape s, CursorDecoration d = NoDecoration) : shape(s), decoration(d) {}

    CursorShape GetShape() const { return shape; }
    CursorDecoration GetDecoration() const { return decoration; }

    bool operator==(Cursor const& o) const
    {
        return shape == o.shape && decoration == o.decoration;
    }
    bool operator!=(Cursor const& o) const { return !(*this == o); }

private:
    CursorShape shape = Arrow;
    CursorDecoration decoration = NoDecoration;
};

} // namespace UI
