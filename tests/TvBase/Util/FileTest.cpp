#include "TvBase/Util/File.h"

#include "tests/support/TempFolder.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <sys/stat.h>

using TestSupport::ReadFile;
using TestSupport::TempFolder;
using Util::File;
using Util::Exception::FileIO;

namespace
{

std::string readAll(File& file)
{
    std::vector<unsigned char> const bytes = file.ReadRemaining();
    return std::string(bytes.begin(), bytes.end());
}

void write(File& file, std::string const& text)
{
    file.WriteBlock(text.data(), static_cast<unsigned int>(text.size()));
}

/// Runs `action`, which must throw FileIO, and returns the exception.
template <typename Action>
FileIO thrownBy(Action action)
{
    return TestSupport::ThrownBy<FileIO>(action, FileIO("none", FilePath(), -1, 0));
}

/// What `action` throws as "message|code|errno".
template <typename Action>
std::string failure(Action action)
{
    FileIO const e = thrownBy(action);
    return std::string(e.GetMessage().CStr()) + "|" + std::to_string(e.GetCode()) + "|" +
           std::to_string(e.GetErrorNumber());
}

} // namespace

TEST(FileOpen, ReadModesKeepOrTruncate)
{
    TempFolder temp;
    std::string const path = temp.Write("a.bin", "abc");
    File file{FilePath(path.c_str())};

    file.Open(File::ModeRead);
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(File::ModeRead, file.GetMode());
    EXPECT_EQ("abc", readAll(file));
    file.Close();

    // Nothing asked for reads, as reading does.
    file.Open(0);
    EXPECT_EQ("abc", readAll(file));
    file.Close();

    // Read with truncate empties the file and opens it both ways.
    file.Open(File::ModeRead | File::ModeTruncate);
    EXPECT_EQ(0u, *file.Size());
    write(file, "xy");
    file.At(0);
    EXPECT_EQ("xy", readAll(file));
    file.Close();
    EXPECT_EQ("xy", ReadFile(path));
}

TEST(FileOpen, WriteModesTruncateAppendOrUpdate)
{
    TempFolder temp;
    std::string const path = temp.Write("a.bin", "abcdef");
    File file{FilePath(path.c_str())};

    file.Open(File::ModeWrite);
    write(file, "12");
    file.Close();
    EXPECT_EQ("12", ReadFile(path));

    file.Open(File::ModeAppend);
    write(file, "34");
    file.Close();
    EXPECT_EQ("1234", ReadFile(path));

    // Read and write with the read bit: the file stays and writes start at the beginning.
    file.Open(File::ModeRead | File::ModeWrite);
    write(file, "ab");
    file.Close();
    EXPECT_EQ("ab34", ReadFile(path));

    // Read and write without the read bit truncates.
    file.Open(File::ModeReadWrite);
    EXPECT_EQ(0u, *file.Size());
    file.Close();

    temp.Write("a.bin", "base");
    file.Open(File::ModeRead | File::ModeAppend);
    write(file, "+");
    file.At(0);
    EXPECT_EQ("base+", readAll(file));
    file.Close();
}

TEST(FileOpen, AppendAndCreateOnlyMakeMissingFilesAndReadDoesNot)
{
    TempFolder temp;
    File file{FilePath((temp / "new.txt").c_str())};
    EXPECT_FALSE(file.Exists());
    file.Open(File::ModeAppend | File::ModeText);
    write(file, "line\n");
    file.Close();
    EXPECT_EQ("line\n", ReadFile(temp / "new.txt"));

    std::string const existing = temp.Write("there.txt", "keep");
    File taken{FilePath(existing.c_str())};
    EXPECT_EQ("Error opening file|1|" + std::to_string(EEXIST),
              failure([&] { taken.Open(File::ModeWrite | File::ModeCreateOnly); }));
    EXPECT_EQ(1, FileIO::OpenError);
    EXPECT_FALSE(taken.IsOpen());
    EXPECT_EQ("keep", ReadFile(existing));
    File fresh{FilePath((temp / "fresh.txt").c_str())};
    fresh.Open(File::ModeWrite | File::ModeCreateOnly);
    EXPECT_TRUE(fresh.IsOpen());
    EXPECT_TRUE(fresh.Exists());

    File missing{FilePath((temp / "missing").c_str())};
    EXPECT_EQ("Error opening file|1|" + std::to_string(ENOENT),
              failure([&] { missing.Open(File::ModeRead); }));
    EXPECT_EQ(FilePath((temp / "missing").c_str()),
              thrownBy([&] { missing.Open(File::ModeRead); }).GetPath());
    EXPECT_FALSE(missing.Exists());
}

TEST(FileOpen, OnlyRegularFilesAreReadAndFifosNeverWaitedOn)
{
    TempFolder temp;
    std::string const fifo = temp / "fifo";
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    struct Case
    {
        std::string path;
        unsigned int mode;
        char const* message;
        int error;
    };
    Case const cases[] = {
        {fifo, File::ModeRead, "Not a regular file", EINVAL},
        {fifo, File::ModeReadWrite, "Not a regular file", EINVAL},
        {"/dev/zero", File::ModeRead, "Not a regular file", EINVAL},
        {temp.Path(), File::ModeRead, "Not a regular file", EISDIR},
        // Nobody reads the FIFO: writing would wait for a reader for ever.
        {fifo, File::ModeWrite, "Error opening file", ENXIO},
    };
    for (Case const& c : cases)
    {
        File file{FilePath(c.path.c_str())};
        EXPECT_EQ(std::string(c.message) + "|1|" + std::to_string(c.error),
                  failure([&] { file.Open(c.mode); }))
            << c.path;
        EXPECT_FALSE(file.IsOpen());
    }
    // A device is still written to.
    File sink{FilePath("/dev/null")};
    sink.Open(File::ModeWrite);
    sink.WriteBlock("x", 1);
}

TEST(FileIOErrors, EachFailureNamesTheStepAndSize)
{
    TempFolder temp;
    File closed{FilePath("/nonexistent-folder-of-tv-tests/x")};
    File reader{FilePath(temp.Write("short", "abc").c_str())};
    reader.Open(File::ModeRead);
    char buffer[10];
    Util::FileTime time;
    EXPECT_EQ(2, FileIO::ReadError);
    EXPECT_EQ(3, FileIO::WriteError);
    struct Case
    {
        std::function<void()> action;
        char const* expected;
    } const cases[] = {
        {[&] { closed.ReadBlock(buffer, 4); }, "Attempt to read 4 bytes when not open|2|0"},
        {[&] { closed.WriteBlock("abc", 3); }, "Attempt to write 3 bytes when not open|3|0"},
        {[&] { closed.At(5); }, "Attempt to seek to 5 when not open|7|0"},
        {[&] { closed.ReadRemaining(); }, "Could not get the number of bytes remaining|2|0"},
        {[&] { closed.SetMode(0644); }, "Error modifying file permissions|7|2"},
        {[&] { closed.GetTime(&time); }, "Error getting file time|7|2"},
        {[&] { closed.SetTime(time); }, "Error setting file time|7|2"},
        // A short read reports what was read; a read-only stream takes no writes.
        {[&] { reader.ReadBlock(buffer, 10); }, "Attempt to read 10 bytes, only read 3 bytes|2|0"},
        {[&] { reader.WriteBlock("xyz", 3); }, "Attempt to write 3 bytes, only wrote 0 bytes|3|9"},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.expected, failure(c.action));
    EXPECT_TRUE(reader.AtEnd());
    EXPECT_FALSE(closed.Remaining());
    EXPECT_FALSE(closed.Size());
    EXPECT_TRUE(closed.AtEnd());
    EXPECT_EQ(0u, closed.At());
}

TEST(FileSize, SizeRemainingAndPosition)
{
    TempFolder temp;
    EXPECT_FALSE(File().Size());
    File file{FilePath(temp.Write("ten", "0123456789").c_str())};
    EXPECT_EQ(10u, *file.Size());
    EXPECT_FALSE(file.Remaining());
    file.Open(File::ModeRead);
    file.At(4);
    EXPECT_EQ(4u, file.At());
    EXPECT_EQ(6u, *file.Remaining());
    EXPECT_FALSE(file.AtEnd());
    EXPECT_EQ("456789", readAll(file));
    EXPECT_TRUE(file.AtEnd());
    // Past the end the file has nothing left, never a wrapped count.
    file.At(20);
    EXPECT_EQ(0u, *file.Remaining());
}

TEST(FileRemove, MustSucceedDecidesWhetherFailureThrows)
{
    TempFolder temp;
    File missing{FilePath((temp / "missing").c_str())};
    EXPECT_NO_THROW(missing.Remove(false));
    EXPECT_EQ("Remove failed|5|" + std::to_string(ENOENT), failure([&] { missing.Remove(true); }));

    File open{FilePath(temp.Write("open", "x").c_str())};
    open.Open(File::ModeRead);
    open.Remove(true);
    EXPECT_FALSE(open.IsOpen());
    EXPECT_FALSE(open.Exists());
}

TEST(FileRename, ReplacesExistingTargetAndReportsFailure)
{
    TempFolder temp;
    FilePath const from(temp.Write("from", "new").c_str());
    FilePath const to(temp.Write("to", "old").c_str());
    File::Rename(from, to);
    EXPECT_FALSE(File(from).Exists());
    EXPECT_EQ("new", ReadFile(temp / "to"));

    File::Rename(to, FilePath((temp / "moved").c_str()));
    EXPECT_EQ("new", ReadFile(temp / "moved"));

    EXPECT_EQ("Rename failed|6|" + std::to_string(ENOENT),
              failure([&] { File::Rename(from, to); }));
}

TEST(FileCopy, CopiesDataModeAndTimes)
{
    TempFolder temp;
    FilePath const from(temp.Write("from", std::string(200000, 'q')).c_str());
    File source(from);
    source.SetMode(0640);
    Util::FileTime time;
    time.accessed = 1500000000LL * 1000000000LL;
    time.modified = 1600000000LL * 1000000000LL + 123456789;
    source.SetTime(time);

    FilePath const to((temp / "to").c_str());
    File::Copy(from, to, File::CopyReplace);
    EXPECT_EQ(std::string(200000, 'q'), ReadFile(temp / "to"));
    struct stat info;
    ASSERT_EQ(0, ::stat((temp / "to").c_str(), &info));
    EXPECT_EQ(0640u, info.st_mode & 07777);
    Util::FileTime copied;
    File(to).GetTime(&copied);
    EXPECT_EQ(time.modified, copied.modified);
    // Times round-trip to the nanosecond.
    time.accessed = 1234567890LL * 1000000000LL + 5;
    time.modified = 1234567899LL * 1000000000LL + 987654321;
    source.SetTime(time);
    source.GetTime(&copied);
    EXPECT_EQ(time, copied);

    // Replacing is fine; the exclusive copy refuses an existing target.
    temp.Write("from", "second");
    File::Copy(from, to, File::CopyReplace);
    EXPECT_EQ("second", ReadFile(temp / "to"));
    EXPECT_EQ("CopyFile failed|6|" + std::to_string(EEXIST),
              failure([&] { File::Copy(from, to, File::CopyExclusive); }));

    // An unknown type does nothing at all.
    FilePath const other((temp / "other").c_str());
    File::Copy(from, other, static_cast<File::CopyType>(7));
    EXPECT_FALSE(File(other).Exists());

    EXPECT_EQ(
        "CopyFile failed",
        thrownBy([&]
                 { File::Copy(FilePath((temp / "nothing").c_str()), other, File::CopyReplace); })
            .GetMessage());
}

TEST(FileRecycle, MovesFileIntoTrashWithRecord)
{
    TempFolder temp;
    std::string const dataHome = temp / "data";
    char const* previous = std::getenv("XDG_DATA_HOME");
    std::string const saved = previous != nullptr ? previous : "";
    ::setenv("XDG_DATA_HOME", dataHome.c_str(), 1);

    std::string const original = temp.Write("docs/a b.txt", "first");
    File file{FilePath(original.c_str())};
    EXPECT_TRUE(file.Recycle(String()));
    EXPECT_FALSE(file.Exists());
    EXPECT_EQ("first", ReadFile(dataHome + "/Trash/files/a b.txt"));
    std::string const record = ReadFile(dataHome + "/Trash/info/a b.txt.trashinfo");
    EXPECT_EQ(0u, record.find("[Trash Info]\nPath="));
    EXPECT_NE(std::string::npos, record.find("/docs/a%20b.txt\nDeletionDate=")) << record;

    // A second file of the same name gets a name of its own in the trash.
    temp.Write("docs/a b.txt", "second");
    EXPECT_TRUE(file.Recycle(String()));
    EXPECT_EQ("first", ReadFile(dataHome + "/Trash/files/a b.txt"));
    int seconds = 0;
    for (auto const& entry : std::filesystem::directory_iterator(dataHome + "/Trash/files"))
        seconds += ReadFile(entry.path().string()) == "second" ? 1 : 0;
    EXPECT_EQ(1, seconds);

    // Nothing to recycle.
    EXPECT_FALSE(file.Recycle(String()));

    if (previous != nullptr)
        ::setenv("XDG_DATA_HOME", saved.c_str(), 1);
    else
        ::unsetenv("XDG_DATA_HOME");
}

TEST(FileIOException, ReportsFolderOverPathAndDescribesCodes)
{
    FileIO const withPath("Remove failed", FilePath("/a/b.txt"), 5, 2, "x.cpp", 12);
    EXPECT_EQ("Base:\n\tRemove failed\n\tx.cpp (12): Thrown, GetLastError(): 0\n"
              "\nFileIO:\n/a/b.txt: Remove error",
              withPath.ToString());
    EXPECT_STREQ("FileIO", withPath.GetTypeName());

    FileIO const withFolder("rmdir() failed", FilePath("/a/b.txt"), FolderPath("/c/d"), 4, 0);
    String const text = withFolder.ToString();
    EXPECT_TRUE(text.EndsWith("\nFileIO:\n/c/d/: Close error")) << text;

    FileIO const unknown("odd", FilePath("/x"), 9, 0);
    EXPECT_TRUE(unknown.ToString().EndsWith(" Unknown error"));
    EXPECT_TRUE(unknown.ToString().EndsWith("/x:  Unknown error"));

    char const* expected[] = {"File not found", "Open error",   "Read error",   "Write error",
                              "Close error",    "Remove error", "Rename error", "Unexpected error"};
    for (int code = 0; code < 8; ++code)
        EXPECT_EQ(String(expected[code]), FileIO::DescribeCode(code));
    EXPECT_EQ(" Unknown error", FileIO::DescribeCode(-1));
}
