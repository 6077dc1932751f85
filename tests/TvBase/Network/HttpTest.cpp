#include "TvBase/Network/Http.h"

#include "tests/support/HttpFixture.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>

using Network::Http;
using TestSupport::HttpFixture;

namespace
{

std::string const fileText = "Alpha Mixer|3.01|http://example.invalid/alpha|mac,win|note\n"
                             "Beta Synth|2.0|http://example.invalid/beta\n";

/// Polls a request to its end as the workers do, sleeping between rounds.
void pollToEnd(Http& http)
{
    while (!http.IsFinished())
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

std::string fetch(Http& http, std::string const& url)
{
    http.Get(url.c_str(), 60000);
    pollToEnd(http);
    EXPECT_EQ(String(""), http.GetError()) << url;
    return http.GetStringData().CStr();
}

/// Runs `call` and returns the message of the `ConnectionError` it throws.
template <typename Call>
std::string connectionErrorOf(Call call)
{
    try
    {
        call();
    }
    catch (Network::Exception::ConnectionError const& e)
    {
        return e.GetMessage().CStr();
    }
    return "(nothing thrown)";
}

class HttpTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(server.IsRunning()) << "fixture server did not start"; }
    HttpFixture server;
};

} // namespace

TEST_F(HttpTest, BodiesArriveAsTheyWereSent)
{
    Http http;
    EXPECT_EQ(fileText, fetch(http, server.Url("/file")));
    std::string crlf;
    for (char c : fileText)
        crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    EXPECT_EQ(crlf, fetch(http, server.Url("/crlf"))) << "a finished Http takes another Get";
    EXPECT_EQ(fileText, fetch(http, server.Url("/redirect/3"))) << "redirects are followed";
    EXPECT_EQ("", fetch(http, server.Url("/empty")));
    std::string page = fetch(http, server.Url("/404")); // an error page is data
    EXPECT_NE(std::string::npos, page.find("404 Not Found")) << page;

    // SyncGet returns the body.
    EXPECT_EQ(String(fileText.c_str()), http.SyncGet(server.Url("/file").c_str(), 60000));
    EXPECT_EQ(String(fileText.c_str()), http.SyncGet(server.Url("/redirect/2").c_str(), 60000));
    EXPECT_EQ(String(""), http.SyncGet(server.Url("/empty").c_str(), 60000));

    // String data stops at a NUL while the raw data keeps every byte.
    http.Get(server.Url("/nul").c_str(), 60000);
    pollToEnd(http);
    EXPECT_EQ(7u, http.GetRawData()->size());
    EXPECT_EQ(String("abc"), http.GetStringData());
    EXPECT_EQ(String("abc"), http.GetStringData());
    std::vector<unsigned char> expected = {'a', 'b', 'c', 0, 'd', 'e', 'f', 0, 0};
    EXPECT_EQ(expected, *http.GetRawData()) << "each GetStringData appends one zero byte";
}

TEST_F(HttpTest, GetWhilePendingThrowsAndLeavesFirstRequestAlone)
{
    Http http;
    http.Get(server.Url("/stall").c_str(), -1);
    ASSERT_TRUE(server.WaitForRequest("/stall"));
    EXPECT_EQ("Request already pending.",
              connectionErrorOf([&] { http.Get(server.Url("/file").c_str(), -1); }));
    EXPECT_EQ("Request already pending.",
              connectionErrorOf([&] { http.SyncGet(server.Url("/file").c_str(), 1000); }));
    EXPECT_FALSE(http.IsFinished());
    EXPECT_FALSE(http.WaitForHelper(0)) << "the first request was disturbed";
}

TEST_F(HttpTest, UnusableUrlsAndFailedConnectionsThrow)
{
    Http http;
    for (char const* url : {"", "not a url", "ftp://127.0.0.1/file", "file:///etc/passwd"})
        EXPECT_EQ("CFReadStreamOpen failed.", connectionErrorOf([&] { http.Get(url, 1000); }))
            << url;
    EXPECT_EQ("CFReadStreamOpen failed.", connectionErrorOf([&] { http.Get(String(), 1000); }));
    EXPECT_EQ(fileText, fetch(http, server.Url("/file"))) << "a failed Get leaves Http usable";

    // SyncGet passes open and stream errors on, and times out.
    EXPECT_EQ("Internal stream error 1, 7",
              connectionErrorOf([&] { http.SyncGet(server.ClosedUrl("/file").c_str(), 60000); }));
    EXPECT_EQ("CFReadStreamOpen failed.",
              connectionErrorOf([&] { http.SyncGet("gopher://127.0.0.1/", 60000); }));
    for (std::string const& url : {server.Url("/stall"), server.BacklogUrl("/file")})
        EXPECT_EQ("Operation timed out while trying to connect to the web server.",
                  connectionErrorOf([&] { http.SyncGet(url.c_str(), 200); }))
            << url;
    EXPECT_TRUE(http.WaitForHelper(0));
}

// ---- time-out, driven by a clock of the test's own

namespace
{

struct TestClock
{
    std::atomic<unsigned long long> now{0};
    boost::function<unsigned long long()> Source()
    {
        return [this] { return now.load(); };
    }
};

} // namespace

TEST_F(HttpTest, TimeOutFiresOneMillisecondPastTheLimit)
{
    for (unsigned long long start : {5000ull, 0xFFFFFE00ull})
    {
        TestClock clock;
        clock.now = start;
        Http http(clock.Source());
        http.Get(server.Url("/stall").c_str(), 1000);
        ASSERT_TRUE(server.WaitForRequest("/stall"));
        EXPECT_FALSE(http.IsFinished());
        clock.now = start + 1000;
        EXPECT_FALSE(http.IsFinished()) << "exactly at the limit is not yet late";
        clock.now = start + 1001;
        EXPECT_TRUE(http.IsFinished()) << "start " << start;
        EXPECT_TRUE(http.WaitForHelper(0)) << "the time-out cancels the pump";
        EXPECT_EQ(String(""), http.GetError()) << "a plain time-out leaves no error";
        EXPECT_TRUE(http.GetRawData()->empty());
        EXPECT_TRUE(http.GetStringData().IsEmpty());
        EXPECT_TRUE(http.IsFinished());
    }
}

TEST_F(HttpTest, NoLimitMakesIsFinishedAPlainRead)
{
    TestClock clock;
    Http http(clock.Source());
    http.Get(server.Url("/stall").c_str(), -1);
    ASSERT_TRUE(server.WaitForRequest("/stall"));
    clock.now = 0xFFFFFFFFull * 4;
    EXPECT_FALSE(http.IsFinished());
    http.CancelGet();
    EXPECT_FALSE(http.IsFinished()) << "a canceled request never finishes by itself";
}

TEST_F(HttpTest, StreamErrorsShowAtTheTimeOut)
{
    struct Case
    {
        std::string url;
        char const* error;
    };
    // 7: could not connect; 18: body shorter than announced; 63: body above the size cap.
    Case const cases[] = {
        {server.ClosedUrl("/file"), "Internal stream error 1, 7"},
        {server.Url("/close-mid-body"), "Internal stream error 1, 18"},
        {server.Url("/big"), "Internal stream error 1, 63"},
        {server.Url("/big-unsized"), "Internal stream error 1, 63"},
    };
    for (Case const& c : cases)
    {
        TestClock clock;
        Http http(clock.Source());
        http.Get(c.url.c_str(), 500);
        ASSERT_TRUE(http.WaitForHelper(60000)) << c.url;
        EXPECT_EQ(String(c.error), http.GetError()) << "the error is readable at once";
        EXPECT_FALSE(http.IsFinished()) << "but the request only ends at the time-out";
        clock.now = 501;
        EXPECT_TRUE(http.IsFinished());
        EXPECT_EQ(String(c.error), http.GetError());
    }
}

TEST_F(HttpTest, CancelOrDestructionStopsAStalledRequest)
{
    Http http;
    http.CancelGet(); // nothing pending: nothing happens
    http.Get(server.Url("/stall").c_str(), -1);
    ASSERT_TRUE(server.WaitForRequest("/stall"));
    http.CancelGet();
    EXPECT_TRUE(http.WaitForHelper(0));
    EXPECT_TRUE(http.GetRawData()->empty());
    EXPECT_EQ(String(""), http.GetError());
    EXPECT_EQ(fileText, fetch(http, server.Url("/file"))) << "a stalled Http takes a new Get";

    // The backlog port accepts the connection into its queue and never answers.
    http.Get(server.BacklogUrl("/file").c_str(), -1);
    http.CancelGet();
    EXPECT_TRUE(http.WaitForHelper(0));

    // Destroying a pending request cancels it.
    {
        Http pending;
        pending.Get(server.Url("/stall").c_str(), 60000);
        ASSERT_TRUE(server.WaitForRequest("/stall"));
    }
    EXPECT_EQ(fileText, fetch(http, server.Url("/file")));
}

TEST_F(HttpTest, SyncGetCanceledFromAnotherThreadThrowsUserCancel)
{
    Http http;
    std::string outcome;
    std::thread caller(
        [&]
        {
            try
            {
                http.SyncGet(server.Url("/stall").c_str(), 60000);
                outcome = "returned";
            }
            catch (Network::Exception::UserCancel const& e)
            {
                outcome = std::string("UserCancel:") + e.GetMessage().CStr();
            }
            catch (Network::Exception::ConnectionError const& e)
            {
                outcome = std::string("ConnectionError:") + e.GetMessage().CStr();
            }
        });
    ASSERT_TRUE(server.WaitForRequest("/stall"));
    http.CancelGet();
    caller.join();
    EXPECT_EQ("UserCancel:", outcome);
}

TEST(HttpExceptions, CarryTheirTypeAndMessage)
{
    Network::Exception::ConnectionError error("CFReadStreamOpen failed.");
    EXPECT_STREQ("ConnectionError", error.GetTypeName());
    EXPECT_STREQ("CFReadStreamOpen failed.", error.what());
    Network::Exception::UserCancel cancel;
    EXPECT_STREQ("UserCancel", cancel.GetTypeName());
    EXPECT_EQ(String(""), cancel.GetMessage());
    ::Exception::Base const& base = error;
    EXPECT_NE(nullptr, strstr(base.ToString().CStr(), "CFReadStreamOpen failed."));
}

TEST(HttpTls, CertificateIsVerified)
{
    TestSupport::TempFolder keys("tv-http-tls");
    std::string const certificate = keys.Path() + "/cert.pem";
    std::string const key = keys.Path() + "/key.pem";
    std::string const make = "openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj "
                             "/CN=127.0.0.1 -keyout '" +
                             key + "' -out '" + certificate + "' >/dev/null 2>&1";
    if (std::system(make.c_str()) != 0)
        GTEST_SKIP() << "openssl could not make a test certificate";
    HttpFixture server(keys.Path(), true, certificate, key);
    ASSERT_TRUE(server.IsRunning());

    // A self-signed certificate must be refused: 60 is the peer-verification failure.
    Http http;
    http.Get(server.Url("/file").c_str(), 60000);
    ASSERT_TRUE(http.WaitForHelper(60000));
    EXPECT_EQ(String("Internal stream error 1, 60"), http.GetError());
    EXPECT_TRUE(http.GetRawData()->empty());
}
