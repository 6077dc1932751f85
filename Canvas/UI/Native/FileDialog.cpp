#include "Canvas/UI/Native/FileDialog.h"

#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "TvBase/Util/detail/Spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>

namespace UI
{
namespace Native
{

namespace
{

String& lastFolder()
{
    static String folder;
    return folder;
}

/// Wakes the nested loop once the chooser has ended.
class Waker : public UIMessageReceiver
{
public:
    void onUIMessage(HostWindow*, unsigned int, unsigned int, unsigned long) override {}
};

struct Outcome
{
    bool started = false;
    int status = -1;
    String output;
};

/// Runs `command` with its standard output into a pipe, and reads it to the end.
Outcome runChooser(std::vector<String> const& command)
{
    Outcome outcome;
    int pipeEnds[2];
    if (pipe2(pipeEnds, O_CLOEXEC) != 0)
        return outcome;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    std::vector<char const*> arguments;
    for (String const& part : command)
        arguments.push_back(part.CStr());
    pid_t const child = Util::detail::SpawnProgram(arguments, &actions, false);
    posix_spawn_file_actions_destroy(&actions);
    close(pipeEnds[1]);
    if (child < 0)
    {
        close(pipeEnds[0]);
        return outcome;
    }
    outcome.started = true;
    std::string text;
    char buffer[4096];
    for (;;)
    {
        ssize_t const n = read(pipeEnds[0], buffer, sizeof buffer);
        if (n > 0)
            text.append(buffer, static_cast<std::size_t>(n));
        else if (n == 0 || errno != EINTR)
            break;
    }
    close(pipeEnds[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
    {
    }
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    // The chooser ends its answer with a line feed; a path holds no line feed.
    std::string::size_type const end = text.find('\n');
    outcome.output = String(text.substr(0, end).c_str());
    return outcome;
}

/// Runs the chooser on a thread while the host's loop keeps the program's windows alive.
Outcome runWhileServing(std::vector<String> const& command, Frame* frame)
{
    if (!frame || !frame->GetHostWindow())
        return runChooser(command);
    Outcome outcome;
    std::atomic<bool> done(false);
    Waker waker;
    std::thread runner(
        [&]
        {
            outcome = runChooser(command);
            done = true;
            PlatformSupportFactory::PostUIMessage(&waker, nullptr, 0, 0, 0);
        });
    while (!done && !PlatformSupportFactory::IsEventLoopQuitting())
        PlatformSupportFactory::ProcessEvents(1000);
    runner.join();
    // The wake-up may still be queued: deliver it while its receiver lives.
    PlatformSupportFactory::ProcessEvents(0);
    return outcome;
}

String folderOf(String const& path)
{
    checked_value<unsigned int> const slash = path.FindRev('/');
    return slash ? (*slash == 0 ? String("/") : path.Left(*slash)) : String();
}

bool ask(FileDialog::Kind kind, Frame* frame, String const& title, String const& filterName,
         String const& pattern, String const& defaultName, String& path)
{
    String start = FileDialog::GetLastFolder() + "/";
    if (kind == FileDialog::Kind::SaveFile)
        start += defaultName;
    String answer;
    bool chosen = false;
    String program = FileDialog::FindProgram("zenity");
    if (program.IsEmpty())
        program = FileDialog::FindProgram("kdialog");
    if (!program.IsEmpty())
    {
        std::vector<String> command = FileDialog::CommandLine(
            program.Mid(*program.FindRev('/') + 1), kind, title, filterName, pattern, start);
        command[0] = program;
        Outcome const outcome = runWhileServing(command, frame);
        chosen = outcome.started && outcome.status == 0 && !outcome.output.IsEmpty();
        answer = outcome.output;
    }
    else
    {
        // Neither chooser: the path is typed over the middle of the frame.
        if (!frame)
            return false;
        answer = start;
        Size const size = frame->GetSize();
        int const width = std::max(200, std::min(size.width - 20, 500));
        chosen = PlatformSupportFactory::ExecuteInlineEdit(
                     frame, Point(size.width / 2, size.height / 2), answer, width,
                     std::vector<char>(), false, 0) &&
                 !answer.StripWhiteSpace().IsEmpty();
        answer = answer.StripWhiteSpace();
    }
    if (!chosen)
        return false;
    path = answer;
    FileDialog::SetLastFolder(kind == FileDialog::Kind::OpenFolder ? path : folderOf(path));
    return true;
}

} // namespace

String FileDialog::GetLastFolder()
{
    if (lastFolder().IsEmpty())
    {
        char const* home = std::getenv("HOME");
        return String(home && *home ? home : "/");
    }
    return lastFolder();
}

void FileDialog::SetLastFolder(String const& folder)
{
    lastFolder() = folder;
}

String FileDialog::FindProgram(String const& program)
{
    char const* path = std::getenv("PATH");
    if (!path || program.IsEmpty())
        return String();
    std::vector<String> folders;
    String(path).Split(':', folders);
    for (String const& folder : folders)
    {
        if (folder.IsEmpty())
            continue;
        String const candidate = folder + "/" + program;
        if (access(candidate.CStr(), X_OK) == 0)
            return candidate;
    }
    return String();
}

std::vector<String> FileDialog::CommandLine(String const& program, Kind kind, String const& title,
                                            String const& filterName, String const& pattern,
                                            String const& startPath)
{
    std::vector<String> command{program};
    if (program == "kdialog")
    {
        switch (kind)
        {
        case Kind::OpenFile:
            command.push_back("--getopenfilename");
            command.push_back(startPath);
            if (!pattern.IsEmpty())
                command.push_back(pattern + "|" + filterName);
            break;
        case Kind::OpenFolder:
            command.push_back("--getexistingdirectory");
            command.push_back(startPath);
            break;
        case Kind::SaveFile:
            command.push_back("--getsavefilename");
            command.push_back(startPath);
            break;
        }
        command.push_back("--title");
        command.push_back(title);
        return command;
    }
    command.push_back("--file-selection");
    command.push_back("--title=" + title);
    command.push_back("--filename=" + startPath);
    if (kind == Kind::OpenFolder)
        command.push_back("--directory");
    else if (kind == Kind::SaveFile)
    {
        command.push_back("--save");
        command.push_back("--confirm-overwrite");
    }
    else if (!pattern.IsEmpty())
        command.push_back("--file-filter=" + filterName + " | " + pattern);
    return command;
}

bool FileDialog::OpenFile(Frame* frame, String const& title, String const& filterName,
                          String const& pattern, String const&, String& path)
{
    return ask(Kind::OpenFile, frame, title, filterName, pattern, String(), path);
}

bool FileDialog::OpenFolder(Frame* frame, String const& title, String& path)
{
    return ask(Kind::OpenFolder, frame, title, String(), String(), String(), path);
}

bool FileDialog::SaveFile(Frame* frame, String const& title, String const& defaultName,
                          String const& extension, String& path)
{
    if (!ask(Kind::SaveFile, frame, title, String(), String(), defaultName, path))
        return false;
    String const name = path.Mid(path.FindRev('/').GetOr(0));
    if (!extension.IsEmpty() && !name.FindRev('.'))
        path += "." + extension;
    return true;
}

} // namespace Native
} // namespace UI
