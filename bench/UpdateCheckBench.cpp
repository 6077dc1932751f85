// One whole update check against a loopback server with a versions file of 1,000 lines, 500 of
// whose products are installed (250 of them older than listed): from the start of the worker
// (which makes the request at once) to its decision. The download and the decision alone run
// beside it as references, so the cost of the worker itself shows as the difference.

#include "Updater/app/UpdaterThread.h"
#include "Updater/app/VersionsText.h"

#include "TvBase/Network/Http.h"
#include "TvBase/Util/ConfigFile.h"

#include "tests/support/HttpFixture.h"
#include "tests/support/TempFolder.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace
{

struct Site
{
    TestSupport::TempFolder settingsFolder{"tv-bench-settings"};
    TestSupport::TempFolder served{"tv-bench-served"};
    std::unique_ptr<TestSupport::HttpFixture> server;
    std::unique_ptr<Util::ConfigFile> settings;
    std::string url;
    String text;

    Site()
    {
        std::string versions;
        for (int i = 0; i < 1000; ++i)
            versions += "Product " + std::to_string(i) + "|" + std::to_string(2 + i % 3) +
                        ".5|https://example.invalid/p" + std::to_string(i) + "|mac,win|note\n";
        text = versions.c_str();
        served.Write("versions.txt", versions);
        server.reset(new TestSupport::HttpFixture(served.Path(), false));
        url = server->Url("/root/versions.txt");
        setenv("XDG_CONFIG_HOME", settingsFolder.Path().c_str(), 1);
        settings.reset(new Util::ConfigFile("com.tavorin.updater"));
        for (int i = 0; i < 1000; i += 2)
            settings->SetString(String("InstalledProducts/Product %1/CurrentVersion").Arg(i),
                                (std::to_string(2 + i % 3) + (i % 4 == 0 ? ".0" : ".5")).c_str());
    }
};

Site& site()
{
    static Site instance;
    return instance;
}

void FullCheck(benchmark::State& state)
{
    Site& s = site();
    std::size_t offered = 0;
    for (auto _ : state)
    {
        Updater::UpdaterThread worker("Updater Thread", s.url.c_str(), true,
                                      Util::Thread::PriorityLow, false);
        worker.StartThread();
        worker.WaitThread();
        std::vector<boost::shared_ptr<Updater::UpdateEntry>> updates;
        if (!worker.GetUpdateData(updates))
            state.SkipWithError("check failed");
        offered = updates.size();
    }
    state.counters["offered"] = double(offered);
}

void DownloadOnly(benchmark::State& state)
{
    Site& s = site();
    for (auto _ : state)
    {
        Network::Http http;
        http.Get(s.url.c_str(), 60000);
        while (!http.IsFinished())
            http.WaitForHelper(10);
        benchmark::DoNotOptimize(http.GetStringData());
    }
}

void DecisionOnly(benchmark::State& state)
{
    Site& s = site();
    for (auto _ : state)
    {
        std::vector<boost::shared_ptr<Updater::UpdateEntry>> updates;
        Updater::ParseVersionsText(s.text, *s.settings, updates, [](bool, String const&) {});
        benchmark::DoNotOptimize(updates.data());
    }
}

} // namespace

BENCHMARK(FullCheck)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Repetitions(15)
    ->ReportAggregatesOnly(true);
BENCHMARK(DownloadOnly)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Repetitions(15)
    ->ReportAggregatesOnly(true);
BENCHMARK(DecisionOnly)->Unit(benchmark::kMillisecond)->Repetitions(15)->ReportAggregatesOnly(true);

BENCHMARK_MAIN();
