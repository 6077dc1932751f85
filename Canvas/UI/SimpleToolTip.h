#pragma once

#include "Canvas/UI/Theme.h"
#include "Canvas/UI/ToolTip.h"

namespace UI
{

class Canvas;

/// The default look of a tool tip: a black outline around a pale yellow box and dark lines of
/// text in the canvas's default font, sized to its text.
class SimpleToolTip : public ToolTip
{
public:
    SimpleToolTip(Frame* frame, Window* parent, String const& name = String("ToolTip"));

    void Draw(DrawContext* context) override;

protected:
    /// The fixed size becomes the widest line plus 8 by the lines' height plus 2.
    void onTextChanged() override;
};

/// The theme's tool-tip creator: a `SimpleToolTip` in `frame` under `parent`.
ToolTip* CreateSimpleToolTip(Frame* frame, Window* parent);

/// Makes the canvas's tip with `creator` (the simple one when empty) in the canvas's tool-tip
/// frame and hands it to the canvas with its text setter. Null, with nothing changed, when the
/// canvas has no tool-tip frame (no platform or no display) or the creator gives none.
ToolTip* InstallCanvasToolTip(Canvas* canvas,
                              Theme::ToolTipCreator const& creator = Theme::ToolTipCreator());

} // namespace UI
