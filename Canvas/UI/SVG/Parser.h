#pragma once

#include "Canvas/UI/SVG/PathTokenizer.h"

#include <agg_color_rgba.h>

#include <string>
#include <utility>
#include <vector>

namespace agg
{
namespace svg
{

class path_renderer;

/// The attributes of one element, in document order.
typedef std::vector<std::pair<std::string, std::string>> attribute_list;

/// Reads the icon subset of SVG, element by element, into a `path_renderer`: "g" groups with
/// their attributes, "path", "rect", "line", "polyline" and "polygon", and the "title" text.
/// Other elements are ignored. Errors raise `agg::svg::exception`; the caller stops feeding
/// elements then, and what was read before stays in the renderer.
class parser
{
public:
    explicit parser(path_renderer& path);
    parser(parser const&) = delete;
    parser& operator=(parser const&) = delete;

    void start_element(char const* name, attribute_list const& attributes);
    void end_element(char const* name);
    /// Text inside "title" is collected; any other text is ignored.
    void characters(char const* text, std::size_t length);

    std::string const& title() const { return title_text; }

private:
    void parse_attr(attribute_list const& attributes);
    bool parse_attr(char const* name, char const* value);
    void parse_path(attribute_list const& attributes);
    void parse_poly(attribute_list const& attributes, bool close);
    void parse_rect(attribute_list const& attributes);
    void parse_line(attribute_list const& attributes);
    void parse_style(char const* text);
    void parse_transform(char const* text);
    bool parse_name_value(char const* begin, char const* end);

    unsigned parse_matrix(char const* text);
    unsigned parse_translate(char const* text);
    unsigned parse_rotate(char const* text);
    unsigned parse_scale(char const* text);
    unsigned parse_skew_x(char const* text);
    unsigned parse_skew_y(char const* text);

    path_renderer& path;
    path_tokenizer tokenizer;
    std::string title_text;
    bool title_flag = false;
    bool path_flag = false;
};

/// A "#rgb"/"#rrggbb" color or a CSS color name; raises
/// "parse_color: Invalid color name '%s'" for an unknown name.
rgba8 parse_color(char const* text);
/// Parses the numeric arguments of a transform function after its name, up to ")": at most
/// `max_count` of them go to `args`, their count to `count`. Returns the characters used.
unsigned parse_transform_args(char const* text, double* args, unsigned max_count, unsigned* count);

} // namespace svg
} // namespace agg
