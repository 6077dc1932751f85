#include "TvBase/Controller/BoolParamMemory.h"

namespace Controller
{

BoolParamMemory::BoolParamMemory(bool defaultValue)
    : defaultValue(defaultValue), value(defaultValue)
{
}

void BoolParamMemory::set(bool const& newValue)
{
    if (newValue == value)
        return;
    value = newValue;
    valueChanged(value);
}

} // namespace Controller
