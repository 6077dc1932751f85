#pragma once

#include "Canvas/UI/Window.h"

#include <vector>

namespace UI
{

class Font;

/// The base of tool-tip windows, named "ToolTip": it keeps the tip's text cut into lines no
/// wider than `SetMaxWidth` (when wrapping) and tells subclasses through `onTextChanged`, where
/// they size themselves. The canvas decides when a tip shows.
class ToolTip : public Window
{
public:
    ToolTip(Frame* frame, Window* parent, String const& name = String("ToolTip"));
    ~ToolTip() override;

    /// No change for an equal text. With wrapping, a line feed ends a line; a line that grows
    /// wider than the maximum ends at its last space (dropped) or hyphen (kept), or where it
    /// overflows when it has neither.
    void SetText(String const& text);
    String const& GetText() const { return text; }
    void SetMaxWidth(unsigned int width) { maxWidth = width; }
    unsigned int GetMaxWidth() const { return maxWidth; }
    void SetWrap(bool on) { wrap = on; }
    bool IsWrap() const { return wrap; }
    void SetFont(checked_value<unsigned int> const& f) { font = f; }
    /// The canvas font of the tip; null without a canvas or fonts.
    Font* GetFont() const;
    unsigned int GetNumLines() const { return static_cast<unsigned int>(lines.size()); }
    /// Line `index`; empty past the end.
    String GetLine(unsigned int index) const;
    /// The width of the widest line.
    unsigned int GetActualWidth() const;

    String GetWindowType() const override { return String("ToolTip"); }

protected:
    virtual void onTextChanged() {}
    unsigned int measure(String const& s) const;

private:
    void cutLines();

    String text;
    std::vector<String> lines;
    unsigned int maxWidth = 300;
    bool wrap = true;
    checked_value<unsigned int> font;
};

} // namespace UI
