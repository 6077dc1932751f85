#pragma once

// The live design engine and the frame talk to the Design Aid panel of the canvas when there is
// one. The panel is built in its own part of the toolkit; until its header is in the tree every
// call into it is left out, and the engine behaves as it does when the canvas has no panel.

#if __has_include("Canvas/UI/DesignAid.h")
#include "Canvas/UI/DesignAid.h"
#define TV_HAS_DESIGN_AID 1
#else
#define TV_HAS_DESIGN_AID 0
#endif
