// Emission cost of the toolkit's signals against the slot library used directly with its default
// (locking) configuration, and against a plain function call; and a property write by name
// against a bare map write.
#include "TvBase/Util/Object.h"
#include "TvBase/Util/PropertyHolder.h"

#include <benchmark/benchmark.h>
#include <boost/function.hpp>
#include <boost/signals2/signal.hpp>

#include <map>

namespace
{

class Counter : public Object
{
public:
    void slotHit(int v) { total += v; }
    long long total = 0;
};

void SignalEmptyEmit(benchmark::State& state)
{
    Signal<> signal;
    for (auto _ : state)
        signal();
}
BENCHMARK(SignalEmptyEmit);

void ReferenceSignals2EmptyEmit(benchmark::State& state)
{
    boost::signals2::signal<void()> signal;
    for (auto _ : state)
        signal();
}
BENCHMARK(ReferenceSignals2EmptyEmit);

void SignalOneTrackedSlot(benchmark::State& state)
{
    Counter counter;
    Signal<int> signal;
    signal.Connect(&Counter::slotHit, &counter);
    for (auto _ : state)
        signal(1);
    benchmark::DoNotOptimize(counter.total);
}
BENCHMARK(SignalOneTrackedSlot);

void ReferenceSignals2OneSlot(benchmark::State& state)
{
    Counter counter;
    boost::signals2::signal<void(int)> signal;
    signal.connect([&counter](int v) { counter.slotHit(v); });
    for (auto _ : state)
        signal(1);
    benchmark::DoNotOptimize(counter.total);
}
BENCHMARK(ReferenceSignals2OneSlot);

void ReferenceFunctionCall(benchmark::State& state)
{
    Counter counter;
    boost::function<void(int)> f = [&counter](int v) { counter.slotHit(v); };
    for (auto _ : state)
        f(1);
    benchmark::DoNotOptimize(counter.total);
}
BENCHMARK(ReferenceFunctionCall);

void PropertySetByName(benchmark::State& state)
{
    Util::PropertyHolder holder;
    for (int i = 0; i < 16; ++i)
        holder.CreateProperty(String("Property %1").Arg(i), 0);
    String const name("Property 7");
    int v = 0;
    for (auto _ : state)
        holder.SetProperty(name, ++v);
    benchmark::DoNotOptimize(holder.GetProperty<int>(name));
}
BENCHMARK(PropertySetByName);

void ReferenceMapSet(benchmark::State& state)
{
    std::map<String, int> map;
    for (int i = 0; i < 16; ++i)
        map[String("Property %1").Arg(i)] = 0;
    String const name("Property 7");
    int v = 0;
    for (auto _ : state)
        map[name] = ++v;
    benchmark::DoNotOptimize(map[name]);
}
BENCHMARK(ReferenceMapSet);

} // namespace

BENCHMARK_MAIN();
