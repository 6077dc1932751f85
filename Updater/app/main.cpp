#include "Updater/app/RunApplication.h"

#include "TvBase/Util/FileIOException.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"
#include "TvBase/Util/SystemFolders.h"

#include <cstdio>
#include <vector>

namespace
{

char const* const mainWindowLayout = "UI/Layout/MainWindow.layout";

} // namespace

int main(int argc, char** argv)
{
    std::vector<String> args;
    for (int i = 1; i < argc; ++i)
        args.push_back(String(argv[i]));

    // The packed resources sit beside the executable. Whatever keeps them from loading whole is
    // said, never passed over; what is intact still serves. Without the main window's layout
    // every widget would stand at 0 by 0, the Close button with them: better to stop and say so.
    Util::ResourceManager& resources = Util::ResourceManager::Get();
    try
    {
        resources.Init(FolderPath(Util::GetModuleDirectory(String(""), nullptr, true)));
        if (!resources.GetProblem().IsEmpty())
            std::fprintf(stderr, "tavorin-updater: resources: %s\n", resources.GetProblem().CStr());
    }
    catch (Util::Exception::FileIO const& e)
    {
        std::fprintf(stderr, "tavorin-updater: resources: %s: %s\n", e.GetPath().ToString().CStr(),
                     e.GetMessage().CStr());
    }

    if (!resources.GetFile(String(mainWindowLayout)).data)
    {
        std::fprintf(stderr, "tavorin-updater: cannot show its window without \"%s\"\n",
                     mainWindowLayout);
        return 1;
    }

    return runApplication(args);
}
