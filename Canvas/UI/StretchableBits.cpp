#include "Canvas/UI/StretchableBits.h"

#include "Canvas/UI/BitBlt.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Media.h"

#include <algorithm>

namespace UI
{

namespace
{

// One patch: `src` of the source into `dst` of the target. A direction whose length is kept
// (the corners, and the edges across their thickness) is clipped by moving both rectangles
// together, so that a corner hanging off a small target stays at its own size; ScaleBlt's own
// clipping would squeeze it instead.
void blitPatch(UI::DIBits const& source, UI::Rect src, UI::DIBits& target, UI::Rect dst)
{
    if (src.Width() <= 0 || src.Height() <= 0 || dst.Width() <= 0 || dst.Height() <= 0)
        return;
    if (src.Width() == dst.Width())
    {
        int const cutLeft = std::max(0, -dst.left);
        int const cutRight = std::max(0, dst.right - (target.GetWidth() - 1));
        src.left += cutLeft, dst.left += cutLeft;
        src.right -= cutRight, dst.right -= cutRight;
    }
    if (src.Height() == dst.Height())
    {
        int const cutTop = std::max(0, -dst.top);
        int const cutBottom = std::max(0, dst.bottom - (target.GetHeight() - 1));
        src.top += cutTop, dst.top += cutTop;
        src.bottom -= cutBottom, dst.bottom -= cutBottom;
    }
    if (dst.Width() <= 0 || dst.Height() <= 0)
        return;
    UI::ScaleBlt(&source, src, &target, dst);
}

} // namespace

StretchableBits::StretchableBits(String const& name_, int left_, int right_, int top_, int bottom_)
    : name(name_), left(left_), right(right_), top(top_), bottom(bottom_)
{
    source = UI::Media::GetPNGBits(name, true, 0.0f);
    resized = UI::Media::GetPNGBits(name, true, 0.0f);
    if (!source)
        return;
    edgesFit = left + right <= source->GetWidth() && top + bottom <= source->GetHeight();
    if (edgesFit)
    {
        size = UI::Size(source->GetWidth(), source->GetHeight());
        updateResizedBits(source->GetWidth(), source->GetHeight());
    }
}

UI::Rect StretchableBits::GetRect() const
{
    if (!size.present)
        return UI::Rect(0, -1, 0, -1);
    return UI::Rect(0, size.value.width - 1, 0, size.value.height - 1);
}

UI::Size StretchableBits::GetOriginalSize() const
{
    return source ? source->GetSize() : UI::Size(0, 0);
}

void StretchableBits::Resize(int width, int height)
{
    if (size.present && size.value.width == width && size.value.height == height)
        return;
    updateResizedBits(width, height);
}

void StretchableBits::SetWidth(int width)
{
    Resize(width, GetHeight());
}

void StretchableBits::ApplyGammaCorrection(float gamma)
{
    boost::shared_ptr<UI::DIBits> corrected = UI::Media::GetPNGBits(name, true, gamma);
    if (!corrected)
        return;
    source = corrected;
    if (size.present)
        updateResizedBits(size.value.width, size.value.height);
    else
        resized = source;
}

void StretchableBits::ApplyColorOverlay(unsigned int const& color, bool useAlpha)
{
    if (!resized)
        return;
    // Unsized, the stretched bits are still the cached source that others share: tint a copy.
    if (resized == source)
        resized = source->CopyToPtr();
    resized->ApplyColorOverlay(color, useAlpha);
}

void StretchableBits::updateResizedBits(int w, int h)
{
    if (!source || w <= 0 || h <= 0)
        return;
    boost::shared_ptr<UI::DIBits> target =
        UI::CreateDIBits(UI::Size(w, h), checked_value<unsigned int>(0));
    target->SetHasAlpha(source->HasAlpha());

    int const W = source->GetWidth();
    int const H = source->GetHeight();
    int const l = left, r = right, t = top, b = bottom;
    UI::DIBits const& s = *source;
    UI::DIBits& d = *target;

    // Corners at their own size.
    blitPatch(s, UI::Rect(0, l - 1, 0, t - 1), d, UI::Rect(0, l - 1, 0, t - 1));
    blitPatch(s, UI::Rect(W - r, W - 1, 0, t - 1), d, UI::Rect(w - r, w - 1, 0, t - 1));
    blitPatch(s, UI::Rect(0, l - 1, H - b, H - 1), d, UI::Rect(0, l - 1, h - b, h - 1));
    blitPatch(s, UI::Rect(W - r, W - 1, H - b, H - 1), d, UI::Rect(w - r, w - 1, h - b, h - 1));
    // Top and bottom edges across, left and right edges down.
    blitPatch(s, UI::Rect(l, W - r - 1, 0, t - 1), d, UI::Rect(l, w - r - 1, 0, t - 1));
    blitPatch(s, UI::Rect(l, W - r - 1, H - b, H - 1), d, UI::Rect(l, w - r - 1, h - b, h - 1));
    blitPatch(s, UI::Rect(0, l - 1, t, H - b - 1), d, UI::Rect(0, l - 1, t, h - b - 1));
    blitPatch(s, UI::Rect(W - r, W - 1, t, H - b - 1), d, UI::Rect(w - r, w - 1, t, h - b - 1));
    // The middle both ways.
    blitPatch(s, UI::Rect(l, W - r - 1, t, H - b - 1), d, UI::Rect(l, w - r - 1, t, h - b - 1));

    target->SetHasAlpha(source->HasAlpha());
    resized = target;
    size = UI::Size(w, h);
}

} // namespace UI
