#include "Updater/app/VersionsText.h"

#include "tests/support/PeakMemory.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace
{

/// An in-memory settings store with the two reads of the real one: sub-keys of a path, and
/// string values by full path. Records what was asked.
class MemorySettings
{
public:
    /// Registers an installed product; a null version leaves the product without its value.
    void Install(char const* key, String const& version)
    {
        keys.push_back(key);
        if (!version.IsNull())
            values[std::string("InstalledProducts/") + key + "/CurrentVersion"] = version;
    }

    void GetKeyNames(std::vector<String>& names, String const& path)
    {
        keyPaths.push_back(path.CStr());
        names = path == "InstalledProducts" ? keys : std::vector<String>();
    }
    String GetString(String const& path, String const& defaultValue)
    {
        valuePaths.push_back(path.CStr());
        auto found = values.find(path.CStr());
        return found == values.end() ? defaultValue : found->second;
    }

    std::vector<String> keys;
    std::map<std::string, String> values;
    std::vector<std::string> keyPaths;
    std::vector<std::string> valuePaths;
};

using Report = std::pair<bool, std::string>;

struct Pass
{
    std::vector<boost::shared_ptr<Updater::UpdateEntry>> entries;
    std::vector<Report> reports;
};

Pass run(String const& text, MemorySettings& settings)
{
    Pass pass;
    Updater::ParseVersionsText(text, settings, pass.entries,
                               [&pass](bool ok, String const& message)
                               { pass.reports.emplace_back(ok, message.CStr()); });
    return pass;
}

std::string bytes(String const& s)
{
    return std::string(s.CStr(), s.Length());
}

Report const kDone(true, "");
Report const kBadLine(false, "Incorrectly formatted version line");

} // namespace

//-------------------------------------------------------------------------------------------------
// Empty input
//-------------------------------------------------------------------------------------------------

TEST(VersionsEmpty, ReportsOnceAndStops)
{
    for (String empty : {String(), String("")})
    {
        MemorySettings settings;
        settings.Install("Alpha Mixer", "1.0");
        Pass pass = run(empty, settings);
        EXPECT_TRUE(pass.entries.empty());
        ASSERT_EQ(pass.reports.size(), 1u);
        EXPECT_EQ(pass.reports[0], Report(false, "Update file empty."));
        EXPECT_TRUE(settings.keyPaths.empty());
    }
}

TEST(VersionsEmpty, NothingInstalledStillEndsInSuccess)
{
    MemorySettings settings;
    Pass pass = run("Alpha Mixer|3.0|u\nbroken\n", settings);
    EXPECT_TRUE(pass.entries.empty());
    EXPECT_EQ(pass.reports, (std::vector<Report>{kBadLine, kBadLine, kDone}));
    EXPECT_EQ(settings.keyPaths, std::vector<std::string>{"InstalledProducts"});
    EXPECT_TRUE(settings.valuePaths.empty());
}

//-------------------------------------------------------------------------------------------------
// Line grammar and entry fields
//-------------------------------------------------------------------------------------------------

TEST(VersionsLines, FiveFieldLineFillsEveryField)
{
    MemorySettings settings;
    settings.Install("Alpha Mixer", "3.0");
    Pass pass = run("Alpha Mixer|3.01|link-url|mac,win|note", settings);
    EXPECT_EQ(pass.reports, std::vector<Report>{kDone});
    ASSERT_EQ(pass.entries.size(), 1u);
    Updater::UpdateEntry const& e = *pass.entries[0];
    EXPECT_EQ(bytes(e.productName), "Alpha Mixer");
    EXPECT_EQ(bytes(e.installedVersion), "3.0");
    EXPECT_EQ(bytes(e.availableVersion), "3.01");
    EXPECT_EQ(bytes(e.updateUrl), "link-url");
    ASSERT_EQ(e.extraList.size(), 2u);
    EXPECT_EQ(bytes(e.extraList[0]), "mac");
    EXPECT_EQ(bytes(e.extraList[1]), "win");
    EXPECT_EQ(bytes(e.extraText), "note");
    EXPECT_EQ(settings.valuePaths,
              std::vector<std::string>{"InstalledProducts/Alpha Mixer/CurrentVersion"});
}

TEST(VersionsLines, OptionalFieldsStayEmptyOrNull)
{
    MemorySettings settings;
    settings.Install("A", "1");
    Pass pass = run("A|2|u\nA|2|u|x,,y\nA|2||\nA|2|u|l|t|sixth|seventh", settings);
    EXPECT_EQ(pass.reports, std::vector<Report>{kDone});
    ASSERT_EQ(pass.entries.size(), 4u);

    EXPECT_TRUE(pass.entries[0]->extraList.empty());
    EXPECT_TRUE(pass.entries[0]->extraText.IsNull());

    ASSERT_EQ(pass.entries[1]->extraList.size(), 3u);
    EXPECT_TRUE(pass.entries[1]->extraList[1].IsEmpty());
    EXPECT_TRUE(pass.entries[1]->extraText.IsNull());

    // An empty field is a field.
    EXPECT_TRUE(pass.entries[2]->updateUrl.IsEmpty());
    ASSERT_EQ(pass.entries[2]->extraList.size(), 1u);
    EXPECT_TRUE(pass.entries[2]->extraList[0].IsEmpty());

    EXPECT_EQ(bytes(pass.entries[3]->extraText), "t");
}

TEST(VersionsLines, TooFewFieldsIsReportedEvenForAnInstalledProduct)
{
    MemorySettings settings;
    settings.Install("Alpha Mixer", "1.0");
    Pass pass = run("Alpha Mixer|3.0\n\n|", settings);
    EXPECT_TRUE(pass.entries.empty());
    EXPECT_EQ(pass.reports, (std::vector<Report>{kBadLine, kBadLine, kBadLine, kDone}));
    EXPECT_TRUE(settings.valuePaths.empty());
}

TEST(VersionsLines, TrailingNewlineGivesOneMalformedLine)
{
    MemorySettings settings;
    settings.Install("A", "1.0");
    Pass pass = run("A|2.0|u\n", settings);
    EXPECT_EQ(pass.entries.size(), 1u);
    EXPECT_EQ(pass.reports, (std::vector<Report>{kBadLine, kDone}));
}

TEST(VersionsLines, CrLfEndsStayInTheLastField)
{
    MemorySettings settings;
    settings.Install("A", "1.0");
    settings.Install("B", "1.0\r");
    Pass pass = run("A|2.0|http://x/a\r\nB|2.0\r|u|p,q\r\nA|3|ht\rtp://y|l|note\r\n", settings);
    EXPECT_EQ(pass.reports, (std::vector<Report>{kBadLine, kDone}));
    ASSERT_EQ(pass.entries.size(), 3u);
    EXPECT_EQ(bytes(pass.entries[0]->updateUrl), "http://x/a");
    EXPECT_EQ(bytes(pass.entries[1]->availableVersion), "2.0\r");
    EXPECT_EQ(bytes(pass.entries[1]->installedVersion), "1.0\r");
    ASSERT_EQ(pass.entries[1]->extraList.size(), 2u);
    EXPECT_EQ(bytes(pass.entries[1]->extraList[1]), "q\r");
    EXPECT_EQ(bytes(pass.entries[2]->updateUrl), "http://y");
    EXPECT_EQ(bytes(pass.entries[2]->extraText), "note\r");
}

//-------------------------------------------------------------------------------------------------
// The decision
//-------------------------------------------------------------------------------------------------

TEST(VersionsDecision, NewerMeansStrictlyGreaterAsFloat)
{
    struct Case
    {
        char const* installed;
        char const* available;
        bool offered;
    };
    for (Case c :
         {Case{"1.5", "1.50", false}, Case{"1.10", "1.9", true}, Case{"1.9", "1.10", false},
          Case{"1,5", "1.6", true}, Case{"2.0", "2.00", false}, Case{"2", "1.99", false},
          Case{" 1.0 ", "1.01", true}, Case{"3.0", "3.00000001", false}, Case{"1.0", "nan", false},
          Case{"nan", "2.0", false}, Case{"0x1", "1.5", true}, Case{"1.0", "\xEF\xBC\x92", true}})
    {
        MemorySettings settings;
        settings.Install("P", c.installed);
        Pass pass = run(String("P|%1|u").Arg(c.available), settings);
        EXPECT_EQ(pass.entries.size(), c.offered ? 1u : 0u) << c.installed << " " << c.available;
        EXPECT_EQ(pass.reports, std::vector<Report>{kDone}) << c.installed << " " << c.available;
    }
}

TEST(VersionsDecision, UnreadableVersionsReportTheInstalledTextTwice)
{
    MemorySettings settings;
    settings.Install("Alpha Mixer", "2.0");
    settings.Install("Beta", "one");
    Pass pass = run("Alpha Mixer|3.0.1|u\nBeta|2.0|u", settings);
    EXPECT_TRUE(pass.entries.empty());
    EXPECT_EQ(pass.reports,
              (std::vector<Report>{{false, "Incorrectly formatted version for Alpha Mixer 2.0 2.0"},
                                   {false, "Incorrectly formatted version for Beta one one"},
                                   kDone}));
}

TEST(VersionsDecision, MissingSettingLeavesTwoBlanks)
{
    MemorySettings settings;
    settings.Install("Alpha Mixer", String());
    Pass pass = run("Alpha Mixer|3.0|u", settings);
    EXPECT_TRUE(pass.entries.empty());
    EXPECT_EQ(
        pass.reports,
        (std::vector<Report>{{false, "Incorrectly formatted version for Alpha Mixer  "}, kDone}));
}

TEST(VersionsDecision, KeysMatchExactlyAndUnknownProductsPassSilently)
{
    MemorySettings settings;
    settings.Install("Alpha Mixer", "1.0");
    settings.Install("Gamma", "1.0");
    Pass pass = run("alpha mixer|2|u\nAlpha Mixer |2|u\nDelta|2|u\nAlpha Mixer|2|u", settings);
    ASSERT_EQ(pass.entries.size(), 1u);
    EXPECT_EQ(bytes(pass.entries[0]->productName), "Alpha Mixer");
    EXPECT_EQ(pass.reports, std::vector<Report>{kDone});
}

TEST(VersionsDecision, FileOrderWithoutDeduplication)
{
    MemorySettings settings;
    settings.Install("B", "1");
    settings.Install("A", "1");
    Pass pass;
    pass.entries.push_back(boost::shared_ptr<Updater::UpdateEntry>(new Updater::UpdateEntry));
    Updater::ParseVersionsText("A|2|first\nB|2|second\nA|3|third", settings, pass.entries,
                               [&pass](bool ok, String const& text)
                               { pass.reports.emplace_back(ok, text.CStr()); });
    ASSERT_EQ(pass.entries.size(), 4u);
    EXPECT_TRUE(pass.entries[0]->productName.IsEmpty()); // what the caller had stays
    EXPECT_EQ(bytes(pass.entries[1]->updateUrl), "first");
    EXPECT_EQ(bytes(pass.entries[2]->updateUrl), "second");
    EXPECT_EQ(bytes(pass.entries[3]->updateUrl), "third");
    EXPECT_EQ(bytes(pass.entries[3]->availableVersion), "3");
}

TEST(VersionsDecision, StatusSequenceFollowsTheFile)
{
    MemorySettings settings;
    settings.Install("Good", "1.0");
    settings.Install("Odd", "x");
    Pass pass = run("Good|1.1|u\nno fields\nOdd|2|u\nNotInstalled|9|u\nGood|0.9|u\n", settings);
    EXPECT_EQ(pass.entries.size(), 1u);
    EXPECT_EQ(
        pass.reports,
        (std::vector<Report>{
            kBadLine, {false, "Incorrectly formatted version for Odd x x"}, kBadLine, kDone}));
}

//-------------------------------------------------------------------------------------------------
// Settings through the abstract interface
//-------------------------------------------------------------------------------------------------

namespace
{

class FixedSettings : public Updater::VersionSettings
{
public:
    void GetKeyNames(std::vector<String>& names, String const&) override { names = {"Only"}; }
    String GetString(String const&, String const& defaultValue) override
    {
        ++reads;
        return defaultValue.IsEmpty() ? String("1.0") : defaultValue;
    }
    int reads = 0;
};

} // namespace

TEST(VersionsSettings, AcceptsAnyImplementationOfTheInterface)
{
    FixedSettings settings;
    std::vector<boost::shared_ptr<Updater::UpdateEntry>> entries;
    std::vector<Report> reports;
    Updater::ParseVersionsText("Only|1.5|u\nOther|5|u", settings, entries,
                               [&reports](bool ok, String const& text)
                               { reports.emplace_back(ok, text.CStr()); });
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(bytes(entries[0]->installedVersion), "1.0");
    EXPECT_EQ(settings.reads, 1);
    EXPECT_EQ(reports, std::vector<Report>{kDone});
}

TEST(ParseVersionsText, MillionsOfBlankLinesCostMemoryInProportionToTheBody)
{
    std::string const body(16 * 1024 * 1024, '\n');
    String const text(body.c_str());
    MemorySettings settings;
    settings.Install("Alpha Mixer", "1.0");
    std::vector<boost::shared_ptr<Updater::UpdateEntry>> entries;
    std::size_t failures = 0;
    TestSupport::PeakMemory peak;
    Updater::ParseVersionsText(text, settings, entries,
                               [&failures](bool ok, String const&) { failures += ok ? 0 : 1; });
    EXPECT_EQ(body.size() + 1, failures);
    EXPECT_TRUE(entries.empty());
    if (peak.IsAvailable())
    {
        EXPECT_LT(peak.Growth(), 3 * static_cast<long long>(body.size()));
    }
}
