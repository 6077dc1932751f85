#pragma once

// The updater's list of offered updates on the in-memory host window, with the program's packed
// resources and fonts, for the rows test and benchmark.

#include "Updater/app/UpdateEntry.h"
#include "Updater/app/UpdaterLook.h"
#include "Updater/app/UpdatesPanel.h"

#include "Canvas/UI/ScrollView.h"
#include "TvBase/Util/ResourceManager.h"

#include "tests/Canvas/UI/ScrollScene.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace UI
{
namespace Test
{

/// `count` offers of the same product, as a versions file that names it over and over gives.
inline std::vector<boost::shared_ptr<Updater::UpdateEntry>> SameOffers(int count)
{
    boost::shared_ptr<Updater::UpdateEntry> entry(new Updater::UpdateEntry);
    entry->productName = "Alpha Mixer";
    entry->installedVersion = "3.0";
    entry->availableVersion = "3.2";
    entry->updateUrl = "http://127.0.0.1/products/alpha-mixer/";
    return std::vector<boost::shared_ptr<Updater::UpdateEntry>>(static_cast<std::size_t>(count),
                                                                entry);
}

/// An updates panel of the main window's size in a frame of its own.
struct UpdateRowsScene
{
    ScrollScene scene{600, 400};
    UpdatesPanel* panel;

    UpdateRowsScene()
    {
        Util::ResourceManager::Get().Init(FolderPath(TV_BINARY_DIR "/bin"));
        SetUpdaterFonts(&scene.canvas);
        panel = new UpdatesPanel(scene.frame.get(), nullptr, String("Updates Panel"));
        panel->SetGeometry(20, 20, 560, 360);
    }
};

} // namespace Test
} // namespace UI
