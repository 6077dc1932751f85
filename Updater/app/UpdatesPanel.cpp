#include "Updater/app/UpdatesPanel.h"

#include "Updater/app/ProgramItem.h"
#include "Updater/app/UpdaterLook.h"
#include "Updater/app/UpdaterThread.h"

#include "Canvas/UI/Hyperlink.h"

#include "Canvas/UI/Borders.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/ScrollView.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace UI
{

UpdatesPanel::UpdatesPanel(Frame* frame, Window* parent, String const& name)
    : Window(frame, parent, name)
{
    scrollView =
        new ScrollView(frame, this, String("Updates ScrollView"), ScrollView::LayoutVerticalList,
                       ScrollBarAutomatic, ScrollBarAutomatic, nullptr, nullptr);
    scrollView->SetBorderColor(0xFF8F8F8Fu);
    scrollView->SetBorderStyle(static_cast<Borders::BorderStyle>(2));
    scrollView->SetDynamicLayoutMode(DynamicLayoutNever);
}

void UpdatesPanel::CreateUI(Updater::UpdaterThread* updaterThread)
{
    std::vector<boost::shared_ptr<Updater::UpdateEntry>> entries;
    if (!updaterThread || !updaterThread->GetUpdateData(entries))
        return;
    AddEntries(entries);
}

void UpdatesPanel::AddEntries(std::vector<boost::shared_ptr<Updater::UpdateEntry>> const& entries)
{
    // One layout pass for all rows, not one per row over all the rows before it.
    bool const wasInUpdate = scrollView->IsInUpdate();
    scrollView->SetInUpdate(true);
    for (auto const& entry : entries)
    {
        if (entry)
            addEntry(*entry);
    }
    scrollView->SetInUpdate(wasInUpdate);
    if (!wasInUpdate)
        scrollView->UpdateChildren();
}

void UpdatesPanel::addEntry(Updater::UpdateEntry const& entry)
{
    ProgramItem* item = new ProgramItem(
        GetFrame(), scrollView, String("Program Item: ") + entry.productName, entry.productName,
        entry.installedVersion, entry.availableVersion, entry.updateUrl);
    item->SetGeometry(0, 0, scrollView->GetWidth(), 30);
    scrollView->AddChild(checked_value<unsigned int>(), item, Point(0, 0));
}

void UpdatesPanel::AppendFocusOrder(std::vector<Window*>& order) const
{
    for (ScrollView::Info const& info : scrollView->GetChildren())
    {
        if (ProgramItem* item = dynamic_cast<ProgramItem*>(info.window))
            order.push_back(item->GetUpdateLink());
    }
}

void UpdatesPanel::Draw(DrawContext* context)
{
    context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), DrawContext::Filled,
                     COLOR_PANEL_FILL, GetEffectiveAlpha());
    Window::Draw(context);
}

void UpdatesPanel::onSetGeometry()
{
    scrollView->SetGeometry(0, 0, GetWidth(), GetHeight());
}

} // namespace UI
