#pragma once

#include "Canvas/UI/Window.h"

namespace UI
{

class Hyperlink;
class Text;

/// One row of the update list: the product, the installed and the available version, and an
/// "Update" link that opens `url` in the browser. The columns come from the "ProgramItem"
/// layout; the link is kept at the right edge whatever width the row gets.
class ProgramItem : public Window
{
public:
    ProgramItem(Frame* frame, Window* parent, String const& name, String const& product,
                String const& installedVersion, String const& availableVersion, String const& url);

    String const& GetURL() const { return url; }
    Hyperlink* GetUpdateLink() const { return updateLink; }

    /// Moves the link so that its right edge lands at W - 8 when it lies past W - 1 or before
    /// W - 9; between those limits it stays where the layout put it.
    void onSetGeometry() override;

private:
    String url;
    Text* productText;
    Text* installedText;
    Text* availableText;
    Hyperlink* updateLink;
};

} // namespace UI
