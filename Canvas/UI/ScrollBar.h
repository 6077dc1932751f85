#pragma once

#include "Canvas/UI/Orientation.h"
#include "Canvas/UI/Window.h"

namespace UI
{

/// When a scroll view shows a bar.
enum ScrollBarMode : int
{
    ScrollBarAutomatic = 0,
    ScrollBarAlwaysOff = 1,
    ScrollBarAlwaysOn = 2
};

/// The behaviour of a scroll bar: a value inside a range, shown as a thumb on a track between
/// two optional arrows. Subclasses give the geometry of the pieces and draw them. The value
/// moves by the arrows (a tenth of the page), by paging in the track, by dragging the thumb and
/// by the wheel; pressed arrows and paging repeat after a delay while the mouse is held.
///
/// An empty range (max below min) means not scrollable: the thumb is gone, the arrows only
/// report `signalEndReached` and the wheel is taken without effect.
class ScrollBar : public Window
{
public:
    ScrollBar(Frame* frame, Window* parent, String const& name, Orientation orientation);
    ~ScrollBar() override;

    /// The new value, after the user moved it.
    Signal<int> signalScrolled;
    /// False at the start, true at the end: an arrow was pressed with the value at its limit,
    /// or the range is empty.
    Signal<bool> signalEndReached;

    /// Sets range, value and page at once; the same three again do nothing. The value is
    /// clamped into the range; with an empty range it becomes 0. Emits no signal.
    void SetParameters(value_range<int> const& range, int value, int pageSize);
    /// No range, value 0: the bar shows an empty track.
    void Clear();

    Orientation GetOrientation() const { return orientation; }
    int GetValue() const { return value; }
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;
    int GetPageSize() const { return pageSize; }
    value_range<int> const& GetRange() const { return range; }
    int GetThumbPos() const { return thumbPos; }
    int GetThumbSize() const { return thumbSize; }
    int GetDragMode() const { return dragMode; }
    /// Pixels of value per wheel notch (`isValue`), or thumb pixels per notch otherwise.
    void SetWheelStep(float step, bool isValue)
    {
        wheelStep = step;
        wheelStepIsValue = isValue;
    }

    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onMouseMove(Point const& p, unsigned int flags) override;
    bool onMouseRelease(Point const& p, unsigned int flags) override;
    bool onMouseWheel(Point const& p, int delta, unsigned int flags) override;
    void onTimer(unsigned int id) override;
    void onSetGeometry() override;

protected:
    /// The thumb's length along the track.
    virtual int computeThumbSize();
    /// Local rectangles of the pieces; an empty rectangle means the piece is absent.
    virtual Rect getDecreaseArrowGeometry() = 0;
    virtual Rect getIncreaseArrowGeometry() = 0;
    virtual Rect getTrackGeometry() = 0;
    virtual int getMinimumThumbSize() = 0;
    virtual unsigned int getInitialDelayIntervalMillis() { return 200; }
    virtual unsigned int getAutoScrollIntervalMillis() { return 100; }

    /// False for an empty range.
    bool isValidState() const { return range.maximum >= range.minimum; }
    /// Recomputes thumb size and place from the value and repaints.
    void updateThumb();
    /// The track's start and length along the bar.
    int trackStart();
    int trackLength();

private:
    /// Sets a clamped value; on a change updates the thumb and emits `signalScrolled`.
    bool moveTo(int newValue);
    /// One step of the held arrow or of paging.
    void repeatStep();
    void endDrags();
    int along(Point const& p) const { return orientation == Horizontal ? p.x : p.y; }
    int clampValue(long long v) const;

    Orientation orientation;
    int value = 0;
    int pageSize = 100;
    value_range<int> range{0, -1};
    bool pageForward = false;
    int thumbPos = 0;
    int thumbSize = 0;
    int dragOffset = 0;
    bool dragging = false;
    int dragMode = 0;
    checked_value<unsigned int> delayTimer;
    checked_value<unsigned int> repeatTimer;
    float wheelStep = 40.0f;
    bool wheelStepIsValue = true;
    /// Where the mouse is, for paging that stops under it.
    Point lastMouse;
};

} // namespace UI
