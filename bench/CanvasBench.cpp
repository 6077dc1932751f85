// Costs that the canvas adds on hot paths. Text drawn through the memory draw context against the
// font drawing straight into the same bitmap (the reference: the context should add nothing
// measurable). The master tick of a frame with 1,000 windows: a tick with the mouse moving (the
// tool-tip search runs) against a tick at rest (the search is skipped), and the once-a-second
// hover test against ticks between tests.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CanvasPlatform.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/Window.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace
{

// ---- text

void BM_DrawTextThroughContext(benchmark::State& state)
{
    UI::Canvas canvas("Bench");
    UI::Font font(&canvas, UI::FontInfo("Arial", 12.0f));
    UI::MemoryDrawContext context("Bench Context");
    context.Begin(UI::Size(400, 40));
    context.DrawBox(UI::Rect(0, 399, 0, 39), UI::DrawContext::Filled, 0xFFFFFFFFu, 255);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            context.DrawText(&font, UI::Point(4, 10), "Level -12.5 dB", 0xFF202020u, 255));
}
BENCHMARK(BM_DrawTextThroughContext);

void BM_DrawTextStraightToBitmap(benchmark::State& state)
{
    UI::Canvas canvas("Bench");
    UI::Font font(&canvas, UI::FontInfo("Arial", 12.0f));
    UI::Native::DIBSection section(UI::Size(400, 40));
    for (int i = 0; i < section.GetStride() * 40; ++i)
        section.GetPixels()[i] = 0xFFFFFFFFu;
    UI::Rect clip(0, 399, 0, 39);
    for (auto _ : state)
        benchmark::DoNotOptimize(font.RenderText(UI::Point(4, 10), "Level -12.5 dB", 0xFF202020u,
                                                 255, clip, &section, UI::HAlignLeft, UI::VAlignTop,
                                                 UI::Rect()));
}
BENCHMARK(BM_DrawTextStraightToBitmap);

// ---- tool-tip tick

/// A desktop whose clock the benchmark turns; the tip frame is a plain frame.
class BenchDesktop : public UI::CanvasPlatform
{
public:
    explicit BenchDesktop(UI::Canvas* canvas) : canvas(canvas) {}
    unsigned int GetTickCount() override { return tick; }
    UI::Point GetCursorScreenPos() override { return cursor; }
    void* GetWindowBeneathPoint(UI::Point const&) override { return beneath; }
    void* GetTopLevelActiveWindow() override { return nullptr; }
    UI::Rect TrimToMonitorScreenRect(UI::Rect const& r) override { return r; }
    UI::Frame* GetToolTipFrame() override
    {
        if (!tipFrame)
            tipFrame.reset(new UI::Frame(canvas, &tipNative, nullptr, UI::Point(), "unused",
                                         UI::Rect(0, 99, 0, 19)));
        return tipFrame.get();
    }
    void ShowToolTipHost(UI::Rect const&) override {}
    void HideToolTipHost() override {}

    UI::Canvas* canvas;
    unsigned int tick = 0;
    UI::Point cursor;
    void* beneath = nullptr;
    int tipNative = 0;
    std::unique_ptr<UI::Frame> tipFrame;
};

/// 1,000 windows without tips in a 40 by 25 grid of 20 by 20 cells, the cursor on the last one.
struct TipScene
{
    UI::Canvas canvas{"Bench"};
    boost::shared_ptr<BenchDesktop> desktop{new BenchDesktop(&canvas)};
    int native = 0;
    std::unique_ptr<UI::Frame> frame;

    TipScene()
    {
        canvas.SetPlatform(desktop);
        frame.reset(new UI::Frame(&canvas, &native, nullptr, UI::Point(), "unused",
                                  UI::Rect(0, 799, 0, 499)));
        desktop->beneath = &native;
        UI::Window* root = new UI::Window(frame.get(), nullptr, "Root");
        root->SetGeometry(0, 0, 800, 500);
        for (int i = 0; i < 1000; ++i)
        {
            UI::Window* w = new UI::Window(frame.get(), root, "Cell");
            w->SetGeometry((i % 40) * 20, (i / 40) * 20, 20, 20);
        }
        UI::Window* tip = new UI::Window(canvas.GetToolTipFrame(), nullptr, "ToolTip");
        canvas.SetToolTip(tip, UI::Canvas::ToolTipTextSetter());
        desktop->cursor = UI::Point(10, 10);
    }
};

void BM_TickWhileMouseMoves(benchmark::State& state)
{
    TipScene s;
    int x = 0;
    for (auto _ : state)
    {
        // Every move restarts the idle time; with a delay of 0 each tick searches the tree.
        s.canvas.SetToolTipIntervals(0, 1000);
        x = (x + 1) % 20;
        s.frame->HandleMouseMessage(UI::MouseMove, UI::Point(x, 10), 0, 0);
        s.canvas.TickFrameTimers();
    }
}
BENCHMARK(BM_TickWhileMouseMoves);

void BM_TickAtRest(benchmark::State& state)
{
    TipScene s;
    s.frame->HandleMouseMessage(UI::MouseMove, UI::Point(10, 10), 0, 0);
    s.desktop->tick = 10000;
    s.canvas.TickFrameTimers();
    for (auto _ : state)
        s.canvas.TickFrameTimers();
}
BENCHMARK(BM_TickAtRest);

} // namespace

BENCHMARK_MAIN();
