#pragma once

#include "tests/support/TempFolder.h"

#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace TestSupport
{

/// What one run of a program gave back.
struct ToolRun
{
    int status = -1; ///< exit status; -1 when it did not exit normally
    std::string out;
    std::string err;
};

/// Runs `program` with `args` in this process's environment with the `environment` entries
/// ("NAME=value") set over it, and collects its output. With `stdoutPath` the standard output
/// goes to that file instead and `out` stays empty.
inline ToolRun RunProgram(std::string program, std::vector<std::string> args,
                          std::vector<std::string> environment = {},
                          std::string const& stdoutPath = std::string())
{
    for (char** e = environ; *e; ++e)
    {
        bool overridden = false;
        for (std::string const& entry : environment)
            overridden |= std::strncmp(*e, entry.c_str(), entry.find('=') + 1) == 0;
        if (!overridden)
            environment.push_back(*e);
    }
    std::vector<char*> envp;
    for (std::string& entry : environment)
        envp.push_back(&entry[0]);
    envp.push_back(nullptr);
    args.insert(args.begin(), program);
    std::vector<char*> argv;
    for (std::string& arg : args)
        argv.push_back(&arg[0]);
    argv.push_back(nullptr);

    TempFolder output("tv-run-output");
    std::string const outFile = stdoutPath.empty() ? output / "out" : stdoutPath;
    std::string const errFile = output / "err";
    ToolRun run;
    pid_t pid = fork();
    if (pid == 0)
    {
        int out = open(outFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        int err = open(errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (out < 0 || err < 0 || dup2(out, 1) < 0 || dup2(err, 2) < 0)
            _exit(127);
        execve(program.c_str(), argv.data(), envp.data());
        _exit(127);
    }
    int status = 0;
    if (pid > 0 && waitpid(pid, &status, 0) == pid && WIFEXITED(status))
        run.status = WEXITSTATUS(status);
    run.out = stdoutPath.empty() ? ReadFile(outFile) : std::string();
    run.err = ReadFile(errFile);
    return run;
}

} // namespace TestSupport
