#include "Canvas/UI/Native/ImageClipboard.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/ScreenShot.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/SystemFolders.h"
#include "TvBase/Util/detail/Spawn.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <boost/make_shared.hpp>

#include <cstdlib>
#include <string>

namespace UI
{
namespace Native
{

namespace
{

bool environmentSet(char const* name)
{
    char const* value = std::getenv(name);
    return value && *value;
}

/// The full path of `program` in one of PATH's folders; empty when it is in none.
String findOnPath(char const* program)
{
    char const* path = std::getenv("PATH");
    if (!path)
        return String();
    std::string const folders(path);
    std::size_t start = 0;
    while (start <= folders.size())
    {
        std::size_t end = folders.find(':', start);
        if (end == std::string::npos)
            end = folders.size();
        std::string const folder = folders.substr(start, end - start);
        if (!folder.empty())
        {
            std::string const candidate = folder + "/" + program;
            if (access(candidate.c_str(), X_OK) == 0)
                return String(candidate.c_str());
        }
        start = end + 1;
    }
    return String();
}

/// Runs `command` with `inputPath` as its standard input and waits for it; both tools go to
/// the background on their own once they have read the image, to serve the clipboard.
bool runWithInput(std::vector<String> const& command, String const& inputPath)
{
    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0)
        return false;
    posix_spawn_file_actions_addopen(&actions, 0, inputPath.CStr(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    std::vector<char const*> arguments;
    for (String const& part : command)
        arguments.push_back(part.CStr());
    pid_t const child = Util::detail::SpawnProgram(arguments, &actions, false);
    posix_spawn_file_actions_destroy(&actions);
    if (child < 0)
        return false;
    int status = 0;
    while (waitpid(child, &status, 0) == -1)
        if (errno != EINTR)
            return false;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

std::vector<String> ImageClipboard::CommandLine()
{
    if (environmentSet("WAYLAND_DISPLAY"))
    {
        String const program = findOnPath("wl-copy");
        if (!program.IsEmpty())
            return {program, "--type", "image/png"};
    }
    if (environmentSet("DISPLAY"))
    {
        String const program = findOnPath("xclip");
        if (!program.IsEmpty())
            return {program, "-selection", "clipboard", "-t", "image/png"};
    }
    return std::vector<String>();
}

bool ImageClipboard::SetImage(DIBits const& bits)
{
    std::vector<String> const command = CommandLine();
    if (command.empty() || !bits.IsValid())
        return false;
    std::string name =
        (Util::GetSystemTempFolder().ToString() + String("/tv-clipboard-XXXXXX.png")).CStr();
    int const fd = mkstemps(&name[0], 4);
    if (fd < 0)
        return false;
    close(fd);
    String const path(name.c_str());
    bool const written = ScreenShotFromDIBitsToFile(boost::make_shared<DIBits>(bits),
                                                    FilePath(path), nullptr, nullptr, false);
    bool const taken = written && runWithInput(command, path);
    unlink(name.c_str());
    return taken;
}

} // namespace Native
} // namespace UI
