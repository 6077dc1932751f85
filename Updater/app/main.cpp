#include "Updater/app/ProgramInfo.h"
#include "Updater/app/RunApplication.h"

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
    // them every window would come up empty and unusable, so the program says why and ends.
    String const folder = Util::GetModuleDirectory(String(""), nullptr, true);
    if (!Util::ResourceManager::Get().Init(FolderPath(folder)))
    {
        std::fprintf(stderr, "%s\n",
                     Updater::ProgramInfo::MissingResourcesMessage(folder.CStr()).c_str());
        return 1;
    }

    return runApplication(args);
}
