// The file choosers through their real code path: a stand-in `zenity` (or `kdialog`) on PATH
// that records its arguments and answers a path or cancels, and no chooser at all.

#include "Canvas/UI/Native/FileDialog.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

using UI::Native::FileDialog;

namespace
{

/// A folder on PATH (alone) holding a chooser script named `program` that writes its
/// arguments, one a line, to "args" and then prints `answer` and exits with `status`.
struct StandIn
{
    TestSupport::TempFolder folder{"tv-filedialog"};
    std::string savedPath = std::getenv("PATH") ? std::getenv("PATH") : "";

    StandIn(char const* program, std::string const& answer, int status)
    {
        std::string const script =
            folder.Write(program, "#!/bin/sh\nfor a in \"$@\"; do printf '%s\\n' \"$a\"; done > '" +
                                      folder / "args" + "'\nprintf '%s\\n' '" + answer +
                                      "'\nexit " + std::to_string(status) + "\n");
        chmod(script.c_str(), 0755);
        setenv("PATH", folder.Path().c_str(), 1);
    }
    ~StandIn() { setenv("PATH", savedPath.c_str(), 1); }

    std::string Arguments() const
    {
        std::ifstream in(folder / "args");
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
};

} // namespace

TEST(FileDialog, ZenityAnswersThePathAndTheFolderIsRemembered)
{
    FileDialog::SetLastFolder("/data/start");
    StandIn zenity("zenity", "/home/user/pictures/cat.png", 0);
    String path;
    ASSERT_TRUE(FileDialog::OpenFile(nullptr, "Open Picture", "Pictures", "*.png", "png", path));
    EXPECT_EQ(String("/home/user/pictures/cat.png"), path);
    EXPECT_EQ("--file-selection\n--title=Open Picture\n--filename=/data/start/\n"
              "--file-filter=Pictures | *.png\n",
              zenity.Arguments());
    EXPECT_EQ(String("/home/user/pictures"), FileDialog::GetLastFolder());

    // The folder chooser starts in the remembered folder and remembers the folder itself.
    ASSERT_TRUE(FileDialog::OpenFolder(nullptr, "Pick", path));
    EXPECT_EQ("--file-selection\n--title=Pick\n--filename=/home/user/pictures/\n--directory\n",
              zenity.Arguments());
    EXPECT_EQ(String("/home/user/pictures/cat.png"), FileDialog::GetLastFolder());
}

TEST(FileDialog, SaveAddsTheExtensionAndCancelGivesNoPath)
{
    FileDialog::SetLastFolder("/data");
    {
        StandIn zenity("zenity", "/data/report", 0);
        String path;
        ASSERT_TRUE(FileDialog::SaveFile(nullptr, "Save", "report.txt", "txt", path));
        EXPECT_EQ(String("/data/report.txt"), path);
        EXPECT_EQ("--file-selection\n--title=Save\n--filename=/data/report.txt\n--save\n"
                  "--confirm-overwrite\n",
                  zenity.Arguments());
    }
    {
        StandIn cancelled("zenity", "", 1);
        String path("unchanged");
        EXPECT_FALSE(FileDialog::OpenFile(nullptr, "Open", "All", "*", "", path));
        EXPECT_EQ(String("unchanged"), path);
    }
}

TEST(FileDialog, KdialogWhenZenityIsMissingAndNothingWithoutEither)
{
    FileDialog::SetLastFolder("/srv");
    {
        StandIn kdialog("kdialog", "/srv/a.txt", 0);
        String path;
        ASSERT_TRUE(FileDialog::OpenFile(nullptr, "Open", "Text", "*.txt", "txt", path));
        EXPECT_EQ(String("/srv/a.txt"), path);
        EXPECT_EQ("--getopenfilename\n/srv/\n*.txt|Text\n--title\nOpen\n", kdialog.Arguments());
    }
    // Neither program and no frame to prompt over: no path.
    StandIn other("something-else", "/x", 0);
    EXPECT_TRUE(FileDialog::FindProgram("zenity").IsEmpty());
    String path;
    EXPECT_FALSE(FileDialog::OpenFile(nullptr, "Open", "", "", "", path));
}
