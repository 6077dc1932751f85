#pragma once

// The directory of a packed resource file, shared by ResourceManager and the resource packer.

#include "TvBase/Util/String.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace Util
{
namespace detail
{

/// One directory entry: where the resource's bytes lie in the file.
struct ResourceDirectoryEntry
{
    String name;
    unsigned int offset;
    unsigned int size;
};

/// Walks the directory at the start of `data` (`fileSize` bytes) and calls `visit` for each
/// entry in file order. The walk ends at the NUL byte that closes the directory, or at the first
/// entry whose name, offset or size runs past the end of the file, so damaged input never reads
/// out of bounds. Returns the number of entries visited.
std::size_t ParseResourceDirectory(unsigned char const* data, std::size_t fileSize,
                                   std::function<void(ResourceDirectoryEntry const&)> const& visit);

/// How a walk over the directory ended.
enum class DirectoryEnd
{
    Closed,   ///< at the NUL byte that closes the directory
    Damaged,  ///< at an entry that runs past the file, or at the file's end without the NUL
    NeedsMore ///< at the end of the bytes present, short of the file's end
};

/// The same walk over the first `available` bytes of a file of `fileSize` bytes (offsets and
/// sizes checked against `fileSize`), for readers that load only the directory and want to know
/// how it ended. `visit` may be empty; `count`, when given, receives the number of entries.
DirectoryEnd
ParseResourceDirectoryPrefix(unsigned char const* data, std::size_t available, std::size_t fileSize,
                             std::function<void(ResourceDirectoryEntry const&)> const& visit,
                             std::size_t* count = nullptr);

/// The bytes of a packed file holding `names` with the bytes of `contents` (same order), in the
/// format `ParseResourceDirectory` reads. Empty when the result would not fit 32-bit offsets.
std::vector<unsigned char>
BuildResourceFile(std::vector<String> const& names,
                  std::vector<std::vector<unsigned char>> const& contents);

} // namespace detail
} // namespace Util
