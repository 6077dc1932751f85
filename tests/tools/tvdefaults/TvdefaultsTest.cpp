#include "TvBase/Util/ConfigFile.h"
#include "Updater/app/VersionsText.h"

#include "tests/TvBase/Util/detail/TempConfigHome.h"
#include "tests/tools/tvdefaults/detail/RunTvdefaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sys/stat.h>

using TestSupport::RunTvdefaults;
using TestSupport::TempConfigHome;
using TestSupport::ToolRun;
using Util::ConfigFile;

namespace
{

/// Runs the tool and expects success.
std::string ok(std::vector<std::string> const& args)
{
    ToolRun run = RunTvdefaults(args);
    EXPECT_EQ(run.status, 0) << args[0] << " " << (args.size() > 2 ? args[2] : "") << ": "
                             << run.err;
    return run.out;
}

std::size_t lineCount(std::string const& text)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

} // namespace

TEST(Tvdefaults, RoundTripsEveryType)
{
    TempConfigHome home;
    char const* d = "com.test.tool";
    ok({"write", d, "s", "hello world"});
    ok({"write", d, "s2", "-string", "-int"});
    ok({"write", d, "i", "-int", "-42"});
    ok({"write", d, "u", "-int", "4294967295"});
    ok({"write", d, "wide", "-int", "8589934594"});
    ok({"write", d, "yes", "-bool", "YES"});
    ok({"write", d, "no", "-bool", "0"});
    ok({"write", d, "f", "-float", "0.1"});
    ok({"write", d, "blob", "-data", "00ff7F"});

    EXPECT_EQ(ok({"read", d, "s"}), "hello world\n");
    EXPECT_EQ(ok({"read", d, "s", "-string"}), "hello world\n");
    EXPECT_EQ(ok({"read", d, "s2"}), "-int\n");
    EXPECT_EQ(ok({"read", d, "i", "-int"}), "-42\n");
    EXPECT_EQ(ok({"read", d, "wide"}), "8589934594\n");
    EXPECT_EQ(ok({"read", d, "yes", "-bool"}), "true\n");
    EXPECT_EQ(ok({"read", d, "no", "-bool"}), "false\n");
    EXPECT_EQ(ok({"read", d, "f", "-float"}), "0.100000001\n");
    EXPECT_EQ(ok({"read", d, "blob", "-data"}), "00ff7f\n");

    // What the tool wrote is what the library reads.
    ConfigFile config(d);
    EXPECT_EQ(config.GetString("s"), "hello world");
    EXPECT_EQ(config.GetInt("i", 0), -42);
    EXPECT_EQ(config.GetUInt("u", 0), 0xFFFFFFFFu);
    EXPECT_EQ(config.GetUInt64("wide", 0), 2u);
    EXPECT_TRUE(config.GetBool("yes", false));
    EXPECT_FALSE(config.GetBool("no", true));
    EXPECT_EQ(config.GetFloat("f", 0), 0.1f);
    std::vector<unsigned char> data;
    EXPECT_TRUE(config.GetBinary("blob", data));
    EXPECT_EQ(data, (std::vector<unsigned char>{0x00, 0xFF, 0x7F}));

    // And the other way round, including the old float form.
    config.SetFloat("mine", -2.5f);
    unsigned char old[] = {0x3F, 0xC0, 0x00, 0x00};
    config.SetBinary("old", old, sizeof old);
    config.SetString("a//b", "slashes");
    config.Synchronize();
    EXPECT_EQ(ok({"read", d, "mine", "-float"}), "-2.5\n");
    EXPECT_EQ(ok({"read", d, "old", "-float"}), "1.5\n");
    EXPECT_EQ(ok({"read", d, "a//b"}), "slashes\n");
}

TEST(Tvdefaults, ReadsTheWholeDomainInPathOrder)
{
    TempConfigHome home;
    char const* d = "com.test.listing";
    ok({"write", d, "b/x", "2"});
    ok({"write", d, "B", "-int", "1"});
    ok({"write", d, "a b", "two\nlines"});
    ok({"write", d, "c", "-data", "0102"});
    EXPECT_EQ(ok({"read", d}), "B = 1\na b = two\\nlines\nb/x = 2\nc = 0102\n");

    // A domain with nothing in it lists nothing, successfully.
    EXPECT_EQ(ok({"read", "com.test.nothing"}), "");
}

TEST(Tvdefaults, ListsKeysAndValues)
{
    TempConfigHome home;
    char const* d = "com.tavorin.updater";
    ok({"write", d, "InstalledProducts/Alpha Mixer/CurrentVersion", "3.0"});
    ok({"write", d, "InstalledProducts/Beta/CurrentVersion", "1"});
    ok({"write", d, "LastResult", ""});
    EXPECT_EQ(ok({"keys", d}), "InstalledProducts\n");
    EXPECT_EQ(ok({"keys", d, "InstalledProducts"}), "Alpha Mixer\nBeta\n");
    EXPECT_EQ(ok({"values", d}), "LastResult\n");
    EXPECT_EQ(ok({"values", d, "installedproducts/alpha mixer/"}), "CurrentVersion\n");
    EXPECT_EQ(ok({"read", d, "InstalledProducts/Alpha Mixer/CurrentVersion"}), "3.0\n");
}

TEST(Tvdefaults, DeletesFromBothOfTheUsersScopes)
{
    TempConfigHome home;
    char const* d = "com.test.delete";
    {
        ConfigFile config(d);
        config.SetString("k", "plain");
        config.SetStringLegacyLocation("k", "host");
        config.SetString("other", "stays");
    }
    ok({"delete", d, "k"});
    EXPECT_EQ(RunTvdefaults({"read", d, "k"}).status, 1);
    EXPECT_EQ(ok({"read", d, "other"}), "stays\n");
    ToolRun again = RunTvdefaults({"delete", d, "k"});
    EXPECT_EQ(again.status, 1);
    EXPECT_NE(again.err.find("no value k"), std::string::npos);
}

TEST(Tvdefaults, ReportsErrorsWithTheirExitStatus)
{
    TempConfigHome home;
    char const* d = "com.test.errors";
    ok({"write", d, "text", "t"});

    std::vector<std::vector<std::string>> const usageErrors = {
        {},
        {"read"},
        {"frobnicate", d},
        {"write", d, "k"},
        {"write", d, "k", "-long", "1"},
        {"write", d, "k", "-int", "12x"},
        {"write", d, "k", "-int", ""},
        {"write", d, "k", "-int", "99999999999999999999999"},
        {"write", d, "k", "-bool", "maybe"},
        {"write", d, "k", "-data", "abc"},
        {"write", d, "k", "-data", "zz"},
        {"write", d, "k", "-float", "one"},
        {"write", d, "k", "-float", ""},
        {"write", d, "k", "-string", "v", "extra"},
        {"read", d, "text", "-text"},
        {"read", d, "text", "-string", "extra"},
        {"delete", d},
        {"keys", d, "a", "b"},
        {"read", ""},
        {"read", d, "bad\xFFpath"},
        // Text the settings file cannot hold is refused, never stored as something else.
        {"write", d, "k", "bad\xFFvalue"},
        {"write", d, "k", "-string", "bell\x07"},
        {"write", d, "k", "\x1B[31mred"},
    };
    for (auto const& args : usageErrors)
    {
        ToolRun run = RunTvdefaults(args);
        std::string shown = args.empty() ? "(none)" : args[0];
        EXPECT_EQ(run.status, 2) << shown << " " << args.size();
        EXPECT_EQ(run.out, "") << shown;
        // The usage itself is one line, after at most one line saying what was wrong.
        EXPECT_NE(run.err.find("usage: tvdefaults"), std::string::npos) << shown;
        EXPECT_LE(lineCount(run.err), 2u) << shown;
    }
    // None of the bad writes stored anything.
    EXPECT_EQ(ok({"read", d}), "text = t\n");

    ToolRun missing = RunTvdefaults({"read", d, "nothing"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.out, "");
    EXPECT_NE(missing.err.find("nothing"), std::string::npos);
    // A value of another type is missing for a typed read.
    EXPECT_EQ(RunTvdefaults({"read", d, "text", "-int"}).status, 1);
    EXPECT_EQ(RunTvdefaults({"read", d, "text", "-float"}).status, 1);

    ToolRun help = RunTvdefaults({"--help"});
    EXPECT_EQ(help.status, 0);
    for (char const* command : {"read", "write", "delete", "keys", "values", "-data"})
        EXPECT_NE(help.out.find(command), std::string::npos) << command;
}

TEST(Tvdefaults, SaysSoWhenTheSettingsCannotBeSaved)
{
    TempConfigHome home;
    // A file where the settings folder would have to be.
    std::string blocker = home.Root() + "/blocked";
    std::ofstream(blocker) << "not a folder";
    TestSupport::ScopedEnv config("XDG_CONFIG_HOME", blocker.c_str());
    ToolRun run = RunTvdefaults({"write", "com.test.blocked", "k", "v"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "tvdefaults: could not save com.test.blocked: " + blocker +
                           "/tavorin: Not a directory\n");
}

TEST(Tvdefaults, TextWithTabsAndLineBreaksReadsBackExactly)
{
    TempConfigHome home;
    for (std::string const value : {"a\tb", "two\r\nlines\n", "caf\xC3\xA9 \xF0\x9F\x8E\xB9", " "})
    {
        ok({"write", "com.test.exact", "k", value});
        EXPECT_EQ(ok({"read", "com.test.exact", "k"}), value + "\n");
    }
}

// Installers register products with the tool; the update decision finds them in the settings.
TEST(Tvdefaults, RegisteredProductsAreOfferedTheNewerVersionsOfTheVersionsFile)
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
        ok({"write", "com.tavorin.updater", path, p.version});
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
    ok({"write", "com.tavorin.updater", "InstalledProducts/Delta/CurrentVersion", "8.5"});
    config.Synchronize();
    entries.clear();
    Updater::ParseVersionsText("Delta|9|http://example.invalid/delta\n", config, entries,
                               [](bool, String const&) {});
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0]->installedVersion, "8.5");
}
