#pragma once

#include <agg_basics.h>
#include <agg_color_rgba.h>
#include <agg_conv_curve.h>
#include <agg_conv_stroke.h>
#include <agg_conv_transform.h>
#include <agg_math_stroke.h>
#include <agg_path_storage.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_scanline.h>
#include <agg_trans_affine.h>

#include <algorithm>
#include <vector>

namespace agg
{
namespace svg
{

class path_tokenizer;

/// Passes vertices through with their coordinates held to +-1e6 (and anything not finite made
/// 0), so that hostile sizes and transforms can't overflow the rasterizer's integer cells.
template <class VertexSource>
class clamped_vertices
{
public:
    explicit clamped_vertices(VertexSource& source) : source(source) {}
    void rewind(unsigned path_id) { source.rewind(path_id); }
    unsigned vertex(double* x, double* y)
    {
        unsigned const cmd = source.vertex(x, y);
        if (is_vertex(cmd))
        {
            *x = clamp(*x);
            *y = clamp(*y);
        }
        return cmd;
    }

private:
    static double clamp(double v)
    {
        if (!(v > -1e6))
            return v < 0.0 ? -1e6 : 0.0; // below the range, or NaN
        return v < 1e6 ? v : 1e6;
    }

    VertexSource& source;
};

/// The look of one path: fill and stroke, their opacities, the line style and the transform,
/// as the attribute stack held them when the path began.
struct path_attributes
{
    unsigned index = 0; ///< first vertex id of the path in the shared storage
    rgba8 fill_color = rgba8(0, 0, 0, 255);
    rgba8 stroke_color = rgba8(0, 0, 0, 255);
    double fill_opacity = 1.0;
    double stroke_opacity = 1.0;
    bool fill_flag = true;
    bool stroke_flag = false;
    line_join_e line_join = miter_join;
    line_cap_e line_cap = butt_cap;
    double miter_limit = 4.0;
    double stroke_width = 1.0;
    trans_affine transform;
};

/// The vector side of an icon: every path's vertices in one storage, one attribute record per
/// path, and the attribute stack that "g" elements push and pop while reading. Renders through
/// any AGG rasterizer, scanline and solid renderer.
class path_renderer
{
public:
    path_renderer();
    virtual ~path_renderer();

    /// Forgets all paths and attributes.
    void remove_all();

    // ---- building (each path between begin_path and end_path)
    void begin_path();
    void end_path();
    void move_to(double x, double y, bool rel = false);
    void line_to(double x, double y, bool rel = false);
    void hline_to(double x, bool rel = false);
    void vline_to(double y, bool rel = false);
    /// Quadratic curve with its control point, or smooth (control point reflected).
    void curve3(double x1, double y1, double x, double y, bool rel = false);
    void curve3(double x, double y, bool rel = false);
    /// Cubic curve with both control points, or smooth (first control point reflected).
    void curve4(double x1, double y1, double x2, double y2, double x, double y, bool rel = false);
    void curve4(double x2, double y2, double x, double y, bool rel = false);
    void close_subpath();
    /// Reads path data ("M 0 0 L 10 0 z") into the current path; raises on bad data.
    void parse_path(path_tokenizer& tok);

    // ---- attribute stack
    /// The top of the stack; raises "cur_attr : Attribute stack is empty" when there is none.
    path_attributes& cur_attr();
    void push_attr();
    /// Raises when the stack is empty.
    void pop_attr();
    std::size_t attr_depth() const { return attr_stack.size(); }

    void fill(rgba8 const& color);
    void stroke(rgba8 const& color);
    void fill_none();
    void stroke_none();
    void fill_opacity(double opacity);
    void stroke_opacity(double opacity);
    void stroke_width(double width);
    void line_join(line_join_e join);
    void line_cap(line_cap_e cap);
    void miter_limit(double limit);
    trans_affine& transform();

    // ---- results
    unsigned path_count() const { return unsigned(attributes.size()); }
    path_attributes const& path_attr(unsigned i) const { return attributes[i]; }
    path_storage& storage() { return vertices; }
    /// Gives every closed outline the same orientation. Fills then use the even-odd rule, under
    /// which an inner outline cuts a hole whichever way it was drawn.
    void arrange_orientations_all_paths();
    /// The bounds of all paths after their own transforms; (0, 0, 0, 0) with no paths.
    void bounding_rect(double* x1, double* y1, double* x2, double* y2);

    /// Draws every path, fill first and then stroke, through `mtx` after its own transform,
    /// `opacity` scaling all alphas. `clip` limits the rasterizer (pixel coordinates).
    template <class Rasterizer, class Scanline, class Renderer>
    void render(Rasterizer& ras, Scanline& sl, Renderer& ren, trans_affine const& mtx,
                rect_i const& clip, double opacity = 1.0);

private:
    typedef conv_curve<path_storage> curved;
    typedef conv_stroke<curved> curved_stroked;
    typedef conv_transform<curved_stroked> curved_stroked_trans;
    typedef conv_transform<curved> curved_trans;

    void begin_segment();
    void curve_end(double x, double y, double cx, double cy, char kind);

    path_storage vertices;
    std::vector<path_attributes> attributes;
    std::vector<path_attributes> attr_stack;
    curved curve;
    curved_stroked stroked;
    // The pen, kept here rather than read back from the storage: after "z" the pen is back at
    // the start of the outline, which relative commands need and the storage doesn't record.
    double cur_x = 0.0;
    double cur_y = 0.0;
    double start_x = 0.0;
    double start_y = 0.0;
    double ctrl_x = 0.0; ///< last control point, for the smooth curves
    double ctrl_y = 0.0;
    char last_curve = 0; ///< 'q' or 'c' after such a curve, otherwise 0
    bool has_current = false;
};

template <class Rasterizer, class Scanline, class Renderer>
void path_renderer::render(Rasterizer& ras, Scanline& sl, Renderer& ren, trans_affine const& mtx,
                           rect_i const& clip, double opacity)
{
    ras.clip_box(clip.x1, clip.y1, clip.x2, clip.y2);
    for (path_attributes const& attr : attributes)
    {
        trans_affine matrix = attr.transform;
        matrix *= mtx;
        // Beyond this the curves and joins would only grow more points than pixels they cover.
        double scale = matrix.scale();
        if (!(scale > 1e-3)) // also when the transform has gone to NaN
            scale = 1e-3;
        if (scale > 64.0)
            scale = 64.0;
        curve.approximation_scale(scale);
        curve.angle_tolerance(0.0);
        if (attr.fill_flag)
        {
            curved_trans filled(curve, matrix);
            clamped_vertices<curved_trans> safe(filled);
            ras.reset();
            ras.filling_rule(fill_even_odd);
            ras.add_path(safe, attr.index);
            rgba8 color = attr.fill_color;
            color.opacity(color.opacity() * attr.fill_opacity * opacity);
            ren.color(color);
            render_scanlines(ras, sl, ren);
        }
        if (attr.stroke_flag)
        {
            stroked.width(attr.stroke_width);
            stroked.line_join(attr.line_join);
            stroked.line_cap(attr.line_cap);
            stroked.miter_limit(attr.miter_limit);
            stroked.approximation_scale(scale);
            // Thick strokes of curves need finer angles, or their joins show facets.
            if (attr.stroke_width * scale > 1.0)
                curve.angle_tolerance(0.2);
            curved_stroked_trans outline(stroked, matrix);
            clamped_vertices<curved_stroked_trans> safe(outline);
            ras.reset();
            ras.filling_rule(fill_non_zero);
            ras.add_path(safe, attr.index);
            rgba8 color = attr.stroke_color;
            color.opacity(color.opacity() * attr.stroke_opacity * opacity);
            ren.color(color);
            render_scanlines(ras, sl, ren);
        }
    }
}

} // namespace svg
} // namespace agg
