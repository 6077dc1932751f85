#pragma once

#include "TvBase/Util/FileTime.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"
#include "TvBase/Util/detail/ResourceDirectory.h"

#include <map>
#include <memory>
#include <vector>

namespace Util
{

/// Hands out the program's images, layouts and other files by name, from the packed file
/// "resources.resembed" read whole into memory, or from an override folder on disk.
///
/// Packed file: a directory of entries from byte 0 (the name as UTF-8 with a NUL, then offset
/// and size as unsigned 32-bit little-endian, the offset counted from byte 0 of the file), ended
/// by a NUL byte where the next name would begin; then the payload. A later entry of the same
/// name wins; names compare byte for byte. An entry whose name, offset or size runs past the end
/// of the file ends the directory there, so a damaged file serves what it holds intact.
///
/// Lookups copy nothing: a packed resource is a pointer into the loaded file, which stays for
/// the life of the manager (the process, for `Get()`). An override file is served instead of the
/// packed one of the same name, and is re-read when its modification time changes; every
/// version read stays cached and valid, so pointers handed out earlier keep their bytes.
///
/// For the user-interface thread only: `GetFile` is `const` but fills the override cache.
class ResourceManager
{
public:
    /// The largest packed file `Init` accepts.
    static constexpr unsigned long long MaxFileSize = 100000000;

    /// The process's manager, made at first use. Separate instances serve tools and tests.
    static ResourceManager& Get();

    ResourceManager();
    ~ResourceManager();
    ResourceManager(ResourceManager const&) = delete;
    ResourceManager& operator=(ResourceManager const&) = delete;

    /// Loads the packed file once: `folder` + "../share/tavorin/" (the installed layout),
    /// `folder` + "Contents/Resources/" and then `folder` + "Resources/" are all tried, a later
    /// found replacing an earlier; `filename` defaults
    /// to "resources.resembed". True once a file is loaded (at once when one already is); false
    /// when neither exists or one is over `MaxFileSize` bytes. `Util::Exception::FileIO` from
    /// opening or reading passes to the caller.
    bool Init(FolderPath const& folder, checked_value<String> filename = {});
    /// What was wrong with the packed file at the last `Init` that read the disk, naming the
    /// file: none found, not a regular file (skipped), too big, empty, or a directory that breaks
    /// off (the entries before the break are served). Empty when the file loaded whole.
    String const& GetProblem() const { return problem; }

    /// The bytes of resource `name`: from the override folder when enabled and the file is
    /// there, otherwise from the packed file. False, with `data` null and `size` 0, when
    /// neither has it. An override file whose size can't be told throws `FileIO` "Cannot get
    /// file size".
    bool GetFile(String const& name, unsigned char const*& data, unsigned int& size) const;
    /// The same as a reference; a null reference when absent.
    array_ref<unsigned char const> GetFile(String const& name) const;
    /// The names of the packed file, sorted by name. Override files are not listed.
    std::vector<String> GetFilenames() const;

    /// Switches the override folder on (a present value) or off; the cache stays either way.
    void SetOverridePath(checked_value<FolderPath> const& path);
    checked_value<FolderPath> const& GetOverridePath() const;

private:
    /// One directory entry; the name is not copied but lies in the loaded file at `nameAt`.
    /// Sixteen bytes an entry, so that a directory of millions costs what its file does.
    struct Entry
    {
        unsigned int nameAt;
        unsigned int nameLength;
        unsigned int offset;
        unsigned int size;
    };
    struct Override;

    bool getOverrideFile(String const& name, unsigned char const*& data, unsigned int& size) const;
    detail::DirectoryEnd readDirectory();
    Entry const* find(String const& name) const;

    unsigned char const* data = nullptr;
    std::unique_ptr<unsigned char[]> buffer;
    unsigned long long bufferSize = 0;
    /// Sorted by name, one entry a name (the last of repeated names).
    std::vector<Entry> entries;
    std::unique_ptr<Override> override;
    String problem;
};

} // namespace Util
