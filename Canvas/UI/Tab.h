#pragma once

#include "Canvas/UI/Window.h"

namespace UI
{

class Text;

/// A caption that selects a page of a `WindowStack`: a press on it, or the activation key
/// (Enter, 4096) while it has focus, emits `signalClicked`. The caption is a `UI::Text` child
/// named "Tab Text", centred, white while the tab is active and enabled and not drawn as
/// disabled, grey (0xFFAFAFAF) otherwise.
class Tab : public Window
{
public:
    /// `font` is a font id of the canvas; unset means the default font.
    Tab(Frame* frame, Window* parent, String const& name, String const& caption,
        checked_value<unsigned int> const& font = checked_value<unsigned int>());

    Signal<> signalClicked;

    void SetActive(bool active);
    bool IsActive() const { return active; }
    /// Draws the caption as if disabled while still taking input.
    void SetDrawDisabled(bool drawDisabled);
    bool IsDrawDisabled() const { return drawDisabled; }
    void SetCaption(String const& caption);
    String GetCaption() const;
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;
    /// The caption's colour as it is drawn now.
    unsigned int GetTextColor() const;
    Text* GetTextWindow() const { return text; }
    /// Sends a press and a release to the tab's middle, as an outside driver's click does.
    void AXClick();

    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat) override;
    void onSetGeometry() override;
    void onEnableChange() override;

private:
    void updateTextColorAndAlpha();
    void centreText();

    Text* text;
    bool active = false;
    bool drawDisabled = false;
};

} // namespace UI
