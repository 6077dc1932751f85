#pragma once

// A frame on the in-memory host window with a real memory draw context and a canvas whose
// theme makes the default scroll bars, for the scrolling tests and benchmark.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "Canvas/UI/ScrollView.h"
#include "Canvas/UI/SimpleScrollBar.h"
#include "Canvas/UI/Splitter.h"

#include "tests/Canvas/UI/TestHostWindow.h"
#include "tests/Canvas/UI/TestWindows.h"

#include <memory>

namespace UI
{
namespace Test
{

struct ScrollScene
{
    Canvas canvas{"Test"};
    TestHostWindow host;
    MemoryDrawContext context{"Test Context"};
    std::unique_ptr<Frame> frame;
    Log log;

    explicit ScrollScene(int width = 240, int height = 160)
    {
        canvas.GetPrimitiveFactory()->RegisterScrollBar(
            Theme().CreateScrollBar(&CreateSimpleScrollBar));
        frame.reset(new Frame(&canvas, host.Handle(), &context, Point(), "unused",
                              Rect(0, width - 1, 0, height - 1)));
        frame->SetHostWindow(&host);
    }

    /// Paints everything that is invalid.
    void Paint()
    {
        frame->SetDrawingEnabled(true);
        frame->RenderInvalidRegions(true);
    }

    RecordingWindow* Make(Window* parent, char const* name, int x, int y, int w, int h,
                          checked_value<unsigned int> fill = checked_value<unsigned int>())
    {
        RecordingWindow* win = new RecordingWindow(frame.get(), parent, name, &log);
        win->SetGeometry(x, y, w, h);
        win->fill = fill;
        return win;
    }

    /// A vertical list view at (x, y) with `rows` rows of `rowHeight`, filled in colours that
    /// tell the rows apart; added in one batch.
    ScrollView* MakeList(int x, int y, int w, int h, int rows, int rowHeight)
    {
        ScrollView* view =
            new ScrollView(frame.get(), nullptr, "List", ScrollView::LayoutVerticalList);
        view->SetGeometry(x, y, w, h);
        view->SetBorderStyle(Borders::None);
        view->SetInUpdate(true);
        for (int i = 0; i < rows; ++i)
        {
            RecordingWindow* row = new RecordingWindow(frame.get(), view, "Row");
            row->SetGeometry(0, 0, 10, rowHeight);
            row->fill = RowColor(i);
            view->AddChild(checked_value<unsigned int>(), row, Point(), true);
        }
        view->SetInUpdate(false);
        view->UpdateChildren();
        return view;
    }

    static unsigned int RowColor(int i) { return 0xFF000000u | static_cast<unsigned int>(i + 1); }

    unsigned int Pixel(int x, int y) const
    {
        auto const& section = context.GetDIBSection();
        return section->GetPixels()[y * section->GetStride() + x];
    }

    bool Mouse(MouseMessage m, int x, int y, unsigned int flags = 0, int delta = 0)
    {
        return frame->HandleMouseMessage(m, Point(x, y), flags, delta);
    }
    bool Key(unsigned int key, unsigned int flags = 0)
    {
        return frame->HandleKeyboardMessage(KeyPress, key, 0, flags, false);
    }
};

/// The indices of the rows of `view` that are shown.
inline std::vector<int> ShownRows(ScrollView const& view)
{
    std::vector<int> shown;
    for (std::size_t i = 0; i < view.GetChildren().size(); ++i)
        if (view.GetChildren()[i].window->IsVisible())
            shown.push_back(static_cast<int>(i));
    return shown;
}

} // namespace Test
} // namespace UI
