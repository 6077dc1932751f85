#include "tests/Canvas/UI/support/ButtonTestSupport.h"

#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/PNG.h"
#include "tests/Canvas/UI/CanvasTestSupport.h"

namespace ButtonTest
{

AltKeyPlatform& Platform()
{
    static AltKeyPlatform* platform = []
    {
        AltKeyPlatform* p = new AltKeyPlatform;
        UI::Native::PlatformSupportFactory::overrideImpl(p);
        return p;
    }();
    return *platform;
}

AltHeld::AltHeld()
{
    Platform().alt = true;
}

AltHeld::~AltHeld()
{
    Platform().alt = false;
}

Scene::Scene(int width, int height)
{
    Platform();
    frame.reset(new UI::Frame(&canvas, host.Handle(), &context, UI::Point(), "unused",
                              UI::Rect(0, width - 1, 0, height - 1)));
    frame->SetHostWindow(&host);
    frame->SetDrawingEnabled(true);
}

Scene::~Scene()
{
    frame.reset();
}

bool Scene::Press(int x, int y, unsigned int flags)
{
    return frame->HandleMouseMessage(UI::MouseLeftPress, UI::Point(x, y),
                                     flags | UI::FlagLeftButton, 0);
}

bool Scene::Release(int x, int y, unsigned int flags)
{
    return frame->HandleMouseMessage(UI::MouseLeftRelease, UI::Point(x, y), flags, 0);
}

bool Scene::Move(int x, int y, unsigned int flags)
{
    return frame->HandleMouseMessage(UI::MouseMove, UI::Point(x, y), flags, 0);
}

bool Scene::DoubleClick(int x, int y, unsigned int flags)
{
    return frame->HandleMouseMessage(UI::MouseLeftDoubleClick, UI::Point(x, y),
                                     flags | UI::FlagLeftButton, 0);
}

bool Scene::RightPress(int x, int y)
{
    return frame->HandleMouseMessage(UI::MouseRightPress, UI::Point(x, y), UI::FlagRightButton, 0);
}

bool Scene::RightRelease(int x, int y)
{
    return frame->HandleMouseMessage(UI::MouseRightRelease, UI::Point(x, y), 0, 0);
}

bool Scene::Key(unsigned int code, unsigned int flags)
{
    return frame->HandleKeyboardMessage(UI::KeyPress, code, 0, flags, false);
}

bool Scene::KeyUp(unsigned int code, unsigned int flags)
{
    return frame->HandleKeyboardMessage(UI::KeyRelease, code, 0, flags, false);
}

void Scene::Paint()
{
    frame->RenderInvalidRegions(true);
}

unsigned int Scene::Pixel(int x, int y) const
{
    auto const& section = context.GetDIBSection();
    return section->GetPixels()[y * section->GetStride() + x];
}

void WriteSolidPng(TestSupport::TempFolder& folder, std::string const& name, int width, int height,
                   unsigned int argb)
{
    UI::PNG::Bitmap bitmap(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
        {
            bitmap.red[y][x] = float(argb >> 16 & 0xFF);
            bitmap.green[y][x] = float(argb >> 8 & 0xFF);
            bitmap.blue[y][x] = float(argb & 0xFF);
            bitmap.alpha[y][x] = float(argb >> 24);
        }
    std::string const path = folder.Path() + "/" + name;
    UI::PNG::WritePngFile(String(path.c_str()), bitmap, true, false, UI::PNG::PngComprParams(),
                          nullptr, nullptr, false);
}

} // namespace ButtonTest
