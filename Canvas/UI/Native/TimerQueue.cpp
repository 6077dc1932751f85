#include "Canvas/UI/Native/TimerQueue.h"

#include <vector>

namespace UI
{
namespace Native
{

TimerQueue& TimerQueue::Main()
{
    static TimerQueue queue;
    return queue;
}

unsigned int TimerQueue::Add(unsigned int intervalMs, bool oneShot,
                             boost::function<void()> const& fire, unsigned long long now)
{
    unsigned int id = nextId++;
    if (nextId == 0)
        nextId = 1;
    timers[id] = Entry{intervalMs, oneShot, now + intervalMs, fire};
    return id;
}

void TimerQueue::Remove(unsigned int id)
{
    timers.erase(id);
}

void TimerQueue::SetInterval(unsigned int id, unsigned int intervalMs, unsigned long long now)
{
    auto it = timers.find(id);
    if (it == timers.end())
        return;
    it->second.intervalMs = intervalMs;
    it->second.due = now + intervalMs;
}

checked_value<unsigned long long> TimerQueue::NextDeadline() const
{
    checked_value<unsigned long long> earliest;
    for (auto const& entry : timers)
        if (!earliest || entry.second.due < *earliest)
            earliest = entry.second.due;
    return earliest;
}

unsigned int TimerQueue::FireDue(unsigned long long now)
{
    // The due ones are chosen first: a timer added or rescheduled by a firing waits for the
    // next pass, and one removed by a firing is not called.
    std::vector<unsigned int> due;
    for (auto const& entry : timers)
        if (entry.second.due <= now)
            due.push_back(entry.first);
    unsigned int fired = 0;
    for (unsigned int id : due)
    {
        auto it = timers.find(id);
        if (it == timers.end())
            continue;
        boost::function<void()> fire = it->second.fire;
        if (it->second.oneShot)
            timers.erase(it);
        else
            it->second.due = now + it->second.intervalMs;
        ++fired;
        if (fire)
            fire();
    }
    return fired;
}

} // namespace Native
} // namespace UI
