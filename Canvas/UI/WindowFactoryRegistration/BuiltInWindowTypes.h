#pragma once

namespace UI
{

class WindowFactory;

/// Registers the toolkit's own window types with `factory`, each under its class name: "Window",
/// "FocusIndicator", and the widgets as they join the list in BuiltInWindowTypes.cpp. A type that
/// is registered already is left as it is. The canvas's factory runs this once when it is made;
/// an application adds its own types to the same factory afterwards.
void RegisterBuiltInWindowTypes(WindowFactory& factory);

} // namespace UI
