#pragma once

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

namespace UI
{

class CanvasUICodeToken;
class SimpleTimer;

/// What the platform's timer calls into: the back pointer to its `SimpleTimer` (cleared when the
/// timer dies), the flag that a firing is running, and the code token. The run loop holds it for
/// as long as it may still fire, so it outlives the timer.
struct SimpleTimerHandle
{
    SimpleTimer* timer = nullptr;
    bool busy = false;
    boost::shared_ptr<CanvasUICodeToken> token;
};

/// A timer for code that has no window: runs a function on the thread that made it (the main
/// thread), every `intervalMs` or once, from the host's run loop. A firing that is still running
/// when the next comes due is not re-entered. Deleting the timer stops it, also from inside its
/// own function.
class SimpleTimer
{
public:
    SimpleTimer(
        boost::function<void()> const& function, unsigned int intervalMs, bool oneShot,
        boost::shared_ptr<CanvasUICodeToken> const& token = boost::shared_ptr<CanvasUICodeToken>());
    SimpleTimer(
        void (*function)(void*), void* argument, unsigned int intervalMs, bool oneShot,
        boost::shared_ptr<CanvasUICodeToken> const& token = boost::shared_ptr<CanvasUICodeToken>());
    ~SimpleTimer();

    SimpleTimer(SimpleTimer const&) = delete;
    SimpleTimer& operator=(SimpleTimer const&) = delete;

    /// The token taken around each firing; null takes none.
    void SetUICodeToken(boost::shared_ptr<CanvasUICodeToken> const& token);
    /// Changes the period; the next firing is one new period from now.
    void SetInterval(unsigned int intervalMs);
    unsigned int GetInterval() const { return intervalMs; }
    bool IsOneShot() const { return oneShot; }
    /// False once a one-shot timer has fired.
    bool IsRunning() const;

private:
    static void staticCallback(boost::shared_ptr<SimpleTimerHandle> const& handle);
    void start();

    boost::function<void()> function;
    unsigned int intervalMs;
    bool oneShot;
    boost::shared_ptr<CanvasUICodeToken> token;
    boost::shared_ptr<SimpleTimerHandle> handle;
    unsigned int queueId = 0;
};

} // namespace UI
