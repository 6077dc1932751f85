#pragma once

#include "Canvas/UI/ScrollBar.h"

#include <boost/shared_ptr.hpp>

namespace UI
{

class DIBits;

/// The default look of a scroll bar, in one of three styles: 0 track and buttons (skin pieces
/// "UI/png/ScrollBar_*.png" from the resources), 1 slim, 2 simple (rounded boxes in the palette
/// colours "SliderColor" and "SliderHandleColor", no arrows). The bar's cross size is fixed by
/// the style: the artwork's for style 0, 11 for style 1 and 8 for style 2. Style 0 without its
/// artwork in the resources draws itself in the palette colours, 15 across: boxed arrows, the
/// track and a rounded thumb, so that a bar that takes clicks is always seen.
class SimpleScrollBar : public ScrollBar
{
public:
    enum Style : int
    {
        TrackAndButtons = 0,
        Slim = 1,
        Simple = 2
    };

    SimpleScrollBar(Frame* frame, Window* parent, String const& name, Orientation orientation,
                    Style style = TrackAndButtons);

    Style GetStyle() const { return style; }
    void Draw(DrawContext* context) override;
    void onPaletteChange() override;

protected:
    Rect getDecreaseArrowGeometry() override;
    Rect getIncreaseArrowGeometry() override;
    Rect getTrackGeometry() override;
    int getMinimumThumbSize() override;

private:
    void loadPieces();
    void DrawTrackAndButtonsStyle(DrawContext* context);
    void DrawSlimAndSimpleStyle(DrawContext* context);
    /// Style 0 in shapes, for resources without its artwork.
    void DrawDrawnTrackAndButtons(DrawContext* context);
    bool hasArtwork() const { return decreaseArrow && increaseArrow && thumbFillBits; }
    /// The length of the arrows along the bar.
    int arrowLength() const;
    /// A rectangle from `start` over `length` along the bar, across all of it.
    Rect alongBar(int start, int length) const;
    /// Draws `start`, `fill` repeated, `end` from `from` over `length` along the bar.
    void drawThreePieces(DrawContext* context, DIBits* start, DIBits* fill, DIBits* end, int from,
                         int length);

    Style style;
    int crossSize = 15;
    unsigned int sliderColor = 0xFFD5D5D5u;
    unsigned int handleColor = 0xFF7F7F7Fu;
    boost::shared_ptr<DIBits> decreaseArrow, increaseArrow;
    boost::shared_ptr<DIBits> trackStartBits, trackFillBits, trackEndBits;
    boost::shared_ptr<DIBits> thumbStartBits, thumbFillBits, thumbEndBits;
};

/// The theme's scroll bar: a track-and-buttons `SimpleScrollBar`.
ScrollBar* CreateSimpleScrollBar(Frame* frame, Window* parent, String const& name,
                                 Orientation orientation);

} // namespace UI
