#pragma once

#include "Canvas/TestAutomation/Module/RequestDispatcher.h"
#include "Canvas/TestAutomation/RPCServerInterface.h"

#include <memory>
#include <string>
#include <vector>

namespace TestAutomation
{

/// The module's server: newline-delimited JSON-RPC 2.0 over TCP on 127.0.0.1. Every socket is
/// non-blocking and served only from `Poll`, so the program's thread never waits on a driver.
/// A connection that sends a line longer than `MaxLineBytes`, or stops reading until more than
/// `MaxPendingOutput` bytes wait for it, gets an error line (when it can) and is closed.
class JsonRpcServer : public RPCServerInterface
{
public:
    enum : std::size_t
    {
        MaxLineBytes = 1024 * 1024,
        MaxPendingOutput = 16 * 1024 * 1024
    };

    /// `version` is what "getServerInfo" reports.
    explicit JsonRpcServer(unsigned int version);
    ~JsonRpcServer() override;
    JsonRpcServer(JsonRpcServer const&) = delete;
    JsonRpcServer& operator=(JsonRpcServer const&) = delete;

    int Start(char const* name, unsigned short port) override;
    void RegisterHandler(char const* method, RPCHandler handler, void* context) override;
    void SendNotice(char const* kind, char const* const* texts, unsigned int count) override;
    void Poll() override;

    std::size_t GetConnectionCount() const { return connections.size(); }

private:
    struct Connection
    {
        int socket = -1;
        std::string input;
        std::string output;
        /// Set once the connection is to end as soon as its output is written.
        bool closing = false;
        bool dead = false;
    };

    void acceptPending();
    void readFrom(Connection& c);
    void serveLines(Connection& c);
    void queue(Connection& c, std::string const& line);
    void writeTo(Connection& c);
    void dropDead();

    std::unique_ptr<RequestDispatcher> dispatcher;
    std::vector<std::unique_ptr<Connection>> connections;
    int listener = -1;
    unsigned int version;
    bool polling = false;
};

} // namespace TestAutomation
