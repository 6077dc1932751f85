#pragma once

#include "TvBase/Util/String.h"

#include <boost/shared_ptr.hpp>

#include <map>

namespace UI
{

class DIBits;

/// Rendered strings for windows full of static labels, kept per window that asked for it
/// (`UI::Canvas::SetFontCacheEnabled`). Used on the UI thread only.
class FontCache
{
public:
    /// One rendered string: text, color and font key. Ordered by the text's `strcmp` order,
    /// then font key, then color.
    struct StringID
    {
        String text;
        unsigned int color = 0;
        unsigned int fontKey = 0;

        StringID(String const& t, unsigned int c, unsigned int key)
            : text(t), color(c), fontKey(key)
        {
        }
        bool operator<(StringID const& other) const;
    };
    typedef std::map<StringID, boost::shared_ptr<DIBits>> FontInfoMapContainer;

    /// Enabling starts an empty container for the window (replacing any); disabling erases the
    /// window's strings at once.
    void SetCacheEnabled(unsigned long windowId, bool enabled);
    bool IsCacheEnabled(unsigned long windowId) const;
    /// The cached bits, or null when absent or the window has no container.
    boost::shared_ptr<DIBits> LookupString(unsigned long windowId, unsigned int fontKey,
                                           String const& text, unsigned int color) const;
    /// Stores `bits` (replacing an earlier entry); ignored when the window has no container.
    void AddString(unsigned long windowId, unsigned int fontKey, String const& text,
                   unsigned int color, boost::shared_ptr<DIBits> const& bits);
    /// Strings kept for the window.
    size_t GetStringCount(unsigned long windowId) const;

private:
    std::map<unsigned long, FontInfoMapContainer> windows;
};

} // namespace UI
