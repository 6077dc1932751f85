#include "Canvas/UI/Native/SDL/detail/WindowPositionX11.h"

#include <SDL.h>
#include <SDL_syswm.h>

namespace UI
{
namespace Native
{
namespace detail
{

bool ReadX11ClientPosition(SDL_Window* window, int& x, int& y)
{
#if defined(SDL_VIDEO_DRIVER_X11)
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    if (!window || !SDL_GetWindowWMInfo(window, &info) || info.subsystem != SDL_SYSWM_X11)
        return false;
    ::Display* display = info.info.x11.display;
    ::Window child = 0;
    return XTranslateCoordinates(display, info.info.x11.window, DefaultRootWindow(display), 0, 0,
                                 &x, &y, &child) != 0;
#else
    (void)window;
    (void)x;
    (void)y;
    return false;
#endif
}

} // namespace detail
} // namespace Native
} // namespace UI
