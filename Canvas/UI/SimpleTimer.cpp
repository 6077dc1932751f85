#include "Canvas/UI/SimpleTimer.h"

#include "Canvas/UI/CanvasUICodeToken.h"
#include "Canvas/UI/Native/TimerQueue.h"
#include "TvBase/Util/ProcessInfo.h"

#include <boost/bind/bind.hpp>

namespace UI
{

SimpleTimer::SimpleTimer(boost::function<void()> const& function, unsigned int intervalMs,
                         bool oneShot, boost::shared_ptr<CanvasUICodeToken> const& token)
    : function(function), intervalMs(intervalMs), oneShot(oneShot), token(token)
{
    start();
}

SimpleTimer::SimpleTimer(void (*function)(void*), void* argument, unsigned int intervalMs,
                         bool oneShot, boost::shared_ptr<CanvasUICodeToken> const& token)
    : function(boost::bind(function, argument)), intervalMs(intervalMs), oneShot(oneShot),
      token(token)
{
    start();
}

SimpleTimer::~SimpleTimer()
{
    Native::TimerQueue::Main().Remove(queueId);
    // A firing in progress holds the handle; it sees the cleared back pointer and stops.
    handle->timer = nullptr;
    handle->token.reset();
}

void SimpleTimer::start()
{
    handle.reset(new SimpleTimerHandle);
    handle->timer = this;
    handle->token = token;
    queueId = Native::TimerQueue::Main().Add(intervalMs, oneShot,
                                             boost::bind(&SimpleTimer::staticCallback, handle),
                                             Util::GetTickCountMillis());
}

void SimpleTimer::SetUICodeToken(boost::shared_ptr<CanvasUICodeToken> const& t)
{
    token = t;
    handle->token = t;
}

void SimpleTimer::SetInterval(unsigned int ms)
{
    intervalMs = ms;
    Native::TimerQueue::Main().SetInterval(queueId, ms, Util::GetTickCountMillis());
}

bool SimpleTimer::IsRunning() const
{
    return Native::TimerQueue::Main().Contains(queueId);
}

void SimpleTimer::staticCallback(boost::shared_ptr<SimpleTimerHandle> const& handle)
{
    // The handle (held by the queue entry's function) keeps the token alive for the call even
    // when the function deletes its own timer.
    boost::shared_ptr<SimpleTimerHandle> keep = handle;
    if (!keep->timer || keep->busy)
        return;
    boost::shared_ptr<CanvasUICodeToken> token = keep->token;
    CanvasUICodeTokenSentry sentry(token.get());
    // Cleared on every exit, an exception from the function included.
    struct Busy
    {
        bool& flag;
        explicit Busy(bool& f) : flag(f) { flag = true; }
        ~Busy() { flag = false; }
    } busy(keep->busy);
    boost::function<void()> function = keep->timer->function;
    function();
}

} // namespace UI
