#include "Updater/app/RunApplication.h"

#include <clocale>

namespace Updater
{

bool IsSilentRun(std::vector<String> const& args)
{
    for (String const& arg : args)
    {
        if (arg == "-silent")
            return true;
    }
    return false;
}

} // namespace Updater

int runApplication(std::vector<String> const& args)
{
    // Numbers are read and written in the user's locale from here on.
    std::setlocale(LC_NUMERIC, "");
    String::InitDecimalPoint();

    bool const silent = Updater::IsSilentRun(args);
    (void)silent; // handed to the windows once they are made here

    return 0;
}
