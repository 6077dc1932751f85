// The pixel zoom over a second in-memory frame: its blocks against the source frame's bitmap,
// the source area at the bitmap's edges, the too-small message, freeze and measure, the
// read-out, the copy forms on the clipboard, the image clipboard, and the wheel.

#include "Canvas/UI/PixelZoom.h"

#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "Canvas/UI/PNG.h"
#include "TvBase/Util/Clipboard.h"
#include "TvBase/Util/ConfigFile.h"
#include "tests/Canvas/UI/support/ButtonTestSupport.h"
#include "tests/TvBase/Util/detail/TempConfigHome.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace
{

using UI::Point;
using UI::Rect;

int const SourceWidth = 300;
int const SourceHeight = 200;

/// A picture where neighbouring pixels differ in every channel.
unsigned int sourcePixel(int x, int y)
{
    return 0xFF000000u | unsigned((x * 7) & 0xFF) << 16 | unsigned((y * 11) & 0xFF) << 8 |
           unsigned((x + y * 3) & 0xFF);
}

/// The panel with its menus answered by the test: `choice` picks an entry by position, and the
/// captions and enabled states of the last menu are kept.
class ScriptedZoom : public UI::PixelZoom
{
public:
    using PixelZoom::PixelZoom;

    int choice = UI::Native::PopupMenu::None;
    std::vector<String> captions;
    std::vector<bool> enabled;

protected:
    int showPopupMenu(UI::Native::PopupMenu& menu, Point const&) override
    {
        captions.clear();
        enabled.clear();
        for (auto const& entry : menu.GetEntries())
        {
            captions.push_back(entry.caption);
            enabled.push_back(entry.enabled);
        }
        if (choice < 0 || std::size_t(choice) >= menu.GetEntries().size())
            return UI::Native::PopupMenu::None;
        return menu.GetEntries()[std::size_t(choice)].id;
    }
};

class PixelZoomTest : public ::testing::Test
{
protected:
    UI::Canvas canvas{"PixelZoomTest"};
    UI::Test::TestHostWindow sourceHost;
    UI::MemoryDrawContext sourceContext{"Source Context"};
    std::unique_ptr<UI::Frame> source;
    UI::Test::TestHostWindow panelHost;
    UI::MemoryDrawContext panelContext{"Panel Context"};
    std::unique_ptr<UI::Frame> panel;
    Util::ConfigFile config{"com.tavorin"};
    ScriptedZoom* zoom = nullptr;

    void SetUp() override
    {
        ButtonTest::Platform();
        source.reset(new UI::Frame(&canvas, sourceHost.Handle(), &sourceContext, Point(), "",
                                   Rect(0, SourceWidth - 1, 0, SourceHeight - 1)));
        source->SetHostWindow(&sourceHost);
        // The source's picture is written straight into its bitmap, as a finished paint.
        sourceContext.Begin(UI::Size(SourceWidth, SourceHeight));
        for (int y = 0; y < SourceHeight; ++y)
            for (int x = 0; x < SourceWidth; ++x)
                setSourcePixel(x, y, sourcePixel(x, y));
        sourceContext.End({}, nullptr, nullptr);
        MakePanel(250, 400);
    }

    void TearDown() override
    {
        panel.reset();
        source.reset();
    }

    void MakePanel(int width, int height)
    {
        panel.reset(new UI::Frame(&canvas, panelHost.Handle(), &panelContext, Point(), "",
                                  Rect(0, width - 1, 0, height - 1)));
        panel->SetHostWindow(&panelHost);
        panel->SetDrawingEnabled(true);
        zoom = new ScriptedZoom(panel.get(), nullptr, &config);
        zoom->SetGeometry(0, 0, width, height);
        zoom->GetZoomFactorParam()->set(8.0f);
        zoom->GetShowGridParam()->set(false);
        zoom->GetShowRulerParam()->set(true);
        zoom->SetZoomFrame(source.get());
    }

    void setSourcePixel(int x, int y, unsigned int color)
    {
        auto const& section = sourceContext.GetDIBSection();
        section->GetPixels()[y * section->GetStride() + x] = color;
    }

    /// The mouse over the source frame at `p` (its frame coordinates).
    void MouseOverSource(Point const& p) { sourceHost.cursorScreenPos = p; }

    void Paint()
    {
        zoom->Update();
        panel->RenderInvalidRegions(true);
    }

    unsigned int PanelPixel(int x, int y) const
    {
        auto const& section = panelContext.GetDIBSection();
        return section->GetPixels()[y * section->GetStride() + x];
    }

    bool Mouse(UI::MouseMessage message, Point const& p, int delta = 0)
    {
        unsigned int const flags = message == UI::MouseMove || message == UI::MouseLeftPress
                                       ? unsigned(UI::FlagLeftButton)
                                       : 0u;
        return panel->HandleMouseMessage(message, p, flags, delta);
    }

    /// The panel point at the middle of the block of source pixel `s`.
    Point BlockCentre(Point const& s) const
    {
        int const f = zoom->GetFactor();
        Rect const& z = zoom->GetZoomRect();
        Rect const& r = zoom->GetSourceRect();
        return Point(z.left + (s.x - r.left) * f + f / 2, z.top + (s.y - r.top) * f + f / 2);
    }

    /// The PNG file at `path` holds the source area of the last draw.
    void ExpectPngOfSourceArea(std::string const& path) const
    {
        std::ifstream in(path, std::ios::binary);
        std::stringstream bytes;
        bytes << in.rdbuf();
        std::string const png = bytes.str();
        UI::PNG::Bitmap bitmap;
        ASSERT_EQ(0, UI::PNG::DecodePngImage(reinterpret_cast<unsigned char const*>(png.data()),
                                             unsigned(png.size()), bitmap));
        Rect const& r = zoom->GetSourceRect();
        ASSERT_EQ(r.Width(), bitmap.GetWidth());
        ASSERT_EQ(r.Height(), bitmap.GetHeight());
        for (int y = 0; y < r.Height(); y += 7)
            for (int x = 0; x < r.Width(); x += 5)
            {
                unsigned int const c = sourcePixel(r.left + x, r.top + y);
                EXPECT_EQ(float((c >> 16) & 0xFF), bitmap.red[y][x]);
                EXPECT_EQ(float(c & 0xFF), bitmap.blue[y][x]);
            }
    }
};

TEST_F(PixelZoomTest, BlocksMatchTheSourceBitmap)
{
    struct Case
    {
        float factor;
        int width, height;
        Point mouse;
    } const cases[] = {
        {8.0f, 250, 400, Point(150, 100)},
        {32.0f, 250, 400, Point(150, 100)},
        {32.0f, 300, 300, Point(40, 170)},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(c.factor);
        MakePanel(c.width, c.height);
        zoom->GetZoomFactorParam()->set(c.factor);
        MouseOverSource(c.mouse);
        Paint();
        ASSERT_TRUE(zoom->IsZoomShown());
        int const f = int(c.factor);
        Rect const& r = zoom->GetSourceRect();
        Rect const& z = zoom->GetZoomRect();
        EXPECT_EQ(f, zoom->GetFactor());
        EXPECT_EQ((c.width - 8) / f, r.Width());
        EXPECT_EQ((c.height - 119) / f, r.Height());
        EXPECT_EQ(r.Width() * f, z.Width());
        EXPECT_EQ(r.Height() * f, z.Height());
        EXPECT_EQ(c.mouse, zoom->GetCursor());
        EXPECT_TRUE(r.Contains(c.mouse));

        int mismatches = 0;
        for (int sy = r.top; sy <= r.bottom; ++sy)
            for (int sx = r.left; sx <= r.right; ++sx)
            {
                // The cursor's circle covers its block and reaches into the neighbours.
                if (std::abs(sx - c.mouse.x) <= 1 && std::abs(sy - c.mouse.y) <= 1)
                    continue;
                int const left = z.left + (sx - r.left) * f, top = z.top + (sy - r.top) * f;
                for (int y = top; y < top + f; ++y)
                    for (int x = left; x < left + f; ++x)
                        mismatches += PanelPixel(x, y) != sourcePixel(sx, sy);
            }
        EXPECT_EQ(0, mismatches);
    }
}

TEST_F(PixelZoomTest, SourceAreaStaysInsideTheBitmap)
{
    struct Case
    {
        Point mouse, cursor;
        int left, top; // -1: centred on the cursor
    } const cases[] = {
        {Point(0, 0), Point(0, 0), 0, 0},
        {Point(-40, -9), Point(0, 0), 0, 0},
        {Point(299, 199), Point(299, 199), 300 - 30, 200 - 35},
        {Point(900, 900), Point(299, 199), 300 - 30, 200 - 35},
        {Point(299, 3), Point(299, 3), 300 - 30, 0},
        {Point(150, 100), Point(150, 100), 150 - 15, 100 - 17},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(testing::Message() << c.mouse.x << "," << c.mouse.y);
        MouseOverSource(c.mouse);
        Paint();
        Rect const& r = zoom->GetSourceRect();
        EXPECT_EQ(30, r.Width());
        EXPECT_EQ(35, r.Height());
        EXPECT_EQ(c.cursor, zoom->GetCursor());
        EXPECT_EQ(c.left, r.left);
        EXPECT_EQ(c.top, r.top);
        // The corner pixel is shown off centre, where it lies.
        EXPECT_EQ(sourcePixel(c.cursor.x, c.cursor.y) | 0xFF000000u,
                  PanelPixel(BlockCentre(c.cursor).x - 2, BlockCentre(c.cursor).y - 3) |
                      0xFF000000u);
    }

    // A bitmap smaller than the panel's room is shown whole.
    zoom->GetZoomFactorParam()->set(4.0f);
    MakePanel(1400, 1000);
    zoom->GetZoomFactorParam()->set(4.0f);
    Paint();
    EXPECT_EQ(Rect(0, SourceWidth - 1, 0, SourceHeight - 1), zoom->GetSourceRect());
}

TEST_F(PixelZoomTest, TooSmallPanelShowsTheMessage)
{
    struct Case
    {
        int width, height;
        bool shown;
    } const cases[] = {
        {250, 119 + 31, false}, {250, 119 + 32, true}, {8 + 31, 400, false}, {8 + 32, 400, true}};
    for (Case const& c : cases)
    {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height);
        MakePanel(c.width, c.height);
        zoom->GetZoomFactorParam()->set(32.0f);
        Paint();
        EXPECT_EQ(c.shown, zoom->IsZoomShown());
        if (c.shown)
        {
            EXPECT_EQ(1, std::min(zoom->GetSourceRect().Width(), zoom->GetSourceRect().Height()));
        }
    }
    // The message is drawn where the zoom would be.
    MakePanel(250, 140);
    zoom->GetZoomFactorParam()->set(32.0f);
    Paint();
    ASSERT_FALSE(zoom->IsZoomShown());
    int dark = 0;
    for (int y = 4; y < 30; ++y)
        for (int x = 4; x < 246; ++x)
            dark += (PanelPixel(x, y) & 0xFFFFFF) < 0x808080;
    EXPECT_GT(dark, 20);
}

TEST_F(PixelZoomTest, FreezeKeepsThePictureAndMeasures)
{
    MouseOverSource(Point(150, 100));
    Paint();
    Rect const before = zoom->GetSourceRect();

    // Presses while live don't measure.
    EXPECT_TRUE(Mouse(UI::MouseLeftPress, BlockCentre(Point(140, 90))));
    Mouse(UI::MouseLeftRelease, BlockCentre(Point(140, 90)));
    EXPECT_FALSE(zoom->IsMeasuring());

    zoom->ToggleFreeze();
    EXPECT_TRUE(zoom->IsFrozen());
    setSourcePixel(140, 90, 0xFF123456u);
    MouseOverSource(Point(10, 10));
    Paint();
    EXPECT_EQ(before, zoom->GetSourceRect());
    EXPECT_EQ(sourcePixel(140, 90),
              PanelPixel(BlockCentre(Point(140, 90)).x, BlockCentre(Point(140, 90)).y));

    // Press on one block, drag past the area's corner: the box is clamped to the area.
    EXPECT_TRUE(Mouse(UI::MouseLeftPress, BlockCentre(Point(140, 90))));
    EXPECT_TRUE(zoom->IsMeasuring());
    EXPECT_EQ(Point(140, 90), zoom->GetMeasureStart());
    EXPECT_EQ(Point(140, 90), zoom->GetCursor());
    Mouse(UI::MouseMove, BlockCentre(Point(145, 94)));
    EXPECT_EQ(Point(145, 94), zoom->GetMeasureEnd());
    Mouse(UI::MouseMove, Point(249, 399));
    EXPECT_EQ(Point(before.right, before.bottom), zoom->GetMeasureEnd());
    Mouse(UI::MouseMove, BlockCentre(Point(143, 92)));
    Mouse(UI::MouseLeftRelease, BlockCentre(Point(143, 92)));
    EXPECT_EQ(nullptr, panel->GetMouseCapture());
    Mouse(UI::MouseMove, BlockCentre(Point(147, 97)));
    EXPECT_EQ(Point(143, 92), zoom->GetMeasureEnd());
    auto sizeTextInk = [this]
    {
        int dark = 0;
        for (int y = 400 - 86; y < 400 - 72; ++y)
            for (int x = 5; x < 120; ++x)
                dark += (PanelPixel(x, y) & 0xFFFFFF) < 0x808080;
        return dark;
    };

    // The box outlines blocks 140..143 by 90..92 in the measuring colour, and "4 x 3" is shown.
    Paint();
    EXPECT_GT(sizeTextInk(), 10);
    Rect const& z = zoom->GetZoomRect();
    int const left = z.left + (140 - before.left) * 8, top = z.top + (90 - before.top) * 8;
    EXPECT_EQ(0xFFFF0000u, PanelPixel(left + 1, top));
    EXPECT_EQ(0xFFFF0000u, PanelPixel(left + 4 * 8 - 1, top + 3 * 8 - 1));
    EXPECT_EQ(0xFFFF0000u, PanelPixel(left, top + 10));

    // Thawing drops the box, and the picture follows the source again.
    zoom->ToggleFreeze();
    EXPECT_FALSE(zoom->IsMeasuring());
    MouseOverSource(Point(140, 90));
    Paint();
    EXPECT_EQ(0, sizeTextInk());
    EXPECT_EQ(0xFF123456u, zoom->GetCursorColor().Get());
}

TEST_F(PixelZoomTest, ReadoutAndCopyForms)
{
    setSourcePixel(150, 100, 0xFF12AB05u);
    MouseOverSource(Point(150, 100));
    Paint();
    EXPECT_EQ((std::vector<String>{"0x12 0xAB 0x05", "(18 171 5)", "Pos in frame: (150, 100)"}),
              zoom->GetReadoutTexts());
    // The swatch shows the colour inside its outline.
    EXPECT_EQ(0xFF12AB05u, PanelPixel(10, 400 - 100));
    EXPECT_EQ(0xFF000000u, PanelPixel(5, 400 - 105));

    char const* const forms[] = {"12AB05", "0x12, 0xAB, 0x5", "18, 171, 5",
                                 "MakePixel(0x12, 0xAB, 0x5)", "MakePixel(18, 171, 5)"};
    for (int i = 0; i < 5; ++i)
    {
        zoom->choice = i;
        EXPECT_TRUE(panel->HandleMouseMessage(UI::MouseRightPress, Point(100, 400 - 98), 0, 0));
        ASSERT_EQ(5u, zoom->captions.size());
        EXPECT_EQ(String("Copy '%1'").Arg(forms[i]), zoom->captions[std::size_t(i)]);
        EXPECT_EQ(String(forms[i]), Util::Clipboard::GetString(nullptr, 0));
    }
    // Dismissing the menu leaves the clipboard alone.
    zoom->choice = UI::Native::PopupMenu::None;
    panel->HandleMouseMessage(UI::MouseRightPress, Point(100, 400 - 98), 0, 0);
    EXPECT_EQ(String(forms[4]), Util::Clipboard::GetString(nullptr, 0));
}

/// The zoom area goes to the clipboard tool as a PNG of the source area, or is saved through
/// the save dialog. A stand-in `xclip` on PATH keeps what it is given; a stand-in `zenity`
/// answers with a path chosen in advance.
TEST_F(PixelZoomTest, ZoomAreaMenuCopiesAndSavesAPng)
{
    TestSupport::TempFolder folder("tv-pixel-zoom");
    std::string const received = folder.Path() + "/received.png";
    folder.Write("bin/xclip", "#!/bin/sh\n/bin/cat > '" + received + "'\n");
    folder.Write("bin/zenity", "#!/bin/sh\necho '" + folder.Path() + "/zoomed'\n");
    for (char const* tool : {"/bin/xclip", "/bin/zenity"})
        ASSERT_EQ(0, ::chmod((folder.Path() + tool).c_str(), 0755));
    MouseOverSource(Point(150, 100));
    Paint();
    {
        TestSupport::ScopedEnv path("PATH", (folder.Path() + "/bin").c_str());
        TestSupport::ScopedEnv display("DISPLAY", ":77");
        TestSupport::ScopedEnv wayland("WAYLAND_DISPLAY", nullptr);
        zoom->choice = 0;
        EXPECT_TRUE(
            panel->HandleMouseMessage(UI::MouseRightPress, BlockCentre(Point(140, 90)), 0, 0));
    }
    ASSERT_EQ(2u, zoom->captions.size());
    EXPECT_EQ(String("Copy zoom area to clipboard"), zoom->captions[0]);
    EXPECT_EQ(String("Save zoom area as a PNG"), zoom->captions[1]);
    EXPECT_TRUE(zoom->enabled[0]);
    ExpectPngOfSourceArea(received);

    // Without a tool the entry is offered disabled.
    {
        TestSupport::ScopedEnv path("PATH", "/nonexistent");
        zoom->choice = UI::Native::PopupMenu::None;
        panel->HandleMouseMessage(UI::MouseRightPress, BlockCentre(Point(140, 90)), 0, 0);
    }
    ASSERT_EQ(2u, zoom->enabled.size());
    EXPECT_FALSE(zoom->enabled[0]);

    // Saving writes the PNG where the dialog said.
    MouseOverSource(Point(20, 180));
    Paint();
    {
        std::string const oldPath = std::getenv("PATH") ? std::getenv("PATH") : "";
        TestSupport::ScopedEnv path("PATH", (folder.Path() + "/bin:" + oldPath).c_str());
        zoom->choice = 1;
        panel->HandleMouseMessage(UI::MouseRightPress, BlockCentre(Point(20, 180)), 0, 0);
    }
    ASSERT_EQ(2u, zoom->enabled.size());
    EXPECT_TRUE(zoom->enabled[1]);
    ExpectPngOfSourceArea(folder.Path() + "/zoomed.png");
}

TEST_F(PixelZoomTest, WheelChangesTheFactorByThreeANotch)
{
    MouseOverSource(Point(150, 100));
    Paint();
    Point const inside = BlockCentre(Point(150, 100));
    struct Step
    {
        Point at;
        int delta;
        float factor;
    } const steps[] = {
        {inside, 120, 11.0f},  {inside, -120, 8.0f},        {inside, -240, 4.0f},
        {inside, 1200, 32.0f}, {Point(5, 395), 120, 32.0f},
    };
    for (Step const& s : steps)
    {
        Mouse(UI::MouseWheel, s.at, s.delta);
        EXPECT_FLOAT_EQ(s.factor, zoom->GetZoomFactorParam()->get());
        Paint();
        EXPECT_EQ(int(s.factor), zoom->GetFactor());
    }
    // The factor is kept in the settings.
    EXPECT_FLOAT_EQ(32.0f, config.GetFloat("PixelZoomFactor", 0.0f));
}

} // namespace
