#pragma once

#include "Canvas/UI/Window.h"

#include <map>

namespace UI
{

/// Shows one of several windows, each under an id, all at the stack's size. A window made with
/// the stack as its parent joins it by itself, under the next free id.
class WindowStack : public Window
{
public:
    WindowStack(Frame* frame, Window* parent, String const& name);

    /// Adds `window` (moving it into the stack if needed, replacing an earlier entry of it)
    /// under `id`, or the highest id plus 1, or 0. The first window is shown, later ones are
    /// hidden. A duplicate id reports "ID %1 is not unique" and inserts nothing.
    void Insert(Window* window, checked_value<unsigned int> const& id = {});
    /// Shows the window and hides all others; unknown ids and windows change nothing.
    void RaiseWindow(unsigned int id);
    void RaiseWindow(Window* window);
    /// The id of `window`; not present when it isn't in the stack.
    checked_value<unsigned int> GetID(Window* window) const;
    /// Null for an unknown id.
    Window* GetWindow(unsigned int id) const;
    /// The id of the shown window; not present when none is shown.
    checked_value<unsigned int> GetVisibleID() const;
    Window* GetVisibleWindow() const;
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;
    std::map<unsigned int, Window*> const& GetWindows() const { return windows; }

    void onChildAdded(Window* child) override;
    void onChildRemoved(Window* child) override;
    void onSetGeometry() override;

private:
    std::map<unsigned int, Window*> windows;
    bool inserting = false;
};

} // namespace UI
