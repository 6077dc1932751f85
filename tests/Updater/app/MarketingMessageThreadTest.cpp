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

    TempFolder served{"tv-marketing-served"};
    HttpFixture server{served.Path(), false};
};

} // namespace

// ---- good pages

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

TEST_F(MarketingMessageThreadTest, MissingOrOddAttributesFallBackToZeroAndEmpty)
{
    served.Write("banner.png", MakeBanner());
    {
        auto worker = Scrape(ServePage("<a href=\"http://l/\"><img src=\"IMAGE\"></a>"));
        Record record;
        ASSERT_TRUE(worker->GetMessageData(record));
        ASSERT_TRUE(record);
        EXPECT_EQ(0, record->width);
        EXPECT_EQ(0, record->height);
        EXPECT_TRUE(record->altText.IsEmpty());
    }
    {
        // Unquoted, empty and non-numeric values all give 0; an empty alt stays empty.
        auto worker = Scrape(ServePage(
            "<a href=\"http://l/\"><img src=\"IMAGE\" width=\"\" height=\"tall\" alt=\"\"></a>"));
        Record record;
        ASSERT_TRUE(worker->GetMessageData(record));
        ASSERT_TRUE(record);
        EXPECT_EQ(0, record->width);
        EXPECT_EQ(0, record->height);
        EXPECT_TRUE(record->altText.IsEmpty());
    }
}

TEST_F(MarketingMessageThreadTest, EarlierAttributesAnywhereOnThePageCount)
{
    served.Write("banner.png", MakeBanner());
    auto worker = Scrape(ServePage(
        "<table width=\"600\"><tr><td><img alt=\"logo\" height=\"12\">\n"
        "<a href=\"http://l/\"><img src=\"IMAGE\" width=\"468\" height=\"60\" alt=\"Offer\">"
        "</a></td></tr></table>"));
    Record record;
    ASSERT_TRUE(worker->GetMessageData(record));
    ASSERT_TRUE(record);
    EXPECT_EQ(600, record->width) << "the table's width comes first on the page";
    EXPECT_EQ(12, record->height);
    EXPECT_EQ(String("logo"), record->altText);
}

TEST_F(MarketingMessageThreadTest, HrefWithoutQuoteTakesTheNextQuotedText)
{
    served.Write("banner.png", MakeBanner());
    {
        auto worker = Scrape(ServePage("<a href= \"http://spaced/\"><img src=\"IMAGE\"></a>"));
        Record record;
        ASSERT_TRUE(worker->GetMessageData(record));
        ASSERT_TRUE(record);
        EXPECT_EQ(String("http://spaced/"), record->link);
    }
    {
        auto worker =
            Scrape(ServePage("<a href=http://bare/ title=\"Shop\"><img src=\"IMAGE\"></a>"));
        Record record;
        ASSERT_TRUE(worker->GetMessageData(record));
        ASSERT_TRUE(record);
        EXPECT_EQ(String("Shop"), record->link);
    }
}

TEST_F(MarketingMessageThreadTest, SingleQuotesFailOrFindALaterQuotedText)
{
    served.Write("banner.png", MakeBanner());
    {
        auto worker = Scrape(ServePage("<a href='http://l/'><img src='IMAGE'></a>"));
        ExpectFailure(*worker, "Cannot locate marketing url");
    }
    {
        // The anchor's address is the image's, the first double-quoted text behind it.
        auto worker = Scrape(ServePage("<a href='http://l/'><img src=\"IMAGE\"></a>"));
        Record record;
        ASSERT_TRUE(worker->GetMessageData(record));
        ASSERT_TRUE(record);
        EXPECT_EQ(String(server.Url("/root/banner.png").c_str()), record->link);
    }
    {
        auto worker = Scrape(ServePage("<a href=\"\"><img src=\"IMAGE\"></a>"));
        ExpectFailure(*worker, "Cannot locate marketing url");
    }
}

// ---- pages without the tags

TEST_F(MarketingMessageThreadTest, MissingTagsAreReported)
{
    served.Write("banner.png", MakeBanner());
    ExpectFailure(*Scrape(ServePage("<html><body>No offers today</body></html>")),
                  "Cannot locate anchor tag");
    ExpectFailure(*Scrape(ServePage("<A HREF=\"http://l/\"><img src=\"IMAGE\"></A>")),
                  "Cannot locate anchor tag");
    ExpectFailure(*Scrape(ServePage("<a href=\"http://l/\">Shop</a>")), "Cannot locate img tag");
    ExpectFailure(*Scrape(ServePage("<img src=\"IMAGE\"><a href=\"http://l/\">Shop</a>")),
                  "Cannot locate img tag");
    // The page ends at its first NUL.
    ExpectFailure(*Scrape(ServePage(std::string("<p>x</p>\0<a href=\"http://l/\">"
                                                "<img src=\"IMAGE\"></a>",
                                                40))),
                  "Cannot locate anchor tag");
}

TEST_F(MarketingMessageThreadTest, NotFoundPageHasNoAnchor)
{
    ExpectFailure(*Scrape(server.Url("/404")), "Cannot locate anchor tag");
}

// ---- the picture

TEST_F(MarketingMessageThreadTest, PicturesThatAreNotPngAreRefused)
{
    std::string const banner = MakeBanner();
    std::string const page = "<a href=\"http://l/\"><img src=\"IMAGE\"></a>";

    served.Write("broken.png", banner.substr(0, 8) + std::string(40, '\x5A'));
    ExpectFailure(*Scrape(ServePage(page, "broken.png")), "Cannot parse image data as png");

    // Shorter than the signature yet matching as far as it goes.
    served.Write("short.png", banner.substr(0, 4));
    ExpectFailure(*Scrape(ServePage(page, "short.png")), "Cannot parse image data as png");

    served.Write("gif.png", std::string("GIF89a\x01\x00\x01\x00", 10));
    ExpectFailure(*Scrape(ServePage(page, "gif.png")), "Cannot parse image data as png");

    served.Write("cut.png", banner.substr(0, banner.size() / 2));
    ExpectFailure(*Scrape(ServePage(page, "cut.png")), "Cannot parse image data as png");

    // A missing picture is the server's HTML error page: data, but no signature.
    ExpectFailure(*Scrape(ServePage(page, "absent.png")), "Cannot parse image data as png");
}

TEST_F(MarketingMessageThreadTest, FailedPictureRequestIsCannotReadImage)
{
    served.Write("empty.png", "");
    ExpectFailure(*Scrape(ServePage("<a href=\"http://l/\"><img src=\"IMAGE\"></a>", "empty.png")),
                  "Cannot read image");

    served.Write("page.html",
                 "<a href=\"http://l/\"><img src=\"" + server.Url("/stall") + "\"></a>");
    ExpectFailure(*Scrape(server.Url("/root/page.html"), 300), "Cannot read image");

    served.Write("page.html",
                 "<a href=\"http://l/\"><img src=\"" + server.ClosedUrl("/x.png") + "\"></a>");
    ExpectFailure(*Scrape(server.Url("/root/page.html"), 300), "Cannot read image");
}

// ---- the page request

TEST_F(MarketingMessageThreadTest, FailedPageRequestKeepsItsOwnWord)
{
    ExpectFailure(*Scrape(server.Url("/empty")), "Marketing message empty.");
    // A time-out leaves no error and no data.
    ExpectFailure(*Scrape(server.Url("/stall"), 300), "Marketing message empty.");
    // A refused connection is a transfer error (libcurl's "couldn't connect", 7), read once
    // the time-out ends the request.
    ExpectFailure(*Scrape(server.ClosedUrl("/updater/"), 300), "Internal stream error 1, 7");
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

// ---- state around the run

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

// ---- the page address

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
    auto worker = Scrape(url.CStr());
    Record record;
    ASSERT_TRUE(worker->GetMessageData(record));
    ASSERT_TRUE(record);
    EXPECT_EQ(String("http://l/"), record->link);
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
