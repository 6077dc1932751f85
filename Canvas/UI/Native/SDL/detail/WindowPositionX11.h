#pragma once

struct SDL_Window;

namespace UI
{
namespace Native
{
namespace detail
{

/// The screen position of the inside of `window` as the X server has it. Under a window
/// manager that frames windows, SDL's own idea of it can lag behind by the frame until a later
/// event. False when the window is not on X11 or the server can't tell.
bool ReadX11ClientPosition(SDL_Window* window, int& x, int& y);

} // namespace detail
} // namespace Native
} // namespace UI
