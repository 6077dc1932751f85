#include "TvBase/Util/ConfigFile.h"

#include "tests/TvBase/Util/detail/TempConfigHome.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using TestSupport::TempConfigHome;
using Util::ConfigFile;

// The update worker and the user-interface thread each hold their own handle on one domain.
TEST(ConfigFileThreads, SeparateHandlesOnOneDomainShareEveryWrite)
{
    TempConfigHome home;
    int const count = 400;
    std::atomic<bool> stop(false);
    std::atomic<int> listings(0);

    auto writer = [&](char const* key)
    {
        ConfigFile config("com.test.threads");
        for (int i = 0; i < count; ++i)
        {
            config.SetString(String("%1/%2").Arg(key).Arg(i), String::Number(i));
            EXPECT_EQ(config.GetString(String("%1/%2").Arg(key).Arg(i)), String::Number(i));
            if (i % 50 == 0)
                config.Synchronize();
        }
    };
    auto lister = [&]
    {
        ConfigFile config("com.test.threads");
        std::vector<String> names;
        while (!stop)
        {
            config.GetKeyNames(names, "");
            config.GetValueNames(names, "worker");
            std::vector<unsigned char> none;
            config.GetBinary("worker/0", none);
            ++listings;
        }
    };

    std::thread listing(lister);
    std::thread worker(writer, "worker");
    std::thread ui(writer, "ui");
    worker.join();
    ui.join();
    stop = true;
    listing.join();
    EXPECT_GT(listings.load(), 0);

    ConfigFile config("com.test.threads");
    std::vector<String> names;
    config.GetKeyNames(names, "");
    EXPECT_EQ(names.size(), 2u);
    config.GetValueNames(names, "worker");
    EXPECT_EQ(names.size(), static_cast<std::size_t>(count));
    config.GetValueNames(names, "ui");
    EXPECT_EQ(names.size(), static_cast<std::size_t>(count));

    // Everything reached the file.
    config.Synchronize();
    home.SwitchToOtherView();
    ConfigFile other("com.test.threads");
    other.GetValueNames(names, "ui");
    EXPECT_EQ(names.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(other.GetString("worker/399"), "399");
}

TEST(ConfigFileThreads, ConcurrentSynchronizeOfTwoDomainsAndViews)
{
    TempConfigHome home;
    ConfigFile mine("com.test.views");
    ConfigFile other("com.test.others");
    home.SwitchToOtherView();
    ConfigFile mineElsewhere("com.test.views");

    auto run = [](ConfigFile* config, char const* key)
    {
        for (int i = 0; i < 60; ++i)
        {
            config->SetInt(String("%1/%2").Arg(key).Arg(i), i);
            config->Synchronize();
        }
    };
    std::thread a(run, &mine, "a");
    std::thread b(run, &mineElsewhere, "b");
    std::thread c(run, &other, "c");
    a.join();
    b.join();
    c.join();

    mine.Synchronize();
    mineElsewhere.Synchronize();
    for (ConfigFile* config : {&mine, &mineElsewhere})
    {
        std::vector<String> names;
        config->GetKeyNames(names, "");
        ASSERT_EQ(names.size(), 2u);
        EXPECT_EQ(names[0], "a");
        EXPECT_EQ(names[1], "b");
        EXPECT_EQ(config->GetInt("a/59", -1), 59);
        EXPECT_EQ(config->GetInt("b/59", -1), 59);
    }
    EXPECT_EQ(other.GetInt("c/59", -1), 59);
}
