#include "Updater/app/ConnectingPanel.h"

#include "Updater/app/AppHostWindow.h"
#include "Updater/app/Application.h"
#include "Updater/app/MainWindow.h"
#include "Updater/app/UpdaterLook.h"
#include "Updater/app/UpdaterThread.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/SimpleBannerBG.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/Text.h"

namespace UI
{

ConnectingPanel::ConnectingPanel(std::vector<String> const&, Canvas* canvas,
                                 Native::HostWindow* host, Updater::UpdaterThread* updaterThread)
    : ApplicationMainWindow(host->GetFrame(), host,
                            Application::g_pInstance ? Application::g_pInstance->GetConfig()
                                                     : nullptr),
      updaterThread(updaterThread)
{
    setCustomPalette();
    GetFrame()->SetDrawingEnabled(true);
    SetUpdaterFonts(canvas);

    background = new SimpleBannerBG(GetFrame(), this, String("background"), COLOR_BG);
    connectingText = new Text(GetFrame(), this, String("Connecting Text"),
                              String("Checking for Tavorin updates..."),
                              checked_value<unsigned int>(), HAlignLeft, COLOR_TEXT);
    connectingText->SetDynamicLayoutMode(DynamicLayoutNever);
    cancelButton =
        new SimplePushButton(GetFrame(), this, String("Cancel Button"), String("Cancel"));
    ApplyButtonPalette(canvas, cancelButton);
    cancelButton->SetGeometry(0, 0, 80, 33);
    cancelButton->signalClicked.Connect(&ConnectingPanel::slotCancelButtonClicked, this);

    GetFrame()->SetTopLevelWindow(this);
    // Cancel is the window's only action: Tab finds it, and Return and Escape press it.
    GetFrame()->SetFocusOrder({cancelButton});
    GetFrame()->SetDefaultButton(cancelButton);
    GetFrame()->SetCancelButton(cancelButton);
    Rect const client = host->GetClientRect();
    SetGeometry(0, 0, client.Width(), client.Height());
    onSetGeometry();
}

void ConnectingPanel::onPaletteChange()
{
    // The palette editor recolours the running program.
    ApplyButtonPalette(GetFrame()->GetCanvas(), cancelButton);
}

void ConnectingPanel::setCustomPalette()
{
    Canvas* canvas = GetFrame()->GetCanvas();
    canvas->SetPaletteColor(String("ButtonOnFillColor"), COLOR_BUTTON_ON_FILL);
    canvas->SetPaletteColor(String("ButtonOffFillColor"), COLOR_BUTTON_OFF_FILL);
    canvas->SetPaletteColor(String("ButtonOutlineColor"), COLOR_BUTTON_OUTLINE);
    canvas->SetPaletteColor(String("ButtonTextColor"), COLOR_TEXT);
    LoadSavedPalette(canvas);
}

void ConnectingPanel::SetMainWindow(MainWindow* window)
{
    mainWindow = window;
    GetHostWindow()->SetMasterUpdateCallback(&ConnectingPanel::masterUpdateTimer, this);
    StartApplicationTimer(GetHostWindow(), 33);
}

void ConnectingPanel::masterUpdateTimer(void* panel)
{
    static_cast<ConnectingPanel*>(panel)->onMasterUpdateTimer();
}

void ConnectingPanel::onSetGeometry()
{
    int const w = GetWidth();
    int const h = GetHeight();
    if (background)
        background->SetGeometry(0, 0, w, h);
    if (connectingText)
    {
        Rect const r = connectingText->GetGeometry();
        connectingText->SetGeometry(w / 2 - r.Width() / 2, h / 2 - r.Height() / 2 - 30, r.Width(),
                                    r.Height());
    }
    if (cancelButton)
    {
        Rect const r = cancelButton->GetGeometry();
        cancelButton->SetGeometry(w / 2 - r.Width() / 2, h / 2 - r.Height() / 2 + 30, r.Width(),
                                  r.Height());
    }
}

void ConnectingPanel::onMasterUpdateTimer()
{
    if (!updaterThread || updaterThread->IsThreadRunning())
        return;
    if (updaterThread->IsCanceled())
    {
        // The main window's host is the application's main window: its end ends the program.
        if (mainWindow && mainWindow->GetHostWindow())
            mainWindow->GetHostWindow()->Close();
        // This tick runs inside this host's own timer, so its window goes after the tick.
        GetHostWindow()->PostClose();
        return;
    }
    if (mainWindow)
        mainWindow->SetDoneContacting();
}

void ConnectingPanel::slotCancelButtonClicked()
{
    if (updaterThread)
        updaterThread->Cancel();
}

} // namespace UI
