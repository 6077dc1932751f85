#include "Canvas/UI/WindowStack.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/detail/DebugReport.h"

namespace UI
{

WindowStack::WindowStack(Frame* frame, Window* parent, String const& name)
    : Window(frame, parent, name)
{
}

void WindowStack::Insert(Window* window, checked_value<unsigned int> const& id)
{
    if (!window)
        return;
    // Reparenting below calls `onChildAdded`, which must not insert a second time.
    inserting = true;
    if (window->GetParent() != this)
        window->Reparent(this);
    for (auto it = windows.begin(); it != windows.end(); ++it)
        if (it->second == window)
        {
            windows.erase(it);
            break;
        }
    unsigned int newId = 0;
    if (id.present)
        newId = id.value;
    else if (!windows.empty())
        newId = windows.rbegin()->first + 1;
    if (windows.count(newId))
    {
        detail::DebugReport(String("ID %1 is not unique").Arg(newId));
        inserting = false;
        return;
    }
    windows[newId] = window;
    window->SetGeometry(0, 0, GetWidth(), GetHeight());
    if (windows.size() == 1)
        window->Show();
    else
        window->Hide();
    inserting = false;
}

void WindowStack::RaiseWindow(unsigned int id)
{
    RaiseWindow(GetWindow(id));
}

void WindowStack::RaiseWindow(Window* window)
{
    if (!window || !GetID(window).present)
        return;
    for (auto const& entry : windows)
        if (entry.second != window)
            entry.second->Hide();
    window->Show();
}

checked_value<unsigned int> WindowStack::GetID(Window* window) const
{
    for (auto const& entry : windows)
        if (entry.second == window)
            return entry.first;
    return {};
}

Window* WindowStack::GetWindow(unsigned int id) const
{
    auto found = windows.find(id);
    return found == windows.end() ? nullptr : found->second;
}

checked_value<unsigned int> WindowStack::GetVisibleID() const
{
    for (auto const& entry : windows)
        if (entry.second->IsVisible())
            return entry.first;
    return {};
}

Window* WindowStack::GetVisibleWindow() const
{
    checked_value<unsigned int> const id = GetVisibleID();
    return id.present ? GetWindow(id.value) : nullptr;
}

void WindowStack::onChildAdded(Window* child)
{
    if (!inserting)
        Insert(child);
}

void WindowStack::onChildRemoved(Window* child)
{
    for (auto it = windows.begin(); it != windows.end(); ++it)
        if (it->second == child)
        {
            windows.erase(it);
            return;
        }
}

void WindowStack::onSetGeometry()
{
    for (auto const& entry : windows)
        entry.second->SetGeometry(0, 0, GetWidth(), GetHeight());
}

bool WindowStack::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                   TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    checked_value<unsigned int> const id = GetVisibleID();
    reply->SetValue("value", id ? String::Number(static_cast<int>(*id)).CStr() : "");
    return true;
}

} // namespace UI
