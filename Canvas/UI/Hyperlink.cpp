#include "Canvas/UI/Hyperlink.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Media.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/detail/ButtonDrawing.h"
#include "TvBase/Util/LaunchURL.h"
#include "TvBase/Util/LaunchWebURL.h"

namespace UI
{

namespace
{
// The platform may put its own cursor back while the mouse rests on the link.
unsigned int const kCursorRefreshMs = 250;
} // namespace

Hyperlink::Hyperlink(Frame* frame, Window* parent, String const& name, String const& text,
                     String const& url, checked_value<unsigned int> const& font,
                     String const& paletteKey, String const& image, DynamicLayout saveMode,
                     bool rightJustify)
    : Window(frame, parent, name), text(text), url(url), paletteKey(paletteKey), font(font),
      rightJustify(rightJustify)
{
    SetDynamicLayoutMode(saveMode);
    SetCursor(Cursor(Cursor::PointingHand));
    SetMouseTracking(true);
    if (!image.IsNull() && !image.IsEmpty())
        this->image = Media::GetPNGBits(image, true, 0.0f);
    onPaletteChange();
    fitSize();
}

Hyperlink::~Hyperlink()
{
    if (cursorTimer && GetFrame())
        GetFrame()->EndTimer(*cursorTimer);
}

int Hyperlink::textWidth() const
{
    return detail::TextWidth(detail::WindowFont(this, font), text);
}

void Hyperlink::fitSize()
{
    if (image)
        SetFixedSize(image->GetWidth(), image->GetHeight());
    else
        SetFixedSize(textWidth(), detail::FontHeight(detail::WindowFont(this, font)));
}

void Hyperlink::SetText(String const& newText)
{
    text = newText;
    fitSize();
    Update();
}

void Hyperlink::SetTextColor(unsigned int newColor)
{
    color = newColor;
    Update();
}

void Hyperlink::SetRightJustify(bool on)
{
    rightJustify = on;
    Update();
}

void Hyperlink::onPaletteChange()
{
    checked_value<unsigned int> fromPalette = detail::ResolvePaletteColor(this, paletteKey);
    if (fromPalette)
        color = *fromPalette;
    Update();
}

void Hyperlink::Draw(DrawContext* context)
{
    unsigned char const alpha = GetEffectiveAlpha();
    if (image)
        context->BitBlt(image.get(), Rect(Point(), image->GetSize()), Point(), alpha);
    Font* f = detail::WindowFont(this, font);
    if (f && !text.IsEmpty())
    {
        int const x = rightJustify ? GetWidth() - textWidth() : 0;
        context->DrawText(f, Point(x, 0), text, color, alpha);
    }
    Window::Draw(context);
}

bool Hyperlink::onMousePress(Point const&, unsigned int)
{
    GetFrame()->SetMouseCapture(this);
    return true;
}

bool Hyperlink::onMouseRelease(Point const& p, unsigned int)
{
    if (GetFrame()->GetMouseCapture() != this)
        return false;
    GetFrame()->ReleaseMouseCapture();
    if (Rect(0, GetWidth() - 1, 0, GetHeight() - 1).Contains(p))
        activate();
    return true;
}

bool Hyperlink::onKeyPress(unsigned int key, unsigned int, bool)
{
    if (key != KeyCode::Enter && !(acceptReturn && key == KeyCode::Return))
        return false;
    activate();
    return true;
}

void Hyperlink::activate()
{
    signalClicked();
    if (url.IsNull() || url.IsEmpty())
        return;
    OpenLink(url, webOnly);
}

void Hyperlink::OpenLink(String const& url, bool webOnly)
{
    if (webOnly && !Util::IsWebURL(url))
        return;
    if (!Util::LaunchURL(url, false))
        Native::MessageOK(
            String("Cannot Open Link"),
            String("No program to open links is installed. The address is:\n%1").Arg(url));
}

void Hyperlink::onMouseEnter()
{
    if (!cursorTimer)
        cursorTimer = GetFrame()->SetTimer(this, kCursorRefreshMs);
}

void Hyperlink::onMouseExit()
{
    if (cursorTimer)
        GetFrame()->EndTimer(*cursorTimer);
    cursorTimer = checked_value<unsigned int>();
}

void Hyperlink::onTimer(unsigned int id)
{
    if (cursorTimer && id == *cursorTimer && GetFrame()->GetMouseOverWindows().count(this))
        GetFrame()->SetCurrentCursor(GetCursor());
}

bool Hyperlink::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                 TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    reply->SetValue("text", text.CStr());
    reply->SetValue("url", url.CStr());
    return true;
}

} // namespace UI
