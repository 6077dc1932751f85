#pragma once

#include "Canvas/UI/ParamControl.h"

namespace UI
{

class Text;

/// A number that is dragged: up or right raises it, down or left lowers it, by the stored
/// sensitivity (positions a pixel) and a tenth of that with Ctrl (or Command) held. The mouse
/// shows the scrub hand over it. A double click types a value; Alt with a press restores the
/// default. The text is the child "<name> Text", with the unit after the value.
///
/// The property "Wheel Delta Multiplier" (Float, default 1) scales the wheel: a notch moves as
/// far as four pixels of drag times the multiplier.
class ScrubText : public ParamControl
{
public:
    /// Positions 0 to 1000 on a parameter of its own.
    ScrubText(Frame* frame, Window* parent, String const& name);
    ScrubText(Frame* frame, Window* parent, String const& name, Controller::FloatParam* param);
    ScrubText(Frame* frame, Window* parent, String const& name, String const& keyPath);

    /// With `on` the value runs on the log taper over `range`; otherwise linearly over the
    /// parameter's own range.
    void SetLogScale(bool on, value_range<float> const& range);
    /// Positions a pixel of drag (the whole range is 1000 positions); 2.5 to begin with.
    void SetSensitivity(float positionsPerPixel) { sensitivity = positionsPerPixel; }
    float GetSensitivity() const { return sensitivity; }
    /// The most decimal places shown for values below one in size, with
    /// `SetAboveBelowOneDecimalPlaces`.
    void SetMaxNumDecimalPlaces(int places);
    /// Values of one or more in size show the decimal places, smaller ones the most.
    void SetAboveBelowOneDecimalPlaces(bool on);

    /// Moves by `pixels` of drag times the sensitivity (times 0.1 in fine mode).
    void handleUserDelta(float pixels);

    String formatValue(float value) const override;
    String GetWindowType() const override { return String("ScrubText"); }
    String GetAccessibilityRole() const override { return String("Tavorin_Audio_ScrubTextValue"); }
    Text* GetTextWindow() const { return text; }
    void Draw(DrawContext* context) override;
    void onSetGeometry() override;
    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onMouseMove(Point const& p, unsigned int flags) override;
    bool onMouseRelease(Point const& p, unsigned int flags) override;
    bool onMouseWheel(Point const& p, int delta, unsigned int flags) override;

protected:
    void onValueShown() override;

private:
    void build();

    Text* text = nullptr;
    float sensitivity = 2.5f;
    bool fine = false;
    int maxDecimalPlaces = 4;
    bool aboveBelowOne = false;
    Point pressPoint;
    int pressPosition = 0;
};

} // namespace UI
