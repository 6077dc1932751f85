#pragma once

#include "TvBase/Util/String.h"

#include <string>
#include <vector>

namespace Updater
{

/// The texts of the updater's two information switches, "--help" and "--version". They count
/// only as the sole argument, so every other command line keeps meaning what it always did
/// (unknown arguments are ignored, "-silent" counts anywhere).
class ProgramInfo
{
public:
    /// True when `args` is exactly one information switch; its text is then printed on the
    /// standard output and the program has nothing else to do.
    static bool PrintIfAsked(std::vector<String> const& args);

    /// The line that tells a user the packed resources are missing, naming where they were
    /// looked for beside `programFolder`.
    static std::string MissingResourcesMessage(std::string const& programFolder);
};

} // namespace Updater
