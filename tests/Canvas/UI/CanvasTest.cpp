#include "Canvas/UI/Canvas.h"

#include "Canvas/UI/FocusIndicator.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/FontCache.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Palette.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "Canvas/UI/StringWidthCache.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Command/CommandInvocation.h"
#include "TvBase/Command/CommandManager.h"
#include "TvBase/Language/Translator.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/PropertySerializer.h"
#include "TvBase/Util/ResourceManager.h"
#include "tests/Canvas/UI/CanvasTestSupport.h"

#include <gtest/gtest.h>

#include <boost/any.hpp>

#include <memory>
#include <typeinfo>

using UI::Point;
using UI::Rect;

namespace
{

/// Stands for a native window: frames only compare its address.
struct NativeWindow
{
    void* Handle() { return this; }
    int unused = 0;
};

/// A frame without a host window: nothing is presented, which these tests don't need.
std::unique_ptr<UI::Frame> makeFrame(UI::Canvas& canvas, NativeWindow& native)
{
    return std::unique_ptr<UI::Frame>(
        new UI::Frame(&canvas, native.Handle(), nullptr, Point(), "unused", Rect(0, 99, 0, 99)));
}

UI::Window* makeWindow(UI::Frame* frame, UI::Window* parent, char const* name)
{
    UI::Window* w = new UI::Window(frame, parent, name);
    w->SetGeometry(0, 0, 20, 20);
    return w;
}

} // namespace

TEST(CanvasConstruction, KeepsArgumentsAndBuildsSharedParts)
{
    UI::Canvas canvas("Updater", 1030, 5, "Updater/app/resources", "UI/Layout",
                      UI::Canvas::FontCacheOptions::NoCache());
    EXPECT_EQ(String("Updater"), canvas.GetName());
    EXPECT_EQ(1030u, canvas.GetNumber1());
    EXPECT_EQ(5u, canvas.GetNumber2());
    EXPECT_EQ(String("Updater/app/resources"), canvas.GetResourcePath());
    EXPECT_EQ(String("UI/Layout"), canvas.GetLayoutFolder());
    EXPECT_EQ(String("ResourceOverridePath.Updater"), canvas.GetOverridePathKey());

    ASSERT_NE(nullptr, canvas.GetConfigFile());
    EXPECT_EQ(String("com.tavorin"), canvas.GetConfigFile()->GetDomain());
    ASSERT_NE(nullptr, canvas.GetCommandManager());
    ASSERT_NE(nullptr, canvas.GetPrimitiveFactory());
    EXPECT_FALSE(canvas.GetPrimitiveFactory()->GetTheme().focusIndicator.empty());

    // The eight standard property types are known to the serializer.
    Util::PropertySerializer* serializer = canvas.GetPropertySerializer();
    ASSERT_NE(nullptr, serializer);
    EXPECT_EQ(String("Int"), *serializer->GetTypeName(typeid(int)));
    EXPECT_EQ(String("Point"), *serializer->GetTypeName(typeid(UI::Point)));
    EXPECT_EQ(String("Rect"), *serializer->GetTypeName(typeid(UI::Rect)));
    EXPECT_EQ(String("String"), *serializer->GetTypeName(typeid(String)));
    EXPECT_EQ(String("Float"), *serializer->GetTypeName(typeid(float)));
    EXPECT_EQ(String("Bool"), *serializer->GetTypeName(typeid(bool)));
    // And the toolkit's named enumerations, for layouts that set them.
    ASSERT_NE(nullptr, serializer->GetEnumNames("Border Style"));
    EXPECT_EQ(String("Rounded Rect Shadow Bottom Right"),
              serializer->GetEnumNames("Border Style")->back());
    ASSERT_NE(nullptr, serializer->GetEnumNames("Orientation"));
    EXPECT_EQ((std::vector<String>{"Horizontal", "Vertical"}),
              *serializer->GetEnumNames("Orientation"));

    // The palette exists and starts empty: no default table.
    ASSERT_NE(nullptr, canvas.GetPalette());
    EXPECT_FALSE(canvas.IsPaletteLoaded());
    std::vector<String> keys;
    canvas.GetPaletteColorKeys(keys);
    EXPECT_TRUE(keys.empty());

    EXPECT_EQ(750u, canvas.GetToolTipIntervals().first);
    EXPECT_EQ(1000u, canvas.GetToolTipIntervals().second);
    EXPECT_EQ(nullptr, canvas.GetFont(0u));
    EXPECT_FALSE(canvas.IsExtraFontLoaded(0));
    EXPECT_TRUE(canvas.IsNativeFocusTracking());
}

TEST(CanvasConstruction, WidthCacheFollowsOptionUnlessSystemRendererIsForced)
{
    TestSupport::TempFolder folder("tv-canvas-cache");
    {
        UI::Canvas none("NoCache");
        EXPECT_EQ(nullptr, none.GetStringWidthCache());
        EXPECT_FALSE(none.IsFontCacheOptionEnabled());

        UI::Canvas memory("Memory", 0, 0, "", "",
                          UI::Canvas::FontCacheOptions::CacheWithoutLoadingOrSaving());
        ASSERT_NE(nullptr, memory.GetStringWidthCache());
        EXPECT_TRUE(memory.GetStringWidthCache()->GetFilePath().ToString().IsEmpty());

        UI::Canvas onDisk("Disk", 0, 0, "", "",
                          UI::Canvas::FontCacheOptions::CacheInPath(folder.Path().c_str()));
        ASSERT_NE(nullptr, onDisk.GetStringWidthCache());
        EXPECT_TRUE(onDisk.GetStringWidthCache()->GetFilePath().ToString().BeginsWith(
            String(folder.Path().c_str())));
    }

    Util::ConfigFile shared("com.tavorin");
    shared.SetBool("ForceSystemFontRenderer", true);
    {
        UI::Canvas forced("Forced", 0, 0, "", "",
                          UI::Canvas::FontCacheOptions::CacheWithoutLoadingOrSaving());
        EXPECT_EQ(nullptr, forced.GetStringWidthCache());
        EXPECT_FALSE(forced.IsFontCacheOptionEnabled());
    }
    shared.RemoveValue("ForceSystemFontRenderer");
}

TEST(CanvasOverridePath, ResourceFolderComesFromTheCanvasKey)
{
    TestSupport::TempFolder folder("tv-canvas-override");
    Util::ConfigFile shared("com.tavorin");
    shared.SetString("ResourceOverridePath.OverrideTest", folder.Path().c_str());
    {
        UI::Canvas canvas("OverrideTest");
        checked_value<FolderPath> path = Util::ResourceManager::Get().GetOverridePath();
        ASSERT_TRUE(static_cast<bool>(path));
        EXPECT_EQ(FolderPath(String(folder.Path().c_str())).ToString(), (*path).ToString());
    }
    // Another canvas name reads another key; an empty text means no override.
    shared.SetString("ResourceOverridePath.Other", "");
    {
        UI::Canvas canvas("Other");
        EXPECT_FALSE(static_cast<bool>(Util::ResourceManager::Get().GetOverridePath()));
    }
    shared.RemoveValue("ResourceOverridePath.OverrideTest");
    shared.RemoveValue("ResourceOverridePath.Other");
}

TEST(CanvasFonts, IndexFallsBackToFontZeroOnlyWhenAllowedAndMappingOnlyWhenRegistered)
{
    UI::Canvas canvas("Fonts");
    EXPECT_EQ(nullptr, canvas.GetFont(checked_value<unsigned int>(), true));

    boost::shared_ptr<UI::Font> fonts[3];
    for (unsigned int i = 0; i < 3; ++i)
    {
        fonts[i].reset(new UI::Font(&canvas, UI::FontInfo("Arial", 10.0f + i)));
        canvas.SetFont(i, fonts[i]);
    }
    EXPECT_EQ(fonts[1].get(), canvas.GetFont(1u, false));
    EXPECT_EQ(fonts[2].get(), canvas.GetFont(2u));
    EXPECT_EQ(fonts[0].get(), canvas.GetFont(7u, true));
    EXPECT_EQ(nullptr, canvas.GetFont(7u, false));
    EXPECT_EQ(fonts[0].get(), canvas.GetFont(checked_value<unsigned int>(), true));
    EXPECT_EQ(nullptr, canvas.GetFont(checked_value<unsigned int>(), false));

    // Setting past the end grows the table with empty slots.
    canvas.SetFont(5, fonts[2]);
    EXPECT_EQ(6u, canvas.GetFontCount());
    EXPECT_EQ(nullptr, canvas.GetFont(4u, true));

    // The string mapping function applies only once registered.
    EXPECT_FALSE(canvas.IsFontStringMappingFunctionRegistered());
    EXPECT_EQ(String("abc"), canvas.ApplyFontStringMappingFunction("abc"));
    canvas.SetFontStringMappingFunction([](String s) { return s + "!"; });
    EXPECT_TRUE(canvas.IsFontStringMappingFunctionRegistered());
    EXPECT_EQ(String("abc!"), canvas.ApplyFontStringMappingFunction("abc"));
}

TEST(CanvasFonts, FirstFrameMakesArialElevenAsFontsZeroToTwo)
{
    UI::Canvas canvas("FirstFrame");
    NativeWindow host;
    std::unique_ptr<UI::Frame> frame = makeFrame(canvas, host);
    ASSERT_EQ(3u, canvas.GetFontCount());
    UI::Font* font = canvas.GetFont(0u);
    ASSERT_NE(nullptr, font);
    EXPECT_EQ(font, canvas.GetFont(1u));
    EXPECT_EQ(font, canvas.GetFont(2u));
    EXPECT_EQ(String("Arial"), font->GetFontInfo().faceName);
    EXPECT_EQ(11.0f, font->GetFontInfo().size);
    // "Arial" resolves to an installed face, so the default text is readable.
    EXPECT_GT(font->GetStringWidth("Readable"), 0u);

    // A second frame keeps what is there.
    NativeWindow host2;
    std::unique_ptr<UI::Frame> frame2 = makeFrame(canvas, host2);
    EXPECT_EQ(font, canvas.GetFont(0u));

    // A canvas that already has fonts keeps its own.
    UI::Canvas own("OwnFonts");
    boost::shared_ptr<UI::Font> mine(new UI::Font(&own, UI::FontInfo("Arial", 20.0f)));
    own.SetFont(0, mine);
    NativeWindow host3;
    std::unique_ptr<UI::Frame> frame3 = makeFrame(own, host3);
    EXPECT_EQ(1u, own.GetFontCount());
    EXPECT_EQ(mine.get(), own.GetFont(2u));
}

TEST(CanvasFonts, ExtraFontsLoadOnDemandOncePerIndex)
{
    UI::Canvas canvas("Extra");
    EXPECT_EQ(nullptr, canvas.GetExtraFont(checked_value<unsigned int>()));
    // An index of 3 or more loads nothing, and there is no slot to fall back on yet.
    EXPECT_EQ(nullptr, canvas.GetExtraFont(3u));
    EXPECT_FALSE(canvas.IsExtraFontLoaded(0));

    UI::Font* korean = canvas.GetExtraFont(1u);
    ASSERT_NE(nullptr, korean);
    EXPECT_TRUE(canvas.IsExtraFontLoaded(1));
    EXPECT_FALSE(canvas.IsExtraFontLoaded(0));
    EXPECT_FALSE(canvas.IsExtraFontLoaded(2));
    EXPECT_EQ(String("New Gulim"), korean->GetFontInfo().faceName);
    EXPECT_EQ(String("Arial"), korean->GetFontInfo().fallbackFaceName);
    EXPECT_EQ(11.0f, korean->GetFontInfo().size);
    EXPECT_EQ(korean, canvas.GetExtraFont(1u));

    UI::Font* unicode = canvas.GetExtraFont(0u);
    ASSERT_NE(nullptr, unicode);
    EXPECT_EQ(String("Arial Unicode MS"), unicode->GetFontInfo().faceName);
    UI::Font* chinese = canvas.GetExtraFont(2u);
    ASSERT_NE(nullptr, chinese);
    EXPECT_EQ(String("Microsoft JhengHei"), chinese->GetFontInfo().faceName);

    // Out of range gives slot 0.
    EXPECT_EQ(unicode, canvas.GetExtraFont(9u));
    EXPECT_EQ(unicode, canvas.GetExtraFont(checked_value<unsigned int>()));
}

TEST(CanvasFonts, TextMissingFromTheMainFaceAsksForExtraFonts)
{
    UI::Canvas canvas("Missing");
    UI::Font font(&canvas, UI::FontInfo("Arial", 12.0f));
    font.GetStringWidth("plain");
    EXPECT_FALSE(canvas.IsExtraFontLoaded(0));
    // Hangul is not in the main face: the font walks the extra fonts in order.
    font.GetStringWidth("\xED\x95\x9C");
    EXPECT_TRUE(canvas.IsExtraFontLoaded(0));
}

TEST(CanvasFontCache, CoversListedWindowsAndTheirSubtrees)
{
    UI::Canvas canvas("Cache");
    NativeWindow host;
    std::unique_ptr<UI::Frame> frame = makeFrame(canvas, host);
    UI::Window* a = makeWindow(frame.get(), nullptr, "A");
    UI::Window* b = makeWindow(frame.get(), a, "B");
    UI::Window* c = makeWindow(frame.get(), nullptr, "C");

    unsigned long id = 0;
    EXPECT_FALSE(canvas.IsFontCacheEnabled(b, id));
    canvas.SetFontCacheEnabled(a, true);
    canvas.SetFontCacheEnabled(a, true);
    ASSERT_TRUE(canvas.IsFontCacheEnabled(b, id));
    EXPECT_EQ(reinterpret_cast<unsigned long>(a), id);
    EXPECT_FALSE(canvas.IsFontCacheEnabled(c, id));
    EXPECT_TRUE(canvas.GetFontCache()->IsCacheEnabled(id));

    // Only while a listed subtree is being drawn do fonts see the cache.
    unsigned long drawing = 0;
    EXPECT_EQ(nullptr, canvas.GetFontCacheForDrawing(drawing));
    canvas.PushCurrentlyDrawingWindow(b);
    EXPECT_EQ(canvas.GetFontCache(), canvas.GetFontCacheForDrawing(drawing));
    EXPECT_EQ(reinterpret_cast<unsigned long>(a), drawing);
    canvas.PushCurrentlyDrawingWindow(c);
    EXPECT_EQ(nullptr, canvas.GetFontCacheForDrawing(drawing));
    canvas.PopCurrentlyDrawingWindow(b); // not on top: stays
    EXPECT_EQ(c, canvas.GetCurrentlyDrawingWindow());
    canvas.PopCurrentlyDrawingWindow(c);
    canvas.PopCurrentlyDrawingWindow(b);
    EXPECT_EQ(nullptr, canvas.GetCurrentlyDrawingWindow());

    // Disabling once is enough, repeats or not.
    canvas.SetFontCacheEnabled(a, false);
    EXPECT_FALSE(canvas.IsFontCacheEnabled(b, id));

    // A listed window that dies leaves the list and its strings.
    canvas.SetFontCacheEnabled(c, true);
    unsigned long cId = reinterpret_cast<unsigned long>(c);
    delete c;
    EXPECT_FALSE(canvas.GetFontCache()->IsCacheEnabled(cId));
}

namespace
{

/// Publishes one value, for key paths through the canvas.
struct Published : Controller::KeyValueCoding
{
    boost::any GetValueForKey(String const& key) override
    {
        return key == String("x") ? boost::any(42) : boost::any();
    }
};

} // namespace

TEST(CanvasKeyValueCoding, StoresValuesAndResolvesKeyPaths)
{
    UI::Canvas canvas("Values");
    EXPECT_TRUE(canvas.GetValueForKey("missing").empty());
    canvas.SetValueForKey("b", 7);
    canvas.SetValueForKey("a", String("text"));
    Published child;
    canvas.SetValueForKey("child", static_cast<Controller::KeyValueCoding*>(&child));

    EXPECT_EQ(7, boost::any_cast<int>(canvas.GetValueForKey("b")));
    std::vector<String> keys = canvas.CopyKeys();
    ASSERT_EQ(3u, keys.size());
    EXPECT_EQ(String("a"), keys[0]);
    EXPECT_EQ(String("b"), keys[1]);
    EXPECT_EQ(String("child"), keys[2]);
    EXPECT_EQ(42, boost::any_cast<int>(canvas.GetValueForKeyPath("child.x")));
    EXPECT_TRUE(canvas.GetValueForKeyPath("b.x").empty());

    // A frame publishes the canvas's values.
    NativeWindow host;
    std::unique_ptr<UI::Frame> frame = makeFrame(canvas, host);
    EXPECT_EQ(7, boost::any_cast<int>(frame->GetValueForKey("b")));
    EXPECT_EQ(42, boost::any_cast<int>(frame->GetValueForKeyPath("child.x")));
}

TEST(CanvasFrames, ListsFramesAndForgetsActiveAndCurrentOnes)
{
    UI::Canvas canvas("Frames");
    NativeWindow host1, host2;
    std::unique_ptr<UI::Frame> f1 = makeFrame(canvas, host1);
    std::unique_ptr<UI::Frame> f2 = makeFrame(canvas, host2);
    ASSERT_EQ(2u, canvas.GetFrames().size());
    EXPECT_EQ(f1.get(), canvas.GetFrames()[0]);
    EXPECT_EQ(f2.get(), canvas.GetFrames()[1]);
    EXPECT_EQ(f2.get(), canvas.FindFrameForNativeWindow(host2.Handle()));
    EXPECT_EQ(nullptr, canvas.FindFrameForNativeWindow(nullptr));

    canvas.SetActiveFrame(f1.get());
    canvas.SetCurrentFrame(f2.get());
    // Without a platform the active native window is the current frame's.
    EXPECT_EQ(host2.Handle(), canvas.GetTopLevelActiveWindow());
    f2.reset();
    EXPECT_EQ(nullptr, canvas.GetCurrentFrame());
    EXPECT_EQ(f1.get(), canvas.GetActiveFrame());
    EXPECT_EQ(nullptr, canvas.GetTopLevelActiveWindow());
    f1.reset();
    EXPECT_EQ(nullptr, canvas.GetActiveFrame());
    EXPECT_TRUE(canvas.GetFrames().empty());
}

TEST(CanvasFrames, FocusIndicatorComesFromTheTheme)
{
    UI::Canvas canvas("Indicator");
    NativeWindow host;
    std::unique_ptr<UI::Frame> frame = makeFrame(canvas, host);
    UI::FocusIndicator* indicator = frame->GetFocusIndicator();
    ASSERT_NE(nullptr, indicator);
    EXPECT_EQ(String("FocusIndicator"), indicator->GetName());
    EXPECT_FALSE(indicator->IsVisible());
    EXPECT_EQ(frame.get(), indicator->GetFrame());

    // A theme without the creator leaves the frame without an indicator.
    canvas.GetPrimitiveFactory()->RegisterFocusIndicator(UI::Theme());
    NativeWindow host2;
    std::unique_ptr<UI::Frame> frame2 = makeFrame(canvas, host2);
    EXPECT_EQ(nullptr, frame2->GetFocusIndicator());
}

TEST(CanvasServices, WindowsReachTheCanvasCommandsTranslatorAndPalette)
{
    UI::Canvas canvas("Commands");
    NativeWindow host;
    std::unique_ptr<UI::Frame> frame = makeFrame(canvas, host);
    UI::Window* w = makeWindow(frame.get(), nullptr, "W");

    UI::Window* seenWindow = nullptr;
    canvas.GetCommandManager()->registerCommand("Test.Do").Connect(
        nullptr, boost::function<void(Command::CommandInvocation const&, bool&)>(
                     [&](Command::CommandInvocation const& invocation, bool& handled)
                     {
                         seenWindow = invocation.window;
                         handled = true;
                     }));
    EXPECT_TRUE(w->ExecuteCommand("Test.Do", w));
    EXPECT_EQ(w, seenWindow);
    EXPECT_TRUE(frame->ExecuteCommand(Command::CommandInvocation("Test.Do", nullptr)));
    EXPECT_EQ(nullptr, seenWindow);
    EXPECT_FALSE(w->ExecuteCommand("Test.Unknown", w));

    // Windows translate through the canvas translator.
    Language::Translator* first = canvas.GetTranslator();
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(first, canvas.GetTranslator());

    boost::shared_ptr<Language::Translator> german(new Language::Translator());
    std::string table = "\xEF\xBB\xBF"
                        "en: Close\nde: Schliessen\n";
    german->AddStringTable(array_ref<unsigned char const>(
        reinterpret_cast<unsigned char const*>(table.data()), table.size()));
    german->SetCurrentLanguage("de");
    canvas.SetTranslator(german);
    EXPECT_EQ(String("Schliessen"), w->tr("Close"));
    EXPECT_EQ(String("Schliessen"), frame->tr("Close"));
    EXPECT_EQ(String("Open"), w->tr("Open"));

    // And read the palette through the canvas.
    EXPECT_FALSE(static_cast<bool>(w->GetPaletteColor("Text")));
    canvas.SetPaletteColor("Text", 0xFF102030u);
    canvas.SetPaletteAlpha("Shade", 128);
    canvas.SetPaletteBool("Flat", true);
    canvas.SetPaletteInt("Radius", -4);
    EXPECT_EQ(0xFF102030u, *w->GetPaletteColor("Text"));
    EXPECT_EQ(128, *w->GetPaletteAlpha("Shade"));
    EXPECT_TRUE(*w->GetPaletteBool("Flat"));
    EXPECT_EQ(-4, *w->GetPaletteInt("Radius"));

    canvas.SetPaletteLoaded(true);
    EXPECT_TRUE(canvas.IsPaletteLoaded());

    // Without a palette nothing is there and setters are ignored.
    canvas.SetPalette(nullptr);
    canvas.SetPaletteColor("Text", 1);
    EXPECT_FALSE(canvas.HasPaletteColor("Text"));
    EXPECT_FALSE(static_cast<bool>(w->GetPaletteInt("Radius")));
    EXPECT_FALSE(canvas.IsPaletteLoaded());
    std::vector<String> keys(1, String("stale"));
    canvas.GetPaletteBoolKeys(keys);
    EXPECT_TRUE(keys.empty());
}
