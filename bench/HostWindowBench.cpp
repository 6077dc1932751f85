// Host windows on a real display (a private Xvfb when the tools are there):
//   - idle CPU of one window with its 33 ms master timer, against the bare run loop;
//   - from making the host window to its first pixels on the screen, against a bare SDL window
//     filled and shown the same way;
//   - a full repaint of an 800x600 frame reaching the screen, against a bare surface fill and
//     update of the same size.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Util/ProcessInfo.h"
#include "tests/Canvas/UI/Native/SDL/GuiTestSupport.h"

#include <benchmark/benchmark.h>

#include <SDL.h>

#include <memory>
#include <sys/resource.h>

using UI::Point;
using UI::Rect;
using UI::Size;
using UI::Native::PlatformSupportFactory;

namespace
{

class Fill : public UI::Window
{
public:
    Fill(UI::Frame* frame, UI::Window* parent, char const* name, unsigned int color)
        : Window(frame, parent, name), color(color)
    {
    }
    void Draw(UI::DrawContext* context) override
    {
        context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                         color, 255);
        Window::Draw(context);
    }
    unsigned int color;
};

bool needDisplay(benchmark::State& state)
{
    std::string reason;
    if (UI::Test::EnsureDisplay(reason))
        return true;
    state.SkipWithError(("no display: " + reason).c_str());
    return false;
}

struct Scene
{
    UI::Canvas canvas{"Bench"};
    std::unique_ptr<UI::Native::HostWindow> host;
    Fill* root = nullptr;

    bool Open(Size const& size)
    {
        host.reset(PlatformSupportFactory::CreateHostWindow(&canvas, "Bench", nullptr, nullptr));
        UI::Native::HostWindowStyle style;
        style.noFrame = true;
        if (!host->Create(nullptr, nullptr, "Bench", Rect(Point(20, 20), size), false, false,
                          style))
            return false;
        UI::Frame* frame = host->GetFrame();
        root = new Fill(frame, nullptr, "Root", 0xFF304050);
        frame->SetTopLevelWindow(root);
        // A few children, as a real panel has.
        for (int i = 0; i < 8; ++i)
            (new Fill(frame, root, "Child", 0xFF000000u + 0x1F0F07u * i))
                ->SetGeometry(10 + i * 40, 10 + i * 20, 200, 120);
        frame->SetDrawingEnabled(true);
        host->Show(false);
        return true;
    }

    bool Drawn()
    {
        UI::Frame* frame = host->GetFrame();
        return UI::Test::PumpUntil([frame] { return frame->GetInvalidRegions().empty(); });
    }
};

double cpuSeconds()
{
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

/// Runs the loop for `seconds` and reports the share of one core it used.
void measureIdle(benchmark::State& state, bool withWindow)
{
    if (!needDisplay(state))
        return;
    Scene scene;
    if (withWindow)
    {
        if (!scene.Open(Size(400, 300)) || !scene.Drawn())
        {
            state.SkipWithError("no window");
            return;
        }
        scene.host->StartMasterUpdateTimer(33);
    }
    double percent = 0;
    for (auto _ : state)
    {
        double const cpu0 = cpuSeconds();
        unsigned long long const t0 = Util::GetTickCountMillis();
        while (Util::GetTickCountMillis() - t0 < 3000)
            PlatformSupportFactory::ProcessEvents(3000);
        double const wall = (Util::GetTickCountMillis() - t0) / 1000.0;
        percent = 100.0 * (cpuSeconds() - cpu0) / wall;
    }
    state.counters["cpu_percent"] = percent;
}

void BM_IdleOneWindowWithMasterTimer(benchmark::State& state)
{
    measureIdle(state, true);
}
BENCHMARK(BM_IdleOneWindowWithMasterTimer)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_IdleBareRunLoop(benchmark::State& state)
{
    measureIdle(state, false);
}
BENCHMARK(BM_IdleBareRunLoop)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_CreateToFirstPixels(benchmark::State& state)
{
    if (!needDisplay(state))
        return;
    for (auto _ : state)
    {
        Scene scene;
        if (!scene.Open(Size(400, 300)) || !scene.Drawn())
            state.SkipWithError("no first paint");
        state.PauseTiming();
        scene.host.reset();
        PlatformSupportFactory::ProcessEvents(0);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_CreateToFirstPixels)->Unit(benchmark::kMillisecond)->Iterations(20);

void BM_CreateToFirstPixelsBareSDL(benchmark::State& state)
{
    if (!needDisplay(state))
        return;
    for (auto _ : state)
    {
        SDL_Window* window =
            SDL_CreateWindow("Bare", 20, 20, 400, 300, SDL_WINDOW_HIDDEN | SDL_WINDOW_BORDERLESS);
        SDL_ShowWindow(window);
        SDL_Surface* surface = SDL_GetWindowSurface(window);
        SDL_FillRect(surface, nullptr, 0x304050);
        SDL_UpdateWindowSurface(window);
        state.PauseTiming();
        SDL_DestroyWindow(window);
        PlatformSupportFactory::ProcessEvents(0);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_CreateToFirstPixelsBareSDL)->Unit(benchmark::kMillisecond)->Iterations(20);

void BM_FullRepaint800x600(benchmark::State& state)
{
    if (!needDisplay(state))
        return;
    Scene scene;
    if (!scene.Open(Size(800, 600)) || !scene.Drawn())
    {
        state.SkipWithError("no window");
        return;
    }
    UI::Frame* frame = scene.host->GetFrame();
    for (auto _ : state)
    {
        scene.root->Update();
        frame->HandleUpdateMessage();
    }
    state.SetItemsProcessed(state.iterations() * 800 * 600);
}
BENCHMARK(BM_FullRepaint800x600)->Unit(benchmark::kMillisecond);

void BM_FullRepaint800x600BareSurface(benchmark::State& state)
{
    if (!needDisplay(state))
        return;
    SDL_Window* window =
        SDL_CreateWindow("Bare", 20, 20, 800, 600, SDL_WINDOW_SHOWN | SDL_WINDOW_BORDERLESS);
    SDL_Surface* surface = SDL_GetWindowSurface(window);
    Uint32 color = 0;
    for (auto _ : state)
    {
        SDL_FillRect(surface, nullptr, color++);
        SDL_UpdateWindowSurface(window);
    }
    SDL_DestroyWindow(window);
    state.SetItemsProcessed(state.iterations() * 800 * 600);
}
BENCHMARK(BM_FullRepaint800x600BareSurface)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
