#include "TvBase/Util/FolderPath.h"

#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/detail/PathText.h"

#include <ostream>

FolderPath::FolderPath(String const& text, bool /*flag*/)
{
    if (text.SimplifyWhiteSpace().IsEmpty())
        return;
    path = Util::detail::ConvertRelative(text);
    if (!path.EndsWith("/") && !path.EndsWith("\\"))
        path += "/";
}

FolderPath::FolderPath(char const* text, bool flag) : FolderPath(String(text), flag) {}

String FolderPath::ToString() const
{
    return ToStringCanonical();
}

String FolderPath::ToStringCanonical() const
{
    return Util::detail::Canonicalize(path);
}

FolderPath FolderPath::GetParent() const
{
    if (IsTopLevel())
        return FolderPath();
    return FilePath(path).GetFolder();
}

bool FolderPath::IsTopLevel() const
{
    if (IsEmpty())
        return true;
    String canonical = ToStringCanonical();
    return canonical == "/" || canonical == "./";
}

String FolderPath::GetFolderName() const
{
    if (IsEmpty())
        return String();
    if (!IsTopLevel())
        return Util::detail::GetLastComponent(ToStringCanonical());
    // The root has no volume name here; it shows as itself.
    if (IsRelative(path))
        return String();
    return "/";
}

String FolderPath::GetBaseName() const
{
    return Util::detail::GetBaseName(path);
}

bool FolderPath::IsRelative(String const& path)
{
    return FilePath::IsRelative(path);
}

bool operator==(FolderPath const& a, FolderPath const& b)
{
    return Util::detail::ComparePaths(a.GetInternal(), b.GetInternal()) == 0;
}

bool operator!=(FolderPath const& a, FolderPath const& b)
{
    return !(a == b);
}

bool operator<(FolderPath const& a, FolderPath const& b)
{
    return Util::detail::ComparePaths(a.GetInternal(), b.GetInternal()) < 0;
}

bool operator<=(FolderPath const& a, FolderPath const& b)
{
    return Util::detail::ComparePaths(a.GetInternal(), b.GetInternal()) <= 0;
}

FilePath operator+(FolderPath const& folder, String const& name)
{
    return FilePath(folder.GetInternal() + name, false);
}

FolderPath operator/(FolderPath const& folder, String const& name)
{
    return FolderPath(folder.GetInternal() + name, FolderPath::IsRelative(folder.GetInternal()));
}

std::ostream& operator<<(std::ostream& os, FolderPath const& path)
{
    return os << path.GetInternal();
}
