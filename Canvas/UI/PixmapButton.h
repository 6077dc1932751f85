#pragma once

#include "Canvas/UI/Button.h"

#include <boost/shared_ptr.hpp>

namespace UI
{

class DIBits;

/// A button drawn from images by state: "NormalImage" while up and "PressedImage" while
/// pressed (resource names of PNG images), with an optional overlay pair named by "Image"
/// ("<Image>Normal.png" and "<Image>Pressed.png") centred on top. A missing image draws
/// nothing. "Disabled Alpha" is the base alpha while disabled.
class PixmapButton : public Button
{
public:
    PixmapButton(Frame* frame, Window* parent, String const& name, Mode mode = Momentary);
    ~PixmapButton() override;

    /// "NormalImage" becomes `prefix` + "Normal.png" and "PressedImage" `prefix` + "Pressed.png".
    void SetPixmaps(String const& prefix);
    /// The overlay pair's name.
    void SetOverlayImage(String const& prefix);
    /// Added to the centred overlay position in the up and the pressed state.
    void SetOverlayOffsets(Point const& normal, Point const& pressed);
    /// Moves the overlay one pixel down while pressed.
    void SetOverlayPressShift(bool on);
    /// Makes the window the size of the normal image; nothing without one.
    void SetSizeFromImage();

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("PixmapButton"); }

protected:
    /// The state's image: the pressed one while pressed, else the normal one; may be null.
    virtual DIBits* getBits() const;
    /// The state's overlay image and, in `point`, where it goes; null without one.
    virtual DIBits* getOverlayBits(Point& point) const;
    virtual unsigned char getBitsAlpha() const { return GetEffectiveAlpha(); }
    virtual unsigned char getOverlayAlpha() const { return GetEffectiveAlpha(); }
    unsigned char getDisabledAlpha() const override;

private:
    void slotImagesChanged();

    boost::shared_ptr<DIBits> normalBits;
    boost::shared_ptr<DIBits> pressedBits;
    boost::shared_ptr<DIBits> overlayNormal;
    boost::shared_ptr<DIBits> overlayPressed;
    Point overlayOffsetNormal;
    Point overlayOffsetPressed;
    bool overlayPressShift = false;
};

} // namespace UI
