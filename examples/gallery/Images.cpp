// The images section: an SVG icon, a PNG picture and a pixmap button, all from the gallery's
// packed resources, placed inside their panel by the layout "UI/Layout/GalleryImages.layout".
// Clicking the pixmap button prints "clicked Pixmap Button".

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Layout.h"
#include "Canvas/UI/Media.h"
#include "Canvas/UI/PixmapButton.h"
#include "Canvas/UI/SVG/SVG.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"
#include "examples/gallery/Gallery.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdio>
#include <memory>

namespace Gallery
{

namespace
{

/// An SVG resource drawn fitted into the window; nothing when the resource is missing.
class Icon : public UI::Window
{
public:
    Icon(UI::Frame* frame, UI::Window* parent, String const& name, String const& resource)
        : Window(frame, parent, name)
    {
        array_ref<unsigned char const> const bytes = Util::ResourceManager::Get().GetFile(resource);
        if (bytes.empty())
            std::fprintf(stderr, "gallery: no resource %s\n", resource.CStr());
        else
            svg.reset(new UI::SVG::SVG(bytes.begin(), static_cast<unsigned int>(bytes.size())));
        if (svg && !svg->GetError().IsEmpty())
            std::fprintf(stderr, "gallery: %s: %s\n", resource.CStr(), svg->GetError().CStr());
    }

    void Draw(UI::DrawContext* context) override
    {
        if (svg)
        {
            svg->SetDestinationRect(UI::Rect(0, GetWidth() - 1, 0, GetHeight() - 1));
            svg->Draw(context);
        }
        Window::Draw(context);
    }

private:
    std::unique_ptr<UI::SVG::SVG> svg;
};

/// A PNG resource drawn at the window's top left; nothing when it is missing or damaged.
class Picture : public UI::Window
{
public:
    Picture(UI::Frame* frame, UI::Window* parent, String const& name, String const& resource)
        : Window(frame, parent, name), bits(UI::Media::GetPNGBits(resource, true, 0.0f))
    {
        if (!bits)
            std::fprintf(stderr, "gallery: no picture %s\n", resource.CStr());
    }

    void Draw(UI::DrawContext* context) override
    {
        if (bits)
            context->BitBlt(bits.get(), UI::Rect(0, bits->GetWidth() - 1, 0, bits->GetHeight() - 1),
                            UI::Point(0, 0), 255);
        Window::Draw(context);
    }

private:
    boost::shared_ptr<UI::DIBits> bits;
};

} // namespace

int AddImages(Page* page, int x, int y)
{
    y = page->AddSectionTitle("Images", y, x);
    UI::Frame* frame = page->GetFrame();
    UI::Window* panel = new UI::Window(frame, page, "Images Panel");
    panel->SetGeometry(x, y, 360, 56);
    new Icon(frame, panel, "Gallery Icon", "UI/svg/GalleryIcon.svg");
    new Picture(frame, panel, "Gallery Picture", "UI/png/GalleryPicture.png");
    UI::PixmapButton* button = new UI::PixmapButton(frame, panel, "Pixmap Button");
    button->SetPixmaps("UI/png/GalleryButton");
    button->signalClicked.Connect(nullptr, boost::function<void()>(
                                               []
                                               {
                                                   std::printf("clicked Pixmap Button\n");
                                                   std::fflush(stdout);
                                               }));
    // Under its layout key, so that live design can save the panel to the override folder and
    // the next start reads it from there.
    panel->SetLayoutName("GalleryImages");
    if (!panel->LoadLayout())
        std::fprintf(stderr, "gallery: cannot load UI/Layout/GalleryImages.layout; the images "
                             "are not placed\n");
    return y + panel->GetHeight() + 12;
}

} // namespace Gallery
