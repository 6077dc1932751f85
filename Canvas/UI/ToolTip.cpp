#include "Canvas/UI/ToolTip.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Font.h"

#include <algorithm>

namespace UI
{

ToolTip::ToolTip(Frame* frame, Window* parent, String const& name) : Window(frame, parent, name) {}

ToolTip::~ToolTip() = default;

Font* ToolTip::GetFont() const
{
    Canvas* canvas = GetCanvas();
    return canvas ? canvas->GetFont(font) : nullptr;
}

unsigned int ToolTip::measure(String const& s) const
{
    Font* f = GetFont();
    return f && !s.IsEmpty() ? f->GetStringWidth(s) : 0;
}

void ToolTip::SetText(String const& t)
{
    String const value = t.IsNull() ? String("") : t;
    if (value == text && !lines.empty())
        return;
    text = value;
    cutLines();
    onTextChanged();
}

void ToolTip::cutLines()
{
    lines.clear();
    if (!wrap)
    {
        lines = Util::SplitString('\n', text);
        if (lines.empty())
            lines.push_back(String(""));
        return;
    }
    String rest = text;
    unsigned int i = 0;
    while (i < rest.Length())
    {
        char const c = rest[i].Get();
        if (c == '\n')
        {
            lines.push_back(rest.Left(i));
            rest = rest.Mid(i + 1);
            i = 0;
            continue;
        }
        unsigned int next = i + 1;
        while (next < rest.Length() && (rest[next].Byte() & 0xC0) == 0x80)
            ++next;
        if (i > 0 && measure(rest.Left(next)) > maxWidth)
        {
            // Break at the last space (dropped) or hyphen (kept) before the overflow.
            unsigned int end = i;
            unsigned int resume = i;
            for (unsigned int p = i; p > 0; --p)
            {
                char const b = rest[p - 1].Get();
                if (b == ' ')
                {
                    end = p - 1;
                    resume = p;
                    break;
                }
                if (b == '-')
                {
                    end = resume = p;
                    break;
                }
            }
            lines.push_back(rest.Left(end));
            rest = rest.Mid(resume);
            i = 0;
            continue;
        }
        i = next;
    }
    if (!rest.IsEmpty() || lines.empty())
        lines.push_back(rest);
}

String ToolTip::GetLine(unsigned int index) const
{
    return index < lines.size() ? lines[index] : String("");
}

unsigned int ToolTip::GetActualWidth() const
{
    unsigned int widest = 0;
    for (String const& line : lines)
        widest = std::max(widest, measure(line));
    return widest;
}

} // namespace UI
