#include "Canvas/UI/SimpleScrollBar.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Media.h"

#include <algorithm>

namespace UI
{

namespace
{

boost::shared_ptr<DIBits> piece(char const* vertical, char const* horizontal,
                                Orientation orientation)
{
    return Media::GetPNGBits(orientation == Horizontal ? horizontal : vertical, true, 0.0f);
}

} // namespace

SimpleScrollBar::SimpleScrollBar(Frame* frame, Window* parent, String const& name,
                                 Orientation orientation, Style barStyle)
    : ScrollBar(frame, parent, name, orientation), style(barStyle)
{
    if (style == TrackAndButtons)
    {
        loadPieces();
        if (hasArtwork())
            crossSize =
                orientation == Horizontal ? decreaseArrow->GetHeight() : decreaseArrow->GetWidth();
    }
    else
        crossSize = style == Slim ? 11 : 8;
    if (GetOrientation() == Horizontal)
        SetFixedHeight(crossSize);
    else
        SetFixedWidth(crossSize);
    onPaletteChange();
}

void SimpleScrollBar::loadPieces()
{
    Orientation const o = GetOrientation();
    decreaseArrow = piece("UI/png/ScrollBar_ArrowUp.png", "UI/png/ScrollBar_ArrowLeft.png", o);
    increaseArrow = piece("UI/png/ScrollBar_ArrowDown.png", "UI/png/ScrollBar_ArrowRight.png", o);
    trackStartBits = piece("UI/png/ScrollBar_TrackTop.png", "UI/png/ScrollBar_TrackLeft.png", o);
    trackFillBits = piece("UI/png/ScrollBar_TrackVFill.png", "UI/png/ScrollBar_TrackHFill.png", o);
    trackEndBits = piece("UI/png/ScrollBar_TrackBottom.png", "UI/png/ScrollBar_TrackRight.png", o);
    thumbStartBits = piece("UI/png/ScrollBar_ThumbTop.png", "UI/png/ScrollBar_ThumbLeft.png", o);
    thumbFillBits = piece("UI/png/ScrollBar_ThumbVFill.png", "UI/png/ScrollBar_ThumbHFill.png", o);
    thumbEndBits = piece("UI/png/ScrollBar_ThumbBottom.png", "UI/png/ScrollBar_ThumbRight.png", o);
}

void SimpleScrollBar::onPaletteChange()
{
    checked_value<unsigned int> c = GetPaletteColor("SliderColor");
    sliderColor = c.present ? c.value : 0xFFD5D5D5u;
    c = GetPaletteColor("SliderHandleColor");
    handleColor = c.present ? c.value : 0xFF7F7F7Fu;
    Update();
}

Rect SimpleScrollBar::alongBar(int start, int length) const
{
    if (GetOrientation() == Horizontal)
        return Rect::FromXYWH(start, 0, length, GetHeight());
    return Rect::FromXYWH(0, start, GetWidth(), length);
}

int SimpleScrollBar::arrowLength() const
{
    if (style != TrackAndButtons)
        return 0;
    if (!hasArtwork())
        return crossSize;
    return GetOrientation() == Horizontal ? decreaseArrow->GetWidth() : decreaseArrow->GetHeight();
}

Rect SimpleScrollBar::getDecreaseArrowGeometry()
{
    if (style != TrackAndButtons)
        return Rect();
    return alongBar(0, arrowLength());
}

Rect SimpleScrollBar::getIncreaseArrowGeometry()
{
    if (style != TrackAndButtons)
        return Rect();
    int const length = GetOrientation() == Horizontal ? GetWidth() : GetHeight();
    return alongBar(length - arrowLength(), arrowLength());
}

Rect SimpleScrollBar::getTrackGeometry()
{
    int const length = GetOrientation() == Horizontal ? GetWidth() : GetHeight();
    if (style == TrackAndButtons)
    {
        // Two pixels of gap between the track and each arrow.
        int const start = arrowLength() + 2;
        return alongBar(start, std::max(0, length - 2 * start));
    }
    Rect track = alongBar(0, length);
    if (style == Slim)
    {
        if (GetOrientation() == Horizontal)
        {
            track.top += 3;
            track.bottom -= 4;
        }
        else
        {
            track.left += 3;
            track.right -= 4;
        }
    }
    return track;
}

int SimpleScrollBar::getMinimumThumbSize()
{
    switch (style)
    {
    case Slim:
        return 12;
    case Simple:
        return 0;
    default:
    {
        auto lengthOf = [this](boost::shared_ptr<DIBits> const& bits)
        {
            if (!bits)
                return 0;
            return GetOrientation() == Horizontal ? bits->GetWidth() : bits->GetHeight();
        };
        return lengthOf(thumbStartBits) + lengthOf(thumbEndBits);
    }
    }
}

void SimpleScrollBar::Draw(DrawContext* context)
{
    if (style == TrackAndButtons)
        DrawTrackAndButtonsStyle(context);
    else
        DrawSlimAndSimpleStyle(context);
    Window::Draw(context);
}

void SimpleScrollBar::drawThreePieces(DrawContext* context, DIBits* start, DIBits* fill,
                                      DIBits* end, int from, int length)
{
    bool const horizontal = GetOrientation() == Horizontal;
    auto lengthOf = [horizontal](DIBits* bits)
    { return bits ? (horizontal ? bits->GetWidth() : bits->GetHeight()) : 0; };
    auto blit = [&](DIBits* bits, int at, int maxLength)
    {
        if (!bits || maxLength <= 0)
            return;
        Rect source = bits->GetRect();
        if (horizontal)
            source.right = source.left + std::min(bits->GetWidth(), maxLength) - 1;
        else
            source.bottom = source.top + std::min(bits->GetHeight(), maxLength) - 1;
        context->BitBlt(bits, source, horizontal ? Point(at, 0) : Point(0, at),
                        GetEffectiveAlpha());
    };
    int const startLength = lengthOf(start);
    int const endLength = lengthOf(end);
    blit(start, from, length);
    // The fill is one slice of the skin, repeated to stretch it over the middle.
    int const fillLength = lengthOf(fill);
    int const middleEnd = from + length - endLength;
    for (int at = from + startLength; fillLength > 0 && at < middleEnd; at += fillLength)
        blit(fill, at, middleEnd - at);
    if (length > startLength)
        blit(end, std::max(from + startLength, middleEnd), length - startLength);
}

void SimpleScrollBar::DrawDrawnTrackAndButtons(DrawContext* context)
{
    unsigned char const alpha = GetEffectiveAlpha();
    bool const horizontal = GetOrientation() == Horizontal;
    context->DrawBox(alongBar(0, horizontal ? GetWidth() : GetHeight()), DrawContext::Filled,
                     sliderColor, alpha);
    // Each arrow: a box with a triangle of four rows pointing away from the track.
    auto arrow = [&](Rect const& box, bool towardStart)
    {
        context->DrawBox(box, DrawContext::Outline, handleColor, alpha);
        Point const middle((box.left + box.right) / 2, (box.top + box.bottom) / 2);
        for (int row = 0; row < 4; ++row)
        {
            int const along = (towardStart ? row : 3 - row) - 2;
            if (horizontal)
                context->DrawLine(Point(middle.x + along, middle.y - row),
                                  Point(middle.x + along, middle.y + row), handleColor, false,
                                  alpha);
            else
                context->DrawLine(Point(middle.x - row, middle.y + along),
                                  Point(middle.x + row, middle.y + along), handleColor, false,
                                  alpha);
        }
    };
    arrow(getDecreaseArrowGeometry(), true);
    arrow(getIncreaseArrowGeometry(), false);
    if (!isValidState() || GetThumbSize() <= 0)
        return;
    Rect thumb = alongBar(trackStart() + GetThumbPos(), GetThumbSize());
    if (horizontal)
    {
        thumb.top += 3;
        thumb.bottom -= 3;
    }
    else
    {
        thumb.left += 3;
        thumb.right -= 3;
    }
    context->DrawRoundedBox(thumb, 3, DrawContext::Filled, handleColor, alpha);
}

void SimpleScrollBar::DrawTrackAndButtonsStyle(DrawContext* context)
{
    if (!hasArtwork())
    {
        DrawDrawnTrackAndButtons(context);
        return;
    }
    unsigned char const alpha = GetEffectiveAlpha();
    Rect const decrease = getDecreaseArrowGeometry();
    Rect const increase = getIncreaseArrowGeometry();
    if (decreaseArrow)
        context->BitBlt(decreaseArrow.get(), decreaseArrow->GetRect(),
                        Point(decrease.left, decrease.top), alpha);
    if (increaseArrow)
        context->BitBlt(increaseArrow.get(), increaseArrow->GetRect(),
                        Point(increase.left, increase.top), alpha);
    int const start = trackStart();
    int const length = trackLength();
    drawThreePieces(context, trackStartBits.get(), trackFillBits.get(), trackEndBits.get(), start,
                    length);
    if (isValidState() && GetThumbSize() > 0)
        drawThreePieces(context, thumbStartBits.get(), thumbFillBits.get(), thumbEndBits.get(),
                        start + GetThumbPos(), GetThumbSize());
}

void SimpleScrollBar::DrawSlimAndSimpleStyle(DrawContext* context)
{
    unsigned char const alpha = GetEffectiveAlpha();
    Rect const track = getTrackGeometry();
    if (track.IsEmpty())
        return;
    context->DrawRoundedBoxOutline(track, 3, 1, sliderColor, alpha);
    if (!isValidState())
        return;
    int const from = trackStart() + GetThumbPos() + 2;
    int const to = trackStart() + GetThumbPos() + GetThumbSize() + 1;
    Rect thumb = alongBar(0, GetOrientation() == Horizontal ? GetWidth() : GetHeight());
    if (GetOrientation() == Horizontal)
    {
        thumb.top += 3;
        thumb.bottom -= 3;
        thumb.left = from;
        thumb.right = to;
    }
    else
    {
        thumb.left += 3;
        thumb.right -= 3;
        thumb.top = from;
        thumb.bottom = to;
    }
    if (!thumb.IsEmpty())
        context->DrawRoundedBox(thumb, 3, DrawContext::Filled, handleColor, alpha);
}

ScrollBar* CreateSimpleScrollBar(Frame* frame, Window* parent, String const& name,
                                 Orientation orientation)
{
    return new SimpleScrollBar(frame, parent, name, orientation);
}

} // namespace UI
