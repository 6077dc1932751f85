#pragma once

#include "Canvas/UI/Orientation.h"
#include "Canvas/UI/ParamControl.h"

#include <vector>

namespace UI
{

class Text;

/// A straight control: a track with a thumb, horizontal or vertical (bottom is the low end),
/// and an optional readout, the child "<name> Readout", beside it.
///
/// A press on the thumb grabs it; a press elsewhere on the track jumps there and then drags.
/// With Ctrl (or Command) held the thumb moves a tenth as far as the mouse. Snap positions pull
/// the thumb to the nearest of them (ties go to the earlier); position limits keep it inside a
/// part of the range. Alt with a press restores the default; keys, wheel and typing as every
/// `ParamControl`.
class Slider : public ParamControl
{
public:
    /// Positions 0 to 100, horizontal, on a parameter of its own.
    Slider(Frame* frame, Window* parent, String const& name);
    Slider(Frame* frame, Window* parent, String const& name, Controller::FloatParam* param,
           Orientation orientation = Horizontal);
    Slider(Frame* frame, Window* parent, String const& name, String const& keyPath);

    /// After every change of the position, whoever made it.
    Signal<unsigned int> signalPositionChanged;
    /// After the mouse put the thumb somewhere else than it was, also when a limit held it.
    Signal<unsigned int> signalUserMoved;

    unsigned int GetSliderPosition() const { return static_cast<unsigned int>(position); }
    /// The thumb stays inside `limits` (within the positions); unset frees it.
    void SetPositionLimits(checked_value<value_range<unsigned int>> const& limits);
    /// Positions the thumb snaps to; empty for none.
    void SetSnapPositions(std::vector<unsigned int> const& snaps) { snapPositions = snaps; }
    std::vector<unsigned int> const& GetSnapPositions() const { return snapPositions; }
    void SetOrientation(Orientation o);
    Orientation GetOrientation() const { return orientation; }

    /// The readout's side: false right of (or below) the track, true left of (or above) it.
    void SetFlagSide(bool leftOrTop);
    void SetReadoutTextColor(unsigned int color);
    void SetReadoutWidth(int width);
    /// A fixed readout text in place of the value; unset shows the value again.
    void SetReadoutText(checked_value<String> const& text);
    void SetReadoutVisible(bool visible);
    Text* GetReadoutWindow() const { return readout; }

    String GetWindowType() const override { return String("Slider"); }
    String GetAccessibilityRole() const override { return String("Tavorin_Audio_SliderValue"); }
    void Draw(DrawContext* context) override;
    void onSetGeometry() override;
    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onMouseMove(Point const& p, unsigned int flags) override;
    bool onMouseRelease(Point const& p, unsigned int flags) override;

protected:
    /// The position under `p` (window coordinates), before snapping and limits.
    virtual int pointToPosition(Point const& p) const;
    /// Moves the thumb to the position under `p`, snapped and limited, as the user's change.
    void updatePosition(Point const& p);
    /// The track and the thumb, in window coordinates.
    Rect trackRect() const;
    Rect thumbRect() const;
    /// Draws the track; the RGBA slider draws its gradient here instead.
    virtual void drawTrack(DrawContext* context, AGGInlineRenderer& renderer, Rect const& track,
                           unsigned char alpha);
    int clampPosition(int pos) const override;
    void onValueShown() override;

private:
    void build(Orientation o);
    int snap(int pos) const;

    Orientation orientation = Horizontal;
    checked_value<value_range<unsigned int>> limits;
    std::vector<unsigned int> snapPositions;
    Text* readout = nullptr;
    bool readoutVisible = false;
    bool flagSide = false;
    int readoutWidth = 48;
    checked_value<String> readoutText;
    checked_value<int> lastPosition;
    /// The grab: where the press was and how far from the thumb's centre.
    Point pressPoint;
    int pressPosition = 0;
    int grabOffset = 0;
    bool fine = false;
};

} // namespace UI
