#include "tests/Canvas/UI/CanvasTestSupport.h"

#include <cstdlib>
#include <string>

namespace
{

struct PrivateSettings
{
    TestSupport::TempFolder folder{"tv-canvas-settings"};

    PrivateSettings()
    {
        std::string config = folder.Path() + "/config";
        std::string data = folder.Path() + "/data";
        setenv("XDG_CONFIG_HOME", config.c_str(), 1);
        setenv("XDG_DATA_HOME", data.c_str(), 1);
        setenv("XDG_CONFIG_DIRS", (folder.Path() + "/etc").c_str(), 1);
    }
};

// Set up during static initialisation, so that the first settings handle of the process
// already sees the private folders.
PrivateSettings privateSettings;

} // namespace
