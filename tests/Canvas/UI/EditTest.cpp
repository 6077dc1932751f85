#include "Canvas/UI/Edit.h"

#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/Text.h"
#include "tests/Canvas/UI/support/TextScene.h"

#include <SDL.h>
#include <boost/function.hpp>
#include <gtest/gtest.h>

using TextTest::Scene;
using UI::Edit;
using UI::Point;

namespace
{

/// Counts what an edit field signals.
struct Signals
{
    int started = 0;
    int edited = 0;
    int changed = 0;
    int altClicked = 0;

    explicit Signals(Edit* edit)
    {
        edit->signalEditStarted.Connect(nullptr, boost::function<void()>([this] { ++started; }));
        edit->signalTextEdited.Connect(nullptr, boost::function<void()>([this] { ++edited; }));
        edit->signalTextChanged.Connect(nullptr, boost::function<void()>([this] { ++changed; }));
        edit->signalAltClicked.Connect(nullptr, boost::function<void()>([this] { ++altClicked; }));
    }
};

/// Holds Alt down in the host's keyboard state for the life of the object.
struct AltDown
{
    AltDown() { SDL_SetModState(KMOD_LALT); }
    ~AltDown() { SDL_SetModState(KMOD_NONE); }
};

Edit* MakeNumeric(Scene& s, float minimum, float maximum)
{
    Edit* edit = new UI::SimpleEdit(s.frame.get(), s.root, "Number");
    edit->SetGeometry(20, 20, 100, 20);
    edit->SetRange(minimum, maximum);
    return edit;
}

} // namespace

TEST(EditText, SetTextStoresShowsAndSignalsChanges)
{
    Scene s;
    Edit* edit = new UI::SimpleEdit(s.frame.get(), s.root, "Name", "first");
    Signals seen(edit);
    EXPECT_EQ(String("Edit"), edit->GetWindowType());
    EXPECT_EQ(UI::Cursor::IBeam, edit->GetCursor().GetShape());
    ASSERT_NE(nullptr, edit->GetTextWindow());
    EXPECT_EQ(String("Edit Text"), edit->GetTextWindow()->GetName());
    EXPECT_EQ(String("first"), edit->GetTextWindow()->GetText());

    edit->SetText("second");
    EXPECT_EQ(String("second"), edit->GetText());
    EXPECT_EQ(String("second"), edit->GetTextWindow()->GetText());
    EXPECT_EQ(1, seen.changed);
    edit->SetText("second");
    EXPECT_EQ(1, seen.changed);

    // The tool tip can follow the text.
    edit->SetTextAsToolTip(true);
    edit->SetText("third");
    EXPECT_EQ(String("third"), edit->GetToolTipText());
    EXPECT_EQ(0, seen.edited);
    EXPECT_EQ(0, seen.started);
}

TEST(EditText, NumericTextIsParsedClampedAndFormattedAndHexadecimalOnlyWhenAllowed)
{
    Scene s;
    Edit* edit = MakeNumeric(s, 0.0f, 100.0f);
    edit->SetText("42.5");
    ASSERT_TRUE(edit->GetFloatValue());
    EXPECT_FLOAT_EQ(42.5f, *edit->GetFloatValue());
    // Shown in the float form.
    EXPECT_EQ(String("%1").Arg(42.5f), edit->GetText());

    edit->SetText("250");
    EXPECT_FLOAT_EQ(100.0f, *edit->GetFloatValue());
    EXPECT_EQ(String("%1").Arg(100.0f), edit->GetText());

    // Not a number: no value, and the text as typed.
    edit->SetText("lots");
    EXPECT_FALSE(edit->GetFloatValue());
    EXPECT_EQ(String("lots"), edit->GetText());

    edit->SetFloatValue(-5.0f);
    EXPECT_FLOAT_EQ(0.0f, *edit->GetFloatValue());
    EXPECT_EQ(String("%1").Arg(0.0f), edit->GetText());

    // Out of numeric mode every text stands as it is.
    edit->SetRange(1.0f, 0.0f);
    edit->SetText("250");
    EXPECT_EQ(String("250"), edit->GetText());

    // Hexadecimal text only when allowed: "$" is no number to the float parser: without hexadecimal
    // input it holds nothing.
    edit->SetRange(0.0f, 1000.0f);
    edit->SetText("$FF");
    EXPECT_FALSE(edit->GetFloatValue());
    EXPECT_EQ(String("$FF"), edit->GetText());

    edit->SetHexAllowed(true);
    edit->SetText("$ff");
    ASSERT_TRUE(edit->GetFloatValue());
    EXPECT_FLOAT_EQ(255.0f, *edit->GetFloatValue());
    EXPECT_EQ(String("0xFF"), edit->GetText());

    // The text it shows reads back as the same value.
    edit->SetText("0x10");
    edit->SetText(String("0xFF"));
    EXPECT_FLOAT_EQ(255.0f, *edit->GetFloatValue());

    // Clamped into the range, and shown as the clamped number.
    edit->SetRange(0.0f, 100.0f);
    edit->SetText("$1FF");
    EXPECT_FLOAT_EQ(100.0f, *edit->GetFloatValue());
    EXPECT_EQ(String("0x64"), edit->GetText());
    edit->SetText("$zz");
    EXPECT_FALSE(edit->GetFloatValue());
    EXPECT_EQ(String("$zz"), edit->GetText());
}

TEST(EditInput, AltClickRestoresTheDefaultWithoutAnEditor)
{
    Scene s;
    Edit* edit = MakeNumeric(s, 0.0f, 100.0f);
    edit->SetDefaultValue(25.0f);
    edit->SetText("80");
    Signals seen(edit);
    {
        AltDown alt;
        EXPECT_TRUE(
            s.frame->HandleMouseMessage(UI::MouseLeftPress, Point(30, 30), UI::FlagLeftButton, 0));
    }
    ASSERT_TRUE(edit->GetFloatValue());
    EXPECT_FLOAT_EQ(25.0f, *edit->GetFloatValue());
    EXPECT_EQ(String("%1").Arg(25.0f), edit->GetText());
    EXPECT_EQ(String("%1").Arg(25.0f), edit->GetTextWindow()->GetText());
    EXPECT_EQ(1, seen.edited);
    EXPECT_EQ(0, seen.started);
    EXPECT_EQ(0, seen.altClicked);

    // When the owner resets, the field only tells it.
    edit->SetAltResetsToDefault(true);
    edit->SetText("60");
    {
        AltDown alt;
        s.frame->HandleMouseMessage(UI::MouseLeftPress, Point(30, 30), UI::FlagLeftButton, 0);
    }
    EXPECT_EQ(1, seen.altClicked);
    EXPECT_EQ(1, seen.edited);
    EXPECT_EQ(String("%1").Arg(60.0f), edit->GetText());
}

TEST(EditInput, KeysOpenTheEditorOnlyWhenEditable)
{
    Scene s;
    Edit* edit = new UI::SimpleEdit(s.frame.get(), s.root, "Locked", "fixed");
    edit->SetGeometry(20, 20, 100, 20);
    edit->SetEditable(false);
    Signals seen(edit);
    s.frame->SetFocus(edit);
    ASSERT_EQ(edit, s.frame->GetFocus());
    EXPECT_TRUE(edit->NeedsEnterKey());

    // F2 and Enter are swallowed, but nothing opens.
    EXPECT_TRUE(s.frame->HandleKeyboardMessage(UI::KeyPress, UI::KeyCode::Enter, 0, 0, false));
    EXPECT_TRUE(s.frame->HandleKeyboardMessage(UI::KeyPress, UI::KeyCode::F1 + 1, 0, 0, false));
    EXPECT_EQ(0, seen.started);
    // Other keys are not the field's.
    EXPECT_FALSE(edit->onKeyPress('A', 0, false));

    // A click takes the focus but opens nothing either.
    s.frame->SetFocus(nullptr);
    s.frame->HandleMouseMessage(UI::MouseLeftPress, Point(30, 30), UI::FlagLeftButton, 0);
    EXPECT_EQ(edit, s.frame->GetFocus());
    EXPECT_EQ(0, seen.started);
    EXPECT_EQ(String("fixed"), edit->GetText());
}

TEST(EditInput, AnEditorThatCannotOpenChangesNothing)
{
    // The in-memory host has no native window for the editor: the edit is left at once.
    Scene s;
    Edit* edit = new UI::SimpleEdit(s.frame.get(), s.root, "Name", "kept");
    edit->SetGeometry(20, 20, 100, 20);
    Signals seen(edit);
    s.frame->HandleMouseMessage(UI::MouseLeftPress, Point(30, 30), UI::FlagLeftButton, 0);
    EXPECT_EQ(1, seen.started);
    EXPECT_EQ(0, seen.edited);
    EXPECT_FALSE(edit->IsInlineEditing());
    EXPECT_FALSE(edit->IsFocusedByClick());
    EXPECT_EQ(String("kept"), edit->GetText());
}

TEST(EditLayout, TheTextChildFollowsMarginAndJustification)
{
    Scene s;
    Edit* edit = new UI::SimpleEdit(s.frame.get(), s.root, "Name", "abc");
    edit->SetGeometry(10, 10, 150, 30);
    UI::Text* text = edit->GetTextWindow();
    int const w = text->GetWidth();
    int const h = text->GetHeight();
    EXPECT_EQ(3, text->GetGeometry().left);
    EXPECT_EQ((30 - h) / 2, text->GetGeometry().top);
    edit->SetJustification(UI::HAlignRight);
    EXPECT_EQ(150 - w - 3, text->GetGeometry().left);
    edit->SetJustification(UI::HAlignCenter);
    EXPECT_EQ((150 - w) / 2, text->GetGeometry().left);

    // Ellipsized, the shown text fits inside the margins; the field keeps the whole text.
    edit->SetJustification(UI::HAlignLeft);
    edit->SetEllipsize(true);
    edit->SetText("a text that is far too long for a field of this width, surely");
    EXPECT_LE(text->GetWidth(), 150 - 6);
    EXPECT_NE(edit->GetText(), text->GetText());
    EXPECT_TRUE(text->GetText().BeginsWith("a text"));

    // The multi-line field fills the window less the margin.
    Edit* notes = new UI::SimpleEdit(s.frame.get(), s.root, "Notes", "line one\nline two", true);
    notes->SetGeometry(10, 60, 200, 80);
    ASSERT_NE(nullptr, notes->GetMultiTextWindow());
    EXPECT_EQ(String("Edit MultiText"), notes->GetMultiTextWindow()->GetName());
    EXPECT_EQ(UI::Rect(3, 196, 3, 76), notes->GetMultiTextWindow()->GetGeometry());
    EXPECT_EQ(2u, notes->GetMultiTextWindow()->GetLines().size());
}

TEST(SimpleEditDrawing, BackgroundBorderAndNothingWhileEditing)
{
    Scene s;
    UI::SimpleEdit* edit = new UI::SimpleEdit(s.frame.get(), s.root, "Name", "");
    edit->SetGeometry(10, 10, 60, 20);
    edit->SetBackground(0xFF00FF00u);
    edit->SetBorderColor(0xFFFF0000u);
    edit->SetBorderStyle(UI::SimpleEdit::BorderLine);
    s.Paint();
    EXPECT_EQ(0xFFFF0000u, s.Pixel(10, 10));
    EXPECT_EQ(0xFFFF0000u, s.Pixel(69, 29));
    EXPECT_EQ(0xFF00FF00u, s.Pixel(11, 11));
    EXPECT_EQ(0xFF00FF00u, s.Pixel(40, 20));
    EXPECT_EQ(0xFFFFFFFFu, s.Pixel(9, 10));

    // The properties behind the setters drive the look as well.
    ASSERT_TRUE(edit->SetProperty<int>("Border Type", 0));
    ASSERT_TRUE(edit->SetProperty<unsigned int>("Background Color", 0xFF0000FFu));
    s.Paint();
    EXPECT_EQ(0xFF0000FFu, s.Pixel(10, 10));
}
