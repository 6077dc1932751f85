#include "Canvas/UI/PixmapButton.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Media.h"

#include <algorithm>

namespace UI
{

namespace
{
char const* const kNormal = "NormalImage";
char const* const kPressed = "PressedImage";
char const* const kOverlay = "Image";
char const* const kDisabledAlpha = "Disabled Alpha";

boost::shared_ptr<DIBits> load(String const& name)
{
    if (name.IsNull() || name.IsEmpty())
        return boost::shared_ptr<DIBits>();
    return Media::GetPNGBits(name, true, 0.0f);
}

void blit(DrawContext* context, DIBits* bits, Point const& at, unsigned char alpha)
{
    if (bits && alpha)
        context->BitBlt(bits, Rect(Point(), bits->GetSize()), at, alpha);
}
} // namespace

PixmapButton::PixmapButton(Frame* frame, Window* parent, String const& name, Mode mode)
    : Button(frame, parent, name, mode)
{
    for (char const* property : {kNormal, kPressed, kOverlay})
    {
        CreateProperty(property, String(""));
        GetPropertyChangedSignal(property)->Connect(&PixmapButton::slotImagesChanged, this);
    }
    CreateProperty(kDisabledAlpha, 128);
}

PixmapButton::~PixmapButton() = default;

void PixmapButton::SetPixmaps(String const& prefix)
{
    SetProperty<String>(kNormal, prefix + "Normal.png");
    SetProperty<String>(kPressed, prefix + "Pressed.png");
}

void PixmapButton::SetOverlayImage(String const& prefix)
{
    SetProperty<String>(kOverlay, prefix);
}

void PixmapButton::SetOverlayOffsets(Point const& normal, Point const& pressed)
{
    overlayOffsetNormal = normal;
    overlayOffsetPressed = pressed;
    Update();
}

void PixmapButton::SetOverlayPressShift(bool on)
{
    overlayPressShift = on;
    Update();
}

void PixmapButton::SetSizeFromImage()
{
    if (normalBits)
        SetGeometry(GetGeometry().left, GetGeometry().top, normalBits->GetWidth(),
                    normalBits->GetHeight());
}

void PixmapButton::slotImagesChanged()
{
    normalBits = load(*GetProperty<String>(kNormal));
    pressedBits = load(*GetProperty<String>(kPressed));
    String const overlay = *GetProperty<String>(kOverlay);
    overlayNormal.reset();
    overlayPressed.reset();
    if (!overlay.IsEmpty())
    {
        overlayNormal = load(overlay + "Normal.png");
        overlayPressed = load(overlay + "Pressed.png");
    }
    Update();
}

DIBits* PixmapButton::getBits() const
{
    return IsPressed() ? pressedBits.get() : normalBits.get();
}

DIBits* PixmapButton::getOverlayBits(Point& point) const
{
    DIBits* bits = IsPressed() ? overlayPressed.get() : overlayNormal.get();
    if (!bits)
        return nullptr;
    Point const& offset = IsPressed() ? overlayOffsetPressed : overlayOffsetNormal;
    point =
        Point((GetWidth() - bits->GetWidth()) / 2, (GetHeight() - bits->GetHeight()) / 2) + offset;
    if (IsPressed() && overlayPressShift)
        point.y += 1;
    return bits;
}

unsigned char PixmapButton::getDisabledAlpha() const
{
    checked_value<int> alpha = GetProperty<int>(kDisabledAlpha);
    return (unsigned char)std::min(255, std::max(0, alpha ? *alpha : 128));
}

void PixmapButton::Draw(DrawContext* context)
{
    blit(context, getBits(), Point(), getBitsAlpha());
    Point at;
    DIBits* overlay = getOverlayBits(at);
    blit(context, overlay, at, getOverlayAlpha());
    Window::Draw(context);
}

} // namespace UI
