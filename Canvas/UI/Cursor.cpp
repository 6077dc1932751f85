// UI::Cursor: the host cursors of the toolkit's shapes, and the toolkit's own mono cursors.
//
// Index:
//   the toolkit's own pictures
//   construction
//   host cursors

#include "Canvas/UI/Cursor.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Media.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"

#include <map>
#include <utility>

namespace UI
{

struct Cursor::Shared
{
    Picture picture;
    boost::shared_ptr<void> handle;
    bool made = false;
};

// ============================================================================================
// the toolkit's own pictures
// ============================================================================================

namespace
{

int const kSide = 16;

/// A 16 by 16 shape: 'X' is black. Every pixel next to a black one becomes white, so that the
/// shape shows on any background.
struct Art
{
    char const* rows[kSide];
    Point hotSpot;
    /// Where the plus or minus goes.
    Point markAt;
};

Art const kBlank = {{"................", "................", "................", "................",
                     "................", "................", "................", "................",
                     "................", "................", "................", "................",
                     "................", "................", "................",
                     "................"},
                    Point(0, 0),
                    Point(-100, -100)};

Art const kIBeam = {{"...XXX.XXX......", "......X.........", "......X.........", "......X.........",
                     "......X.........", "......X.........", "......X.........", "....XXXXX.......",
                     "......X.........", "......X.........", "......X.........", "......X.........",
                     "......X.........", "......X.........", "...XXX.XXX......",
                     "................"},
                    Point(6, 7),
                    Point(12, 12)};

Art const kHorizontalBeam = {
    {"................", "................", "................", "X.............X.",
     "X......X......X.", "X......X......X.", "XXXXXXXXXXXXXXX.", "X......X......X.",
     "X......X......X.", "X.............X.", "................", "................",
     "................", "................", "................", "................"},
    Point(7, 6),
    Point(12, 12)};

Art const kCross = {{".......X........", ".......X........", ".......X........", ".......X........",
                     ".......X........", "................", "XXXXX.....XXXXX.", "................",
                     ".......X........", ".......X........", ".......X........", ".......X........",
                     ".......X........", "................", "................",
                     "................"},
                    Point(7, 6),
                    Point(12, 12)};

Art const kZoom = {{"....XXXX........", "..XX....XX......", ".X........X.....", ".X........X.....",
                    "X..........X....", "X..........X....", "X..........X....", "X..........X....",
                    ".X........X.....", ".X........X.....", "..XX....XXX.....", "....XXXX.XXX....",
                    "..........XXX...", "...........XXX..", "............XXX.", ".............X.."},
                   Point(5, 5),
                   Point(5, 6)};

void setBit(std::vector<unsigned char>& mask, int x, int y, bool on)
{
    int const rowBytes = (kSide + 7) / 8;
    unsigned char const bit = static_cast<unsigned char>(0x80 >> (x % 8));
    unsigned char& byte = mask[static_cast<std::size_t>(y * rowBytes + x / 8)];
    byte = on ? (byte | bit) : (byte & ~bit);
}

/// Black pixels of the shape, with the mark added at `markAt`.
std::vector<std::vector<bool>> blackPixels(Art const& art, Cursor::CursorDecoration decoration)
{
    std::vector<std::vector<bool>> black(kSide, std::vector<bool>(kSide, false));
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide && art.rows[y][x]; ++x)
            black[y][x] = art.rows[y][x] == 'X';
    auto put = [&black](int x, int y)
    {
        if (x >= 0 && y >= 0 && x < kSide && y < kSide)
            black[y][x] = true;
    };
    if (decoration != Cursor::NoDecoration)
    {
        // A five-pixel bar, and for plus a crossing one.
        for (int d = -2; d <= 2; ++d)
            put(art.markAt.x + d, art.markAt.y);
        if (decoration == Cursor::Plus)
            for (int d = -2; d <= 2; ++d)
                put(art.markAt.x, art.markAt.y + d);
    }
    return black;
}

Cursor::Picture monoPicture(Art const& art, Cursor::CursorDecoration decoration)
{
    std::vector<std::vector<bool>> black = blackPixels(art, decoration);
    Cursor::Picture picture;
    picture.kind = Cursor::Picture::Mono;
    picture.size = Size(kSide, kSide);
    picture.hotSpot = art.hotSpot;
    std::size_t const bytes = static_cast<std::size_t>((kSide + 7) / 8 * kSide);
    picture.andMask.assign(bytes, 0xFF);
    picture.xorMask.assign(bytes, 0x00);
    for (int y = 0; y < kSide; ++y)
    {
        for (int x = 0; x < kSide; ++x)
        {
            bool nearBlack = false;
            for (int dy = -1; dy <= 1 && !nearBlack; ++dy)
                for (int dx = -1; dx <= 1 && !nearBlack; ++dx)
                {
                    int const nx = x + dx;
                    int const ny = y + dy;
                    nearBlack = nx >= 0 && ny >= 0 && nx < kSide && ny < kSide && black[ny][nx];
                }
            if (black[y][x])
                setBit(picture.andMask, x, y, false); // black: AND 0, XOR 0
            else if (nearBlack)
            {
                setBit(picture.andMask, x, y, false); // white: AND 0, XOR 1
                setBit(picture.xorMask, x, y, true);
            }
        }
    }
    return picture;
}

Cursor::Picture systemPicture(Cursor::Picture::SystemCursor system)
{
    Cursor::Picture picture;
    picture.kind = Cursor::Picture::System;
    picture.system = system;
    return picture;
}

/// The lasso and wand pictures, one resource per decoration; the arrow when the resource is
/// missing.
Cursor::Picture pngPicture(char const* base, Cursor::CursorDecoration decoration)
{
    char const* suffix = decoration == Cursor::Plus    ? "Plus"
                         : decoration == Cursor::Minus ? "Minus"
                                                       : "";
    boost::shared_ptr<DIBits> bits =
        Media::GetPNGBits(String("UI/png/Cursor%1%2.png").Arg(base).Arg(suffix), true, 0.0f);
    if (!bits)
        return systemPicture(Cursor::Picture::SystemArrow);
    Cursor::Picture picture;
    picture.kind = Cursor::Picture::Color;
    picture.bits = bits;
    picture.size = bits->GetSize();
    // Both pictures point with their top-left corner.
    picture.hotSpot = Point(1, 1);
    return picture;
}

} // namespace

// ============================================================================================
// construction
// ============================================================================================

Cursor::Cursor(String const& name, Size const& size, Point const& hotSpot,
               std::vector<unsigned char> const& andMask, std::vector<unsigned char> const& xorMask)
    : shape(Custom), decoration(NoDecoration), name(name), shared(new Shared)
{
    Size const s(std::max(size.width, 0), std::max(size.height, 0));
    std::size_t const bytes = static_cast<std::size_t>((s.width + 7) / 8) * s.height;
    shared->picture.kind = Picture::Mono;
    shared->picture.size = s;
    shared->picture.hotSpot = hotSpot;
    shared->picture.andMask = andMask;
    shared->picture.xorMask = xorMask;
    // Short masks keep the screen where they end.
    shared->picture.andMask.resize(bytes, 0xFF);
    shared->picture.xorMask.resize(bytes, 0x00);
}

Cursor::Picture Cursor::GetPicture() const
{
    if (shared)
        return shared->picture;
    switch (shape)
    {
    case Arrow:
        return systemPicture(Picture::SystemArrow);
    case Busy:
        // The toolkit says busy with the plain arrow.
        return systemPicture(Picture::SystemArrow);
    case PointingHand:
        return systemPicture(Picture::SystemPointingHand);
    case OpenHand:
        return systemPicture(Picture::SystemOpenHand);
    case ClosedHand:
    case DragHand:
    case GrabbingHand:
        return systemPicture(Picture::SystemClosedHand);
    case ResizeUpDown:
        return systemPicture(Picture::SystemResizeUpDown);
    case ResizeLeftRight:
        return systemPicture(Picture::SystemResizeLeftRight);
    case Blank:
        return monoPicture(kBlank, NoDecoration);
    case IBeam:
        return systemPicture(Picture::SystemIBeam);
    case HorizontalBeam:
        return monoPicture(kHorizontalBeam, NoDecoration);
    case Crosshair:
        return systemPicture(Picture::SystemCrosshair);
    case ZoomIn:
        return monoPicture(kZoom, Plus);
    case ZoomOut:
        return monoPicture(kZoom, Minus);
    case DecoratedIBeam:
        return monoPicture(kIBeam, decoration);
    case DecoratedHorizontalBeam:
        return monoPicture(kHorizontalBeam, decoration);
    case DecoratedCross:
        return monoPicture(kCross, decoration);
    case Lasso:
        return pngPicture("Lasso", decoration);
    case MagicWand:
        return pngPicture("MagicWand", decoration);
    case Custom:
        break;
    }
    return systemPicture(Picture::SystemArrow);
}

// ============================================================================================
// host cursors
// ============================================================================================

boost::shared_ptr<void> Cursor::GetHandle() const
{
    if (shared)
    {
        if (!shared->made)
        {
            shared->handle = Native::PlatformSupportFactory::CreateCursor(shared->picture);
            shared->made = shared->handle != nullptr;
        }
        return shared->handle;
    }
    // Every copy of a shape cursor shares one host cursor, made on first use.
    static std::map<std::pair<int, int>, boost::shared_ptr<void>> made;
    boost::shared_ptr<void>& handle = made[std::make_pair(int(shape), int(decoration))];
    if (!handle)
        handle = Native::PlatformSupportFactory::CreateCursor(GetPicture());
    return handle;
}

void Cursor::SetCursor(Cursor const& cursor)
{
    Native::PlatformSupportFactory::SetCurrentCursor(cursor);
}

void Cursor::SetStandardCursor()
{
    SetCursor(Cursor());
}

Point Cursor::GetScreenPos()
{
    return Native::PlatformSupportFactory::CursorLocation();
}

boost::shared_ptr<void> Cursor::CreateNSCursor(Size const& size, Point const& hotSpot,
                                               std::vector<unsigned char> const& andMask,
                                               std::vector<unsigned char> const& xorMask,
                                               CursorDecoration decoration, Point const& markAt)
{
    Picture picture;
    picture.kind = Picture::Mono;
    picture.size = Size(std::max(size.width, 0), std::max(size.height, 0));
    picture.hotSpot = hotSpot;
    std::size_t const rowBytes = static_cast<std::size_t>((picture.size.width + 7) / 8);
    picture.andMask = andMask;
    picture.xorMask = xorMask;
    picture.andMask.resize(rowBytes * picture.size.height, 0xFF);
    picture.xorMask.resize(rowBytes * picture.size.height, 0x00);
    if (decoration != NoDecoration)
    {
        // The mark is painted black over whatever the masks had there.
        auto paint = [&](int x, int y)
        {
            if (x < 0 || y < 0 || x >= picture.size.width || y >= picture.size.height)
                return;
            std::size_t const i = static_cast<std::size_t>(y) * rowBytes + x / 8;
            unsigned char const bit = static_cast<unsigned char>(0x80 >> (x % 8));
            picture.andMask[i] &= static_cast<unsigned char>(~bit);
            picture.xorMask[i] &= static_cast<unsigned char>(~bit);
        };
        for (int d = -2; d <= 2; ++d)
            paint(markAt.x + d, markAt.y);
        if (decoration == Plus)
            for (int d = -2; d <= 2; ++d)
                paint(markAt.x, markAt.y + d);
    }
    return Native::PlatformSupportFactory::CreateCursor(picture);
}

boost::shared_ptr<void> Cursor::CreateNSCursor(boost::shared_ptr<DIBits> const& bits,
                                               Point const& hotSpot)
{
    if (!bits)
        return boost::shared_ptr<void>();
    Picture picture;
    picture.kind = Picture::Color;
    picture.bits = bits;
    picture.size = bits->GetSize();
    picture.hotSpot = hotSpot;
    return Native::PlatformSupportFactory::CreateCursor(picture);
}

} // namespace UI
