#pragma once

#include "Canvas/UI/Window.h"

#include <boost/shared_ptr.hpp>

namespace UI
{

class DIBits;

/// A background panel: fills itself with a colour and draws an optional PNG image at its
/// top-left corner. A missing image draws only the colour.
class SimpleBannerBG : public Window
{
public:
    static constexpr unsigned int kDefaultColor = 0xFFCDCDCDu;

    SimpleBannerBG(Frame* frame, Window* parent, String const& name,
                   unsigned int color = kDefaultColor, String const& image = String(""));
    ~SimpleBannerBG() override;

    void SetBackgroundColor(unsigned int color);
    unsigned int GetBackgroundColor() const { return background; }
    /// A PNG resource name; empty removes the image.
    void SetImage(String const& name);
    bool HasImage() const;

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("SimpleBannerBG"); }

private:
    unsigned int background;
    boost::shared_ptr<DIBits> image;
};

} // namespace UI
