#include "Canvas/UI/SimpleBannerBG.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Media.h"
#include "Canvas/UI/detail/ButtonDrawing.h"

namespace UI
{

SimpleBannerBG::SimpleBannerBG(Frame* frame, Window* parent, String const& name, unsigned int color,
                               String const& imageName)
    : Window(frame, parent, name), background(color)
{
    SetImage(imageName);
}

SimpleBannerBG::~SimpleBannerBG() = default;

void SimpleBannerBG::SetBackgroundColor(unsigned int color)
{
    background = color;
    Update();
}

void SimpleBannerBG::SetImage(String const& name)
{
    image.reset();
    if (!name.IsNull() && !name.IsEmpty())
        image = Media::GetPNGBits(name, true, 0.0f);
    Update();
}

bool SimpleBannerBG::HasImage() const
{
    return image.get() != nullptr;
}

void SimpleBannerBG::Draw(DrawContext* context)
{
    unsigned char const alpha = GetEffectiveAlpha();
    context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), DrawContext::Filled, background,
                     detail::CombineAlpha(background, alpha));
    if (image)
        context->BitBlt(image.get(), Rect(Point(), image->GetSize()), Point(), alpha);
    Window::Draw(context);
}

} // namespace UI
