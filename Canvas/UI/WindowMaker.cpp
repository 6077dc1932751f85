// The window maker tool: pick a registered window type, name it, and place a new window of it
// in the design frame with the next click.
//
//   the example items
//   the maker: construction, layout, choosing a type, creating

#include "Canvas/UI/WindowMaker.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/ComboBox.h"
#include "Canvas/UI/Design.h"
#include "Canvas/UI/DesignAid.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/ScrollView.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/WindowFactory.h"

#include <algorithm>

namespace UI
{

namespace
{

unsigned int const ChosenColor = 0xFFB8D2F0u;
unsigned int const LabelColor = 0xFF000000u;
int const TypeTextX = ExampleWindowItem::MaxExampleWidth + 10;
int const ListTop = 76;
int const Gap = 5;

char const* const NoTypesTitle = "No window factory classes have been registered.";
char const* const NoTypesHelp =
    "To create windows dynamically, you must register their classes with the window "
    "factory.\nSee Canvas/UI/WindowFactoryRegistration for an example of how to do this.";

} // namespace

// ============================================================================================
// the example items
// ============================================================================================

ExampleWindowItem::ExampleWindowItem(Frame* frame, Window* parent, String const& type,
                                     WindowFactory* factory)
    : Window(frame, parent, String("Example Item ") + type), type(type)
{
    SetDynamicLayoutMode(DynamicLayoutNever);
    example = factory ? factory->Create(type, frame, this, String("Example Window")) : nullptr;
    int height = MinHeight;
    if (example)
    {
        // Only a sample: it takes no input and is never saved or deleted by a design.
        example->SetLayoutCreated(false);
        example->SetDynamicLayoutMode(DynamicLayoutNever);
        example->SetEnabled(false);
        Rect const r = example->GetGeometry();
        int const width = std::min(std::max(r.Width(), 1), MaxExampleWidth);
        int const exampleHeight = std::min(std::max(r.Height(), 1), MaxExampleHeight);
        example->SetGeometry(2, 0, width, exampleHeight);
        example->Show();
        height = std::max(height, exampleHeight);
    }
    typeText = new Text(frame, this, String("Window Type Text"), type,
                        checked_value<unsigned int>(), HAlignLeft, LabelColor);
    typeText->SetDynamicLayoutMode(DynamicLayoutNever);
    typeText->Move(TypeTextX, (height - typeText->GetHeight()) / 2);
    SetGeometry(0, 0, TypeTextX + typeText->GetWidth() + 4, height);
    SetFixedHeight(height);
}

void ExampleWindowItem::SetChosen(bool on)
{
    if (chosen == on)
        return;
    chosen = on;
    Update();
}

void ExampleWindowItem::Draw(DrawContext* context)
{
    if (chosen)
        context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), DrawContext::Filled,
                         ChosenColor, GetTotalBaseAlpha());
    Window::Draw(context);
}

bool ExampleWindowItem::onMousePress(Point const&, unsigned int)
{
    signalClicked(this);
    return true;
}

// ============================================================================================
// the maker
// ============================================================================================

WindowMaker::WindowMaker(Frame* frame, DesignAid* designAid, WindowFactory* factory)
    : Window(frame, nullptr, String("WindowMaker")), designAid(designAid)
{
    SetDynamicLayoutMode(DynamicLayoutNever);
    if (!factory)
        factory = GetWindowFactory(frame->GetCanvas());
    std::vector<String> const types = factory ? factory->type_names() : std::vector<String>();

    parentText = new Text(frame, this, String("Parent Text"), String(""),
                          checked_value<unsigned int>(), HAlignLeft, LabelColor);
    parentText->Move(5, 12);
    comboBox = new ComboBox(frame, this, String("Windows ComboBox"));
    comboBox->SetLabel(String("Type: "));
    comboBox->SetItems(types);
    comboBox->signalItemSelected.Connect(&WindowMaker::comboBoxItemSelected, this);
    nameLabel = new Text(frame, this, String("Name Text"), String("Name:"),
                         checked_value<unsigned int>(), HAlignLeft, LabelColor);
    nameLabel->Move(9, 52);
    nameEdit = new SimpleEdit(frame, this, String("Window Name Edit"));
    nameEdit->signalTextEdited.Connect(&WindowMaker::windowNameEdited, this);
    createButton = new SimplePushButton(frame, this, String("Create Button"), String("Create"));
    createButton->signalClicked.Connect(&WindowMaker::createButtonClicked, this);
    scrollView =
        new ScrollView(frame, this, String("Window Scroll View"), ScrollView::LayoutVerticalList);
    for (Window* w :
         std::vector<Window*>{parentText, comboBox, nameLabel, nameEdit, createButton, scrollView})
        w->SetDynamicLayoutMode(DynamicLayoutNever);

    scrollView->SetInUpdate(true);
    for (String const& type : types)
    {
        ExampleWindowItem* item = new ExampleWindowItem(frame, scrollView, type, factory);
        item->signalClicked.Connect(&WindowMaker::exampleItemClicked, this);
        scrollView->AddChild(checked_value<unsigned int>(), item, Point(0, 0));
        exampleItems.push_back(item);
    }
    scrollView->SetInUpdate(false);

    if (types.empty())
    {
        parentText->SetText(String(NoTypesTitle));
        noTypesText =
            new MultiText(frame, this, String("No Types Text"), String(NoTypesHelp),
                          checked_value<unsigned int>(), false, HAlignLeft, 0, LabelColor);
        noTypesText->SetDynamicLayoutMode(DynamicLayoutNever);
        comboBox->SetEnabled(false);
        nameEdit->SetEnabled(false);
    }

    designAid->signalSelectionChanged.Connect(&WindowMaker::updateSelectedWindows, this);
    designAid->signalCreateFinished.Connect(&WindowMaker::createWindowActionFinished, this);

    SetGeometry(0, 0, 300, 400);
    updateSelectedWindows();
    setCreateButtonState();
    setFocusOrder();
}

WindowMaker::~WindowMaker() = default;

void WindowMaker::setFocusOrder()
{
    GetFrame()->SetFocusOrder(std::vector<Window*>{comboBox, nameEdit, createButton});
}

void WindowMaker::onSetGeometry()
{
    int const width = GetWidth();
    // The combo's label lies inside it: the field itself starts at 49, as the name field does.
    int const labelWidth = comboBox->GetLabelWidth();
    comboBox->SetGeometry(49 - labelWidth, 30, 180 + labelWidth, 18);
    nameEdit->SetGeometry(49, 50, 180, 18);
    createButton->SetGeometry(49 + 180 + Gap, 49, 60, 20);
    int const listHeight = std::max(0, GetHeight() - ListTop - Gap);
    scrollView->SetGeometry(Gap, ListTop, std::max(0, width - 2 * Gap), listHeight);
    if (noTypesText)
        noTypesText->SetGeometry(Gap, ListTop, std::max(0, width - 2 * Gap),
                                 noTypesText->GetHeight());
}

// ---- choosing a type

void WindowMaker::comboBoxItemSelected(unsigned int index)
{
    std::vector<String> const& items = comboBox->GetItems();
    if (index >= items.size())
        return;
    selectedType = items[index];
    updateSelection();
}

void WindowMaker::exampleItemClicked(ExampleWindowItem* item)
{
    // The list stays as it is while a window waits to be placed.
    if (creating)
        return;
    selectedType = item->GetType();
    updateSelection();
}

void WindowMaker::updateSelection()
{
    for (ExampleWindowItem* item : exampleItems)
    {
        bool const chosen = item->GetType() == selectedType;
        item->SetChosen(chosen);
        if (chosen)
            scrollView->EnsureVisible(item);
    }
    comboBox->SetSelectedItem(selectedType);
    setCreateButtonState();
}

void WindowMaker::windowNameEdited()
{
    setCreateButtonState();
}

void WindowMaker::setCreateButtonState()
{
    createButton->SetEnabled(!creating && !selectedType.IsEmpty() &&
                             !nameEdit->GetText().IsEmpty());
}

// ---- the parent and the create action

Window* WindowMaker::parentWindow() const
{
    std::vector<Window*> const& selected = designAid->GetSelectedWindows();
    return selected.size() == 1 ? selected.front() : nullptr;
}

void WindowMaker::updateSelectedWindows()
{
    // The prompt to place the window, or the missing types, stay in view.
    if (creating || noTypesText)
        return;
    std::vector<Window*> const& selected = designAid->GetSelectedWindows();
    if (selected.size() == 1)
        parentText->SetText(String("Parent: %1").Arg(selected.front()->GetName()));
    else if (selected.empty())
        parentText->SetText(String("No parent (select a window to use it as a parent)"));
    else
        parentText->SetText(String("No parent (select one window to use it as a parent)"));
}

void WindowMaker::createButtonClicked()
{
    Frame* frame = designAid->GetDesignFrame();
    Design* design = frame ? frame->GetDesign() : nullptr;
    String const name = nameEdit->GetText();
    if (!design || selectedType.IsEmpty() || name.IsEmpty())
        return;
    design->StartCreateWindowAction(selectedType, parentWindow(), name);
    creating = true;
    parentText->SetText(String("Click to place the new %1 '%2'").Arg(selectedType).Arg(name));
    comboBox->SetEnabled(false);
    nameEdit->SetEnabled(false);
    setCreateButtonState();
}

void WindowMaker::createWindowActionFinished()
{
    if (!creating)
        return;
    creating = false;
    comboBox->SetEnabled(true);
    nameEdit->SetEnabled(true);
    nameEdit->SetText(String(""));
    setCreateButtonState();
    updateSelectedWindows();
}

} // namespace UI
