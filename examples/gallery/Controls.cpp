// The "Controls" page: a knob, a slider, the theme's preset slider and slider groups (linear and
// ratio), scrub texts (log and linear), RGBA sliders and a colour swatch with the button that
// opens the colour picker. Each control is bound to a parameter of the page, and a readout
// beside it ("<control> Readout") follows the parameter live. Changes are also reported on the
// standard output as "value <parameter>: <value>", and the colour as "colour <AARRGGBB>".

#include "examples/gallery/Controls.h"
#include "examples/gallery/Gallery.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/ColorConversion.h"
#include "Canvas/UI/ColorPicker.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/FocusOrder.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Knob.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "Canvas/UI/RGBASliderGroup.h"
#include "Canvas/UI/ScrubText.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Slider.h"
#include "Canvas/UI/SliderGroup.h"
#include "Canvas/UI/Text.h"
#include "TvBase/Controller/FloatParamMemory.h"

#include <cstdio>
#include <memory>
#include <vector>

namespace Gallery
{

namespace
{

String const PageName("Gallery Controls");
int const ControlsWidth = 480;
int const ControlsHeight = 412;
int const Left = 16;
int const ReadoutLeft = 300;
unsigned int const Ink = 0xFF202020u;
unsigned int const TitleInk = 0xFF305080u;

/// A filled rectangle of the page's colour, telling a test driver its colour.
class ColourSwatch : public UI::Window
{
public:
    ColourSwatch(UI::Frame* frame, UI::Window* parent, String const& name, unsigned int colour)
        : Window(frame, parent, name), colour(colour)
    {
    }

    void SetSwatchColor(unsigned int c)
    {
        colour = c;
        Update();
    }
    unsigned int GetSwatchColor() const { return colour; }

    void Draw(UI::DrawContext* context) override
    {
        UI::Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
        context->DrawBox(all, UI::DrawContext::Filled, colour, colour >> 24);
        context->DrawBox(all, UI::DrawContext::Outline, 0xFF808080u, 255);
    }

    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                          TestAutomation::RPCReplyInterface* reply) override
    {
        if (request != "GetInfo" || !reply)
            return false;
        reply->SetValue("color", String("%1").Arg(colour, 16u, 8u).CStr());
        return true;
    }

private:
    unsigned int colour;
};

} // namespace

/// The page: the top-level window of the controls' frame. Owns the parameters.
class ControlsPanel : public UI::Window
{
public:
    ControlsPanel(UI::Frame* frame, UI::Native::HostWindow* host)
        : Window(frame, nullptr, PageName), host(host)
    {
        SetGeometry(0, 0, ControlsWidth, ControlsHeight);
        int y = 12;
        new UI::Text(frame, this, "Controls Title", "Parameter controls",
                     checked_value<unsigned int>(), UI::HAlignLeft, TitleInk, UI::Point(Left, y));
        y += 24;

        Controller::FloatParamMemory* gain = param("Gain", 50.0f, 0.0f, 100.0f, "%");
        UI::Knob* knob = new UI::Knob(frame, this, "Gain Knob", gain);
        knob->SetLabel("Gain");
        knob->SetNumDecimalPlaces(1);
        knob->SetGeometry(Left, y, 64, 84);
        UI::Knob* pan =
            new UI::Knob(frame, this, "Pan Knob", param("Pan", 0.0f, -50.0f, 50.0f, ""));
        pan->SetLabel("Pan");
        pan->SetNumDecimalPlaces(0);
        pan->SetShowPlusSign(true);
        pan->SetGeometry(Left + 80, y, 64, 84);
        readout("Gain Knob Readout", gain, ReadoutLeft, y + 20);
        readout("Pan Knob Readout", params.back().get(), ReadoutLeft, y + 40);
        y += 96;

        Controller::FloatParamMemory* level = param("Level", 5.0f, 0.0f, 10.0f, "");
        UI::Slider* slider = new UI::Slider(frame, this, "Level Slider", level);
        slider->SetNumDecimalPlaces(1);
        slider->SetReadoutVisible(true);
        slider->SetGeometry(Left, y, 260, 20);
        readout("Level Slider Readout", level, ReadoutLeft, y + 3);
        y += 28;

        UI::PrimitiveFactory* factory = frame->GetCanvas()->GetPrimitiveFactory();
        Controller::FloatParamMemory* mix = param("Mix", 0.5f, 0.0f, 1.0f, "");
        UI::SliderGroup* mixGroup =
            factory->CreateSliderGroup(frame, this, "Mix Group", "Mix", UI::Horizontal, mix);
        mixGroup->SetGeometry(Left, y, 270, 24);
        readout("Mix Group Readout", mix, ReadoutLeft, y + 5);
        y += 30;
        Controller::FloatParamMemory* ratio = param("Ratio", 1.0f, 0.25f, 4.0f, "x");
        UI::SliderGroup* ratioGroup =
            factory->CreateSliderGroup(frame, this, "Ratio Group", "Ratio", UI::Horizontal, ratio);
        ratioGroup->SetScaleType(UI::ScaleRatioLog);
        ratioGroup->SetGeometry(Left, y, 270, 24);
        readout("Ratio Group Readout", ratio, ReadoutLeft, y + 5);
        y += 30;
        UI::Window* preset = factory->CreatePresetSlider(frame, this, "Preset Slider");
        if (preset)
            preset->SetGeometry(Left + 72, y, 198, 20);
        y += 28;

        Controller::FloatParamMemory* frequency =
            param("Frequency", 1000.0f, 20.0f, 20000.0f, " Hz");
        UI::ScrubText* scrub = new UI::ScrubText(frame, this, "Frequency Scrub", frequency);
        scrub->SetLogScale(true, frequency->GetRange());
        scrub->SetNumDecimalPlaces(0);
        scrub->SetGeometry(Left, y, 90, 18);
        UI::ScrubText* time = new UI::ScrubText(frame, this, "Time Scrub",
                                                param("Time", 250.0f, 0.0f, 1000.0f, " ms"));
        time->SetNumDecimalPlaces(0);
        time->SetGeometry(Left + 110, y, 90, 18);
        readout("Frequency Scrub Readout", frequency, ReadoutLeft, y + 2);
        y += 28;

        tint = new UI::RGBASliderGroup(frame, this, "Tint Sliders");
        tint->SetGeometry(Left, y, 270, 96);
        tint->SetRGBA(0xFF4080C0u);
        tintReadout =
            new UI::Text(frame, this, "Tint Sliders Readout", "", checked_value<unsigned int>(),
                         UI::HAlignLeft, Ink, UI::Point(ReadoutLeft, y + 40));
        tint->signalColorChanged.Connect(nullptr, [this](unsigned int c) { showTint(c); });
        showTint(tint->GetRGBA());
        y += 100;

        swatch = new ColourSwatch(frame, this, "Colour Swatch", 0xFFC04020u);
        swatch->SetGeometry(Left, y, 40, 22);
        UI::SimplePushButton* pick =
            new UI::SimplePushButton(frame, this, "Pick Colour Button", "Colour\u2026");
        pick->SetGeometry(Left + 50, y, 100, 22);
        pick->signalClicked.Connect(nullptr, [this]() { pickColour(); });
        colourReadout =
            new UI::Text(frame, this, "Colour Readout", "", checked_value<unsigned int>(),
                         UI::HAlignLeft, Ink, UI::Point(ReadoutLeft, y + 4));
        showColour(swatch->GetSwatchColor());
    }

    void Draw(UI::DrawContext* context) override
    {
        context->DrawBox(UI::Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                         0xFFF2F2EE, 255);
        Window::Draw(context);
    }

private:
    Controller::FloatParamMemory* param(char const* name, float value, float low, float high,
                                        char const* unit)
    {
        params.emplace_back(
            new Controller::FloatParamMemory(value, value_range<float>(low, high), unit));
        Controller::FloatParamMemory* p = params.back().get();
        String const label(name);
        p->valueChanged.Connect(nullptr,
                                [label](float const& v)
                                {
                                    std::printf("value %s: %s\n", label.CStr(),
                                                String("%1").Arg(v).CStr());
                                    std::fflush(stdout);
                                });
        return p;
    }

    /// "<name>: <value><unit>", following the parameter.
    void readout(char const* name, Controller::FloatParamMemory* p, int x, int y)
    {
        UI::Text* text = new UI::Text(GetFrame(), this, name, "", checked_value<unsigned int>(),
                                      UI::HAlignLeft, Ink, UI::Point(x, y));
        auto show = [text, p](float const& v)
        { text->SetText(String("%1%2").Arg(v, 2u).Arg(p->GetUnit())); };
        p->valueChanged.Connect(nullptr, show);
        show(p->get());
    }

    void showTint(unsigned int c) { tintReadout->SetText(UI::ConvertColorToString(c, true)); }

    void showColour(unsigned int c)
    {
        swatch->SetSwatchColor(c);
        colourReadout->SetText(UI::ConvertColorToString(c, true));
        std::printf("colour %s\n", String("%1").Arg(c, 16u, 8u).CStr());
        std::fflush(stdout);
    }

    void pickColour()
    {
        unsigned int colour = swatch->GetSwatchColor();
        bool const accepted = UI::ColorPicker::Run(GetCanvas(), host, colour,
                                                   [this](unsigned int c) { showColour(c); });
        std::printf("picker %s\n", accepted ? "accepted" : "rejected");
        std::fflush(stdout);
    }

    UI::Native::HostWindow* host;
    std::vector<std::unique_ptr<Controller::FloatParamMemory>> params;
    UI::RGBASliderGroup* tint = nullptr;
    UI::Text* tintReadout = nullptr;
    ColourSwatch* swatch = nullptr;
    UI::Text* colourReadout = nullptr;
};

ControlsWindow::~ControlsWindow() = default;

std::unique_ptr<ControlsWindow> ControlsWindow::Open(UI::Canvas* canvas,
                                                     UI::Native::HostWindow* owner)
{
    std::unique_ptr<ControlsWindow> window(new ControlsWindow);
    window->host.reset(
        UI::Native::PlatformSupportFactory::CreateHostWindow(canvas, PageName, nullptr, nullptr));
    UI::Frame* frame = window->host->GetFrame();
    ControlsPanel* panel = new ControlsPanel(frame, window->host.get());
    panel->Hide();
    frame->SetTopLevelWindow(panel);
    frame->SetFocusOrder(UI::CollectFocusOrder(panel));
    UI::Native::HostWindowStyle style;
    style.systemButtons = true;
    UI::Point const corner = owner ? owner->GetScreenPos() : UI::Point(0, 0);
    UI::Rect const client(UI::Point(corner.x + 60, corner.y + 40),
                          UI::Size(ControlsWidth, ControlsHeight));
    UI::Rect const rect = UI::Native::PlatformSupportFactory::ConvertClientToWindowRect(
        client, false, style, PageName);
    if (!window->host->Create(nullptr, nullptr, PageName, rect, true, true, style))
        return nullptr;
    frame->SetDrawingEnabled(true);
    window->host->StartMasterUpdateTimer(33);
    panel->Show();
    return window;
}

} // namespace Gallery

namespace Gallery
{

int AddParamControls(Page* page, int y)
{
    y = page->AddSectionTitle("Parameter controls", y);
    UI::SimplePushButton* open =
        new UI::SimplePushButton(page->GetFrame(), page, "Controls Button", "Controls\u2026");
    open->SetGeometry(Left, y, 100, 22);
    open->signalClicked.Connect(nullptr, [page]() { page->signalControls(); });
    return y + 34;
}

} // namespace Gallery
