// Feeds arbitrary bytes to the directory parser of packed resource files: every entry it
// reports must lie inside the input.

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
    return checksum == 0xFFFFFFFFFFFFFFFFULL ? 1 : 0;
}
