// The list family against its length: paging a list box or a tree list and repainting it, for
// 100 rows (the reference) and for 100,000 in the same run, should cost the same, since only
// the rows in view have windows or are painted; filling them and searching the tree should
// cost the same per row at 10,000 rows as at 100,000 (see the "per row" rates). Row texts
// repeat every hundred rows in both lengths, so that the font's cache of measured texts serves
// both alike and the comparison is of the lists alone.
#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/ScrollView.h"
#include "Canvas/UI/TreeList.h"

#include "tests/Canvas/UI/ScrollScene.h"

#include <benchmark/benchmark.h>

namespace
{

/// Moves the view one page down, or back up once it reached an end.
void pageOnce(UI::ScrollView* view, int& direction)
{
    int const y = view->GetScrollViewPos().y;
    int const limit = view->GetScrollViewPosRange().y;
    if ((direction > 0 && y >= limit) || (direction < 0 && y <= 0))
        direction = -direction;
    view->ScrollBy(0, direction * view->GetUsableHeight(true));
}

UI::ListBox* makeList(UI::Test::ScrollScene& scene, int rows)
{
    UI::ListBox* list = new UI::ListBox(scene.frame.get(), nullptr, "List");
    list->SetGeometry(10, 10, 300, 182);
    for (int i = 0; i < rows; ++i)
        list->InsertItem(String("Row %1").Arg(i % 100));
    return list;
}

UI::TreeList* makeTree(UI::Test::ScrollScene& scene, int nodes)
{
    UI::TreeList* tree = new UI::TreeList(scene.frame.get(), nullptr, "Tree");
    tree->SetGeometry(10, 10, 300, 280);
    // Groups of 100 under one root, all open.
    unsigned int const root = *tree->AddItem({}, "root", true);
    unsigned int group = root;
    for (int i = 1; i < nodes; ++i)
    {
        if (i % 100 == 1)
            group = *tree->AddItem(root, String("group %1").Arg(i / 100 % 100), true);
        else
            tree->AddItem(group, String("node %1").Arg(i % 100));
    }
    tree->GetVisibleRows();
    return tree;
}

void BM_ListPageAndPaint(benchmark::State& state)
{
    UI::Test::ScrollScene scene(420, 320);
    UI::ListBox* list = makeList(scene, static_cast<int>(state.range(0)));
    scene.Paint();
    int direction = 1;
    for (auto _ : state)
    {
        pageOnce(list->GetScrollView(), direction);
        list->LayoutRows();
        scene.frame->RenderInvalidRegions(true);
    }
}

void BM_ListFill(benchmark::State& state)
{
    for (auto _ : state)
    {
        UI::Test::ScrollScene scene(420, 320);
        makeList(scene, static_cast<int>(state.range(0)));
    }
    state.counters["per row"] =
        benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_TreePageAndPaint(benchmark::State& state)
{
    UI::Test::ScrollScene scene(420, 320);
    UI::TreeList* tree = makeTree(scene, static_cast<int>(state.range(0)));
    scene.Paint();
    int direction = 1;
    for (auto _ : state)
    {
        pageOnce(tree->GetScrollView(), direction);
        scene.frame->RenderInvalidRegions(true);
    }
    state.counters["rows painted"] = tree->GetRowsPainted();
}

void BM_TreeFill(benchmark::State& state)
{
    for (auto _ : state)
    {
        UI::Test::ScrollScene scene(420, 320);
        makeTree(scene, static_cast<int>(state.range(0)));
    }
    state.counters["per row"] =
        benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

/// A search that keeps about one row in ten, and the repaint of what it shows.
void BM_TreeSearchAndPaint(benchmark::State& state)
{
    UI::Test::ScrollScene scene(420, 320);
    UI::TreeList* tree = makeTree(scene, static_cast<int>(state.range(0)));
    scene.Paint();
    bool odd = false;
    for (auto _ : state)
    {
        tree->ShowItemsContainingString(odd ? "7" : "3");
        odd = !odd;
        scene.frame->RenderInvalidRegions(true);
    }
    state.counters["per row"] =
        benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

} // namespace

BENCHMARK(BM_ListPageAndPaint)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ListFill)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TreePageAndPaint)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TreeFill)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TreeSearchAndPaint)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
