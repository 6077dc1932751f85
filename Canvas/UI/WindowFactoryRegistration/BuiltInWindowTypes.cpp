#include "Canvas/UI/WindowFactoryRegistration/BuiltInWindowTypes.h"

#include "Canvas/UI/Edit.h"
#include "Canvas/UI/FocusIndicator.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimpleToolTip.h"
#include "Canvas/UI/Text.h"
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
    factory.Register<Text>("Text");
    factory.Register<MultiText>("MultiText");
    factory.Register<Edit>("Edit");
    factory.Register<SimpleEdit>("SimpleEdit");
    factory.Register<SimpleToolTip>("SimpleToolTip");
}

} // namespace UI
