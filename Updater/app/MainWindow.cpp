#include "Updater/app/MainWindow.h"

#include "Updater/app/AppHostWindow.h"
#include "Updater/app/Application.h"
#include "Updater/app/MarketingMessageThread.h"
#include "Updater/app/MarketingURL.h"
#include "Updater/app/UpdaterLook.h"
#include "Updater/app/UpdaterThread.h"
#include "Updater/app/UpdatesPanel.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Cursor.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Hyperlink.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/PixmapButton.h"
#include "Canvas/UI/ScrollView.h"
#include "Canvas/UI/SimpleBannerBG.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/SimpleToolTip.h"
#include "Canvas/UI/Text.h"

#include <spawn.h>
#include <unistd.h>

#include <climits>
#include <cstring>

extern char** environ;

namespace UI
{

namespace
{

/// The banner: one bitmap as both the normal and the pressed picture.
class BannerButton : public PixmapButton
{
public:
    BannerButton(Frame* frame, Window* parent, boost::shared_ptr<DIBits> const& bits)
        : PixmapButton(frame, parent, String("MessageButton")), bits(bits)
    {
    }

protected:
    DIBits* getBits() const override { return bits.get(); }

private:
    boost::shared_ptr<DIBits> bits;
};

Text* makeHeader(Frame* frame, Window* parent, char const* name, char const* text)
{
    Text* header =
        new Text(frame, parent, String(name), String(text), 5u, HAlignLeft, COLOR_HEADER);
    header->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    return header;
}

/// The host name of a URL: what stands between the scheme and the port or path.
String hostNameOf(String const& url)
{
    std::string text = url.IsNull() ? std::string() : std::string(url.CStr());
    std::string::size_type const scheme = text.find("://");
    if (scheme != std::string::npos)
        text.erase(0, scheme + 3);
    std::string::size_type const end = text.find_first_of(":/");
    if (end != std::string::npos)
        text.erase(end);
    return String(text.c_str());
}

} // namespace

MainWindow::MainWindow(std::vector<String> const&, Canvas* canvas, Native::HostWindow* host,
                       Updater::UpdaterThread* updaterThread,
                       Updater::MarketingMessageThread* marketingThread,
                       boost::shared_ptr<Application> application, bool silent)
    : ApplicationMainWindow(host->GetFrame(), host,
                            application ? application->GetConfig() : nullptr),
      updaterThread(updaterThread), marketingThread(marketingThread), silent(silent),
      application(application)
{
    setCustomPalette();
    GetFrame()->SetDrawingEnabled(true);
    SetUpdaterFonts(canvas);
    Frame* frame = GetFrame();

    background = new SimpleBannerBG(frame, this, String("background"), COLOR_BG,
                                    String("UI/png/updater.png"));
    toolTip = static_cast<ToolTip*>(InstallCanvasToolTip(canvas));
    if (toolTip)
        toolTip->SetMaxWidth(400);
    productHeader = makeHeader(frame, this, "Product Name Header", "Product");
    installedHeader = makeHeader(frame, this, "Installed Version Header", "Installed Version");
    availableHeader = makeHeader(frame, this, "Available Version Header", "Available");
    informationText = new MultiText(
        frame, this, String("Information for user"),
        String("The following updates are available for Tavorin products that you have "
               "installed:"),
        0u, false, HAlignLeft, 0, COLOR_HEADER);
    informationText->SetDynamicLayoutMode(DynamicLayoutSaved);
    closeButton = new SimplePushButton(frame, this, String("Close Button"), String("Close"));
    ApplyButtonPalette(canvas, closeButton);
    closeButton->signalClicked.Connect(&MainWindow::slotCloseClicked, this);
    updatesPanel = new UpdatesPanel(frame, this, String("Updates Panel"));
    frame->SetTopLevelWindow(this);
    // Close is the window's action for Return and Escape alike.
    frame->SetDefaultButton(closeButton);
    frame->SetCancelButton(closeButton);

    host->signalPreDestroy.Connect(&MainWindow::slotHostPreDestroy, this);
    host->SetMasterUpdateCallback(&MainWindow::masterUpdateTimer, this);
    StartApplicationTimer(host, 33);
    Rect const client = host->GetClientRect();
    SetGeometry(0, 0, client.Width(), client.Height());
    SetLayoutName(String("MainWindow"));
    LoadLayout();
    onSetGeometry();
}

MainWindow::~MainWindow()
{
    if (toolTip && GetFrame() && GetFrame()->GetCanvas())
        GetFrame()->GetCanvas()->SetToolTip(nullptr, Canvas::ToolTipTextSetter());
}

void MainWindow::onPaletteChange()
{
    // The palette editor recolours the running program.
    ApplyButtonPalette(GetFrame()->GetCanvas(), closeButton);
}

void MainWindow::setCustomPalette()
{
    Canvas* canvas = GetFrame()->GetCanvas();
    canvas->SetPaletteColor(String("SliderColor"), COLOR_SLIDER);
    canvas->SetPaletteColor(String("SliderHandleColor"), COLOR_SLIDER_HANDLE);
    canvas->SetPaletteColor(String("ButtonOnFillColor"), COLOR_BUTTON_ON_FILL);
    canvas->SetPaletteColor(String("ButtonOffFillColor"), COLOR_BUTTON_OFF_FILL);
    canvas->SetPaletteColor(String("ButtonOutlineColor"), COLOR_BUTTON_OUTLINE);
    canvas->SetPaletteColor(String("ButtonTextColor"), COLOR_TEXT);
    LoadSavedPalette(canvas);
}

void MainWindow::onSetGeometry()
{
    if (background)
        background->SetGeometry(0, 0, GetWidth(), GetHeight());
}

bool MainWindow::onTestAutomationRequest(String const& request, Window* window,
                                         TestAutomation::RPCReplyInterface* reply)
{
    if (connectingHost && !GetHostWindow()->IsVisible() && connectingHost->GetFrame())
    {
        auto* panel =
            dynamic_cast<ApplicationMainWindow*>(connectingHost->GetFrame()->GetTopLevelWindow());
        if (panel && panel != this)
            return panel->TestAutomationRequest(request, window, reply);
    }
    return ApplicationMainWindow::onTestAutomationRequest(request, window, reply);
}

bool MainWindow::onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat)
{
    bool const scrollKey = keyCode == KeyCode::UpArrow || keyCode == KeyCode::DownArrow ||
                           keyCode == KeyCode::PageUp || keyCode == KeyCode::PageDown ||
                           keyCode == KeyCode::Home || keyCode == KeyCode::End;
    if (!scrollKey || (flags & (FlagControl | FlagCommand)) || !updatesPanel ||
        !updatesPanel->GetScrollView())
        return ApplicationMainWindow::onKeyPress(keyCode, flags, repeat);
    return updatesPanel->GetScrollView()->onKeyPress(keyCode, flags, repeat);
}

void MainWindow::masterUpdateTimer(void* window)
{
    static_cast<MainWindow*>(window)->onMasterUpdateTimer();
}

void MainWindow::onMasterUpdateTimer()
{
    if (doneContacting && !updateHandled)
    {
        handleUpdate();
        if (!connectingHost)
            return;
        connectingHost = nullptr;
        // Closed from this window's tick, the connecting host can go at once.
        if (disposeConnectingHost)
            disposeConnectingHost();
    }
    if (!marketingHandled)
        handleMarketing();
}

void MainWindow::handleUpdate()
{
    updateHandled = true;
    std::vector<boost::shared_ptr<Updater::UpdateEntry>> entries;
    bool const ok = updaterThread && updaterThread->GetUpdateData(entries);

    if (silent)
    {
        if (!entries.empty())
            shellVisibleVersion();
        if (application)
            application->slotQuit();
        connectingHost = nullptr;
        return;
    }

    if (entries.empty() || !ok)
    {
        productHeader->Hide();
        installedHeader->Hide();
        availableHeader->Hide();
        Rect const panel = updatesPanel->GetGeometry();
        Window* message = nullptr;
        if (ok)
        {
            Text* text = new Text(GetFrame(), this, String("No Updates Text"),
                                  String("No updates available."), checked_value<unsigned int>(),
                                  HAlignLeft, COLOR_TEXT);
            text->SetDynamicLayoutMode(DynamicLayoutNever);
            message = text;
        }
        else
        {
            MultiText* text =
                new MultiText(GetFrame(), this, String("No Updates Text"), GetErrorMessage(),
                              checked_value<unsigned int>(), false, HAlignLeft, 0, COLOR_TEXT);
            text->SetGeometry(0, 0, 2 * GetWidth() / 3, GetHeight() / 4);
            message = text;
        }
        Rect const r = message->GetGeometry();
        message->SetGeometry(panel.left + panel.Width() / 2 - r.Width() / 2,
                             panel.top + panel.Height() / 2 - r.Height() / 2, r.Width(),
                             r.Height());
    }

    updatesPanel->CreateUI(updaterThread);
    setFocusOrder();
    GetHostWindow()->Show(true);
    if (connectingHost)
        connectingHost->Close();
}

void MainWindow::handleMarketing()
{
    if (!marketingThread || marketingThread->IsThreadRunning() || marketingThread->IsCanceled())
        return;
    marketingHandled = true;
    if (updaterThread && updaterThread->IsCanceled())
        return;
    boost::shared_ptr<Updater::MarketingMessageData> record;
    if (!marketingThread->GetMessageData(record) || !record || !record->image)
        return;
    marketingUrl = record->link;

    int const w = GetWidth();
    int const h = GetHeight();
    int const grow = record->image->GetHeight();
    SetGeometry(0, 0, w, h + grow);
    Native::HostWindow* host = GetHostWindow();
    Rect const outer = host->GetContainingWindowGeometry();
    host->SetGeometry(outer.left, outer.top, outer.Width(), outer.Height() + grow);
    bannerGrowth += grow;

    messageButton = new BannerButton(GetFrame(), this, record->image);
    messageButton->SetGeometry(0, h, w, grow);
    messageButton->SetCursor(Cursor(Cursor::PointingHand));
    if (!record->altText.IsEmpty())
        messageButton->SetToolTipText(record->altText);
    messageButton->signalClicked.Connect(&MainWindow::slotMarketingImageClicked, this);
    setFocusOrder();
}

void MainWindow::setFocusOrder()
{
    std::vector<Window*> order;
    updatesPanel->AppendFocusOrder(order);
    order.push_back(closeButton);
    if (messageButton)
        order.push_back(messageButton);
    GetFrame()->SetFocusOrder(order);
}

void MainWindow::slotCloseClicked()
{
    if (application)
        application->slotQuit();
}

void MainWindow::slotHostPreDestroy()
{
    if (bannerGrowth == 0)
        return;
    Native::HostWindow* host = GetHostWindow();
    Rect const outer = host->GetContainingWindowGeometry();
    host->SetGeometry(outer.left, outer.top, outer.Width(), outer.Height() - bannerGrowth);
    bannerGrowth = 0;
}

void MainWindow::slotMarketingImageClicked()
{
    // The banner's link comes from the network: only web addresses are opened.
    if (!marketingUrl.IsEmpty())
        Hyperlink::OpenLink(marketingUrl, true);
}

String MainWindow::GetErrorMessage()
{
    String text("An error occurred while checking for updates.  Please check your network "
                "connection or visit ");
    text += hostNameOf(Updater::GetMarketingURL());
    text += " to download all of the latest Tavorin updates.";
    return String("%1").Arg(text);
}

bool MainWindow::shellVisibleVersion()
{
    // No bundles here: the visible copy is this very executable, started without "-silent".
    char path[PATH_MAX];
    ssize_t const length = readlink("/proc/self/exe", path, sizeof(path) - 1);
    if (length <= 0)
        return true;
    path[length] = '\0';
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // A session of its own, so that the copy outlives this process and its terminal group.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    char* const argv[] = {path, nullptr};
    pid_t child = 0;
    posix_spawn(&child, path, nullptr, &attributes, argv, environ);
    posix_spawnattr_destroy(&attributes);
    return true;
}

} // namespace UI
