#pragma once

#include "Canvas/TestAutomation/Module/RequestDispatcher.h"
#include "Canvas/TestAutomation/RPCServerInterface.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace TestAutomation
{

/// The module's server: newline-delimited JSON-RPC 2.0 over TCP on 127.0.0.1. Every socket is
/// non-blocking and served only from `Poll`, so the program's thread never waits on a driver.
/// A connection that sends a line longer than `MaxLineBytes`, or stops reading until more than
/// `MaxPendingOutput` bytes wait for it, gets an error line (when it can) and is closed. No more
/// than a line's worth of input is taken from a socket before its lines are served, and none
/// while more than a line's worth of replies waits for the driver, so a connection holds about
/// `MaxLineBytes` of input at most. At most `MaxConnections` drivers are served at once: one more
/// gets an error line and is closed at once; one that sends nothing for `IdleLimit` is
/// closed (notices going out to it don't count: a silent driver may still swallow them).
class JsonRpcServer : public RPCServerInterface
{
public:
    enum : std::size_t
    {
        MaxLineBytes = 1024 * 1024,
        MaxPendingOutput = 16 * 1024 * 1024,
        MaxConnections = 32
    };
    using TimePoint = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::seconds IdleLimit{600};

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
    /// The most input bytes any connection has held at once since the server was made.
    std::size_t GetInputHighWater() const { return inputHighWater; }
    /// Replaces the clock that idle connections are timed by (tests move time on).
    void SetClock(std::function<TimePoint()> clock) { now = std::move(clock); }

private:
    struct Connection
    {
        int socket = -1;
        std::string input;
        std::string output;
        /// Set once the connection is to end as soon as its output is written.
        bool closing = false;
        bool dead = false;
        /// When a byte last came from the driver.
        TimePoint lastActive;
    };

    void acceptPending();
    void refuse(int socket);
    void readFrom(Connection& c);
    void serveLines(Connection& c);
    void queue(Connection& c, std::string const& line);
    void writeTo(Connection& c);
    void dropDead();

    std::unique_ptr<RequestDispatcher> dispatcher;
    std::vector<std::unique_ptr<Connection>> connections;
    std::function<TimePoint()> now = [] { return std::chrono::steady_clock::now(); };
    std::size_t inputHighWater = 0;
    int listener = -1;
    unsigned int version;
    bool polling = false;
};

} // namespace TestAutomation
