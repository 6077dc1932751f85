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

    // The packed resources sit beside the executable; a missing file leaves the manager empty,
    // and so does one that cannot be read (a FIFO, a folder), with a word on the standard error.
    try
    {
        Util::ResourceManager::Get().Init(
            FolderPath(Util::GetModuleDirectory(String(""), nullptr, true)));
    }
    catch (Util::Exception::FileIO const& e)
    {
        std::fprintf(stderr, "tavorin-updater: %s: %s\n", e.GetMessage().CStr(),
                     e.GetPath().ToString().CStr());
    }

    return runApplication(args);
}
