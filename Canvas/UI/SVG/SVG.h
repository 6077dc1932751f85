#pragma once

#include "Canvas/UI/Rect.h"
#include "Canvas/UI/SVG/Parser.h"
#include "Canvas/UI/SVG/PathRenderer.h"
#include "TvBase/Util/String.h"

namespace UI
{
class AGGInlineRenderer;
class DrawContext;

namespace SVG
{

/// An icon read from the SVG subset that `agg::svg::parser` knows, ready to draw at any size.
/// It is drawn through its transform (scale, rotation in degrees and offset, about the centre
/// of its bounds), into the destination rectangle when one is set (fitted, aspect kept, centred)
/// or else at its own coordinates.
class SVG : public agg::svg::path_renderer
{
public:
    /// Reads the file at `path`. A file that can't be read leaves the icon empty with an error
    /// text; a parse error keeps what was read before it.
    explicit SVG(String path);
    /// Reads `size` bytes of SVG text from memory, with the same rules.
    SVG(unsigned char const* data, unsigned int size);
    ~SVG() override;
    SVG(SVG const&) = delete;
    SVG& operator=(SVG const&) = delete;

    /// Draws on `context` (a memory draw context; others draw nothing) through an
    /// `UI::AGGInlineRenderer` named "SVG Renderer".
    void Draw(UI::DrawContext* context);
    void Draw(UI::AGGInlineRenderer* renderer);
    /// Multiplies the icon's own transform into `matrix`: minus the bounds' centre, scale,
    /// rotation, then the offset plus the bounds' centre.
    void GetTransformMatrix(agg::trans_affine& matrix) const;
    /// Renders all paths through `matrix` (pixel coordinates of the renderer's target).
    void RenderPaths(UI::AGGInlineRenderer* renderer, agg::trans_affine const& matrix);

    /// The error that stopped the parse, null when it went through.
    String const& GetError() const { return error; }
    String const& GetPath() const { return path; }
    String GetTitle() const { return String(reader.title().c_str()); }
    double GetMinX() const { return minX; }
    double GetMinY() const { return minY; }
    double GetMaxX() const { return maxX; }
    double GetMaxY() const { return maxY; }

    void SetScale(double x, double y);
    void SetRotation(double degrees) { rotation = degrees; }
    void SetOffset(double x, double y);
    /// The rectangle (window coordinates) the icon is fitted into; the unset rectangle
    /// (0, -1, 0, -1) draws it at its own coordinates.
    void SetDestinationRect(UI::Rect const& rect) { destination = rect; }
    UI::Rect const& GetDestinationRect() const { return destination; }

private:
    void loadSVG(unsigned char const* data, unsigned int size);
    void finishLoad();

    agg::svg::parser reader;
    String path;
    String error;
    double minX = 0.0;
    double minY = 0.0;
    double maxX = 0.0;
    double maxY = 0.0;
    double scaleX = 1.0;
    double scaleY = 1.0;
    double rotation = 0.0;
    double offsetX = 0.0;
    double offsetY = 0.0;
    UI::Rect destination = UI::Rect(0, -1, 0, -1);
};

} // namespace SVG
} // namespace UI
