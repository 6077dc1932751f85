#include "tools/tvcheck/CheckReport.h"

#include "TvBase/Util/ConfigFile.h"

#include "tests/support/HttpFixture.h"
#include "tests/support/RunProgram.h"

#include <gtest/gtest.h>

#include <memory>

using TestSupport::HttpFixture;
using TestSupport::ReadFile;
using TestSupport::TempFolder;

// ---- the two report forms

namespace
{

boost::shared_ptr<Updater::UpdateEntry> entry(char const* product, char const* installed,
                                              char const* available, char const* link)
{
    boost::shared_ptr<Updater::UpdateEntry> e(new Updater::UpdateEntry());
    e->productName = product;
    e->installedVersion = installed;
    e->availableVersion = available;
    e->updateUrl = link;
    return e;
}

} // namespace

TEST(CheckReport, LinesAndJson)
{
    EXPECT_EQ("", Updater::FormatUpdatesAsLines({}));
    EXPECT_EQ("Alpha Mixer\t3.0\t3.01\thttp://a/\n"
              "Odd Tab Name\t1\t2\thttp://b/ x\n",
              Updater::FormatUpdatesAsLines({entry("Alpha Mixer", "3.0", "3.01", "http://a/"),
                                             entry("Odd\tTab\nName", "1", "2", "http://b/\tx")}));
    { // Json escapes text and repairs bad bytes.
        EXPECT_EQ("[]\n", Updater::FormatUpdatesAsJson({}));
        EXPECT_EQ(
            "[\n"
            "  {\"product\": \"Alpha \\\"Pro\\\"\", \"installed\": \"3.0\", \"available\": "
            "\"3.01\", \"link\": \"http://a/\\\\x\"},\n"
            "  {\"product\": \"Caf\xC3\xA9\\u0001\", \"installed\": \"\\ufffd1\", "
            "\"available\": \"2\\t\", \"link\": \"\"}\n"
            "]\n",
            Updater::FormatUpdatesAsJson(
                {entry("Alpha \"Pro\"", "3.0", "3.01", "http://a/\\x"), entry("Caf\xC3\xA9\x01",
                                                                              "\xFF"
                                                                              "1",
                                                                              "2\t", "")}));
    }
}

// ---- the program, end to end

namespace
{

using RunResult = TestSupport::ToolRun;

class TvCheckTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.IsRunning()) << "fixture server did not start";
        setenv("XDG_CONFIG_HOME", settingsFolder.Path().c_str(), 1);
        settings.reset(new Util::ConfigFile("com.tavorin.updater"));
        updateHost = "127.0.0.1:" + std::to_string(server.GetPort());
    }
    void TearDown() override { unsetenv("XDG_CONFIG_HOME"); }

    void Install(char const* product, char const* version)
    {
        settings->SetString(String("InstalledProducts/%1/CurrentVersion").Arg(product), version);
        settings->Synchronize();
    }

    /// Runs tvcheck with these settings and update host.
    RunResult Run(std::vector<std::string> const& arguments)
    {
        return TestSupport::RunProgram(
            std::string(TV_BINARY_DIR) + "/bin/tvcheck", arguments,
            {"XDG_CONFIG_HOME=" + configHome, "TV_UPDATE_HOST=" + updateHost}, stdoutPath);
    }

    TempFolder settingsFolder{"tv-tvcheck-settings"};
    TempFolder served{"tv-tvcheck-served"};
    HttpFixture server{served.Path()};
    std::unique_ptr<Util::ConfigFile> settings;
    std::string updateHost;
    std::string configHome = settingsFolder.Path();
    /// Where the program's standard output goes instead of a file of the test's.
    std::string stdoutPath;
};

} // namespace

TEST_F(TvCheckTest, ListsOfferedUpdatesFromTheUpdateHost)
{
    Install("Alpha Mixer", "3.0");
    Install("Beta Synth", "1.5");
    RunResult run = Run({});
    EXPECT_EQ(10, run.status) << run.err;
    EXPECT_EQ("Alpha Mixer\t3.0\t3.01\thttp://example.invalid/alpha\n"
              "Beta Synth\t1.5\t2.0\thttp://example.invalid/beta\n",
              run.out);
    EXPECT_EQ("", run.err);
    EXPECT_TRUE(server.WaitForRequest("/products/versions/versions.txt"));

    run = Run({"--json"});
    EXPECT_EQ(10, run.status);
    EXPECT_EQ("[\n"
              "  {\"product\": \"Alpha Mixer\", \"installed\": \"3.0\", \"available\": \"3.01\", "
              "\"link\": \"http://example.invalid/alpha\"},\n"
              "  {\"product\": \"Beta Synth\", \"installed\": \"1.5\", \"available\": \"2.0\", "
              "\"link\": \"http://example.invalid/beta\"}\n"
              "]\n",
              run.out);
}

TEST_F(TvCheckTest, NothingNewerExitsZero)
{
    Install("Alpha Mixer", "4.0");
    RunResult run = Run({});
    EXPECT_EQ(0, run.status) << run.err;
    EXPECT_EQ("", run.out);
    run = Run({"--json"});
    EXPECT_EQ(0, run.status);
    EXPECT_EQ("[]\n", run.out);
}

TEST_F(TvCheckTest, UrlOptionReplacesTheWholeUrl)
{
    Install("Alpha Mixer", "1.0");
    served.Write("other.txt", "Alpha Mixer|9.5|http://other/\n");
    updateHost = "127.0.0.1:1"; // never reached
    RunResult run = Run({"--url", server.Url("/root/other.txt")});
    EXPECT_EQ(10, run.status) << run.err;
    EXPECT_EQ("Alpha Mixer\t1.0\t9.5\thttp://other/\n", run.out);
    run = Run({"--url=" + server.Url("/root/other.txt"), "--json"});
    EXPECT_EQ(10, run.status) << run.err;
}

TEST_F(TvCheckTest, FailedChecksExitOneWithTheReason)
{
    Install("Alpha Mixer", "1.0");
    RunResult run = Run({"--url", server.Url("/empty")});
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_EQ("tvcheck: the answer is empty from " + server.Url("/empty") + "\n", run.err);

    run = Run({"--url", "ftp://127.0.0.1/versions.txt"});
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("tvcheck: cannot fetch ftp://127.0.0.1/versions.txt: not an http or https URL\n",
              run.err);

    run = Run({"--url", server.Url("/stall"), "--timeout", "1"});
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("tvcheck: the request to 127.0.0.1:" + std::to_string(server.GetPort()) +
                  " timed out after 1 second\n",
              run.err);

    updateHost = "gopher://nowhere";
    run = Run({});
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("tvcheck: TV_UPDATE_HOST is not a usable host: gopher://nowhere\n", run.err);
    { // Failed transfers end at once with their reason.
        Install("Alpha Mixer", "1.0");
        HttpFixture tls(std::string(), false);
        std::string const plainPort = std::to_string(tls.GetPort());
        struct Case
        {
            std::string url;
            char const* expected;
        };
        // Without failing fast each would wait for the whole time-out and give no reason.
        Case const cases[] = {
            {server.ClosedUrl("/file"), "tvcheck: cannot connect to 127.0.0.1:"},
            {"https://127.0.0.1:" + plainPort + "/file",
             "tvcheck: cannot fetch https://127.0.0.1:"},
            {server.Url("/redirect/21"), "tvcheck: too many redirects (more than 20) from "},
        };
        for (Case const& c : cases)
        {
            RunResult run = Run({"--url", c.url, "--timeout", "60"});
            EXPECT_EQ(1, run.status) << c.url;
            EXPECT_EQ(0u, run.err.find(c.expected)) << run.err;
            EXPECT_EQ("", run.out);
        }
        // Twenty redirects are still followed.
        EXPECT_EQ(10, Run({"--url", server.Url("/redirect/20")}).status);
    }
}

TEST_F(TvCheckTest, AReportOrRecordThatCannotBeWrittenFails)
{
    Install("Alpha Mixer", "1.0");
    stdoutPath = "/dev/full";
    RunResult run = Run({});
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("tvcheck: could not write the report: No space left on device\n", run.err);
    stdoutPath.clear();

    // A file where the settings folder would have to be: nothing can be recorded there.
    configHome = served.Write("not-a-folder", "");
    run = Run({"--record"});
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("tvcheck: the check was not recorded: " + configHome + "/tavorin: Not a directory\n",
              run.err);
    EXPECT_EQ(0, Run({}).status) << "without --record nothing needs writing";
}

TEST_F(TvCheckTest, RecordsOnlyWhenAsked)
{
    Install("Alpha Mixer", "1.0");
    std::string const before = settingsFolder.Snapshot();
    EXPECT_EQ(1, Run({"--url", server.Url("/empty")}).status);
    EXPECT_EQ(10, Run({}).status);
    EXPECT_EQ(before, settingsFolder.Snapshot()) << "a check without --record wrote settings";

    EXPECT_EQ(1, Run({"--record", "--url", server.Url("/empty")}).status);
    settings->Synchronize();
    EXPECT_EQ(String(("the answer is empty from " + server.Url("/empty")).c_str()),
              settings->GetString("LastResult", "(unset)"));
    unsigned int const firstTime = settings->GetUInt("LastUpdateCheckTime", 0);
    EXPECT_NE(0u, firstTime);

    EXPECT_EQ(10, Run({"--record"}).status);
    settings->Synchronize();
    EXPECT_EQ(String(""), settings->GetString("LastResult", "(unset)"));
    EXPECT_GE(settings->GetUInt("LastUpdateCheckTime", 0), firstTime);
}

TEST_F(TvCheckTest, CommandLineMistakesExitTwo)
{
    for (std::vector<std::string> const& arguments : std::vector<std::vector<std::string>>{
             {"--bogus"}, {"--url"}, {"--timeout", "0"}, {"--timeout", "ten"}, {"extra"}})
    {
        RunResult run = Run(arguments);
        EXPECT_EQ(2, run.status) << arguments[0];
        EXPECT_NE(std::string::npos, run.err.find("Usage: tvcheck")) << arguments[0];
        EXPECT_EQ("", run.out);
    }
    RunResult help = Run({"--help"});
    EXPECT_EQ(0, help.status);
    EXPECT_NE(std::string::npos, help.out.find("Exit status: 0 no updates, 10 updates"));
    EXPECT_NE(std::string::npos, help.out.find("--record"));
}
