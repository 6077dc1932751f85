#pragma once

#include <png.h>

#include <cstddef>
#include <vector>

namespace UI
{
namespace detail
{

/// The largest width or height either decoder accepts.
constexpr unsigned int PngMaxDimension = 16384;

/// One libpng read over a block of memory, with errors leaving libpng by `longjmp` (it is C; a
/// C++ throw must never cross it) and turning into a false result with `GetError` set.
/// Warnings go to the debug report with the prefix "libpng warning: ".
class PngReader
{
public:
    PngReader(unsigned char const* data, std::size_t size);
    ~PngReader();
    PngReader(PngReader const&) = delete;
    PngReader& operator=(PngReader const&) = delete;

    /// False when libpng could not be set up or the data lacks the 8-byte signature.
    bool IsValid() const { return png && info; }
    png_structp GetPng() const { return png; }
    png_infop GetInfo() const { return info; }
    char const* GetError() const { return error; }

    /// Reads the header and sets up `transforms`, of which PNG_TRANSFORM_EXPAND (palette to RGB,
    /// small greys to 8 bits, tRNS to alpha), PNG_TRANSFORM_STRIP_16 and
    /// PNG_TRANSFORM_STRIP_ALPHA are known. Refuses sizes over `PngMaxDimension` and images whose
    /// stored size no deflate stream of this length could hold, before anything is allocated.
    bool ReadHeader(int transforms);
    /// After `ReadHeader`: decodes all rows into `pixels` (rows of `GetRowBytes` each).
    bool ReadImage(std::vector<unsigned char>& pixels);

    unsigned int GetWidth() const { return width; }
    unsigned int GetHeight() const { return height; }
    int GetColorType() const { return colorType; }
    std::size_t GetRowBytes() const { return rowBytes; }

    /// Checks the IHDR values against the limits; false (error set) when they are too large.
    bool CheckLimits();

private:
    static void readFunction(png_structp png, png_bytep out, png_size_t count);
    static void errorFunction(png_structp png, png_const_charp message);
    static void warningFunction(png_structp png, png_const_charp message);

    unsigned char const* data;
    std::size_t size;
    std::size_t position = 0;
    png_structp png = nullptr;
    png_infop info = nullptr;
    char error[256] = {};
    unsigned int width = 0;
    unsigned int height = 0;
    int colorType = 0;
    std::size_t rowBytes = 0;
};

} // namespace detail
} // namespace UI
