#include "tests/Updater/app/UpdateRowsScene.h"

#include "tests/support/PeakMemory.h"

#include <gtest/gtest.h>

using UI::Test::SameOffers;
using UI::Test::UpdateRowsScene;

TEST(UpdatesPanel, ManyRowsAreLaidOutInOnePassAndCostKilobytesEach)
{
    int const rows = 3000;
    std::vector<boost::shared_ptr<Updater::UpdateEntry>> const offers = SameOffers(rows);
    UpdateRowsScene rowsScene;
    UI::ScrollView* view = rowsScene.panel->GetScrollView();
    unsigned long const passes = view->GetUpdatePassCount();
    TestSupport::PeakMemory peak;

    rowsScene.panel->AddEntries(offers);

    // One pass for the lot, where a pass per row (each over all rows before it) is quadratic.
    EXPECT_EQ(passes + 1, view->GetUpdatePassCount());
    ASSERT_EQ(std::size_t(rows), view->GetChildren().size());
    EXPECT_EQ(rows * 30, view->GetScrollViewSize().height);
    EXPECT_EQ(30 * (rows - 1), view->GetChildren().back().position.y);
    std::vector<int> const shown = UI::Test::ShownRows(*view);
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(0, shown.front());
    EXPECT_LE(shown.size(), 13u) << "only the rows in view are shown";
    if (peak.IsAvailable())
    {
        EXPECT_LT(peak.Growth() / rows, 12 * 1024) << "bytes a row";
    }

    // Rows added one by one still see the list as it stands.
    rowsScene.panel->addEntry(*offers.front());
    EXPECT_EQ(passes + 2, view->GetUpdatePassCount());
    EXPECT_EQ(30 * rows, view->GetChildren().back().position.y);
}
