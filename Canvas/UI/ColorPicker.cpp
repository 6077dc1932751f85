#include "Canvas/UI/ColorPicker.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/ColorConversion.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/RGBASliderGroup.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace UI
{

namespace
{

String const PickerName("Color Picker");
unsigned int const Background = 0xFFF2F2EEu;

/// A colour over a checkerboard, so that its alpha shows.
class Swatch : public Window
{
public:
    Swatch(Frame* frame, Window* parent, String const& name, unsigned int color)
        : Window(frame, parent, name), swatchColor(color)
    {
        SetDynamicLayoutMode(DynamicLayoutNever);
    }

    void SetSwatchColor(unsigned int color)
    {
        swatchColor = color;
        Update();
    }

    void Draw(DrawContext* context) override
    {
        Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
        for (int y = 0; y < GetHeight(); y += 6)
            for (int x = 0; x < GetWidth(); x += 6)
                context->DrawBox(Rect(Point(x, y), Size(6, 6)) & all, DrawContext::Filled,
                                 ((x + y) / 6) & 1 ? 0xFFFFFFFFu : 0xFFC0C0C0u,
                                 GetEffectiveAlpha());
        unsigned char const a =
            static_cast<unsigned char>(((swatchColor >> 24) * GetEffectiveAlpha() + 127) / 255);
        context->DrawBox(all, DrawContext::Filled, swatchColor, a);
        context->DrawBox(all, DrawContext::Outline, 0xFF808080u, GetEffectiveAlpha());
    }

    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                          TestAutomation::RPCReplyInterface* reply) override
    {
        if (request != "GetInfo" || !reply)
            return false;
        reply->SetValue("color", String("%1").Arg(swatchColor, 16u, 8u).CStr());
        return true;
    }

private:
    unsigned int swatchColor;
};

String hexText(unsigned int color)
{
    return ConvertColorToString(color, false);
}

} // namespace

ColorPicker::ColorPicker(Frame* frame, unsigned int color)
    : Window(frame, nullptr, PickerName), original(color)
{
    SetGeometry(0, 0, Width, Height);
    sliders = new RGBASliderGroup(frame, this, "RGBA Sliders");
    sliders->SetGeometry(12, 12, Width - 24, 96);
    sliders->SetRGBA(color);
    new Swatch(frame, this, "Old Swatch", color);
    Window* newSwatch = new Swatch(frame, this, "New Swatch", color);
    FindChildWindow("Old Swatch")->SetGeometry(12, 118, 56, 28);
    newSwatch->SetGeometry(68, 118, 56, 28);
    hex = CreateSimpleEdit(frame, this, "Hex Edit", hexText(color));
    hex->SetGeometry(140, 121, Width - 152, 22);
    hex->SetInlineCharFilter({'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'a', 'b',
                              'c', 'd', 'e', 'f', 'A', 'B', 'C', 'D', 'E', 'F', '.', '#'});
    SimplePushButton* cancel = new SimplePushButton(frame, this, "Cancel Button", "Cancel");
    cancel->SetGeometry(Width - 184, Height - 36, 80, 24);
    SimplePushButton* ok = new SimplePushButton(frame, this, "OK Button", "OK");
    ok->SetGeometry(Width - 92, Height - 36, 80, 24);

    sliders->signalColorChanged.Connect(nullptr, [this](unsigned int c) { slotSlidersChanged(c); });
    hex->signalTextEdited.Connect(nullptr, [this]() { slotHexEdited(); });
    ok->signalClicked.Connect(nullptr, [this]() { Accept(); });
    cancel->signalClicked.Connect(nullptr, [this]() { Reject(); });
}

void ColorPicker::SetRGBA(unsigned int color)
{
    sliders->SetRGBA(color);
}

unsigned int ColorPicker::GetRGBA() const
{
    return sliders->GetRGBA();
}

void ColorPicker::slotSlidersChanged(unsigned int color)
{
    static_cast<Swatch*>(FindChildWindow("New Swatch"))->SetSwatchColor(color);
    hex->SetText(hexText(color));
    signalColorChanged(color);
}

void ColorPicker::slotHexEdited()
{
    checked_value<unsigned int> const color = ConvertStringToColor(hex->GetText());
    if (color)
        SetRGBA(*color);
    // A text that is no colour goes back to the colour that stands.
    hex->SetText(hexText(GetRGBA()));
}

void ColorPicker::Accept()
{
    if (done)
        return;
    done = true;
    accepted = true;
}

void ColorPicker::Reject()
{
    if (done)
        return;
    done = true;
    accepted = false;
    if (GetRGBA() != original)
        signalColorChanged(original);
}

bool ColorPicker::onKeyPress(unsigned int keyCode, unsigned int, bool)
{
    if (keyCode == KeyCode::Escape)
        Reject();
    else if (keyCode == KeyCode::Return || keyCode == KeyCode::Enter)
        Accept();
    else
        return false;
    return true;
}

void ColorPicker::Draw(DrawContext* context)
{
    Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
    context->DrawBox(all, DrawContext::Filled, Background, 255);
    context->DrawBox(all, DrawContext::Outline, 0xFF909090u, 255);
    Window::Draw(context);
}

bool ColorPicker::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                   TestAutomation::RPCReplyInterface* reply)
{
    if (request == "Accept")
        Accept();
    else if (request == "Reject")
        Reject();
    else if (request != "GetInfo")
        return false;
    if (reply)
    {
        reply->SetValue("color", String("%1").Arg(GetRGBA(), 16u, 8u).CStr());
        reply->SetValue("original", String("%1").Arg(original, 16u, 8u).CStr());
    }
    return true;
}

bool ColorPicker::Run(Canvas* canvas, Native::HostWindow* owner, unsigned int& color,
                      boost::function<void(unsigned int)> const& live)
{
    if (!canvas)
        return false;
    std::unique_ptr<Native::HostWindow> host(
        Native::PlatformSupportFactory::CreateHostWindow(canvas, PickerName, nullptr, nullptr));
    if (!host)
        return false;
    Frame* frame = host->GetFrame();
    // A transient modal tool, opened by the design tools among others: never designed itself.
    frame->SetDesignDisable(true);
    ColorPicker* picker = new ColorPicker(frame, color);
    frame->SetTopLevelWindow(picker);
    if (live)
        picker->signalColorChanged.Connect(nullptr, live);
    // The close box rejects; the window itself goes only after the loop below ends.
    Native::HostWindow* raw = host.get();
    host->signalCloseRequest.Connect(nullptr,
                                     [raw, picker]()
                                     {
                                         raw->VetoClose();
                                         picker->Reject();
                                     });

    Native::HostWindowStyle style;
    style.systemButtons = true;
    Point const corner = owner ? owner->GetScreenPos() : Point(100, 100);
    Rect const client(Point(corner.x + 40, corner.y + 40), Size(Width, Height));
    Rect const rect =
        Native::PlatformSupportFactory::ConvertClientToWindowRect(client, false, style, PickerName);
    // Tied to its owner, so that the window manager keeps it above a tool window that stays on
    // top of the others.
    void* parent = owner ? owner->GetNativeHandle() : nullptr;
    if (!host->Create(parent, nullptr, PickerName, rect, true, true, style))
        return false;
    frame->SetDrawingEnabled(true);
    host->StartMasterUpdateTimer(33);

    // Modal: the program's other frames take no input until the picker ends.
    std::vector<std::pair<Frame*, bool>> others;
    for (Frame* other : canvas->GetFrames())
        if (other != frame)
        {
            others.emplace_back(other, other->IsInputEnabled());
            other->SetInputEnabled(false);
        }
    while (!picker->IsDone() && !Native::PlatformSupportFactory::IsEventLoopQuitting())
        Native::PlatformSupportFactory::ProcessEvents(50);
    for (auto const& other : others)
    {
        // A frame that went away meanwhile is no longer listed.
        std::vector<Frame*> const& now = canvas->GetFrames();
        if (std::find(now.begin(), now.end(), other.first) != now.end())
            other.first->SetInputEnabled(other.second);
    }
    bool const accepted = picker->IsAccepted();
    if (accepted)
        color = picker->GetRGBA();
    else if (!picker->IsDone() && live && picker->GetRGBA() != color)
        live(color);
    host.reset();
    return accepted;
}

} // namespace UI
