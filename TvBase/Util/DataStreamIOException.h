#pragma once

#include "TvBase/Util/Exception.h"

namespace Util
{
namespace Exception
{

/// A failed read, write or seek on a `Util::DataStream`: the message says what and why, as in
/// "Can't extract 4 bytes at position 0, total size 3".
class DataStreamIO : public ::Exception::Base
{
public:
    explicit DataStreamIO(String const& message, String const& file = String(), int line = -1)
        : Base(message, file, line)
    {
    }

    char const* GetTypeName() const override { return "DataStreamIO"; }
};

} // namespace Exception
} // namespace Util
