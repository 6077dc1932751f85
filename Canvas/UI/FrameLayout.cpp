// The frame's doors to its layout file: the same roads as a window's, for the top level.
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/detail/LayoutPath.h"

namespace UI
{

bool Frame::LoadLayout()
{
    return detail::LoadNamedLayout(this, nullptr, layoutName);
}

bool Frame::SaveLayout()
{
    return detail::SaveNamedLayout(this, nullptr, layoutName, false);
}

} // namespace UI
