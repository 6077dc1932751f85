#include "Canvas/UI/DIBits.h"

#include <algorithm>
#include <cstring>

namespace UI
{

namespace
{

std::size_t pixelCount(int stride, int height)
{
    return stride > 0 && height > 0 ? static_cast<std::size_t>(stride) * height : 0;
}

} // namespace

DIBits::DIBits(boost::shared_array<unsigned int> const& pixels, int stride_, int width_,
               int height_, bool hasAlpha_)
    : bits(pixels), stride(stride_), width(width_), height(height_), hasAlpha(hasAlpha_)
{
}

DIBits DIBits::Copy() const
{
    DIBits copy(boost::shared_array<unsigned int>(), stride, width, height, hasAlpha);
    std::size_t const count = pixelCount(stride, height);
    if (bits && count > 0)
    {
        copy.bits.reset(new unsigned int[count]);
        std::memcpy(copy.bits.get(), bits.get(), count * sizeof(unsigned int));
    }
    return copy;
}

boost::shared_ptr<DIBits> DIBits::CopyToPtr() const
{
    return boost::shared_ptr<DIBits>(new DIBits(Copy()));
}

DIBits DIBits::CopyRect(UI::Rect const& rect) const
{
    UI::Rect const r = rect & GetRect();
    if (r.IsEmpty() || !bits)
        return DIBits();
    int const w = r.Width();
    int const h = r.Height();
    boost::shared_array<unsigned int> pixels(new unsigned int[pixelCount(w, h)]);
    for (int y = 0; y < h; ++y)
        std::memcpy(pixels.get() + static_cast<std::size_t>(y) * w,
                    bits.get() + static_cast<std::size_t>(r.top + y) * stride + r.left,
                    static_cast<std::size_t>(w) * sizeof(unsigned int));
    return DIBits(pixels, w, w, h, hasAlpha);
}

boost::shared_ptr<DIBits> DIBits::CopyRectToPtr(UI::Rect const& rect) const
{
    return boost::shared_ptr<DIBits>(new DIBits(CopyRect(rect)));
}

DIBits DIBits::ColorOverlay(unsigned int color, bool useColorAlpha) const
{
    DIBits copy = Copy();
    copy.ApplyColorOverlay(color, useColorAlpha);
    return copy;
}

void DIBits::ApplyColorOverlay(unsigned int color, bool useColorAlpha)
{
    if (!bits || width <= 0 || height <= 0)
        return;
    float const k = useColorAlpha ? static_cast<float>(color >> 24) * 0.003921569f : 1.0f;
    unsigned int const rgb = color & 0xFFFFFF;
    unsigned int* p = bits.get();
    std::size_t const count = static_cast<std::size_t>(width) * height;
    for (std::size_t n = 0; n < count; ++n)
    {
        unsigned int const a =
            static_cast<unsigned int>(static_cast<int>(static_cast<float>(p[n] >> 24) * k)) & 255;
        p[n] = (a << 24) | rgb;
    }
}

void DIBits::SetPixels(unsigned int const* pixels)
{
    if (!pixels || !bits || width <= 0 || height <= 0)
        return;
    std::memcpy(bits.get(), pixels,
                static_cast<std::size_t>(width) * height * sizeof(unsigned int));
}

boost::shared_ptr<DIBits> CreateDIBits(UI::Size const& size, checked_value<unsigned int> fill)
{
    if (size.width <= 0 || size.height <= 0)
        return boost::shared_ptr<DIBits>(new DIBits());
    std::size_t const count = static_cast<std::size_t>(size.width) * size.height;
    boost::shared_array<unsigned int> pixels(new unsigned int[count]);
    if (fill.IsPresent())
        std::fill_n(pixels.get(), count, fill.Get());
    return boost::shared_ptr<DIBits>(
        new DIBits(pixels, size.width, size.width, size.height, false));
}

} // namespace UI
