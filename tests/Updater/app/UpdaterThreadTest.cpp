#include "Updater/app/UpdaterThread.h"

#include "TvBase/Util/ConfigFile.h"

#include "tests/support/HttpFixture.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <memory>

using TestSupport::HttpFixture;
using TestSupport::TempFolder;
using Updater::UpdateEntry;
using Updater::UpdaterThread;

namespace
{

using Entries = std::vector<boost::shared_ptr<UpdateEntry>>;

/// Each test gets settings of its own (XDG_CONFIG_HOME in a fresh folder) and a server whose
/// "/root/" serves a fresh folder.
class UpdaterThreadTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.IsRunning()) << "fixture server did not start";
        setenv("XDG_CONFIG_HOME", settingsFolder.Path().c_str(), 1);
        settings.reset(new Util::ConfigFile("com.tavorin.updater"));
    }
    void TearDown() override { unsetenv("XDG_CONFIG_HOME"); }

    void Install(char const* product, char const* version)
    {
        settings->SetString(String("InstalledProducts/%1/CurrentVersion").Arg(product), version);
    }

    /// Runs one check to its end and returns the worker for inspection.
    std::unique_ptr<UpdaterThread> Check(std::string const& url, bool dontRecord = false,
                                         int timeoutMillis = 60000)
    {
        std::unique_ptr<UpdaterThread> worker(new UpdaterThread(
            "Updater Thread", url.c_str(), dontRecord, Util::Thread::PriorityLow, false));
        worker->SetRequestTimeout(timeoutMillis);
        worker->StartThread();
        EXPECT_TRUE(worker->WaitThread());
        return worker;
    }

    String Recorded(char const* key) { return settings->GetString(key, "(unset)"); }

    TempFolder settingsFolder{"tv-updater-settings"};
    TempFolder served{"tv-updater-served"};
    HttpFixture server{served.Path()};
    std::unique_ptr<Util::ConfigFile> settings;
};

} // namespace

TEST_F(UpdaterThreadTest, GoodFileOffersNewerInstalledProducts)
{
    Install("Alpha Mixer", "3.0");
    Install("Beta Synth", "2.00");
    Install("Gamma Verb", "1.0");
    unsigned int const before = static_cast<unsigned int>(time(nullptr));
    auto worker = Check(server.Url("/file"));
    unsigned int const after = static_cast<unsigned int>(time(nullptr));

    Entries updates;
    ASSERT_TRUE(worker->GetUpdateData(updates));
    ASSERT_EQ(1u, updates.size()) << "Beta Synth 2.0 is not newer than 2.00";
    EXPECT_EQ(String("Alpha Mixer"), updates[0]->productName);
    EXPECT_EQ(String("3.0"), updates[0]->installedVersion);
    EXPECT_EQ(String("3.01"), updates[0]->availableVersion);
    EXPECT_EQ(String("http://example.invalid/alpha"), updates[0]->updateUrl);
    EXPECT_EQ(String("note"), updates[0]->extraText);

    // The file ends in "\n", whose empty last line reported a failure on the way; the final
    // report overwrote it.
    EXPECT_EQ(String(""), worker->GetLastResult());
    EXPECT_EQ(String(""), Recorded("LastResult"));
    unsigned int const checkTime = settings->GetUInt("LastUpdateCheckTime", 0);
    EXPECT_GE(checkTime, before);
    EXPECT_LE(checkTime, after);
}

TEST_F(UpdaterThreadTest, LineEndsRedirectsAndErrorPagesAreHandledAsBodies)
{
    Install("Alpha Mixer", "3.0");
    Entries updates;
    ASSERT_TRUE(Check(server.Url("/crlf"))->GetUpdateData(updates));
    ASSERT_EQ(1u, updates.size());
    EXPECT_EQ(String("http://example.invalid/alpha"), updates[0]->updateUrl) << "no \\r left";
    EXPECT_EQ(String("note\r"), updates[0]->extraText);

    ASSERT_TRUE(Check(server.Url("/redirect/2"))->GetUpdateData(updates));
    EXPECT_EQ(1u, updates.size());

    // An error page is parsed as a versions file: every line is malformed, the check succeeds.
    auto worker = Check(server.Url("/404"));
    ASSERT_TRUE(worker->GetUpdateData(updates));
    EXPECT_TRUE(updates.empty());
    EXPECT_EQ(String(""), Recorded("LastResult"));
}

TEST_F(UpdaterThreadTest, FailuresLeaveTheirWordAndNoData)
{
    struct Case
    {
        std::string url;
        int timeoutMillis;
        char const* result;
    };
    Case const cases[] = {
        {server.Url("/empty"), 60000, "Update file empty."},
        // A time-out leaves no error and no data, so it reads as an empty file.
        {server.Url("/stall"), 300, "Update file empty."},
        {server.BacklogUrl("/file"), 300, "Update file empty."},
        {server.ClosedUrl("/file"), 3000, "Internal stream error 1, 7"},
        {server.Url("/close-mid-body"), 3000, "Internal stream error 1, 18"},
        {"ftp://127.0.0.1/versions.txt", 60000, "Connection Error: CFReadStreamOpen failed."},
    };
    Install("Alpha Mixer", "1.0");
    for (Case const& c : cases)
    {
        auto worker = Check(c.url, false, c.timeoutMillis);
        Entries untouched(1);
        EXPECT_FALSE(worker->GetUpdateData(untouched)) << c.url;
        EXPECT_EQ(1u, untouched.size());
        EXPECT_EQ(String(c.result), worker->GetLastResult()) << c.url;
        EXPECT_EQ(String(c.result), Recorded("LastResult")) << c.url;
    }
}

TEST_F(UpdaterThreadTest, NullUrlIsAConnectionError)
{
    UpdaterThread worker("Updater Thread", nullptr, false, Util::Thread::PriorityLow, false);
    worker.StartThread();
    worker.WaitThread();
    Entries updates;
    EXPECT_FALSE(worker.GetUpdateData(updates));
    EXPECT_EQ(String("Connection Error: CFReadStreamOpen failed."), worker.GetLastResult());
}

TEST_F(UpdaterThreadTest, CheckTimeIsWrittenBeforeTheDownload)
{
    UpdaterThread worker("Updater Thread", server.Url("/stall").c_str(), false,
                         Util::Thread::PriorityLow, false);
    worker.StartThread();
    ASSERT_TRUE(server.WaitForRequest("/stall"));
    EXPECT_NE(0u, settings->GetUInt("LastUpdateCheckTime", 0));
    EXPECT_EQ(String("(unset)"), Recorded("LastResult")) << "no report yet";

    Entries untouched(2);
    EXPECT_FALSE(worker.GetUpdateData(untouched)) << "no data while the thread runs";
    EXPECT_EQ(2u, untouched.size());
    worker.Cancel();
    EXPECT_TRUE(worker.IsCanceled());
}

TEST_F(UpdaterThreadTest, CancelDuringTheDownloadReportsNothing)
{
    UpdaterThread worker("Updater Thread", server.Url("/stall").c_str(), false,
                         Util::Thread::PriorityLow, false);
    EXPECT_FALSE(worker.IsCanceled());
    worker.StartThread();
    ASSERT_TRUE(server.WaitForRequest("/stall"));
    worker.Cancel();
    ASSERT_TRUE(worker.WaitThread(30000u)) << "the polling loop did not see the cancel";

    Entries updates(1);
    EXPECT_TRUE(worker.GetUpdateData(updates)) << "the status is still the one of construction";
    EXPECT_TRUE(updates.empty());
    EXPECT_EQ(String(""), worker.GetLastResult());
    EXPECT_EQ(String("(unset)"), Recorded("LastResult"));
}

TEST_F(UpdaterThreadTest, DontRecordKeepsTheCheckOutOfTheSettings)
{
    Install("Alpha Mixer", "3.0");
    settings->Synchronize();
    std::string const onDisk = settingsFolder.Snapshot();

    auto good = Check(server.Url("/file"), true);
    Entries updates;
    EXPECT_TRUE(good->GetUpdateData(updates));
    EXPECT_EQ(1u, updates.size());
    auto failed = Check(server.Url("/empty"), true);
    EXPECT_EQ(String("Update file empty."), failed->GetLastResult()) << "the object still knows";

    EXPECT_EQ(String("(unset)"), Recorded("LastResult"));
    EXPECT_EQ(7u, settings->GetUInt("LastUpdateCheckTime", 7));
    good.reset();
    failed.reset();
    settings->Synchronize();
    EXPECT_EQ(onDisk, settingsFolder.Snapshot());
}

TEST_F(UpdaterThreadTest, RecordedValuesReachTheHostScopeOnDisk)
{
    Install("Alpha Mixer", "3.0");
    Check(server.Url("/empty")).reset();
    settings->Synchronize();
    std::string const files = settingsFolder.Snapshot();
    EXPECT_NE(std::string::npos, files.find("/tavorin/ByHost/com.tavorin.updater.")) << files;
    EXPECT_NE(std::string::npos, files.find("Update file empty.")) << files;
    EXPECT_NE(std::string::npos, files.find("LastUpdateCheckTime")) << files;
}

TEST_F(UpdaterThreadTest, MalformedAndUnreadableLinesDoNotSpoilTheCheck)
{
    Install("Alpha Mixer", "1,5");
    Install("Beta Synth", "1.9");
    Install("Gamma Verb", "1.0");
    served.Write("mixed.txt", "Alpha Mixer|1.6|http://a/\r\n"
                              "garbage\n"
                              "Beta Synth|1.10|http://b/\n"
                              "Gamma Verb|1.2.3|http://c/\n"
                              "Alpha Mixer|2.0|http://a2/|x,y\n");
    auto worker = Check(server.Url("/root/mixed.txt"));
    Entries updates;
    ASSERT_TRUE(worker->GetUpdateData(updates));
    ASSERT_EQ(2u, updates.size()) << "no de-duplication, 1.10 is older than 1.9";
    EXPECT_EQ(String("http://a/"), updates[0]->updateUrl);
    EXPECT_EQ(String("http://a2/"), updates[1]->updateUrl);
    EXPECT_EQ(2u, updates[1]->extraList.size());
    EXPECT_EQ(String(""), Recorded("LastResult"));
}
