#pragma once

// Windows for tests: each paints a filled box of its color (when it has one), records the
// handlers that run in a shared log, and takes the mouse and keys when told to.

#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Window.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace UI
{
namespace Test
{

using Log = std::vector<std::string>;

class RecordingWindow : public Window
{
public:
    RecordingWindow(Frame* frame, Window* parent, char const* name, Log* log = nullptr)
        : Window(frame, parent, name), log(log)
    {
    }

    /// Paints the whole window in `color` with the effective alpha, then the children.
    checked_value<unsigned int> fill;
    bool takesMouse = false;
    bool throwInDraw = false;
    bool takesKeys = false;
    std::function<void(unsigned int)> timerAction;
    int geometryChanges = 0;
    int shows = 0;
    int hides = 0;
    int colorChanges = 0;
    std::vector<Window*> added;
    std::vector<Window*> removed;

    void Draw(DrawContext* context) override
    {
        if (throwInDraw)
            throw std::runtime_error("draw failed");
        if (fill)
            context->DrawBox(Rect(0, GetWidth() - 1, 0, GetHeight() - 1), DrawContext::Filled,
                             *fill, GetEffectiveAlpha());
        Window::Draw(context);
    }

    void onSetGeometry() override { ++geometryChanges; }
    void onShow() override { ++shows; }
    void onHide() override { ++hides; }
    void onSetColorProperty() override { ++colorChanges; }
    void onChildAdded(Window* w) override { added.push_back(w); }
    void onChildRemoved(Window* w) override { removed.push_back(w); }
    void onTimer(unsigned int id) override
    {
        record("timer" + std::to_string(id));
        if (timerAction)
            timerAction(id);
    }
    void onReceiveFocus() override { record("focus"); }
    void onLoseFocus() override { record("blur"); }
    void onMouseEnter() override { record("enter"); }
    void onPaletteChange() override { record("palette"); }
    void onMouseExit() override { record("exit"); }

    bool onMousePress(Point const& p, unsigned int) override { return mouse("press", p); }
    bool onMouseRelease(Point const& p, unsigned int) override { return mouse("release", p); }
    bool onMouseRightPress(Point const& p, unsigned int) override { return mouse("rpress", p); }
    bool onMouseMove(Point const& p, unsigned int) override { return mouse("move", p); }
    bool onMouseWheel(Point const& p, int delta, unsigned int) override
    {
        return mouse("wheel" + std::to_string(delta), p);
    }
    bool onKeyPress(unsigned int key, unsigned int, bool) override
    {
        return keys("key" + std::to_string(key));
    }
    bool onKeyRelease(unsigned int key, unsigned int) override
    {
        return keys("up" + std::to_string(key));
    }
    bool onKeyChar(char c, unsigned int, bool) override { return keys(std::string("char") + c); }

    void record(std::string const& what)
    {
        if (log)
            log->push_back(std::string(GetName().CStr()) + ":" + what);
    }

private:
    bool mouse(std::string const& what, Point const& p)
    {
        record(what + "(" + std::to_string(p.x) + "," + std::to_string(p.y) + ")");
        return takesMouse;
    }
    bool keys(std::string const& what)
    {
        record(what);
        return takesKeys;
    }

    Log* log;
};

} // namespace Test
} // namespace UI
