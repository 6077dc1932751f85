// Hostile PNG input against both decoders: any bytes must give an image or nothing, never a
// crash, a leak or an overrun. Decoded sizes are checked against the limits.

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Media.h"
#include "Canvas/UI/PNG.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    if (size > 1u << 20)
        return 0;
    boost::shared_ptr<UI::DIBits> bits = UI::Media::GetPNGBits(unsigned(size), data, 0.3f);
    if (bits && (bits->GetWidth() <= 0 || bits->GetWidth() > 16384 || bits->GetHeight() <= 0 ||
                 bits->GetHeight() > 16384 || bits->GetStride() != bits->GetWidth()))
        std::abort();
    UI::PNG::Bitmap bitmap;
    int const result = UI::PNG::DecodePngImage(data, unsigned(size), bitmap);
    if (result != 0 && result != 2)
        std::abort();
    if (result == 0 && (bitmap.GetWidth() <= 0 || int(bitmap.red.size()) != bitmap.GetHeight()))
        std::abort();
    return 0;
}
