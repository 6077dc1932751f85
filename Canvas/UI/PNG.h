#pragma once

#include "TvBase/Util/String.h"

#include <vector>

namespace UI
{
/// The heavier PNG codec of screenshots and the design tools: float planes in, smallest file out.
namespace PNG
{

/// An image as planes of `float` samples from 0 to 255 (so that 16-bit output keeps fractions).
/// `red[y]` points at row y of the red plane, and so on; `alpha` is empty without an alpha
/// plane. Movable, not copyable: the row pointers point into the bitmap's own storage.
class Bitmap
{
public:
    Bitmap() = default;
    /// Allocates width by height with an alpha plane, all samples 0.
    Bitmap(int width, int height);
    Bitmap(Bitmap&&) = default;
    Bitmap& operator=(Bitmap&&) = default;
    Bitmap(Bitmap const&) = delete;
    Bitmap& operator=(Bitmap const&) = delete;

    /// Replaces the planes with zeroed ones of the new size; zero in either direction gives an
    /// empty bitmap.
    void Allocate(unsigned int width, unsigned int height, bool withAlpha);

    int GetWidth() const { return width; }
    int GetHeight() const { return height; }
    bool HasAlpha() const { return !alpha.empty(); }

    std::vector<float*> red;
    std::vector<float*> green;
    std::vector<float*> blue;
    std::vector<float*> alpha;

private:
    int width = 0;
    int height = 0;
    std::vector<float> samples;
};

/// The deflate settings of one write. `filter` is a mask of libpng's PNG_FILTER_* bits (0 lets
/// libpng choose). `tooFar` is kept with the others so that a set of settings reads as a whole;
/// the system zlib offers no switch for it, so writes here cannot vary it.
struct PngComprParams
{
    int level = 9;
    int memoryLevel = 9;
    int strategy = 0;
    int windowBits = 15;
    int filter = 0;
    int tooFar = 4096;

    bool operator==(PngComprParams const& o) const
    {
        return level == o.level && memoryLevel == o.memoryLevel && strategy == o.strategy &&
               windowBits == o.windowBits && filter == o.filter && tooFar == o.tooFar;
    }
};

/// Decodes `size` bytes of PNG into `bitmap` as red, green and blue at 8 bits (16-bit samples
/// are cut to 8, alpha dropped, palette and small grey depths expanded; grey fills all three
/// planes). 0 on success, 2 on any failure: bad signature, damage, truncation, or more than
/// 16384 pixels in either direction.
int DecodePngImage(unsigned char const* data, unsigned int size, Bitmap& bitmap);

/// Orders 0xRRGGBB(AA) colors for a palette: by their 32-bit value, larger first.
struct ColorGreater
{
    bool operator()(unsigned int a, unsigned int b) const { return a > b; }
};

/// Writes `bitmap` to `path` as PNG: RGB, or RGBA when `hasAlpha` (and the bitmap has an alpha
/// plane), at 8 bits with samples rounded by `rint` or at 16 bits (sample * 257) when
/// `sixteenBit`. An 8-bit image of at most 256 colors is written as a palette. With `optimise`
/// it tries the settings one at a time (strategies, filters alone and combined, window sizes),
/// keeps each that makes the file smaller and writes once more with the best; `progress` is
/// then told the fraction done between tries with `context`, and stops the search early (the
/// best so far is written) when it returns false. False when the file can't be written or the
/// bitmap is empty.
bool WritePngFile(String const& path, Bitmap const& bitmap, bool hasAlpha, bool sixteenBit,
                  PngComprParams params, bool (*progress)(void*, float), void* context,
                  bool optimise);

} // namespace PNG
} // namespace UI
