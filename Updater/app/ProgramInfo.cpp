#include "Updater/app/ProgramInfo.h"

#include <cstdio>

#ifndef TV_VERSION
#define TV_VERSION "unknown"
#endif

namespace Updater
{

namespace
{

char const helpText[] =
    "Usage: tavorin-updater [-silent]\n"
    "\n"
    "Checks which installed Tavorin products have a newer version and shows them in a window,\n"
    "with a link to each update.\n"
    "\n"
    "  -silent    show nothing; only when updates exist, open the window with them\n"
    "             (this is how the check runs at login)\n"
    "  --help     show this text\n"
    "  --version  show the version\n"
    "\n"
    "Any other argument is ignored. The installed products are the settings\n"
    "\"InstalledProducts/<product>/CurrentVersion\" of the domain com.tavorin.updater (see\n"
    "tvdefaults(1)); tvcheck(1) runs the same check without a window.\n";

} // namespace

bool ProgramInfo::PrintIfAsked(std::vector<String> const& args)
{
    if (args.size() != 1)
        return false;
    if (args[0] == "--help")
        std::fputs(helpText, stdout);
    else if (args[0] == "--version")
        std::fputs("tavorin-updater " TV_VERSION "\n", stdout);
    else
        return false;
    return true;
}

std::string ProgramInfo::MissingResourcesMessage(std::string const& programFolder)
{
    std::string folder = programFolder;
    if (folder.empty() || folder.back() != '/')
        folder += '/';
    return "tavorin-updater: cannot start: its resources are missing (looked for "
           "resources.resembed in " +
           folder + "../share/tavorin/ and " + folder + "Resources/)";
}

} // namespace Updater
