#pragma once

#include "TvBase/Util/String.h"

namespace Updater
{

/// The path of the marketing page on the web host.
extern char const* const marketingPagePath;

/// The URL of the marketing page: `marketingPagePath` on the host named by the environment
/// variable TV_WEB_HOST, or else on the web host this build was configured with. Null when the
/// host that applies is unusable (see `Network::ComposeHostURL`).
String GetMarketingURL();

} // namespace Updater
