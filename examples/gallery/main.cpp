// The widget gallery: labels, wrapped text, edit fields, a tool tip, buttons, a scrolling list,
// a splitter and tabs in one window, for looking at the widgets by hand and for GUI tests.
//
//   tv-gallery [--exit-after-paint]
//
// Accepted edits are reported on the standard output as "edited <name>: <text>", and the other
// widgets report their use there too (see each section). The "About…" button opens a small
// About box. Closing the window or Ctrl+Q quits.
//
// The gallery runs the test automation bridge as "APP:Gallery" when its module is installed
// (or named by TV_TEST_AUTOMATION_MODULE); without it nothing differs.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/FocusOrder.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/FontInfo.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostCanvasPlatform.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/SimpleToolTip.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ProcessInfo.h"
#include "TvBase/Util/ResourceManager.h"
#include "TvBase/Util/SystemFolders.h"
#include "examples/gallery/Gallery.h"
#include "examples/gallery/Lists.h"
#include "examples/gallery/MainWindow.h"

#include <boost/function.hpp>

#include <cstdio>
#include <cstring>
#include <memory>

namespace
{

/// The showcase draws its text antialiased, hinted as for grey levels, in every window.
void SetGalleryFonts(UI::Canvas& canvas)
{
    UI::FontInfo info(String("Arial"), 11.0f);
    info.antiAliasMode = 1;
    info.sharpen = 1;
    boost::shared_ptr<UI::Font> font(new UI::Font(&canvas, info));
    for (unsigned int slot = 0; slot < 3; ++slot)
        canvas.SetFont(slot, font);
}

} // namespace

int main(int argc, char** argv)
{
    bool exitAfterPaint = false;
    for (int i = 1; i < argc; ++i)
    {
        if (!std::strcmp(argv[i], "--exit-after-paint"))
            exitAfterPaint = true;
        else
        {
            std::fprintf(stderr, "unknown argument: %s\n", argv[i]);
            return 2;
        }
    }

    // The packed images and layouts sit in Resources/gallery.resembed beside the program; a
    // missing file leaves the images section empty.
    if (!Util::ResourceManager::Get().Init(
            FolderPath(Util::GetModuleDirectory(String(""), nullptr, true)),
            String("gallery.resembed")))
        std::fprintf(stderr, "gallery: no Resources/gallery.resembed beside the program\n");

    Util::ConfigFile config(String("com.tavorin.gallery"));
    UI::Canvas canvas("Gallery", 0, 0, String(), String("UI/Layout"));
    canvas.SetPlatform(
        boost::shared_ptr<UI::CanvasPlatform>(new UI::Native::HostCanvasPlatform(&canvas)));
    UI::TestAutomationInterface::Start("APP:Gallery");
    UI::TestAutomationInterface::SetCanvas(&canvas);
    SetGalleryFonts(canvas);
    String const name("Gallery");
    std::unique_ptr<UI::Native::HostWindow> host(
        UI::Native::PlatformSupportFactory::CreateHostWindow(&canvas, name, nullptr, &config));
    UI::Frame* frame = host->GetFrame();

    Gallery::MainWindow* window = new Gallery::MainWindow(host.get(), &config);
    int const height = Gallery::Build(window->GetPage());
    frame->SetFocusOrder(UI::CollectFocusOrder(window->GetPage()));

    UI::Native::HostWindowStyle style;
    style.resizable = true;
    style.minimizable = true;
    style.systemButtons = true;
    if (!host->CreateSerialized(nullptr, nullptr, name,
                                UI::Rect(UI::Point(100, 100), UI::Size(Gallery::PageWidth, height)),
                                false, false, style, false, true))
    {
        std::fprintf(stderr, "no window: is there a display?\n");
        host.reset();
        UI::TestAutomationInterface::SetCanvas(nullptr);
        UI::TestAutomationInterface::Stop();
        return 1;
    }
    UI::InstallCanvasToolTip(&canvas);

    host->signalClose.Connect(nullptr, boost::function<void(UI::Native::HostWindow*)>(
                                           [](UI::Native::HostWindow*) {
                                               UI::Native::PlatformSupportFactory::QuitEventLoop();
                                           }));
    frame->SetDrawingEnabled(true);
    host->StartMasterUpdateTimer(33);
    host->Show(true);
    Gallery::ListsWindow lists(&canvas);
    lists.Open();

    if (exitAfterPaint)
    {
        unsigned long long const deadline = Util::GetTickCountMillis() + 5000;
        do
            UI::Native::PlatformSupportFactory::ProcessEvents(20);
        while (!frame->GetInvalidRegions().empty() && Util::GetTickCountMillis() < deadline);
    }
    else
    {
        UI::Native::PlatformSupportFactory::RunEventLoop();
    }
    canvas.SetToolTip(nullptr, UI::Canvas::ToolTipTextSetter());
    host.reset();
    UI::TestAutomationInterface::SetCanvas(nullptr);
    UI::TestAutomationInterface::Stop();
    config.Synchronize();
    return 0;
}
