#include "Updater/app/ProgramInfo.h"
#include "Updater/app/RunApplication.h"

#include "TvBase/Util/FileIOException.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"
#include "TvBase/Util/SystemFolders.h"

#include <cstdio>
#include <vector>

int main(int argc, char** argv)
{
    std::vector<String> args;
    for (int i = 1; i < argc; ++i)
        args.push_back(String(argv[i]));
    if (Updater::ProgramInfo::PrintIfAsked(args))
        return 0;

    // The packed resources sit in the installed data folder or beside the executable. Without
    // them every window would come up empty and unusable, so the program says why and ends; a
    // file that cannot be read (a FIFO, a folder) says so too.
    String const folder = Util::GetModuleDirectory(String(""), nullptr, true);
    bool loaded = false;
    try
    {
        loaded = Util::ResourceManager::Get().Init(FolderPath(folder));
    }
    catch (Util::Exception::FileIO const& e)
    {
        std::fprintf(stderr, "tavorin-updater: %s: %s\n", e.GetMessage().CStr(),
                     e.GetPath().ToString().CStr());
    }
    if (!loaded)
    {
        std::fprintf(stderr, "%s\n",
                     Updater::ProgramInfo::MissingResourcesMessage(folder.CStr()).c_str());
        return 1;
    }

    return runApplication(args);
}
