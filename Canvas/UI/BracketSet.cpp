#include "Canvas/UI/BracketSet.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/AnimationHandler.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/detail/ButtonDrawing.h"

namespace UI
{

// ---- BracketSetWindow

BracketSetWindow::BracketSetWindow(Frame* frame, Window* parent, String const& name)
    : Window(frame, parent, name)
{
    SetDynamicLayoutMode(DynamicLayoutNever);
}

void BracketSetWindow::Draw(DrawContext* context)
{
    BracketSet const* set = dynamic_cast<BracketSet const*>(GetParent());
    if (!set || GetWidth() <= 0 || GetHeight() <= 0)
        return;
    unsigned char const alpha = GetEffectiveAlpha();
    Rect const box(0, GetWidth() - 1, 0, GetHeight() - 1);
    unsigned int const fill = set->GetFillColor();
    if (fill >> 24)
        context->DrawBox(box, DrawContext::Filled, fill, detail::CombineAlpha(fill, alpha));
    unsigned int const color = set->GetColor();
    unsigned char const lineAlpha = detail::CombineAlpha(color | 0xFF000000u, alpha);
    if (set->GetBorderStyle() == 1)
    {
        context->DrawBox(box, DrawContext::Outline, color, lineAlpha);
        return;
    }
    int const arm = std::min(set->GetBracketLength(), GetWidth() / 2);
    // Left bracket, then right bracket: a post with a stroke along the top and the bottom.
    context->DrawBox(Rect(0, 0, 0, box.bottom), DrawContext::Filled, color, lineAlpha);
    context->DrawBox(Rect(0, arm - 1, 0, 0), DrawContext::Filled, color, lineAlpha);
    context->DrawBox(Rect(0, arm - 1, box.bottom, box.bottom), DrawContext::Filled, color,
                     lineAlpha);
    context->DrawBox(Rect(box.right, box.right, 0, box.bottom), DrawContext::Filled, color,
                     lineAlpha);
    context->DrawBox(Rect(box.right - arm + 1, box.right, 0, 0), DrawContext::Filled, color,
                     lineAlpha);
    context->DrawBox(Rect(box.right - arm + 1, box.right, box.bottom, box.bottom),
                     DrawContext::Filled, color, lineAlpha);
}

// ---- BracketSet

BracketSet::BracketSet(Frame* frame, Window* parent, String const& name, String const& text)
    : Window(frame, parent, name)
{
    CreateProperty("Border Style", 0);
    GetPropertyChangedSignal("Border Style")
        ->Connect(static_cast<void (Window::*)()>(&Window::Update), this);
    bracketWindow = new BracketSetWindow(frame, this, String("Bracket Window"));
    caption = new Text(frame, this, String("BracketSet %1 Caption Text").Arg(name), text);
    caption->SetDynamicLayoutMode(DynamicLayoutNever);
    SetGeometry(0, 0, 100, 100);
    onSetGeometry();
}

BracketSet::~BracketSet() = default;

void BracketSet::SetCaption(String const& text)
{
    caption->SetText(text);
    onSetGeometry();
}

String BracketSet::GetCaption() const
{
    return caption->GetText();
}

void BracketSet::SetFillColor(unsigned int color)
{
    fillColor = color;
    Update();
}

void BracketSet::SetBracketLength(int length)
{
    bracketLength = length;
    Update();
}

int BracketSet::GetBorderStyle() const
{
    checked_value<int> style = GetProperty<int>("Border Style");
    return style ? *style : 0;
}

Rect BracketSet::GetBracketRect() const
{
    int const top = caption->GetHeight() / 2;
    return Rect(0, GetWidth() - 1, top, GetHeight() - 1);
}

void BracketSet::onSetGeometry()
{
    if (!bracketWindow || !caption)
        return;
    Rect const r = GetBracketRect();
    bracketWindow->SetGeometry(r.left, r.top, r.Width(), r.Height());
    // The caption sits across the top edge of the brackets, centred on x.
    int const x = (GetWidth() - caption->GetWidth()) / 2;
    int const y = r.top - caption->GetHeight() / 2;
    caption->SetGeometry(x, y, caption->GetWidth(), caption->GetHeight());
}

unsigned int BracketSet::AnimateInBrackets(checked_value<unsigned int> const& after,
                                           unsigned int ms)
{
    Rect const full = GetBracketRect();
    int const middle = full.left + full.Width() / 2;
    Rect const line(middle, middle - 1, full.top, full.bottom);
    return GetFrame()->GetAnimationHandler()->Geometry(kAnimationCategory, bracketWindow, ms, line,
                                                       full, after);
}

unsigned int BracketSet::AnimateOutBrackets(checked_value<unsigned int> const& after,
                                            unsigned int ms)
{
    Rect const full = GetBracketRect();
    int const middle = full.left + full.Width() / 2;
    Rect const line(middle, middle - 1, full.top, full.bottom);
    return GetFrame()->GetAnimationHandler()->Geometry(kAnimationCategory, bracketWindow, ms,
                                                       bracketWindow->GetGeometry(), line, after);
}

unsigned int BracketSet::AnimateInCaption(checked_value<unsigned int> const& after, unsigned int ms,
                                          unsigned char target)
{
    return GetFrame()->GetAnimationHandler()->Alpha(kAnimationCategory, caption, ms, 0, target,
                                                    after);
}

unsigned int BracketSet::AnimateOutCaption(checked_value<unsigned int> const& after,
                                           unsigned int ms)
{
    return GetFrame()->GetAnimationHandler()->Alpha(kAnimationCategory, caption, ms,
                                                    caption->GetAlpha(), 0, after);
}

bool BracketSet::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                  TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    reply->SetValue("caption", GetCaption().CStr());
    return true;
}

} // namespace UI
