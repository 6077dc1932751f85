#include "Canvas/TestAutomation/Module/JsonRpcServer.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace TestAutomation
{

namespace
{

bool setNonBlocking(int fd)
{
    int const flags = ::fcntl(fd, F_GETFL, 0);
    return flags >= 0 && ::fcntl(fd, F_SETFL, flags | O_NONBLOCK) == 0;
}

} // namespace

JsonRpcServer::JsonRpcServer(unsigned int version) : version(version) {}

JsonRpcServer::~JsonRpcServer()
{
    for (auto& c : connections)
        ::close(c->socket);
    if (listener >= 0)
        ::close(listener);
}

int JsonRpcServer::Start(char const* name, unsigned short port)
{
    if (listener >= 0)
        return -1;
    int const fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return errno ? errno : -1;
    // Lets a restarted program take its port back while old connections linger; a port that
    // another program listens on still refuses the bind.
    int const yes = 1;
    ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(fd, 8) != 0 || !setNonBlocking(fd))
    {
        int const error = errno ? errno : -1;
        ::close(fd);
        return error;
    }
    listener = fd;
    if (!dispatcher)
        dispatcher.reset(new RequestDispatcher("", version));
    dispatcher->SetServerName(name ? name : "");
    return 0;
}

void JsonRpcServer::RegisterHandler(char const* method, RPCHandler handler, void* context)
{
    if (!method)
        return;
    if (!dispatcher)
        dispatcher.reset(new RequestDispatcher("", version));
    dispatcher->Register(method, handler, context);
}

void JsonRpcServer::SendNotice(char const* kind, char const* const* texts, unsigned int count)
{
    // A driver that connected since the last poll hears this notice too.
    if (listener >= 0)
        acceptPending();
    if (connections.empty())
        return;
    std::string const line = RequestDispatcher::NoticeLine(kind, texts, count);
    for (auto& c : connections)
    {
        if (!c->closing && !c->dead)
            queue(*c, line);
    }
    // Outside a poll the notice leaves at once; inside one it leaves with the replies.
    if (!polling)
    {
        for (auto& c : connections)
            writeTo(*c);
        dropDead();
    }
}

void JsonRpcServer::Poll()
{
    if (listener < 0 || polling)
        return;
    polling = true;
    acceptPending();
    // By index: a handler may send notices, which only append to the connections' output.
    for (std::size_t i = 0; i < connections.size(); ++i)
    {
        Connection& c = *connections[i];
        if (!c.closing && !c.dead)
            readFrom(c);
        if (!c.dead)
            serveLines(c);
    }
    TimePoint const time = now();
    for (auto& c : connections)
    {
        writeTo(*c);
        // A driver that went silent without closing would keep its slot for ever.
        if (time - c->lastActive > IdleLimit)
            c->dead = true;
    }
    dropDead();
    polling = false;
}

void JsonRpcServer::acceptPending()
{
    for (;;)
    {
        int const fd = ::accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (fd < 0)
            return; // EAGAIN, or a connection that died before it was accepted
        if (connections.size() >= MaxConnections)
        {
            refuse(fd);
            continue;
        }
        int const yes = 1;
        ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        std::unique_ptr<Connection> c(new Connection);
        c->socket = fd;
        c->lastActive = now();
        connections.push_back(std::move(c));
    }
}

void JsonRpcServer::refuse(int socket)
{
    // Said at once rather than left hanging in the backlog; a driver that cannot take even this
    // much just sees the connection close.
    std::string const line =
        RequestDispatcher::ErrorLine(RequestDispatcher::HandlerError, "Too many connections") +
        "\n";
    ssize_t const sent = ::send(socket, line.data(), line.size(), MSG_NOSIGNAL);
    static_cast<void>(sent);
    ::shutdown(socket, SHUT_RDWR);
    ::close(socket);
}

void JsonRpcServer::readFrom(Connection& c)
{
    char buffer[65536];
    // One byte past a line's worth is enough to tell an over-long line; the rest stays in the
    // socket until the lines before it are served. Replies the driver leaves unread stop the
    // reading too, so it cannot pile up requests whose answers nobody takes.
    while (c.input.size() <= MaxLineBytes && c.output.size() <= MaxLineBytes)
    {
        std::size_t const room = MaxLineBytes + 1 - c.input.size();
        ssize_t const n = ::recv(c.socket, buffer, std::min(sizeof buffer, room), 0);
        if (n > 0)
        {
            c.input.append(buffer, static_cast<std::size_t>(n));
            c.lastActive = now();
            inputHighWater = std::max(inputHighWater, c.input.size());
            continue;
        }
        if (n == 0)
        {
            // The driver closed its side: what it sent is still served, then the link ends.
            c.closing = true;
            return;
        }
        if (errno == EINTR)
            continue;
        if (errno != EAGAIN && errno != EWOULDBLOCK)
            c.dead = true;
        return;
    }
}

void JsonRpcServer::serveLines(Connection& c)
{
    std::size_t start = 0;
    for (;;)
    {
        std::size_t const end = c.input.find('\n', start);
        std::size_t const length = (end == std::string::npos ? c.input.size() : end) - start;
        if (length > MaxLineBytes)
        {
            queue(c, RequestDispatcher::ErrorLine(RequestDispatcher::InvalidRequest,
                                                  "Request line too long"));
            c.input.clear();
            c.closing = true;
            return;
        }
        if (end == std::string::npos)
            break;
        std::string line = c.input.substr(start, length);
        start = end + 1;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.find_first_not_of(" \t") == std::string::npos)
            continue;
        std::string const reply = dispatcher->Handle(line);
        if (!reply.empty())
            queue(c, reply);
        if (c.dead)
            return;
    }
    c.input.erase(0, start);
    // A closed driver with half a line left: the fragment can never complete.
    if (c.closing)
        c.input.clear();
}

void JsonRpcServer::queue(Connection& c, std::string const& line)
{
    if (c.output.size() + line.size() + 1 > MaxPendingOutput)
    {
        // A driver that never reads would hold the program's memory hostage.
        c.dead = true;
        return;
    }
    c.output += line;
    c.output += '\n';
}

void JsonRpcServer::writeTo(Connection& c)
{
    while (!c.dead && !c.output.empty())
    {
        ssize_t const n = ::send(c.socket, c.output.data(), c.output.size(), MSG_NOSIGNAL);
        if (n > 0)
        {
            c.output.erase(0, static_cast<std::size_t>(n));
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            return;
        c.dead = true;
    }
    if (c.closing && c.output.empty())
        c.dead = true;
}

void JsonRpcServer::dropDead()
{
    for (std::size_t i = 0; i < connections.size();)
    {
        if (connections[i]->dead)
        {
            ::close(connections[i]->socket);
            connections.erase(connections.begin() + static_cast<std::ptrdiff_t>(i));
        }
        else
            ++i;
    }
}

} // namespace TestAutomation
