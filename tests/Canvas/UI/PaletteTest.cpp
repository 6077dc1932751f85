#include "Canvas/UI/Palette.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/FocusIndicator.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/PaletteEditor.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "Canvas/UI/Theme.h"
#include "TvBase/Util/ConfigFile.h"
#include "tests/Canvas/UI/CanvasTestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace
{

std::vector<String> keysOf(void (UI::Palette::*getKeys)(std::vector<String>&) const,
                           UI::Palette const& palette)
{
    std::vector<String> keys;
    (palette.*getKeys)(keys);
    return keys;
}

} // namespace

TEST(Palette, KeysNeverSetAreUnsetNotZeroAndSettersWorkByKind)
{
    UI::Palette palette;
    EXPECT_FALSE(static_cast<bool>(palette.GetColor("Text")));
    EXPECT_FALSE(static_cast<bool>(palette.GetAlpha("Text")));
    EXPECT_FALSE(static_cast<bool>(palette.GetBool("Text")));
    EXPECT_FALSE(static_cast<bool>(palette.GetInt("Text")));
    EXPECT_FALSE(palette.IsLoaded());

    // Black and zero are values like any other.
    palette.SetColor("Text", 0);
    palette.SetInt("Zero", 0);
    ASSERT_TRUE(static_cast<bool>(palette.GetColor("Text")));
    EXPECT_EQ(0u, *palette.GetColor("Text"));
    EXPECT_TRUE(palette.HasInt("Zero"));
    // Kinds are separate tables.
    EXPECT_FALSE(palette.HasAlpha("Text"));
    EXPECT_FALSE(palette.HasColor("Zero"));

    // Setters insert, overwrite and erase by kind.
    palette.SetColor("B", 0xFF000001u);
    palette.SetColor("A", 0xFF000002u);
    palette.SetColor("B", 0x80000003u);
    EXPECT_EQ(0x80000003u, *palette.GetColor("B"));
    EXPECT_EQ((std::vector<String>{"A", "B", "Text"}), keysOf(&UI::Palette::GetColorKeys, palette));

    palette.SetAlpha("Shade", 10);
    palette.SetAlpha("Shade", 200);
    EXPECT_EQ(200, *palette.GetAlpha("Shade"));

    palette.SetBool("Flat", false);
    EXPECT_TRUE(palette.HasBool("Flat"));
    EXPECT_FALSE(*palette.GetBool("Flat"));
    palette.SetBool("Flat", checked_value<bool>());
    EXPECT_FALSE(palette.HasBool("Flat"));

    palette.SetInt("Radius", 4);
    palette.SetInt("Margin", -2);
    palette.SetInt("Radius", checked_value<int>());
    EXPECT_FALSE(palette.HasInt("Radius"));
    EXPECT_EQ((std::vector<String>{"Margin", "Zero"}), keysOf(&UI::Palette::GetIntKeys, palette));

    // Erasing a key that isn't there is harmless.
    palette.SetInt("Never", checked_value<int>());
    EXPECT_EQ(2u, keysOf(&UI::Palette::GetIntKeys, palette).size());
}

TEST(Palette, MakePixelPacksFourBytes)
{
    EXPECT_EQ(0x80112233u, UI::MakePixel(0x11, 0x22, 0x33, 128));
    EXPECT_EQ(0xFFFFFFFFu, UI::MakePixel(255, 255, 255, 255));
    // Alpha is cut to a byte.
    EXPECT_EQ(0x01000000u, UI::MakePixel(0, 0, 0, 0x101));
}

TEST(Theme, SettersChainAndFactoryGivesNullForEmptyCreators)
{
    int made = 0;
    UI::Theme theme;
    UI::Theme& same =
        theme
            .CreatePresetSlider(
                [&](UI::Frame*, UI::Window*, String const&) -> UI::Window*
                {
                    ++made;
                    return nullptr;
                })
            .CreateCheckBox(
                [&](UI::Frame*, UI::Window*, String const&, String const&) -> UI::CheckBox*
                {
                    ++made;
                    return nullptr;
                });
    EXPECT_EQ(&theme, &same);

    UI::PrimitiveFactory factory;
    EXPECT_EQ(nullptr, factory.CreatePushButton(nullptr, nullptr, "b", "Caption", "Cmd"));
    EXPECT_EQ(nullptr, factory.CreateToolTip(nullptr, nullptr));
    EXPECT_EQ(nullptr, factory.CreateFocusIndicator(nullptr, nullptr));
    EXPECT_EQ(nullptr,
              factory.CreateSliderGroup(nullptr, nullptr, "g", "G", UI::Vertical, nullptr));

    // One creator at a time, or all of them.
    factory.RegisterCheckBox(theme);
    factory.CreateCheckBox(nullptr, nullptr, "c", "C");
    factory.CreatePresetSlider(nullptr, nullptr, "p");
    EXPECT_EQ(1, made);
    factory.RegisterAll(theme);
    factory.CreatePresetSlider(nullptr, nullptr, "p");
    EXPECT_EQ(2, made);
    factory.RegisterAll(UI::Theme());
    EXPECT_TRUE(factory.GetTheme().checkBox.empty());
}

TEST(Theme, CanvasThemeMakesTheFocusIndicator)
{
    UI::Theme& theme = UI::GetCanvasTheme();
    EXPECT_EQ(&theme, &UI::GetCanvasTheme());
    EXPECT_FALSE(theme.focusIndicator.empty());

    UI::Canvas canvas("Theme");
    UI::Frame frame(&canvas, nullptr, nullptr, UI::Point(), "unused", UI::Rect(0, 9, 0, 9));
    UI::PrimitiveFactory factory(theme);
    UI::FocusIndicator* indicator = factory.CreateFocusIndicator(&frame, nullptr);
    ASSERT_NE(nullptr, indicator);
    EXPECT_EQ(String("FocusIndicator"), indicator->GetName());
    EXPECT_EQ(UI::Window::DynamicLayoutNever, indicator->GetDynamicLayoutMode());
}

namespace
{

/// The plist file of `domain` for the current user, as the settings store writes it.
std::string plistFile(char const* domain)
{
    return std::string(std::getenv("XDG_CONFIG_HOME")) + "/tavorin/" + domain + ".plist";
}

} // namespace

TEST(CustomPalette, SaveWritesEveryKindUnderTheSectionAndClearTakesItAway)
{
    UI::Canvas canvas("SavePalette");
    canvas.SetPaletteColor("Text", 0xFFFF0000u);
    canvas.SetPaletteColor("Shadow", 0x80102030u);
    canvas.SetPaletteAlpha("Fade", 77);
    canvas.SetPaletteBool("Flat", true);
    canvas.SetPaletteInt("Radius", -3);

    Util::ConfigFile config("com.tavorin.palette-save");
    UI::PaletteEditor::SaveCustomPalette(&canvas, &config, "Palette/CustomPaletteEnable",
                                         "Palette");
    EXPECT_TRUE(config.GetBool("Palette/CustomPaletteEnable", false));
    EXPECT_EQ(String("#FF0000"), config.GetString("Palette/Color.Text"));
    EXPECT_EQ(String("#102030.80"), config.GetString("Palette/Color.Shadow"));
    EXPECT_EQ(77u, config.GetUInt("Palette/Alpha.Fade", 0));
    EXPECT_TRUE(config.GetBool("Palette/Bool.Flat", false));
    EXPECT_EQ(-3, config.GetInt("Palette/Int.Radius", 0));

    // It reaches the user's settings file.
    config.Synchronize();
    std::string file = TestSupport::ReadFile(plistFile("com.tavorin.palette-save"));
    EXPECT_NE(std::string::npos, file.find("Color.Text"));
    EXPECT_NE(std::string::npos, file.find("#FF0000"));

    // Clearing removes the palette's values but leaves the rest, and the palette in memory.
    config.SetString("Palette/Note", "kept");
    UI::PaletteEditor::ClearCustomPalette(&config, "Palette/CustomPaletteEnable", "Palette");
    EXPECT_FALSE(config.GetBool("Palette/CustomPaletteEnable", true));
    std::vector<String> names;
    config.GetValueNames(names, "Palette");
    EXPECT_EQ((std::vector<String>{"CustomPaletteEnable", "Note"}), names);
    EXPECT_EQ(0xFFFF0000u, *canvas.GetPaletteColor("Text"));
    EXPECT_EQ(-3, *canvas.GetPaletteInt("Radius"));
    EXPECT_FALSE(UI::PaletteEditor::LoadCustomPalette(&canvas, &config));
}

TEST(CustomPalette, LoadReadsOnlyWhenEnabledAndOnlyKnownPrefixes)
{
    Util::ConfigFile config("com.tavorin.palette-load");
    config.SetString("Palette/Color.Text", "#00FF00");
    config.SetString("Palette/Colour.Other", "#0000FF");
    config.SetString("Palette/Color.Broken", "not a color");
    config.SetUInt("Palette/Alpha.Fade", 12);
    config.SetBool("Palette/Bool.Flat", true);
    config.SetInt("Palette/Int.Radius", 9);
    config.SetInt("Palette/Size", 3);

    UI::Canvas canvas("LoadPalette");
    // Not enabled: nothing is read.
    EXPECT_FALSE(UI::PaletteEditor::LoadCustomPalette(&canvas, &config));
    EXPECT_FALSE(canvas.HasPaletteColor("Text"));

    config.SetBool("Palette/CustomPaletteEnable", true);
    EXPECT_TRUE(UI::PaletteEditor::LoadCustomPalette(&canvas, &config));
    EXPECT_EQ(0xFF00FF00u, *canvas.GetPaletteColor("Text"));
    EXPECT_EQ(12, *canvas.GetPaletteAlpha("Fade"));
    EXPECT_TRUE(*canvas.GetPaletteBool("Flat"));
    EXPECT_EQ(9, *canvas.GetPaletteInt("Radius"));
    EXPECT_FALSE(canvas.HasPaletteColor("Other"));
    EXPECT_FALSE(canvas.HasPaletteColor("Broken"));
    EXPECT_FALSE(canvas.HasPaletteInt("Size"));
    std::vector<String> colors;
    canvas.GetPaletteColorKeys(colors);
    EXPECT_EQ(1u, colors.size());
}

TEST(CustomPalette, SaveThenLoadRoundTripsThroughASecondCanvas)
{
    Util::ConfigFile config("com.tavorin.palette-trip");
    {
        UI::Canvas first("First");
        first.SetPaletteColor("ButtonTextColor", 0xFF202020u);
        first.SetPaletteColor("Glass", 0x01ABCDEFu);
        first.SetPaletteAlpha("Disabled", 0);
        first.SetPaletteBool("Rounded", false);
        first.SetPaletteInt("Inset", 2147483647);
        UI::PaletteEditor::SaveCustomPalette(&first, &config, "Skin/Enable", "Skin/Colors");
    }
    UI::Canvas second("Second");
    EXPECT_FALSE(UI::PaletteEditor::LoadCustomPalette(&second, &config));
    ASSERT_TRUE(
        UI::PaletteEditor::LoadCustomPalette(&second, &config, "Skin/Enable", "Skin/Colors"));
    EXPECT_EQ(0xFF202020u, *second.GetPaletteColor("ButtonTextColor"));
    EXPECT_EQ(0x01ABCDEFu, *second.GetPaletteColor("Glass"));
    EXPECT_EQ(0, *second.GetPaletteAlpha("Disabled"));
    EXPECT_FALSE(*second.GetPaletteBool("Rounded"));
    EXPECT_EQ(2147483647, *second.GetPaletteInt("Inset"));
}
