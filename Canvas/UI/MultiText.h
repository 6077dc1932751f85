#pragma once

#include "Canvas/UI/Alignment.h"
#include "Canvas/UI/Window.h"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <vector>

namespace UI
{

class Text;

/// A string wrapped into a column of `UI::Text` children, one per line. Tabs set a hanging
/// indent for the rest of their paragraph; line feeds end paragraphs. The lines are remade when
/// the text, font, spacing, justification or width changes. Disabled like `UI::Text`: presses
/// reach the parent.
class MultiText : public Window
{
public:
    /// Width in pixels of a piece of text.
    typedef std::function<int(String const&)> Measurer;

    MultiText(Frame* frame, Window* parent, String const& name, String const& text = String(""),
              checked_value<unsigned int> const& font = checked_value<unsigned int>(),
              bool preRender = false, HAlignment justification = HAlignLeft, int lineSpacing = 0,
              checked_value<unsigned int> const& color = checked_value<unsigned int>());
    ~MultiText() override;

    void SetText(String const& text);
    String const& GetText() const { return text; }
    void SetFont(checked_value<unsigned int> const& font);
    checked_value<unsigned int> const& GetFontId() const { return font; }
    void SetCharSpacing(checked_value<unsigned int> const& spacing);
    /// Pixels between lines on top of the font height; negative values overlap them.
    void SetLineSpacing(int spacing);
    int GetLineSpacing() const { return lineSpacing; }
    void SetJustification(HAlignment j);
    HAlignment GetJustification() const { return justification; }
    void SetPreRenderText(bool on);
    /// With lazy layout the lines of a hidden control are made only when it is drawn.
    void SetLazyLayout(bool on) { lazyLayout = on; }
    /// Only line feeds break lines.
    void SetNoWrap(bool on);
    bool IsNoWrap() const { return noWrap; }

    /// The width becomes that of line `line`, or of the widest line without an index.
    void SetWidthToFit(checked_value<unsigned int> const& line = checked_value<unsigned int>());
    /// The height becomes `count * font height + (count - 1) * line spacing`, for `lines` lines
    /// or, without a count, for the lines there are.
    void SetHeightToFit(checked_value<unsigned int> const& lines = checked_value<unsigned int>());

    /// The line texts as laid out now.
    std::vector<boost::shared_ptr<Text>> const& GetLines() const { return lines; }
    /// Font height of the control's font; 0 without one.
    int GetFontHeight() const;

    /// Cuts `text` into lines no wider than `width` as `measure` counts, and gives each line's
    /// left indent in `indents`. A width below 1 gives the whole text as one line; an empty
    /// text one empty line. A word wider than `width` is cut between whole UTF-8 characters.
    static std::vector<String> wordBreak(String const& text, int width, Measurer const& measure,
                                         bool noWrap, std::vector<int>& indents);

    void Draw(DrawContext* context) override;
    void onSetGeometry() override;
    void onShow() override;
    void onSetColor() override;
    void onSetAlpha() override;
    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onMouseDoubleClick(Point const& p, unsigned int flags) override;
    String GetWindowType() const override { return String("MultiText"); }

protected:
    void updateLayout();

private:
    checked_value<unsigned int> font;
    checked_value<unsigned int> charSpacing;
    int lineSpacing;
    bool noWrap = false;
    bool preRender;
    bool lazyLayout = false;
    std::vector<boost::shared_ptr<Text>> lines;
    checked_value<Size> laidOutSize;
    String text;
    HAlignment justification;
};

} // namespace UI
