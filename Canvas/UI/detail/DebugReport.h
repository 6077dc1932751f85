#pragma once

#include "TvBase/Util/String.h"

namespace UI
{
namespace detail
{

/// Takes a composed diagnostic that the window system reports but never shows (duplicate child
/// names, unimplemented metrics, unknown timer ids). It reaches standard error only when the
/// environment variable TV_DEBUG_REPORTS is set; otherwise it is dropped.
void DebugReport(String const& text);
/// Whether reports reach standard error, so that a caller in a hot path composes one only then.
bool DebugReportsEnabled();

} // namespace detail
} // namespace UI
