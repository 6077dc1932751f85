#include "Canvas/UI/Canvas.h"

#include "Canvas/UI/Frame.h"

#include <algorithm>

namespace UI
{

Canvas::Canvas(String const& name) : name(name) {}

Canvas::~Canvas() = default;

void Canvas::addFrame(Frame* frame)
{
    if (frame && std::find(frames.begin(), frames.end(), frame) == frames.end())
        frames.push_back(frame);
}

void Canvas::removeFrame(Frame* frame)
{
    frames.erase(std::remove(frames.begin(), frames.end(), frame), frames.end());
    if (activeFrame == frame)
        activeFrame = nullptr;
    if (currentFrame == frame)
        currentFrame = nullptr;
}

void Canvas::TickFrameTimers()
{
    // By index: a timer may close a frame, which then leaves the list.
    for (std::size_t i = 0; i < frames.size(); ++i)
        frames[i]->tickTimers();
}

void Canvas::PushCurrentlyDrawingWindow(Window* window)
{
    currentlyDrawing.push_back(window);
}

void Canvas::PopCurrentlyDrawingWindow(Window* window)
{
    if (!currentlyDrawing.empty() && currentlyDrawing.back() == window)
        currentlyDrawing.pop_back();
}

Window* Canvas::GetCurrentlyDrawingWindow() const
{
    return currentlyDrawing.empty() ? nullptr : currentlyDrawing.back();
}

void Canvas::HandleToolTipMouseMessage(Frame*, MouseMessage, Point const& point, unsigned int, int)
{
    lastMousePoint = point;
}

void Canvas::OnWindowDestroy(Window* window)
{
    // A window can die in the middle of its own paint only by a bug, but the stack must never
    // keep a dead pointer.
    currentlyDrawing.erase(std::remove(currentlyDrawing.begin(), currentlyDrawing.end(), window),
                           currentlyDrawing.end());
}

} // namespace UI
