#include "tests/Canvas/TestAutomation/RpcTestClient.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace TestSupport
{

namespace
{

long long nowMs()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

RpcTestClient::RpcTestClient(unsigned short port)
{
    int const fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0)
        return;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // The listening socket's backlog completes the connection without the server's help.
    if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
    {
        ::close(fd);
        return;
    }
    socket = fd;
}

RpcTestClient::~RpcTestClient()
{
    Close();
}

void RpcTestClient::Close()
{
    if (socket >= 0)
        ::close(socket);
    socket = -1;
}

bool RpcTestClient::Send(std::string const& bytes, std::function<void()> const& pump)
{
    std::size_t sent = 0;
    long long const deadline = nowMs() + 5000;
    while (socket >= 0 && sent < bytes.size() && nowMs() < deadline)
    {
        ssize_t const n =
            ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (n > 0)
        {
            sent += static_cast<std::size_t>(n);
            continue;
        }
        if (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)
            return false;
        pump();
        pollfd p{socket, POLLOUT, 0};
        ::poll(&p, 1, 10);
    }
    return sent == bytes.size();
}

bool RpcTestClient::fill(int waitMs)
{
    pollfd p{socket, POLLIN, 0};
    if (::poll(&p, 1, waitMs) <= 0)
        return true;
    char chunk[65536];
    ssize_t const n = ::recv(socket, chunk, sizeof chunk, MSG_DONTWAIT);
    if (n > 0)
        buffer.append(chunk, static_cast<std::size_t>(n));
    else if (n == 0 || (errno != EAGAIN && errno != EINTR))
        closed = true;
    return !closed;
}

bool RpcTestClient::ReadLine(std::function<void()> const& pump, std::string& line, int timeoutMs)
{
    long long const deadline = nowMs() + timeoutMs;
    while (socket >= 0)
    {
        std::size_t const end = buffer.find('\n');
        if (end != std::string::npos)
        {
            line = buffer.substr(0, end);
            buffer.erase(0, end + 1);
            return true;
        }
        if (closed || nowMs() >= deadline)
            return false;
        pump();
        fill(10);
    }
    return false;
}

bool RpcTestClient::WaitForClose(std::function<void()> const& pump, int timeoutMs)
{
    long long const deadline = nowMs() + timeoutMs;
    while (socket >= 0 && !closed && nowMs() < deadline)
    {
        pump();
        fill(10);
        buffer.clear();
    }
    return closed;
}

std::string RpcTestClient::Call(std::string const& request, std::function<void()> const& pump)
{
    if (!Send(request + "\n", pump))
        return std::string();
    std::string line;
    while (ReadLine(pump, line))
    {
        if (line.find("\"method\":\"notice\"") == std::string::npos)
            return line;
    }
    return std::string();
}

} // namespace TestSupport
