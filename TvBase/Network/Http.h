#pragma once

#include "TvBase/Network/Exception.h"
#include "TvBase/Util/String.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace Atomic
{
class CriticalSection;
}

namespace Network
{

class HttpHelper;
class HttpStream;

/// One HTTP GET at a time, polled by its owner; it never calls back.
///
/// Calling order: `Get`, then `IsFinished` until it returns true, then `GetError`, and the data
/// only when the error is empty. A finished `Http` can take another `Get`. Redirects are
/// followed; the status code is never looked at, so the body of a 404 or a 500 answer is data.
/// A second thread, "HTTP Helper Thread", pumps the body into a shared buffer under the lock
/// "HTTP Query". Not copyable; the destructor cancels a request under way.
class Http
{
public:
    /// No request; no time-out.
    Http();
    /// As above, but time-outs are measured with `tickMillis` instead of the process clock,
    /// for owners that drive time themselves.
    explicit Http(boost::function<unsigned long long()> const& tickMillis);
    ~Http();
    Http(Http const&) = delete;
    Http& operator=(Http const&) = delete;

    /// Starts a request for `url` and returns at once. A negative `timeoutMillis` means none.
    /// Throws `Exception::ConnectionError` with "Request already pending." while the pump of
    /// the previous request still runs (which then goes on untouched), or with the word of the
    /// step of the host service that failed.
    void Get(String const& url, int timeoutMillis);
    /// Blocks until the body has arrived and returns its text. Throws `ConnectionError` with
    /// "Operation timed out while trying to connect to the web server." after `timeoutMillis`,
    /// with the stream error when the transfer fails, or as `Get` does; throws
    /// `Exception::UserCancel` when `CancelGet` is called from another thread meanwhile.
    String SyncGet(String const& url, unsigned int timeoutMillis);
    /// True once the request has ended in any way. Also enforces the time-out: one millisecond
    /// past the limit it cancels the request and reports it finished, leaving the error and the
    /// data empty, so a time-out reads like an empty body. A stream error found earlier stays
    /// readable in `GetError`.
    bool IsFinished();
    /// The failure text; empty means no failure. "Internal stream error <domain>, <code>" for
    /// a failed transfer (domain 1 and the transfer library's result code here).
    String GetError();
    /// A failed transfer's reason in words for a person ("could not connect: ..."); empty when
    /// the transfer has not failed. Read it once `GetError` is not empty.
    String GetErrorReason();
    /// True when the latest request ended by its time-out.
    bool HasTimedOut() const { return timedOut; }
    /// The body as text, cut at its first NUL. Each call appends one zero byte to the raw data.
    String GetStringData();
    /// The received bytes, shared with the client. Read them only once the request finished.
    boost::shared_ptr<std::vector<unsigned char>> GetRawData();
    /// Stops the request and waits up to 5000 milliseconds for the pump to end. The data of a
    /// canceled request is emptied. Must not be called with the lock held.
    void CancelGet();
    /// Blocks until the pump of the latest request has stopped, at most `timeoutMillis`; true
    /// when no pump runs any more. A pump stops at the end of the body, at a stream error and
    /// at a cancel.
    bool WaitForHelper(unsigned int timeoutMillis);

private:
    bool isHelperRunning();
    void throwConnectionError(char const* word);

    std::atomic<bool> canceled{false};
    std::atomic<bool> finished{false};
    std::atomic<bool> timedOut{false};
    String stringData;
    String error;
    int timeoutMillis = -1;
    std::uint32_t startTick = 0;
    boost::shared_ptr<std::vector<unsigned char>> rawData;
    // The latest pump and stream are swapped under `lock`, so that `CancelGet` from another
    // thread always sees a whole pair.
    std::unique_ptr<HttpHelper> helper;
    std::unique_ptr<Atomic::CriticalSection> lock;
    std::unique_ptr<HttpStream> streamSentry;
    boost::function<unsigned long long()> tick;
};

} // namespace Network
