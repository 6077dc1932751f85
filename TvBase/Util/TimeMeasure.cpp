#include "TvBase/Util/TimeMeasure.h"

#include "TvBase/Util/detail/HostAlert.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <time.h>

namespace Util
{

namespace
{

std::chrono::steady_clock::time_point& startTime()
{
    static std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    return start;
}

/// The times logged so far by this process.
struct LogStatistics
{
    unsigned int count = 0;
    float sum = 0;
    float maximum = 0;
};

LogStatistics& statistics()
{
    static LogStatistics logged;
    return logged;
}

} // namespace

void TimeMeasureStart(bool)
{
    startTime() = std::chrono::steady_clock::now();
}

float TimeMeasureEnd(bool, char const* logPath)
{
    float const elapsed =
        std::chrono::duration<float, std::milli>(std::chrono::steady_clock::now() - startTime())
            .count();
    if (!logPath)
    {
        char text[64];
        std::snprintf(text, sizeof text, "Time elapsed: %1.1f ms", elapsed);
        detail::ShowHostAlert(String("Time"), String(text));
        return elapsed;
    }

    LogStatistics& logged = statistics();
    bool const first = logged.count == 0;
    ++logged.count;
    logged.sum += elapsed;
    if (elapsed > logged.maximum)
        logged.maximum = elapsed;
    // The first logged time of the process starts the file afresh; later ones are appended.
    if (std::FILE* const file = std::fopen(logPath, first ? "w" : "a+"))
    {
        std::fprintf(file, "%1.3f  mean = %1.4f  max = %1.4f  sum = %1.3f\n", elapsed,
                     logged.sum / static_cast<float>(logged.count), logged.maximum, logged.sum);
        std::fclose(file);
    }
    return elapsed;
}

double GetCycleCountSeconds()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

unsigned long long GetCPUCyclesPerSecond()
{
    // The kernel's frequency driver reports kilohertz; without one, /proc/cpuinfo's megahertz.
    {
        std::ifstream maxFrequency("/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq");
        unsigned long long kilohertz = 0;
        if (maxFrequency >> kilohertz && kilohertz > 0)
            return kilohertz * 1000ULL;
    }
    std::ifstream cpuinfo("/proc/cpuinfo");
    std::string line;
    while (std::getline(cpuinfo, line))
    {
        if (line.compare(0, 7, "cpu MHz") != 0)
            continue;
        std::string::size_type const colon = line.find(':');
        if (colon == std::string::npos)
            return 0;
        double megahertz = 0;
        if (std::sscanf(line.c_str() + colon + 1, "%lf", &megahertz) != 1 || !(megahertz > 0))
            return 0;
        return static_cast<unsigned long long>(megahertz * 1e6 + 0.5);
    }
    return 0;
}

} // namespace Util
