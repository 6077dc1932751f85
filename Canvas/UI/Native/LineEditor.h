#pragma once

#include "TvBase/Util/String.h"

#include <vector>

namespace UI
{
namespace Native
{

/// The text, caret and selection of the host's single-line editor, apart from any window so
/// that its rules hold the same on every host. Positions are byte indices that always fall
/// between whole UTF-8 characters. The selection runs from the anchor to the caret.
class LineEditor
{
public:
    /// Starts with all of `text` selected and the caret at its end, as an editor opened over a
    /// field does. `filter`, when not empty, lists the only bytes that typing may insert.
    LineEditor(String const& text, std::vector<char> const& filter);

    String const& GetText() const { return text; }
    unsigned int GetCaret() const { return caret; }
    unsigned int GetAnchor() const { return anchor; }
    bool HasSelection() const { return caret != anchor; }
    /// The selected text; empty without a selection.
    String GetSelectedText() const;

    /// Replaces the selection with `typed` less the characters the filter refuses (a refused
    /// multi-byte character is dropped whole). Line feeds never enter: the editor is one line.
    /// True when the text changed.
    bool Insert(String const& typed);
    /// Deletes the selection, or the character before (Backspace) or after (Delete) the caret.
    bool Backspace();
    bool Delete();
    /// Caret moves; with `extend` the anchor stays and the selection grows.
    void Left(bool extend);
    void Right(bool extend);
    void Home(bool extend);
    void End(bool extend);
    void SelectAll();
    /// The caret to `position` (snapped back to a character start and into the text).
    void SetCaret(unsigned int position, bool extend);

private:
    bool allowed(String const& character) const;
    void eraseSelection();
    unsigned int previousStart(unsigned int position) const;
    unsigned int nextStart(unsigned int position) const;

    String text;
    std::vector<char> filter;
    unsigned int caret;
    unsigned int anchor;
};

} // namespace Native
} // namespace UI
