// The updater's list of offered updates filled with 1,000, 10,000 and 100,000 rows of the same
// product and shown (laid out and painted once), as a versions file that names one product over
// and over makes it. The time a row should stay flat across the three sizes; the reference is
// the rows alone, made without a list to hold them.
#include "Updater/app/ProgramItem.h"

#include "tests/Updater/app/UpdateRowsScene.h"

#include <benchmark/benchmark.h>

namespace
{

void BM_ShowRows(benchmark::State& state)
{
    int const rows = static_cast<int>(state.range(0));
    std::vector<boost::shared_ptr<Updater::UpdateEntry>> const offers = UI::Test::SameOffers(rows);
    for (auto _ : state)
    {
        {
            UI::Test::UpdateRowsScene rowsScene;
            rowsScene.panel->AddEntries(offers);
            rowsScene.scene.Paint();
            benchmark::DoNotOptimize(rowsScene.scene.Pixel(30, 30));
            state.PauseTiming(); // the scene's end is not part of showing it
        }
        state.ResumeTiming();
    }
    state.counters["time a row"] = benchmark::Counter(
        static_cast<double>(rows) * state.iterations(),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert, benchmark::Counter::kIs1000);
}

/// The reference: the same rows made alone, each the child of a plain window.
void BM_RowsAlone(benchmark::State& state)
{
    int const rows = static_cast<int>(state.range(0));
    for (auto _ : state)
    {
        {
            UI::Test::UpdateRowsScene rowsScene;
            UI::Window* holder =
                new UI::Window(rowsScene.scene.frame.get(), nullptr, String("Holder"));
            for (int i = 0; i < rows; ++i)
                new UI::ProgramItem(rowsScene.scene.frame.get(), holder,
                                    String("Program Item: Alpha Mixer"), String("Alpha Mixer"),
                                    String("3.0"), String("3.2"), String("http://127.0.0.1/"));
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.counters["time a row"] = benchmark::Counter(
        static_cast<double>(rows) * state.iterations(),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert, benchmark::Counter::kIs1000);
}

} // namespace

BENCHMARK(BM_ShowRows)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RowsAlone)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
