#include "TvBase/Util/TimeMeasure.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

namespace
{
struct LogLine
{
    float elapsed, mean, maximum, sum;
};

/// Reads the lines back with the format they were written with.
std::vector<LogLine> readLog(std::string const& text)
{
    std::vector<LogLine> lines;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line))
    {
        LogLine l{};
        char tail = 0;
        int const fields = std::sscanf(line.c_str(), "%f  mean = %f  max = %f  sum = %f%c",
                                       &l.elapsed, &l.mean, &l.maximum, &l.sum, &tail);
        EXPECT_EQ(4, fields) << line;
        lines.push_back(l);
    }
    return lines;
}
} // namespace

// The log statistics are process-wide, so one test walks the whole story in order.
TEST(TimeMeasure, LogStartsAfreshThenAppendsRunningStatistics)
{
    TestSupport::TempFolder folder("tv-time");
    std::string const path = folder.Write("times.log", "old contents\n");

    std::vector<float> elapsed;
    for (int i = 0; i < 3; ++i)
    {
        Util::TimeMeasureStart(true);
        double const start = Util::GetCycleCountSeconds();
        // Some real work, so that the times differ from run to run.
        volatile unsigned int sink = 0;
        for (unsigned int n = 0; n < 200000u * (i + 1); ++n)
            sink = sink + n;
        double const stop = Util::GetCycleCountSeconds();
        EXPECT_GE(stop, start);
        float const ms = Util::TimeMeasureEnd(false, path.c_str());
        EXPECT_GE(ms, 0.0f);
        elapsed.push_back(ms);
    }

    std::string const text = TestSupport::ReadFile(path);
    EXPECT_EQ(std::string::npos, text.find("old contents"));
    std::vector<LogLine> const lines = readLog(text);
    ASSERT_EQ(3u, lines.size());
    float sum = 0;
    float maximum = 0;
    for (int i = 0; i < 3; ++i)
    {
        sum += elapsed[i];
        maximum = std::max(maximum, elapsed[i]);
        EXPECT_NEAR(elapsed[i], lines[i].elapsed, 0.001f);
        EXPECT_NEAR(sum, lines[i].sum, 0.001f);
        EXPECT_NEAR(maximum, lines[i].maximum, 0.0001f);
        EXPECT_NEAR(sum / (i + 1), lines[i].mean, 0.0001f);
    }
    // "%1.3f" gives three decimals for the time and the sum, four for the rest.
    std::string const first = text.substr(0, text.find('\n'));
    EXPECT_EQ(first.find('.') + 4, first.find("  mean = "));

    // A path that can't be opened is skipped, and still counts.
    EXPECT_GE(Util::TimeMeasureEnd(false, (folder.Path() + "/no/such/folder.log").c_str()), 0.0f);
}

TEST(TimeMeasure, CyclesPerSecondIsPlausibleOrUnknown)
{
    unsigned long long const hertz = Util::GetCPUCyclesPerSecond();
    if (hertz != 0)
    {
        EXPECT_GT(hertz, 10000000ULL);
        EXPECT_LT(hertz, 100000000000ULL);
    }
}
