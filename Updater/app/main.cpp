#include "Updater/app/RunApplication.h"

#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"
#include "TvBase/Util/SystemFolders.h"

#include <vector>

int main(int argc, char** argv)
{
    std::vector<String> args;
    for (int i = 1; i < argc; ++i)
        args.push_back(String(argv[i]));

    // The packed resources sit beside the executable; a missing file leaves the manager empty.
    Util::ResourceManager::Get().Init(
        FolderPath(Util::GetModuleDirectory(String(""), nullptr, true)));

    return runApplication(args);
}
