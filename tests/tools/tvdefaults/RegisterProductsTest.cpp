#include "TvBase/Util/ConfigFile.h"
#include "Updater/app/VersionsText.h"

#include "tests/TvBase/Util/detail/TempConfigHome.h"
#include "tests/tools/tvdefaults/detail/RunTvdefaults.h"

#include <gtest/gtest.h>

using TestSupport::RunTvdefaults;
using TestSupport::TempConfigHome;

// Installers register products with the tool; the update decision finds them in the settings.
TEST(RegisteredProducts, AreOfferedTheNewerVersionsOfTheVersionsFile)
{
    TempConfigHome home;
    struct Product
    {
        char const* name;
        char const* version;
    };
    for (Product const& p :
         {Product{"Alpha Mixer", "3.0"}, Product{"Beta Synth", "1.5"}, Product{"Gamma", "2"}})
    {
        std::string path = std::string("InstalledProducts/") + p.name + "/CurrentVersion";
        ASSERT_EQ(RunTvdefaults({"write", "com.tavorin.updater", path, p.version}).status, 0);
    }

    Util::ConfigFile config("com.tavorin.updater");
    std::vector<boost::shared_ptr<Updater::UpdateEntry>> entries;
    std::vector<std::pair<bool, String>> reports;
    Updater::ParseVersionsText("Alpha Mixer|3.01|http://example.invalid/alpha\r\n"
                               "Beta Synth|1.5|http://example.invalid/beta\n"
                               "Gamma|10|http://example.invalid/gamma|mac,linux|note\n"
                               "Delta|9|http://example.invalid/delta\n",
                               config, entries,
                               [&](bool success, String const& text)
                               { reports.emplace_back(success, text); });

    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0]->productName, "Alpha Mixer");
    EXPECT_EQ(entries[0]->installedVersion, "3.0");
    EXPECT_EQ(entries[0]->availableVersion, "3.01");
    EXPECT_EQ(entries[0]->updateUrl, "http://example.invalid/alpha");
    EXPECT_EQ(entries[1]->productName, "Gamma");
    EXPECT_EQ(entries[1]->installedVersion, "2");
    EXPECT_EQ(entries[1]->extraText, "note");
    ASSERT_EQ(entries[1]->extraList.size(), 2u);
    EXPECT_EQ(entries[1]->extraList[1], "linux");
    ASSERT_FALSE(reports.empty());
    EXPECT_TRUE(reports.back().first);
    EXPECT_TRUE(reports.back().second.IsEmpty());

    // A later registration becomes visible to a running program after Synchronize.
    ASSERT_EQ(RunTvdefaults(
                  {"write", "com.tavorin.updater", "InstalledProducts/Delta/CurrentVersion", "8.5"})
                  .status,
              0);
    config.Synchronize();
    entries.clear();
    Updater::ParseVersionsText("Delta|9|http://example.invalid/delta\n", config, entries,
                               [](bool, String const&) {});
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0]->installedVersion, "8.5");
}
