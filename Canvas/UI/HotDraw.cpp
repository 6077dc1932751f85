#include "Canvas/UI/HotDraw.h"

namespace UI
{

int g_hotDrawMode = 0;
bool g_bHotDrawTextOnly = false;
bool g_hotDrawApplies = false;
TextProfilingCallback g_fnTextProfilingCallback = nullptr;
void* g_pTextProfilingCallbackInstance = nullptr;

} // namespace UI
