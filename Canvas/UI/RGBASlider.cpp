#include "Canvas/UI/RGBASlider.h"

#include "Canvas/UI/AGGInlineRenderer.h"
#include "TvBase/Controller/FloatParamMemory.h"

#include <algorithm>
#include <cmath>

namespace UI
{

RGBASlider::RGBASlider(Frame* frame, Window* parent, String const& name)
    : Slider(frame, parent, name)
{
    build(Red);
}

RGBASlider::RGBASlider(Frame* frame, Window* parent, String const& name, Channel c)
    : Slider(frame, parent, name)
{
    build(c);
}

void RGBASlider::build(Channel c)
{
    channel = c;
    SetOwnedController(std::unique_ptr<Controller::FloatParam>(
        new Controller::FloatParamMemory(0.0f, value_range<float>(0.0f, 255.0f))));
    SetPositionRange(value_range<int>(0, 255));
    SetNumDecimalPlaces(0);
}

void RGBASlider::SetChannel(Channel c)
{
    channel = c;
    Update();
}

void RGBASlider::SetBaseColor(unsigned int color)
{
    if (color == baseColor)
        return;
    baseColor = color;
    Update();
}

unsigned int RGBASlider::WithChannel(unsigned int color, Channel c, float value)
{
    long const v = std::lround(value);
    unsigned int const byte = static_cast<unsigned int>(v < 0 ? 0 : (v > 255 ? 255 : v));
    // Alpha is the top byte; red, green and blue follow it.
    unsigned int const shift = c == Alpha ? 24u : 16u - 8u * static_cast<unsigned int>(c);
    return (color & ~(0xFFu << shift)) | (byte << shift);
}

unsigned int RGBASlider::ChannelOf(unsigned int color, Channel c)
{
    unsigned int const shift = c == Alpha ? 24u : 16u - 8u * static_cast<unsigned int>(c);
    return (color >> shift) & 0xFFu;
}

void RGBASlider::drawTrack(DrawContext* context, AGGInlineRenderer&, Rect const& track,
                           unsigned char alpha)
{
    AGGInlineRenderer gradient(context, "RGBASlider Renderer");
    if (!gradient.IsValid())
        return;
    int const top = track.top + 3;
    int const bottom = track.bottom - 3;
    int const width = track.Width();
    agg::path_storage path;
    for (int x = 0; x < width; ++x)
    {
        unsigned int const value = width > 1 ? static_cast<unsigned int>(x * 255 / (width - 1)) : 0;
        unsigned int const c = WithChannel(baseColor | (channel == Alpha ? 0 : 0xFF000000u),
                                           channel, static_cast<float>(value));
        unsigned int const a = c >> 24;
        // The colour over a checkerboard of 4-pixel squares, so that alpha shows.
        for (int y = top; y <= bottom; y = (y / 4 + 1) * 4)
        {
            int const bandBottom = std::min(bottom, (y / 4 + 1) * 4 - 1);
            bool const light = ((x / 4 + y / 4) & 1) != 0;
            unsigned int const ground = light ? 0xFFFFFFu : 0xC0C0C0u;
            unsigned int rgb = 0xFF000000u;
            for (unsigned int s = 0; s < 24; s += 8)
            {
                unsigned int const fg = (c >> s) & 0xFF;
                unsigned int const bg = (ground >> s) & 0xFF;
                rgb |= ((fg * a + bg * (255 - a) + 127) / 255) << s;
            }
            double const left = track.left + x;
            path.remove_all();
            path.move_to(left, y);
            path.line_to(left + 1.0, y);
            path.line_to(left + 1.0, bandBottom + 1.0);
            path.line_to(left, bandBottom + 1.0);
            path.close_polygon();
            fillPath(gradient, path, rgb, alpha);
        }
    }
}

} // namespace UI
