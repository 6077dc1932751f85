#include "TvBase/Util/ProcessInfo.h"

#include <ctime>
#include <unistd.h>

namespace Util
{

unsigned int GetNumLogicalProcessors()
{
    long count = sysconf(_SC_NPROCESSORS_ONLN);
    return count > 0 ? static_cast<unsigned int>(count) : 1u;
}

unsigned long long GetTickCountMillis()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<unsigned long long>(now.tv_sec) * 1000ull +
           (static_cast<unsigned long long>(now.tv_nsec) + 500000ull) / 1000000ull;
}

long long GetTimeSeconds()
{
    return static_cast<long long>(time(nullptr));
}

} // namespace Util
