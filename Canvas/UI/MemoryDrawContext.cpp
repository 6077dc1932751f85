#include "Canvas/UI/MemoryDrawContext.h"

#include "Canvas/UI/BitBlt.h"
#include "Canvas/UI/BoxDrawing.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/HotDraw.h"
#include "Canvas/UI/LineInfo.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/detail/PixelMath.h"
#include "TvBase/Util/SimpleRandGenerator.h"

#include <algorithm>
#include <cstring>

namespace UI
{

namespace
{

unsigned int const kOpaque = 0xFF000000;

} // namespace

MemoryDrawContext::MemoryDrawContext(String const& name) : DrawContext(name) {}

MemoryDrawContext::~MemoryDrawContext() = default;

void MemoryDrawContext::Begin(UI::Size const& newSize)
{
    if (!section || section->GetSize() != newSize)
        resizeDIBSection(newSize);
    clip = UI::Rect(UI::Point(0, 0), section->GetSize()) & UI::Rect(UI::Point(0, 0), newSize);
    size = newSize;
}

void MemoryDrawContext::resizeDIBSection(UI::Size const& newSize)
{
    section.reset(new UI::Native::DIBSection(newSize));
    if (unsigned int* bits = section->GetPixels())
        std::fill_n(bits, static_cast<std::size_t>(section->GetStride()) * newSize.height, kOpaque);
}

void MemoryDrawContext::End(std::vector<UI::Rect> const& regions, void* nativeHandle,
                            CGColorSpace* colorSpace)
{
    for (UI::Rect const& region : regions)
        NativeDraw(region, nativeHandle, colorSpace);
    size = UI::Size(-1, -1);
}

void MemoryDrawContext::NativeDraw(UI::Rect const& rect, void* nativeHandle,
                                   CGColorSpace* colorSpace)
{
    UI::Native::DrawDIBSectionFunction const present = UI::Native::GetDrawDIBSectionFunction();
    if (section && present)
        present(section, nativeHandle, colorSpace, nativeWindowOffset, rect, rect.TopLeft(),
                nativeClipExclude);
}

void MemoryDrawContext::Clear()
{
    if (!section || !section->GetPixels())
        return;
    for (int y = 0; y < section->GetHeight(); ++y)
        std::memset(section->GetPixels() + static_cast<long>(y) * section->GetStride(), 0,
                    static_cast<std::size_t>(section->GetWidth()) * sizeof(unsigned int));
}

void MemoryDrawContext::SetClipRect(UI::Rect const& rect)
{
    UI::Size const bitmap = section ? section->GetSize() : UI::Size(0, 0);
    clip = rect & UI::Rect(0, bitmap.width - 1, 0, bitmap.height - 1);
}

void MemoryDrawContext::DrawBox(UI::Rect const& rect, DrawMode mode, unsigned int color,
                                unsigned char alpha)
{
    if (!section)
        return;
    UI::Rect const box = rect.Offset(translation);
    if (mode == Outline)
        DrawOutlineBox(section->GetPixels(), section->GetStride(), clip, box, color | kOpaque,
                       alpha);
    else if (mode == Filled)
        DrawSolidBox(section->GetPixels(), section->GetStride(), clip, box, color | kOpaque, alpha);
}

void MemoryDrawContext::DrawRoundedBox(UI::Rect const& rect, unsigned int radius, DrawMode mode,
                                       unsigned int color, unsigned char alpha)
{
    if (!section || (mode != Outline && mode != Filled))
        return;
    UI::DrawRoundedBox(section->GetPixels(), section->GetStride(), clip, rect.Offset(translation),
                       radius, mode == Filled, color | kOpaque, alpha);
}

void MemoryDrawContext::DrawRoundedBoxOutline(UI::Rect const& rect, unsigned int radius,
                                              unsigned int thickness, unsigned int color,
                                              unsigned char alpha)
{
    if (!section)
        return;
    UI::DrawRoundedBoxOutline(section->GetPixels(), section->GetStride(), clip,
                              rect.Offset(translation), radius, thickness, color | kOpaque, alpha);
}

void MemoryDrawContext::DrawLine(UI::Point const& from, UI::Point const& to, unsigned int color,
                                 bool antiAliased, unsigned char alpha)
{
    if (!section)
        return;
    UI::Point const a = from + translation;
    UI::Point const b = to + translation;
    if (antiAliased)
        DrawAntiAliasedLine(section->GetPixels(), section->GetStride(), clip, a.x, a.y, b.x, b.y,
                            color | kOpaque, alpha);
    else
        UI::DrawLine(section->GetPixels(), section->GetStride(), clip, a.x, a.y, b.x, b.y,
                     color | kOpaque, alpha);
}

void MemoryDrawContext::DrawDottedLine(UI::Orientation orientation, int position, int start,
                                       int end, unsigned int color, unsigned char alpha)
{
    if (!section || !section->GetPixels() || alpha == 0)
        return;
    bool const horizontal = orientation == UI::Horizontal;
    position += horizontal ? translation.y : translation.x;
    int const shift = horizontal ? translation.x : translation.y;
    start += shift;
    end += shift;
    if (start > end)
        std::swap(start, end);
    int const clipStart = horizontal ? clip.left : clip.top;
    int const clipEnd = horizontal ? clip.right : clip.bottom;
    int const clipPositionFirst = horizontal ? clip.top : clip.left;
    int const clipPositionLast = horizontal ? clip.bottom : clip.right;
    if (position < clipPositionFirst || position > clipPositionLast)
        return;
    // The first dot keeps the parity of the unclipped start, so the pattern doesn't crawl when
    // a scrolled window slides under the clip edge.
    int const from = std::max(clipStart, start);
    int const first = from + ((start + from) & 1);
    int const last = std::min(clipEnd, end);
    unsigned int const c = color | kOpaque;
    unsigned int* bits = section->GetPixels();
    int const stride = section->GetStride();
    for (int v = first; v <= last; v += 2)
    {
        unsigned int& p = horizontal ? bits[static_cast<long>(position) * stride + v]
                                     : bits[static_cast<long>(v) * stride + position];
        p = detail::ComposePixel(c, p, alpha);
    }
}

void MemoryDrawContext::DrawPoint(UI::Point const& point, unsigned int color, unsigned char alpha)
{
    UI::Point const p = point + translation;
    if (!section || !section->GetPixels() || !clip.Contains(p))
        return;
    unsigned int& pixel = section->GetPixels()[static_cast<long>(p.y) * section->GetStride() + p.x];
    pixel = detail::ComposePixel(color | kOpaque, pixel, alpha);
}

// Text belongs to the font engine, which renders into the section; until a font can render,
// nothing is drawn and the drawn rectangle is empty.
UI::Rect MemoryDrawContext::DrawText(UI::Font* font, UI::Point const& point, String const& text,
                                     unsigned int color, unsigned char alpha)
{
    return DrawText(font, UI::Rect(), point, text, color, alpha, UI::HAlignLeft, UI::VAlignTop);
}

UI::Rect MemoryDrawContext::DrawText(UI::Font* font, UI::Rect const& rect, UI::Point const& point,
                                     String const& text, unsigned int color, unsigned char alpha,
                                     UI::HAlignment hAlign, UI::VAlignment vAlign)
{
    if (!font || !section || alpha == 0)
        return UI::Rect();
    // An empty box stays empty: the text is then placed by its point alone.
    UI::Rect box = rect.IsEmpty() ? rect : rect.Offset(translation.x, translation.y);
    // On a centred axis a box, which moved already, places the text; without one the point
    // does, and it moves like any other.
    bool const boxed = !box.IsEmpty();
    UI::Point const at(point.x + (hAlign == UI::HAlignCenter && boxed ? 0 : translation.x),
                       point.y + (vAlign == UI::VAlignCenter && boxed ? 0 : translation.y));
    UI::Rect const drawn = font->RenderText(at, text, color | 0xFF000000u, alpha, clip,
                                            section.get(), hAlign, vAlign, box);
    if (!drawn.IsEmpty())
        applyHotDrawAndProfile(text, drawn);
    return drawn;
}

void MemoryDrawContext::applyHotDrawAndProfile(String const& text, UI::Rect const& rect)
{
    if (UI::g_fnTextProfilingCallback)
        UI::g_fnTextProfilingCallback(UI::g_pTextProfilingCallbackInstance, 0, text.Length(),
                                      text.CStr());
    if (!UI::g_hotDrawApplies || !UI::g_bHotDrawTextOnly)
        return;
    static Util::SimpleRandGenerator generator;
    unsigned int const red = (((generator.GetNext() % 205) << 16) + 0x320000) | 0xFF000000u;
    // The rectangle is in bitmap coordinates already.
    FillBox(section->GetPixels(), section->GetStride(), clip, rect, red);
}

void MemoryDrawContext::BitBlt(UI::DIBits* bits, UI::Rect const& source,
                               UI::Point const& destination, unsigned char alpha)
{
    UI::BitBlt(bits, source, section.get(), destination + translation, alpha, clip);
}

void MemoryDrawContext::BitBlt(boost::shared_ptr<UI::Native::DIBSection> const& from,
                               UI::Rect const& source, UI::Point const& destination, bool hasAlpha,
                               unsigned char alpha)
{
    UI::BitBlt(from.get(), source.TopLeft(), source.GetSize(), section, destination + translation,
               hasAlpha, alpha, clip);
}

void MemoryDrawContext::BitBlt(UI::MemoryDrawContext const* context, UI::Rect const& source,
                               UI::Point const& destination, bool hasAlpha, unsigned char alpha)
{
    if (context)
        BitBlt(context->GetDIBSection(), source, destination, hasAlpha, alpha);
}

void MemoryDrawContext::BitBltCurve(UI::MemoryDrawContext const* context, UI::Rect const& source,
                                    UI::Point const& destination, bool hasAlpha,
                                    unsigned char alpha)
{
    if (!context)
        return;
    UI::BitBltCurve(context->GetDIBSection().get(), source.TopLeft(), source.GetSize(), section,
                    destination + translation, hasAlpha, alpha, clip);
}

void MemoryDrawContext::BitBltDithered(UI::DIBits* bits, UI::Rect const& source,
                                       UI::Point const& destination, unsigned char alpha)
{
    UI::BitBltDithered(bits, source, section.get(), destination + translation, alpha, clip);
}

boost::shared_ptr<UI::DIBits> MemoryDrawContext::GetBits() const
{
    return section ? section->GetBits() : boost::shared_ptr<UI::DIBits>();
}

} // namespace UI
