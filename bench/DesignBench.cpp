// What the live design engine costs. Dormant (the setting off, as in every delivered program):
// a whole repaint and one mouse move through the frame, against the same frame whose design is
// disabled as on a tool frame, where the engine returns at its first test; `UpdateActive` per
// tick dormant and active. Active: one drag step of one selected window among 500, painted,
// with the area that the step repainted.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Design.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Util/ConfigFile.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace
{

/// A shown host with caps lock under the bench's control.
class BenchHost : public UI::Native::HostWindow
{
public:
    BenchHost() : HostWindow("Bench Host") { visible = true; }
    void PostUpdateMessage() override {}
    void InvalidateRect(UI::Rect) override {}
    CGColorSpace* GetColorSpace() override { return nullptr; }
    UI::Point GetScreenPos() override { return UI::Point(); }
    bool IsHoldingFocus() override { return true; }
    void SetNativeFocus() override {}
    void SetCurrentCursor(UI::Cursor const&) override {}
    UI::Point GetCursorScreenPos() override { return UI::Point(); }
    bool IsCapsLockOn() override { return caps; }
    bool caps = false;
};

class BoxWindow : public UI::Window
{
public:
    BoxWindow(UI::Frame* frame, UI::Window* parent, unsigned int color)
        : Window(frame, parent, "Box"), boxColor(color)
    {
        SetDynamicLayoutMode(DynamicLayoutSaved);
    }
    void Draw(UI::DrawContext* context) override
    {
        context->DrawBox(UI::Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                         boxColor, GetEffectiveAlpha());
        Window::Draw(context);
    }

private:
    unsigned int boxColor;
};

/// The settings in a private folder, "RuntimeDesignEnable" as asked.
void UseSettings(bool designEnabled)
{
    static std::string const folder = []
    {
        char path[] = "/tmp/tv-design-bench.XXXXXX";
        char const* made = mkdtemp(path);
        std::string p = made ? made : "/tmp";
        setenv("XDG_CONFIG_HOME", p.c_str(), 1);
        return p;
    }();
    (void)folder;
    Util::ConfigFile(String("com.tavorin")).SetBool(String("RuntimeDesignEnable"), designEnabled);
}

/// A 1000x800 frame with 500 boxes of 36x28 on a 25 by 20 grid over a root box.
struct Scene
{
    UI::Canvas canvas{"DesignBench"};
    BenchHost host;
    UI::MemoryDrawContext context{"Bench Context"};
    std::unique_ptr<UI::Frame> frame;

    explicit Scene(bool designEnabled)
    {
        UseSettings(designEnabled);
        frame.reset(
            new UI::Frame(&canvas, &host, &context, UI::Point(), "", UI::Rect(0, 999, 0, 799)));
        frame->SetHostWindow(&host);
        frame->SetDrawingEnabled(true);
        BoxWindow* root = new BoxWindow(frame.get(), nullptr, 0xFF202020u);
        frame->SetTopLevelWindow(root);
        for (int i = 0; i < 500; ++i)
        {
            BoxWindow* box = new BoxWindow(frame.get(), root, 0xFF000000u | (i * 2654435761u >> 8));
            box->SetGeometry(4 + (i % 25) * 40, 4 + (i / 25) * 40, 36, 28);
        }
        frame->RenderInvalidRegions(true);
    }
};

void BM_RepaintWhole(benchmark::State& state, bool disabled)
{
    Scene scene(false);
    scene.frame->SetDesignDisable(disabled);
    for (auto _ : state)
    {
        scene.frame->Invalidate(UI::Rect(0, 999, 0, 799), false);
        scene.frame->RenderInvalidRegions(true);
    }
}
BENCHMARK_CAPTURE(BM_RepaintWhole, DesignDormant, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_RepaintWhole, DesignDisabledReference, true)->Unit(benchmark::kMicrosecond);

void BM_MouseMove(benchmark::State& state, bool disabled)
{
    Scene scene(false);
    scene.frame->SetDesignDisable(disabled);
    int x = 0;
    for (auto _ : state)
    {
        x = (x + 7) % 1000;
        benchmark::DoNotOptimize(
            scene.frame->HandleMouseMessage(UI::MouseMove, UI::Point(x, 400), 0, 0));
    }
}
BENCHMARK_CAPTURE(BM_MouseMove, DesignDormant, false);
BENCHMARK_CAPTURE(BM_MouseMove, DesignDisabledReference, true);

void BM_UpdateActive(benchmark::State& state, bool enabled)
{
    Scene scene(enabled);
    scene.host.caps = enabled;
    UI::Design* design = scene.frame->GetDesign();
    design->UpdateActive();
    for (auto _ : state)
        design->UpdateActive();
    state.counters["active"] = design->IsActive() ? 1 : 0;
}
BENCHMARK_CAPTURE(BM_UpdateActive, Dormant, false);
BENCHMARK_CAPTURE(BM_UpdateActive, ActiveCapsLockOn, true);

void BM_DragStepOf500(benchmark::State& state)
{
    Scene scene(true);
    scene.host.caps = true;
    UI::Frame* frame = scene.frame.get();
    frame->tickTimers();
    // The box at (4 + 12 * 40, 4 + 10 * 40), pressed in its middle.
    UI::Point const press(4 + 12 * 40 + 18, 4 + 10 * 40 + 14);
    frame->HandleMouseMessage(UI::MouseLeftPress, press, UI::FlagLeftButton, 0);
    frame->RenderInvalidRegions(true);
    long long area = 0;
    long long steps = 0;
    int step = 0;
    for (auto _ : state)
    {
        step = (step + 1) % 16;
        UI::Point const to = press + UI::Point(step, step / 2);
        frame->HandleMouseMessage(UI::MouseMove, to, UI::FlagLeftButton, 0);
        for (UI::Rect const& r : frame->GetInvalidRegions())
            area += static_cast<long long>(r.Width()) * r.Height();
        ++steps;
        frame->RenderInvalidRegions(true);
    }
    frame->HandleMouseMessage(UI::MouseLeftRelease, press, 0, 0);
    state.counters["repaintedPixels"] = steps ? double(area) / double(steps) : 0.0;
    state.counters["framePixels"] = 1000.0 * 800.0;
}
BENCHMARK(BM_DragStepOf500)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
