// The pixel zoom's cost while live: one 50 ms update (the copy of a 1024x768 frame's bitmap and
// the scaled draw of the panel) against a plain copy of the same pixels in the same run. At 20
// updates a second the panel's share of a core is 20 times the update's time in seconds.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/PixelZoom.h"
#include "TvBase/Util/ConfigFile.h"
#include "tests/Canvas/UI/TestHostWindow.h"
#include "tests/Canvas/UI/support/ButtonTestSupport.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <vector>

namespace
{

int const Width = 1024;
int const Height = 768;

void BM_PlainCopyOfTheFrame(benchmark::State& state)
{
    std::vector<unsigned int> from(std::size_t(Width) * Height, 0xFF336699u);
    std::vector<unsigned int> to(from.size());
    for (auto _ : state)
    {
        std::memcpy(to.data(), from.data(), from.size() * sizeof(unsigned int));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_PlainCopyOfTheFrame);

void BM_PixelZoomUpdate(benchmark::State& state)
{
    ButtonTest::Platform();
    UI::Canvas canvas("Bench");
    UI::Test::TestHostWindow sourceHost;
    UI::MemoryDrawContext sourceContext("Source");
    UI::Frame source(&canvas, sourceHost.Handle(), &sourceContext, UI::Point(), "",
                     UI::Rect(0, Width - 1, 0, Height - 1));
    source.SetHostWindow(&sourceHost);
    sourceContext.Begin(UI::Size(Width, Height));
    sourceContext.DrawBox(UI::Rect(0, Width - 1, 0, Height - 1), UI::DrawContext::Filled,
                          0xFF336699u, 255);
    sourceContext.End({}, nullptr, nullptr);
    sourceHost.cursorScreenPos = UI::Point(500, 400);

    // The panel at the Design Aid's default size, its zoom at the default factor.
    UI::Test::TestHostWindow panelHost;
    UI::MemoryDrawContext panelContext("Panel");
    UI::Frame panel(&canvas, panelHost.Handle(), &panelContext, UI::Point(), "",
                    UI::Rect(0, 249, 0, 299));
    panel.SetHostWindow(&panelHost);
    panel.SetDrawingEnabled(true);
    Util::ConfigFile config("com.tavorin");
    UI::PixelZoom* zoom = new UI::PixelZoom(&panel, nullptr, &config);
    zoom->SetGeometry(0, 0, 250, 300);
    zoom->GetZoomFactorParam()->set(float(state.range(0)));
    zoom->SetZoomFrame(&source);
    for (auto _ : state)
    {
        zoom->Update();
        panel.RenderInvalidRegions(true);
    }
    // The core time the live panel takes each second at 20 updates a second (50 ms is 5%).
    state.counters["core_time_per_second_at_20Hz"] =
        benchmark::Counter(double(state.iterations()) / 20.0,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_PixelZoomUpdate)->Arg(8)->Arg(4)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
