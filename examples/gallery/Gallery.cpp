#include "examples/gallery/Gallery.h"

#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/Text.h"

#include <boost/function.hpp>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace Gallery
{

namespace
{

int const Left = 16;
int const Column = 360;
unsigned int const Ink = 0xFF202020;
unsigned int const TitleInk = 0xFF305080;

} // namespace

Page::Page(UI::Frame* frame, UI::Window* parent, String const& name) : Window(frame, parent, name)
{
}

void Page::Draw(UI::DrawContext* context)
{
    context->DrawBox(UI::Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                     0xFFF2F2EE, 255);
    Window::Draw(context);
}

int Page::AddSectionTitle(String const& title, int y, int x)
{
    UI::Text* text = new UI::Text(GetFrame(), this, title, title, checked_value<unsigned int>(),
                                  UI::HAlignLeft, TitleInk, UI::Point(x, y));
    return y + text->GetHeight() + 6;
}

void ReportEdits(UI::Edit* edit)
{
    edit->signalTextEdited.Connect(nullptr, boost::function<void()>(
                                                [edit]
                                                {
                                                    std::printf("edited %s: %s\n",
                                                                edit->GetName().CStr(),
                                                                edit->GetText().CStr());
                                                    std::fflush(stdout);
                                                }));
}

int AddLabels(Page* page, int y)
{
    y = page->AddSectionTitle("Labels", y);
    UI::Frame* frame = page->GetFrame();
    new UI::Text(frame, page, "Left Label", "Left justified", checked_value<unsigned int>(),
                 UI::HAlignLeft, Ink, UI::Point(Left, y), UI::Size(Column, 16), false);
    y += 20;
    new UI::Text(frame, page, "Centre Label", "Centred", checked_value<unsigned int>(),
                 UI::HAlignCenter, Ink, UI::Point(Left, y), UI::Size(Column, 16), false);
    y += 20;
    new UI::Text(frame, page, "Right Label", "Right justified", checked_value<unsigned int>(),
                 UI::HAlignRight, Ink, UI::Point(Left, y), UI::Size(Column, 16), false);
    y += 20;
    UI::Text* shadow =
        new UI::Text(frame, page, "Shadow Label", "Drop shadow and background",
                     checked_value<unsigned int>(), UI::HAlignLeft, 0xFFFFFFFF, UI::Point(Left, y));
    shadow->SetDropShadow(UI::Point(1, 1), 0xFF000000u);
    shadow->SetBackground(0xFF6080A0u, 0);
    y += shadow->GetHeight() + 4;
    UI::Text* ellipsized =
        new UI::Text(frame, page, "Ellipsized Label", "", checked_value<unsigned int>(),
                     UI::HAlignLeft, Ink, UI::Point(Left, y));
    ellipsized->SetText(ellipsized->Ellipsize(
        "A label far too long for the little room it is given here", 180, UI::EllipsisEnd));
    return y + ellipsized->GetHeight() + 12;
}

int AddWrappedText(Page* page, int y)
{
    y = page->AddSectionTitle("Wrapped text", y);
    UI::MultiText* text = new UI::MultiText(
        page->GetFrame(), page, "Wrapped Text",
        "Text wraps at word boundaries to the width of its window.\n"
        "-\tA tab sets a hanging indent, so the following lines of this paragraph line up "
        "after the dash.",
        checked_value<unsigned int>(), false, UI::HAlignLeft, 2, Ink);
    text->SetGeometry(Left, y, 260, 10);
    text->SetHeightToFit();
    return y + text->GetHeight() + 12;
}

int AddEditFields(Page* page, int y)
{
    y = page->AddSectionTitle("Edit fields", y);
    UI::Frame* frame = page->GetFrame();
    UI::Edit* name = UI::CreateSimpleEdit(frame, page, "Name Edit", "Click to edit");
    name->SetGeometry(Left, y, 200, 22);
    ReportEdits(name);
    y += 28;
    UI::Edit* number = UI::CreateSimpleEdit(frame, page, "Number Edit", "");
    number->SetRange(0.0f, 100.0f);
    number->SetDefaultValue(50.0f);
    number->SetHexAllowed(true);
    number->SetNumDecimalPlaces(2u);
    number->SetFloatValue(42.0f);
    // Either decimal separator; hexadecimal digits for "0x" and "$" texts.
    number->SetInlineCharFilter({'0', '1', '2', '3', '4', '5', '6', '7', '8',
                                 '9', '.', ',', '-', 'x', '$', 'a', 'b', 'c',
                                 'd', 'e', 'f', 'A', 'B', 'C', 'D', 'E', 'F'});
    number->SetGeometry(Left, y, 120, 22);
    // The field keeps its last number when what was typed is none.
    auto lastNumber = std::make_shared<float>(42.0f);
    number->signalTextEdited.Connect(nullptr, boost::function<void()>(
                                                  [number, lastNumber]
                                                  {
                                                      if (number->GetFloatValue())
                                                          *lastNumber = *number->GetFloatValue();
                                                      else
                                                          number->SetFloatValue(*lastNumber);
                                                  }));
    ReportEdits(number);
    y += 28;
    UI::Edit* locked = UI::CreateSimpleEdit(frame, page, "Locked Edit", "Not editable");
    locked->SetEditable(false);
    locked->SetGeometry(Left, y, 200, 22);
    return y + 34;
}

int AddToolTip(Page* page, int y)
{
    y = page->AddSectionTitle("Tool tip", y);
    UI::SimpleEdit* target =
        new UI::SimpleEdit(page->GetFrame(), page, "ToolTip Target", "Rest the mouse here");
    target->SetBackground(0xFFE0E8F0);
    target->SetBorderStyle(UI::SimpleEdit::BorderLine);
    target->SetEditable(false);
    target->SetGeometry(Left, y, 200, 22);
    target->SetToolTipText("A tool tip appears after the mouse has rested for a moment.");
    return y + 34;
}

int Build(Page* page)
{
    int y = 12;
    y = AddLabels(page, y);
    y = AddWrappedText(page, y);
    y = AddEditFields(page, y);
    y = AddToolTip(page, y);
    y = AddButtons(page, y);
    y = AddParamControls(page, y);
    int right = 12;
    right = AddScrollingList(page, SecondColumn, right);
    right = AddSplitter(page, SecondColumn, right);
    right = AddTabs(page, SecondColumn, right);
    right = AddImages(page, SecondColumn, right);
    return std::max(y, right);
}

} // namespace Gallery
