#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace UI
{

class DIBits;

/// A mouse cursor as the toolkit names it: a shape and a decoration, or a named cursor made from
/// mono masks. Copies share one host cursor, made on first use by `GetHandle`; copies compare
/// equal when they name the same cursor. Host cursors are made and shown on the main thread.
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
        MagicWand = 20,
        /// A cursor made from masks by the named constructor.
        Custom = 1000
    };
    /// The mark drawn at a shape's plus-minus point.
    enum CursorDecoration
    {
        NoDecoration = 0,
        Plus = 1,
        Minus = 2
    };

    /// What a host cursor is asked to look like: which host cursor, or which pixels.
    struct Picture
    {
        enum Kind
        {
            /// The host's own cursor `system`.
            System,
            /// Two-colour masks: `andMask` and `xorMask`, one bit a pixel, rows of
            /// (width + 7) / 8 bytes, most significant bit first. AND 1 keeps the screen, XOR 1
            /// then inverts it; AND 0 paints black (XOR 0) or white (XOR 1).
            Mono,
            /// Colour pixels in `bits`.
            Color
        };
        /// Host cursors that the toolkit names.
        enum SystemCursor
        {
            SystemArrow,
            SystemPointingHand,
            SystemOpenHand,
            SystemClosedHand,
            SystemResizeUpDown,
            SystemResizeLeftRight,
            SystemIBeam,
            SystemCrosshair,
            SystemBusy
        };
        Kind kind = System;
        SystemCursor system = SystemArrow;
        Size size;
        Point hotSpot;
        std::vector<unsigned char> andMask;
        std::vector<unsigned char> xorMask;
        boost::shared_ptr<DIBits> bits;
    };

    /// The arrow.
    Cursor() : shape(Arrow), decoration(NoDecoration) {}
    Cursor(CursorShape shape, CursorDecoration decoration = NoDecoration)
        : shape(shape), decoration(decoration)
    {
    }
    /// A cursor of the caller's own from mono masks (see `Picture::Mono`); `name` tells it
    /// apart from others. Masks shorter than the size needs are padded with "keep the screen".
    Cursor(String const& name, Size const& size, Point const& hotSpot,
           std::vector<unsigned char> const& andMask, std::vector<unsigned char> const& xorMask);

    CursorShape GetShape() const { return shape; }
    CursorDecoration GetDecoration() const { return decoration; }
    String const& GetName() const { return name; }

    bool operator==(Cursor const& o) const
    {
        return shape == o.shape && decoration == o.decoration && name == o.name;
    }
    bool operator!=(Cursor const& o) const { return !(*this == o); }

    /// The host cursor, made on first use and shared by every copy; null without a host (no
    /// display) or when the host refuses.
    boost::shared_ptr<void> GetHandle() const;
    /// What the host cursor of this cursor looks like: a host cursor, the toolkit's masks with
    /// the decoration drawn in, or the lasso and wand pictures (the arrow when missing).
    Picture GetPicture() const;

    /// Makes `cursor` the host's current cursor unless it already is.
    static void SetCursor(Cursor const& cursor);
    /// `SetCursor` with the arrow.
    static void SetStandardCursor();
    /// The mouse position on the screen.
    static Point GetScreenPos();
    /// A host cursor from mono masks (see `Picture::Mono`) with `decoration` drawn at the
    /// plus-minus point `markAt`; null without a host.
    static boost::shared_ptr<void> CreateNSCursor(Size const& size, Point const& hotSpot,
                                                  std::vector<unsigned char> const& andMask,
                                                  std::vector<unsigned char> const& xorMask,
                                                  CursorDecoration decoration, Point const& markAt);
    /// A host cursor from colour pixels; null for null bits or without a host.
    static boost::shared_ptr<void> CreateNSCursor(boost::shared_ptr<DIBits> const& bits,
                                                  Point const& hotSpot);

private:
    struct Shared;

    CursorShape shape;
    CursorDecoration decoration;
    String name;
    boost::shared_ptr<Shared> shared;
};

} // namespace UI
