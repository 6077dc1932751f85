#include "TvBase/Network/Http.h"

#include "TvBase/Network/HttpHelper.h"
#include "TvBase/Network/HttpStream.h"
#include "TvBase/Util/CriticalSection.h"
#include "TvBase/Util/ProcessInfo.h"

namespace Network
{

namespace
{
constexpr unsigned int cancelWaitMillis = 5000;
} // namespace

Http::Http() : Http(&Util::GetTickCountMillis) {}

Http::Http(boost::function<unsigned long long()> const& tickMillis)
    : rawData(new std::vector<unsigned char>()), lock(new Atomic::CriticalSection("HTTP Query")),
      tick(tickMillis)
{
}

Http::~Http()
{
    CancelGet();
    streamSentry.reset();
    lock.reset();
    helper.reset();
}

bool Http::isHelperRunning()
{
    return helper && helper->IsThreadRunning();
}

void Http::throwConnectionError(char const* word)
{
    TV_THROW(Exception::ConnectionError, String(word));
}

void Http::Get(String const& url, int requestTimeoutMillis)
{
    if (isHelperRunning())
        throwConnectionError("Request already pending.");

    boost::shared_ptr<std::vector<unsigned char>> bytes(new std::vector<unsigned char>());
    {
        Atomic::CriticalSectionLocker hold(*lock);
        stringData = "";
        error = "";
        finished = false;
        canceled = false;
        timedOut = false;
        timeoutMillis = requestTimeoutMillis;
        startTick = static_cast<std::uint32_t>(tick());
        rawData = bytes;
    }

    // The request is built on a stream of its own and replaces the previous one only once it
    // is open; a failed step closes and releases it on the way out.
    std::unique_ptr<HttpStream> stream = HttpStream::Create();
    if (!stream->CreateRequest(url))
        throwConnectionError("CFHTTPMessageCreateRequest failed.");
    if (!stream->CreateReadStream())
        throwConnectionError("CFReadStreamCreateForHTTPRequest failed.");
    if (!stream->SetAutoRedirect())
        throwConnectionError("CFReadStreamSetProperty failed.");
    if (!stream->Open())
        throwConnectionError("CFReadStreamOpen failed.");

    std::unique_ptr<HttpHelper> pump(
        new HttpHelper(lock.get(), bytes.get(), &error, &canceled, &finished, stream.get()));
    std::unique_ptr<HttpHelper> previous;
    std::unique_ptr<HttpStream> previousStream;
    {
        Atomic::CriticalSectionLocker hold(*lock);
        previous = std::move(helper);
        helper = std::move(pump);
        previousStream = std::move(streamSentry);
        streamSentry = std::move(stream);
    }
    previousStream.reset();
    previous.reset();
    helper->StartThread();
}

bool Http::IsFinished()
{
    if (finished)
        return true;
    if (timeoutMillis < 0)
        return false;
    std::uint32_t const elapsed = static_cast<std::uint32_t>(tick()) - startTick;
    if (elapsed <= static_cast<std::uint32_t>(timeoutMillis))
        return false;

    CancelGet();
    String outcome;
    {
        Atomic::CriticalSectionLocker hold(*lock);
        outcome = error;
    }
    // The time-out word stays in this copy on purpose: the request's own error stays empty, so
    // its owner sees a finished request with no error and no data.
    if (outcome.IsEmpty())
        outcome = "HTTP Timeout";
    timedOut = true;
    finished = true;
    return true;
}

String Http::GetError()
{
    Atomic::CriticalSectionLocker hold(*lock);
    return error;
}

String Http::GetStringData()
{
    Atomic::CriticalSectionLocker hold(*lock);
    rawData->push_back(0);
    stringData = String(reinterpret_cast<char const*>(rawData->data()),
                        static_cast<unsigned int>(rawData->size()));
    return stringData;
}

String Http::GetErrorReason()
{
    Atomic::CriticalSectionLocker hold(*lock);
    if (error.IsEmpty() || !streamSentry)
        return String("");
    return streamSentry->GetErrorReason();
}

boost::shared_ptr<std::vector<unsigned char>> Http::GetRawData()
{
    Atomic::CriticalSectionLocker hold(*lock);
    return rawData;
}

void Http::CancelGet()
{
    canceled = true;
    HttpHelper* pump = nullptr;
    HttpStream* stream = nullptr;
    {
        Atomic::CriticalSectionLocker hold(*lock);
        pump = helper.get();
        stream = streamSentry.get();
    }
    if (pump)
    {
        if (stream)
            stream->Wake();
        if (!pump->WaitThread(cancelWaitMillis))
        {
            // The pump answers a wake within one round, so this is a last resort; it still
            // only waits, since a thread is never killed inside a lock.
            canceled = true;
            pump->TerminateThread();
        }
    }
    if (stream)
        stream->Close();
}

bool Http::WaitForHelper(unsigned int waitMillis)
{
    HttpHelper* pump = nullptr;
    {
        Atomic::CriticalSectionLocker hold(*lock);
        pump = helper.get();
    }
    return !pump || pump->WaitThread(waitMillis);
}

String Http::SyncGet(String const& url, unsigned int syncTimeoutMillis)
{
    if (isHelperRunning())
        throwConnectionError("Request already pending.");
    Get(url, -1);

    // Sleeps until the pump stops instead of spinning on `finished`.
    if (!helper->WaitThread(syncTimeoutMillis))
    {
        canceled = true;
        streamSentry->Wake();
        helper->TerminateThread();
        throwConnectionError("Operation timed out while trying to connect to the web server.");
    }
    if (canceled && !finished)
        TV_THROW(Exception::UserCancel, String(""));

    String failure = GetError();
    // A pump that stopped without finishing left its reason here; waiting on would never end.
    if (!failure.IsEmpty())
        TV_THROW(Exception::ConnectionError, failure);
    return GetStringData();
}

} // namespace Network
