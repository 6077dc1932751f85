#pragma once

namespace UI
{

/// When repainted regions are marked in a flashing red, to see what a change repaints:
/// 0 never, 1 while Caps Lock is on, 2 while the screen cursor is within 0 to 19 on both axes,
/// 3 always. UI thread only.
extern int g_hotDrawMode;
/// With hot-draw on, mark only drawn text instead of whole regions.
extern bool g_bHotDrawTextOnly;

} // namespace UI
