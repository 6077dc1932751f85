#include "tests/support/PeakMemory.h"

#include <fstream>
#include <string>

namespace TestSupport
{

namespace
{

/// A "Vm...:  N kB" line of /proc/self/status in bytes, or -1.
long long statusBytes(char const* key)
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word)
    {
        if (word == key)
        {
            long long kilobytes = -1;
            status >> kilobytes;
            return kilobytes < 0 ? -1 : kilobytes * 1024;
        }
    }
    return -1;
}

} // namespace

PeakMemory::PeakMemory()
{
#if defined(__SANITIZE_ADDRESS__)
    // The sanitizer keeps freed blocks in quarantine, so resident memory says nothing.
    return;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    return;
#endif
#endif
    // "5" sets the peak back to the current resident size.
    std::ofstream reset("/proc/self/clear_refs");
    reset << "5";
    reset.close();
    if (reset.fail())
        return;
    baseline = statusBytes("VmHWM:");
}

long long PeakMemory::Growth() const
{
    return baseline < 0 ? 0 : statusBytes("VmHWM:") - baseline;
}

} // namespace TestSupport
