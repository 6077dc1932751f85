#pragma once

#include "Canvas/UI/ApplicationMainWindow.h"

#include <vector>

namespace Updater
{
class UpdaterThread;
}

namespace UI
{

class Canvas;
class MainWindow;
class SimpleBannerBG;
class SimplePushButton;
class Text;

/// The small window shown while the update check runs: "Checking for Tavorin updates..." and
/// a Cancel button. Its 33-millisecond tick tells the main window when the check has ended, or
/// closes both windows when it was canceled.
class ConnectingPanel : public ApplicationMainWindow
{
public:
    /// Builds the children in `host`'s frame; `args` is ignored. `updaterThread` is not owned.
    ConnectingPanel(std::vector<String> const& args, Canvas* canvas, Native::HostWindow* host,
                    Updater::UpdaterThread* updaterThread);

    /// Stores the main window and starts this panel's tick.
    void SetMainWindow(MainWindow* window);
    /// The host's master update callback; `panel` is the `ConnectingPanel`.
    static void masterUpdateTimer(void* panel);

    void onSetGeometry() override;

private:
    void setCustomPalette();
    void onPaletteChange() override;
    void onMasterUpdateTimer();
    void slotCancelButtonClicked();

    MainWindow* mainWindow = nullptr;
    SimpleBannerBG* background = nullptr;
    Text* connectingText = nullptr;
    SimplePushButton* cancelButton = nullptr;
    Updater::UpdaterThread* updaterThread;
};

} // namespace UI
