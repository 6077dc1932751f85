#include "TvBase/Util/String.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

// Copies of one string handed to several threads: the count is shared, the text is never
// written, and each thread's own changes stay private.
TEST(StringThreads, CopiesCrossThreadsSafely)
{
    String const shared("shared text");
    std::vector<std::thread> workers;
    std::vector<String> results(4);
    for (int t = 0; t < 4; ++t)
    {
        workers.emplace_back(
            [&shared, &results, t]
            {
                String mine;
                for (int i = 0; i < 20000; ++i)
                {
                    String copy = shared;
                    String another(copy);
                    another = copy;
                    if (i % 5000 == 0)
                        mine += copy.Left(1);
                }
                mine.SetAt(0, static_cast<char>('0' + t));
                results[t] = mine;
            });
    }
    for (std::thread& w : workers)
        w.join();
    EXPECT_EQ(shared, "shared text");
    for (int t = 0; t < 4; ++t)
    {
        EXPECT_EQ(results[t].Length(), 4u);
        EXPECT_EQ(results[t][0], static_cast<char>('0' + t));
        EXPECT_EQ(results[t].Mid(1), "sss");
    }
}

// Worker threads parse version numbers at the same time as each other.
TEST(StringThreads, ParsersRunConcurrently)
{
    std::vector<std::thread> workers;
    std::vector<int> good(4, 0);
    for (int t = 0; t < 4; ++t)
    {
        workers.emplace_back(
            [&good, t]
            {
                for (int i = 0; i < 2000; ++i)
                {
                    if (String("1,5").ToFloat() == checked_value<float>(1.5f) &&
                        String("\xEF\xBC\x91\xEF\xBC\x92").ToInt() == checked_value<int>(12) &&
                        String::Number(2.5, 1) == "2.5")
                        ++good[t];
                }
            });
    }
    for (std::thread& w : workers)
        w.join();
    for (int t = 0; t < 4; ++t)
        EXPECT_EQ(good[t], 2000);
}
