#pragma once

#include "TvBase/Util/checked_value.h"

#include <boost/function.hpp>

#include <map>

namespace UI
{
namespace Native
{

/// The main thread's timers, as the run loop sees them: it sleeps until `NextDeadline` and then
/// calls `FireDue`. Times are milliseconds of `Util::GetTickCountMillis`. A repeating timer that
/// fires late is rescheduled one interval after the firing: it never catches up. For the main
/// thread only: nothing here is locked.
class TimerQueue
{
public:
    TimerQueue() = default;
    TimerQueue(TimerQueue const&) = delete;
    TimerQueue& operator=(TimerQueue const&) = delete;

    /// The queue that the host's run loop serves.
    static TimerQueue& Main();

    /// A timer first due `intervalMs` after `now`; returns its id (never 0). An interval of 0
    /// fires at the next `FireDue`.
    unsigned int Add(unsigned int intervalMs, bool oneShot, boost::function<void()> const& fire,
                     unsigned long long now);
    /// Forgets the timer; harmless for unknown ids, and safe from inside a firing.
    void Remove(unsigned int id);
    void SetInterval(unsigned int id, unsigned int intervalMs, unsigned long long now);
    bool Contains(unsigned int id) const { return timers.count(id) != 0; }
    std::size_t GetCount() const { return timers.size(); }

    /// The earliest due time; not present without timers.
    checked_value<unsigned long long> NextDeadline() const;
    /// Fires every timer due at `now`, each at most once, oldest id first. One-shot timers are
    /// removed before they are called. Returns the number fired.
    unsigned int FireDue(unsigned long long now);

private:
    struct Entry
    {
        unsigned int intervalMs;
        bool oneShot;
        unsigned long long due;
        boost::function<void()> fire;
    };

    std::map<unsigned int, Entry> timers;
    unsigned int nextId = 1;
};

} // namespace Native
} // namespace UI
