#pragma once

#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

namespace UI
{

class Font;
class FontCache;
class StringWidthCache;

/// What fonts need from the process-wide canvas that owns them: the extra character fonts, the
/// width cache, the text mapping function and the rendered-string cache of the window being
/// drawn. `UI::Canvas` implements it; fonts keep a plain pointer, which may be null (no extra
/// fonts, no caches, no mapping).
class FontContext
{
public:
    virtual ~FontContext() = default;

    /// Extra font 0, 1 or 2, loaded on first use; the canvas may give null.
    virtual Font* GetExtraFont(checked_value<unsigned int> const& index) = 0;
    /// The width cache, or null when measuring is not cached.
    virtual StringWidthCache* GetStringWidthCache() = 0;
    virtual bool IsFontStringMappingFunctionRegistered() const = 0;
    /// The text as the registered mapping function turns it, or unchanged.
    virtual String ApplyFontStringMappingFunction(String text) const = 0;
    /// The rendered-string cache when the window now being drawn (the top of the drawing stack)
    /// or one of its ancestors has it enabled; `windowId` is then set to that enabled window's
    /// identity. Null otherwise.
    virtual FontCache* GetFontCacheForDrawing(unsigned long& windowId) = 0;
};

} // namespace UI
