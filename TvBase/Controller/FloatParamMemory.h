#pragma once

#include "TvBase/Controller/FloatParam.h"

namespace Controller
{

/// A continuous parameter kept in memory; it starts at its default (not clamped).
class FloatParamMemory : public FloatParam
{
public:
    FloatParamMemory(float defaultValue, value_range<float> range, String unit = String(""));

    /// Clamps `newValue` into the range (NaN passes unclamped), then stores it and emits
    /// `valueChanged` unless it equals the stored value.
    void set(float const& newValue) override;
    float get() const override { return value; }

    value_range<float> GetRange() const override { return range; }
    float GetDefault() const override { return defaultValue; }
    String GetUnit() const override { return unit; }

    /// Stores the range and emits `rangeChanged`. The value is not clamped again until the next
    /// `set`.
    void SetRange(value_range<float> newRange);
    void SetDefault(float newDefault) { defaultValue = newDefault; }

private:
    float defaultValue;
    value_range<float> range;
    float value;
    String unit;
};

} // namespace Controller
