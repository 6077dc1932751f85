#pragma once

#include "TvBase/Util/String.h"

namespace Updater
{

/// The path of the versions file on the update host.
extern char const* const versionsFilePath;

/// The URL of the versions file: `versionsFilePath` on the host named by the environment
/// variable TV_UPDATE_HOST, or else on the host this build was configured with. Null when the
/// environment names an unusable host (see `Network::ComposeHostURL`).
String GetVersionsURL();

/// The host setting that `GetVersionsURL` used, for messages.
String GetUpdateHostSetting();

} // namespace Updater
