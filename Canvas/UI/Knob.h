#pragma once

#include "Canvas/UI/ParamControl.h"

namespace UI
{

class Text;

/// A rotary control: an arc from the bottom left round to the bottom right, filled up to the
/// value, with a pointer; the label above it and the readout and unit below, in the children
/// "<name> Label", "<name> Readout Text" and "<name> Unit".
///
/// A vertical drag of 100 pixels sweeps the whole range, a tenth of it with Ctrl (or Command).
/// Shift with a press nudges one position (up above the middle, down below it), Alt with a press
/// restores the default. Keys, wheel and typing as every `ParamControl`.
class Knob : public ParamControl
{
public:
    /// Positions 0 to 100 on a parameter of its own.
    Knob(Frame* frame, Window* parent, String const& name);
    /// Positions 0 to `positionCount` on a parameter of its own, labelled `caption`.
    Knob(Frame* frame, Window* parent, String const& name, String const& caption,
         int positionCount);
    Knob(Frame* frame, Window* parent, String const& name, Controller::FloatParam* param);
    Knob(Frame* frame, Window* parent, String const& name, String const& keyPath);

    /// The angles (degrees clockwise from the top) of the bottom and top positions.
    void SetAngleRange(value_range<float> const& range);
    value_range<float> const& GetAngleRange() const { return angleRange; }
    float PositionToAngle(int pos) const;
    int AngleToPosition(float angle) const;
    float ValueToAngle(float value) const { return PositionToAngle(ValueToPosition(value)); }

    Text* GetLabelWindow() const { return label; }
    Text* GetReadoutWindow() const { return readout; }
    Text* GetUnitWindow() const { return unit; }

    String GetWindowType() const override { return String("Knob"); }
    String GetAccessibilityRole() const override { return String("Tavorin_Audio_KnobValue"); }
    void Draw(DrawContext* context) override;
    void onSetGeometry() override;
    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onMouseMove(Point const& p, unsigned int flags) override;
    bool onMouseRelease(Point const& p, unsigned int flags) override;

protected:
    /// One position up (`direction` 1) or down (-1), as Shift with a press does.
    virtual void nudge(int direction);
    void onValueShown() override;
    /// Where the dial lies, in window coordinates.
    Rect dialRect() const;

private:
    void build();

    value_range<float> angleRange{-135.0f, 135.0f};
    Text* label = nullptr;
    Text* readout = nullptr;
    Text* unit = nullptr;
    int pressPosition = 0;
    int pressY = 0;
    bool fine = false;
};

} // namespace UI
