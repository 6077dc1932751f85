#pragma once

#include "Canvas/UI/Edit.h"

namespace UI
{

/// The default look of a text field: an optional background, an optional border and the text.
/// While the inline editor lies over it, it draws nothing.
class SimpleEdit : public Edit
{
public:
    /// How the border is drawn: none, or a one-pixel line.
    enum BorderStyle
    {
        BorderNone = 0,
        BorderLine = 1
    };

    SimpleEdit(Frame* frame, Window* parent, String const& name, String const& text = String(""),
               bool multiLine = false);

    /// The colour of the text ("Color" of the text child).
    void SetTextColor(unsigned int color);
    /// "Background Color"; an alpha of 0 leaves the background unfilled.
    void SetBackground(unsigned int color);
    /// "Border Color".
    void SetBorderColor(unsigned int color);
    /// "Border Type"; values other than `BorderLine` draw no border.
    void SetBorderStyle(BorderStyle style);

    void Draw(DrawContext* context) override;

private:
    void slotLookChanged() { Update(); }

    Util::Property<unsigned int> background;
    Util::Property<int> borderType;
    Util::Property<unsigned int> borderColor;
};

/// The theme's edit-box creator: a single-line `SimpleEdit` with a white background and a grey
/// border.
Edit* CreateSimpleEdit(Frame* frame, Window* parent, String const& name, String const& text);

} // namespace UI
