#include "Canvas/TestAutomation/Module/JsonRpcServer.h"
#include "tests/Canvas/TestAutomation/RpcTestClient.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using TestAutomation::JsonRpcServer;
using TestAutomation::RPCReplyInterface;
using TestAutomation::RPCRequestInterface;
using TestSupport::RpcTestClient;

namespace
{

/// A port nobody listens on right now, from the system's ephemeral range.
unsigned short freePort()
{
    int const fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof a;
    ::bind(fd, reinterpret_cast<sockaddr*>(&a), sizeof a);
    ::getsockname(fd, reinterpret_cast<sockaddr*>(&a), &length);
    ::close(fd);
    return ntohs(a.sin_port);
}

/// Replies "name" with the argument and sends a notice while it runs.
void greet(void* context, RPCRequestInterface* request, RPCReplyInterface* reply)
{
    auto* server = static_cast<JsonRpcServer*>(context);
    char const* texts[] = {"during"};
    server->SendNotice("Greeting", texts, 1);
    char const* name = request->GetArgument("name");
    if (!name)
        reply->SetError("no name");
    else
        reply->SetValue("hello", name);
}

struct Served
{
    Served()
    {
        port = freePort();
        EXPECT_EQ(0, server.Start("APP:Test", port));
        server.RegisterHandler("greet", &greet, &server);
    }

    JsonRpcServer server{4};
    unsigned short port = 0;
    std::function<void()> pump = [this] { server.Poll(); };
};

std::string const GreetAda =
    "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"greet\",\"params\":{\"name\":\"Ada\"}}";
std::string const ReplyAda = "{\"id\":1,\"jsonrpc\":\"2.0\",\"result\":{\"hello\":\"Ada\"}}";

} // namespace

TEST(JsonRpcServer, ServesRequestsAndPushesNoticesToEveryClient)
{
    Served s;
    RpcTestClient a(s.port);
    RpcTestClient b(s.port);
    ASSERT_TRUE(a.IsConnected());
    ASSERT_TRUE(b.IsConnected());

    ASSERT_TRUE(a.Send(GreetAda + "\n", s.pump));
    std::string line;
    ASSERT_TRUE(a.ReadLine(s.pump, line));
    EXPECT_EQ("{\"jsonrpc\":\"2.0\",\"method\":\"notice\",\"params\":{\"kind\":\"Greeting\","
              "\"texts\":[\"during\"]}}",
              line);
    ASSERT_TRUE(a.ReadLine(s.pump, line));
    EXPECT_EQ(ReplyAda, line);
    // The other client saw the notice but no reply.
    ASSERT_TRUE(b.ReadLine(s.pump, line));
    EXPECT_NE(std::string::npos, line.find("\"Greeting\""));
    EXPECT_FALSE(b.ReadLine(s.pump, line, 100));

    // Outside a poll a notice leaves at once.
    char const* texts[] = {"Updater Main Window", "0x2a"};
    s.server.SendNotice("Destroy", texts, 2);
    ASSERT_TRUE(b.ReadLine([] {}, line));
    EXPECT_NE(std::string::npos, line.find("\"kind\":\"Destroy\""));
}

TEST(JsonRpcServer, ReassemblesLinesSplitAcrossWritesAndServesPipelinedOnes)
{
    Served s;
    RpcTestClient c(s.port);
    ASSERT_TRUE(c.IsConnected());
    std::string const two = GreetAda + "\r\n\n   \n" + GreetAda + "\n";
    for (char ch : two)
        ASSERT_TRUE(c.Send(std::string(1, ch), s.pump));
    int replies = 0;
    std::string line;
    while (replies < 2 && c.ReadLine(s.pump, line))
    {
        if (line == ReplyAda)
            ++replies;
    }
    EXPECT_EQ(2, replies);
}

TEST(JsonRpcServer, SurvivesMalformedInputAndAbruptDisconnects)
{
    Served s;
    {
        RpcTestClient c(s.port);
        EXPECT_NE(std::string::npos, c.Call("{not json", s.pump).find("-32700"));
        EXPECT_NE(std::string::npos, c.Call(std::string("\0\x01\xFF", 3), s.pump).find("-32700"));
        EXPECT_NE(
            std::string::npos,
            c.Call("{\"jsonrpc\":\"2.0\",\"id\":2,\"method\":\"nope\"}", s.pump).find("-32601"));
        EXPECT_NE(std::string::npos,
                  c.Call("{\"jsonrpc\":\"2.0\",\"id\":2,\"method\":\"greet\"}", s.pump)
                      .find("\"message\":\"no name\""));
        // Still serving on the same connection.
        EXPECT_EQ(ReplyAda, c.Call(GreetAda, s.pump));
    }
    // A client that leaves with a request half written, and one that leaves without reading
    // its reply: neither disturbs the next.
    {
        RpcTestClient half(s.port);
        ASSERT_TRUE(half.Send("{\"jsonrpc\":\"2.0\",\"id\":1,\"meth", s.pump));
        RpcTestClient rude(s.port);
        ASSERT_TRUE(rude.Send(GreetAda + "\n", s.pump));
        s.server.Poll();
    }
    RpcTestClient c(s.port);
    EXPECT_EQ(ReplyAda, c.Call(GreetAda, s.pump));
    for (int i = 0; i < 100 && s.server.GetConnectionCount() > 1; ++i)
        s.server.Poll();
    EXPECT_EQ(1u, s.server.GetConnectionCount());
}

TEST(JsonRpcServer, ClosesConnectionsThatSendOverlongLines)
{
    Served s;
    RpcTestClient c(s.port);
    std::string const huge(JsonRpcServer::MaxLineBytes + 10, 'x');
    ASSERT_TRUE(c.Send(huge, s.pump));
    std::string line;
    ASSERT_TRUE(c.ReadLine(s.pump, line));
    EXPECT_NE(std::string::npos, line.find("Request line too long"));
    EXPECT_TRUE(c.WaitForClose(s.pump));

    // A line of exactly the limit is still read (and is simply not JSON).
    RpcTestClient d(s.port);
    ASSERT_TRUE(d.Send(std::string(JsonRpcServer::MaxLineBytes - 1, ' ') + "x\n", s.pump));
    EXPECT_NE(std::string::npos, d.Call(GreetAda, s.pump).find("-32700"));
}

TEST(JsonRpcServer, RefusesATakenPortAndASecondStart)
{
    Served s;
    JsonRpcServer other(4);
    EXPECT_NE(0, other.Start("other", s.port));
    EXPECT_EQ(-1, s.server.Start("again", freePort()));
    // The failed start left the other server free to try elsewhere.
    EXPECT_EQ(0, other.Start("other", freePort()));
}

TEST(JsonRpcServer, ListensOnLoopbackOnly)
{
    Served s;
    // The kernel's table of TCP sockets: the listener (state 0A) on our port must be bound to
    // 127.0.0.1, never to the wildcard address.
    std::ifstream table("/proc/net/tcp");
    ASSERT_TRUE(table.good());
    char portHex[8];
    std::snprintf(portHex, sizeof portHex, "%04X", s.port);
    std::string line;
    int listeners = 0;
    while (std::getline(table, line))
    {
        std::istringstream fields(line);
        std::string slot, local, remote, state;
        fields >> slot >> local >> remote >> state;
        if (state != "0A" || local.size() < 13 || local.substr(9) != portHex)
            continue;
        ++listeners;
        EXPECT_EQ("0100007F", local.substr(0, 8));
    }
    EXPECT_EQ(1, listeners);
}

TEST(JsonRpcServer, DeepNestingIsAParseErrorAndTheConnectionGoesOn)
{
    Served s;
    RpcTestClient c(s.port);
    std::string const deep = std::string(100000, '[') + std::string(100000, ']');
    std::string const reply = c.Call(deep, s.pump);
    EXPECT_NE(std::string::npos, reply.find("-32700")) << reply;
    EXPECT_NE(std::string::npos, reply.find("nesting too deep")) << reply;
    EXPECT_EQ(ReplyAda, c.Call(GreetAda, s.pump));
}

TEST(JsonRpcServer, InputIsNeverReadFarPastOneLine)
{
    // A good request, then far more than a line's worth without a newline: the request is
    // answered, the rest cut at the limit, and the connection never holds much more than that.
    Served s;
    RpcTestClient c(s.port);
    c.Send(GreetAda + "\n" + std::string(8 * JsonRpcServer::MaxLineBytes, 'x'), s.pump);
    std::string line;
    ASSERT_TRUE(c.ReadLine(s.pump, line)); // the handler's notice
    ASSERT_TRUE(c.ReadLine(s.pump, line));
    EXPECT_EQ(ReplyAda, line);
    ASSERT_TRUE(c.ReadLine(s.pump, line));
    EXPECT_NE(std::string::npos, line.find("Request line too long"));
    EXPECT_TRUE(c.WaitForClose(s.pump));
    EXPECT_LE(s.server.GetInputHighWater(), JsonRpcServer::MaxLineBytes + 1);
}

TEST(JsonRpcServer, ClientsPastTheCapAreRefusedAtOnceAndIdleOnesDropped)
{
    Served s;
    auto time = std::chrono::steady_clock::now();
    s.server.SetClock([&time] { return time; });
    std::vector<std::unique_ptr<RpcTestClient>> clients;
    for (std::size_t i = 0; i < JsonRpcServer::MaxConnections; ++i)
    {
        clients.emplace_back(new RpcTestClient(s.port));
        s.server.Poll();
    }
    EXPECT_EQ(std::size_t(JsonRpcServer::MaxConnections), s.server.GetConnectionCount());

    RpcTestClient extra(s.port);
    std::string line;
    ASSERT_TRUE(extra.ReadLine(s.pump, line));
    EXPECT_NE(std::string::npos, line.find("Too many connections"));
    EXPECT_TRUE(extra.WaitForClose(s.pump));
    EXPECT_EQ(ReplyAda, clients.back()->Call(GreetAda, s.pump));

    // A slot freed by a driver that left serves the next one.
    clients.front()->Close();
    for (int i = 0; i < 100 && s.server.GetConnectionCount() == JsonRpcServer::MaxConnections; ++i)
        s.server.Poll();
    RpcTestClient next(s.port);
    EXPECT_EQ(ReplyAda, next.Call(GreetAda, s.pump));

    // Time passes: only the driver that spoke recently stays.
    time += JsonRpcServer::IdleLimit - std::chrono::seconds(1);
    EXPECT_EQ(ReplyAda, next.Call(GreetAda, s.pump));
    time += std::chrono::seconds(2);
    s.server.Poll();
    EXPECT_EQ(1u, s.server.GetConnectionCount());
    EXPECT_TRUE(clients.back()->WaitForClose(s.pump));
    EXPECT_EQ(ReplyAda, next.Call(GreetAda, s.pump));
}
