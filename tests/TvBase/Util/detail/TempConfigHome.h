#pragma once

#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>

namespace TestSupport
{

/// Sets an environment variable for the life of the object, then puts the old value back.
class ScopedEnv
{
public:
    ScopedEnv(char const* name, char const* value) : name(name)
    {
        char const* old = std::getenv(name);
        hadOld = old != nullptr;
        if (hadOld)
            oldValue = old;
        if (value)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }
    ~ScopedEnv()
    {
        if (hadOld)
            setenv(name.c_str(), oldValue.c_str(), 1);
        else
            unsetenv(name.c_str());
    }
    ScopedEnv(ScopedEnv const&) = delete;
    ScopedEnv& operator=(ScopedEnv const&) = delete;

private:
    std::string name;
    std::string oldValue;
    bool hadOld = false;
};

/// Points the settings store at a temporary folder: user settings in `<temp>/user`, the any-user
/// settings in `<temp>/system`. Settings handles made while it lives use these folders.
class TempConfigHome
{
public:
    TempConfigHome()
        : userHome(folder.Path() + "/user"), systemHome(folder.Path() + "/system"),
          configHome("XDG_CONFIG_HOME", userHome.c_str()),
          configDirs("XDG_CONFIG_DIRS", systemHome.c_str())
    {
    }

    /// The folder of the user's files ("<XDG_CONFIG_HOME>/tavorin/").
    std::string UserFolder() const { return userHome + "/tavorin/"; }
    /// The folder of the any-user files.
    std::string SystemFolder() const { return systemHome + "/tavorin/"; }
    std::string const& Root() const { return folder.Path(); }

    /// Names the same folders with another spelling, so that handles made afterwards get a store
    /// of their own over the same files: in effect, another process.
    void SwitchToOtherView()
    {
        ++views;
        std::string spelling = userHome;
        for (int i = 0; i < views; ++i)
            spelling += "/.";
        setenv("XDG_CONFIG_HOME", spelling.c_str(), 1);
    }

private:
    TempFolder folder;
    std::string userHome;
    std::string systemHome;
    ScopedEnv configHome;
    ScopedEnv configDirs;
    int views = 0;
};

/// The whole text of a settings file; empty when it can't be read.
inline std::string ReadSettingsFile(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

/// Writes a settings file as another program would, making its folders (private to the user)
/// on the way.
inline void WriteSettingsFile(std::string const& path, std::string const& text)
{
    std::string folder = path.substr(0, path.rfind('/'));
    for (std::size_t p = 1; p <= folder.size(); ++p)
        if (p == folder.size() || folder[p] == '/')
            mkdir(folder.substr(0, p).c_str(), 0700);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
}

} // namespace TestSupport
