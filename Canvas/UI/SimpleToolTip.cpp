#include "Canvas/UI/SimpleToolTip.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Font.h"

namespace UI
{

SimpleToolTip::SimpleToolTip(Frame* frame, Window* parent, String const& name)
    : ToolTip(frame, parent, name)
{
}

void SimpleToolTip::onTextChanged()
{
    Font* f = GetFont();
    int const lineHeight = (f ? f->GetHeight() : 0) + 2;
    SetFixedSize(static_cast<int>(GetActualWidth()) + 8,
                 static_cast<int>(GetNumLines()) * lineHeight + 2);
    Update();
}

void SimpleToolTip::Draw(DrawContext* context)
{
    unsigned char const alpha = GetTotalBaseAlpha();
    Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
    context->DrawBox(all, DrawContext::Outline, 0xFF000000, alpha);
    Rect const inner = all.Inflate(-1);
    if (!inner.IsEmpty())
        context->DrawBox(inner, DrawContext::Filled, 0xFFFFFFE0, alpha);
    Font* f = GetFont();
    int const lineHeight = (f ? f->GetHeight() : 0) + 2;
    for (unsigned int i = 0; i < GetNumLines(); ++i)
        context->DrawText(f, Point(4, lineHeight * static_cast<int>(i) + 2), GetLine(i), 0xFF202020,
                          alpha);
    Window::Draw(context);
}

ToolTip* CreateSimpleToolTip(Frame* frame, Window* parent)
{
    return new SimpleToolTip(frame, parent);
}

ToolTip* InstallCanvasToolTip(Canvas* canvas, Theme::ToolTipCreator const& creator)
{
    Frame* frame = canvas ? canvas->GetToolTipFrame() : nullptr;
    if (!frame)
        return nullptr;
    ToolTip* tip = creator ? creator(frame, nullptr) : CreateSimpleToolTip(frame, nullptr);
    if (!tip)
        return nullptr;
    tip->Hide();
    canvas->SetToolTip(tip, [tip](String const& text) { tip->SetText(text); });
    return tip;
}

} // namespace UI
