// The canvas's palette editor window: one per canvas, made on first use and brought to the
// front when asked for again.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/PaletteEditor.h"

namespace UI
{

namespace
{

String const HostName("PaletteEditor Host Window");
int const MinimumWidth = 410;
int const MinimumHeight = 250;

} // namespace

void Canvas::ShowPaletteEditor(Frame* frame)
{
    if (paletteEditorHost && paletteEditorHost->GetNativeHandle())
    {
        paletteEditorHost->Show(true);
        paletteEditorHost->Raise(true, true);
        return;
    }
    // A closed editor is made anew, so that it reads the palette as it stands now.
    paletteEditorHost.reset();
    boost::shared_ptr<Native::HostWindow> host(
        Native::PlatformSupportFactory::CreateHostWindow(this, HostName, nullptr, GetConfigFile()));
    if (!host || !host->GetFrame())
        return;
    Frame* editorFrame = host->GetFrame();
    editorFrame->SetDesignDisable(true);
    PaletteEditor* editor = new PaletteEditor(editorFrame, nullptr, GetConfigFile());
    editorFrame->SetTopLevelWindow(editor);

    Native::HostWindowStyle style;
    style.systemButtons = true;
    style.resizable = true;
    host->SetMinClientSize(MinimumWidth, MinimumHeight);
    // 410 by 400 at (100, 100) until the user moves it; then where it was left.
    Rect const client(100, 509, 100, 499);
    Rect const rect =
        Native::PlatformSupportFactory::ConvertClientToWindowRect(client, false, style, HostName);
    void* parent = frame ? frame->GetNativeWindowHandle() : nullptr;
    if (!host->CreateSerialized(parent, nullptr, HostName, rect, false, false, style, false, true))
        return;
    host->SetCaption("Palette Editor", false);
    Rect const made = host->GetClientRect();
    editor->SetGeometry(0, 0, made.Width(), made.Height());
    editorFrame->SetDrawingEnabled(true);
    host->StartMasterUpdateTimer(33);
    host->Show(true);
    paletteEditorHost = host;
}

} // namespace UI
