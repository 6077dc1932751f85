#pragma once

// A plain TCP client for the tests of the module's server: it sends raw bytes and reads lines,
// turning the server's crank (`pump`) while it waits, since the server runs on the test's own
// thread. Every wait is bounded.

#include <functional>
#include <string>

namespace TestSupport
{

class RpcTestClient
{
public:
    /// Connects to 127.0.0.1:`port`; `IsConnected` tells whether that worked.
    explicit RpcTestClient(unsigned short port);
    ~RpcTestClient();
    RpcTestClient(RpcTestClient const&) = delete;
    RpcTestClient& operator=(RpcTestClient const&) = delete;

    bool IsConnected() const { return socket >= 0; }
    /// Writes all of `bytes` (pumping while the socket is full); false on failure.
    bool Send(std::string const& bytes, std::function<void()> const& pump);
    /// The next line without its newline; false when none arrives within `timeoutMs` or the
    /// server closed the connection first.
    bool ReadLine(std::function<void()> const& pump, std::string& line, int timeoutMs = 5000);
    /// True once the server has closed the connection (within `timeoutMs`).
    bool WaitForClose(std::function<void()> const& pump, int timeoutMs = 5000);
    /// Sends `request` plus a newline and reads the next line that is not a notice.
    std::string Call(std::string const& request, std::function<void()> const& pump);
    void Close();

private:
    /// Reads what is there after waiting at most `waitMs`; false when the peer closed.
    bool fill(int waitMs);

    int socket = -1;
    std::string buffer;
    bool closed = false;
};

} // namespace TestSupport
