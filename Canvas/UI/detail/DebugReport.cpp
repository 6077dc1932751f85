#include "Canvas/UI/detail/DebugReport.h"

#include <cstdio>
#include <cstdlib>

namespace UI
{
namespace detail
{

void DebugReport(String const& text)
{
    static bool const enabled = std::getenv("TV_DEBUG_REPORTS") != nullptr;
    if (enabled)
        std::fprintf(stderr, "%s\n", text.CStr());
}

} // namespace detail
} // namespace UI
