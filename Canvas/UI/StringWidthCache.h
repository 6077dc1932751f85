#pragma once

#include "Canvas/UI/FontInfo.h"
#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <map>

namespace UI
{

class FontContext;

/// Measured text widths by text and font, kept across runs in "stringCache.dat" so that a warm
/// start measures nothing.
///
/// Keys compare the text, then the font fields that the file keeps (everything but the font
/// file and kerning), so entries read back match the fonts that measure them. Each font file
/// seen is recorded with its modified time; when any of them changes or disappears the whole
/// cache is dropped, since its widths can't be trusted. Sizes are counted as 104 bytes an
/// entry. A missing, corrupt or foreign file reads as an empty cache; a cache that can't be
/// written is silently lost. Used on the UI thread only; not copyable.
class StringWidthCache
{
public:
    /// A cache in memory only: nothing is loaded or saved. The canvas that owns the cache is
    /// named for symmetry with the fonts; the cache asks nothing of it.
    explicit StringWidthCache(FontContext* canvas);
    /// A cache kept in "stringCache.dat" in `folder`, or when that is empty in the user's
    /// application data folder (created when missing). Loads the file and checks the fonts'
    /// modified times.
    StringWidthCache(FontContext* canvas, String folder);
    /// Saves the cache (trimmed to the disk limit) when it has a file.
    ~StringWidthCache();
    StringWidthCache(StringWidthCache const&) = delete;
    StringWidthCache& operator=(StringWidthCache const&) = delete;

    /// The cached width; a hit raises the entry's count, so that widths in use outlive rare ones
    /// when the cache is trimmed.
    checked_value<unsigned int> GetCachedStringWidth(String const& text, FontInfo const& info);
    /// Adds the width with a hit count of 1, or raises the count of an existing entry. Records
    /// the font file's modified time the first time it is seen. Trims to half the memory limit
    /// when the limit is passed.
    void CacheStringWidth(String text, FontInfo const& info, unsigned int width);
    void DeleteCacheEntry(String const& text, FontInfo const& info);

    /// Entries times the entry size, in bytes.
    unsigned int GetCacheSize() const;
    unsigned int GetEntryCount() const { return static_cast<unsigned int>(entries.size()); }
    static unsigned int GetCacheEntrySize() { return 104; }
    /// Limits in KB: 1024 in memory and 512 on disk at first.
    void SetCacheSizeLimitInMemory(unsigned int kilobytes) { memoryLimit = kilobytes; }
    unsigned int GetCacheSizeLimitInMemory() const { return memoryLimit; }
    void SetCacheSizeLimit(unsigned int kilobytes) { diskLimit = kilobytes; }
    unsigned int GetCacheSizeLimit() const { return diskLimit; }
    /// Clears the cache and the font table when a recorded font file changed or is gone.
    void CheckFontModifiedDates();

    /// The cache file, or an empty path for a cache in memory only.
    FilePath GetFilePath() const { return file; }
    /// Writes the file now (trimmed to the disk limit), as the destructor does.
    void Save();

    struct Key
    {
        String text;
        FontInfo info;
    };
    /// A key by reference, for lookups that copy nothing.
    struct KeyRef
    {
        String const* text;
        FontInfo const* info;
    };
    struct KeyLess
    {
        typedef void is_transparent;
        bool operator()(Key const& a, Key const& b) const;
        bool operator()(Key const& a, KeyRef const& b) const;
        bool operator()(KeyRef const& a, Key const& b) const;
    };
    struct Entry
    {
        unsigned int width = 0;
        unsigned int hits = 0;
    };
    typedef std::map<Key, Entry, KeyLess> Entries;

    /// When more than `maxBytes` of entries are kept (and `targetBytes` <= `maxBytes`), removes
    /// those of lowest score (width + 1) * hits, ties by key, until `targetBytes` / 104 remain.
    static void trimStringWidthCacheToTarget(Entries& entries, unsigned int maxBytes,
                                             unsigned int targetBytes);

private:
    void loadStringWidthCache();
    void saveStringWidthCache();
    void storeFontModifiedTime(FilePath const& fontFile);

    FilePath file;
    bool hasPath = false;
    Entries entries;
    std::map<String, unsigned int> fontTimes;
    unsigned int memoryLimit = 1024;
    unsigned int diskLimit = 512;
};

} // namespace UI
