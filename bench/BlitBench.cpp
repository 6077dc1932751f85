// Blit throughput at 1920x1080 against references measured in the same run: memcpy for the row
// copy, pixman's OVER (premultiplied, source converted once outside the timing) for the blends,
// and a memcpy of the blend's rows for the memory traffic that bounds it. Both blends take the
// same images at the same alignment; each skips clear and copies opaque pixels by whole
// vectors. Every benchmark reports Mpix/s (destination pixels); the median rates of the
// repetitions and the ratios are printed at the end.

#include "Canvas/UI/BitBlt.h"
#include "Canvas/UI/BoxDrawing.h"
#include "Canvas/UI/detail/BlitRows.h"

#include <benchmark/benchmark.h>
#include <pixman.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace
{

int const kWidth = 1920;
int const kHeight = 1080;
long const kPixels = static_cast<long>(kWidth) * kHeight;

/// A 1920x1080 bitmap, 16-pixel rows (as the frame's), 32-byte aligned.
struct Image
{
    explicit Image(int w = kWidth, int h = kHeight)
        : width(w), height(h), stride((w + 15) / 16 * 16)
    {
        storage.resize(static_cast<std::size_t>(stride) * h + 8);
        std::size_t const misalignment = reinterpret_cast<std::uintptr_t>(storage.data()) % 32;
        offset = misalignment == 0 ? 0 : (32 - misalignment) / 4;
    }
    unsigned int* bits() { return storage.data() + offset; }

    int width;
    int height;
    int stride;
    std::size_t offset = 0;
    std::vector<unsigned int> storage;
};

/// An image as icons and skins are: runs of clear and opaque pixels around soft edges.
void fillSprite(Image& image, unsigned int seed)
{
    std::mt19937 random(seed);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
        {
            unsigned int alpha = random() & 255;
            unsigned int const kind = ((x / 32) + (y / 32)) % 4;
            if (kind == 0)
                alpha = 0;
            else if (kind == 1)
                alpha = 255;
            image.bits()[y * image.stride + x] = (alpha << 24) | (random() & 0xFFFFFF);
        }
}

void fillOpaque(Image& image, unsigned int seed)
{
    std::mt19937 random(seed);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            image.bits()[y * image.stride + x] = 0xFF000000 | (random() & 0xFFFFFF);
}

void setRate(benchmark::State& state, long pixels)
{
    state.counters["Mpix/s"] = benchmark::Counter(
        static_cast<double>(pixels) * state.iterations() / 1e6, benchmark::Counter::kIsRate);
}

// ---- row copy

void BM_RowCopy_BitBlt(benchmark::State& state)
{
    Image src;
    Image dst;
    fillOpaque(src, 1);
    for (auto _ : state)
    {
        UI::BitBlt(false, src.bits(), src.stride, UI::Rect(0, kWidth - 1, 0, kHeight - 1),
                   dst.bits(), dst.stride, UI::Point(0, 0), 255);
        benchmark::ClobberMemory();
    }
    setRate(state, kPixels);
}

/// Copies `src` into `dst` row by row: as much memory traffic as a blend that reads both
/// images and writes the destination (the store reads each destination line in first).
void memcpyRows(benchmark::State& state, Image& src, Image& dst)
{
    for (auto _ : state)
    {
        for (int y = 0; y < src.height; ++y)
            std::memcpy(dst.bits() + y * dst.stride, src.bits() + y * src.stride,
                        static_cast<std::size_t>(src.width) * sizeof(unsigned int));
        benchmark::ClobberMemory();
    }
    setRate(state, static_cast<long>(src.width) * src.height);
}

void BM_RowCopy_Memcpy(benchmark::State& state)
{
    Image src;
    Image dst;
    fillOpaque(src, 1);
    memcpyRows(state, src, dst);
}

// ---- per-pixel alpha

void pixelAlphaBitBlt(benchmark::State& state, int width, int height)
{
    Image src(width, height);
    Image dst(width, height);
    fillSprite(src, 2);
    fillOpaque(dst, 3);
    for (auto _ : state)
    {
        UI::BitBlt(true, src.bits(), src.stride, UI::Rect(0, width - 1, 0, height - 1), dst.bits(),
                   dst.stride, UI::Point(0, 0), 255);
        benchmark::ClobberMemory();
    }
    setRate(state, static_cast<long>(width) * height);
}

void BM_PixelAlpha_BitBlt(benchmark::State& state)
{
    pixelAlphaBitBlt(state, kWidth, kHeight);
}

/// 256x256: both images stay in the second-level cache, so this measures the arithmetic rather
/// than the memory traffic.
void BM_PixelAlphaInCache_BitBlt(benchmark::State& state)
{
    pixelAlphaBitBlt(state, 256, 256);
}

/// The memory bound of the blend: the same images copied, in the same run.
void BM_PixelAlpha_Memcpy(benchmark::State& state)
{
    Image src;
    Image dst;
    fillSprite(src, 2);
    fillOpaque(dst, 3);
    memcpyRows(state, src, dst);
}

/// The same blend through the scalar reference rows, for scale.
void BM_PixelAlpha_ScalarReference(benchmark::State& state)
{
    Image src;
    Image dst;
    fillSprite(src, 2);
    fillOpaque(dst, 3);
    UI::detail::BlitRowKernels const& scalar = UI::detail::GetScalarBlitRowKernels();
    for (auto _ : state)
    {
        for (int y = 0; y < kHeight; ++y)
            scalar.blendPixelAlpha(src.bits() + y * src.stride, dst.bits() + y * dst.stride,
                                   kWidth);
        benchmark::ClobberMemory();
    }
    setRate(state, kPixels);
}

/// Premultiplies once, outside any timing.
void premultiply(Image& image)
{
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
        {
            unsigned int& p = image.bits()[y * image.stride + x];
            unsigned int const a = p >> 24;
            unsigned int const r = ((p >> 16) & 255) * a / 255;
            unsigned int const g = ((p >> 8) & 255) * a / 255;
            unsigned int const b = (p & 255) * a / 255;
            p = (a << 24) | (r << 16) | (g << 8) | b;
        }
}

pixman_image_t* wrap(Image& image)
{
    return pixman_image_create_bits(PIXMAN_a8r8g8b8, image.width, image.height,
                                    reinterpret_cast<uint32_t*>(image.bits()),
                                    image.stride * static_cast<int>(sizeof(unsigned int)));
}

void pixelAlphaPixman(benchmark::State& state, int width, int height)
{
    Image src(width, height);
    Image dst(width, height);
    fillSprite(src, 2);
    fillOpaque(dst, 3);
    premultiply(src);
    pixman_image_t* source = wrap(src);
    pixman_image_t* target = wrap(dst);
    for (auto _ : state)
    {
        pixman_image_composite32(PIXMAN_OP_OVER, source, nullptr, target, 0, 0, 0, 0, 0, 0, width,
                                 height);
        benchmark::ClobberMemory();
    }
    pixman_image_unref(source);
    pixman_image_unref(target);
    setRate(state, static_cast<long>(width) * height);
}

void BM_PixelAlpha_PixmanOver(benchmark::State& state)
{
    pixelAlphaPixman(state, kWidth, kHeight);
}

void BM_PixelAlphaInCache_PixmanOver(benchmark::State& state)
{
    pixelAlphaPixman(state, 256, 256);
}

// ---- constant alpha

void BM_ConstantAlpha_BitBlt(benchmark::State& state)
{
    Image src;
    Image dst;
    fillOpaque(src, 4);
    fillOpaque(dst, 5);
    for (auto _ : state)
    {
        UI::BitBlt(false, src.bits(), src.stride, UI::Rect(0, kWidth - 1, 0, kHeight - 1),
                   dst.bits(), dst.stride, UI::Point(0, 0), 128);
        benchmark::ClobberMemory();
    }
    setRate(state, kPixels);
}

void BM_ConstantAlpha_PixmanOverSolidMask(benchmark::State& state)
{
    Image src;
    Image dst;
    fillOpaque(src, 4); // opaque: already premultiplied
    fillOpaque(dst, 5);
    pixman_image_t* source = wrap(src);
    pixman_image_t* target = wrap(dst);
    pixman_color_t const half = {0, 0, 0, 0x8080};
    pixman_image_t* mask = pixman_image_create_solid_fill(&half);
    for (auto _ : state)
    {
        pixman_image_composite32(PIXMAN_OP_OVER, source, mask, target, 0, 0, 0, 0, 0, 0, kWidth,
                                 kHeight);
        benchmark::ClobberMemory();
    }
    pixman_image_unref(mask);
    pixman_image_unref(source);
    pixman_image_unref(target);
    setRate(state, kPixels);
}

// ---- scaling (rates count destination pixels)

void BM_ScaleBlt_HalfSize(benchmark::State& state)
{
    Image src;
    Image dst(kWidth / 2, kHeight / 2);
    fillSprite(src, 6);
    for (auto _ : state)
    {
        UI::ScaleBlt(src.bits(), src.stride, UI::Rect(0, kWidth - 1, 0, kHeight - 1), dst.bits(),
                     dst.stride, UI::Rect(0, kWidth / 2 - 1, 0, kHeight / 2 - 1));
        benchmark::ClobberMemory();
    }
    setRate(state, kPixels / 4);
}

void BM_ScaleBlt_DoubleSize(benchmark::State& state)
{
    Image src(kWidth / 2, kHeight / 2);
    Image dst;
    fillSprite(src, 7);
    for (auto _ : state)
    {
        UI::ScaleBlt(src.bits(), src.stride, UI::Rect(0, kWidth / 2 - 1, 0, kHeight / 2 - 1),
                     dst.bits(), dst.stride, UI::Rect(0, kWidth - 1, 0, kHeight - 1));
        benchmark::ClobberMemory();
    }
    setRate(state, kPixels);
}

// ---- solid box

void BM_SolidBox_Alpha128(benchmark::State& state)
{
    Image dst;
    fillOpaque(dst, 8);
    UI::Rect const all(0, kWidth - 1, 0, kHeight - 1);
    for (auto _ : state)
    {
        UI::DrawSolidBox(dst.bits(), dst.stride, all, all, 0xFF3080C0, 128);
        benchmark::ClobberMemory();
    }
    setRate(state, kPixels);
}

void BM_SolidBox_Alpha128_ScalarReference(benchmark::State& state)
{
    Image dst;
    fillOpaque(dst, 8);
    UI::detail::BlitRowKernels const& scalar = UI::detail::GetScalarBlitRowKernels();
    unsigned int const add =
        ((0x30 * 128 / 255) << 16) | ((0x80 * 128 / 255) << 8) | (0xC0 * 128 / 255);
    for (auto _ : state)
    {
        for (int y = 0; y < kHeight; ++y)
            scalar.solidBox(dst.bits() + y * dst.stride, kWidth, 128, add);
        benchmark::ClobberMemory();
    }
    setRate(state, kPixels);
}

BENCHMARK(BM_RowCopy_BitBlt)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_RowCopy_Memcpy)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_PixelAlpha_BitBlt)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_PixelAlpha_Memcpy)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_PixelAlpha_ScalarReference)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_PixelAlpha_PixmanOver)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_PixelAlphaInCache_BitBlt)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_PixelAlphaInCache_PixmanOver)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_ConstantAlpha_BitBlt)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_ConstantAlpha_PixmanOverSolidMask)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_ScaleBlt_HalfSize)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_ScaleBlt_DoubleSize)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_SolidBox_Alpha128)->Unit(benchmark::kMicrosecond)->Repetitions(5);
BENCHMARK(BM_SolidBox_Alpha128_ScalarReference)->Unit(benchmark::kMicrosecond)->Repetitions(5);

/// The console output, plus the median processor time per iteration of each benchmark over its
/// repetitions. The machine is shared: wall time and single runs are too noisy to compare, and
/// the median, unlike the best, doesn't reward one lucky repetition.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(std::vector<Run> const& runs) override
    {
        for (Run const& run : runs)
            if (run.run_type == Run::RT_Iteration)
                times[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
        ConsoleReporter::ReportRuns(runs);
    }

    /// Median rate in Mpix/s from the median time (in microseconds per iteration).
    double Rate(std::string const& name, long pixels) const
    {
        double const time = Median(name);
        return time <= 0 ? 0.0 : pixels / time;
    }

    /// How many times faster `ours` ran than `reference`; 0 when either did not run.
    double Speedup(std::string const& ours, std::string const& reference) const
    {
        double const a = Median(ours);
        double const b = Median(reference);
        return a <= 0 || b <= 0 ? 0.0 : b / a;
    }

private:
    /// 0 when the benchmark did not run.
    double Median(std::string const& name) const
    {
        auto found = times.find(name);
        if (found == times.end() || found->second.empty())
            return 0.0;
        std::vector<double> sorted = found->second;
        std::sort(sorted.begin(), sorted.end());
        std::size_t const n = sorted.size();
        return n % 2 == 1 ? sorted[n / 2] : (sorted[n / 2 - 1] + sorted[n / 2]) / 2;
    }

    std::map<std::string, std::vector<double>> times;
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nMedian of repetitions, processor time, Mpix/s:\n");
    struct
    {
        char const* name;
        long pixels;
    } const rates[] = {{"BM_RowCopy_BitBlt", kPixels},
                       {"BM_RowCopy_Memcpy", kPixels},
                       {"BM_PixelAlpha_BitBlt", kPixels},
                       {"BM_PixelAlpha_Memcpy", kPixels},
                       {"BM_PixelAlpha_ScalarReference", kPixels},
                       {"BM_PixelAlpha_PixmanOver", kPixels},
                       {"BM_PixelAlphaInCache_BitBlt", 256 * 256},
                       {"BM_PixelAlphaInCache_PixmanOver", 256 * 256},
                       {"BM_ConstantAlpha_BitBlt", kPixels},
                       {"BM_ConstantAlpha_PixmanOverSolidMask", kPixels},
                       {"BM_ScaleBlt_HalfSize", kPixels / 4},
                       {"BM_ScaleBlt_DoubleSize", kPixels},
                       {"BM_SolidBox_Alpha128", kPixels},
                       {"BM_SolidBox_Alpha128_ScalarReference", kPixels}};
    for (auto const& rate : rates)
        std::printf("  %-40s %8.0f\n", rate.name, reporter.Rate(rate.name, rate.pixels));
    std::printf("\nVector path: %s\n",
                UI::detail::IsSimdLevelAvailable(UI::detail::SimdLevel::Avx2) ? "AVX2" : "SSE2");
    std::printf("Row copy vs memcpy:                  %.2fx (aim >= 0.90)\n",
                reporter.Speedup("BM_RowCopy_BitBlt", "BM_RowCopy_Memcpy"));
    std::printf("Per-pixel alpha vs pixman OVER:      %.2fx (aim >= 1.50)\n",
                reporter.Speedup("BM_PixelAlpha_BitBlt", "BM_PixelAlpha_PixmanOver"));
    std::printf("  the same in cache (256x256):       %.2fx\n",
                reporter.Speedup("BM_PixelAlphaInCache_BitBlt", "BM_PixelAlphaInCache_PixmanOver"));
    std::printf("  blend vs memcpy of the same rows:  %.2fx (near 1: bound by memory traffic)\n",
                reporter.Speedup("BM_PixelAlpha_BitBlt", "BM_PixelAlpha_Memcpy"));
    std::printf("  pixman vs memcpy of the same rows: %.2fx\n",
                reporter.Speedup("BM_PixelAlpha_PixmanOver", "BM_PixelAlpha_Memcpy"));
    std::printf(
        "Constant alpha vs pixman OVER+mask:  %.2fx (aim >= 1.50)\n",
        reporter.Speedup("BM_ConstantAlpha_BitBlt", "BM_ConstantAlpha_PixmanOverSolidMask"));
    std::printf("Per-pixel alpha vs scalar reference: %.2fx\n",
                reporter.Speedup("BM_PixelAlpha_BitBlt", "BM_PixelAlpha_ScalarReference"));
    std::printf("Solid box 128 vs scalar reference:   %.2fx\n",
                reporter.Speedup("BM_SolidBox_Alpha128", "BM_SolidBox_Alpha128_ScalarReference"));
    benchmark::Shutdown();
    return 0;
}
