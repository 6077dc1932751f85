// Processor time that the whole process spends while one request stalls: the server sends the
// headers and then nothing, and the owner polls as the workers do (every 10 milliseconds).
// Reported as a percentage of one core; the pump must wait on its socket, not spin.

#include "TvBase/Network/Http.h"
#include "TvBase/Util/Thread.h"

#include "tests/support/HttpFixture.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <sys/resource.h>

namespace
{

double processCpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

void StalledRequestFor5Seconds(benchmark::State& state)
{
    TestSupport::HttpFixture server;
    if (!server.IsRunning())
    {
        state.SkipWithError("fixture server did not start");
        return;
    }
    for (auto _ : state)
    {
        Network::Http http;
        http.Get(server.Url("/stall").c_str(), 60000);
        server.WaitForRequest("/stall");
        double const cpuBefore = processCpuSeconds();
        auto const wallBefore = std::chrono::steady_clock::now();
        while (std::chrono::steady_clock::now() - wallBefore < std::chrono::seconds(5))
        {
            benchmark::DoNotOptimize(http.IsFinished());
            Util::Thread::SleepThread(10);
        }
        double const wall =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - wallBefore).count();
        double const cpu = processCpuSeconds() - cpuBefore;
        state.counters["cpu_ms"] = cpu * 1000.0;
        state.counters["cpu_percent_of_core"] = 100.0 * cpu / wall;
        http.CancelGet();
    }
}

} // namespace

BENCHMARK(StalledRequestFor5Seconds)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

BENCHMARK_MAIN();
