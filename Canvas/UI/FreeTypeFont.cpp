// The toolkit's own text renderer on FreeType.
//
// Sections:
//   1. Helpers: font file search, bitmap reading, placement arithmetic
//   2. Opening a face
//   3. Glyphs and measuring
//   4. Drawing with the coverage cache
//   5. Drawing as first written (every glyph loaded and rendered twice)
//   6. Targets: sections, images and the rendered-string cache

#include "Canvas/UI/FreeTypeFont.h"

#include "Canvas/UI/BitBlt.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/FontCache.h"
#include "Canvas/UI/FontContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/detail/FTLibraryWrapper.h"
#include "Canvas/UI/detail/TextPixels.h"
#include "TvBase/Util/File.h"
#include "TvBase/Util/SystemFolders.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_GLYPH_H

#include <algorithm>
#include <cmath>

namespace UI
{

// =================================================================================================
// 1. Helpers
// =================================================================================================

namespace
{

typedef Atomic::CriticalSectionLocker FreeTypeLock;

// Digits and the characters of common readouts: their glyphs are loaded when the face opens.
char const* const warmCharacters = "1234567890-+:k";

FilePath findFontFileByName(String const& face, bool bold, bool italic)
{
    if (face.IsEmpty())
        return FilePath();
    static char const* const styles[] = {"", " Bold", " Italic", " Bold Italic"};
    String const name = face + styles[(bold ? 1 : 0) + 2 * (italic ? 1 : 0)] + ".ttf";
    for (FolderPath const& folder : Util::GetFontFolders())
    {
        FilePath const candidate = folder + name;
        if (Util::File(candidate).Exists())
            return candidate;
    }
    return FilePath();
}

/// Coverage 0..255 of one pixel of a rendered glyph bitmap.
int bitmapCoverage(FT_Bitmap const& bitmap, int column, int row)
{
    int const pitch = bitmap.pitch;
    unsigned char const* line = pitch >= 0 ? bitmap.buffer + row * pitch
                                           : bitmap.buffer + (int(bitmap.rows) - 1 - row) * -pitch;
    switch (bitmap.pixel_mode)
    {
    case FT_PIXEL_MODE_GRAY:
        return line[column];
    case FT_PIXEL_MODE_MONO:
        return (line[column >> 3] & (0x80 >> (column & 7))) ? 255 : 0;
    default:
        return 0;
    }
}

/// A glyph bitmap taken out of the slot, one byte of coverage a pixel.
struct CapturedBitmap
{
    bool ok = false;
    long advance = 0;
    int left = 0;
    int top = 0;
    int width = 0;
    int rows = 0;
    std::vector<unsigned char> pixels;

    void capture(FT_GlyphSlot slot)
    {
        FT_Bitmap const& bitmap = slot->bitmap;
        ok = true;
        advance = slot->advance.x;
        left = slot->bitmap_left;
        top = slot->bitmap_top;
        width = static_cast<int>(bitmap.width);
        rows = static_cast<int>(bitmap.rows);
        pixels.resize(static_cast<size_t>(width) * rows);
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < width; ++c)
                pixels[static_cast<size_t>(r) * width + c] =
                    static_cast<unsigned char>(bitmapCoverage(bitmap, c, r));
    }
};

/// Loads glyph `index` of `face` and renders it in `mode`; null on any FreeType error.
FT_GlyphSlot loadAndRender(FT_Face face, unsigned int index, unsigned int loadFlags,
                           FT_Render_Mode mode)
{
    if (!face || FT_Load_Glyph(face, index, static_cast<FT_Int32>(loadFlags)) != 0)
        return nullptr;
    if (FT_Render_Glyph(face->glyph, mode) != 0)
        return nullptr;
    return face->glyph;
}

/// The gamma for drawing `color` over the pixels of `area`: text brighter than its ground gets
/// a gamma below 1, which strengthens thin strokes, and darker text the other way.
double probeGamma(unsigned int color, unsigned int const* pixels, int stride, UI::Rect const& area)
{
    unsigned long long sum = 0;
    for (int y = area.top; y <= area.bottom; ++y)
    {
        unsigned int const* row = pixels + static_cast<long>(y) * stride;
        for (int x = area.left; x <= area.right; ++x)
        {
            unsigned int const p = row[x];
            sum += ((p & 0xFF) + 2 * ((p >> 16) & 0xFF) + 3 * ((p >> 8) & 0xFF)) / 6;
        }
    }
    unsigned long long const count = static_cast<unsigned long long>(area.Width()) *
                                     static_cast<unsigned long long>(area.Height());
    int mean = count ? static_cast<int>(sum / count) : 0;
    if (mean == 0)
        mean = 64;
    int const brightness = std::max({(color >> 16) & 0xFF, (color >> 8) & 0xFF, color & 0xFF});
    return 1.0 + (brightness - mean) * -0.3 / 255.0;
}

/// The top-left of a text of `w` by `h` placed at `point` by the alignments, or centred in a
/// non-empty `box`.
UI::Point placeText(UI::Point const& point, int w, int h, HAlignment hAlign, VAlignment vAlign,
                    UI::Rect const& box)
{
    UI::Point p;
    if (hAlign == HAlignLeft)
        p.x = point.x;
    else if (hAlign == HAlignCenter)
        p.x = box.IsEmpty() ? point.x - (w + 1) / 2 : (box.left + box.right + 1 - w) / 2;
    else
        p.x = point.x - w;
    if (vAlign == VAlignTop)
        p.y = point.y;
    else if (vAlign == VAlignCenter)
        p.y = box.IsEmpty() ? point.y - (h + 1) / 2 : (box.top + box.bottom + 2 - h) / 2;
    else
        p.y = point.y - h;
    return p;
}

} // namespace

/// Grey and mono coverage of one glyph, rendered once with the owning font's load flags.
struct FreeTypeFont::GlyphCoverage
{
    CapturedBitmap grey;
    CapturedBitmap mono;
};

/// Where a text goes: its top-left, size, the visible part and the shift that keeps a negative
/// left bearing of the first glyph inside.
struct FreeTypeFont::Layout
{
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;
    int shift = 0;
    UI::Rect drawn;
};

FreeTypeFont::freetype_glyph::~freetype_glyph()
{
    if (glyph)
    {
        FreeTypeLock lock(FTLibraryWrapper::GetLock());
        FT_Done_Glyph(glyph);
    }
}

float FreeTypeFont::ComputeMixFactor(int sharpen, int antiAliasMode, float size)
{
    if (sharpen == 0)
        return 0.0f;
    if (antiAliasMode == 1)
        return 1.0f;
    static float const limits[] = {11, 12, 13, 14, 15, 16};
    static float const factors[] = {0.6f, 0.65f, 0.7f, 0.75f, 0.8f, 0.85f};
    for (int i = 0; i < 6; ++i)
        if (size < limits[i])
            return factors[i];
    return 0.9f;
}

// =================================================================================================
// 2. Opening a face
// =================================================================================================

FreeTypeFont::FreeTypeFont(FontContext* canvas, FontInfo const& fontInfo)
    : canvas(canvas), info(fontInfo), key(fontInfo.ComputeKey())
{
    FreeTypeLock lock(FTLibraryWrapper::GetLock());
    openFace();
}

FreeTypeFont::~FreeTypeFont()
{
    FreeTypeLock lock(FTLibraryWrapper::GetLock());
    glyphCache.clear();
    coverageCache.clear();
    if (face)
    {
        FT_Done_Face(face);
        FTLibraryWrapper::FaceClosed();
    }
}

bool FreeTypeFont::openFile(FilePath const& path)
{
    FT_Library library = FTLibraryWrapper::GetLibrary();
    if (!library || path.IsEmpty())
        return false;
    FT_Face opened = nullptr;
    String const text = path.ToString();
    if (FT_New_Face(library, text.CStr(), static_cast<FT_Long>(info.faceIndex.GetOr(0)), &opened) !=
        0)
        return false;
    face = opened;
    FTLibraryWrapper::FaceOpened();
    info.fontFile = path;
    return true;
}

void FreeTypeFont::openFace()
{
    if (!info.fontFile.IsEmpty())
    {
        if (!openFile(info.fontFile))
            return;
    }
    else
    {
        // The host's match for the face, a file named after it in the font folders, then the
        // same two for the fallback face; a file that FreeType refuses passes to the next.
        FilePath (*const lookups[])(FontInfo const&) = {
            [](FontInfo const& i) { return Font::GetNSFontForInfo(i.faceName, i.bold, i.italic); },
            [](FontInfo const& i) { return findFontFileByName(i.faceName, i.bold, i.italic); },
            [](FontInfo const& i)
            { return Font::GetNSFontForInfo(i.fallbackFaceName, i.bold, i.italic); },
            [](FontInfo const& i)
            { return findFontFileByName(i.fallbackFaceName, i.bold, i.italic); }};
        bool opened = false;
        for (auto lookup : lookups)
            if ((opened = openFile(lookup(info))))
                break;
        if (!opened)
            return;
    }

    FT_F26Dot6 const charSize = static_cast<FT_F26Dot6>(std::round(info.size * 64.0f));
    if (FT_Set_Char_Size(face, 0, charSize, 72, 72) != 0)
        return;
    FT_Size_Metrics const& metrics = face->size->metrics;
    ascent = static_cast<int>(std::ceil(metrics.ascender / 64.0));
    descent = static_cast<int>(std::ceil(-metrics.descender / 64.0));
    height = ascent + descent + 1;

    loadFlags = info.antiAliasMode == 0 ? (FT_LOAD_TARGET_MONO | FT_LOAD_MONOCHROME) : 0;
    if (info.forceAutoHint)
        loadFlags |= FT_LOAD_FORCE_AUTOHINT;
    mixFactor = ComputeMixFactor(info.sharpen, info.antiAliasMode, info.size);
    kerning = info.kerning && FT_HAS_KERNING(face);
    valid = true;

    for (char const* c = warmCharacters; *c; ++c)
    {
        FT_UInt const index = FT_Get_Char_Index(face, static_cast<unsigned char>(*c));
        if (index != 0)
            CacheGlyph(index);
    }
}

// =================================================================================================
// 3. Glyphs and measuring
// =================================================================================================

void FreeTypeFont::CacheGlyph(unsigned int index)
{
    FreeTypeLock lock(FTLibraryWrapper::GetLock());
    if (valid)
        getGlyph(index);
}

size_t FreeTypeFont::GetGlyphCacheCount() const
{
    FreeTypeLock lock(FTLibraryWrapper::GetLock());
    return glyphCache.size();
}

size_t FreeTypeFont::GetCoverageCacheCount() const
{
    FreeTypeLock lock(FTLibraryWrapper::GetLock());
    return coverageCache.size();
}

// Every glyph that is measured stays in the cache: a face has a bounded set of them, and text
// is measured again on every layout.
boost::shared_ptr<FreeTypeFont::freetype_glyph> FreeTypeFont::getGlyph(unsigned int index)
{
    freetype_glyph_cache::const_iterator const found = glyphCache.find(index);
    if (found != glyphCache.end())
        return found->second;
    if (!face || FT_Load_Glyph(face, index, static_cast<FT_Int32>(loadFlags)) != 0)
        return boost::shared_ptr<freetype_glyph>();
    FT_Glyph glyph = nullptr;
    if (FT_Get_Glyph(face->glyph, &glyph) != 0)
        return boost::shared_ptr<freetype_glyph>();
    boost::shared_ptr<freetype_glyph> loaded(new freetype_glyph);
    loaded->glyph = glyph;
    loaded->advance = face->glyph->advance.x;
    glyphCache[index] = loaded;
    return loaded;
}

boost::shared_ptr<FreeTypeFont::GlyphCoverage> FreeTypeFont::getCoverage(unsigned int index)
{
    auto const found = coverageCache.find(index);
    if (found != coverageCache.end())
        return found->second;
    boost::shared_ptr<GlyphCoverage> coverage(new GlyphCoverage);
    if (FT_GlyphSlot slot = loadAndRender(face, index, loadFlags, FT_RENDER_MODE_NORMAL))
        coverage->grey.capture(slot);
    if (FT_GlyphSlot slot = loadAndRender(face, index, loadFlags, FT_RENDER_MODE_MONO))
        coverage->mono.capture(slot);
    coverageCache[index] = coverage;
    return coverage;
}

void FreeTypeFont::findGlyphIndices(String const& text, std::vector<GlyphInfo>& glyphs)
{
    boost::shared_array<unsigned short> const units = text.Unicode();
    if (!units)
        return;
    for (unsigned short const* unit = units.get(); *unit; ++unit)
    {
        GlyphInfo glyph;
        glyph.glyphIndex = FT_Get_Char_Index(face, *unit);
        glyph.font = this;
        for (unsigned int extra = 0; glyph.glyphIndex == 0 && canvas && extra < 3; ++extra)
        {
            Font* const font = canvas->GetExtraFont(extra);
            FreeTypeFont* const other = font ? font->GetFreeTypeFont() : nullptr;
            if (!other || other == this || !other->valid)
                continue;
            unsigned int const index = FT_Get_Char_Index(other->face, *unit);
            if (index != 0)
            {
                glyph.glyphIndex = index;
                glyph.font = other;
            }
        }
        glyphs.push_back(glyph);
    }
}

// Kerning in 26.6, only between two glyphs of the same face.
long FreeTypeFont::getKerning(GlyphInfo const& previous, GlyphInfo const& current) const
{
    if (!kerning || previous.font != current.font || !current.font->face)
        return 0;
    FT_Vector delta;
    if (FT_Get_Kerning(current.font->face, previous.glyphIndex, current.glyphIndex,
                       FT_KERNING_DEFAULT, &delta) != 0)
        return 0;
    return delta.x;
}

unsigned int FreeTypeFont::getUnicodeStringWidth(std::vector<GlyphInfo> const& glyphs)
{
    long pen = 0;
    for (size_t i = 0; i < glyphs.size(); ++i)
    {
        if (i > 0)
            pen += (getKerning(glyphs[i - 1], glyphs[i]) + 32) >> 6;
        boost::shared_ptr<freetype_glyph> const glyph =
            glyphs[i].font->getGlyph(glyphs[i].glyphIndex);
        if (glyph)
            pen += (glyph->advance + 32) >> 6;
    }
    return pen > 0 ? static_cast<unsigned int>(pen) : 0;
}

unsigned int FreeTypeFont::GetStringWidth(String const& text, std::vector<GlyphInfo>& glyphs)
{
    FreeTypeLock lock(FTLibraryWrapper::GetLock());
    glyphs.clear();
    if (!valid || text.IsEmpty())
        return 0;
    findGlyphIndices(text, glyphs);
    return getUnicodeStringWidth(glyphs);
}

unsigned int FreeTypeFont::GetStringWidth(String const& text)
{
    std::vector<GlyphInfo> glyphs;
    return GetStringWidth(text, glyphs);
}

// =================================================================================================
// 4. Drawing with the coverage cache
// =================================================================================================

int FreeTypeFont::firstGlyphShift(std::vector<GlyphInfo> const& glyphs)
{
    if (glyphs.empty())
        return 0;
    boost::shared_ptr<freetype_glyph> const first =
        glyphs.front().font->getGlyph(glyphs.front().glyphIndex);
    if (!first)
        return 0;
    FT_BBox box;
    FT_Glyph_Get_CBox(first->glyph, FT_GLYPH_BBOX_PIXELS, &box);
    return box.xMin < 0 ? static_cast<int>(-box.xMin) : 0;
}

bool FreeTypeFont::layoutText(UI::Point const& point, String const& text, UI::Rect const& clip,
                              UI::Size const& size, HAlignment hAlign, VAlignment vAlign,
                              UI::Rect const& box, std::vector<GlyphInfo>& glyphs, Layout& layout)
{
    glyphs.clear();
    if (!valid || text.IsEmpty())
        return false;
    layout.w = static_cast<int>(GetStringWidth(text, glyphs));
    layout.h = height;
    if (layout.w <= 0)
        return false;
    UI::Point const topLeft = placeText(point, layout.w, layout.h, hAlign, vAlign, box);
    layout.x = topLeft.x;
    layout.y = topLeft.y;
    layout.drawn = UI::Rect(layout.x, layout.x + layout.w - 1, layout.y, layout.y + layout.h - 1) &
                   clip & UI::Rect(0, size.width - 1, 0, size.height - 1);
    if (layout.drawn.IsEmpty())
        return false;
    layout.shift = firstGlyphShift(glyphs);
    return true;
}

int const* FreeTypeFont::getWeightTable(double gamma, unsigned char alpha)
{
    if (weightTable.empty() || gamma != weightGamma || alpha != weightAlpha)
    {
        weightTable.resize(512);
        for (int g = 0; g < 256; ++g)
        {
            weightTable[2 * g] = detail::textPixelWeight(g, 0, mixFactor, gamma, alpha);
            weightTable[2 * g + 1] = detail::textPixelWeight(g, 255, mixFactor, gamma, alpha);
        }
        weightGamma = gamma;
        weightAlpha = alpha;
    }
    return weightTable.data();
}

void FreeTypeFont::drawUnderline(Layout const& layout, unsigned int color, unsigned char alpha,
                                 unsigned int* pixels, int stride) const
{
    if (!info.underline)
        return;
    int const row = layout.y + ascent + std::min(descent, 1);
    if (row < layout.drawn.top || row > layout.drawn.bottom)
        return;
    unsigned int* line = pixels + static_cast<long>(row) * stride;
    for (int x = layout.drawn.left; x <= layout.drawn.right; ++x)
        detail::blendTextPixel(line[x], color, alpha);
}

UI::Rect FreeTypeFont::renderTextToBits(UI::Point const& point, String const& text,
                                        unsigned int color, unsigned char alpha,
                                        UI::Rect const& clip, unsigned int* pixels, int stride,
                                        UI::Size const& size, HAlignment hAlign, VAlignment vAlign,
                                        UI::Rect const& box, std::vector<GlyphInfo>& glyphs)
{
    FreeTypeLock lock(FTLibraryWrapper::GetLock());
    Layout layout;
    if (!pixels || !layoutText(point, text, clip, size, hAlign, vAlign, box, glyphs, layout))
        return UI::Rect();

    std::vector<boost::shared_ptr<GlyphCoverage>> coverage(glyphs.size());
    for (size_t i = 0; i < glyphs.size(); ++i)
    {
        coverage[i] = glyphs[i].font->getCoverage(glyphs[i].glyphIndex);
        if (!coverage[i]->grey.ok)
            return UI::Rect();
    }
    double const gamma = probeGamma(color, pixels, stride, layout.drawn);

    // First pass: the grey coverage of the whole text, glyphs overlapping by their maximum.
    std::vector<unsigned char> grey(static_cast<size_t>(layout.w) * layout.h, 0);
    long pen = layout.shift;
    for (size_t i = 0; i < glyphs.size(); ++i)
    {
        if (i > 0)
            pen += (getKerning(glyphs[i - 1], glyphs[i]) + 32) >> 6;
        CapturedBitmap const& bitmap = coverage[i]->grey;
        for (int r = 0; r < bitmap.rows; ++r)
        {
            int const by = ascent - bitmap.top + r;
            if (by < 0 || by >= layout.h)
                continue;
            unsigned char const* source = &bitmap.pixels[static_cast<size_t>(r) * bitmap.width];
            unsigned char* target = &grey[static_cast<size_t>(by) * layout.w];
            for (int c = 0; c < bitmap.width; ++c)
            {
                long const bx = pen + bitmap.left + c;
                if (bx >= 0 && bx < layout.w)
                    target[bx] = std::max(target[bx], source[c]);
            }
        }
        pen += (bitmap.advance + 32) >> 6;
    }

    // Second pass: each glyph's mono shape mixed with the grey coverage under it.
    int const* const weights = getWeightTable(gamma, alpha);
    pen = layout.shift;
    for (size_t i = 0; i < glyphs.size(); ++i)
    {
        if (i > 0)
            pen += (getKerning(glyphs[i - 1], glyphs[i]) + 32) >> 6;
        CapturedBitmap const& bitmap = coverage[i]->mono;
        if (!bitmap.ok)
            return UI::Rect();
        for (int r = 0; r < bitmap.rows; ++r)
        {
            int const py = layout.y + ascent - bitmap.top + r;
            if (py < layout.drawn.top || py > layout.drawn.bottom)
                continue;
            unsigned char const* source = &bitmap.pixels[static_cast<size_t>(r) * bitmap.width];
            unsigned char const* under = &grey[static_cast<size_t>(py - layout.y) * layout.w];
            unsigned int* target = pixels + static_cast<long>(py) * stride;
            for (int c = 0; c < bitmap.width; ++c)
            {
                long const px = layout.x + pen + bitmap.left + c;
                if (px < layout.drawn.left || px > layout.drawn.right)
                    continue;
                int const weight = weights[2 * under[px - layout.x] + (source[c] ? 1 : 0)];
                detail::blendTextPixel(target[px], color, weight);
            }
        }
        pen += (bitmap.advance + 32) >> 6;
    }

    drawUnderline(layout, color, alpha, pixels, stride);
    return layout.drawn;
}

// =================================================================================================
// 5. Drawing as first written
// =================================================================================================

UI::Rect FreeTypeFont::renderTextToBitsUncached(UI::Point const& point, String const& text,
                                                unsigned int color, unsigned char alpha,
                                                UI::Rect const& clip, unsigned int* pixels,
                                                int stride, UI::Size const& size, HAlignment hAlign,
                                                VAlignment vAlign, UI::Rect const& box,
                                                std::vector<GlyphInfo>& glyphs)
{
    FreeTypeLock lock(FTLibraryWrapper::GetLock());
    Layout layout;
    if (!pixels || !layoutText(point, text, clip, size, hAlign, vAlign, box, glyphs, layout))
        return UI::Rect();
    double const gamma = probeGamma(color, pixels, stride, layout.drawn);

    std::vector<unsigned char> grey(static_cast<size_t>(layout.w) * layout.h, 0);
    long pen = layout.shift;
    for (size_t i = 0; i < glyphs.size(); ++i)
    {
        if (i > 0)
            pen += (getKerning(glyphs[i - 1], glyphs[i]) + 32) >> 6;
        FreeTypeFont const* owner = glyphs[i].font;
        FT_GlyphSlot const slot = loadAndRender(owner->face, glyphs[i].glyphIndex, owner->loadFlags,
                                                FT_RENDER_MODE_NORMAL);
        if (!slot)
            return UI::Rect();
        for (int r = 0; r < int(slot->bitmap.rows); ++r)
        {
            int const by = ascent - slot->bitmap_top + r;
            if (by < 0 || by >= layout.h)
                continue;
            for (int c = 0; c < int(slot->bitmap.width); ++c)
            {
                long const bx = pen + slot->bitmap_left + c;
                if (bx < 0 || bx >= layout.w)
                    continue;
                unsigned char& target = grey[static_cast<size_t>(by) * layout.w + bx];
                target = std::max<int>(target, bitmapCoverage(slot->bitmap, c, r));
            }
        }
        pen += (slot->advance.x + 32) >> 6;
    }

    pen = layout.shift;
    for (size_t i = 0; i < glyphs.size(); ++i)
    {
        if (i > 0)
            pen += (getKerning(glyphs[i - 1], glyphs[i]) + 32) >> 6;
        FreeTypeFont const* owner = glyphs[i].font;
        FT_GlyphSlot const slot =
            loadAndRender(owner->face, glyphs[i].glyphIndex, owner->loadFlags, FT_RENDER_MODE_MONO);
        if (!slot)
            return UI::Rect();
        for (int r = 0; r < int(slot->bitmap.rows); ++r)
        {
            int const py = layout.y + ascent - slot->bitmap_top + r;
            if (py < layout.drawn.top || py > layout.drawn.bottom)
                continue;
            for (int c = 0; c < int(slot->bitmap.width); ++c)
            {
                long const px = layout.x + pen + slot->bitmap_left + c;
                if (px < layout.drawn.left || px > layout.drawn.right)
                    continue;
                int const g = grey[static_cast<size_t>(py - layout.y) * layout.w + (px - layout.x)];
                int const m = bitmapCoverage(slot->bitmap, c, r) ? 255 : 0;
                detail::blendTextPixel(pixels[static_cast<long>(py) * stride + px], color,
                                       detail::textPixelWeight(g, m, mixFactor, gamma, alpha));
            }
        }
        pen += (slot->advance.x + 32) >> 6;
    }

    drawUnderline(layout, color, alpha, pixels, stride);
    return layout.drawn;
}

// =================================================================================================
// 6. Targets
// =================================================================================================

UI::Rect FreeTypeFont::RenderText(UI::Point const& point, String const& text, unsigned int color,
                                  unsigned char alpha, UI::Rect const& clip,
                                  Native::DIBSection* section, HAlignment hAlign, VAlignment vAlign,
                                  UI::Rect const& box)
{
    if (!section || !section->GetPixels() || !valid || text.IsEmpty())
        return UI::Rect();
    unsigned long windowId = 0;
    FontCache* const cache = canvas ? canvas->GetFontCacheForDrawing(windowId) : nullptr;
    std::vector<GlyphInfo> glyphs;
    if (!cache)
        return renderTextToBits(point, text, color, alpha, clip, section->GetPixels(),
                                section->GetStride(), section->GetSize(), hAlign, vAlign, box,
                                glyphs);

    // Rendered once at full strength onto transparent bits, then blended at each draw.
    boost::shared_ptr<DIBits> bits = cache->LookupString(windowId, key, text, color);
    if (!bits)
    {
        int const w = static_cast<int>(GetStringWidth(text, glyphs));
        if (w <= 0 || height <= 0)
            return UI::Rect();
        bits = CreateDIBits(UI::Size(w, height), 0u);
        if (!bits || !bits->IsValid())
            return UI::Rect();
        bits->SetHasAlpha(true);
        renderTextToBits(UI::Point(0, 0), text, color, 255, bits->GetRect(), bits->GetPixels(),
                         bits->GetStride(), bits->GetSize(), HAlignLeft, VAlignTop, UI::Rect(),
                         glyphs);
        cache->AddString(windowId, key, text, color, bits);
    }
    UI::Point const topLeft =
        placeText(point, bits->GetWidth(), bits->GetHeight(), hAlign, vAlign, box);
    BitBlt(bits.get(), bits->GetRect(), section, topLeft, alpha, checked_value<UI::Rect>(clip));
    return UI::Rect(topLeft, bits->GetSize()) & clip &
           UI::Rect(0, section->GetWidth() - 1, 0, section->GetHeight() - 1);
}

UI::Rect FreeTypeFont::RenderText(UI::Point const& point, String const& text, unsigned int color,
                                  unsigned char alpha, UI::Rect const& clip, DIBits& bits,
                                  HAlignment hAlign, VAlignment vAlign, UI::Rect const& box)
{
    if (!bits.IsValid())
        return UI::Rect();
    std::vector<GlyphInfo> glyphs;
    return renderTextToBits(point, text, color, alpha, clip, bits.GetPixels(), bits.GetStride(),
                            bits.GetSize(), hAlign, vAlign, box, glyphs);
}

} // namespace UI
