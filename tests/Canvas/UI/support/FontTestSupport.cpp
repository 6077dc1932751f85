#include "tests/Canvas/UI/support/FontTestSupport.h"

#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <fstream>
#include <string>

#include <stdlib.h>

namespace FontTest
{

char const* const LiberationSans =
    "/usr/share/fonts/truetype/liberation2/LiberationSans-Regular.ttf";
char const* const LiberationSansBold =
    "/usr/share/fonts/truetype/liberation2/LiberationSans-Bold.ttf";
char const* const LiberationSerif =
    "/usr/share/fonts/truetype/liberation2/LiberationSerif-Regular.ttf";
char const* const DejaVuSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

UI::FontInfo Info(char const* face, float size, int antiAliasMode, int sharpen)
{
    UI::FontInfo info(face, size);
    info.antiAliasMode = antiAliasMode;
    info.sharpen = sharpen;
    return info;
}

UI::FontInfo FileInfo(char const* file, float size, int antiAliasMode, int sharpen)
{
    UI::FontInfo info = Info("", size, antiAliasMode, sharpen);
    info.fontFile = FilePath(file);
    return info;
}

UI::Font* Context::GetExtraFont(checked_value<unsigned int> const& index)
{
    ++extraFontRequests;
    if (extraFonts.empty())
        return nullptr;
    unsigned int const slot = index.GetOr(0) < extraFonts.size() ? index.GetOr(0) : 0;
    return extraFonts[slot].get();
}

String Context::ApplyFontStringMappingFunction(String text) const
{
    return upperCaseMapping ? text.ToUpper() : text;
}

UI::FontCache* Context::GetFontCacheForDrawing(unsigned long& windowId)
{
    if (drawingWindow == 0 || !fontCache.IsCacheEnabled(drawingWindow))
        return nullptr;
    windowId = drawingWindow;
    return &fontCache;
}

Picture::Picture(int w, int h, unsigned int fill)
    : width(w), height(h), pixels(static_cast<size_t>(w) * h, fill)
{
}

UI::DIBits Picture::AsBits()
{
    boost::shared_array<unsigned int> borrowed(pixels.data(), [](unsigned int*) {});
    return UI::DIBits(borrowed, width, width, height, false);
}

UI::Rect DrawInto(UI::FreeTypeFont& font, Picture& picture, UI::Point point, char const* text,
                  unsigned int color, unsigned char alpha, bool cached, UI::HAlignment hAlign,
                  UI::VAlignment vAlign, UI::Rect box, checked_value<UI::Rect> clip)
{
    std::vector<UI::GlyphInfo> glyphs;
    UI::Rect const bounds = clip.IsPresent() ? clip.Get() : picture.Bounds();
    return cached
               ? font.renderTextToBits(point, text, color, alpha, bounds, picture.Bits(),
                                       picture.width, picture.Size(), hAlign, vAlign, box, glyphs)
               : font.renderTextToBitsUncached(point, text, color, alpha, bounds, picture.Bits(),
                                               picture.width, picture.Size(), hAlign, vAlign, box,
                                               glyphs);
}

bool WritePPM(std::string const& path, Picture const& picture)
{
    std::ofstream out(path, std::ios::binary);
    out << "P6\n" << picture.width << " " << picture.height << "\n255\n";
    for (unsigned int p : picture.pixels)
    {
        char const rgb[3] = {char((p >> 16) & 0xFF), char((p >> 8) & 0xFF), char(p & 0xFF)};
        out.write(rgb, 3);
    }
    return bool(out);
}

bool ReadPPM(std::string const& path, Picture& picture)
{
    std::ifstream in(path, std::ios::binary);
    std::string magic;
    int w = 0, h = 0, maximum = 0;
    if (!(in >> magic >> w >> h >> maximum) || magic != "P6" || maximum != 255 || w <= 0 ||
        h <= 0 || w > 10000 || h > 10000)
        return false;
    in.get();
    picture = Picture(w, h, 0);
    for (unsigned int& p : picture.pixels)
    {
        unsigned char rgb[3];
        if (!in.read(reinterpret_cast<char*>(rgb), 3))
            return false;
        p = 0xFF000000u | (rgb[0] << 16) | (rgb[1] << 8) | rgb[2];
    }
    return true;
}

std::string ReferenceFolder()
{
    return std::string(TV_SOURCE_DIR) + "/tests/data/fonts";
}

bool WritingReferences()
{
    char const* value = std::getenv("TV_WRITE_FONT_REFERENCES");
    return value && std::string(value) == "1";
}

void IsolateSettings()
{
    static TestSupport::TempFolder settings{"tv-fonts"};
    setenv("XDG_CONFIG_HOME", settings.Path().c_str(), 1);
}

namespace
{

// Before any test or benchmark runs.
struct SettingsIsolation
{
    SettingsIsolation() { IsolateSettings(); }
} const isolation;

} // namespace

} // namespace FontTest
