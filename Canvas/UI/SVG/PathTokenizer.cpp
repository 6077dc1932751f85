#include "Canvas/UI/SVG/PathTokenizer.h"

#include "Canvas/UI/SVG/Exception.h"

#include <charconv>
#include <cstring>

namespace agg
{
namespace svg
{

char const* scan_number(char const* text, double* value)
{
    char const* p = text;
    if (*p == '+' || *p == '-')
        ++p;
    char const* digits = p;
    while (*p >= '0' && *p <= '9')
        ++p;
    bool any = p != digits;
    if (*p == '.')
    {
        ++p;
        char const* fraction = p;
        while (*p >= '0' && *p <= '9')
            ++p;
        any = any || p != fraction;
    }
    if (!any)
        return nullptr;
    if (*p == 'e' || *p == 'E')
    {
        char const* e = p + 1;
        if (*e == '+' || *e == '-')
            ++e;
        if (*e >= '0' && *e <= '9')
        {
            while (*e >= '0' && *e <= '9')
                ++e;
            p = e;
        }
    }
    // from_chars takes no leading "+", and reads "." the same in every locale.
    char const* begin = *text == '+' ? text + 1 : text;
    double v = 0.0;
    std::from_chars_result const r = std::from_chars(begin, p, v);
    if (r.ec == std::errc::result_out_of_range)
        v = 0.0;
    else if (r.ec != std::errc() || r.ptr != p)
        return nullptr;
    *value = v;
    return p;
}

path_tokenizer::path_tokenizer() = default;

void path_tokenizer::set_path_str(char const* text)
{
    path = text;
    number = 0.0;
    command = 0;
    was_command = false;
}

bool path_tokenizer::is_command(char c)
{
    return c != 0 && std::strchr("MmLlHhVvQqTtCcSsZz", c) != nullptr;
}

bool path_tokenizer::is_separator(char c)
{
    return c == ' ' || c == ',' || c == '\t' || c == '\n' || c == '\r';
}

bool path_tokenizer::next()
{
    if (!path)
        return false;
    while (is_separator(*path))
        ++path;
    if (*path == 0)
        return false;
    if (is_command(*path))
    {
        command = *path++;
        was_command = true;
        return true;
    }
    char const* end = scan_number(path, &number);
    if (!end)
        throw exception("path_tokenizer: Invalid character '%c'", *path);
    path = end;
    was_command = false;
    return true;
}

double path_tokenizer::next(char cmd)
{
    if (!next() || was_command)
        throw exception("parse_path: Too few coordinates for '%c'", cmd);
    return number;
}

} // namespace svg
} // namespace agg
