#include "Canvas/UI/Ellipsize.h"

#include "Canvas/UI/Font.h"

#include <vector>

namespace UI
{

namespace
{

// Whole UTF-8 characters: a byte of 192 or more starts one and takes its continuation bytes
// (128 to 191) along.
std::vector<String> splitCharacters(String const& text)
{
    std::vector<String> characters;
    unsigned int const length = text.Length();
    unsigned int start = 0;
    while (start < length)
    {
        unsigned int end = start + 1;
        if (text[start].Byte() >= 192)
            while (end < length && text[end].Byte() >= 128 && text[end].Byte() < 192)
                ++end;
        characters.push_back(text.Mid(start, end - start));
        start = end;
    }
    return characters;
}

} // namespace

String Ellipsize(Font* font, String const& text, int width, EllipsisMode mode)
{
    if (!font)
        return text;
    auto fits = [&](String const& candidate)
    { return static_cast<int>(font->GetStringWidth(candidate)) < width; };
    if (fits(text))
        return text;
    String const ellipsis("...");
    if (static_cast<int>(font->GetStringWidth(ellipsis)) > width)
        return ellipsis;

    std::vector<String> const characters = splitCharacters(text);
    size_t headCount = 0;
    size_t tailCount = 0;
    String head("");
    String tail("");
    while (headCount + tailCount < characters.size())
    {
        // The tail trails the head by one: head, tail, head, tail...
        bool const growTail = mode == EllipsisMiddle && tailCount + 1 == headCount;
        String const nextHead = growTail ? head : head + characters[headCount];
        String const nextTail =
            growTail ? characters[characters.size() - 1 - tailCount] + tail : tail;
        if (!fits(nextHead + ellipsis + nextTail))
            break;
        head = nextHead;
        tail = nextTail;
        (growTail ? tailCount : headCount) += 1;
    }
    return head + ellipsis + tail;
}

} // namespace UI
