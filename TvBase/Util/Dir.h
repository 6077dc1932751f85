#pragma once

#include "TvBase/Util/FileIOException.h"
#include "TvBase/Util/FileTime.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/String.h"

#include <vector>

namespace Util
{

/// One folder of the file system: existence, creation, removal, times and filtered listing.
///
/// Failing operations on the outside world throw `Util::Exception::FileIO` with the folder.
/// Nothing is cached.
class Dir
{
public:
    /// What `GetDirInfo` reports, from the host's `stat` of the folder.
    struct DirInfo
    {
        unsigned int permissions = 0;
        unsigned int owner = 0;
        unsigned int group = 0;
        unsigned long long linkCount = 0;
        FileTime time;
    };

    Dir() = default;
    explicit Dir(FolderPath const& path) : path(path) {}

    FolderPath const& GetPath() const { return path; }
    void SetPath(FolderPath const& folder) { path = folder; }

    /// True when the path names a folder. A missing path (`errno` 2 or 20) is false; any other
    /// error throws "access() returned unexpected error: %1/%2".
    bool Exists() const;
    /// Makes the folder with permissions 0755; a folder already there is success. Recursive
    /// creation makes every missing folder on the way and needs an absolute path ("Create()
    /// called on invalid path"). Failure throws "mkdir() failed with %1/%2". Returns true.
    bool Create(bool recursive) const;
    /// Removes the folder if it exists; it must be empty. Throws "rmdir() failed".
    void Remove();
    /// Moves the folder to `to`; throws "rename() failed". This object keeps its path.
    void Rename(FolderPath const& to);
    /// Throws "Error setting folder time".
    void SetTime(FileTime const& time);
    /// Throws "Error getting folder time".
    void GetTime(FileTime* time) const;

    /// Appends the names of the entries that match `filter` (see below): regular files, or every
    /// kind of entry with `allTypes`. `names` is cleared first unless `keepExisting`. A missing
    /// folder adds nothing. The filter is "prefix*suffix", compared ignoring ASCII case; only
    /// the first "*" counts, a filter without one is a prefix, an empty one matches all. The
    /// order is the host's; nothing is sorted.
    void GetFilenames(std::vector<String>& names, String const& filter, bool keepExisting,
                      bool allTypes) const;
    /// The same inside `subfolder` of this folder, each name preceded by `subfolder` and "/".
    void GetFilenames(String const& subfolder, std::vector<String>& names, String const& filter,
                      bool keepExisting, bool allTypes) const;
    /// The same for folders ("." and ".." are never listed).
    void GetFoldernames(std::vector<String>& names, String const& filter, bool keepExisting) const;
    void GetFoldernames(String const& subfolder, std::vector<String>& names, String const& filter,
                        bool keepExisting) const;

    /// `stat` of the folder; false when that fails.
    bool GetDirInfo(DirInfo& info) const;

private:
    enum class Kind
    {
        Files,
        AnyEntry,
        Folders
    };
    static void listEntries(FolderPath const& folder, String const& namePrefix,
                            std::vector<String>& names, String const& filter, bool keepExisting,
                            Kind kind);

    FolderPath path;
};

} // namespace Util
