#pragma once

#include "Canvas/UI/Alignment.h"
#include "Canvas/UI/Ellipsize.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Util/PropertyHolder.h"

#include <boost/shared_ptr.hpp>

namespace UI
{

class DIBits;
class Font;

/// The one-line label: every other text on screen is made of it. Disabled from birth, so it
/// takes no input itself; presses on it reach its parent, so a click on a label acts on what it
/// labels. The "Text" property mirrors `GetText`.
class Text : public Window
{
public:
    /// `font` is a font id of the canvas (unset: the default font). With `autoSize` the fixed
    /// size follows the text; otherwise `size` (or 0 by 0) is used as it stands.
    Text(Frame* frame, Window* parent, String const& name, String const& text = String(""),
         checked_value<unsigned int> const& font = checked_value<unsigned int>(),
         HAlignment justification = HAlignLeft,
         checked_value<unsigned int> const& color = checked_value<unsigned int>(),
         checked_value<Point> const& position = checked_value<Point>(),
         checked_value<Size> const& size = checked_value<Size>(), bool autoSize = true);
    ~Text() override;

    /// Sets the "Text" property; a different text resizes (when auto-sized) and repaints.
    void SetText(String const& text);
    String const& GetText() const { return text; }
    void SetFont(checked_value<unsigned int> const& font);
    checked_value<unsigned int> const& GetFontId() const { return font; }
    /// The canvas font this text draws with; null without a canvas or fonts.
    Font* GetFont() const;
    /// Font height in pixels; 0 without a font.
    int GetFontHeight() const;
    void SetJustification(HAlignment j);
    HAlignment GetJustification() const { return justification; }
    void SetCharSpacing(checked_value<unsigned int> const& spacing);
    checked_value<unsigned int> const& GetCharSpacing() const { return charSpacing; }
    /// Keeps a bitmap of the text so that a static label costs one blit.
    void SetPreRenderText(bool on);
    bool IsPreRenderText() const { return preRender; }
    bool HasPreRenderedBits() const { return preRenderedBits.get() != nullptr; }
    void SetAutoAdjustFixedSize(bool on);
    bool IsAutoAdjustFixedSize() const { return autoAdjustFixedSize; }
    /// The drop shadow is drawn at `offset` when a "Drop Shadow Color" is set.
    void SetDropShadow(Point const& offset, checked_value<unsigned int> const& color);
    Point const& GetDropShadowOffset() const { return dropShadowOffset; }
    bool HasDropShadow() const;
    /// An unset colour removes the background box.
    void SetBackground(checked_value<unsigned int> const& color, unsigned int feather = 0);
    bool HasBackground() const { return hasBackground; }

    /// Width in pixels of `s` in this text's font; 0 without a font.
    int GetStringWidth(String const& s) const;
    /// `s` shortened with the ellipsis to fit `maxWidth` in this text's font.
    String Ellipsize(String const& s, int maxWidth, EllipsisMode mode) const;
    /// The byte index of the character under local x, for editors that place a caret.
    unsigned int getCharacterFromPoint(Point const& p) const;

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("Text"); }
    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onMouseRelease(Point const& p, unsigned int flags) override;
    bool onMouseDoubleClick(Point const& p, unsigned int flags) override;
    bool onMouseRightPress(Point const& p, unsigned int flags) override;
    void onSetColor() override;
    void onSetAlpha() override;
    void onSetColorProperty() override;

protected:
    void updateFixedSize();
    void preRenderText();
    void dropPreRendered();

private:
    void onSetText();
    void slotBackgroundColorChanged();
    void slotDropShadowColorChanged();
    bool forwardToParent(Point const& p, bool (Window::*handler)(Point const&, unsigned int),
                         unsigned int flags);
    void drawBackground(DrawContext* context);

    String text;
    checked_value<unsigned int> font;
    bool preRender = false;
    bool autoAdjustFixedSize = true;
    checked_value<unsigned int> charSpacing;
    Point dropShadowOffset;
    bool hasBackground = false;
    unsigned int backgroundFeather = 0;
    boost::shared_ptr<DIBits> preRenderedBits;
    HAlignment justification = HAlignLeft;
    Util::Property<String> textProperty;
    Util::Property<unsigned int> backgroundColorProperty;
    Util::Property<unsigned int> dropShadowColorProperty;
    checked_value<unsigned int> backgroundColor;
    checked_value<unsigned int> dropShadowColor;
};

} // namespace UI
