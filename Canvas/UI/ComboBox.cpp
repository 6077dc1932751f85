#include "Canvas/UI/ComboBox.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/ComboBoxPopup.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "TvBase/Controller/EnumParam.h"

#include <algorithm>

namespace UI
{

namespace
{

int const LabelGap = 4;
int const ArrowWidth = 16;
unsigned int const BoxColor = 0xFFFFFFFF;
unsigned int const FrameColor = 0xFF8A8A8A;
unsigned int const TextColor = 0xFF000000;

Font* defaultFont(Window const* window)
{
    Canvas* canvas = window->GetCanvas();
    return canvas ? canvas->GetFont(checked_value<unsigned int>()) : nullptr;
}

} // namespace

ComboBox::ComboBox(Frame* frame, Window* parent, String const& name) : Window(frame, parent, name)
{
    SetGeometry(0, 0, 160, 20);
}

ComboBox::ComboBox(Frame* frame, Window* parent, String const& name, String const& label,
                   Controller::EnumParam* param)
    : Window(frame, parent, name), label(label), param(param)
{
    SetGeometry(0, 0, 160, 20);
    if (param)
    {
        std::vector<String> captions;
        for (unsigned int i = 0; i < param->GetNumValues(); ++i)
            captions.push_back(param->GetCaptionForValue(i));
        SetItems(captions);
        SetSelectedItem(param->get());
        param->valueChanged.Connect(&ComboBox::paramChanged, this);
    }
}

ComboBox::~ComboBox() = default;

void ComboBox::paramChanged(unsigned int const& value)
{
    SetSelectedItem(value);
}

void ComboBox::SetItems(std::vector<String> const& newItems)
{
    items = newItems;
    if (selected && *selected >= items.size())
        selected = checked_value<unsigned int>();
    Update();
}

void ComboBox::SetSelectedItem(unsigned int index)
{
    if (index >= items.size())
        return;
    selected = index;
    customCaption = String();
    Update();
}

bool ComboBox::SetSelectedItem(String const& text)
{
    auto const it = std::find(items.begin(), items.end(), text);
    if (it == items.end())
        return false;
    SetSelectedItem(static_cast<unsigned int>(it - items.begin()));
    return true;
}

void ComboBox::SetCustomCaption(String const& caption)
{
    customCaption = caption;
    Update();
}

String ComboBox::GetCaption() const
{
    if (!customCaption.IsEmpty())
        return customCaption;
    return selected ? items[*selected] : String();
}

void ComboBox::SetLabel(String const& text)
{
    label = text;
    Update();
}

int ComboBox::GetLabelWidth() const
{
    Font* font = defaultFont(this);
    if (label.IsEmpty() || !font)
        return 0;
    return static_cast<int>(font->GetStringWidth(label)) + LabelGap;
}

void ComboBox::choose(unsigned int index)
{
    SetSelectedItem(index);
    if (param && param->get() != index)
        param->SetWithGesture(index);
    signalItemSelected(index);
}

void ComboBox::Draw(DrawContext* context)
{
    unsigned char const alpha = GetTotalBaseAlpha();
    Font* font = defaultFont(this);
    int const left = GetLabelWidth();
    int const middle = GetHeight() / 2;
    if (font && !label.IsEmpty())
        context->DrawText(font, Rect(), Point(0, middle), label, TextColor, alpha, HAlignLeft,
                          VAlignCenter);
    Rect const box(left, GetWidth() - 1, 0, GetHeight() - 1);
    context->DrawBox(box, DrawContext::Filled, BoxColor, alpha);
    context->DrawBox(box, DrawContext::Outline, FrameColor, alpha);
    unsigned int const text = IsEnabledTo() ? TextColor : 0xFF909090;
    if (font)
        context->DrawText(font, Rect(), Point(left + 4, middle), GetCaption(), text, alpha,
                          HAlignLeft, VAlignCenter);
    // The arrow: a small triangle pointing down.
    int const x = GetWidth() - ArrowWidth / 2 - 2;
    for (int i = 0; i < 4; ++i)
        context->DrawLine(Point(x - 3 + i, middle - 2 + i), Point(x + 3 - i, middle - 2 + i), text,
                          false, alpha);
}

bool ComboBox::onMousePress(Point const& point, unsigned int)
{
    if (point.x < GetLabelWidth())
        return false;
    SetFocus();
    if (!popup)
        OpenPopup();
    return true;
}

bool ComboBox::onKeyPress(unsigned int keyCode, unsigned int flags, bool)
{
    if (items.empty())
        return false;
    bool const alt = Native::PlatformSupportFactory::IsAltPressed();
    switch (keyCode)
    {
    case 13:
    case 32:
        OpenPopup();
        return true;
    case 38:
    case 40:
        if (alt)
        {
            OpenPopup();
            return true;
        }
        {
            int const step = keyCode == 38 ? -1 : 1;
            int const from = selected ? static_cast<int>(*selected) : (step > 0 ? -1 : 0);
            int const next = std::max(0, std::min(static_cast<int>(items.size()) - 1, from + step));
            if (!selected || static_cast<unsigned int>(next) != *selected)
                choose(static_cast<unsigned int>(next));
        }
        return true;
    default:
        (void)flags;
        return false;
    }
}

bool ComboBox::OpenPopup()
{
    Native::HostWindow* owner = GetFrame()->GetHostWindow();
    if (popup || items.empty() || !owner || !owner->GetNativeHandle())
        return false;
    std::unique_ptr<Native::HostWindow> host(Native::PlatformSupportFactory::CreateHostWindow(
        GetCanvas(), "ComboBox Popup Host Window", nullptr, nullptr));
    if (!host)
        return false;
    // A transient list: live design never works on it, nor takes the selection away to it.
    if (host->GetFrame())
        host->GetFrame()->SetDesignDisable(true);
    PrimitiveFactory* factory = GetCanvas()->GetPrimitiveFactory();
    ComboBoxPopup* made = factory ? factory->CreateComboBoxPopup(host.get(), this) : nullptr;
    popup = made ? made : new ComboBoxPopup(host.get(), this);
    popupDone = false;
    popupChoice = checked_value<unsigned int>();

    int const left = GetLabelWidth();
    Size const size(std::max(GetWidth() - left, 40), popup->GetPreferredHeight());
    Point const origin = owner->GetScreenPos() + GetGlobalPos() + Point(left, GetHeight());
    Native::HostWindowStyle style;
    style.noFrame = true;
    Rect const client(origin, size);
    Rect const window = Native::PlatformSupportFactory::ConvertClientToWindowRect(
        client, false, style, "ComboBox Popup Host Window");
    if (!host->Create(nullptr, nullptr, "ComboBox Popup Host Window", window, false, false, style))
    {
        popup = nullptr;
        return false;
    }
    popup->SetGeometry(0, 0, size.width, size.height);
    Frame* frame = host->GetFrame();
    frame->SetTopLevelWindow(popup);
    frame->SetDrawingEnabled(true);
    host->StartMasterUpdateTimer(20);
    // The list closes when it loses the focus: a press elsewhere, another program.
    host->signalDeactivated.Connect(nullptr, boost::function<void()>([this] { ClosePopup({}); }));
    host->signalCloseRequest.Connect(nullptr, boost::function<void()>([this] { ClosePopup({}); }));
    host->Show(true);
    while (!popupDone && !Native::PlatformSupportFactory::IsEventLoopQuitting())
        Native::PlatformSupportFactory::ProcessEvents(1000);
    popup = nullptr;
    host.reset();
    owner->SetNativeFocus();
    if (!popupChoice)
        return false;
    choose(*popupChoice);
    return true;
}

void ComboBox::ClosePopup(checked_value<unsigned int> const& index)
{
    if (popupDone)
        return;
    popupDone = true;
    popupChoice = index;
}

bool ComboBox::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    reply->SetValue("selectedItem", selected ? items[*selected].CStr() : "<no item selected>");
    reply->SetValue("item", selected ? String::Number(static_cast<int>(*selected)).CStr() : "");
    reply->SetValue("caption", GetCaption().CStr());
    reply->SetValue("label", label.CStr());
    reply->SetValue("isOpen", popup ? "true" : "false");
    return true;
}

ComboBox* CreateComboBox(Frame* frame, Window* parent, String const& name, String const& caption,
                         Controller::EnumParam* param)
{
    return new ComboBox(frame, parent, name, caption, param);
}

} // namespace UI
