#include "Canvas/UI/SimplePushButton.h"

#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/detail/ButtonDrawing.h"

namespace UI
{

SimplePushButton::SimplePushButton(Frame* frame, Window* parent, String const& name,
                                   String const& caption, String const& label,
                                   checked_value<unsigned int> const& captionFont,
                                   checked_value<unsigned int> const& labelFont)
    : PushButton(frame, parent, name, caption, label, captionFont, labelFont)
{
    CreateProperty("Border Type", 5);
    GetPropertyChangedSignal("Border Type")
        ->Connect(static_cast<void (Window::*)()>(&Window::Update), this);
}

void SimplePushButton::SetOnFillColor(unsigned int color)
{
    onFill = color;
    Update();
}

void SimplePushButton::SetOffFillColor(unsigned int color)
{
    offFill = color;
    Update();
}

void SimplePushButton::SetBorderColor(unsigned int color)
{
    border = color;
    Update();
}

void SimplePushButton::SetTextColor(unsigned int color)
{
    text = color;
    Update();
}

int SimplePushButton::GetBorderType() const
{
    checked_value<int> type = GetProperty<int>("Border Type");
    return type ? *type : 5;
}

void SimplePushButton::Draw(DrawContext* context)
{
    Rect const box(0, GetWidth() - 1, 0, GetHeight() - 1);
    unsigned char const alpha = GetEffectiveAlpha();
    unsigned int const fill = IsPressed() ? onFill : offFill;
    context->DrawBox(box, DrawContext::Filled, fill, detail::CombineAlpha(fill, alpha));
    if (GetBorderType() != 0)
        context->DrawBox(box, DrawContext::Outline, border, detail::CombineAlpha(border, alpha));
    drawCaption(context, text);
    Window::Draw(context);
}

} // namespace UI
