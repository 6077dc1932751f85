#include "tools/tvcheck/DecisionExplainer.h"

#include <gtest/gtest.h>

#include <map>

using Updater::DecisionExplainer;

namespace
{

/// Installed products in memory, in the order given.
class Installed : public Updater::VersionSettings
{
public:
    Installed(std::initializer_list<std::pair<std::string, std::string>> list) : products(list) {}
    void GetKeyNames(std::vector<String>& names, String const& path) override
    {
        if (path == "InstalledProducts")
            for (auto const& p : products)
                names.push_back(String(p.first.c_str()));
    }
    String GetString(String const& path, String const& defaultValue) override
    {
        for (auto const& p : products)
            if (path == String(("InstalledProducts/" + p.first + "/CurrentVersion").c_str()))
                return String(p.second.c_str());
        return defaultValue;
    }

private:
    std::vector<std::pair<std::string, std::string>> products;
};

} // namespace

TEST(DecisionExplainer, OffersExactlyWhatTheDecisionOffers)
{
    struct Case
    {
        char const* installed;
        char const* available;
        char const* says;
    };
    Case const cases[] = {
        {"1.9", "1.10", "no update: available 1.10 reads as 1.1, not newer than installed 1.9"},
        {"1.10", "1.9", "update offered: available 1.9, newer than installed 1.10 reads as 1.1"},
        {"2.0", "2.00",
         "no update: available 2.00 reads as 2, the same number as installed 2.0 "
         "reads as 2"},
        {"1,5", "1.6", "update offered: available 1.6, newer than installed 1,5 reads as 1.5"},
        {"3.0", "3.01\r", "update offered: available 3.01, newer than installed 3.0 reads as 3"},
        {"1.0", "nan", "no update: available nan, not newer than installed 1.0 reads as 1"},
        {"1.0", "3.0.1", "no update: the available version \"3.0.1\" is not a number"},
        {"x", "2", "no update: the installed version \"x\" is not a number"},
        {"", "2", "no update: the installed version is not set"},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(std::string(c.installed) + " -> " + c.available);
        Installed installed{{"P", c.installed}};
        String const text = String("P|") + c.available + "|http://p/";
        std::string const said = DecisionExplainer::Explain(text, installed);
        EXPECT_EQ(0u, said.find(std::string("P: ") + c.says)) << said;

        std::vector<boost::shared_ptr<Updater::UpdateEntry>> entries;
        Updater::ParseVersionsText(text, installed, entries, [](bool, String const&) {});
        EXPECT_EQ(entries.size() == 1, said.find("update offered") != std::string::npos);
    }
}

TEST(DecisionExplainer, TellsSkippedLinesAndWhatIsNotAVersionsFile)
{
    Installed installed{{"A", "1.0"}, {"B", "1.0"}};
    EXPECT_EQ("A: update offered: available 2, newer than installed 1.0 reads as 1 (line 2)\n"
              "A: no update: available 0.5, not newer than installed 1.0 reads as 1 (line 3)\n"
              "B: no update: not in the versions file\n"
              "line 1 skipped: fewer than three fields: \"<html>\\x09x\"\n"
              "line 4 skipped: empty\n"
              "line 5: \"b\" is not installed\n",
              DecisionExplainer::Explain("<html>\tx\nA|2|l\nA|0.5|l\n\nb|3|l", installed));

    std::string reason;
    struct Case
    {
        char const* text;
        bool isVersions;
        char const* reason;
    };
    for (Case const& c : {Case{"", false, "the answer is empty"},
                          Case{"<html>\n</html>\n", false,
                               "the answer is not a versions file (no line reads "
                               "product|version|link)"},
                          Case{"junk\nA|1|l", true, ""}})
    {
        reason.clear();
        EXPECT_EQ(c.isVersions, DecisionExplainer::IsVersionsFile(c.text, reason)) << c.text;
        EXPECT_EQ(c.reason, reason);
    }
}

TEST(DecisionExplainer, NumberTextIsTheShortestThatReadsBack)
{
    std::map<float, std::string> const cases = {
        {1.1f, "1.1"}, {2.0f, "2"}, {0.1f, "0.1"}, {16777217.0f, "16777216"}, {3.01f, "3.01"}};
    for (auto const& c : cases)
        EXPECT_EQ(c.second, DecisionExplainer::NumberText(c.first));
}
