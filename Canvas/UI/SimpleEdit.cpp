#include "Canvas/UI/SimpleEdit.h"

#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/Text.h"

namespace UI
{

SimpleEdit::SimpleEdit(Frame* frame, Window* parent, String const& name, String const& text,
                       bool multiLine)
    : Edit(frame, parent, name, text, multiLine)
{
    background = CreateProperty<unsigned int>("Background Color", 0u);
    borderType = CreateProperty<int>("Border Type", static_cast<int>(BorderNone));
    borderColor = CreateProperty<unsigned int>("Border Color", 0xFF808080u);
    for (Util::Property<unsigned int> const* p : {&background, &borderColor})
        if (*p)
            p->GetChangedSignal().Connect(&SimpleEdit::slotLookChanged, this);
    if (borderType)
        borderType.GetChangedSignal().Connect(&SimpleEdit::slotLookChanged, this);
}

void SimpleEdit::SetTextColor(unsigned int color)
{
    if (GetTextWindow())
        GetTextWindow()->SetColor(color);
    if (GetMultiTextWindow())
        GetMultiTextWindow()->SetColor(color);
}

void SimpleEdit::SetBackground(unsigned int color)
{
    background.Set(color);
}

void SimpleEdit::SetBorderColor(unsigned int color)
{
    borderColor.Set(color);
}

void SimpleEdit::SetBorderStyle(BorderStyle style)
{
    borderType.Set(static_cast<int>(style));
}

void SimpleEdit::Draw(DrawContext* context)
{
    if (IsInlineEditing())
        return;
    unsigned char const alpha = GetEffectiveAlpha();
    Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
    checked_value<unsigned int> const fill = background.Get();
    if (fill && (*fill >> 24) != 0)
        context->DrawBox(all, DrawContext::Filled, *fill,
                         static_cast<unsigned char>((*fill >> 24) * alpha / 255));
    checked_value<int> const type = borderType.Get();
    checked_value<unsigned int> const line = borderColor.Get();
    if (type && *type == BorderLine && line)
        context->DrawBox(all, DrawContext::Outline, *line, alpha);
    Edit::Draw(context);
}

Edit* CreateSimpleEdit(Frame* frame, Window* parent, String const& name, String const& text)
{
    SimpleEdit* edit = new SimpleEdit(frame, parent, name, text);
    edit->SetBackground(0xFFFFFFFF);
    edit->SetBorderStyle(SimpleEdit::BorderLine);
    edit->SetTextColor(0xFF000000);
    return edit;
}

} // namespace UI
