#pragma once

#include "Canvas/UI/Orientation.h"
#include "Canvas/UI/Window.h"

namespace UI
{

/// A 3-pixel bar between two neighbours of a list that the user drags to resize them. A
/// vertical splitter (orientation 1) lies between the rows of a vertical list: its height is
/// fixed and it moves up and down; otherwise its width is fixed and it moves sideways.
///
/// A live splitter reports every move; otherwise it reports once, on release. The position it
/// reports is its own place in the parent plus the mouse's travel since the press.
class Splitter : public Window
{
public:
    Splitter(Frame* frame, Window* parent, String const& name, Orientation orientation, bool live);

    /// The splitter and the position it was dragged to, in the parent's coordinates.
    Signal<Splitter*, int> signalDragged;
    Signal<> signalChanged;

    Orientation GetOrientation() const { return orientation; }
    bool IsLive() const { return live; }
    bool IsDragging() const { return dragging; }

    void Draw(DrawContext* context) override;
    bool onMousePress(Point const& p, unsigned int flags) override;
    bool onMouseMove(Point const& p, unsigned int flags) override;
    bool onMouseRelease(Point const& p, unsigned int flags) override;

protected:
    /// What `Draw` fills the bar with.
    virtual unsigned int getFillColor() const { return 0xFFFFFFFFu; }

private:
    /// The coordinate on the drag axis of a local point, in frame coordinates.
    int globalAlong(Point const& p) const;
    int positionFor(Point const& p) const;

    Orientation orientation;
    bool live;
    bool dragging = false;
    int pressGlobal = 0;
    int pressPosition = 0;
};

/// The default look: a grey bar.
class SimpleSplitter : public Splitter
{
public:
    using Splitter::Splitter;

protected:
    unsigned int getFillColor() const override { return 0xFFA0A0A0u; }
};

/// The theme's splitter: a `SimpleSplitter`.
Splitter* CreateSimpleSplitter(Frame* frame, Window* parent, String const& name,
                               Orientation orientation, bool live);

} // namespace UI
