#include "Updater/app/MarketingMessageThread.h"
#include "Updater/app/MarketingURL.h"

#include "Canvas/UI/DIBits.h"
#include "TvBase/Network/DeploymentURL.h"

#include "tests/Canvas/UI/support/PngTestSupport.h"
#include "tests/support/HttpFixture.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

using TestSupport::HttpFixture;
using TestSupport::TempFolder;
using Updater::MarketingMessageData;
using Updater::MarketingMessageThread;

namespace
{

using Record = boost::shared_ptr<MarketingMessageData>;

/// A 3 x 2 picture with alpha whose pixels are all different, as libpng writes it.
std::string MakeBanner()
{
    TestSupport::PngSample sample;
    sample.width = 3;
    sample.height = 2;
    sample.colorType = PNG_COLOR_TYPE_RGB_ALPHA;
    sample.samples = {0x10, 0x20, 0x30, 0xFF, 0x40, 0x50, 0x60, 0xFF, 0x70, 0x80, 0x90, 0x80,
                      0xA0, 0xB0, 0xC0, 0xFF, 0xD0, 0xE0, 0xF0, 0xFF, 0x01, 0x02, 0x03, 0xFF};
    return TestSupport::MakePng(sample);
}

/// Each test serves pages and pictures from a fresh folder under "/root/".
class MarketingMessageThreadTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(server.IsRunning()) << "fixture server did not start"; }

    /// Serves `page` as "/root/page.html", with "IMAGE" replaced by the address of
    /// "/root/<imageName>", and returns the page's address.
    std::string ServePage(std::string page, std::string const& imageName = "banner.png")
    {
        std::string::size_type at = page.find("IMAGE");
        if (at != std::string::npos)
            page.replace(at, 5, server.Url("/root/" + imageName));
        served.Write("page.html", page);
        return server.Url("/root/page.html");
    }

    /// Runs one scrape of `url` to its end and returns the worker for inspection.
    std::unique_ptr<MarketingMessageThread> Scrape(std::string const& url,
                                                   int timeoutMillis = 60000)
    {
        std::unique_ptr<MarketingMessageThread> worker(new MarketingMessageThread(
            "Marketing message Thread", url.c_str(), Util::Thread::PriorityLow, false));
        worker->SetRequestTimeout(timeoutMillis);
        worker->StartThread();
        EXPECT_TRUE(worker->WaitThread());
        return worker;
    }

    /// Expects the scrape to have failed with `word` and to hand out nothing.
    void ExpectFailure(MarketingMessageThread& worker, char const* word)
    {
        EXPECT_EQ(String(word), worker.GetLastResult());
        Record sentinel(new MarketingMessageData());
        Record out = sentinel;
        EXPECT_FALSE(worker.GetMessageData(out));
        EXPECT_EQ(sentinel, out) << "a failed scrape leaves the caller's record alone";
    }

    /// The record of a scrape as "link|alt|width|height", or "failed: <result>".
    std::string Outcome(std::string const& url, int timeoutMillis = 60000)
    {
        auto worker = Scrape(url, timeoutMillis);
        Record record;
        if (!worker->GetMessageData(record) || !record)
        {
            ExpectFailure(*worker, worker->GetLastResult().CStr());
            return std::string("failed: ") + worker->GetLastResult().CStr();
        }
        EXPECT_EQ(String(""), worker->GetLastResult());
        return std::string(record->link.CStr()) + "|" + record->altText.CStr() + "|" +
               std::to_string(record->width) + "|" + std::to_string(record->height);
    }

    TempFolder served{"tv-marketing-served"};
    HttpFixture server{served.Path(), false};
};

} // namespace

TEST_F(MarketingMessageThreadTest, GoodPageGivesLinkToolTipSizesAndDecodedPicture)
{
    served.Write("banner.png", MakeBanner());
    auto worker = Scrape(
        ServePage("<html><body><p>News</p>\n"
                  "<a href=\"http://shop.example.invalid/offer\"><img src=\"IMAGE\" width=\"468\" "
                  "height=\"60\" alt=\"Spring offer\"></a>\n</body></html>"));

    EXPECT_EQ(String(""), worker->GetLastResult());
    Record record;
    ASSERT_TRUE(worker->GetMessageData(record));
    ASSERT_TRUE(record);
    EXPECT_EQ(String("http://shop.example.invalid/offer"), record->link);
    EXPECT_EQ(String("Spring offer"), record->altText);
    EXPECT_EQ(468, record->width);
    EXPECT_EQ(60, record->height);
    ASSERT_TRUE(record->image);
    ASSERT_EQ(3, record->image->GetWidth());
    ASSERT_EQ(2, record->image->GetHeight());
    unsigned int const* row0 = record->image->GetPixels();
    unsigned int const* row1 = row0 + record->image->GetStride();
    EXPECT_EQ(0xFF102030u, row0[0]);
    EXPECT_EQ(0xFF405060u, row0[1]);
    EXPECT_EQ(0x80708090u, row0[2]) << "pixels are kept unpremultiplied";
    EXPECT_EQ(0xFFA0B0C0u, row1[0]);
    EXPECT_EQ(0xFF010203u, row1[2]);
}

TEST_F(MarketingMessageThreadTest, PagesAndPicturesGiveRecordsOrTheirFailure)
{
    std::string const banner = MakeBanner();
    served.Write("banner.png", banner);
    served.Write("broken.png", banner.substr(0, 8) + std::string(40, '\x5A'));
    // Shorter than the signature yet matching as far as it goes.
    served.Write("short.png", banner.substr(0, 4));
    served.Write("gif.png", std::string("GIF89a\x01\x00\x01\x00", 10));
    served.Write("cut.png", banner.substr(0, banner.size() / 2));
    served.Write("empty.png", "");
    std::string const plain = "<a href=\"http://l/\"><img src=\"IMAGE\"></a>";
    std::string const noPng = "failed: Cannot parse image data as png";
    struct Case
    {
        std::string page;
        char const* image;
        std::string expected;
    } const cases[] = {
        // Missing, unquoted, empty and non-numeric sizes all give 0; an empty alt stays empty.
        {plain, "banner.png", "http://l/||0|0"},
        {"<a href=\"http://l/\"><img src=\"IMAGE\" width=\"\" height=\"tall\" alt=\"\"></a>",
         "banner.png", "http://l/||0|0"},
        // Earlier attributes anywhere on the page count: the table's width comes first.
        {"<table width=\"600\"><tr><td><img alt=\"logo\" height=\"12\">\n"
         "<a href=\"http://l/\"><img src=\"IMAGE\" width=\"468\" height=\"60\" alt=\"Offer\">"
         "</a></td></tr></table>",
         "banner.png", "http://l/|logo|600|12"},
        // An href without its quote takes the next quoted text.
        {"<a href= \"http://spaced/\"><img src=\"IMAGE\"></a>", "banner.png",
         "http://spaced/||0|0"},
        {"<a href=http://bare/ title=\"Shop\"><img src=\"IMAGE\"></a>", "banner.png", "Shop||0|0"},
        // Single quotes fail, or the anchor's address is the image's, the next quoted text.
        {"<a href='http://l/'><img src='IMAGE'></a>", "banner.png",
         "failed: Cannot locate marketing url"},
        {"<a href='http://l/'><img src=\"IMAGE\"></a>", "banner.png",
         server.Url("/root/banner.png") + "||0|0"},
        {"<a href=\"\"><img src=\"IMAGE\"></a>", "banner.png",
         "failed: Cannot locate marketing url"},
        // Missing tags; the page ends at its first NUL.
        {"<html><body>No offers today</body></html>", "banner.png",
         "failed: Cannot locate anchor tag"},
        {"<A HREF=\"http://l/\"><img src=\"IMAGE\"></A>", "banner.png",
         "failed: Cannot locate anchor tag"},
        {"<a href=\"http://l/\">Shop</a>", "banner.png", "failed: Cannot locate img tag"},
        {"<img src=\"IMAGE\"><a href=\"http://l/\">Shop</a>", "banner.png",
         "failed: Cannot locate img tag"},
        {std::string("<p>x</p>\0<a href=\"http://l/\"><img src=\"IMAGE\"></a>", 40), "banner.png",
         "failed: Cannot locate anchor tag"},
        // Pictures that are not PNG; a missing one is the server's HTML error page.
        {plain, "broken.png", noPng},
        {plain, "short.png", noPng},
        {plain, "gif.png", noPng},
        {plain, "cut.png", noPng},
        {plain, "absent.png", noPng},
        {plain, "empty.png", "failed: Cannot read image"},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.expected, Outcome(ServePage(c.page, c.image))) << c.page << " " << c.image;

    // A picture request that stalls or is refused cannot be read.
    for (std::string const& image : {server.Url("/stall"), server.ClosedUrl("/x.png")})
    {
        served.Write("page.html", "<a href=\"http://l/\"><img src=\"" + image + "\"></a>");
        EXPECT_EQ("failed: Cannot read image", Outcome(server.Url("/root/page.html"), 300));
    }
    // A failed page request keeps its own word: a time-out leaves no error and no data; a
    // refused connection is a transfer error (libcurl's "couldn't connect", 7), read once the
    // time-out ends the request.
    EXPECT_EQ("failed: Cannot locate anchor tag", Outcome(server.Url("/404")));
    EXPECT_EQ("failed: Marketing message empty.", Outcome(server.Url("/empty")));
    EXPECT_EQ("failed: Marketing message empty.", Outcome(server.Url("/stall"), 300));
    EXPECT_EQ("failed: Internal stream error 1, 7", Outcome(server.ClosedUrl("/updater/"), 300));
}

TEST_F(MarketingMessageThreadTest, RequestThatCannotBeMadeIsConnectionError)
{
    std::unique_ptr<MarketingMessageThread> worker(new MarketingMessageThread(
        "Marketing message Thread", nullptr, Util::Thread::PriorityLow, false));
    worker->StartThread();
    ASSERT_TRUE(worker->WaitThread());
    String const result = worker->GetLastResult();
    EXPECT_EQ(0u, result.Find("Connection Error: ").value) << result.CStr();
    EXPECT_TRUE(result.Find("Connection Error: ").present);
    EXPECT_GT(result.Length(), String("Connection Error: ").Length());
    Record out;
    EXPECT_FALSE(worker->GetMessageData(out));
    EXPECT_FALSE(out);
}

TEST_F(MarketingMessageThreadTest, StateBeforeAndAfterARun)
{
    MarketingMessageThread worker("Marketing message Thread", server.Url("/404").c_str(),
                                  Util::Thread::PriorityLow, false);
    EXPECT_FALSE(worker.IsCanceled());
    Record out;
    EXPECT_TRUE(worker.GetMessageData(out)) << "a worker that never ran has nothing failed";
    EXPECT_FALSE(out);

    worker.StartThread();
    ASSERT_TRUE(worker.WaitThread());
    EXPECT_FALSE(worker.GetMessageData(out));

    worker.Cancel();
    EXPECT_TRUE(worker.IsCanceled());
}

TEST_F(MarketingMessageThreadTest, CancelStopsAStalledRequest)
{
    std::unique_ptr<MarketingMessageThread> worker(
        new MarketingMessageThread("Marketing message Thread", server.Url("/stall").c_str(),
                                   Util::Thread::PriorityLow, false));
    worker->StartThread();
    worker->Cancel();
    // The stall would hold the request for a minute; the cancel ends it at the next round.
    ASSERT_TRUE(worker->WaitThread(20000u));
    EXPECT_EQ(String(""), worker->GetLastResult()) << "a cancel reports nothing";
}

TEST_F(MarketingMessageThreadTest, PageAddressFollowsTheWebHostSetting)
{
    setenv("TV_WEB_HOST", ("127.0.0.1:" + std::to_string(server.GetPort())).c_str(), 1);
    String const url = Updater::GetMarketingURL();
    unsetenv("TV_WEB_HOST");
    EXPECT_EQ(String(server.Url("/updater/").c_str()), url);

    setenv("TV_WEB_HOST", "ftp://example.invalid", 1);
    EXPECT_TRUE(Updater::GetMarketingURL().IsNull()) << "a bad override never falls back";
    unsetenv("TV_WEB_HOST");
    EXPECT_EQ(Network::ComposeHostURL(TV_WEB_HOST, "/updater/"), Updater::GetMarketingURL());

    // The whole road: the built address, the page there and its picture.
    served.Write("banner.png", MakeBanner());
    served.Write("updater.html",
                 "<a href=\"http://l/\"><img src=\"" + server.Url("/root/banner.png") + "\"></a>");
    EXPECT_EQ("http://l/||0|0", Outcome(url.CStr()));
}

TEST_F(MarketingMessageThreadTest, PicturesBeyondABannersSizeAreRefusedBeforeDecoding)
{
    // Grey one-bit pictures: a few bytes on the wire however large they claim to be.
    struct Case
    {
        unsigned int width, height;
        char const* word;
    } const cases[] = {
        {4096, 1024, ""},
        {4097, 1, "Cannot parse image data as png"},
        {1, 1025, "Cannot parse image data as png"},
    };
    std::string const page = "<a href=\"http://l/\"><img src=\"IMAGE\"></a>";
    for (Case const& c : cases)
    {
        TestSupport::PngSample grey;
        grey.width = c.width;
        grey.height = c.height;
        grey.bitDepth = 1;
        grey.colorType = PNG_COLOR_TYPE_GRAY;
        grey.samples.assign(static_cast<std::size_t>(c.width) * c.height, 1);
        served.Write("grey.png", TestSupport::MakePng(grey));
        std::unique_ptr<MarketingMessageThread> worker = Scrape(ServePage(page, "grey.png"));
        if (*c.word)
        {
            ExpectFailure(*worker, c.word);
            continue;
        }
        Record out;
        ASSERT_TRUE(worker->GetMessageData(out)) << c.width << "x" << c.height;
        ASSERT_TRUE(out && out->image);
        EXPECT_EQ(int(c.width), out->image->GetWidth());
        EXPECT_EQ(int(c.height), out->image->GetHeight());
    }

    // A header that claims 16384 x 16384 (its checksum no longer matches: nothing may read on).
    TestSupport::PngSample dot;
    dot.width = dot.height = 1;
    dot.bitDepth = 1;
    dot.colorType = PNG_COLOR_TYPE_GRAY;
    dot.samples = {1};
    std::string huge = TestSupport::MakePng(dot);
    huge.replace(16, 8, std::string("\0\0\x40\0\0\0\x40\0", 8));
    served.Write("huge.png", huge);
    ExpectFailure(*Scrape(ServePage(page, "huge.png")), "Cannot parse image data as png");
}
