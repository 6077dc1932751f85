// The scrolling section: a list of a few hundred rows in a scroll view with the theme's bar, two
// panes with a splitter between them, and tabs over a window stack. Scrolling the list prints
// "scrolled <x> <y>" and choosing a tab "tab <caption>", so that scripts can follow.

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Borders.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "Canvas/UI/ScrollView.h"
#include "Canvas/UI/SimpleScrollBar.h"
#include "Canvas/UI/Splitter.h"
#include "Canvas/UI/Tab.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/WindowStack.h"
#include "examples/gallery/Gallery.h"

#include <boost/function.hpp>

#include <cstdio>
#include <vector>

namespace Gallery
{

namespace
{

unsigned int const Ink = 0xFF202020;
int const RowCount = 300;
int const RowHeight = 20;

/// A window filled with one colour, with a one-pixel outline when `outline` is not 0. Its fill
/// and a border are the properties "Fill Color" and "Border Style", for the property editor.
class Swatch : public UI::Window
{
public:
    Swatch(UI::Frame* frame, UI::Window* parent, String const& name, unsigned int fill,
           unsigned int outline = 0)
        : Window(frame, parent, name), outline(outline)
    {
        CreateProperty<unsigned int>("Fill Color", fill);
        CreateProperty("Border Style", UI::Borders::None);
        WatchProperty("Fill Color", &Swatch::repaint);
        WatchProperty("Border Style", &Swatch::repaint);
    }

    void Draw(UI::DrawContext* context) override
    {
        UI::Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
        context->DrawBox(all, UI::DrawContext::Filled, fill(), 255);
        if (outline)
            context->DrawBox(all, UI::DrawContext::Outline, outline, 255);
        checked_value<UI::Borders::BorderStyle> const style =
            GetProperty<UI::Borders::BorderStyle>("Border Style");
        UI::Borders(style ? *style : UI::Borders::None, Ink).Draw(context, all, 255);
        Window::Draw(context);
    }

    /// Tells a test driver its fill colour, "color" in hex, with the rest of its information.
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                          TestAutomation::RPCReplyInterface* reply) override
    {
        if (request != "GetInfo" || !reply)
            return false;
        reply->SetValue("color", String("%1").Arg(fill(), 16u).CStr());
        return true;
    }

private:
    unsigned int fill() const
    {
        checked_value<unsigned int> const value = GetProperty<unsigned int>("Fill Color");
        return value ? *value : 0u;
    }
    void repaint() { Update(); }

    unsigned int outline;
};

/// A swatch with a label inset at its top left.
Swatch* AddLabelledSwatch(UI::Window* parent, String const& name, String const& label,
                          unsigned int fill)
{
    Swatch* swatch = new Swatch(parent->GetFrame(), parent, name, fill, 0xFF909090);
    new UI::Text(parent->GetFrame(), swatch, String("%1 Text").Arg(name), label,
                 checked_value<unsigned int>(), UI::HAlignLeft, Ink, UI::Point(6, 4));
    return swatch;
}

/// The gallery ships no scroll bar artwork, so its theme draws bars in the plain style, which
/// needs none.
void UsePlainScrollBars(UI::Frame* frame)
{
    UI::Canvas* canvas = frame->GetCanvas();
    if (!canvas || !canvas->GetPrimitiveFactory())
        return;
    UI::Theme theme;
    theme.CreateScrollBar(
        [](UI::Frame* f, UI::Window* parent, String const& name, UI::Orientation orientation)
        {
            return static_cast<UI::ScrollBar*>(
                new UI::SimpleScrollBar(f, parent, name, orientation, UI::SimpleScrollBar::Simple));
        });
    canvas->GetPrimitiveFactory()->RegisterScrollBar(theme);
}

} // namespace

int AddScrollingList(Page* page, int x, int y)
{
    y = page->AddSectionTitle("Scrolling list", y, x);
    UI::Frame* frame = page->GetFrame();
    UsePlainScrollBars(frame);
    UI::ScrollView* list =
        new UI::ScrollView(frame, page, "Row List", UI::ScrollView::LayoutVerticalList,
                           UI::ScrollBarAlwaysOff, UI::ScrollBarAutomatic);
    list->SetBorderColor(0xFF909090);
    list->SetGeometry(x, y, 360, 200);
    int const width = list->GetUsableWidth(true);
    for (int i = 0; i < RowCount; ++i)
    {
        String const name = String("Row %1").Arg(i + 1);
        UI::Text* row =
            new UI::Text(frame, list, name, name, checked_value<unsigned int>(), UI::HAlignLeft,
                         Ink, UI::Point(0, 0), UI::Size(width, RowHeight), false);
        row->SetBackground(i % 2 ? 0xFFE8ECF2u : 0xFFFFFFFFu, 0);
        list->AddChild(checked_value<unsigned int>(), row, UI::Point(0, i * RowHeight));
    }
    list->signalScrolled.Connect(nullptr, boost::function<void(UI::Point)>(
                                              [](UI::Point pos)
                                              {
                                                  std::printf("scrolled %d %d\n", pos.x, pos.y);
                                                  std::fflush(stdout);
                                              }));
    return y + list->GetHeight() + 12;
}

int AddSplitter(Page* page, int x, int y)
{
    y = page->AddSectionTitle("Splitter", y, x);
    UI::Frame* frame = page->GetFrame();
    UI::ScrollView* panes =
        new UI::ScrollView(frame, page, "Split Panes", UI::ScrollView::LayoutHorizontalList,
                           UI::ScrollBarAlwaysOff, UI::ScrollBarAlwaysOff);
    panes->SetGeometry(x, y, 360, 60);
    Swatch* left = AddLabelledSwatch(panes, "Left Pane", "Drag the bar", 0xFFF8F0E0);
    left->SetGeometry(0, 0, 178, 60);
    panes->AddChild(checked_value<unsigned int>(), left, checked_value<int>(40),
                    checked_value<int>(300));
    UI::Splitter* splitter =
        UI::CreateSimpleSplitter(frame, panes, "Pane Splitter", UI::Horizontal, true);
    splitter->SetGeometry(0, 0, 3, 60);
    panes->AddChild(checked_value<unsigned int>(), splitter, checked_value<int>(),
                    checked_value<int>());
    Swatch* right = AddLabelledSwatch(panes, "Right Pane", "Right pane", 0xFFE0F0E8);
    right->SetGeometry(0, 0, 179, 60);
    panes->AddChild(checked_value<unsigned int>(), right, checked_value<int>(40),
                    checked_value<int>(300));
    // The list resizes only the pane before the bar; the right pane takes what is left, so
    // that the two always fill the view. Connected after the list, so it runs after it.
    splitter->signalDragged.Connect(
        nullptr, boost::function<void(UI::Splitter*, int)>(
                     [panes, left, splitter, right](UI::Splitter*, int)
                     {
                         int const rest =
                             panes->GetWidth() - left->GetWidth() - splitter->GetWidth();
                         if (rest == right->GetWidth())
                             return;
                         UI::Rect const r = right->GetGeometry();
                         right->SetGeometry(r.left, r.top, rest, right->GetHeight());
                         // Lays the list out again; a list child's place is the list's.
                         panes->MoveChild(right, UI::Point());
                     }));
    return y + panes->GetHeight() + 12;
}

int AddTabs(Page* page, int x, int y)
{
    y = page->AddSectionTitle("Tabs", y, x);
    UI::Frame* frame = page->GetFrame();
    Swatch* strip = new Swatch(frame, page, "Tab Strip", 0xFF4A5A70);
    strip->SetGeometry(x, y, 360, 24);
    UI::WindowStack* stack = new UI::WindowStack(frame, page, "Tab Pages");
    stack->SetGeometry(x, y + 24, 360, 70);

    char const* const captions[] = {"General", "Details", "About"};
    char const* const texts[] = {"The first page of the stack.", "Each tab raises one page.",
                                 "Pages share the stack's size."};
    std::vector<UI::Tab*> tabs;
    for (int i = 0; i < 3; ++i)
    {
        UI::Tab* tab = new UI::Tab(frame, strip, String("Tab %1").Arg(captions[i]), captions[i]);
        tab->SetGeometry(i * 90, 0, 90, 24);
        tabs.push_back(tab);
        AddLabelledSwatch(stack, String("Tab Page %1").Arg(captions[i]), texts[i], 0xFFFAFAFA);
    }
    tabs[0]->SetActive(true);
    for (int i = 0; i < 3; ++i)
    {
        UI::Tab* tab = tabs[i];
        tab->signalClicked.Connect(nullptr,
                                   boost::function<void()>(
                                       [tabs, tab, stack, i]
                                       {
                                           for (UI::Tab* each : tabs)
                                               each->SetActive(each == tab);
                                           stack->RaiseWindow(static_cast<unsigned int>(i));
                                           std::printf("tab %s\n", tab->GetCaption().CStr());
                                           std::fflush(stdout);
                                       }));
    }
    return y + 24 + stack->GetHeight() + 12;
}

} // namespace Gallery
