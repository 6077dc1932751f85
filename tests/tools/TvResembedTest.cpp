#include "TvBase/Util/FileIOException.h"
#include "TvBase/Util/ResourceManager.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>

using TestSupport::ReadFile;
using TestSupport::TempFolder;

namespace
{

struct PackerRun
{
    int status;
    std::string output;
};

/// Runs the packer with `arguments` (already quoted for the shell) and collects its standard
/// output and exit status.
PackerRun packer(std::string const& arguments)
{
    std::string const command =
        std::string("'") + TV_BINARY_DIR + "/bin/tvresembed' " + arguments + " 2>/dev/null";
    PackerRun run{-1, std::string()};
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return run;
    char chunk[4096];
    size_t got;
    while ((got = std::fread(chunk, 1, sizeof chunk, pipe)) > 0)
        run.output.append(chunk, got);
    int const status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

std::string quoted(std::string const& path)
{
    return "'" + path + "'";
}

std::string text(array_ref<unsigned char const> bytes)
{
    return bytes.data == nullptr ? std::string("<null>") : std::string(bytes.begin(), bytes.end());
}

} // namespace

TEST(TvResembed, PackedFolderLoadsInResourceManager)
{
    TempFolder temp;
    std::string binary(300, '\0');
    for (int i = 0; i < 300; ++i)
        binary[i] = static_cast<char>(i * 7);
    temp.Write("in/UI/Layout/Main.layout", "<layout name=\"Main\"/>");
    temp.Write("in/UI/png/icon.png", binary);
    temp.Write("in/top.txt", "top");
    temp.Write("in/.hidden", "skipped");
    temp.Write("in/.git/config", "skipped");

    PackerRun const pack = packer("pack " + quoted(temp / "in") + " " +
                                  quoted(temp / "app/Resources/resources.resembed"));
    ASSERT_EQ(0, pack.status);

    Util::ResourceManager resources;
    ASSERT_TRUE(resources.Init(FolderPath((temp / "app").c_str())));
    EXPECT_EQ((std::vector<String>{"UI/Layout/Main.layout", "UI/png/icon.png", "top.txt"}),
              resources.GetFilenames());
    EXPECT_EQ("<layout name=\"Main\"/>", text(resources.GetFile("UI/Layout/Main.layout")));
    EXPECT_EQ(binary, text(resources.GetFile("UI/png/icon.png")));
    EXPECT_EQ("top", text(resources.GetFile("top.txt")));

    PackerRun const list = packer("list " + quoted(temp / "app/Resources/resources.resembed"));
    EXPECT_EQ(0, list.status);
    EXPECT_EQ("UI/Layout/Main.layout\t21\nUI/png/icon.png\t300\ntop.txt\t3\n", list.output);

    PackerRun const extract =
        packer("extract " + quoted(temp / "app/Resources/resources.resembed") + " UI/png/icon.png");
    EXPECT_EQ(0, extract.status);
    EXPECT_EQ(binary, extract.output);
}

TEST(TvResembed, EmptyFolderGivesEmptyResourceFile)
{
    TempFolder temp;
    std::filesystem::create_directories(temp / "empty/UI/Layout");
    ASSERT_EQ(0, packer("pack " + quoted(temp / "empty") + " " +
                        quoted(temp / "app/Resources/resources.resembed"))
                     .status);
    EXPECT_EQ(std::string(1, '\0'), ReadFile(temp / "app/Resources/resources.resembed"));
    Util::ResourceManager resources;
    EXPECT_TRUE(resources.Init(FolderPath((temp / "app").c_str())));
    EXPECT_TRUE(resources.GetFilenames().empty());
}

TEST(TvResembed, FifosAndDevicesAreFailuresNotWaits)
{
    TempFolder temp;
    std::string const fifo = temp / "waiting.resembed";
    ASSERT_EQ(0, ::mkfifo(fifo.c_str(), 0600));
    for (std::string const& command :
         {"list " + quoted(fifo), "extract " + quoted(fifo) + " a", std::string("list /dev/zero")})
        EXPECT_EQ(1, packer(command).status) << command;

    // A FIFO inside a folder being packed is no resource and is left out.
    temp.Write("in/a", "a");
    ASSERT_EQ(0, ::mkfifo((temp / "in/b").c_str(), 0600));
    ASSERT_EQ(0, packer("pack " + quoted(temp / "in") + " " + quoted(temp / "out")).status);
    std::string const listing = packer("list " + quoted(temp / "out")).output;
    EXPECT_EQ(0u, listing.find("a\t")) << listing;
    EXPECT_EQ(1, std::count(listing.begin(), listing.end(), '\n')) << listing;

    // The program's own resource file read at start-up.
    std::filesystem::create_directories(temp / "app/Resources");
    ASSERT_EQ(0, ::mkfifo((temp / "app/Resources/resources.resembed").c_str(), 0600));
    Util::ResourceManager resources;
    EXPECT_THROW(resources.Init(FolderPath((temp / "app").c_str())), Util::Exception::FileIO);
}

TEST(TvResembed, UsageErrorsAndFailures)
{
    TempFolder temp;
    EXPECT_EQ(2, packer("").status);
    EXPECT_EQ(2, packer("pack onlyone").status);
    EXPECT_EQ(2, packer("frobnicate a b").status);
    PackerRun const help = packer("--help");
    EXPECT_EQ(0, help.status);
    EXPECT_NE(std::string::npos, help.output.find("tvresembed pack FOLDER OUT"));

    EXPECT_EQ(1, packer("pack " + quoted(temp / "missing") + " " + quoted(temp / "out")).status);
    EXPECT_EQ(1, packer("list " + quoted(temp / "missing")).status);
    temp.Write("in/a", "a");
    ASSERT_EQ(0, packer("pack " + quoted(temp / "in") + " " + quoted(temp / "out")).status);
    EXPECT_EQ(1, packer("extract " + quoted(temp / "out") + " b").status);
    EXPECT_EQ(1, packer("pack " + quoted(temp / "in") + " " + quoted(temp / "in/a/out")).status);
}
