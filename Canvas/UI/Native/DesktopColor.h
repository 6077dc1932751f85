#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/checked_value.h"

namespace UI
{
namespace Native
{

/// The colour 0xAARRGGBB (alpha 0xFF) that the desktop shows at `screenPos`, read from the
/// screen itself; not present where the host can't read the screen (no display, a desktop
/// that doesn't let programs read it, a point off the screen).
checked_value<unsigned int> ReadDesktopColor(Point const& screenPos);

} // namespace Native
} // namespace UI
