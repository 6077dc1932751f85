#pragma once

#include "Canvas/UI/Alignment.h"
#include "Canvas/UI/Window.h"

#include <vector>

namespace UI
{

class MultiText;
class Text;

/// A text field: it shows its text in a `UI::Text` ("Edit Text") or, when multi-line, in a
/// `UI::MultiText` ("Edit MultiText"), and edits it with the host's inline editor, which lies
/// over the control while it runs. A click, F2 or Enter opens the editor. In numeric mode
/// (`SetRange` with minimum <= maximum) every text is read as a number, clamped and shown in the
/// float form; with `SetHexAllowed` "0x" and "$" texts are read as hexadecimal.
class Edit : public Window
{
public:
    Edit(Frame* frame, Window* parent, String const& name, String const& text = String(""),
         bool multiLine = false);
    ~Edit() override;

    /// Emitted when the inline editor is about to open.
    Signal<> signalEditStarted;
    /// Emitted after every accepted edit and after an Alt-click restored the default value.
    Signal<> signalTextEdited;
    /// Emitted by `SetText` when the text changed.
    Signal<> signalTextChanged;
    /// Emitted by an Alt-click when Alt resets to the default through the owner.
    Signal<> signalAltClicked;

    /// In numeric mode the text is parsed first. A different text is stored and shown, becomes
    /// the tool tip with `SetTextAsToolTip`, and `signalTextChanged` fires.
    void SetText(String const& text);
    String const& GetText() const { return text; }
    /// Sets the value and its text (numeric mode), and repaints.
    void SetFloatValue(float value);
    checked_value<float> const& GetFloatValue() const { return floatValue; }
    /// Minimum above maximum switches numeric mode off.
    void SetRange(float minValue, float maxValue);
    bool IsNumeric() const { return minValue <= maxValue; }
    void SetDefaultValue(checked_value<float> const& value) { defaultValue = value; }
    void SetAltResetsToDefault(bool on) { altResetsToDefault = on; }
    void SetEditable(bool on) { editable = on; }
    bool IsEditable() const { return editable; }
    void SetHexAllowed(bool on) { hexAllowed = on; }
    /// Numbers are shown with this many decimals; unset, in the plain float form.
    void SetNumDecimalPlaces(checked_value<unsigned int> const& places);
    void SetTextAsToolTip(bool on);
    /// Each of these is removed from an accepted edit.
    void SetForbiddenStrings(std::vector<String> const& strings) { forbiddenStrings = strings; }
    /// When not empty, the only characters the inline editor lets the user type.
    void SetInlineCharFilter(std::vector<char> const& filter) { inlineCharFilter = filter; }
    void SetEllipsize(bool on);
    void SetJustification(HAlignment j);
    HAlignment GetJustification() const { return justification; }
    void SetMargin(int m);
    int GetMargin() const { return margin; }
    bool IsInlineEditing() const { return inlineEditing; }
    bool IsFocusedByClick() const { return focusedByClick; }
    bool IsMultiLine() const { return multiLineText != nullptr; }
    /// The child that shows the text: one of the two is null.
    Text* GetTextWindow() const { return singleLineText; }
    MultiText* GetMultiTextWindow() const { return multiLineText; }

    /// Opens the inline editor (when editable and not already open) and waits for it.
    void ExecuteInlineEdit();
    /// Takes a text the user typed as the inline editor does: in numeric mode it is parsed (a
    /// text that is no number leaves the value unset and answers false), forbidden strings are
    /// removed, the text stored and `signalTextEdited` fired.
    bool AcceptEditedText(String const& edited);

    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

    String GetWindowType() const override { return String("Edit"); }
    bool NeedsEnterKey() const override { return true; }
    /// Shows nothing while the inline editor lies over the control.
    void Draw(DrawContext* context) override;
    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onKeyPress(unsigned int keyCode, unsigned int flags, bool repeat) override;
    void onSetGeometry() override;
    /// The byte index under a local point, from the text child.
    unsigned int getCharacterFromPoint(Point const& p) const;

protected:
    void executeInlineEdit(checked_value<Point> const& position);
    void updateVisibleText();
    /// The number in `text` (numeric mode), clamped; the text is replaced by its canonical
    /// form when it parses.
    String parseFloatString(String const& text, checked_value<float>& value) const;
    String formatFloatValue() const;
    String formatFloat(float value) const;

    HAlignment justification = HAlignLeft;
    MultiText* multiLineText = nullptr;
    Text* singleLineText = nullptr;
    String text;
    float minValue = 1.0f;
    float maxValue = 0.0f;
    checked_value<float> floatValue;
    checked_value<float> defaultValue;
    int margin = 3;
    bool altResetsToDefault = false;
    bool editable = true;
    bool hexAllowed = false;
    bool focusedByClick = false;
    bool textAsToolTip = false;
    std::vector<String> forbiddenStrings;
    bool inlineEditing = false;
    bool ellipsize = false;
    std::vector<char> inlineCharFilter;
    checked_value<unsigned int> decimalPlaces;
};

} // namespace UI
