#include "Canvas/UI/AGGInlineRenderer.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/SVG/SVG.h"

#include <algorithm>

#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "AGGInlineRenderer reads 0xAARRGGBB pixels as B, G, R, A bytes"
#endif

namespace UI
{

AGGInlineRenderer::AGGInlineRenderer(UI::DrawContext* context, String const& name_) : name(name_)
{
    auto* memory = dynamic_cast<UI::MemoryDrawContext*>(context);
    if (!memory || !memory->GetDIBSection())
        return;
    UI::Native::DIBSection& section = *memory->GetDIBSection();
    if (!section.GetPixels() || section.GetWidth() <= 0 || section.GetHeight() <= 0)
        return;
    translation = memory->GetTranslation();
    clip = memory->GetClipRect() & UI::Rect(0, section.GetWidth() - 1, 0, section.GetHeight() - 1);
    attach(section.GetPixels(), section.GetWidth(), section.GetHeight(), section.GetStride());
}

AGGInlineRenderer::AGGInlineRenderer(boost::shared_ptr<UI::DIBits> const& bits, String const& name_)
    : name(name_)
{
    if (!bits || !bits->IsValid() || bits->GetStride() < bits->GetWidth())
        return;
    clip = bits->GetRect();
    attach(bits->GetPixels(), bits->GetWidth(), bits->GetHeight(), bits->GetStride());
}

void AGGInlineRenderer::attach(unsigned int* pixels, int width, int height, int stride)
{
    if (clip.Width() <= 0 || clip.Height() <= 0)
        return;
    buffer.attach(reinterpret_cast<agg::int8u*>(pixels), unsigned(width), unsigned(height),
                  stride * 4);
    pixfmt.attach(buffer);
    base.attach(pixfmt);
    base.clip_box(clip.left, clip.top, clip.right, clip.bottom);
    solid.attach(base);
    valid = true;
}

void AGGInlineRenderer::DrawSVG(UI::SVG::SVG* svg, UI::Rect const& destination)
{
    if (!valid || !svg || svg->path_count() == 0)
        return;
    agg::trans_affine matrix;
    svg->GetTransformMatrix(matrix);
    if (destination.Width() > 0 && destination.Height() > 0)
    {
        // Fit the bounds into the rectangle, aspect kept, centred.
        double const w = svg->GetMaxX() - svg->GetMinX();
        double const h = svg->GetMaxY() - svg->GetMinY();
        if (w <= 0.0 && h <= 0.0)
            return;
        double const sx = w > 0.0 ? destination.Width() / w : 1e300;
        double const sy = h > 0.0 ? destination.Height() / h : 1e300;
        double const scale = std::min(sx, sy);
        matrix *= agg::trans_affine_translation(-(svg->GetMinX() + svg->GetMaxX()) / 2.0,
                                                -(svg->GetMinY() + svg->GetMaxY()) / 2.0);
        matrix *= agg::trans_affine_scaling(scale);
        matrix *= agg::trans_affine_translation(destination.left + destination.Width() / 2.0,
                                                destination.top + destination.Height() / 2.0);
    }
    matrix *= agg::trans_affine_translation(translation.x, translation.y);
    svg->RenderPaths(this, matrix);
}

} // namespace UI
