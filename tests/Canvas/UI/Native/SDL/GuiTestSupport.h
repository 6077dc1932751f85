#pragma once

// A private X display for tests with real SDL windows, and the outside tools that drive it.

#include "Canvas/UI/Rect.h"

#include <functional>
#include <string>
#include <vector>

namespace UI
{
namespace Test
{

/// Starts a private Xvfb (1280x1024, 24 bits) on a free display number and points DISPLAY at
/// it, once per process; stops it at exit. Without Xvfb an existing DISPLAY is used. Then
/// starts SDL's video part. False (with `reason`) when no display can be opened.
bool EnsureDisplay(std::string& reason);

/// Handles events until `condition` holds or `timeoutMs` pass; true when it held.
bool PumpUntil(std::function<bool()> const& condition, unsigned int timeoutMs = 5000);

/// Runs a command line through the shell; its exit status.
int Run(std::string const& command);
/// Runs a command line and returns what it printed.
std::string RunAndRead(std::string const& command);

/// The screen's pixels in `rect` as 0xFFRRGGBB, read with ImageMagick's `import`; empty when
/// that fails.
std::vector<unsigned int> GrabScreen(Rect const& rect);

} // namespace Test
} // namespace UI

/// Skips the running test (GoogleTest) unless a display can be opened and xdotool is installed.
#define REQUIRE_DISPLAY_AND_XDOTOOL()                                                              \
    do                                                                                             \
    {                                                                                              \
        std::string reason;                                                                        \
        if (!UI::Test::EnsureDisplay(reason))                                                      \
            GTEST_SKIP() << "no display: " << reason;                                              \
        if (UI::Test::Run("command -v xdotool >/dev/null 2>&1") != 0)                              \
            GTEST_SKIP() << "xdotool is not installed";                                            \
    } while (false)
