#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"

#include <agg_pixfmt_rgba.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_base.h>
#include <agg_renderer_scanline.h>
#include <agg_rendering_buffer.h>
#include <agg_scanline_u.h>

#include <boost/shared_ptr.hpp>

namespace UI
{
class DIBits;
class DrawContext;
namespace SVG
{
class SVG;
}

/// Anti-Grain Geometry set up over a draw target for the length of one drawing: the pixels of a
/// memory draw context (its clip and translation obeyed) or of a `UI::DIBits`. Shapes blend in
/// without premultiplication, matching the 0xAARRGGBB pixels of the toolkit. Over a target with
/// no pixels it is invalid and draws nothing.
class AGGInlineRenderer
{
public:
    // Pixels 0xAARRGGBB lie in memory as B, G, R, A on the little-endian hosts we build for.
    typedef agg::pixfmt_bgra32_plain pixfmt_type;
    typedef agg::renderer_base<pixfmt_type> base_renderer_type;
    typedef agg::renderer_scanline_aa_solid<base_renderer_type> solid_renderer_type;

    /// Over the bitmap of `context` when it is a `UI::MemoryDrawContext` inside a paint.
    AGGInlineRenderer(UI::DrawContext* context, String const& name);
    /// Over the pixels of `bits`, no translation, clipped to the image.
    AGGInlineRenderer(boost::shared_ptr<UI::DIBits> const& bits, String const& name);
    AGGInlineRenderer(AGGInlineRenderer const&) = delete;
    AGGInlineRenderer& operator=(AGGInlineRenderer const&) = delete;

    bool IsValid() const { return valid; }
    String const& GetName() const { return name; }
    /// Where window coordinates (0, 0) lie in the target.
    UI::Point GetTranslation() const { return translation; }
    /// The clip in target pixels, inclusive.
    UI::Rect GetClipRect() const { return clip; }

    /// Draws `svg` fitted into `destination` (window coordinates; the unset rectangle draws it
    /// at its own coordinates), through its own transform.
    void DrawSVG(UI::SVG::SVG* svg, UI::Rect const& destination);

    agg::rasterizer_scanline_aa<>& GetRasterizer() { return rasterizer; }
    agg::scanline_u8& GetScanline() { return scanline; }
    solid_renderer_type& GetSolidRenderer() { return solid; }

private:
    void attach(unsigned int* pixels, int width, int height, int stride);

    String name;
    bool valid = false;
    UI::Point translation;
    UI::Rect clip;
    agg::rendering_buffer buffer;
    pixfmt_type pixfmt;
    base_renderer_type base;
    solid_renderer_type solid;
    agg::rasterizer_scanline_aa<> rasterizer;
    agg::scanline_u8 scanline;
};

} // namespace UI
