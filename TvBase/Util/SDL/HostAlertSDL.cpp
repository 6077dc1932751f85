#include "TvBase/Util/detail/HostAlert.h"

#include <SDL.h>

#include <cstdio>

namespace Util
{
namespace detail
{

void ShowHostAlert(String const& title, String const& text)
{
    if (SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_INFORMATION, title.CStr(), text.CStr(), nullptr) ==
        0)
        return;
    std::fprintf(stderr, "%s: %s\n", title.CStr(), text.CStr());
}

} // namespace detail
} // namespace Util
