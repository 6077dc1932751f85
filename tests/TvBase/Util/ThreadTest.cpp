#include "TvBase/Util/Thread.h"
#include "TvBase/Util/Atomic.h"
#include "TvBase/Util/CriticalSection.h"
#include "TvBase/Util/Module.h"
#include "TvBase/Util/ProcessInfo.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{

/// A run that waits until the test opens its gate, counting runs and overlapping runs.
class GatedThread : public Util::Thread
{
public:
    explicit GatedThread(String const& name = "Gated Thread") : Util::Thread(name) {}
    ~GatedThread() override
    {
        Open();
        WaitThread();
    }

    void Open()
    {
        std::lock_guard<std::mutex> hold(mutex);
        open = true;
        changed.notify_all();
    }
    void Close()
    {
        std::lock_guard<std::mutex> hold(mutex);
        open = false;
    }
    /// Blocks until a run has entered `run`.
    void WaitUntilInside(int runNumber)
    {
        std::unique_lock<std::mutex> hold(mutex);
        changed.wait(hold, [&] { return started >= runNumber; });
    }
    int Runs()
    {
        std::lock_guard<std::mutex> hold(mutex);
        return finished;
    }
    int MostAtOnce()
    {
        std::lock_guard<std::mutex> hold(mutex);
        return mostAtOnce;
    }
    std::vector<std::string> Events()
    {
        std::lock_guard<std::mutex> hold(mutex);
        return events;
    }
    std::string HostName()
    {
        std::lock_guard<std::mutex> hold(mutex);
        return hostName;
    }

protected:
    void run() override
    {
        std::unique_lock<std::mutex> hold(mutex);
        char name[64] = {};
        pthread_getname_np(pthread_self(), name, sizeof name);
        hostName = name;
        ++started;
        ++inside;
        mostAtOnce = std::max(mostAtOnce, inside);
        events.push_back("run");
        changed.notify_all();
        changed.wait(hold, [&] { return open; });
        --inside;
        ++finished;
    }
    void tearDown() override
    {
        std::lock_guard<std::mutex> hold(mutex);
        events.push_back("tearDown");
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    bool open = false;
    int started = 0;
    int finished = 0;
    int inside = 0;
    int mostAtOnce = 0;
    std::vector<std::string> events;
    std::string hostName;
};

} // namespace

TEST(ThreadStates, WalkFromStartToFinish)
{
    GatedThread thread;
    EXPECT_FALSE(thread.IsThreadRunning());
    EXPECT_TRUE(thread.WaitThread(0u)) << "a thread that never started counts as ended";
    thread.TerminateThread(); // nothing to do

    thread.StartThread();
    EXPECT_TRUE(thread.IsThreadRunning());
    thread.WaitUntilInside(1);
    EXPECT_TRUE(thread.IsThreadRunning());
    EXPECT_FALSE(thread.WaitThread(0u)) << "a zero limit only looks";
    EXPECT_FALSE(thread.WaitThread(20u));
    EXPECT_TRUE(thread.IsThreadRunning());

    thread.Open();
    EXPECT_TRUE(thread.WaitThread(60000u));
    EXPECT_FALSE(thread.IsThreadRunning());
    EXPECT_TRUE(thread.WaitThread(0u));
    EXPECT_EQ(1, thread.Runs());
    EXPECT_EQ((std::vector<std::string>{"run", "tearDown"}), thread.Events());
    // A finished run is seen as stopped by every reader.
    thread.TerminateThread();
    EXPECT_FALSE(thread.IsThreadRunning());
}

TEST(ThreadRestart, FinishedThreadRunsAgain)
{
    GatedThread thread;
    thread.Open();
    for (int run = 1; run <= 3; ++run)
    {
        thread.StartThread();
        EXPECT_TRUE(thread.WaitThread());
        EXPECT_EQ(run, thread.Runs());
    }
    // Restart straight after a run ended, without a wait in between.
    thread.StartThread();
    thread.WaitUntilInside(4);
    thread.StartThread();
    EXPECT_TRUE(thread.WaitThread());
    EXPECT_EQ(5, thread.Runs());
    EXPECT_EQ(1, thread.MostAtOnce());
}

TEST(ThreadRestart, StartWhileRunningWaitsForTheEarlierRun)
{
    GatedThread thread;
    thread.StartThread();
    thread.WaitUntilInside(1);
    std::thread starter([&] { thread.StartThread(); });
    thread.Open();
    starter.join();
    EXPECT_TRUE(thread.WaitThread());
    EXPECT_EQ(2, thread.Runs());
    EXPECT_EQ(1, thread.MostAtOnce()) << "two runs of one object overlapped";
}

TEST(ThreadTerminate, WaitsForRunInsteadOfInterrupting)
{
    GatedThread thread;
    thread.StartThread();
    thread.WaitUntilInside(1);
    std::thread opener([&] { thread.Open(); });
    thread.TerminateThread();
    opener.join();
    EXPECT_EQ(1, thread.Runs()) << "run was cut short";
    EXPECT_FALSE(thread.IsThreadRunning());
}

TEST(ThreadNames, HostKeepsFifteenBytesObjectKeepsAll)
{
    GatedThread longName("Marketing message Thread");
    longName.Open();
    longName.StartThread();
    longName.WaitThread();
    EXPECT_EQ("Marketing messa", longName.HostName());
    EXPECT_EQ(String("Marketing message Thread"), longName.GetName());

    // "é" takes two bytes and would straddle the limit; it is left out whole.
    GatedThread accented("Mise à jourééé");
    accented.Open();
    accented.StartThread();
    accented.WaitThread();
    EXPECT_EQ("Mise à jouré", accented.HostName());

    EXPECT_EQ(Util::Thread::PriorityDefault, longName.GetPriority());
}

TEST(CriticalSectionLocking, IsRecursiveAndExcludesOtherThreads)
{
    Atomic::CriticalSection section("Test Critical Section");
    EXPECT_EQ(String("Test Critical Section"), section.GetName());
    section.Lock();
    EXPECT_TRUE(section.TryLock()) << "the holder may lock again";

    auto tryFromOther = [&]
    {
        bool got = false;
        std::thread other(
            [&]
            {
                got = section.TryLock();
                if (got)
                    section.Unlock();
            });
        other.join();
        return got;
    };
    EXPECT_FALSE(tryFromOther());
    section.Unlock();
    EXPECT_FALSE(tryFromOther()) << "one unlock of two must keep the lock";
    section.Unlock();
    EXPECT_TRUE(tryFromOther());

    {
        Atomic::CriticalSectionLocker hold(section);
        EXPECT_FALSE(tryFromOther());
    }
    EXPECT_TRUE(tryFromOther());
}

TEST(CriticalSectionLocking, LockOnAccessInstanceHoldsLockForTheAccess)
{
    Atomic::CriticalSection section("Guard");
    Atomic::LockOnAccessInstance<std::vector<int>> guarded(&section, 3u, 7);
    {
        Atomic::LockOnAccessInstance<std::vector<int>>::Access access(guarded);
        EXPECT_EQ(3u, access->size());
        EXPECT_EQ(7, (*access)[2]);
        bool got = true;
        std::thread other([&] { got = section.TryLock(); });
        other.join();
        EXPECT_FALSE(got);
    }
    EXPECT_TRUE(section.TryLock());
    section.Unlock();
}

TEST(AtomicHelpers, CompareExchangeAndCountAcrossThreads)
{
    unsigned int volatile value = 5;
    EXPECT_FALSE(Atomic::AtomicCompareExchange(value, 9, 4));
    EXPECT_EQ(5u, Atomic::AtomicRead(value));
    EXPECT_TRUE(Atomic::AtomicCompareExchange(value, 9, 5));
    EXPECT_EQ(9u, Atomic::AtomicRead(value));
    Atomic::AtomicWrite(value, 0xFFFFFFFFu);
    EXPECT_EQ(0u, Atomic::AtomicIncrement(value)) << "wraps at 32 bits";
    EXPECT_EQ(0xFFFFFFFFu, Atomic::AtomicDecrement(value));

    int target = 0;
    void* volatile pointer = nullptr;
    Atomic::AtomicWrite(pointer, &target);
    EXPECT_EQ(&target, Atomic::AtomicRead(pointer));

    unsigned int volatile counter = 0;
    std::vector<std::thread> workers;
    for (int t = 0; t < 4; ++t)
        workers.emplace_back(
            [&]
            {
                for (int i = 0; i < 10000; ++i)
                    Atomic::AtomicIncrement(counter);
            });
    for (std::thread& worker : workers)
        worker.join();
    EXPECT_EQ(40000u, Atomic::AtomicRead(counter));
}

TEST(ModuleLoading, LoadsLibrariesAndFindsSymbolsOrFailsQuietly)
{
    Util::Module empty{String("")};
    EXPECT_FALSE(empty.Load());
    EXPECT_FALSE(empty.IsLoaded());
    EXPECT_EQ(nullptr, empty.GetFunction("cos"));
    empty.Unload();
    Util::Module missing{String("/nonexistent/libnothing.so")};
    EXPECT_FALSE(missing.Load());
    EXPECT_TRUE(missing.GetArchitectures().empty());

    Util::Module math{String("libm.so.6")};
    ASSERT_TRUE(math.Load());
    EXPECT_TRUE(math.Load()) << "a second load is a no-op";
    using Cosine = double (*)(double);
    Cosine cosine = reinterpret_cast<Cosine>(math.GetFunction("cos"));
    ASSERT_NE(nullptr, cosine);
    EXPECT_DOUBLE_EQ(1.0, cosine(0.0));
    EXPECT_EQ(nullptr, math.GetFunction("no_such_symbol_here"));
    EXPECT_TRUE(math.GetBundleInfoValue("CFBundleVersion").IsNull());
    math.Unload();
    EXPECT_FALSE(math.IsLoaded());
    EXPECT_EQ(nullptr, math.GetFunction("cos"));
}

namespace
{

void appendBigEndian(std::vector<unsigned char>& out, unsigned int word)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        out.push_back(static_cast<unsigned char>(word >> shift));
}

std::vector<unsigned char> fatFile(unsigned int count, unsigned int listed)
{
    std::vector<unsigned char> bytes;
    appendBigEndian(bytes, 0xCAFEBABE);
    appendBigEndian(bytes, count);
    for (unsigned int i = 0; i < listed; ++i)
    {
        appendBigEndian(bytes, i % 2 ? 7 : 0x1000007);
        for (int word = 0; word < 4; ++word)
            appendBigEndian(bytes, 0);
    }
    return bytes;
}

} // namespace

TEST(ModuleArchitectures, ReadsPlainAndFatHeaders)
{
    TestSupport::TempFolder folder("tv-module");
    using Arch = std::vector<Util::MachineArchitecture>;
    auto architectures = [&](std::string const& name, std::vector<unsigned char> const& bytes)
    {
        return Util::Module(
                   String(folder.Write(name, std::string(bytes.begin(), bytes.end())).c_str()))
            .GetArchitectures();
    };

    // 64-bit, little-endian: magic 0xFEEDFACF stored swapped, CPU type 0x01000007.
    std::vector<unsigned char> thin = {0xCF, 0xFA, 0xED, 0xFE, 0x07, 0x00, 0x00, 0x01};
    thin.resize(32, 0);
    EXPECT_EQ(Arch{Util::MachineArchitecture_x86_64}, architectures("thin", thin));
    thin.resize(20);
    EXPECT_EQ(Arch{}, architectures("short", thin));
    // 32-bit big-endian ppc.
    std::vector<unsigned char> ppc = {0xFE, 0xED, 0xFA, 0xCE, 0x00, 0x00, 0x00, 18};
    ppc.resize(28, 0);
    EXPECT_EQ(Arch{Util::MachineArchitecture_ppc}, architectures("ppc", ppc));

    Arch nineteen = architectures("fat19", fatFile(19, 19));
    ASSERT_EQ(19u, nineteen.size());
    EXPECT_EQ(Util::MachineArchitecture_x86_64, nineteen[0]);
    EXPECT_EQ(Util::MachineArchitecture_i386, nineteen[1]);
    EXPECT_EQ(Arch{}, architectures("fat20", fatFile(20, 20)));
    EXPECT_EQ(2u, architectures("fatcut", fatFile(5, 2)).size())
        << "entries past the end of the file are not invented";
    EXPECT_EQ(Arch{}, architectures("tiny", {0xCA, 0xFE, 0xBA}));
    EXPECT_EQ(Arch{}, architectures("elf", {0x7F, 'E', 'L', 'F'}));
}

TEST(ProcessInfo, ClocksAndProcessorCount)
{
    EXPECT_GE(Util::GetNumLogicalProcessors(), 1u);
    unsigned long long first = Util::GetTickCountMillis();
    Util::Thread::SleepThread(20);
    unsigned long long second = Util::GetTickCountMillis();
    EXPECT_GE(second - first, 19u);
    EXPECT_GT(Util::GetTimeSeconds(), 1600000000LL);
    EXPECT_TRUE(Util::Thread::IsCurrentThreadMainThread());
    bool otherIsMain = true;
    std::thread other([&] { otherIsMain = Util::Thread::IsCurrentThreadMainThread(); });
    other.join();
    EXPECT_FALSE(otherIsMain);
}
