#include "Canvas/UI/PulseOverlayTimer.h"

#include "Canvas/UI/AnimationHandler.h"
#include "Canvas/UI/Frame.h"

#include <algorithm>
#include <cmath>

namespace UI
{

namespace
{

/// The value that each state's animation runs from and to.
struct Step
{
    float from;
    float to;
};

Step const kSteps[5] = {
    {0.0f, 0.0f}, {255.0f, 255.0f}, {255.0f, 0.0f}, {0.0f, 0.0f}, {0.0f, 255.0f}};

} // namespace

PulseOverlayTimer::PulseOverlayTimer(Frame* frame, Window* parent, String const& name)
    : Window(frame, parent, name)
{
    // Only a clock: it never draws.
    Hide();
}

PulseOverlayTimer::~PulseOverlayTimer()
{
    clients.clear();
    state = PulseOverlayTimerClient::StateIdle;
    if (AnimationHandler* handler = GetFrame() ? GetFrame()->GetAnimationHandler() : nullptr)
        handler->onWindowDestroy(this);
}

void PulseOverlayTimer::SetPulsing(bool on)
{
    pulsing = on;
    notifyClients();
}

void PulseOverlayTimer::Register(PulseOverlayTimerClient* client, bool inPhase)
{
    if (!client)
        return;
    for (auto const& entry : clients)
        if (entry.first == client)
            return;
    // One that joins in the middle of a cycle waits, steadily lit, for the next one.
    bool wait = inPhase && state >= PulseOverlayTimerClient::StateFalling;
    clients.emplace_back(client, wait);
    if (clients.size() == 1)
        setState(PulseOverlayTimerClient::StateOn);
    else
        notifyClients();
}

void PulseOverlayTimer::Unregister(PulseOverlayTimerClient* client)
{
    auto it = std::find_if(clients.begin(), clients.end(),
                           [client](auto const& entry) { return entry.first == client; });
    if (it == clients.end())
        return;
    clients.erase(it);
    if (!clients.empty())
        return;
    state = PulseOverlayTimerClient::StateIdle;
    alpha = 0;
    // Without callbacks: the cycle ends here.
    if (AnimationHandler* handler = GetFrame() ? GetFrame()->GetAnimationHandler() : nullptr)
        handler->onWindowDestroy(this);
}

void PulseOverlayTimer::UpdateGenericAnimation(float value)
{
    alpha = static_cast<unsigned int>(std::lround(std::clamp(value, 0.0f, 255.0f)));
    notifyClients();
}

void PulseOverlayTimer::slotAdvanceState()
{
    if (state == PulseOverlayTimerClient::StateIdle || clients.empty())
        return;
    if (state == PulseOverlayTimerClient::StateRising)
    {
        // The cycle came round: everyone blinks together from here.
        for (auto& entry : clients)
            entry.second = false;
        setState(PulseOverlayTimerClient::StateOn);
        return;
    }
    setState(static_cast<PulseOverlayTimerClient::State>(state + 1));
}

void PulseOverlayTimer::setState(PulseOverlayTimerClient::State next)
{
    state = next;
    Step const& step = kSteps[next];
    alpha = static_cast<unsigned int>(step.from);
    AnimationHandler* handler = GetFrame() ? GetFrame()->GetAnimationHandler() : nullptr;
    if (next == PulseOverlayTimerClient::StateIdle || !handler)
    {
        notifyClients();
        return;
    }
    // Forced, so that a disabled handler can't turn the cycle into an endless loop of at-once
    // endings.
    handler->Generic(kCategory, this, kStepMs, step.from, step.to, checked_value<unsigned int>(),
                     AnimationHandler::Callback([this] { slotAdvanceState(); }), true);
}

void PulseOverlayTimer::notifyClients()
{
    // By index: a client may unregister itself while told.
    for (std::size_t i = 0; i < clients.size(); ++i)
    {
        PulseOverlayTimerClient* client = clients[i].first;
        if (!pulsing)
            client->onPulseOverlayChange(PulseOverlayTimerClient::StateOff, 0);
        else if (clients[i].second && state == PulseOverlayTimerClient::StateIdle)
            client->onPulseOverlayChange(PulseOverlayTimerClient::StateIdle, alpha);
        else if (clients[i].second)
            client->onPulseOverlayChange(PulseOverlayTimerClient::StateOn, 255);
        else
            client->onPulseOverlayChange(state, alpha);
    }
}

} // namespace UI
