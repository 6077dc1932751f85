#pragma once

#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/String.h"

namespace UI
{

class Frame;
class Window;

/// Reading and writing ".layout" files: XML documents of type "TvCanvasLayout-1" that place the
/// windows that code built, set their dynamic metrics and properties, and may add windows of
/// types registered with the canvas's `WindowFactory`.
///
/// Loading never stops at a bad element: unknown names, unknown types, unreadable values and
/// failing nested layouts are reported (see `detail::DebugReport`) and skipped, and whatever was
/// applied so far stays. Geometry values are kept within +/-1,000,000 (sizes within 0 to
/// 1,000,000) so that no later sum of coordinates can overflow. For the UI thread only.

/// The document type: the root element's name.
extern char const* const LayoutDocumentType;

/// Loads `file` (relative, "UI/Layout/Main.layout") into `window`, or into the frame's top level
/// when `window` is null. A non-empty `folder` is tried on disk first; a layout found there is
/// applied without calling `OnLayoutLoaded`. Otherwise the file is looked for once more in the
/// folder and then through `Util::ResourceManager`; a layout found on this second road calls
/// `window->OnLayoutLoaded()`. False when no readable layout of the right type is found.
/// `Util::Exception::FileIO` from opening or reading a file on disk passes to the caller.
bool LoadLayout(FolderPath const& folder, String const& file, Frame* frame, Window* window);

/// Loads the layout file at the exact `path` and, on success with a window, calls
/// `window->OnLayoutLoaded()`. False for a missing, empty or invalid file; `FileIO` from opening
/// or reading passes to the caller.
bool LoadLayout(String const& path, Frame* frame, Window* window);

/// Writes the layout of `window`'s children (or of the frame's top-level windows for a null
/// window) to `folder` + `file`; with `saveRootGeometry` (and a window whose mode isn't 2) the
/// root element also carries the window's geometry and properties. Every element that places a
/// window also carries its dynamic metrics ("Metric0" upward), so a reload restores them. Children
/// with their own layout name are written into their own files beside it. Dialogs and windows of
/// mode 4 are never written. False when the file cannot be written.
bool SaveLayout(FolderPath const& folder, String const& file, Frame* frame, Window* window,
                bool saveRootGeometry);

} // namespace UI
