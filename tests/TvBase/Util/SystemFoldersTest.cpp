#include "TvBase/Util/SystemFolders.h"

#include "TvBase/Util/FilePath.h"

#include "tests/TvBase/Util/detail/TempConfigHome.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

using TestSupport::ScopedEnv;
using TestSupport::TempFolder;

TEST(WellKnownFolders, FollowTheEnvironmentOrFallBack)
{
    TempFolder temp;
    ScopedEnv home("HOME", "/home/tester");
    ScopedEnv tmp("TMPDIR", "/var/tmp/mine");
    ScopedEnv data("XDG_DATA_HOME", "/data/home");
    ScopedEnv config("XDG_CONFIG_HOME", temp.Path().c_str());

    EXPECT_EQ(Util::GetSystemTempFolder().ToString(), "/var/tmp/mine/");
    EXPECT_EQ(Util::GetUserApplicationDataFolder().ToString(), "/data/home/");
    EXPECT_EQ(Util::GetSystemApplicationDataFolder().ToString(), "/usr/local/share/");
    EXPECT_EQ(Util::GetUserFolder().ToString(), "/home/tester/");
    EXPECT_EQ(Util::GetSystemRootFolder().ToString(), "/");
    // Without xdg-user-dirs settings, the usual names under the home folder.
    EXPECT_EQ(Util::GetDocumentsFolder().ToString(), "/home/tester/Documents/");
    EXPECT_EQ(Util::GetDesktopFolder().ToString(), "/home/tester/Desktop/");

    // With them, what they say: "$HOME/..." or an absolute path; anything else is ignored.
    {
        std::ofstream dirs(temp.Path() + "/user-dirs.dirs");
        dirs << "# written by xdg-user-dirs-update\n"
                "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
                "XDG_DOCUMENTS_DIR=\"/srv/docs\"\n";
    }
    EXPECT_EQ(Util::GetDesktopFolder().ToString(), "/home/tester/Schreibtisch/");
    EXPECT_EQ(Util::GetDocumentsFolder().ToString(), "/srv/docs/");
    {
        std::ofstream dirs(temp.Path() + "/user-dirs.dirs");
        dirs << "XDG_DOCUMENTS_DIR=\"relative/docs\"\nXDG_DESKTOP_DIR=\"unterminated\n";
    }
    EXPECT_EQ(Util::GetDocumentsFolder().ToString(), "/home/tester/Documents/");
    EXPECT_EQ(Util::GetDesktopFolder().ToString(), "/home/tester/Desktop/");
    { // Fall back when the environment is silent.
        ScopedEnv home("HOME", "/home/tester");
        ScopedEnv tmp("TMPDIR", nullptr);
        ScopedEnv data("XDG_DATA_HOME", nullptr);
        EXPECT_EQ(Util::GetSystemTempFolder().ToString(), "/tmp/");
        EXPECT_EQ(Util::GetUserApplicationDataFolder().ToString(), "/home/tester/.local/share/");

        ScopedEnv emptyTmp("TMPDIR", "");
        EXPECT_EQ(Util::GetSystemTempFolder().ToString(), "/tmp/");
    }
    { // Font folders in order.
        ScopedEnv home("HOME", "/home/tester");
        std::vector<FolderPath> fonts = Util::GetFontFolders();
        ASSERT_EQ(fonts.size(), 3u);
        EXPECT_EQ(fonts[0].ToString(), "/usr/share/fonts/");
        EXPECT_EQ(fonts[1].ToString(), "/usr/local/share/fonts/");
        EXPECT_EQ(fonts[2].ToString(), "/home/tester/.local/share/fonts/");
    }
}

TEST(ModuleDirectory, IsTheFolderOfTheRunningProgram)
{
    String folder = Util::GetModuleDirectory("", nullptr, true);
    EXPECT_EQ(FolderPath(folder), FolderPath(TV_BINARY_DIR "/tests"));
    EXPECT_TRUE(folder.EndsWith("/"));
    // No bundles here: keeping one or not makes no difference.
    EXPECT_EQ(Util::GetModuleDirectory("other", nullptr, false), folder);
}
