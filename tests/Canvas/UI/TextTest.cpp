#include "Canvas/UI/Text.h"

#include "tests/Canvas/UI/support/TextScene.h"

#include <gtest/gtest.h>

using TextTest::Scene;
using UI::Point;
using UI::Rect;
using UI::Size;

namespace
{

unsigned int const Ink = 0xFF203040u;
String const Ellipsis("\xE2\x80\xA6");

/// The label's part of the scene's bitmap against the reference drawing at `at`.
void ExpectDrawnAt(Scene& s, UI::Text* text, Point const& at)
{
    Rect const g = text->GetGlobalGeometry();
    std::vector<unsigned int> const want =
        TextTest::Reference(s.DefaultFont(), g.GetSize(), at, text->GetText(), Ink);
    int mismatches = 0;
    for (int y = 0; y < g.Height(); ++y)
        for (int x = 0; x < g.Width(); ++x)
            if (s.Pixel(g.left + x, g.top + y) != want[y * g.Width() + x])
                ++mismatches;
    EXPECT_EQ(0, mismatches) << text->GetName();
}

} // namespace

TEST(TextSize, FollowsTheTextInItsFont)
{
    Scene s;
    UI::Font* font = s.DefaultFont();
    ASSERT_NE(nullptr, font);
    ASSERT_GT(font->GetHeight(), 0);

    UI::Text* text = new UI::Text(s.frame.get(), s.root, "Label", "Hello world");
    EXPECT_EQ(static_cast<int>(font->GetStringWidth("Hello world")), text->GetWidth());
    EXPECT_EQ(font->GetHeight(), text->GetHeight());
    EXPECT_TRUE(text->IsFixedWidth());

    // A longer text widens it; an empty one leaves only the height.
    text->SetText("Hello world, again");
    EXPECT_EQ(static_cast<int>(font->GetStringWidth("Hello world, again")), text->GetWidth());
    text->SetText("");
    EXPECT_EQ(0, text->GetWidth());
    EXPECT_EQ(font->GetHeight(), text->GetHeight());

    // A shadow adds its offset, whichever way it is thrown.
    text->SetText("Shadow");
    text->SetDropShadow(Point(-2, 3), 0xFF000000u);
    EXPECT_EQ(static_cast<int>(font->GetStringWidth("Shadow")) + 2, text->GetWidth());
    EXPECT_EQ(font->GetHeight() + 3, text->GetHeight());
    text->SetDropShadow(Point(-2, 3), checked_value<unsigned int>());
    EXPECT_EQ(static_cast<int>(font->GetStringWidth("Shadow")), text->GetWidth());

    // Without auto size the size given stays.
    UI::Text* fixed = new UI::Text(s.frame.get(), s.root, "Fixed", "Some text",
                                   checked_value<unsigned int>(), UI::HAlignLeft,
                                   checked_value<unsigned int>(), Point(5, 6), Size(40, 12), false);
    EXPECT_EQ(Rect(5, 44, 6, 17), fixed->GetGeometry());
    fixed->SetText("Some other, longer text");
    EXPECT_EQ(40, fixed->GetWidth());
}

TEST(TextProperty, TheTextPropertyDrivesTheLabel)
{
    Scene s;
    UI::Text* text = new UI::Text(s.frame.get(), s.root, "Label", "One");
    EXPECT_EQ(String("One"), *text->GetProperty<String>("Text"));

    // A layout or the property editor sets the property: the label follows.
    ASSERT_TRUE(text->SetProperty<String>("Text", String("Three")));
    EXPECT_EQ(String("Three"), text->GetText());
    EXPECT_EQ(static_cast<int>(s.DefaultFont()->GetStringWidth("Three")), text->GetWidth());

    // A pre-rendered bitmap is made on paint and dropped by a new text or colour.
    text->SetPreRenderText(true);
    s.Paint();
    EXPECT_TRUE(text->HasPreRenderedBits());
    text->SetText("Four");
    EXPECT_FALSE(text->HasPreRenderedBits());
    s.Paint();
    EXPECT_TRUE(text->HasPreRenderedBits());
    text->SetColor(0xFF102030u);
    EXPECT_FALSE(text->HasPreRenderedBits());
}

TEST(TextDrawing, JustificationPlacesTheTextInTheWindow)
{
    Scene s;
    UI::Font* font = s.DefaultFont();
    String const words("Justified");
    int const width = static_cast<int>(font->GetStringWidth(words));
    int const height = font->GetHeight();

    UI::Text* left =
        new UI::Text(s.frame.get(), s.root, "Left", words, checked_value<unsigned int>(),
                     UI::HAlignLeft, Ink, Point(10, 10), Size(200, height), false);
    UI::Text* centre =
        new UI::Text(s.frame.get(), s.root, "Centre", words, checked_value<unsigned int>(),
                     UI::HAlignCenter, Ink, Point(10, 40), Size(200, height), false);
    UI::Text* right =
        new UI::Text(s.frame.get(), s.root, "Right", words, checked_value<unsigned int>(),
                     UI::HAlignRight, Ink, Point(10, 70), Size(200, height), false);
    s.Paint();

    ExpectDrawnAt(s, left, Point(0, 0));
    ExpectDrawnAt(s, centre, Point((200 - width) / 2, 0));
    ExpectDrawnAt(s, right, Point(200 - width, 0));
}

TEST(TextDrawing, PreRenderedTextLooksLikeDirectText)
{
    Scene s;
    UI::Text* direct =
        new UI::Text(s.frame.get(), s.root, "Direct", "Cached glyphs",
                     checked_value<unsigned int>(), UI::HAlignLeft, Ink, Point(10, 10));
    UI::Text* cached =
        new UI::Text(s.frame.get(), s.root, "Cached", "Cached glyphs",
                     checked_value<unsigned int>(), UI::HAlignLeft, Ink, Point(10, 40));
    cached->SetPreRenderText(true);
    s.Paint();
    ASSERT_TRUE(cached->HasPreRenderedBits());
    Rect const a = s.Inked(direct->GetGlobalGeometry());
    Rect const b = s.Inked(cached->GetGlobalGeometry());
    ASSERT_FALSE(a.IsEmpty());
    EXPECT_EQ(a.Offset(0, 30), b);
}

TEST(TextDrawing, ShadowAndBackgroundBox)
{
    Scene s;
    UI::Text* text =
        new UI::Text(s.frame.get(), s.root, "Boxed", "Box", checked_value<unsigned int>(),
                     UI::HAlignLeft, Ink, Point(20, 20));
    text->SetBackground(0xFF00FF00u, 0);
    s.Paint();
    Rect const g = text->GetGlobalGeometry();
    // A plain box fills the whole window, corners included.
    EXPECT_EQ(0xFF00FF00u, s.Pixel(g.left, g.top));
    EXPECT_EQ(0xFF00FF00u, s.Pixel(g.right, g.bottom));
    EXPECT_EQ(0xFFFFFFFFu, s.Pixel(g.left - 1, g.top));

    // A shadow thrown up and left moves the text right and down by as much.
    UI::Text* plain =
        new UI::Text(s.frame.get(), s.root, "Plain", "Shade", checked_value<unsigned int>(),
                     UI::HAlignLeft, Ink, Point(20, 60));
    UI::Text* shaded =
        new UI::Text(s.frame.get(), s.root, "Shaded", "Shade", checked_value<unsigned int>(),
                     UI::HAlignLeft, Ink, Point(20, 100));
    shaded->SetDropShadow(Point(-3, -2), 0xFFFF0000u);
    s.Paint();
    Rect const ink = s.Inked(plain->GetGlobalGeometry());
    ASSERT_FALSE(ink.IsEmpty());
    // The text itself (not the red shadow) sits 3 right and 2 down of where the plain one is.
    for (int y = ink.top; y <= ink.bottom; ++y)
        for (int x = ink.left; x <= ink.right; ++x)
        {
            unsigned int const want = s.Pixel(x, y);
            if (want == 0xFFFFFFFFu)
                continue;
            EXPECT_EQ(want, s.Pixel(x + 3, y + 40 + 2)) << x << "," << y;
        }
}

TEST(TextEllipsize, ShortensToTheWidthWithWholeCharacters)
{
    Scene s;
    UI::Text* text = new UI::Text(s.frame.get(), s.root, "Label", "");
    String const longText("The quick brown fox jumps over the lazy dog");
    int const full = text->GetStringWidth(longText);

    // A text that fits is kept.
    EXPECT_EQ(longText, text->Ellipsize(longText, full, UI::EllipsisEnd));

    // End mode: the longest head that fits with the ellipsis.
    int const room = full / 2;
    String const end = text->Ellipsize(longText, room, UI::EllipsisEnd);
    ASSERT_TRUE(end.Length() > Ellipsis.Length());
    EXPECT_EQ(Ellipsis, end.Right(3));
    EXPECT_LE(text->GetStringWidth(end), room);
    String const head = end.Left(end.Length() - 3);
    EXPECT_EQ(head, longText.Left(head.Length()));
    EXPECT_GT(text->GetStringWidth(longText.Left(head.Length() + 1) + Ellipsis), room);

    // Middle mode keeps both ends.
    String const middle = text->Ellipsize(longText, room, UI::EllipsisMiddle);
    ASSERT_TRUE(middle.Find(Ellipsis));
    unsigned int const at = *middle.Find(Ellipsis);
    EXPECT_EQ(middle.Left(at), longText.Left(at));
    String const tail = middle.Mid(at + 3);
    EXPECT_FALSE(tail.IsEmpty());
    EXPECT_EQ(tail, longText.Right(tail.Length()));
    EXPECT_LE(text->GetStringWidth(middle), room);

    // No room for the ellipsis itself: nothing.
    EXPECT_EQ(String(""),
              text->Ellipsize(longText, text->GetStringWidth(Ellipsis) - 1, UI::EllipsisEnd));

    // Two-byte characters are never split.
    String const accents("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9");
    for (int width = 0; width < text->GetStringWidth(accents); ++width)
    {
        String const cut = text->Ellipsize(accents, width, UI::EllipsisEnd);
        if (cut.IsEmpty())
            continue;
        EXPECT_EQ(0u, (cut.Length() - 3) % 2) << width;
    }
}

TEST(TextInput, ALabelPassesClicksToWhatItLabels)
{
    Scene s;
    UI::Text* text =
        new UI::Text(s.frame.get(), s.root, "Label", "Click me", checked_value<unsigned int>(),
                     UI::HAlignLeft, Ink, Point(30, 40));
    EXPECT_FALSE(text->IsEnabled());

    // Through the frame: the disabled label is passed over and the backdrop takes the press.
    s.frame->HandleMouseMessage(UI::MouseLeftPress, Point(35, 45), UI::FlagLeftButton, 0);
    ASSERT_EQ(1u, s.root->presses.size());
    EXPECT_EQ(Point(35, 45), s.root->presses[0]);

    // Called on the label itself, the press reaches the parent in the parent's coordinates.
    EXPECT_TRUE(text->onMousePress(Point(2, 3), 0));
    ASSERT_EQ(2u, s.root->presses.size());
    EXPECT_EQ(Point(32, 43), s.root->presses[1]);
    EXPECT_TRUE(text->onMouseDoubleClick(Point(1, 1), 0));
    EXPECT_EQ(Point(31, 41), s.root->presses.back());
}
