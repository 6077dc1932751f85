#pragma once

#include <png.h>

#include <string>
#include <vector>

namespace TestSupport
{

/// What a test PNG holds: the header values, the samples of each row as libpng stores them
/// (one value a sample, 8 or 16 bits, packed by the writer for depths below 8), and an
/// optional palette and transparency.
struct PngSample
{
    unsigned int width = 0;
    unsigned int height = 0;
    int bitDepth = 8;
    int colorType = PNG_COLOR_TYPE_RGB;
    bool interlaced = false;
    std::vector<unsigned int> samples; ///< width * channels * height values
    std::vector<png_color> palette;
    std::vector<png_byte> paletteAlpha; ///< tRNS of a palette image
    bool greyKey = false;               ///< tRNS of a grey image: the value `key`
    unsigned int key = 0;
};

/// The file libpng's own writer makes of `sample`.
std::string MakePng(PngSample const& sample);

/// The samples of a PNG read back by libpng with no transform (16 bits kept), row after row;
/// empty when it can't be read.
std::vector<unsigned int> ReadRawSamples(std::string const& file, int* bitDepth, int* colorType);

/// Recomputes the CRC of the chunk that starts (at its length field) at `offset`.
void FixChunkCrc(std::string& file, std::size_t offset);
/// The offset of the first chunk of `type` ("IDAT"), or npos.
std::size_t FindChunk(std::string const& file, char const* type);

} // namespace TestSupport
