#pragma once

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/FontCache.h"
#include "Canvas/UI/FontContext.h"
#include "Canvas/UI/FreeTypeFont.h"
#include "Canvas/UI/StringWidthCache.h"

#include <memory>
#include <string>
#include <vector>

namespace FontTest
{

/// The faces of the Debian package fonts-liberation2 and of fonts-dejavu-core that the tests
/// pin; "Arial" resolves to the first through fontconfig.
extern char const* const LiberationSans;
extern char const* const LiberationSansBold;
extern char const* const LiberationSerif;
extern char const* const DejaVuSans;

/// A font description by face name.
UI::FontInfo Info(char const* face, float size, int antiAliasMode = 0, int sharpen = 0);
/// A font description by file.
UI::FontInfo FileInfo(char const* file, float size, int antiAliasMode = 0, int sharpen = 0);

/// What a canvas gives its fonts, built from real parts: extra fonts, an optional width cache,
/// an optional mapping function and an optional rendered-string cache for one window.
class Context : public UI::FontContext
{
public:
    UI::Font* GetExtraFont(checked_value<unsigned int> const& index) override;
    UI::StringWidthCache* GetStringWidthCache() override { return widths.get(); }
    bool IsFontStringMappingFunctionRegistered() const override { return upperCaseMapping; }
    String ApplyFontStringMappingFunction(String text) const override;
    UI::FontCache* GetFontCacheForDrawing(unsigned long& windowId) override;

    std::vector<std::unique_ptr<UI::Font>> extraFonts;
    std::unique_ptr<UI::StringWidthCache> widths;
    /// When set, the mapping function turns text to upper case.
    bool upperCaseMapping = false;
    /// The window being drawn, 0 for none; the rendered-string cache answers for it.
    unsigned long drawingWindow = 0;
    UI::FontCache fontCache;
    int extraFontRequests = 0;
};

/// A 32-bit picture for drawing tests: width times height pixels, stride equal to width.
struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<unsigned int> pixels;

    Picture(int w, int h, unsigned int fill);
    unsigned int* Bits() { return pixels.data(); }
    UI::Size Size() const { return UI::Size(width, height); }
    UI::Rect Bounds() const { return UI::Rect(0, width - 1, 0, height - 1); }
    unsigned int At(int x, int y) const { return pixels[static_cast<size_t>(y) * width + x]; }
    /// An image over these pixels, which it does not own.
    UI::DIBits AsBits();
};

/// Draws `text` with `font` into `picture` through the coverage cache or, with `cached` false,
/// the two-pass renderer; the clip is the whole picture unless given. Returns the drawn rect.
UI::Rect DrawInto(UI::FreeTypeFont& font, Picture& picture, UI::Point point, char const* text,
                  unsigned int color, unsigned char alpha = 255, bool cached = true,
                  UI::HAlignment hAlign = UI::HAlignLeft, UI::VAlignment vAlign = UI::VAlignTop,
                  UI::Rect box = UI::Rect(), checked_value<UI::Rect> clip = {});

/// Writes the picture's red, green and blue as a binary PPM (P6).
bool WritePPM(std::string const& path, Picture const& picture);
/// Reads a binary PPM written by `WritePPM` into opaque pixels; false when unreadable.
bool ReadPPM(std::string const& path, Picture& picture);

/// Folder of the reference pictures in the source tree.
std::string ReferenceFolder();
/// True when the environment asks the drawing tests to write their references instead of
/// comparing (TV_WRITE_FONT_REFERENCES=1; see tests/data/fonts/README).
bool WritingReferences();

/// Points the settings at an empty temporary folder for the whole test program, so that a
/// developer's own "ForceSystemFontRenderer" doesn't change the results.
void IsolateSettings();

} // namespace FontTest
