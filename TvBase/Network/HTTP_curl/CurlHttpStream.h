#pragma once

#include "TvBase/Network/HttpStream.h"

#include <curl/curl.h>

#include <cstddef>
#include <mutex>
#include <vector>

namespace Network
{

/// The host stream over one libcurl easy handle in a multi handle of its own. The write
/// callback parks the bytes of each transfer step in `pending`, from which `Read` hands them
/// out; `WaitForActivity` sleeps in `curl_multi_poll` on the socket, and `Wake` ends that sleep
/// through `curl_multi_wakeup`. Errors are reported as domain 1 and the `CURLcode`.
class CurlHttpStream : public HttpStream
{
public:
    /// Bodies above this size end the transfer with `CURLE_FILESIZE_EXCEEDED`.
    static constexpr curl_off_t maxBodyBytes = curl_off_t(64) * 1024 * 1024;
    /// More redirects than browsers follow end the transfer with `CURLE_TOO_MANY_REDIRECTS`.
    static constexpr long maxRedirects = 20;

    CurlHttpStream();
    ~CurlHttpStream() override;

    bool CreateRequest(String const& url) override;
    bool CreateReadStream() override;
    bool SetAutoRedirect() override;
    bool Open() override;
    bool IsAtEnd() override;
    bool HasBytesAvailable() override;
    long Read(unsigned char* buffer, unsigned long maxLength) override;
    void GetError(long& domain, long& code) override;
    void WaitForActivity() override;
    void Wake() override;
    void Close() override;

private:
    static std::size_t onWrite(char* bytes, std::size_t size, std::size_t count, void* self);
    /// Runs the transfer as far as it goes without blocking and notes its end.
    void drive();
    std::size_t pendingBytes() const { return pending.size() - pendingOffset; }

    CURL* easy = nullptr;
    CURLM* multi = nullptr;
    String url;
    bool added = false;
    bool done = false;
    CURLcode result = CURLE_OK;
    curl_off_t received = 0;
    bool tooLarge = false;
    std::vector<unsigned char> pending;
    std::size_t pendingOffset = 0;
    // `Close` may come from the owner's thread after the pump stopped, and twice.
    std::mutex closeMutex;
    bool closed = false;
};

} // namespace Network
