#include "Canvas/UI/Native/DIBSection.h"

#include "Canvas/UI/DIBits.h"

#include <cstdlib>
#include <cstring>

namespace UI
{
namespace Native
{

DIBSection::DIBSection() = default;

DIBSection::DIBSection(UI::Size const& newSize)
{
    init(newSize);
}

DIBSection::~DIBSection()
{
    std::free(bits);
}

void DIBSection::init(UI::Size const& newSize)
{
    size = newSize;
    if (newSize.width < 0 || newSize.height < 0)
        return;
    // Rows start on 16-pixel boundaries so that the vector blits keep alignment row after row.
    int const rounded = (newSize.width + 15) / 16 * 16;
    std::size_t const count = static_cast<std::size_t>(rounded) * newSize.height;
    if (count == 0)
    {
        stride = rounded;
        return;
    }
    bits = static_cast<unsigned int*>(std::calloc(count, sizeof(unsigned int)));
    stride = bits ? rounded : 0;
}

boost::shared_ptr<UI::DIBits> DIBSection::GetBits() const
{
    if (!bits)
        return boost::shared_ptr<UI::DIBits>();
    std::size_t const count = static_cast<std::size_t>(stride) * size.height;
    boost::shared_array<unsigned int> copy(new unsigned int[count]);
    std::memcpy(copy.get(), bits, count * sizeof(unsigned int));
    return boost::shared_ptr<UI::DIBits>(
        new UI::DIBits(copy, stride, size.width, size.height, false));
}

boost::shared_ptr<DIBSection> DIBSection::CopyContext() const
{
    boost::shared_ptr<DIBSection> copy(new DIBSection(size));
    if (bits && copy->bits)
        std::memcpy(copy->bits, bits,
                    static_cast<std::size_t>(stride) * size.height * sizeof(unsigned int));
    return copy;
}

} // namespace Native
} // namespace UI
