#pragma once

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace TestSupport
{

/// What one run of the tool gave back.
struct ToolRun
{
    int status = -1; ///< exit status; -1 when it did not exit normally
    std::string out;
    std::string err;
};

/// Runs the built `tvdefaults` (path from the build: TVDEFAULTS_PATH) with `args`, in this
/// process's environment, and collects its output.
inline ToolRun RunTvdefaults(std::vector<std::string> const& args)
{
    char outName[] = "/tmp/tvdefaults-out-XXXXXX";
    char errName[] = "/tmp/tvdefaults-err-XXXXXX";
    int outFd = mkstemp(outName);
    int errFd = mkstemp(errName);
    ToolRun run;
    if (outFd < 0 || errFd < 0)
        return run;

    std::vector<char*> argv;
    std::string program = TVDEFAULTS_PATH;
    argv.push_back(&program[0]);
    std::vector<std::string> copies(args);
    for (std::string& arg : copies)
        argv.push_back(&arg[0]);
    argv.push_back(nullptr);

    pid_t pid = fork();
    if (pid == 0)
    {
        dup2(outFd, 1);
        dup2(errFd, 2);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    close(outFd);
    close(errFd);
    auto slurp = [](char const* name)
    {
        std::ifstream in(name, std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    };
    run.out = slurp(outName);
    run.err = slurp(errName);
    unlink(outName);
    unlink(errName);
    return run;
}

} // namespace TestSupport
