#pragma once

#include "TvBase/Util/String.h"

namespace UI
{

class Canvas;
class Frame;
class Window;

namespace detail
{

/// The relative path of the layout `name`: the canvas's layout folder, "/", the name and
/// ".layout" ("UI/Layout/Main.layout"). Without a canvas the folder is empty.
String LayoutFilePath(Canvas const* canvas, String const& name);

/// Loads the layout `name` into `window` (null: the frame's top level): from the resource
/// override folder when one is set and the file there loads, otherwise from the resources.
/// False for an empty name. `FileIO` from reading a file passes through.
bool LoadNamedLayout(Frame* frame, Window* window, String const& name);

/// Writes the layout `name` of `window` (null: the frame's top level) into the resource override
/// folder. False for an empty name, without an override folder, or when writing fails.
bool SaveNamedLayout(Frame* frame, Window* window, String const& name, bool saveRootGeometry);

} // namespace detail
} // namespace UI
