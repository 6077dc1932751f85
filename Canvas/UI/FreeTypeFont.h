#pragma once

#include "Canvas/UI/Alignment.h"
#include "Canvas/UI/FontInfo.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

struct FT_FaceRec_;
struct FT_GlyphRec_;

namespace UI
{

class DIBits;
class FontContext;
class FreeTypeFont;
namespace Native
{
class DIBSection;
}

/// One glyph of a measured text: its index and the font that has it (the main font, one of the
/// canvas's extra fonts or a fallback face found for the character). Index 0 is the
/// missing-glyph box of the main font.
struct GlyphInfo
{
    unsigned int glyphIndex = 0;
    FreeTypeFont* font = nullptr;
};

/// A FreeType face at one size, with its metrics and glyph caches, that measures and draws
/// UTF-8 text into 32-bit pixels.
///
/// Every FreeType call, and every use of the caches, runs under the process-wide lock
/// "FreeType Critical Section", so a worker thread may measure while the UI thread draws. A face
/// that can't be found or opened leaves the object invalid: it then measures 0 and draws
/// nothing. Not copyable.
class FreeTypeFont
{
public:
    /// A loaded glyph: the FreeType glyph (freed with the object) and its advance in 26.6.
    struct freetype_glyph
    {
        FT_GlyphRec_* glyph = nullptr;
        long advance = 0;
        ~freetype_glyph();
    };
    typedef std::map<unsigned int, boost::shared_ptr<freetype_glyph>> freetype_glyph_cache;

    /// Looks the face up (the info's file, else fontconfig by face name, bold and italic, else
    /// "<face>[ Bold][ Italic].ttf" in the font folders, then the same for the fallback face),
    /// opens it at the info's size and warms the glyph cache with "1234567890-+:k". `canvas`
    /// supplies the extra fonts for characters this face lacks; it may be null.
    FreeTypeFont(FontContext* canvas, FontInfo const& info);
    ~FreeTypeFont();
    FreeTypeFont(FreeTypeFont const&) = delete;
    FreeTypeFont& operator=(FreeTypeFont const&) = delete;

    bool IsValid() const { return valid; }
    /// The info as given, with the font file set to the face actually opened.
    FontInfo const& GetFontInfo() const { return info; }
    unsigned int GetKey() const { return key; }
    int GetAscent() const { return ascent; }
    int GetDescent() const { return descent; }
    /// Ascent + descent + 1: the height of every text bitmap of this font.
    int GetHeight() const { return height; }
    unsigned int GetLoadFlags() const { return loadFlags; }
    float GetMixFactor() const { return mixFactor; }
    bool IsKerning() const { return kerning; }

    /// Width in pixels of `text` (UTF-8), kerning included; fills `glyphs` with one entry per
    /// UTF-16 unit. A character that this face lacks comes from the canvas's extra fonts, else
    /// from the installed face that fontconfig offers for it, with that face's advance; one that
    /// no face has counts as the missing-glyph box that is drawn for it. The line keeps this
    /// face's ascent, descent and height. 0 for an invalid font or for text that isn't valid
    /// UTF-8.
    unsigned int GetStringWidth(String const& text, std::vector<GlyphInfo>& glyphs);
    /// The same width, kept for the last 4,096 texts measured with this face's glyphs alone.
    unsigned int GetStringWidth(String const& text);

    /// Draws `text` into `section`: through the canvas's rendered-string cache when the window
    /// being drawn has one, otherwise straight into the section. `point` is the anchor that the
    /// alignments refer to; a non-empty `box` centres the text in it instead. `color` is stored
    /// as given where coverage is full; `alpha` scales the coverage. Returns the drawn rectangle
    /// (clipped), empty when nothing was drawn. A null section draws nothing.
    UI::Rect RenderText(UI::Point const& point, String const& text, unsigned int color,
                        unsigned char alpha, UI::Rect const& clip, Native::DIBSection* section,
                        HAlignment hAlign, VAlignment vAlign, UI::Rect const& box);
    /// The same into an image, without the rendered-string cache. Invalid bits draw nothing.
    UI::Rect RenderText(UI::Point const& point, String const& text, unsigned int color,
                        unsigned char alpha, UI::Rect const& clip, DIBits& bits, HAlignment hAlign,
                        VAlignment vAlign, UI::Rect const& box);

    /// The drawing core over raw pixels (`stride` in pixels, `size` the bitmap's): places the
    /// text, probes the background under it for the gamma, blends the grey and mono coverage
    /// of each glyph and adds the underline. Glyph coverage comes from a per-font cache, so a
    /// repeated glyph is never loaded or rendered again, and a text drawn again isn't measured
    /// again (the last 512 texts are kept): it is blended row by row from a weight for each
    /// pixel of its box, worked out again only when the gamma or alpha changes. `glyphs`
    /// receives the measured glyphs.
    UI::Rect renderTextToBits(UI::Point const& point, String const& text, unsigned int color,
                              unsigned char alpha, UI::Rect const& clip, unsigned int* pixels,
                              int stride, UI::Size const& size, HAlignment hAlign,
                              VAlignment vAlign, UI::Rect const& box,
                              std::vector<GlyphInfo>& glyphs);
    /// The same drawing with every glyph loaded and rendered twice on each call (grey, then
    /// mono), as the renderer was first written. It gives the same pixels as `renderTextToBits`
    /// and is kept as the reference that the cached path is checked and timed against.
    UI::Rect renderTextToBitsUncached(UI::Point const& point, String const& text,
                                      unsigned int color, unsigned char alpha, UI::Rect const& clip,
                                      unsigned int* pixels, int stride, UI::Size const& size,
                                      HAlignment hAlign, VAlignment vAlign, UI::Rect const& box,
                                      std::vector<GlyphInfo>& glyphs);

    /// Loads glyph `index` of this face into the glyph cache (no-op when cached or invalid).
    void CacheGlyph(unsigned int index);
    /// Glyphs in the measuring cache and in the coverage cache, for diagnostics and tests.
    size_t GetGlyphCacheCount() const;
    size_t GetCoverageCacheCount() const;

    /// The mix factor for a sharpen setting, anti-alias mode and size (see `FontInfo`).
    static float ComputeMixFactor(int sharpen, int antiAliasMode, float size);

    /// Per-glyph coverage and measured texts, kept by the font (defined where drawn).
    struct GlyphCoverage;
    struct TextRun;

private:
    struct Layout;

    void openFace();
    bool openFile(FilePath const& path);
    void findGlyphIndices(String const& text, std::vector<GlyphInfo>& glyphs);
    FreeTypeFont* getFallbackFont(unsigned int codePoint);
    /// True for a glyph of this face or of one of its fallback faces, which live as long.
    bool isOwnGlyph(GlyphInfo const& glyph) const;
    unsigned int getUnicodeStringWidth(std::vector<GlyphInfo> const& glyphs);
    boost::shared_ptr<freetype_glyph> getGlyph(unsigned int index);
    boost::shared_ptr<GlyphCoverage> getCoverage(unsigned int index);
    long getKerning(GlyphInfo const& previous, GlyphInfo const& current) const;
    int firstGlyphShift(std::vector<GlyphInfo> const& glyphs);
    bool placeLayout(UI::Point const& point, int width, UI::Rect const& clip, UI::Size const& size,
                     HAlignment hAlign, VAlignment vAlign, UI::Rect const& box,
                     Layout& layout) const;
    void buildTextRun(String const& text, TextRun& run);
    TextRun& getTextRun(String const& text);
    bool layoutText(UI::Point const& point, String const& text, UI::Rect const& clip,
                    UI::Size const& size, HAlignment hAlign, VAlignment vAlign, UI::Rect const& box,
                    std::vector<GlyphInfo>& glyphs, Layout& layout);
    int const* getWeightTable(double gamma, unsigned char alpha);
    void drawUnderline(Layout const& layout, unsigned int color, unsigned char alpha,
                       unsigned int* pixels, int stride) const;

    FontContext* canvas;
    FontInfo info;
    unsigned int key;
    bool valid = false;
    int ascent = 1;
    int descent = 1;
    int height = 1;
    FT_FaceRec_* face = nullptr;
    unsigned int loadFlags = 0;
    float mixFactor = 0.0f;
    bool kerning = false;
    freetype_glyph_cache glyphCache;
    std::map<unsigned int, boost::shared_ptr<GlyphCoverage>> coverageCache;
    // Measured texts by their text, up to 512 of them and 8 MB of drawing data (counted in
    // `runCacheBytes`), and the last one that can't be kept.
    std::unordered_map<String, boost::shared_ptr<TextRun>> runCache;
    // Measured widths by their text: lists measure the same few texts over and over.
    static size_t const widthCacheLimit = 4096;
    std::unordered_map<String, unsigned int> widthCache;
    boost::shared_ptr<TextRun> scratchRun;
    size_t runCacheBytes = 0;
    // Pixel weights by grey and mono coverage for the last gamma and alpha drawn with, and
    // the same before the alpha.
    // Faces for characters this one lacks, by file and index, and the answer for each character
    // asked about (null: none has it), up to 65,536 of them. A fallback face knows its owner and
    // looks for no fallbacks of its own.
    std::map<std::pair<String, unsigned int>, std::unique_ptr<FreeTypeFont>> fallbackFonts;
    static size_t const fallbackCharacterLimit = 65536;
    std::unordered_map<unsigned int, FreeTypeFont*> fallbackByCharacter;
    FreeTypeFont* fallbackOwner = nullptr;
    std::vector<int> weightTable;
    std::vector<double> strengthTable;
    double weightGamma = 0.0;
    int weightAlpha = -1;
};

} // namespace UI
