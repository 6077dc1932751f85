#include "TvBase/Util/FileIOException.h"
#include "TvBase/Util/ResourceManager.h"
#include "TvBase/Util/detail/ResourceDirectory.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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
/// output (with its standard error after it when `withErrors`) and exit status.
PackerRun packer(std::string const& arguments, bool withErrors = false)
{
    std::string const command = std::string("'") + TV_BINARY_DIR + "/bin/tvresembed' " + arguments +
                                (withErrors ? " 2>&1" : " 2>/dev/null");
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

TEST(TvResembed, PackedFoldersLoadInResourceManager)
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
    { // Empty folder gives empty resource file.
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
}

TEST(TvResembed, FailuresAndUsageErrorsNeverWait)
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
    EXPECT_FALSE(resources.Init(FolderPath((temp / "app").c_str())));
    EXPECT_NE(std::string::npos,
              std::string(resources.GetProblem().CStr()).find("not a regular file"))
        << resources.GetProblem().CStr();
    { // Usage errors and failures.
        TempFolder temp;
        EXPECT_EQ(2, packer("").status);
        EXPECT_EQ(2, packer("pack onlyone").status);
        EXPECT_EQ(2, packer("frobnicate a b").status);
        PackerRun const help = packer("--help");
        EXPECT_EQ(0, help.status);
        EXPECT_NE(std::string::npos, help.output.find("tvresembed pack FOLDER OUT"));

        EXPECT_EQ(1,
                  packer("pack " + quoted(temp / "missing") + " " + quoted(temp / "out")).status);
        EXPECT_EQ(1, packer("list " + quoted(temp / "missing")).status);
        temp.Write("in/a", "a");
        ASSERT_EQ(0, packer("pack " + quoted(temp / "in") + " " + quoted(temp / "out")).status);
        EXPECT_EQ(1, packer("extract " + quoted(temp / "out") + " b").status);
        EXPECT_EQ(1,
                  packer("pack " + quoted(temp / "in") + " " + quoted(temp / "in/a/out")).status);
    }
}

TEST(TvResembed, ListAndExtract)
{
    TempFolder temp;
    std::vector<String> const names = {"esc\x1b[31mred", "tab\tnew\nline\r", "back\\slash",
                                       "caf\xc3\xa9",    "c1\xc2\x9b",       "bad\xff\x7f"};
    std::vector<unsigned char> const packed = Util::detail::BuildResourceFile(
        names, std::vector<std::vector<unsigned char>>(names.size(), {'x'}));
    std::string const path = temp.Write("r.resembed", std::string(packed.begin(), packed.end()));
    PackerRun const list = packer("list " + quoted(path));
    EXPECT_EQ(0, list.status);
    EXPECT_EQ("esc\\x1b[31mred\t1\ntab\\tnew\\nline\\r\t1\nback\\\\slash\t1\n"
              "caf\xc3\xa9\t1\nc1\\xc2\\x9b\t1\nbad\\xff\\x7f\t1\n",
              list.output);
    { // List and extract refuse what is no packed file.
        TempFolder temp;
        temp.Write("empty", "");
        std::string const fifo = temp / "fifo";
        ASSERT_EQ(0, ::mkfifo(fifo.c_str(), 0600));
        std::string const big = temp / "big";
        std::filesystem::resize_file(temp.Write("big", ""), Util::ResourceManager::MaxFileSize + 1);

        struct Case
        {
            std::string path;
            char const* says;
        } const cases[] = {
            {"/dev/zero", "not a regular file"},
            {fifo, "not a regular file"},
            {temp / "missing", "No such file"},
            {big, "more than the 100000000 bytes a program loads"},
            {temp / "empty", "empty, not a packed resource file"},
        };
        for (Case const& c : cases)
        {
            PackerRun const list = packer("list " + quoted(c.path), true);
            EXPECT_EQ(1, list.status) << c.path;
            EXPECT_NE(std::string::npos, list.output.find(c.says)) << c.path << ": " << list.output;
            if (std::string(c.says) != "empty, not a packed resource file")
            {
                EXPECT_EQ(1, packer("extract " + quoted(c.path) + " a").status) << c.path;
            }
        }
    }
    { // List reads only the directory.
        // A file just under the limit, nearly all payload: listing it must not load the payload.
        TempFolder temp;
        std::vector<unsigned char> directory = Util::detail::BuildResourceFile({"big.bin"}, {{}});
        unsigned int const payload = static_cast<unsigned int>(Util::ResourceManager::MaxFileSize) -
                                     static_cast<unsigned int>(directory.size());
        for (int shift = 0; shift < 32; shift += 8)
            directory[directory.size() - 5 + shift / 8] =
                static_cast<unsigned char>(payload >> shift);
        std::string const path =
            temp.Write("big.resembed", std::string(directory.begin(), directory.end()));
        std::filesystem::resize_file(path, Util::ResourceManager::MaxFileSize);

        // Run from a small Python: a child's peak counts its parent's size at the spawn, and this
        // test process may be large by now.
        std::string const command =
            "python3 -c 'import resource, subprocess, sys; "
            "r = subprocess.run(sys.argv[2:], stdout=open(sys.argv[1], \"wb\")); "
            "print(r.returncode, resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)' '" +
            temp / "out" + "' '" + TV_BINARY_DIR + "/bin/tvresembed' list '" + path + "'";
        FILE* pipe = ::popen(command.c_str(), "r");
        ASSERT_NE(nullptr, pipe);
        int status = -1;
        long maxrss = -1;
        EXPECT_EQ(2, std::fscanf(pipe, "%d %ld", &status, &maxrss));
        ::pclose(pipe);
        EXPECT_EQ(0, status);
        EXPECT_EQ("big.bin\t" + std::to_string(payload) + "\n", ReadFile(temp / "out"));
        EXPECT_LT(maxrss, 40 * 1024) << "kilobytes resident";
    }
}
