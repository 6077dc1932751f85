#include "TvBase/Controller/EnumParamMemory.h"

#include <utility>

namespace Controller
{

EnumParamMemory::EnumParamMemory(unsigned int defaultValue, std::vector<String> valueCaptions)
    : defaultValue(defaultValue), value(defaultValue), captions(std::move(valueCaptions))
{
}

void EnumParamMemory::set(unsigned int const& newValue)
{
    unsigned int const clamped = newValue > GetRange().maximum ? GetRange().maximum : newValue;
    if (clamped == value)
        return;
    value = clamped;
    valueChanged(value);
}

String EnumParamMemory::GetCaptionForValue(unsigned int index) const
{
    return index < captions.size() ? captions[index] : String();
}

} // namespace Controller
