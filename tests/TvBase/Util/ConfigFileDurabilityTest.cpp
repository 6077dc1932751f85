#include "TvBase/Util/ConfigFile.h"

#include "tests/TvBase/Util/detail/TempConfigHome.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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

TEST(ConfigFileCorruption, DamagedFileReadsEmptyAndIsKeptAside)
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
}

TEST(ConfigFileCorruption, EveryKindOfDamageIsKeptAside)
{
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

TEST(ConfigFileCorruption, HarmlessOrReadOnlyFilesStayWhereTheyAre)
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
