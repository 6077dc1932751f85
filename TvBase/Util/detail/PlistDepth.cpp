#include "TvBase/Util/detail/PlistDepth.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace Util
{
namespace detail
{

namespace
{

char const* findText(char const* from, char const* end, char const* what)
{
    std::size_t const length = std::strlen(what);
    for (char const* p = from; static_cast<std::size_t>(end - p) >= length; ++p)
        if (std::memcmp(p, what, length) == 0)
            return p + length;
    return end;
}

/// Element nesting of an XML text. Comments, sections and declarations are skipped; anything
/// malformed is left for the parser to reject.
bool xmlNestsTooDeeply(char const* p, char const* end, unsigned int maximumDepth)
{
    unsigned int depth = 0;
    while (p < end)
    {
        p = static_cast<char const*>(std::memchr(p, '<', static_cast<std::size_t>(end - p)));
        if (!p || ++p == end)
            return false;
        if (*p == '/')
        {
            if (depth > 0)
                --depth;
            continue;
        }
        if (*p == '?')
        {
            p = findText(p, end, "?>");
            continue;
        }
        if (*p == '!')
        {
            if (end - p >= 3 && std::memcmp(p, "!--", 3) == 0)
                p = findText(p, end, "-->");
            else if (end - p >= 8 && std::memcmp(p, "![CDATA[", 8) == 0)
                p = findText(p, end, "]]>");
            else
                p = findText(p, end, ">");
            continue;
        }
        // A start tag: its end, past quoted attribute values.
        char quote = 0;
        for (; p < end && (quote || *p != '>'); ++p)
        {
            if (quote)
                quote = *p == quote ? 0 : quote;
            else if (*p == '"' || *p == '\'')
                quote = *p;
        }
        if (p == end)
            return false;
        if (p[-1] != '/' && ++depth > maximumDepth)
            return true;
    }
    return false;
}

std::uint64_t bigEndian(unsigned char const* p, unsigned int size)
{
    std::uint64_t value = 0;
    for (unsigned int i = 0; i < size; ++i)
        value = (value << 8) | p[i];
    return value;
}

/// The binary form: a trailer, a table of object offsets, and containers that refer to other
/// objects by index. The longest chain of references from the top object is walked with a
/// stack of our own; each object is expanded once, so the cost is linear in the text.
bool binaryNestsTooDeeply(unsigned char const* data, std::size_t length, unsigned int maximumDepth)
{
    std::size_t const trailerSize = 32;
    if (length < 8 + trailerSize)
        return true;
    unsigned char const* trailer = data + length - trailerSize;
    unsigned int const offsetSize = trailer[6];
    unsigned int const refSize = trailer[7];
    std::uint64_t const count = bigEndian(trailer + 8, 8);
    std::uint64_t const top = bigEndian(trailer + 16, 8);
    std::uint64_t const tableOffset = bigEndian(trailer + 24, 8);
    std::size_t const objectsEnd = length - trailerSize;
    if (offsetSize < 1 || offsetSize > 8 || refSize < 1 || refSize > 8 || count == 0 ||
        top >= count || tableOffset >= objectsEnd ||
        count > (objectsEnd - tableOffset) / offsetSize)
        return true;

    // The references of object `index`: where they start and how many; false when malformed.
    auto references = [&](std::uint64_t index, std::size_t& first, std::uint64_t& number)
    {
        std::uint64_t const offset = bigEndian(data + tableOffset + index * offsetSize, offsetSize);
        if (offset >= tableOffset)
            return false;
        unsigned char const marker = data[offset];
        unsigned int const type = marker >> 4;
        number = 0;
        first = 0;
        if (type != 0xA && type != 0xC && type != 0xD)
            return true;
        std::size_t at = static_cast<std::size_t>(offset) + 1;
        number = marker & 0x0F;
        if (number == 0x0F)
        {
            if (at >= tableOffset || (data[at] & 0xF0) != 0x10 || (data[at] & 0x0F) > 3)
                return false;
            unsigned int const size = 1u << (data[at] & 0x0F);
            if (tableOffset - at - 1 < size)
                return false;
            number = bigEndian(data + at + 1, size);
            at += 1 + size;
        }
        if (type == 0xD)
            number *= 2;
        first = at;
        return number <= (tableOffset - at) / refSize;
    };

    enum : unsigned char
    {
        Unseen,
        Open,
        Done
    };
    std::vector<unsigned char> state(static_cast<std::size_t>(count), Unseen);
    // Height of each finished object: the longest chain below it, itself included.
    std::vector<unsigned int> height(static_cast<std::size_t>(count), 0);
    struct Frame
    {
        std::uint64_t index;
        std::size_t first;
        std::uint64_t number;
        std::uint64_t next;
        unsigned int tallest;
    };
    std::vector<Frame> stack;
    auto open = [&](std::uint64_t index)
    {
        Frame frame{index, 0, 0, 0, 0};
        if (!references(index, frame.first, frame.number))
            return false;
        state[index] = Open;
        stack.push_back(frame);
        return stack.size() <= maximumDepth;
    };
    if (!open(top))
        return true;
    while (!stack.empty())
    {
        Frame& frame = stack.back();
        if (frame.next == frame.number)
        {
            unsigned int const h = frame.tallest + 1;
            state[frame.index] = Done;
            height[frame.index] = h;
            stack.pop_back();
            if (!stack.empty() && stack.back().tallest < h)
                stack.back().tallest = h;
            continue;
        }
        std::uint64_t const child = bigEndian(data + frame.first + frame.next * refSize, refSize);
        ++frame.next;
        if (child >= count || state[child] == Open)
            return true; // a reference out of range or back into its own chain
        if (state[child] == Done)
        {
            if (stack.size() + height[child] > maximumDepth)
                return true;
            if (frame.tallest < height[child])
                frame.tallest = height[child];
            continue;
        }
        if (!open(child))
            return true;
    }
    return false;
}

} // namespace

bool PropertyListNestsTooDeeply(char const* text, std::size_t length, unsigned int maximumDepth)
{
    if (length >= 6 && std::memcmp(text, "bplist", 6) == 0)
        return binaryNestsTooDeeply(reinterpret_cast<unsigned char const*>(text), length,
                                    maximumDepth);
    return xmlNestsTooDeeply(text, text + length, maximumDepth);
}

} // namespace detail
} // namespace Util
