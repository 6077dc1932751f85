// Reading the icon subset of SVG.
//
//   Elements     start_element, end_element, characters
//   Attributes   the shared look attributes and "style"
//   Shapes       path, rect, line, polyline, polygon
//   Transforms   the transform list and its functions

#include "Canvas/UI/SVG/Parser.h"

#include "Canvas/UI/SVG/Exception.h"
#include "Canvas/UI/SVG/PathRenderer.h"

#include <cmath>
#include <cstring>

namespace agg
{
namespace svg
{

namespace
{

bool is_space(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// The leading number of an attribute value ("16px" reads 16); 0 when there is none.
double parse_double(char const* text)
{
    while (is_space(*text))
        ++text;
    double value = 0.0;
    return scan_number(text, &value) ? value : 0.0;
}

bool is_numeric(char c)
{
    return c != 0 && std::strchr("0123456789+-.eE", c) != nullptr;
}

double deg2rad(double degrees)
{
    return degrees * 3.141592653589793 / 180.0;
}

} // namespace

parser::parser(path_renderer& path_) : path(path_) {}

// ============================================================================ Elements

void parser::start_element(char const* name, attribute_list const& attributes)
{
    if (std::strcmp(name, "title") == 0)
    {
        title_flag = true;
        title_text.clear();
    }
    else if (std::strcmp(name, "g") == 0)
    {
        path.push_attr();
        parse_attr(attributes);
    }
    else if (std::strcmp(name, "path") == 0)
    {
        if (path_flag)
            throw exception("start_element: Nested path");
        path.begin_path();
        parse_path(attributes);
        path.end_path();
        path_flag = true;
    }
    else if (std::strcmp(name, "rect") == 0)
    {
        path.begin_path();
        parse_rect(attributes);
        path.end_path();
    }
    else if (std::strcmp(name, "line") == 0)
    {
        path.begin_path();
        parse_line(attributes);
        path.end_path();
    }
    else if (std::strcmp(name, "polyline") == 0)
    {
        path.begin_path();
        parse_poly(attributes, false);
        path.end_path();
    }
    else if (std::strcmp(name, "polygon") == 0)
    {
        path.begin_path();
        parse_poly(attributes, true);
        path.end_path();
    }
}

void parser::end_element(char const* name)
{
    if (std::strcmp(name, "title") == 0)
        title_flag = false;
    else if (std::strcmp(name, "g") == 0)
        path.pop_attr();
    else if (std::strcmp(name, "path") == 0)
        path_flag = false;
}

void parser::characters(char const* text, std::size_t length)
{
    if (title_flag)
        title_text.append(text, length);
}

// ============================================================================ Attributes

void parser::parse_attr(attribute_list const& attributes)
{
    for (auto const& attr : attributes)
        parse_attr(attr.first.c_str(), attr.second.c_str());
}

bool parser::parse_attr(char const* name, char const* value)
{
    if (std::strcmp(name, "style") == 0)
        parse_style(value);
    else if (std::strcmp(name, "fill") == 0)
    {
        if (std::strcmp(value, "none") == 0)
            path.fill_none();
        else
            path.fill(parse_color(value));
    }
    else if (std::strcmp(name, "fill-opacity") == 0)
        path.fill_opacity(parse_double(value));
    else if (std::strcmp(name, "stroke") == 0)
    {
        if (std::strcmp(value, "none") == 0)
            path.stroke_none();
        else
            path.stroke(parse_color(value));
    }
    else if (std::strcmp(name, "stroke-width") == 0)
        path.stroke_width(parse_double(value));
    else if (std::strcmp(name, "stroke-linecap") == 0)
    {
        if (std::strcmp(value, "butt") == 0)
            path.line_cap(butt_cap);
        else if (std::strcmp(value, "round") == 0)
            path.line_cap(round_cap);
        else if (std::strcmp(value, "square") == 0)
            path.line_cap(square_cap);
    }
    else if (std::strcmp(name, "stroke-linejoin") == 0)
    {
        if (std::strcmp(value, "miter") == 0)
            path.line_join(miter_join);
        else if (std::strcmp(value, "round") == 0)
            path.line_join(round_join);
        else if (std::strcmp(value, "bevel") == 0)
            path.line_join(bevel_join);
    }
    else if (std::strcmp(name, "stroke-miterlimit") == 0)
        path.miter_limit(parse_double(value));
    else if (std::strcmp(name, "stroke-opacity") == 0)
        path.stroke_opacity(parse_double(value));
    else if (std::strcmp(name, "transform") == 0)
        parse_transform(value);
    else
        return false;
    return true;
}

void parser::parse_style(char const* text)
{
    while (*text)
    {
        char const* end = std::strchr(text, ';');
        if (!end)
            end = text + std::strlen(text);
        parse_name_value(text, end);
        text = *end ? end + 1 : end;
    }
}

bool parser::parse_name_value(char const* begin, char const* end)
{
    char const* colon = begin;
    while (colon < end && *colon != ':')
        ++colon;
    if (colon == end)
        return false;
    char const* nameEnd = colon;
    while (begin < nameEnd && is_space(*begin))
        ++begin;
    while (nameEnd > begin && is_space(nameEnd[-1]))
        --nameEnd;
    char const* value = colon + 1;
    while (value < end && is_space(*value))
        ++value;
    char const* valueEnd = end;
    while (valueEnd > value && is_space(valueEnd[-1]))
        --valueEnd;
    return parse_attr(std::string(begin, nameEnd).c_str(), std::string(value, valueEnd).c_str());
}

// ============================================================================ Shapes

void parser::parse_path(attribute_list const& attributes)
{
    char const* data = nullptr;
    for (auto const& attr : attributes)
    {
        if (attr.first == "d")
            data = attr.second.c_str();
        else
            parse_attr(attr.first.c_str(), attr.second.c_str());
    }
    if (data)
    {
        tokenizer.set_path_str(data);
        path.parse_path(tokenizer);
    }
}

void parser::parse_rect(attribute_list const& attributes)
{
    double x = 0.0, y = 0.0, w = 0.0, h = 0.0;
    for (auto const& attr : attributes)
    {
        char const* value = attr.second.c_str();
        if (!parse_attr(attr.first.c_str(), value))
        {
            if (attr.first == "x")
                x = parse_double(value);
            else if (attr.first == "y")
                y = parse_double(value);
            else if (attr.first == "width")
                w = parse_double(value);
            else if (attr.first == "height")
                h = parse_double(value);
        }
    }
    if (w < 0.0)
        throw exception("parse_rect: Invalid width: %f", w);
    if (h < 0.0)
        throw exception("parse_rect: Invalid height: %f", h);
    // A rectangle of size 0 is allowed and draws nothing.
    if (w == 0.0 || h == 0.0)
        return;
    path.move_to(x, y);
    path.line_to(x + w, y);
    path.line_to(x + w, y + h);
    path.line_to(x, y + h);
    path.close_subpath();
}

void parser::parse_line(attribute_list const& attributes)
{
    double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0;
    for (auto const& attr : attributes)
    {
        char const* value = attr.second.c_str();
        if (!parse_attr(attr.first.c_str(), value))
        {
            if (attr.first == "x1")
                x1 = parse_double(value);
            else if (attr.first == "y1")
                y1 = parse_double(value);
            else if (attr.first == "x2")
                x2 = parse_double(value);
            else if (attr.first == "y2")
                y2 = parse_double(value);
        }
    }
    path.move_to(x1, y1);
    path.line_to(x2, y2);
}

void parser::parse_poly(attribute_list const& attributes, bool close)
{
    std::vector<double> coords;
    for (auto const& attr : attributes)
    {
        if (attr.first != "points")
        {
            parse_attr(attr.first.c_str(), attr.second.c_str());
            continue;
        }
        char const* p = attr.second.c_str();
        while (*p)
        {
            double v = 0.0;
            char const* end = scan_number(p, &v);
            if (end)
            {
                coords.push_back(v);
                p = end;
            }
            else
                ++p; // white space, commas and stray characters separate the numbers
        }
    }
    if (coords.size() < 2)
        throw exception("parse_poly: Too few coordinates");
    if (coords.size() % 2 != 0)
        throw exception("parse_poly: Odd number of coordinates");
    path.move_to(coords[0], coords[1]);
    for (std::size_t i = 2; i < coords.size(); i += 2)
        path.line_to(coords[i], coords[i + 1]);
    if (close)
        path.close_subpath();
}

// ============================================================================ Transforms

void parser::parse_transform(char const* text)
{
    struct function
    {
        char const* name;
        unsigned (parser::*parse)(char const*);
    };
    static function const functions[] = {
        {"matrix", &parser::parse_matrix}, {"translate", &parser::parse_translate},
        {"rotate", &parser::parse_rotate}, {"scale", &parser::parse_scale},
        {"skewX", &parser::parse_skew_x},  {"skewY", &parser::parse_skew_y},
    };
    while (*text)
    {
        bool matched = false;
        for (function const& f : functions)
        {
            std::size_t const len = std::strlen(f.name);
            if (std::strncmp(text, f.name, len) == 0)
            {
                text += (this->*f.parse)(text);
                matched = true;
                break;
            }
        }
        if (!matched)
            ++text;
    }
}

unsigned parse_transform_args(char const* text, double* args, unsigned max_count, unsigned* count)
{
    *count = 0;
    char const* p = text;
    while (*p && *p != '(')
        ++p;
    if (*p == 0)
        throw exception("parse_transform_args: Invalid syntax");
    char const* end = p;
    while (*end && *end != ')')
        ++end;
    if (*end == 0)
        throw exception("parse_transform_args: Invalid syntax");
    while (p < end)
    {
        if (!is_numeric(*p))
        {
            ++p;
            continue;
        }
        char const* run = p;
        while (p < end && is_numeric(*p))
            ++p;
        double value = 0.0;
        if (!scan_number(std::string(run, p).c_str(), &value))
            throw exception("parse_transform_args: Invalid syntax");
        if (*count >= max_count)
            throw exception("parse_transform_args: Too many arguments");
        args[(*count)++] = value;
    }
    return unsigned(end + 1 - text);
}

unsigned parser::parse_matrix(char const* text)
{
    double args[6];
    unsigned count = 0;
    unsigned const len = parse_transform_args(text, args, 6, &count);
    if (count != 6)
        throw exception("parse_matrix: Invalid number of arguments");
    path.transform().premultiply(
        trans_affine(args[0], args[1], args[2], args[3], args[4], args[5]));
    return len;
}

unsigned parser::parse_translate(char const* text)
{
    double args[2] = {0.0, 0.0};
    unsigned count = 0;
    unsigned const len = parse_transform_args(text, args, 2, &count);
    if (count == 1)
        args[1] = 0.0;
    path.transform().premultiply(trans_affine_translation(args[0], args[1]));
    return len;
}

unsigned parser::parse_rotate(char const* text)
{
    double args[3];
    unsigned count = 0;
    unsigned const len = parse_transform_args(text, args, 3, &count);
    if (count == 1)
        path.transform().premultiply(trans_affine_rotation(deg2rad(args[0])));
    else if (count == 3)
    {
        trans_affine t = trans_affine_translation(-args[1], -args[2]);
        t *= trans_affine_rotation(deg2rad(args[0]));
        t *= trans_affine_translation(args[1], args[2]);
        path.transform().premultiply(t);
    }
    else
        throw exception("parse_rotate: Invalid number of arguments");
    return len;
}

unsigned parser::parse_scale(char const* text)
{
    double args[2] = {1.0, 1.0};
    unsigned count = 0;
    unsigned const len = parse_transform_args(text, args, 2, &count);
    if (count == 1)
        args[1] = args[0];
    path.transform().premultiply(trans_affine_scaling(args[0], args[1]));
    return len;
}

unsigned parser::parse_skew_x(char const* text)
{
    double arg = 0.0;
    unsigned count = 0;
    unsigned const len = parse_transform_args(text, &arg, 1, &count);
    path.transform().premultiply(trans_affine_skewing(deg2rad(arg), 0.0));
    return len;
}

unsigned parser::parse_skew_y(char const* text)
{
    double arg = 0.0;
    unsigned count = 0;
    unsigned const len = parse_transform_args(text, &arg, 1, &count);
    path.transform().premultiply(trans_affine_skewing(0.0, deg2rad(arg)));
    return len;
}

} // namespace svg
} // namespace agg
