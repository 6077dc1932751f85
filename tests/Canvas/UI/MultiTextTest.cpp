#include "Canvas/UI/MultiText.h"

#include "Canvas/UI/Text.h"
#include "tests/Canvas/UI/support/TextScene.h"

#include <gtest/gtest.h>

using TextTest::Scene;
using UI::MultiText;
using UI::Point;

namespace
{

/// Ten pixels per character, whatever its byte length: a font where widths are easy to see.
int TenPerCharacter(String const& s)
{
    int count = 0;
    for (unsigned int i = 0; i < s.Length(); ++i)
        if ((s[i].Byte() & 0xC0) != 0x80)
            ++count;
    return count * 10;
}

std::vector<String> Break(String const& text, int width, std::vector<int>& indents,
                          bool noWrap = false)
{
    return MultiText::wordBreak(text, width, TenPerCharacter, noWrap, indents);
}

std::vector<String> Strings(std::initializer_list<char const*> list)
{
    std::vector<String> out;
    for (char const* s : list)
        out.push_back(String(s));
    return out;
}

} // namespace

TEST(WordBreak, WrapsAtSpacesWithinTheWidth)
{
    std::vector<int> indents;
    EXPECT_EQ(Strings({"one two", "three", "four five"}),
              Break("one two three four five", 90, indents));
    EXPECT_EQ(std::vector<int>({0, 0, 0}), indents);

    // Everything fits: one line.
    EXPECT_EQ(Strings({"one two"}), Break("one two", 70, indents));

    // Line feeds end lines, and the lines are stripped.
    EXPECT_EQ(Strings({"first", "", "third"}), Break("first \n\n  third", 200, indents));

    // Without wrapping only line feeds count.
    EXPECT_EQ(Strings({"one two three", "four"}), Break("one two three\nfour", 30, indents, true));
}

TEST(WordBreak, DegenerateWidthsAndTexts)
{
    std::vector<int> indents;
    EXPECT_EQ(Strings({"whole text, unwrapped"}), Break("whole text, unwrapped", 0, indents));
    EXPECT_EQ(std::vector<int>({0}), indents);
    EXPECT_EQ(Strings({""}), Break("", 50, indents));
    EXPECT_EQ(std::vector<int>({0}), indents);
    // Narrower than one character: one character per line, never none.
    EXPECT_EQ(Strings({"a", "b", "c"}), Break("abc", 5, indents));
}

TEST(WordBreak, ATabSetsTheHangingIndentOfTheParagraph)
{
    std::vector<int> indents;
    std::vector<String> const lines = Break("A\tone two three four", 80, indents);
    ASSERT_EQ(Strings({"Aone two", "three", "four"}), lines);
    // The tab's own line keeps its indent; the following lines start at the width of "A".
    EXPECT_EQ(std::vector<int>({0, 10, 10}), indents);

    // A new paragraph starts without it.
    Break("A\tone two three\nfour five six", 80, indents);
    EXPECT_EQ(std::vector<int>({0, 10, 0, 0}), indents);
}

TEST(WordBreak, ALongWordIsCutBetweenWholeCharacters)
{
    std::vector<int> indents;
    EXPECT_EQ(Strings({"abcd", "efgh", "ij"}), Break("abcdefghij", 45, indents));

    // "é" is two bytes; a cut never falls inside one.
    std::vector<String> const lines =
        Break("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", 25, indents);
    EXPECT_EQ(Strings({"\xC3\xA9\xC3\xA9", "\xC3\xA9\xC3\xA9", "\xC3\xA9"}), lines);

    // A short word before a long one goes on its own line first.
    EXPECT_EQ(Strings({"ab", "cdefg", "hij"}), Break("ab cdefghij", 50, indents));
}

TEST(MultiTextLayout, LinesAreStackedAndJustified)
{
    Scene s;
    UI::Font* font = s.DefaultFont();
    int const h = font->GetHeight();
    MultiText* text = new MultiText(s.frame.get(), s.root, "Wrapped", "");
    text->SetLineSpacing(4);
    text->SetGeometry(10, 10, 90, 100);
    text->SetText("alpha beta gamma delta epsilon zeta eta theta");
    auto const& lines = text->GetLines();
    ASSERT_GE(lines.size(), 3u);
    for (std::size_t i = 0; i < lines.size(); ++i)
    {
        EXPECT_EQ(static_cast<int>(i) * (h + 4), lines[i]->GetGeometry().top);
        EXPECT_EQ(0, lines[i]->GetGeometry().left);
        EXPECT_LE(font->GetStringWidth(lines[i]->GetText()), 90u);
        EXPECT_EQ(String("Text %1").Arg(static_cast<unsigned int>(i)), lines[i]->GetName());
    }

    text->SetJustification(UI::HAlignRight);
    for (auto const& line : text->GetLines())
        EXPECT_EQ(90, line->GetGeometry().right + 1);
    text->SetJustification(UI::HAlignCenter);
    for (auto const& line : text->GetLines())
        EXPECT_EQ((90 - line->GetWidth()) / 2, line->GetGeometry().left);

    // Narrowing the window lays it out again.
    std::size_t const before = text->GetLines().size();
    text->SetGeometry(10, 10, 50, 100);
    EXPECT_GT(text->GetLines().size(), before);
}

TEST(MultiTextLayout, FittingTheSizeToTheLines)
{
    Scene s;
    int const h = s.DefaultFont()->GetHeight();
    MultiText* text = new MultiText(s.frame.get(), s.root, "Wrapped", "one\ntwo two\nthree");
    text->SetGeometry(0, 0, 200, 10);
    ASSERT_EQ(3u, text->GetLines().size());

    text->SetLineSpacing(-3);
    text->SetHeightToFit();
    EXPECT_EQ(3 * h - 6, text->GetHeight());
    text->SetHeightToFit(1u);
    EXPECT_EQ(h, text->GetHeight());

    text->SetWidthToFit();
    EXPECT_EQ(text->GetLines()[1]->GetStringWidth("two two"), text->GetWidth());
    text->SetWidthToFit(2u);
    EXPECT_EQ(text->GetLines()[0]->GetStringWidth("three"), text->GetWidth());
}

TEST(MultiTextLayout, HiddenLazyTextWaitsForItsFirstPaint)
{
    Scene s;
    MultiText* text = new MultiText(s.frame.get(), s.root, "Lazy", "");
    text->SetLazyLayout(true);
    text->SetGeometry(0, 0, 200, 60);
    text->Hide();
    text->SetText("some words to lay out");
    EXPECT_TRUE(text->GetLines().empty());

    text->Show();
    s.Paint();
    ASSERT_EQ(1u, text->GetLines().size());
    EXPECT_EQ(String("some words to lay out"), text->GetLines()[0]->GetText());
}

TEST(MultiTextInput, PressesReachTheParent)
{
    Scene s;
    MultiText* text = new MultiText(s.frame.get(), s.root, "Wrapped", "press here");
    text->SetGeometry(40, 50, 100, 30);
    EXPECT_FALSE(text->IsEnabled());
    EXPECT_TRUE(text->onMousePress(Point(3, 4), 0));
    ASSERT_EQ(1u, s.root->presses.size());
    EXPECT_EQ(Point(43, 54), s.root->presses[0]);
}
