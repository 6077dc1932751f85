// The toolkit's own text renderer on FreeType.
//
// Sections:
//   1. Helpers: font file search, bitmap reading, placement arithmetic
//   2. Opening a face
//   3. Glyphs and measuring
//   4. Drawing from cached glyph coverage and text runs
//   5. Drawing as first written (every glyph loaded and rendered twice)
//   6. Targets: sections, images and the rendered-string cache

#include "Canvas/UI/FreeTypeFont.h"

#include "Canvas/UI/BitBlt.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/FontCache.h"
#include "Canvas/UI/FontContext.h"
#include "Canvas/UI/FontFallback.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/detail/FTLibraryWrapper.h"
#include "Canvas/UI/detail/TextPixels.h"
#include "TvBase/Util/File.h"
#include "TvBase/Util/SystemFolders.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_GLYPH_H

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <climits>
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
unsigned long long groundSum(unsigned int const* row, int left, int right)
{
    int x = left;
    unsigned long long sum = 0;
#ifdef __SSE2__
    // Blue and red, then green and alpha, summed in 16-bit lanes over up to 126 pixels a lane
    // (at most 32130, still positive as a signed lane), then weighted pairwise into 32-bit
    // lanes: blue + 2 red and 3 green + 0 alpha. A 32-bit lane gains at most 765 a pixel, no
    // overflow within a row. Two groups of four pixels a step keep two sums going.
    __m128i const evenBytes = _mm_set1_epi32(0x00FF00FF);
    __m128i const evenWeights = _mm_set1_epi32(0x00020001);
    __m128i const oddWeights = _mm_set1_epi32(0x00000003);
    __m128i lanes = _mm_setzero_si128();
    while (x + 7 <= right)
    {
        int const end = std::min(right - 7, x + 8 * 62);
        __m128i even[2] = {_mm_setzero_si128(), _mm_setzero_si128()};
        __m128i odd[2] = {_mm_setzero_si128(), _mm_setzero_si128()};
        for (; x <= end; x += 8)
            for (int k = 0; k < 2; ++k)
            {
                __m128i const p =
                    _mm_loadu_si128(reinterpret_cast<__m128i const*>(row + x + 4 * k));
                even[k] = _mm_add_epi16(even[k], _mm_and_si128(p, evenBytes));
                odd[k] = _mm_add_epi16(odd[k], _mm_srli_epi16(p, 8));
            }
        lanes = _mm_add_epi32(lanes, _mm_madd_epi16(_mm_add_epi16(even[0], even[1]), evenWeights));
        lanes = _mm_add_epi32(lanes, _mm_madd_epi16(_mm_add_epi16(odd[0], odd[1]), oddWeights));
    }
    unsigned int parts[4];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(parts), lanes);
    sum = static_cast<unsigned long long>(parts[0]) + parts[1] + parts[2] + parts[3];
#endif
    for (; x <= right; ++x)
    {
        unsigned int const p = row[x];
        sum += (p & 0xFF) + 2 * ((p >> 16) & 0xFF) + 3 * ((p >> 8) & 0xFF);
    }
    return sum;
}

double probeGamma(unsigned int color, unsigned int const* pixels, int stride, UI::Rect const& area)
{
    // The mean of (blue + 2 red + 3 green) / 6 over the ground.
    unsigned long long sum = 0;
    for (int y = area.top; y <= area.bottom; ++y)
        sum += groundSum(pixels + static_cast<long>(y) * stride, area.left, area.right);
    unsigned long long const count = static_cast<unsigned long long>(area.Width()) *
                                     static_cast<unsigned long long>(area.Height());
    int mean = count ? static_cast<int>(sum / (6 * count)) : 0;
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
    /// One pixel of the mono box that carries grey or mono coverage: its place from the pen
    /// (x) and from the baseline (y), and its index into the weight table, 2 * grey + mono bit.
    struct Pixel
    {
        short x;
        short y;
        unsigned short weightIndex;
    };

    CapturedBitmap grey;
    CapturedBitmap mono;
    /// The covered pixels of the mono box, in row order; what a glyph that no other glyph
    /// overlaps draws.
    std::vector<Pixel> covered;

    /// The grey coverage at `x` from the pen and `y` from the baseline; 0 outside the bitmap.
    int greyAt(long x, long y) const
    {
        long const c = x - grey.left;
        long const r = y + grey.top;
        if (c < 0 || r < 0 || c >= grey.width || r >= grey.rows)
            return 0;
        return grey.pixels[static_cast<size_t>(r) * grey.width + c];
    }

    void collectCovered()
    {
        for (int r = 0; r < mono.rows; ++r)
            for (int c = 0; c < mono.width; ++c)
            {
                int const x = mono.left + c;
                int const y = r - mono.top;
                int const index = 2 * greyAt(x, y) + (mono.pixels[r * mono.width + c] ? 1 : 0);
                if (index != 0)
                    covered.push_back(Pixel{static_cast<short>(x), static_cast<short>(y),
                                            static_cast<unsigned short>(index)});
            }
    }
};

/// A measured text ready to draw anywhere: see `buildTextRun`.
struct FreeTypeFont::TextRun
{
    std::vector<GlyphInfo> glyphs;
    int width = 0;
    bool greyFailed = false;
    std::vector<long> pens;
    std::vector<GlyphCoverage const*> coverage;
    std::vector<std::vector<size_t>> neighbours;

    // A text of up to `layerLimit` pixels is drawn in one sweep over its box, row by row, from
    // a weight for every pixel; larger ones glyph by glyph. A pixel that several glyphs draw
    // (their mono boxes overlap) takes its first blend in the sweep and the others after it,
    // in glyph order. Places are offsets into the box, w by the font's height.
    bool layered = false;
    // A glyph without mono coverage stops the drawing: the glyphs before it are drawn.
    bool monoFailed = false;
    std::vector<unsigned int> firstOffsets;
    std::vector<unsigned short> firstIndices;
    std::vector<unsigned int> laterOffsets;
    std::vector<unsigned short> laterIndices;
    // The first and last column of each row that has a first blend; first > last when none.
    std::vector<int> rowFirst;
    std::vector<int> rowLast;
    // The weight of each first blend for the gamma and alpha last drawn with, 0 elsewhere.
    std::vector<unsigned char> weights;
    double weightGamma = 0.0;
    int weightAlpha = -1;

    /// About what the run holds, for the measured-text cache's limit.
    size_t bytes() const
    {
        return weights.size() + 6 * (firstOffsets.size() + laterOffsets.size()) +
               2 * sizeof(int) * rowFirst.size() +
               (sizeof(GlyphInfo) + sizeof(long) + sizeof(GlyphCoverage const*)) * glyphs.size();
    }
};

namespace
{

/// Blends the covered pixels of a glyph lying wholly inside the clip; `origin` is the pixel at
/// the glyph's pen position on the baseline.
void blendCovered(std::vector<FreeTypeFont::GlyphCoverage::Pixel> const& covered,
                  unsigned int* origin, int stride, int const* weights, unsigned int color,
                  detail::CompositeWeights const* composite)
{
    for (FreeTypeFont::GlyphCoverage::Pixel const& p : covered)
    {
        int const weight = weights[p.weightIndex];
        if (weight > 0)
            detail::blendTextPixel(origin[static_cast<long>(p.y) * stride + p.x], color, weight,
                                   composite);
    }
}

size_t const layerLimit = 1 << 17;
// The measured texts of a font keep to this many bytes of drawing data.
size_t const runCacheLimit = 8 << 20;

/// Fills the drawing data of a run whose glyphs, pens, coverage and neighbours are known; an
/// overlapping pixel's grey coverage is the largest of all glyphs there.
void layOutRun(FreeTypeFont::TextRun& run, int ascent, int height)
{
    size_t const w = static_cast<size_t>(run.width);
    size_t const h = static_cast<size_t>(height);
    if (w * h > layerLimit)
        return;
    run.layered = true;
    std::vector<unsigned short> first(w * h, 0);
    for (size_t i = 0; i < run.coverage.size(); ++i)
    {
        FreeTypeFont::GlyphCoverage const& glyph = *run.coverage[i];
        CapturedBitmap const& mono = glyph.mono;
        if (!mono.ok)
        {
            run.monoFailed = true;
            break;
        }
        for (int r = 0; r < mono.rows; ++r)
        {
            long const y = ascent - mono.top + r;
            if (y < 0 || y >= height)
                continue;
            for (int c = 0; c < mono.width; ++c)
            {
                long const x = run.pens[i] + mono.left + c;
                if (x < 0 || x >= run.width)
                    continue;
                int g = glyph.greyAt(mono.left + c, r - mono.top);
                for (size_t j : run.neighbours[i])
                    g = std::max(g, run.coverage[j]->greyAt(x - run.pens[j], y - ascent));
                int const index =
                    2 * g + (mono.pixels[static_cast<size_t>(r) * mono.width + c] ? 1 : 0);
                if (index == 0)
                    continue;
                size_t const offset = static_cast<size_t>(y) * w + static_cast<size_t>(x);
                if (first[offset] == 0)
                {
                    first[offset] = static_cast<unsigned short>(index);
                    continue;
                }
                run.laterOffsets.push_back(static_cast<unsigned int>(offset));
                run.laterIndices.push_back(static_cast<unsigned short>(index));
            }
        }
    }
    run.rowFirst.assign(h, run.width);
    run.rowLast.assign(h, -1);
    for (size_t offset = 0; offset < first.size(); ++offset)
        if (first[offset] != 0)
        {
            int const row = static_cast<int>(offset / w);
            int const column = static_cast<int>(offset % w);
            run.rowFirst[row] = std::min(run.rowFirst[row], column);
            run.rowLast[row] = column;
            run.firstOffsets.push_back(static_cast<unsigned int>(offset));
            run.firstIndices.push_back(first[offset]);
        }
    run.weights.assign(w * h, 0);
}

/// Draws a laid-out run with its top-left at `left`, `top` into the `drawn` part of the pixels,
/// with the weight table `weights` made for `gamma` and `alpha`; false when a glyph without
/// mono coverage stopped it.
bool blendLayer(FreeTypeFont::TextRun& run, int left, int top, UI::Rect const& drawn,
                int const* weights, double gamma, unsigned char alpha, unsigned int color,
                unsigned int* pixels, int stride, detail::CompositeWeights const* composite)
{
    if (gamma != run.weightGamma || alpha != run.weightAlpha)
    {
        for (size_t k = 0; k < run.firstOffsets.size(); ++k)
            run.weights[run.firstOffsets[k]] = static_cast<unsigned char>(
                std::min(std::max(weights[run.firstIndices[k]], 0), 255));
        run.weightGamma = gamma;
        run.weightAlpha = alpha;
    }
    for (int y = drawn.top; y <= drawn.bottom; ++y)
    {
        int const row = y - top;
        int const first = std::max(drawn.left - left, run.rowFirst[row]);
        int const last = std::min(drawn.right - left, run.rowLast[row]);
        if (first <= last)
            detail::blendTextRow(pixels + static_cast<long>(y) * stride + left + first,
                                 run.weights.data() + static_cast<size_t>(row) * run.width + first,
                                 last - first + 1, color, composite);
    }
    for (size_t k = 0; k < run.laterOffsets.size(); ++k)
    {
        int const x = left + static_cast<int>(run.laterOffsets[k] % run.width);
        int const y = top + static_cast<int>(run.laterOffsets[k] / run.width);
        if (x >= drawn.left && x <= drawn.right && y >= drawn.top && y <= drawn.bottom)
            detail::blendTextPixel(pixels[static_cast<long>(y) * stride + x], color,
                                   weights[run.laterIndices[k]], composite);
    }
    return !run.monoFailed;
}

} // namespace

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
    runCache.clear();
    scratchRun.reset();
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
    // Pixel places are kept in 16 bits: a glyph thousands of pixels tall draws nothing.
    int const limit = 16000;
    for (CapturedBitmap* bitmap : {&coverage->grey, &coverage->mono})
        if (bitmap->ok && (std::abs(bitmap->left) > limit || std::abs(bitmap->top) > limit ||
                           bitmap->width > limit || bitmap->rows > limit))
            *bitmap = CapturedBitmap();
    if (coverage->grey.ok && coverage->mono.ok)
        coverage->collectCovered();
    coverageCache[index] = coverage;
    return coverage;
}

void FreeTypeFont::findGlyphIndices(String const& text, std::vector<GlyphInfo>& glyphs)
{
    boost::shared_array<unsigned short> const units = text.Unicode();
    if (!units)
        return;
    glyphs.reserve(String::GetUnicodeLength(units.get()));
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
        if (glyph.glyphIndex == 0)
            if (FreeTypeFont* const other = getFallbackFont(*unit))
            {
                glyph.glyphIndex = FT_Get_Char_Index(other->face, *unit);
                glyph.font = other;
            }
        glyphs.push_back(glyph);
    }
}

// A character that neither this face nor the canvas's extra fonts have comes from the face that
// fontconfig offers for it, opened at this font's size and look. The faces already open are
// asked first, so that a line of one script keeps to one face. Lone halves of a UTF-16
// surrogate pair have no glyph anywhere.
FreeTypeFont* FreeTypeFont::getFallbackFont(unsigned int codePoint)
{
    if (fallbackOwner || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
        return nullptr;
    auto const known = fallbackByCharacter.find(codePoint);
    if (known != fallbackByCharacter.end())
        return known->second;
    FreeTypeFont* found = nullptr;
    for (auto const& open : fallbackFonts)
        if (open.second->valid && FT_Get_Char_Index(open.second->face, codePoint) != 0)
        {
            found = open.second.get();
            break;
        }
    if (!found)
    {
        FontFallback::Face const face =
            FontFallback::FindFace(codePoint, info.faceName, info.bold, info.italic);
        if (!face.file.IsEmpty())
        {
            std::unique_ptr<FreeTypeFont>& font =
                fallbackFonts[std::make_pair(face.file.ToString(), face.index)];
            if (!font)
            {
                FontInfo fallbackInfo = info;
                fallbackInfo.fontFile = face.file;
                fallbackInfo.faceIndex = face.index;
                font.reset(new FreeTypeFont(nullptr, fallbackInfo));
                font->fallbackOwner = this;
            }
            if (font->valid && FT_Get_Char_Index(font->face, codePoint) != 0)
                found = font.get();
        }
    }
    if (fallbackByCharacter.size() >= fallbackCharacterLimit)
        fallbackByCharacter.clear();
    fallbackByCharacter.emplace(codePoint, found);
    return found;
}

bool FreeTypeFont::isOwnGlyph(GlyphInfo const& glyph) const
{
    return glyph.font == this || (glyph.font && glyph.font->fallbackOwner == this);
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
    FreeTypeLock lock(FTLibraryWrapper::GetLock());
    auto const found = widthCache.find(text);
    if (found != widthCache.end())
        return found->second;
    std::vector<GlyphInfo> glyphs;
    unsigned int const width = GetStringWidth(text, glyphs);
    // Widths that borrow glyphs from the canvas's extra fonts aren't kept: those fonts may go.
    if (std::all_of(glyphs.begin(), glyphs.end(),
                    [this](GlyphInfo const& glyph) { return isOwnGlyph(glyph); }))
    {
        if (widthCache.size() >= widthCacheLimit)
            widthCache.clear();
        widthCache.emplace(text, width);
    }
    return width;
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

bool FreeTypeFont::placeLayout(UI::Point const& point, int width, UI::Rect const& clip,
                               UI::Size const& size, HAlignment hAlign, VAlignment vAlign,
                               UI::Rect const& box, Layout& layout) const
{
    layout.w = width;
    layout.h = height;
    if (layout.w <= 0)
        return false;
    UI::Point const topLeft = placeText(point, layout.w, layout.h, hAlign, vAlign, box);
    layout.x = topLeft.x;
    layout.y = topLeft.y;
    layout.drawn = UI::Rect(layout.x, layout.x + layout.w - 1, layout.y, layout.y + layout.h - 1) &
                   clip & UI::Rect(0, size.width - 1, 0, size.height - 1);
    return !layout.drawn.IsEmpty();
}

bool FreeTypeFont::layoutText(UI::Point const& point, String const& text, UI::Rect const& clip,
                              UI::Size const& size, HAlignment hAlign, VAlignment vAlign,
                              UI::Rect const& box, std::vector<GlyphInfo>& glyphs, Layout& layout)
{
    glyphs.clear();
    if (!valid || text.IsEmpty())
        return false;
    int const width = static_cast<int>(GetStringWidth(text, glyphs));
    if (!placeLayout(point, width, clip, size, hAlign, vAlign, box, layout))
        return false;
    layout.shift = firstGlyphShift(glyphs);
    return true;
}

int const* FreeTypeFont::getWeightTable(double gamma, unsigned char alpha)
{
    // The powers depend on the gamma alone: a fade, which changes only the alpha, scales them.
    bool const newGamma = strengthTable.empty() || gamma != weightGamma;
    if (newGamma)
    {
        strengthTable.resize(512);
        for (int g = 0; g < 256; ++g)
        {
            strengthTable[2 * g] = detail::textPixelStrength(g, 0, mixFactor, gamma);
            strengthTable[2 * g + 1] = detail::textPixelStrength(g, 255, mixFactor, gamma);
        }
        weightGamma = gamma;
    }
    if (newGamma || alpha != weightAlpha)
    {
        weightTable.resize(512);
        for (size_t i = 0; i < weightTable.size(); ++i)
            weightTable[i] = detail::scaleTextPixelStrength(strengthTable[i], alpha);
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
    detail::CompositeWeights const* const composite = detail::compositeWeightTable();
    for (int x = layout.drawn.left; x <= layout.drawn.right; ++x)
        detail::blendTextPixel(line[x], color, alpha, composite);
}

// Everything about a text that doesn't depend on where it goes: its glyphs, their pen positions
// and coverage, and which glyphs overlap others.
void FreeTypeFont::buildTextRun(String const& text, TextRun& run)
{
    run = TextRun();
    run.width = static_cast<int>(GetStringWidth(text, run.glyphs));
    if (run.width <= 0)
        return;
    size_t const n = run.glyphs.size();
    long pen = firstGlyphShift(run.glyphs);
    for (size_t i = 0; i < n; ++i)
    {
        GlyphCoverage const* coverage =
            run.glyphs[i].font->getCoverage(run.glyphs[i].glyphIndex).get();
        if (!coverage->grey.ok)
        {
            run.greyFailed = true;
            return;
        }
        if (i > 0)
            pen += (getKerning(run.glyphs[i - 1], run.glyphs[i]) + 32) >> 6;
        run.coverage.push_back(coverage);
        run.pens.push_back(pen);
        pen += (coverage->grey.advance + 32) >> 6;
    }

    // The grey coverage under a glyph's mono shape is the largest of all glyphs there. Glyphs
    // whose grey boxes reach no other glyph's mono box (the usual case) need only their own;
    // the others note the glyphs that reach them.
    std::vector<long> greyLeft(n), greyRight(n), rightBefore(n), leftAfter(n);
    for (size_t i = 0; i < n; ++i)
    {
        CapturedBitmap const& grey = run.coverage[i]->grey;
        bool const blank = grey.width == 0 || grey.rows == 0;
        greyLeft[i] = blank ? LONG_MAX : run.pens[i] + grey.left;
        greyRight[i] = blank ? LONG_MIN : run.pens[i] + grey.left + grey.width;
    }
    for (size_t i = 0; i < n; ++i)
        rightBefore[i] = i == 0 ? LONG_MIN : std::max(rightBefore[i - 1], greyRight[i - 1]);
    for (size_t i = n; i-- > 0;)
        leftAfter[i] = i + 1 == n ? LONG_MAX : std::min(leftAfter[i + 1], greyLeft[i + 1]);
    run.neighbours.resize(n);
    for (size_t i = 0; i < n; ++i)
    {
        CapturedBitmap const& mono = run.coverage[i]->mono;
        long const monoLeft = run.pens[i] + mono.left;
        long const monoRight = monoLeft + mono.width;
        int const monoTop = ascent - mono.top;
        int const monoBottom = monoTop + mono.rows;
        if (rightBefore[i] <= monoLeft && leftAfter[i] >= monoRight)
            continue;
        for (size_t j = 0; j < n; ++j)
        {
            CapturedBitmap const& grey = run.coverage[j]->grey;
            int const greyTop = ascent - grey.top;
            if (j != i && greyLeft[j] < monoRight && greyRight[j] > monoLeft &&
                greyTop < monoBottom && greyTop + grey.rows > monoTop)
                run.neighbours[i].push_back(j);
        }
    }
    layOutRun(run, ascent, height);
}

FreeTypeFont::TextRun& FreeTypeFont::getTextRun(String const& text)
{
    auto const found = runCache.find(text);
    if (found != runCache.end())
        return *found->second;
    boost::shared_ptr<TextRun> run(new TextRun);
    buildTextRun(text, *run);
    // Runs that borrow glyphs from the canvas's extra fonts aren't kept: those fonts may go.
    for (GlyphInfo const& glyph : run->glyphs)
        if (!isOwnGlyph(glyph))
        {
            scratchRun = run;
            return *scratchRun;
        }
    if (runCache.size() >= 512 || runCacheBytes + run->bytes() > runCacheLimit)
    {
        runCache.clear();
        runCacheBytes = 0;
    }
    runCache[text] = run;
    runCacheBytes += run->bytes();
    return *run;
}

UI::Rect FreeTypeFont::renderTextToBits(UI::Point const& point, String const& text,
                                        unsigned int color, unsigned char alpha,
                                        UI::Rect const& clip, unsigned int* pixels, int stride,
                                        UI::Size const& size, HAlignment hAlign, VAlignment vAlign,
                                        UI::Rect const& box, std::vector<GlyphInfo>& glyphs)
{
    FreeTypeLock lock(FTLibraryWrapper::GetLock());
    glyphs.clear();
    if (!pixels || !valid || text.IsEmpty())
        return UI::Rect();
    TextRun& run = getTextRun(text);
    glyphs = run.glyphs;
    Layout layout;
    if (!placeLayout(point, run.width, clip, size, hAlign, vAlign, box, layout) || run.greyFailed)
        return UI::Rect();

    double const gamma = probeGamma(color, pixels, stride, layout.drawn);
    int const* const weights = getWeightTable(gamma, alpha);
    detail::CompositeWeights const* const composite = detail::compositeWeightTable();
    UI::Rect const& drawn = layout.drawn;
    if (run.layered)
    {
        if (!blendLayer(run, layout.x, layout.y, drawn, weights, gamma, alpha, color, pixels,
                        stride, composite))
            return UI::Rect();
        drawUnderline(layout, color, alpha, pixels, stride);
        return layout.drawn;
    }
    for (size_t i = 0; i < run.glyphs.size(); ++i)
    {
        GlyphCoverage const& glyph = *run.coverage[i];
        CapturedBitmap const& mono = glyph.mono;
        if (!mono.ok)
            return UI::Rect();
        long const originX = layout.x + run.pens[i];
        long const originY = layout.y + ascent;
        std::vector<size_t> const& neighbours = run.neighbours[i];
        if (neighbours.empty())
        {
            bool const inside = originX + mono.left >= drawn.left &&
                                originX + mono.left + mono.width - 1 <= drawn.right &&
                                originY - mono.top >= drawn.top &&
                                originY - mono.top + mono.rows - 1 <= drawn.bottom;
            if (inside)
            {
                blendCovered(glyph.covered, pixels + originY * stride + originX, stride, weights,
                             color, composite);
                continue;
            }
            for (GlyphCoverage::Pixel const& p : glyph.covered)
            {
                long const x = originX + p.x;
                long const y = originY + p.y;
                if (x < drawn.left || x > drawn.right || y < drawn.top || y > drawn.bottom)
                    continue;
                int const weight = weights[p.weightIndex];
                if (weight > 0)
                    detail::blendTextPixel(pixels[y * stride + x], color, weight, composite);
            }
            continue;
        }
        for (int r = 0; r < mono.rows; ++r)
        {
            long const y = originY + r - mono.top;
            if (y < drawn.top || y > drawn.bottom)
                continue;
            for (int c = 0; c < mono.width; ++c)
            {
                long const x = originX + mono.left + c;
                if (x < drawn.left || x > drawn.right)
                    continue;
                int g = glyph.greyAt(mono.left + c, r - mono.top);
                for (size_t j : neighbours)
                    g = std::max(g,
                                 run.coverage[j]->greyAt(x - layout.x - run.pens[j], y - originY));
                int const weight =
                    weights[2 * g + (mono.pixels[static_cast<size_t>(r) * mono.width + c] ? 1 : 0)];
                if (weight > 0)
                    detail::blendTextPixel(pixels[y * stride + x], color, weight, composite);
            }
        }
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
                                       detail::textPixelWeight(g, m, mixFactor, gamma, alpha),
                                       detail::compositeWeightTable());
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
