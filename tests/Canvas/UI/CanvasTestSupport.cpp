// Linked into canvas test programs whose tests don't include the header themselves.
#include "tests/Canvas/UI/CanvasTestSupport.h"
