#include "TvBase/Util/Dir.h"

#include "TvBase/Util/detail/HostFileTime.h"

#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Util
{

using Exception::FileIO;

namespace
{

/// Makes one folder; one that is already there counts as made.
void makeFolder(String const& text, FolderPath const& folder)
{
    int const result = ::mkdir(text.CStr(), 0755);
    if (result != 0 && errno != EEXIST)
    {
        int const error = errno;
        TV_THROW(FileIO, String("mkdir() failed with %1/%2").Arg(result).Arg(error), folder,
                 FileIO::UnexpectedError, error);
    }
}

/// The folder's text without its trailing "/" (the root stays "/").
String withoutSlash(FolderPath const& folder)
{
    String const text = folder.ToString();
    return text.Length() > 1 ? text.Left(text.Length() - 1) : text;
}

} // namespace

bool Dir::Exists() const
{
    if (path.IsEmpty())
        return false;
    String const text = path.ToString();
    int const result = ::access(text.CStr(), F_OK);
    if (result != 0)
    {
        int const error = errno;
        if (error == ENOENT || error == ENOTDIR)
            return false;
        TV_THROW(FileIO, String("access() returned unexpected error: %1/%2").Arg(result).Arg(error),
                 path, FileIO::UnexpectedError, error);
    }
    struct stat info;
    return ::stat(text.CStr(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool Dir::Create(bool recursive) const
{
    String const text = path.ToString();
    if (!recursive)
    {
        makeFolder(text, path);
        return true;
    }
    if (!text.BeginsWith("/") && !text.BeginsWith("~/"))
        TV_THROW(FileIO, "Create() called on invalid path", path, FileIO::UnexpectedError, 0);
    // Every "/" after the first ends a folder on the way; the text itself ends in "/".
    for (unsigned int i = 1; i < text.Length(); ++i)
    {
        if (text[i] != '/')
            continue;
        FolderPath const prefix(text.Left(i));
        if (!Dir(prefix).Exists())
            makeFolder(text.Left(i), path);
    }
    return true;
}

void Dir::Remove()
{
    if (!Exists())
        return;
    if (::rmdir(path.ToString().CStr()) != 0)
        TV_THROW(FileIO, "rmdir() failed", path, FileIO::RemoveError, errno);
}

void Dir::Rename(FolderPath const& to)
{
    if (::rename(withoutSlash(path).CStr(), withoutSlash(to).CStr()) != 0)
        TV_THROW(FileIO, "rename() failed", path, FileIO::RenameError, errno);
}

void Dir::SetTime(FileTime const& time)
{
    timespec const times[2] = {detail::ToTimespec(time.accessed),
                               detail::ToTimespec(time.modified)};
    if (::utimensat(AT_FDCWD, path.ToString().CStr(), times, 0) != 0)
        TV_THROW(FileIO, "Error setting folder time", path, FileIO::UnexpectedError, errno);
}

void Dir::GetTime(FileTime* time) const
{
    struct stat info;
    if (::stat(path.ToString().CStr(), &info) != 0)
        TV_THROW(FileIO, "Error getting folder time", path, FileIO::UnexpectedError, errno);
    if (time != nullptr)
        *time = detail::FileTimeOf(info);
}

bool Dir::GetDirInfo(DirInfo& info) const
{
    struct stat status;
    if (path.IsEmpty() || ::stat(path.ToString().CStr(), &status) != 0)
        return false;
    info.permissions = status.st_mode & 07777;
    info.owner = status.st_uid;
    info.group = status.st_gid;
    info.linkCount = status.st_nlink;
    info.time = detail::FileTimeOf(status);
    return true;
}

// ---- listing

void Dir::GetFilenames(std::vector<String>& names, String const& filter, bool keepExisting,
                       bool allTypes) const
{
    listEntries(path, String(), names, filter, keepExisting,
                allTypes ? Kind::AnyEntry : Kind::Files);
}

void Dir::GetFilenames(String const& subfolder, std::vector<String>& names, String const& filter,
                       bool keepExisting, bool allTypes) const
{
    listEntries(path / subfolder, subfolder + "/", names, filter, keepExisting,
                allTypes ? Kind::AnyEntry : Kind::Files);
}

void Dir::GetFoldernames(std::vector<String>& names, String const& filter, bool keepExisting) const
{
    listEntries(path, String(), names, filter, keepExisting, Kind::Folders);
}

void Dir::GetFoldernames(String const& subfolder, std::vector<String>& names, String const& filter,
                         bool keepExisting) const
{
    listEntries(path / subfolder, subfolder + "/", names, filter, keepExisting, Kind::Folders);
}

void Dir::listEntries(FolderPath const& folder, String const& namePrefix,
                      std::vector<String>& names, String const& filter, bool keepExisting,
                      Kind kind)
{
    if (!keepExisting)
        names.clear();
    if (!Dir(folder).Exists())
        return;

    // One "*" splits the filter; anything after it, further stars included, is a literal suffix.
    String prefix = filter.IsEmpty() ? String("*") : filter;
    String suffix("");
    checked_value<unsigned int> const star = prefix.Find('*');
    if (star)
    {
        suffix = prefix.Mid(*star + 1);
        prefix = prefix.Left(*star);
    }
    prefix = prefix.ToLower();
    suffix = suffix.ToLower();

    String const folderText = folder.ToString();
    DIR* listing = ::opendir(folderText.CStr());
    if (listing == nullptr)
        return;
    while (dirent* entry = ::readdir(listing))
    {
        String const name(entry->d_name);
        if (name == "." || name == "..")
            continue;
        String const lowered = name.ToLower();
        if ((!prefix.IsEmpty() && !lowered.BeginsWith(prefix)) ||
            (!suffix.IsEmpty() && !lowered.EndsWith(suffix)))
            continue;
        struct stat info;
        if (::stat((folderText + name).CStr(), &info) != 0)
            continue;
        bool const wanted = kind == Kind::Folders
                                ? S_ISDIR(info.st_mode)
                                : (kind == Kind::AnyEntry || S_ISREG(info.st_mode));
        if (wanted)
            names.push_back(namePrefix + name);
    }
    ::closedir(listing);
}

} // namespace Util
