#pragma once

#include "Updater/app/UpdateEntry.h"

#include "TvBase/Util/String.h"
#include "TvBase/Util/Thread.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <vector>

namespace Atomic
{
class CriticalSection;
}
namespace Network
{
class Http;
}
namespace Util
{
class ConfigFile;
}

namespace Updater
{

/// Runs one update check on a thread of its own: notes the time in the settings, downloads the
/// versions file, decides which installed products are offered an update, and leaves the list
/// and a one-line status behind. It has no window and no signal; the main thread polls
/// `IsThreadRunning` and then reads `GetUpdateData`.
///
/// Settings (domain "com.tavorin.updater", current user and current host): "LastUpdateCheckTime"
/// is written first, so that a failed check still counts as one; "LastResult" is written at
/// every report, empty after a good check. With `dontRecord` neither is written. The installed
/// versions are read from "InstalledProducts/<product>/CurrentVersion".
///
/// Every failure ends as (false, text): "Update file empty." for an empty body or a time-out,
/// "Internal stream error <domain>, <code>" for a failed transfer, "Connection Error: <word>"
/// when the request could not be made. A cancel before the end leaves the status as it was
/// at construction (true, empty) and an empty list.
class UpdaterThread : public Util::Thread
{
public:
    /// The application passes "Updater Thread", the versions URL, false, priority 2 and false.
    /// A null `url` makes every check fail with "Connection Error: CFReadStreamOpen failed."
    UpdaterThread(String const& threadName, char const* url, bool dontRecord,
                  Util::Thread::Priority priority, bool flag);
    /// Cancels a check under way and waits for the thread to end.
    ~UpdaterThread() override;

    bool IsCanceled();
    /// Asks the check to stop. It is seen while the download runs; once the body has arrived
    /// the decision runs to its end.
    void Cancel();
    /// True with `out` replaced by the offered updates when the thread has ended and the latest
    /// report was a success; otherwise false with `out` untouched. Main thread only.
    bool GetUpdateData(std::vector<boost::shared_ptr<UpdateEntry>>& out);
    /// The text of the latest report, empty after a good check. Read it once the thread ended.
    String GetLastResult() const { return lastResult; }
    /// The download's time-out, 60000 milliseconds unless changed before `StartThread`.
    void SetRequestTimeout(int millis) { requestTimeoutMillis = millis; }
    /// For a tool run by hand or by a script, set before `StartThread`: a failed transfer (a
    /// refused connection, an unknown host, a TLS failure, too many redirects) ends the check at
    /// once, its status followed by the reason in words, and a time-out reports "The request
    /// timed out after <N> seconds." The application keeps waiting for the time-out and reads
    /// a time-out as an empty file.
    void SetFailFast(bool enable) { failFast = enable; }

protected:
    void run() override;

private:
    void storeConnectionSuccess(bool success, String const& text);
    void download();

    String url;
    std::atomic<bool> canceled{false};
    bool lastSucceeded = true;
    bool dontRecord;
    String lastResult;
    boost::shared_ptr<Network::Http> http;
    boost::shared_ptr<Util::ConfigFile> config;
    boost::shared_ptr<Atomic::CriticalSection> lock;
    std::vector<boost::shared_ptr<UpdateEntry>> updates;
    int requestTimeoutMillis = 60000;
    bool failFast = false;
};

} // namespace Updater
