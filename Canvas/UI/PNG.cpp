// The PNG codec of screenshots and the design tools.
//
//   Bitmap        float planes with row pointers
//   Decoding      DecodePngImage over the shared libpng reader
//   Encoding      rows at 8 or 16 bits, palette when few colors, one libpng write
//   Optimising    one setting varied at a time, smallest file kept

#include "Canvas/UI/PNG.h"

#include "Canvas/UI/detail/PngReader.h"
#include "TvBase/Util/File.h"
#include "TvBase/Util/FilePath.h"

#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <map>

namespace UI
{
namespace PNG
{

// ============================================================================ Bitmap

Bitmap::Bitmap(int width_, int height_)
{
    Allocate(width_ > 0 ? unsigned(width_) : 0u, height_ > 0 ? unsigned(height_) : 0u, true);
}

void Bitmap::Allocate(unsigned int width_, unsigned int height_, bool withAlpha)
{
    red.clear(), green.clear(), blue.clear(), alpha.clear();
    samples.clear();
    width = height = 0;
    if (width_ == 0 || height_ == 0)
        return;
    std::size_t const planes = withAlpha ? 4 : 3;
    std::size_t const planeSize = std::size_t(width_) * height_;
    samples.assign(planeSize * planes, 0.0f);
    width = int(width_);
    height = int(height_);
    std::vector<float*>* rows[4] = {&red, &green, &blue, &alpha};
    for (std::size_t p = 0; p < planes; ++p)
    {
        rows[p]->resize(height_);
        for (unsigned int y = 0; y < height_; ++y)
            (*rows[p])[y] = samples.data() + p * planeSize + std::size_t(y) * width_;
    }
}

// ============================================================================ Decoding

int DecodePngImage(unsigned char const* data, unsigned int size, Bitmap& bitmap)
{
    if (!data || size < 8 || png_sig_cmp(data, 0, 8) != 0)
        return 2;
    detail::PngReader reader(data, size);
    if (!reader.ReadHeader(PNG_TRANSFORM_STRIP_16 | PNG_TRANSFORM_STRIP_ALPHA |
                           PNG_TRANSFORM_EXPAND))
        return 2;
    bool const grey = !(reader.GetColorType() & PNG_COLOR_MASK_COLOR);
    unsigned int const channels = grey ? 1 : 3;
    if (reader.GetRowBytes() < std::size_t(channels) * reader.GetWidth())
        return 2;
    std::vector<unsigned char> rows;
    if (!reader.ReadImage(rows))
        return 2;
    bitmap.Allocate(reader.GetWidth(), reader.GetHeight(), false);
    for (int y = 0; y < bitmap.GetHeight(); ++y)
    {
        unsigned char const* in = rows.data() + reader.GetRowBytes() * y;
        for (int x = 0; x < bitmap.GetWidth(); ++x, in += channels)
        {
            bitmap.red[y][x] = in[0];
            bitmap.green[y][x] = grey ? in[0] : in[1];
            bitmap.blue[y][x] = grey ? in[0] : in[2];
        }
    }
    return 0;
}

// ============================================================================ Encoding

namespace
{

unsigned int to8(float v)
{
    double const r = std::rint(v);
    return r <= 0.0 ? 0u : r >= 255.0 ? 255u : unsigned(r);
}

unsigned int to16(float v)
{
    double const r = std::rint(double(v) * 257.0);
    return r <= 0.0 ? 0u : r >= 65535.0 ? 65535u : unsigned(r);
}

// The rows and header of one image, ready for libpng; built once and written many times.
struct Encoded
{
    int colorType = PNG_COLOR_TYPE_RGB;
    int bitDepth = 8;
    unsigned int width = 0;
    unsigned int height = 0;
    std::vector<png_color> palette;
    std::vector<png_byte> transparency;
    std::vector<png_byte> bytes;
    std::vector<png_bytep> rows;
};

// Few colors (at most 256, at 8 bits) make a palette, with a transparency entry per color when
// any is translucent. Colors are sorted larger first so that equal images give equal files.
bool encodePalette(Bitmap const& bitmap, bool withAlpha, Encoded& out)
{
    std::vector<unsigned int> colors;
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
        {
            unsigned int const c = to8(bitmap.red[y][x]) << 24 | to8(bitmap.green[y][x]) << 16 |
                                   to8(bitmap.blue[y][x]) << 8 |
                                   (withAlpha ? to8(bitmap.alpha[y][x]) : 255u);
            if (std::find(colors.begin(), colors.end(), c) == colors.end())
            {
                if (colors.size() == 256)
                    return false;
                colors.push_back(c);
            }
        }
    std::sort(colors.begin(), colors.end(), ColorGreater());
    std::map<unsigned int, png_byte> index;
    bool translucent = false;
    for (std::size_t i = 0; i < colors.size(); ++i)
    {
        unsigned int const c = colors[i];
        index[c] = png_byte(i);
        out.palette.push_back(png_color{png_byte(c >> 24), png_byte(c >> 16), png_byte(c >> 8)});
        out.transparency.push_back(png_byte(c));
        translucent = translucent || (c & 0xFF) != 0xFF;
    }
    if (!translucent)
        out.transparency.clear();
    out.colorType = PNG_COLOR_TYPE_PALETTE;
    out.bitDepth = 8;
    out.bytes.resize(std::size_t(out.width) * out.height);
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
        {
            unsigned int const c = to8(bitmap.red[y][x]) << 24 | to8(bitmap.green[y][x]) << 16 |
                                   to8(bitmap.blue[y][x]) << 8 |
                                   (withAlpha ? to8(bitmap.alpha[y][x]) : 255u);
            out.bytes[std::size_t(y) * out.width + x] = index[c];
        }
    return true;
}

void encodeDirect(Bitmap const& bitmap, bool withAlpha, bool sixteenBit, Encoded& out)
{
    out.colorType = withAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
    out.bitDepth = sixteenBit ? 16 : 8;
    std::size_t const channels = withAlpha ? 4 : 3;
    std::size_t const sampleBytes = sixteenBit ? 2 : 1;
    out.bytes.resize(std::size_t(out.width) * out.height * channels * sampleBytes);
    png_byte* p = out.bytes.data();
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
        {
            float const samples[4] = {bitmap.red[y][x], bitmap.green[y][x], bitmap.blue[y][x],
                                      withAlpha ? bitmap.alpha[y][x] : 255.0f};
            for (std::size_t c = 0; c < channels; ++c)
            {
                if (sixteenBit)
                {
                    unsigned int const v = to16(samples[c]);
                    *p++ = png_byte(v >> 8); // PNG stores 16-bit samples big-endian
                    *p++ = png_byte(v);
                }
                else
                    *p++ = png_byte(to8(samples[c]));
            }
        }
}

Encoded encode(Bitmap const& bitmap, bool withAlpha, bool sixteenBit)
{
    Encoded out;
    out.width = unsigned(bitmap.GetWidth());
    out.height = unsigned(bitmap.GetHeight());
    if (sixteenBit || !encodePalette(bitmap, withAlpha, out))
    {
        out.palette.clear();
        out.transparency.clear();
        encodeDirect(bitmap, withAlpha, sixteenBit, out);
    }
    std::size_t const rowBytes = out.bytes.size() / out.height;
    out.rows.resize(out.height);
    for (unsigned int y = 0; y < out.height; ++y)
        out.rows[y] = out.bytes.data() + rowBytes * y;
    return out;
}

void writeError(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void writeWarning(png_structp, png_const_charp) {}

// The only function that calls libpng's writer; it keeps no C++ object across the setjmp.
bool writeEncoded(std::FILE* file, png_structp png, png_infop info, Encoded& image,
                  PngComprParams const& params)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_init_io(png, file);
    png_set_compression_level(png, params.level);
    png_set_compression_mem_level(png, params.memoryLevel);
    png_set_compression_strategy(png, params.strategy);
    png_set_compression_window_bits(png, params.windowBits);
    if (params.filter != 0)
        png_set_filter(png, PNG_FILTER_TYPE_BASE, params.filter);
    png_set_IHDR(png, info, image.width, image.height, image.bitDepth, image.colorType,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE);
    if (!image.palette.empty())
        png_set_PLTE(png, info, image.palette.data(), int(image.palette.size()));
    if (!image.transparency.empty())
        png_set_tRNS(png, info, image.transparency.data(), int(image.transparency.size()), nullptr);
    png_set_rows(png, info, image.rows.data());
    png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    return true;
}

bool writeFile(String const& path, Encoded& image, PngComprParams const& params)
{
    std::FILE* file = std::fopen(path.CStr(), "wb");
    if (!file)
        return false;
    png_structp png =
        png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &writeError, &writeWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    bool ok = png && info && writeEncoded(file, png, info, image, params);
    if (png)
        png_destroy_write_struct(&png, info ? &info : nullptr);
    ok = std::fclose(file) == 0 && ok;
    return ok;
}

unsigned long long fileSize(String const& path)
{
    return Util::File(FilePath(path)).Size().GetOr(~0ull);
}

// ============================================================================ Optimising

// The settings tried, one field at a time, in this order.
int const Strategies[] = {Z_DEFAULT_STRATEGY, Z_FILTERED, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED};
int const Filters[] = {
    PNG_FILTER_NONE,
    PNG_FILTER_SUB,
    PNG_FILTER_UP,
    PNG_FILTER_AVG,
    PNG_FILTER_PAETH,
    PNG_ALL_FILTERS,
    PNG_FILTER_NONE | PNG_FILTER_SUB,
    PNG_FILTER_SUB | PNG_FILTER_UP,
    PNG_FILTER_UP | PNG_FILTER_PAETH,
    PNG_FILTER_SUB | PNG_FILTER_UP | PNG_FILTER_PAETH,
};
int const WindowBits[] = {15, 14, 13, 12, 11, 10, 9};

struct Trial
{
    int PngComprParams::*field;
    int value;
};

std::vector<Trial> trials()
{
    std::vector<Trial> list;
    for (int s : Strategies)
        list.push_back(Trial{&PngComprParams::strategy, s});
    for (int f : Filters)
        list.push_back(Trial{&PngComprParams::filter, f});
    for (int w : WindowBits)
        list.push_back(Trial{&PngComprParams::windowBits, w});
    return list;
}

} // namespace

bool WritePngFile(String const& path, Bitmap const& bitmap, bool hasAlpha, bool sixteenBit,
                  PngComprParams params, bool (*progress)(void*, float), void* context,
                  bool optimise)
{
    if (bitmap.GetWidth() <= 0 || bitmap.GetHeight() <= 0 || path.IsEmpty())
        return false;
    Encoded image = encode(bitmap, hasAlpha && bitmap.HasAlpha(), sixteenBit);
    if (!optimise)
        return writeFile(path, image, params);

    if (!writeFile(path, image, params))
        return false;
    PngComprParams best = params;
    unsigned long long bestSize = fileSize(path);
    std::vector<Trial> const list = trials();
    for (std::size_t i = 0; i < list.size(); ++i)
    {
        PngComprParams candidate = best;
        candidate.*(list[i].field) = list[i].value;
        if (!(candidate == best) && writeFile(path, image, candidate))
        {
            unsigned long long const size = fileSize(path);
            if (size < bestSize)
                bestSize = size, best = candidate;
        }
        if (progress && !progress(context, float(i + 1) / float(list.size() + 1)))
            break;
    }
    bool const ok = writeFile(path, image, best);
    if (progress)
        progress(context, 1.0f);
    return ok;
}

} // namespace PNG
} // namespace UI
