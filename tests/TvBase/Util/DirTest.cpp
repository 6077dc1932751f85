#include "TvBase/Util/Dir.h"

#include "tests/support/TempFolder.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <unistd.h>

using TestSupport::ReadFile;
using TestSupport::TempFolder;
using Util::Dir;
using Util::Exception::FileIO;

namespace
{

template <typename Action>
FileIO thrownBy(Action action)
{
    return TestSupport::ThrownBy<FileIO>(action, FileIO("none", FolderPath(), -1, 0));
}

Dir dirAt(std::string const& path)
{
    return Dir(FolderPath(path.c_str()));
}

std::vector<std::string> sorted(std::vector<String> const& names)
{
    std::vector<std::string> out;
    for (String const& name : names)
        out.push_back(name.CStr());
    std::sort(out.begin(), out.end());
    return out;
}

using Names = std::vector<std::string>;

} // namespace

TEST(DirExists, ExistsCreateRemoveRenameAndTimes)
{
    TempFolder temp;
    EXPECT_TRUE(dirAt(temp.Path()).Exists());
    EXPECT_FALSE(dirAt(temp / "missing").Exists());
    temp.Write("file", "x");
    EXPECT_FALSE(dirAt(temp / "file").Exists());
    EXPECT_FALSE(dirAt(temp / "file/below").Exists());
    EXPECT_FALSE(Dir().Exists());

    // A link to itself is neither there nor missing: the host reports a loop.
    ASSERT_EQ(0, ::symlink((temp / "loop").c_str(), (temp / "loop").c_str()));
    FileIO const e = thrownBy([&] { dirAt(temp / "loop").Exists(); });
    EXPECT_EQ(String("access() returned unexpected error: -1/%1").Arg(ELOOP), e.GetMessage());
    EXPECT_EQ(ELOOP, e.GetErrorNumber());
    { // Single and recursive.
        TempFolder temp;
        Dir const single = dirAt(temp / "one");
        EXPECT_TRUE(single.Create(false));
        EXPECT_TRUE(single.Exists());
        EXPECT_TRUE(single.Create(false)); // already there

        FileIO const e = thrownBy([&] { dirAt(temp / "a/b").Create(false); });
        EXPECT_EQ(String("mkdir() failed with -1/%1").Arg(ENOENT), e.GetMessage());

        Dir const deep = dirAt(temp / "a/b/c/d");
        EXPECT_TRUE(deep.Create(true));
        EXPECT_TRUE(deep.Exists());
        EXPECT_TRUE(deep.Create(true));

        temp.Write("blocker", "x");
        EXPECT_EQ(String("mkdir() failed with -1/%1").Arg(ENOTDIR),
                  thrownBy([&] { dirAt(temp / "blocker/x/y").Create(true); }).GetMessage());
    }
    { // Empty folders only and failures throw.
        TempFolder temp;
        Dir folder = dirAt(temp / "gone");
        folder.Create(false);
        folder.Remove();
        EXPECT_FALSE(folder.Exists());
        EXPECT_NO_THROW(folder.Remove()); // nothing there

        temp.Write("full/file", "x");
        Dir full = dirAt(temp / "full");
        FileIO const e = thrownBy([&] { full.Remove(); });
        EXPECT_EQ("rmdir() failed", e.GetMessage());
        EXPECT_EQ(ENOTEMPTY, e.GetErrorNumber());

        full.Rename(FolderPath((temp / "renamed").c_str()));
        EXPECT_FALSE(full.Exists());
        EXPECT_TRUE(dirAt(temp / "renamed").Exists());
        EXPECT_EQ("x", ReadFile(temp / "renamed/file"));
        EXPECT_EQ(
            "rename() failed",
            thrownBy([&] { full.Rename(FolderPath((temp / "again").c_str())); }).GetMessage());
    }
    { // Times and info.
        TempFolder temp;
        Dir folder = dirAt(temp / "t");
        folder.Create(false);
        Util::FileTime time;
        time.accessed = 1000000000LL * 1000000000LL;
        time.modified = 1100000000LL * 1000000000LL + 42;
        folder.SetTime(time);
        Util::FileTime read;
        folder.GetTime(&read);
        EXPECT_EQ(time, read);

        Dir::DirInfo info;
        ASSERT_TRUE(folder.GetDirInfo(info));
        EXPECT_EQ(0755u, info.permissions & 0777);
        EXPECT_EQ(time.modified, info.time.modified);

        Dir missing = dirAt(temp / "missing");
        EXPECT_FALSE(missing.GetDirInfo(info));
        EXPECT_EQ("Error getting folder time",
                  thrownBy([&] { missing.GetTime(&read); }).GetMessage());
        EXPECT_EQ("Error setting folder time",
                  thrownBy([&] { missing.SetTime(time); }).GetMessage());
    }
}

TEST(DirFilenames, FilterKindsSubfoldersAndNames)
{
    TempFolder temp;
    for (char const* name : {"a.png", "B.PNG", "Abc", "notes.txt", "aXb*c", "abc"})
        temp.Write(name, "x");
    Dir const folder = dirAt(temp.Path());
    std::vector<String> names;

    folder.GetFilenames(names, "*.PNG", false, false);
    EXPECT_EQ((Names{"B.PNG", "a.png"}), sorted(names));

    folder.GetFilenames(names, "a*", false, false);
    EXPECT_EQ((Names{"Abc", "a.png", "aXb*c", "abc"}), sorted(names));

    // Only the first star counts: the suffix is "b*c", literally.
    folder.GetFilenames(names, "a*b*c", false, false);
    EXPECT_EQ((Names{"aXb*c"}), sorted(names));

    // No star: a prefix. Empty: everything.
    folder.GetFilenames(names, "NOTE", false, false);
    EXPECT_EQ((Names{"notes.txt"}), sorted(names));
    folder.GetFilenames(names, "", false, false);
    EXPECT_EQ(6u, names.size());
    { // Kinds subfolders and keeping names.
        TempFolder temp;
        temp.Write("top.txt", "x");
        temp.Write("sub/inner.txt", "x");
        temp.Write("sub/deeper/leaf.txt", "x");
        Dir const folder = dirAt(temp.Path());

        std::vector<String> names{"kept"};
        folder.GetFilenames(names, "", true, false);
        EXPECT_EQ((Names{"kept", "top.txt"}), sorted(names));

        folder.GetFilenames(names, "", false, true);
        EXPECT_EQ((Names{"sub", "top.txt"}), sorted(names));

        folder.GetFoldernames(names, "", false);
        EXPECT_EQ((Names{"sub"}), sorted(names));

        folder.GetFilenames("sub", names, "*.TXT", false, false);
        EXPECT_EQ((Names{"sub/inner.txt"}), sorted(names));
        folder.GetFoldernames("sub", names, "", true);
        EXPECT_EQ((Names{"sub/deeper", "sub/inner.txt"}), sorted(names));

        // A missing folder adds nothing, and clears unless told to keep.
        dirAt(temp / "missing").GetFilenames(names, "", true, false);
        EXPECT_EQ(2u, names.size());
        dirAt(temp / "missing").GetFilenames(names, "", false, false);
        EXPECT_TRUE(names.empty());
    }
}
