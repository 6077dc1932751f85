#include "Canvas/UI/WindowFactory.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/detail/DebugReport.h"

#include <exception>

namespace UI
{

bool WindowFactory::registerFactory(String const& name, CreateFunction const& function,
                                    std::type_info const* type)
{
    if (name.IsEmpty() || !function || !type)
        return false;
    if (creators.count(name) != 0 || names.count(type) != 0)
        return false;
    creators[name] = function;
    names[type] = name;
    return true;
}

Window* WindowFactory::Create(String const& type, Frame* frame, Window* parent,
                              String const& name) const
{
    auto it = creators.find(type);
    if (it == creators.end() || !frame)
        return nullptr;
    Window* window = nullptr;
    try
    {
        window = it->second(frame, parent, name);
    }
    catch (std::exception const& e)
    {
        detail::DebugReport(
            String("Creating a window of type %1 failed: %2").Arg(type).Arg(e.what()));
        return nullptr;
    }
    if (!window)
        return nullptr;
    window->SetLayoutCreated(true);
    window->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    return window;
}

checked_value<String> WindowFactory::GetTypeName(Window const* window) const
{
    if (!window)
        return checked_value<String>();
    auto it = names.find(&typeid(*window));
    if (it == names.end())
        return checked_value<String>();
    return it->second;
}

std::vector<String> WindowFactory::type_names() const
{
    std::vector<String> result;
    result.reserve(creators.size());
    for (auto const& entry : creators)
        result.push_back(entry.first);
    return result;
}

WindowFactory* GetWindowFactory(Canvas* canvas)
{
    return canvas ? canvas->GetWindowFactory() : nullptr;
}

} // namespace UI
