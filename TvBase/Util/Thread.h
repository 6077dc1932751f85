#pragma once

#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <pthread.h>

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace Atomic
{
class CriticalSection;
}

namespace Util
{

/// Base of every worker: one joinable host thread at a time that calls `run`, then `tearDown`.
///
/// States: 0 no thread, 1 started, 2 running, 3 finished. There is no stop flag and nothing
/// here interrupts `run`: a worker ends when `run` returns, and `TerminateThread` only waits
/// for that. All operations but the new thread's own state changes run under the thread's
/// recursive guard. An exception out of `run` or `tearDown` ends the process.
///
/// Destroying a thread object blocks until its `run` has returned. Since `run` is a virtual call
/// into the subclass, a subclass with a stop flag must set it and call `WaitThread` in its own
/// destructor.
class Thread
{
public:
    /// Priorities are recorded only: this host lowers nothing and raises nothing. The workers
    /// use `PriorityDefault`.
    enum Priority : unsigned int
    {
        PriorityLowest = 0,
        PriorityLower = 1,
        PriorityLow = 2,
        PriorityDefault = 3
    };

    /// State 0, no thread. The flag is accepted and has no effect.
    Thread(String const& name, Priority priority = PriorityDefault, bool flag = false);
    virtual ~Thread();
    Thread(Thread const&) = delete;
    Thread& operator=(Thread const&) = delete;

    /// Starts a new run. When a run is still under way it first waits, without limit, for it
    /// to end: two runs of one object never overlap.
    void StartThread();
    /// Waits for the run to end: without a limit, or at most `timeoutMillis`. True when no run
    /// is left (state 0 afterwards); false when the limit passed with the run still going.
    /// A limit of 0 only looks.
    bool WaitThread(checked_value<unsigned int> const& timeoutMillis = {});
    /// Waits without limit for a running thread to end; does nothing to a thread that never
    /// started. It never interrupts `run`.
    void TerminateThread();
    /// True while started or running; a finished thread is reset to state 0 here.
    bool IsThreadRunning();

    String const& GetName() const { return name; }
    Priority GetPriority() const { return priority; }

    static pthread_t GetCurrentThreadID() { return pthread_self(); }
    static void SleepThread(unsigned int millis);
    static void YieldThread();
    static bool IsCurrentThreadMainThread();
    /// Without `threadId`, names the calling host thread; the host keeps the first 15 bytes
    /// (cut at a whole UTF-8 character), while the object keeps the whole name. With an id it
    /// does nothing.
    static void SetThreadName(String const& name, checked_value<unsigned int> threadId = {});

protected:
    /// Called on the thread after `run` returns. Does nothing by default.
    virtual void tearDown() {}
    /// The work of the thread.
    virtual void run() = 0;

private:
    static void* entry(void* self);
    /// Joins a host thread that has reached state 3 or is known to end, and resets to state 0.
    void joinAndReset();

    String name;
    Priority priority;
    Atomic::CriticalSection* guard;
    std::atomic<unsigned int> state;
    pthread_t handle;
    bool hasHandle = false;
    // Lets a timed wait sleep until the run ends instead of polling.
    std::mutex doneMutex;
    std::condition_variable doneSignal;
};

} // namespace Util
