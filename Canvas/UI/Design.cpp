#include "Canvas/UI/Design.h"

namespace UI
{

Design::Design(Frame* frame) : frame(frame)
{
    UpdateFromConfigFile();
    UpdateActive();
}

Design::~Design() = default;

void Design::UpdateFromConfigFile()
{
    // The design settings are read by the design engine; without it design stays off.
}

void Design::UpdateActive()
{
    // Without the engine there is nothing to activate.
    active = false;
}

bool Design::HandleMouseMessage(MouseMessage, Point const&, unsigned int, int)
{
    return active;
}

bool Design::HandleKeyboardMessage(KeyboardMessage, unsigned int, char, unsigned int, bool)
{
    return active;
}

void Design::Draw(DrawContext*)
{
    UpdateActive();
}

} // namespace UI
