#include "TvBase/Util/Thread.h"

#include "TvBase/Util/CriticalSection.h"

#include <chrono>
#include <exception>
#include <sched.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace Util
{

namespace
{

enum : unsigned int
{
    StateNone = 0,
    StateStarted = 1,
    StateRunning = 2,
    StateFinished = 3
};

// The host keeps 15 bytes of a thread name; cut before a UTF-8 continuation byte so that the
// shortened name stays valid text.
constexpr unsigned int hostNameLimit = 15;

} // namespace

Thread::Thread(String const& threadName, Priority threadPriority, bool)
    : name(threadName), priority(threadPriority),
      guard(new Atomic::CriticalSection(String("%1 critical section").Arg(threadName))),
      state(StateNone), handle()
{
}

Thread::~Thread()
{
    {
        Atomic::CriticalSectionLocker hold(*guard);
        unsigned int current = state.load();
        if (current == StateStarted || current == StateRunning)
            TerminateThread();
        else if (current == StateFinished)
            joinAndReset();
    }
    delete guard;
}

void Thread::StartThread()
{
    Atomic::CriticalSectionLocker hold(*guard);
    unsigned int current = state.load();
    if (current == StateFinished)
        joinAndReset();
    else if (current == StateStarted || current == StateRunning)
        WaitThread();
    state = StateStarted;
    if (pthread_create(&handle, nullptr, &Thread::entry, this) == 0)
        hasHandle = true;
    else
        state = StateNone; // Nothing was started, so nothing can be waited for.
}

bool Thread::WaitThread(checked_value<unsigned int> const& timeoutMillis)
{
    Atomic::CriticalSectionLocker hold(*guard);
    unsigned int current = state.load();
    if (current == StateNone)
        return true;
    if (current == StateFinished || !timeoutMillis.IsPresent())
    {
        joinAndReset();
        return true;
    }
    {
        auto const deadline =
            std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMillis.Get());
        std::unique_lock<std::mutex> done(doneMutex);
        if (!doneSignal.wait_until(done, deadline, [this] { return state == StateFinished; }))
            return false;
    }
    joinAndReset();
    return true;
}

void Thread::TerminateThread()
{
    Atomic::CriticalSectionLocker hold(*guard);
    unsigned int current = state.load();
    if (current == StateNone)
        return;
    if (current == StateFinished)
        joinAndReset();
    else
        WaitThread();
}

bool Thread::IsThreadRunning()
{
    Atomic::CriticalSectionLocker hold(*guard);
    unsigned int current = state.load();
    if (current == StateFinished)
        joinAndReset();
    return current == StateStarted || current == StateRunning;
}

void Thread::joinAndReset()
{
    // A finished thread has at most its last few instructions left, so joining it here is
    // quick, and it hands the host's thread record back instead of leaking it.
    if (hasHandle)
        pthread_join(handle, nullptr);
    hasHandle = false;
    handle = pthread_t();
    state = StateNone;
}

void* Thread::entry(void* self)
{
    Thread* thread = static_cast<Thread*>(self);
    SetThreadName(thread->name);
    thread->state = StateRunning;
    try
    {
        thread->run();
        thread->tearDown();
    }
    catch (...)
    {
        std::terminate();
    }
    {
        std::lock_guard<std::mutex> done(thread->doneMutex);
        thread->state = StateFinished;
        thread->doneSignal.notify_all();
    }
    return nullptr;
}

void Thread::SleepThread(unsigned int millis)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(millis));
}

void Thread::YieldThread()
{
    sched_yield();
}

bool Thread::IsCurrentThreadMainThread()
{
    return static_cast<long>(getpid()) == syscall(SYS_gettid);
}

void Thread::SetThreadName(String const& threadName, checked_value<unsigned int> threadId)
{
    if (threadId.IsPresent())
        return;
    unsigned int length = threadName.Length();
    if (length > hostNameLimit)
    {
        length = hostNameLimit;
        while (length > 0 && (threadName[length].Byte() & 0xC0) == 0x80)
            --length;
    }
    pthread_setname_np(pthread_self(), threadName.Left(length).CStr());
}

} // namespace Util
