#pragma once

#include <boost/shared_ptr.hpp>

#include "Canvas/UI/Button.h"

namespace UI
{

class DIBits;
class Font;
class MultiText;

/// A momentary button with a caption in its middle and a label child. Its colours are palette
/// keys (the properties "Fill Color", "Caption Color", "Label Color" and "Border Color"),
/// resolved whenever the palette or a key changes; a key the palette does not hold leaves that
/// part undrawn (the caption and label then use black).
class PushButton : public Button
{
public:
    /// `captionFont` and `labelFont` are canvas font ids (unset: the default font).
    PushButton(Frame* frame, Window* parent, String const& name, String const& caption = String(""),
               String const& label = String(""),
               checked_value<unsigned int> const& captionFont = checked_value<unsigned int>(),
               checked_value<unsigned int> const& labelFont = checked_value<unsigned int>());
    ~PushButton() override;

    /// "%1" with the caption, for the undo history.
    Signal<String const&> signalUndoEvent;

    void SetCaption(String const& text);
    String GetCaption() const;
    void SetLabel(String const& text);
    String GetLabel() const;
    void SetCaptionOffset(Point const& offset);
    void SetLabelOffset(Point const& offset);
    void SetCaptionFont(checked_value<unsigned int> const& font);
    /// Shortens a caption wider than the button with an ellipsis.
    void SetEllipsize(bool on);
    /// Palette keys of the four colours.
    void SetFillColorKey(String const& key);
    void SetCaptionColorKey(String const& key);
    void SetLabelColorKey(String const& key);
    void SetBorderColorKey(String const& key);
    /// The pixel width of the caption in its font.
    int GetCaptionWidth() const;
    /// Whether the caption is drawn from its bitmap "Pre-rendered Caption" (made on the first
    /// draw with "Enable Pre-rendered Caption Text" on, remade when the text, colour or font
    /// change).
    bool HasPreRenderedCaption() const { return preRenderedCaption.get() != nullptr; }
    /// The label child, named "<name> Label Text"; never saved to a layout.
    MultiText* GetLabelWindow() const { return label; }

    void Draw(DrawContext* context) override;
    void onPaletteChange() override;
    void onSetGeometry() override;
    String GetWindowType() const override { return String("PushButton"); }
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

protected:
    void slotPropertyChanged(String name);
    void drawCaption(DrawContext* context, unsigned int color);
    /// Extra pictures over the caption; none here.
    virtual void drawOverlayBits(DrawContext*) {}
    void postUndoEvent();
    void placeLabel();

    checked_value<unsigned int> fillColor;
    checked_value<unsigned int> captionColor;
    checked_value<unsigned int> labelColor;
    checked_value<unsigned int> borderColor;
    checked_value<unsigned int> captionFont;
    bool ellipsize = false;

private:
    String stringProperty(char const* name) const;

    MultiText* label;
    /// A static caption costs one blit: its glyphs in a bitmap, with what they were made from.
    boost::shared_ptr<DIBits> preRenderedCaption;
    String preRenderedText;
    unsigned int preRenderedColor = 0;
    Font* preRenderedFont = nullptr;
};

} // namespace UI
