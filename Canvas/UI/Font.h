#pragma once

#include "Canvas/UI/Alignment.h"
#include "Canvas/UI/FontInfo.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/String.h"

#include <memory>

namespace UI
{

class DIBits;
class FontContext;
class FreeTypeFont;
namespace Native
{
class DIBSection;
}

/// The font that windows use: a face at a size, measured through the canvas's width cache and
/// drawn by the toolkit's own FreeType renderer.
///
/// There is no second renderer on this host: a font whose face can't be opened (or with the
/// preference "ForceSystemFontRenderer" of "com.tavorin" set) measures 0 and draws nothing, and
/// says why once on stderr in a debug build. Not copyable; the canvas owns its fonts.
class Font
{
public:
    /// `canvas` may be null: no extra fonts, no caches, no text mapping.
    Font(FontContext* canvas, FontInfo const& info);
    ~Font();
    Font(Font const&) = delete;
    Font& operator=(Font const&) = delete;

    /// Width in pixels of `text` after the canvas's mapping function. Served from the width
    /// cache when the canvas has one and no mapping function is registered; a miss measures
    /// and stores the width.
    unsigned int GetStringWidth(String const& text);
    /// Measures without the width cache (the mapping function still applies).
    unsigned int getStringWidth(String const& text);

    /// Draws `text` (after the mapping function) into `section`; the rectangle drawn, clipped,
    /// or an empty one. This is what `UI::MemoryDrawContext::DrawText` calls. See
    /// `UI::FreeTypeFont::RenderText` for the arguments.
    UI::Rect RenderText(UI::Point const& point, String const& text, unsigned int color,
                        unsigned char alpha, UI::Rect const& clip, Native::DIBSection* section,
                        HAlignment hAlign, VAlignment vAlign, UI::Rect const& box);
    /// The same into an image, bypassing the rendered-string cache.
    UI::Rect RenderText(UI::Point const& point, String const& text, unsigned int color,
                        unsigned char alpha, UI::Rect const& clip, DIBits& bits, HAlignment hAlign,
                        VAlignment vAlign, UI::Rect const& box);

    FontInfo const& GetFontInfo() const { return info; }
    /// The FreeType object, or null when the face couldn't be opened.
    FreeTypeFont* GetFreeTypeFont() const { return freeType.get(); }
    /// The file of the face that draws, or an empty path when none does.
    FilePath GetNativeFont() const;
    /// Text metrics; 0 when nothing can be drawn.
    int GetAscent() const;
    int GetDescent() const;
    int GetHeight() const;

    /// The host's face file for `info` by face name, bold and italic: fontconfig's match when it
    /// is the face asked for or one that the configuration offers in its place ("Arial" gives a
    /// metric-compatible face), not a generic default. An empty path when there is none.
    static FilePath GetNSFontForInfo(FontInfo const& info);
    /// The same lookup by face name alone.
    static FilePath GetNSFontForInfo(String const& faceName, bool bold, bool italic);
    /// Starts fontconfig once for the process, to be ended at exit with its caches released;
    /// false when it can't start.
    static bool StartFontconfig();

private:
    FontContext* canvas;
    FontInfo info;
    std::unique_ptr<FreeTypeFont> freeType;
};

} // namespace UI
