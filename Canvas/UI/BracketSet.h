#pragma once

#include "Canvas/UI/Window.h"

namespace UI
{

class Text;

/// The inner window of a bracket set, "Bracket Window": it fills itself with the set's fill
/// colour and draws the two square brackets (or, with border style 1, a whole frame) in the
/// set's colour. It takes no input and is never saved to a layout.
class BracketSetWindow : public Window
{
public:
    BracketSetWindow(Frame* frame, Window* parent, String const& name);

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("BracketSetWindow"); }
};

/// Two square brackets around a space with a caption centred on their top edge; it takes no
/// clicks. The brackets and the caption animate in and out through the frame's animation
/// handler. Its colour ("Color") draws the brackets; "Border Style" 0 draws brackets, 1 a
/// whole frame. Default size 100 by 100.
class BracketSet : public Window
{
public:
    /// Every animation of a bracket set runs in this category.
    static constexpr unsigned int kAnimationCategory = 4198913;

    BracketSet(Frame* frame, Window* parent, String const& name,
               String const& caption = String(""));
    ~BracketSet() override;

    void SetCaption(String const& caption);
    String GetCaption() const;
    /// Filled under the brackets; transparent (alpha 0) by default.
    void SetFillColor(unsigned int color);
    unsigned int GetFillColor() const { return fillColor; }
    /// Length of the brackets' horizontal strokes, 6 by default.
    void SetBracketLength(int length);
    int GetBracketLength() const { return bracketLength; }
    int GetBorderStyle() const;

    BracketSetWindow* GetBracketWindow() const { return bracketWindow; }
    Text* GetCaptionWindow() const { return caption; }
    /// The bracket window's full rectangle, in this window's coordinates.
    Rect GetBracketRect() const;

    /// The bracket window grows from a zero-width line at the middle to its full width (In) or
    /// back (Out) over `ms`, after the animation `after` when given. Returns the animation id.
    unsigned int AnimateInBrackets(checked_value<unsigned int> const& after = {},
                                   unsigned int ms = 250);
    unsigned int AnimateOutBrackets(checked_value<unsigned int> const& after = {},
                                    unsigned int ms = 250);
    /// The caption's alpha runs from 0 to `target` (In), or from its value to 0 (Out).
    unsigned int AnimateInCaption(checked_value<unsigned int> const& after = {},
                                  unsigned int ms = 250, unsigned char target = 255);
    unsigned int AnimateOutCaption(checked_value<unsigned int> const& after = {},
                                   unsigned int ms = 250);

    void onSetGeometry() override;
    String GetWindowType() const override { return String("BracketSet"); }
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

private:
    BracketSetWindow* bracketWindow;
    Text* caption;
    unsigned int fillColor = 0x00000000u;
    int bracketLength = 6;
};

} // namespace UI
