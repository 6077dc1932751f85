#pragma once

#include <exception>

namespace agg
{
namespace svg
{

/// The error of the icon reader: a message formatted like `printf`, cut to 4095 bytes. The
/// parse that raises it stops there.
class exception : public std::exception
{
public:
    exception();
    explicit exception(char const* format, ...)
#if defined(__GNUC__)
        __attribute__((format(printf, 2, 3)))
#endif
        ;
    exception(exception const& other);
    exception& operator=(exception const& other);
    ~exception() override;

    char const* msg() const
    {
        return text;
    }
    char const* what() const noexcept override
    {
        return text;
    }

private:
    char text[4096];
};

} // namespace svg
} // namespace agg
