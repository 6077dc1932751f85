#include "Canvas/UI/Native/ScreenShotHost.h"

namespace UI
{
namespace Native
{

namespace
{
// Set once by the host layer at start-up, on the user-interface thread.
ScreenShotHost* installedHost = nullptr;
} // namespace

void SetScreenShotHost(ScreenShotHost* host)
{
    installedHost = host;
}

ScreenShotHost* GetScreenShotHost()
{
    return installedHost;
}

} // namespace Native
} // namespace UI
