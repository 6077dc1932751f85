#include "Canvas/UI/PushButton.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Ellipsize.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/detail/ButtonDrawing.h"

namespace UI
{

namespace
{
char const* const kCaption = "Caption Text";
char const* const kLabel = "Label Text";
char const* const kCaptionOffset = "Caption Offset";
char const* const kLabelOffset = "Label Offset";
char const* const kPreRender = "Enable Pre-rendered Caption Text";
char const* const kFill = "Fill Color";
char const* const kCaptionColor = "Caption Color";
char const* const kLabelColor = "Label Color";
char const* const kBorder = "Border Color";
unsigned int const kDefaultText = 0xFF000000u;
} // namespace

PushButton::PushButton(Frame* frame, Window* parent, String const& name, String const& caption,
                       String const& labelText, checked_value<unsigned int> const& captionFont,
                       checked_value<unsigned int> const& labelFont)
    : Button(frame, parent, name, Momentary), captionFont(captionFont)
{
    label = new MultiText(frame, this, String("%1 Label Text").Arg(name), labelText, labelFont);
    label->SetDynamicLayoutMode(DynamicLayoutNever);

    CreateProperty(kCaption, caption);
    CreateProperty(kLabel, labelText);
    CreateProperty(kCaptionOffset, Point());
    CreateProperty(kLabelOffset, Point());
    CreateProperty(kPreRender, false);
    CreateProperty(kFill, String(""));
    CreateProperty(kCaptionColor, String(""));
    CreateProperty(kLabelColor, String(""));
    CreateProperty(kBorder, String(""));
    for (char const* property : {kCaption, kLabel, kCaptionOffset, kLabelOffset, kPreRender, kFill,
                                 kCaptionColor, kLabelColor, kBorder})
        GetPropertyChangedSignal(property)->Connect(&PushButton::slotPropertyChanged, this,
                                                    String(property));
    placeLabel();
}

PushButton::~PushButton() = default;

String PushButton::stringProperty(char const* name) const
{
    checked_value<String> value = GetProperty<String>(name);
    return value ? *value : String("");
}

void PushButton::SetCaption(String const& text)
{
    SetProperty<String>(kCaption, text);
}

String PushButton::GetCaption() const
{
    return stringProperty(kCaption);
}

void PushButton::SetLabel(String const& text)
{
    SetProperty<String>(kLabel, text);
}

String PushButton::GetLabel() const
{
    return stringProperty(kLabel);
}

void PushButton::SetCaptionOffset(Point const& offset)
{
    SetProperty<Point>(kCaptionOffset, offset);
}

void PushButton::SetLabelOffset(Point const& offset)
{
    SetProperty<Point>(kLabelOffset, offset);
}

void PushButton::SetCaptionFont(checked_value<unsigned int> const& font)
{
    captionFont = font;
    Update();
}

void PushButton::SetEllipsize(bool on)
{
    ellipsize = on;
    Update();
}

void PushButton::SetFillColorKey(String const& key)
{
    SetProperty<String>(kFill, key);
}

void PushButton::SetCaptionColorKey(String const& key)
{
    SetProperty<String>(kCaptionColor, key);
}

void PushButton::SetLabelColorKey(String const& key)
{
    SetProperty<String>(kLabelColor, key);
}

void PushButton::SetBorderColorKey(String const& key)
{
    SetProperty<String>(kBorder, key);
}

int PushButton::GetCaptionWidth() const
{
    return detail::TextWidth(detail::WindowFont(this, captionFont), GetCaption());
}

void PushButton::slotPropertyChanged(String name)
{
    if (name == kLabel)
        label->SetText(GetLabel());
    if (name == kLabel || name == kLabelOffset)
        placeLabel();
    if (name == kCaption)
        postUndoEvent();
    if (name == kFill || name == kCaptionColor || name == kLabelColor || name == kBorder)
        onPaletteChange();
    Update();
}

void PushButton::onPaletteChange()
{
    fillColor = detail::ResolvePaletteColor(this, stringProperty(kFill));
    captionColor = detail::ResolvePaletteColor(this, stringProperty(kCaptionColor));
    labelColor = detail::ResolvePaletteColor(this, stringProperty(kLabelColor));
    borderColor = detail::ResolvePaletteColor(this, stringProperty(kBorder));
    label->SetColor(labelColor ? *labelColor : kDefaultText);
    Update();
}

void PushButton::onSetGeometry()
{
    placeLabel();
}

void PushButton::placeLabel()
{
    checked_value<Point> offset = GetProperty<Point>(kLabelOffset);
    Point const at = offset ? *offset : Point();
    label->SetGeometry(at.x, at.y, GetWidth(), label->GetHeight());
    label->SetHeightToFit();
}

void PushButton::drawCaption(DrawContext* context, unsigned int color)
{
    checked_value<Point> offset = GetProperty<Point>(kCaptionOffset);
    Font* font = detail::WindowFont(this, captionFont);
    unsigned char const alpha = detail::CombineAlpha(color, GetEffectiveAlpha());
    checked_value<bool> preRender = GetProperty<bool>(kPreRender);
    if (!preRender || !*preRender || !font)
    {
        preRenderedCaption.reset();
        detail::DrawCentredText(context, font, GetCaption(), GetGeometry().GetSize(),
                                offset ? *offset : Point(), color, alpha, ellipsize);
        return;
    }
    String text = GetCaption();
    if (text.IsEmpty() || alpha == 0)
        return;
    if (ellipsize && detail::TextWidth(font, text) > GetWidth())
        text = Ellipsize(font, text, GetWidth(), EllipsisEnd);
    int const width = detail::TextWidth(font, text);
    int const height = detail::FontHeight(font);
    if (width <= 0 || height <= 0)
        return;
    if (!preRenderedCaption || text != preRenderedText || color != preRenderedColor ||
        font != preRenderedFont)
    {
        boost::shared_array<unsigned int> pixels(new unsigned int[width * height]());
        preRenderedCaption.reset(new DIBits(pixels, width, width, height, true));
        font->RenderText(Point(0, 0), text, color, 255, Rect(0, width - 1, 0, height - 1),
                         *preRenderedCaption, HAlignLeft, VAlignTop, Rect());
        preRenderedText = text;
        preRenderedColor = color;
        preRenderedFont = font;
    }
    Point const at =
        Point((GetWidth() - width) / 2, (GetHeight() - height) / 2) + (offset ? *offset : Point());
    context->BitBlt(preRenderedCaption.get(), Rect(0, width - 1, 0, height - 1), at, alpha);
}

void PushButton::Draw(DrawContext* context)
{
    Rect const box(0, GetWidth() - 1, 0, GetHeight() - 1);
    if (fillColor)
        context->DrawBox(box, DrawContext::Filled, *fillColor,
                         detail::CombineAlpha(*fillColor, GetEffectiveAlpha()));
    if (borderColor)
        context->DrawBox(box, DrawContext::Outline, *borderColor,
                         detail::CombineAlpha(*borderColor, GetEffectiveAlpha()));
    drawCaption(context, captionColor ? *captionColor : kDefaultText);
    drawOverlayBits(context);
    Window::Draw(context);
}

void PushButton::postUndoEvent()
{
    signalUndoEvent(String("%1").Arg(GetCaption()));
}

bool PushButton::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                                  TestAutomation::RPCReplyInterface* reply)
{
    if (!Button::ProcessTARequest(request, args, reply))
        return false;
    reply->SetValue("caption", GetCaption().CStr());
    reply->SetValue("label", GetLabel().CStr());
    return true;
}

} // namespace UI
