#include "Canvas/UI/DrawContext.h"

#include <utility>

namespace UI
{

DrawContext::DrawContext(String const& name_) : name(name_) {}

DrawContext::~DrawContext() = default;

void DrawContext::DrawDottedLine(UI::Orientation orientation, int position, int start, int end,
                                 unsigned int color, unsigned char alpha)
{
    if (start > end)
        std::swap(start, end);
    for (int v = start; v <= end; v += 2)
    {
        UI::Point const p =
            orientation == UI::Horizontal ? UI::Point(v, position) : UI::Point(position, v);
        DrawPoint(p, color, alpha);
    }
}

} // namespace UI
