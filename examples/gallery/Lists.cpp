#include "examples/gallery/Lists.h"

#include "Canvas/UI/ComboBox.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Legend.h"
#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/Native/FileDialog.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/TreeList.h"

#include <boost/function.hpp>
#include <boost/shared_array.hpp>

#include <cstdio>

namespace Gallery
{

namespace
{

String const WindowName("Gallery Lists");
int const Width = 340;
int const Height = 600;

void report(String const& line)
{
    std::printf("%s\n", line.CStr());
    std::fflush(stdout);
}

/// A 12 by 12 square of `color` with a darker edge.
boost::shared_ptr<UI::DIBits> makeIcon(unsigned int color)
{
    boost::shared_array<unsigned int> pixels(new unsigned int[12 * 12]);
    for (int y = 0; y < 12; ++y)
        for (int x = 0; x < 12; ++x)
            pixels[y * 12 + x] = (x == 0 || y == 0 || x == 11 || y == 11) ? 0xFF303030 : color;
    return boost::shared_ptr<UI::DIBits>(new UI::DIBits(pixels, 12, 12, 12, false));
}

class ListsPage : public UI::Window
{
public:
    explicit ListsPage(UI::Frame* frame) : Window(frame, nullptr, "Lists Page")
    {
        addRows();
        addCombo();
        addTree();
        addDialogButtons();
    }

    void Draw(UI::DrawContext* context) override
    {
        context->DrawBox(UI::Rect(0, GetWidth() - 1, 0, GetHeight() - 1), UI::DrawContext::Filled,
                         0xFFF2F2EE, 255);
        Window::Draw(context);
    }

    bool onMouseRightPress(UI::Point const& point, unsigned int) override
    {
        UI::Native::PopupMenu menu;
        menu.AddItem(1, "Copy");
        menu.AddItem(2, "Paste", false);
        menu.AddSeparator();
        UI::Native::PopupMenu* colours = menu.AddSubmenu("Colour");
        colours->AddItem(11, "Red");
        colours->AddItem(12, "Green", true, true);
        colours->AddItem(13, "Blue");
        menu.AddItem(3, "Help");
        UI::Native::HostWindow* host = GetFrame()->GetHostWindow();
        UI::Point const screen = host->GetScreenPos() + GetGlobalPos() + point;
        int const chosen = menu.Show(screen);
        report(chosen == UI::Native::PopupMenu::None ? String("menu dismissed")
                                                     : String("menu chose %1").Arg(chosen));
        return true;
    }

private:
    void addRows()
    {
        UI::ListBox* list = new UI::ListBox(GetFrame(), this, "Rows List");
        list->SetGeometry(10, 10, Width - 20, 180);
        list->SetMultipleSelection(true);
        boost::shared_ptr<UI::DIBits> const icons[] = {makeIcon(0xFFD04040), makeIcon(0xFF40A040),
                                                       makeIcon(0xFF4060D0)};
        for (unsigned int i = 0; i < 10000; ++i)
        {
            list->InsertItem(String("Row %1").Arg(i), icons[i % 3]);
            if (i % 4 == 1)
                list->SetItemSwatchColor(i, 0xFF000000u | (i * 2654435761u >> 8));
            else if (i % 4 == 2)
                list->SetItemIntValue(i, static_cast<int>(i * 7));
            list->SetItemToolTip(i, String("The row numbered %1").Arg(i));
        }
        list->signalSelectionChanged.Connect(nullptr,
                                             boost::function<void(unsigned int)>(
                                                 [list](unsigned int)
                                                 {
                                                     String line("list selected");
                                                     for (unsigned int i : list->GetSelectedItems())
                                                         line += String(" %1").Arg(i);
                                                     report(line);
                                                 }));
    }

    void addCombo()
    {
        UI::ComboBox* combo = new UI::ComboBox(GetFrame(), this, "Fruit ComboBox");
        combo->SetLabel("Fruit:");
        combo->SetItems({"Apple", "Banana", "Cherry", "Damson", "Elderberry"});
        combo->SetSelectedItem(0);
        combo->SetGeometry(10, 200, Width - 20, 20);
        combo->signalItemSelected.Connect(
            nullptr, boost::function<void(unsigned int)>(
                         [combo](unsigned int i)
                         { report(String("combo chose %1").Arg(combo->GetItems()[i])); }));
    }

    void addTree()
    {
        UI::Text* label = new UI::Text(GetFrame(), this, "Search Label", "Search:");
        label->SetGeometry(10, 232, 50, 18);
        UI::SimpleEdit* search = new UI::SimpleEdit(GetFrame(), this, "Tree Search Edit", "");
        search->SetBackground(0xFFFFFFFF);
        search->SetGeometry(64, 230, Width - 74, 20);
        UI::TreeList* tree = new UI::TreeList(GetFrame(), this, "Tree");
        tree->SetGeometry(10, 256, Width - 20, 240);
        unsigned int const colours[] = {0xFF000000, 0xFF777777, 0xFFBB0000, 0xFF0000BB, 0xFF00BB00};
        for (int g = 0; g < 10; ++g)
        {
            unsigned int const group = *tree->AddItem({}, String("Group %1").Arg(g));
            for (int i = 0; i < 9; ++i)
            {
                unsigned int const item = *tree->AddItem(group, String("Item %1.%2").Arg(g).Arg(i));
                tree->GetListItem(item)->SetColor(colours[(g + i) % 5]);
                for (int l = 0; l < 10; ++l)
                    tree->AddItem(item, String("Leaf %1.%2.%3").Arg(g).Arg(i).Arg(l));
            }
        }
        search->signalTextEdited.Connect(
            nullptr,
            boost::function<void()>(
                [tree, search]
                {
                    tree->ShowItemsContainingString(search->GetText());
                    report(String("tree shows %1 rows")
                               .Arg(static_cast<unsigned int>(tree->GetVisibleRows().size())));
                }));
        tree->signalSelectionChanged.Connect(
            nullptr,
            boost::function<void()>(
                [tree]
                {
                    std::vector<unsigned int> const ids = tree->GetSelection();
                    report(
                        ids.empty()
                            ? String("tree selected nothing")
                            : String("tree selected %1").Arg(tree->GetListItem(ids[0])->GetText()));
                }));
        UI::Legend* legend = new UI::Legend(GetFrame(), this, "Legend");
        legend->SetGeometry(10, 500, Width - 20, 18);
        legend->AddItem(0, "Hidden", 0xFF777777);
        legend->AddItem(1, "Disabled", 0xFFBB0000);
        legend->AddItem(2, "Dynamic", 0xFF0000BB);
        legend->AddItem(3, "Layout", 0xFF00BB00);
    }

    void addDialogButtons()
    {
        struct Dialog
        {
            char const* name;
            char const* caption;
            int kind;
        } const dialogs[] = {{"Open File Button", "Open File...", 0},
                             {"Open Folder Button", "Open Folder...", 1},
                             {"Save File Button", "Save File...", 2}};
        int x = 10;
        for (Dialog const& d : dialogs)
        {
            UI::SimplePushButton* button =
                new UI::SimplePushButton(GetFrame(), this, d.name, d.caption);
            button->SetGeometry(x, 530, 100, 24);
            x += 106;
            int const kind = d.kind;
            button->signalClicked.Connect(
                nullptr,
                boost::function<void()>(
                    [this, kind]
                    {
                        String path;
                        bool chosen = false;
                        if (kind == 0)
                            chosen = UI::Native::FileDialog::OpenFile(
                                GetFrame(), "Open a Picture", "Pictures", "*.png", "png", path);
                        else if (kind == 1)
                            chosen = UI::Native::FileDialog::OpenFolder(GetFrame(), "Open a Folder",
                                                                        path);
                        else
                            chosen = UI::Native::FileDialog::SaveFile(
                                GetFrame(), "Save the Picture", "picture.png", "png", path);
                        report(chosen ? String("file %1").Arg(path) : String("file cancelled"));
                    }));
        }
    }
};

} // namespace

ListsWindow::ListsWindow(UI::Canvas* canvas)
    : host(UI::Native::PlatformSupportFactory::CreateHostWindow(canvas, WindowName, nullptr,
                                                                nullptr))
{
    new ListsPage(host->GetFrame());
}

ListsWindow::~ListsWindow() = default;

bool ListsWindow::Open()
{
    UI::Native::HostWindowStyle style;
    style.systemButtons = true;
    UI::Rect const client(UI::Point(925, 80), UI::Size(Width, Height));
    UI::Rect const rect = UI::Native::PlatformSupportFactory::ConvertClientToWindowRect(
        client, false, style, WindowName);
    if (!host->Create(nullptr, nullptr, WindowName, rect, false, false, style))
        return false;
    UI::Frame* frame = host->GetFrame();
    UI::Window* page =
        frame->GetTopLevelWindows().empty() ? nullptr : frame->GetTopLevelWindows().front();
    if (page)
    {
        frame->SetTopLevelWindow(page);
        page->SetGeometry(0, 0, Width, Height);
    }
    frame->SetDrawingEnabled(true);
    host->StartMasterUpdateTimer(33);
    host->Show(false);
    return true;
}

} // namespace Gallery
