#pragma once

#include "TvBase/Util/Exception.h"

namespace Network
{
namespace Exception
{

/// A request could not be made or did not complete; the message is the failure text.
class ConnectionError : public ::Exception::Base
{
public:
    explicit ConnectionError(String const& message, String const& file = String(), int line = -1)
        : ::Exception::Base(message, file, line)
    {
    }
    char const* GetTypeName() const override { return "ConnectionError"; }
};

/// A blocking request was canceled from another thread; the message is empty.
class UserCancel : public ::Exception::Base
{
public:
    explicit UserCancel(String const& message = String(""), String const& file = String(),
                        int line = -1)
        : ::Exception::Base(message, file, line)
    {
    }
    char const* GetTypeName() const override { return "UserCancel"; }
};

} // namespace Exception
} // namespace Network
