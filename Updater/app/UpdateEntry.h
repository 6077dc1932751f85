#pragma once

#include "TvBase/Util/String.h"

#include <vector>

namespace Updater
{

/// One offered update: an installed product whose listed version is newer. Held by
/// `boost::shared_ptr`; a new entry has every field empty.
struct UpdateEntry
{
    /// The product key as the versions file and the settings both name it.
    String productName;
    /// The installed version, the text of the user's setting as it stands.
    String installedVersion;
    /// The listed version, as the versions file writes it.
    String availableVersion;
    /// The page that the "Update" link opens, without any "\n" or "\r".
    String updateUrl;
    /// The fifth field of the line; null when the line has fewer than five fields.
    String extraText;
    /// The fourth field split at ","; empty when the line has fewer than four fields.
    std::vector<String> extraList;
};

} // namespace Updater
