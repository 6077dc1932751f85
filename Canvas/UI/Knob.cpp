#include "Canvas/UI/Knob.h"

#include "Canvas/UI/AGGInlineRenderer.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Text.h"

#include <agg_arc.h>
#include <agg_conv_stroke.h>
#include <agg_ellipse.h>

#include <algorithm>
#include <cmath>

namespace UI
{

namespace
{
int const TextHeight = 14;
unsigned int const TrackColor = 0xFFC8C8C8u;
unsigned int const ValueColor = 0xFF2F6FC0u;
unsigned int const BodyColor = 0xFF505458u;
unsigned int const PointerColor = 0xFFFFFFFFu;
unsigned int const Ink = 0xFF202020u;
double const Pi = 3.14159265358979323846;

/// Degrees clockwise from the top, as AGG's radians (clockwise from the right on screen).
double aggAngle(float degrees)
{
    return (static_cast<double>(degrees) - 90.0) * Pi / 180.0;
}

} // namespace

Knob::Knob(Frame* frame, Window* parent, String const& name)
    : ParamControl(frame, parent, name, 100)
{
    build();
}

Knob::Knob(Frame* frame, Window* parent, String const& name, String const& caption,
           int positionCount)
    : ParamControl(frame, parent, name, positionCount)
{
    build();
    SetLabel(caption);
}

Knob::Knob(Frame* frame, Window* parent, String const& name, Controller::FloatParam* param)
    : ParamControl(frame, parent, name, param)
{
    build();
}

Knob::Knob(Frame* frame, Window* parent, String const& name, String const& keyPath)
    : ParamControl(frame, parent, name, keyPath)
{
    build();
}

void Knob::build()
{
    Frame* frame = GetFrame();
    label = new Text(frame, this, String("%1 Label").Arg(GetName()), String(""),
                     checked_value<unsigned int>(), HAlignCenter, Ink, Point(0, 0),
                     Size(0, TextHeight), false);
    readout = new Text(frame, this, String("%1 Readout Text").Arg(GetName()), String(""),
                       checked_value<unsigned int>(), HAlignRight, Ink, Point(0, 0),
                       Size(0, TextHeight), false);
    unit = new Text(frame, this, String("%1 Unit").Arg(GetName()), String(""),
                    checked_value<unsigned int>(), HAlignLeft, Ink, Point(0, 0),
                    Size(0, TextHeight), false);
    for (Text* child : {label, readout, unit})
        child->SetDynamicLayoutMode(DynamicLayoutNever);
    SetGeometry(GetGeometry().left, GetGeometry().top, 64, 84);
    onValueShown();
}

void Knob::onSetGeometry()
{
    if (!unit)
        return;
    int const w = GetWidth();
    int const h = GetHeight();
    label->SetGeometry(0, 0, w, TextHeight);
    int const readoutWidth = w * 3 / 5;
    readout->SetGeometry(0, h - TextHeight, readoutWidth, TextHeight);
    unit->SetGeometry(readoutWidth + 2, h - TextHeight, std::max(0, w - readoutWidth - 2),
                      TextHeight);
}

void Knob::onValueShown()
{
    if (!unit)
        return;
    label->SetText(GetLabel());
    readout->SetText(GetReadoutText());
    unit->SetText(GetUnits());
}

void Knob::SetAngleRange(value_range<float> const& range)
{
    angleRange = range;
    Update();
}

float Knob::PositionToAngle(int pos) const
{
    int const span = positionRange.maximum - positionRange.minimum;
    if (span == 0)
        return angleRange.minimum;
    float const p = static_cast<float>(clampPosition(pos) - positionRange.minimum) / span;
    return angleRange.minimum + (angleRange.maximum - angleRange.minimum) * p;
}

int Knob::AngleToPosition(float angle) const
{
    float const sweep = angleRange.maximum - angleRange.minimum;
    if (sweep == 0.0f)
        return positionRange.minimum;
    float const p = (angle - angleRange.minimum) / sweep;
    return clampPosition(
        positionRange.minimum +
        static_cast<int>(std::lround(p * (positionRange.maximum - positionRange.minimum))));
}

Rect Knob::dialRect() const
{
    int const top = TextHeight + 2;
    int const bottom = GetHeight() - TextHeight - 3;
    int const side = std::max(0, std::min(GetWidth() - 4, bottom - top + 1));
    int const left = (GetWidth() - side) / 2;
    return Rect(Point(left, top + (bottom - top + 1 - side) / 2), Size(side, side));
}

void Knob::Draw(DrawContext* context)
{
    Rect const dial = dialRect();
    unsigned char const alpha = IsEnabledTo() ? GetEffectiveAlpha() : GetEffectiveAlpha() / 2;
    AGGInlineRenderer renderer(context, "Knob Renderer");
    if (renderer.IsValid() && dial.Width() > 8)
    {
        double const cx = dial.left + dial.Width() / 2.0;
        double const cy = dial.top + dial.Height() / 2.0;
        double const r = dial.Width() / 2.0 - 3.0;
        double const a0 = aggAngle(angleRange.minimum);
        double const a1 = aggAngle(angleRange.maximum);
        double const av = aggAngle(PositionToAngle(position));

        agg::path_storage path;
        agg::arc track(cx, cy, r, r, a0, a1, a1 > a0);
        agg::conv_stroke<agg::arc> trackStroke(track);
        trackStroke.width(3.0);
        path.concat_path(trackStroke);
        fillPath(renderer, path, TrackColor, alpha);

        if (av != a0)
        {
            path.remove_all();
            agg::arc done(cx, cy, r, r, a0, av, av > a0);
            agg::conv_stroke<agg::arc> doneStroke(done);
            doneStroke.width(3.0);
            path.concat_path(doneStroke);
            fillPath(renderer, path, ValueColor, alpha);
        }

        path.remove_all();
        agg::ellipse body(cx, cy, r - 4.0, r - 4.0, 48);
        path.concat_path(body);
        fillPath(renderer, path, BodyColor, alpha);

        path.remove_all();
        path.move_to(cx + std::cos(av) * (r * 0.25), cy + std::sin(av) * (r * 0.25));
        path.line_to(cx + std::cos(av) * (r - 5.0), cy + std::sin(av) * (r - 5.0));
        agg::conv_stroke<agg::path_storage> pointer(path);
        pointer.width(2.0);
        pointer.line_cap(agg::round_cap);
        agg::path_storage pointerPath;
        pointerPath.concat_path(pointer);
        fillPath(renderer, pointerPath, PointerColor, alpha);
    }
    drawFocusRing(context, dial);
    Window::Draw(context);
}

bool Knob::onMousePress(Point const& p, unsigned int flags)
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
    if (flags & FlagShift)
    {
        SetFocus();
        Rect const dial = dialRect();
        nudge(p.y < dial.top + dial.Height() / 2 ? 1 : -1);
        return true;
    }
    beginDrag();
    pressPosition = position;
    pressY = p.y;
    fine = (flags & (FlagControl | FlagCommand)) != 0;
    return true;
}

bool Knob::onMouseMove(Point const& p, unsigned int flags)
{
    if (!isDragging())
        return false;
    // Moves with the right button held are not drags of the knob.
    if (flags & FlagRightButton)
        return true;
    bool const nowFine = (flags & (FlagControl | FlagCommand)) != 0;
    if (nowFine != fine)
    {
        // Ctrl went down or up during the drag: it goes on from here at the new rate, without
        // a jump.
        fine = nowFine;
        pressPosition = position;
        pressY = p.y;
    }
    double delta = (pressY - p.y) * 0.01 * (positionRange.maximum - positionRange.minimum);
    if (fine)
        delta *= 0.1;
    setUserPosition(pressPosition + static_cast<int>(std::round(delta)));
    return true;
}

bool Knob::onMouseRelease(Point const&, unsigned int)
{
    if (!isDragging())
        return false;
    endDrag();
    return true;
}

void Knob::nudge(int direction)
{
    int const up = positionRange.maximum >= positionRange.minimum ? 1 : -1;
    setUserPosition(position + up * direction);
    postUndoEvent();
}

} // namespace UI
