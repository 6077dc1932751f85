#include "Canvas/UI/Slider.h"

#include "Canvas/UI/AGGInlineRenderer.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Text.h"

#include <agg_rounded_rect.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace UI
{

namespace
{
/// The thumb's length along the track.
int const ThumbLength = 10;
unsigned int const TrackColor = 0xFFC8C8C8u;
unsigned int const FillColor = 0xFF2F6FC0u;
unsigned int const ThumbColor = 0xFF505458u;
unsigned int const Ink = 0xFF202020u;
} // namespace

Slider::Slider(Frame* frame, Window* parent, String const& name)
    : ParamControl(frame, parent, name, 100)
{
    build(Horizontal);
}

Slider::Slider(Frame* frame, Window* parent, String const& name, Controller::FloatParam* param,
               Orientation o)
    : ParamControl(frame, parent, name, param)
{
    build(o);
}

Slider::Slider(Frame* frame, Window* parent, String const& name, String const& keyPath)
    : ParamControl(frame, parent, name, keyPath)
{
    build(Horizontal);
}

void Slider::build(Orientation o)
{
    orientation = o;
    readout =
        new Text(GetFrame(), this, String("%1 Readout").Arg(GetName()), String(""),
                 checked_value<unsigned int>(), HAlignRight, Ink, Point(0, 0), Size(0, 14), false);
    readout->SetDynamicLayoutMode(DynamicLayoutNever);
    readout->Hide();
    if (orientation == Horizontal)
        SetGeometry(GetGeometry().left, GetGeometry().top, 160, 18);
    else
        SetGeometry(GetGeometry().left, GetGeometry().top, 18, 120);
    onValueShown();
}

// ---- settings

void Slider::SetPositionLimits(checked_value<value_range<unsigned int>> const& newLimits)
{
    limits = newLimits;
    Update();
}

void Slider::SetOrientation(Orientation o)
{
    orientation = o;
    onSetGeometry();
    Update();
}

void Slider::SetFlagSide(bool leftOrTop)
{
    flagSide = leftOrTop;
    onSetGeometry();
}

void Slider::SetReadoutTextColor(unsigned int color)
{
    readout->SetColor(color);
}

void Slider::SetReadoutWidth(int width)
{
    readoutWidth = std::max(0, width);
    onSetGeometry();
}

void Slider::SetReadoutText(checked_value<String> const& text)
{
    readoutText = text;
    onValueShown();
}

void Slider::SetReadoutVisible(bool visible)
{
    readoutVisible = visible;
    if (visible)
        readout->Show();
    else
        readout->Hide();
    onSetGeometry();
    Update();
}

// ---- geometry

void Slider::onSetGeometry()
{
    if (!readout)
        return;
    int const w = GetWidth();
    int const h = GetHeight();
    if (orientation == Horizontal)
        readout->SetGeometry(flagSide ? 0 : w - readoutWidth, (h - 14) / 2, readoutWidth, 14);
    else
        readout->SetGeometry(0, flagSide ? 0 : h - 14, w, 14);
}

Rect Slider::trackRect() const
{
    Rect r(0, GetWidth() - 1, 0, GetHeight() - 1);
    if (!readoutVisible)
        return r;
    if (orientation == Horizontal)
    {
        if (flagSide)
            r.left += readoutWidth + 4;
        else
            r.right -= readoutWidth + 4;
    }
    else if (flagSide)
        r.top += 16;
    else
        r.bottom -= 16;
    return r;
}

Rect Slider::thumbRect() const
{
    Rect const track = trackRect();
    int const span = positionRange.maximum - positionRange.minimum;
    double const f = span == 0 ? 0.0 : double(position - positionRange.minimum) / span;
    if (orientation == Horizontal)
    {
        int const travel = std::max(0, track.Width() - ThumbLength);
        int const left = track.left + static_cast<int>(std::lround(f * travel));
        return Rect(Point(left, track.top), Size(ThumbLength, track.Height()));
    }
    int const travel = std::max(0, track.Height() - ThumbLength);
    int const top = track.bottom + 1 - ThumbLength - static_cast<int>(std::lround(f * travel));
    return Rect(Point(track.left, top), Size(track.Width(), ThumbLength));
}

int Slider::pointToPosition(Point const& p) const
{
    Rect const track = trackRect();
    int const span = positionRange.maximum - positionRange.minimum;
    double f;
    if (orientation == Horizontal)
    {
        int const travel = std::max(1, track.Width() - ThumbLength);
        f = double(p.x - track.left - ThumbLength / 2) / travel;
    }
    else
    {
        int const travel = std::max(1, track.Height() - ThumbLength);
        f = double(track.bottom - ThumbLength / 2 - p.y) / travel;
    }
    f = std::min(1.0, std::max(0.0, f));
    return positionRange.minimum + static_cast<int>(std::lround(f * span));
}

// ---- position

int Slider::clampPosition(int pos) const
{
    pos = ParamControl::clampPosition(pos);
    if (limits)
    {
        int const lo = static_cast<int>(std::min(limits.value.minimum, limits.value.maximum));
        int const hi = static_cast<int>(std::max(limits.value.minimum, limits.value.maximum));
        pos = std::min(hi, std::max(lo, pos));
    }
    return pos;
}

int Slider::snap(int pos) const
{
    int best = pos;
    int bestDistance = -1;
    // Strictly nearer wins, so on a tie the earlier snap position stays.
    for (unsigned int s : snapPositions)
    {
        int const distance = std::abs(static_cast<int>(s) - pos);
        if (bestDistance < 0 || distance < bestDistance)
        {
            best = static_cast<int>(s);
            bestDistance = distance;
        }
    }
    return best;
}

void Slider::updatePosition(Point const& p)
{
    int const old = position;
    int const pointed = snap(pointToPosition(p));
    setUserPosition(pointed);
    if (pointed != old)
        signalUserMoved(static_cast<unsigned int>(position));
}

void Slider::onValueShown()
{
    if (!readout)
        return;
    readout->SetText(readoutText ? *readoutText : GetReadoutText() + GetUnits());
    if (!lastPosition || *lastPosition != position)
    {
        lastPosition = position;
        signalPositionChanged(static_cast<unsigned int>(position));
    }
}

// ---- input

bool Slider::onMousePress(Point const& p, unsigned int flags)
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
    if (!trackRect().Contains(p))
        return false;
    beginDrag();
    Rect const thumb = thumbRect();
    if (thumb.Contains(p))
    {
        // Grabbed: the thumb keeps its place under the mouse.
        grabOffset = orientation == Horizontal ? p.x - (thumb.left + ThumbLength / 2)
                                               : p.y - (thumb.top + ThumbLength / 2);
    }
    else
    {
        grabOffset = 0;
        updatePosition(p);
    }
    pressPoint = p;
    pressPosition = position;
    fine = (flags & (FlagControl | FlagCommand)) != 0;
    return true;
}

bool Slider::onMouseMove(Point const& p, unsigned int flags)
{
    if (!isDragging())
        return false;
    if (flags & FlagRightButton)
        return true;
    bool const nowFine = (flags & (FlagControl | FlagCommand)) != 0;
    if (nowFine != fine)
    {
        // Ctrl went down or up during the drag: it goes on from here, without a jump.
        fine = nowFine;
        pressPoint = p;
        pressPosition = position;
        grabOffset = 0;
        if (!fine)
        {
            Rect const thumb = thumbRect();
            grabOffset = orientation == Horizontal ? p.x - (thumb.left + ThumbLength / 2)
                                                   : p.y - (thumb.top + ThumbLength / 2);
        }
        return true;
    }
    if (fine)
    {
        // Fine: a tenth of the way the mouse went since the press.
        int const moved = pointToPosition(p) - pointToPosition(pressPoint);
        int const old = position;
        int const target = snap(pressPosition + static_cast<int>(std::round(moved * 0.1)));
        setUserPosition(target);
        if (target != old)
            signalUserMoved(static_cast<unsigned int>(position));
        return true;
    }
    Point const at =
        orientation == Horizontal ? Point(p.x - grabOffset, p.y) : Point(p.x, p.y - grabOffset);
    updatePosition(at);
    return true;
}

bool Slider::onMouseRelease(Point const&, unsigned int)
{
    if (!isDragging())
        return false;
    endDrag();
    return true;
}

// ---- drawing

void Slider::drawTrack(DrawContext*, AGGInlineRenderer& renderer, Rect const& track,
                       unsigned char alpha)
{
    Rect const thumb = thumbRect();
    agg::path_storage path;
    bool const across = orientation == Horizontal;
    double const mid =
        across ? (track.top + track.bottom + 1) / 2.0 : (track.left + track.right + 1) / 2.0;
    agg::rounded_rect groove(across ? track.left : mid - 2.0, across ? mid - 2.0 : track.top,
                             across ? track.right + 1 : mid + 2.0,
                             across ? mid + 2.0 : track.bottom + 1, 2.0);
    path.concat_path(groove);
    fillPath(renderer, path, TrackColor, alpha);
    path.remove_all();
    agg::rounded_rect done(across ? track.left : mid - 2.0,
                           across ? mid - 2.0 : (thumb.top + thumb.bottom) / 2.0,
                           across ? (thumb.left + thumb.right) / 2.0 : mid + 2.0,
                           across ? mid + 2.0 : track.bottom + 1, 2.0);
    path.concat_path(done);
    fillPath(renderer, path, FillColor, alpha);
}

void Slider::Draw(DrawContext* context)
{
    unsigned char const alpha = IsEnabledTo() ? GetEffectiveAlpha() : GetEffectiveAlpha() / 2;
    Rect const track = trackRect();
    {
        AGGInlineRenderer renderer(context, "Slider Renderer");
        if (renderer.IsValid() && track.Width() > 0 && track.Height() > 0)
        {
            drawTrack(context, renderer, track, alpha);
            Rect const thumb = thumbRect();
            agg::path_storage path;
            agg::rounded_rect knob(thumb.left + 0.5, thumb.top + 0.5, thumb.right + 0.5,
                                   thumb.bottom + 0.5, 3.0);
            path.concat_path(knob);
            fillPath(renderer, path, ThumbColor, alpha);
        }
    }
    drawFocusRing(context, track);
    Window::Draw(context);
}

} // namespace UI
