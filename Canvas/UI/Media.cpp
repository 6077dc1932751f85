#include "Canvas/UI/Media.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/detail/DebugReport.h"
#include "Canvas/UI/detail/PngReader.h"
#include "TvBase/Util/Exception.h"
#include "TvBase/Util/ResourceManager.h"

#include <boost/weak_ptr.hpp>

#include <cmath>
#include <map>

namespace UI
{
namespace Media
{

value_range<float> const GAMMA_CORRECTION_RANGE(-1.0f, 1.0f);

namespace
{

struct CacheEntry
{
    boost::weak_ptr<UI::DIBits> bits;
    float gamma = 0.0f;
};

std::map<String, CacheEntry>& cache()
{
    static std::map<String, CacheEntry> entries;
    return entries;
}

// The rows of an 8-bit image, after expansion, as 0xAARRGGBB. Alpha counts only when some pixel
// is not fully opaque, so that opaque images blit as row copies.
boost::shared_ptr<UI::DIBits> convertRows(std::vector<unsigned char> const& rows,
                                          std::size_t rowBytes, unsigned int width,
                                          unsigned int height, int colorType)
{
    boost::shared_array<unsigned int> pixels(new unsigned int[std::size_t(width) * height]);
    bool translucent = false;
    unsigned int* out = pixels.get();
    for (unsigned int y = 0; y < height; ++y)
    {
        unsigned char const* in = rows.data() + rowBytes * y;
        for (unsigned int x = 0; x < width; ++x)
        {
            unsigned int r, g, b, a = 255;
            switch (colorType)
            {
            case PNG_COLOR_TYPE_RGB_ALPHA:
                r = in[0], g = in[1], b = in[2], a = in[3];
                in += 4;
                break;
            case PNG_COLOR_TYPE_RGB:
                r = in[0], g = in[1], b = in[2];
                in += 3;
                break;
            case PNG_COLOR_TYPE_GRAY_ALPHA:
                r = g = b = in[0];
                a = in[1];
                in += 2;
                break;
            default: // grey
                r = g = b = in[0];
                in += 1;
                break;
            }
            translucent = translucent || a < 255;
            *out++ = a << 24 | r << 16 | g << 8 | b;
        }
    }
    return boost::shared_ptr<UI::DIBits>(
        new UI::DIBits(pixels, int(width), int(width), int(height), translucent));
}

boost::shared_ptr<UI::DIBits> decodePNG(unsigned int size, unsigned char const* data)
{
    detail::PngReader reader(data, size);
    if (!reader.ReadHeader(PNG_TRANSFORM_EXPAND | PNG_TRANSFORM_STRIP_16))
        return boost::shared_ptr<UI::DIBits>();
    int const type = reader.GetColorType();
    std::size_t const channels = type == PNG_COLOR_TYPE_RGB_ALPHA    ? 4
                                 : type == PNG_COLOR_TYPE_RGB        ? 3
                                 : type == PNG_COLOR_TYPE_GRAY_ALPHA ? 2
                                                                     : 1;
    // After the expansions every type is 8 bits a sample; anything else is refused rather than
    // read past the rows.
    if (reader.GetRowBytes() < channels * reader.GetWidth())
        return boost::shared_ptr<UI::DIBits>();
    std::vector<unsigned char> rows;
    if (!reader.ReadImage(rows))
        return boost::shared_ptr<UI::DIBits>();
    return convertRows(rows, reader.GetRowBytes(), reader.GetWidth(), reader.GetHeight(), type);
}

void applyGamma(UI::DIBits& bits, float gamma)
{
    std::array<unsigned char, 256> const table = MakeGammaTable(gamma);
    unsigned int* p = bits.GetPixels();
    std::size_t const count = std::size_t(bits.GetStride()) * bits.GetHeight();
    for (std::size_t i = 0; i < count; ++i)
    {
        unsigned int const c = p[i];
        p[i] = (c & 0xFF000000u) | unsigned(table[(c >> 16) & 0xFF]) << 16 |
               unsigned(table[(c >> 8) & 0xFF]) << 8 | table[c & 0xFF];
    }
}

boost::shared_ptr<UI::DIBits> getPNGBits(unsigned int size, unsigned char const* data, float gamma)
{
    boost::shared_ptr<UI::DIBits> bits = decodePNG(size, data);
    if (!bits)
    {
        detail::DebugReport(String("Can't decode PNG (%1 bytes)").Arg(size));
        return bits;
    }
    if (gamma != 0.0f)
        applyGamma(*bits, gamma);
    return bits;
}

} // namespace

std::array<unsigned char, 256> MakeGammaTable(float gamma)
{
    float const min = GAMMA_CORRECTION_RANGE.minimum;
    float const max = GAMMA_CORRECTION_RANGE.maximum;
    double const exponent = max > min ? 1.4 - 0.8 * (gamma - min) / (max - min) : 1.4;
    std::array<unsigned char, 256> table;
    for (int i = 0; i < 256; ++i)
    {
        double const v = std::round(std::pow(i / 255.0, exponent) * 255.0);
        table[i] = static_cast<unsigned char>(v < 0.0 ? 0.0 : v > 255.0 ? 255.0 : v);
    }
    return table;
}

boost::shared_ptr<UI::DIBits> GetPNGBits(unsigned int size, unsigned char const* data, float gamma)
{
    return getPNGBits(size, data, gamma);
}

boost::shared_ptr<UI::DIBits> GetPNGBits(String const& name, bool useCache, float gamma)
{
    if (useCache)
    {
        auto found = cache().find(name);
        if (found != cache().end() && found->second.gamma == gamma)
        {
            if (boost::shared_ptr<UI::DIBits> alive = found->second.bits.lock())
                return alive;
        }
    }
    unsigned char const* data = nullptr;
    unsigned int size = 0;
    try
    {
        if (!Util::ResourceManager::Get().GetFile(name, data, size))
        {
            detail::DebugReport(String("Can't find embedded file %1").Arg(name));
            return boost::shared_ptr<UI::DIBits>();
        }
    }
    catch (Exception::Base const& e)
    {
        detail::DebugReport(e.GetMessage());
        return boost::shared_ptr<UI::DIBits>();
    }
    boost::shared_ptr<UI::DIBits> bits = getPNGBits(size, data, gamma);
    if (useCache && bits)
        CachePNGBits(name, bits, gamma);
    return bits;
}

void CachePNGBits(String const& name, boost::shared_ptr<UI::DIBits> const& bits, float gamma)
{
    CacheEntry& entry = cache()[name];
    entry.bits = bits;
    entry.gamma = gamma;
}

std::size_t GetCacheSize()
{
    return cache().size();
}

} // namespace Media
} // namespace UI
