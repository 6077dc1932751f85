#include "TvBase/Util/IPP.h"

#include <cstdlib>

namespace IPP
{

namespace
{

template <typename T>
T* allocate(unsigned int count)
{
    void* block = nullptr;
    std::size_t const elements = count == 0 ? 1 : count;
    if (posix_memalign(&block, 64, elements * sizeof(T)) != 0)
        return nullptr;
    return static_cast<T*>(block);
}

unsigned int* row(unsigned int* pixels, int stepBytes, int y)
{
    return reinterpret_cast<unsigned int*>(reinterpret_cast<unsigned char*>(pixels) +
                                           static_cast<std::ptrdiff_t>(stepBytes) * y);
}

/// Applies `change` to each of the four 8-bit channels of every pixel.
template <typename Change>
void forEachChannel(unsigned int* pixels, int stepBytes, int width, int height, Change change)
{
    if (!pixels || width < 1 || height < 1)
        return;
    for (int y = 0; y < height; ++y)
    {
        unsigned int* const line = row(pixels, stepBytes, y);
        for (int x = 0; x < width; ++x)
        {
            unsigned int result = 0;
            for (int shift = 0; shift < 32; shift += 8)
                result |= static_cast<unsigned int>(change((line[x] >> shift) & 0xFF, shift))
                          << shift;
            line[x] = result;
        }
    }
}

} // namespace

unsigned char* Malloc_Byte(unsigned int count)
{
    return allocate<unsigned char>(count);
}

float* Malloc_Float(unsigned int count)
{
    return allocate<float>(count);
}

short* Malloc_Int16(unsigned int count)
{
    return allocate<short>(count);
}

double* Malloc_Double(unsigned int count)
{
    return allocate<double>(count);
}

void Free(void* block)
{
    std::free(block);
}

int GetIppInitStatus()
{
    return 0;
}

bool DidIppInitSucceed()
{
    return GetIppInitStatus() == 0;
}

void ImageSet(unsigned int value, unsigned int* pixels, int stepBytes, int width, int height)
{
    if (!pixels || width < 1 || height < 1)
        return;
    for (int y = 0; y < height; ++y)
        Set(static_cast<unsigned int>(width), value, row(pixels, stepBytes, y));
}

void ImageAddConstant_InPlace(unsigned int value, unsigned int* pixels, int stepBytes, int width,
                              int height)
{
    forEachChannel(pixels, stepBytes, width, height,
                   [value](unsigned int channel, int shift)
                   {
                       unsigned int const sum = channel + ((value >> shift) & 0xFF);
                       return sum > 255 ? 255u : sum;
                   });
}

void ImagePreMultiplyAlphaConstant_InPlace(unsigned char alpha, unsigned int* pixels, int stepBytes,
                                           int width, int height)
{
    forEachChannel(pixels, stepBytes, width, height,
                   [alpha](unsigned int channel, int) { return (channel * alpha + 127) / 255; });
}

} // namespace IPP
