#include "Updater/app/RunApplication.h"

#include "Updater/app/Application.h"

#include "Canvas/UI/Native/SDL/PlatformSupportFactorySDL.h"
#include "tests/detail/CommaLocale.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

std::vector<String> args(std::initializer_list<char const*> list)
{
    std::vector<String> out;
    for (char const* a : list)
        out.push_back(String(a));
    return out;
}

/// Sets one environment variable for a scope and restores what was there.
class EnvScope
{
public:
    EnvScope(char const* n, char const* value) : name(n)
    {
        if (char const* old = std::getenv(n))
            previous = old, had = true;
        if (value)
            setenv(n, value, 1);
        else
            unsetenv(n);
    }
    ~EnvScope()
    {
        if (had)
            setenv(name, previous.c_str(), 1);
        else
            unsetenv(name);
    }

private:
    char const* name;
    std::string previous;
    bool had = false;
};

/// Points a run at a closed loopback port with a short request time-out and throwaway
/// settings, so that a silent run ends quickly with a failed check and writes nothing of the
/// user's.
class QuickFailingCheck
{
public:
    QuickFailingCheck()
        : folder(makeFolder()), config("XDG_CONFIG_HOME", folder.c_str()),
          update("TV_UPDATE_HOST", "127.0.0.1:1"), web("TV_WEB_HOST", "127.0.0.1:1"),
          timeout("TV_REQUEST_TIMEOUT_MS", "300")
    {
    }
    ~QuickFailingCheck() { std::system(("rm -rf '" + folder + "'").c_str()); }

private:
    static std::string makeFolder()
    {
        char name[] = "/tmp/tv-run-XXXXXX";
        char const* made = mkdtemp(name);
        return made ? made : "/tmp";
    }

    std::string folder;
    EnvScope config, update, web, timeout;
};

} // namespace

TEST(CommandLine, SilentSwitchCountsAnywhereByteForByte)
{
    EXPECT_TRUE(Updater::IsSilentRun(args({"-silent"})));
    EXPECT_TRUE(Updater::IsSilentRun(args({"first", "-silent", "last"})));
    EXPECT_TRUE(Updater::IsSilentRun(args({"x", "y", "-silent"})));
    EXPECT_FALSE(Updater::IsSilentRun(args({})));
    EXPECT_FALSE(Updater::IsSilentRun(args({"-Silent"})));
    EXPECT_FALSE(Updater::IsSilentRun(args({"--silent"})));
    EXPECT_FALSE(Updater::IsSilentRun(args({"-silent "})));
    EXPECT_FALSE(Updater::IsSilentRun(args({"silent", "-s", ""})));
}

TEST(CommandLine, RunReadsTheUserDecimalPointAndReturnsZero)
{
    if (!std::getenv("DISPLAY"))
        GTEST_SKIP() << "the updater needs a display";
    TestSupport::CommaLocale locale;
    if (!locale.IsReady())
        GTEST_SKIP() << "no way to build a comma locale here";
    EnvScope all("LC_ALL", nullptr);
    EnvScope numeric("LC_NUMERIC", TestSupport::CommaLocale::kName);
    QuickFailingCheck check;

    EXPECT_EQ(runApplication(args({"-silent", "unknown"})), 0);
    EXPECT_EQ(g_chDecimalPoint, ',');
    EXPECT_EQ(String("2,5").ToFloat(), checked_value<float>(2.5f));

    std::setlocale(LC_NUMERIC, "C");
    String::InitDecimalPoint();
    EXPECT_EQ(g_chDecimalPoint, '.');
}

TEST(CommandLine, ProgramExitsWithZeroWhateverTheArguments)
{
    // Silent runs end by themselves; the visible ones wait for the user and are driven by the
    // end-to-end tests instead.
    if (!std::getenv("DISPLAY"))
        GTEST_SKIP() << "the updater needs a display";
    QuickFailingCheck check;
    std::string const program = std::string(TV_BINARY_DIR) + "/bin/tavorin-updater";
    for (char const* extra : {" -silent", " --bogus -silent -Silent", " a -silent b"})
    {
        int status = std::system((program + extra + " >/dev/null 2>&1").c_str());
        ASSERT_TRUE(WIFEXITED(status)) << extra;
        EXPECT_EQ(WEXITSTATUS(status), 0) << extra;
    }
}

TEST(CommandLine, DamagedResourcesAreNamedOnStandardError)
{
    // The program copied beside a damaged packed file: it says what is wrong, and runs on with
    // what is intact (a silent run ends by itself) or, without its main window's layout, ends
    // with status 1 rather than show a window of empty widgets.
    QuickFailingCheck check;
    std::string const good =
        TestSupport::ReadFile(std::string(TV_BINARY_DIR) + "/bin/Resources/resources.resembed");
    ASSERT_GT(good.size(), 100u);
    char const* const showWithout =
        "cannot show its window without \"UI/Layout/MainWindow.layout\"";
    char const* const missing = "tavorin-updater: cannot start: its resources are missing";
    struct Case
    {
        char const* what;
        std::string bytes;
        unsigned long long size;
        char const* says;
        int status;
        char const* ends;
    } const cases[] = {
        {"empty", "", 0, ": empty", 1, showWithout},
        {"truncated", good.substr(0, 60), 0, ": damaged: the directory breaks off after ", 1,
         showWithout},
        {"too big", "", 100000001ULL, ": 100000001 bytes, more than the 100000000 a program loads",
         1, missing},
        {"missing", "", 0, "", 1, missing},
        {"end cut off", good.substr(0, good.size() - 1), 0,
         ": damaged: the directory breaks off after ", 0, ""},
    };
    for (Case const& c : cases)
    {
        TestSupport::TempFolder temp;
        std::string resources = temp.Write("bin/Resources/resources.resembed", c.bytes);
        if (std::string(c.what) == "missing")
        {
            std::filesystem::remove(resources);
            resources = "no resources.resembed in " + temp.Path() + "/bin/";
        }
        if (c.size)
            std::filesystem::resize_file(resources, c.size);
        std::filesystem::copy_file(std::string(TV_BINARY_DIR) + "/bin/tavorin-updater",
                                   temp / "bin/tavorin-updater");
        int const status = std::system(
            ("'" + temp / "bin/tavorin-updater" + "' -silent >/dev/null 2>'" + temp / "err" + "'")
                .c_str());
        ASSERT_TRUE(WIFEXITED(status)) << c.what;
        EXPECT_EQ(c.status, WEXITSTATUS(status)) << c.what;
        EXPECT_NE(std::string::npos, TestSupport::ReadFile(temp / "err")
                                         .find("tavorin-updater: resources: " + resources + c.says))
            << c.what << ": " << TestSupport::ReadFile(temp / "err");
        EXPECT_NE(std::string::npos, TestSupport::ReadFile(temp / "err").find(c.ends)) << c.what;
    }
}

TEST(CommandLine, WithoutADisplayTheProgramSaysSoAndFails)
{
    // No window could ever show, and a silent run could only hand over to a copy that can't
    // either: both end at once, with the reason and a failure status, and start nothing.
    QuickFailingCheck check;
    EnvScope display("DISPLAY", nullptr), wayland("WAYLAND_DISPLAY", nullptr),
        video("SDL_VIDEODRIVER", nullptr), runtime("XDG_RUNTIME_DIR", nullptr);
    TestSupport::TempFolder folder("tv-nodisplay");
    std::string const program = std::string(TV_BINARY_DIR) + "/bin/tavorin-updater";
    std::string const errors = folder.Path() + "/errors.txt";
    for (char const* extra : {"", " -silent"})
    {
        int const status =
            std::system(("timeout 60 " + program + extra + " >/dev/null 2>" + errors).c_str());
        ASSERT_TRUE(WIFEXITED(status)) << extra;
        EXPECT_EQ(1, WEXITSTATUS(status)) << extra;
        EXPECT_EQ("Tavorin Updater needs a display: neither DISPLAY nor WAYLAND_DISPLAY is set\n",
                  TestSupport::ReadFile(errors))
            << extra;
    }
}

namespace
{

/// The real platform, but a run loop that only counts the requests to stop it.
class QuitCountingPlatform : public UI::Native::PlatformSupportFactorySDL
{
public:
    QuitCountingPlatform() { UI::Native::PlatformSupportFactory::overrideImpl(this); }
    ~QuitCountingPlatform() override { UI::Native::PlatformSupportFactory::overrideImpl(nullptr); }
    void QuitEventLoop() override { ++quits; }
    int quits = 0;
};

} // namespace

TEST(Quitting, CtrlQAndTheSessionAskTheApplicationAndAVetoHolds)
{
    QuickFailingCheck check;
    QuitCountingPlatform platform;
    int asked = 0;
    bool veto = true;
    {
        Application application(String("Tavorin"), String("QuitTest"), checked_value<String>());
        application.quitRequested.Connect(nullptr, boost::function<void()>(
                                                       [&]
                                                       {
                                                           ++asked;
                                                           if (veto)
                                                               application.VetoQuit();
                                                       }));
        UI::Native::PlatformSupportFactory::RequestQuit();
        EXPECT_EQ(1, asked);
        EXPECT_EQ(0, platform.quits);
        veto = false;
        UI::Native::PlatformSupportFactory::RequestQuit();
        EXPECT_EQ(2, asked);
        EXPECT_EQ(1, platform.quits);
    }
    // Without an application the request stops the run loop straight away.
    UI::Native::PlatformSupportFactory::RequestQuit();
    EXPECT_EQ(2, asked);
    EXPECT_EQ(2, platform.quits);
}
