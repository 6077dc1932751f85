#pragma once

#include "Canvas/UI/Alignment.h"
#include "Canvas/UI/Native/DrawDIBSectionFunction.h"
#include "Canvas/UI/Orientation.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace UI
{
class DIBits;
class Font;
class MemoryDrawContext;
namespace Native
{
class DIBSection;
}

/// What windows draw into during a paint: `Begin`, any number of clip, translation and draw
/// calls, `End`. Colors are 0xAARRGGBB; draw calls force the top byte to 0xFF and take
/// transparency from the separate `alpha` argument. Coordinates of draw calls move with the
/// translation; the clip is in bitmap coordinates and does not.
class DrawContext
{
public:
    /// 0 outline, 1 filled; other values draw nothing.
    enum DrawMode : int
    {
        Outline = 0,
        Filled = 1,
    };

    explicit DrawContext(String const& name);
    virtual ~DrawContext();
    DrawContext(DrawContext const&) = delete;
    DrawContext& operator=(DrawContext const&) = delete;

    String const& GetName() const { return name; }

    /// Starts a paint of a bitmap of `size`; the clip becomes the whole bitmap.
    virtual void Begin(UI::Size const& size) = 0;
    /// Presents each region in order and ends the paint.
    virtual void End(std::vector<UI::Rect> const& regions, void* nativeHandle,
                     CGColorSpace* colorSpace) = 0;
    virtual void NativeDraw(UI::Rect const& rect, void* nativeHandle, CGColorSpace* colorSpace) = 0;
    /// Makes the whole bitmap transparent black.
    virtual void Clear() = 0;
    virtual UI::Point GetNativeWindowOffset() const = 0;
    virtual void SetNativeWindowOffset(UI::Point const& offset) = 0;
    virtual UI::Rect GetClipRect() const = 0;
    /// The clip becomes `rect` cut to the bitmap.
    virtual void SetClipRect(UI::Rect const& rect) = 0;
    virtual UI::Rect GetNativeClipExcludeRect() const = 0;
    virtual void SetNativeClipExcludeRect(UI::Rect const& rect) = 0;
    virtual UI::Point GetTranslation() const = 0;
    virtual void SetTranslation(UI::Point const& translation) = 0;

    virtual void DrawBox(UI::Rect const& rect, DrawMode mode, unsigned int color,
                         unsigned char alpha) = 0;
    /// Outline mode draws the corners and a band as wide as the radius; filled mode all of it.
    virtual void DrawRoundedBox(UI::Rect const& rect, unsigned int radius, DrawMode mode,
                                unsigned int color, unsigned char alpha) = 0;
    virtual void DrawRoundedBoxOutline(UI::Rect const& rect, unsigned int radius,
                                       unsigned int thickness, unsigned int color,
                                       unsigned char alpha) = 0;
    virtual void DrawLine(UI::Point const& from, UI::Point const& to, unsigned int color,
                          bool antiAliased, unsigned char alpha) = 0;
    /// Dots at every second pixel from `start` to `end` (both included) on row `position` when
    /// horizontal, column `position` otherwise. The dot pattern keeps the parity of `start`
    /// however the clip cuts it, so it stays steady under scrolling.
    virtual void DrawDottedLine(UI::Orientation orientation, int position, int start, int end,
                                unsigned int color, unsigned char alpha);
    virtual void DrawPoint(UI::Point const& point, unsigned int color, unsigned char alpha) = 0;
    /// Draws `text` with `font` at `point` (left, top), or placed by the alignments against
    /// `point`, or centred in a non-empty `rect`. A null font, or one that can't render, draws
    /// nothing. They return the rectangle drawn, in bitmap coordinates, or an empty one.
    virtual UI::Rect DrawText(UI::Font* font, UI::Point const& point, String const& text,
                              unsigned int color, unsigned char alpha) = 0;
    virtual UI::Rect DrawText(UI::Font* font, UI::Rect const& rect, UI::Point const& point,
                              String const& text, unsigned int color, unsigned char alpha,
                              UI::HAlignment hAlign, UI::VAlignment vAlign) = 0;
    /// Draws `source` of the bits at `destination`; the alpha channel is the bits' own.
    virtual void BitBlt(UI::DIBits* bits, UI::Rect const& source, UI::Point const& destination,
                        unsigned char alpha) = 0;
    virtual void BitBlt(boost::shared_ptr<UI::Native::DIBSection> const& section,
                        UI::Rect const& source, UI::Point const& destination, bool hasAlpha,
                        unsigned char alpha) = 0;
    virtual void BitBlt(UI::MemoryDrawContext const* context, UI::Rect const& source,
                        UI::Point const& destination, bool hasAlpha, unsigned char alpha) = 0;
    virtual void BitBltCurve(UI::MemoryDrawContext const* context, UI::Rect const& source,
                             UI::Point const& destination, bool hasAlpha, unsigned char alpha) = 0;
    /// Alpha 0 selects the dithered blend of the bits' alpha channel (see `UI::BitBltDithered`).
    virtual void BitBltDithered(UI::DIBits* bits, UI::Rect const& source,
                                UI::Point const& destination, unsigned char alpha) = 0;

protected:
    virtual void resizeDIBSection(UI::Size const& size) = 0;

private:
    String name;
};

} // namespace UI
