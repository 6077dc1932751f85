// The tree list's folding, search, lineage view and selection moves, its painting of the rows
// in view only, and the legend's row of entries; on the in-memory host window.

#include "Canvas/UI/TreeList.h"

#include "Canvas/UI/Legend.h"
#include "Canvas/UI/ScrollView.h"
#include "tests/Canvas/UI/ScrollScene.h"

#include <gtest/gtest.h>

#include <string>

using UI::TreeList;

namespace
{

/// animals (cat, dog (puppy)), plants (fern), all folded.
struct TreeScene
{
    UI::Test::ScrollScene scene{400, 300};
    TreeList* tree;
    unsigned int animals, cat, dog, puppy, plants, fern;

    TreeScene()
    {
        tree = new TreeList(scene.frame.get(), nullptr, "Tree");
        animals = *tree->AddItem({}, "animals");
        cat = *tree->AddItem(animals, "cat");
        dog = *tree->AddItem(animals, "dog");
        puppy = *tree->AddItem(dog, "Puppy");
        plants = *tree->AddItem({}, "plants");
        fern = *tree->AddItem(plants, "fern");
    }

    /// The texts of the rows shown, space-separated.
    std::string Shown()
    {
        std::string s;
        for (unsigned int id : tree->GetVisibleRows())
            s += (s.empty() ? "" : " ") + std::string(tree->GetListItem(id)->GetText().CStr());
        return s;
    }
};

} // namespace

TEST(TreeList, FoldingSearchAndLineage)
{
    TreeScene t;
    EXPECT_EQ("animals plants", t.Shown());
    t.tree->SetExpanded(t.animals, true);
    EXPECT_EQ("animals cat dog plants", t.Shown());
    EXPECT_FALSE(t.tree->AddItem(999u, "orphan"));

    // A search shows the finds with their ancestors, however folded, in any case.
    t.tree->ShowItemsContainingString("PUP");
    EXPECT_EQ("animals dog Puppy", t.Shown());
    t.tree->ShowItemsContainingString("e");
    EXPECT_EQ("plants fern", t.Shown());
    t.tree->ShowItemsContainingString("");
    EXPECT_EQ("animals cat dog plants", t.Shown());

    // The lineage view: the selection, its ancestors and its descendants.
    t.tree->SetExpanded(t.dog, true);
    t.tree->SetSelection({t.dog});
    t.tree->ShowChildrenOfSelection(true);
    EXPECT_EQ("animals dog Puppy", t.Shown());
    t.tree->ShowChildrenOfSelection(false);

    // Revealing a folded selection opens its ancestors.
    t.tree->ExpandAll(false);
    t.tree->SetSelection({t.fern, 12345});
    EXPECT_EQ((std::vector<unsigned int>{t.fern}), t.tree->GetSelection());
    t.tree->RevealSelection();
    EXPECT_EQ("animals plants fern", t.Shown());

    // Next and previous move through the rows shown and stop at the ends.
    t.tree->SelectPreviousItem();
    EXPECT_EQ((std::vector<unsigned int>{t.plants}), t.tree->GetSelection());
    t.tree->SelectPreviousItem();
    t.tree->SelectPreviousItem();
    EXPECT_EQ((std::vector<unsigned int>{t.animals}), t.tree->GetSelection());
    t.tree->SelectNextItem();
    t.tree->SelectNextItem();
    t.tree->SelectNextItem();
    EXPECT_EQ((std::vector<unsigned int>{t.fern}), t.tree->GetSelection());

    // Rows keep their ids and take a colour; clearing forgets them.
    t.tree->GetListItem(t.cat)->SetColor(0xFFBB0000);
    EXPECT_EQ(0xFFBB0000u, t.tree->GetListItem(t.cat)->GetColor());
    t.tree->ClearItems();
    EXPECT_EQ(nullptr, t.tree->GetListItem(t.cat));
    EXPECT_EQ("", t.Shown());
}

TEST(TreeList, PressesAndKeysFoldAndSelect)
{
    TreeScene t;
    int changes = 0;
    t.tree->signalSelectionChanged.Connect(nullptr, boost::function<void()>([&] { ++changes; }));
    t.tree->SetGeometry(0, 0, 300, 200);
    // A press on the triangle of "animals" opens it; a press on "dog"'s text selects it.
    t.scene.Mouse(UI::MouseLeftPress, 6, TreeList::RowHeight / 2, UI::FlagLeftButton);
    t.scene.Mouse(UI::MouseLeftRelease, 6, TreeList::RowHeight / 2);
    EXPECT_EQ("animals cat dog plants", t.Shown());
    t.scene.Mouse(UI::MouseLeftPress, 80, 2 * TreeList::RowHeight + 5, UI::FlagLeftButton);
    t.scene.Mouse(UI::MouseLeftRelease, 80, 2 * TreeList::RowHeight + 5);
    EXPECT_EQ((std::vector<unsigned int>{t.dog}), t.tree->GetSelection());
    EXPECT_EQ(1, changes);
    // Right opens it, Down goes into it, Left goes back to the parent.
    t.scene.Key(39);
    EXPECT_EQ("animals cat dog Puppy plants", t.Shown());
    t.scene.Key(40);
    EXPECT_EQ((std::vector<unsigned int>{t.puppy}), t.tree->GetSelection());
    t.scene.Key(37);
    EXPECT_EQ((std::vector<unsigned int>{t.dog}), t.tree->GetSelection());
    t.scene.Key(37);
    EXPECT_EQ("animals cat dog plants", t.Shown());
}

TEST(TreeList, PaintsOnlyTheRowsInView)
{
    UI::Test::ScrollScene scene(400, 300);
    TreeList* tree = new TreeList(scene.frame.get(), nullptr, "Tree");
    tree->SetGeometry(0, 0, 300, 200);
    unsigned int parent = *tree->AddItem({}, "root", true);
    for (int i = 0; i < 100000; ++i)
        tree->AddItem(parent, String("node %1").Arg(i));
    EXPECT_EQ(100001u, tree->GetVisibleRows().size());
    scene.Paint();
    EXPECT_GT(tree->GetRowsPainted(), 0u);
    EXPECT_LE(tree->GetRowsPainted(), 200u / TreeList::RowHeight + 2);
    tree->ShowItemsContainingString("node 9999");
    EXPECT_EQ(12u, tree->GetVisibleRows().size()); // root, 9999, 99990..99999
}

TEST(Legend, EntriesSitSideBySideInIndexOrder)
{
    UI::Test::ScrollScene scene(400, 300);
    UI::Legend* legend = new UI::Legend(scene.frame.get(), nullptr, "Legend");
    legend->AddItem(0, "Hidden", 0xFF777777);
    legend->AddItem(5, "Has Layout", 0xFF00BB00);
    legend->AddItem(1, "Disabled", 0xFFBB0000);
    ASSERT_EQ(3u, legend->GetEntries().size());
    EXPECT_EQ(String("Disabled"), legend->GetEntries()[1].text);
    EXPECT_EQ(String("Has Layout"), legend->GetEntries()[2].text);
    std::vector<UI::Rect> const rects = legend->GetEntryRects();
    EXPECT_LT(rects[0].right, rects[1].left);
    EXPECT_LT(rects[1].right, rects[2].left);
}
