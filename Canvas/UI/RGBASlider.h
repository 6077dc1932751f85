#pragma once

#include "Canvas/UI/Slider.h"

namespace UI
{

/// A slider for one channel of a 0xAARRGGBB colour, 0 to 255, whose track is the gradient of
/// that channel over the rest of the colour (drawn by "RGBASlider Renderer"; the alpha channel
/// over a checkerboard). It keeps its value in a parameter of its own unless bound to another.
class RGBASlider : public Slider
{
public:
    enum Channel
    {
        Red = 0,
        Green = 1,
        Blue = 2,
        Alpha = 3
    };

    /// The red channel of opaque black.
    RGBASlider(Frame* frame, Window* parent, String const& name);
    RGBASlider(Frame* frame, Window* parent, String const& name, Channel channel);

    void SetChannel(Channel c);
    Channel GetChannel() const { return channel; }
    /// The colour whose other channels the gradient shows.
    void SetBaseColor(unsigned int color);
    unsigned int GetBaseColor() const { return baseColor; }
    /// `color` with this channel set to `value` (0 to 255, rounded and clamped).
    static unsigned int WithChannel(unsigned int color, Channel channel, float value);
    static unsigned int ChannelOf(unsigned int color, Channel channel);

    String GetWindowType() const override { return String("RGBASlider"); }

protected:
    void drawTrack(DrawContext* context, AGGInlineRenderer& renderer, Rect const& track,
                   unsigned char alpha) override;

private:
    void build(Channel c);

    Channel channel = Red;
    unsigned int baseColor = 0xFF000000u;
};

} // namespace UI
