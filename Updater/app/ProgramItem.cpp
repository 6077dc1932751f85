#include "Updater/app/ProgramItem.h"

#include "Updater/app/UpdaterLook.h"

#include "Canvas/UI/Hyperlink.h"
#include "Canvas/UI/Text.h"

namespace UI
{

namespace
{

Text* makeColumn(Frame* frame, Window* parent, char const* name, String const& text)
{
    Text* column = new Text(frame, parent, String(name), text, checked_value<unsigned int>(),
                            HAlignLeft, COLOR_TEXT);
    column->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    return column;
}

} // namespace

ProgramItem::ProgramItem(Frame* frame, Window* parent, String const& name, String const& product,
                         String const& installedVersion, String const& availableVersion,
                         String const& url)
    : Window(frame, parent, name), url(url)
{
    productText = makeColumn(frame, this, "Product Name Text", product);
    installedText = makeColumn(frame, this, "Installed Version Text", installedVersion);
    availableText = makeColumn(frame, this, "Available Version Text", availableVersion);
    updateLink = new Hyperlink(frame, this, String("Update Link"), String("Update"), url, 8u,
                               String(""), String(""), DynamicLayoutNever, false);
    updateLink->SetTextColor(COLOR_TEXT);
    // Links from the network open only when they are web addresses.
    updateLink->SetWebOnly(true);
    Rect const link = updateLink->GetGeometry();
    updateLink->SetGeometry(0, 7, link.Width(), link.Height());
    SetLayoutName(String("ProgramItem"));
    LoadLayout();
}

void ProgramItem::onSetGeometry()
{
    if (!updateLink)
        return;
    int const w = GetWidth();
    Rect const link = updateLink->GetGeometry();
    if (link.right > w - 1 || link.right < w - 9)
        updateLink->SetGeometry(w - 8 - link.Width(), link.top, link.Width(), link.Height());
}

} // namespace UI
