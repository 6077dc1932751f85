#pragma once

#include "TvBase/Util/String.h"

#include <memory>

namespace Network
{

/// The host's HTTP service, seen as a non-blocking read stream of one response body. Each host
/// supplies one implementation behind `Create`; nothing above this door knows which.
///
/// Redirects are followed by the service and are invisible here; the status code and the
/// headers are never reported, so an error page is a body like any other. One thread pumps the
/// stream; `Wake` and, once that thread has stopped, `Close` may come from any thread.
class HttpStream
{
public:
    /// A stream with no request yet.
    static std::unique_ptr<HttpStream> Create();
    /// Closes the stream if it is still open and releases it.
    virtual ~HttpStream() = default;

    /// Builds a GET request for `url` (UTF-8), with no extra header. False on failure.
    virtual bool CreateRequest(String const& url) = 0;
    /// Makes the read stream for the request. False on failure.
    virtual bool CreateReadStream() = 0;
    /// Asks for redirects to be followed. False on failure.
    virtual bool SetAutoRedirect() = 0;
    /// Starts the transfer without blocking. False when the URL cannot be fetched at all.
    virtual bool Open() = 0;

    /// The whole body has been read out of the stream.
    virtual bool IsAtEnd() = 0;
    /// A `Read` would not block: bytes wait, or the stream has failed.
    virtual bool HasBytesAvailable() = 0;
    /// Up to `maxLength` bytes: the count, 0 for no data now, negative once the stream failed.
    virtual long Read(unsigned char* buffer, unsigned long maxLength) = 0;
    /// The failure as two numbers; (0, 0) while there is none.
    virtual void GetError(long& domain, long& code) = 0;
    /// The failure in words for a person ("could not connect: ...", "too many redirects: ...");
    /// empty while there is none. Read it once the pump has stopped.
    virtual String GetErrorReason() = 0;
    /// Blocks, without using the processor, until there may be something to read, the stream
    /// ended or failed, `Wake` was called, or about a second passed.
    virtual void WaitForActivity() = 0;
    /// Ends a `WaitForActivity` under way in another thread, or the next one.
    virtual void Wake() = 0;
    /// Ends the transfer. Calling it again does nothing.
    virtual void Close() = 0;

protected:
    HttpStream() = default;
    HttpStream(HttpStream const&) = delete;
    HttpStream& operator=(HttpStream const&) = delete;
};

} // namespace Network
