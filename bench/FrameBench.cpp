// Paint and invalidation costs of a frame: a 1024x768 frame with 500 visible windows that fill
// boxes, repainted whole and after one small window changed; and the region list under 1,000
// scattered invalidations, against a plain append that merges nothing.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Window.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace
{

/// A host that only counts what the frame tells it.
class CountingHost : public UI::Native::HostWindow
{
public:
    CountingHost() : HostWindow("Bench Host") {}
    void PostUpdateMessage() override { ++posts; }
    void InvalidateRect(UI::Rect) override {}
    CGColorSpace* GetColorSpace() override { return nullptr; }
    UI::Point GetScreenPos() override { return UI::Point(); }
    bool IsHoldingFocus() override { return true; }
    void SetNativeFocus() override {}
    void SetCurrentCursor(UI::Cursor const&) override {}
    UI::Point GetCursorScreenPos() override { return UI::Point(); }
    bool IsCapsLockOn() override { return false; }
    int posts = 0;
};

class BoxWindow : public UI::Window
{
public:
    BoxWindow(UI::Frame* frame, UI::Window* parent, unsigned int color, int* draws)
        : Window(frame, parent, "Box"), boxColor(color), draws(draws)
    {
    }
    void Draw(UI::DrawContext* context) override
    {
        ++*draws;
        context->DrawBox(UI::Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                         boxColor, GetEffectiveAlpha());
        Window::Draw(context);
    }
    unsigned int boxColor;

private:
    int* draws;
};

/// A 1024x768 frame whose root holds 500 boxes on a fixed pseudo-random layout; the last box is
/// 20x20 and sits on top.
struct Scene
{
    UI::Canvas canvas{"Bench"};
    CountingHost host;
    UI::MemoryDrawContext context{"Bench Context"};
    std::unique_ptr<UI::Frame> frame;
    BoxWindow* small = nullptr;
    int draws = 0;

    Scene()
    {
        frame.reset(
            new UI::Frame(&canvas, &host, &context, UI::Point(), "", UI::Rect(0, 1023, 0, 767)));
        frame->SetHostWindow(&host);
        BoxWindow* root = new BoxWindow(frame.get(), nullptr, 0xFF202020u, &draws);
        frame->SetTopLevelWindow(root);
        unsigned int state = 12345;
        auto next = [&state](unsigned int n)
        {
            state = state * 214013u + 2531011u;
            return ((state >> 16) & 0x7FFF) % n;
        };
        for (int i = 0; i < 499; ++i)
        {
            BoxWindow* w = new BoxWindow(frame.get(), root, 0xFF000000u | (next(0xFFFFFF)), &draws);
            int width = 20 + int(next(120));
            int height = 20 + int(next(90));
            w->SetGeometry(int(next(1024 - width)), int(next(768 - height)), width, height);
        }
        small = new BoxWindow(frame.get(), root, 0xFFFF0000u, &draws);
        small->SetGeometry(500, 400, 20, 20);
        frame->SetDrawingEnabled(true);
        frame->RenderInvalidRegions(true);
    }
};

void BM_FullRepaint(benchmark::State& state)
{
    Scene s;
    for (auto _ : state)
    {
        s.frame->Invalidate(UI::Rect(0, 1023, 0, 767), true);
        s.frame->RenderInvalidRegions(true);
    }
    state.counters["draws/paint"] = double(s.draws) / double(state.iterations() + 1);
}
BENCHMARK(BM_FullRepaint)->Unit(benchmark::kMicrosecond);

void BM_SmallWindowRepaint(benchmark::State& state)
{
    Scene s;
    s.draws = 0;
    unsigned int colors[2] = {0xFF00FF00u, 0xFF0000FFu};
    int i = 0;
    for (auto _ : state)
    {
        s.small->boxColor = colors[++i & 1];
        s.small->Update();
        s.frame->RenderInvalidRegions(true);
    }
    // Only the root, the boxes under the small one and the small one itself draw.
    state.counters["draws/paint"] = double(s.draws) / double(state.iterations());
}
BENCHMARK(BM_SmallWindowRepaint)->Unit(benchmark::kMicrosecond);

/// 1,000 small rectangles scattered over the frame, from a fixed seed.
std::vector<UI::Rect> scattered()
{
    std::vector<UI::Rect> out;
    unsigned int state = 777;
    auto next = [&state](unsigned int n)
    {
        state = state * 214013u + 2531011u;
        return int(((state >> 16) & 0x7FFF) % n);
    };
    for (int i = 0; i < 1000; ++i)
        out.push_back(UI::Rect::FromXYWH(next(1010), next(754), 4 + next(10), 4 + next(10)));
    return out;
}

void BM_InvalidateScattered(benchmark::State& state)
{
    Scene s;
    std::vector<UI::Rect> rects = scattered();
    std::size_t regions = 0;
    for (auto _ : state)
    {
        for (UI::Rect const& r : rects)
            s.frame->Invalidate(r, true);
        regions = s.frame->GetInvalidRegions().size();
        state.PauseTiming();
        s.frame->RenderInvalidRegions(true);
        state.ResumeTiming();
    }
    state.counters["regions"] = double(regions);
}
BENCHMARK(BM_InvalidateScattered)->Unit(benchmark::kMicrosecond);

/// The reference: the same rectangles appended to a vector with the one test every merge rule
/// needs, a pass over all regions for each new rectangle.
void BM_ReferenceLinearScan(benchmark::State& state)
{
    std::vector<UI::Rect> rects = scattered();
    for (auto _ : state)
    {
        std::vector<UI::Rect> list;
        int touching = 0;
        for (UI::Rect const& r : rects)
        {
            for (UI::Rect const& e : list)
                touching += e.Inflate(1).Intersects(r);
            list.push_back(r);
        }
        benchmark::DoNotOptimize(touching);
    }
}
BENCHMARK(BM_ReferenceLinearScan)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
