#pragma once

#include <string>

namespace Updater
{

/// One blocking download of the versions file for tvcheck, which, unlike the window, has to
/// tell a person why a check failed: an answer with an HTTP error status is a failure here, and
/// every failure is said in words ("cannot connect to 127.0.0.1:9: connection refused",
/// "HTTP 404 from <url>") rather than as the transfer library's code.
///
/// Requests follow the usual conventions of the system: the proxy variables (http_proxy,
/// https_proxy, no_proxy and their upper-case forms) and the system's CA certificates for https
/// are the transfer library's defaults, and nothing here turns them off.
class VersionsDownload
{
public:
    /// Fetches `url` (http or https, redirects followed) within `timeoutMillis`. True with
    /// `body` filled when the server answered with a success status; false with `failure` set.
    /// The body is cut at its first NUL, as the application reads it.
    static bool Fetch(std::string const& url, int timeoutMillis, std::string& body,
                      std::string& failure);
};

} // namespace Updater
