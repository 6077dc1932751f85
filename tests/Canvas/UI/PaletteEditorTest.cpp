// The palette editor's rules through its interface, on a frame of the in-memory host window:
// the items (sorted, duplicates dropped), the search, the selection rules, live colour edits
// and their reset, and the palette as source text.

#include "Canvas/UI/PaletteEditor.h"

#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/Edit.h"
#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/Text.h"
#include "TvBase/Util/Clipboard.h"
#include "TvBase/Util/ConfigFile.h"
#include "tests/Canvas/UI/ScrollScene.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace
{

struct EditorScene
{
    UI::Test::ScrollScene scene{410, 400};
    UI::PaletteEditor* editor = nullptr;

    EditorScene()
    {
        UI::Canvas& c = scene.canvas;
        c.SetPaletteColor("ButtonTextColor", 0xFF000000u);
        c.SetPaletteColor("Fill A", 0xFFFF0000u);
        c.SetPaletteColor("Fill B", 0x80FF0000u);
        c.SetPaletteColor("Fill C", 0xFF0000FFu);
        c.SetPaletteAlpha("Dim", 128);
        c.SetPaletteBool("Fill A", true); // the same key in a later kind
        c.SetPaletteBool("Rounded", false);
        c.SetPaletteInt("Radius", 4);
    }

    UI::PaletteEditor* Open(Util::ConfigFile* config = nullptr)
    {
        editor = new UI::PaletteEditor(scene.frame.get(), nullptr, config);
        editor->SetGeometry(0, 0, 410, 400);
        return editor;
    }

    UI::ListBox* List() const
    {
        return static_cast<UI::ListBox*>(editor->FindChildWindow("Color ListBox"));
    }
    bool Enabled(char const* name) const { return editor->FindChildWindow(name)->IsEnabled(); }
    std::string Label() const
    {
        auto* label = static_cast<UI::Text*>(editor->FindChildWindow("Num Colors Label"));
        return label->GetText().CStr();
    }
    /// The list's rows, "key" each, space-separated.
    std::string Rows() const
    {
        std::string s;
        for (unsigned int i = 0; i < List()->GetItemCount(); ++i)
            s += (s.empty() ? "" : "|") + std::string(List()->GetItemText(i).CStr());
        return s;
    }
    void Select(std::vector<unsigned int> const& rows)
    {
        List()->ClearSelection();
        for (unsigned int row : rows)
            List()->SetSelected(row, true, false, false);
        editor->slotUpdateSelection();
    }
    void Search(char const* text)
    {
        static_cast<UI::Edit*>(editor->FindChildWindow("Search Edit"))->SetText(text);
        editor->slotSearchTextEdited();
    }
};

TEST(PaletteEditor, ItemsAreSortedByKeyWithDuplicatesDropped)
{
    EditorScene s;
    s.Open();
    using Item = UI::PaletteEditor::PaletteItemInfo;
    struct Expected
    {
        char const* key;
        Item::Kind kind;
        unsigned int color;
        int value;
    } const expected[] = {
        {"ButtonTextColor", Item::Color, 0xFF000000u, 0},
        {"Dim", Item::Alpha, 0, 128},
        {"Fill A", Item::Color, 0xFFFF0000u, 0}, // the colour, read first, stays
        {"Fill B", Item::Color, 0x80FF0000u, 0},
        {"Fill C", Item::Color, 0xFF0000FFu, 0},
        {"Radius", Item::Int, 0, 4},
        {"Rounded", Item::Bool, 0, 0},
    };
    auto const& items = s.editor->GetItems();
    ASSERT_EQ(std::size(expected), items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        SCOPED_TRACE(expected[i].key);
        EXPECT_EQ(expected[i].key, std::string(items[i].key.CStr()));
        EXPECT_EQ(expected[i].kind, items[i].kind);
        EXPECT_EQ(expected[i].color, items[i].color);
        EXPECT_EQ(expected[i].value, items[i].value);
    }
    EXPECT_EQ("ButtonTextColor|Dim|Fill A|Fill B|Fill C|Radius|Rounded", s.Rows());
    // Colour rows have swatches, the others their controls.
    EXPECT_EQ(0xFF0000FFu, s.List()->GetItems()[4].swatchColor.GetOr(0));
    EXPECT_TRUE(static_cast<bool>(s.List()->GetItems()[1].control));
    EXPECT_TRUE(static_cast<bool>(s.List()->GetItems()[6].control));
}

TEST(PaletteEditor, SearchIgnoresCase)
{
    EditorScene s;
    s.Open();
    struct
    {
        char const* search;
        char const* rows;
    } const cases[] = {
        {"BUTTON", "ButtonTextColor"},
        {"fill ", "Fill A|Fill B|Fill C"},
        {"r", "ButtonTextColor|Radius|Rounded"},
        {"nothing", ""},
        {"", "ButtonTextColor|Dim|Fill A|Fill B|Fill C|Radius|Rounded"},
    };
    for (auto const& c : cases)
    {
        s.Search(c.search);
        EXPECT_EQ(c.rows, s.Rows()) << c.search;
    }
}

TEST(PaletteEditor, SelectionRulesEnableTheButtonsAndCount)
{
    EditorScene s;
    s.Open();
    auto* autoSelect =
        static_cast<UI::CheckBox*>(s.editor->FindChildWindow("Auto-Select Similar CheckBox"));
    // rows: 0 ButtonTextColor, 1 Dim, 2 Fill A, 3 Fill B, 4 Fill C, 5 Radius, 6 Rounded
    struct
    {
        bool automatic;
        std::vector<unsigned int> pick;
        char const* selected;
        bool colourButtons;
        bool reset;
    } const cases[] = {
        {false, {}, "", false, false},
        {false, {1}, "1", false, true},
        {false, {2}, "2", true, true},
        {false, {1, 6}, "1,6", false, true},
        // Identical means all four channels: Fill B differs from Fill A in alpha.
        {true, {2}, "2", true, true},
        {true, {1}, "1", false, true},
    };
    for (auto const& c : cases)
    {
        autoSelect->SetChecked(c.automatic);
        s.Select(c.pick);
        std::string selected;
        for (unsigned int row : s.List()->GetSelectedItems())
            selected += (selected.empty() ? "" : ",") + std::to_string(row);
        SCOPED_TRACE(selected);
        EXPECT_EQ(c.selected, selected);
        EXPECT_EQ(c.colourButtons, s.Enabled("Color Set PushButton"));
        EXPECT_EQ(c.colourButtons, s.Enabled("Color Grab PushButton"));
        EXPECT_EQ(c.reset, s.Enabled("Color Reset PushButton"));
        EXPECT_EQ(std::to_string(c.pick.size()) + " colors selected", s.Label());
    }

    // With the check box, a colour shared by two entries selects both.
    EditorScene same;
    same.scene.canvas.SetPaletteColor("Fill C", 0xFFFF0000u);
    same.Open();
    static_cast<UI::CheckBox*>(same.editor->FindChildWindow("Auto-Select Similar CheckBox"))
        ->SetChecked(true);
    same.Select({2});
    EXPECT_EQ((std::vector<unsigned int>{2, 4}), same.List()->GetSelectedItems());
    EXPECT_EQ("2 colors selected", same.Label());
}

TEST(PaletteEditor, ColourEditsGoLiveAndResetPutsThemBack)
{
    EditorScene s;
    s.Open();
    s.Select({1, 2, 4}); // Dim is no colour: it keeps its alpha
    s.editor->slotColorUserChanged(0xFF123456u);
    UI::Canvas& c = s.scene.canvas;
    EXPECT_EQ(0xFF123456u, c.GetPaletteColor("Fill A").GetOr(0));
    EXPECT_EQ(0xFF123456u, c.GetPaletteColor("Fill C").GetOr(0));
    EXPECT_EQ(0x80FF0000u, c.GetPaletteColor("Fill B").GetOr(0));
    EXPECT_EQ(128, c.GetPaletteAlpha("Dim").GetOr(0));
    EXPECT_EQ(0xFF123456u, s.List()->GetItems()[2].swatchColor.GetOr(0));

    // A row's control writes its entry.
    s.editor->GetItems()[1].floatController->set(200.0f);
    EXPECT_EQ(200, c.GetPaletteAlpha("Dim").GetOr(0));

    s.Select({2});
    s.editor->slotResetItem();
    EXPECT_EQ(0xFFFF0000u, c.GetPaletteColor("Fill A").GetOr(0));
    EXPECT_EQ(0xFF123456u, c.GetPaletteColor("Fill C").GetOr(0));
    s.editor->slotReset();
    EXPECT_EQ(0xFF0000FFu, c.GetPaletteColor("Fill C").GetOr(0));
    EXPECT_EQ(128, c.GetPaletteAlpha("Dim").GetOr(0));
    EXPECT_EQ(0xFF0000FFu, s.List()->GetItems()[4].swatchColor.GetOr(0));
}

TEST(PaletteEditor, SourceTextHasHexChannelsAndDecimalAlpha)
{
    EditorScene s;
    std::string const rule = "\t//- " + std::string(73, '-') + ";\n";
    std::string const expected =
        rule + "\t//\tBegin pasted code from palette editor\n" + rule +
        "\t// Colors\n"
        "\tSetColor( \"ButtonTextColor\", MakePixel(0x00,0x00,0x00,255) );\n"
        "\tSetColor( \"Fill A\", MakePixel(0xFF,0x00,0x00,255) );\n"
        "\tSetColor( \"Fill B\", MakePixel(0xFF,0x00,0x00,128) );\n"
        "\tSetColor( \"Fill C\", MakePixel(0x00,0x00,0xFF,255) );\n"
        "\t\n"
        "\t// Alphas\n"
        "\tSetAlpha( \"Dim\", 128 );\n"
        "\t\n"
        "\t// Bools\n"
        "\tSetBool( \"Fill A\", true );\n"
        "\tSetBool( \"Rounded\", false );\n"
        "\t\n"
        "\t// Ints\n"
        "\tSetInt( \"Radius\", 4 );\n"
        "\t\n" +
        rule + "\t//\tEnd pasted code from palette editor\n" + rule;
    EXPECT_EQ(expected, std::string(UI::PaletteEditor::PaletteSourceText(&s.scene.canvas).CStr()));

    // Without Ctrl, Shift and Alt held the right click copies nothing.
    s.Open();
    Util::Clipboard::SetContent(nullptr, checked_value<unsigned int>(),
                                std::vector<unsigned char>(), "before");
    s.editor->slotSaveRightClicked();
    EXPECT_EQ("before", std::string(Util::Clipboard::GetString(nullptr, 0).CStr()));
}

TEST(PaletteEditor, SaveAndLoadGoThroughTheSettings)
{
    EditorScene s;
    Util::ConfigFile config("com.tavorin.palette-editor-save");
    UI::PaletteEditor::ClearCustomPalette(&config, "Palette/CustomPaletteEnable", "Palette");
    s.Open(&config);
    s.Select({2});
    s.editor->slotColorUserChanged(0xFF00B3B3u);
    s.editor->slotSave();
    EXPECT_TRUE(config.GetBool("Palette/CustomPaletteEnable", false));
    EXPECT_EQ("#00B3B3", std::string(config.GetString("Palette/Color.Fill A").CStr()));

    s.editor->slotColorUserChanged(0xFF010203u);
    s.editor->slotLoad();
    EXPECT_EQ(0xFF00B3B3u, s.scene.canvas.GetPaletteColor("Fill A").GetOr(0));
    EXPECT_EQ(0xFF00B3B3u, s.List()->GetItems()[2].swatchColor.GetOr(0));

    s.editor->slotReset();
    EXPECT_FALSE(config.GetBool("Palette/CustomPaletteEnable", true));
    EXPECT_EQ(0xFFFF0000u, s.scene.canvas.GetPaletteColor("Fill A").GetOr(0));
}

} // namespace
