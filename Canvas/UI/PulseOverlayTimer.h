#pragma once

#include "Canvas/UI/Window.h"

#include <utility>
#include <vector>

namespace UI
{

/// Told of each change of a shared pulse.
class PulseOverlayTimerClient
{
public:
    /// 0 off; 1 on (255); 2 falling; 3 off (0); 4 rising.
    enum State
    {
        StateIdle = 0,
        StateOn = 1,
        StateFalling = 2,
        StateOff = 3,
        StateRising = 4
    };
    virtual ~PulseOverlayTimerClient() = default;
    virtual void onPulseOverlayChange(State state, unsigned int alpha) = 0;
};

/// A shared pulsing alpha: 500 ms on, 500 ms falling, 500 ms off, 500 ms rising, for as long as
/// any client is registered. An invisible window that runs the cycle on its frame's animation
/// handler (category `kCategory`). Clients registered "in phase" see the light steadily on
/// until the cycle comes round, so they all blink together.
class PulseOverlayTimer : public Window
{
public:
    static constexpr unsigned int kCategory = 3214783;
    static constexpr unsigned int kStepMs = 500;

    PulseOverlayTimer(Frame* frame, Window* parent, String const& name);
    ~PulseOverlayTimer() override;

    /// Off: every client is told state 3 with alpha 0.
    void SetPulsing(bool on);
    bool IsPulsing() const { return pulsing; }
    /// A client already known is ignored. The first client starts the cycle.
    void Register(PulseOverlayTimerClient* client, bool inPhase);
    /// The last client leaving stops the cycle.
    void Unregister(PulseOverlayTimerClient* client);
    PulseOverlayTimerClient::State GetState() const { return state; }
    unsigned int GetPulseAlpha() const { return alpha; }

    void UpdateGenericAnimation(float value) override;

private:
    void slotAdvanceState();
    void setState(PulseOverlayTimerClient::State next);
    void notifyClients();

    bool pulsing = true;
    std::vector<std::pair<PulseOverlayTimerClient*, bool>> clients;
    PulseOverlayTimerClient::State state = PulseOverlayTimerClient::StateIdle;
    unsigned int alpha = 0;
};

} // namespace UI
