// Copying a String costs one atomic increment whatever its length; the update decision is linear
// in the length of the versions file.
#include "TvBase/Util/String.h"
#include "Updater/app/VersionsText.h"

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace
{

void BM_StringCopy(benchmark::State& state)
{
    std::string bytes(static_cast<std::size_t>(state.range(0)), 'x');
    String const text(bytes.c_str());
    for (auto _ : state)
    {
        String copy = text;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(BM_StringCopy)->Arg(10)->Arg(1 << 20);

// Reference: a deep copy of the same bytes.
void BM_StdStringCopy(benchmark::State& state)
{
    std::string const text(static_cast<std::size_t>(state.range(0)), 'x');
    for (auto _ : state)
    {
        std::string copy = text;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(BM_StdStringCopy)->Arg(10)->Arg(1 << 20);

class BenchSettings
{
public:
    explicit BenchSettings(int products)
    {
        for (int i = 0; i < products; ++i)
        {
            String key = String("Product %1").Arg(i);
            keys.push_back(key);
            values[std::string("InstalledProducts/") + key.CStr() + "/CurrentVersion"] = "1.5";
        }
    }
    void GetKeyNames(std::vector<String>& names, String const&) { names = keys; }
    String GetString(String const& path, String const& defaultValue)
    {
        auto found = values.find(path.CStr());
        return found == values.end() ? defaultValue : found->second;
    }

private:
    std::vector<String> keys;
    std::map<std::string, String> values;
};

/// A versions file of `lines` lines; every fourth names an installed product with a newer version.
String makeVersionsFile(int lines, int products)
{
    std::vector<String> all;
    all.reserve(static_cast<std::size_t>(lines));
    for (int i = 0; i < lines; ++i)
    {
        String name =
            i % 4 == 0 ? String("Product %1").Arg(i % products) : String("Other %1").Arg(i);
        all.push_back(String("%1|%2|https://example.invalid/%3|mac,win|note\r")
                          .Arg(name)
                          .Arg(i % 8 == 0 ? "2.0" : "1.25")
                          .Arg(i));
    }
    return String::Join("\n", all);
}

void BM_ParseVersionsText(benchmark::State& state)
{
    int const lines = static_cast<int>(state.range(0));
    BenchSettings settings(100);
    String const text = makeVersionsFile(lines, 100);
    std::size_t offered = 0;
    for (auto _ : state)
    {
        std::vector<boost::shared_ptr<Updater::UpdateEntry>> entries;
        Updater::ParseVersionsText(text, settings, entries, [](bool, String const&) {});
        offered = entries.size();
        benchmark::DoNotOptimize(entries);
    }
    state.counters["entries"] = static_cast<double>(offered);
    state.SetComplexityN(lines);
}
BENCHMARK(BM_ParseVersionsText)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

} // namespace

BENCHMARK_MAIN();
