// tvcheck: one update check without a window, for administrators and scripts.

#include "tools/tvcheck/CheckReport.h"
#include "tools/tvcheck/DecisionExplainer.h"
#include "tools/tvcheck/ProductList.h"
#include "tools/tvcheck/VersionsDownload.h"

#include "TvBase/Util/ConfigFile.h"
#include "Updater/app/UpdateHost.h"
#include "Updater/app/VersionsText.h"

#include "TvBase/Util/detail/ConfigStore.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

namespace
{

enum ExitStatus
{
    exitNoUpdates = 0,
    exitCheckFailed = 1,
    exitUsage = 2,
    exitUpdatesAvailable = 10
};

char const usageText[] =
    "Usage: tvcheck [--json] [--record] [--url URL] [--timeout SECONDS]\n"
    "       tvcheck --explain [--url URL] [--timeout SECONDS]\n"
    "       tvcheck --list\n"
    "\n"
    "Checks once, without a window, which installed Tavorin products have a newer version,\n"
    "exactly as the updater application does: it downloads the versions file and compares it\n"
    "with the installed versions under \"InstalledProducts/<product>/CurrentVersion\" in the\n"
    "settings domain com.tavorin.updater.\n"
    "\n"
    "Options:\n"
    "  --json            print a JSON array of {\"product\", \"installed\", \"available\",\n"
    "                    \"link\"} objects instead of lines; a failure as {\"error\": ...}\n"
    "  --record          store LastUpdateCheckTime and LastResult in the settings, as the\n"
    "                    application does; without it nothing is written\n"
    "  --url URL         fetch the versions file from URL instead of the update host\n"
    "  --timeout SECONDS give up on the download after SECONDS (default 60); a refused\n"
    "                    connection, an unknown host or a TLS failure ends it at once\n"
    "  --explain         print, per product, the decision and its reason, and the lines\n"
    "                    of the versions file that were skipped and why\n"
    "  --list            print the registered products: product, version, and where the\n"
    "                    setting comes from (user or system)\n"
    "  --help            show this text\n"
    "  --version         show the version\n"
    "\n"
    "Output: one line per offered update, \"product<TAB>installed<TAB>available<TAB>link\".\n"
    "The update host is TV_UPDATE_HOST from the environment (host, optional :port, optional\n"
    "https:// in front) or else the one this build was configured with. The proxy variables\n"
    "http_proxy, https_proxy and no_proxy are honoured; https is verified against the\n"
    "system's CA certificates.\n"
    "\n"
    "Exit status: 0 no updates, 10 updates available, 1 the check failed (no connection, an\n"
    "HTTP error status, or an answer that is not a versions file), or its report or record\n"
    "could not be written (the reason on standard error), 2 bad command line.\n";

int usageError(char const* problem, char const* argument)
{
    std::fprintf(stderr, "tvcheck: %s%s\n\n%s", problem, argument, usageText);
    return exitUsage;
}

struct Options
{
    bool json = false;
    bool record = false;
    std::string url;
    bool haveUrl = false;
    int timeoutMillis = 60000;
    bool help = false;
    bool version = false;
    bool explain = false;
    bool list = false;
};

/// The value of an option written as "--name VALUE" or "--name=VALUE"; null when absent.
char const* optionValue(int argc, char** argv, int& i, char const* name)
{
    std::size_t const length = std::strlen(name);
    if (std::strncmp(argv[i], name, length) != 0)
        return nullptr;
    if (argv[i][length] == '=')
        return argv[i] + length + 1;
    if (argv[i][length] != '\0')
        return nullptr;
    if (i + 1 >= argc)
        return "";
    return argv[++i];
}

bool parseTimeout(char const* text, int& millis)
{
    char* end = nullptr;
    long seconds = std::strtol(text, &end, 10);
    if (!*text || *end || seconds < 1 || seconds > 86400)
        return false;
    millis = static_cast<int>(seconds * 1000);
    return true;
}

char const settingsDomain[] = "com.tavorin.updater";

/// The settings' writes are in memory; a check that was asked to be recorded must reach disk,
/// and says so when it cannot.
bool recordReachedDisk(Options const& options)
{
    std::string failure;
    if (!options.record || Util::detail::ConfigStore::Get(settingsDomain).Synchronize(&failure))
        return true;
    std::fprintf(stderr, "tvcheck: the check was not recorded: %s\n", failure.c_str());
    return false;
}

/// Says why the check failed, in the form asked for, records it when asked, and gives the
/// failure status.
int failCheck(Options const& options, Util::ConfigFile& config, std::string const& reason)
{
    if (options.record)
        config.SetStringLegacyLocation("LastResult", String(reason.c_str()));
    std::fprintf(stderr, "tvcheck: %s\n", reason.c_str());
    if (options.json)
        std::fputs(Updater::FormatFailureAsJson(reason).c_str(), stdout);
    recordReachedDisk(options);
    return exitCheckFailed;
}

/// The check itself: the download, then the application's own decision over the answer.
int runCheck(Options const& options, std::string const& url)
{
    Util::ConfigFile config(settingsDomain);
    if (options.record)
        config.SetUIntLegacyLocation("LastUpdateCheckTime",
                                     static_cast<unsigned int>(std::time(nullptr)));
    std::string body;
    std::string failure;
    if (!Updater::VersionsDownload::Fetch(url, options.timeoutMillis, body, failure))
        return failCheck(options, config, failure);
    String const text(body.c_str(), static_cast<unsigned int>(body.size()));
    if (!Updater::DecisionExplainer::IsVersionsFile(text, failure))
        return failCheck(options, config, failure + " from " + url);

    std::vector<boost::shared_ptr<Updater::UpdateEntry>> updates;
    Updater::ParseVersionsText(text, config, updates,
                               [&](bool, String const& result)
                               {
                                   if (options.record)
                                       config.SetStringLegacyLocation("LastResult", result);
                               });
    if (options.explain)
    {
        Updater::VersionSettingsOf<Util::ConfigFile> settings(config);
        std::fputs(Updater::DecisionExplainer::Explain(text, settings).c_str(), stdout);
    }
    else
    {
        std::string const report = options.json ? Updater::FormatUpdatesAsJson(updates)
                                                : Updater::FormatUpdatesAsLines(updates);
        std::fputs(report.c_str(), stdout);
    }
    // A report that did not reach its reader (a full disk, a closed pipe) is a failed check.
    if (std::fflush(stdout) != 0 || std::ferror(stdout))
    {
        std::fprintf(stderr, "tvcheck: could not write the report: %s\n", std::strerror(errno));
        return exitCheckFailed;
    }
    if (!recordReachedDisk(options))
        return exitCheckFailed;
    return updates.empty() ? exitNoUpdates : exitUpdatesAvailable;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i)
    {
        char const* value = nullptr;
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0)
            options.help = true;
        else if (std::strcmp(argv[i], "--version") == 0)
            options.version = true;
        else if (std::strcmp(argv[i], "--explain") == 0)
            options.explain = true;
        else if (std::strcmp(argv[i], "--list") == 0)
            options.list = true;
        else if (std::strcmp(argv[i], "--json") == 0)
            options.json = true;
        else if (std::strcmp(argv[i], "--record") == 0)
            options.record = true;
        else if ((value = optionValue(argc, argv, i, "--url")))
        {
            if (!*value)
                return usageError("--url needs a URL", "");
            options.url = value;
            options.haveUrl = true;
        }
        else if ((value = optionValue(argc, argv, i, "--timeout")))
        {
            if (!parseTimeout(value, options.timeoutMillis))
                return usageError("--timeout needs whole seconds from 1 to 86400, not: ", value);
        }
        else
            return usageError("unknown argument: ", argv[i]);
    }
    if (options.help)
    {
        std::fputs(usageText, stdout);
        return exitNoUpdates;
    }
    if (options.version)
    {
        std::fputs("tvcheck " TV_VERSION "\n", stdout);
        return exitNoUpdates;
    }
    if (options.list)
    {
        std::fputs(Updater::ProductList::Describe(settingsDomain).c_str(), stdout);
        return exitNoUpdates;
    }

    String url = options.haveUrl ? String(options.url.c_str()) : Updater::GetVersionsURL();
    if (url.IsNull())
    {
        std::fprintf(stderr, "tvcheck: TV_UPDATE_HOST is not a usable host: %s\n",
                     Updater::GetUpdateHostSetting().CStr());
        return exitCheckFailed;
    }
    return runCheck(options, url.CStr());
}
