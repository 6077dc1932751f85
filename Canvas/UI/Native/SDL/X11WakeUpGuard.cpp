#include "Canvas/UI/Native/SDL/X11WakeUpGuard.h"

#include <SDL.h>
#include <X11/Xlib.h>
#include <X11/Xproto.h>

#include <cstring>

namespace UI
{
namespace Native
{

namespace
{

XErrorHandler previousHandler = nullptr;
bool installed = false;

int ignoreRefusedWakeUps(Display* display, XErrorEvent* error)
{
    if (error->error_code == BadWindow && error->request_code == X_SendEvent)
        return 0;
    return previousHandler ? previousHandler(display, error) : 0;
}

} // namespace

void GuardX11WakeUps()
{
    char const* driver = SDL_GetCurrentVideoDriver();
    if (installed || !driver || std::strcmp(driver, "x11") != 0)
        return;
    installed = true;
    previousHandler = XSetErrorHandler(ignoreRefusedWakeUps);
}

} // namespace Native
} // namespace UI
