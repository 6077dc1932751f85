#include "TvBase/Util/SystemFolders.h"

#include "TvBase/Util/FilePath.h"

#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <limits.h>
#include <pwd.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace Util
{

namespace
{

String environment(char const* name)
{
    char const* value = std::getenv(name);
    return (value && *value) ? String(value) : String();
}

/// $HOME, else the home folder of the password database; null when neither is known.
String homeText()
{
    String home = environment("HOME");
    if (!home.IsEmpty())
        return home;
    struct passwd entry;
    struct passwd* found = nullptr;
    char buffer[4096];
    if (getpwuid_r(getuid(), &entry, buffer, sizeof buffer, &found) == 0 && found &&
        found->pw_dir && *found->pw_dir)
        return String(found->pw_dir);
    return String();
}

/// The folder that xdg-user-dirs records under `key` ("XDG_DOCUMENTS_DIR"), or null. Only the
/// two forms the tool writes are honoured: "$HOME/..." and an absolute path.
String userDirectory(char const* key, String const& home)
{
    String configHome = environment("XDG_CONFIG_HOME");
    if (configHome.IsEmpty())
        configHome = home + "/.config";
    String const file = configHome + "/user-dirs.dirs";
    // Only a regular file is read: a FIFO would block the program for good.
    struct stat info;
    if (::stat(file.CStr(), &info) != 0 || !S_ISREG(info.st_mode))
        return String();
    std::ifstream in(file.CStr());
    std::string line;
    std::string const prefix = std::string(key) + "=\"";
    while (std::getline(in, line))
    {
        if (line.compare(0, prefix.size(), prefix) != 0)
            continue;
        std::string::size_type end = line.find('"', prefix.size());
        if (end == std::string::npos)
            return String();
        std::string value = line.substr(prefix.size(), end - prefix.size());
        if (value.compare(0, 5, "$HOME") == 0)
            return home + String(value.substr(5).c_str());
        if (!value.empty() && value[0] == '/')
            return String(value.c_str());
        return String();
    }
    return String();
}

FolderPath userSubFolder(char const* key, char const* fallbackName)
{
    String home = homeText();
    if (home.IsEmpty())
        return FolderPath();
    String folder = userDirectory(key, home);
    if (folder.IsEmpty())
        folder = home + "/" + fallbackName;
    return FolderPath(folder);
}

} // namespace

FolderPath GetSystemTempFolder()
{
    String temp = environment("TMPDIR");
    return FolderPath(temp.IsEmpty() ? String("/tmp") : temp);
}

FolderPath GetUserApplicationDataFolder()
{
    String data = environment("XDG_DATA_HOME");
    if (!data.IsEmpty() && !FolderPath::IsRelative(data))
        return FolderPath(data);
    String home = homeText();
    if (!home.IsEmpty())
        return FolderPath(home + "/.local/share");
    // Without a home the system-wide folder stands in, as it always has.
    return GetSystemApplicationDataFolder();
}

FolderPath GetSystemApplicationDataFolder()
{
    return FolderPath("/usr/local/share");
}

FolderPath GetDocumentsFolder()
{
    return userSubFolder("XDG_DOCUMENTS_DIR", "Documents");
}

FolderPath GetDesktopFolder()
{
    return userSubFolder("XDG_DESKTOP_DIR", "Desktop");
}

FolderPath GetUserFolder()
{
    String home = homeText();
    return home.IsEmpty() ? FolderPath() : FolderPath(home);
}

FolderPath GetSystemRootFolder()
{
    return FolderPath("/");
}

std::vector<FolderPath> GetFontFolders()
{
    return {FolderPath("/usr/share/fonts/"), FolderPath("/usr/local/share/fonts/"),
            FolderPath("~/.local/share/fonts/")};
}

String GetModuleDirectory(String const& /*moduleName*/, void* /*moduleHandle*/, bool /*keepBundle*/)
{
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&GetModuleDirectory), &info) == 0 || !info.dli_fname ||
        !*info.dli_fname)
        return "~";
    String file = info.dli_fname;
    // The loader names the main program as it was invoked, which may be relative or a bare
    // name found on PATH; the kernel knows where it really is.
    if (file[0] != '/')
    {
        char exe[PATH_MAX];
        ssize_t length = readlink("/proc/self/exe", exe, sizeof exe - 1);
        if (length > 0)
            file = String(exe, static_cast<unsigned int>(length));
    }
    return FilePath(file).GetFolder().ToString();
}

} // namespace Util
