#include "Canvas/UI/StringWidthCache.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/FreeTypeFont.h"
#include "tests/Canvas/UI/support/FontTestSupport.h"
#include "tests/TvBase/Util/detail/TempConfigHome.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/time.h>

using namespace FontTest;
using TestSupport::TempFolder;

namespace
{

std::vector<unsigned char> readFile(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in),
                                      std::istreambuf_iterator<char>());
}

void writeFile(std::string const& path, std::vector<unsigned char> const& bytes)
{
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<char const*>(bytes.data()), bytes.size());
}

void copyFile(char const* from, std::string const& to)
{
    writeFile(to, readFile(from));
}

void setModifiedTime(std::string const& path, long seconds)
{
    struct timeval times[2] = {{seconds, 0}, {seconds, 0}};
    ASSERT_EQ(0, utimes(path.c_str(), times));
}

char const* const words[] = {"Update", "Close",       "Checking for Tavorin updates...",
                             "3.0.1",  "Alpha Mixer", "\xC3\x84nderungen"};

} // namespace

TEST(StringWidthCacheFile, WidthsSurviveARestart)
{
    TempFolder folder;
    std::vector<unsigned int> measured;
    {
        Context canvas;
        canvas.widths.reset(new UI::StringWidthCache(&canvas, folder.Path().c_str()));
        EXPECT_EQ(FilePath((folder / "stringCache.dat").c_str()), canvas.widths->GetFilePath());
        UI::Font font(&canvas, Info("Arial", 11.0f));
        for (char const* word : words)
            measured.push_back(font.GetStringWidth(word));
        EXPECT_EQ(6u, canvas.widths->GetEntryCount());
        EXPECT_EQ(6u * 104u, canvas.widths->GetCacheSize());
        canvas.widths.reset(); // saves
    }
    std::vector<unsigned char> const bytes = readFile(folder / "stringCache.dat");
    ASSERT_GE(bytes.size(), 12u);
    EXPECT_EQ((std::vector<unsigned char>{0x32, 0x41, 0x13, 0x34, 3, 0, 0, 0, 1, 0, 0, 0}),
              std::vector<unsigned char>(bytes.begin(), bytes.begin() + 12));

    UI::StringWidthCache cache(nullptr, folder.Path().c_str());
    EXPECT_EQ(6u, cache.GetEntryCount());
    // Read back with an empty font file and kerning on, and still found.
    UI::FontInfo info = Info("Arial", 11.0f);
    info.kerning = false;
    for (size_t i = 0; i < measured.size(); ++i)
    {
        checked_value<unsigned int> const width = cache.GetCachedStringWidth(words[i], info);
        ASSERT_TRUE(width) << words[i];
        EXPECT_EQ(measured[i], *width);
    }
    EXPECT_FALSE(cache.GetCachedStringWidth("Update", Info("Arial", 12.0f)));
}

TEST(StringWidthCacheFile, EveryFieldOfTheFontIsKept)
{
    TempFolder folder;
    UI::FontInfo info = Info("Some Face", 10.5f, 2, 3);
    info.faceIndex = 4u;
    info.fallbackFaceName = "Other Face";
    info.spacing = -2;
    info.forceAutoHint = info.extraFlag = info.bold = info.italic = info.underline = true;
    {
        UI::StringWidthCache cache(nullptr, folder.Path().c_str());
        cache.CacheStringWidth("text", info, 77);
        cache.CacheStringWidth("text", Info("Some Face", 10.5f, 2, 3), 66);
    }
    UI::StringWidthCache cache(nullptr, folder.Path().c_str());
    EXPECT_EQ(2u, cache.GetEntryCount());
    EXPECT_EQ(77u, *cache.GetCachedStringWidth("text", info));
    EXPECT_EQ(66u, *cache.GetCachedStringWidth("text", Info("Some Face", 10.5f, 2, 3)));
    for (auto change :
         {+[](UI::FontInfo& i) { i.faceIndex = 5u; },
          +[](UI::FontInfo& i) { i.fallbackFaceName = "X"; },
          +[](UI::FontInfo& i) { i.spacing = 0; }, +[](UI::FontInfo& i) { i.extraFlag = false; },
          +[](UI::FontInfo& i) { i.underline = false; }})
    {
        UI::FontInfo other = info;
        change(other);
        EXPECT_FALSE(cache.GetCachedStringWidth("text", other));
    }
}

TEST(StringWidthCacheFile, ForeignOrDamagedFilesReadAsEmpty)
{
    TempFolder folder;
    std::string const path = folder / "stringCache.dat";
    {
        UI::StringWidthCache cache(nullptr, folder.Path().c_str());
        for (unsigned int i = 0; i < 5; ++i)
            cache.CacheStringWidth(String::Number(i), Info("Face", 12.0f), i);
    }
    std::vector<unsigned char> const good = readFile(path);

    std::vector<unsigned char> wrongMagic = good;
    wrongMagic[0] ^= 0xFF;
    std::vector<unsigned char> wrongVersion = good;
    wrongVersion[4] = 2;
    std::vector<unsigned char> const garbage = {0x32, 0x41, 0x13, 0x34, 3,    0, 0,
                                                0,    0xFF, 0xFF, 0xFF, 0x7F, 1, 2};
    for (auto const& bytes : {wrongMagic, wrongVersion, garbage, std::vector<unsigned char>()})
    {
        writeFile(path, bytes);
        UI::StringWidthCache cache(nullptr, folder.Path().c_str());
        EXPECT_EQ(0u, cache.GetEntryCount());
    }

    // A file cut short keeps the entries read before the cut.
    std::vector<unsigned char> const cut(good.begin(), good.end() - 10);
    writeFile(path, cut);
    UI::StringWidthCache cache(nullptr, folder.Path().c_str());
    EXPECT_EQ(4u, cache.GetEntryCount());
    EXPECT_EQ(3u, *cache.GetCachedStringWidth("3", Info("Face", 12.0f)));
}

TEST(StringWidthCacheFile, AChangedOrMissingFontFileEmptiesTheCache)
{
    TempFolder fonts, folder;
    std::string const fontPath = fonts / "Sans.ttf";
    copyFile(LiberationSans, fontPath);
    setModifiedTime(fontPath, 1500000000);
    {
        Context canvas;
        canvas.widths.reset(new UI::StringWidthCache(&canvas, folder.Path().c_str()));
        UI::Font font(&canvas, FileInfo(fontPath.c_str(), 12.0f));
        ASSERT_NE(nullptr, font.GetFreeTypeFont());
        font.GetStringWidth("before");
    }
    {
        UI::StringWidthCache unchanged(nullptr, folder.Path().c_str());
        EXPECT_EQ(1u, unchanged.GetEntryCount());
    }
    setModifiedTime(fontPath, 1600000000); // a newer font under the same name
    {
        UI::StringWidthCache changed(nullptr, folder.Path().c_str());
        EXPECT_EQ(0u, changed.GetEntryCount());
        changed.CacheStringWidth("after", FileInfo(fontPath.c_str(), 12.0f), 10);
    }
    UI::StringWidthCache reloaded(nullptr, folder.Path().c_str());
    EXPECT_EQ(1u, reloaded.GetEntryCount());
    std::remove(fontPath.c_str());
    reloaded.CheckFontModifiedDates();
    EXPECT_EQ(0u, reloaded.GetEntryCount());
}

TEST(StringWidthCacheFile, WhereTheFileGoes)
{
    // A memory-only cache writes nothing.
    UI::StringWidthCache memory(nullptr);
    EXPECT_TRUE(memory.GetFilePath().IsEmpty());
    memory.CacheStringWidth("x", Info("Face", 12.0f), 5);
    memory.Save();
    EXPECT_EQ(5u, *memory.GetCachedStringWidth("x", Info("Face", 12.0f)));

    // Without a folder the user's application data folder serves.
    TempFolder data;
    {
        TestSupport::ScopedEnv home("XDG_DATA_HOME", data.Path().c_str());
        UI::StringWidthCache cache(nullptr, String());
        EXPECT_EQ(FilePath((data / "stringCache.dat").c_str()), cache.GetFilePath());
        cache.CacheStringWidth("x", Info("Face", 12.0f), 5);
    }
    EXPECT_FALSE(readFile(data / "stringCache.dat").empty());

    // A folder that is missing is created.
    std::string const nested = data / "a/b";
    {
        UI::StringWidthCache cache(nullptr, nested.c_str());
        cache.CacheStringWidth("x", Info("Face", 12.0f), 5);
    }
    EXPECT_FALSE(readFile(nested + "/stringCache.dat").empty());
}

TEST(StringWidthCacheFont, MeasuresOnceAndServesFromTheCache)
{
    Context canvas;
    canvas.widths.reset(new UI::StringWidthCache(&canvas));
    UI::Font font(&canvas, FileInfo(LiberationSans, 12.0f));
    unsigned int const width = font.GetStringWidth("Served");
    ASSERT_GT(width, 0u);
    UI::FontInfo const& key = font.GetFreeTypeFont()->GetFontInfo();
    ASSERT_TRUE(canvas.widths->GetCachedStringWidth("Served", key));

    // An entry planted by hand proves where the answer comes from.
    canvas.widths->DeleteCacheEntry("Served", key);
    EXPECT_FALSE(canvas.widths->GetCachedStringWidth("Served", key));
    canvas.widths->CacheStringWidth("Served", key, 999);
    EXPECT_EQ(999u, font.GetStringWidth("Served"));

    // With a mapping function registered the cache is bypassed.
    canvas.upperCaseMapping = true;
    EXPECT_EQ(font.getStringWidth("SERVED"), font.GetStringWidth("Served"));
    EXPECT_NE(999u, font.GetStringWidth("Served"));
}

TEST(StringWidthCacheTrim, LowestScoresGoFirst)
{
    using Cache = UI::StringWidthCache;
    Cache::Entries entries;
    auto add = [&](char const* text, unsigned int width, unsigned int hits)
    {
        Cache::Entry entry;
        entry.width = width;
        entry.hits = hits;
        entries[Cache::Key{text, Info("Face", 12.0f)}] = entry;
    };
    add("rare short", 4, 1);   // score 5
    add("often short", 4, 10); // score 50
    add("rare long", 99, 1);   // score 100
    add("tie b", 9, 1);        // score 10
    add("tie a", 9, 1);        // score 10, before "tie b" by key
    add("often long", 99, 10); // score 1000

    Cache::Entries copy = entries;
    Cache::trimStringWidthCacheToTarget(copy, 6 * 104, 2 * 104); // not over the limit
    EXPECT_EQ(6u, copy.size());
    Cache::trimStringWidthCacheToTarget(copy, 2 * 104, 3 * 104); // target above the limit
    EXPECT_EQ(6u, copy.size());

    auto kept = [&copy](char const* text) {
        return copy.count(Cache::Key{text, Info("Face", 12.0f)});
    };
    Cache::trimStringWidthCacheToTarget(copy, 5 * 104, 3 * 104 + 50);
    ASSERT_EQ(3u, copy.size());
    EXPECT_TRUE(kept("often long") && kept("rare long") && kept("often short"));

    copy = entries;
    Cache::trimStringWidthCacheToTarget(copy, 5 * 104, 4 * 104);
    EXPECT_FALSE(kept("tie a"));
    EXPECT_TRUE(kept("tie b"));

    copy = entries;
    Cache::trimStringWidthCacheToTarget(copy, 2 * 104, 103);
    EXPECT_TRUE(copy.empty());
}

TEST(StringWidthCacheTrim, LimitsHoldInMemoryAndOnDisk)
{
    TempFolder folder;
    {
        UI::StringWidthCache cache(nullptr, folder.Path().c_str());
        EXPECT_EQ(1024u, cache.GetCacheSizeLimitInMemory());
        EXPECT_EQ(512u, cache.GetCacheSizeLimit());
        cache.SetCacheSizeLimitInMemory(1); // 1024 bytes: nine entries fit
        for (unsigned int i = 0; i < 9; ++i)
            cache.CacheStringWidth(String::Number(i), Info("Face", 12.0f), 10 + i);
        EXPECT_EQ(9u, cache.GetEntryCount());
        // A hit raises the count, so "0" outlives its wider neighbours.
        for (int i = 0; i < 50; ++i)
            cache.GetCachedStringWidth("0", Info("Face", 12.0f));
        cache.CacheStringWidth("9", Info("Face", 12.0f), 19);
        EXPECT_EQ(4u, cache.GetEntryCount()); // trimmed to half the limit: 512 / 104
        EXPECT_TRUE(cache.GetCachedStringWidth("0", Info("Face", 12.0f)));
        EXPECT_FALSE(cache.GetCachedStringWidth("1", Info("Face", 12.0f)));

        cache.SetCacheSizeLimitInMemory(1024);
        for (unsigned int i = 10; i < 20; ++i)
            cache.CacheStringWidth(String::Number(i), Info("Face", 12.0f), i);
        cache.SetCacheSizeLimit(1); // on disk: at most 1 KB, trimmed to half
    }
    UI::StringWidthCache cache(nullptr, folder.Path().c_str());
    EXPECT_EQ(4u, cache.GetEntryCount());
}
