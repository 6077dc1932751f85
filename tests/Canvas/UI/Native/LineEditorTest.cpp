#include "Canvas/UI/Native/LineEditor.h"

#include <gtest/gtest.h>

using UI::Native::LineEditor;

TEST(LineEditorTyping, ReplacesTheInitialSelection)
{
    LineEditor e("old text", {});
    EXPECT_EQ(String("old text"), e.GetSelectedText());
    EXPECT_EQ(8u, e.GetCaret());
    EXPECT_TRUE(e.Insert("new"));
    EXPECT_EQ(String("new"), e.GetText());
    EXPECT_EQ(3u, e.GetCaret());
    EXPECT_FALSE(e.HasSelection());

    e.Home(false);
    e.Insert("a ");
    EXPECT_EQ(String("a new"), e.GetText());
    // Line breaks never enter a single line.
    EXPECT_TRUE(e.Insert("b\nc"));
    EXPECT_EQ(String("a bcnew"), e.GetText());
    EXPECT_FALSE(e.Insert("\n"));
}

TEST(LineEditorTyping, TheFilterLetsOnlyItsCharactersIn)
{
    LineEditor e("", {'0', '1', '2', '.', '-'});
    EXPECT_TRUE(e.Insert("1a2.b"));
    EXPECT_EQ(String("12."), e.GetText());
    EXPECT_FALSE(e.Insert("xyz"));
    // A multi-byte character is refused whole.
    EXPECT_FALSE(e.Insert("\xC3\xA9"));
    EXPECT_EQ(String("12."), e.GetText());
}

TEST(LineEditorDeleting, BackspaceAndDeleteTakeWholeCharacters)
{
    LineEditor e("a\xC3\xA9z", {});
    e.End(false);
    EXPECT_TRUE(e.Backspace());
    EXPECT_TRUE(e.Backspace());
    EXPECT_EQ(String("a"), e.GetText());
    EXPECT_TRUE(e.Backspace());
    EXPECT_FALSE(e.Backspace());

    LineEditor f("\xC3\xA9xy", {});
    f.Home(false);
    EXPECT_TRUE(f.Delete());
    EXPECT_EQ(String("xy"), f.GetText());
    f.End(false);
    EXPECT_FALSE(f.Delete());

    // With a selection both take it.
    LineEditor g("abcdef", {});
    g.SetCaret(1, false);
    g.SetCaret(4, true);
    EXPECT_EQ(String("bcd"), g.GetSelectedText());
    EXPECT_TRUE(g.Delete());
    EXPECT_EQ(String("aef"), g.GetText());
    EXPECT_EQ(1u, g.GetCaret());
}

TEST(LineEditorCaret, MovesAndExtendsTheSelection)
{
    LineEditor e("h\xC3\xA9llo", {});
    e.Home(false);
    e.Right(false);
    EXPECT_EQ(1u, e.GetCaret());
    e.Right(false);
    EXPECT_EQ(3u, e.GetCaret()); // over the two bytes of the accent
    e.Left(true);
    EXPECT_EQ(String("\xC3\xA9"), e.GetSelectedText());
    // Moving without Shift collapses the selection to its side.
    e.Right(false);
    EXPECT_EQ(3u, e.GetCaret());
    EXPECT_FALSE(e.HasSelection());
    e.End(true);
    EXPECT_EQ(String("llo"), e.GetSelectedText());
    e.SelectAll();
    EXPECT_EQ(e.GetText(), e.GetSelectedText());
    // A caret inside a character snaps back to its start; past the end to the end.
    e.SetCaret(2, false);
    EXPECT_EQ(1u, e.GetCaret());
    e.SetCaret(99, false);
    EXPECT_EQ(6u, e.GetCaret());
}
