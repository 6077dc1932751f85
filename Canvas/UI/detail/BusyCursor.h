#pragma once

#include "Canvas/UI/Cursor.h"

namespace UI
{
namespace detail
{

/// Shows the busy cursor for the life of the object, then the arrow again.
class BusyCursor
{
public:
    BusyCursor() { Cursor::SetCursor(Cursor(Cursor::Busy)); }
    ~BusyCursor() { Cursor::SetStandardCursor(); }

    BusyCursor(BusyCursor const&) = delete;
    BusyCursor& operator=(BusyCursor const&) = delete;
};

} // namespace detail
} // namespace UI
