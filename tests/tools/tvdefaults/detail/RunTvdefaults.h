#pragma once

#include "tests/support/RunProgram.h"

namespace TestSupport
{

/// Runs the built `tvdefaults` (path from the build: TVDEFAULTS_PATH) with `args`, in this
/// process's environment, and collects its output.
inline ToolRun RunTvdefaults(std::vector<std::string> const& args)
{
    return RunProgram(TVDEFAULTS_PATH, args);
}

} // namespace TestSupport
