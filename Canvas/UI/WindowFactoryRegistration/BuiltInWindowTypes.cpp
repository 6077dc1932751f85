#include "Canvas/UI/WindowFactoryRegistration/BuiltInWindowTypes.h"

#include "Canvas/UI/FocusIndicator.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/WindowFactory.h"

namespace UI
{

void RegisterBuiltInWindowTypes(WindowFactory& factory)
{
    // One line per type: the name is what layout files and the window maker show. Every type
    // here is made by a constructor taking (frame, parent, name).
    factory.Register<Window>("Window");
    factory.Register<FocusIndicator>("FocusIndicator");
}

} // namespace UI
