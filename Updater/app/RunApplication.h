#pragma once

#include "TvBase/Util/String.h"

#include <vector>

namespace Updater
{

/// True when any argument is exactly "-silent" (byte for byte, in any position).
bool IsSilentRun(std::vector<String> const& args);

} // namespace Updater

/// Runs the whole program behind the entry with the arguments after the program's name. Reads
/// the user's decimal separator first. Returns 0, or 1 with a message on the standard error
/// when there is no display to show windows on.
int runApplication(std::vector<String> const& args);
