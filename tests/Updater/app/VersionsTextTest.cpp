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

std::string shown(String const& s)
{
    return s.IsNull() ? "(null)" : bytes(s);
}

/// An entry in one line: name|installed|available|url|[list]|extra text.
std::string describe(Updater::UpdateEntry const& e)
{
    std::string list;
    for (String const& item : e.extraList)
        list += (list.empty() ? "" : ",") + shown(item);
    return shown(e.productName) + "|" + shown(e.installedVersion) + "|" +
           shown(e.availableVersion) + "|" + shown(e.updateUrl) + "|[" + list + "]|" +
           shown(e.extraText);
}

std::vector<std::string> described(Pass const& pass)
{
    std::vector<std::string> out;
    for (auto const& entry : pass.entries)
        out.push_back(describe(*entry));
    return out;
}

Report const kDone(true, "");
Report const kBadLine(false, "Incorrectly formatted version line");

} // namespace

TEST(ParseVersionsText, EmptyInputReportsOnceAndReadsNoSettings)
{
    for (String empty : {String(), String("")})
    {
        MemorySettings settings;
        settings.Install("Alpha Mixer", "1.0");
        Pass pass = run(empty, settings);
        EXPECT_TRUE(pass.entries.empty());
        EXPECT_EQ(pass.reports, std::vector<Report>{Report(false, "Update file empty.")});
        EXPECT_TRUE(settings.keyPaths.empty());
    }
}

TEST(ParseVersionsText, LinesEntriesAndReports)
{
    struct Installed
    {
        char const* key;
        String version;
    };
    struct Case
    {
        std::vector<Installed> installed;
        char const* text;
        std::vector<std::string> entries;
        std::vector<Report> reports;
    };
    Case const cases[] = {
        // Nothing installed still ends in success.
        {{}, "Alpha Mixer|3.0|u\nbroken\n", {}, {kBadLine, kBadLine, kDone}},
        {{{"Alpha Mixer", "3.0"}},
         "Alpha Mixer|3.01|link-url|mac,win|note",
         {"Alpha Mixer|3.0|3.01|link-url|[mac,win]|note"},
         {kDone}},
        // Optional fields stay empty or null; an empty field is a field; fields past five drop.
        {{{"A", "1"}},
         "A|2|u\nA|2|u|x,,y\nA|2||\nA|2|u|l|t|sixth|seventh",
         {"A|1|2|u|[]|(null)", "A|1|2|u|[x,,y]|(null)", "A|1|2||[(null)]|(null)", "A|1|2|u|[l]|t"},
         {kDone}},
        // Too few fields is reported even for an installed product.
        {{{"Alpha Mixer", "1.0"}},
         "Alpha Mixer|3.0\n\n|",
         {},
         {kBadLine, kBadLine, kBadLine, kDone}},
        // A trailing newline gives one malformed line.
        {{{"A", "1.0"}}, "A|2.0|u\n", {"A|1.0|2.0|u|[]|(null)"}, {kBadLine, kDone}},
        // CR LF ends stay in the last field; the address loses every CR.
        {{{"A", "1.0"}, {"B", "1.0\r"}},
         "A|2.0|http://x/a\r\nB|2.0\r|u|p,q\r\nA|3|ht\rtp://y|l|note\r\n",
         {"A|1.0|2.0|http://x/a|[]|(null)", "B|1.0\r|2.0\r|u|[p,q\r]|(null)",
          "A|1.0|3|http://y|[l]|note\r"},
         {kBadLine, kDone}},
        // Unreadable versions report the installed text twice; a missing setting, two blanks.
        {{{"Alpha Mixer", "2.0"}, {"Beta", "one"}},
         "Alpha Mixer|3.0.1|u\nBeta|2.0|u",
         {},
         {{false, "Incorrectly formatted version for Alpha Mixer 2.0 2.0"},
          {false, "Incorrectly formatted version for Beta one one"},
          kDone}},
        {{{"Alpha Mixer", String()}},
         "Alpha Mixer|3.0|u",
         {},
         {{false, "Incorrectly formatted version for Alpha Mixer  "}, kDone}},
        // Keys match exactly; unknown products pass silently.
        {{{"Alpha Mixer", "1.0"}, {"Gamma", "1.0"}},
         "alpha mixer|2|u\nAlpha Mixer |2|u\nDelta|2|u\nAlpha Mixer|2|u",
         {"Alpha Mixer|1.0|2|u|[]|(null)"},
         {kDone}},
        // The reports follow the file.
        {{{"Good", "1.0"}, {"Odd", "x"}},
         "Good|1.1|u\nno fields\nOdd|2|u\nNotInstalled|9|u\nGood|0.9|u\n",
         {"Good|1.0|1.1|u|[]|(null)"},
         {kBadLine, {false, "Incorrectly formatted version for Odd x x"}, kBadLine, kDone}},
    };
    for (Case const& c : cases)
    {
        MemorySettings settings;
        for (Installed const& product : c.installed)
            settings.Install(product.key, product.version);
        Pass pass = run(c.text, settings);
        EXPECT_EQ(described(pass), c.entries) << c.text;
        EXPECT_EQ(pass.reports, c.reports) << c.text;
        EXPECT_EQ(settings.keyPaths, std::vector<std::string>{"InstalledProducts"}) << c.text;
    }

    // Only the installed product's setting is read, and only for a well-formed line.
    MemorySettings settings;
    settings.Install("Alpha Mixer", "3.0");
    run("Alpha Mixer|3.01|u\nAlpha Mixer|3.0\nBeta|2|u", settings);
    EXPECT_EQ(settings.valuePaths,
              std::vector<std::string>{"InstalledProducts/Alpha Mixer/CurrentVersion"});
}

TEST(ParseVersionsText, NewerMeansStrictlyGreaterAsFloat)
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

TEST(ParseVersionsText, AppendsInFileOrderWithoutDeduplication)
{
    MemorySettings settings;
    settings.Install("B", "1");
    settings.Install("A", "1");
    Pass pass;
    pass.entries.push_back(boost::shared_ptr<Updater::UpdateEntry>(new Updater::UpdateEntry));
    Updater::ParseVersionsText("A|2|first\nB|2|second\nA|3|third", settings, pass.entries,
                               [](bool, String const&) {});
    // What the caller had stays.
    EXPECT_EQ(described(pass), (std::vector<std::string>{
                                   "(null)|(null)|(null)|(null)|[]|(null)", "A|1|2|first|[]|(null)",
                                   "B|1|2|second|[]|(null)", "A|1|3|third|[]|(null)"}));
}

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

TEST(ParseVersionsText, AcceptsAnyImplementationOfTheSettings)
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
