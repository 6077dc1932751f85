#include "tests/Canvas/UI/Native/SDL/GuiTestSupport.h"

#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Native/SDL/PlatformSupportFactorySDL.h"
#include "TvBase/Util/ProcessInfo.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace UI
{
namespace Test
{

namespace
{

pid_t xvfbPid = 0;

void stopXvfb()
{
    if (xvfbPid > 0)
    {
        kill(xvfbPid, SIGTERM);
        waitpid(xvfbPid, nullptr, 0);
        xvfbPid = 0;
    }
}

/// Starts Xvfb, which picks a free display number itself and writes it to our pipe once it
/// accepts connections (or closes the pipe when it fails).
bool startXvfb(std::string& reason)
{
    if (Run("command -v Xvfb >/dev/null 2>&1") != 0)
    {
        reason = "Xvfb is not installed";
        return false;
    }
    int fds[2];
    if (pipe(fds) != 0)
    {
        reason = "no pipe";
        return false;
    }
    char const* argv[] = {"Xvfb",         "-displayfd", "3",   "-screen",  "0",
                          "1280x1024x24", "-nolisten",  "tcp", "-noreset", nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addclose(&actions, fds[0]);
    posix_spawn_file_actions_adddup2(&actions, fds[1], 3);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    int const spawned =
        posix_spawnp(&pid, "Xvfb", &actions, nullptr, const_cast<char* const*>(argv), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    if (spawned != 0)
    {
        close(fds[0]);
        reason = "Xvfb did not start";
        return false;
    }
    std::string number;
    char c;
    while (read(fds[0], &c, 1) == 1 && c != '\n')
        number += c;
    close(fds[0]);
    if (number.empty())
    {
        kill(pid, SIGTERM);
        waitpid(pid, nullptr, 0);
        reason = "Xvfb gave no display";
        return false;
    }
    xvfbPid = pid;
    setenv("DISPLAY", (":" + number).c_str(), 1);
    std::atexit(stopXvfb);
    return true;
}

} // namespace

bool EnsureDisplay(std::string& reason)
{
    static bool tried = false;
    static bool ok = false;
    static std::string why;
    if (!tried)
    {
        tried = true;
        // A private display, so that tests running side by side don't share the pointer.
        if (!startXvfb(why) && !std::getenv("DISPLAY"))
            why += "; no DISPLAY either";
        Native::PlatformSupportFactorySDL& sdl = Native::PlatformSupportFactorySDL::Get();
        ok = sdl.EnsureVideo();
        if (!ok)
            why = "SDL video: " + std::string(sdl.GetInitError().CStr());
    }
    reason = why;
    return ok;
}

bool PumpUntil(std::function<bool()> const& condition, unsigned int timeoutMs)
{
    unsigned long long const deadline = Util::GetTickCountMillis() + timeoutMs;
    while (!condition())
    {
        unsigned long long const now = Util::GetTickCountMillis();
        if (now >= deadline)
            return false;
        Native::PlatformSupportFactory::ProcessEvents(
            static_cast<unsigned int>(std::min<unsigned long long>(deadline - now, 20)));
    }
    return true;
}

int Run(std::string const& command)
{
    int const status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string RunAndRead(std::string const& command)
{
    std::string out;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return out;
    char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        out.append(buffer, n);
    pclose(pipe);
    return out;
}

std::vector<unsigned int> GrabScreen(Rect const& rect)
{
    std::string const geometry = std::to_string(rect.Width()) + "x" +
                                 std::to_string(rect.Height()) + "+" + std::to_string(rect.left) +
                                 "+" + std::to_string(rect.top);
    std::string const raw =
        RunAndRead("import -silent -window root -crop " + geometry + " -depth 8 rgb:- 2>/dev/null");
    std::vector<unsigned int> pixels;
    if (raw.size() != static_cast<std::size_t>(rect.Width()) * rect.Height() * 3)
        return pixels;
    pixels.reserve(raw.size() / 3);
    for (std::size_t i = 0; i < raw.size(); i += 3)
        pixels.push_back(0xFF000000u | (static_cast<unsigned char>(raw[i]) << 16) |
                         (static_cast<unsigned char>(raw[i + 1]) << 8) |
                         static_cast<unsigned char>(raw[i + 2]));
    return pixels;
}

} // namespace Test
} // namespace UI

// SDL's desktop services (D-Bus) keep a buffer for the life of the process; the leak checker of
// sanitizer builds is told so instead of failing every GUI test at exit.
extern "C" char const* __lsan_default_suppressions()
{
    return "leak:libdbus-1.so\n";
}
