#include "Canvas/UI/HotDraw.h"

namespace UI
{

int g_hotDrawMode = 0;
bool g_bHotDrawTextOnly = false;

} // namespace UI
