#include "Canvas/UI/detail/DebugReport.h"

#include <cstdio>
#include <cstdlib>

namespace UI
{
namespace detail
{

bool DebugReportsEnabled()
{
    static bool const enabled = std::getenv("TV_DEBUG_REPORTS") != nullptr;
    return enabled;
}

void DebugReport(String const& text)
{
    if (DebugReportsEnabled())
        std::fprintf(stderr, "%s\n", text.CStr());
}

} // namespace detail
} // namespace UI
