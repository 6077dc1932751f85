#pragma once

#include "Canvas/UI/RGBASlider.h"
#include "Canvas/UI/Window.h"

namespace UI
{

class Text;

/// Four channel sliders, one row each, that edit one 0xAARRGGBB colour: the children "Red
/// Label", "Red Slider", "Green Label", ... "Alpha Label", "Alpha Slider". Each slider's
/// gradient shows the colour as it stands. The colour lives in the sliders' own parameters.
///
/// Answers "GetInfo" with "color" (eight hexadecimal digits, AARRGGBB).
class RGBASliderGroup : public Window
{
public:
    RGBASliderGroup(Frame* frame, Window* parent, String const& name);

    /// After every change of the colour, by the user or by `SetRGBA`.
    Signal<unsigned int> signalColorChanged;

    void SetRGBA(unsigned int color);
    unsigned int GetRGBA() const { return color; }
    RGBASlider* GetChannelSlider(RGBASlider::Channel channel) const { return sliders[channel]; }

    String GetWindowType() const override { return String("RGBASliderGroup"); }
    void onSetGeometry() override;
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

private:
    void slotChannelChanged(RGBASlider::Channel channel);

    unsigned int color = 0xFF000000u;
    RGBASlider* sliders[4] = {};
    Text* labels[4] = {};
    /// Set while `SetRGBA` writes the channels, so that they report the colour once.
    bool setting = false;
};

} // namespace UI
