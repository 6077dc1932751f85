#include "TvBase/Util/Clipboard.h"

#include <SDL.h>

#include <map>

namespace Util
{

namespace
{

/// What this process keeps of the clipboard: the data of its own formats, and the text while
/// SDL's video layer isn't running.
struct LocalClipboard
{
    std::map<unsigned int, std::vector<unsigned char>> formats;
    String text;
};

LocalClipboard& local()
{
    static LocalClipboard clipboard;
    return clipboard;
}

bool desktopHasClipboard()
{
    return SDL_WasInit(SDL_INIT_VIDEO) != 0;
}

} // namespace

unsigned int Clipboard::RegisterFormat(String const&, unsigned int format)
{
    return format;
}

bool Clipboard::IsFormatAvailable(unsigned int format)
{
    return local().formats.count(format) != 0;
}

bool Clipboard::SetContent(void*, checked_value<unsigned int> const& format,
                           std::vector<unsigned char> const& data, String const& text)
{
    if (!format.IsPresent() && text.IsEmpty())
        return false;
    // New content replaces all the old, the desktop's text included, as a fresh declaration of
    // types does on other hosts.
    if (desktopHasClipboard())
    {
        if (SDL_SetClipboardText(text.CStr()) != 0)
            return false;
        local().text = String();
    }
    else
        local().text = text.IsEmpty() ? String() : text;
    local().formats.clear();
    if (format.IsPresent())
        local().formats[format.Get()] = data;
    return true;
}

String Clipboard::GetString(void*, unsigned int)
{
    if (!desktopHasClipboard())
        return local().text;
    if (!SDL_HasClipboardText())
        return String();
    char* const text = SDL_GetClipboardText();
    String const result(text);
    SDL_free(text);
    return result;
}

bool Clipboard::GetContent(void*, unsigned int format, std::vector<unsigned char>& data)
{
    auto const found = local().formats.find(format);
    if (found == local().formats.end())
    {
        data.clear();
        return false;
    }
    data = found->second;
    return true;
}

} // namespace Util
