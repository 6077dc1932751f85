#pragma once

#include "TvBase/Controller/Param.h"
#include "TvBase/Util/String.h"

namespace Controller
{

/// A continuous parameter with a range, a default and a unit to show beside the value.
class FloatParam : public SingleParam<float>
{
public:
    virtual value_range<float> GetRange() const = 0;
    virtual float GetDefault() const = 0;
    /// The unit shown beside the value ("dB", "%"); empty here.
    virtual String GetUnit() const { return String(""); }
    /// True when the minimum stands for minus infinity when shown. False here.
    virtual bool IsNegInfMin() const { return false; }
};

} // namespace Controller
