#include "Canvas/UI/SVG/Exception.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace agg
{
namespace svg
{

exception::exception()
{
    text[0] = 0;
}

exception::exception(char const* format, ...)
{
    std::va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
}

exception::exception(exception const& other) : std::exception(other)
{
    std::memcpy(text, other.text, sizeof text);
}

exception& exception::operator=(exception const& other)
{
    std::memcpy(text, other.text, sizeof text);
    return *this;
}

exception::~exception() = default;

} // namespace svg
} // namespace agg
