#pragma once

#include "Canvas/UI/Window.h"

#include <boost/function.hpp>

namespace UI
{

class Edit;
class RGBASliderGroup;
namespace Native
{
class HostWindow;
}

/// The colour picker: RGBA sliders, a hex field, the old and the new colour side by side, OK
/// and Cancel. `Run` shows it modal in a small host window of its own and reports every change
/// as it happens; Cancel (Escape, the close box) reports the colour it opened with again, so a
/// live preview goes back to where it was.
///
/// The children: "RGBA Sliders" (with "Red Slider" and the others), "Hex Edit" (the colour as
/// "RRGGBB" or "RRGGBB.AA"; a text that does not read as a colour is put back), "Old Swatch",
/// "New Swatch", "OK Button", "Cancel Button". Answers "GetInfo" with "color" and "original"
/// (eight hexadecimal digits, AARRGGBB), and the requests "Accept" and "Reject".
class ColorPicker : public Window
{
public:
    /// Shows a picker for `color` beside `owner` (may be null) until the user accepts or
    /// rejects it; input to the program's other windows waits meanwhile. True when accepted,
    /// with the choice in `color`; false leaves `color` as it was. `live` (may be empty) hears
    /// every change. False at once when no window can be made.
    static bool Run(Canvas* canvas, Native::HostWindow* owner, unsigned int& color,
                    boost::function<void(unsigned int)> const& live);

    /// The picker's content as the top-level window "Color Picker" of `frame`.
    ColorPicker(Frame* frame, unsigned int color);

    /// Every change of the colour, and the original again on rejection.
    Signal<unsigned int> signalColorChanged;

    void SetRGBA(unsigned int color);
    unsigned int GetRGBA() const;
    unsigned int GetOriginal() const { return original; }
    void Accept();
    void Reject();
    bool IsDone() const { return done; }
    bool IsAccepted() const { return accepted; }

    String GetWindowType() const override { return String("ColorPicker"); }
    void Draw(DrawContext* context) override;
    bool NeedsEscapeKey() const override { return true; }
    bool onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat) override;
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

    static int const Width = 300;
    static int const Height = 196;

private:
    void slotSlidersChanged(unsigned int color);
    void slotHexEdited();

    unsigned int original;
    RGBASliderGroup* sliders;
    Edit* hex;
    bool done = false;
    bool accepted = false;
};

} // namespace UI
