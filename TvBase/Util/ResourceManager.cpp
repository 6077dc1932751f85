#include "TvBase/Util/ResourceManager.h"

#include "TvBase/Util/Dir.h"
#include "TvBase/Util/File.h"
#include "TvBase/Util/detail/ResourceDirectory.h"

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

    bool loaded = false;
    // An installed program finds its resources in the FHS data folder of its own prefix
    // (<prefix>/bin/ -> <prefix>/share/tavorin/); the build tree keeps them beside it.
    for (char const* prefix : {"../share/tavorin/", "Contents/Resources/", "Resources/"})
    {
        File file(folder + (String(prefix) + name));
        if (!file.Exists())
            continue;
        file.Open(File::ModeRead);
        checked_value<unsigned long long> const size = file.Size();
        if (!size)
            TV_THROW(FileIO, "Cannot get file size", file.GetPath(), FileIO::ReadError, 0);
        if (*size > MaxFileSize)
        {
            data = nullptr;
            buffer.reset();
            bufferSize = 0;
            return false;
        }
        // Not a vector: the bytes would be zeroed first only to be overwritten by the read.
        std::unique_ptr<unsigned char[]> bytes(new unsigned char[*size > 0 ? *size : 1]);
        file.ReadBlock(reinterpret_cast<char*>(bytes.get()), static_cast<unsigned int>(*size));
        buffer = std::move(bytes);
        bufferSize = *size;
        data = buffer.get();
        loaded = true;
    }
    if (!loaded)
        return false;

    entries.clear();
    detail::ParseResourceDirectory(data, static_cast<std::size_t>(bufferSize),
                                   [this](detail::ResourceDirectoryEntry const& entry) {
                                       entries[entry.name] = Entry{entry.offset, entry.size};
                                   });
    return true;
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
    auto const found = entries.find(name);
    if (found == entries.end())
        return false;
    out = data + found->second.offset;
    size = found->second.size;
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
    for (auto const& entry : entries)
        names.push_back(entry.first);
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
