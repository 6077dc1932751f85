#pragma once

// Canvas tests read and write the shared "com.tavorin" settings and the user's data folder:
// linking CanvasTestSupport.cpp points both at a fresh temp folder for the whole test binary,
// before any test runs.

#include "tests/support/TempFolder.h"
