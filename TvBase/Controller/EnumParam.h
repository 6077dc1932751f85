#pragma once

#include "TvBase/Controller/Param.h"
#include "TvBase/Util/String.h"

namespace Controller
{

/// A choice among a fixed number of values, 0 to `GetNumValues() - 1`, each with a caption.
class EnumParam : public SingleParam<unsigned int>
{
public:
    /// 0 to the last value; 0 to 0 when there are no values.
    virtual value_range<unsigned int> GetRange() const
    {
        unsigned int const count = GetNumValues();
        return value_range<unsigned int>(0, count == 0 ? 0 : count - 1);
    }
    virtual unsigned int GetDefault() const = 0;
    /// The text shown for `value`; null for a value out of range.
    virtual String GetCaptionForValue(unsigned int value) const = 0;
    /// The number of values.
    virtual unsigned int GetNumValues() const = 0;
};

} // namespace Controller
