#include "Canvas/UI/StringWidthCache.h"

#include "TvBase/Util/ByteStream.h"
#include "TvBase/Util/Dir.h"
#include "TvBase/Util/Exception.h"
#include "TvBase/Util/File.h"
#include "TvBase/Util/FileStream.h"
#include "TvBase/Util/SystemFolders.h"

#include <algorithm>
#include <cstring>
#include <tuple>
#include <vector>

namespace UI
{

namespace
{

unsigned int const cacheMagic = 0x34134132;
unsigned int const cacheVersion = 3;
char const* const cacheFileName = "stringCache.dat";

int compareText(String const& a, String const& b)
{
    unsigned int const la = a.Length();
    unsigned int const lb = b.Length();
    int const order = std::memcmp(a.CStr(), b.CStr(), std::min(la, lb));
    if (order != 0)
        return order;
    return la < lb ? -1 : (la > lb ? 1 : 0);
}

// The fields that the file keeps; the font file and kerning are left out.
bool infoLess(FontInfo const& a, FontInfo const& b)
{
    int order = compareText(a.faceName, b.faceName);
    if (order == 0)
        order = compareText(a.fallbackFaceName, b.fallbackFaceName);
    if (order != 0)
        return order < 0;
    return std::make_tuple(a.faceIndex.present, a.faceIndex.value, a.size, a.spacing, a.sharpen,
                           a.antiAliasMode, a.forceAutoHint, a.extraFlag, a.bold, a.italic,
                           a.underline) <
           std::make_tuple(b.faceIndex.present, b.faceIndex.value, b.size, b.spacing, b.sharpen,
                           b.antiAliasMode, b.forceAutoHint, b.extraFlag, b.bold, b.italic,
                           b.underline);
}

bool keyLess(String const& ta, FontInfo const& a, String const& tb, FontInfo const& b)
{
    int const order = compareText(ta, tb);
    if (order != 0)
        return order < 0;
    return infoLess(a, b);
}

checked_value<unsigned int> modifiedSeconds(FilePath const& path)
{
    try
    {
        Util::File file(path);
        if (!file.Exists())
            return checked_value<unsigned int>();
        Util::FileTime time;
        file.GetTime(&time);
        return static_cast<unsigned int>(time.modified / 1000000000LL);
    }
    catch (Exception::Base const&)
    {
        return checked_value<unsigned int>();
    }
}

} // namespace

bool StringWidthCache::KeyLess::operator()(Key const& a, Key const& b) const
{
    return keyLess(a.text, a.info, b.text, b.info);
}

bool StringWidthCache::KeyLess::operator()(Key const& a, KeyRef const& b) const
{
    return keyLess(a.text, a.info, *b.text, *b.info);
}

bool StringWidthCache::KeyLess::operator()(KeyRef const& a, Key const& b) const
{
    return keyLess(*a.text, *a.info, b.text, b.info);
}

StringWidthCache::StringWidthCache(FontContext*) {}

StringWidthCache::StringWidthCache(FontContext*, String folder)
{
    FolderPath const where =
        folder.IsEmpty() ? Util::GetUserApplicationDataFolder() : FolderPath(folder);
    if (!where.IsEmpty())
    {
        file = where + String(cacheFileName);
        hasPath = true;
    }
    loadStringWidthCache();
    CheckFontModifiedDates();
}

StringWidthCache::~StringWidthCache()
{
    saveStringWidthCache();
}

checked_value<unsigned int> StringWidthCache::GetCachedStringWidth(String const& text,
                                                                   FontInfo const& info)
{
    Entries::iterator const found = entries.find(KeyRef{&text, &info});
    if (found == entries.end())
        return checked_value<unsigned int>();
    ++found->second.hits;
    return found->second.width;
}

void StringWidthCache::CacheStringWidth(String text, FontInfo const& info, unsigned int width)
{
    Entries::iterator const found = entries.find(KeyRef{&text, &info});
    if (found != entries.end())
    {
        ++found->second.hits;
        return;
    }
    Entry entry;
    entry.width = width;
    entry.hits = 1;
    entries.emplace(Key{text, info}, entry);
    storeFontModifiedTime(info.fontFile);
    unsigned long long const limit = static_cast<unsigned long long>(memoryLimit) * 1024;
    if (static_cast<unsigned long long>(entries.size()) * GetCacheEntrySize() > limit)
        trimStringWidthCacheToTarget(entries, static_cast<unsigned int>(limit),
                                     static_cast<unsigned int>(limit / 2));
}

void StringWidthCache::DeleteCacheEntry(String const& text, FontInfo const& info)
{
    Entries::iterator const found = entries.find(KeyRef{&text, &info});
    if (found != entries.end())
        entries.erase(found);
}

unsigned int StringWidthCache::GetCacheSize() const
{
    return static_cast<unsigned int>(entries.size()) * GetCacheEntrySize();
}

void StringWidthCache::storeFontModifiedTime(FilePath const& fontFile)
{
    if (fontFile.IsEmpty())
        return;
    String const path = fontFile.ToString();
    if (fontTimes.count(path))
        return;
    checked_value<unsigned int> const time = modifiedSeconds(fontFile);
    if (time)
        fontTimes[path] = *time;
}

void StringWidthCache::CheckFontModifiedDates()
{
    for (auto const& font : fontTimes)
    {
        checked_value<unsigned int> const time = modifiedSeconds(FilePath(font.first));
        if (!time || *time != font.second)
        {
            entries.clear();
            fontTimes.clear();
            return;
        }
    }
}

void StringWidthCache::trimStringWidthCacheToTarget(Entries& entries, unsigned int maxBytes,
                                                    unsigned int targetBytes)
{
    if (targetBytes > maxBytes ||
        static_cast<unsigned long long>(entries.size()) * GetCacheEntrySize() <= maxBytes)
        return;
    size_t const keep = targetBytes / GetCacheEntrySize();
    if (entries.size() <= keep)
        return;
    // Lowest score first: rarely used short strings are the cheapest to measure again.
    std::vector<Entries::iterator> order;
    order.reserve(entries.size());
    for (Entries::iterator i = entries.begin(); i != entries.end(); ++i)
        order.push_back(i);
    auto score = [](Entries::iterator i)
    { return (static_cast<unsigned long long>(i->second.width) + 1) * i->second.hits; };
    std::stable_sort(order.begin(), order.end(),
                     [&](Entries::iterator a, Entries::iterator b) { return score(a) < score(b); });
    for (size_t i = 0; i < order.size() - keep; ++i)
        entries.erase(order[i]);
}

void StringWidthCache::Save()
{
    saveStringWidthCache();
}

// A missing file, a wrong magic or another version leave the cache empty; a damaged file keeps
// the entries read before the damage.
void StringWidthCache::loadStringWidthCache()
{
    if (!hasPath)
        return;
    std::vector<unsigned char> bytes;
    try
    {
        Util::File source(file);
        if (!source.Exists())
            return;
        source.Open(Util::File::ModeRead);
        bytes = source.ReadRemaining();
        source.Close();
    }
    catch (Exception::Base const&)
    {
        return;
    }
    Util::ByteStream in(array_ref<unsigned char const>(bytes.data(), bytes.size()));
    try
    {
        unsigned int magic = 0;
        unsigned int version = 0;
        in >> magic >> version;
        if (magic != cacheMagic || version != cacheVersion)
            return;
        unsigned int fontCount = 0;
        in >> fontCount;
        for (unsigned int i = 0; i < fontCount; ++i)
        {
            String path;
            unsigned int time = 0;
            in >> path >> time;
            fontTimes[path] = time;
        }
        unsigned int stringCount = 0;
        in >> stringCount;
        for (unsigned int i = 0; i < stringCount; ++i)
        {
            Key key;
            bool hasFaceIndex = false;
            in >> key.text >> hasFaceIndex;
            if (hasFaceIndex)
            {
                unsigned int faceIndex = 0;
                in >> faceIndex;
                key.info.faceIndex = faceIndex;
            }
            FontInfo& info = key.info;
            in >> info.faceName >> info.fallbackFaceName >> info.size >> info.spacing >>
                info.sharpen >> info.antiAliasMode >> info.forceAutoHint >> info.extraFlag >>
                info.bold >> info.italic >> info.underline;
            Entry entry;
            entry.hits = 1;
            in >> entry.width;
            entries[key] = entry;
        }
    }
    catch (Exception::Base const&)
    {
    }
}

void StringWidthCache::saveStringWidthCache()
{
    if (!hasPath)
        return;
    unsigned int const limit = diskLimit * 1024;
    trimStringWidthCacheToTarget(entries, limit, limit / 2);
    // Written aside and moved into place, so that a failed write never leaves half a file.
    FilePath const temporary(file.ToString() + ".tmp");
    try
    {
        Util::Dir(file.GetFolder()).Create(true);
        Util::FileStream out(temporary, Util::File::ModeWrite | Util::File::ModeTruncate);
        out << cacheMagic << cacheVersion << static_cast<unsigned int>(fontTimes.size());
        for (auto const& font : fontTimes)
            out << font.first << font.second;
        out << static_cast<unsigned int>(entries.size());
        for (auto const& item : entries)
        {
            FontInfo const& info = item.first.info;
            out << item.first.text << info.faceIndex.present;
            if (info.faceIndex.present)
                out << info.faceIndex.value;
            out << info.faceName << info.fallbackFaceName << info.size << info.spacing
                << info.sharpen << info.antiAliasMode << info.forceAutoHint << info.extraFlag
                << info.bold << info.italic << info.underline << item.second.width;
        }
        out.Close();
        Util::File::Rename(temporary, file);
    }
    catch (Exception::Base const&)
    {
        try
        {
            Util::File(temporary).Remove(false);
        }
        catch (Exception::Base const&)
        {
        }
    }
}

} // namespace UI
