// The property editor in process: windows with properties on an in-memory frame, the editor on
// a frame of its own, told of the selection directly; menus and the colour picker answered here.

#include "Canvas/UI/PropertyEditor.h"
#include "Canvas/UI/Borders.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/ComboBox.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
#include "TvBase/Controller/KeyValueCoding.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"
#include "tests/Canvas/UI/CanvasTestSupport.h"
#include "tests/Canvas/UI/TestHostWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace
{

using UI::Point;
using UI::Rect;

/// A window with a number, a colour, a border style and a key path, and `extra` numbers more.
class PropertyWindow : public UI::Window
{
public:
    PropertyWindow(UI::Frame* frame, UI::Window* parent, char const* name, int extra = 0)
        : Window(frame, parent, name)
    {
        CreateProperty("Count", 1);
        CreateProperty<unsigned int>("Fill Color", 0xFF112233u);
        CreateProperty("Border Style", UI::Borders::Outline);
        CreateProperty<String>("Controller Key Path", String("KeyPath"), String(""));
        for (int i = 0; i < extra; ++i)
            CreateProperty(String(i < 10 ? "P0%1" : "P%1").Arg(i), i);
    }
};

/// Publishes "Gain" below "Mixer", so that the menu has a submenu.
class Mixer : public Controller::KeyValueCoding
{
public:
    boost::any GetValueForKey(String const& key) override
    {
        return key == "Gain" ? boost::any(1.5f) : boost::any();
    }
    std::vector<String> CopyKeys() override { return {String("Gain")}; }
};

/// The editor with the menu and the picker answered by the test.
class TestEditor : public UI::PropertyEditor
{
public:
    using PropertyEditor::PropertyEditor;
    String menuChoice;
    String chosenFile;
    unsigned int livePick = 0;
    bool accept = false;

protected:
    int showPopupMenu(UI::Native::PopupMenu&, Point const&) override
    {
        auto const& paths = GetKVCMenuPaths();
        auto it = std::find(paths.begin(), paths.end(), menuChoice);
        return it == paths.end() ? UI::Native::PopupMenu::None : int(it - paths.begin());
    }
    bool askForFile(String const&, String const&, String const&, String const&,
                    String& path) override
    {
        path = chosenFile;
        return !path.IsEmpty();
    }
    bool runColorPicker(unsigned int& color, boost::function<void(unsigned int)> live) override
    {
        live(livePick);
        color = livePick;
        return accept;
    }
};

/// A `String` property's value in force, or "(none)".
std::string text(UI::Window* window, char const* property)
{
    checked_value<String> const value = window->GetProperty<String>(property);
    return value ? (*value).CStr() : "(none)";
}

struct Scene;
UI::Window* child(Scene const& s, char const* name);

struct Scene
{
    UI::Canvas canvas{"PropertyEditorTest", 0, 0, String(""), String("UI/Layout")};
    UI::Test::TestHostWindow host, editorHost;
    UI::MemoryDrawContext context{"Property Editor Test Context"};
    UI::MemoryDrawContext editorContext{"Property Editor Test Editor Context"};
    std::unique_ptr<UI::Frame> frame, editorFrame;
    UI::Window* root = nullptr;
    PropertyWindow* a = nullptr;
    PropertyWindow* b = nullptr;
    TestEditor* editor = nullptr;

    Scene()
    {
        frame.reset(new UI::Frame(&canvas, host.Handle(), &context, Point(), "unused",
                                  Rect(0, 399, 0, 299)));
        editorFrame.reset(new UI::Frame(&canvas, editorHost.Handle(), &editorContext, Point(),
                                        "unused", Rect(0, 359, 0, 499)));
        root = new UI::Window(frame.get(), nullptr, "root");
        frame->SetTopLevelWindow(root);
        a = new PropertyWindow(frame.get(), root, "a");
        b = new PropertyWindow(frame.get(), root, "b");
        editor = new TestEditor(editorFrame.get(), nullptr);
    }

    std::string label(unsigned int row) const { return editor->GetRowLabel(row)->GetText().CStr(); }
    std::string edit(unsigned int row) const { return editor->GetRowEdit(row)->GetText().CStr(); }
    /// The row of `property`, or MaxRows.
    unsigned int row(char const* property) const
    {
        for (unsigned int i = 0; i < editor->GetVisibleRowCount(); ++i)
            if (editor->GetRowPropertyName(i) == property)
                return i;
        return UI::PropertyEditor::MaxRows;
    }
    void type(char const* property, char const* text)
    {
        UI::SimpleEdit* field = editor->GetRowEdit(row(property));
        field->SetText(String(text));
        field->signalTextEdited();
    }
};

UI::Window* child(Scene const& s, char const* name)
{
    return s.editor->child_windows_by_name().at(String(name));
}

TEST(PropertyEditor, RowsShowTheCommonPropertiesInNameOrderWithTheirKinds)
{
    Scene s;
    s.editor->SetSelectedWindows({s.a});
    // A window's own "Color" and "ToolTip" come with the test's four.
    ASSERT_EQ(6u, s.editor->GetVisibleRowCount());
    char const* const labels[] = {"Border Style (Border Style)",
                                  "Color (Color)",
                                  "Controller Key Path (KeyPath)",
                                  "Count (Int)",
                                  "Fill Color (Color)",
                                  "ToolTip (String)"};
    for (unsigned int i = 0; i < 6; ++i)
        EXPECT_EQ(labels[i], s.label(i));
    // The enumeration in a combo box, the colour with its swatch, the key path with its menu.
    UI::ComboBox* combo = s.editor->GetRowComboBox(0);
    EXPECT_TRUE(combo->IsVisible());
    EXPECT_FALSE(s.editor->GetRowEdit(0)->IsVisible());
    EXPECT_EQ("Outline", std::string(combo->GetCaption().CStr()));
    EXPECT_TRUE(s.editor->GetRowSwatch(4)->IsVisible());
    EXPECT_EQ(0xFF112233u, s.editor->GetRowSwatch(4)->GetOnFillColor());
    EXPECT_EQ("112233", s.edit(4));
    EXPECT_TRUE(s.editor->GetRowKVCButton(2)->IsVisible());
    EXPECT_FALSE(s.editor->GetRowKVCButton(3)->IsVisible());
    EXPECT_FALSE(s.editor->GetRowSwatch(3)->IsVisible());
    EXPECT_EQ("Parent: root", text(child(s, "Parent Text"), "Text"));

    // Nothing selected: the note instead of rows.
    s.editor->SetSelectedWindows({});
    EXPECT_EQ(0u, s.editor->GetVisibleRowCount());
    EXPECT_TRUE(child(s, "No Editable Properties Text")->IsVisible());
    EXPECT_FALSE(s.editor->GetRowLabel(0)->IsVisible());
}

TEST(PropertyEditor, DifferingValuesShowDashesAndOneTypedValueSetsBoth)
{
    Scene s;
    s.b->SetSerializedValue("Fill Color", 0xFF445566u);
    s.b->SetSerializedValue("Border Style", UI::Borders::None);
    // A window without the test's properties takes them out of the rows.
    UI::Window* plain = new UI::Window(s.frame.get(), s.root, "plain");
    s.editor->SetSelectedWindows({s.a, s.b, plain});
    EXPECT_EQ(2u, s.editor->GetVisibleRowCount());
    s.editor->SetSelectedWindows({s.a, s.b});
    EXPECT_EQ(6u, s.editor->GetVisibleRowCount());
    EXPECT_EQ("--", s.edit(s.row("Fill Color")));
    EXPECT_EQ("--", std::string(s.editor->GetRowComboBox(0)->GetCaption().CStr()));
    EXPECT_EQ("1", s.edit(s.row("Count")));

    s.type("Fill Color", "00FF00");
    for (PropertyWindow* w : {s.a, s.b})
        EXPECT_EQ(0xFF00FF00u, *w->GetProperty<unsigned int>("Fill Color"));
    EXPECT_EQ("00FF00", s.edit(s.row("Fill Color")));

    // An enumeration chosen in the combo box.
    s.editor->GetRowComboBox(0)->signalItemSelected(3u);
    for (PropertyWindow* w : {s.a, s.b})
        EXPECT_EQ(UI::Borders::ShadowFromTopLeft,
                  *w->GetProperty<UI::Borders::BorderStyle>("Border Style"));

    // One window picked in the combo of the selection is edited alone.
    UI::ComboBox* windows = static_cast<UI::ComboBox*>(child(s, "Selected Windows ComboBox"));
    EXPECT_EQ("All selected windows (2)", std::string(windows->GetItems()[0].CStr()));
    windows->SetSelectedItem(2u);
    windows->signalItemSelected(2u);
    // The same selection told again keeps the choice.
    s.editor->SetSelectedWindows({s.a, s.b});
    EXPECT_EQ(std::vector<UI::Window*>{s.b}, s.editor->getEditWindows());
    s.type("Count", "7");
    EXPECT_EQ(1, *s.a->GetProperty<int>("Count"));
    EXPECT_EQ(7, *s.b->GetProperty<int>("Count"));
}

TEST(PropertyEditor, ARefusedValueLeavesThePropertyAndTheRow)
{
    Scene s;
    s.editor->SetSelectedWindows({s.a});
    struct Case
    {
        char const* property;
        char const* text;
        char const* shown;
    } const cases[] = {
        {"Count", "twelve", "1"}, {"Fill Color", "#80FF0000", "112233"}, {"Count", "12", "12"}};
    for (Case const& c : cases)
    {
        s.type(c.property, c.text);
        unsigned int const row = s.row(c.property);
        ASSERT_LT(row, UI::PropertyEditor::MaxRows) << c.text;
        EXPECT_EQ(c.shown, s.edit(row)) << c.text;
    }
    EXPECT_EQ(12, *s.a->GetProperty<int>("Count"));
    EXPECT_EQ(0xFF112233u, *s.a->GetProperty<unsigned int>("Fill Color"));
}

TEST(PropertyEditor, ThirtyThreePropertiesShowThirtyTwoRows)
{
    Scene s;
    // 27 numbers and the six of every such window make 33.
    PropertyWindow* many = new PropertyWindow(s.frame.get(), s.root, "many", 27);
    s.editor->SetSelectedWindows({many});
    EXPECT_EQ(UI::PropertyEditor::MaxRows, s.editor->GetVisibleRowCount());
    EXPECT_EQ(33u, s.editor->getInfoForEditableProperties().size());
    EXPECT_EQ("P00 (Int)", s.label(5));
    EXPECT_EQ("P26 (Int)", s.label(31));
    EXPECT_TRUE(s.editor->GetRowLabel(31)->IsVisible());
}

TEST(PropertyEditor, KeyPathMenuAndColourPickerEditTheRow)
{
    Scene s;
    Mixer mixer;
    s.canvas.SetValueForKey(String("Mixer"), static_cast<Controller::KeyValueCoding*>(&mixer));
    s.canvas.SetValueForKey(String("Level"), 3);
    s.editor->SetSelectedWindows({s.a, s.b});
    s.editor->menuChoice = String("Mixer.Gain");
    s.editor->GetRowKVCButton(s.row("Controller Key Path"))->signalClicked();
    std::vector<String> const paths = s.editor->GetKVCMenuPaths();
    EXPECT_EQ((std::vector<String>{String("Level"), String("Mixer.Gain")}), paths);
    for (PropertyWindow* w : {s.a, s.b})
        EXPECT_EQ("Mixer.Gain", text(w, "Controller Key Path"));

    // Live changes reach the windows; rejecting restores each window's own colour.
    s.b->SetSerializedValue("Fill Color", 0xFF445566u);
    s.editor->SetSelectedWindows({s.a, s.b});
    s.editor->livePick = 0xFF0000FFu;
    s.editor->GetRowSwatch(s.row("Fill Color"))->signalClicked();
    EXPECT_EQ(0xFF112233u, *s.a->GetProperty<unsigned int>("Fill Color"));
    EXPECT_EQ(0xFF445566u, *s.b->GetProperty<unsigned int>("Fill Color"));
    s.editor->accept = true;
    s.editor->GetRowSwatch(s.row("Fill Color"))->signalClicked();
    EXPECT_EQ(0xFF0000FFu, *s.b->GetProperty<unsigned int>("Fill Color"));
    EXPECT_EQ("0000FF", s.edit(s.row("Fill Color")));
}

TEST(PropertyEditor, AnImageIsChosenRelativeToTheResourceFolder)
{
    Scene s;
    UI::Window* picture = new UI::Window(s.frame.get(), s.root, "picture");
    picture->CreateProperty<String>("Picture", String("Image"), String(""));
    Util::ResourceManager::Get().SetOverridePath(FolderPath(String("/tmp/resources")));
    s.editor->SetSelectedWindows({picture});
    s.editor->chosenFile = String("/tmp/resources/UI/Images/Logo.png");
    s.editor->GetRowBrowseButton(s.row("Picture"))->signalClicked();
    Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());
    EXPECT_EQ("UI/Images/Logo.png", text(picture, "Picture"));
}

TEST(PropertyEditor, LayoutSectionTellsParentAndSaveMode)
{
    Scene s;
    UI::Window* other = new PropertyWindow(s.frame.get(), s.a, "other");
    s.b->SetDynamicLayoutMode(UI::Window::DynamicLayoutNever);
    s.b->SetLayoutCreated(true);
    other->SetLayoutCreated(true);
    auto shown = [&](char const* name) { return text(child(s, name), "Text"); };
    struct Case
    {
        std::vector<UI::Window*> windows;
        char const* parent;
        char const* mode;
        bool reparent;
    } const cases[] = {
        {{s.b}, "Parent: root", "Dynamic layout: No save : Created From Layout", true},
        // Only dynamically created windows have a save mode to show.
        {{s.a}, "Parent: root", "", false},
        {{s.a, s.b}, "Parent: root", "Dynamic layout: No save", false},
        {{other, s.b}, "Multiple parents", "Multiple dynamic layouts", true},
        {{}, "No Window selected", "", false},
    };
    for (Case const& c : cases)
    {
        s.editor->SetSelectedWindows(c.windows);
        EXPECT_EQ(c.parent, shown("Parent Text"));
        EXPECT_EQ(c.mode, shown("Dynamic Layout Text"));
        EXPECT_EQ(c.reparent, child(s, "Reparent Button")->IsEnabled());
        EXPECT_EQ(c.windows.size() == 1, child(s, "Layout Key Edit")->IsEnabled());
    }
    // Without an override folder, saving says what is missing.
    s.editor->SetSelectedWindows({s.a});
    EXPECT_FALSE(child(s, "Save Layout Button")->IsEnabled());
    EXPECT_EQ("Set Resource Override Folder to specify where to save layout files",
              std::string(child(s, "Save Layout Button")->GetToolTipText().CStr()));
}

} // namespace
