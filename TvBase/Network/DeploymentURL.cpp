#include "TvBase/Network/DeploymentURL.h"

#include <cstdlib>

namespace Network
{

namespace
{

bool isHostByte(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_';
}

bool isValidHostPort(String const& hostPort)
{
    unsigned int const length = hostPort.Length();
    unsigned int hostEnd = 0;
    if (hostPort[0] == '[')
    {
        // A bracketed IPv6 address.
        checked_value<unsigned int> close = hostPort.Find(']');
        if (!close || close.Get() < 2)
            return false;
        for (unsigned int i = 1; i < close.Get(); ++i)
        {
            char c = hostPort[i].Get();
            if (!(c == ':' || c == '.' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') ||
                  (c >= 'A' && c <= 'F')))
                return false;
        }
        hostEnd = close.Get() + 1;
    }
    else
    {
        while (hostEnd < length && isHostByte(hostPort[hostEnd].Get()))
            ++hostEnd;
        if (hostEnd == 0)
            return false;
    }
    if (hostEnd == length)
        return true;
    if (hostPort[hostEnd] != ':' || hostEnd + 1 == length || length - hostEnd - 1 > 5)
        return false;
    checked_value<unsigned int> port = hostPort.Mid(hostEnd + 1).ToUInt();
    for (unsigned int i = hostEnd + 1; i < length; ++i)
        if (hostPort[i].Get() < '0' || hostPort[i].Get() > '9')
            return false;
    return port && port.Get() >= 1 && port.Get() <= 65535;
}

} // namespace

String ComposeHostURL(String const& hostSetting, String const& path)
{
    String scheme("http://");
    String rest = hostSetting;
    if (rest.BeginsWith("https://", false))
    {
        scheme = "https://";
        rest = rest.Mid(8);
    }
    else if (rest.BeginsWith("http://", false))
    {
        rest = rest.Mid(7);
    }
    if (rest.EndsWith("/"))
        rest = rest.Left(rest.Length() - 1);
    if (rest.IsEmpty() || !isValidHostPort(rest))
        return String();
    return scheme + rest + path;
}

String GetDeploymentURL(char const* environmentName, String const& builtInHost, String const& path)
{
    char const* overrideHost = environmentName ? std::getenv(environmentName) : nullptr;
    if (overrideHost && *overrideHost)
        return ComposeHostURL(String(overrideHost), path);
    return ComposeHostURL(builtInHost, path);
}

} // namespace Network
