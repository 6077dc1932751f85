#pragma once

// A frame on an in-memory host with the canvas's default fonts, for the text and editing
// widgets: windows are made in it, painted into its memory bitmap, and fed input through the
// frame as a host would.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/Window.h"
#include "tests/Canvas/UI/TestHostWindow.h"

#include <memory>
#include <vector>

namespace TextTest
{

/// A window filled white that records the presses that reach it.
class Backdrop : public UI::Window
{
public:
    Backdrop(UI::Frame* frame, char const* name) : Window(frame, nullptr, name) {}

    void Draw(UI::DrawContext* context) override
    {
        context->DrawBox(UI::Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                         0xFFFFFFFF, 255);
        Window::Draw(context);
    }

    bool onMousePress(UI::Point const& p, unsigned int) override
    {
        presses.push_back(p);
        return true;
    }

    std::vector<UI::Point> presses;
};

/// A 300 by 200 frame with a white backdrop as its top-level window.
struct Scene
{
    UI::Canvas canvas{"Text Test"};
    UI::Test::TestHostWindow host;
    UI::MemoryDrawContext context{"Text Context"};
    std::unique_ptr<UI::Frame> frame;
    Backdrop* root = nullptr;

    Scene()
    {
        frame.reset(new UI::Frame(&canvas, host.Handle(), &context, UI::Point(), "unused",
                                  UI::Rect(0, 299, 0, 199)));
        frame->SetHostWindow(&host);
        frame->SetDrawingEnabled(true);
        root = new Backdrop(frame.get(), "Root");
        frame->SetTopLevelWindow(root);
        root->SetGeometry(0, 0, 300, 200);
        Paint();
    }

    UI::Font* DefaultFont() const { return canvas.GetFont(checked_value<unsigned int>()); }

    /// Paints whatever is pending.
    void Paint() { frame->RenderInvalidRegions(true); }

    unsigned int Pixel(int x, int y) const
    {
        auto const& section = context.GetDIBSection();
        return section->GetPixels()[y * section->GetStride() + x] | 0xFF000000u;
    }

    /// The columns and rows that hold anything but white, inside `area`; empty when none.
    UI::Rect Inked(UI::Rect const& area) const
    {
        UI::Rect found(0, -1, 0, -1);
        for (int y = area.top; y <= area.bottom; ++y)
            for (int x = area.left; x <= area.right; ++x)
                if (Pixel(x, y) != 0xFFFFFFFFu)
                    found = found | UI::Rect(x, x, y, y);
        return found;
    }
};

/// A white bitmap of `size` with `text` drawn by `font` at `at`: what a label must match.
inline std::vector<unsigned int> Reference(UI::Font* font, UI::Size const& size,
                                           UI::Point const& at, String const& text,
                                           unsigned int color)
{
    UI::MemoryDrawContext context("Reference");
    context.Begin(size);
    context.DrawBox(UI::Rect(0, size.width - 1, 0, size.height - 1), UI::DrawContext::Filled,
                    0xFFFFFFFF, 255);
    context.DrawText(font, at, text, color, 255);
    std::vector<unsigned int> out;
    auto const& section = context.GetDIBSection();
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            out.push_back(section->GetPixels()[y * section->GetStride() + x] | 0xFF000000u);
    return out;
}

} // namespace TextTest
