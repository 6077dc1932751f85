#include "TvBase/Util/LaunchURL.h"

#include "TvBase/Util/detail/Spawn.h"

#include <errno.h>
#include <signal.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>

#include <system_error>
#include <thread>
#include <vector>

namespace Util
{

namespace
{

/// Starts `arguments` (the program first, found on PATH) straight, with no shell.
bool spawnOpener(std::vector<char const*> arguments)
{
    pid_t const child = detail::SpawnProgram(std::move(arguments), nullptr, true);
    if (child < 0)
        return false;

    // The opener may run as long as the browser it starts: it is reaped in the background so
    // that the caller never waits and no zombie stays behind.
    try
    {
        std::thread(
            [child]
            {
                int status = 0;
                while (waitpid(child, &status, 0) == -1 && errno == EINTR)
                {
                }
            })
            .detach();
    }
    catch (std::system_error const&)
    {
        // No thread to spare: the opener is left to be reaped when this process ends.
    }
    return true;
}

/// The desktop's opener, or GLib's where the desktop utilities are not installed.
bool startOpener(String const& argument)
{
    return spawnOpener({"xdg-open", argument.CStr()}) ||
           spawnOpener({"gio", "open", argument.CStr()});
}

} // namespace

bool LaunchURL(String const& url, bool isFile)
{
    if (url.IsEmpty())
        return false;
    if (isFile)
        return startOpener(url[0] == '-' ? String("./") + url : url);
    if (url[0] == '-')
        return false;
    return startOpener(url.Replace(' ', String("%20")));
}

bool LaunchPath(String const& path)
{
    return LaunchURL(path, true);
}

} // namespace Util
