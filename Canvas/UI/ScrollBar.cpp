#include "Canvas/UI/ScrollBar.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/InputMessage.h"

#include <algorithm>
#include <cmath>

namespace UI
{

namespace
{

bool isInside(Rect const& r, Point const& p)
{
    return !r.IsEmpty() && r.Contains(p);
}

long long roundHalfAway(double v)
{
    return static_cast<long long>(v < 0 ? std::ceil(v - 0.5) : std::floor(v + 0.5));
}

} // namespace

ScrollBar::ScrollBar(Frame* frame, Window* parent, String const& name, Orientation orientation)
    : Window(frame, parent, name), orientation(orientation == Horizontal ? Horizontal : Vertical)
{
}

ScrollBar::~ScrollBar()
{
    endDrags();
}

int ScrollBar::clampValue(long long v) const
{
    if (!isValidState())
        return 0;
    return static_cast<int>(
        std::max<long long>(range.minimum, std::min<long long>(range.maximum, v)));
}

void ScrollBar::SetParameters(value_range<int> const& newRange, int newValue, int newPageSize)
{
    if (newRange.minimum == range.minimum && newRange.maximum == range.maximum &&
        newValue == value && newPageSize == pageSize)
        return;
    range = newRange;
    pageSize = newPageSize;
    value = clampValue(newValue);
    updateThumb();
}

void ScrollBar::Clear()
{
    endDrags();
    range = value_range<int>(0, -1);
    value = 0;
    updateThumb();
}

int ScrollBar::trackStart()
{
    Rect const track = getTrackGeometry();
    return orientation == Horizontal ? track.left : track.top;
}

int ScrollBar::trackLength()
{
    Rect const track = getTrackGeometry();
    if (track.IsEmpty())
        return 0;
    return orientation == Horizontal ? track.Width() : track.Height();
}

int ScrollBar::computeThumbSize()
{
    int const track = trackLength();
    if (!isValidState() || pageSize <= 0)
        return track;
    long long const span = static_cast<long long>(range.maximum) - range.minimum + 1 + pageSize;
    long long size = static_cast<long long>(pageSize) * track / span;
    size = std::max<long long>(size, getMinimumThumbSize());
    return static_cast<int>(std::min<long long>(size, track));
}

void ScrollBar::updateThumb()
{
    if (isValidState())
    {
        thumbSize = computeThumbSize();
        if (range.minimum == range.maximum)
            thumbPos = 0;
        else
            thumbPos = static_cast<int>(roundHalfAway(double(value - range.minimum) /
                                                      (double(range.maximum) - range.minimum) *
                                                      (trackLength() - thumbSize)));
    }
    else
    {
        thumbSize = 0;
        thumbPos = 0;
    }
    Update();
}

void ScrollBar::onSetGeometry()
{
    updateThumb();
}

bool ScrollBar::moveTo(int newValue)
{
    newValue = clampValue(newValue);
    if (newValue == value)
        return false;
    value = newValue;
    updateThumb();
    signalScrolled(value);
    return true;
}

bool ScrollBar::onMousePress(Point const& p, unsigned int)
{
    lastMouse = p;
    bool const onDecrease = isInside(getDecreaseArrowGeometry(), p);
    bool const onIncrease = isInside(getIncreaseArrowGeometry(), p);
    if (!isValidState())
    {
        if (onDecrease)
            signalEndReached(false);
        else if (onIncrease)
            signalEndReached(true);
        return true;
    }

    int const step = pageSize / 10;
    if (onDecrease)
    {
        dragMode = 3;
        GetFrame()->SetMouseCapture(this);
        if (value <= range.minimum)
            signalEndReached(false);
        else
            moveTo(value - step);
    }
    else if (onIncrease)
    {
        dragMode = 4;
        GetFrame()->SetMouseCapture(this);
        if (value >= range.maximum)
            signalEndReached(true);
        else
            moveTo(value + step);
    }
    else if (isInside(getTrackGeometry(), p))
    {
        int const offset = along(p) - trackStart();
        if (offset >= thumbPos && offset < thumbPos + thumbSize)
        {
            dragMode = 1;
            dragOffset = offset - thumbPos;
            dragging = true;
            GetFrame()->SetMouseCapture(this);
            return true;
        }
        dragMode = 2;
        pageForward = offset >= thumbPos + thumbSize;
        GetFrame()->SetMouseCapture(this);
        moveTo(pageForward ? value + pageSize : value - pageSize);
    }
    else
        return true;

    // Ended by hand at its first tick rather than made one-shot, so that the repeat timer it
    // starts never meets it in the frame's list.
    delayTimer = GetFrame()->SetTimer(this, getInitialDelayIntervalMillis());
    return true;
}

void ScrollBar::repeatStep()
{
    int const step = pageSize / 10;
    switch (dragMode)
    {
    case 2:
    {
        // Paging stops once the thumb has come under the mouse.
        int const offset = along(lastMouse) - trackStart();
        if (pageForward && offset >= thumbPos + thumbSize)
            moveTo(value + pageSize);
        else if (!pageForward && offset < thumbPos)
            moveTo(value - pageSize);
        break;
    }
    case 3:
        moveTo(value - step);
        break;
    case 4:
        moveTo(value + step);
        break;
    default:
        break;
    }
}

void ScrollBar::onTimer(unsigned int id)
{
    if (delayTimer.present && id == delayTimer.value)
    {
        GetFrame()->EndTimer(id);
        delayTimer = checked_value<unsigned int>();
        repeatTimer = GetFrame()->SetTimer(this, getAutoScrollIntervalMillis());
        repeatStep();
    }
    else if (repeatTimer.present && id == repeatTimer.value)
        repeatStep();
}

bool ScrollBar::onMouseMove(Point const& p, unsigned int)
{
    lastMouse = p;
    if (dragMode != 1 || !isValidState() || range.maximum == range.minimum)
        return dragMode != 0;
    int const free = trackLength() - thumbSize;
    if (free < 1)
        return true;
    double const v = range.minimum + (double(range.maximum) - range.minimum) *
                                         (along(p) - trackStart() - dragOffset) / free;
    moveTo(clampValue(roundHalfAway(v)));
    return true;
}

bool ScrollBar::onMouseRelease(Point const&, unsigned int)
{
    bool const had = dragMode != 0;
    endDrags();
    return had;
}

void ScrollBar::endDrags()
{
    dragMode = 0;
    dragging = false;
    Frame* frame = GetFrame();
    if (delayTimer.present)
        frame->EndTimer(delayTimer.value);
    if (repeatTimer.present)
        frame->EndTimer(repeatTimer.value);
    delayTimer = checked_value<unsigned int>();
    repeatTimer = checked_value<unsigned int>();
    if (frame->GetMouseCapture() == this)
        frame->ReleaseMouseCapture();
}

bool ScrollBar::onMouseWheel(Point const&, int delta, unsigned int flags)
{
    if (!isValidState())
        return true;
    // 120 units make one notch, and a positive value scrolls up.
    double step = delta / -120.0;
    if (flags & FlagShift)
        step *= 10.0;
    if (flags & FlagCommand)
        step /= 3.0;

    long long newValue;
    if (wheelStepIsValue)
        newValue = value + roundHalfAway(step * wheelStep);
    else
    {
        int const free = trackLength() - thumbSize;
        if (free < 1)
            return true;
        double const newThumb = thumbPos + step * 3.0;
        newValue = roundHalfAway(range.minimum +
                                 (double(range.maximum) - range.minimum) * newThumb / free);
    }
    moveTo(clampValue(newValue));
    return true;
}

bool ScrollBar::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                 TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    reply->SetValue("value", String::Number(value).CStr());
    reply->SetValue("min", String::Number(range.minimum).CStr());
    reply->SetValue("max", String::Number(range.maximum).CStr());
    return true;
}

} // namespace UI
