#pragma once

// Canvas tests read and write the shared "com.tavorin" settings and the user's data folder:
// including this header points both at a fresh temp folder for the whole test binary, before
// any test runs.

#include "tests/support/TempFolder.h"

#include <cstdlib>

namespace TestSupport
{

struct PrivateCanvasSettings
{
    TempFolder folder{"tv-canvas-settings"};

    PrivateCanvasSettings()
    {
        setenv("XDG_CONFIG_HOME", (folder.Path() + "/config").c_str(), 1);
        setenv("XDG_DATA_HOME", (folder.Path() + "/data").c_str(), 1);
        setenv("XDG_CONFIG_DIRS", (folder.Path() + "/etc").c_str(), 1);
    }
};

// Made during static initialisation, so that the first settings handle of the process already
// sees the private folders; one for the whole program.
inline PrivateCanvasSettings privateCanvasSettings;

} // namespace TestSupport
