#include "Canvas/UI/SVG/PathRenderer.h"

#include "Canvas/UI/SVG/Exception.h"
#include "Canvas/UI/SVG/PathTokenizer.h"

#include <agg_bounding_rect.h>

#include <algorithm>

namespace agg
{
namespace svg
{

namespace
{
// Coordinates are held to +-1e6 as they are stored: the curve flattener subdivides until it is
// within a fraction of a pixel, so larger spans would cost without end.
double limit(double v)
{
    if (!(v > -1e6))
        return v < 0.0 ? -1e6 : 0.0;
    return v < 1e6 ? v : 1e6;
}
} // namespace

path_renderer::path_renderer() : curve(vertices), stroked(curve) {}

path_renderer::~path_renderer() = default;

void path_renderer::remove_all()
{
    vertices.remove_all();
    attributes.clear();
    attr_stack.clear();
    has_current = false;
    last_curve = 0;
}

// ---------------------------------------------------------------------------- building

void path_renderer::begin_path()
{
    push_attr();
    unsigned const index = vertices.start_new_path();
    cur_attr().index = index;
    cur_x = cur_y = start_x = start_y = 0.0;
    has_current = false;
    last_curve = 0;
}

void path_renderer::end_path()
{
    if (attr_stack.empty())
        throw exception("end_path : The path was not begun");
    path_attributes const attr = cur_attr();
    // A path that drew nothing (a rectangle of size 0) is dropped; recorded, it would share
    // its start with the next path and draw that one in its own colors.
    if (vertices.total_vertices() > attr.index)
        attributes.push_back(attr);
    pop_attr();
}

void path_renderer::begin_segment()
{
    // A drawing command with no open outline starts one at the pen.
    if (!has_current)
    {
        vertices.move_to(cur_x, cur_y);
        has_current = true;
    }
}

void path_renderer::move_to(double x, double y, bool rel)
{
    if (rel)
        x += cur_x, y += cur_y;
    x = limit(x), y = limit(y);
    vertices.move_to(x, y);
    cur_x = start_x = x;
    cur_y = start_y = y;
    has_current = true;
    last_curve = 0;
}

void path_renderer::line_to(double x, double y, bool rel)
{
    if (rel)
        x += cur_x, y += cur_y;
    x = limit(x), y = limit(y);
    begin_segment();
    vertices.line_to(x, y);
    cur_x = x, cur_y = y;
    last_curve = 0;
}

void path_renderer::hline_to(double x, bool rel)
{
    line_to(rel ? cur_x + x : x, cur_y);
}

void path_renderer::vline_to(double y, bool rel)
{
    line_to(cur_x, rel ? cur_y + y : y);
}

void path_renderer::curve_end(double x, double y, double cx, double cy, char kind)
{
    cur_x = x, cur_y = y;
    ctrl_x = cx, ctrl_y = cy;
    last_curve = kind;
}

void path_renderer::curve3(double x1, double y1, double x, double y, bool rel)
{
    if (rel)
        x1 += cur_x, y1 += cur_y, x += cur_x, y += cur_y;
    x1 = limit(x1), y1 = limit(y1), x = limit(x), y = limit(y);
    begin_segment();
    vertices.curve3(x1, y1, x, y);
    curve_end(x, y, x1, y1, 'q');
}

void path_renderer::curve3(double x, double y, bool rel)
{
    double x1 = cur_x, y1 = cur_y;
    if (last_curve == 'q')
        x1 = 2.0 * cur_x - ctrl_x, y1 = 2.0 * cur_y - ctrl_y;
    if (rel)
        x += cur_x, y += cur_y;
    curve3(x1, y1, x, y, false);
}

void path_renderer::curve4(double x1, double y1, double x2, double y2, double x, double y, bool rel)
{
    if (rel)
        x1 += cur_x, y1 += cur_y, x2 += cur_x, y2 += cur_y, x += cur_x, y += cur_y;
    x1 = limit(x1), y1 = limit(y1), x2 = limit(x2), y2 = limit(y2), x = limit(x), y = limit(y);
    begin_segment();
    vertices.curve4(x1, y1, x2, y2, x, y);
    curve_end(x, y, x2, y2, 'c');
}

void path_renderer::curve4(double x2, double y2, double x, double y, bool rel)
{
    double x1 = cur_x, y1 = cur_y;
    if (last_curve == 'c')
        x1 = 2.0 * cur_x - ctrl_x, y1 = 2.0 * cur_y - ctrl_y;
    if (rel)
        x2 += cur_x, y2 += cur_y, x += cur_x, y += cur_y;
    curve4(x1, y1, x2, y2, x, y, false);
}

void path_renderer::close_subpath()
{
    vertices.close_polygon();
    cur_x = start_x, cur_y = start_y;
    has_current = false;
    last_curve = 0;
}

void path_renderer::parse_path(path_tokenizer& tok)
{
    char cmd = 0;
    bool more = tok.next();
    while (more)
    {
        if (tok.last_was_command())
        {
            cmd = tok.last_command();
            if (cmd == 'Z' || cmd == 'z')
            {
                close_subpath();
                more = tok.next();
                continue;
            }
            more = tok.next();
            if (!more || tok.last_was_command())
                throw exception("parse_path: Too few coordinates for '%c'", cmd);
        }
        else if (cmd == 0 || cmd == 'Z' || cmd == 'z')
            throw exception("parse_path: Number %g without a command", tok.last_number());

        // The token now read is the command's first number.
        double const a0 = tok.last_number();
        bool const rel = cmd >= 'a' && cmd <= 'z';
        switch (cmd)
        {
        case 'M':
        case 'm':
            move_to(a0, tok.next(cmd), rel);
            // Further pairs after a move are lines.
            cmd = rel ? 'l' : 'L';
            break;
        case 'L':
        case 'l':
            line_to(a0, tok.next(cmd), rel);
            break;
        case 'H':
        case 'h':
            hline_to(a0, rel);
            break;
        case 'V':
        case 'v':
            vline_to(a0, rel);
            break;
        case 'Q':
        case 'q':
        {
            double const y1 = tok.next(cmd);
            double const x = tok.next(cmd);
            double const y = tok.next(cmd);
            curve3(a0, y1, x, y, rel);
            break;
        }
        case 'T':
        case 't':
            curve3(a0, tok.next(cmd), rel);
            break;
        case 'C':
        case 'c':
        {
            double const y1 = tok.next(cmd);
            double const x2 = tok.next(cmd);
            double const y2 = tok.next(cmd);
            double const x = tok.next(cmd);
            double const y = tok.next(cmd);
            curve4(a0, y1, x2, y2, x, y, rel);
            break;
        }
        case 'S':
        case 's':
        {
            double const y2 = tok.next(cmd);
            double const x = tok.next(cmd);
            double const y = tok.next(cmd);
            curve4(a0, y2, x, y, rel);
            break;
        }
        }
        more = tok.next();
    }
}

// ---------------------------------------------------------------------------- attributes

path_attributes& path_renderer::cur_attr()
{
    if (attr_stack.empty())
        throw exception("cur_attr : Attribute stack is empty");
    return attr_stack.back();
}

void path_renderer::push_attr()
{
    attr_stack.push_back(attr_stack.empty() ? path_attributes() : attr_stack.back());
}

void path_renderer::pop_attr()
{
    if (attr_stack.empty())
        throw exception("pop_attr : Attribute stack is empty");
    attr_stack.pop_back();
}

void path_renderer::fill(rgba8 const& color)
{
    path_attributes& attr = cur_attr();
    attr.fill_color = color;
    attr.fill_flag = true;
}

void path_renderer::stroke(rgba8 const& color)
{
    path_attributes& attr = cur_attr();
    attr.stroke_color = color;
    attr.stroke_flag = true;
}

void path_renderer::fill_none()
{
    cur_attr().fill_flag = false;
}

void path_renderer::stroke_none()
{
    cur_attr().stroke_flag = false;
}

void path_renderer::fill_opacity(double opacity)
{
    cur_attr().fill_opacity = opacity < 0.0 ? 0.0 : opacity > 1.0 ? 1.0 : opacity;
}

void path_renderer::stroke_opacity(double opacity)
{
    cur_attr().stroke_opacity = opacity < 0.0 ? 0.0 : opacity > 1.0 ? 1.0 : opacity;
}

void path_renderer::stroke_width(double width)
{
    // Wider strokes than this only make the stroker's round joins ever finer.
    cur_attr().stroke_width = width < 0.0 ? 0.0 : std::min(width, 1e4);
}

void path_renderer::line_join(line_join_e join)
{
    cur_attr().line_join = join;
}

void path_renderer::line_cap(line_cap_e cap)
{
    cur_attr().line_cap = cap;
}

void path_renderer::miter_limit(double limit)
{
    cur_attr().miter_limit = limit < 1.0 ? 1.0 : std::min(limit, 1e4);
}

trans_affine& path_renderer::transform()
{
    return cur_attr().transform;
}

// ---------------------------------------------------------------------------- results

void path_renderer::arrange_orientations_all_paths()
{
    vertices.arrange_orientations_all_paths(path_flags_ccw);
}

namespace
{
// The path ids for agg::bounding_rect; asking for one switches the transform to that path's.
struct transformed_ids
{
    std::vector<path_attributes> const& attributes;
    trans_affine& matrix;
    unsigned operator[](unsigned i)
    {
        matrix = attributes[i].transform;
        return attributes[i].index;
    }
};
} // namespace

void path_renderer::bounding_rect(double* x1, double* y1, double* x2, double* y2)
{
    *x1 = *y1 = *x2 = *y2 = 0.0;
    if (attributes.empty())
        return;
    trans_affine matrix;
    curve.approximation_scale(1.0);
    curve.angle_tolerance(0.0);
    curved_trans transformed(curve, matrix);
    // Held to the same bounds as when drawn, so that one wild transform can't make the bounds
    // (and every matrix built on their centre) infinite.
    clamped_vertices<curved_trans> safe(transformed);
    transformed_ids ids{attributes, matrix};
    if (!agg::bounding_rect(safe, ids, 0, unsigned(attributes.size()), x1, y1, x2, y2))
        *x1 = *y1 = *x2 = *y2 = 0.0;
}

} // namespace svg
} // namespace agg
