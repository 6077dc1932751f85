#include "Updater/app/MarketingURL.h"

#include "TvBase/Network/DeploymentURL.h"

#ifndef TV_WEB_HOST
#error "TV_WEB_HOST must name the web host of this build"
#endif

namespace Updater
{

char const* const marketingPagePath = "/updater/";

String GetMarketingURL()
{
    return Network::GetDeploymentURL("TV_WEB_HOST", TV_WEB_HOST, marketingPagePath);
}

} // namespace Updater
