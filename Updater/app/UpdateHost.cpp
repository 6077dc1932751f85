#include "Updater/app/UpdateHost.h"

#include "TvBase/Network/DeploymentURL.h"

#include <cstdlib>

#ifndef TV_UPDATE_HOST
#error "TV_UPDATE_HOST must name the update host of this build"
#endif

namespace Updater
{

char const* const versionsFilePath = "/products/versions/versions.txt";

String GetVersionsURL()
{
    return Network::GetDeploymentURL("TV_UPDATE_HOST", TV_UPDATE_HOST, versionsFilePath);
}

String GetUpdateHostSetting()
{
    char const* overrideHost = std::getenv("TV_UPDATE_HOST");
    return overrideHost && *overrideHost ? String(overrideHost) : String(TV_UPDATE_HOST);
}

} // namespace Updater
