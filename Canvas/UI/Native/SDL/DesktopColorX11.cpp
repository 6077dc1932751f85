// The desktop's pixels under X11: one pixel of the root window through XGetImage, on a
// connection of our own opened on first use. Elsewhere (Wayland, no video) there is no colour.

#include "Canvas/UI/Native/DesktopColor.h"

#include <SDL.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstring>
#include <memory>

namespace UI
{
namespace Native
{

namespace
{

struct DisplayCloser
{
    void operator()(Display* display) const { XCloseDisplay(display); }
};

/// The shift that brings the lowest bit of `mask` to bit 0, and the mask's width in bits.
void maskShape(unsigned long mask, int& shift, int& bits)
{
    shift = 0;
    bits = 0;
    if (!mask)
        return;
    while (!(mask & 1ul))
    {
        mask >>= 1;
        ++shift;
    }
    while (mask & 1ul)
    {
        mask >>= 1;
        ++bits;
    }
}

/// One channel of `pixel` under `mask`, scaled to 0..255.
unsigned int channel(unsigned long pixel, unsigned long mask)
{
    int shift = 0;
    int bits = 0;
    maskShape(mask, shift, bits);
    if (!bits)
        return 0;
    unsigned long const value = (pixel & mask) >> shift;
    unsigned long const top = (1ul << bits) - 1;
    return static_cast<unsigned int>((value * 255 + top / 2) / top);
}

Display* desktopDisplay()
{
    // Only where the program itself runs on X11: another connection would read another desktop.
    char const* driver = SDL_GetCurrentVideoDriver();
    if (!driver || std::strcmp(driver, "x11") != 0)
        return nullptr;
    static std::unique_ptr<Display, DisplayCloser> display(XOpenDisplay(nullptr));
    return display.get();
}

} // namespace

checked_value<unsigned int> ReadDesktopColor(Point const& screenPos)
{
    Display* display = desktopDisplay();
    if (!display)
        return checked_value<unsigned int>();
    int const screen = DefaultScreen(display);
    if (screenPos.x < 0 || screenPos.y < 0 || screenPos.x >= DisplayWidth(display, screen) ||
        screenPos.y >= DisplayHeight(display, screen))
        return checked_value<unsigned int>();
    XImage* image = XGetImage(display, RootWindow(display, screen), screenPos.x, screenPos.y, 1, 1,
                              AllPlanes, ZPixmap);
    if (!image)
        return checked_value<unsigned int>();
    unsigned long const pixel = XGetPixel(image, 0, 0);
    unsigned int const color = 0xFF000000u | (channel(pixel, image->red_mask) << 16) |
                               (channel(pixel, image->green_mask) << 8) |
                               channel(pixel, image->blue_mask);
    XDestroyImage(image);
    return color;
}

} // namespace Native
} // namespace UI
