#pragma once

#include "Canvas/UI/Window.h"

namespace UI
{

/// A plain rectangle filled with the window's "Color" at its effective alpha, under whatever
/// children it has. The background of panels and readouts.
class Box : public Window
{
public:
    Box(Frame* frame, Window* parent, String const& name, unsigned int color = 0xFF000000,
        DynamicLayout mode = DynamicLayoutCode);

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("Box"); }
};

} // namespace UI
