#include "TvBase/Util/detail/PathText.h"

#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

namespace Util
{
namespace detail
{

namespace
{

bool isSeparator(char c)
{
    return c == '/' || c == '\\';
}

std::string toStd(String const& s)
{
    return std::string(s.CStr(), s.Length());
}

String fromStd(std::string const& s)
{
    return String(s.c_str(), static_cast<unsigned int>(s.size()));
}

/// The text without its trailing separators.
std::string withoutTrailingSeparators(String const& text)
{
    std::string t = toStd(text);
    while (!t.empty() && isSeparator(t.back()))
        t.pop_back();
    return t;
}

std::string::size_type lastSeparator(std::string const& t)
{
    return t.find_last_of("/\\");
}

} // namespace

String ConvertRelative(String const& text)
{
    String t = text;
    if (t == "~")
        t = "~/";
    if (t.BeginsWith("~/") || t.BeginsWith("~\\"))
    {
        char const* home = std::getenv("HOME");
        return String(home ? home : "") + "/" + t.Mid(2);
    }
    if (!t.IsEmpty() && t[0] != '/' && t[0] != '\\')
    {
        // The current directory is read once, now: a path made relative stays where it was.
        char buffer[1024];
        String cwd;
        if (getcwd(buffer, 1023) != nullptr)
            cwd = buffer;
        return cwd + "/" + t;
    }
    return t;
}

String Canonicalize(String const& text)
{
    if (text.IsEmpty())
        return "/";
    std::string s = toStd(text);
    for (char& c : s)
        if (c == '\\')
            c = '/';

    while (s.size() > 1 && s.back() == '/')
        s.pop_back();

    // A network-style head "//" stays; every other run of "/" shrinks to one.
    std::string head;
    std::string rest = s;
    if (s.size() >= 2 && s[0] == '/' && s[1] == '/')
    {
        head = "//";
        rest = s.substr(2);
    }
    std::string collapsed;
    for (char c : rest)
        if (!(c == '/' && !collapsed.empty() && collapsed.back() == '/'))
            collapsed += c;
    s = head + collapsed;

    std::vector<std::string> parts;
    std::string::size_type start = 0;
    for (;;)
    {
        std::string::size_type slash = s.find('/', start);
        if (slash == std::string::npos)
        {
            parts.push_back(s.substr(start));
            break;
        }
        parts.push_back(s.substr(start, slash - start));
        start = slash + 1;
    }

    // ".." takes its predecessor with it; one at the very front has none and stays. Above the
    // root there is nothing to take: the ".." goes alone and the path stays absolute.
    std::size_t i = 0;
    while (i < parts.size())
    {
        if (i == 1 && parts[0].empty() && parts[1] == "..")
            parts.erase(parts.begin() + 1);
        else if (i > 0 && parts[i] == "..")
        {
            parts.erase(parts.begin() + static_cast<std::ptrdiff_t>(i - 1),
                        parts.begin() + static_cast<std::ptrdiff_t>(i + 1));
            --i;
        }
        else
            ++i;
    }

    std::string joined;
    for (std::size_t k = 0; k < parts.size(); ++k)
    {
        if (k > 0)
            joined += '/';
        joined += parts[k];
    }
    joined += '/';
    while (joined.size() >= 2 && joined[joined.size() - 1] == '/' &&
           joined[joined.size() - 2] == '/')
        joined.pop_back();
    return fromStd(joined);
}

String GetLastComponent(String const& text)
{
    std::string t = withoutTrailingSeparators(text);
    if (t.empty())
        return "";
    std::string::size_type p = lastSeparator(t);
    if (p != std::string::npos)
        return fromStd(t.substr(p + 1));
    if (t.size() >= 2 && t[1] == ':')
        return fromStd(t.substr(2));
    return fromStd(t);
}

String GetFolderText(String const& text)
{
    if (text.IsEmpty())
        return String();
    std::string t = withoutTrailingSeparators(text);
    std::string::size_type p = lastSeparator(t);
    if (p != std::string::npos)
    {
        if (p == 0)
            return "/";
        if (p == 2 && t[1] == ':')
            return fromStd(t.substr(0, 3));
        return fromStd(t.substr(0, p));
    }
    if (t.size() >= 2 && t[1] == ':')
        return fromStd(t.substr(0, 2) + "/");
    return ".";
}

String GetBaseName(String const& text)
{
    std::string name = toStd(GetLastComponent(text));
    std::string::size_type dot = name.rfind('.');
    if (dot == std::string::npos)
        return fromStd(name);
    return fromStd(name.substr(0, dot));
}

int ComparePaths(String const& a, String const& b)
{
    String ca = Canonicalize(a).ToLower();
    String cb = Canonicalize(b).ToLower();
    if (ca == cb)
        return 0;
    return ca < cb ? -1 : 1;
}

} // namespace detail
} // namespace Util
