#pragma once

#include "Canvas/UI/PulseOverlayTimer.h"
#include "TvBase/Controller/BoolParam.h"

namespace UI
{
namespace detail
{

/// The user's clicks on a two-state button bound to a Boolean parameter. A change the user's
/// own change sets off (through the parameter's listeners) is not taken as another click.
class UserGesture
{
public:
    /// Flips `param` as the user's gesture; false, and nothing set, without a parameter or
    /// while a change the user started is under way.
    bool Toggle(Controller::BoolParam* param) { return param && set(param, !param->get()); }
    /// Sets `param` back to its default as the user's gesture; false as for `Toggle`.
    bool Reset(Controller::BoolParam* param) { return param && set(param, param->GetDefault()); }

private:
    bool set(Controller::BoolParam* param, bool value)
    {
        if (busy)
            return false;
        busy = true;
        param->SetWithGesture(value);
        busy = false;
        return true;
    }

    bool busy = false;
};

/// A button's place in a shared pulse: it is registered with the timer while it wants the
/// pulse, and shows opaque again when it leaves. Leaves the timer when it goes.
class PulseMembership
{
public:
    explicit PulseMembership(PulseOverlayTimerClient* client) : client(client) {}
    ~PulseMembership() { SetTimer(nullptr); }
    PulseMembership(PulseMembership const&) = delete;
    PulseMembership& operator=(PulseMembership const&) = delete;

    /// Leaves the old timer and starts over, unregistered and opaque, with `timer` (null for
    /// none); `Update` then joins it.
    void SetTimer(PulseOverlayTimer* next)
    {
        if (timer && registered)
            timer->Unregister(client);
        registered = false;
        timer = next;
        alpha = 255;
    }
    /// Joins the timer (in phase) when `want` and there is one, or leaves it; true when it has
    /// just left, and the alpha went back to 255.
    bool Update(bool want)
    {
        want = want && timer;
        if (want == registered)
            return false;
        registered = want;
        if (want)
        {
            timer->Register(client, true);
            return false;
        }
        timer->Unregister(client);
        alpha = 255;
        return true;
    }
    bool IsRegistered() const { return registered; }
    /// The pulse's latest alpha while registered; 255 otherwise.
    unsigned int GetAlpha() const { return alpha; }
    void SetAlpha(unsigned int value) { alpha = value; }

private:
    PulseOverlayTimerClient* client;
    PulseOverlayTimer* timer = nullptr;
    bool registered = false;
    unsigned int alpha = 255;
};

} // namespace detail
} // namespace UI
