#include "Canvas/UI/Splitter.h"

#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"

namespace UI
{

Splitter::Splitter(Frame* frame, Window* parent, String const& name,
                   Orientation splitterOrientation, bool isLive)
    : Window(frame, parent, name),
      orientation(splitterOrientation == Horizontal ? Horizontal : Vertical), live(isLive)
{
    if (orientation == Vertical)
    {
        SetFixedHeight(3);
        SetCursor(Cursor(Cursor::ResizeUpDown));
    }
    else
    {
        SetFixedWidth(3);
        SetCursor(Cursor(Cursor::ResizeLeftRight));
    }
}

int Splitter::globalAlong(Point const& p) const
{
    return orientation == Vertical ? GetGlobalY() + p.y : GetGlobalX() + p.x;
}

int Splitter::positionFor(Point const& p) const
{
    return pressPosition + globalAlong(p) - pressGlobal;
}

void Splitter::Draw(DrawContext* context)
{
    context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), DrawContext::Filled,
                     getFillColor(), GetTotalBaseAlpha());
    Window::Draw(context);
}

bool Splitter::onMousePress(Point const& p, unsigned int)
{
    // Kept in frame coordinates: a live drag moves the splitter under the mouse.
    pressGlobal = globalAlong(p);
    pressPosition = orientation == Vertical ? GetGeometry().top : GetGeometry().left;
    dragging = true;
    GetFrame()->SetMouseCapture(this);
    return true;
}

bool Splitter::onMouseMove(Point const& p, unsigned int)
{
    if (!dragging)
        return false;
    if (live)
    {
        signalDragged(this, positionFor(p));
        signalChanged();
    }
    return true;
}

bool Splitter::onMouseRelease(Point const& p, unsigned int)
{
    if (!dragging)
        return false;
    dragging = false;
    if (GetFrame()->GetMouseCapture() == this)
        GetFrame()->ReleaseMouseCapture();
    if (!live)
    {
        signalDragged(this, positionFor(p));
        signalChanged();
    }
    return true;
}

Splitter* CreateSimpleSplitter(Frame* frame, Window* parent, String const& name,
                               Orientation orientation, bool live)
{
    return new SimpleSplitter(frame, parent, name, orientation, live);
}

} // namespace UI
