#include "TvBase/Util/detail/Spawn.h"

#include <signal.h>

extern char** environ;

namespace Util
{
namespace detail
{

pid_t SpawnProgram(std::vector<char const*> arguments, posix_spawn_file_actions_t const* actions,
                   bool searchPath)
{
    if (arguments.empty())
        return -1;
    posix_spawnattr_t attributes;
    if (posix_spawnattr_init(&attributes) != 0)
        return -1;
    sigset_t none;
    sigemptyset(&none);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    arguments.push_back(nullptr);
    char* const* argv = const_cast<char* const*>(arguments.data());
    pid_t child = 0;
    int const failed = searchPath
                           ? posix_spawnp(&child, arguments[0], actions, &attributes, argv, environ)
                           : posix_spawn(&child, arguments[0], actions, &attributes, argv, environ);
    posix_spawnattr_destroy(&attributes);
    return failed == 0 ? child : -1;
}

} // namespace detail
} // namespace Util
