#include "Canvas/UI/Native/LineEditor.h"

#include <algorithm>

namespace UI
{
namespace Native
{

namespace
{

bool isContinuation(Char c)
{
    return (c.Byte() & 0xC0) == 0x80;
}

} // namespace

LineEditor::LineEditor(String const& initial, std::vector<char> const& filter)
    : text(initial.IsNull() ? String("") : initial), filter(filter), caret(text.Length()), anchor(0)
{
}

String LineEditor::GetSelectedText() const
{
    unsigned int const from = std::min(caret, anchor);
    unsigned int const to = std::max(caret, anchor);
    return text.Mid(from, to - from);
}

bool LineEditor::allowed(String const& character) const
{
    if (character[0] == '\n' || character[0] == '\r')
        return false;
    if (filter.empty())
        return true;
    if (character.Length() != 1)
        return false;
    return std::find(filter.begin(), filter.end(), character[0].Get()) != filter.end();
}

void LineEditor::eraseSelection()
{
    unsigned int const from = std::min(caret, anchor);
    unsigned int const to = std::max(caret, anchor);
    text = text.Left(from) + text.Mid(to);
    caret = anchor = from;
}

bool LineEditor::Insert(String const& typed)
{
    String accepted("");
    for (unsigned int i = 0; i < typed.Length();)
    {
        unsigned int end = i + 1;
        while (end < typed.Length() && isContinuation(typed[end]))
            ++end;
        String const character = typed.Mid(i, end - i);
        if (allowed(character))
            accepted = accepted + character;
        i = end;
    }
    if (accepted.IsEmpty())
        return false;
    eraseSelection();
    text = text.Left(caret) + accepted + text.Mid(caret);
    caret = anchor = caret + accepted.Length();
    return true;
}

bool LineEditor::Backspace()
{
    if (!HasSelection())
    {
        if (caret == 0)
            return false;
        anchor = previousStart(caret);
    }
    eraseSelection();
    return true;
}

bool LineEditor::Delete()
{
    if (!HasSelection())
    {
        if (caret >= text.Length())
            return false;
        anchor = nextStart(caret);
    }
    eraseSelection();
    return true;
}

unsigned int LineEditor::previousStart(unsigned int position) const
{
    if (position == 0)
        return 0;
    unsigned int p = position - 1;
    while (p > 0 && isContinuation(text[p]))
        --p;
    return p;
}

unsigned int LineEditor::nextStart(unsigned int position) const
{
    if (position >= text.Length())
        return text.Length();
    unsigned int p = position + 1;
    while (p < text.Length() && isContinuation(text[p]))
        ++p;
    return p;
}

void LineEditor::Left(bool extend)
{
    if (HasSelection() && !extend)
        caret = anchor = std::min(caret, anchor);
    else
        SetCaret(previousStart(caret), extend);
}

void LineEditor::Right(bool extend)
{
    if (HasSelection() && !extend)
        caret = anchor = std::max(caret, anchor);
    else
        SetCaret(nextStart(caret), extend);
}

void LineEditor::Home(bool extend)
{
    SetCaret(0, extend);
}

void LineEditor::End(bool extend)
{
    SetCaret(text.Length(), extend);
}

void LineEditor::SelectAll()
{
    anchor = 0;
    caret = text.Length();
}

void LineEditor::SetCaret(unsigned int position, bool extend)
{
    position = std::min(position, text.Length());
    while (position > 0 && position < text.Length() && isContinuation(text[position]))
        --position;
    caret = position;
    if (!extend)
        anchor = caret;
}

} // namespace Native
} // namespace UI
