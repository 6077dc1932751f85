// Settings store costs: a scalar read from a domain of 10,000 values (aim: a few microseconds or
// less), and Synchronize after one change in such a domain (aim: under 20 ms, fsync included).
// A plain std::map lookup and a Synchronize with nothing to write are the references.

#include "TvBase/Util/ConfigFile.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ftw.h>
#include <map>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace
{

int const domainSize = 10000;

/// The settings of this run live in a temporary folder, removed at the end.
class BenchHome
{
public:
    BenchHome()
    {
        char pattern[] = "/tmp/tvbench-XXXXXX";
        if (!mkdtemp(pattern))
            throw std::runtime_error("mkdtemp failed");
        path = pattern;
        setenv("XDG_CONFIG_HOME", path.c_str(), 1);
        setenv("XDG_CONFIG_DIRS", (path + "/system").c_str(), 1);
    }
    ~BenchHome()
    {
        nftw(
            path.c_str(),
            [](char const* p, struct stat const*, int, struct FTW*) { return ::remove(p); }, 16,
            FTW_DEPTH | FTW_PHYS);
    }

private:
    std::string path;
};

String keyOf(int i)
{
    return String("Group%1/Value%2").Arg(i % 100).Arg(i);
}

/// A domain of 10,000 string values, written to disk once.
Util::ConfigFile& bigDomain()
{
    static Util::ConfigFile* config = []
    {
        auto* c = new Util::ConfigFile("com.bench.big");
        for (int i = 0; i < domainSize; ++i)
            c->SetString(keyOf(i), "a typical setting value, some forty bytes");
        c->Synchronize();
        return c;
    }();
    return *config;
}

void GetStringFromBigDomain(benchmark::State& state)
{
    Util::ConfigFile& config = bigDomain();
    std::vector<String> keys;
    for (int i = 0; i < 1024; ++i)
        keys.push_back(keyOf(i * 9 % domainSize));
    std::size_t n = 0;
    for (auto _ : state)
    {
        String value = config.GetString(keys[n++ & 1023], "missing");
        benchmark::DoNotOptimize(value);
    }
}

void MapLookupReference(benchmark::State& state)
{
    std::map<std::string, std::string> values;
    for (int i = 0; i < domainSize; ++i)
        values[keyOf(i).CStr()] = "a typical setting value, some forty bytes";
    std::vector<std::string> keys;
    for (int i = 0; i < 1024; ++i)
        keys.push_back(keyOf(i * 9 % domainSize).CStr());
    std::size_t n = 0;
    for (auto _ : state)
    {
        std::string value = values.find(keys[n++ & 1023])->second;
        benchmark::DoNotOptimize(value);
    }
}

void SynchronizeAfterOneChange(benchmark::State& state)
{
    Util::ConfigFile& config = bigDomain();
    int n = 0;
    for (auto _ : state)
    {
        config.SetInt("Changing/Counter", ++n);
        config.Synchronize();
    }
}

void SynchronizeWithNothingToWrite(benchmark::State& state)
{
    Util::ConfigFile& config = bigDomain();
    config.Synchronize();
    for (auto _ : state)
        config.Synchronize();
}

} // namespace

BENCHMARK(GetStringFromBigDomain)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(MapLookupReference)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(SynchronizeAfterOneChange)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);
BENCHMARK(SynchronizeWithNothingToWrite)->Repetitions(5)->ReportAggregatesOnly(true);

int main(int argc, char** argv)
{
    BenchHome home;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
