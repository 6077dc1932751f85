#include "Canvas/UI/RGBASliderGroup.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Text.h"

namespace UI
{

namespace
{
char const* const ChannelNames[] = {"Red", "Green", "Blue", "Alpha"};
int const RowHeight = 24;
int const LabelWidth = 44;
} // namespace

RGBASliderGroup::RGBASliderGroup(Frame* frame, Window* parent, String const& name)
    : Window(frame, parent, name)
{
    for (int c = 0; c < 4; ++c)
    {
        String const channelName(ChannelNames[c]);
        labels[c] = new Text(frame, this, String("%1 Label").Arg(channelName), channelName,
                             checked_value<unsigned int>(), HAlignLeft, 0xFF202020u, Point(0, 0),
                             Size(LabelWidth, 14), false);
        RGBASlider::Channel const channel = static_cast<RGBASlider::Channel>(c);
        sliders[c] = new RGBASlider(frame, this, String("%1 Slider").Arg(channelName), channel);
        sliders[c]->SetLabel(channelName);
        sliders[c]->SetReadoutWidth(30);
        sliders[c]->SetReadoutVisible(true);
        labels[c]->SetDynamicLayoutMode(DynamicLayoutNever);
        sliders[c]->SetDynamicLayoutMode(DynamicLayoutNever);
        sliders[c]->GetController()->valueChanged.Connect(nullptr, [this, channel](float const&)
                                                          { slotChannelChanged(channel); });
    }
    SetGeometry(GetGeometry().left, GetGeometry().top, 260, 4 * RowHeight);
    SetRGBA(0xFF000000u);
}

void RGBASliderGroup::onSetGeometry()
{
    if (!sliders[3])
        return;
    for (int c = 0; c < 4; ++c)
    {
        labels[c]->SetGeometry(0, c * RowHeight + (RowHeight - 14) / 2, LabelWidth, 14);
        sliders[c]->SetGeometry(LabelWidth, c * RowHeight + 2, GetWidth() - LabelWidth,
                                RowHeight - 4);
    }
}

void RGBASliderGroup::SetRGBA(unsigned int newColor)
{
    setting = true;
    for (int c = 0; c < 4; ++c)
        sliders[c]->SetValue(static_cast<float>(
            RGBASlider::ChannelOf(newColor, static_cast<RGBASlider::Channel>(c))));
    setting = false;
    bool const changed = newColor != color;
    color = newColor;
    for (RGBASlider* slider : sliders)
        slider->SetBaseColor(color);
    if (changed)
        signalColorChanged(color);
}

void RGBASliderGroup::slotChannelChanged(RGBASlider::Channel channel)
{
    if (setting)
        return;
    unsigned int const next = RGBASlider::WithChannel(color, channel, sliders[channel]->GetValue());
    if (next == color)
        return;
    color = next;
    for (RGBASlider* slider : sliders)
        slider->SetBaseColor(color);
    signalColorChanged(color);
}

bool RGBASliderGroup::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                       TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    reply->SetValue("color", String("%1").Arg(color, 16u, 8u).CStr());
    return true;
}

} // namespace UI
