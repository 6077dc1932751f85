#include "Canvas/UI/MultiText.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Text.h"

#include <algorithm>

namespace UI
{

namespace
{

bool isContinuation(unsigned char c)
{
    return (c & 0xC0) == 0x80;
}

// Places where a line may end: white space and the space-like separators of the character
// table (the space and the no-break space; the latter only ever appears as a continuation byte
// in UTF-8, so only plain white space matters here).
bool isBreakSeparator(unsigned char c)
{
    return (c >= 9 && c <= 13) || c == 32;
}

String stripLeadingSpaces(String const& s)
{
    unsigned int i = 0;
    while (i < s.Length() && s[i] == ' ')
        ++i;
    return i ? s.Mid(i) : s;
}

} // namespace

MultiText::MultiText(Frame* frame, Window* parent, String const& name, String const& text,
                     checked_value<unsigned int> const& font, bool preRender,
                     HAlignment justification, int lineSpacing,
                     checked_value<unsigned int> const& color)
    : Window(frame, parent, name), font(font), lineSpacing(lineSpacing), preRender(preRender),
      text(text.IsNull() ? String("") : text), justification(justification)
{
    SetEnabled(false);
    if (color)
        SetColor(*color);
    SetGeometry(0, 0, 100, 30);
    updateLayout();
}

MultiText::~MultiText()
{
    // The line windows are owned here, not by the tree: drop them while this window is whole.
    lines.clear();
}

std::vector<String> MultiText::wordBreak(String const& input, int width, Measurer const& measure,
                                         bool noWrap, std::vector<int>& indents)
{
    std::vector<String> result;
    indents.clear();
    if (width < 1 || input.IsEmpty())
    {
        result.push_back(input.IsNull() ? String("") : input);
        indents.push_back(0);
        return result;
    }
    String rest = input;
    int indent = 0;
    int hanging = 0;
    unsigned int i = 0;
    for (;;)
    {
        if (i < rest.Length())
        {
            unsigned char const c = rest[i].Byte();
            if (isContinuation(c))
            {
                ++i;
                continue;
            }
            if (c == '\n')
            {
                result.push_back(rest.Left(i).StripWhiteSpace());
                indents.push_back(indent);
                rest = rest.Mid(i + 1);
                indent = hanging = 0;
                i = 0;
                continue;
            }
            if (c == '\t')
            {
                // The text before the tab sets the hanging indent of the paragraph's next lines.
                rest = rest.Left(i) + rest.Mid(i + 1);
                hanging = measure(rest.Left(i));
                continue;
            }
        }
        if (noWrap || measure(rest.Left(i)) <= width)
        {
            if (i >= rest.Length())
                break;
            ++i;
            continue;
        }
        // The first i bytes overflow: find where the line ends.
        unsigned int hardBreak = 0;
        unsigned int separator = 0;
        for (unsigned int p = i - 1; p > 0; --p)
        {
            unsigned char const b = rest[p].Byte();
            if (!hardBreak && !isContinuation(b))
                hardBreak = p;
            if (isBreakSeparator(b))
            {
                separator = p;
                break;
            }
        }
        unsigned int end = separator ? separator : hardBreak;
        if (end == 0)
        {
            // Not even one character fits: it goes on a line of its own.
            end = 1;
            while (end < rest.Length() && isContinuation(rest[end].Byte()))
                ++end;
        }
        result.push_back(rest.Left(end).StripWhiteSpace());
        indents.push_back(indent);
        indent = hanging;
        rest = stripLeadingSpaces(rest.Mid(end));
        i = 0;
        if (rest.IsEmpty())
            return result;
    }
    result.push_back(rest.StripWhiteSpace());
    indents.push_back(indent);
    return result;
}

int MultiText::GetFontHeight() const
{
    Canvas* canvas = GetCanvas();
    Font* f = canvas ? canvas->GetFont(font) : nullptr;
    return f ? f->GetHeight() : 0;
}

void MultiText::updateLayout()
{
    if ((preRender || lazyLayout) && !IsVisibleTo())
    {
        lines.clear();
        return;
    }
    laidOutSize = GetGeometry().GetSize();
    std::vector<boost::shared_ptr<Text>> old;
    old.swap(lines);

    boost::shared_ptr<Text> first = !old.empty() ? old.front() : boost::shared_ptr<Text>();
    if (!first)
    {
        first.reset(new Text(GetFrame(), this, String("Text %1").Arg(0u), String(""), font));
        first->SetOwnedByParent(false);
    }
    first->SetFont(font);
    first->SetCharSpacing(charSpacing);
    first->SetPreRenderText(preRender);
    Text* measurer = first.get();

    std::vector<int> indents;
    std::vector<String> const texts = wordBreak(
        text, GetWidth(), [measurer](String const& s) { return measurer->GetStringWidth(s); },
        noWrap, indents);

    int const lineHeight = GetFontHeight() + lineSpacing;
    for (std::size_t index = 0; index < texts.size(); ++index)
    {
        boost::shared_ptr<Text> line;
        if (index == 0)
            line = first;
        else if (index < old.size())
            line = old[index];
        else
        {
            line.reset(new Text(GetFrame(), this,
                                String("Text %1").Arg(static_cast<unsigned int>(index)), String(""),
                                font));
            line->SetOwnedByParent(false);
        }
        line->SetFont(font);
        line->SetCharSpacing(charSpacing);
        line->SetPreRenderText(preRender);
        line->SetText(texts[index]);
        line->SetColor(GetColor());
        line->SetAlpha(GetAlpha());
        int const lineWidth = line->GetStringWidth(texts[index]);
        int x = indents[index];
        if (justification == HAlignCenter)
            x = (GetWidth() - lineWidth) / 2;
        else if (justification == HAlignRight)
            x = GetWidth() - lineWidth;
        line->SetGeometry(x, static_cast<int>(index) * lineHeight, lineWidth, line->GetHeight());
        line->Show();
        lines.push_back(line);
    }
    // Lines no longer needed die with `old`.
    Update();
}

void MultiText::SetText(String const& t)
{
    text = t.IsNull() ? String("") : t;
    updateLayout();
}

void MultiText::SetFont(checked_value<unsigned int> const& f)
{
    font = f;
    updateLayout();
}

void MultiText::SetCharSpacing(checked_value<unsigned int> const& spacing)
{
    charSpacing = spacing;
    updateLayout();
}

void MultiText::SetLineSpacing(int spacing)
{
    lineSpacing = spacing;
    updateLayout();
}

void MultiText::SetJustification(HAlignment j)
{
    justification = j;
    updateLayout();
}

void MultiText::SetPreRenderText(bool on)
{
    preRender = on;
    updateLayout();
}

void MultiText::SetNoWrap(bool on)
{
    noWrap = on;
    updateLayout();
}

void MultiText::SetWidthToFit(checked_value<unsigned int> const& line)
{
    int width = 0;
    if (line)
    {
        if (*line < lines.size())
            width = lines[*line]->GetStringWidth(lines[*line]->GetText());
    }
    else
    {
        for (auto const& l : lines)
            width = std::max(width, l->GetStringWidth(l->GetText()));
    }
    Rect const& r = GetGeometry();
    SetGeometry(r.left, r.top, width, r.Height());
}

void MultiText::SetHeightToFit(checked_value<unsigned int> const& count)
{
    int const n = count ? static_cast<int>(*count) : static_cast<int>(lines.size());
    int const height = n > 0 ? n * GetFontHeight() + (n - 1) * lineSpacing : 0;
    Rect const& r = GetGeometry();
    SetGeometry(r.left, r.top, r.Width(), height);
}

void MultiText::Draw(DrawContext* context)
{
    if ((preRender || lazyLayout) && lines.empty())
        updateLayout();
    Window::Draw(context);
}

void MultiText::onSetGeometry()
{
    if (!laidOutSize || *laidOutSize != GetGeometry().GetSize())
        updateLayout();
}

void MultiText::onShow()
{
    if (lines.empty())
        updateLayout();
}

void MultiText::onSetColor()
{
    for (auto const& l : lines)
        l->SetColor(GetColor());
}

void MultiText::onSetAlpha()
{
    for (auto const& l : lines)
        l->SetAlpha(GetAlpha());
}

bool MultiText::onMousePress(Point const& p, unsigned int flags)
{
    Window* up = GetParent();
    return up ? up->onMousePress(Point(p.x + GetGeometry().left, p.y + GetGeometry().top), flags)
              : false;
}

bool MultiText::onMouseDoubleClick(Point const& p, unsigned int flags)
{
    Window* up = GetParent();
    return up ? up->onMouseDoubleClick(Point(p.x + GetGeometry().left, p.y + GetGeometry().top),
                                       flags)
              : false;
}

} // namespace UI
