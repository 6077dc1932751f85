// Images: what the skin cache saves, and what an icon costs to draw.
//
//   BM_GetPNGBitsCacheHit    GetPNGBits of a 64x64 RGBA skin already in the cache
//   BM_GetPNGBitsDecode      the same request without the cache: a full decode (the reference)
//   BM_CacheHitVsDecode      both in one run; the counter decode_per_hit is their time ratio
//   BM_RenderSvgIcon24       drawing an icon fitted into 24x24 (microseconds)
//   BM_ParseSvgIcon          reading the same icon from its text

#include "Canvas/UI/AGGInlineRenderer.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Media.h"
#include "Canvas/UI/PNG.h"
#include "Canvas/UI/SVG/SVG.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace
{

// A temp override folder with one skin, made once per process and removed at exit.
class SkinFolder
{
public:
    SkinFolder()
    {
        char pattern[] = "/tmp/tv_image_bench_XXXXXX";
        root = ::mkdtemp(pattern);
        UI::PNG::Bitmap bitmap(64, 64);
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x)
            {
                bitmap.red[y][x] = float((x * 4) & 255);
                bitmap.green[y][x] = float((y * 4) & 255);
                bitmap.blue[y][x] = float((x * y) & 255);
                bitmap.alpha[y][x] = float(255 - ((x + y) & 127));
            }
        UI::PNG::WritePngFile((root + "/skin.png").c_str(), bitmap, true, false,
                              UI::PNG::PngComprParams(), nullptr, nullptr, false);
        Util::ResourceManager::Get().SetOverridePath(FolderPath(String(root.c_str())));
    }
    ~SkinFolder() { std::filesystem::remove_all(root); }

private:
    std::string root;
};

SkinFolder& skins()
{
    static SkinFolder folder;
    return folder;
}

void BM_GetPNGBitsCacheHit(benchmark::State& state)
{
    skins();
    boost::shared_ptr<UI::DIBits> held = UI::Media::GetPNGBits("skin.png", true, 0.0f);
    for (auto _ : state)
        benchmark::DoNotOptimize(UI::Media::GetPNGBits("skin.png", true, 0.0f));
}
BENCHMARK(BM_GetPNGBitsCacheHit);

void BM_GetPNGBitsDecode(benchmark::State& state)
{
    skins();
    for (auto _ : state)
        benchmark::DoNotOptimize(UI::Media::GetPNGBits("skin.png", false, 0.0f));
}
BENCHMARK(BM_GetPNGBitsDecode)->Unit(benchmark::kMicrosecond);

void BM_CacheHitVsDecode(benchmark::State& state)
{
    skins();
    boost::shared_ptr<UI::DIBits> held = UI::Media::GetPNGBits("skin.png", true, 0.0f);
    int const hits = 2000;
    int const decodes = 20;
    double hitSeconds = 0.0;
    double decodeSeconds = 0.0;
    for (auto _ : state)
    {
        auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < hits; ++i)
            benchmark::DoNotOptimize(UI::Media::GetPNGBits("skin.png", true, 0.0f));
        auto middle = std::chrono::steady_clock::now();
        for (int i = 0; i < decodes; ++i)
            benchmark::DoNotOptimize(UI::Media::GetPNGBits("skin.png", false, 0.0f));
        auto end = std::chrono::steady_clock::now();
        hitSeconds += std::chrono::duration<double>(middle - start).count() / hits;
        decodeSeconds += std::chrono::duration<double>(end - middle).count() / decodes;
    }
    state.counters["decode_per_hit"] = hitSeconds > 0.0 ? decodeSeconds / hitSeconds : 0.0;
}
BENCHMARK(BM_CacheHitVsDecode)->Unit(benchmark::kMillisecond);

std::string iconText()
{
    std::ifstream theme("/usr/share/icons/Adwaita/scalable/places/user-home-symbolic.svg");
    if (theme)
    {
        std::stringstream text;
        text << theme.rdbuf();
        return text.str();
    }
    // A house of the same make, for machines without the theme.
    return "<svg><path fill='#2e3436' d='m 8 1 c -0.2 0 -0.4 0.07 -0.58 0.18 l -7 5 c -0.45 0.32 "
           "-0.55 0.95 -0.23 1.4 c 0.19 0.27 0.49 0.42 0.82 0.42 v 4 c 0 1.64 1.36 3 3 3 h 8 c "
           "1.64 0 3 -1.32 3 -3 v -4 c 0.32 0 0.63 -0.15 0.82 -0.42 c 0.32 -0.45 0.21 -1.07 "
           "-0.23 -1.4 l -7 -5 c -0.17 -0.12 -0.38 -0.18 -0.58 -0.18 z m 0 2.23 l 5 3.57 v 5.2 "
           "c 0 0.56 -0.44 1 -1 1 h -3 v -4 c 0 -0.55 -0.45 -1 -1 -1 h -1 c -0.55 0 -1 0.45 -1 1 "
           "v 4 h -2 c -0.56 0 -1 -0.44 -1 -1 v -5.2 z'/></svg>";
}

void BM_RenderSvgIcon24(benchmark::State& state)
{
    std::string const text = iconText();
    UI::SVG::SVG icon(reinterpret_cast<unsigned char const*>(text.data()), unsigned(text.size()));
    icon.SetDestinationRect(UI::Rect(0, 23, 0, 23));
    boost::shared_ptr<UI::DIBits> bits =
        UI::CreateDIBits(UI::Size(24, 24), checked_value<unsigned int>(0xFFFFFFFFu));
    UI::AGGInlineRenderer renderer(bits, "Bench");
    for (auto _ : state)
    {
        icon.Draw(&renderer);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_RenderSvgIcon24)->Unit(benchmark::kMicrosecond);

void BM_ParseSvgIcon(benchmark::State& state)
{
    std::string const text = iconText();
    for (auto _ : state)
    {
        UI::SVG::SVG icon(reinterpret_cast<unsigned char const*>(text.data()),
                          unsigned(text.size()));
        benchmark::DoNotOptimize(icon.path_count());
    }
}
BENCHMARK(BM_ParseSvgIcon)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
