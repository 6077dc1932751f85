#pragma once

#include "Canvas/UI/ParamView.h"
#include "Canvas/UI/PixmapButton.h"
#include "Canvas/UI/PulseOverlayTimer.h"
#include "Canvas/UI/detail/BoolButtonState.h"

#include <memory>

namespace UI
{

class StretchableBits;

/// A pixmap button bound to a bool parameter: it shows the parameter (pressed while on), and a
/// click writes the inverted value. Alt-click restores the parameter's default. Unbound, clicks
/// do nothing. While on and given a pulse timer, its overlay blinks with the shared pulse.
class OnOffButton : public PixmapButton, public ParamView<bool>, public PulseOverlayTimerClient
{
public:
    OnOffButton(Frame* frame, Window* parent, String const& name);
    OnOffButton(Frame* frame, Window* parent, String const& name, Controller::BoolParam* param);
    /// `keyPath` is resolved through the frame's key-value coding.
    OnOffButton(Frame* frame, Window* parent, String const& name, String const& keyPath);
    ~OnOffButton() override;

    /// After each change made by a click.
    Signal<> signalUserToggled;
    /// "%1: %2" with the parameter's name and "On" or "Off".
    Signal<String const&> signalUndoEvent;

    /// Writes the parameter when bound (without the user signal), else only the look.
    void SetOn(bool on);
    bool IsOn() const;
    /// The "Caption" property, drawn centred over the images.
    void SetCaption(String const& caption);
    String GetCaption() const;
    /// Caption colours: up and pressed while enabled, then the same two while disabled.
    void SetCaptionColors(unsigned int off, unsigned int on, unsigned int disabledOff,
                          unsigned int disabledOn);
    void SetCaption(String const& caption, unsigned int off, unsigned int on,
                    unsigned int disabledOff, unsigned int disabledOn);
    /// Images that stretch with the window: `prefix` + "Normal.png" and + "Pressed.png", with
    /// fixed edges as given.
    void SetStretchableOnOffPixmaps(String const& prefix, int left, int right, int top, int bottom);
    /// Takes part in `timer`'s pulse while on; null leaves it.
    void SetPulseOverlayTimer(PulseOverlayTimer* timer);
    unsigned int GetPulseAlpha() const { return pulse.GetAlpha(); }

    void Draw(DrawContext* context) override;
    void onSetGeometry() override;
    String GetWindowType() const override { return String("OnOffButton"); }
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;
    void onPulseOverlayChange(State state, unsigned int alpha) override;

protected:
    void slotClicked();
    void slotResetDefault();
    virtual void onPostUserToggled() {}
    void onControllerValueChanged(bool value) override;
    void onRebindController() override;
    unsigned char getOverlayAlpha() const override;
    void updatePulseOverlayRegistration();
    void postUndoEvent();

private:
    void init();

    detail::UserGesture userGesture;
    unsigned int captionColors[4] = {0xFF000000u, 0xFF000000u, 0xFF000000u, 0xFF000000u};
    std::unique_ptr<StretchableBits> stretchOff;
    std::unique_ptr<StretchableBits> stretchOn;
    detail::PulseMembership pulse{this};
};

} // namespace UI
