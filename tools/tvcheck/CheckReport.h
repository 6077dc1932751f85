#pragma once

#include "Updater/app/UpdateEntry.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace Updater
{

/// One line per offered update: product, installed version, available version and link,
/// separated by tabs. Tabs, line breaks and other control bytes inside a field become blanks,
/// so that every update stays one line of four fields.
std::string FormatUpdatesAsLines(std::vector<boost::shared_ptr<UpdateEntry>> const& updates);

/// A JSON array of objects with the members "product", "installed", "available" and "link",
/// ending in a line break. Bytes that are not valid UTF-8 become U+FFFD.
std::string FormatUpdatesAsJson(std::vector<boost::shared_ptr<UpdateEntry>> const& updates);

/// A failed check for scripts that read JSON: {"error": "<reason>"} and a line break.
std::string FormatFailureAsJson(std::string const& reason);

} // namespace Updater
