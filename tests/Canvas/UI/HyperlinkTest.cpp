#include "Canvas/UI/Hyperlink.h"

#include "Canvas/UI/Font.h"
#include "Canvas/UI/KeyCode.h"
#include "TvBase/Util/LaunchWebURL.h"
#include "tests/Canvas/UI/support/ButtonTestSupport.h"

#include <boost/function.hpp>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

using ButtonTest::Scene;

namespace
{

/// A stand-in `xdg-open` first on PATH: it appends its argument to "opened.txt" and then
/// writes one line to a FIFO, which the test waits on (with a time limit) to know it ran.
class FakeOpener
{
public:
    FakeOpener() : oldPath(std::getenv("PATH") ? std::getenv("PATH") : "")
    {
        fifo = folder.Path() + "/ran";
        log = folder.Path() + "/opened.txt";
        EXPECT_EQ(mkfifo(fifo.c_str(), 0600), 0);
        std::string const script =
            "#!/bin/sh\nprintf '%s\\n' \"$1\" >> '" + log + "'\necho done > '" + fifo + "'\n";
        std::string const path = folder.Write("xdg-open", script);
        chmod(path.c_str(), 0700);
        setenv("PATH", (folder.Path() + ":" + oldPath).c_str(), 1);
        // Opened without blocking, so the opener's write end never waits for the test.
        reader = open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
    }
    ~FakeOpener()
    {
        if (reader >= 0)
            close(reader);
        setenv("PATH", oldPath.c_str(), 1);
    }

    /// Waits up to ten seconds for one run of the opener; false when none came.
    bool WaitForRun()
    {
        pollfd p{reader, POLLIN, 0};
        if (poll(&p, 1, 10000) != 1)
            return false;
        char buffer[64];
        return read(reader, buffer, sizeof buffer) > 0;
    }
    std::string Opened() const { return TestSupport::ReadFile(log); }

private:
    TestSupport::TempFolder folder{"tv-hyperlink"};
    std::string oldPath;
    std::string fifo;
    std::string log;
    int reader = -1;
};

} // namespace

TEST(HyperlinkSize, FitsItsTextAndRefitsOnChange)
{
    Scene s;
    auto* link = new UI::Hyperlink(s.frame.get(), nullptr, "Update Link", "Update",
                                   "http://example.invalid/a");
    UI::Font* font = s.canvas.GetFont(checked_value<unsigned int>());
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(link->GetWidth(), int(font->GetStringWidth("Update")));
    EXPECT_EQ(link->GetHeight(), font->GetHeight());
    EXPECT_TRUE(link->IsFixedWidth());
    EXPECT_EQ(link->GetCursor().GetShape(), UI::Cursor::PointingHand);
    int const before = link->GetWidth();
    link->SetText("Update now, please");
    EXPECT_GT(link->GetWidth(), before);
    EXPECT_EQ(link->GetTextColor(), UI::Hyperlink::kDefaultColor);
}

TEST(HyperlinkDrawing, DrawsInTheLinkColourOrThePaletteKeys)
{
    Scene s(120, 30);
    s.canvas.SetPaletteColor("LinkColor", 0xFF00FF00u);
    auto* link = new UI::Hyperlink(s.frame.get(), nullptr, "Link", "MMMM", "",
                                   checked_value<unsigned int>(), "LinkColor");
    EXPECT_EQ(link->GetTextColor(), 0xFF00FF00u);
    s.Paint();
    // Every pixel the text touches is a shade of green over the black background.
    bool green = false;
    for (int y = 0; y < link->GetHeight(); ++y)
        for (int x = 0; x < link->GetWidth(); ++x)
        {
            unsigned int const p = s.Pixel(x, y);
            EXPECT_EQ(p & 0x00FF00FFu, 0u) << x << "," << y;
            green = green || (p & 0x0000FF00u) != 0;
        }
    EXPECT_TRUE(green);
}

TEST(HyperlinkClick, ReleaseInsideOpensTheURLOnce)
{
    FakeOpener opener;
    Scene s;
    auto* link = new UI::Hyperlink(s.frame.get(), nullptr, "Link", "Update",
                                   "http://example.invalid/a page");
    int clicks = 0;
    link->signalClicked.Connect(nullptr, boost::function<void()>([&] { ++clicks; }));
    EXPECT_TRUE(s.Press(2, 2));
    EXPECT_EQ(s.frame->GetMouseCapture(), link);
    s.Release(300, 300);
    EXPECT_EQ(clicks, 0) << "released outside: nothing";
    s.Click(2, 2);
    EXPECT_EQ(clicks, 1);
    ASSERT_TRUE(opener.WaitForRun());
    EXPECT_EQ(opener.Opened(), "http://example.invalid/a%20page\n");
}

TEST(HyperlinkClick, KeyboardActivationOpensToo)
{
    FakeOpener opener;
    Scene s;
    auto* link =
        new UI::Hyperlink(s.frame.get(), nullptr, "Link", "Update", "https://example.invalid/k");
    EXPECT_FALSE(link->onKeyPress(UI::KeyCode::Return, 0, false));
    link->SetAcceptReturn(true);
    EXPECT_TRUE(link->onKeyPress(UI::KeyCode::Return, 0, false));
    ASSERT_TRUE(opener.WaitForRun());
    EXPECT_EQ(opener.Opened(), "https://example.invalid/k\n");
}

TEST(HyperlinkClick, NetworkLinksOpenOnlyWebAddresses)
{
    EXPECT_TRUE(Util::IsWebURL("http://a"));
    EXPECT_TRUE(Util::IsWebURL("HTTPS://a/b"));
    EXPECT_FALSE(Util::IsWebURL("file:///etc/passwd"));
    EXPECT_FALSE(Util::IsWebURL("httpx://a"));
    EXPECT_FALSE(Util::IsWebURL("http:"));
    EXPECT_FALSE(Util::IsWebURL(String()));
    EXPECT_FALSE(Util::IsWebURL(" http://a"));

    FakeOpener opener;
    Scene s;
    auto* refused =
        new UI::Hyperlink(s.frame.get(), nullptr, "Refused", "Update", "file:///etc/passwd");
    refused->SetWebOnly(true);
    int clicks = 0;
    refused->signalClicked.Connect(nullptr, boost::function<void()>([&] { ++clicks; }));
    s.Click(2, 2);
    EXPECT_EQ(clicks, 1) << "the click itself is still reported";

    auto* allowed =
        new UI::Hyperlink(s.frame.get(), nullptr, "Allowed", "Update", "http://example.invalid/ok");
    allowed->SetWebOnly(true);
    allowed->SetGeometry(0, 40, allowed->GetWidth(), allowed->GetHeight());
    s.Click(2, 42);
    ASSERT_TRUE(opener.WaitForRun());
    EXPECT_EQ(opener.Opened(), "http://example.invalid/ok\n");
}
