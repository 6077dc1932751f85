#include "tests/support/HttpFixture.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace TestSupport
{

HttpFixture::HttpFixture(std::string const& root, bool logRequests,
                         std::string const& tlsCertificate, std::string const& tlsKey)
{
    int input[2];
    int output[2];
    if (pipe(input) != 0)
        return;
    if (pipe(output) != 0)
    {
        close(input[0]);
        close(input[1]);
        return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], 0);
    posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    posix_spawn_file_actions_addclose(&actions, input[1]);
    posix_spawn_file_actions_addclose(&actions, output[0]);
    std::string script = std::string(TV_SOURCE_DIR) + "/tests/fixtures/http_fixture.py";
    std::string rootArgument = "--root=" + root;
    std::vector<char const*> argv = {"python3", script.c_str()};
    if (!root.empty())
        argv.push_back(rootArgument.c_str());
    if (!logRequests)
        argv.push_back("--quiet");
    std::string const certificateArgument = "--tls-cert=" + tlsCertificate;
    std::string const keyArgument = "--tls-key=" + tlsKey;
    if (!tlsCertificate.empty())
    {
        argv.push_back(certificateArgument.c_str());
        argv.push_back(keyArgument.c_str());
        scheme = "https://";
    }
    argv.push_back(nullptr);
    int spawned = posix_spawnp(&child, "python3", &actions, nullptr,
                               const_cast<char**>(argv.data()), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    toChild = input[1];
    fromChild = output[0];
    if (spawned != 0)
    {
        child = -1;
        return;
    }
    std::string line;
    if (readLine(line, 20000))
        std::sscanf(line.c_str(), "%d %d %d", &port, &backlogPort, &closedPort);
}

HttpFixture::~HttpFixture()
{
    if (toChild >= 0)
        close(toChild);
    if (child > 0)
    {
        int status = 0;
        waitpid(child, &status, 0);
    }
    if (fromChild >= 0)
        close(fromChild);
}

std::string HttpFixture::Url(std::string const& path) const
{
    return scheme + "127.0.0.1:" + std::to_string(port) + path;
}

std::string HttpFixture::BacklogUrl(std::string const& path) const
{
    return "http://127.0.0.1:" + std::to_string(backlogPort) + path;
}

std::string HttpFixture::ClosedUrl(std::string const& path) const
{
    return "http://127.0.0.1:" + std::to_string(closedPort) + path;
}

bool HttpFixture::WaitForRequest(std::string const& path, int timeoutMillis)
{
    std::string line;
    while (readLine(line, timeoutMillis))
        if (line == "GET " + path)
            return true;
    return false;
}

bool HttpFixture::readLine(std::string& line, int timeoutMillis)
{
    auto const deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMillis);
    for (;;)
    {
        std::string::size_type end = buffered.find('\n');
        if (end != std::string::npos)
        {
            line = buffered.substr(0, end);
            buffered.erase(0, end + 1);
            return true;
        }
        auto const left = std::chrono::duration_cast<std::chrono::milliseconds>(
                              deadline - std::chrono::steady_clock::now())
                              .count();
        if (fromChild < 0 || left <= 0)
            return false;
        pollfd waitOn{fromChild, POLLIN, 0};
        if (poll(&waitOn, 1, static_cast<int>(left)) <= 0)
            continue;
        char chunk[512];
        ssize_t count = read(fromChild, chunk, sizeof chunk);
        if (count <= 0)
            return false;
        buffered.append(chunk, static_cast<std::size_t>(count));
    }
}

} // namespace TestSupport
