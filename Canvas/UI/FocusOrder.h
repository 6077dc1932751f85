#pragma once

#include <vector>

namespace UI
{

class Window;

/// The windows under `root` that a user reaches by Tab, in tree order (each window before its
/// children, children by index): buttons (check boxes and radio buttons among them), links,
/// edit fields, list boxes, combo boxes and parameter controls. A window found is not
/// searched further, so a widget's own parts never come twice. Hidden and disabled windows are
/// listed too: the frame skips them while they are so.
std::vector<Window*> CollectFocusOrder(Window* root);

} // namespace UI
