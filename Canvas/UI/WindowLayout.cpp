// The window's and the frame's doors to their layout files.
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Layout.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/detail/LayoutPath.h"
#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/ResourceManager.h"

namespace UI
{

namespace detail
{

String LayoutFilePath(Canvas const* canvas, String const& name)
{
    // Joined rather than formatted: a folder or name holding "%1" stays as it is.
    String folder = canvas ? canvas->GetLayoutFolder() : String("");
    return (folder.IsNull() ? String("") : folder) + String("/") + name + String(".layout");
}

/// Loads `name` for `window` (null: the frame's top level): from the override folder when one
/// is set and holds it, otherwise from the resources.
bool LoadNamedLayout(Frame* frame, Window* window, String const& name)
{
    if (name.IsEmpty())
        return false;
    String relative = LayoutFilePath(frame ? frame->GetCanvas() : nullptr, name);
    checked_value<FolderPath> const& overrideFolder =
        Util::ResourceManager::Get().GetOverridePath();
    if (overrideFolder && UI::LoadLayout(*overrideFolder, relative, frame, window))
        return true;
    return UI::LoadLayout(FolderPath(), relative, frame, window);
}

/// Writes `name` for `window` (null: the frame's top level) into the override folder only.
bool SaveNamedLayout(Frame* frame, Window* window, String const& name, bool saveRootGeometry)
{
    checked_value<FolderPath> const& overrideFolder =
        Util::ResourceManager::Get().GetOverridePath();
    if (name.IsEmpty() || !overrideFolder)
        return false;
    String relative = LayoutFilePath(frame ? frame->GetCanvas() : nullptr, name);
    return UI::SaveLayout(*overrideFolder, relative, frame, window, saveRootGeometry);
}

} // namespace detail

bool Window::LoadLayout()
{
    return LoadLayout(layoutName);
}

bool Window::LoadLayout(String const& name)
{
    return detail::LoadNamedLayout(frame, this, name);
}

bool Window::LoadLayoutExplicit(String const& path)
{
    if (!UI::LoadLayout(path, frame, this))
        return false;
    layoutName = FilePath(path).GetBaseName();
    return true;
}

bool Window::SaveLayout(bool saveRootGeometry)
{
    return detail::SaveNamedLayout(frame, this, layoutName, saveRootGeometry);
}

} // namespace UI
