#include "TvBase/Util/LaunchURL.h"

#include <errno.h>
#include <signal.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>

#include <system_error>
#include <thread>

extern char** environ;

namespace Util
{

namespace
{

/// Starts `xdg-open` with `argument` as its only argument, straight from PATH, with no shell.
bool spawnOpener(String const& argument)
{
    posix_spawnattr_t attributes;
    if (posix_spawnattr_init(&attributes) != 0)
        return false;
    // The opener starts with no blocked signals and the default SIGPIPE, whatever this
    // process has set for itself.
    sigset_t none;
    sigemptyset(&none);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    char program[] = "xdg-open";
    char* const arguments[] = {program, const_cast<char*>(argument.CStr()), nullptr};
    pid_t child = 0;
    int const failed = posix_spawnp(&child, program, nullptr, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    if (failed != 0)
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

} // namespace

bool LaunchURL(String const& url, bool isFile)
{
    if (url.IsEmpty())
        return false;
    if (isFile)
        return spawnOpener(url[0] == '-' ? String("./") + url : url);
    if (url[0] == '-')
        return false;
    return spawnOpener(url.Replace(' ', String("%20")));
}

bool LaunchPath(String const& path)
{
    return LaunchURL(path, true);
}

} // namespace Util
