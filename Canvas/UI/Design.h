#pragma once

#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/Rect.h"

namespace UI
{

class DrawContext;
class Frame;

/// The live design engine of one frame. The frame offers it every mouse and keyboard message
/// before any window sees them, ticks it, and lets it draw last. While it is inactive every
/// hook answers "not handled" and draws nothing; until the engine itself is built it stays
/// inactive.
class Design
{
public:
    /// Made and owned by `frame`.
    explicit Design(Frame* frame);
    virtual ~Design();

    Design(Design const&) = delete;
    Design& operator=(Design const&) = delete;

    /// Reads the design settings; design stays off unless they turn it on.
    void UpdateFromConfigFile();
    /// Decides whether the engine is active; called on every tick and when the frame's
    /// design-disable flag changes.
    void UpdateActive();
    bool IsActive() const { return active; }
    Frame* GetFrame() const { return frame; }

    /// True when the message was claimed; it then goes no further.
    bool HandleMouseMessage(MouseMessage message, Point const& point, unsigned int flags,
                            int delta);
    /// True when the message was claimed; it then goes no further.
    bool HandleKeyboardMessage(KeyboardMessage message, unsigned int key, char character,
                               unsigned int modifiers, bool repeat);
    /// Draws the overlay over everything; nothing while inactive.
    void Draw(DrawContext* context);

private:
    Frame* frame;
    bool active = false;
};

} // namespace UI
