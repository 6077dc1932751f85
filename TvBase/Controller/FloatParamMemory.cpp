#include "TvBase/Controller/FloatParamMemory.h"

namespace Controller
{

FloatParamMemory::FloatParamMemory(float defaultValue, value_range<float> range, String unit)
    : defaultValue(defaultValue), range(range), value(defaultValue), unit(unit)
{
}

void FloatParamMemory::set(float const& newValue)
{
    // NaN fails both comparisons and is stored as it is; it never equals the stored value, so
    // every NaN set is announced.
    float clamped = newValue;
    if (clamped < range.minimum)
        clamped = range.minimum;
    if (clamped > range.maximum)
        clamped = range.maximum;
    if (clamped == value)
        return;
    value = clamped;
    valueChanged(value);
}

void FloatParamMemory::SetRange(value_range<float> newRange)
{
    range = newRange;
    rangeChanged(range);
}

} // namespace Controller
