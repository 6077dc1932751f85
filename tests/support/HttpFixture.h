#pragma once

#include <string>
#include <sys/types.h>

namespace TestSupport
{

/// The loopback HTTP server of tests/fixtures/http_fixture.py, started for the life of this
/// object. It ends when this object closes its standard input.
class HttpFixture
{
public:
    /// Starts the server; `root` is the folder served under "/root/" (none when empty).
    /// `IsRunning` says whether it came up. Without `logRequests` the server does not report
    /// requests (a caller that makes thousands of them without reading would block it).
    /// With `tlsCertificate` and `tlsKey` (PEM files) it speaks https.
    explicit HttpFixture(std::string const& root = std::string(), bool logRequests = true,
                         std::string const& tlsCertificate = std::string(),
                         std::string const& tlsKey = std::string());
    ~HttpFixture();
    HttpFixture(HttpFixture const&) = delete;
    HttpFixture& operator=(HttpFixture const&) = delete;

    bool IsRunning() const { return port != 0; }
    /// "http://127.0.0.1:<port><path>" ("https://" when serving TLS).
    std::string Url(std::string const& path) const;
    /// A port that accepts connections into its backlog but never serves them.
    std::string BacklogUrl(std::string const& path) const;
    /// A port on which nothing listens.
    std::string ClosedUrl(std::string const& path) const;
    int GetPort() const { return port; }
    /// Blocks until the server has logged a request for `path` (skipping others), at most
    /// `timeoutMillis`. True when it came. Needs `logRequests`.
    bool WaitForRequest(std::string const& path, int timeoutMillis = 20000);

private:
    bool readLine(std::string& line, int timeoutMillis);

    pid_t child = -1;
    int toChild = -1;
    int fromChild = -1;
    std::string buffered;
    std::string scheme = "http://";
    int port = 0;
    int backlogPort = 0;
    int closedPort = 0;
};

} // namespace TestSupport
