#pragma once

#include "TvBase/Controller/Param.h"

namespace Controller
{

/// An on/off parameter.
class BoolParam : public SingleParam<bool>
{
public:
    /// Always false to true.
    virtual value_range<bool> GetRange() const { return value_range<bool>(false, true); }
    virtual bool GetDefault() const = 0;
};

} // namespace Controller
