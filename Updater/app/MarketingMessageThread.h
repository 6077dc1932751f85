#pragma once

#include "Updater/app/MarketingMessageData.h"

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

namespace Updater
{

/// Fetches the maker's web page, scrapes one link and one image out of it with plain,
/// case-sensitive substring searches, fetches and decodes the image, and leaves a record that
/// the main window turns into a clickable banner. It is not an HTML parser: the first
/// "<a href=", the first "<img src=" behind it, and the first "width=", "height=" and "alt="
/// anywhere on the page are what count, whatever they belong to.
///
/// It has no window and no signal; the main thread polls `IsThreadRunning` and then reads
/// `GetMessageData`. A failure anywhere means no banner and nothing else; the status words are
/// "Connection Error: <word>", "Marketing message empty.", "Cannot locate anchor tag",
/// "Cannot locate marketing url", "Cannot locate img tag", "Cannot read image" and
/// "Cannot parse image data as png", or the transfer's own error text when the page request
/// failed. No setting is written.
class MarketingMessageThread : public Util::Thread
{
public:
    /// The application passes "Marketing message Thread", the marketing URL (see
    /// `GetMarketingURL`), priority 2 and false. A null `url` makes the run fail with
    /// "Connection Error: <word>".
    MarketingMessageThread(String const& threadName, char const* url,
                           Util::Thread::Priority priority, bool flag);
    /// Cancels a run under way and waits for the thread to end.
    ~MarketingMessageThread() override;

    bool IsCanceled();
    /// Asks the run to stop; it is seen while a request is under way. The status stays as it
    /// was, so a run canceled during the page request still reads as a success without a record.
    void Cancel();
    /// True with `out` replaced by the scraped record when the thread isn't running and the
    /// latest report was a success; otherwise false with `out` untouched. Before the first run
    /// (or after a canceled one) a success may hand out a null record. Main thread only.
    bool GetMessageData(boost::shared_ptr<MarketingMessageData>& out);
    /// The latest status text, empty after a success. Read it once the thread ended.
    String GetLastResult() const { return lastResult; }
    /// The time-out of each of the two requests, 60000 milliseconds unless changed before
    /// `StartThread`.
    void SetRequestTimeout(int millis) { requestTimeoutMillis = millis; }

protected:
    void run() override;

private:
    /// One GET to its end. True with the body in `out`; false after reporting the failure
    /// (or silently when canceled).
    bool makeHTTPRequest(String url, boost::shared_ptr<std::vector<unsigned char>>& out);
    void storeConnectionSuccess(bool success, String const& text);

    String url;
    std::atomic<bool> canceled{false};
    bool lastSucceeded = true;
    String lastResult;
    boost::shared_ptr<Network::Http> http;
    boost::shared_ptr<Atomic::CriticalSection> lock;
    boost::shared_ptr<MarketingMessageData> message;
    int requestTimeoutMillis = 60000;
};

} // namespace Updater
