#pragma once

#include "Canvas/UI/PushButton.h"

namespace UI
{

/// The default-look push button, without pixmaps: a box filled with the "on" colour while
/// pressed and the "off" colour otherwise, a one-pixel border and the caption. These are the
/// buttons of the design tools and of the updater's panels.
class SimplePushButton : public PushButton
{
public:
    SimplePushButton(Frame* frame, Window* parent, String const& name,
                     String const& caption = String(""), String const& label = String(""),
                     checked_value<unsigned int> const& captionFont = checked_value<unsigned int>(),
                     checked_value<unsigned int> const& labelFont = checked_value<unsigned int>());

    static constexpr unsigned int kDefaultOnFill = 0xFFE6E6E6u;
    static constexpr unsigned int kDefaultOffFill = 0xFFB3B3B3u;
    static constexpr unsigned int kDefaultBorder = 0xFF999999u;
    static constexpr unsigned int kDefaultText = 0xFF000000u;

    void SetOnFillColor(unsigned int color);
    void SetOffFillColor(unsigned int color);
    void SetBorderColor(unsigned int color);
    void SetTextColor(unsigned int color);
    unsigned int GetOnFillColor() const { return onFill; }
    unsigned int GetOffFillColor() const { return offFill; }
    unsigned int GetBorderColor() const { return border; }
    unsigned int GetTextColor() const { return text; }
    /// The "Border Type" property; 5, a one-pixel frame, by default. 0 draws no border.
    int GetBorderType() const;

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("SimplePushButton"); }

private:
    unsigned int onFill = kDefaultOnFill;
    unsigned int offFill = kDefaultOffFill;
    unsigned int border = kDefaultBorder;
    unsigned int text = kDefaultText;
};

} // namespace UI
