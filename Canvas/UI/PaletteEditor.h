#pragma once

#include "Canvas/UI/Window.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace Controller
{
class BoolParam;
class FloatParam;
} // namespace Controller

namespace Util
{
class ConfigFile;
}

namespace UI
{

class Canvas;
class CheckBox;
class Edit;
class ListBox;
class PushButton;
class Text;

/// The designer's palette tool: every entry of the running program's palette in one list, with
/// live editing of colours (through the colour picker, or grabbed from the screen), alphas,
/// bools and ints, a search, "Find color" that selects the entries showing the colour under the
/// cursor, and saving the result as the custom palette in the settings. Every change is told
/// to every window of every frame of the canvas at once.
///
/// Its custom-palette operations are static and work without an editor window: a program loads
/// the saved palette at start with them.
///
/// A custom palette lives in the settings as `section` + "/" + kind + key, the kind being
/// "Color." (text "#RRGGBB", with ".AA" when not opaque), "Alpha." (unsigned integer 0 to
/// 255), "Bool." or "Int.", and counts only while the bool at `enableKey` is true.
///
/// The children are laid out by code, not by a layout file. Not copyable.
class PaletteEditor : public Window
{
public:
    /// "Palette/CustomPaletteEnable"
    static String const DefaultEnableKey;
    /// "Palette"
    static String const DefaultSection;

    /// One palette entry as the editor shows it.
    struct PaletteItemInfo
    {
        enum Kind
        {
            Color,
            Alpha,
            Bool,
            Int
        };
        PaletteItemInfo(String const& key, unsigned int color);
        PaletteItemInfo(String const& key, unsigned char alpha);
        PaletteItemInfo(String const& key, bool value);
        PaletteItemInfo(String const& key, int value);

        /// Makes the parameter that the row's scrub text or check box is bound to (alpha, bool
        /// and int entries; colours have none).
        void initController();

        Kind kind;
        String key;
        /// The colour of a colour entry; the alpha, the bool (0 or 1) or the int of the others.
        unsigned int color = 0;
        int value = 0;
        /// What the entry held when the editor read the palette: what "Reset" puts back.
        unsigned int startColor = 0;
        int startValue = 0;
        boost::shared_ptr<Controller::FloatParam> floatController;
        boost::shared_ptr<Controller::BoolParam> boolController;
    };

    /// `config` (not owned) holds the custom palette; without `enableKey` and `section` the
    /// defaults above are used.
    PaletteEditor(Frame* frame, Window* parent, Util::ConfigFile* config,
                  checked_value<String> enableKey = checked_value<String>(),
                  checked_value<String> section = checked_value<String>());
    ~PaletteEditor() override;

    PaletteEditor(PaletteEditor const&) = delete;
    PaletteEditor& operator=(PaletteEditor const&) = delete;

    // ---- slots
    void slotUpdateSelection();
    void slotSetColor();
    void slotSearchTextEdited();
    void slotResetItem();
    void slotFindColor();
    void slotGrabColor();
    void slotReset();
    void slotSave();
    /// Ctrl+Shift+Alt with a right click on "Save": the palette as source text on the clipboard.
    void slotSaveRightClicked();
    void slotLoad();
    /// Gives every selected colour entry `color`, in the palette and in its row, and tells
    /// every window.
    void slotColorUserChanged(unsigned int color);
    void slotColorPickerAccepted();
    void slotColorPickerRejected();
    /// The parameter of item `index` changed: its value goes to the palette.
    void slotItemControllerChanged(unsigned int index);

    /// The program's palette as the source text that "Save" with Ctrl+Shift+Alt copies.
    static String PaletteSourceText(Canvas* canvas);

    static bool LoadCustomPalette(Canvas* canvas, Util::ConfigFile* config);
    /// False, reading nothing, when the enable key is false. Otherwise puts every value of the
    /// section whose name starts with "Int.", "Bool.", "Alpha." or "Color." (tried in this
    /// order) into the canvas's palette under the rest of the name; other names and unreadable
    /// colors are skipped. True.
    static bool LoadCustomPalette(Canvas* canvas, Util::ConfigFile* config, String const& enableKey,
                                  String const& section);
    /// Sets the enable key, then writes every palette entry (colors, alphas, bools, ints) to the
    /// section.
    static void SaveCustomPalette(Canvas* canvas, Util::ConfigFile* config, String const& enableKey,
                                  String const& section);
    /// Clears the enable key and removes every custom-palette value of the section. The palette
    /// in memory stays as it is.
    static void ClearCustomPalette(Util::ConfigFile* config, String const& enableKey,
                                   String const& section);

    std::vector<PaletteItemInfo> const& GetItems() const { return items; }
    /// The items shown in the list, by row.
    std::vector<unsigned int> const& GetShownItems() const { return shown; }
    int GetSampling() const { return sampling; }

    // ---- Window
    void Draw(DrawContext* context) override;
    void onSetGeometry() override;
    bool onMouseMove(Point const& point, unsigned int flags) override;
    bool onMouseRelease(Point const& point, unsigned int flags) override;
    String GetWindowType() const override { return String("PaletteEditor"); }

    /// Sampling modes.
    enum
    {
        SamplingNone = 0,
        SamplingFind = 1,
        SamplingGrab = 2
    };

private:
    void initializePaletteItems();
    void checkForDuplicatePaletteEntries();
    void populateListBox();
    void notifyPaletteChange();
    void resetItems(bool selectedOnly);
    void startSampling(int mode, PushButton* button);
    void findColor(Point const& screenPos);
    void showEyedropper(unsigned int color);
    void hideEyedropper();
    /// The row that shows item `index`; not present when the search hides it.
    checked_value<unsigned int> rowOfItem(unsigned int index) const;
    bool isItemSelected(unsigned int index) const;
    void writeItemToCanvas(PaletteItemInfo const& item);

    Util::ConfigFile* config;
    String enableKey;
    String section;
    std::vector<PaletteItemInfo> items;
    std::vector<unsigned int> shown;
    int sampling = SamplingNone;
    /// The colours of the items the picker changes, as they were when it opened.
    std::vector<std::pair<unsigned int, unsigned int>> pickerStart;
    bool pickerOpen = false;
    unsigned int pickerColor = 0;

    ListBox* list = nullptr;
    Edit* searchEdit = nullptr;
    Text* searchLabel = nullptr;
    PushButton* setButton = nullptr;
    PushButton* resetItemButton = nullptr;
    PushButton* findButton = nullptr;
    PushButton* grabButton = nullptr;
    Window* swatch = nullptr;
    Text* colorText = nullptr;
    Text* numColorsLabel = nullptr;
    PushButton* resetButton = nullptr;
    PushButton* saveButton = nullptr;
    PushButton* loadButton = nullptr;
    CheckBox* autoSelect = nullptr;
};

} // namespace UI
