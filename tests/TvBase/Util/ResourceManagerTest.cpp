#include "TvBase/Util/ResourceManager.h"

#include "TvBase/Util/File.h"
#include "TvBase/Util/detail/ResourceDirectory.h"

#include "tests/support/PeakMemory.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using TestSupport::TempFolder;
using Util::ResourceManager;

namespace
{

using Bytes = std::vector<unsigned char>;

std::string packed(std::vector<std::pair<std::string, std::string>> const& files)
{
    std::vector<String> names;
    std::vector<Bytes> contents;
    for (auto const& file : files)
    {
        names.push_back(String(file.first.c_str()));
        contents.push_back(Bytes(file.second.begin(), file.second.end()));
    }
    Bytes const bytes = Util::detail::BuildResourceFile(names, contents);
    return std::string(bytes.begin(), bytes.end());
}

std::string text(array_ref<unsigned char const> bytes)
{
    return bytes.data == nullptr ? std::string("<null>") : std::string(bytes.begin(), bytes.end());
}

/// One directory entry written by hand: the name, its NUL, offset and size little-endian.
std::string entry(std::string const& name, unsigned int offset, unsigned int size)
{
    std::string out = name;
    out += '\0';
    for (unsigned int value : {offset, size})
        for (int shift = 0; shift < 32; shift += 8)
            out += static_cast<char>((value >> shift) & 0xFF);
    return out;
}

FolderPath folderOf(TempFolder const& temp)
{
    return FolderPath(temp.Path().c_str());
}

void setModified(std::string const& path, long long seconds)
{
    Util::File file{FilePath(path.c_str())};
    Util::FileTime time;
    time.accessed = seconds * 1000000000LL;
    time.modified = seconds * 1000000000LL;
    file.SetTime(time);
}

/// A sparse file of exactly `size` bytes, all zero: an empty directory.
void makeSparse(std::string const& path, long long size)
{
    int const fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(0, ::ftruncate(fd, size));
    ::close(fd);
}

} // namespace

TEST(ResourceInit, LoadsPackedFileOnceWithoutCopies)
{
    TempFolder temp;
    temp.Write("Resources/resources.resembed",
               packed({{"UI/Layout/Main.layout", "<layout/>"}, {"a.txt", "A"}, {"empty", ""}}));
    ResourceManager resources;
    EXPECT_TRUE(resources.Init(folderOf(temp)));
    EXPECT_TRUE(resources.GetProblem().IsEmpty());

    unsigned char const* data = nullptr;
    unsigned int size = 0;
    ASSERT_TRUE(resources.GetFile("UI/Layout/Main.layout", data, size));
    EXPECT_EQ("<layout/>", std::string(data, data + size));
    // Each lookup hands out the same bytes: nothing is copied.
    EXPECT_EQ(data, resources.GetFile("UI/Layout/Main.layout").data);
    EXPECT_EQ("A", text(resources.GetFile("a.txt")));
    EXPECT_TRUE(resources.GetFile("empty", data, size));
    EXPECT_EQ(0u, size);

    EXPECT_FALSE(resources.GetFile("missing", data, size));
    EXPECT_EQ(nullptr, data);
    EXPECT_EQ(0u, size);
    EXPECT_FALSE(resources.GetFile("A.TXT", data, size)); // names compare exactly

    EXPECT_EQ((std::vector<String>{"UI/Layout/Main.layout", "a.txt", "empty"}),
              resources.GetFilenames());

    // Loaded once: a second call neither fails nor reloads.
    temp.Write("Resources/resources.resembed", packed({{"other", "x"}}));
    EXPECT_TRUE(resources.Init(FolderPath("/nonexistent-tv-folder")));
    EXPECT_EQ("A", text(resources.GetFile("a.txt")));
}

TEST(ResourceInit, LocationsNamesAndLimits)
{
    TempFolder temp;
    ResourceManager none;
    EXPECT_FALSE(none.Init(folderOf(temp)));
    EXPECT_FALSE(none.GetFile("a.txt").data);
    EXPECT_NE(
        std::string::npos,
        std::string(none.GetProblem().CStr()).find("no resources.resembed in " + temp.Path()));

    // A FIFO is skipped at once rather than waited on.
    std::filesystem::create_directories(temp / "Contents/Resources");
    ASSERT_EQ(0, ::mkfifo((temp / "Contents/Resources/resources.resembed").c_str(), 0600));
    ResourceManager fifo;
    EXPECT_FALSE(fifo.Init(folderOf(temp)));
    EXPECT_EQ(temp / "Contents/Resources/resources.resembed" + ": not a regular file",
              std::string(fifo.GetProblem().CStr()));
    std::filesystem::remove(temp / "Contents/Resources/resources.resembed");

    // Both locations: the second one found replaces the first.
    temp.Write("Contents/Resources/resources.resembed", packed({{"where", "contents"}}));
    ResourceManager first;
    ASSERT_TRUE(first.Init(folderOf(temp)));
    EXPECT_EQ("contents", text(first.GetFile("where")));
    temp.Write("Resources/resources.resembed", packed({{"where", "resources"}}));
    ResourceManager both;
    ASSERT_TRUE(both.Init(folderOf(temp)));
    EXPECT_EQ("resources", text(both.GetFile("where")));

    temp.Write("Resources/custom.pak", packed({{"custom", "yes"}}));
    ResourceManager custom;
    ASSERT_TRUE(custom.Init(folderOf(temp), String("custom.pak")));
    EXPECT_EQ("yes", text(custom.GetFile("custom")));

    // An empty directory loads and serves nothing.
    TempFolder emptyTemp;
    emptyTemp.Write("Resources/resources.resembed", std::string(1, '\0'));
    ResourceManager empty;
    EXPECT_TRUE(empty.Init(folderOf(emptyTemp)));
    EXPECT_FALSE(empty.GetFile("anything").data);
    EXPECT_TRUE(empty.GetFilenames().empty());
    { // Size limit is one hundred million bytes.
        TempFolder temp;
        std::filesystem::create_directories(temp / "Resources");
        makeSparse(temp / "Resources/resources.resembed", 100000001);
        ResourceManager over;
        EXPECT_FALSE(over.Init(folderOf(temp)));
        EXPECT_FALSE(over.GetFile("x").data);
        EXPECT_EQ(temp / "Resources/resources.resembed" +
                      ": 100000001 bytes, more than the 100000000 a program loads",
                  std::string(over.GetProblem().CStr()));

        makeSparse(temp / "Resources/resources.resembed", 100000000);
        ResourceManager limit;
        EXPECT_TRUE(limit.Init(folderOf(temp)));
        EXPECT_TRUE(limit.GetFilenames().empty());
    }
}

TEST(ResourceDirectory, LaterDuplicatesWinAndDamageEndsTheDirectory)
{
    TempFolder temp;
    std::string const directory = entry("n", 0, 0) + entry("n", 0, 0) + std::string(1, '\0');
    unsigned int const payload = static_cast<unsigned int>(directory.size());
    std::string file = entry("n", payload, 3) + entry("n", payload + 3, 2) + std::string(1, '\0');
    file += "oldnw";
    temp.Write("Resources/resources.resembed", file);
    ResourceManager resources;
    ASSERT_TRUE(resources.Init(folderOf(temp)));
    EXPECT_EQ("nw", text(resources.GetFile("n")));
    EXPECT_EQ(1u, resources.GetFilenames().size());
    { // Damaged entries end the directory.
        struct Case
        {
            char const* what;
            std::string bytes;
            std::vector<String> names;
        };
        std::string const good = entry("good", 0, 4);
        // Offsets are patched below to point at "GOOD" at the end of each file.
        std::vector<Case> const cases = {
            {"name without NUL", good + "trunc", {"good"}},
            {"entry cut inside its numbers", good + std::string("cut\0\x01\x02", 6), {"good"}},
            {"offset past the end",
             good + entry("far", 1000000, 1) + std::string(1, '\0'),
             {"good"}},
            {"size past the end",
             good + entry("big", 0, 0x7FFFFFFF) + std::string(1, '\0'),
             {"good"}},
            {"offset plus size wraps",
             good + entry("wrap", 0xFFFFFFF0u, 0x20) + std::string(1, '\0'),
             {"good"}},
            {"no terminator", good + entry("last", 0, 0), {"good", "last"}},
            {"empty file", std::string(), {}},
            {"only a name", std::string("abc"), {}}};

        for (Case const& c : cases)
        {
            std::string bytes = c.bytes;
            if (!bytes.empty() && bytes.compare(0, 4, "good") == 0)
            {
                // "good" points at its four bytes, appended at the end.
                unsigned int const offset = static_cast<unsigned int>(bytes.size());
                for (int i = 0; i < 4; ++i)
                    bytes[5 + i] = static_cast<char>((offset >> (8 * i)) & 0xFF);
                bytes += "GOOD";
            }
            TempFolder temp;
            temp.Write("Resources/resources.resembed", bytes);
            ResourceManager resources;
            ASSERT_TRUE(resources.Init(folderOf(temp))) << c.what;
            EXPECT_EQ(c.names, resources.GetFilenames()) << c.what;
            std::string const problem = resources.GetProblem().CStr();
            std::string const path = temp / "Resources/resources.resembed";
            EXPECT_EQ(path + (bytes.empty() ? ": empty"
                                            : ": damaged: the directory breaks off after " +
                                                  std::to_string(c.names.size()) + " entries"),
                      problem)
                << c.what;
            if (!c.names.empty())
            {
                EXPECT_EQ("GOOD", text(resources.GetFile("good"))) << c.what;
            }
        }
    }
}

TEST(ResourceOverride, ServesFolderFilesBeforePackedOnesByVersion)
{
    TempFolder temp;
    temp.Write("Resources/resources.resembed",
               packed({{"UI/Layout/Main.layout", "packed"}, {"only-packed", "p"}}));
    ResourceManager resources;
    ASSERT_TRUE(resources.Init(folderOf(temp)));
    EXPECT_FALSE(resources.GetOverridePath());

    TempFolder design;
    design.Write("UI/Layout/Main.layout", "override");
    design.Write("new.png", "fresh");
    resources.SetOverridePath(folderOf(design));
    ASSERT_TRUE(resources.GetOverridePath());
    EXPECT_EQ(folderOf(design), *resources.GetOverridePath());

    EXPECT_EQ("override", text(resources.GetFile("UI/Layout/Main.layout")));
    EXPECT_EQ("p", text(resources.GetFile("only-packed")));
    EXPECT_EQ("fresh", text(resources.GetFile("new.png")));
    // Override files are served but not listed.
    EXPECT_EQ((std::vector<String>{"UI/Layout/Main.layout", "only-packed"}),
              resources.GetFilenames());

    // Switched off, the packed bytes serve again.
    resources.SetOverridePath(checked_value<FolderPath>());
    EXPECT_EQ("packed", text(resources.GetFile("UI/Layout/Main.layout")));
    EXPECT_FALSE(resources.GetFile("new.png").data);

    // With the folder gone, the packed bytes serve too.
    FolderPath const gone((design / "gone").c_str());
    resources.SetOverridePath(gone);
    EXPECT_EQ("packed", text(resources.GetFile("UI/Layout/Main.layout")));
    { // Changed file gives new version and old pointer keeps bytes.
        TempFolder temp;
        TempFolder design;
        std::string const path = design.Write("UI/Layout/Main.layout", "version one");
        setModified(path, 1000000);
        ResourceManager resources; // nothing packed: the override alone serves
        resources.SetOverridePath(folderOf(design));

        array_ref<unsigned char const> const first = resources.GetFile("UI/Layout/Main.layout");
        ASSERT_TRUE(first.data);
        EXPECT_EQ("version one", text(first));
        // An unchanged file is served from the cache, at the same address.
        EXPECT_EQ(first.data, resources.GetFile("UI/Layout/Main.layout").data);

        design.Write("UI/Layout/Main.layout", "version two, longer");
        setModified(path, 1000060);
        array_ref<unsigned char const> const second = resources.GetFile("UI/Layout/Main.layout");
        EXPECT_EQ("version two, longer", text(second));
        EXPECT_NE(first.data, second.data);
        EXPECT_EQ("version one", text(first)); // the held pointer still reads its own bytes

        // Going back to an earlier time serves the version cached under that time.
        setModified(path, 1000000);
        EXPECT_EQ(first.data, resources.GetFile("UI/Layout/Main.layout").data);

        // Removed from the folder: nothing to serve, and the old bytes stay valid.
        std::filesystem::remove(path);
        EXPECT_FALSE(resources.GetFile("UI/Layout/Main.layout").data);
        EXPECT_EQ("version two, longer", text(second));
    }
}

TEST(ResourceDirectory, MillionsOfEntriesCostLittleMoreThanTheirFile)
{
    // A million small entries, sorted backwards so that the directory has to be ordered.
    int const count = 1000000;
    std::string directory;
    for (int i = count - 1; i >= 0; --i)
    {
        char name[16];
        std::snprintf(name, sizeof name, "r%07d", i);
        directory += entry(name, 0, static_cast<unsigned int>(i % 2));
    }
    directory += '\0';
    TempFolder temp;
    temp.Write("Resources/resources.resembed", directory + "x");
    std::size_t const fileSize = directory.size() + 1;
    directory = std::string();

    ResourceManager resources;
    TestSupport::PeakMemory peak;
    ASSERT_TRUE(resources.Init(folderOf(temp)));
    if (peak.IsAvailable())
    {
        EXPECT_LT(peak.Growth(), static_cast<long long>(fileSize + 20 * count));
    }
    EXPECT_TRUE(resources.GetProblem().IsEmpty());
    std::vector<String> const names = resources.GetFilenames();
    ASSERT_EQ(std::size_t(count), names.size());
    EXPECT_EQ("r0000000", names.front());
    EXPECT_EQ("r0999999", names.back());
    EXPECT_EQ(1u, resources.GetFile("r0123457").size());
    EXPECT_EQ(0u, resources.GetFile("r0123456").size());
    EXPECT_TRUE(resources.GetFile("r0123456").data);
    EXPECT_FALSE(resources.GetFile("r01234567").data);
    EXPECT_FALSE(resources.GetFile("r012345").data);
}
