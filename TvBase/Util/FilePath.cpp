#include "TvBase/Util/FilePath.h"

#include "TvBase/Util/detail/PathText.h"

#include <ostream>
#include <string>

FilePath::FilePath(String const& path, bool flag)
{
    construct(path, flag);
}

FilePath::FilePath(char const* path, bool flag)
{
    construct(String(path), flag);
}

void FilePath::construct(String const& text, bool /*flag*/)
{
    // Blank input counts as no path; otherwise the text as given, blanks included.
    if (text.SimplifyWhiteSpace().IsEmpty())
        return;
    path = Util::detail::ConvertRelative(text);
}

String FilePath::ToString() const
{
    return ToStringCanonical();
}

String FilePath::ToStringCanonical() const
{
    String canonical = Util::detail::Canonicalize(path);
    return canonical.Left(canonical.Length() - 1);
}

FolderPath FilePath::GetFolder() const
{
    if (IsEmpty())
        return FolderPath();
    return FolderPath(Util::detail::GetFolderText(path));
}

String FilePath::GetFilename() const
{
    return Util::detail::GetLastComponent(path);
}

String FilePath::GetBaseName() const
{
    return Util::detail::GetBaseName(path);
}

String FilePath::GetExtension() const
{
    String name = GetFilename();
    checked_value<unsigned int> dot = name.FindRev('.');
    if (!dot)
        return "";
    String extension = name.Mid(*dot + 1);
    return extension.IsNull() ? String("") : extension;
}

bool FilePath::IsRelative(String const& path)
{
    if (path.IsEmpty())
        return false;
    return path[0] != '/' && path[0] != '\\';
}

String FilePath::ToURL() const
{
    static char const hex[] = "0123456789ABCDEF";
    String url = "file://";
    std::string escaped;
    char const* text = path.CStr();
    for (unsigned int i = 0; i < path.Length(); ++i)
    {
        unsigned char c = static_cast<unsigned char>(text[i]);
        bool plain =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
            std::string("-._~/!$&'()*+,;=:@").find(static_cast<char>(c)) != std::string::npos;
        if (plain && c != 0)
            escaped += static_cast<char>(c);
        else
        {
            escaped += '%';
            escaped += hex[c >> 4];
            escaped += hex[c & 15];
        }
    }
    return url + String(escaped.c_str());
}

bool operator==(FilePath const& a, FilePath const& b)
{
    return Util::detail::ComparePaths(a.GetInternal(), b.GetInternal()) == 0;
}

bool operator!=(FilePath const& a, FilePath const& b)
{
    return !(a == b);
}

bool operator<(FilePath const& a, FilePath const& b)
{
    return Util::detail::ComparePaths(a.GetInternal(), b.GetInternal()) < 0;
}

bool operator<=(FilePath const& a, FilePath const& b)
{
    return Util::detail::ComparePaths(a.GetInternal(), b.GetInternal()) <= 0;
}

std::ostream& operator<<(std::ostream& os, FilePath const& path)
{
    return os << path.GetInternal();
}
