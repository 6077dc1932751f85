#pragma once

#include "Canvas/UI/Window.h"
#include "TvBase/Util/Signal.h"

#include <vector>

namespace UI
{

class ComboBox;
class DesignAid;
class MultiText;
class ScrollView;
class SimpleEdit;
class SimplePushButton;
class Text;
class WindowFactory;

/// One entry of the window maker's list: a live, disabled example of a registered window type
/// ("Example Window", at most 100 by 25) and the type's name beside it. A press anywhere on it
/// chooses it; the example itself takes no input.
class ExampleWindowItem : public Window
{
public:
    static constexpr int MaxExampleWidth = 100;
    static constexpr int MaxExampleHeight = 25;
    static constexpr int MinHeight = 20;

    /// Makes the example through `factory`; a type whose window can't be made shows its name
    /// alone.
    ExampleWindowItem(Frame* frame, Window* parent, String const& type, WindowFactory* factory);

    Signal<ExampleWindowItem*> signalClicked;

    String const& GetType() const { return type; }
    /// The live example; null when the factory made none.
    Window* GetExample() const { return example; }
    void SetChosen(bool on);
    bool IsChosen() const { return chosen; }

    void Draw(DrawContext* context) override;
    bool onMousePress(Point const& point, unsigned int flags) override;
    String GetWindowType() const override { return String("ExampleWindowItem"); }

private:
    String type;
    Window* example = nullptr;
    Text* typeText;
    bool chosen = false;
};

/// The window maker tool ("WindowMaker", in "Window Maker Host Window"): every window type
/// registered with the canvas's window factory, in a combo box and as live examples; a name
/// field and a Create button that start the design's create action, under the one selected
/// window or at the top of the design frame. The next click in the design frame places the new
/// window.
///
/// Made by the Design Aid on first need, on a design-disabled frame that owns it. Main thread
/// only.
class WindowMaker : public Window
{
public:
    /// `factory` (not owned) is the canvas's window factory when null.
    WindowMaker(Frame* frame, DesignAid* designAid, WindowFactory* factory = nullptr);
    ~WindowMaker() override;

    void comboBoxItemSelected(unsigned int index);
    void exampleItemClicked(ExampleWindowItem* item);
    void windowNameEdited();
    void createButtonClicked();
    /// "Parent Text" tells which window the new one will go under.
    void updateSelectedWindows();
    void createWindowActionFinished();
    void updateSelection();
    void setFocusOrder();

    String const& GetSelectedType() const { return selectedType; }
    std::vector<ExampleWindowItem*> const& GetExampleItems() const { return exampleItems; }
    Text* GetParentText() const { return parentText; }
    ComboBox* GetComboBox() const { return comboBox; }
    SimpleEdit* GetNameEdit() const { return nameEdit; }
    SimplePushButton* GetCreateButton() const { return createButton; }
    ScrollView* GetScrollView() const { return scrollView; }
    /// The two lines shown when no type is registered; null otherwise.
    MultiText* GetNoTypesText() const { return noTypesText; }

    void onSetGeometry() override;
    String GetWindowType() const override { return String("WindowMaker"); }

private:
    void setCreateButtonState();
    Window* parentWindow() const;

    DesignAid* designAid;
    Text* parentText;
    ComboBox* comboBox;
    ScrollView* scrollView;
    Text* nameLabel;
    SimpleEdit* nameEdit;
    SimplePushButton* createButton;
    MultiText* noTypesText = nullptr;
    String selectedType;
    std::vector<ExampleWindowItem*> exampleItems;
    /// The create action runs: the controls wait for it to finish.
    bool creating = false;
};

} // namespace UI
