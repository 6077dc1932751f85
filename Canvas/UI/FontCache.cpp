#include "Canvas/UI/FontCache.h"

#include "Canvas/UI/DIBits.h"

#include <cstring>

namespace UI
{

bool FontCache::StringID::operator<(StringID const& other) const
{
    int const order = std::strcmp(text.CStr(), other.text.CStr());
    if (order != 0)
        return order < 0;
    if (fontKey != other.fontKey)
        return fontKey < other.fontKey;
    return color < other.color;
}

void FontCache::SetCacheEnabled(unsigned long windowId, bool enabled)
{
    if (enabled)
        windows[windowId] = FontInfoMapContainer();
    else
        windows.erase(windowId);
}

bool FontCache::IsCacheEnabled(unsigned long windowId) const
{
    return windows.count(windowId) != 0;
}

boost::shared_ptr<DIBits> FontCache::LookupString(unsigned long windowId, unsigned int fontKey,
                                                  String const& text, unsigned int color) const
{
    auto const window = windows.find(windowId);
    if (window == windows.end())
        return boost::shared_ptr<DIBits>();
    auto const found = window->second.find(StringID(text, color, fontKey));
    return found == window->second.end() ? boost::shared_ptr<DIBits>() : found->second;
}

void FontCache::AddString(unsigned long windowId, unsigned int fontKey, String const& text,
                          unsigned int color, boost::shared_ptr<DIBits> const& bits)
{
    auto const window = windows.find(windowId);
    if (window != windows.end())
        window->second[StringID(text, color, fontKey)] = bits;
}

size_t FontCache::GetStringCount(unsigned long windowId) const
{
    auto const window = windows.find(windowId);
    return window == windows.end() ? 0 : window->second.size();
}

} // namespace UI
