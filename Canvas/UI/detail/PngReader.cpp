#include "Canvas/UI/detail/PngReader.h"

#include "Canvas/UI/detail/DebugReport.h"
#include "TvBase/Util/String.h"

#include <csetjmp>
#include <cstdio>
#include <cstring>

namespace UI
{
namespace detail
{

namespace
{
// Deflate can't pack more than about 1032 bytes into one, so a header that claims more stored
// image data than that is a lie, and refusing it spares a large allocation.
constexpr unsigned long long MaxDeflateRatio = 1032;
constexpr unsigned long long DeflateSlack = 4096;
} // namespace

PngReader::PngReader(unsigned char const* data_, std::size_t size_) : data(data_), size(size_)
{
    if (!data || size < 8 || png_sig_cmp(data, 0, 8) != 0)
    {
        std::snprintf(error, sizeof error, "Not a PNG signature");
        return;
    }
    png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, &PngReader::errorFunction,
                                 &PngReader::warningFunction);
    if (!png)
        return;
    info = png_create_info_struct(png);
    if (!info)
        return;
    png_set_read_fn(png, this, &PngReader::readFunction);
    png_set_user_limits(png, PngMaxDimension, PngMaxDimension);
    png_set_chunk_malloc_max(png, 16u << 20);
}

PngReader::~PngReader()
{
    if (png)
        png_destroy_read_struct(&png, info ? &info : nullptr, nullptr);
}

void PngReader::readFunction(png_structp png, png_bytep out, png_size_t count)
{
    PngReader* self = static_cast<PngReader*>(png_get_io_ptr(png));
    if (count > self->size - self->position)
        png_error(png, "pngReadFunction: Too many bytes requested");
    std::memcpy(out, self->data + self->position, count);
    self->position += count;
}

void PngReader::errorFunction(png_structp png, png_const_charp message)
{
    PngReader* self = static_cast<PngReader*>(png_get_error_ptr(png));
    std::snprintf(self->error, sizeof self->error, "%s", message ? message : "");
    png_longjmp(png, 1);
}

void PngReader::warningFunction(png_structp, png_const_charp message)
{
    DebugReport(String("libpng warning: ") + String(message ? message : ""));
}

bool PngReader::CheckLimits()
{
    png_uint_32 w = 0;
    png_uint_32 h = 0;
    int depth = 0;
    int type = 0;
    if (!png_get_IHDR(png, info, &w, &h, &depth, &type, nullptr, nullptr, nullptr))
        return false;
    if (w == 0 || h == 0 || w > PngMaxDimension || h > PngMaxDimension)
    {
        std::snprintf(error, sizeof error, "Image too large");
        return false;
    }
    unsigned long long const bitsPerPixel =
        static_cast<unsigned long long>(depth) * png_get_channels(png, info);
    unsigned long long const stored = ((w * bitsPerPixel + 7) / 8 + 1) * h;
    if (stored > static_cast<unsigned long long>(size) * MaxDeflateRatio + DeflateSlack)
    {
        std::snprintf(error, sizeof error, "Image data can't fit the file");
        return false;
    }
    return true;
}

// Each function below that calls libpng owns its own setjmp and keeps no C++ object with a
// destructor between it and the libpng calls, so that a longjmp skips nothing that needs one.

bool PngReader::ReadHeader(int transforms)
{
    if (!IsValid())
        return false;
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_read_info(png, info);
    if (!CheckLimits())
        return false;
    if (transforms & PNG_TRANSFORM_EXPAND)
    {
        png_set_palette_to_rgb(png);
        png_set_expand_gray_1_2_4_to_8(png);
        if (png_get_valid(png, info, PNG_INFO_tRNS))
            png_set_tRNS_to_alpha(png);
    }
    if (transforms & PNG_TRANSFORM_STRIP_16)
        png_set_strip_16(png);
    if (transforms & PNG_TRANSFORM_STRIP_ALPHA)
        png_set_strip_alpha(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    width = png_get_image_width(png, info);
    height = png_get_image_height(png, info);
    colorType = png_get_color_type(png, info);
    rowBytes = png_get_rowbytes(png, info);
    return true;
}

namespace
{
bool readRows(png_structp png, png_bytepp rows)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_read_image(png, rows);
    return true;
}

void readEnd(png_structp png)
{
    // Trailing chunks carry nothing we show; damage after the image data is forgiven.
    if (setjmp(png_jmpbuf(png)))
        return;
    png_read_end(png, nullptr);
}

} // namespace

bool PngReader::ReadImage(std::vector<unsigned char>& pixels)
{
    if (!IsValid() || rowBytes == 0 || height == 0)
        return false;
    pixels.assign(rowBytes * height, 0);
    std::vector<png_bytep> rows(height);
    for (unsigned int y = 0; y < height; ++y)
        rows[y] = pixels.data() + rowBytes * y;
    if (!readRows(png, rows.data()))
        return false;
    readEnd(png);
    return true;
}

} // namespace detail
} // namespace UI
