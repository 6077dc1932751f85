#pragma once

#include "TvBase/Controller/EnumParam.h"

#include <vector>

namespace Controller
{

/// A choice kept in memory, with one caption per value; it starts at its default.
class EnumParamMemory : public EnumParam
{
public:
    EnumParamMemory(unsigned int defaultValue, std::vector<String> captions);

    /// Clamps `newValue` to the last value, then stores it and emits `valueChanged` unless it
    /// equals the stored value. With no values at all it stores 0.
    void set(unsigned int const& newValue) override;
    unsigned int get() const override { return value; }

    unsigned int GetDefault() const override { return defaultValue; }
    String GetCaptionForValue(unsigned int index) const override;
    unsigned int GetNumValues() const override
    {
        return static_cast<unsigned int>(captions.size());
    }

private:
    unsigned int defaultValue;
    unsigned int value;
    std::vector<String> captions;
};

} // namespace Controller
