#include "Updater/app/ProgramInfo.h"
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
    if (Updater::ProgramInfo::PrintIfAsked(args))
        return 0;

    // The packed resources sit in the installed data folder or beside the executable. Whatever
    // keeps them from loading whole is said, never passed over; what is intact still serves.
    // Without them, or without the main window's layout, every widget would stand at 0 by 0,
    // the Close button with them: better to stop and say so.
    String const folder = Util::GetModuleDirectory(String(""), nullptr, true);
    Util::ResourceManager& resources = Util::ResourceManager::Get();
    bool loaded = false;
    try
    {
        loaded = resources.Init(FolderPath(folder));
        if (!resources.GetProblem().IsEmpty())
            std::fprintf(stderr, "tavorin-updater: resources: %s\n", resources.GetProblem().CStr());
    }
    catch (Util::Exception::FileIO const& e)
    {
        std::fprintf(stderr, "tavorin-updater: resources: %s: %s\n", e.GetPath().ToString().CStr(),
                     e.GetMessage().CStr());
    }
    if (!loaded)
    {
        std::fprintf(stderr, "%s\n",
                     Updater::ProgramInfo::MissingResourcesMessage(folder.CStr()).c_str());
        return 1;
    }
    if (!resources.GetFile(String(mainWindowLayout)).data)
    {
        std::fprintf(stderr, "tavorin-updater: cannot show its window without \"%s\"\n",
                     mainWindowLayout);
        return 1;
    }

    return runApplication(args);
}
