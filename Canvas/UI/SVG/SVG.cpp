#include "Canvas/UI/SVG/SVG.h"

#include "Canvas/UI/AGGInlineRenderer.h"
#include "Canvas/UI/SVG/Exception.h"
#include "Canvas/UI/SVG/XmlHandler.h"
#include "TvBase/Util/Exception.h"
#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/XMLSAXParser.h"

namespace UI
{
namespace SVG
{

SVG::SVG(String path_) : reader(*this), path(path_)
{
    agg::svg::svg_xml_handler handler(reader);
    Util::XMLSAXParser xml(&handler);
    try
    {
        if (!xml.Parse(FilePath(path)))
        {
            error = xml.GetErrorMessage();
            if (error.IsEmpty())
                error = String("Can't read %1").Arg(path);
        }
    }
    catch (agg::svg::exception const& e)
    {
        error = String(e.msg());
    }
    catch (Exception::Base const& e)
    {
        error = e.GetMessage();
    }
    finishLoad();
}

SVG::SVG(unsigned char const* data, unsigned int size) : reader(*this)
{
    loadSVG(data, size);
    finishLoad();
}

SVG::~SVG() = default;

void SVG::loadSVG(unsigned char const* data, unsigned int size)
{
    agg::svg::svg_xml_handler handler(reader);
    Util::XMLSAXParser xml(&handler);
    try
    {
        if (!xml.Parse(data, size, nullptr))
        {
            error = xml.GetErrorMessage();
            if (error.IsEmpty())
                error = "Can't read SVG data";
        }
    }
    catch (agg::svg::exception const& e)
    {
        error = String(e.msg());
    }
    catch (Exception::Base const& e)
    {
        error = e.GetMessage();
    }
}

void SVG::finishLoad()
{
    arrange_orientations_all_paths();
    bounding_rect(&minX, &minY, &maxX, &maxY);
}

void SVG::Draw(UI::DrawContext* context)
{
    AGGInlineRenderer renderer(context, "SVG Renderer");
    renderer.DrawSVG(this, destination);
}

void SVG::Draw(UI::AGGInlineRenderer* renderer)
{
    if (renderer)
        renderer->DrawSVG(this, destination);
}

void SVG::GetTransformMatrix(agg::trans_affine& matrix) const
{
    double const cx = (minX + maxX) / 2.0;
    double const cy = (minY + maxY) / 2.0;
    matrix *= agg::trans_affine_translation(-cx, -cy);
    matrix *= agg::trans_affine_scaling(scaleX, scaleY);
    matrix *= agg::trans_affine_rotation(rotation * 3.141592653589793 / 180.0);
    matrix *= agg::trans_affine_translation(offsetX + cx, offsetY + cy);
}

void SVG::RenderPaths(UI::AGGInlineRenderer* renderer, agg::trans_affine const& matrix)
{
    if (!renderer || !renderer->IsValid())
        return;
    UI::Rect const clip = renderer->GetClipRect();
    if (clip.Width() <= 0 || clip.Height() <= 0)
        return;
    render(renderer->GetRasterizer(), renderer->GetScanline(), renderer->GetSolidRenderer(), matrix,
           agg::rect_i(clip.left, clip.top, clip.right + 1, clip.bottom + 1));
}

void SVG::SetScale(double x, double y)
{
    scaleX = x;
    scaleY = y;
}

void SVG::SetOffset(double x, double y)
{
    offsetX = x;
    offsetY = y;
}

} // namespace SVG
} // namespace UI
