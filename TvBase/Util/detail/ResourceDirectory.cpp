#include "TvBase/Util/detail/ResourceDirectory.h"

#include <cstring>
#include <limits>

namespace Util
{
namespace detail
{

namespace
{

unsigned int readLittleEndian32(unsigned char const* p)
{
    return static_cast<unsigned int>(p[0]) | static_cast<unsigned int>(p[1]) << 8 |
           static_cast<unsigned int>(p[2]) << 16 | static_cast<unsigned int>(p[3]) << 24;
}

void appendLittleEndian32(std::vector<unsigned char>& out, unsigned long long value)
{
    for (int shift = 0; shift < 32; shift += 8)
        out.push_back(static_cast<unsigned char>((value >> shift) & 0xFF));
}

} // namespace

DirectoryEnd
ParseResourceDirectoryPrefix(unsigned char const* data, std::size_t available, std::size_t fileSize,
                             std::function<void(ResourceDirectoryEntry const&)> const& visit,
                             std::size_t* count)
{
    if (count)
        *count = 0;
    std::size_t cursor = 0;
    while (cursor < fileSize)
    {
        if (cursor >= available)
            return DirectoryEnd::NeedsMore;
        if (data[cursor] == 0)
            return DirectoryEnd::Closed;
        void const* nul = std::memchr(data + cursor, 0, available - cursor);
        if (nul == nullptr)
            return available == fileSize ? DirectoryEnd::Damaged : DirectoryEnd::NeedsMore;
        std::size_t const nameEnd = static_cast<unsigned char const*>(nul) - data;
        if (fileSize - nameEnd - 1 < 8)
            return DirectoryEnd::Damaged;
        if (available - nameEnd - 1 < 8)
            return DirectoryEnd::NeedsMore;
        unsigned int const offset = readLittleEndian32(data + nameEnd + 1);
        unsigned int const size = readLittleEndian32(data + nameEnd + 5);
        if (offset > fileSize || size > fileSize - offset)
            return DirectoryEnd::Damaged;
        if (visit)
        {
            ResourceDirectoryEntry entry;
            entry.name = String(reinterpret_cast<char const*>(data + cursor),
                                static_cast<unsigned int>(nameEnd - cursor));
            entry.offset = offset;
            entry.size = size;
            visit(entry);
        }
        if (count)
            ++*count;
        cursor = nameEnd + 9;
    }
    return DirectoryEnd::Damaged;
}

std::size_t ParseResourceDirectory(unsigned char const* data, std::size_t fileSize,
                                   std::function<void(ResourceDirectoryEntry const&)> const& visit)
{
    std::size_t count = 0;
    ParseResourceDirectoryPrefix(data, fileSize, fileSize, visit, &count);
    return count;
}

std::vector<unsigned char>
BuildResourceFile(std::vector<String> const& names,
                  std::vector<std::vector<unsigned char>> const& contents)
{
    unsigned long long directorySize = 1;
    for (String const& name : names)
        directorySize += name.Length() + 1 + 8;
    unsigned long long total = directorySize;
    for (std::vector<unsigned char> const& content : contents)
        total += content.size();
    if (total > std::numeric_limits<unsigned int>::max() || names.size() != contents.size())
        return {};

    std::vector<unsigned char> out;
    out.reserve(static_cast<std::size_t>(total));
    unsigned long long offset = directorySize;
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        char const* name = names[i].CStr();
        out.insert(out.end(), name, name + names[i].Length());
        out.push_back(0);
        appendLittleEndian32(out, offset);
        appendLittleEndian32(out, contents[i].size());
        offset += contents[i].size();
    }
    out.push_back(0);
    for (std::vector<unsigned char> const& content : contents)
        out.insert(out.end(), content.begin(), content.end());
    return out;
}

} // namespace detail
} // namespace Util
