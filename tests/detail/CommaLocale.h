#pragma once

#include <clocale>
#include <cstdlib>
#include <stdlib.h>
#include <string>
#include <unistd.h>

namespace TestSupport
{

/// Compiles a German UTF-8 locale (decimal separator ",") into a private temp folder and points
/// LOCPATH at it, so that tests can run under a comma locale on a machine that has none
/// installed. `IsReady` is false when the locale tools are missing. Restores the "C" numeric
/// locale and the environment and removes the folder when destroyed.
class CommaLocale
{
public:
    CommaLocale()
    {
        char pattern[] = "/tmp/tv-locale-XXXXXX";
        if (!mkdtemp(pattern))
            return;
        folder = pattern;
        if (char const* old = std::getenv("LOCPATH"))
            oldLocPath = old, hadLocPath = true;
        std::string command =
            "localedef -i de_DE -f UTF-8 '" + folder + "/" + kName + "' >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0)
            return;
        setenv("LOCPATH", folder.c_str(), 1);
        ready = true;
    }
    ~CommaLocale()
    {
        std::setlocale(LC_NUMERIC, "C");
        if (hadLocPath)
            setenv("LOCPATH", oldLocPath.c_str(), 1);
        else
            unsetenv("LOCPATH");
        if (!folder.empty())
            std::system(("rm -rf '" + folder + "'").c_str());
    }
    CommaLocale(CommaLocale const&) = delete;
    CommaLocale& operator=(CommaLocale const&) = delete;

    bool IsReady() const { return ready; }
    /// Switches LC_NUMERIC to the comma locale; false when that fails.
    bool Activate() const { return ready && std::setlocale(LC_NUMERIC, kName) != nullptr; }

    static constexpr char const* kName = "de_DE.UTF-8";

private:
    std::string folder;
    std::string oldLocPath;
    bool hadLocPath = false;
    bool ready = false;
};

} // namespace TestSupport
