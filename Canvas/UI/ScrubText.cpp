#include "Canvas/UI/ScrubText.h"

#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Text.h"

#include <cmath>

namespace UI
{

namespace
{
int const PositionCount = 1000;
/// A wheel notch moves as far as this many pixels of drag.
float const PixelsPerNotch = 4.0f;
unsigned int const Ink = 0xFF202020u;
unsigned int const Underline = 0xFF8090A8u;
} // namespace

ScrubText::ScrubText(Frame* frame, Window* parent, String const& name)
    : ParamControl(frame, parent, name, PositionCount)
{
    build();
}

ScrubText::ScrubText(Frame* frame, Window* parent, String const& name,
                     Controller::FloatParam* param)
    : ParamControl(frame, parent, name, param)
{
    build();
}

ScrubText::ScrubText(Frame* frame, Window* parent, String const& name, String const& keyPath)
    : ParamControl(frame, parent, name, keyPath)
{
    build();
}

void ScrubText::build()
{
    CreateProperty("Wheel Delta Multiplier", 1.0f);
    text =
        new Text(GetFrame(), this, String("%1 Text").Arg(GetName()), String(""),
                 checked_value<unsigned int>(), HAlignCenter, Ink, Point(0, 0), Size(0, 0), false);
    text->SetDynamicLayoutMode(DynamicLayoutNever);
    SetPositionRange(value_range<int>(0, PositionCount));
    SetCursor(Cursor(Cursor::OpenHand));
    SetGeometry(GetGeometry().left, GetGeometry().top, 72, 18);
    onValueShown();
}

void ScrubText::onSetGeometry()
{
    if (text)
        text->SetGeometry(0, 0, GetWidth(), GetHeight());
}

void ScrubText::onValueShown()
{
    if (text)
        text->SetText(GetReadoutText() + GetUnits());
}

void ScrubText::SetLogScale(bool on, value_range<float> const& range)
{
    scaleType = on ? ScaleLog : ScaleLinear;
    SetOverrideValueRange(on ? checked_value<value_range<float>>(range)
                             : checked_value<value_range<float>>());
}

void ScrubText::SetMaxNumDecimalPlaces(int places)
{
    maxDecimalPlaces = places < 0 ? 0 : places;
    onValueShown();
}

void ScrubText::SetAboveBelowOneDecimalPlaces(bool on)
{
    aboveBelowOne = on;
    onValueShown();
}

String ScrubText::formatValue(float value) const
{
    String shown = ParamControl::formatValue(value);
    if (aboveBelowOne && std::fabs(value) < 1.0f && shown != "-inf")
    {
        shown = String("%1").Arg(value, static_cast<unsigned int>(maxDecimalPlaces));
        if (showPlusSign && value > 0.0f)
            shown = String("+") + shown;
    }
    return shown;
}

void ScrubText::handleUserDelta(float pixels)
{
    float const step = pixels * sensitivity * (fine ? 0.1f : 1.0f);
    int const moved = static_cast<int>(std::round(step));
    if (moved != 0)
        setUserPosition(position + moved);
}

bool ScrubText::onMousePress(Point const& p, unsigned int flags)
{
    if (!IsEnabledTo() || !controller)
        return false;
    if (isDragging())
        return true;
    if (KeyCode::IsAltPressed())
    {
        SetFocus();
        handleUserReset();
        return true;
    }
    SetCursor(Cursor(Cursor::ClosedHand), true);
    beginDrag();
    fine = (flags & (FlagControl | FlagCommand)) != 0;
    pressPoint = p;
    pressPosition = position;
    return true;
}

bool ScrubText::onMouseMove(Point const& p, unsigned int flags)
{
    if (!isDragging())
        return false;
    bool const nowFine = (flags & (FlagControl | FlagCommand)) != 0;
    if (nowFine != fine)
    {
        // The mode changes under the mouse: the drag goes on from here at the new rate.
        fine = nowFine;
        pressPoint = p;
        pressPosition = position;
        return true;
    }
    float const pixels = float(p.x - pressPoint.x) + float(pressPoint.y - p.y);
    int const target =
        pressPosition + static_cast<int>(std::round(pixels * sensitivity * (fine ? 0.1f : 1.0f)));
    if (clampPosition(target) != position)
        setUserPosition(target);
    return true;
}

bool ScrubText::onMouseRelease(Point const&, unsigned int)
{
    if (!isDragging())
        return false;
    SetCursor(Cursor(Cursor::OpenHand), true);
    fine = false;
    endDrag();
    return true;
}

bool ScrubText::onMouseWheel(Point const&, int delta, unsigned int flags)
{
    if (!IsEnabledTo() || !controller)
        return false;
    checked_value<float> multiplier = GetProperty<float>("Wheel Delta Multiplier");
    fine = (flags & (FlagControl | FlagCommand)) != 0;
    handleUserDelta(delta / 120.0f * PixelsPerNotch * (multiplier ? *multiplier : 1.0f));
    fine = false;
    return true;
}

void ScrubText::Draw(DrawContext* context)
{
    // A dotted underline says the number can be dragged.
    context->DrawDottedLine(Horizontal, GetHeight() - 1, 2, GetWidth() - 3, Underline,
                            GetEffectiveAlpha());
    drawFocusRing(context, Rect(0, GetWidth() - 1, 0, GetHeight() - 1));
    Window::Draw(context);
}

} // namespace UI
