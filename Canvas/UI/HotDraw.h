#pragma once

namespace UI
{

/// When repainted regions are marked in a flashing red, to see what a change repaints:
/// 0 never, 1 while Caps Lock is on, 2 while the screen cursor is within 0 to 19 on both axes,
/// 3 always. UI thread only.
extern int g_hotDrawMode;
/// With hot-draw on, mark only drawn text instead of whole regions.
extern bool g_bHotDrawTextOnly;
/// Whether hot-draw applies to the paint under way; the frame sets it for the length of its
/// pass, so that the draw context can mark text.
extern bool g_hotDrawApplies;

/// Told about every drawn text, for counting what a paint renders: the instance, 0, the text's
/// length in bytes and its characters (not zero-terminated).
typedef void (*TextProfilingCallback)(void* instance, int kind, unsigned int length,
                                      char const* characters);
extern TextProfilingCallback g_fnTextProfilingCallback;
extern void* g_pTextProfilingCallbackInstance;

} // namespace UI
