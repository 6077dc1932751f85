#pragma once

// Conversions between the host's stat times and `Util::FileTime`, shared by File and Dir.

#include "TvBase/Util/FileTime.h"

#include <sys/stat.h>
#include <time.h>

namespace Util
{
namespace detail
{

inline long long ToNanoseconds(timespec const& time)
{
    return static_cast<long long>(time.tv_sec) * 1000000000LL + time.tv_nsec;
}

inline FileTime FileTimeOf(struct stat const& info)
{
    FileTime time;
    time.accessed = ToNanoseconds(info.st_atim);
    time.modified = ToNanoseconds(info.st_mtim);
    return time;
}

inline timespec ToTimespec(long long nanoseconds)
{
    long long seconds = nanoseconds / 1000000000LL;
    long long rest = nanoseconds % 1000000000LL;
    if (rest < 0)
    {
        rest += 1000000000LL;
        --seconds;
    }
    timespec result;
    result.tv_sec = static_cast<time_t>(seconds);
    result.tv_nsec = static_cast<long>(rest);
    return result;
}

} // namespace detail
} // namespace Util
