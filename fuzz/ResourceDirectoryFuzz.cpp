// Feeds arbitrary bytes to the directory parser of packed resource files: every entry it
// reports must lie inside the input. The walk over a prefix (what a lister reads) must agree
// with the walk over the whole: the same entries, as far as the prefix reaches.

#include "TvBase/Util/detail/ResourceDirectory.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    unsigned long long checksum = 0;
    Util::detail::ParseResourceDirectory(
        data, size,
        [&](Util::detail::ResourceDirectoryEntry const& entry)
        {
            if (entry.offset > size || entry.size > size - entry.offset)
                std::abort();
            // Touch the first and last payload bytes so that a bad bound shows as a fault.
            if (entry.size > 0)
                checksum += data[entry.offset] + data[entry.offset + entry.size - 1];
            checksum += entry.name.Length();
        });

    // A prefix cut at a point the first byte chooses; the entries it yields are the first
    // entries of the whole, and a walk that asks for no more ends as the whole one does.
    std::size_t whole = 0;
    Util::detail::DirectoryEnd const wholeEnd =
        Util::detail::ParseResourceDirectoryPrefix(data, size, size, nullptr, &whole);
    std::size_t const available = size == 0 ? 0 : data[0] * size / 256;
    std::size_t part = 0;
    Util::detail::DirectoryEnd const partEnd =
        Util::detail::ParseResourceDirectoryPrefix(data, available, size, nullptr, &part);
    if (part > whole || wholeEnd == Util::detail::DirectoryEnd::NeedsMore ||
        (partEnd != Util::detail::DirectoryEnd::NeedsMore &&
         (part != whole || partEnd != wholeEnd)))
        std::abort();
    return checksum == 0xFFFFFFFFFFFFFFFFULL ? 1 : 0;
}
