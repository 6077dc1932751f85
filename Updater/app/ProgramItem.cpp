#include "Updater/app/ProgramItem.h"

#include "Updater/app/UpdaterLook.h"

#include "Canvas/UI/Hyperlink.h"
#include "Canvas/UI/Text.h"

namespace UI
{

namespace
{

Text* makeColumn(Frame* frame, Window* parent, String const& name, String const& text)
{
    Text* column =
        new Text(frame, parent, name, text, checked_value<unsigned int>(), HAlignLeft, COLOR_TEXT);
    column->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    return column;
}

} // namespace

ProgramItem::ProgramItem(Frame* frame, Window* parent, String const& name, String const& product,
                         String const& installedVersion, String const& availableVersion,
                         String const& url)
    : Window(frame, parent, name), url(url)
{
    // The same texts in every row, made once: a list may hold many thousands of rows.
    static String const productName("Product Name Text");
    static String const installedName("Installed Version Text");
    static String const availableName("Available Version Text");
    static String const linkName("Update Link");
    static String const linkText("Update");
    static String const none("");
    static String const layoutName("ProgramItem");
    // Hidden until the list places it: built in sight, every part of the row would ask for a
    // repaint of the same spot, and a long list holds many thousands of rows out of sight.
    Hide();
    productText = makeColumn(frame, this, productName, product);
    installedText = makeColumn(frame, this, installedName, installedVersion);
    availableText = makeColumn(frame, this, availableName, availableVersion);
    updateLink = new Hyperlink(frame, this, linkName, linkText, url, 8u, none, none,
                               DynamicLayoutNever, false);
    updateLink->SetTextColor(COLOR_TEXT);
    // Links from the network open only when they are web addresses.
    updateLink->SetWebOnly(true);
    Rect const link = updateLink->GetGeometry();
    updateLink->SetGeometry(0, 7, link.Width(), link.Height());
    SetLayoutName(layoutName);
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
