#include "Updater/app/UpdaterThread.h"

#include "Updater/app/VersionsText.h"

#include "TvBase/Network/Http.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/CriticalSection.h"

#include <ctime>

namespace Updater
{

UpdaterThread::UpdaterThread(String const& threadName, char const* versionsUrl,
                             bool dontRecordCheck, Util::Thread::Priority priority, bool flag)
    : Util::Thread(threadName, priority, flag), url(versionsUrl), dontRecord(dontRecordCheck),
      config(new Util::ConfigFile(
          String("com.%1.%2").Arg(String("Tavorin").ToLower()).Arg(String("Updater").ToLower()))),
      lock(new Atomic::CriticalSection("UpdaterThread Critical Section"))
{
}

UpdaterThread::~UpdaterThread()
{
    // `run` is a call into this class, so the thread must end before its members go.
    Cancel();
    WaitThread();
}

bool UpdaterThread::IsCanceled()
{
    Atomic::CriticalSectionLocker hold(*lock);
    return canceled;
}

void UpdaterThread::Cancel()
{
    Atomic::CriticalSectionLocker hold(*lock);
    canceled = true;
}

bool UpdaterThread::GetUpdateData(std::vector<boost::shared_ptr<UpdateEntry>>& out)
{
    // No lock: only a finished thread's results are handed out.
    if (IsThreadRunning() || !lastSucceeded)
        return false;
    out = updates;
    return true;
}

void UpdaterThread::storeConnectionSuccess(bool success, String const& text)
{
    lastSucceeded = success;
    lastResult = text;
    if (!dontRecord)
        config->SetStringLegacyLocation("LastResult", lastResult);
}

void UpdaterThread::run()
{
    if (!dontRecord)
        config->SetUIntLegacyLocation("LastUpdateCheckTime",
                                      static_cast<unsigned int>(time(nullptr)));
    try
    {
        download();
    }
    catch (Network::Exception::ConnectionError const& e)
    {
        storeConnectionSuccess(false, String("Connection Error: %1").Arg(e.GetMessage()));
    }
}

void UpdaterThread::download()
{
    http.reset(new Network::Http());
    http->Get(url, requestTimeoutMillis);

    while (!http->IsFinished())
    {
        // Read without the lock on purpose: a late look costs one more round at most.
        if (canceled)
        {
            http->CancelGet();
            return;
        }
        // Ten milliseconds between rounds, cut short when the body is complete. A pump that
        // stopped on a read error leaves the time-out to end the request, unless failing fast.
        if (http->WaitForHelper(10) && !http->IsFinished())
        {
            if (failFast)
                break;
            Util::Thread::SleepThread(10);
        }
    }

    String error = http->GetError();
    if (!error.IsEmpty())
    {
        String const reason = failFast ? http->GetErrorReason() : String("");
        storeConnectionSuccess(false,
                               reason.IsEmpty() ? error : String("%1 (%2)").Arg(error).Arg(reason));
        return;
    }
    if (failFast && http->HasTimedOut())
    {
        int const seconds = (requestTimeoutMillis + 999) / 1000;
        storeConnectionSuccess(false, String("The request timed out after %1 %2.")
                                          .Arg(seconds)
                                          .Arg(seconds == 1 ? "second" : "seconds"));
        return;
    }
    ParseVersionsText(http->GetStringData(), *config, updates,
                      [this](bool success, String const& text)
                      { storeConnectionSuccess(success, text); });
}

} // namespace Updater
