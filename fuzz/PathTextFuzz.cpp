// Any text as a path: construction, canonical form, components and comparison must hold their
// promises on every input.

#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/detail/PathText.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string text(reinterpret_cast<char const*>(data), size);
    String path(text.c_str());

    String canonical = Util::detail::Canonicalize(path);
    // Always ends in exactly one "/".
    if (canonical.IsEmpty() || !canonical.EndsWith("/") ||
        (canonical.Length() > 1 && canonical[canonical.Length() - 2] == '/'))
        std::abort();

    FilePath file(path);
    FolderPath folder(path);
    if (!folder.IsEmpty() && !folder.GetInternal().EndsWith("/") &&
        !folder.GetInternal().EndsWith("\\"))
        std::abort();
    if (!(file == file) || (file < file) || !(folder <= folder))
        std::abort();
    file.GetFilename();
    file.GetBaseName();
    if (file.GetExtension().IsNull())
        std::abort();
    file.GetFolder().GetParent();
    file.ToURL();
    folder.GetFolderName();
    folder.IsTopLevel();

    // Walking up always ends at the top.
    FolderPath walk = folder;
    for (unsigned int steps = 0; !walk.IsTopLevel(); ++steps)
    {
        if (steps > 4096)
            std::abort();
        walk = walk.GetParent();
    }
    return 0;
}
