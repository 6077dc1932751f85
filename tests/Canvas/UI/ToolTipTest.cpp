#include "Canvas/UI/SimpleToolTip.h"

#include "tests/Canvas/UI/support/TextScene.h"

#include <gtest/gtest.h>

#include <algorithm>

using TextTest::Scene;

namespace
{

std::vector<String> Lines(UI::ToolTip const* tip)
{
    std::vector<String> out;
    for (unsigned int i = 0; i < tip->GetNumLines(); ++i)
        out.push_back(tip->GetLine(i));
    return out;
}

std::vector<String> Strings(std::initializer_list<char const*> list)
{
    std::vector<String> out;
    for (char const* s : list)
        out.push_back(String(s));
    return out;
}

} // namespace

TEST(ToolTipWrap, LinesEndAtSpacesHyphensOrTheOverflow)
{
    Scene s;
    UI::SimpleToolTip* tip = new UI::SimpleToolTip(s.frame.get(), nullptr);
    UI::Font* font = s.DefaultFont();
    EXPECT_EQ(String("ToolTip"), tip->GetName());

    // Room for "alpha beta gamm" but not for "alpha beta gamma".
    tip->SetMaxWidth(font->GetStringWidth("alpha beta gamm"));
    tip->SetText("alpha beta gamma delta");
    EXPECT_EQ(Strings({"alpha beta", "gamma delta"}), Lines(tip));
    for (String const& line : Lines(tip))
        EXPECT_LE(font->GetStringWidth(line), tip->GetMaxWidth());

    // A hyphen stays on its line.
    tip->SetMaxWidth(font->GetStringWidth("well-know"));
    tip->SetText("well-known");
    EXPECT_EQ(Strings({"well-", "known"}), Lines(tip));

    // A word with no place to break is cut where it overflows.
    tip->SetMaxWidth(font->GetStringWidth("abcd"));
    tip->SetText("abcdefgh");
    ASSERT_GE(tip->GetNumLines(), 2u);
    EXPECT_TRUE(String("abcdefgh").BeginsWith(tip->GetLine(0)));
    EXPECT_LE(font->GetStringWidth(tip->GetLine(0)), tip->GetMaxWidth());

    // Line feeds end lines at once.
    tip->SetMaxWidth(1000);
    tip->SetText("one\ntwo");
    EXPECT_EQ(Strings({"one", "two"}), Lines(tip));
    EXPECT_EQ(std::max(font->GetStringWidth("one"), font->GetStringWidth("two")),
              tip->GetActualWidth());
    EXPECT_EQ(String(""), tip->GetLine(5));

    // Without wrapping only line feeds count.
    tip->SetWrap(false);
    tip->SetMaxWidth(10);
    tip->SetText("a long line that is not wrapped\nsecond");
    EXPECT_EQ(Strings({"a long line that is not wrapped", "second"}), Lines(tip));
}

TEST(SimpleToolTipLook, SizedToItsLinesAndDrawnInItsColours)
{
    Scene s;
    UI::SimpleToolTip* tip = new UI::SimpleToolTip(s.frame.get(), s.root);
    UI::Font* font = s.DefaultFont();
    int const h = font->GetHeight();
    tip->SetText("first line\nsecond");
    EXPECT_EQ(static_cast<int>(tip->GetActualWidth()) + 8, tip->GetWidth());
    EXPECT_EQ(2 * (h + 2) + 2, tip->GetHeight());

    tip->Move(10, 10);
    s.Paint();
    UI::Rect const g = tip->GetGlobalGeometry();
    EXPECT_EQ(0xFF000000u, s.Pixel(g.left, g.top));
    EXPECT_EQ(0xFF000000u, s.Pixel(g.right, g.bottom));
    EXPECT_EQ(0xFFFFFFE0u, s.Pixel(g.left + 1, g.top + 1));
    EXPECT_EQ(0xFFFFFFE0u, s.Pixel(g.right - 1, g.bottom - 1));
    // The text lies at x 4 and y 2 and 2 + (h + 2).
    UI::Rect ink(0, -1, 0, -1);
    for (int y = g.top + 1; y < g.bottom; ++y)
        for (int x = g.left + 1; x < g.right; ++x)
            if (s.Pixel(x, y) != 0xFFFFFFE0u)
                ink = ink | UI::Rect(x, x, y, y);
    ASSERT_FALSE(ink.IsEmpty());
    EXPECT_GE(ink.left, g.left + 4);
    EXPECT_GE(ink.top, g.top + 2);
    EXPECT_GT(ink.bottom, g.top + 2 + h + 2);

    // The theme's creator makes one.
    UI::ToolTip* made = UI::CreateSimpleToolTip(s.frame.get(), s.root);
    ASSERT_NE(nullptr, dynamic_cast<UI::SimpleToolTip*>(made));
    EXPECT_EQ(s.root, made->GetParent());
    // Without a platform the canvas has no tool-tip frame, so nothing is installed.
    EXPECT_EQ(nullptr, UI::InstallCanvasToolTip(&s.canvas));
    EXPECT_EQ(nullptr, s.canvas.GetToolTip());
}
