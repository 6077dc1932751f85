#include "TvBase/Util/LaunchURL.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

/// Puts a stand-in `program` first on PATH (or, with `alone`, as the only thing on it). It writes
/// its argument count and each argument on a line of its own into a named pipe, which `NextCall`
/// reads: the test waits for the opener itself, not for a guessed time.
class StandInOpener
{
public:
    explicit StandInOpener(char const* program = "xdg-open", bool alone = false)
        : folder("tv-launch"), pipePath(folder.Path() + "/calls")
    {
        EXPECT_EQ(0, mkfifo(pipePath.c_str(), 0600));
        std::string const script =
            folder.Write(program, "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$@\" > '" + pipePath + "'\n");
        chmod(script.c_str(), 0700);
        char const* path = std::getenv("PATH");
        oldPath = path ? path : "";
        setenv("PATH", alone ? folder.Path().c_str() : (folder.Path() + ":" + oldPath).c_str(), 1);
    }
    ~StandInOpener() { setenv("PATH", oldPath.c_str(), 1); }

    /// What one run of the opener wrote: "<count>\n<argument>\n...". Empty after 20 s without
    /// a run, which fails the test instead of hanging it.
    std::string NextCall()
    {
        // Opened afresh for each run, without waiting for a writer: the opener's own open
        // waits for this one, and the poll waits for what it writes.
        int const reader = open(pipePath.c_str(), O_RDONLY | O_NONBLOCK);
        std::string text;
        for (;;)
        {
            pollfd wait = {reader, POLLIN, 0};
            if (poll(&wait, 1, 20000) <= 0)
                break;
            char buffer[512];
            ssize_t const got = read(reader, buffer, sizeof buffer);
            if (got == 0)
                break;
            if (got > 0)
                text.append(buffer, static_cast<std::size_t>(got));
        }
        close(reader);
        return text;
    }

private:
    TestSupport::TempFolder folder;
    std::string pipePath;
    std::string oldPath;
};

} // namespace

TEST(LaunchURL, HandsTheTextOverAsOneArgumentOrRefuses)
{
    StandInOpener opener;
    std::string const tricky = "/tmp/My \"Files\"; rm -rf ~ $(id) `id` 'x'.txt";
    ASSERT_TRUE(Util::LaunchPath(String(tricky.c_str())));
    EXPECT_EQ("1\n" + tricky + "\n", opener.NextCall());

    ASSERT_TRUE(Util::LaunchURL("https://example.invalid/a b?q=\"x\";y", false));
    EXPECT_EQ("1\nhttps://example.invalid/a%20b?q=\"x\";y\n", opener.NextCall());
    { // Falls back to gio without the desktop opener.
        StandInOpener opener("gio", true);
        ASSERT_TRUE(Util::LaunchURL("https://example.invalid/a b", false));
        EXPECT_EQ("2\nopen\nhttps://example.invalid/a%20b\n", opener.NextCall());
    }
    { // File paths keep their spaces and never look like options.
        StandInOpener opener;
        ASSERT_TRUE(Util::LaunchURL("/tmp/two words.pdf", true));
        EXPECT_EQ("1\n/tmp/two words.pdf\n", opener.NextCall());
        ASSERT_TRUE(Util::LaunchURL("--help", true));
        EXPECT_EQ("1\n./--help\n", opener.NextCall());
    }
    { // Refuses what it cannot open.
        StandInOpener opener;
        EXPECT_FALSE(Util::LaunchURL("", false));
        EXPECT_FALSE(Util::LaunchURL(String(), true));
        EXPECT_FALSE(Util::LaunchURL("--version", false));

        // Without any opener on PATH.
        char const* path = std::getenv("PATH");
        std::string const saved = path ? path : "";
        TestSupport::TempFolder empty("tv-noopener");
        setenv("PATH", empty.Path().c_str(), 1);
        EXPECT_FALSE(Util::LaunchURL("https://example.invalid/", false));
        setenv("PATH", saved.c_str(), 1);
    }
}
