#include "Canvas/UI/Box.h"

#include "Canvas/UI/DrawContext.h"

namespace UI
{

Box::Box(Frame* frame, Window* parent, String const& name, unsigned int color, DynamicLayout mode)
    : Window(frame, parent, name)
{
    SetDynamicLayoutMode(mode);
    SetColor(color);
}

void Box::Draw(DrawContext* context)
{
    context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), DrawContext::Filled, GetColor(),
                     GetEffectiveAlpha());
    Window::Draw(context);
}

} // namespace UI
