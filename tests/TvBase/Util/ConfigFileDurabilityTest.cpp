#include "TvBase/Util/ConfigFile.h"

#include "tests/TvBase/Util/detail/TempConfigHome.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using TestSupport::ReadSettingsFile;
using TestSupport::TempConfigHome;
using TestSupport::WriteSettingsFile;
using Util::ConfigFile;

namespace
{

bool exists(std::string const& path)
{
    struct stat info;
    return lstat(path.c_str(), &info) == 0;
}

std::size_t valueCount(ConfigFile const& config, char const* key)
{
    std::vector<String> names;
    config.GetValueNames(names, key);
    return names.size();
}

/// Runs `body` in a child process and returns its exit status (-1 when it did not exit).
template <typename Body>
int inChild(Body body)
{
    pid_t pid = fork();
    if (pid == 0)
        _exit(body());
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

namespace
{

/// A property list whose one value is `depth` arrays, each inside the one before.
std::string nestedXml(int depth)
{
    std::string text = "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict><key>deep</key>";
    for (int i = 0; i < depth; ++i)
        text += "<array>";
    for (int i = 0; i < depth; ++i)
        text += "</array>";
    return text + "<key>k1</key><string>v</string></dict></plist>\n";
}

/// The same in the binary form: object 0 the dictionary, 1 its key, 2 onwards the arrays.
std::string nestedBinary(int depth)
{
    auto bigEndian = [](std::string& out, std::uint64_t value, int size)
    {
        for (int i = size - 1; i >= 0; --i)
            out += static_cast<char>((value >> (8 * i)) & 0xFF);
    };
    std::uint64_t const count = static_cast<std::uint64_t>(depth) + 2;
    std::string text = "bplist00";
    std::vector<std::uint64_t> offsets;
    offsets.push_back(text.size());
    text += '\xD1';
    bigEndian(text, 1, 4);
    bigEndian(text, 2, 4);
    offsets.push_back(text.size());
    text += "\x54"
            "deep";
    for (int i = 0; i < depth; ++i)
    {
        offsets.push_back(text.size());
        text += i + 1 < depth ? '\xA1' : '\xA0';
        if (i + 1 < depth)
            bigEndian(text, static_cast<std::uint64_t>(i) + 3, 4);
    }
    std::uint64_t const table = text.size();
    for (std::uint64_t offset : offsets)
        bigEndian(text, offset, 4);
    text += std::string(6, '\0') + "\x04\x04";
    bigEndian(text, count, 8);
    bigEndian(text, 0, 8);
    bigEndian(text, table, 8);
    return text;
}

} // namespace

TEST(ConfigFileCorruption, DamagedFilesReadEmptyAndAreKeptAside)
{
    TempConfigHome home;
    std::string file = home.UserFolder() + "com.test.corrupt.plist";
    std::string garbage = "<?xml version=\"1.0\"?><plist><dict><key>a</key><string>x";
    WriteSettingsFile(file, garbage);

    ConfigFile config("com.test.corrupt");
    EXPECT_EQ(config.GetString("a", "default"), "default");
    EXPECT_EQ(ReadSettingsFile(file + ".corrupt"), garbage);
    EXPECT_FALSE(exists(file));

    // New values go to a new file; the damaged one stays aside untouched.
    config.SetString("a", "fresh");
    config.Synchronize();
    EXPECT_EQ(ReadSettingsFile(file + ".corrupt"), garbage);
    home.SwitchToOtherView();
    ConfigFile other("com.test.corrupt");
    EXPECT_EQ(other.GetString("a"), "fresh");

    // A second damage keeps the first copy and sets the new one beside it.
    WriteSettingsFile(file, "not a property list");
    other.SetString("b", "mine");
    other.Synchronize();
    EXPECT_EQ(ReadSettingsFile(file + ".corrupt"), garbage);
    EXPECT_EQ(ReadSettingsFile(file + ".corrupt.1"), "not a property list");
    // The value written before the damage was lost with the file, but the pending one survives.
    EXPECT_EQ(other.GetString("a", "lost"), "lost");
    EXPECT_EQ(other.GetString("b"), "mine");
    home.SwitchToOtherView();
    EXPECT_EQ(ConfigFile("com.test.corrupt").GetString("b"), "mine");
    { // Every kind of damage is kept aside.
        TempConfigHome home;
        // A good file cut in the middle, a root that is not a dictionary, binary junk.
        ConfigFile good("com.test.good");
        for (int i = 0; i < 50; ++i)
            good.SetString(String("k%1").Arg(i), "some value");
        good.Synchronize();
        std::string whole = ReadSettingsFile(home.UserFolder() + "com.test.good.plist");
        ASSERT_GT(whole.size(), 100u);

        struct Case
        {
            char const* domain;
            std::string text;
        };
        Case const cases[] = {
            {"com.test.cut", whole.substr(0, whole.size() / 2)},
            {"com.test.array", "<?xml version=\"1.0\"?><plist version=\"1.0\"><array/></plist>"},
            {"com.test.junk", std::string("\x00\x01\xFF\xFE junk", 9)},
        };
        for (Case const& c : cases)
        {
            std::string file = home.UserFolder() + c.domain + ".plist";
            WriteSettingsFile(file, c.text);
            ConfigFile config(c.domain);
            EXPECT_TRUE(config.GetString("k1").IsNull()) << c.domain;
            EXPECT_EQ(ReadSettingsFile(file + ".corrupt"), c.text) << c.domain;
        }

        // A folder where the file should be is moved aside as well.
        std::string folder = home.UserFolder() + "com.test.folder.plist";
        mkdir(folder.c_str(), 0700);
        ConfigFile config("com.test.folder");
        config.SetString("k", "v");
        config.Synchronize();
        struct stat info;
        ASSERT_EQ(stat((folder + ".corrupt").c_str(), &info), 0);
        EXPECT_TRUE(S_ISDIR(info.st_mode));
        home.SwitchToOtherView();
        EXPECT_EQ(ConfigFile("com.test.folder").GetString("k"), "v");
    }
    { // Nesting beyond sane depth is damage.
        TempConfigHome home;
        struct Case
        {
            char const* domain;
            std::string text;
            bool damaged;
        };
        Case const cases[] = {
            {"com.test.xml100", nestedXml(100), false},
            {"com.test.binary100", nestedBinary(100), false},
            {"com.test.xml30000", nestedXml(30000), true},
            {"com.test.xml100000", nestedXml(100000), true},
            {"com.test.binary100000", nestedBinary(100000), true},
        };
        for (Case const& c : cases)
        {
            std::string file = home.UserFolder() + c.domain + ".plist";
            WriteSettingsFile(file, c.text);
            ConfigFile config(c.domain);
            std::vector<String> names;
            config.GetValueNames(names, "");
            EXPECT_EQ(names.empty(), c.damaged) << c.domain;
            EXPECT_EQ(exists(file + ".corrupt"), c.damaged) << c.domain;
            // Writing goes on: over the good file, or into a fresh one.
            config.SetString("after", "yes");
            config.Synchronize();
            home.SwitchToOtherView();
            EXPECT_EQ(ConfigFile(c.domain).GetString("after"), "yes") << c.domain;
        }
    }
    { // Special files are damage and never waited on.
        TempConfigHome home;
        WriteSettingsFile(home.UserFolder() + "placeholder", "");
        std::string fifo = home.UserFolder() + "com.test.fifo.plist";
        ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
        std::string device = home.UserFolder() + "com.test.device.plist";
        ASSERT_EQ(symlink("/dev/zero", device.c_str()), 0);
        for (char const* domain : {"com.test.fifo", "com.test.device"})
        {
            ConfigFile config(domain);
            EXPECT_TRUE(config.GetString("k").IsNull()) << domain;
            EXPECT_TRUE(exists(home.UserFolder() + domain + ".plist.corrupt")) << domain;
            config.SetString("k", "v");
            config.Synchronize();
            home.SwitchToOtherView();
            EXPECT_EQ(ConfigFile(domain).GetString("k"), "v") << domain;
        }
    }
}

TEST(ConfigFileCorruption, HarmlessReadOnlyAndLinkedFiles)
{
    TempConfigHome home;
    // An empty file holds nothing to lose.
    std::string empty = home.UserFolder() + "com.test.empty.plist";
    WriteSettingsFile(empty, "");
    ConfigFile config("com.test.empty");
    EXPECT_TRUE(config.GetString("k").IsNull());
    EXPECT_FALSE(exists(empty + ".corrupt"));

    // A damaged any-user file reads as empty but is not this process's to move.
    std::string system = home.SystemFolder() + "com.test.system.plist";
    WriteSettingsFile(system, "<plist><dict><key>");
    ConfigFile other("com.test.system");
    EXPECT_TRUE(other.GetString("k").IsNull());
    other.SetString("k", "v");
    other.Synchronize();
    EXPECT_EQ(ReadSettingsFile(system), "<plist><dict><key>");
    EXPECT_FALSE(exists(system + ".corrupt"));
    EXPECT_EQ(other.GetString("k"), "v");
    { // Writes go through a symbolic link to its target.
        TempConfigHome home;
        std::string target = home.Root() + "/elsewhere/linked.plist";
        WriteSettingsFile(
            target,
            "<plist version=\"1.0\"><dict><key>old</key><string>kept</string></dict></plist>");
        WriteSettingsFile(home.UserFolder() + "placeholder", "");
        std::string link = home.UserFolder() + "com.test.link.plist";
        ASSERT_EQ(symlink("../../elsewhere/linked.plist", link.c_str()), 0);

        ConfigFile config("com.test.link");
        EXPECT_EQ(config.GetString("old"), "kept");
        config.SetString("new", "written");
        config.Synchronize();

        struct stat info;
        ASSERT_EQ(lstat(link.c_str(), &info), 0);
        EXPECT_TRUE(S_ISLNK(info.st_mode)) << "the link became a file of its own";
        std::string const text = ReadSettingsFile(target);
        EXPECT_NE(text.find("written"), std::string::npos);
        EXPECT_NE(text.find("kept"), std::string::npos);
        EXPECT_FALSE(exists(target + ".tmp"));
        EXPECT_FALSE(exists(link + ".tmp"));
    }
}

TEST(ConfigFileProcesses, TwoWritersAtOnceLoseNothing)
{
    TempConfigHome home;
    int const count = 500;
    int gate[2];
    ASSERT_EQ(pipe(gate), 0);

    pid_t writers[2];
    for (int w = 0; w < 2; ++w)
    {
        writers[w] = fork();
        ASSERT_GE(writers[w], 0);
        if (writers[w] == 0)
        {
            // Both start together, when the parent closes the gate.
            close(gate[1]);
            char byte;
            while (read(gate[0], &byte, 1) > 0)
            {
            }
            ConfigFile config("com.test.race");
            for (int i = 0; i < count; ++i)
            {
                config.SetInt(String("writer%1/key%2").Arg(w).Arg(i), i);
                // Often enough that the two interleave hundreds of times.
                if (i % 3 == 0 || i == count - 1)
                    config.Synchronize();
            }
            _exit(0);
        }
    }
    close(gate[0]);
    close(gate[1]);
    for (pid_t writer : writers)
    {
        int status = 0;
        ASSERT_EQ(waitpid(writer, &status, 0), writer);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }

    ConfigFile config("com.test.race");
    EXPECT_EQ(valueCount(config, "writer0"), static_cast<std::size_t>(count));
    EXPECT_EQ(valueCount(config, "writer1"), static_cast<std::size_t>(count));
    for (int i = 0; i < count; i += 37)
    {
        EXPECT_EQ(config.GetInt(String("writer0/key%1").Arg(i), -1), i);
        EXPECT_EQ(config.GetInt(String("writer1/key%1").Arg(i), -1), i);
    }
    EXPECT_FALSE(exists(home.UserFolder() + "com.test.race.plist.corrupt"));
}

TEST(ConfigFileProcesses, WriterKilledDuringSynchronizeLeavesAReadableFile)
{
    TempConfigHome home;
    int const base = 3000;
    {
        ConfigFile config("com.test.killed");
        std::vector<unsigned char> blob(200000, 0x5A);
        config.SetBinary("blob", blob.data(), blob.size());
        for (int i = 0; i < base; ++i)
            config.SetString(String("base/%1").Arg(i), "a value of some length to write");
    }

    for (int round = 0; round < 12; ++round)
    {
        int ticks[2];
        ASSERT_EQ(pipe(ticks), 0);
        pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
        {
            close(ticks[0]);
            ConfigFile config("com.test.killed");
            for (int n = 0;; ++n)
            {
                config.SetInt(String("round%1/%2").Arg(round).Arg(n), n);
                // Tell the parent a Synchronize is starting now.
                if (write(ticks[1], "x", 1) != 1)
                    _exit(1);
                config.Synchronize();
            }
        }
        close(ticks[1]);
        // Let a few writes complete, then kill the writer as its next one starts.
        char byte;
        for (int seen = 0; seen < 1 + round % 4; ++seen)
            ASSERT_EQ(read(ticks[0], &byte, 1), 1);
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        close(ticks[0]);
        EXPECT_TRUE(WIFSIGNALED(status));

        home.SwitchToOtherView();
        ConfigFile reader("com.test.killed");
        EXPECT_EQ(valueCount(reader, "base"), static_cast<std::size_t>(base)) << round;
        EXPECT_GE(valueCount(reader, String("round%1").Arg(round).CStr()), round % 4u) << round;
        std::vector<unsigned char> blob;
        EXPECT_TRUE(reader.GetBinary("blob", blob));
        EXPECT_EQ(blob.size(), 200000u);
        EXPECT_FALSE(exists(home.UserFolder() + "com.test.killed.plist.corrupt")) << round;
    }

    // A stale temporary from a killed writer does not stop the next one.
    ConfigFile after("com.test.killed");
    after.SetString("after", "yes");
    after.Synchronize();
    home.SwitchToOtherView();
    EXPECT_EQ(ConfigFile("com.test.killed").GetString("after"), "yes");
}

TEST(ConfigFileProcesses, PendingValuesAreWrittenAtExit)
{
    TempConfigHome home;
    int status = inChild(
        []
        {
            // Never destroyed and never synchronised by hand: only the end of the process writes.
            static ConfigFile* config = new ConfigFile("com.test.exit");
            config->SetString("written", "at exit");
            std::exit(0);
            return 1;
        });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(ConfigFile("com.test.exit").GetString("written"), "at exit");
}

TEST(ConfigFileCorruption, UnreadableFileIsKeptAsideNotOverwritten)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind the super-user";
    TempConfigHome home;
    std::string file = home.UserFolder() + "com.test.locked.plist";
    WriteSettingsFile(
        file, "<plist version=\"1.0\"><dict><key>k</key><string>old</string></dict></plist>");
    chmod(file.c_str(), 0);
    ConfigFile config("com.test.locked");
    EXPECT_TRUE(config.GetString("k").IsNull());
    config.SetString("k", "new");
    config.Synchronize();
    chmod((file + ".corrupt").c_str(), 0600);
    EXPECT_NE(ReadSettingsFile(file + ".corrupt").find("old"), std::string::npos);
    EXPECT_NE(ReadSettingsFile(file).find("new"), std::string::npos);
}
