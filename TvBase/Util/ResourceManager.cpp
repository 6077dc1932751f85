#include "TvBase/Util/ResourceManager.h"

#include "TvBase/Util/Dir.h"
#include "TvBase/Util/File.h"
#include "TvBase/Util/detail/ResourceDirectory.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>

namespace Util
{

using Exception::FileIO;

/// The override folder and every version of every file read from it, by modification time.
/// Versions are kept for the life of the manager because pointers to them may still be held.
struct ResourceManager::Override
{
    checked_value<FolderPath> setting;
    std::map<String, std::map<long long, std::vector<unsigned char>>> cache;
};

ResourceManager& ResourceManager::Get()
{
    static ResourceManager instance;
    return instance;
}

ResourceManager::ResourceManager() : override(new Override) {}

ResourceManager::~ResourceManager() = default;

bool ResourceManager::Init(FolderPath const& folder, checked_value<String> filename)
{
    if (data != nullptr)
        return true;
    String const name = filename ? *filename : String("resources.resembed");

    problem = String();
    bool loaded = false;
    String loadedPath;
    // An installed program finds its resources in the FHS data folder of its own prefix
    // (<prefix>/bin/ -> <prefix>/share/tavorin/); the build tree keeps them beside it.
    for (char const* prefix : {"../share/tavorin/", "Contents/Resources/", "Resources/"})
    {
        File file(folder + (String(prefix) + name));
        if (!file.Exists())
            continue;
        String const path = file.GetPath().ToString();
        // Opening a FIFO would wait for a writer for ever, and a device never ends.
        std::error_code error;
        if (!std::filesystem::is_regular_file(path.CStr(), error))
        {
            problem = String("%1: not a regular file").Arg(path);
            continue;
        }
        file.Open(File::ModeRead);
        checked_value<unsigned long long> const size = file.Size();
        if (!size)
            TV_THROW(FileIO, "Cannot get file size", file.GetPath(), FileIO::ReadError, 0);
        if (*size > MaxFileSize)
        {
            problem = String("%1: %2 bytes, more than the %3 a program loads")
                          .Arg(path)
                          .Arg(String(std::to_string(*size).c_str()))
                          .Arg(String(std::to_string(MaxFileSize).c_str()));
            data = nullptr;
            buffer.reset();
            bufferSize = 0;
            entries.clear();
            return false;
        }
        // Not a vector: the bytes would be zeroed first only to be overwritten by the read.
        std::unique_ptr<unsigned char[]> bytes(new unsigned char[*size > 0 ? *size : 1]);
        file.ReadBlock(reinterpret_cast<char*>(bytes.get()), static_cast<unsigned int>(*size));
        buffer = std::move(bytes);
        bufferSize = *size;
        data = buffer.get();
        loaded = true;
        loadedPath = path;
    }
    if (!loaded)
    {
        if (problem.IsEmpty())
            problem = String("no %1 in %2").Arg(name).Arg(folder.ToString());
        return false;
    }

    if (readDirectory() != detail::DirectoryEnd::Closed)
        problem = bufferSize == 0 ? String("%1: empty").Arg(loadedPath)
                                  : String("%1: damaged: the directory breaks off after %2 entries")
                                        .Arg(loadedPath)
                                        .Arg(String(std::to_string(entries.size()).c_str()));
    return true;
}

namespace
{

/// Byte order of two names, as `String` compares them (names hold no NUL).
int compareNames(unsigned char const* a, std::size_t aLength, unsigned char const* b,
                 std::size_t bLength)
{
    int const c = std::memcmp(a, b, std::min(aLength, bLength));
    return c != 0 ? c : (aLength < bLength ? -1 : aLength > bLength ? 1 : 0);
}

} // namespace

detail::DirectoryEnd ResourceManager::readDirectory()
{
    entries.clear();
    std::size_t count = 0;
    detail::DirectoryEnd const end =
        detail::ParseResourceDirectoryPrefix(data, static_cast<std::size_t>(bufferSize),
                                             static_cast<std::size_t>(bufferSize), nullptr, &count);
    entries.reserve(count);
    // The walk hands out names as strings; their place in the file is all an entry keeps.
    std::size_t cursor = 0;
    detail::ParseResourceDirectoryPrefix(
        data, static_cast<std::size_t>(bufferSize), static_cast<std::size_t>(bufferSize),
        [this, &cursor](detail::ResourceDirectoryEntry const& entry)
        {
            entries.push_back(Entry{static_cast<unsigned int>(cursor), entry.name.Length(),
                                    entry.offset, entry.size});
            cursor += entry.name.Length() + 9;
        });
    auto sameName = [this](Entry const& a, Entry const& b)
    { return compareNames(data + a.nameAt, a.nameLength, data + b.nameAt, b.nameLength) == 0; };
    // By name, and a repeated name in file order, so that the later entry comes last and wins.
    // In place: a sort buffer would cost as much again as the directory.
    std::sort(entries.begin(), entries.end(),
              [this](Entry const& a, Entry const& b)
              {
                  int const c =
                      compareNames(data + a.nameAt, a.nameLength, data + b.nameAt, b.nameLength);
                  return c != 0 ? c < 0 : a.nameAt < b.nameAt;
              });
    std::size_t kept = 0;
    for (std::size_t i = 0; i < entries.size(); ++i)
    {
        if (i + 1 < entries.size() && sameName(entries[i], entries[i + 1]))
            continue;
        entries[kept++] = entries[i];
    }
    entries.resize(kept);
    entries.shrink_to_fit();
    return end;
}

ResourceManager::Entry const* ResourceManager::find(String const& name) const
{
    unsigned char const* key = reinterpret_cast<unsigned char const*>(name.CStr());
    std::size_t const keyLength = name.Length();
    auto const at =
        std::lower_bound(entries.begin(), entries.end(), 0,
                         [this, key, keyLength](Entry const& e, int) {
                             return compareNames(data + e.nameAt, e.nameLength, key, keyLength) < 0;
                         });
    if (at == entries.end() || compareNames(data + at->nameAt, at->nameLength, key, keyLength) != 0)
        return nullptr;
    return &*at;
}

bool ResourceManager::GetFile(String const& name, unsigned char const*& out,
                              unsigned int& size) const
{
    if (override->setting && getOverrideFile(name, out, size))
        return true;
    out = nullptr;
    size = 0;
    if (data == nullptr)
        return false;
    Entry const* found = find(name);
    if (found == nullptr)
        return false;
    out = data + found->offset;
    size = found->size;
    return true;
}

array_ref<unsigned char const> ResourceManager::GetFile(String const& name) const
{
    unsigned char const* bytes = nullptr;
    unsigned int size = 0;
    if (!GetFile(name, bytes, size))
        return {};
    return array_ref<unsigned char const>(bytes, size);
}

std::vector<String> ResourceManager::GetFilenames() const
{
    std::vector<String> names;
    names.reserve(entries.size());
    for (Entry const& entry : entries)
        names.push_back(
            String(reinterpret_cast<char const*>(data + entry.nameAt), entry.nameLength));
    return names;
}

void ResourceManager::SetOverridePath(checked_value<FolderPath> const& path)
{
    override->setting = path;
}

checked_value<FolderPath> const& ResourceManager::GetOverridePath() const
{
    return override->setting;
}

bool ResourceManager::getOverrideFile(String const& name, unsigned char const*& out,
                                      unsigned int& size) const
{
    FolderPath const& folder = *override->setting;
    if (!Dir(folder).Exists())
        return false;
    File file(folder + name);
    auto versions = override->cache.find(name);
    if (versions == override->cache.end() && !file.Exists())
        return false;
    if (versions != override->cache.end())
    {
        // A file that went away since it was cached leaves the packed one to serve the name.
        if (!file.Exists())
            return false;
        FileTime time;
        file.GetTime(&time);
        auto const known = versions->second.find(time.modified);
        if (known != versions->second.end())
        {
            out = known->second.data();
            size = static_cast<unsigned int>(known->second.size());
            return true;
        }
    }

    file.Open(File::ModeRead);
    checked_value<unsigned long long> const remaining = file.Remaining();
    if (!remaining || *remaining > 0xFFFFFFFFULL)
        TV_THROW(FileIO, "Cannot get file size", file.GetPath(), FileIO::ReadError, 0);
    std::vector<unsigned char> bytes(static_cast<std::size_t>(*remaining));
    file.ReadBlock(reinterpret_cast<char*>(bytes.data()), static_cast<unsigned int>(bytes.size()));
    FileTime time;
    file.GetTime(&time);

    std::vector<unsigned char>& stored = override->cache[name][time.modified];
    // A version already held under this time keeps its bytes: a pointer to them may be in use.
    if (stored.empty())
        stored.swap(bytes);
    out = stored.data();
    size = static_cast<unsigned int>(stored.size());
    return true;
}

} // namespace Util
