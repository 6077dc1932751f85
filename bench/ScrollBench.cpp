// Scrolling a list by one page: the scroll view's relayout (the list walk that places the rows
// in view and hides the rest) and the repaint of the view, for lists of 1,000 and 10,000 rows
// of 20 pixels in a 400 x 300 view. The cost should differ only by the list walk: the rows
// drawn are the same fifteen or sixteen in both.
#include "Canvas/UI/ScrollView.h"

#include "tests/Canvas/UI/ScrollScene.h"

#include <benchmark/benchmark.h>

namespace
{

/// Moves the view one page down, or back up once it reached the end.
void pageOnce(UI::ScrollView* view, int& direction)
{
    int const page = view->GetUsableHeight(true);
    int const y = view->GetScrollViewPos().y;
    int const limit = view->GetScrollViewPosRange().y;
    if ((direction > 0 && y >= limit) || (direction < 0 && y <= 0))
        direction = -direction;
    view->ScrollBy(0, direction * page);
}

void BM_ScrollPageLayoutOnly(benchmark::State& state)
{
    UI::Test::ScrollScene scene(420, 320);
    UI::ScrollView* view = scene.MakeList(10, 10, 400, 300, static_cast<int>(state.range(0)), 20);
    int direction = 1;
    for (auto _ : state)
        pageOnce(view, direction);
    state.counters["rows shown"] = static_cast<double>(UI::Test::ShownRows(*view).size());
}

void BM_ScrollPageLayoutAndPaint(benchmark::State& state)
{
    UI::Test::ScrollScene scene(420, 320);
    UI::ScrollView* view = scene.MakeList(10, 10, 400, 300, static_cast<int>(state.range(0)), 20);
    scene.Paint();
    int direction = 1;
    for (auto _ : state)
    {
        pageOnce(view, direction);
        scene.frame->RenderInvalidRegions(true);
    }
    state.counters["rows shown"] = static_cast<double>(UI::Test::ShownRows(*view).size());
}

/// The reference: the repaint alone, with nothing scrolled.
void BM_RepaintOnly(benchmark::State& state)
{
    UI::Test::ScrollScene scene(420, 320);
    UI::ScrollView* view = scene.MakeList(10, 10, 400, 300, static_cast<int>(state.range(0)), 20);
    scene.Paint();
    for (auto _ : state)
    {
        view->Update();
        scene.frame->RenderInvalidRegions(true);
    }
}

} // namespace

BENCHMARK(BM_ScrollPageLayoutOnly)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ScrollPageLayoutAndPaint)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RepaintOnly)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
