#pragma once

#include "TvBase/Controller/BoolParam.h"

namespace Controller
{

/// An on/off parameter kept in memory; it starts at its default.
class BoolParamMemory : public BoolParam
{
public:
    explicit BoolParamMemory(bool defaultValue);

    /// Stores a different value and emits `valueChanged`; an equal value emits nothing.
    void set(bool const& newValue) override;
    bool get() const override { return value; }
    bool GetDefault() const override { return defaultValue; }

private:
    bool defaultValue;
    bool value;
};

} // namespace Controller
