#pragma once

#include "Canvas/UI/Window.h"

#include <boost/shared_ptr.hpp>

namespace UI
{

class DIBits;

/// A text link (or an image) that opens a URL in the desktop's browser when clicked or
/// activated with the keyboard (4096, and 13 with accept-return). It shows the pointing hand
/// and sizes itself to its text (text width by font height) or to its image.
///
/// Links whose address came from the network should be marked with `SetWebOnly(true)`: they
/// then open only http and https addresses and ignore every other scheme.
class Hyperlink : public Window
{
public:
    static constexpr unsigned int kDefaultColor = 0xFF0000FFu;

    /// `paletteKey`, when the palette holds it, gives the colour instead of the default blue.
    /// `image` is a PNG resource name drawn before the text; empty for none.
    Hyperlink(Frame* frame, Window* parent, String const& name, String const& text = String(""),
              String const& url = String(""),
              checked_value<unsigned int> const& font = checked_value<unsigned int>(),
              String const& paletteKey = String(""), String const& image = String(""),
              DynamicLayout saveMode = DynamicLayoutCode, bool rightJustify = false);
    ~Hyperlink() override;

    /// A click or activation, before the URL is opened.
    Signal<> signalClicked;

    /// Changes the text and refits the size.
    void SetText(String const& text);
    String const& GetText() const { return text; }
    void SetURL(String const& url) { this->url = url; }
    String const& GetURL() const { return url; }
    void SetTextColor(unsigned int color);
    unsigned int GetTextColor() const { return color; }
    /// Opens `url` with the desktop's opener; with `webOnly` only an http or https address,
    /// anything else being ignored. When no opener can be started, a message box shows the
    /// address, so that the user can open it by hand.
    static void OpenLink(String const& url, bool webOnly);

    void SetWebOnly(bool on) { webOnly = on; }
    bool IsWebOnly() const { return webOnly; }
    void SetAcceptReturn(bool on) { acceptReturn = on; }
    void SetRightJustify(bool on);

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("Hyperlink"); }
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;
    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onMouseRelease(Point const& p, unsigned int flags) override;
    bool onKeyPress(unsigned int key, unsigned int flags, bool repeat) override;
    void onMouseEnter() override;
    void onMouseExit() override;
    void onTimer(unsigned int id) override;
    void onPaletteChange() override;

private:
    void activate();
    void fitSize();
    int textWidth() const;

    String text;
    String url;
    unsigned int color = kDefaultColor;
    String paletteKey;
    checked_value<unsigned int> font;
    boost::shared_ptr<DIBits> image;
    bool rightJustify;
    bool acceptReturn = false;
    bool webOnly = false;
    checked_value<unsigned int> cursorTimer;
};

} // namespace UI
