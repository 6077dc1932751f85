#include "tests/Canvas/UI/support/PngTestSupport.h"

#include <zlib.h>

#include <csetjmp>
#include <cstring>
#include <stdexcept>

namespace TestSupport
{

namespace
{

int channelsOf(int colorType)
{
    switch (colorType)
    {
    case PNG_COLOR_TYPE_GRAY:
    case PNG_COLOR_TYPE_PALETTE:
        return 1;
    case PNG_COLOR_TYPE_GRAY_ALPHA:
        return 2;
    case PNG_COLOR_TYPE_RGB:
        return 3;
    default:
        return 4;
    }
}

void appendToString(png_structp png, png_bytep data, png_size_t length)
{
    static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<char*>(data), length);
}

void flushNothing(png_structp) {}

struct Source
{
    std::string const* file;
    std::size_t at;
};

void readFromString(png_structp png, png_bytep out, png_size_t length)
{
    Source* s = static_cast<Source*>(png_get_io_ptr(png));
    if (length > s->file->size() - s->at)
        png_error(png, "short");
    std::memcpy(out, s->file->data() + s->at, length);
    s->at += length;
}

bool writeAll(png_structp png, png_infop info, PngSample const& sample, std::string* out,
              png_bytepp rows)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_write_fn(png, out, &appendToString, &flushNothing);
    png_set_IHDR(png, info, sample.width, sample.height, sample.bitDepth, sample.colorType,
                 sample.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE);
    if (!sample.palette.empty())
        png_set_PLTE(png, info, sample.palette.data(), int(sample.palette.size()));
    if (!sample.paletteAlpha.empty())
        png_set_tRNS(png, info, sample.paletteAlpha.data(), int(sample.paletteAlpha.size()),
                     nullptr);
    if (sample.greyKey)
    {
        png_color_16 key = {};
        key.gray = png_uint_16(sample.key);
        png_set_tRNS(png, info, nullptr, 0, &key);
    }
    png_set_rows(png, info, rows);
    png_write_png(png, info, PNG_TRANSFORM_PACKING, nullptr);
    return true;
}

bool readAll(png_structp png, png_infop info)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_read_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    return true;
}

} // namespace

std::string MakePng(PngSample const& sample)
{
    int const channels = channelsOf(sample.colorType);
    std::size_t const perRow = std::size_t(sample.width) * channels;
    bool const wide = sample.bitDepth == 16;
    // PNG_TRANSFORM_PACKING packs sub-byte samples from one byte each.
    std::vector<png_byte> bytes(perRow * sample.height * (wide ? 2 : 1));
    for (std::size_t i = 0; i < perRow * sample.height; ++i)
    {
        unsigned int const v = sample.samples.at(i);
        if (wide)
            bytes[2 * i] = png_byte(v >> 8), bytes[2 * i + 1] = png_byte(v);
        else
            bytes[i] = png_byte(v);
    }
    std::vector<png_bytep> rows(sample.height);
    for (unsigned int y = 0; y < sample.height; ++y)
        rows[y] = bytes.data() + perRow * (wide ? 2 : 1) * y;

    std::string out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    bool const ok = writeAll(png, info, sample, &out, rows.data());
    png_destroy_write_struct(&png, &info);
    if (!ok)
        throw std::runtime_error("libpng could not write the test image");
    return out;
}

std::vector<unsigned int> ReadRawSamples(std::string const& file, int* bitDepth, int* colorType)
{
    std::vector<unsigned int> samples;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    Source source{&file, 0};
    png_set_read_fn(png, &source, &readFromString);
    if (readAll(png, info))
    {
        *bitDepth = png_get_bit_depth(png, info);
        *colorType = png_get_color_type(png, info);
        png_uint_32 const w = png_get_image_width(png, info);
        png_uint_32 const h = png_get_image_height(png, info);
        int const channels = png_get_channels(png, info);
        png_bytepp rows = png_get_rows(png, info);
        for (png_uint_32 y = 0; y < h; ++y)
            for (png_uint_32 i = 0; i < w * channels; ++i)
            {
                if (*bitDepth == 16)
                    samples.push_back(unsigned(rows[y][2 * i]) << 8 | rows[y][2 * i + 1]);
                else if (*bitDepth == 8)
                    samples.push_back(rows[y][i]);
            }
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return samples;
}

std::size_t FindChunk(std::string const& file, char const* type)
{
    std::size_t at = 8;
    while (at + 12 <= file.size())
    {
        unsigned int const length =
            unsigned((unsigned char)file[at]) << 24 | unsigned((unsigned char)file[at + 1]) << 16 |
            unsigned((unsigned char)file[at + 2]) << 8 | unsigned((unsigned char)file[at + 3]);
        if (file.compare(at + 4, 4, type) == 0)
            return at;
        at += 12 + std::size_t(length);
    }
    return std::string::npos;
}

void FixChunkCrc(std::string& file, std::size_t offset)
{
    unsigned int const length = unsigned((unsigned char)file[offset]) << 24 |
                                unsigned((unsigned char)file[offset + 1]) << 16 |
                                unsigned((unsigned char)file[offset + 2]) << 8 |
                                unsigned((unsigned char)file[offset + 3]);
    uLong crc = crc32(0L, Z_NULL, 0);
    crc = crc32(crc, reinterpret_cast<Bytef const*>(file.data() + offset + 4), length + 4);
    std::size_t const at = offset + 8 + length;
    file[at] = char(crc >> 24);
    file[at + 1] = char(crc >> 16);
    file[at + 2] = char(crc >> 8);
    file[at + 3] = char(crc);
}

} // namespace TestSupport
