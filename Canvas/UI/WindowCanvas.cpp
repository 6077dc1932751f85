// What windows and frames reach through the canvas: palette entries, translation, commands and
// published values.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Window.h"

namespace UI
{

// ============================================================================================
// window
// ============================================================================================

checked_value<unsigned int> Window::GetPaletteColor(String const& key) const
{
    Canvas* canvas = GetCanvas();
    return canvas ? canvas->GetPaletteColor(key) : checked_value<unsigned int>();
}

checked_value<unsigned char> Window::GetPaletteAlpha(String const& key) const
{
    Canvas* canvas = GetCanvas();
    return canvas ? canvas->GetPaletteAlpha(key) : checked_value<unsigned char>();
}

checked_value<bool> Window::GetPaletteBool(String const& key) const
{
    Canvas* canvas = GetCanvas();
    return canvas ? canvas->GetPaletteBool(key) : checked_value<bool>();
}

checked_value<int> Window::GetPaletteInt(String const& key) const
{
    Canvas* canvas = GetCanvas();
    return canvas ? canvas->GetPaletteInt(key) : checked_value<int>();
}

String Window::tr(String const& text, String const& context) const
{
    return GetFrame()->tr(text, context);
}

bool Window::ExecuteCommand(Command::CommandInvocation const& invocation)
{
    return GetFrame()->ExecuteCommand(invocation);
}

bool Window::ExecuteCommand(String const& id, Window* window)
{
    return GetFrame()->ExecuteCommand(id, window);
}

// ============================================================================================
// frame
// ============================================================================================

bool Frame::ExecuteCommand(Command::CommandInvocation const& invocation)
{
    return canvas && canvas->ExecuteCommand(invocation);
}

bool Frame::ExecuteCommand(String const& id, Window* window)
{
    return canvas && canvas->ExecuteCommand(id, window);
}

boost::any Frame::GetValueForKey(String const& key)
{
    return canvas ? canvas->GetValueForKey(key) : boost::any();
}

String Frame::tr(String const& text, String const& context) const
{
    return canvas ? canvas->tr(text, context) : text;
}

} // namespace UI
