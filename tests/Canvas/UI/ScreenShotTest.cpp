#include "Canvas/UI/ScreenShot.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Media.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/ScreenShotHost.h"
#include "TvBase/Util/ConfigFile.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace
{

boost::shared_ptr<UI::DIBits> readPng(std::string const& path)
{
    std::string const file = TestSupport::ReadFile(path);
    return UI::Media::GetPNGBits(unsigned(file.size()),
                                 reinterpret_cast<unsigned char const*>(file.data()), 0.0f);
}

// The host's dialogs, scripted: the answers given and the questions asked.
class ScriptedHost : public UI::Native::ScreenShotHost
{
public:
    checked_value<FilePath> AskSaveFile(String const& title, String const& folder,
                                        String const& filename, String const& filterName,
                                        String const& filterPattern,
                                        String const& extension) override
    {
        asked.push_back(std::string(title.CStr()) + "|" + folder.CStr() + "|" + filename.CStr() +
                        "|" + filterName.CStr() + "|" + filterPattern.CStr() + "|" +
                        extension.CStr());
        return answer;
    }
    bool AskYesNo(String const& question, String const& caption) override
    {
        questions.push_back(std::string(caption.CStr()) + ": " + question.CStr());
        return overwrite;
    }
    bool SetClipboardImage(UI::DIBits const& bits) override
    {
        clipboard = bits.Copy();
        return true;
    }
    checked_value<unsigned int> GetScreenColor(UI::Point const& p) override
    {
        return p.x >= 0 ? checked_value<unsigned int>(0xFF000000u | unsigned(p.x * 256 + p.y))
                        : checked_value<unsigned int>();
    }

    checked_value<FilePath> answer;
    bool overwrite = false;
    std::vector<std::string> asked;
    std::vector<std::string> questions;
    UI::DIBits clipboard;
};

// A frame of 12 by 8 whose bitmap holds a painted picture: grey with a red box.
struct PaintedFrame
{
    PaintedFrame()
    {
        frame = new UI::Frame(&canvas, nullptr, &context, UI::Point(), "", UI::Rect(0, 11, 0, 7));
        context.Begin(UI::Size(12, 8));
        context.DrawBox(UI::Rect(0, 11, 0, 7), UI::DrawContext::Filled, 0xFF808080u, 255);
        context.DrawBox(UI::Rect(2, 5, 1, 3), UI::DrawContext::Filled, 0xFFFF0000u, 255);
    }
    ~PaintedFrame() { delete frame; }

    UI::Canvas canvas{"ScreenShot Test"};
    UI::MemoryDrawContext context{"ScreenShot Context"};
    UI::Frame* frame;
};

class ScreenShots : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // The toolkit's settings land in this test's own folder.
        setenv("XDG_CONFIG_HOME", (folder.Path() + "/config").c_str(), 1);
        UI::Native::SetScreenShotHost(&host);
    }
    void TearDown() override { UI::Native::SetScreenShotHost(nullptr); }

    std::string path(char const* name) const { return folder.Path() + "/" + name; }

    TestSupport::TempFolder folder{"tv-shot"};
    ScriptedHost host;
};

} // namespace

TEST_F(ScreenShots, FromRectCopiesThePaintedPixelsCutToTheFrame)
{
    PaintedFrame painted;
    boost::shared_ptr<UI::DIBits> part =
        UI::ScreenShotFromRect(painted.frame, UI::Rect(1, 3, 0, 2));
    ASSERT_TRUE(part);
    EXPECT_EQ(part->GetSize(), UI::Size(3, 3));
    EXPECT_FALSE(part->HasAlpha());
    EXPECT_EQ(part->GetPixels()[0] & 0xFFFFFF, 0x808080u);     // (1, 0)
    EXPECT_EQ(part->GetPixels()[3 + 1] & 0xFFFFFF, 0xFF0000u); // (2, 1)
    boost::shared_ptr<UI::DIBits> cut =
        UI::ScreenShotFromRect(painted.frame, UI::Rect(10, 40, 6, 40));
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->GetSize(), UI::Size(2, 2));
    EXPECT_FALSE(UI::ScreenShotFromRect(painted.frame, UI::Rect(20, 30, 0, 5)));
    EXPECT_FALSE(UI::ScreenShotFromRect(nullptr, UI::Rect(0, 1, 0, 1)));
}

TEST_F(ScreenShots, BitsToFileAddsTheExtensionAndKeepsAlpha)
{
    boost::shared_ptr<UI::DIBits> bits =
        UI::CreateDIBits(UI::Size(5, 4), checked_value<unsigned int>(0x80336699u));
    bits->GetPixels()[7] = 0xFF010203u;
    bits->SetHasAlpha(true);
    ASSERT_TRUE(UI::ScreenShotFromDIBitsToFile(bits, FilePath(path("shot").c_str()), nullptr,
                                               nullptr, true));
    boost::shared_ptr<UI::DIBits> back = readPng(path("shot.png"));
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->HasAlpha());
    EXPECT_EQ(back->GetPixels()[0], 0x80336699u);
    EXPECT_EQ(back->GetPixels()[7], 0xFF010203u);

    // A name that already ends in ".png" is kept, whatever its case.
    ASSERT_TRUE(UI::ScreenShotFromDIBitsToFile(bits, FilePath(path("Upper.PNG").c_str()), nullptr,
                                               nullptr, false));
    EXPECT_TRUE(std::ifstream(path("Upper.PNG")).good());
    EXPECT_FALSE(std::ifstream(path("Upper.PNG.png")).good());

    EXPECT_FALSE(UI::ScreenShotFromDIBitsToFile(
        boost::shared_ptr<UI::DIBits>(), FilePath(path("none").c_str()), nullptr, nullptr, false));
}

TEST_F(ScreenShots, ToFileAsksWritesAndRemembersTheChoice)
{
    PaintedFrame painted;
    host.answer = FilePath(path("first").c_str());
    ASSERT_TRUE(UI::ScreenShotToFile(painted.frame));
    ASSERT_EQ(host.asked.size(), 1u);
    EXPECT_EQ(host.asked[0], "Save Screenshot|||Screenshots (*.png)|*.png|png");
    EXPECT_TRUE(host.questions.empty());
    boost::shared_ptr<UI::DIBits> back = readPng(path("first.png"));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->GetSize(), UI::Size(12, 8));
    EXPECT_EQ(back->GetPixels()[12 * 2 + 3], 0xFFFF0000u);
    EXPECT_EQ(back->GetPixels()[0], 0xFF808080u);

    Util::ConfigFile config("com.tavorin");
    EXPECT_EQ(std::string(config.GetString("LastScreenShotFilename").CStr()), "first.png");
    EXPECT_EQ(std::string(config.GetString("LastScreenShotFolder").CStr()).find(folder.Path()), 0u);

    // The next dialog starts from there; an existing file needs a yes.
    host.answer = FilePath(path("first.png").c_str());
    host.overwrite = false;
    EXPECT_FALSE(UI::ScreenShotToFile(painted.frame));
    ASSERT_EQ(host.asked.size(), 2u);
    EXPECT_NE(host.asked[1].find("|first.png|"), std::string::npos);
    ASSERT_EQ(host.questions.size(), 1u);
    EXPECT_EQ(host.questions[0], "Confirm Overwrite: The file " + path("first.png") +
                                     " already exists, are you sure you want to overwrite it?");
    host.overwrite = true;
    EXPECT_TRUE(UI::ScreenShotToFile(painted.frame));

    // Cancelling writes nothing and keeps the settings.
    host.answer = checked_value<FilePath>();
    EXPECT_FALSE(UI::ScreenShotToFile(painted.frame));
    EXPECT_EQ(std::string(config.GetString("LastScreenShotFilename").CStr()), "first.png");
}

TEST_F(ScreenShots, ClipboardAndScreenColorGoThroughTheHost)
{
    PaintedFrame painted;
    ASSERT_TRUE(UI::ScreenShotToClipboard(painted.frame));
    EXPECT_EQ(host.clipboard.GetSize(), UI::Size(12, 8));
    EXPECT_EQ(host.clipboard.GetPixels()[12 + 2] & 0xFFFFFF, 0xFF0000u);

    EXPECT_EQ(UI::ScreenShotColorAtScreenPos(UI::Point(1, 2)).GetOr(0), 0xFF000102u);
    EXPECT_FALSE(UI::ScreenShotColorAtScreenPos(UI::Point(-1, 2)).IsPresent());

    UI::Native::SetScreenShotHost(nullptr);
    EXPECT_FALSE(UI::ScreenShotToClipboard(painted.frame));
    EXPECT_FALSE(UI::ScreenShotToFile(painted.frame));
    EXPECT_FALSE(UI::ScreenShotColorAtScreenPos(UI::Point(1, 2)).IsPresent());
}
