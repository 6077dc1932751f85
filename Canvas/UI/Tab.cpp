#include "Canvas/UI/Tab.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Text.h"

namespace UI
{

namespace
{

unsigned int const activeColor = 0xFFFFFFFFu;
unsigned int const inactiveColor = 0xFFAFAFAFu;

} // namespace

Tab::Tab(Frame* frame, Window* parent, String const& name, String const& caption,
         checked_value<unsigned int> const& font)
    : Window(frame, parent, name), text(new Text(frame, this, "Tab Text", caption, font))
{
    updateTextColorAndAlpha();
    centreText();
}

void Tab::SetActive(bool on)
{
    active = on;
    updateTextColorAndAlpha();
}

void Tab::SetDrawDisabled(bool on)
{
    drawDisabled = on;
    updateTextColorAndAlpha();
}

void Tab::SetCaption(String const& caption)
{
    text->SetText(caption);
    centreText();
}

String Tab::GetCaption() const
{
    return text->GetText();
}

unsigned int Tab::GetTextColor() const
{
    return active && IsEnabled() && !drawDisabled ? activeColor : inactiveColor;
}

void Tab::updateTextColorAndAlpha()
{
    unsigned int const color = GetTextColor();
    text->SetColor(color);
    text->SetAlpha(static_cast<unsigned char>(color >> 24));
}

void Tab::centreText()
{
    text->Move((GetWidth() - text->GetWidth()) / 2, (GetHeight() - text->GetHeight()) / 2);
}

void Tab::AXClick()
{
    Point const middle(GetWidth() / 2, GetHeight() / 2);
    GetFrame()->DeliverMouseMessage(MouseLeftPress, this, middle, FlagLeftButton, 0);
    GetFrame()->DeliverMouseMessage(MouseLeftRelease, this, middle, 0, 0);
}

bool Tab::onMousePress(Point const&, unsigned int)
{
    signalClicked();
    return true;
}

bool Tab::onKeyPress(unsigned int keyCode, unsigned int, bool)
{
    if (keyCode != KeyCode::Enter)
        return false;
    signalClicked();
    return true;
}

void Tab::onSetGeometry()
{
    centreText();
}

void Tab::onEnableChange()
{
    updateTextColorAndAlpha();
}

bool Tab::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                           TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    reply->SetValue("caption", GetCaption().CStr());
    reply->SetValue("isOn", active ? "true" : "false");
    return true;
}

} // namespace UI
