#include "TvBase/Util/PlatformInfo.h"

#include <errno.h>
#include <limits.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace Util
{

namespace
{

/// Reads a decimal number at `text`, moving past it; false when no digit is there.
bool readNumber(char const*& text, unsigned int& number)
{
    if (*text < '0' || *text > '9')
        return false;
    unsigned long long value = 0;
    while (*text >= '0' && *text <= '9')
    {
        if (value < 0xFFFFFFFFULL)
            value = value * 10 + static_cast<unsigned int>(*text - '0');
        ++text;
    }
    number = value > 0xFFFFFFFFULL ? 0xFFFFFFFFu : static_cast<unsigned int>(value);
    return true;
}

} // namespace

unsigned int GetOSXVersion()
{
    return 0;
}

bool GetDetailedOSXVersion(unsigned int& major, unsigned int& minor, unsigned int& bugfix)
{
    utsname names;
    if (uname(&names) != 0)
        return false;
    // "6.1.55-1-amd64": major, then each further part only when a "." leads to it.
    char const* text = names.release;
    unsigned int parts[3] = {0, 0, 0};
    if (!readNumber(text, parts[0]))
        return false;
    for (int i = 1; i < 3 && *text == '.'; ++i)
    {
        ++text;
        if (!readNumber(text, parts[i]))
            break;
    }
    major = parts[0];
    minor = parts[1];
    bugfix = parts[2];
    return true;
}

String GetPlatformVersionString()
{
    unsigned int major = 0;
    unsigned int minor = 0;
    unsigned int bugfix = 0;
    if (!GetDetailedOSXVersion(major, minor, bugfix))
        return String();
    return String("Linux %1.%2.%3").Arg(major).Arg(minor).Arg(bugfix);
}

String GetCurrentProcessName()
{
    char path[PATH_MAX];
    ssize_t const length = readlink("/proc/self/exe", path, sizeof path - 1);
    if (length <= 0)
        return String(program_invocation_short_name);
    path[length] = 0;
    String const whole(path);
    checked_value<unsigned int> const slash = whole.FindRev('/');
    return slash.IsPresent() ? whole.Mid(slash.Get() + 1) : whole;
}

String GetCurrentProcessDisplayName()
{
    return GetCurrentProcessName();
}

String GetCurrentProcessDisplayVersion()
{
    return String();
}

} // namespace Util
