#pragma once

#include <spawn.h>
#include <sys/types.h>

#include <vector>

namespace Util
{
namespace detail
{

/// Starts `arguments` (the program first) straight, with no shell, with no blocked signals and
/// the default SIGPIPE whatever this process has set for itself. `actions` (may be null) sets up
/// the child's descriptors; `searchPath` looks the program up on PATH. The child's id, or -1
/// when it could not be started.
pid_t SpawnProgram(std::vector<char const*> arguments, posix_spawn_file_actions_t const* actions,
                   bool searchPath);

} // namespace detail
} // namespace Util
