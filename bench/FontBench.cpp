// Text measuring and drawing against their references in the same run:
//   - GetStringWidth served by the width cache against measuring the same text (cold);
//   - drawing a 60-character line at 13 px from the glyph coverage cache, against loading and
//     rendering the same glyphs with FreeType directly, and against the two-pass renderer as
//     first written; and the same cached drawing with an alpha that changes at every draw, so
//     that the weights are worked out again each time.
// Items per second are glyphs for the drawing benchmarks.

#include "Canvas/UI/Font.h"
#include "Canvas/UI/FreeTypeFont.h"
#include "Canvas/UI/StringWidthCache.h"
#include "tests/Canvas/UI/support/FontTestSupport.h"

#include <benchmark/benchmark.h>

#include <ft2build.h>
#include FT_FREETYPE_H

using namespace FontTest;

namespace
{

char const* const line60 = "The quick brown fox jumps over the lazy dog. Tavorin 3.0.1 OK";
char const* const label = "Checking for Tavorin updates...";

void WidthWarm(benchmark::State& state)
{
    Context canvas;
    canvas.widths.reset(new UI::StringWidthCache(&canvas));
    UI::Font font(&canvas, Info("Arial", 11.0f));
    font.GetStringWidth(label);
    for (auto _ : state)
        benchmark::DoNotOptimize(font.GetStringWidth(label));
}
BENCHMARK(WidthWarm);

// A width cache miss: the text is measured glyph by glyph (glyphs already loaded).
void WidthCold(benchmark::State& state)
{
    Context canvas;
    canvas.widths.reset(new UI::StringWidthCache(&canvas));
    UI::Font font(&canvas, Info("Arial", 11.0f));
    String const text(label);
    font.GetStringWidth(text);
    for (auto _ : state)
    {
        canvas.widths->DeleteCacheEntry(text, font.GetFreeTypeFont()->GetFontInfo());
        benchmark::DoNotOptimize(font.GetStringWidth(text));
    }
}
BENCHMARK(WidthCold);

void RenderCached(benchmark::State& state)
{
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 13.0f, 2, 1));
    Picture picture(400, 20, 0xFFFFFFFF);
    std::vector<UI::GlyphInfo> glyphs;
    for (auto _ : state)
        font.renderTextToBits(UI::Point(0, 2), line60, 0xFF000000, 255, picture.Bounds(),
                              picture.Bits(), picture.width, picture.Size(), UI::HAlignLeft,
                              UI::VAlignTop, UI::Rect(), glyphs);
    state.SetItemsProcessed(state.iterations() * 60);
}
BENCHMARK(RenderCached);

void RenderCachedChangingAlpha(benchmark::State& state)
{
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 13.0f, 2, 1));
    Picture picture(400, 20, 0xFFFFFFFF);
    std::vector<UI::GlyphInfo> glyphs;
    unsigned char alpha = 255;
    for (auto _ : state)
    {
        font.renderTextToBits(UI::Point(0, 2), line60, 0xFF000000, alpha, picture.Bounds(),
                              picture.Bits(), picture.width, picture.Size(), UI::HAlignLeft,
                              UI::VAlignTop, UI::Rect(), glyphs);
        alpha = alpha == 255 ? 254 : 255;
    }
    state.SetItemsProcessed(state.iterations() * 60);
}
BENCHMARK(RenderCachedChangingAlpha);

void RenderUncached(benchmark::State& state)
{
    UI::FreeTypeFont font(nullptr, FileInfo(LiberationSans, 13.0f, 2, 1));
    Picture picture(400, 20, 0xFFFFFFFF);
    std::vector<UI::GlyphInfo> glyphs;
    for (auto _ : state)
        font.renderTextToBitsUncached(UI::Point(0, 2), line60, 0xFF000000, 255, picture.Bounds(),
                                      picture.Bits(), picture.width, picture.Size(), UI::HAlignLeft,
                                      UI::VAlignTop, UI::Rect(), glyphs);
    state.SetItemsProcessed(state.iterations() * 60);
}
BENCHMARK(RenderUncached);

// Plain FreeType: load and render each glyph of the line once, nothing drawn.
void PlainFreeTypeLoadAndRender(benchmark::State& state)
{
    FT_Library library;
    FT_Face face;
    if (FT_Init_FreeType(&library) || FT_New_Face(library, LiberationSans, 0, &face))
    {
        state.SkipWithError("FreeType could not open the face");
        return;
    }
    FT_Set_Char_Size(face, 0, 13 * 64, 72, 72);
    std::vector<FT_UInt> indices;
    for (char const* c = line60; *c; ++c)
        indices.push_back(FT_Get_Char_Index(face, static_cast<unsigned char>(*c)));
    for (auto _ : state)
        for (FT_UInt index : indices)
        {
            FT_Load_Glyph(face, index, FT_LOAD_DEFAULT);
            FT_Render_Glyph(face->glyph, FT_RENDER_MODE_NORMAL);
            benchmark::DoNotOptimize(face->glyph->bitmap.buffer);
        }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(indices.size()));
    FT_Done_Face(face);
    FT_Done_FreeType(library);
}
BENCHMARK(PlainFreeTypeLoadAndRender);

} // namespace

BENCHMARK_MAIN();
