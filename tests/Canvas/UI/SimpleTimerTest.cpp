#include "Canvas/UI/SimpleTimer.h"

#include "Canvas/UI/CanvasUICodeToken.h"
#include "Canvas/UI/Native/TimerQueue.h"
#include "TvBase/Util/ProcessInfo.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using UI::SimpleTimer;
using UI::Native::TimerQueue;

namespace
{

/// Far enough ahead that every timer made in the test is due.
unsigned long long later(unsigned int ms = 10000)
{
    return Util::GetTickCountMillis() + ms;
}

struct CountingToken : UI::CanvasUICodeToken
{
    int enters = 0;
    int exits = 0;
    void enterUICode() override { ++enters; }
    void exitUICode() override { ++exits; }
};

} // namespace

TEST(TimerQueue, FiresDueTimersOnceAndNeverCatchesUp)
{
    TimerQueue q;
    std::vector<std::string> log;
    unsigned int a = q.Add(
        100, false, [&] { log.push_back("a"); }, 1000);
    q.Add(
        50, true, [&] { log.push_back("b"); }, 1000);
    EXPECT_NE(a, 0u);
    EXPECT_EQ(*q.NextDeadline(), 1050u);
    EXPECT_EQ(q.FireDue(1049), 0u);
    EXPECT_EQ(q.FireDue(1050), 1u);
    EXPECT_EQ(q.GetCount(), 1u);
    // Very late: one firing, and the next is one interval after it.
    EXPECT_EQ(q.FireDue(1900), 1u);
    EXPECT_EQ(*q.NextDeadline(), 2000u);
    EXPECT_EQ(log, (std::vector<std::string>{"b", "a"}));
    q.SetInterval(a, 10, 1950);
    EXPECT_EQ(*q.NextDeadline(), 1960u);
    q.Remove(a);
    q.Remove(a);
    EXPECT_FALSE(q.NextDeadline().IsPresent());
}

TEST(TimerQueue, AFiringMayRemoveOrAddTimers)
{
    TimerQueue q;
    std::vector<std::string> log;
    unsigned int second = 0;
    q.Add(
        10, true,
        [&]
        {
            log.push_back("first");
            q.Remove(second);
            q.Add(
                0, true, [&] { log.push_back("added"); }, 2000);
        },
        0);
    second = q.Add(
        10, false, [&] { log.push_back("second"); }, 0);
    q.FireDue(100);
    EXPECT_EQ(log, std::vector<std::string>{"first"});
    q.FireDue(2000);
    EXPECT_EQ(log, (std::vector<std::string>{"first", "added"}));
}

TEST(SimpleTimer, RepeatsOrFiresOnceFromTheMainQueue)
{
    int repeats = 0;
    int once = 0;
    SimpleTimer repeating([&] { ++repeats; }, 30, false);
    SimpleTimer oneShot([](void* n) { ++*static_cast<int*>(n); }, &once, 30, true);
    EXPECT_TRUE(oneShot.IsRunning());
    TimerQueue::Main().FireDue(later());
    TimerQueue::Main().FireDue(later(20000));
    EXPECT_EQ(repeats, 2);
    EXPECT_EQ(once, 1);
    EXPECT_FALSE(oneShot.IsRunning());
    EXPECT_TRUE(repeating.IsRunning());
}

TEST(SimpleTimer, DeletingStopsItEvenFromInsideItsOwnFunction)
{
    int calls = 0;
    std::unique_ptr<SimpleTimer> timer;
    timer.reset(new SimpleTimer(
        [&]
        {
            ++calls;
            timer.reset();
        },
        10, false));
    std::size_t const before = TimerQueue::Main().GetCount();
    TimerQueue::Main().FireDue(later());
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(TimerQueue::Main().GetCount(), before - 1);
    TimerQueue::Main().FireDue(later(20000));
    EXPECT_EQ(calls, 1);
}

TEST(SimpleTimer, IsNotReenteredAndHoldsTheTokenWhileRunning)
{
    auto token = boost::shared_ptr<CountingToken>(new CountingToken);
    int calls = 0;
    int countInside = -1;
    SimpleTimer timer(
        [&]
        {
            ++calls;
            countInside = static_cast<int>(token->GetCount());
            // The loop runs again from inside the function, long after the period.
            TimerQueue::Main().FireDue(later(50000));
        },
        10, false, token);
    TimerQueue::Main().FireDue(later());
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(countInside, 1);
    EXPECT_EQ(token->enters, 1);
    EXPECT_EQ(token->exits, 1);
    timer.SetUICodeToken(boost::shared_ptr<UI::CanvasUICodeToken>());
    TimerQueue::Main().FireDue(later(100000));
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(token->enters, 1);
}
