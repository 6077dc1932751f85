#pragma once

#include "Canvas/UI/DrawContext.h"

namespace UI
{

/// A draw context over one `UI::Native::DIBSection`, the back buffer of a frame: between paints
/// the bitmap keeps its picture, so only dirty regions need redrawing. Without a section every
/// call is a silent no-op.
class MemoryDrawContext : public DrawContext
{
public:
    explicit MemoryDrawContext(String const& name);
    ~MemoryDrawContext() override;

    /// Makes a new bitmap (opaque black) when there is none or its size differs, so a new size
    /// loses the picture. The clip becomes the whole bitmap.
    void Begin(UI::Size const& size) override;
    /// `NativeDraw` of each region in order; the size then reads (-1, -1) until the next paint.
    void End(std::vector<UI::Rect> const& regions, void* nativeHandle,
             CGColorSpace* colorSpace) override;
    /// Hands `rect` to the host's presenter, at the same place in the window.
    void NativeDraw(UI::Rect const& rect, void* nativeHandle, CGColorSpace* colorSpace) override;
    void Clear() override;
    UI::Point GetNativeWindowOffset() const override { return nativeWindowOffset; }
    void SetNativeWindowOffset(UI::Point const& offset) override { nativeWindowOffset = offset; }
    UI::Rect GetClipRect() const override { return clip; }
    void SetClipRect(UI::Rect const& rect) override;
    UI::Rect GetNativeClipExcludeRect() const override { return nativeClipExclude; }
    void SetNativeClipExcludeRect(UI::Rect const& rect) override { nativeClipExclude = rect; }
    UI::Point GetTranslation() const override { return translation; }
    void SetTranslation(UI::Point const& value) override { translation = value; }

    void DrawBox(UI::Rect const& rect, DrawMode mode, unsigned int color,
                 unsigned char alpha) override;
    void DrawRoundedBox(UI::Rect const& rect, unsigned int radius, DrawMode mode,
                        unsigned int color, unsigned char alpha) override;
    void DrawRoundedBoxOutline(UI::Rect const& rect, unsigned int radius, unsigned int thickness,
                               unsigned int color, unsigned char alpha) override;
    void DrawLine(UI::Point const& from, UI::Point const& to, unsigned int color, bool antiAliased,
                  unsigned char alpha) override;
    void DrawDottedLine(UI::Orientation orientation, int position, int start, int end,
                        unsigned int color, unsigned char alpha) override;
    void DrawPoint(UI::Point const& point, unsigned int color, unsigned char alpha) override;
    UI::Rect DrawText(UI::Font* font, UI::Point const& point, String const& text,
                      unsigned int color, unsigned char alpha) override;
    UI::Rect DrawText(UI::Font* font, UI::Rect const& rect, UI::Point const& point,
                      String const& text, unsigned int color, unsigned char alpha,
                      UI::HAlignment hAlign, UI::VAlignment vAlign) override;
    void BitBlt(UI::DIBits* bits, UI::Rect const& source, UI::Point const& destination,
                unsigned char alpha) override;
    void BitBlt(boost::shared_ptr<UI::Native::DIBSection> const& section, UI::Rect const& source,
                UI::Point const& destination, bool hasAlpha, unsigned char alpha) override;
    void BitBlt(UI::MemoryDrawContext const* context, UI::Rect const& source,
                UI::Point const& destination, bool hasAlpha, unsigned char alpha) override;
    void BitBltCurve(UI::MemoryDrawContext const* context, UI::Rect const& source,
                     UI::Point const& destination, bool hasAlpha, unsigned char alpha) override;
    void BitBltDithered(UI::DIBits* bits, UI::Rect const& source, UI::Point const& destination,
                        unsigned char alpha) override;

    /// A new `UI::DIBits` with the bitmap's content (padded stride kept); null without a section.
    boost::shared_ptr<UI::DIBits> GetBits() const;
    boost::shared_ptr<UI::Native::DIBSection> const& GetDIBSection() const { return section; }
    /// The size of the paint under way, (-1, -1) outside a paint.
    UI::Size GetSize() const { return size; }

protected:
    /// Replaces the bitmap with a new one of `size`, filled with opaque black.
    void resizeDIBSection(UI::Size const& size) override;

private:
    /// Reports the text to the profiling callback and, with hot-draw on text, covers `rect`
    /// (bitmap coordinates) in a flashing red.
    void applyHotDrawAndProfile(String const& text, UI::Rect const& rect);
    boost::shared_ptr<UI::Native::DIBSection> section;
    UI::Size size = UI::Size(-1, -1);
    UI::Rect clip;
    UI::Rect nativeClipExclude;
    UI::Point translation;
    UI::Point nativeWindowOffset;
};

} // namespace UI
