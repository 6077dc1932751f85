#include "Canvas/UI/PulseOverlayTimer.h"

#include "Canvas/UI/AnimationHandler.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

using UI::PulseOverlayTimer;
using UI::PulseOverlayTimerClient;

namespace
{

struct Client : PulseOverlayTimerClient
{
    std::vector<std::pair<int, unsigned int>> seen;
    void onPulseOverlayChange(State state, unsigned int alpha) override
    {
        seen.emplace_back(state, alpha);
    }
    std::pair<int, unsigned int> Last() const
    {
        return seen.empty() ? std::make_pair(-1, 0u) : seen.back();
    }
};

struct Scene
{
    UI::Canvas canvas{"Pulse Test"};
    std::unique_ptr<UI::Frame> frame;
    unsigned int now = 0;
    PulseOverlayTimer* pulse = nullptr;

    Scene()
    {
        frame.reset(
            new UI::Frame(&canvas, nullptr, nullptr, UI::Point(), "", UI::Rect(0, 9, 0, 9)));
        frame->GetAnimationHandler()->SetClock([this] { return now; });
        pulse = new PulseOverlayTimer(frame.get(), nullptr, "Pulse");
    }
    void At(unsigned int t)
    {
        now = t;
        frame->GetAnimationHandler()->tick();
    }
};

std::pair<int, unsigned int> st(int state, unsigned int alpha)
{
    return std::make_pair(state, alpha);
}

} // namespace

TEST(PulseOverlayTimerCycle, RunsOnFallingOffRisingInFiveHundredMillisecondSteps)
{
    Scene s;
    Client c;
    EXPECT_EQ(s.pulse->GetState(), PulseOverlayTimerClient::StateIdle);
    s.pulse->Register(&c, false);
    EXPECT_EQ(s.pulse->GetState(), PulseOverlayTimerClient::StateOn);
    EXPECT_EQ(c.Last(), st(1, 255));
    EXPECT_TRUE(s.frame->GetAnimationHandler()->IsCategoryActive(PulseOverlayTimer::kCategory));
    s.At(250);
    EXPECT_EQ(c.Last(), st(1, 255));
    s.At(500);
    EXPECT_EQ(s.pulse->GetState(), PulseOverlayTimerClient::StateFalling);
    s.At(750);
    EXPECT_EQ(c.Last(), st(2, 128)); // 127.5
    s.At(1000);
    EXPECT_EQ(s.pulse->GetState(), PulseOverlayTimerClient::StateOff);
    EXPECT_EQ(c.Last(), st(3, 0));
    s.At(1500);
    EXPECT_EQ(s.pulse->GetState(), PulseOverlayTimerClient::StateRising);
    s.At(1600);
    EXPECT_EQ(c.Last(), st(4, 51));
    s.At(2000);
    EXPECT_EQ(s.pulse->GetState(), PulseOverlayTimerClient::StateOn);
    EXPECT_EQ(s.pulse->GetPulseAlpha(), 255u);
}

TEST(PulseOverlayTimerClients, AnInPhaseLatecomerStaysLitUntilTheCycleComesRound)
{
    Scene s;
    Client first, late, free;
    s.pulse->Register(&first, true);
    s.At(500);
    s.At(1000); // off
    s.pulse->Register(&late, true);
    s.pulse->Register(&free, false);
    s.pulse->Register(&late, false); // known: ignored
    EXPECT_EQ(late.Last(), st(1, 255));
    EXPECT_EQ(free.Last(), st(3, 0));
    EXPECT_EQ(first.Last(), st(3, 0));
    // Each step starts when the tick ends the one before.
    s.At(1500);
    s.At(1750);
    EXPECT_EQ(late.Last(), st(1, 255));
    EXPECT_EQ(free.Last(), st(4, 128));
    s.At(2000); // round again: everyone together
    s.At(2500);
    s.At(2750);
    EXPECT_EQ(late.Last(), st(2, 128));
    EXPECT_EQ(free.Last(), st(2, 128));
}

TEST(PulseOverlayTimerClients, PulsingOffShowsOffAndTheLastClientStopsTheCycle)
{
    Scene s;
    Client a, b;
    s.pulse->Register(&a, false);
    s.pulse->Register(&b, false);
    s.pulse->SetPulsing(false);
    EXPECT_EQ(a.Last(), st(3, 0));
    EXPECT_EQ(b.Last(), st(3, 0));
    s.pulse->SetPulsing(true);
    EXPECT_EQ(a.Last(), st(1, 255));
    s.pulse->Unregister(&a);
    EXPECT_EQ(s.pulse->GetState(), PulseOverlayTimerClient::StateOn);
    s.pulse->Unregister(&b);
    EXPECT_EQ(s.pulse->GetState(), PulseOverlayTimerClient::StateIdle);
    EXPECT_FALSE(s.frame->GetAnimationHandler()->IsCategoryActive(PulseOverlayTimer::kCategory));
    std::size_t const seen = b.seen.size();
    s.At(5000);
    EXPECT_EQ(b.seen.size(), seen);
    // A new first client starts it again.
    s.pulse->Register(&a, false);
    EXPECT_EQ(s.pulse->GetState(), PulseOverlayTimerClient::StateOn);
}

TEST(PulseOverlayTimerClients, DeletingThePulseEndsItsAnimation)
{
    Scene s;
    Client a;
    s.pulse->Register(&a, false);
    delete s.pulse;
    EXPECT_FALSE(s.frame->GetAnimationHandler()->IsCategoryActive(PulseOverlayTimer::kCategory));
    std::size_t const seen = a.seen.size();
    s.At(3000);
    EXPECT_EQ(a.seen.size(), seen);
}
