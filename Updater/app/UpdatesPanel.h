#pragma once

#include "Canvas/UI/Window.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace Updater
{
class UpdaterThread;
struct UpdateEntry;
} // namespace Updater

namespace UI
{

class ScrollView;

/// The list of offered updates: a light panel holding a vertical scroll view with one
/// `ProgramItem` row per update. A long list scrolls inside the panel; the panel never grows.
class UpdatesPanel : public Window
{
public:
    UpdatesPanel(Frame* frame, Window* parent, String const& name);

    /// Adds a row for each entry of the worker's result, in order; nothing when the check
    /// failed.
    void CreateUI(Updater::UpdaterThread* updaterThread);
    /// A row for each entry, in order, laid out in one pass after the last.
    void AddEntries(std::vector<boost::shared_ptr<Updater::UpdateEntry>> const& entries);
    /// One row "Program Item: <product>", as wide as the scroll view and 30 high.
    void addEntry(Updater::UpdateEntry const& entry);
    void slotTest() {}

    ScrollView* GetScrollView() const { return scrollView; }
    /// Appends each row's "Update" link, top to bottom, to a Tab order.
    void AppendFocusOrder(std::vector<Window*>& order) const;

    void Draw(DrawContext* context) override;
    void onSetGeometry() override;

private:
    ScrollView* scrollView;
};

} // namespace UI
