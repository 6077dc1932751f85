#include "Updater/app/VersionsText.h"

#include "TvBase/Util/ConfigFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdlib.h>
#include <string>

namespace
{

/// Points the settings store at a fresh temp folder for one test and removes it afterwards.
class VersionsRealSettings : public ::testing::Test
{
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/tv-updater-settings-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder = pattern;
        save("XDG_CONFIG_HOME", folder + "/home");
        save("XDG_CONFIG_DIRS", folder + "/system");
    }
    void TearDown() override
    {
        for (auto const& [name, value] : saved)
        {
            if (value.first)
                setenv(name.c_str(), value.second.c_str(), 1);
            else
                unsetenv(name.c_str());
        }
        if (!folder.empty())
            std::system(("rm -rf '" + folder + "'").c_str());
    }

    std::string folder;

private:
    void save(char const* name, std::string const& value)
    {
        char const* old = std::getenv(name);
        saved.emplace_back(name, std::make_pair(old != nullptr, old ? std::string(old) : ""));
        setenv(name, value.c_str(), 1);
    }
    std::vector<std::pair<std::string, std::pair<bool, std::string>>> saved;
};

} // namespace

TEST_F(VersionsRealSettings, DecidesAgainstTheRealSettingsStore)
{
    String const domain("com.tavorin.updaterdecisiontest");
    {
        Util::ConfigFile writer(domain);
        writer.SetString("InstalledProducts/Alpha Mixer/CurrentVersion", "3.0");
        writer.SetString("InstalledProducts/Beta Synth/CurrentVersion", "1.9");
        writer.SetString("InstalledProducts/Gamma/Other", "5");
        writer.Synchronize();
    }

    Util::ConfigFile const settings(domain);
    std::vector<boost::shared_ptr<Updater::UpdateEntry>> entries;
    std::vector<std::pair<bool, std::string>> reports;
    Updater::ParseVersionsText("Alpha Mixer|3.01|https://a/\r\nBeta Synth|1.10|https://b/\r\n"
                               "Gamma|2|https://g/\r\n",
                               settings, entries,
                               [&reports](bool ok, String const& text)
                               { reports.emplace_back(ok, text.CStr()); });

    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0]->productName, "Alpha Mixer");
    EXPECT_EQ(entries[0]->installedVersion, "3.0");
    EXPECT_EQ(entries[0]->updateUrl, "https://a/");
    // Gamma is installed but has no version; the empty last line is malformed.
    EXPECT_EQ(reports, (std::vector<std::pair<bool, std::string>>{
                           {false, "Incorrectly formatted version for Gamma  "},
                           {false, "Incorrectly formatted version line"},
                           {true, ""}}));
}
