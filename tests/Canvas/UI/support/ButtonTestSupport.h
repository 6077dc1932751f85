#pragma once

// A frame on the in-memory host window with a real memory draw context and the canvas's own
// fonts, for driving buttons with the frame's mouse and key messages. Linking
// ButtonTestSupport.cpp points the settings and data folders at a private temp folder (see
// CanvasTestSupport.h).

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/Native/SDL/PlatformSupportFactorySDL.h"
#include "tests/Canvas/UI/TestHostWindow.h"
#include "tests/support/TempFolder.h"

#include <memory>
#include <string>

namespace ButtonTest
{

/// The host's platform with the Alt key under the test's control; everything else is the real
/// SDL platform (which needs no display for what buttons ask of it).
class AltKeyPlatform : public UI::Native::PlatformSupportFactorySDL
{
public:
    bool IsAltPressed() override { return alt; }
    bool alt = false;
};

/// Holds Alt down while it lives.
class AltHeld
{
public:
    AltHeld();
    ~AltHeld();
};

/// Installed for the whole test binary.
AltKeyPlatform& Platform();

struct Scene
{
    UI::Canvas canvas{"ButtonTest"};
    UI::Test::TestHostWindow host;
    UI::MemoryDrawContext context{"Button Context"};
    std::unique_ptr<UI::Frame> frame;

    explicit Scene(int width = 120, int height = 80);
    ~Scene();

    /// Left press and release at (x, y) in frame coordinates, with `flags`.
    bool Press(int x, int y, unsigned int flags = 0);
    bool Release(int x, int y, unsigned int flags = 0);
    bool Move(int x, int y, unsigned int flags = 0);
    bool DoubleClick(int x, int y, unsigned int flags = 0);
    bool RightPress(int x, int y);
    bool RightRelease(int x, int y);
    void Click(int x, int y)
    {
        Press(x, y);
        Release(x, y);
    }
    bool Key(unsigned int code, unsigned int flags = 0);
    bool KeyUp(unsigned int code, unsigned int flags = 0);

    /// Paints every invalid region.
    void Paint();
    unsigned int Pixel(int x, int y) const;
};

/// Writes a solid `width` by `height` PNG of `argb` into `folder` as `name`.
void WriteSolidPng(TestSupport::TempFolder& folder, std::string const& name, int width, int height,
                   unsigned int argb);

} // namespace ButtonTest
